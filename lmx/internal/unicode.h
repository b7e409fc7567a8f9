// Surrogates, and code points as UTF-8: what every conversion between the two forms shares.
#pragma once

#include <cstdint>

namespace lmx::internal {

constexpr bool is_high_surrogate(std::uint32_t unit) { return unit - 0xD800 < 0x400; }
constexpr bool is_low_surrogate(std::uint32_t unit) { return unit - 0xDC00 < 0x400; }
constexpr bool is_surrogate(std::uint32_t unit) { return unit - 0xD800 < 0x800; }

constexpr std::uint32_t join_surrogates(std::uint32_t high, std::uint32_t low) {
  return (high & 0x3FF) * 1024 + (low & 0x3FF) + 0x10000;
}

// Writes the sequence of a code point and returns its end. What is negative as a signed number
// becomes one byte, and bits past the 21st are cut.
inline char* put_code_point(std::uint32_t code_point, char* out) {
  const auto trailing = [code_point](int shift) {
    return static_cast<char>(0x80 | (code_point >> shift & 0x3F));
  };
  if (static_cast<std::int32_t>(code_point) <= 0x7F) {
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

}  // namespace lmx::internal
