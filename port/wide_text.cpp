#include "port/wide_text.h"

#include <algorithm>
#include <array>

#if defined(_WIN32)
#include "port/internal/windows_calls.h"
#endif

namespace zol::port {
namespace {

constexpr char32_t k_replacement = 0xFFFD;
constexpr char32_t k_last_code_point = 0x10FFFF;
constexpr std::uint32_t k_utf8_page = 65001;

bool is_high_surrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_surrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// The code point at `position`, which moves past it.
char32_t next_code_point(const std::wstring& text, std::size_t& position) {
  const auto unit = static_cast<char32_t>(text[position++]);
  if (is_high_surrogate(unit) && position < text.size()) {
    const auto low = static_cast<char32_t>(text[position]);
    if (is_low_surrogate(low)) {
      ++position;
      return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
  }
  return unit <= k_last_code_point ? unit : k_replacement;
}

void append_utf8(std::string& out, char32_t point) {
  const auto tail = [&](int shift) { out += static_cast<char>(0x80 | ((point >> shift) & 0x3F)); };
  if (point < 0x80) {
    out += static_cast<char>(point);
  } else if (point < 0x800) {
    out += static_cast<char>(0xC0 | (point >> 6));
    tail(0);
  } else if (point < 0x10000) {
    out += static_cast<char>(0xE0 | (point >> 12));
    tail(6);
    tail(0);
  } else {
    out += static_cast<char>(0xF0 | (point >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

void append_wide(std::wstring& out, char32_t point) {
  if (point < 0x10000) {
    out += static_cast<wchar_t>(point);
  } else {
    out += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
    out += static_cast<wchar_t>(0xDC00 + (point & 0x3FF));
  }
}

struct Sequence {
  char32_t point;
  std::size_t length;  // 0: no sequence begins here
};

// Shortest forms up to U+10FFFF; the surrogates are let through.
Sequence read_sequence(const unsigned char* bytes, std::size_t size) {
  const unsigned char first = bytes[0];
  if (first < 0x80) return {first, 1};
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || length > size) return {0, 0};
  char32_t point = first & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((bytes[i] & 0xC0) != 0x80) return {0, 0};
    point = (point << 6) | (bytes[i] & 0x3Fu);
  }
  constexpr std::array<char32_t, 5> k_least = {0, 0, 0x80, 0x800, 0x10000};
  if (point < k_least[length] || point > k_last_code_point) return {0, 0};
  return {point, length};
}

}  // namespace

std::string to_utf8(const std::wstring& text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) append_utf8(out, next_code_point(text, i));
  return out;
}

std::wstring from_utf8(const char* bytes, std::size_t size) {
  const auto* data = reinterpret_cast<const unsigned char*>(bytes);
  std::wstring out;
  out.reserve(size);
  for (std::size_t i = 0; i < size;) {
    const Sequence sequence = read_sequence(data + i, size - i);
    append_wide(out, sequence.length == 0 ? k_replacement : sequence.point);
    i += std::max<std::size_t>(sequence.length, 1);
  }
  return out;
}

bool is_utf8(const char* bytes, std::size_t size) {
  const auto* data = reinterpret_cast<const unsigned char*>(bytes);
  for (std::size_t i = 0; i < size;) {
    const std::size_t length = read_sequence(data + i, size - i).length;
    if (length == 0) return false;
    i += length;
  }
  return true;
}

#if defined(_WIN32)

namespace {

std::uint32_t page_number(std::uint32_t page) {
  return page == k_ansi_page ? GetACP() : page == k_oem_page ? GetOEMCP() : page;
}

// False for a text that the page does not have.
bool encode(const std::wstring& text, std::uint32_t page, std::string& out) {
  const int units = static_cast<int>(text.size());
  BOOL is_replaced = FALSE;
  const auto convert = [&](char* to, int room) {
    return WideCharToMultiByte(page, WC_NO_BEST_FIT_CHARS, text.data(), units, to, room, nullptr,
                               &is_replaced);
  };
  const int size = convert(nullptr, 0);
  if (size <= 0 || is_replaced) return text.empty();
  out.resize(static_cast<std::size_t>(size));
  convert(out.data(), size);
  return true;
}

std::wstring decode(const char* bytes, std::size_t size, std::uint32_t page) {
  const int length = static_cast<int>(size);
  const int units = MultiByteToWideChar(page, 0, bytes, length, nullptr, 0);
  if (units <= 0) return from_utf8(bytes, size);
  std::wstring out(static_cast<std::size_t>(units), L'\0');
  MultiByteToWideChar(page, 0, bytes, length, out.data(), units);
  return out;
}

}  // namespace

#else

namespace {

// What the bytes 0x80 to 0xFF stand for, from the published mapping tables of the two pages. The
// five bytes that page 1252 leaves open stand for the control characters of the same number.
using UpperHalf = std::array<char16_t, 128>;
constexpr UpperHalf k_page_437 = {{
    0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7, 0x00EA, 0x00EB, 0x00E8, 0x00EF,
    0x00EE, 0x00EC, 0x00C4, 0x00C5, 0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2, 0x00FB, 0x00F9,
    0x00FF, 0x00D6, 0x00DC, 0x00A2, 0x00A3, 0x00A5, 0x20A7, 0x0192, 0x00E1, 0x00ED, 0x00F3, 0x00FA,
    0x00F1, 0x00D1, 0x00AA, 0x00BA, 0x00BF, 0x2310, 0x00AC, 0x00BD, 0x00BC, 0x00A1, 0x00AB, 0x00BB,
    0x2591, 0x2592, 0x2593, 0x2502, 0x2524, 0x2561, 0x2562, 0x2556, 0x2555, 0x2563, 0x2551, 0x2557,
    0x255D, 0x255C, 0x255B, 0x2510, 0x2514, 0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x255E, 0x255F,
    0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550, 0x256C, 0x2567, 0x2568, 0x2564, 0x2565, 0x2559,
    0x2558, 0x2552, 0x2553, 0x256B, 0x256A, 0x2518, 0x250C, 0x2588, 0x2584, 0x258C, 0x2590, 0x2580,
    0x03B1, 0x00DF, 0x0393, 0x03C0, 0x03A3, 0x03C3, 0x00B5, 0x03C4, 0x03A6, 0x0398, 0x03A9, 0x03B4,
    0x221E, 0x03C6, 0x03B5, 0x2229, 0x2261, 0x00B1, 0x2265, 0x2264, 0x2320, 0x2321, 0x00F7, 0x2248,
    0x00B0, 0x2219, 0x00B7, 0x221A, 0x207F, 0x00B2, 0x25A0, 0x00A0,
}};
constexpr UpperHalf k_page_1252 = {{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039,
    0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, 0x00A0, 0x00A1, 0x00A2, 0x00A3,
    0x00A4, 0x00A5, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x00AA, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x00AF,
    0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x00B9, 0x00BA, 0x00BB,
    0x00BC, 0x00BD, 0x00BE, 0x00BF, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C6, 0x00C7,
    0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x00CC, 0x00CD, 0x00CE, 0x00CF, 0x00D0, 0x00D1, 0x00D2, 0x00D3,
    0x00D4, 0x00D5, 0x00D6, 0x00D7, 0x00D8, 0x00D9, 0x00DA, 0x00DB, 0x00DC, 0x00DD, 0x00DE, 0x00DF,
    0x00E0, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5, 0x00E6, 0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB,
    0x00EC, 0x00ED, 0x00EE, 0x00EF, 0x00F0, 0x00F1, 0x00F2, 0x00F3, 0x00F4, 0x00F5, 0x00F6, 0x00F7,
    0x00F8, 0x00F9, 0x00FA, 0x00FB, 0x00FC, 0x00FD, 0x00FE, 0x00FF,
}};
constexpr std::uint32_t k_western_page = 1252;
constexpr std::uint32_t k_dos_page = 437;

std::uint32_t page_number(std::uint32_t page) {
  return page == k_ansi_page ? k_western_page : page == k_oem_page ? k_dos_page : page;
}

const UpperHalf& upper_half(std::uint32_t page) {
  return page == k_western_page ? k_page_1252 : k_page_437;
}

bool encode(const std::wstring& text, std::uint32_t page, std::string& out) {
  const UpperHalf& upper = upper_half(page);
  for (const wchar_t unit : text) {
    const auto value = static_cast<char32_t>(unit);
    if (value < 0x80) {
      out += static_cast<char>(value);
      continue;
    }
    const auto* found = std::find(upper.begin(), upper.end(), value);
    if (found == upper.end()) return false;
    out += static_cast<char>(0x80 + (found - upper.begin()));
  }
  return true;
}

std::wstring decode(const char* bytes, std::size_t size, std::uint32_t page) {
  const UpperHalf& upper = upper_half(page);
  std::wstring out;
  out.reserve(size);
  for (std::size_t i = 0; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    out += static_cast<wchar_t>(byte < 0x80 ? byte : upper[byte - 0x80]);
  }
  return out;
}

}  // namespace

#endif

std::string to_code_page(const std::wstring& text, std::uint32_t page) {
  const std::uint32_t number = page_number(page);
  std::string out;
  if (number != k_utf8_page && encode(text, number, out)) {
    const bool is_ascii = out.size() == text.size() &&
                          std::all_of(out.begin(), out.end(),
                                      [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (is_ascii || !is_utf8(out.data(), out.size())) return out;
  }
  return to_utf8(text);
}

std::wstring from_code_page(const char* bytes, std::size_t size, std::uint32_t page) {
  const std::uint32_t number = page_number(page);
  if (number == k_utf8_page || is_utf8(bytes, size)) return from_utf8(bytes, size);
  return decode(bytes, size, number);
}

}  // namespace zol::port
