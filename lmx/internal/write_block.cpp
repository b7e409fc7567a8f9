#include "lmx/internal/write_block.h"

#include <algorithm>
#include <charconv>

#include "lmx/internal/lanes.h"
#include "lmx/internal/number_text.h"
#include "lmx/internal/plain_stream.h"
#include "lmx/internal/unicode.h"
#include "lmx/internal/unit_blocks.h"
#include "lmx/writer.h"

namespace lmx::internal {
namespace {

constexpr std::string_view escape_of(unsigned char byte) {
  switch (byte) {
    case '"':
      return "&quot;";
    case '\'':
      return "&apos;";
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    default:
      return {};
  }
}

// The characters that are copied as they are: ASCII without the four that are escaped.
struct PlainTable {
  bool is_plain[128] = {};

  constexpr PlainTable() {
    for (unsigned c = 0; c < 128; ++c) is_plain[c] = !EscapesOwn::has(c);
  }
};
constexpr PlainTable k_plain;

bool is_plain(wchar_t unit) {
  const auto value = static_cast<std::uint32_t>(unit);
  return value < 128 && k_plain.is_plain[value];
}

char* put(char* out, std::string_view text) {
  std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

}  // namespace

void WriteBlock::flush() {
  if (size_ == 0) return;
  const std::size_t count = size_;
  size_ = 0;
  stream_.write(bytes_, static_cast<std::streamsize>(count));
}

void WriteBlock::append_beyond_room(std::string_view text) {
  flush();
  if (text.size() > k_capacity) {
    stream_.write(text.data(), static_cast<std::streamsize>(text.size()));
  } else {
    append(text);
  }
}

// Room for `count` bytes, which is no more than the block holds.
char* WriteBlock::reserve(std::size_t count) {
  if (room() < count) flush();
  return bytes_ + size_;
}

void WriteBlock::append_escaped(const std::wstring& text) {
  const wchar_t* next = text.data();
  const wchar_t* const end = next + text.size();
  while (next != end) {
    char* out = reserve(k_narrow_room);
    const char* const limit = bytes_ + k_capacity - k_narrow_room;
    while (next != end && out <= limit) {
      if (static_cast<std::size_t>(end - next) >= k_unit_block) {
        const std::size_t taken =
            narrow_block<WideUnits, EscapesOwn>(reinterpret_cast<const char*>(next), &out);
        next += taken;
        if (taken != 0) continue;
      } else {
        const wchar_t* const tail = next;
        while (next != end && is_plain(*next)) *out++ = static_cast<char>(*next++);
        if (next != tail) continue;
      }
      // One character of several bytes is mostly followed by others.
      do {
        auto unit = static_cast<std::uint32_t>(*next++);
        if (EscapesOwn::has(unit)) {
          out = put(out, escape_of(static_cast<unsigned char>(unit)));
          break;
        }
        if (is_high_surrogate(unit)) {
          if (next == end || !is_low_surrogate(static_cast<std::uint32_t>(*next))) {
            return advance_to(out);
          }
          unit = join_surrogates(unit, static_cast<std::uint32_t>(*next++));
        }
        out = put_code_point(unit, out);
      } while (next != end && out <= limit && static_cast<std::uint32_t>(*next) >= 0x80);
    }
    advance_to(out);
  }
}

void WriteBlock::append_escaped(std::string_view text) {
  std::size_t start = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
#if ZOL_LANES
    for (; text.size() - at >= Lanes::k_size; at += Lanes::k_size) {
      const Lanes lanes(text.data() + at);
      const unsigned escapes =
          lanes.equal('"') | lanes.equal('\'') | lanes.equal('&') | lanes.equal('<');
      if (escapes == 0) continue;
      at += static_cast<std::size_t>(lowest_bit(escapes));
      break;
    }
    if (at == text.size()) break;
#endif
    const auto byte = static_cast<unsigned char>(text[at]);
    if (!EscapesOwn::has(byte)) continue;
    append(text.substr(start, at - start));
    append(escape_of(byte));
    start = at + 1;
  }
  append(text.substr(start));
}

void WriteBlock::append_exact_text(std::string_view text, bool is_attribute) {
  const auto reference_at = [&](std::size_t at) -> std::string_view {
    switch (text[at]) {
      case '\r':
        return "&#13;";
      case '\n':
        return is_attribute ? "&#10;" : std::string_view();
      case '\t':
        return is_attribute ? "&#9;" : std::string_view();
      case '>':
        return at != 0 && text[at - 1] == ']' ? "&gt;" : std::string_view();
      default:
        return {};
    }
  };
  std::size_t start = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view reference = reference_at(at);
    if (reference.empty()) continue;
    append_escaped(text.substr(start, at - start));
    append(reference);
    start = at + 1;
  }
  append_escaped(text.substr(start));
}

void WriteBlock::append_exact_number(double value) {
  advance_to(format_exact_double(value, reserve(k_number_room)));
}

void WriteBlock::append_number(double value) {
  if (!has_plain_flags(stream_)) {
    flush();
    stream_ << c_as_xml<double>(value);
    return;
  }
  advance_to(format_double(value, reserve(k_number_room)));
}

void WriteBlock::append_number(float value) {
  if (!has_plain_flags(stream_)) {
    flush();
    stream_ << c_as_xml<float>(value);
    return;
  }
  advance_to(format_float(value, reserve(k_number_room)));
}

void WriteBlock::append_integer(std::int64_t value) {
  if (!has_plain_flags(stream_)) {
    flush();
    stream_ << value;
    return;
  }
  char* out = reserve(k_number_room);
  advance_to(std::to_chars(out, out + k_number_room, value).ptr);
}

}  // namespace lmx::internal
