// One value of a row: its facets, its text in a document, and its storage from that text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lmx/errors.h"
#include "lmx/tokeniser.h"
#include "model/internal/object.h"

namespace zol_v2::internal {

// The bounds of a row: 0, or the code of the first that fails. A NaN is outside of every bound.
inline lmx::elmx_error check(const Row& row, double value) {
  if (row.lower_end != End::none &&
      !(row.lower_end == End::strict ? value > row.lower : value >= row.lower)) {
    return lmx::elmx_value_too_small;
  }
  if (row.upper_end != End::none &&
      !(row.upper_end == End::strict ? value < row.upper : value <= row.upper)) {
    return lmx::elmx_value_too_big;
  }
  return lmx::elmx_ok;
}
// What a setter tests; the schema frees some lower bounds from it.
lmx::elmx_error check_setter(const Row& row, std::int64_t value);

bool is_same_datetime(const lmx::c_datetime& a, const lmx::c_datetime& b);

// White space of texts is kept unless the row says otherwise; that of everything else collapses.
inline lmx::elmx_whitespace whitespace_of(const Row& row) {
  const bool is_text = row.kind == Kind::text || row.kind == Kind::enumerated;
  return is_text && !row.collapses ? lmx::elmx_preserve : lmx::elmx_collapse;
}

// What to do about a facet that failed: 0 to go on as if it had not, or the code to stop with.
class Faults {
 public:
  virtual lmx::elmx_error judge(lmx::elmx_error code) = 0;

 protected:
  ~Faults() = default;
};

// The first one stands.
class RefuseFaults final : public Faults {
 public:
  lmx::elmx_error judge(lmx::elmx_error code) override { return code; }
};

// Checks the text of a value, whose white space was treated, and stores it in `field`, which is of
// the type that the row's kind says: a std::wstring for a text. 0, or a code that
// stands; the field is then as it was, or holds what a fault that was waived has left.
lmx::elmx_error parse(const Row& row, std::string_view text, void* field, Pool* pool,
                      Faults& faults);
// The same into the object: an attribute, a single element, the content. Sets the flag.
lmx::elmx_error parse_into(Object& self, const Row& row, std::string_view text, Pool* pool,
                           Faults& faults);
// The same into a choice, whose selection changes only when the value is complete.
lmx::elmx_error parse_alternative(Object& self, const Row& row, std::string_view text, Pool* pool,
                                  Faults& faults);
// An entry of a list of values from its text; null after a fault that stands, which is in *error.
void* parse_new(const Row& row, std::string_view text, Pool* pool, Faults& faults,
                lmx::elmx_error* error);

}  // namespace zol_v2::internal
