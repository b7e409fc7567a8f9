#include "port/replacement_file.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <utility>

#include "port/wide_text.h"

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace zol::port {

namespace {

constexpr int k_most_attempts = 100;

// Sixteen letters from the system's own source of chance.
std::wstring unforeseen_name() {
  std::random_device chance;
  std::wstring name = L".zol-";
  for (int i = 0; i < 16; ++i) name += static_cast<wchar_t>(L'a' + chance() % 26);
  return name + L".tmp";
}

// With its separator; empty for the current directory.
std::wstring directory_of(const std::wstring& path) {
#if defined(_WIN32)
  const std::size_t separator = path.find_last_of(L"/\\:");
#else
  const std::size_t separator = path.rfind(L'/');
#endif
  return separator == std::wstring::npos ? std::wstring() : path.substr(0, separator + 1);
}

}  // namespace

#if defined(_WIN32)

// Nothing to look up: the calls themselves refuse what can't be replaced.
bool ReplacementFile::prepare(const std::wstring& path) {
  target_ = path;
  return true;
}

namespace {
void take_permissions(FileHandle, const std::wstring&) {}
void sync_directory(const std::wstring&) {}
}  // namespace

#else

bool ReplacementFile::prepare(const std::wstring& path) {
  target_ = path;
  if (path.find(L'\0') != std::wstring::npos) {
    errno = EINVAL;
    return false;
  }
  const std::string name = utf8_path(path);
  struct stat status = {};
  if (::stat(name.c_str(), &status) != 0) return errno == ENOENT;
  if (!S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return false;
  }
  // Whoever may write to the directory could replace the file; one that is protected stays.
  if (::faccessat(AT_FDCWD, name.c_str(), W_OK, AT_EACCESS) != 0) return false;
  if (char* const real = ::realpath(name.c_str(), nullptr)) {
    const std::string real_name = real;
    std::free(real);
    target_ = from_utf8(real_name.data(), real_name.size());
    // A name that is not UTF-8 has no wide form; then a link itself is replaced.
    if (utf8_path(target_) != real_name) target_ = path;
  }
  return true;
}

namespace {

// As far as the process may; the owner is kept where that is allowed.
void take_permissions(FileHandle handle, const std::wstring& from) {
  struct stat status = {};
  if (::stat(utf8_path(from).c_str(), &status) != 0) return;
  const bool owned = ::fchown(handle, status.st_uid, status.st_gid) == 0;
  static_cast<void>(::fchmod(handle, status.st_mode & (owned ? 07777u : 0777u)));
}

// So that the new name survives a loss of power, where the file system can promise that.
void sync_directory(const std::wstring& directory) {
  const std::string name = directory.empty() ? "." : utf8_path(directory);
  const int descriptor = ::open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor == -1) return;
  static_cast<void>(::fsync(descriptor));
  ::close(descriptor);
}

}  // namespace

#endif

ReplacementFile::ReplacementFile(const std::wstring& path) {
  if (!prepare(path)) return;
  OpenOptions options;
  options.access = Access::read_write;
  options.create = true;
  options.fresh = true;
  options.mode = 0666;
  const std::wstring directory = directory_of(target_);
  for (int attempt = 0; attempt < k_most_attempts; ++attempt) {
    working_path_ = directory + unforeseen_name();
    handle_ = open_handle(working_path_, options);
    if (is_open()) {
      take_permissions(handle_, target_);
      return;
    }
    if (errno != EEXIST) break;
  }
  working_path_.clear();
}

ReplacementFile::~ReplacementFile() {
  const int error = errno;
  if (is_open()) close_handle(handle_);
  if (!working_path_.empty()) remove_file(working_path_);
  errno = error;
}

bool ReplacementFile::commit() {
  if (!is_open()) return false;
  if (!sync_handle(handle_)) return false;
  if (!close_handle(std::exchange(handle_, k_no_file))) return false;
  if (!rename_file(working_path_, target_)) return false;
  working_path_.clear();
  sync_directory(directory_of(target_));
  return true;
}

}  // namespace zol::port
