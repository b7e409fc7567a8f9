// Values of documents as other formats spell them.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "interchange/records.h"
#include "model/reflection.h"

namespace zol_v2::interchange::internal {

// Stores a text by the rules of documents; a sentence if it was refused, else nothing.
std::string store_text(reflection::Ref object, reflection::Row row, std::string_view text);

// A text in UTF-8. A surrogate without its partner becomes three bytes, which are none.
std::string utf8_of(const reflection::Value& value);

// The same with U+FFFD for such a surrogate.
std::string narrow_text(const std::wstring& text);

// The shortest text that reads back equal.
std::string number_text(double value);

// A number times a factor, and back. By a power of ten nothing is lost on the way: the decimal
// point moves.
std::string times(double number, double factor);
double divided(const std::string& number, double divisor);

// Whether a text is a number, and nothing else.
bool is_number(std::string_view text, double* number);
// The digits that a single-precision number needs.
std::string number_text(float value);

// Red, green and blue of eight bits each, as an sRGB rendering has them. Bytes that are written
// from the values again are the same.
void set_bytes(const std::array<unsigned, 3>& bytes, char decimal, Rendering* rendering);

}  // namespace zol_v2::interchange::internal
