// Which streams write as the library's own formatters do.
#pragma once

#include <ios>
#include <locale>

namespace lmx::internal {

// The flags that change how a stream writes numbers or pads them. std::ios_base::dec and right may
// be set or not.
inline constexpr std::ios_base::fmtflags k_number_flags =
    std::ios_base::oct | std::ios_base::hex | std::ios_base::floatfield | std::ios_base::showbase |
    std::ios_base::showpoint | std::ios_base::showpos | std::ios_base::uppercase |
    std::ios_base::left | std::ios_base::internal;

inline bool has_plain_flags(const std::ios_base& stream) {
  return (stream.flags() & k_number_flags) == std::ios_base::fmtflags{};
}

// Whatever the precision.
inline bool is_plain_stream(const std::ios_base& stream) {
  return has_plain_flags(stream) && stream.width() == 0 &&
         stream.getloc() == std::locale::classic();
}

}  // namespace lmx::internal
