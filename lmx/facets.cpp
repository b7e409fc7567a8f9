#include "lmx/facets.h"

#include <algorithm>
#include <cstdint>

#include "lmx/internal/lexical.h"
#include "lmx/internal/scan.h"

namespace lmx {
namespace {

// How far `length` steps over the character at `i`; 0 for a byte that opens no sequence.
unsigned character_step(const std::string& utf8, std::size_t i) {
  const auto lead = static_cast<unsigned char>(utf8[i]);
  if (lead < 0x80) return 1;
  if ((lead & 0xE0) == 0xC0) return 2;
  if (lead == 0xED) {
    const bool is_surrogate =
        i + 1 < utf8.size() && (static_cast<unsigned char>(utf8[i + 1]) & 0xE0) == 0xA0;
    return is_surrogate ? 6 : 3;
  }
  if ((lead & 0xF0) == 0xE0) return 3;
  if ((lead & 0xF8) == 0xF0) return 4;
  return 0;
}

int count_digits(std::string_view text) {
  return static_cast<int>(std::count_if(text.begin(), text.end(), internal::is_digit));
}

}  // namespace

namespace internal {

bool is_valid_bool(std::string_view text) {
  return text == "true" || text == "1" || text == "false" || text == "0";
}

bool is_valid_float(std::string_view text) {
  if (text == "INF" || text == "-INF" || text == "NaN") return true;
  Cursor cursor(text);
  cursor.skip_sign();
  if (!cursor.skip_mantissa()) return false;
  if (cursor.skip('e') || cursor.skip('E')) {
    cursor.skip_sign();
    if (cursor.skip_digits() == 0) return false;
  }
  return cursor.at_end();
}

bool is_valid_integer(std::string_view text) {
  Cursor cursor(text);
  cursor.skip_sign();
  return cursor.skip_digits() > 0 && cursor.at_end();
}

}  // namespace internal

bool is_valid_bool(const std::string& text) { return internal::is_valid_bool(text); }

bool is_valid_float(const std::string& text) { return internal::is_valid_float(text); }

bool is_valid_integer(const std::string& text) { return internal::is_valid_integer(text); }

unsigned length(const std::string& utf8) {
  unsigned count = 0;
  for (std::size_t i = 0; i < utf8.size();) {
    ++count;
    const unsigned step = character_step(utf8, i);
    if (step == 0) break;
    i += step;
  }
  return count;
}

bool is_min_length_ok(const std::string& utf8, unsigned min) {
  return utf8.size() >= std::uint64_t{4} * min || length(utf8) >= min;
}

bool is_max_length_ok(const std::string& utf8, unsigned max) {
  if (utf8.size() <= max) return true;
  if (utf8.size() > std::uint64_t{4} * max) return false;
  return length(utf8) <= max;
}

int total_digits(const std::string& text) { return count_digits(text); }

int fraction_digits(const std::string& text) {
  const std::size_t point = text.find('.');
  return point == std::string::npos ? 0 : count_digits(std::string_view(text).substr(point));
}

elmx_must_understand bool_must_understand(const std::string& text) {
  if (text == "1" || text == "true") return elmx_must_understand_true;
  if (text == "0" || text == "false") return elmx_must_understand_false;
  return elmx_must_understand_invalid;
}

}  // namespace lmx
