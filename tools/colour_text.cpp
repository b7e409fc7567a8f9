#include "tools/colour_text.h"

#include <charconv>
#include <cmath>

#include <nlohmann/json.hpp>

#include "tools/text.h"

using zol_v2::colorimetry::Factors;
using zol_v2::colorimetry::Formula;
using zol_v2::colorimetry::Limits;

std::string first_text(std::initializer_list<std::string> texts) {
  for (const std::string& text : texts) {
    if (!text.empty()) return text;
  }
  return "";
}

std::string rounded(double value) {
  if (!(std::fabs(value) < 1e15)) return number_text(value);
  char buffer[40];
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 4);
  const std::string text(buffer, end.ptr);
  return text == "-0.0000" ? "0.0000" : text;
}

std::string limits_text(const Limits& limits) {
  if (limits.low && limits.high) {
    return number_text(*limits.low) + " to " + number_text(*limits.high);
  }
  if (limits.high) return "<= " + number_text(*limits.high);
  return limits.low ? ">= " + number_text(*limits.low) : "";
}

std::string formula_with_factors(Formula formula, const Factors& factors) {
  std::string name(name_of(formula));
  const std::string two = number_text(factors.l) + ':' + number_text(factors.c);
  if (formula == Formula::cmc) return "CMC(" + two + ')';
  const bool has_three = formula == Formula::de94 || formula == Formula::de2000;
  if (!has_three && formula != Formula::din99) return name;
  if (factors.l == 1 && factors.c == 1 && factors.h == 1) return name;
  return name + " (" + two + (has_three ? ':' + number_text(factors.h) : "") + ')';
}

const std::map<std::string, Formula>& difference_formulas() {
  static const std::map<std::string, Formula> formulas = {
      {"76", Formula::de76},   {"94", Formula::de94},     {"2000", Formula::de2000},
      {"cmc", Formula::cmc},   {"din99", Formula::din99}, {"hunter", Formula::hunter_de},
      {"fmc2", Formula::fmc2},
  };
  return formulas;
}

nlohmann::ordered_json json_number(std::optional<double> value) {
  if (!value || !std::isfinite(*value)) return nullptr;
  return *value;
}
