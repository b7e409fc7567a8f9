#include "lmx/internal/string_sink.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "lmx/internal/lexical.h"

namespace lmx::internal {
namespace {

constexpr std::size_t k_first_chunk = 4096;
constexpr std::size_t k_largest_chunk = 65536;

}  // namespace

StringSink::int_type StringSink::overflow(int_type byte) {
  if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
  const std::size_t size =
      chunks_.empty() ? k_first_chunk : std::min(2 * chunks_.back().size, k_largest_chunk);
  chunks_.push_back({std::unique_ptr<char[]>(new char[size]), size});
  char* const bytes = chunks_.back().bytes.get();
  setp(bytes, bytes + size);
  return sputc(traits_type::to_char_type(byte));
}

std::size_t StringSink::size() const {
  std::size_t total = 0;
  for (const Chunk& chunk : chunks_) total += chunk.size;
  return total - static_cast<std::size_t>(epptr() - pptr());
}

void StringSink::clear() {
  chunks_.clear();
  setp(nullptr, nullptr);
}

void StringSink::move_to(std::string* text) {
  const std::size_t total = size();
  std::string joined;
  joined.reserve(total);
  for (Chunk& chunk : chunks_) {
    joined.append(chunk.bytes.get(), std::min(chunk.size, total - joined.size()));
    chunk.bytes.reset();
  }
  clear();
  *text = std::move(joined);
}

// A sequence, or a surrogate pair written as two, may lie across the end of a chunk. What the
// conversion left over there is tried again with the bytes that follow; if it still does not pass,
// it is a fault, and the text ends.
void StringSink::move_to(std::wstring* text) {
  // The most bytes that are one character.
  constexpr std::size_t k_longest = 6;
  std::size_t left = size();
  std::wstring wide;
  wide.reserve(left);
  std::string seam;
  for (Chunk& chunk : chunks_) {
    std::string_view bytes(chunk.bytes.get(), std::min(chunk.size, left));
    left -= bytes.size();
    if (!seam.empty()) {
      const std::size_t held = seam.size();
      seam.append(bytes.substr(0, k_longest));
      const std::size_t used = append_wide(&wide, seam);
      if (used <= held) break;
      bytes.remove_prefix(used - held);
      seam.clear();
    }
    const std::string_view rest = bytes.substr(append_wide(&wide, bytes));
    if (rest.size() >= k_longest) break;
    seam.assign(rest);
    chunk.bytes.reset();
  }
  clear();
  *text = std::move(wide);
}

}  // namespace lmx::internal
