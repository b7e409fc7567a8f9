#include "lmx/decimal.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <ostream>
#include <string_view>

#include "lmx/internal/scan.h"

namespace lmx {
namespace {

using internal::Cursor;
using internal::digit_value;
using internal::is_digit;

std::string_view view(const char* text) {
  return text == nullptr ? std::string_view("0") : std::string_view(text);
}

bool has_minus(std::string_view text) { return !text.empty() && text[0] == '-'; }

// The digits of a canonical text, or the rest of any text after one sign or zero and the zeros that
// follow.
std::string_view skip_sign_and_zeros(std::string_view text) {
  if (text.empty() || (text[0] != '-' && text[0] != '+' && text[0] != '0')) return text;
  text.remove_prefix(1);
  const std::size_t first = text.find_first_not_of('0');
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

std::string canonical(std::string_view text) {
  const std::string_view digits = skip_sign_and_zeros(text);
  Cursor cursor(digits);
  const std::size_t count = cursor.skip_digits();
  if (count == 0) return "0";
  std::string result;
  result.reserve(count + 1);
  if (has_minus(text)) result += '-';
  return result.append(digits, 0, count);
}

bool is_negative_zero(std::string_view text) {
  return text.size() >= 2 && text[0] == '-' && text[1] == '0' && canonical(text.substr(1)) == "0";
}

// Two runs of digits without leading zeros: below 0, 0 or above 0.
int compare_magnitudes(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return a.compare(b);
}

// A signed number built digit by digit. It wraps around in 32 bits and remembers that it did.
class SignedAccumulator {
 public:
  void negate() { is_negative_ = true; }

  void add(int digit) {
    constexpr std::int32_t k_max = std::numeric_limits<std::int32_t>::max();
    if (as_signed(bits_) > k_max / 10) has_overflowed_ = true;
    bits_ *= 10;
    if (as_signed(static_cast<std::uint32_t>(k_max) - bits_) < digit) has_overflowed_ = true;
    bits_ += static_cast<std::uint32_t>(digit);
  }

  void add(std::string_view digits) {
    for (const char c : digits) add(digit_value(c));
  }

  long result(bool* overflow) const {
    if (overflow != nullptr) *overflow = has_overflowed_;
    return as_signed(is_negative_ ? 0 - bits_ : bits_);
  }

 private:
  static std::int32_t as_signed(std::uint32_t bits) { return static_cast<std::int32_t>(bits); }

  std::uint32_t bits_ = 0;
  bool is_negative_ = false;
  bool has_overflowed_ = false;
};

// `value` in so many digits: padded on the left, or cut behind them.
std::string fraction_text(unsigned long long value, unsigned digits) {
  std::string text = std::to_string(value);
  if (digits < text.size()) {
    text.resize(digits);
  } else {
    text.insert(0, digits - text.size(), '0');
  }
  return text;
}

// Orders the digits after two points by the rule of c_decimal: the first difference decides,
// trailing zeros do not count, and of a text and its continuation the shorter is the greater.
int compare_fractions(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  if (const int order = a.substr(0, common).compare(b.substr(0, common)); order != 0) return order;
  const auto is_zero = [](std::string_view rest) {
    return rest.find_first_not_of('0') == std::string_view::npos;
  };
  if (a.size() == common) return is_zero(b.substr(common)) ? 0 : 1;
  return is_zero(a.substr(common)) ? 0 : -1;
}

}  // namespace

c_big_int::c_big_int(const char* text) : text_(canonical(view(text))) {}

c_big_int::c_big_int(const std::string& text) : text_(canonical(text)) {}

c_big_int::c_big_int(long value) : text_(std::to_string(value)) {}

c_big_int& c_big_int::operator=(const char* text) {
  c_big_int(text).swap(*this);
  return *this;
}

c_big_int& c_big_int::operator=(const std::string& text) {
  c_big_int(text).swap(*this);
  return *this;
}

c_big_int& c_big_int::operator=(long value) {
  c_big_int(value).swap(*this);
  return *this;
}

c_big_int& c_big_int::operator=(const c_big_int& other) {
  c_big_int(other).swap(*this);
  return *this;
}

long c_big_int::get(bool* overflow) const {
  SignedAccumulator number;
  if (is_negative()) number.negate();
  number.add(std::string_view(text_).substr(is_negative() ? 1 : 0));
  return number.result(overflow);
}

double c_big_int::get_as_float() const {
  double value = 0.0;
  for (const char c : text_) {
    if (is_digit(c)) value = value * 10 + digit_value(c);
  }
  return is_negative() ? -value : value;
}

bool c_big_int::is_equal(const char* text) const {
  const std::string_view other = view(text);
  if (other.empty()) return false;
  if (is_negative() != has_minus(other)) return is_zero() && is_negative_zero(other);
  const std::string_view digits = skip_sign_and_zeros(other);
  return digits.empty() ? is_zero()
                        : digits == std::string_view(text_).substr(is_negative() ? 1 : 0);
}

bool c_big_int::is_greater(const char* text) const {
  const std::string_view other = view(text);
  if (other.empty()) return false;
  if (is_negative() != has_minus(other)) {
    return !is_negative() && !(is_zero() && is_negative_zero(other));
  }
  const std::string_view digits = skip_sign_and_zeros(other);
  if (digits.empty()) return !is_negative() && !is_zero();
  if (is_negative()) return compare_magnitudes(std::string_view(text_).substr(1), digits) < 0;
  return compare_magnitudes(text_, digits) > 0;
}

bool operator>(const c_big_int& a, const c_big_int& b) { return a > b.get_as_string(); }

std::ostream& operator<<(std::ostream& os, const c_big_int& value) {
  return os << value.get_as_string();
}

c_decimal::c_decimal(const char* text) : c_decimal(std::string(view(text))) {}

c_decimal::c_decimal(const std::string& text) {
  Cursor cursor(text);
  is_negative_ = has_minus(text);
  cursor.skip_sign();
  const char* start = cursor.position();
  integral_ = std::string(start, cursor.skip_digits());
  if (!cursor.skip('.')) return;
  start = cursor.position();
  fractional_.assign(start, cursor.skip_digits());
}

c_decimal::c_decimal(bool is_negative, unsigned long long magnitude, int scale)
    : is_negative_(is_negative) {
  if (scale <= 0) {
    const auto zeros = static_cast<std::size_t>(-static_cast<long long>(scale));
    integral_ = std::to_string(magnitude).append(zeros, '0');
    return;
  }
  unsigned long long rest = magnitude;
  unsigned long long power = 1;
  for (int i = 0; i < scale && rest != 0; ++i) {
    rest /= 10;
    power *= 10;  // wraps around only in a step that leaves no rest, where it is not needed
  }
  integral_ = std::to_string(rest);
  fractional_ =
      fraction_text(rest == 0 ? magnitude : magnitude % power, static_cast<unsigned>(scale));
}

c_decimal::c_decimal(double value, unsigned places) {
  constexpr unsigned k_max_places = 15;
  // Sign, integral digits, point and places. Unlike printf it knows no locale; it rounds alike.
  char text[1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + k_max_places];
  const auto precision = static_cast<int>(std::min(places, k_max_places));
  const char* const end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, precision).ptr;
  c_decimal(std::string(static_cast<const char*>(text), end)).swap(*this);
}

bool c_decimal::is_valid(const std::string& text) {
  Cursor cursor(text);
  cursor.skip_sign();
  return cursor.skip_mantissa() && cursor.at_end();
}

c_decimal& c_decimal::operator=(const char* text) {
  c_decimal(text).swap(*this);
  return *this;
}

c_decimal& c_decimal::operator=(const std::string& text) {
  c_decimal(text).swap(*this);
  return *this;
}

c_decimal& c_decimal::operator=(const c_decimal& other) {
  c_decimal(other).swap(*this);
  return *this;
}

c_decimal& c_decimal::operator=(double value) {
  set(value);
  return *this;
}

void c_decimal::set(double value, unsigned places) { c_decimal(value, places).swap(*this); }

void c_decimal::swap(c_decimal& other) noexcept {
  std::swap(is_negative_, other.is_negative_);
  integral_.swap(other.integral_);
  fractional_.swap(other.fractional_);
}

std::string c_decimal::get_as_string() const {
  std::string text;
  if (is_negative_) text += '-';
  if (!integral_.is_zero() || fractional_.empty()) text += integral_.text_;
  if (!fractional_.empty()) text.append(1, '.').append(fractional_);
  return text;
}

long c_decimal::get_integral(bool* overflow) const {
  SignedAccumulator number;
  if (is_negative_) number.negate();
  number.add(integral_.text_);
  return number.result(overflow);
}

void c_decimal::set_integral(long value) {
  integral_ = std::to_string(magnitude(value));
  is_negative_ = is_below_zero(value);
}

unsigned long c_decimal::get_fractional(int digits, bool* overflow) const {
  constexpr std::uint32_t k_max = std::numeric_limits<std::uint32_t>::max();
  std::uint32_t value = 0;
  bool has_overflowed = false;
  for (int i = 0; i < digits; ++i) {
    const auto place = static_cast<std::size_t>(i);
    const std::uint32_t digit = place < fractional_.size()
                                    ? static_cast<std::uint32_t>(digit_value(fractional_[place]))
                                    : 0;
    if (value > k_max / 10) has_overflowed = true;
    value *= 10;
    if (k_max - value < digit) has_overflowed = true;
    value += digit;
  }
  if (overflow != nullptr) *overflow = has_overflowed;
  return value;
}

void c_decimal::set_fractional(unsigned long value, unsigned digits) {
  fractional_ = fraction_text(value, digits);
}

long c_decimal::get_scaled(int scale, bool* overflow) const {
  SignedAccumulator number;
  if (is_negative_) number.negate();
  const std::string_view integral = integral_.text_;
  if (scale <= 0) {
    const auto cut = static_cast<std::size_t>(-static_cast<long long>(scale));
    number.add(integral.substr(0, integral.size() - std::min(cut, integral.size())));
  } else {
    const auto places = static_cast<std::size_t>(scale);
    number.add(integral);
    number.add(std::string_view(fractional_).substr(0, places));
    for (std::size_t i = fractional_.size(); i < places; ++i) number.add(0);
  }
  return number.result(overflow);
}

void c_decimal::set_scaled(long value, int scale) { c_decimal(value, scale).swap(*this); }

double c_decimal::get_as_float() const {
  double value = integral_.get_as_float();
  double weight = 1.0;
  for (const char c : fractional_) {
    weight /= 10;
    value += digit_value(c) * weight;
  }
  return is_negative_ ? -value : value;
}

bool operator==(const c_decimal& a, const c_decimal& b) {
  return a.is_negative_ == b.is_negative_ && a.integral_ == b.integral_ &&
         compare_fractions(a.fractional_, b.fractional_) == 0;
}

bool operator>(const c_decimal& a, const c_decimal& b) {
  if (a.is_negative_ != b.is_negative_) return b.is_negative_;
  const int fractions = compare_fractions(a.fractional_, b.fractional_);
  if (a.is_negative_) {
    return a.integral_ < b.integral_ || (a.integral_ == b.integral_ && fractions < 0);
  }
  return a.integral_ > b.integral_ || (a.integral_ == b.integral_ && fractions > 0);
}

std::ostream& operator<<(std::ostream& os, const c_decimal& value) {
  return os << value.get_as_string();
}

std::size_t c_decimal::hash() const noexcept {
  std::string_view fraction = fractional_;
  fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
  const std::size_t integral = std::hash<c_big_int>()(integral_);
  const std::size_t magnitude = integral * 1000003 + std::hash<std::string_view>()(fraction);
  return magnitude * 2 + (is_negative_ ? 1 : 0);
}

}  // namespace lmx
