// How the commands that compute with colours spell names and numbers.
#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "colorimetry/evaluation.h"

// The first that is not empty.
std::string first_text(std::initializer_list<std::string> texts);

// To four decimals, as colour differences are given.
std::string rounded(double value);
// "<= 2", "0 to 3", ">= 40"; empty without limits.
std::string limits_text(const zol_v2::colorimetry::Limits& limits);
// "CIEDE2000", "CIEDE2000 (2:1:1)".
std::string formula_with_factors(zol_v2::colorimetry::Formula formula,
                                 const zol_v2::colorimetry::Factors& factors);

// Those that people may ask for, by short names.
const std::map<std::string, zol_v2::colorimetry::Formula>& difference_formulas();

// Null for none, and for what JSON has no number for.
nlohmann::ordered_json json_number(std::optional<double> value);
