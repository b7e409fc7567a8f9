#include "port/wide_text.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace {

using namespace zol::port;

std::wstring wide(const std::string& bytes) { return from_utf8(bytes.data(), bytes.size()); }

TEST(WideText, IsUtf16Units) {
  const std::pair<std::wstring, std::string> rows[] = {
      {L"", ""},
      {L"plain", "plain"},
      {std::wstring(L"a\0b", 3), std::string("a\0b", 3)},
      {L"\u007f\u0080\u07ff\u0800", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80"},
      {L"\xFFFD\xFFFF", "\xEF\xBF\xBD\xEF\xBF\xBF"},
      {L"\xD83C\xDFA8", "\xF0\x9F\x8E\xA8"},
      {L"\xD800\xDC00\xDBFF\xDFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {L"\xD83Cx", "\xED\xA0\xBCx"},                  // no partner
      {L"\xDFA8\xD83C", "\xED\xBE\xA8\xED\xA0\xBC"},  // wrong way round
      {L"\xD83C\xD83C\xDFA8", "\xED\xA0\xBC\xF0\x9F\x8E\xA8"},
  };
  for (const auto& [text, bytes] : rows) {
    EXPECT_EQ(to_utf8(text), bytes);
    EXPECT_TRUE(is_utf8(bytes.data(), bytes.size()));
    EXPECT_TRUE(wide(bytes) == text) << bytes;
  }
#if WCHAR_MAX > 0xFFFF
  EXPECT_EQ(to_utf8(std::wstring(1, static_cast<wchar_t>(0x1F3A8))), "\xF0\x9F\x8E\xA8");
  EXPECT_EQ(to_utf8(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
  EXPECT_EQ(to_utf8(std::wstring(1, static_cast<wchar_t>(-1))), "\xEF\xBF\xBD");
#endif
}

TEST(WideText, ReplacesWhatIsNoSequence) {
  for (const std::string& bytes :
       {std::string("\x80"), std::string("\xC1\xBF"), std::string("\xE0\x9F\xBF"),
        std::string("\xF0\x8F\xBF\xBF"), std::string("\xF4\x90\x80\x80"), std::string("\xFF"),
        std::string("\xC3"), std::string("\xE2\x82")}) {
    EXPECT_FALSE(is_utf8(bytes.data(), bytes.size()));
    EXPECT_EQ(wide(bytes + "x"), std::wstring(bytes.size(), L'\xFFFD') + L"x");
  }
}

TEST(WideText, CodePagesGiveTheTextBack) {
  std::wstring upper;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const char c = static_cast<char>(byte);
    upper += from_code_page(&c, 1, k_oem_page);
  }
  const std::wstring texts[] = {
      L"plain",        L"Gr\u00f6\u00dfe", L"\u20ac\u2122", L"\u251c\u2310", L"\u8272",
      L"\xD83C\xDFA8", L"\u00e9\u8272",    L"\xD800",       upper,           L""};
  for (const std::wstring& text : texts) {
    for (const std::uint32_t page : {k_ansi_page, k_oem_page, 437u, 1252u, 65001u, 932u}) {
      const std::string bytes = to_code_page(text, page);
      EXPECT_TRUE(from_code_page(bytes.data(), bytes.size(), page) == text) << bytes << " " << page;
    }
  }
  EXPECT_EQ(to_code_page(L"\u00f6\u00df", k_oem_page), "\x94\xE1");
  EXPECT_EQ(to_code_page(L"\u00f6\u20ac", k_ansi_page), "\xF6\x80");
  EXPECT_EQ(to_code_page(L"\u8272", k_oem_page), "\xE8\x89\xB2");
  // In page 437 these are the bytes of an accented e in UTF-8.
  EXPECT_EQ(to_code_page(L"\u251c\u2310", k_oem_page), "\xE2\x94\x9C\xE2\x8C\x90");
}

}  // namespace
