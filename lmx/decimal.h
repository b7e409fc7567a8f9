// Integers and decimals of any length, held as digit text: comparison, and conversions that report
// overflow, but no arithmetic.
//
// Texts are never refused: what is no number reads as 0, what follows the number is ignored. Check
// with is_valid_integer or c_decimal::is_valid first. Results given as `long` are computed in 32
// bits and wrap around, also where `long` is wider; an `overflow` pointer may be null.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <type_traits>
#include <utility>

#include "port/export.h"

namespace lmx {

namespace internal {

template <class... T>
using IfIntegral = std::enable_if_t<(std::is_integral_v<T> && ...), int>;

}  // namespace internal

// An xs:integer in canonical form: no leading zeros, "-" for a negative value, "0" for zero.
class ZOL_API c_big_int {
 public:
  c_big_int() : text_("0") {}
  // The sign and digits that the text begins with. Null stands for "0".
  c_big_int(const char* text);
  c_big_int(const std::string& text);
  // Exact, whatever the type.
  c_big_int(long value);
  template <class Integer, internal::IfIntegral<Integer> = 0>
  c_big_int(Integer value) : text_(std::to_string(value)) {}
  // A copy of the digits.
  c_big_int(const c_big_int&) = default;
  // What was moved from is 0.
  c_big_int(c_big_int&& other) noexcept : c_big_int() { swap(other); }

  // As the constructors. If memory runs out, the value stays as it was.
  c_big_int& operator=(const char* text);
  c_big_int& operator=(const std::string& text);
  c_big_int& operator=(long value);
  template <class Integer, internal::IfIntegral<Integer> = 0>
  c_big_int& operator=(Integer value) {
    return *this = c_big_int(value);
  }
  c_big_int& operator=(const c_big_int& other);
  // What was moved from is 0.
  c_big_int& operator=(c_big_int&& other) noexcept {
    c_big_int(std::move(other)).swap(*this);
    return *this;
  }

  // Exchanges the values, and asks for no memory.
  void swap(c_big_int& other) noexcept { text_.swap(other.text_); }

  // In canonical form.
  std::string get_as_string() const { return text_; }
  // The value in 32 bits. The bound is that of positive numbers: -2147483648 sets *overflow, though
  // the result is right.
  long get(bool* overflow) const;
  // Infinity for what is too large. Above 2^53 it may miss the nearest double.
  double get_as_float() const;

  // Comparison with a number that is still text, which may have a "+" and leading zeros. A null
  // pointer stands for "0". An empty text is neither equal nor below.
  bool is_equal(const char* text) const;
  bool is_greater(const char* text) const;

 private:
  bool is_negative() const { return text_[0] == '-'; }
  bool is_zero() const { return text_[0] == '0'; }

  friend class c_decimal;
  friend struct std::hash<c_big_int>;
  friend bool operator!=(const c_big_int& a, const c_big_int& b) { return a.text_ != b.text_; }

  std::string text_;
};

// Between numbers and texts, which are compared as is_equal and is_greater have it, on either side.
// Only an empty text is out of order: it equals no number, and all are below it.
inline bool operator==(const c_big_int& a, const char* b) { return a.is_equal(b); }
inline bool operator!=(const c_big_int& a, const char* b) { return !(a == b); }
inline bool operator>(const c_big_int& a, const char* b) { return a.is_greater(b); }
inline bool operator>=(const c_big_int& a, const char* b) { return a == b || a > b; }
inline bool operator<(const c_big_int& a, const char* b) { return !(a >= b); }
inline bool operator<=(const c_big_int& a, const char* b) { return !(a > b); }
inline bool operator==(const c_big_int& a, const std::string& b) { return a == b.c_str(); }
inline bool operator!=(const c_big_int& a, const std::string& b) { return a != b.c_str(); }
inline bool operator>(const c_big_int& a, const std::string& b) { return a > b.c_str(); }
inline bool operator>=(const c_big_int& a, const std::string& b) { return a >= b.c_str(); }
inline bool operator<(const c_big_int& a, const std::string& b) { return a < b.c_str(); }
inline bool operator<=(const c_big_int& a, const std::string& b) { return a <= b.c_str(); }
inline bool operator==(const std::string& a, const c_big_int& b) { return b == a; }
inline bool operator!=(const std::string& a, const c_big_int& b) { return b != a; }
inline bool operator>(const std::string& a, const c_big_int& b) { return b < a; }
inline bool operator>=(const std::string& a, const c_big_int& b) { return b <= a; }
inline bool operator<(const std::string& a, const c_big_int& b) { return b > a; }
inline bool operator<=(const std::string& a, const c_big_int& b) { return b >= a; }
inline bool operator==(const char* a, const c_big_int& b) { return b == a; }
inline bool operator!=(const char* a, const c_big_int& b) { return b != a; }
inline bool operator>(const char* a, const c_big_int& b) { return b < a; }
inline bool operator>=(const char* a, const c_big_int& b) { return b <= a; }
inline bool operator<(const char* a, const c_big_int& b) { return b > a; }
inline bool operator<=(const char* a, const c_big_int& b) { return b >= a; }

// By value.
inline bool operator==(const c_big_int& a, const c_big_int& b) { return !(a != b); }
ZOL_API bool operator>(const c_big_int& a, const c_big_int& b);
inline bool operator>=(const c_big_int& a, const c_big_int& b) { return a == b || a > b; }
inline bool operator<(const c_big_int& a, const c_big_int& b) { return !(a >= b); }
inline bool operator<=(const c_big_int& a, const c_big_int& b) { return !(a > b); }

// Writes the canonical form, with the stream's width and fill.
ZOL_API std::ostream& operator<<(std::ostream& os, const c_big_int& value);

// An xs:decimal: sign, integral part and fractional digits. Trailing zeros are kept, and there is a
// negative zero.
//
// The order is not the numeric one where one fraction is the beginning of the other: the shorter
// counts as the greater, so 1.5 > 1.51. Equality ignores trailing zeros; -0 and 0 differ.
class ZOL_API c_decimal {
 public:
  c_decimal() = default;
  // A copy of sign and digits.
  c_decimal(const c_decimal&) = default;
  // What was moved from is 0.
  c_decimal(c_decimal&& other) noexcept { swap(other); }
  // The sign, digits and fraction that the text begins with. Null stands for "0".
  c_decimal(const char* text);
  c_decimal(const std::string& text);
  // `value` times ten to the power of minus `scale`.
  explicit c_decimal(long value, int scale = 0)
      : c_decimal(is_below_zero(value), magnitude(value), scale) {}
  template <class Integer, class Scale = int, internal::IfIntegral<Integer, Scale> = 0>
  explicit c_decimal(Integer value, Scale scale = 0)
      : c_decimal(is_below_zero(value), magnitude(value), static_cast<int>(scale)) {}
  // `value` rounded to `places` decimal places, 15 at most. What is not finite gives zero.
  explicit c_decimal(double value, unsigned places = 15);
  template <class Places, internal::IfIntegral<Places> = 0>
  explicit c_decimal(double value, Places places)
      : c_decimal(value, static_cast<unsigned>(places)) {}

  // An optional sign, digits and an optional point; there is no exponent.
  static bool is_valid(const std::string& text);

  // As the constructors. If memory runs out, the value stays as it was.
  c_decimal& operator=(const char* text);
  c_decimal& operator=(const std::string& text);
  c_decimal& operator=(const c_decimal& other);
  // What was moved from is 0.
  c_decimal& operator=(c_decimal&& other) noexcept {
    c_decimal(std::move(other)).swap(*this);
    return *this;
  }
  // Rounded to 15 decimal places, which are all kept: 0.1 becomes ".100000000000000".
  c_decimal& operator=(double value);
  // An integer has no fraction.
  template <class Integer, internal::IfIntegral<Integer> = 0>
  c_decimal& operator=(Integer value) {
    return *this = c_decimal(value);
  }
  // As the constructor from the same arguments.
  void set(double value, unsigned places = 15);
  // Exchanges the values, and asks for no memory.
  void swap(c_decimal& other) noexcept;

  // A 0 before the point is not written: ".5", "-.5", and "0" for zero.
  std::string get_as_string() const;

  // What stands before the point, with the sign.
  long get_integral(bool* overflow) const;
  // Sets the sign too; the fraction stays.
  void set_integral(long value);

  // The first `digits` digits of the fraction as a number, as if zeros followed it.
  unsigned long get_fractional(int digits, bool* overflow) const;
  // The fraction becomes `value` in `digits` digits: padded on the left, or cut after the first
  // `digits` of them.
  void set_fractional(unsigned long value, unsigned digits);

  // The value times ten to the power of `scale`; digits past it are cut, not rounded.
  long get_scaled(int scale, bool* overflow) const;
  // `value` times ten to the power of minus `scale`.
  void set_scaled(long value, int scale = 0);

  // Digit by digit, so that the last bits may differ from those of the nearest double. Infinity for
  // what is too large.
  double get_as_float() const;

 private:
  c_decimal(bool is_negative, unsigned long long magnitude, int scale);

  template <class Integer>
  static bool is_below_zero(Integer value) {
    if constexpr (std::is_signed_v<Integer>) return value < 0;
    return false;
  }
  template <class Integer>
  static unsigned long long magnitude(Integer value) {
    const auto bits = static_cast<unsigned long long>(value);
    return is_below_zero(value) ? 0 - bits : bits;
  }

  friend struct std::hash<c_decimal>;
  friend ZOL_API bool operator==(const c_decimal& a, const c_decimal& b);
  friend ZOL_API bool operator>(const c_decimal& a, const c_decimal& b);

  std::size_t hash() const noexcept;

  bool is_negative_ = false;
  c_big_int integral_;  // the magnitude
  std::string fractional_;
};

// In the order that the class has.
ZOL_API bool operator==(const c_decimal& a, const c_decimal& b);
ZOL_API bool operator>(const c_decimal& a, const c_decimal& b);
inline bool operator!=(const c_decimal& a, const c_decimal& b) { return !(a == b); }
inline bool operator>=(const c_decimal& a, const c_decimal& b) { return a == b || a > b; }
inline bool operator<(const c_decimal& a, const c_decimal& b) { return !(a >= b); }
inline bool operator<=(const c_decimal& a, const c_decimal& b) { return !(a > b); }

// Writes get_as_string(), with the stream's width and fill.
ZOL_API std::ostream& operator<<(std::ostream& os, const c_decimal& value);

}  // namespace lmx

namespace std {

// As == has it.
template <>
struct hash<lmx::c_big_int> {
  // Of the canonical form.
  std::size_t operator()(const lmx::c_big_int& value) const noexcept {
    return std::hash<std::string>()(value.text_);
  }
};

// As == has it: zeros at the end take no part.
template <>
struct hash<lmx::c_decimal> {
  // Of sign, integral part and fraction.
  std::size_t operator()(const lmx::c_decimal& value) const noexcept { return value.hash(); }
};

}  // namespace std
