// The facets of a row, and what a setter does with them.
//
// Each check gives 0 or the code of the first facet that fails. Setters store nothing then; readers
// hand the code to the error handler, which may let it pass.
#pragma once

#include <cstdint>
#include <string>

#include "lmx/errors.h"
#include "model/internal/fields.h"

namespace zol_v2::internal {

// Bounds of a double row. A NaN is outside of every bound and so fails the first one.
struct Range {
  enum End : unsigned char { none, inclusive, strict };

  End lower = none;
  End upper = none;
  double minimum = 0;
  double maximum = 0;

  lmx::elmx_error check(double value) const {
    if (lower != none && !(lower == strict ? value > minimum : value >= minimum)) {
      return lmx::elmx_value_too_small;
    }
    if (upper != none && !(upper == strict ? value < maximum : value <= maximum)) {
      return lmx::elmx_value_too_big;
    }
    return lmx::elmx_ok;
  }
};

// Bounds of an integer row, inclusive. `setter_minimum` is what a setter tests instead of the
// minimum; the schema frees some lower bounds from it.
struct IntegerRange {
  std::int64_t minimum;
  std::int64_t maximum;
  std::int64_t setter_minimum;

  lmx::elmx_error check(std::int64_t value) const {
    if (value < setter_minimum) return lmx::elmx_value_too_small;
    if (value > maximum) return lmx::elmx_value_too_big;
    return lmx::elmx_ok;
  }
};

// A text of exactly this many characters.
struct Length {
  unsigned characters;
};

// White space of the text is collapsed on reading.
struct Collapsed {};

// Setters of simple rows: check, store, set the flag.

inline lmx::elmx_error store(Text& field, const std::wstring& value) {
  field.value = value;
  field.set = true;
  return lmx::elmx_ok;
}

// Counts UTF-16 units, where the reader counts characters.
inline lmx::elmx_error store(Text& field, const std::wstring& value, Length length) {
  if (value.size() > length.characters) return lmx::elmx_length_too_long;
  if (value.size() < length.characters) return lmx::elmx_length_too_short;
  return store(field, value);
}

inline lmx::elmx_error store(OptionalText& field, const std::wstring& value) {
  field.make() = value;
  field.set = true;
  return lmx::elmx_ok;
}

inline lmx::elmx_error store(Enumerated& field, const std::wstring& value, const EnumTable& table) {
  const int number = table.number_of(value);
  if (number == 0) return lmx::elmx_value_not_enumerated;
  field.store(table, number);
  field.set = true;
  return lmx::elmx_ok;
}

template <class T>
lmx::elmx_error store(Value<T>& field, const T& value) {
  field.value = value;
  field.set = true;
  return lmx::elmx_ok;
}

template <class T, class R>
lmx::elmx_error store(Value<T>& field, const T& value, const R& range) {
  if (const lmx::elmx_error error = range.check(value)) return error;
  return store(field, value);
}

// The setter by number: false, with nothing stored, for a number outside of the enumeration.
inline bool store_number(Enumerated& field, int number, const EnumTable& table) {
  if (number < 1 || number > table.size) return false;
  field.store(table, number);
  field.set = true;
  return true;
}

}  // namespace zol_v2::internal
