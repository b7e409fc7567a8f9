// The data of one open entry, on its way between a client and the storage.
#pragma once

#include <cstdint>
#include <memory>

#include "zip/auto_buffer.h"
#include "zip/file_header.h"

class CZipCryptograph;

// Failures throw `CZipException`: those of the storage, cause 101 for data that ends early, and the
// library's own errors by the tables of each class.
class ZOL_API CZipCompressor {
 public:
  // The codecs that have options.
  enum OptionsType { typeDeflate = 1, typeBzip2 = 2 };

  // What a codec may be told.
  class ZOL_API COptions {
   public:
    // The codec that they are for.
    virtual OptionsType GetType() const = 0;
    // A copy, the caller's.
    virtual std::unique_ptr<COptions> Clone() const = 0;
    virtual ~COptions() = default;

    // In bytes: of compressed data, as it is read or written at a time.
    static constexpr std::uint32_t k_default_buffer_size = 0x20000;
    std::uint32_t buffer_size = k_default_buffer_size;  // 0 means the default
  };

  // Is the method, by its number in an entry, one of its own?
  virtual bool CanProcess(std::uint16_t method) const = 0;
  // The header's method decides; a level of -1 is the library's default. Header and cryptograph,
  // which may be null, must live until the entry is finished.
  virtual void InitCompression(int level, CZipFileHeader& header, CZipCryptograph* cryptograph);
  // The same for an entry that is read, with the storage at its data.
  virtual void InitDecompression(CZipFileHeader& header, CZipCryptograph* cryptograph);
  // Adds to the header's checksum.
  virtual void Compress(const void* buffer, std::uint32_t size) = 0;
  // Bytes delivered: fewer than `size` only at the end of the entry.
  virtual std::uint32_t Decompress(void* buffer, std::uint32_t size) = 0;
  // Leaves the sizes in the header. After an exception nothing is written and nothing throws.
  virtual void FinishCompression(bool afterException) = 0;
  // Frees what the codec holds.
  virtual void FinishDecompression(bool afterException) = 0;
  // Those in force; null if it has none.
  virtual const COptions* GetOptions() const { return nullptr; }
  // Those of another type are left alone. They hold from the next entry on.
  virtual void UpdateOptions(const COptions& options);
  virtual ~CZipCompressor();

  // Bytes of the entry that were not delivered yet.
  std::uint32_t GetUncompressedLeft() const { return uncompressed_left_; }
  // Of the bytes delivered so far.
  std::uint32_t GetCrc() const { return crc_; }

 protected:
  // Borrows the storage.
  explicit CZipCompressor(CZipStorage& storage) : storage_(storage) {}
  CZipCompressor(const CZipCompressor&) = delete;
  CZipCompressor& operator=(const CZipCompressor&) = delete;

  // The cause for a result code of the library.
  virtual std::int32_t ConvertInternalError(int code) const;

  // Makes the buffer of the size that the options ask for.
  void AllocateBuffer();
  // The number of bytes of input got: at most a buffer full, 0 if no compressed bytes are left.
  std::uint32_t ReadInput();
  // Sends the waiting bytes to the storage.
  void FlushWaiting();
  // Throws CZipException of the cause, with the archive's path.
  [[noreturn]] void Fail(std::int32_t cause) const;

  // Where compressed bytes come from and go to.
  CZipStorage& storage_;
  // Compressed bytes on their way.
  CZipAutoBuffer buffer_;
  // Of the open entry, a client's; or null.
  CZipCryptograph* cryptograph_ = nullptr;
  // Of the open entry.
  CZipFileHeader* header_ = nullptr;
  // See GetUncompressedLeft.
  std::uint32_t uncompressed_left_ = 0;
  // In an entry that is written: the bytes that wait in the buffer. It may wrap around while one is
  // read whose stream goes on past its size.
  std::uint32_t compressed_left_ = 0;
  // See GetCrc.
  std::uint32_t crc_ = 0;
};
