#include "lmx/text.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "lmx/internal/lexical.h"

namespace lmx {
namespace {

std::wstring units(std::initializer_list<int> values) {
  std::wstring text;
  for (const int value : values) text += static_cast<wchar_t>(value);
  return text;
}

std::wstring widened(const std::string& utf8) {
  std::wstring out = L"old";
  EXPECT_EQ(&vtostring(out, utf8), &out);
  return out;
}

std::string narrowed(const std::wstring& text) {
  std::string out = "old";
  EXPECT_EQ(&convert(&out, text), &out);
  return out;
}

TEST(TextTest, WidensUpToTheFirstFault) {
  const struct {
    const char* what;
    std::string utf8;
    std::wstring text;
  } rows[] = {
      {"empty", "", L""},
      {"ASCII longer than a block", "0123456789abcdefg", L"0123456789abcdefg"},
      {"zero byte", std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
      {"two, three and four bytes", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xA8",
       units({0xE9, 0x20AC, 0xD83C, 0xDFA8})},
      {"fault behind a block",
       "01234567\xFF"
       "b",
       L"01234567"},
      {"illegal lead",
       "a\xFF"
       "b",
       L"a"},
      {"lone continuation",
       "a\x80"
       "b",
       L"a"},
      {"cut sequence", "a\xE2\x82", L"a"},
      {"bad last continuation",
       "a\xE2\x82"
       "b",
       L"a"},
      {"overlong", "\xC0\x80", units({0})},
      {"above Unicode", "\xF7\xBF\xBF\xBF", units({0xDBBF, 0xDFFF})},
      {"pair as two sequences", "\xED\xA0\x80\xED\xB0\x80z", units({0xD800, 0xDC00, 'z'})},
      {"unpaired high",
       "a\xED\xA0\x80"
       "Ab",
       L"a"},
      {"two high", "a\xED\xA0\x80\xED\xA0\x80", L"a"},
      {"high before four bytes", "\xED\xA0\x80\xF0\x90\x80\x80", L""},
      {"high at the end", "a\xED\xA0\x80", L"a"},
      {"lone low", "\xED\xB0\x80z", units({0xDC00, 'z'})},
      {"overlong low after a high", "\xED\xA0\x80\xF0\x8D\xB0\x80z", units({0xD800, 0xDC00, 'z'})},
      {"overlong high", "a\xF0\x8D\xA0\x80z", L"a"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(widened(row.utf8), row.text) << row.what;
    EXPECT_EQ(convert_to_wide(row.utf8), row.text) << row.what;
  }
}

TEST(TextTest, NarrowsEveryUnit) {
  const struct {
    const char* what;
    std::wstring text;
    std::string utf8;
  } rows[] = {
    {"empty", L"", ""},
    {"ASCII", L"0123456789abcdefg", "0123456789abcdefg"},
    {"pair", units({'a', 0xDBFF, 0xDFFF, 'b'}),
     "a\xF4\x8F\xBF\xBF"
     "b"},
    {"lone low", units({0xDC00}), "\xED\xB0\x80"},
    {"the unit after a lone high is lost", units({0xD800, 'A', 'B'}),
     "\xED\xA0\x80"
     "B"},
    {"two high", units({0xD800, 0xD801, 'B'}),
     "\xED\xA0\x80"
     "B"},
    {"high at the end", units({'a', 0xD800}), "a\xED\xA0\x80"},
#if WCHAR_MAX > 0xFFFF
    {"one unit above the plane", units({0x1F3A8}), "\xF0\x9F\x8E\xA8"},
#endif
  };
  for (const auto& row : rows) {
    EXPECT_EQ(narrowed(row.text), row.utf8) << row.what;
    EXPECT_EQ(convert_to_narrow(row.text), row.utf8) << row.what;
  }
}

TEST(TextTest, EveryCodePointComesBack) {
  std::string utf8;
  for (int c = 1; c <= 0x10FFFF; ++c) {
    if (c == 0xD800) c = 0xE000;
    char buffer[5];
    utf8 = unicode_char_to_utf8(c, buffer);
    int decoded;
    ASSERT_TRUE(utf8_to_unicode_char(utf8.data(), &decoded)) << c;
    ASSERT_EQ(decoded, c);
    ASSERT_TRUE(is_valid_utf8_char_sequence(utf8.c_str())) << c;
    ASSERT_EQ(narrowed(widened(utf8)), utf8) << c;
  }
}

TEST(TextTest, AppendsBehindWhatStands) {
  std::wstring wide = L"x";
  internal::append_wide(&wide, "abcdefghij\xC3\xA9\xFFz");
  EXPECT_EQ(wide, L"xabcdefghij\u00E9");
  internal::append_wide(&wide, "");
  EXPECT_EQ(wide, L"xabcdefghij\u00E9");
  std::string narrow = "x";
  internal::append_narrow(&narrow, L"ab");
  internal::append_narrow(&narrow, L"\u00E9");
  EXPECT_EQ(narrow, "xab\xC3\xA9");
}

// By definition, character by character.
std::wstring widened_slowly(const std::string& utf8) {
  std::wstring out;
  int high = 0;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    int c;
    if (utf8.size() - i < length || !utf8_to_unicode_char(&utf8[i], &c)) break;
    const bool is_low = c >= 0xDC00 && c <= 0xDFFF;
    if (high != 0 && !is_low) break;
    if (high == 0 && c >= 0xD800 && c <= 0xDBFF) {
      high = c;
    } else if (c >= 0x10000) {
      out += units({0xD7C0 + (c >> 10), 0xDC00 + (c & 0x3FF)});
    } else {
      if (high != 0) out += static_cast<wchar_t>(high);
      out += static_cast<wchar_t>(c);
      high = 0;
    }
    i += length;
  }
  return out;
}

std::string narrowed_slowly(const std::wstring& text) {
  std::string out;
  char buffer[5];
  for (std::size_t i = 0; i < text.size(); ++i) {
    int c = static_cast<int>(text[i]);
    if (c >= 0xD800 && c <= 0xDBFF && ++i < text.size() && text[i] >= 0xDC00 && text[i] <= 0xDFFF) {
      c = 0x10000 + (c - 0xD800) * 0x400 + (static_cast<int>(text[i]) - 0xDC00);
    }
    out += unicode_char_to_utf8(c, buffer);
  }
  return out;
}

// Runs of one kind of character of many lengths, so that every block edge is met.
TEST(TextTest, LongTextsAreConvertedAsTheirCharactersAre) {
  const std::string sound[] = {"a",
                               "<",
                               "\xC3\xA9",
                               "\xE2\x82\xAC",
                               "\xF0\x9F\x8E\xA8",
                               "\xED\xA0\x81\xED\xB0\x81",
                               "\xED\xB0\x80"};
  const std::string faults[] = {"\xFF", "\x80", "\xC3", "\xE2\x82", "\xED\xA0\x80"};
  std::mt19937 random(1);
  for (int round = 0; round < 3000; ++round) {
    std::string utf8;
    const unsigned kinds = 1 + random() % std::size(sound);
    for (unsigned run = random() % 12; run != 0; --run) {
      const std::string& character = sound[random() % kinds];
      const unsigned count = random() % (random() % 8 == 0 ? 600 : 30);
      for (unsigned i = 0; i < count; ++i) utf8 += character;
    }
    if (round % 3 == 0) {
      utf8.insert(random() % (utf8.size() + 1), faults[random() % std::size(faults)]);
    }
    const std::wstring wide = widened(utf8);
    ASSERT_EQ(wide, widened_slowly(utf8)) << round;
    ASSERT_EQ(narrowed(wide), narrowed_slowly(wide)) << round;
    const std::wstring cut = wide.substr(random() % (wide.size() + 1));
    ASSERT_EQ(narrowed(cut), narrowed_slowly(cut)) << round;
  }
}

TEST(TextTest, ALongTextHasNoSpareMemory) {
  std::string utf8;
  for (int i = 0; i < 5000; ++i) utf8 += i % 7 == 0 ? "\xF0\x9F\x8E\xA8" : "\xC3\xA9";
  const std::wstring wide = convert_to_wide(utf8);
  EXPECT_EQ(wide.capacity(), wide.size());
}

TEST(TextTest, CodePointsAtTheEdgesOfTheirLengths) {
  const struct {
    int c;
    std::string bytes;
  } rows[] = {
      {-1, "\xFF"},
      {0x7F, "\x7F"},
      {0x80, "\xC2\x80"},
      {0x7FF, "\xDF\xBF"},
      {0x800, "\xE0\xA0\x80"},
      {0xFFFF, "\xEF\xBF\xBF"},
      {0x10000, "\xF0\x90\x80\x80"},
      {0x7FFFFFFF, "\xF7\xBF\xBF\xBF"},
  };
  for (const auto& row : rows) {
    char buffer[] = "xxxxx";
    EXPECT_EQ(unicode_char_to_utf8(row.c, buffer), buffer);
    EXPECT_EQ(buffer, row.bytes) << row.c;
  }
}

TEST(TextTest, DecodingTellsWhatItSaw) {
  int c = 0;
  EXPECT_FALSE(utf8_to_unicode_char("\xFF", &c));
  EXPECT_EQ(c, -1);
  EXPECT_FALSE(utf8_to_unicode_char("\x80", &c));
  EXPECT_EQ(c, -1);
  EXPECT_FALSE(utf8_to_unicode_char("\xE2\x82z", &c));
  EXPECT_EQ(c, 0x82);
}

TEST(TextTest, JudgesTheFirstTwoBytes) {
  // The ranges of the well-formed table: a first byte, and the least and the greatest second one.
  const struct {
    int first, last, low, high;
  } rows[] = {
      {0x00, 0x7F, 0x00, 0xFF}, {0xC2, 0xDF, 0x00, 0xFF}, {0xE0, 0xE0, 0xA0, 0xBF},
      {0xE1, 0xEC, 0x00, 0xFF}, {0xED, 0xED, 0x80, 0x9F}, {0xEE, 0xEF, 0x00, 0xFF},
      {0xF0, 0xF0, 0x90, 0xBF}, {0xF1, 0xF3, 0x00, 0xFF}, {0xF4, 0xF4, 0x80, 0x8F},
  };
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      bool expected = false;
      for (const auto& row : rows) {
        expected |=
            first >= row.first && first <= row.last && second >= row.low && second <= row.high;
      }
      const char bytes[] = {static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(is_valid_utf8_char_sequence(bytes), expected) << first << " " << second;
    }
  }
}

TEST(TextTest, ClassifiesAsciiAndNothingElse) {
  for (int c = -300; c < 70000; ++c) {
    const bool in_range = c >= 1 && c <= 127;
    ASSERT_EQ(xisalpha(c), in_range && std::isalpha(c)) << c;
    ASSERT_EQ(xisspace(c), in_range && std::isspace(c)) << c;
    ASSERT_EQ(xisalnum(c), in_range && std::isalnum(c)) << c;
    ASSERT_EQ(xisdigit(c), in_range && std::isdigit(c)) << c;
    ASSERT_EQ(xisxdigit(c), in_range && std::isxdigit(c)) << c;
    ASSERT_EQ(xisprint(c), in_range && std::isprint(c)) << c;
  }
}

TEST(TextTest, SplitsAListAtWhitespace) {
  const struct {
    const char* text;
    std::vector<std::string> tokens;
  } rows[] = {
      {"", {}},
      {" \t\r\n", {}},
      {"  a\tb ", {"a", "b"}},
      {"one", {"one"}},
      {"\xC2\xA0 z", {"\xC2\xA0", "z"}},
  };
  c_xml_list_tokeniser tokeniser("left over");
  for (const auto& row : rows) {
    tokeniser.set(row.text);
    std::vector<std::string> tokens;
    std::string token = "untouched";
    while (tokeniser.get(&token)) tokens.push_back(token);
    EXPECT_EQ(tokens, row.tokens) << row.text;
    EXPECT_FALSE(tokeniser.get(&token));
    EXPECT_EQ(token, row.tokens.empty() ? "untouched" : row.tokens.back());
  }
}

TEST(TextTest, ComparesAPieceOfText) {
  EXPECT_EQ(stringncompare("abcdef", "cd", 2, 2), 0);
  EXPECT_LT(stringncompare("abcdef", "cd", 1, 2), 0);
  EXPECT_GT(stringncompare("abcdef", "cd", 2, 4294967295u), 0);
  EXPECT_EQ(stringncompare("abc", "", 3, 1), 0);
  EXPECT_THROW(stringncompare("abc", "", 4, 1), std::out_of_range);
}

TEST(TextTest, SmallHelpers) {
  EXPECT_TRUE(std::isnan(0.0 / float_zero()));
  EXPECT_TRUE(std::isinf(1.0 / float_zero()));

  char first[] = "abc";
  char second[] = "xyz";
  bswap(first, second, 2);
  EXPECT_STREQ(first, "xyc");
  EXPECT_STREQ(second, "abz");

  ct_qname<std::wstring> wide;
  make_qname(&wide, "p:\xC3\xA9", "urn:n", "\xC3\xA9");
  EXPECT_EQ(wide, ct_qname<std::wstring>(L"urn:n", L"\u00E9"));
  ct_qname<std::string> narrow;
  make_qname(&narrow, "p:l", "urn:n", "l");
  EXPECT_EQ(narrow.get_namespace() + "|" + narrow.get_local_name(), "urn:n|l");
  EXPECT_LT(ct_qname<std::string>("urn:m", "z"), narrow);
  EXPECT_LT(ct_qname<std::string>("urn:n", "k"), narrow);
  EXPECT_FALSE(narrow < ct_qname<std::string>(narrow));
  EXPECT_EQ(std::hash<ct_qname<std::string>>()(narrow),
            std::hash<ct_qname<std::string>>()(ct_qname<std::string>("urn:n", "l")));
  std::string full;
  make_qname(&full, "p:l", "urn:n", "l");
  EXPECT_EQ(full, "p:l");

  const c_any_info info("n", "l", "v");
  EXPECT_EQ(info.get_namespace() + info.get_name() + info.get_value(), "nlv");
}

}  // namespace
}  // namespace lmx
