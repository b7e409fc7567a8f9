#include "zip/exception.h"

#include <algorithm>
#include <cerrno>

#include "port/files.h"
#include "port/wide_text.h"

namespace {

struct CauseText {
  std::int32_t cause;
  const wchar_t* text;
};

constexpr CauseText k_cause_texts[] = {
    {1, L"Not super-user."},
    {2, L"No such file or directory."},
    {4, L"Interrupted system call."},
    {5, L"I/O error."},
    {6, L"No such device or address."},
    {9, L"Bad file number."},
    {12, L"Not enough space."},
    {13, L"Permission denied."},
    {14, L"Bad address."},
    {17, L"File exists."},
    {18, L"Cross-device link."},
    {19, L"No such device."},
    {20, L"Not a directory."},
    {21, L"Is a directory."},
    {22, L"Invalid argument."},
    {23, L"File table overflow."},
    {24, L"Too many open files."},
    {27, L"File too large."},
    {28, L"No space left on device."},
    {29, L"Illegal seek."},
    {30, L"Read-only file system."},
    {101, L"Damaged or not a zip file."},
    {102, L"Crc is mismatched."},
    {103, L"There is no spanned archive callback object set."},
    {104, L"Volume change aborted in a segmented archive."},
    {105, L"Action aborted."},
    {106, L"Action aborted safely."},
    {107, L"The device selected for the spanned archive is not removable."},
    {108, L"The limit of the maximum volumes reached."},
    {109, L"The limit of the maximum files in an archive reached."},
    {110,
     L"The filename, the comment or the local or central extra field of the file added to the "
     L"archive is too long."},
    {111, L"The file size is too large to be supported."},
    {112, L"An incorrect password set for the file being decrypted."},
    {113, L"The directory with a non-zero size found while testing."},
    {114, L"An internal error."},
    {117, L"Cannot create a file for the specified platform."},
    {118,
     L"The central directory was not found in the archive (or you were trying to open not the last "
     L"volume of a segmented archive)."},
    {119, L"Mismatched authentication code in WinZip AEC decrypted data."},
    {120,
     L"The Zip64 format has not been enabled for the library, but is required to use the archive."},
    {121,
     L"WinZip AES encryption has not been enabled for the library, but is required to decompress "
     L"the archive."},
    {122, L"The collection is empty and the bounds do not exist."},
    {500, L"Zlib library error (end of stream)."},
    {503, L"Zlib library error (stream error)."},
    {504, L"Zlib library error (data error)."},
    {505, L"Not enough memory."},
    {506, L"Zlib library error (buffer error)."},
    {507, L"Zlib library error (version error)."},
    {600, L"Bzlib library sequence error."},
    {601, L"Bzlib library parameters error."},
    {602, L"Bzlib library memory error."},
    {603, L"Bzlib library data error."},
    {604, L"Bzlib library error (invalid magic value)."},
    {605, L"Bzlib library IO error."},
    {606, L"Bzlib library error (unexpected EOF)."},
    {607, L"Bzlib library error (buffer full)."},
    {608, L"Bzlib library config error."},
    {609, L"Bzlib library internal error."},
};

const wchar_t* find_text(std::int32_t cause) {
  const auto* row = std::find_if(std::begin(k_cause_texts), std::end(k_cause_texts),
                                 [cause](const CauseText& each) { return each.cause == cause; });
  return row == std::end(k_cause_texts) ? nullptr : row->text;
}

std::wstring errno_text(std::int32_t error) {
  if (const wchar_t* text = find_text(error)) return text;
  std::wstring text = error > 0 ? zol::port::system_error_text(error) : std::wstring();
  return text.empty() ? L"Unknown error" : text;
}

std::wstring cause_text(std::int32_t cause, int error) {
  if (const wchar_t* text = find_text(cause)) return text;
  if (cause == CZipException::notRemoved) {
    return L"Error while removing a file (" + errno_text(error) + L").";
  }
  if (cause == CZipException::notRenamed) {
    return L"Error while renaming a file (" + errno_text(error) + L").";
  }
  const bool is_errno = cause > 0 && cause < CZipException::generic;
  return errno_text(is_errno ? cause : error);
}

}  // namespace

CZipException::CZipException(std::int32_t cause, const std::wstring& fileName)
    : cause_(cause), file_name_(fileName) {
  const int error = errno;
  message_ = "archive cause " + std::to_string(cause) + ": " +
             zol::port::to_utf8(cause_text(cause, error));
  if (!fileName.empty()) message_ += " (" + zol::port::to_utf8(fileName) + ")";
  errno = error;
}

CZipException::~CZipException() = default;

CZipException CZipException::FromErrno(const std::wstring& fileName) {
  std::int32_t cause = errno;
#if defined(EDQUOT)
  if (cause == EDQUOT) cause = ENOSPC;
#endif
  if (cause <= 0 || cause >= generic) cause = EIO;
  return CZipException(cause, fileName);
}

std::wstring CZipException::ErrorText() const { return cause_text(cause_, errno); }

bool CZipException::ErrorTextInto(wchar_t* buffer, std::size_t size) const {
  const std::wstring text = ErrorText();
  if (buffer == nullptr || size == 0 || text.empty()) return false;
  buffer[text.copy(buffer, size - 1)] = L'\0';
  return true;
}
