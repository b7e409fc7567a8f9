// What an archive needs of the file beneath it. A client may give an archive a file of its own.
#pragma once

#include <cstdint>
#include <string>

#include "port/export.h"

// Operations that fail throw `CZipException` with an `errno` value as the cause.
class ZOL_API CZipAbstractFile {
 public:
  // How a file is opened: what is done with it, and what others may do meanwhile.
  enum OpenFlags : std::uint32_t {
    modeRead = 0x01,
    modeWrite = 0x02,
    modeReadWrite = modeRead | modeWrite,
    shareDenyWrite = 0x04,
    shareDenyRead = 0x08,
    shareDenyNone = 0x10,
    modeCreate = 0x20,
    modeNoTruncate = 0x40
  };
  // What an offset is counted from.
  enum SeekOrigin { begin, current, end };

  // `flags` is a set of `OpenFlags`. Without `throwOnFailure` a failure gives false.
  virtual bool Open(const std::wstring& path, std::uint32_t flags, bool throwOnFailure) = 0;
  // Nothing happens if it is closed.
  virtual void Close() = 0;
  // Returns once the contents are on the disk.
  virtual void Flush() = 0;
  // In bytes from the file's begin.
  virtual std::uint64_t GetPosition() const = 0;
  // The new position from the file's begin.
  virtual std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) = 0;
  // In bytes.
  virtual std::uint64_t GetLength() const = 0;
  // Cuts the file, or fills it up with zeros.
  virtual void SetLength(std::uint64_t length) = 0;
  // To the first byte.
  virtual void SeekToBegin() = 0;
  // Behind the last byte.
  virtual void SeekToEnd() = 0;
  // For messages.
  virtual std::wstring GetFilePath() const = 0;
  // Bytes read. Fewer than `count` only at the end of the file.
  virtual std::uint32_t Read(void* buffer, std::uint32_t count) = 0;
  // All of it, or an exception.
  virtual void Write(const void* buffer, std::uint32_t count) = 0;
  // Is there no open file?
  virtual bool IsClosed() const = 0;
  virtual ~CZipAbstractFile() = default;

 protected:
  CZipAbstractFile() = default;
  CZipAbstractFile(const CZipAbstractFile&) = delete;
  CZipAbstractFile& operator=(const CZipAbstractFile&) = delete;
};
