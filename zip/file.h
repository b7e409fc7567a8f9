// A file on disk, by a handle of the system.
#pragma once

#include "zip/abstract_file.h"

// Always binary. Opened for writing it is truncated, unless `modeNoTruncate` is set. The share
// modes are those of `zol::port::Share`; no share flag at all denies nothing.
class ZOL_API CZipFile : public CZipAbstractFile {
 public:
  CZipFile() = default;
  // As Open, with a failure thrown.
  CZipFile(const std::wstring& path, std::uint32_t flags) { CZipFile::Open(path, flags, true); }
  // Works on a handle of `zol::port::open_handle` that stays the caller's: nothing here closes it.
  CZipFile(int handle, const std::wstring& path) : handle_(handle), path_(path), is_ours_(false) {}

  bool Open(const std::wstring& path, std::uint32_t flags, bool throwOnFailure) override;
  void Close() override;
  void Flush() override;
  std::uint64_t GetPosition() const override;
  std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) override;
  std::uint64_t GetLength() const override;
  void SetLength(std::uint64_t length) override;
  void SeekToBegin() override { Seek(0, begin); }
  void SeekToEnd() override { Seek(0, end); }
  std::wstring GetFilePath() const override { return path_; }
  std::uint32_t Read(void* buffer, std::uint32_t count) override;
  void Write(const void* buffer, std::uint32_t count) override;
  bool IsClosed() const override { return handle_ == -1; }
  ~CZipFile() override;

 private:
  std::uint64_t MoveTo(std::int64_t offset, SeekOrigin origin) const;

  int handle_ = -1;
  std::wstring path_;
  bool is_ours_ = true;
};
