#include "lmx/internal/transcode.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>

#include "lmx/xml_support.h"

namespace lmx::test {
namespace {

using internal::ByteBuffer;
using internal::SourceEncoding;

constexpr const char* k_gave_up = "(gave up)";

std::string transcoded(const std::string& bytes, SourceEncoding encoding) {
  ByteBuffer out(0);
  out.append("before");
  const bool is_done = internal::transcode(bytes, encoding, &out);
  const std::string text(out.data(), out.size());
  EXPECT_EQ(text.substr(0, 6), "before");
  if (is_done) return text.substr(6);
  EXPECT_EQ(text.size(), 6u);
  return k_gave_up;
}

// The same document character by character, behind a "<" that tells the getter the encoding.
std::string through_getter(const std::string& bytes, SourceEncoding encoding) {
  const char* name = nullptr;
  std::string document;
  switch (encoding) {
    case SourceEncoding::latin1:
      document = "< ";
      name = "ISO-8859-1";
      break;
    case SourceEncoding::ucs2_be:
      name = "ISO-10646-UCS-2";
      [[fallthrough]];
    case SourceEncoding::utf16_be:
      document = test::bytes("\0<\0 ");
      break;
    case SourceEncoding::ucs2_le:
      name = "ISO-10646-UCS-2";
      [[fallthrough]];
    case SourceEncoding::utf16_le:
      document = test::bytes("<\0 \0");
      break;
  }
  document += bytes;
  RecordingError error;
  c_read_string source(document);
  c_get_as_utf8 getter(source, error);
  getter.get();
  getter.get();
  if (name != nullptr) getter.set_encoding(name);
  std::string result;
  for (int c = getter.get(); c >= 0; c = getter.get()) result.push_back(static_cast<char>(c));
  return result + error.log;
}

std::string in_encoding(const std::wstring& units, SourceEncoding encoding) {
  std::string result;
  for (const wchar_t unit : units) {
    const char high = static_cast<char>(unit >> 8 & 0xFF);
    const char low = static_cast<char>(unit & 0xFF);
    if (encoding == SourceEncoding::latin1) {
      result += low;
    } else {
      const bool is_big =
          encoding == SourceEncoding::utf16_be || encoding == SourceEncoding::ucs2_be;
      result += is_big ? high : low;
      result += is_big ? low : high;
    }
  }
  return result;
}

constexpr SourceEncoding k_encodings[] = {SourceEncoding::latin1, SourceEncoding::utf16_be,
                                          SourceEncoding::utf16_le, SourceEncoding::ucs2_be,
                                          SourceEncoding::ucs2_le};

// Runs of one kind of character of many lengths, so that every block edge is met.
TEST(TranscodeTest, GivesWhatTheGetterGives) {
  const std::wstring characters[] = {L"a",      L"\n",     L"\xE9",         L"\u0416",
                                     L"\u20AC", L"\uFFFD", {0xD83C, 0xDFA8}};
  std::mt19937 random(1);
  for (int round = 0; round < 1000; ++round) {
    for (const SourceEncoding encoding : k_encodings) {
      unsigned kinds = 1 + random() % std::size(characters);
      if (encoding == SourceEncoding::latin1) kinds = std::min(kinds, 3u);
      if (encoding == SourceEncoding::ucs2_be || encoding == SourceEncoding::ucs2_le) {
        kinds = std::min(kinds, 6u);
      }
      std::wstring units;
      for (unsigned run = random() % 10; run != 0; --run) {
        const std::wstring& character = characters[random() % kinds];
        for (unsigned i = random() % 100; i != 0; --i) units += character;
      }
      const std::string bytes = in_encoding(units, encoding);
      ASSERT_EQ(transcoded(bytes, encoding), through_getter(bytes, encoding))
          << round << " " << static_cast<int>(encoding);
    }
  }
}

TEST(TranscodeTest, LeavesToTheGetterWhatNeedsIt) {
  const struct {
    const char* what;
    std::wstring units;
    bool in_utf16, in_ucs2, in_latin1;  // whether it is taken
  } rows[] = {
      {"zero", std::wstring(1, L'\0'), true, true, true},
      {"carriage returns", L"\r\n\r", true, true, true},
      {"delete and the character after it", L"\x7F\x80", true, true, true},
      {"next line", L"\x85", false, false, false},
      {"line separator", L"\u2028", false, false, true},
      {"paragraph separator", L"\u2029", true, true, true},
      {"pair", {0xDBFF, 0xDFFF}, true, false, true},
      {"lone high", {0xD800, 'a'}, false, false, true},
      {"high at the end", {0xD800}, false, false, true},
      {"lone low", {0xDC00}, false, false, true},
      {"two high", {0xD800, 0xD800, 0xDC00}, false, false, true},
  };
  for (const auto& row : rows) {
    // Alone, and with full blocks around.
    for (const std::size_t around : {0, 1, 15, 16, 40}) {
      const std::wstring filling(around, L'x');
      for (const SourceEncoding encoding : k_encodings) {
        const bool is_ucs2 =
            encoding == SourceEncoding::ucs2_be || encoding == SourceEncoding::ucs2_le;
        const bool is_taken = encoding == SourceEncoding::latin1 ? row.in_latin1
                              : is_ucs2                          ? row.in_ucs2
                                                                 : row.in_utf16;
        const std::string text = in_encoding(filling + row.units + filling, encoding);
        EXPECT_EQ(transcoded(text, encoding) != k_gave_up, is_taken)
            << row.what << " " << around << " " << static_cast<int>(encoding);
      }
    }
  }
  EXPECT_EQ(transcoded("a", SourceEncoding::utf16_le), k_gave_up);
  EXPECT_EQ(transcoded(bytes("\0a\0"), SourceEncoding::ucs2_be), k_gave_up);
}

TEST(TranscodeTest, GrowsWhereTheTextIsLongerThanUsual) {
  std::wstring units(1000, L'a');
  units.append(5000, L'\u20AC');
  const std::string bytes = in_encoding(units, SourceEncoding::utf16_le);
  EXPECT_EQ(transcoded(bytes, SourceEncoding::utf16_le), convert_to_narrow(units));
}

}  // namespace
}  // namespace lmx::test
