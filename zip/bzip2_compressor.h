// Bzip2.
#pragma once

#include "zip/base_lib_compressor.h"

namespace ZipArchiveLib {

// Method 12.
class ZOL_API CBzip2Compressor : public CBaseLibCompressor {
 public:
  // What bzip2 may be told besides.
  class ZOL_API COptions : public CBaseLibCompressor::COptions {
   public:
    OptionsType GetType() const override { return typeBzip2; }
    std::unique_ptr<CZipCompressor::COptions> Clone() const override;

    // Half the memory, half the speed.
    bool small_decompress = false;
  };

  // Borrows the storage, for its whole life.
  explicit CBzip2Compressor(CZipStorage& storage) : CBaseLibCompressor(storage) {}

  bool CanProcess(std::uint16_t method) const override;
  // The level is the block size in units of 100 kB: -1 stands for 6, and 0 for 1.
  void InitCompression(int level, CZipFileHeader& header, CZipCryptograph* cryptograph) override;
  void InitDecompression(CZipFileHeader& header, CZipCryptograph* cryptograph) override;
  const COptions* GetOptions() const override { return &options_; }
  void UpdateOptions(const CZipCompressor::COptions& options) override;
  ~CBzip2Compressor() override;

 protected:
  // The library's codes -1 to -9 are the causes 600 to 608.
  std::int32_t ConvertInternalError(int code) const override;
  bool IsCodeErrorOK(int code) const override;

 private:
  COptions options_;
};

}  // namespace ZipArchiveLib
