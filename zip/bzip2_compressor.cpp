#include "zip/bzip2_compressor.h"

#include <bzlib.h>

#include "zip/exception.h"
#include "zip/internal/codec.h"

namespace ZipArchiveLib {

namespace {

using internal::Codec;
using internal::LibraryMemory;
using internal::Window;

void* allocate(void* opaque, int count, int size) {
  if (count < 0 || size < 0) return nullptr;
  return LibraryMemory::allocate(opaque, static_cast<std::size_t>(count),
                                 static_cast<std::size_t>(size));
}

void release(void* opaque, void* block) { LibraryMemory::release(opaque, block); }

// The stream of either direction.
class BzipCodec : public Codec {
 public:
  int end_code() const override { return BZ_STREAM_END; }
  int stuck_code() const override { return BZ_OUTBUFF_FULL; }

 protected:
  explicit BzipCodec(bool guarded) : memory_(guarded) {
    stream_.bzalloc = allocate;
    stream_.bzfree = release;
    stream_.opaque = memory_.opaque();
  }

  template <class Call>
  int advance(Window& window, Call call) {
    stream_.next_in = const_cast<char*>(window.in);
    stream_.avail_in = window.in_left;
    stream_.next_out = window.out;
    stream_.avail_out = window.out_left;
    const int code = call(&stream_);
    window.in = stream_.next_in;
    window.in_left = stream_.avail_in;
    window.out = stream_.next_out;
    window.out_left = stream_.avail_out;
    return code;
  }

  // After an exception the library is not asked any more; the list frees what it had.
  bool needs_end() const { return !ended_ && !memory_.is_guarded(); }

  LibraryMemory memory_;
  bz_stream stream_ = {};
  bool ended_ = true;  // or not begun
};

class Compressor : public BzipCodec {
 public:
  explicit Compressor(bool guarded) : BzipCodec(guarded) {}
  ~Compressor() override {
    if (needs_end()) ::BZ2_bzCompressEnd(&stream_);
  }

  int begin(int block_size) {
    const int code = ::BZ2_bzCompressInit(&stream_, block_size, 0, 0);
    ended_ = code != BZ_OK;
    return code;
  }
  int step(Window& window, Step what) override {
    const int action = what == Step::finish ? BZ_FINISH : BZ_RUN;
    return advance(window,
                   [action](bz_stream* stream) { return ::BZ2_bzCompress(stream, action); });
  }
  int end() override {
    ended_ = true;
    return ::BZ2_bzCompressEnd(&stream_);
  }
};

class Decompressor : public BzipCodec {
 public:
  explicit Decompressor(bool guarded) : BzipCodec(guarded) {}
  ~Decompressor() override {
    if (needs_end()) ::BZ2_bzDecompressEnd(&stream_);
  }

  int begin(bool is_small) {
    const int code = ::BZ2_bzDecompressInit(&stream_, 0, is_small ? 1 : 0);
    ended_ = code != BZ_OK;
    return code;
  }
  int step(Window& window, Step) override {
    return advance(window, [](bz_stream* stream) { return ::BZ2_bzDecompress(stream); });
  }
  int end() override {
    ended_ = true;
    return ::BZ2_bzDecompressEnd(&stream_);
  }
};

}  // namespace

std::unique_ptr<CZipCompressor::COptions> CBzip2Compressor::COptions::Clone() const {
  return std::make_unique<COptions>(*this);
}

CBzip2Compressor::~CBzip2Compressor() = default;

bool CBzip2Compressor::CanProcess(std::uint16_t method) const { return method == k_zip_bzip2; }

void CBzip2Compressor::InitCompression(int level, CZipFileHeader& header,
                                       CZipCryptograph* cryptograph) {
  CBaseLibCompressor::InitCompression(level, header, cryptograph);
  auto compressor = std::make_unique<Compressor>(options_.detect_leaks);
  CheckCode(compressor->begin(level == -1 ? 6 : level == 0 ? 1 : level));
  StartCompression(std::move(compressor));
}

void CBzip2Compressor::InitDecompression(CZipFileHeader& header, CZipCryptograph* cryptograph) {
  CBaseLibCompressor::InitDecompression(header, cryptograph);
  auto decompressor = std::make_unique<Decompressor>(options_.detect_leaks);
  CheckCode(decompressor->begin(options_.small_decompress));
  StartDecompression(std::move(decompressor), {false, false});
}

void CBzip2Compressor::UpdateOptions(const CZipCompressor::COptions& options) {
  if (const auto* own = dynamic_cast<const COptions*>(&options)) options_ = *own;
}

std::int32_t CBzip2Compressor::ConvertInternalError(int code) const {
  if (code < 0 && code >= BZ_CONFIG_ERROR) return CZipException::bzlibSequenceError - 1 - code;
  return CZipException::generic;
}

bool CBzip2Compressor::IsCodeErrorOK(int code) const {
  return code >= BZ_OK && code <= BZ_FINISH_OK;
}

}  // namespace ZipArchiveLib
