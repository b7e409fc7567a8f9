// A block of bytes that has one owner.
#pragma once

#include <cstdint>
#include <memory>

#include "port/export.h"

class ZOL_API CZipAutoBuffer {
 public:
  CZipAutoBuffer() = default;
  explicit CZipAutoBuffer(std::uint32_t size, bool zeroFill = false) { Allocate(size, zeroFill); }
  CZipAutoBuffer(const CZipAutoBuffer& other);
  CZipAutoBuffer& operator=(const CZipAutoBuffer& other);
  virtual ~CZipAutoBuffer();

  // Keeps the block if it has this size already. A new one is not cleared unless `zeroFill` is set,
  // so that its pages cost nothing before they are written. Throws `std::bad_alloc`, and is empty
  // then.
  void Allocate(std::uint32_t size, bool zeroFill = false);
  void Release() noexcept;

  std::uint32_t GetSize() const { return size_; }
  char* GetBuffer() { return block_.get(); }
  const char* GetBuffer() const { return block_.get(); }
  operator char*() { return block_.get(); }
  operator const char*() const { return block_.get(); }

 private:
  std::unique_ptr<char[]> block_;
  std::uint32_t size_ = 0;
};
