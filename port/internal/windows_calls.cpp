#include "port/internal/windows_calls.h"

#include <cerrno>

namespace zol::port::internal {

namespace {

// A directory must leave room for a short name.
constexpr std::size_t k_shortest_long_path = MAX_PATH - 12;

bool begins_with(const std::wstring& path, const wchar_t* begin) {
  return path.rfind(begin, 0) == 0;
}

struct ErrorNumber {
  DWORD error;
  int number;
};

constexpr ErrorNumber k_numbers[] = {
    {ERROR_FILE_NOT_FOUND, ENOENT},
    {ERROR_PATH_NOT_FOUND, ENOENT},
    {ERROR_INVALID_DRIVE, ENOENT},
    {ERROR_INVALID_NAME, ENOENT},
    {ERROR_BAD_PATHNAME, ENOENT},
    {ERROR_BAD_NETPATH, ENOENT},
    {ERROR_BAD_NET_NAME, ENOENT},
    {ERROR_DIRECTORY, ENOTDIR},
    {ERROR_FILENAME_EXCED_RANGE, ENAMETOOLONG},
    {ERROR_FILE_EXISTS, EEXIST},
    {ERROR_ALREADY_EXISTS, EEXIST},
    {ERROR_ACCESS_DENIED, EACCES},
    {ERROR_SHARING_VIOLATION, EACCES},
    {ERROR_LOCK_VIOLATION, EACCES},
    {ERROR_USER_MAPPED_FILE, EACCES},
    {ERROR_DELETE_PENDING, EACCES},
    {ERROR_PRIVILEGE_NOT_HELD, EACCES},
    {ERROR_UNABLE_TO_REMOVE_REPLACED, EACCES},
    {ERROR_UNABLE_TO_MOVE_REPLACEMENT, EACCES},
    {ERROR_UNABLE_TO_MOVE_REPLACEMENT_2, EACCES},
    {ERROR_WRITE_PROTECT, EROFS},
    {ERROR_DISK_FULL, ENOSPC},
    {ERROR_HANDLE_DISK_FULL, ENOSPC},
    {ERROR_FILE_TOO_LARGE, EFBIG},
    {ERROR_TOO_MANY_OPEN_FILES, EMFILE},
    {ERROR_NOT_ENOUGH_MEMORY, ENOMEM},
    {ERROR_OUTOFMEMORY, ENOMEM},
    {ERROR_NO_SYSTEM_RESOURCES, ENOMEM},
    {ERROR_NOT_SAME_DEVICE, EXDEV},
    {ERROR_INVALID_HANDLE, EBADF},
    {ERROR_INVALID_PARAMETER, EINVAL},
    {ERROR_BROKEN_PIPE, EPIPE},
};

}  // namespace

std::wstring system_path(const std::wstring& path) {
  if (begins_with(path, L"\\\\?\\") || begins_with(path, L"\\\\.\\")) return path;
  std::wstring whole(MAX_PATH, L'\0');
  const auto ask = [&] {
    return GetFullPathNameW(path.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr);
  };
  DWORD size = ask();
  if (size > whole.size()) {
    whole.resize(size);
    size = ask();
  }
  if (size < k_shortest_long_path || size > whole.size()) return path;
  whole.resize(size);
  return begins_with(whole, L"\\\\") ? L"\\\\?\\UNC" + whole.substr(1) : L"\\\\?\\" + whole;
}

int error_number(DWORD error) {
  for (const ErrorNumber& each : k_numbers) {
    if (each.error == error) return each.number;
  }
  return EIO;
}

bool fail_by_system() {
  errno = error_number(GetLastError());
  return false;
}

}  // namespace zol::port::internal
