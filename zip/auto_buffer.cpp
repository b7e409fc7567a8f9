#include "zip/auto_buffer.h"

#include <cstring>
#include <utility>

CZipAutoBuffer::CZipAutoBuffer(const CZipAutoBuffer& other) {
  if (other.size_ == 0) return;
  Allocate(other.size_);
  std::memcpy(block_.get(), other.block_.get(), size_);
}

CZipAutoBuffer& CZipAutoBuffer::operator=(const CZipAutoBuffer& other) {
  CZipAutoBuffer copy(other);
  std::swap(block_, copy.block_);
  std::swap(size_, copy.size_);
  return *this;
}

CZipAutoBuffer::~CZipAutoBuffer() = default;

void CZipAutoBuffer::Allocate(std::uint32_t size, bool zeroFill) {
  if (size != size_) {
    Release();
    if (size == 0) return;
    block_.reset(new char[size]);
    size_ = size;
  }
  if (zeroFill && size_ != 0) std::memset(block_.get(), 0, size_);
}

void CZipAutoBuffer::Release() noexcept {
  block_.reset();
  size_ = 0;
}
