#include "zip/base_lib_compressor.h"

#if ZOL_LIBDEFLATE  // the build sets it where the library is there
#include <libdeflate.h>
#else
#include <zlib.h>
#endif

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "zip/exception.h"
#include "zip/internal/codec.h"

namespace ZipArchiveLib {

namespace internal {

void* LibraryMemory::allocate(void* opaque, std::size_t count, std::size_t size) noexcept {
  constexpr std::size_t k_most = std::numeric_limits<std::size_t>::max() / 2;
  if (size != 0 && count > k_most / size) return nullptr;
  if (opaque == nullptr) return new (std::nothrow) char[count * size];

  auto* const list = static_cast<LibraryMemory*>(opaque);
  void* const room = ::operator new[](sizeof(Node) + count * size, std::nothrow);
  if (room == nullptr) return nullptr;
  Node* const node = new (room) Node{nullptr, list->first_};
  if (node->next != nullptr) node->next->previous = node;
  list->first_ = node;
  return node + 1;
}

void LibraryMemory::release(void* opaque, void* block) noexcept {
  if (block == nullptr) return;
  if (opaque == nullptr) {
    delete[] static_cast<char*>(block);
    return;
  }
  auto* const list = static_cast<LibraryMemory*>(opaque);
  Node* const node = static_cast<Node*>(block) - 1;
  if (node->next != nullptr) node->next->previous = node->previous;
  (node->previous != nullptr ? node->previous->next : list->first_) = node->next;
  ::operator delete[](node);
}

void LibraryMemory::free_all() noexcept {
  while (first_ != nullptr) ::operator delete[](std::exchange(first_, first_->next));
}

}  // namespace internal

using internal::Codec;
using internal::Window;

namespace {

// What a header can hold.
constexpr std::uint64_t k_largest_size = std::numeric_limits<std::uint32_t>::max();

std::uint32_t updated_crc(std::uint32_t crc, const char* bytes, std::uint32_t size) {
#if ZOL_LIBDEFLATE
  return ::libdeflate_crc32(crc, bytes, size);
#else
  return static_cast<std::uint32_t>(::crc32(crc, reinterpret_cast<const Bytef*>(bytes), size));
#endif
}

}  // namespace

CBaseLibCompressor::CBaseLibCompressor(CZipStorage& storage)
    : CZipCompressor(storage), window_(std::make_unique<Window>()) {}

CBaseLibCompressor::~CBaseLibCompressor() = default;

void CBaseLibCompressor::CheckCode(int code) const {
  if (!IsCodeErrorOK(code)) Fail(ConvertInternalError(code));
}

void CBaseLibCompressor::Release() noexcept {
  codec_.reset();
  buffer_.Release();
  *window_ = Window();
}

void CBaseLibCompressor::StartCompression(std::unique_ptr<Codec> codec) {
  codec_ = std::move(codec);
  *window_ = Window();
  window_->out = buffer_.GetBuffer();
  window_->out_left = buffer_.GetSize();
  total_in_ = 0;
  total_out_ = 0;
}

// One call of the library, with room for what it gives.
void CBaseLibCompressor::StepCompression(bool finishes) {
  Window& window = *window_;
  if (window.out_left == 0) {
    FlushWaiting();
    window.out = buffer_.GetBuffer();
    window.out_left = buffer_.GetSize();
  }
  const Window before = window;
  const int code = codec_->step(window, finishes ? Codec::Step::finish : Codec::Step::run);
  const std::uint32_t produced = before.out_left - window.out_left;
  compressed_left_ += produced;
  total_out_ += produced;
  total_in_ += before.in_left - window.in_left;
  reached_end_ = code == codec_->end_code();
  if (reached_end_) return;
  CheckCode(code);
  if (produced == 0 && before.in_left == window.in_left && window.out_left != 0) {
    Fail(ConvertInternalError(codec_->stuck_code()));
  }
  if (total_in_ > k_largest_size || total_out_ > k_largest_size) Fail(CZipException::tooBigSize);
}

void CBaseLibCompressor::Compress(const void* buffer, std::uint32_t size) {
  window_->in = static_cast<const char*>(buffer);
  window_->in_left = size;
  if (size != 0) header_->crc = updated_crc(header_->crc, window_->in, size);
  while (window_->in_left != 0) StepCompression(false);
}

void CBaseLibCompressor::FinishCompression(bool afterException) {
  if (!afterException) {
    window_->in_left = 0;
    do {
      StepCompression(true);
    } while (!reached_end_);
    FlushWaiting();
    CheckCode(codec_->end());
    if (total_out_ > k_largest_size - header_->compressed_size) Fail(CZipException::tooBigSize);
    header_->compressed_size += static_cast<std::uint32_t>(total_out_);
    header_->uncompressed_size = static_cast<std::uint32_t>(total_in_);
  }
  Release();
}

void CBaseLibCompressor::StartDecompression(std::unique_ptr<Codec> codec, EndRules rules) {
  codec_ = std::move(codec);
  *window_ = Window();
  end_rules_ = rules;
  reached_end_ = false;
}

void CBaseLibCompressor::FillWindow() {
  window_->in = buffer_.GetBuffer();
  window_->in_left = ReadInput();
  if (window_->in_left != 0 || !end_rules_.feeds_past_end) return;
  // The library may need a byte more than the stream has. Its value does not matter to a sound
  // stream; a longer one reads on behind the entry, since the count wraps around, and ends with an
  // error or with the file.
  window_->in_left = 1;
  --compressed_left_;
}

// An entry of which nothing was read yet, by a codec that is quicker with all of it. False, with
// the state as it was, if that does not work out for whatever reason: the way by steps meets the
// reason again, and in the order in which it always did.
bool CBaseLibCompressor::DecompressWhole(char* buffer) {
  const std::uint32_t packed_size = compressed_left_;
  const std::uint32_t size = uncompressed_left_;
  const bool is_untouched = packed_size == header_->compressed_size &&
                            size == header_->uncompressed_size && window_->in_left == 0;
  if (!is_untouched || !codec_->reads_whole() || cryptograph_ != nullptr || size == 0 ||
      packed_size > storage_.GetFileLength()) {
    return false;
  }
  const std::unique_ptr<char[]> packed(new (std::nothrow) char[packed_size]);
  if (packed == nullptr) return false;
  const std::uint64_t position = storage_.GetPosition();
  try {
    storage_.Read(packed.get(), packed_size);
  } catch (const CZipException&) {
    storage_.Seek(position);
    return false;
  }
  if (!codec_->read_whole({packed.get(), packed_size, buffer, size}, header_->crc)) {
    storage_.Seek(position);
    return false;
  }
  compressed_left_ = 0;
  uncompressed_left_ = 0;
  crc_ = header_->crc;
  reached_end_ = true;
  return true;
}

std::uint32_t CBaseLibCompressor::Decompress(void* buffer, std::uint32_t size) {
  if (reached_end_) return 0;
  if (const std::uint32_t whole = uncompressed_left_;
      size >= whole && DecompressWhole(static_cast<char*>(buffer))) {
    return whole;
  }
  Window& window = *window_;
  window.out = static_cast<char*>(buffer);
  window.out_left = std::min(size, uncompressed_left_);
  const bool is_forced = window.out_left == 0 && compressed_left_ != 0;
  std::uint32_t delivered = 0;
  while (window.out_left != 0 || (is_forced && compressed_left_ != 0)) {
    if (window.in_left == 0) FillWindow();
    const Window before = window;
    const int code = codec_->step(window, Codec::Step::run);
    const std::uint32_t produced = before.out_left - window.out_left;
    if (produced != 0) crc_ = updated_crc(crc_, before.out, produced);
    uncompressed_left_ -= produced;
    delivered += produced;
    if (code == codec_->end_code()) {
      reached_end_ = true;
      return delivered;
    }
    CheckCode(code);
    if (produced != 0) continue;
    if (!end_rules_.feeds_past_end && window.in_left == 0 && compressed_left_ == 0) {
      if (delivered == 0 && size != 0) Fail(CZipException::badZipFile);
      break;
    }
    if (before.in_left == window.in_left) Fail(ConvertInternalError(codec_->stuck_code()));
  }
  if (delivered == 0 && size != 0 && end_rules_.checks_last_block &&
      codec_->step(window, Codec::Step::run) != codec_->end_code()) {
    Fail(CZipException::badZipFile);
  }
  return delivered;
}

void CBaseLibCompressor::FinishDecompression(bool afterException) {
  if (!afterException && codec_ != nullptr) codec_->end();
  Release();
}

}  // namespace ZipArchiveLib
