// The pieces that the grammars of numbers and dates share: steps over a text that is borrowed.
#pragma once

#include <cstddef>
#include <string_view>

namespace lmx::internal {

inline bool is_digit(char c) { return static_cast<unsigned>(c) - '0' < 10; }

inline int digit_value(char c) { return c - '0'; }

// A place in a text. Each step moves on only over what it names.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  bool at_end() const { return at_ == end_; }
  const char* position() const { return at_; }
  std::size_t remaining() const { return static_cast<std::size_t>(end_ - at_); }
  bool at_digit() const { return at_ != end_ && is_digit(*at_); }

  bool skip(char c) {
    if (at_ == end_ || *at_ != c) return false;
    ++at_;
    return true;
  }

  bool skip_sign() { return skip('-') || skip('+'); }

  // The number of digits passed.
  std::size_t skip_digits() {
    const char* const start = at_;
    while (at_digit()) ++at_;
    return static_cast<std::size_t>(at_ - start);
  }

  // Digits, an optional point and more digits, with at least one digit among them.
  bool skip_mantissa() {
    const std::size_t whole = skip_digits();
    return skip('.') ? whole + skip_digits() > 0 : whole > 0;
  }

  // The value of the digit here, and a step past it.
  int take_digit() { return digit_value(*at_++); }

 private:
  const char* at_;
  const char* end_;
};

}  // namespace lmx::internal
