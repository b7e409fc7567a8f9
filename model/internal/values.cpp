#include "model/internal/values.h"

#include <charconv>
#include <clocale>
#include <cstdlib>
#include <limits>

#include "lmx/decimal.h"
#include "lmx/facets.h"
#include "lmx/internal/lexical.h"
#include "lmx/internal/number_text.h"
#include "lmx/pattern.h"
#include "lmx/text.h"

namespace zol_v2::internal {

using lmx::elmx_error;

namespace {

// Below this many characters no integer text can overflow 64 bits.
constexpr std::size_t k_short_integer = 18;

struct IntegerBounds {
  std::int64_t minimum;
  std::int64_t maximum;
};

IntegerBounds limits_of(Kind kind) {
  switch (kind) {
    case Kind::int32:
      return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    case Kind::uint32:
      return {0, std::numeric_limits<std::uint32_t>::max()};
    default:
      return {0, std::numeric_limits<std::uint8_t>::max()};
  }
}

// Inclusive.
IntegerBounds bounds_of(const Row& row) {
  IntegerBounds bounds = limits_of(row.kind);
  if (row.lower_end != End::none) {
    bounds.minimum = static_cast<std::int64_t>(row.lower) + (row.lower_end == End::strict ? 1 : 0);
  }
  if (row.upper_end != End::none) {
    bounds.maximum = static_cast<std::int64_t>(row.upper) - (row.upper_end == End::strict ? 1 : 0);
  }
  return bounds;
}

elmx_error check_integer(std::int64_t value, const IntegerBounds& bounds) {
  if (value < bounds.minimum) return lmx::elmx_value_too_small;
  if (value > bounds.maximum) return lmx::elmx_value_too_big;
  return lmx::elmx_ok;
}

// The number that a short text begins with, behind an optional sign.
std::int64_t short_integer(std::string_view text) {
  std::int64_t value = 0;
  const char* const begin = text.data() + (!text.empty() && text.front() == '+' ? 1 : 0);
  std::from_chars(begin, text.data() + text.size(), value);
  return value;
}

// The text of an integer against the bounds, lower bound first, whatever its length.
elmx_error check_integer_text(std::string_view text, const IntegerBounds& bounds) {
  if (text.size() < k_short_integer) return check_integer(short_integer(text), bounds);
  const std::string digits(text);
  if (digits < lmx::c_big_int(std::to_string(bounds.minimum))) return lmx::elmx_value_too_small;
  if (digits > lmx::c_big_int(std::to_string(bounds.maximum))) return lmx::elmx_value_too_big;
  return lmx::elmx_ok;
}

// A value in bounds fits 64 bits; what was waived wraps.
std::int64_t integer_value(std::string_view text) {
  return text.size() < k_short_integer ? short_integer(text)
                                       : lmx::c_big_int(std::string(text)).get(nullptr);
}

// What a text that is no number is taken for when that is waived: the number that it begins with,
// as the standard library has it, with a point whatever the locale.
double leading_number(std::string_view text) {
  std::string number(text);
  const std::string_view point = std::localeconv()->decimal_point;
  const std::size_t at = number.find('.');
  if (point != "." && at != std::string::npos) number.replace(at, 1, point);
  return std::strtod(number.c_str(), nullptr);
}

elmx_error parse_text(const Row& row, std::string_view text, std::wstring& out, Faults& faults) {
  if (row.length != 0) {
    // Counts characters, where a setter counts UTF-16 units.
    const std::string utf8(text);
    if (!lmx::is_max_length_ok(utf8, row.length)) {
      if (const elmx_error error = faults.judge(lmx::elmx_length_too_long)) return error;
    }
    if (!lmx::is_min_length_ok(utf8, row.length)) {
      if (const elmx_error error = faults.judge(lmx::elmx_length_too_short)) return error;
    }
  }
  out.clear();
  lmx::internal::append_wide(&out, text);
  return lmx::elmx_ok;
}

// A text that is not ASCII ends, for the comparison too, where its conversion would.
int number_in(const EnumTable& table, std::string_view text) {
  if (const int number = table.number_of(text)) return number;
  std::wstring converted;
  lmx::internal::append_wide(&converted, text);
  return table.number_of(converted);
}

elmx_error parse_enumerated(const Row& row, std::string_view text, const std::wstring*& out,
                            Pool* pool, Faults& faults) {
  const std::wstring* found = nullptr;
  if (const int number = number_in(*row.enumeration, text)) {
    found = &(*row.enumeration)[number];
  } else {
    if (const elmx_error error = faults.judge(lmx::elmx_value_not_enumerated)) return error;
    auto own = make_owned_in<std::wstring>(pool);
    lmx::internal::append_wide(own.get(), text);
    found = own.release();
  }
  if (out != nullptr && row.enumeration->number_at(out) == 0) {
    Owned<const std::wstring>(out).reset();
  }
  out = found;
  return lmx::elmx_ok;
}

elmx_error parse_real(const Row& row, std::string_view text, double& out, Faults& faults) {
  double value = 0;
  if (!lmx::internal::read_double(text, &value)) {
    if (const elmx_error error = faults.judge(lmx::elmx_bad_value_format)) return error;
    value = leading_number(text);
  }
  if (elmx_error error = check(row, value)) {
    if ((error = faults.judge(error)) != lmx::elmx_ok) return error;
  }
  out = value;
  return lmx::elmx_ok;
}

template <class T>
elmx_error parse_integer(const Row& row, std::string_view text, T& out, Faults& faults) {
  if (!lmx::internal::is_valid_integer(text)) {
    if (const elmx_error error = faults.judge(lmx::elmx_bad_value_format)) return error;
  }
  if (elmx_error error = check_integer_text(text, bounds_of(row))) {
    if ((error = faults.judge(error)) != lmx::elmx_ok) return error;
  }
  out = static_cast<T>(integer_value(text));
  return lmx::elmx_ok;
}

elmx_error parse_truth(std::string_view text, bool& out, Faults& faults) {
  if (!lmx::internal::is_valid_bool(text)) {
    if (const elmx_error error = faults.judge(lmx::elmx_bad_value_format)) return error;
  }
  out = text == "true" || text == "1";
  return lmx::elmx_ok;
}

// A date and time must carry a zone, as the pattern ".+T.+(Z|[+\-].+)" asks; a valid one that does
// matches it.
elmx_error parse_datetime(std::string_view text, lmx::c_datetime& out, Faults& faults) {
  lmx::c_datetime value;
  bool is_zoned = false;
  const bool is_valid = lmx::internal::parse_datetime(text, &value, &is_zoned);
  if (!is_valid) {
    if (const elmx_error error = faults.judge(lmx::elmx_bad_value_format)) return error;
    value = std::string(text);
    is_zoned = lmx::internal::is_zoned_text(text);
  }
  if (!is_zoned) {
    if (const elmx_error error = faults.judge(lmx::elmx_no_pattern_match)) return error;
  }
  out = value;
  return lmx::elmx_ok;
}

elmx_error parse_binary(std::string_view text, lmx::c_binary& out, Faults& faults) {
  if (lmx::internal::read_base64(text, &out)) return lmx::elmx_ok;
  if (const elmx_error error = faults.judge(lmx::elmx_bad_value_format)) return error;
  out.from_base64(std::string(text));
  return lmx::elmx_ok;
}

}  // namespace

elmx_error check_setter(const Row& row, std::int64_t value) {
  IntegerBounds bounds = bounds_of(row);
  if (row.lower_on_read) bounds.minimum = limits_of(row.kind).minimum;
  return check_integer(value, bounds);
}

bool is_same_datetime(const lmx::c_datetime& a, const lmx::c_datetime& b) {
  return a == b && a.get_total_offset_mins() == b.get_total_offset_mins() &&
         a.get_is_utc() == b.get_is_utc();
}

elmx_error parse(const Row& row, std::string_view text, void* field, Pool* pool, Faults& faults) {
  switch (row.kind) {
    case Kind::text:
      return parse_text(row, text, *static_cast<std::wstring*>(field), faults);
    case Kind::enumerated:
      return parse_enumerated(row, text, *static_cast<const std::wstring**>(field), pool, faults);
    case Kind::real:
      return parse_real(row, text, *static_cast<double*>(field), faults);
    case Kind::int32:
      return parse_integer(row, text, *static_cast<int*>(field), faults);
    case Kind::uint32:
      return parse_integer(row, text, *static_cast<unsigned*>(field), faults);
    case Kind::uint8:
      return parse_integer(row, text, *static_cast<unsigned char*>(field), faults);
    case Kind::truth:
      return parse_truth(text, *static_cast<bool*>(field), faults);
    case Kind::datetime:
      return parse_datetime(text, *static_cast<lmx::c_datetime*>(field), faults);
    default:
      return parse_binary(text, *static_cast<lmx::c_binary*>(field), faults);
  }
}

elmx_error parse_into(Object& self, const Row& row, std::string_view text, Pool* pool,
                      Faults& faults) {
  void* field = &row.field<char>(self);
  if (row.kind == Kind::text) {
    field = &row.field<Text>(self).make(pool);
  } else if (row.kind == Kind::binary) {
    auto* const bytes = static_cast<lmx::c_binary*>(field);
    pool != nullptr ? pool->destroy_with_batch(bytes) : Pool::disturb(bytes);
  }
  if (const elmx_error error = parse(row, text, field, pool, faults)) return error;
  Head::touch(self, row.bit);
  return lmx::elmx_ok;
}

elmx_error parse_alternative(Object& self, const Row& row, std::string_view text, Pool* pool,
                             Faults& faults) {
  Slot slot;
  elmx_error error = lmx::elmx_ok;
  switch (row.kind) {
    case Kind::text: {
      auto own = make_owned_in<std::wstring>(pool);
      if ((error = parse_text(row, text, *own, faults)) == lmx::elmx_ok) slot.text = own.release();
      break;
    }
    case Kind::enumerated:
      slot.enumerated = nullptr;
      error = parse_enumerated(row, text, slot.enumerated, pool, faults);
      break;
    case Kind::real:
      error = parse_real(row, text, slot.real, faults);
      break;
    case Kind::int32: {
      int value = 0;
      error = parse_integer(row, text, value, faults);
      slot = slot_of(value);
      break;
    }
    default: {
      unsigned value = 0;
      error = parse_integer(row, text, value, faults);
      slot = slot_of(value);
      break;
    }
  }
  if (error == lmx::elmx_ok) (pool != nullptr ? put : select)(self, row, slot);
  return error;
}

void* parse_new(const Row& row, std::string_view text, Pool* pool, Faults& faults,
                elmx_error* error) {
  const auto parsed = [&](auto value) -> void* {
    *error = parse(row, text, value.get(), pool, faults);
    return *error == lmx::elmx_ok ? value.release() : nullptr;
  };
  return row.kind == Kind::text ? parsed(make_owned_in<std::wstring>(pool))
                                : parsed(make_owned_in<lmx::c_datetime>(pool));
}

}  // namespace zol_v2::internal
