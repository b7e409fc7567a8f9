// What the compressors that call a library have in common: the loop around it.
#pragma once

#include <memory>

#include "zip/compressor.h"

namespace ZipArchiveLib {

namespace internal {
class Codec;
struct Window;
}  // namespace internal

// Runs a library's codec through a buffer, and keeps count and checksum of what passes.
class ZOL_API CBaseLibCompressor : public CZipCompressor {
 public:
  // What does not depend on the library.
  class ZOL_API COptions : public CZipCompressor::COptions {
   public:
    // Keep a list of the library's memory blocks, and free them without the library after an
    // exception.
    bool detect_leaks = true;
  };

  void Compress(const void* buffer, std::uint32_t size) override;
  std::uint32_t Decompress(void* buffer, std::uint32_t size) override;
  void FinishCompression(bool afterException) override;
  void FinishDecompression(bool afterException) override;
  ~CBaseLibCompressor() override;

 protected:
  // Borrows the storage, for its whole life.
  explicit CBaseLibCompressor(CZipStorage& storage);

  // Whether the library has a reason to go on after this code.
  virtual bool IsCodeErrorOK(int code) const = 0;

  // How the end of an entry is met.
  struct EndRules {
    bool feeds_past_end;     // a byte goes in after the last one, and then what follows the entry
    bool checks_last_block;  // a stream that was never seen to end is damaged
  };
  // The last step of InitCompression and of InitDecompression: the codec, which has begun, does the
  // work of this entry and goes with its end.
  void StartCompression(std::unique_ptr<internal::Codec> codec);
  void StartDecompression(std::unique_ptr<internal::Codec> codec, EndRules rules);
  // Throws the cause that ConvertInternalError has for a code that is not OK.
  void CheckCode(int code) const;

 private:
  void StepCompression(bool finishes);
  bool DecompressWhole(char* buffer);
  void FillWindow();
  void Release() noexcept;

  std::unique_ptr<internal::Codec> codec_;
  std::unique_ptr<internal::Window> window_;
  EndRules end_rules_ = {};
  bool reached_end_ = false;
  std::uint64_t total_in_ = 0;
  std::uint64_t total_out_ = 0;
};

}  // namespace ZipArchiveLib
