#include "port/files.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "port/wide_text.h"

#if defined(_WIN32)
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <sys/utime.h>
#include <windows.h>
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

// The runtime's calls take 32-bit counts.
constexpr std::size_t k_largest_step = std::size_t{1} << 30;

int share_flag(Share share) {
  switch (share) {
    case Share::deny_write:
      return _SH_DENYWR;
    case Share::deny_read:
      return _SH_DENYRD;
    case Share::deny_none:
      break;
  }
  return _SH_DENYNO;
}

}  // namespace

std::FILE* open_file(const std::wstring& path, const char* mode) {
  if (!is_usable(path)) return nullptr;
  return _wfopen(path.c_str(), std::wstring(mode, mode + std::strlen(mode)).c_str());
}

std::FILE* open_file(const char* path, const char* mode) { return std::fopen(path, mode); }

bool regular_file_size(std::FILE* file, std::uint64_t* size) {
  return regular_file_size(_fileno(file), size);
}

bool regular_file_size(FileHandle file, std::uint64_t* size) {
  struct _stat64 state;
  if (_fstat64(file, &state) != 0 || (state.st_mode & _S_IFREG) == 0) return false;
  *size = static_cast<std::uint64_t>(state.st_size);
  return true;
}

bool remove_file(const std::wstring& path) {
  return is_usable(path) && _wremove(path.c_str()) == 0;
}

bool rename_file(const std::wstring& from, const std::wstring& to) {
  if (!is_usable(from) || !is_usable(to)) return false;
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    return true;
  }
  errno = GetLastError() == ERROR_FILE_NOT_FOUND ? ENOENT : EACCES;
  return false;
}

FileHandle open_handle(const std::wstring& path, const OpenOptions& options) {
  if (!is_usable(path)) return k_no_file;
  int flags = _O_BINARY | _O_NOINHERIT;
  flags |= options.access == Access::read    ? _O_RDONLY
           : options.access == Access::write ? _O_WRONLY
                                             : _O_RDWR;
  if (options.create) flags |= _O_CREAT;
  if (options.truncate) flags |= _O_TRUNC;
  if (options.fresh) flags |= _O_EXCL;
  int handle = k_no_file;
  const errno_t error =
      _wsopen_s(&handle, path.c_str(), flags, share_flag(options.share), _S_IREAD | _S_IWRITE);
  if (error == 0) return handle;
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

bool sync_handle(FileHandle handle) { return _commit(handle) == 0; }

bool get_attributes(const std::wstring& path, std::uint32_t& attributes) {
  if (!is_usable(path)) return false;
  attributes = GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) return true;
  errno = ENOENT;
  return false;
}

bool set_attributes(const std::wstring& path, std::uint32_t attributes) {
  if (!is_usable(path)) return false;
  if (SetFileAttributesW(path.c_str(), attributes)) return true;
  errno = EACCES;
  return false;
}

bool get_modification_time(const std::wstring& path, std::time_t& time) {
  struct _stat64 status;
  if (!is_usable(path) || _wstat64(path.c_str(), &status) != 0) return false;
  time = status.st_mtime;
  return true;
}

bool set_modification_time(const std::wstring& path, std::time_t time) {
  __utimbuf64 times = {time, time};
  return is_usable(path) && _wutime64(path.c_str(), &times) == 0;
}

bool to_local_time(std::time_t time, std::tm& fields) {
  return _localtime64_s(&fields, &time) == 0;
}

std::wstring system_error_text(int error) {
  wchar_t text[256] = {};
  return _wcserror_s(text, error) == 0 ? std::wstring(text) : std::wstring();
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
