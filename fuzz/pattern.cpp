// A pattern and a text, divided by the first line feed, and the whole as a text of the one pattern
// that has a matcher of its own.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "lmx/lmxtypes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Its matcher backtracks: long texts only show that it does.
  if (size > 200) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::size_t end = text.find('\n');
  if (end != std::string::npos) {
    const lmx::c_pattern pattern(text.substr(0, end).c_str());
    (void)pattern.is_match(text.substr(end + 1));
  }

  // The engine also matches what it fails at.
  static const lmx::c_pattern zoned(".+T.+(Z|[+\\-].+)");
  if (lmx::internal::is_zoned_text(text) && !zoned.is_match(text)) std::abort();
  return 0;
}
