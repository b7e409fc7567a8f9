#include "tools/markup.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

// The character at *at of well-formed UTF-8, which is passed.
std::uint32_t next_character(std::string_view text, std::size_t* at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const std::uint32_t lead = byte((*at)++);
  if (lead < 0x80) return lead;
  const int more = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
  std::uint32_t code = lead & (0x3Fu >> more);
  for (int i = 0; i < more && *at < text.size(); ++i) code = code << 6 | (byte((*at)++) & 0x3Fu);
  return code;
}

// Turns the direction of writing beyond what its own letters ask for.
bool is_direction_control(std::uint32_t c) {
  return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

bool is_control(std::uint32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || is_direction_control(c) || c == 0x2028 ||
         c == 0x2029 || c == 0xFEFF || (c & 0xFFFE) == 0xFFFE;
}

void append_visible(std::uint32_t c, std::string* out) {
  constexpr char k_digits[] = "0123456789ABCDEF";
  *out += "\u27E8U+";
  for (int shift = c > 0xFFFF ? 20 : 12; shift >= 0; shift -= 4) *out += k_digits[c >> shift & 15];
  *out += "\u27E9";
}

bool is_letter_or_digit(std::uint32_t c) {
  if (c < 0x80) return (c >= '0' && c <= '9') || ((c | 0x20u) >= 'a' && (c | 0x20u) <= 'z');
  const bool is_space_or_sign = c < 0xC0 || (c >= 0x2000 && c <= 0x206F) || c == 0x3000 ||
                                (c >= 0xFE00 && c <= 0xFE0F) || (c >= 0xFFF0 && c <= 0xFFFD);
  return !is_space_or_sign && !is_control(c);
}

std::size_t count_of_characters(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0u) != 0x80;
  return count;
}

// The first `limit` characters.
std::string_view head_of(std::string_view text, std::size_t limit) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < limit && at < text.size(); ++i) next_character(text, &at);
  return text.substr(0, at);
}

}  // namespace

void append_escaped(std::string_view text, std::string* out) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    const std::uint32_t c = next_character(text, &at);
    switch (c) {
      case '&':
        *out += "&amp;";
        break;
      case '<':
        *out += "&lt;";
        break;
      case '>':
        *out += "&gt;";
        break;
      case '"':
        *out += "&quot;";
        break;
      case '\'':
        *out += "&#39;";
        break;
      case '\t':
      case '\n':
      case '\r':
        *out += ' ';
        break;
      default:
        if (is_control(c)) {
          append_visible(c, out);
        } else {
          out->append(text.substr(begin, at - begin));
        }
    }
  }
}

std::string escaped(std::string_view text) {
  std::string result;
  append_escaped(text, &result);
  return result;
}

std::string shortened(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return std::string(text);
  const std::size_t count = count_of_characters(text);
  if (count <= limit) return std::string(text);
  return std::string(head_of(text, limit)) + "\u2026 (" + grouped_number(count) + " characters)";
}

std::string slug_of(std::string_view text) {
  constexpr std::size_t k_longest = 60;
  std::string slug;
  bool is_gap = false;
  std::size_t length = 0;
  for (std::size_t at = 0; at < text.size() && length < k_longest;) {
    const std::size_t begin = at;
    if (!is_letter_or_digit(next_character(text, &at))) {
      is_gap = !slug.empty();
      continue;
    }
    if (is_gap) slug += '-';
    length += is_gap ? 2 : 1;
    is_gap = false;
    slug.append(text.substr(begin, at - begin));
  }
  return slug;
}

std::string fragment_of(std::string_view id) {
  constexpr char k_digits[] = "0123456789ABCDEF";
  std::string result;
  for (const char c : id) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      result += c;
    } else {
      result += '%';
      result += k_digits[byte >> 4];
      result += k_digits[byte & 15];
    }
  }
  return result;
}

std::string decimal_text(double value, int decimals, bool is_padded) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  char text[400];
  const std::to_chars_result end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
  std::string result(text, end.ptr);
  if (!is_padded && decimals > 0) {
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.') result.pop_back();
  }
  if (result.front() == '-' && result.find_first_of("123456789") == std::string::npos) {
    result.erase(0, 1);
  }
  return result;
}

std::string short_number(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  char text[40];
  const std::to_chars_result end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6);
  return std::string(text, end.ptr);
}

std::string grouped_number(std::size_t value) {
  std::string text = std::to_string(value);
  for (std::size_t i = text.size(); i > 3;) text.insert(i -= 3, ",");
  return text;
}
