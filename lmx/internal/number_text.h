// Machine numbers to and from the text that a document holds. Neither direction looks at a locale
// or allocates.
#pragma once

#include <cstddef>
#include <string_view>

namespace lmx::internal {

// Room that the two formatting functions below may touch, whatever the value.
inline constexpr std::size_t k_number_room = 32;

// False, with `*value` as it was, unless `text` is lexically an xs:double: INF, -INF, NaN, or an
// optional sign, digits with at most one point ("5." and ".5" too), and an optional exponent.
// Otherwise the nearest double; beyond the range it is zero or infinity with the text's sign.
bool read_double(std::string_view text, double* value);

// The end of a number in plain digits at `at`, with at most one point and a sign before it, whose
// nearest double needs no more than one exact step; null for any other, with *value as it was.
const char* read_plain_double(const char* at, const char* end, double* value);

// Write what a stream with default flags, the classic locale and a precision of 14 (`float`: 7)
// would, except for NaN, INF, -INF, 0.0 and -0.0. `out` has room for k_number_room bytes. The
// result is the end of the text; there is no terminating zero.
char* format_double(double value, char* out);
char* format_float(float value, char* out);
// The same for what is no number, and the shortest text that reads back equal for what is one.
char* format_exact_double(double value, char* out);

// The same at a stream's first precision of 6, for finite values above zero.
char* format_seconds(float value, char* out);

}  // namespace lmx::internal
