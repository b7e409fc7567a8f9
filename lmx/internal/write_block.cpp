#include "lmx/internal/write_block.h"

#include <algorithm>
#include <charconv>

#include "lmx/internal/number_text.h"
#include "lmx/writer.h"

namespace lmx::internal {
namespace {

// The longest of the escapes and of the UTF-8 sequences that one unit or byte of a value gives.
constexpr std::size_t k_longest_character = 6;

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

// The bytes that are copied as they are: ASCII without the four that are escaped.
struct PlainTable {
  bool is_plain[128] = {};

  constexpr PlainTable() {
    for (int byte = 0; byte < 128; ++byte) {
      is_plain[byte] = escape_of(static_cast<unsigned char>(byte)).empty();
    }
  }
};
constexpr PlainTable k_plain;

constexpr bool is_high_surrogate(std::uint32_t unit) { return unit - 0xD800 < 0x400; }
constexpr bool is_low_surrogate(std::uint32_t unit) { return unit - 0xDC00 < 0x400; }

char* put(char* out, std::string_view text) {
  std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

char* put_code_point(char* out, std::int32_t code_point) {
  const auto trailing = [code_point](int shift) {
    return static_cast<char>(0x80 | (code_point >> shift & 0x3F));
  };
  if (code_point <= 0x7F) {
    *out++ = static_cast<char>(code_point);
  } else if (code_point <= 0x7FF) {
    *out++ = static_cast<char>(0xC0 | code_point >> 6);
    *out++ = trailing(0);
  } else if (code_point <= 0xFFFF) {
    *out++ = static_cast<char>(0xE0 | code_point >> 12);
    *out++ = trailing(6);
    *out++ = trailing(0);
  } else {
    *out++ = static_cast<char>(0xF0 | (code_point >> 18 & 0x07));
    *out++ = trailing(12);
    *out++ = trailing(6);
    *out++ = trailing(0);
  }
  return out;
}

// The flags that change how a stream writes numbers. std::ios_base::dec may be set or not.
constexpr std::ios_base::fmtflags k_number_flags =
    std::ios_base::oct | std::ios_base::hex | std::ios_base::floatfield | std::ios_base::showbase |
    std::ios_base::showpoint | std::ios_base::showpos | std::ios_base::uppercase;

bool writes_plain_numbers(const std::ostream& stream) {
  return (stream.flags() & k_number_flags) == std::ios_base::fmtflags{};
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
    char* out = reserve(k_longest_character);
    // As many units as the room has for the worst of them; the inner loop need not look at it.
    const auto units = std::min(static_cast<std::size_t>(end - next), room() / k_longest_character);
    for (const wchar_t* const stop = next + units; next < stop; ++next) {
      const auto unit = static_cast<std::uint32_t>(*next);
      if (unit < 0x80) {
        if (k_plain.is_plain[unit]) {
          *out++ = static_cast<char>(unit);
        } else {
          out = put(out, escape_of(static_cast<unsigned char>(unit)));
        }
      } else if (is_high_surrogate(unit)) {
        if (next + 1 == end || !is_low_surrogate(static_cast<std::uint32_t>(next[1]))) {
          return advance_to(out);
        }
        const auto low = static_cast<std::uint32_t>(*++next);
        out = put_code_point(
            out, static_cast<std::int32_t>((unit & 0x3FF) * 1024 + (low & 0x3FF) + 0x10000));
      } else {
        out = put_code_point(out, static_cast<std::int32_t>(unit));
      }
    }
    advance_to(out);
  }
}

void WriteBlock::append_escaped(std::string_view text) {
  std::size_t start = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte >= 0x80 || k_plain.is_plain[byte]) continue;
    append(text.substr(start, at - start));
    append(escape_of(byte));
    start = at + 1;
  }
  append(text.substr(start));
}

void WriteBlock::append_number(double value) {
  if (!writes_plain_numbers(stream_)) {
    flush();
    stream_ << c_as_xml<double>(value);
    return;
  }
  advance_to(format_double(value, reserve(k_number_room)));
}

void WriteBlock::append_number(float value) {
  if (!writes_plain_numbers(stream_)) {
    flush();
    stream_ << c_as_xml<float>(value);
    return;
  }
  advance_to(format_float(value, reserve(k_number_room)));
}

void WriteBlock::append_integer(std::int64_t value) {
  if (!writes_plain_numbers(stream_)) {
    flush();
    stream_ << value;
    return;
  }
  char* out = reserve(k_number_room);
  advance_to(std::to_chars(out, out + k_number_room, value).ptr);
}

}  // namespace lmx::internal
