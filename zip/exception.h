// The one exception of the archive classes: a numbered cause and the file concerned.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

#include "port/export.h"

// Can be thrown on and copied by any thread: it owns its texts.
class ZOL_API CZipException : public std::exception {
 public:
  // Causes below 100 are `errno` values.
  enum Cause : std::int32_t {
    generic = 100,
    badZipFile = 101,
    badCrc = 102,
    noCallback = 103,
    tooLongFileName = 110,
    tooBigSize = 111,
    badPassword = 112,
    internalError = 114,
    notRemoved = 115,
    notRenamed = 116,
    noZip64 = 120,
    zlibStreamEnd = 500,
    zlibNeedDictionary = 501,
    zlibErrno = 502,
    zlibStreamError = 503,
    zlibDataError = 504,
    zlibMemoryError = 505,
    zlibBufferError = 506,
    zlibVersionError = 507,
    bzlibSequenceError = 600,
    bzlibParameterError = 601,
    bzlibMemoryError = 602,
    bzlibDataError = 603,
    bzlibBadMagic = 604,
    bzlibIoError = 605,
    bzlibUnexpectedEnd = 606,
    bzlibBufferFull = 607,
    bzlibConfigError = 608,
    bzlibInternalError = 609
  };

  // A cause of the list or an `errno`, and the file if one is concerned. Leaves `errno` as it is.
  explicit CZipException(std::int32_t cause, const std::wstring& fileName = std::wstring());
  ~CZipException() override;

  // The cause is the current `errno`. Numbers from 100 on would pass for other causes: a full disk
  // quota counts as a full disk, and the rest as an input or output error.
  static CZipException FromErrno(const std::wstring& fileName);

  // The number of the cause, or an errno.
  std::int32_t GetCause() const { return cause_; }
  const std::wstring& GetFileName() const { return file_name_; }

  // The text of the cause. For the causes that have none of their own it depends on the `errno` of
  // this moment, not on that of the failure.
  std::wstring ErrorText() const;
  // Cuts the text to `size` characters, the terminator included. False, and nothing is written, for
  // a null buffer, a size of 0 or an empty text.
  bool ErrorTextInto(wchar_t* buffer, std::size_t size) const;

  // Cause, text and file in UTF-8, as they were at the failure.
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::int32_t cause_;
  std::wstring file_name_;
  std::string message_;
};
