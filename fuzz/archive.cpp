// Any bytes as an archive: every entry is opened, read and closed. Only the archive's own exception
// may come out.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "zip/archive.h"

namespace {

// The archive's bytes in memory.
class BytesFile : public CZipAbstractFile {
 public:
  BytesFile(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  bool Open(const std::wstring&, std::uint32_t, bool) override { return true; }
  void Close() override {}
  void Flush() override {}
  std::uint64_t GetPosition() const override { return at_; }
  std::uint64_t Seek(std::int64_t offset, SeekOrigin origin) override {
    const std::int64_t base = origin == begin     ? 0
                              : origin == current ? static_cast<std::int64_t>(at_)
                                                  : static_cast<std::int64_t>(size_);
    at_ = static_cast<std::uint64_t>(std::max<std::int64_t>(0, base + offset));
    return at_;
  }
  std::uint64_t GetLength() const override { return size_; }
  void SetLength(std::uint64_t) override {}
  void SeekToBegin() override { at_ = 0; }
  void SeekToEnd() override { at_ = size_; }
  std::wstring GetFilePath() const override { return L"fuzz"; }
  std::uint32_t Read(void* buffer, std::uint32_t count) override {
    if (at_ >= size_) return 0;
    const std::size_t given = std::min<std::size_t>(count, size_ - at_);
    std::memcpy(buffer, data_ + at_, given);
    at_ += given;
    return static_cast<std::uint32_t>(given);
  }
  void Write(const void*, std::uint32_t) override {}
  bool IsClosed() const override { return false; }

 private:
  const std::uint8_t* data_;
  std::uint64_t size_;
  std::uint64_t at_ = 0;
};

void read_entry(CZipArchive& archive, std::uint16_t index) {
  if (!archive.OpenEntry(index)) return;
  // An entry may claim any size; a bomb is cut off.
  std::vector<char> buffer(65536);
  for (int blocks = 0; blocks < 64; ++blocks) {
    if (archive.ReadEntry(buffer.data(), static_cast<std::uint32_t>(buffer.size())) == 0) break;
  }
  archive.CloseEntry();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  BytesFile file(data, size);
  CZipArchive archive;
  try {
    if (!archive.Open(file, CZipArchive::modeReadOnly)) return 0;
  } catch (const CZipException&) {
    return 0;
  }
  for (std::uint16_t i = 0; i < archive.GetCount() && i < 16; ++i) {
    try {
      read_entry(archive, i);
    } catch (const CZipException&) {
      archive.CloseEntry(nullptr, true);
    }
  }
  archive.Close(CZipArchive::closeAfterException);
  return 0;
}
