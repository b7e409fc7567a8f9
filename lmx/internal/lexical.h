// The value roads of loading and saving without a copy, a stream or an allocation. Each function is
// the one implementation behind its public sibling, and gives the same result.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lmx {

class c_datetime;

namespace internal {

// Appends what the wide vtostring(out, utf8) would have stored.
void append_wide(std::wstring* out, std::string_view utf8);

// Appends what convert(out, in) would have stored.
void append_narrow(std::string* out, const std::wstring& in);

}  // namespace internal
}  // namespace lmx
