// An archive in memory, for reading alone.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "zip/abstract_file.h"
#include "zip/exception.h"

namespace zol_v2::internal {

// The bytes stay the caller's and must outlive the object.
class MemoryFile : public CZipAbstractFile {
 public:
  explicit MemoryFile(std::string_view bytes) : bytes_(bytes) {}

  bool Open(const std::wstring&, std::uint32_t, bool) override { return false; }
  void Close() override {}
  void Flush() override {}
  std::uint64_t GetPosition() const override { return position_; }
  std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) override {
    const std::uint64_t base = origin == begin ? 0 : origin == current ? position_ : bytes_.size();
    const std::uint64_t target = base + static_cast<std::uint64_t>(offset);
    if (offset < 0 && target > base) throw CZipException(EINVAL);
    return position_ = target;
  }
  std::uint64_t GetLength() const override { return bytes_.size(); }
  void SetLength(std::uint64_t) override { throw CZipException(EBADF); }
  void SeekToBegin() override { position_ = 0; }
  void SeekToEnd() override { position_ = bytes_.size(); }
  std::wstring GetFilePath() const override { return std::wstring(); }
  std::uint32_t Read(void* buffer, std::uint32_t count) override {
    if (position_ >= bytes_.size()) return 0;
    const std::size_t at = static_cast<std::size_t>(position_);
    const std::size_t taken = std::min<std::size_t>(count, bytes_.size() - at);
    std::memcpy(buffer, bytes_.data() + at, taken);
    position_ += taken;
    return static_cast<std::uint32_t>(taken);
  }
  void Write(const void*, std::uint32_t) override { throw CZipException(EBADF); }
  bool IsClosed() const override { return false; }

 private:
  std::string_view bytes_;
  std::uint64_t position_ = 0;
};

}  // namespace zol_v2::internal
