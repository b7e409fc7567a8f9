// A pattern and a text, divided by the first line feed, and the lexical checks on the whole.

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

  // A value that is valid must come back from its own text.
  if (lmx::c_datetime::is_valid(text)) {
    const std::string written = lmx::c_datetime(text).get_as_string();
    if (lmx::c_datetime(written).get_as_string() != written) std::abort();
  }
  if (lmx::is_valid_integer(text)) {
    const lmx::c_big_int number(text);
    if (!(number == text) || lmx::c_big_int(number.get_as_string()) != number) std::abort();
  }
  if (lmx::c_decimal::is_valid(text)) {
    const lmx::c_decimal number(text);
    if (lmx::c_decimal(number.get_as_string()) != number) std::abort();
  }
  if (lmx::c_binary::is_valid_hex(text)) {
    lmx::c_binary bytes;
    bytes.from_hex(text);
    if (bytes.size() != text.size() / 2) std::abort();
  }
  lmx::c_binary bytes;
  bytes.from_base64(text);
  std::wstring wide;
  std::string narrow;
  lmx::convert(&wide, text);
  lmx::convert(&narrow, wide);
  (void)lmx::c_duration(text);
  (void)lmx::length(text);
  (void)lmx::is_valid_float(text);
  return 0;
}
