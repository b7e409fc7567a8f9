#include "zip/deflate_compressor.h"

#include <zlib.h>
#if ZOL_LIBDEFLATE
#include <libdeflate.h>
#endif

#include <algorithm>
#include <cstring>

#include "zip/exception.h"
#include "zip/internal/codec.h"

namespace ZipArchiveLib {

namespace {

using internal::Codec;
using internal::LibraryMemory;
using internal::Window;

voidpf allocate(voidpf opaque, uInt count, uInt size) {
  return LibraryMemory::allocate(opaque, count, size);
}

void release(voidpf opaque, voidpf block) { LibraryMemory::release(opaque, block); }

// The stream of either direction.
class ZlibCodec : public Codec {
 public:
  int end_code() const override { return Z_STREAM_END; }
  int stuck_code() const override { return Z_BUF_ERROR; }

 protected:
  explicit ZlibCodec(bool guarded) : memory_(guarded) {
    stream_.zalloc = allocate;
    stream_.zfree = release;
    stream_.opaque = memory_.opaque();
  }

  template <class Call>
  int advance(Window& window, Call call) {
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(window.in));
    stream_.avail_in = window.in_left;
    stream_.next_out = reinterpret_cast<Bytef*>(window.out);
    stream_.avail_out = window.out_left;
    const int code = call(&stream_);
    window.in = reinterpret_cast<const char*>(stream_.next_in);
    window.in_left = stream_.avail_in;
    window.out = reinterpret_cast<char*>(stream_.next_out);
    window.out_left = stream_.avail_out;
    return code;
  }

  // After an exception the library is not asked any more; the list frees what it had.
  bool needs_end() const { return !ended_ && !memory_.is_guarded(); }

  LibraryMemory memory_;
  z_stream stream_ = {};
  bool ended_ = true;  // or not begun
};

constexpr int k_window_bits = -MAX_WBITS;  // no header and no checksum around the stream
constexpr int k_memory_level = 8;

class Deflater : public ZlibCodec {
 public:
  explicit Deflater(bool guarded) : ZlibCodec(guarded) {}
  ~Deflater() override {
    if (needs_end()) ::deflateEnd(&stream_);
  }

  int begin(int level) {
    const int code = ::deflateInit2(&stream_, level, Z_DEFLATED, k_window_bits, k_memory_level,
                                    Z_DEFAULT_STRATEGY);
    ended_ = code != Z_OK;
    return code;
  }
  int step(Window& window, Step what) override {
    const int flush = what == Step::finish ? Z_FINISH : Z_NO_FLUSH;
    return advance(window, [flush](z_stream* stream) { return ::deflate(stream, flush); });
  }
  int end() override {
    ended_ = true;
    return ::deflateEnd(&stream_);
  }
};

class Inflater : public ZlibCodec {
 public:
  explicit Inflater(bool guarded) : ZlibCodec(guarded) {}
  ~Inflater() override {
    if (needs_end()) ::inflateEnd(&stream_);
  }

  int begin() {
    const int code = ::inflateInit2(&stream_, k_window_bits);
    ended_ = code != Z_OK;
    return code;
  }
  int step(Window& window, Step) override {
    return advance(window, [](z_stream* stream) { return ::inflate(stream, Z_SYNC_FLUSH); });
  }
#if ZOL_LIBDEFLATE
  // It passes a few streams that zlib does not, such as the use of a code that stands for nothing.
  // Damage does not give the right size and the right checksum all the same.
  bool reads_whole() const override { return true; }
  bool read_whole(const Window& window, std::uint32_t crc) override {
    struct Free {
      void operator()(libdeflate_decompressor* library) const {
        ::libdeflate_free_decompressor(library);
      }
    };
    const std::unique_ptr<libdeflate_decompressor, Free> library(::libdeflate_alloc_decompressor());
    return library != nullptr &&
           ::libdeflate_deflate_decompress(library.get(), window.in, window.in_left, window.out,
                                           window.out_left, nullptr) == LIBDEFLATE_SUCCESS &&
           ::libdeflate_crc32(0, window.out, window.out_left) == crc;
  }
#endif
  int end() override {
    ended_ = true;
    return ::inflateEnd(&stream_);
  }
};

// Stored entries, in either direction; the codes are zlib's.
class Copier : public Codec {
 public:
  int step(Window& window, Step what) override {
    const std::uint32_t count = std::min(window.in_left, window.out_left);
    if (count != 0) std::memcpy(window.out, window.in, count);
    window.in += count;
    window.in_left -= count;
    window.out += count;
    window.out_left -= count;
    return what == Step::finish ? Z_STREAM_END : Z_OK;
  }
  int end_code() const override { return Z_STREAM_END; }
  int stuck_code() const override { return Z_BUF_ERROR; }
  int end() override { return Z_OK; }
};

}  // namespace

std::unique_ptr<CZipCompressor::COptions> CDeflateCompressor::COptions::Clone() const {
  return std::make_unique<COptions>(*this);
}

CDeflateCompressor::~CDeflateCompressor() = default;

bool CDeflateCompressor::CanProcess(std::uint16_t method) const {
  return method == k_zip_stored || method == k_zip_deflated;
}

void CDeflateCompressor::InitCompression(int level, CZipFileHeader& header,
                                         CZipCryptograph* cryptograph) {
  CBaseLibCompressor::InitCompression(level, header, cryptograph);
  if (header.method == k_zip_stored) {
    StartCompression(std::make_unique<Copier>());
    return;
  }
  auto deflater = std::make_unique<Deflater>(options_.detect_leaks);
  CheckCode(deflater->begin(level));
  StartCompression(std::move(deflater));
}

void CDeflateCompressor::InitDecompression(CZipFileHeader& header, CZipCryptograph* cryptograph) {
  CBaseLibCompressor::InitDecompression(header, cryptograph);
  if (header.method == k_zip_stored) {
    StartDecompression(std::make_unique<Copier>(), {true, false});
    return;
  }
  auto inflater = std::make_unique<Inflater>(options_.detect_leaks);
  CheckCode(inflater->begin());
  StartDecompression(std::move(inflater), {true, options_.check_last_block});
}

void CDeflateCompressor::UpdateOptions(const CZipCompressor::COptions& options) {
  if (const auto* own = dynamic_cast<const COptions*>(&options)) options_ = *own;
}

std::int32_t CDeflateCompressor::ConvertInternalError(int code) const {
  switch (code) {
    case Z_STREAM_END:
      return CZipException::zlibStreamEnd;
    case Z_NEED_DICT:
      return CZipException::zlibNeedDictionary;
    case Z_ERRNO:
      return CZipException::zlibErrno;
    case Z_STREAM_ERROR:
      return CZipException::zlibStreamError;
    case Z_DATA_ERROR:
      return CZipException::zlibDataError;
    case Z_MEM_ERROR:
      return CZipException::zlibMemoryError;
    case Z_BUF_ERROR:
      return CZipException::zlibBufferError;
    case Z_VERSION_ERROR:
      return CZipException::zlibVersionError;
    default:
      return CZipException::generic;
  }
}

bool CDeflateCompressor::IsCodeErrorOK(int code) const {
  return code == Z_OK || code == Z_NEED_DICT;
}

}  // namespace ZipArchiveLib
