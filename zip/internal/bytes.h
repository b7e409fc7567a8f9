// Little-endian records in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ZipArchiveLib::internal {

// Reads a record from its begin to its end and remembers the first failure: after a read past the
// end every read gives 0, so that a record is decoded whole and judged once.
class ByteReader {
 public:
  ByteReader(const char* bytes, std::size_t size) : next_(bytes), left_(size) {}
  explicit ByteReader(const std::string& bytes) : ByteReader(bytes.data(), bytes.size()) {}

  bool ok() const { return ok_; }
  std::size_t left() const { return left_; }

  std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
  std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
  std::uint32_t u32() { return number(4); }
  std::string bytes(std::size_t count) {
    if (!advance(count)) return {};
    return std::string(next_ - count, count);
  }

 private:
  bool advance(std::size_t count) {
    ok_ = ok_ && count <= left_;
    if (!ok_) return false;
    next_ += count;
    left_ -= count;
    return true;
  }

  std::uint32_t number(std::size_t size) {
    if (!advance(size)) return 0;
    std::uint32_t value = 0;
    for (std::size_t i = 1; i <= size; ++i) {
      value = (value << 8) | static_cast<unsigned char>(next_[-static_cast<std::ptrdiff_t>(i)]);
    }
    return value;
  }

  const char* next_;
  std::size_t left_;
  bool ok_ = true;
};

// Builds a record.
class ByteWriter {
 public:
  ByteWriter& u8(std::uint32_t value) { return number(value, 1); }
  ByteWriter& u16(std::uint32_t value) { return number(value, 2); }
  ByteWriter& u32(std::uint32_t value) { return number(value, 4); }
  ByteWriter& bytes(const std::string& bytes) {
    record_ += bytes;
    return *this;
  }
  const std::string& record() const { return record_; }

 private:
  ByteWriter& number(std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) record_ += static_cast<char>((value >> (8 * i)) & 0xFF);
    return *this;
  }

  std::string record_;
};

}  // namespace ZipArchiveLib::internal
