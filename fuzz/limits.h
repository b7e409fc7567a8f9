// What a fuzzer is not to spend its time on.
#pragma once

#include <algorithm>
#include <string_view>

namespace zol_fuzz {

// Whether a document may expand to a multiple of itself that takes long. The tests replay such
// towers; a fuzzer would build one from every entity that it meets, at some seconds a run.
inline bool is_tower([[maybe_unused]] std::string_view text) {
#if defined(ZOL_FUZZ)
  constexpr auto k_most_references = 6;
  if (text.find('!') == std::string_view::npos) return false;
  return std::count(text.begin(), text.end(), '&') + std::count(text.begin(), text.end(), '%') >
         k_most_references;
#else
  return false;
#endif
}

}  // namespace zol_fuzz
