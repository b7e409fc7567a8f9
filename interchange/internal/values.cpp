#include "interchange/internal/values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "port/wide_text.h"

namespace zol_v2::interchange::internal {

namespace {

using reflection::Bound;
using reflection::End;
using reflection::Ref;
using reflection::Row;

std::string bounds_of(Row row) {
  std::string text;
  if (const Bound lower = row.lower()) {
    text = (lower.end == End::strict ? "more than " : "at least ") + number_text(lower.value);
  }
  if (const Bound upper = row.upper()) {
    text += text.empty() ? "" : " and ";
    text += (upper.end == End::strict ? "less than " : "at most ") + number_text(upper.value);
  }
  return text;
}

std::string wanted(Row row, lmx::elmx_error error) {
  if (!row.values().empty()) {
    std::string text = "one of";
    for (const std::string_view value : row.values()) text += ' ' + std::string(value);
    return text;
  }
  std::string bounds = bounds_of(row);
  if (!bounds.empty()) return bounds;
  return lmx::get_error_description(error);
}

// Whether a document holds the text, and gives it back: no control characters but tabs and line
// ends, neither NEL nor LINE SEPARATOR, which its reader takes for line feeds, nor what is no
// character.
bool can_be_kept(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned char byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r') return false;
    for (const std::string_view bad :
         {"\xC2\x85", "\xE2\x80\xA8", "\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
      if (text.substr(i, bad.size()) == bad) return false;
    }
  }
  return true;
}

}  // namespace

std::string store_text(Ref object, Row row, std::string_view text) {
  if (!can_be_kept(text)) {
    return std::string(row.name()) + " has a character that no document can hold";
  }
  const lmx::elmx_error error = object.set_text(row, text);
  if (error == lmx::elmx_ok) return {};
  constexpr std::size_t k_shown = 60;
  std::string shown(text.substr(0, k_shown));
  if (text.size() > k_shown) shown += "...";
  return std::string(row.name()) + " is '" + shown + "', which is refused: " + wanted(row, error);
}

std::string utf8_of(const reflection::Value& value) {
  std::string_view narrow;
  return value.narrow_text(&narrow) ? std::string(narrow) : zol::port::to_utf8(value.text());
}

std::string narrow_text(const std::wstring& text) {
  std::string narrow = zol::port::to_utf8(text);
  for (std::size_t i = 0; i + 2 < narrow.size(); ++i) {
    const bool is_surrogate =
        narrow[i] == '\xED' && static_cast<unsigned char>(narrow[i + 1]) >= 0xA0;
    if (is_surrogate) narrow.replace(i, 3, "\xEF\xBF\xBD");
  }
  return narrow;
}

std::string number_text(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

namespace {

// The exponent of a power of ten; 0 for any other number.
int exponent_of(double factor) {
  return factor == 10 ? 1 : factor == 100 ? 2 : factor == 1000 ? 3 : factor == 0.01 ? -2 : 0;
}

// Of a decimal number in one of the usual forms.
double shifted(const std::string& number, int exponent) {
  const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
  int own = 0;
  if (mark < number.size()) {
    const char* const begin = number.data() + mark + (number[mark + 1] == '+' ? 2 : 1);
    (void)std::from_chars(begin, number.data() + number.size(), own);
  }
  const std::string text = number.substr(0, mark) + 'e' + std::to_string(own + exponent);
  double result = 0;
  (void)std::from_chars(text.data() + (text[0] == '+' ? 1 : 0), text.data() + text.size(), result);
  return result;
}

}  // namespace

std::string times(double number, double factor) {
  const int exponent = exponent_of(factor);
  if (exponent == 0 || !std::isfinite(number)) return number_text(number * factor);
  char text[64];
  const char* const end =
      std::to_chars(text, text + sizeof text, number, std::chars_format::scientific).ptr;
  const char* const mark = std::find(static_cast<const char*>(text), end, 'e');
  int own = 0;
  (void)std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, own);
  own += exponent;
  constexpr int k_least = -6, k_most = 17;
  std::string digits(static_cast<const char*>(text), mark);
  if (own < k_least || own > k_most) return digits + 'e' + std::to_string(own);
  const std::string sign = digits[0] == '-' ? "-" : "";
  digits.erase(
      std::remove_if(digits.begin(), digits.end(), [](char c) { return c == '.' || c == '-'; }),
      digits.end());
  if (own < 0) return sign + "0." + std::string(static_cast<std::size_t>(-own - 1), '0') + digits;
  const std::size_t whole = static_cast<std::size_t>(own) + 1;
  if (digits.size() <= whole) return sign + digits + std::string(whole - digits.size(), '0');
  return sign + digits.insert(whole, 1, '.');
}

double divided(const std::string& number, double divisor) {
  const int exponent = exponent_of(divisor);
  if (exponent != 0) return shifted(number, -exponent);
  return shifted(number, 0) / divisor;
}

bool is_number(std::string_view text, double* number) {
  if (text.substr(0, 1) == "+") text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, *number);
  return !text.empty() && parsed.ptr == end && parsed.ec == std::errc() && std::isfinite(*number);
}

std::string number_text(float value) {
  if (!std::isfinite(value)) return number_text(static_cast<double>(value));
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

void set_bytes(const std::array<unsigned, 3>& bytes, char decimal, Rendering* rendering) {
  constexpr std::string_view k_axes[] = {"Red", "Green", "Blue"};
  constexpr double k_most = 255;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    rendering->add(std::string(k_axes[i]), bytes[i] / k_most);
    std::string& text = rendering->coordinates.back().text;
    std::replace(text.begin(), text.end(), '.', decimal);
  }
  Coordinate depth;
  depth.axis = "ColorDepth";
  depth.text = "ColorDepth_8";
  rendering->coordinates.push_back(std::move(depth));
}

}  // namespace zol_v2::interchange::internal
