// Deflate by zlib, and stored entries.
#pragma once

#include "zip/base_lib_compressor.h"

namespace ZipArchiveLib {

// Methods 8 and 0. A deflated stream is a raw one (RFC 1951), with no header around it.
class ZOL_API CDeflateCompressor : public CBaseLibCompressor {
 public:
  // What zlib may be told besides.
  class ZOL_API COptions : public CBaseLibCompressor::COptions {
   public:
    OptionsType GetType() const override { return typeDeflate; }
    std::unique_ptr<CZipCompressor::COptions> Clone() const override;

    // A deflated stream that gave all its bytes, but has no end, is damaged.
    bool check_last_block = true;
  };

  // Borrows the storage, for its whole life.
  explicit CDeflateCompressor(CZipStorage& storage) : CBaseLibCompressor(storage) {}

  bool CanProcess(std::uint16_t method) const override;
  void InitCompression(int level, CZipFileHeader& header, CZipCryptograph* cryptograph) override;
  void InitDecompression(CZipFileHeader& header, CZipCryptograph* cryptograph) override;
  const COptions* GetOptions() const override { return &options_; }
  void UpdateOptions(const CZipCompressor::COptions& options) override;
  ~CDeflateCompressor() override;

 protected:
  // zlib's codes 1, 2, -1 to -6 are the causes 500 to 507.
  std::int32_t ConvertInternalError(int code) const override;
  bool IsCodeErrorOK(int code) const override;

 private:
  COptions options_;
};

}  // namespace ZipArchiveLib
