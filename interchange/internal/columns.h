// What the columns of a table mean.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "interchange/records.h"

namespace zol_v2::interchange::internal {

enum class Field : unsigned char {
  document,
  color,  // the number of the colour in the table: lines with one number belong together
  group,
  part,
  pair,
  name,
  number,
  id,
  comments,
  rendering,  // the number of the rendering in the colour
  space,
  space_name,
  axis,
  value,
  unit
};
constexpr std::size_t k_fields = 15;

// "UniqueID", as the column is headed.
std::string_view name_of(Field field);

struct Target {
  enum class Kind : unsigned char { none, field, condition, coordinate, hex };

  Kind kind = Kind::none;
  Field field = Field::name;
  Condition condition = Condition::illuminant;
  std::string space, axis;
  Conditions conditions;  // that the heading of a coordinate says
  double divisor = 1;
  bool is_guess = false;  // of the space, so that its scale is to be guessed, too
};

// "UniqueID", "Illuminant", "CIELab.L", "Hex", "-"; perhaps with "/ 100" or "* 0.01" behind it.
// None for anything else.
std::optional<Target> parse_target(std::string_view text);

// What people write for an observer and an illuminant, as documents have it: "10 deg", "CIE 1964",
// "D65/10". Both are conditions of the one column.
void settle_condition(Condition condition, std::string_view text, Conditions* conditions);

// Whether a heading is that of wavelengths in nm.
bool is_wavelength(std::string_view heading);
// Whether it is that of the values of spectra.
bool is_reflectance(std::string_view heading);

// What the columns of a table with these headings are; of kind `none` where nobody knows.
std::vector<Target> guess_targets(const std::vector<std::string>& headings);

// The wavelength in nm that a heading names: "400", "400 nm", "nm400", "R_400", "SPECTRAL_NM400";
// empty for anything else.
std::string wavelength_in(std::string_view heading);

}  // namespace zol_v2::interchange::internal
