#include "lmx/facets.h"

#include <gtest/gtest.h>

#include <string>

namespace lmx {
namespace {

TEST(FacetsTest, JudgesLexicalForms) {
  const struct {
    const char* text;
    bool is_bool, is_integer, is_float;
  } rows[] = {
      {"true", true, false, false},
      {"false", true, false, false},
      {"TRUE", false, false, false},
      {" true", false, false, false},
      {"1", true, true, true},
      {"0", true, true, true},
      {"", false, false, false},
      {"+", false, false, false},
      {"-", false, false, false},
      {"+-1", false, false, false},
      {"+0", false, true, true},
      {"-0", false, true, true},
      {"00012345678901234567890123456789", false, true, true},
      {"1.0", false, false, true},
      {"5.", false, false, true},
      {".5", false, false, true},
      {"+.5", false, false, true},
      {".", false, false, false},
      {"-.", false, false, false},
      {"1e5", false, false, true},
      {"1E+5", false, false, true},
      {"-.5e-3", false, false, true},
      {"1e", false, false, false},
      {"e5", false, false, false},
      {".e5", false, false, false},
      {"1e+", false, false, false},
      {"1e5.", false, false, false},
      {"1e5 ", false, false, false},
      {"1.2.3", false, false, false},
      {"INF", false, false, true},
      {"-INF", false, false, true},
      {"NaN", false, false, true},
      {"+INF", false, false, false},
      {"-NaN", false, false, false},
      {"inf", false, false, false},
      {"nan", false, false, false},
      {"Infinity", false, false, false},
      {"0x10", false, false, false},
      {"1,5", false, false, false},
      {"\xD9\xA1", false, false, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(is_valid_bool(row.text), row.is_bool) << row.text;
    EXPECT_EQ(is_valid_integer(row.text), row.is_integer) << row.text;
    EXPECT_EQ(is_valid_float(row.text), row.is_float) << row.text;
  }
  EXPECT_FALSE(is_valid_integer(std::string("1\0", 2)));
  EXPECT_FALSE(is_valid_float(std::string("1\0", 2)));
}

TEST(FacetsTest, CountsCharacters) {
  const struct {
    const char* what;
    std::string text;
    unsigned length;
  } rows[] = {
      {"empty", "", 0},
      {"one of each length", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xA8", 4},
      {"surrogate pair in six bytes", "\xED\xA0\x80\xED\xB0\x80", 1},
      {"lone low surrogate steps six too",
       "\xED\xB0\x80"
       "abc",
       1},
      {"not a surrogate",
       "\xED\x9F\xBF"
       "a",
       2},
      {"ED at the end", "a\xED", 2},
      {"stray byte ends the walk",
       "A\x80"
       "B",
       2},
      {"step past the end", "a\xF0", 2},
      {"illegal lead",
       "\xFF"
       "abc",
       1},
  };
  for (const auto& row : rows) EXPECT_EQ(length(row.text), row.length) << row.what;
}

TEST(FacetsTest, SizeSettlesALengthBeforeAnyWalk) {
  const std::string stray(8, '\x80');  // walks to a length of 1
  EXPECT_TRUE(is_min_length_ok(stray, 2));
  EXPECT_FALSE(is_min_length_ok(stray, 3));
  EXPECT_TRUE(is_max_length_ok(stray, 2));
  EXPECT_FALSE(is_max_length_ok(stray, 1));
  EXPECT_TRUE(is_max_length_ok("\x80\x80\x80\x80\x80", 5));
  EXPECT_FALSE(is_max_length_ok(std::string(21, 'a'), 5));
  EXPECT_TRUE(is_max_length_ok("\xC3\xA9\xC3\xA9\xC3\xA9", 3));
  EXPECT_FALSE(
      is_max_length_ok("\xC3\xA9\xC3\xA9"
                       "aa",
                       3));
  EXPECT_TRUE(is_min_length_ok("", 0));
  EXPECT_TRUE(is_max_length_ok("", 0));
  EXPECT_FALSE(is_max_length_ok("a", 0));
  // Four times the facet does not fit into 32 bits.
  EXPECT_FALSE(is_min_length_ok("abcd", 0x40000001u));
  EXPECT_TRUE(is_max_length_ok("abcd", 0x40000000u));
}

TEST(FacetsTest, CountsDigits) {
  const struct {
    const char* text;
    int total, fraction;
  } rows[] = {
      {"", 0, 0},       {"1", 1, 0},     {"1.", 1, 0},    {"-1.50", 3, 2},     {"00123.4500", 9, 4},
      {"1.5e10", 4, 3}, {"15e10", 4, 0}, {"1.2.3", 3, 2}, {"\xB1.\xB2", 0, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(total_digits(row.text), row.total) << row.text;
    EXPECT_EQ(fraction_digits(row.text), row.fraction) << row.text;
  }
}

TEST(FacetsTest, ReadsMustUnderstand) {
  EXPECT_EQ(bool_must_understand("1"), elmx_must_understand_true);
  EXPECT_EQ(bool_must_understand("true"), elmx_must_understand_true);
  EXPECT_EQ(bool_must_understand("0"), elmx_must_understand_false);
  EXPECT_EQ(bool_must_understand("false"), elmx_must_understand_false);
  EXPECT_EQ(bool_must_understand("TRUE"), elmx_must_understand_invalid);
  EXPECT_EQ(bool_must_understand(""), elmx_must_understand_invalid);
}

}  // namespace
}  // namespace lmx
