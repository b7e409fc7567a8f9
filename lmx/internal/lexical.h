// The value roads of loading and saving without a copy, a stream or an allocation. Each function is
// the one implementation behind its public sibling, and gives the same result.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lmx {

class c_datetime;

namespace internal {

bool is_valid_bool(std::string_view text);
bool is_valid_float(std::string_view text);
bool is_valid_integer(std::string_view text);
bool is_valid_base64(std::string_view text);

// True exactly when c_datetime::is_valid(text). The fields then hold what assignment of the text to
// a default-constructed value gives, the seconds to the bit, and *has_zone says whether the text
// carries a zone; that is also when it matches the pattern ".+T.+(Z|[+\-].+)". False leaves both
// arguments as they were.
bool parse_datetime(std::string_view text, c_datetime* value, bool* has_zone);

// The most that format_datetime writes, whatever the fields hold.
constexpr std::size_t k_max_datetime_text = 128;

// Writes what operator<< gives on a fresh stream in the classic locale to a buffer of
// k_max_datetime_text and returns the end; there is no terminating zero.
char* format_datetime(const c_datetime& value, char* out);
// A text that reading takes for the same value: with as many decimals of the seconds as that needs,
// if any will do, the sign in front of the zeros of a year, and +00:00 where there is no zone.
char* format_exact_datetime(const c_datetime& value, char* out);

// Appends the bytes in base64, on one line and with padding.
void append_base64(std::string* out, const unsigned char* data, std::size_t size);

// Appends the wide vtostring(out, utf8) would have stored. The result is how many bytes it came
// from: all of them, or those before the first fault or the unpaired high surrogate.
std::size_t append_wide(std::wstring* out, std::string_view utf8);

// Appends what convert(out, in) would have stored.
void append_narrow(std::string* out, const std::wstring& in);

}  // namespace internal
}  // namespace lmx
