#include "lmx/internal/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>

#include "lmx/internal/word.h"

// The build sets it where the library is there; the standard library's parser is somewhat slower.
#if ZOL_FAST_FLOAT
#include <fast_float/fast_float.h>
#endif

namespace lmx::internal {
namespace {

// Every power of ten that a double holds exactly.
constexpr int k_max_exact_power = 22;
constexpr double k_powers_of_ten[k_max_exact_power + 1] = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

bool is_digit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

// A text that is lexically a number, with its sign taken off: digits * 10^exponent. What has more
// digits in front of the exponent or in it is not scanned, so nothing overflows.
constexpr std::ptrdiff_t k_max_digits = 19;
constexpr std::ptrdiff_t k_max_power_digits = 17;

struct ScannedNumber {
  std::uint64_t digits = 0;
  std::int64_t exponent = 0;
};

// The value of eight bytes that are digits, the first in the lowest byte, less '0' each: pairs are
// summed.
std::uint32_t value_of_eight(std::uint64_t word) {
  word = word * 10 + (word >> 8);
  return static_cast<std::uint32_t>(((word & 0x000000FF000000FF) * 0x000F424000000064 +
                                     ((word >> 16) & 0x000000FF000000FF) * 0x0000271000000001) >>
                                    32);
}

// Has the high bit of each byte that is no digit, given the bytes less '0'; a byte above such a one
// may have it too. A byte above 9 carries into its high bit.
std::uint64_t find_others(std::uint64_t word) { return ((word + k_ones * 0x76) | word) & k_highs; }

// Reads digits by eights, where as many follow each other, and gives the end of what it read.
const char* scan_eights(const char* next, const char* end, std::uint64_t* digits) {
  while (end - next >= 8) {
    const std::uint64_t word = load_word(next) ^ (k_ones * '0');
    if (find_others(word) != 0) break;
    *digits = *digits * 100000000 + value_of_eight(word);
    next += 8;
  }
  return next;
}

// Reads digits and gives the end of their run.
const char* scan_digits(const char* next, const char* end, std::uint64_t* digits) {
  for (; next != end && is_digit(*next); ++next) {
    *digits = *digits * 10 + static_cast<unsigned char>(*next - '0');
  }
  return next;
}

bool scan_number(const char* next, const char* end, ScannedNumber* number) {
  const char* const integer = next;
  std::uint64_t digits = 0;
  next = scan_digits(next, end, &digits);
  std::ptrdiff_t characters = next - integer;
  if (next != end && *next == '.') {
    const char* const fraction = ++next;
    next = scan_digits(scan_eights(next, end, &digits), end, &digits);
    number->exponent = fraction - next;
    characters += next - fraction;
  }
  if (characters == 0 || characters > k_max_digits) return false;
  number->digits = digits;
  if (next != end && (*next == 'e' || *next == 'E')) {
    ++next;
    const bool is_negative = next != end && *next == '-';
    if (next != end && (*next == '-' || *next == '+')) ++next;
    if (next == end || end - next > k_max_power_digits) return false;
    std::uint64_t power = 0;
    next = scan_digits(next, end, &power);
    number->exponent +=
        is_negative ? -static_cast<std::int64_t>(power) : static_cast<std::int64_t>(power);
  }
  return next == end;
}

// A product or quotient of two numbers that doubles hold exactly is rounded once, so it is the
// nearest double to the number's value. False if the number is none of these.
bool convert_exactly(const ScannedNumber& number, double* value) {
  if (number.digits >= std::uint64_t{1} << 53) return false;
  if (number.exponent < -k_max_exact_power || number.exponent > k_max_exact_power) return false;
  const auto digits = static_cast<double>(number.digits);
  *value = number.exponent < 0 ? digits / k_powers_of_ten[-number.exponent]
                               : digits * k_powers_of_ten[number.exponent];
  return true;
}

#if ZOL_FAST_FLOAT
namespace parser = fast_float;
#else
namespace parser = std;
#endif

// The nearest double to any scanned number. False if that takes more than the digits at hand.
#if ZOL_FAST_FLOAT
bool convert_scanned(const ScannedNumber& number, double* value) {
  using Format = parser::binary_format<double>;
  const auto rounded = parser::compute_float<Format>(number.exponent, number.digits);
  if (rounded.power2 < 0) return false;
  const std::uint64_t bits = rounded.mantissa | static_cast<std::uint64_t>(rounded.power2)
                                                    << Format::mantissa_explicit_bits();
  std::memcpy(value, &bits, sizeof bits);
  return true;
}
#else
bool convert_scanned(const ScannedNumber&, double*) { return false; }
#endif

// What stands for a number, without its sign, that is beyond the range of a double: the place of
// its first digit tells on which side.
double beyond_range(std::string_view number) {
  const std::string_view mantissa = number.substr(0, number.find_first_of("eE"));
  std::string_view power = number.substr(mantissa.size());
  if (!power.empty()) power.remove_prefix(1);
  if (!power.empty() && power[0] == '+') power.remove_prefix(1);
  std::int64_t exponent = 0;
  const auto result = std::from_chars(power.data(), power.data() + power.size(), exponent);
  if (result.ec == std::errc::result_out_of_range) return power[0] == '-' ? 0.0 : HUGE_VAL;
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
  const auto first_digit = static_cast<std::int64_t>(mantissa.find_first_not_of("0."));
  return point - first_digit > -exponent ? HUGE_VAL : 0.0;
}

// For any number, without its sign. False if the text is none.
bool convert_any(const char* first, const char* last, double* value) {
  // The parser knows words of its own, and signs.
  if (first == last || (!is_digit(*first) && *first != '.')) return false;
  *value = 0;
  const auto result = parser::from_chars(first, last, *value);
  if (result.ptr != last) return false;
  if (result.ec != std::errc::result_out_of_range) return true;
  *value = beyond_range({first, static_cast<std::size_t>(last - first)});
  return true;
}

bool read_word(std::string_view text, double* value) {
  if (text == "NaN") {
    *value = std::numeric_limits<double>::quiet_NaN();
  } else if (text == "INF") {
    *value = std::numeric_limits<double>::infinity();
  } else if (text == "-INF") {
    *value = -std::numeric_limits<double>::infinity();
  } else {
    return false;
  }
  return true;
}

char* copy_text(char* out, std::string_view text) {
  std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

constexpr char k_digit_pairs[] =
    "0001020304050607080910111213141516171819202122232425262728293031323334353637383940414243444546"
    "4748495051525354555657585960616263646566676869707172737475767778798081828384858687888990919293"
    "949596979899";

char* put_pair(char* out, std::uint32_t below_100) {
  std::memcpy(out, k_digit_pairs + 2 * below_100, 2);
  return out + 2;
}

// A finite value above zero as d.ddddddddddddd * 10^exponent, without trailing zeros.
struct DecimalDigits {
  static constexpr int k_width = 14;

  char digits[32];  // "0" to the end, for copies of a fixed size
  int count;
  int exponent;
};

// `number` has exactly k_width digits.
void spell_digits(std::uint64_t number, DecimalDigits* decimal) {
  const auto high = static_cast<std::uint32_t>(number / 100000000);
  const auto low = static_cast<std::uint32_t>(number % 100000000);
  std::memset(decimal->digits, '0', sizeof decimal->digits);
  char* out = decimal->digits;
  out = put_pair(out, high / 10000);
  out = put_pair(out, high / 100 % 100);
  out = put_pair(out, high % 100);
  if (low != 0) {
    out = put_pair(out, low / 1000000);
    out = put_pair(out, low / 10000 % 100);
    out = put_pair(out, low / 100 % 100);
    out = put_pair(out, low % 100);
  }
  while (out[-1] == '0') --out;
  decimal->count = static_cast<int>(out - decimal->digits);
}

// Finds the `Precision` significant digits of a finite value above zero, exactly rounded, in one
// multiplication. False if that multiplication does not settle them; nothing is wrong then.
//
// Let 10^x <= value < 10^(x+1). The digits wanted are t = value * 10^(Precision-1-x), rounded to
// an integer. The power of ten is exact as long as its exponent is at most 22 either way (a
// negative one divides), so the computed p is t with one rounding: |p - t| <= ulp(p) / 2. With p
// below 10^14 < 2^47 that is at most 2^-7, so where p is not within 2^-6 of a half, rounding p
// and rounding t to an integer give the same. Near a half the caller asks a slower routine, which
// also sees to exact ties.
//
// Of x only the guess floor(log10(2^e)) is at hand, with 2^e <= value < 2^(e+1); it is right or
// one too small. It was too small if p reaches 10^Precision, since a rounded product does not
// cross a number that a double holds; then the work is done again with the next power. A p that
// is below but rounds up to 10^Precision has the digits 1000... of the next exponent.
template <int Precision>
bool find_digits(double value, DecimalDigits* decimal) {
  constexpr double k_limit = k_powers_of_ten[Precision];
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  const int binary_exponent = static_cast<int>(bits >> 52) - 1023;
  // log10(2) as a fraction of 2^20: exact floors for each exponent of a double.
  int exponent = (binary_exponent * 315653) >> 20;
  const int power = Precision - 1 - exponent;
  if (power > k_max_exact_power || power <= -k_max_exact_power) return false;

  const auto scale = [value](int by) {
    return by >= 0 ? value * k_powers_of_ten[by] : value / k_powers_of_ten[-by];
  };
  double scaled = scale(power);
  if (scaled >= k_limit) {
    scaled = scale(power - 1);
    ++exponent;
  }
  auto digits = static_cast<std::uint64_t>(scaled);
  const double beyond_half = scaled - static_cast<double>(digits) - 0.5;
  if (std::fabs(beyond_half) <= 0x1p-6) return false;
  if (beyond_half > 0) ++digits;
  if (digits == static_cast<std::uint64_t>(k_limit)) {
    digits /= 10;
    ++exponent;
  }
  constexpr auto k_widen =
      static_cast<std::uint64_t>(k_powers_of_ten[DecimalDigits::k_width - Precision]);
  spell_digits(digits * k_widen, decimal);
  decimal->exponent = exponent;
  return true;
}

// Lays the digits out as printf's %g does with a precision above the exponent's: plainly from
// 0.0001 up to the precision, with an exponent otherwise. Copies are of a fixed size, since that
// is quicker than of a counted one; k_number_room allows for them.
template <int Precision>
char* lay_out(const DecimalDigits& decimal, char* out) {
  const int exponent = decimal.exponent;
  if (exponent >= 0 && exponent < Precision) {
    const int integer_digits = exponent + 1;
    std::memcpy(out, decimal.digits, 16);
    if (decimal.count <= integer_digits) return out + integer_digits;
    out[integer_digits] = '.';
    std::memcpy(out + integer_digits + 1, decimal.digits + integer_digits,
                DecimalDigits::k_width - 1);
    return out + decimal.count + 1;
  }
  if (exponent < 0 && exponent >= -4) {
    std::memcpy(out, "0.000", 5);
    out += 1 - exponent;
    std::memcpy(out, decimal.digits, 16);
    return out + decimal.count;
  }
  *out++ = decimal.digits[0];
  if (decimal.count > 1) {
    *out++ = '.';
    std::memcpy(out, decimal.digits + 1, 16);
    out += decimal.count - 1;
  }
  *out++ = 'e';
  *out++ = exponent < 0 ? '-' : '+';
  // find_digits() gives none of three digits.
  return put_pair(out, static_cast<std::uint32_t>(exponent < 0 ? -exponent : exponent));
}

template <int Precision>
char* format_number(double value, char* out) {
  if (std::isnan(value)) return copy_text(out, "NaN");
  if (std::signbit(value)) {
    *out++ = '-';
    value = -value;
  }
  if (std::isinf(value)) return copy_text(out, "INF");
  if (value == 0) return copy_text(out, "0.0");

  DecimalDigits decimal;
  if (find_digits<Precision>(value, &decimal)) return lay_out<Precision>(decimal, out);
  return std::to_chars(out, out + k_number_room - 1, value, std::chars_format::general, Precision)
      .ptr;
}

}  // namespace

namespace {

// The digits at `at`, of which eight bytes can be read, behind those that `digits` holds already.
inline const char* take_digits(const char* at, std::uint64_t* digits) {
  constexpr std::uint64_t k_tens[] = {1,      10,      100,      1000,     10000,
                                      100000, 1000000, 10000000, 100000000};
  const std::uint64_t word = load_word(at) ^ (k_ones * '0');
  const std::uint64_t stops = find_others(word);
  const int count = stops == 0 ? 8 : lowest_byte(stops);
  if (count == 0) return at;
  // The last digit goes to the highest byte, zeros come before the first.
  *digits = *digits * k_tens[count] + value_of_eight(word << (64 - 8 * count));
  return at + count;
}

}  // namespace

const char* read_plain_double(const char* at, const char* end, double* value) {
  // A sign, fifteen digits, a point, and what is read behind them.
  constexpr std::ptrdiff_t k_room = 32;
  if (end - at < k_room) return nullptr;
  const bool is_negative = *at == '-';
  if (is_negative) ++at;
  std::uint64_t digits = 0;
  const char* const integer = at;
  for (; is_digit(*at) && at - integer < 8; ++at) {
    digits = digits * 10 + static_cast<unsigned char>(*at - '0');
  }
  std::ptrdiff_t count = at - integer;
  std::ptrdiff_t decimals = 0;
  if (*at == '.') {
    const char* const fraction = ++at;
    at = take_digits(at, &digits);
    if (at - fraction == 8) at = take_digits(at, &digits);
    decimals = at - fraction;
    count += decimals;
  }
  // Fifteen digits are less than 2^53, and so exact, as is the power of ten.
  if (count == 0 || count > 15 || is_digit(*at)) return nullptr;
  const double magnitude = static_cast<double>(digits) / k_powers_of_ten[decimals];
  *value = is_negative ? -magnitude : magnitude;
  return at;
}

bool read_double(std::string_view text, double* value) {
  const char* first = text.data();
  const char* const last = first + text.size();
  const bool is_negative = first != last && *first == '-';
  if (first != last && (*first == '-' || *first == '+')) ++first;

  ScannedNumber number;
  double magnitude;
  const bool is_done = scan_number(first, last, &number) &&
                       (convert_exactly(number, &magnitude) || convert_scanned(number, &magnitude));
  if (!is_done && !convert_any(first, last, &magnitude)) return read_word(text, value);
  *value = is_negative ? -magnitude : magnitude;
  return true;
}

char* format_double(double value, char* out) { return format_number<14>(value, out); }

char* format_exact_double(double value, char* out) {
  if (value == 0 || !std::isfinite(value)) return format_double(value, out);
  return std::to_chars(out, out + k_number_room, value).ptr;
}

char* format_float(float value, char* out) { return format_number<7>(value, out); }

char* format_seconds(float value, char* out) { return format_number<6>(value, out); }

}  // namespace lmx::internal
