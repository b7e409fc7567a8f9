#include "lmx/pattern.h"

#include <gtest/gtest.h>
#include <libxml/chvalid.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlregexp.h>
#if LIBXML_VERSION < 21200
#include <libxml/globals.h>
#endif

#include <random>
#include <string>

#include "lmx/unicode_classes.h"

namespace lmx {
namespace {

TEST(PatternTest, MatchesTheWholeText) {
  const c_pattern zoned(".+T.+(Z|[+\\-].+)");
  const struct {
    const char* text;
    bool matches;
  } rows[] = {
      {"2005-06-07T08:09:10Z", true},
      {"2005-06-07T08:09:10+01:00", true},
      {"2005-06-07T08:09:10-01:00", true},
      {"2005-06-07T08:09:10", false},
      {"-2005-06-07T08:09:10", false},
      {"xTyZ", true},
      {"T", false},
      {"", false},
      {"2005-06-07T08:09:10Z\n", false},
      {"2005-06-07T08:09:10+", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(zoned.is_match(std::string(row.text)), row.matches) << row.text;
    const std::string text(row.text);
    EXPECT_EQ(zoned.is_match(std::wstring(text.begin(), text.end())), row.matches) << row.text;
  }
}

TEST(PatternTest, ZonedTextsAreThoseThatThePatternMatches) {
  const c_pattern zoned(".+T.+(Z|[+\\-].+)");
  const std::string pieces[] = {"T",
                                "T",
                                "Z",
                                "+",
                                "-",
                                "x",
                                ":",
                                "\t",
                                "\xC3\xA9",
                                "\xE2\x80\xA8",
                                "\xEF\xBF\xBD",
                                "\xF0\x9D\x84\x9E"};
  const std::string rare[] = {"\n", "\r", "\x7F", std::string(1, '\0')};
  std::mt19937 random(1);
  const auto below = [&](std::size_t count) { return random() % count; };
  int matches = 0;
  for (int i = 0; i < 200000; ++i) {
    std::string text;
    for (std::size_t count = below(10); count != 0; --count) {
      text += below(20) == 0 ? rare[below(std::size(rare))] : pieces[below(std::size(pieces))];
    }
    const bool expected = zoned.is_match(text);
    ASSERT_EQ(internal::is_zoned_text(text), expected) << ::testing::PrintToString(text);
    matches += expected ? 1 : 0;
  }
  EXPECT_GT(matches, 10000);
  EXPECT_LT(matches, 190000);
}

TEST(PatternTest, AZonedTextTakesOnePass) {
  // The engine would take hours.
  const std::string letters(5000000, 'T');
  EXPECT_FALSE(internal::is_zoned_text(letters));
  EXPECT_TRUE(internal::is_zoned_text(letters + "Z"));
  EXPECT_FALSE(internal::is_zoned_text("xTy" + std::string(5000000, '\x01') + "Z"));
}

// The engine fails there, in a way that depends on what stands before.
TEST(PatternTest, NothingZonedHoldsWhatIsNoCharacter) {
  for (const char* const piece :
       {"\xED\xA0\x80", "\xEF\xBF\xBE", "\xEF\xBF\xBF", "\xF4\x90\x80\x80", "\xC0\x80", "\xE2\x82",
        "\xE9", "\x01", "\x1F", "\x80", "\xFF", "\xF8\x88\x80\x80\x80"}) {
    EXPECT_FALSE(internal::is_zoned_text(std::string(piece) + "TyZ")) << piece;
    EXPECT_FALSE(internal::is_zoned_text("xTy+" + std::string(piece))) << piece;
  }
  // Not terminated, so that a look behind the end shows under the sanitizers.
  const std::string cut = "xTy+\xE2";
  EXPECT_FALSE(internal::is_zoned_text(std::string_view(cut).substr(0, cut.size())));
}

TEST(PatternTest, TheEngineIsSilent) {
  static int heard = 0;
  heard = 0;
  const xmlStructuredErrorFunc listener = [](void*, auto*) { ++heard; };
  for (const bool has_listener : {false, true}) {
    xmlSetStructuredErrorFunc(&heard, has_listener ? listener : nullptr);
    ::testing::internal::CaptureStderr();
    const c_regex broken("(");
    const c_regex unknown_block("\\p{IsNothing}");
    c_pattern(".+T").is_match("\xED\xA0\x80T");
    c_pattern(".+T").is_match("\xE9T");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    // The program's own listener is there again.
    EXPECT_EQ(xmlStructuredError, has_listener ? listener : nullptr);
    EXPECT_EQ(xmlStructuredErrorContext, &heard);
  }
  xmlSetStructuredErrorFunc(nullptr, nullptr);
  EXPECT_EQ(heard, 0);
}

TEST(PatternTest, SeesAWideTextAsUtf8) {
  const c_pattern one_character(".");
  EXPECT_TRUE(one_character.is_match(std::wstring(L"\u20AC")));
  EXPECT_TRUE(one_character.is_match(std::wstring({wchar_t(0xD83C), wchar_t(0xDFA8)})));
  EXPECT_FALSE(one_character.is_match(std::wstring(L"ab")));
}

TEST(PatternTest, NothingMatchesWhatDoesNotCompile) {
  const c_regex broken("(");
  EXPECT_FALSE(broken.is_match("("));
  EXPECT_FALSE(broken.is_match(""));
  // Ill-formed UTF-8 would make the engine take memory without end.
  EXPECT_FALSE(c_pattern(".+T.+$Z|[+-\\].\xEA)").is_match("2005-06-07T08:09:10Z"));
}

TEST(PatternTest, TheNullPatternMatchesAll) {
  const c_pattern_null none("[0-9]+");
  EXPECT_TRUE(none.is_match(""));
  EXPECT_TRUE(none.is_match("x"));
}

TEST(UnicodeClassesTest, ForwardsExpressions) {
  const auto text = [](const char* chars) { return reinterpret_cast<const unsigned char*>(chars); };
  _xmlRegexp* const compiled = lmx::xmlRegexpCompile(text("a+"));
  ASSERT_NE(compiled, nullptr);
  EXPECT_EQ(lmx::xmlRegexpExec(compiled, text("aa")), 1);
  EXPECT_EQ(lmx::xmlRegexpExec(compiled, text("ab")), 0);
  EXPECT_EQ(lmx::xmlRegexpIsDeterminist(compiled), 1);
  lmx::xmlRegFreeRegexp(compiled);
}

TEST(UnicodeClassesTest, ForwardsGroups) {
  EXPECT_EQ(&lmx::xmlIsBaseCharGroup, &::xmlIsBaseCharGroup);
  EXPECT_EQ(&lmx::xmlIsCharGroup, &::xmlIsCharGroup);
  EXPECT_EQ(&lmx::xmlIsCombiningGroup, &::xmlIsCombiningGroup);
  EXPECT_EQ(&lmx::xmlIsDigitGroup, &::xmlIsDigitGroup);
  EXPECT_EQ(&lmx::xmlIsExtenderGroup, &::xmlIsExtenderGroup);
  EXPECT_NE(lmx::xmlCharInRange(0x0391, &lmx::xmlIsBaseCharGroup), 0);
  EXPECT_EQ(lmx::xmlCharInRange(0x0391, &lmx::xmlIsDigitGroup), 0);
}

#if LIBXML_VERSION < 21400
// Every predicate agrees with the expression that names its class.
TEST(UnicodeClassesTest, ForwardsPredicates) {
  struct Row {
    const char* name;
    int (*predicate)(int);
  };
  constexpr int k_samples[] = {'A',    'a',    '0',    ' ',    '$',    0x00E9, 0x0130, 0x01C5,
                               0x02B0, 0x0301, 0x0391, 0x0410, 0x05D0, 0x0663, 0x0903, 0x0E01,
                               0x2028, 0x2160, 0x20AC, 0x4E00, 0xAC00, 0xE000, 0xFE0F, 0x1D11E};
  const Row categories[] = {
#define LMX_ROW(name) {#name, lmx::xmlUCSIs##name},
      LMX_UNICODE_CATEGORIES(LMX_ROW)};
  for (const Row& row : categories) {
    for (const int code : k_samples) {
      EXPECT_EQ(row.predicate(code), lmx::xmlUCSIsCat(code, row.name + 3)) << row.name << code;
    }
  }
  const Row blocks[] = {LMX_UNICODE_BLOCKS(LMX_ROW)};
#undef LMX_ROW
  for (const Row& row : blocks) {
    for (const int code : k_samples) {
      const int listed = lmx::xmlUCSIsBlock(code, row.name);
      // Some names are abbreviations of the block's and unknown to the look-up.
      if (listed == -1) continue;
      EXPECT_EQ(row.predicate(code), listed) << row.name << code;
    }
  }
  EXPECT_EQ(lmx::xmlUCSIsBlock('A', "NoSuchBlock"), -1);
}
#endif

}  // namespace
}  // namespace lmx
