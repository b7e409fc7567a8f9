#include "tools/number_condition.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

using zol_v2::reflection::Kind;
using zol_v2::reflection::Value;

namespace {

constexpr std::string_view k_signs = "<>=!";

std::size_t sign_in(std::string_view text) {
  return std::min(text.find_first_of(k_signs), text.size());
}

std::string_view without_blanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool is_number(Kind kind) {
  return kind == Kind::real || kind == Kind::int32 || kind == Kind::uint32 || kind == Kind::uint8;
}

}  // namespace

NumberCondition::NumberCondition(std::string_view text)
    : glob_(without_blanks(text.substr(0, sign_in(text)))) {
  text.remove_prefix(sign_in(text));
  const std::size_t end = std::min(text.find_first_not_of(k_signs), text.size());
  sign_ = text.substr(0, end);
  std::string_view digits = without_blanks(text.substr(end));
  if (digits.substr(0, 1) == "+") digits.remove_prefix(1);
  const char* const last = digits.data() + digits.size();
  const auto [at, error] = std::from_chars(digits.data(), last, number_);
  is_number_ = !digits.empty() && at == last && error == std::errc();
}

std::string NumberCondition::fault() const {
  static constexpr std::string_view k_known[] = {"<", "<=", ">", ">=", "=", "==", "!="};
  if (std::find(std::begin(k_known), std::end(k_known), sign_) == std::end(k_known)) {
    return "a condition is a name or path, one of < <= > >= = !=, and a number";
  }
  return is_number_ ? glob_.fault() : "a number must stand behind " + sign_;
}

bool NumberCondition::holds(const Value& value) const {
  if (!value || !is_number(value.kind())) return false;
  const double number = value.number();
  if (sign_ == "<") return number < number_;
  if (sign_ == "<=") return number <= number_;
  if (sign_ == ">") return number > number_;
  if (sign_ == ">=") return number >= number_;
  return (number == number_) == (sign_ != "!=");
}
