#include "port/replacement_file.h"

#include <cerrno>
#include <utility>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>

#include <random>
#include <vector>

#include "port/internal/windows_calls.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <cstdio>
#include <cstring>

#include "port/internal/file_access.h"
#include "port/internal/posix_calls.h"
#if defined(__APPLE__)
#include <sys/random.h>
#endif
#endif

namespace zol::port {

namespace {

constexpr int k_most_attempts = 100;

}  // namespace

#if defined(_WIN32)

namespace {

using internal::fail_by_system;
using internal::system_path;

constexpr DWORD k_share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD k_kept_attributes =
    FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

// Whether the file is to go when its last handle is closed, however the process ends.
bool set_doomed(HANDLE file, bool is_doomed) {
  FILE_DISPOSITION_INFO info = {};
  info.DeleteFile = is_doomed;
  return SetFileInformationByHandle(file, FileDispositionInfo, &info, sizeof info);
}

}  // namespace

class ReplacementFile::Work {
 public:
  ~Work();

  bool start(const std::wstring& path);
  Outcome commit();

  FileHandle handle = k_no_file;

 private:
  bool find_older();
  bool read_older(HANDLE older);
  bool follow_links(HANDLE older);
  bool make_file();
  HANDLE create(const std::wstring& name);
  bool replace();
  Outcome settle();

  HANDLE system_handle() const { return reinterpret_cast<HANDLE>(_get_osfhandle(handle)); }

  std::wstring target_;  // links followed, as the system takes it
  bool has_older_ = false;
  DWORD older_attributes_ = 0;
  std::vector<char> older_rights_;  // a security descriptor with the access list; may be empty
  std::wstring working_path_;       // empty: there is none, or none any more
  std::wstring backup_path_;
  bool is_doomed_ = false;
};

ReplacementFile::Work::~Work() {
  const int error = errno;
  if (handle != k_no_file) close_handle(handle);
  if (!working_path_.empty()) DeleteFileW(working_path_.c_str());
  errno = error;
}

bool ReplacementFile::Work::start(const std::wstring& path) {
  if (path.find(L'\0') != std::wstring::npos) {
    errno = EINVAL;
    return false;
  }
  target_ = system_path(path);
  return find_older() && make_file();
}

// Asks for all that replacing will need, so that a file which is protected, or in use by a program
// that does not let go of it, is refused before anything is written.
bool ReplacementFile::Work::find_older() {
  const DWORD attributes = GetFileAttributesW(target_.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    fail_by_system();
    return errno == ENOENT;
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    errno = EISDIR;
    return false;
  }
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    errno = EACCES;
    return false;
  }
  constexpr DWORD k_needed = FILE_WRITE_DATA | DELETE | READ_CONTROL | FILE_READ_ATTRIBUTES;
  const HANDLE older = CreateFileW(target_.c_str(), k_needed, k_share_all, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr);
  if (older == INVALID_HANDLE_VALUE) return fail_by_system();
  const bool is_link = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  const bool is_read = read_older(older) && (!is_link || follow_links(older));
  CloseHandle(older);
  has_older_ = true;
  older_attributes_ = attributes & k_kept_attributes;
  return is_read;
}

bool ReplacementFile::Work::read_older(HANDLE older) {
  if (GetFileType(older) != FILE_TYPE_DISK) {
    errno = EINVAL;
    return false;
  }
  // A file system without access lists says so, or gives none.
  DWORD size = 0;
  GetKernelObjectSecurity(older, DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  older_rights_.resize(size);
  if (!GetKernelObjectSecurity(older, DACL_SECURITY_INFORMATION, older_rights_.data(), size,
                               &size)) {
    older_rights_.clear();
  }
  return true;
}

// The name without the link that it ends in.
bool ReplacementFile::Work::follow_links(HANDLE older) {
  std::wstring name(MAX_PATH, L'\0');
  const auto ask = [&] {
    return GetFinalPathNameByHandleW(older, name.data(), static_cast<DWORD>(name.size()), 0);
  };
  DWORD length = ask();
  if (length > name.size()) {
    name.resize(length);
    length = ask();
  }
  if (length == 0 || length > name.size()) return fail_by_system();
  name.resize(length);
  target_ = std::move(name);
  return true;
}

bool ReplacementFile::Work::make_file() {
  const std::wstring directory = target_.substr(0, target_.find_last_of(L"/\\:") + 1);
  for (int attempt = 0; attempt < k_most_attempts; ++attempt) {
    std::random_device chance;
    std::wstring name = directory + L".zol-";
    for (int i = 0; i < 16; ++i) name += static_cast<wchar_t>(L'a' + chance() % 26);
    const std::wstring working_path = system_path(name + L".tmp");
    const HANDLE file = create(working_path);
    if (file == INVALID_HANDLE_VALUE) {
      if (errno == EEXIST) continue;
      return false;
    }
    working_path_ = working_path;
    backup_path_ = system_path(name + L".old");
    handle = _open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_BINARY | _O_NOINHERIT);
    if (handle != k_no_file) return true;
    CloseHandle(file);
    break;
  }
  return false;
}

// Nobody else can open the file, nor will anybody later who may not open the older one.
HANDLE ReplacementFile::Work::create(const std::wstring& name) {
  SECURITY_ATTRIBUTES rights = {sizeof rights, older_rights_.data(), FALSE};
  const HANDLE file = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0,
                                  older_rights_.empty() ? nullptr : &rights, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL | older_attributes_, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    fail_by_system();
  } else {
    is_doomed_ = set_doomed(file, true);  // if not, only the object's end takes the file away
  }
  return file;
}

ReplacementFile::Outcome ReplacementFile::Work::commit() {
  if (!sync_handle(handle)) return Outcome::kept;
  if (is_doomed_ && !set_doomed(system_handle(), false)) {
    fail_by_system();
    return Outcome::kept;
  }
  if (!close_handle(std::exchange(handle, k_no_file)) || !replace()) return Outcome::kept;
  working_path_.clear();
  return settle();
}

bool ReplacementFile::Work::replace() {
  if (!has_older_) {
    constexpr DWORD k_flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    return MoveFileExW(working_path_.c_str(), target_.c_str(), k_flags) || fail_by_system();
  }
  // With a name for the older file, for without one some failures would leave nothing of it.
  if (ReplaceFileW(target_.c_str(), working_path_.c_str(), backup_path_.c_str(), 0, nullptr,
                   nullptr)) {
    DeleteFileW(backup_path_.c_str());
    return true;
  }
  const DWORD error = GetLastError();
  if (error == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2) {
    MoveFileExW(backup_path_.c_str(), target_.c_str(), MOVEFILE_WRITE_THROUGH);
  }
  errno = internal::error_number(error);
  return false;
}

// So that the new name survives a loss of power, where the file system can promise that.
ReplacementFile::Outcome ReplacementFile::Work::settle() {
  const HANDLE file = CreateFileW(target_.c_str(), GENERIC_WRITE, k_share_all, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  const bool is_durable = file != INVALID_HANDLE_VALUE && FlushFileBuffers(file);
  if (!is_durable) fail_by_system();
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  return is_durable ? Outcome::replaced : Outcome::not_durable;
}

#else

namespace {

using internal::uninterrupted;

constexpr std::size_t k_chance_length = 16;
constexpr char k_name_begin[] = ".zol-";
constexpr char k_name_end[] = ".tmp";
// With the zero at its end.
using WorkingName = std::array<char, sizeof k_name_begin + k_chance_length + sizeof k_name_end - 1>;

// Letters from the system's own source of chance.
bool make_unforeseen(WorkingName& name) {
  unsigned char chance[k_chance_length];
  if (::getentropy(chance, sizeof chance) != 0) return false;
  char* end = std::copy_n(k_name_begin, sizeof k_name_begin - 1, name.data());
  for (const unsigned char each : chance) *end++ = static_cast<char>('a' + each % 26);
  std::copy_n(k_name_end, sizeof k_name_end, end);
  return true;
}

// The names of working files, where a signal handler finds them. A handler that comes upon a place
// while it changes hands removes nothing, since no other file has such a name.
struct NoticedName {
  static constexpr int k_free = -1;
  static constexpr int k_claimed = -2;

  std::atomic<int> directory{k_free};
  WorkingName name;
};
NoticedName g_noticed[16];

NoticedName* notice(int directory, const WorkingName& name) {
  for (NoticedName& each : g_noticed) {
    int expected = NoticedName::k_free;
    if (!each.directory.compare_exchange_strong(expected, NoticedName::k_claimed)) continue;
    each.name = name;
    each.directory = directory;
    return &each;
  }
  return nullptr;
}

// Room first, so that a full disk shows while the older contents are whole.
bool reserve(int to, int from) {
#if defined(__linux__)
  const std::int64_t size = seek_handle(from, 0, Origin::end);
  const std::int64_t older_size = seek_handle(to, 0, Origin::end);
  if (size == -1 || older_size == -1 || seek_handle(to, 0, Origin::begin) == -1) return false;
  const auto allocate = [&] { return ::fallocate(to, FALLOC_FL_KEEP_SIZE, 0, size); };
  if (size == 0 || uninterrupted(allocate) == 0 || errno == EOPNOTSUPP) return true;
  const int error = errno;
  resize_handle(to, older_size);
  errno = error;
  return false;
#else
  static_cast<void>(from);
  static_cast<void>(to);
  return true;
#endif
}

bool copy_bytes(int from, int to) {
  char block[1 << 14];
  std::int64_t size = 0;
  if (seek_handle(from, 0, Origin::begin) == -1) return false;
  while (true) {
    const std::size_t count = read_handle(from, block, sizeof block);
    if (count < sizeof block && errno != 0) return false;
    if (!write_handle(to, block, count)) return false;
    size += static_cast<std::int64_t>(count);
    if (count < sizeof block) return resize_handle(to, size);
  }
}

// What stands before the last component of a path, with the separator.
std::string directory_of(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

// Follows the links at the end of a path, also to a file that is not there.
bool follow_links(std::string& path) {
  constexpr int k_most_links = 40;
  char text[PATH_MAX];
  for (int i = 0; i < k_most_links; ++i) {
    const ssize_t size = ::readlink(path.c_str(), text, sizeof text);
    if (size == -1) return errno == EINVAL || errno == ENOENT;
    const std::string link(text, static_cast<std::size_t>(size));
    path = link.compare(0, 1, "/") == 0 ? link : directory_of(path).append(link);
  }
  errno = ELOOP;
  return false;
}

}  // namespace

class ReplacementFile::Work {
 public:
  ~Work();

  bool start(const std::wstring& path);
  Outcome commit();

  FileHandle handle = k_no_file;

 private:
  bool find_target(const std::wstring& path);
  bool open_directory();
  bool find_older();
  bool make_file();
  bool open_unnamed(mode_t mode);
  bool open_named(mode_t mode);
  bool link_as(const char* name) const;
  bool give_name();
  void forget_name();
  Outcome settle() const;
  Outcome overwrite();

  std::string target_;          // links followed
  const char* name_ = nullptr;  // its last component
  FileHandle directory_ = k_no_file;
  bool has_older_ = false;
  internal::FileAccess older_;
  bool has_name_ = false;
  WorkingName working_name_ = {};
  NoticedName* noticed_ = nullptr;
};

ReplacementFile::Work::~Work() {
  const int error = errno;
  if (has_name_) ::unlinkat(directory_, working_name_.data(), 0);
  forget_name();
  if (handle != k_no_file) ::close(handle);
  if (directory_ != k_no_file) ::close(directory_);
  errno = error;
}

bool ReplacementFile::Work::start(const std::wstring& path) {
  return find_target(path) && open_directory() && find_older() && make_file();
}

bool ReplacementFile::Work::find_target(const std::wstring& path) {
  if (path.find(L'\0') != std::wstring::npos) {
    errno = EINVAL;
    return false;
  }
  target_ = utf8_path(path);
  // The system itself goes first: it does not follow every link that can be read.
  struct stat status = {};
  if (::stat(target_.c_str(), &status) != 0 && errno != ENOENT) return false;
  if (!follow_links(target_)) return false;
  name_ = target_.c_str() + directory_of(target_).size();
  return true;
}

// Everything happens in the directory that is open, whatever is renamed meanwhile.
bool ReplacementFile::Work::open_directory() {
  const std::string path = directory_of(target_);
  const char* const name = path.empty() ? "." : path.c_str();
  constexpr int k_flags = O_DIRECTORY | O_CLOEXEC;
  directory_ = uninterrupted([&] { return ::open(name, O_RDONLY | k_flags); });
#if defined(O_PATH)
  // One that may be written but not read will do; only its entries can't be synced.
  if (directory_ == k_no_file && errno == EACCES) directory_ = ::open(name, O_PATH | k_flags);
#endif
  return directory_ != k_no_file;
}

bool ReplacementFile::Work::find_older() {
  struct stat status = {};
  if (::fstatat(directory_, name_, &status, AT_SYMLINK_NOFOLLOW) != 0) return errno == ENOENT;
  if (!S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return false;
  }
  has_older_ = true;
  // Whoever may write to the directory could replace the file; one that is protected stays.
  return ::faccessat(directory_, name_, W_OK, AT_EACCESS) == 0 && older_.read(target_, status);
}

bool ReplacementFile::Work::make_file() {
  // A new file has the rights of any new file from the beginning. One that replaces another is
  // closed to everyone until it has the rights of that one.
  const mode_t mode = has_older_ ? 0600 : 0666;
  if (!open_unnamed(mode) && !open_named(mode)) return false;
  return !has_older_ || older_.give_to(handle);
}

#if defined(O_TMPFILE)

namespace {

// Where the system shows an open file, so that it can be linked.
struct ShownFile {
  explicit ShownFile(int handle) { std::snprintf(path, sizeof path, "/proc/self/fd/%d", handle); }
  char path[32];
};

}  // namespace

// Dies with the process, whatever ends that.
bool ReplacementFile::Work::open_unnamed(mode_t mode) {
  const int file = uninterrupted(
      [&] { return ::openat(directory_, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode); });
  if (file == k_no_file) return false;
  if (::access(ShownFile(file).path, F_OK) != 0) {
    ::close(file);
    return false;
  }
  handle = file;
  return true;
}

bool ReplacementFile::Work::link_as(const char* name) const {
  return ::linkat(AT_FDCWD, ShownFile(handle).path, directory_, name, AT_SYMLINK_FOLLOW) == 0;
}

#else

bool ReplacementFile::Work::open_unnamed(mode_t) { return false; }
bool ReplacementFile::Work::link_as(const char*) const { return false; }

#endif

bool ReplacementFile::Work::open_named(mode_t mode) {
  for (int attempt = 0; attempt < k_most_attempts; ++attempt) {
    if (!make_unforeseen(working_name_)) return false;
    noticed_ = notice(directory_, working_name_);
    handle = uninterrupted([&] {
      return ::openat(directory_, working_name_.data(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC,
                      mode);
    });
    has_name_ = handle != k_no_file;
    if (has_name_) return true;
    forget_name();
    if (errno != EEXIST) break;
  }
  return false;
}

// What is renamed must have a name.
bool ReplacementFile::Work::give_name() {
  for (int attempt = 0; attempt < k_most_attempts && !has_name_; ++attempt) {
    if (!make_unforeseen(working_name_)) return false;
    noticed_ = notice(directory_, working_name_);
    has_name_ = link_as(working_name_.data());
    if (has_name_) break;
    forget_name();
    if (errno != EEXIST) return false;
  }
  return has_name_;
}

void ReplacementFile::Work::forget_name() {
  has_name_ = false;
  if (noticed_ != nullptr) std::exchange(noticed_, nullptr)->directory = NoticedName::k_free;
}

ReplacementFile::Outcome ReplacementFile::Work::commit() {
  if (!sync_handle(handle)) return Outcome::kept;
  // Where nothing stands a file without a name gets its own at once, unless somebody was faster.
  if (!has_older_ && !has_name_ && link_as(name_)) return settle();
  if (!give_name()) return Outcome::kept;
  if (::renameat(directory_, working_name_.data(), directory_, name_) == 0) {
    forget_name();
    return settle();
  }
  return errno == EBUSY ? overwrite() : Outcome::kept;
}

// So that the new name survives a loss of power, where the file system can promise that.
ReplacementFile::Outcome ReplacementFile::Work::settle() const {
  return sync_handle(directory_) ? Outcome::replaced : Outcome::not_durable;
}

ReplacementFile::Outcome ReplacementFile::Work::overwrite() {
  const int file =
      uninterrupted([&] { return ::openat(directory_, name_, O_WRONLY | O_NOFOLLOW | O_CLOEXEC); });
  if (file == k_no_file) return Outcome::kept;
  const bool is_ready = reserve(file, handle);
  const bool is_done = is_ready && copy_bytes(handle, file) && sync_handle(file);
  internal::abandon(file);
  return is_done ? Outcome::overwritten : is_ready ? Outcome::broken : Outcome::kept;
}

void remove_working_files() noexcept {
  const int error = errno;
  for (const NoticedName& each : g_noticed) {
    const int directory = each.directory;
    if (directory >= 0) ::unlinkat(directory, each.name.data(), 0);
  }
  errno = error;
}

#endif

ReplacementFile::ReplacementFile(const std::wstring& path) : work_(std::make_unique<Work>()) {
  if (!work_->start(path)) work_.reset();
}

ReplacementFile::~ReplacementFile() = default;

FileHandle ReplacementFile::handle() const { return work_ == nullptr ? k_no_file : work_->handle; }

ReplacementFile::Outcome ReplacementFile::commit() {
  if (work_ == nullptr) {
    errno = EBADF;
    return Outcome::kept;
  }
  const Outcome outcome = work_->commit();
  work_.reset();
  return outcome;
}

}  // namespace zol::port
