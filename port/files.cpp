#include "port/files.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <iterator>
#include <string_view>

#include "port/wide_text.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>

#include "port/internal/windows_calls.h"
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "port/internal/posix_calls.h"
#endif

namespace zol::port {

std::string utf8_path(const std::wstring& path) { return to_utf8(path); }

namespace {

// No system call may take a part of a path for the whole.
bool is_usable(const std::wstring& path) {
  if (path.find(L'\0') == std::wstring::npos) return true;
  errno = EINVAL;
  return false;
}

}  // namespace

std::size_t read_file(std::FILE* file, void* buffer, std::size_t count) {
  std::size_t done = 0;
  while (true) {
    done += std::fread(static_cast<char*>(buffer) + done, 1, count - done, file);
    if (done == count || std::ferror(file) == 0 || errno != EINTR) return done;
    std::clearerr(file);
  }
}

#if defined(_WIN32)

namespace {

using internal::fail_by_system;
using internal::system_path;

// The runtime's calls take 32-bit counts.
constexpr std::size_t k_largest_step = std::size_t{1} << 30;

constexpr DWORD k_fat_attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                   FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_DIRECTORY |
                                   FILE_ATTRIBUTE_ARCHIVE;

// The file may always be renamed or deleted by others, as elsewhere: whoever has it open keeps it.
DWORD shared_access(Share share) {
  switch (share) {
    case Share::deny_write:
      return FILE_SHARE_DELETE | FILE_SHARE_READ;
    case Share::deny_read:
      return FILE_SHARE_DELETE | FILE_SHARE_WRITE;
    case Share::deny_none:
      break;
  }
  return FILE_SHARE_DELETE | FILE_SHARE_READ | FILE_SHARE_WRITE;
}

// Closes what it holds at the end of its scope.
class SystemHandle {
 public:
  explicit SystemHandle(HANDLE handle) : handle_(handle) {}
  SystemHandle(const SystemHandle&) = delete;
  SystemHandle& operator=(const SystemHandle&) = delete;
  ~SystemHandle() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
  }

  bool is_open() const { return handle_ != INVALID_HANDLE_VALUE; }
  operator HANDLE() const { return handle_; }

 private:
  HANDLE handle_;
};

bool is_directory(const std::wstring& system_path) {
  const DWORD attributes = GetFileAttributesW(system_path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// A descriptor of the runtime, in binary and not inherited; k_no_file if there is none.
FileHandle open_descriptor(const std::wstring& path, DWORD access, Share share, DWORD disposition,
                           int flags) {
  if (!is_usable(path)) return k_no_file;
  const std::wstring name = system_path(path);
  const HANDLE file = CreateFileW(name.c_str(), access, shared_access(share), nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    fail_by_system();
    if (errno == EACCES && is_directory(name)) errno = EISDIR;
    return k_no_file;
  }
  const FileHandle handle =
      _open_osfhandle(reinterpret_cast<std::intptr_t>(file), flags | _O_BINARY | _O_NOINHERIT);
  if (handle == k_no_file) CloseHandle(file);
  return handle;
}

HANDLE system_handle(FileHandle handle) { return reinterpret_cast<HANDLE>(_get_osfhandle(handle)); }

// Hundreds of nanoseconds since 1601, and seconds since 1970.
constexpr std::int64_t k_ticks = 10'000'000;
constexpr std::int64_t k_seconds_before_1970 = 11'644'473'600;

}  // namespace

static_assert(sizeof(std::time_t) == sizeof(std::int64_t), "build with a time of 64 bits");

std::FILE* open_file(const std::wstring& path, const char* mode) {
  const bool updates = std::strchr(mode, '+') != nullptr;
  const bool reads = mode[0] == 'r';
  DWORD access = updates ? GENERIC_READ | GENERIC_WRITE : reads ? GENERIC_READ : GENERIC_WRITE;
  DWORD disposition = reads ? OPEN_EXISTING : mode[0] == 'w' ? CREATE_ALWAYS : OPEN_ALWAYS;
  if (std::strchr(mode, 'x') != nullptr) disposition = CREATE_NEW;
  const FileHandle handle =
      open_descriptor(path, access, Share::deny_none, disposition, mode[0] == 'a' ? _O_APPEND : 0);
  if (handle == k_no_file) return nullptr;
  std::FILE* const file = _fdopen(handle, mode);
  if (file == nullptr) _close(handle);
  return file;
}

std::FILE* open_file(const char* path, const char* mode) {
  const int size = MultiByteToWideChar(CP_ACP, 0, path, -1, nullptr, 0);
  if (size == 0) {
    errno = EINVAL;
    return nullptr;
  }
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_ACP, 0, path, -1, wide.data(), size);
  wide.pop_back();  // the terminator
  return open_file(wide, mode);
}

bool regular_file_size(std::FILE* file, std::uint64_t* size) {
  return regular_file_size(_fileno(file), size);
}

bool regular_file_size(FileHandle file, std::uint64_t* size) {
  LARGE_INTEGER length = {};
  const HANDLE handle = system_handle(file);
  if (GetFileType(handle) != FILE_TYPE_DISK || !GetFileSizeEx(handle, &length)) return false;
  *size = static_cast<std::uint64_t>(length.QuadPart);
  return true;
}

bool remove_file(const std::wstring& path) {
  return is_usable(path) && (DeleteFileW(system_path(path).c_str()) || fail_by_system());
}

bool rename_file(const std::wstring& from, const std::wstring& to) {
  constexpr DWORD k_flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  return is_usable(from) && is_usable(to) &&
         (MoveFileExW(system_path(from).c_str(), system_path(to).c_str(), k_flags) ||
          fail_by_system());
}

FileHandle open_handle(const std::wstring& path, const OpenOptions& options) {
  const DWORD access = options.access == Access::read    ? GENERIC_READ
                       : options.access == Access::write ? GENERIC_WRITE
                                                         : GENERIC_READ | GENERIC_WRITE;
  const DWORD disposition = !options.create ? OPEN_EXISTING
                            : options.fresh ? CREATE_NEW
                                            : OPEN_ALWAYS;
  const FileHandle handle = open_descriptor(path, access, options.share, disposition,
                                            options.access == Access::read ? _O_RDONLY : 0);
  if (handle == k_no_file || !options.truncate) return handle;
  // A device has no length to lose.
  if (GetFileType(system_handle(handle)) != FILE_TYPE_DISK || resize_handle(handle, 0)) {
    return handle;
  }
  const int error = errno;
  _close(handle);
  errno = error;
  return k_no_file;
}

bool close_handle(FileHandle handle) { return _close(handle) == 0; }

std::size_t read_handle(FileHandle handle, void* buffer, std::size_t count) {
  errno = 0;
  std::size_t done = 0;
  while (done < count) {
    const auto step = static_cast<unsigned>(std::min(count - done, k_largest_step));
    const int got = _read(handle, static_cast<char*>(buffer) + done, step);
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

bool write_handle(FileHandle handle, const void* buffer, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const auto step = static_cast<unsigned>(std::min(count - done, k_largest_step));
    const int put = _write(handle, static_cast<const char*>(buffer) + done, step);
    if (put <= 0) {
      if (put == 0) errno = ENOSPC;
      return false;
    }
    done += static_cast<std::size_t>(put);
  }
  return true;
}

std::int64_t seek_handle(FileHandle handle, std::int64_t offset, Origin origin) {
  const int whence = origin == Origin::begin ? SEEK_SET
                     : origin == Origin::end ? SEEK_END
                                             : SEEK_CUR;
  return _lseeki64(handle, offset, whence);
}

bool resize_handle(FileHandle handle, std::int64_t length) {
  const errno_t error = _chsize_s(handle, length);
  if (error != 0) errno = error;
  return error == 0;
}

bool sync_handle(FileHandle handle) {
  return FlushFileBuffers(system_handle(handle)) || fail_by_system();
}

bool get_attributes(const std::wstring& path, std::uint32_t& attributes) {
  if (!is_usable(path)) return false;
  const DWORD all = GetFileAttributesW(system_path(path).c_str());
  if (all == INVALID_FILE_ATTRIBUTES) return fail_by_system();
  attributes = all & k_fat_attributes;
  return true;
}

bool set_attributes(const std::wstring& path, std::uint32_t attributes) {
  if (!is_usable(path)) return false;
  const DWORD settable = attributes & k_fat_attributes & ~DWORD{FILE_ATTRIBUTE_DIRECTORY};
  return SetFileAttributesW(system_path(path).c_str(),
                            settable != 0 ? settable : FILE_ATTRIBUTE_NORMAL) ||
         fail_by_system();
}

bool get_modification_time(const std::wstring& path, std::time_t& time) {
  if (!is_usable(path)) return false;
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!GetFileAttributesExW(system_path(path).c_str(), GetFileExInfoStandard, &data)) {
    return fail_by_system();
  }
  const std::int64_t ticks = static_cast<std::int64_t>(data.ftLastWriteTime.dwHighDateTime) << 32 |
                             data.ftLastWriteTime.dwLowDateTime;
  time = ticks / k_ticks - k_seconds_before_1970;
  return true;
}

bool set_modification_time(const std::wstring& path, std::time_t time) {
  if (!is_usable(path)) return false;
  constexpr std::int64_t k_most_seconds = INT64_MAX / k_ticks - k_seconds_before_1970;
  if (time < -k_seconds_before_1970 || time > k_most_seconds) {
    errno = EINVAL;
    return false;
  }
  const SystemHandle file(CreateFileW(system_path(path).c_str(), FILE_WRITE_ATTRIBUTES,
                                      shared_access(Share::deny_none), nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  const std::int64_t ticks = (time + k_seconds_before_1970) * k_ticks;
  const FILETIME written = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  return (file.is_open() && SetFileTime(file, nullptr, nullptr, &written)) || fail_by_system();
}

bool to_local_time(std::time_t time, std::tm& fields) {
  return _localtime64_s(&fields, &time) == 0;
}

std::wstring system_error_text(int error) {
  wchar_t text[256] = {};
  if (_wcserror_s(text, std::size(text), error) != 0) return {};
  const std::wstring_view found = text;
  return found == L"Unknown error" ? std::wstring() : std::wstring(found);
}

#else

namespace {

using internal::abandon;
using internal::uninterrupted;

// Never a directory: the system refuses to write to one, but it opens for reading and fails later.
int open_descriptor(const char* path, int flags, unsigned mode) {
  const int descriptor =
      uninterrupted([&] { return ::open(path, flags | O_CLOEXEC | O_NOCTTY, mode); });
  if (descriptor == -1 || (flags & O_ACCMODE) != O_RDONLY) return descriptor;
  struct stat status = {};
  if (::fstat(descriptor, &status) == 0) {
    if (!S_ISDIR(status.st_mode)) return descriptor;
    errno = EISDIR;
  }
  abandon(descriptor);
  return -1;
}

// A file system without locks leaves the file to everyone.
bool lock(int descriptor, Access access) {
  const int kind = access == Access::read ? LOCK_SH : LOCK_EX;
  if (uninterrupted([&] { return ::flock(descriptor, kind | LOCK_NB); }) == 0) return true;
  if (errno != EWOULDBLOCK) return true;
  errno = EACCES;
  return false;
}

bool get_status(const std::wstring& path, struct stat& status) {
  return is_usable(path) && ::stat(utf8_path(path).c_str(), &status) == 0;
}

}  // namespace

std::FILE* open_file(const std::wstring& path, const char* mode) {
  return is_usable(path) ? open_file(utf8_path(path).c_str(), mode) : nullptr;
}

std::FILE* open_file(const char* path, const char* mode) {
  const bool updates = std::strchr(mode, '+') != nullptr;
  int flags = updates ? O_RDWR : mode[0] == 'r' ? O_RDONLY : O_WRONLY;
  if (mode[0] == 'w') flags |= O_CREAT | O_TRUNC;
  if (mode[0] == 'a') flags |= O_CREAT | O_APPEND;
  if (std::strchr(mode, 'x') != nullptr) flags |= O_EXCL;
  const int descriptor = open_descriptor(path, flags, 0666);
  if (descriptor == -1) return nullptr;
  std::FILE* file = ::fdopen(descriptor, mode);
  if (file == nullptr) abandon(descriptor);
  return file;
}

bool regular_file_size(std::FILE* file, std::uint64_t* size) {
  return regular_file_size(::fileno(file), size);
}

bool regular_file_size(FileHandle file, std::uint64_t* size) {
  struct stat state;
  if (::fstat(file, &state) != 0 || !S_ISREG(state.st_mode)) return false;
  *size = static_cast<std::uint64_t>(state.st_size);
  return true;
}

bool remove_file(const std::wstring& path) {
  return is_usable(path) && ::unlink(utf8_path(path).c_str()) == 0;
}

bool rename_file(const std::wstring& from, const std::wstring& to) {
  return is_usable(from) && is_usable(to) &&
         std::rename(utf8_path(from).c_str(), utf8_path(to).c_str()) == 0;
}

FileHandle open_handle(const std::wstring& path, const OpenOptions& options) {
  int flags = options.access == Access::read    ? O_RDONLY
              : options.access == Access::write ? O_WRONLY
                                                : O_RDWR;
  if (options.create) flags |= O_CREAT;
  if (options.fresh) flags |= O_EXCL;
  // Another holder's file must not lose its contents, so it is cut only after the lock.
  if (!is_usable(path)) return k_no_file;
  const int descriptor = open_descriptor(utf8_path(path).c_str(), flags, options.mode);
  if (descriptor == -1) return k_no_file;
  if (options.share == Share::deny_none || lock(descriptor, options.access)) {
    // A device has no length to lose.
    if (!options.truncate || resize_handle(descriptor, 0) || errno == EINVAL) return descriptor;
  }
  abandon(descriptor);
  return k_no_file;
}

bool close_handle(FileHandle handle) { return ::close(handle) == 0; }

std::size_t read_handle(FileHandle handle, void* buffer, std::size_t count) {
  errno = 0;
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got = uninterrupted([&] {
      return ::read(handle, static_cast<char*>(buffer) + done,
                    std::min<std::size_t>(count - done, SSIZE_MAX));
    });
    if (got == -1) return done;
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  errno = 0;  // an interrupted call that went on has left its number
  return done;
}

bool write_handle(FileHandle handle, const void* buffer, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t put = uninterrupted([&] {
      return ::write(handle, static_cast<const char*>(buffer) + done,
                     std::min<std::size_t>(count - done, SSIZE_MAX));
    });
    if (put <= 0) {
      if (put == 0) errno = EIO;
      return false;
    }
    done += static_cast<std::size_t>(put);
  }
  return true;
}

std::int64_t seek_handle(FileHandle handle, std::int64_t offset, Origin origin) {
  const int whence = origin == Origin::begin ? SEEK_SET
                     : origin == Origin::end ? SEEK_END
                                             : SEEK_CUR;
  static_assert(sizeof(off_t) == sizeof(std::int64_t), "build with 64-bit file offsets");
  return ::lseek(handle, offset, whence);
}

bool resize_handle(FileHandle handle, std::int64_t length) {
  return uninterrupted([&] { return ::ftruncate(handle, length); }) == 0;
}

bool sync_handle(FileHandle handle) {
  if (uninterrupted([&] { return ::fsync(handle); }) == 0) return true;
  return errno == EINVAL || errno == EROFS;  // a device that has nothing to commit to
}

bool get_attributes(const std::wstring& path, std::uint32_t& attributes) {
  struct stat status = {};
  if (!get_status(path, status)) return false;
  attributes = S_ISDIR(status.st_mode) ? k_attribute_directory : k_attribute_archive;
  if ((status.st_mode & S_IWUSR) == 0) attributes |= k_attribute_read_only;
  if ((status.st_mode & (S_IRUSR | S_IRGRP | S_IROTH)) == 0) attributes |= k_attribute_hidden;
  return true;
}

bool set_attributes(const std::wstring& path, std::uint32_t attributes) {
  struct stat status = {};
  if (!get_status(path, status)) return false;
  mode_t mode = status.st_mode & 07777;
  if ((attributes & k_attribute_read_only) != 0) {
    mode &= static_cast<mode_t>(~(S_IWUSR | S_IWGRP | S_IWOTH));
  } else {
    mode |= S_IWUSR;
  }
  return ::chmod(utf8_path(path).c_str(), mode) == 0;
}

bool get_modification_time(const std::wstring& path, std::time_t& time) {
  struct stat status = {};
  if (!get_status(path, status)) return false;
  time = status.st_mtime;
  return true;
}

bool set_modification_time(const std::wstring& path, std::time_t time) {
  const timespec times[2] = {{0, UTIME_OMIT}, {time, 0}};
  return is_usable(path) && ::utimensat(AT_FDCWD, utf8_path(path).c_str(), times, 0) == 0;
}

bool to_local_time(std::time_t time, std::tm& fields) {
  return ::localtime_r(&time, &fields) != nullptr;
}

std::wstring system_error_text(int error) {
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 32)
  const char* text = ::strerrordesc_np(error);  // never translated
#else
  const char* text = std::strerror(error);
#endif
  return text == nullptr ? std::wstring() : from_utf8(text, std::strlen(text));
}

#endif

PathParts split_path(const std::wstring& path) {
  constexpr std::size_t k_longest_directory = 32766;
  constexpr std::size_t k_longest_title = 255;
  constexpr std::size_t k_longest_extension = 255;
  const auto is_letter = [](wchar_t c) {
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
  };
  const std::size_t after_drive = path.size() >= 2 && path[1] == L':' && is_letter(path[0]) ? 2 : 0;
  const std::size_t separator = path.find_last_of(L"/\\");
  const std::size_t name =
      separator == std::wstring::npos ? after_drive : std::max(separator + 1, after_drive);
  std::size_t dot = path.rfind(L'.');
  if (dot == std::wstring::npos || dot < name) dot = path.size();

  if (name - after_drive > k_longest_directory || dot - name > k_longest_title ||
      path.size() - dot > k_longest_extension) {
    return {};
  }
  return {path.substr(0, after_drive), path.substr(after_drive, name - after_drive),
          path.substr(name, dot - name), path.substr(dot)};
}

}  // namespace zol::port
