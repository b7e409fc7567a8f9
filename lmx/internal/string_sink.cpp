#include "lmx/internal/string_sink.h"

#include <algorithm>
#include <utility>

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

void StringSink::move_to(std::string* text) {
  std::size_t total = 0;
  for (const Chunk& chunk : chunks_) total += chunk.size;
  total -= static_cast<std::size_t>(epptr() - pptr());

  std::string joined;
  joined.reserve(total);
  for (Chunk& chunk : chunks_) {
    joined.append(chunk.bytes.get(), std::min(chunk.size, total - joined.size()));
    chunk.bytes.reset();
  }
  chunks_.clear();
  setp(nullptr, nullptr);
  *text = std::move(joined);
}

}  // namespace lmx::internal
