#include "zip/compressor.h"

#include <algorithm>

#include "zip/cryptograph.h"
#include "zip/exception.h"

CZipCompressor::~CZipCompressor() = default;

void CZipCompressor::AllocateBuffer() {
  const COptions* const options = GetOptions();
  const std::uint32_t size = options == nullptr ? 0 : options->buffer_size;
  buffer_.Allocate(size == 0 ? COptions::k_default_buffer_size : size);
}

void CZipCompressor::InitCompression(int, CZipFileHeader& header, CZipCryptograph* cryptograph) {
  AllocateBuffer();
  header_ = &header;
  cryptograph_ = cryptograph;
  compressed_left_ = 0;
}

void CZipCompressor::InitDecompression(CZipFileHeader& header, CZipCryptograph* cryptograph) {
  AllocateBuffer();
  buffer_[0] = 0;  // it may be fed to the library before anything was read
  header_ = &header;
  cryptograph_ = cryptograph;
  compressed_left_ = header.compressed_size;
  uncompressed_left_ = header.uncompressed_size;
  crc_ = 0;
}

void CZipCompressor::UpdateOptions(const COptions&) {}

std::int32_t CZipCompressor::ConvertInternalError(int) const { return CZipException::generic; }

std::uint32_t CZipCompressor::ReadInput() {
  const std::uint32_t count = std::min(buffer_.GetSize(), compressed_left_);
  storage_.Read(buffer_.GetBuffer(), count);
  if (cryptograph_ != nullptr && count != 0) cryptograph_->Decode(buffer_.GetBuffer(), count);
  compressed_left_ -= count;
  return count;
}

void CZipCompressor::FlushWaiting() {
  if (compressed_left_ == 0) return;
  if (cryptograph_ != nullptr) cryptograph_->Encode(buffer_.GetBuffer(), compressed_left_);
  storage_.Write(buffer_.GetBuffer(), compressed_left_);
  compressed_left_ = 0;
}

void CZipCompressor::Fail(std::int32_t cause) const {
  throw CZipException(cause, storage_.GetArchivePath());
}
