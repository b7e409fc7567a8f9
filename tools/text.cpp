#include "tools/text.h"

#include <charconv>
#include <cmath>

#include "port/wide_text.h"

namespace {

constexpr std::string_view k_replacement = "\xEF\xBF\xBD";

bool is_continuation(std::string_view text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

// The length of the well-formed sequence at `at`, 0 if there is none.
std::size_t sequence_length(std::string_view text, std::size_t at) {
  const unsigned lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                             : lead >= 0xE0 && lead <= 0xEF ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!is_continuation(text, at + i)) return 0;
  }
  if (length < 3) return length;
  // Overlong forms, surrogates and what lies above U+10FFFF show in the second byte.
  const unsigned second = static_cast<unsigned char>(text[at + 1]);
  const bool is_bad = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                      (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
  return is_bad ? 0 : length;
}

}  // namespace

std::string utf8(const std::wstring& text) { return valid_utf8(zol::port::to_utf8(text)); }

std::wstring wide_path(const std::string& path) {
  return zol::port::from_utf8(path.data(), path.size());
}

std::string valid_utf8(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (const std::size_t length = sequence_length(text, at)) {
      result.append(text.substr(at, length));
      at += length;
      continue;
    }
    result.append(k_replacement);
    // One replacement for a lead byte and what belongs to it.
    for (++at; is_continuation(text, at);) ++at;
  }
  return result;
}

std::string one_line(std::string_view text) {
  std::string result = valid_utf8(text);
  for (std::size_t i = 0; i < result.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(result[i]);
    if (c < 0x20 || c == 0x7F) result[i] = ' ';
    // U+0080 to U+009F, which some terminals obey.
    if (c == 0xC2 && static_cast<unsigned char>(result[i + 1]) < 0xA0) {
      result.replace(i, 2, " ");
    }
  }
  return result;
}

std::string number_text(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  char text[32];
  const std::to_chars_result end = std::to_chars(text, text + sizeof text, value);
  return std::string(text, end.ptr);
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? one : many);
}
