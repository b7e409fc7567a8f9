// Lexical checks and counts behind the facets of simple types.
//
// The text is UTF-8 with whitespace already handled; nothing here trims, reports or throws. Empty
// text fails each check, and each count of it is 0. Only the ASCII digits are digits.
#pragma once

#include <string>

#include "port/export.h"

namespace lmx {

// The answer of a callback of has_must_understand.
enum elmx_must_understand {
  elmx_must_understand_false = 0,
  elmx_must_understand_invalid = 1,
  elmx_must_understand_true = 2
};

// "true", "1", "false" or "0".
ZOL_API bool is_valid_bool(const std::string& text);

// An xs:double: "INF", "-INF", "NaN", or digits with an optional sign, point and exponent. There is
// no "+INF"; a bare "." has no digits, but "5." and ".5" do.
ZOL_API bool is_valid_float(const std::string& text);

// An optional sign and digits, of any length.
ZOL_API bool is_valid_integer(const std::string& text);

// The number of characters. A surrogate pair written as two sequences of three bytes is one
// character. A byte that can't open a sequence counts as one and ends the walk; continuation bytes
// are stepped over unseen.
ZOL_API unsigned length(const std::string& utf8);

// Length facets. Texts whose size in bytes settles the question (a character is taken to have four
// bytes at most) are not walked.
ZOL_API bool is_min_length_ok(const std::string& utf8, unsigned min);
// See is_min_length_ok.
ZOL_API bool is_max_length_ok(const std::string& utf8, unsigned max);

// Digits in the whole text, leading zeros, trailing zeros and an exponent's digits included.
ZOL_API int total_digits(const std::string& text);

// Digits after the first ".", trailing zeros and an exponent's digits included.
ZOL_API int fraction_digits(const std::string& text);

// How an application reads a "must understand" attribute: true for "1" and "true", false for "0"
// and "false", else invalid.
ZOL_API elmx_must_understand bool_must_understand(const std::string& text);

}  // namespace lmx
