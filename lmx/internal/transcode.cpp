#include "lmx/internal/transcode.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "lmx/internal/unicode.h"
#include "lmx/internal/unit_blocks.h"
#include "port/large_block.h"

namespace lmx::internal {
namespace {

constexpr std::uint32_t k_line_separator = 0x2028;

static_assert(k_transcode_room >= k_narrow_room);

template <class Form>
class Transcoder {
 public:
  Transcoder(std::string_view bytes, bool has_pairs)
      : at_(bytes.data()),
        end_(at_ + bytes.size() / Form::k_size * Form::k_size),
        has_pairs_(has_pairs) {}

  // Nothing is left, or something comes next that needs the getter.
  bool is_done() const { return is_stopped_ || at_ == end_; }
  bool is_stopped() const { return is_stopped_; }
  const char* position() const { return at_; }
  std::size_t units_left() const { return static_cast<std::size_t>(end_ - at_) / Form::k_size; }

  // Writes up to less than k_narrow_room before `room_end` and returns the end of what it wrote.
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
        std::size_t size = Form::k_size;
        if (is_surrogate(c) && at + size != end_ && has_pairs_ && is_high_surrogate(c) &&
            is_low_surrogate(Form::at(at + size))) {
          c = join_surrogates(c, Form::at(at + size));
          size *= 2;
        } else if (c == NextLineOwn::k_next_line || c == k_line_separator || is_surrogate(c)) {
          is_stopped_ = true;
          at_ = at;
          return out;
        }
        at += size;
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
  bool is_stopped_ = false;
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
    zol::port::expect_use(begin, room);
    const char* const end = source.fill(begin, begin + room);
    out->truncate(size + static_cast<std::size_t>(end - begin));
    room = 3 * source.units_left() + k_narrow_room;
  }
  if (source.is_stopped()) out->truncate(start);
  return !source.is_stopped();
}

template <class Form>
std::size_t transcode_units(std::string_view* bytes, bool has_pairs, char* out, std::size_t room) {
  Transcoder<Form> source(*bytes, has_pairs);
  const char* const end = source.fill(out, out + room);
  bytes->remove_prefix(static_cast<std::size_t>(source.position() - bytes->data()));
  return static_cast<std::size_t>(end - out);
}

// Hands the form of an encoding, and whether it has pairs, to a function.
template <class Function>
auto with_form(SourceEncoding encoding, const Function& function) {
  switch (encoding) {
    case SourceEncoding::utf16_be:
      return function(BigEndianUnits(), true);
    case SourceEncoding::utf16_le:
      return function(LittleEndianUnits(), true);
    case SourceEncoding::ucs2_be:
      return function(BigEndianUnits(), false);
    case SourceEncoding::ucs2_le:
      return function(LittleEndianUnits(), false);
    case SourceEncoding::latin1:
      break;
  }
  return function(Latin1Units(), false);
}

}  // namespace

bool transcode(std::string_view bytes, SourceEncoding encoding, ByteBuffer* out) {
  return with_form(encoding, [&](auto form, bool has_pairs) {
    return transcode_units<decltype(form)>(bytes, has_pairs, out);
  });
}

std::size_t transcode_some(std::string_view* bytes, SourceEncoding encoding, char* out,
                           std::size_t room) {
  return with_form(encoding, [&](auto form, bool has_pairs) {
    return transcode_units<decltype(form)>(bytes, has_pairs, out, room);
  });
}

bool is_same_encoding_name(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [lower](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace lmx::internal
