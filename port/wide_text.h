// Wide text and bytes. A `std::wstring` holds UTF-16 units on every platform, also where wchar_t
// has 32 bits; a unit above 0xFFFF stands for its code point. Nothing here depends on the locale.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "port/export.h"

namespace zol::port {

// Surrogate pairs become one four-byte sequence. A surrogate without a partner becomes the three
// bytes of its value, so that different texts stay different; what is no code point becomes U+FFFD.
ZOL_API std::string to_utf8(const std::wstring& text);

// The inverse of `to_utf8`, for every text that it can give. A byte that begins no sequence becomes
// U+FFFD.
ZOL_API std::wstring from_utf8(const char* bytes, std::size_t size);

// Whether the bytes are UTF-8 as `to_utf8` writes it.
ZOL_API bool is_utf8(const char* bytes, std::size_t size);

// The two code pages of entry names and comments, as an archive numbers them.
constexpr std::uint32_t k_ansi_page = 0;
constexpr std::uint32_t k_oem_page = 1;

// Text in a code page. Text that the page does not have, or whose bytes there would pass for UTF-8,
// is written as UTF-8; `from_code_page` therefore tries UTF-8 first, and gives back the text that
// went in. On Windows the pages 0 and 1 are the system's own, and every page that it has may be
// named. Elsewhere page 0 stands for 1252 and page 1 for 437, in which other archive programs read
// the bytes; these and 65001 (UTF-8) may be named, and any other one is taken as page 1.
ZOL_API std::string to_code_page(const std::wstring& text, std::uint32_t page);
ZOL_API std::wstring from_code_page(const char* bytes, std::size_t size, std::uint32_t page);

}  // namespace zol::port
