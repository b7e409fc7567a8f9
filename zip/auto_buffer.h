// A block of bytes that has one owner.
#pragma once

#include <cstdint>
#include <memory>

#include "port/export.h"

// The bytes go with the object; a copy has bytes of its own.
class ZOL_API CZipAutoBuffer {
 public:
  CZipAutoBuffer() = default;
  // As Allocate.
  explicit CZipAutoBuffer(std::uint32_t size, bool zeroFill = false) { Allocate(size, zeroFill); }
  // A copy of the bytes. Throws std::bad_alloc.
  CZipAutoBuffer(const CZipAutoBuffer& other);
  // A copy of the bytes. Throws std::bad_alloc.
  CZipAutoBuffer& operator=(const CZipAutoBuffer& other);
  virtual ~CZipAutoBuffer();

  // Keeps the block if it has this size already. A new one is not cleared unless `zeroFill` is set,
  // so that its pages cost nothing before they are written. Throws `std::bad_alloc`, and is empty
  // then.
  void Allocate(std::uint32_t size, bool zeroFill = false);
  // Frees the block.
  void Release() noexcept;

  // In bytes.
  std::uint32_t GetSize() const { return size_; }
  // The block; null if there is none.
  char* GetBuffer() { return block_.get(); }
  // The block; null if there is none.
  const char* GetBuffer() const { return block_.get(); }
  // As GetBuffer.
  operator char*() { return block_.get(); }
  // As GetBuffer.
  operator const char*() const { return block_.get(); }

 private:
  std::unique_ptr<char[]> block_;
  std::uint32_t size_ = 0;
};
