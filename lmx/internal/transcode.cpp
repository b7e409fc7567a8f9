#include "lmx/internal/transcode.h"

#include <cstddef>
#include <cstdint>

#include "lmx/internal/unicode.h"
#include "lmx/internal/unit_blocks.h"

namespace lmx::internal {
namespace {

constexpr std::uint32_t k_line_separator = 0x2028;

template <class Form>
class Transcoder {
 public:
  Transcoder(std::string_view bytes, bool has_pairs)
      : at_(bytes.data()), end_(at_ + bytes.size()), has_pairs_(has_pairs) {}

  bool is_done() const { return at_ == end_; }
  std::size_t units_left() const { return static_cast<std::size_t>(end_ - at_) / Form::k_size; }

  // Writes up to less than k_narrow_room before `room_end`. Null at what needs the getter.
  char* fill(char* out, const char* room_end) {
    const char* at = at_;  // what is written may alias a member, but no local
    while (at != end_ && static_cast<std::size_t>(room_end - out) >= k_narrow_room) {
      if (static_cast<std::size_t>(end_ - at) >= k_unit_block * Form::k_size) {
        const std::size_t taken = narrow_block<Form, NextLineOwn>(at, &out);
        at += taken * Form::k_size;
        if (taken != 0) continue;
      }
      // One character of several bytes is mostly followed by others.
      do {
        std::uint32_t c = Form::at(at);
        at += Form::k_size;
        if (c == NextLineOwn::k_next_line || c == k_line_separator) return nullptr;
        if (is_surrogate(c)) {
          if (!has_pairs_ || !is_high_surrogate(c) || at == end_) return nullptr;
          const std::uint32_t low = Form::at(at);
          at += Form::k_size;
          if (!is_low_surrogate(low)) return nullptr;
          c = join_surrogates(c, low);
        }
        out = put_code_point(c, out);
      } while (at != end_ && static_cast<std::size_t>(room_end - out) >= k_narrow_room &&
               Form::at(at) >= 0x80);
    }
    at_ = at;
    return out;
  }

 private:
  const char* at_;
  const char* const end_;
  const bool has_pairs_;
};

template <class Form>
bool transcode_units(std::string_view bytes, bool has_pairs, ByteBuffer* out) {
  const std::size_t start = out->size();
  if (bytes.size() % Form::k_size != 0) return false;
  Transcoder<Form> source(bytes, has_pairs);
  // Most documents are ASCII but for a few characters. Others get room for the worst at once, of
  // which the system provides only what is written to.
  std::size_t room = source.units_left() + source.units_left() / 16 + k_narrow_room;
  while (!source.is_done()) {
    const std::size_t size = out->size();
    char* const begin = out->extend(room);
    char* const end = source.fill(begin, begin + room);
    if (end == nullptr) {
      out->truncate(start);
      return false;
    }
    out->truncate(size + static_cast<std::size_t>(end - begin));
    room = 3 * source.units_left() + k_narrow_room;
  }
  return true;
}

}  // namespace

bool transcode(std::string_view bytes, SourceEncoding encoding, ByteBuffer* out) {
  switch (encoding) {
    case SourceEncoding::latin1:
      return transcode_units<Latin1Units>(bytes, false, out);
    case SourceEncoding::utf16_be:
      return transcode_units<BigEndianUnits>(bytes, true, out);
    case SourceEncoding::utf16_le:
      return transcode_units<LittleEndianUnits>(bytes, true, out);
    case SourceEncoding::ucs2_be:
      return transcode_units<BigEndianUnits>(bytes, false, out);
    case SourceEncoding::ucs2_le:
      return transcode_units<LittleEndianUnits>(bytes, false, out);
  }
  return false;
}

}  // namespace lmx::internal
