#include "lmx/pattern.h"

#include <gtest/gtest.h>
#include <libxml/chvalid.h>
#include <libxml/xmlregexp.h>

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
