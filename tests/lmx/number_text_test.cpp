#include "lmx/internal/number_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace lmx::internal {
namespace {

std::string text_of(double value) {
  char text[k_number_room];
  return std::string(text, format_double(value, text));
}

std::string text_of(float value) {
  char text[k_number_room];
  return std::string(text, format_float(value, text));
}

// The C library goes by the decimal point of the process, of which the code under test must know
// nothing.
std::string with_point(std::string text, char from, char to) {
  std::replace(text.begin(), text.end(), from, to);
  return text;
}

char process_point() { return *std::localeconv()->decimal_point; }

std::string printed(double value, int precision, const char* format = "%.*g") {
  char text[512];
  std::snprintf(text, sizeof text, format, precision, value);
  return with_point(text, process_point(), '.');
}

double parsed(const std::string& text) {
  return std::strtod(with_point(text, '.', process_point()).c_str(), nullptr);
}

std::uint64_t bits_of(double value) {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

template <class Number, class Bits>
Number with_bits(Bits bits) {
  Number value;
  static_assert(sizeof value == sizeof bits);
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

// Values that sit where a rule changes, with their neighbours and either sign.
std::vector<double> edge_values() {
  std::vector<double> values;
  const auto add = [&values](double value) {
    for (double near : {value, std::nextafter(value, 0.0), std::nextafter(value, HUGE_VAL)}) {
      if (near != 0 && std::isfinite(near)) values.insert(values.end(), {near, -near});
    }
  };
  for (int power = -330; power <= 308; ++power) {
    for (const char* digits : {"1", "5", "9.9999999999999", "9.99999999999995", "99999999999999.5",
                               "12345678901234.5", "1.2345678901235", "2.5", "9.9999995"}) {
      add(parsed(digits + ("e" + std::to_string(power))));
    }
  }
  for (int exponent = -1074; exponent < 1024; ++exponent) add(std::ldexp(1.0, exponent));
  for (std::int64_t half = 1; half < (std::int64_t{1} << 50); half *= 3) {
    add(static_cast<double>(half) + 0.5);
  }
  add(std::numeric_limits<double>::max());
  add(std::numeric_limits<double>::min());
  return values;
}

TEST(NumberTextTest, WritesTheSpecialValues) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(text_of(nan), "NaN");
  EXPECT_EQ(text_of(-nan), "NaN");
  EXPECT_EQ(text_of(infinity), "INF");
  EXPECT_EQ(text_of(-infinity), "-INF");
  EXPECT_EQ(text_of(0.0), "0.0");
  EXPECT_EQ(text_of(-0.0), "-0.0");
  EXPECT_EQ(text_of(static_cast<float>(nan)), "NaN");
  EXPECT_EQ(text_of(static_cast<float>(-infinity)), "-INF");
  EXPECT_EQ(text_of(-0.0F), "-0.0");
}

TEST(NumberTextTest, WritesEdgeValuesAsPrintf) {
  for (double value : edge_values()) {
    ASSERT_EQ(text_of(value), printed(value, 14)) << std::hexfloat << value;
    const auto narrow = static_cast<float>(value);
    if (narrow == 0 || !std::isfinite(narrow)) continue;
    ASSERT_EQ(text_of(narrow), printed(narrow, 7)) << std::hexfloat << value;
  }
}

TEST(NumberTextTest, WritesRandomValuesAsPrintf) {
  std::mt19937_64 random(20210704);
  for (int i = 0; i < 300000; ++i) {
    // Any bits, then bits near 1, where the model's values are.
    const std::uint64_t bits = random();
    const auto near_one = (bits & 0x800FFFFFFFFFFFFF) | (1023 - 30 + (random() % 100)) << 52;
    for (double value : {with_bits<double>(bits), with_bits<double>(near_one)}) {
      if (!std::isfinite(value) || value == 0) continue;
      ASSERT_EQ(text_of(value), printed(value, 14)) << std::hexfloat << value;
    }
    const auto narrow = with_bits<float>(static_cast<std::uint32_t>(bits));
    if (!std::isfinite(narrow) || narrow == 0) continue;
    ASSERT_EQ(text_of(narrow), printed(narrow, 7)) << std::hexfloat << narrow;
  }
}

TEST(NumberTextTest, WritesRandomDecimalsAsPrintf) {
  std::mt19937_64 random(1931);
  for (int i = 0; i < 500000; ++i) {
    const std::uint64_t modulus = std::uint64_t{1} << (1 + random() % 53);
    const auto digits = static_cast<double>(random() % modulus + 1);
    const double value = digits / std::pow(10.0, static_cast<double>(random() % 23));
    ASSERT_EQ(text_of(value), printed(value, 14)) << std::hexfloat << value;
    ASSERT_EQ(text_of(static_cast<float>(value)), printed(static_cast<float>(value), 7));
  }
}

TEST(NumberTextTest, WritesAsAStreamOfTheClassicLocale) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  for (double value : {0.1, 2.0, 0.0512, -17.25, 1e-5, 0.0001, 1e14, 99999999999999.0, 1e30, 1e-7,
                       123456.789, 1.0 / 3, 6.02214076e23}) {
    stream.str("");
    stream.precision(14);
    stream << value;
    EXPECT_EQ(text_of(value), stream.str());
    stream.str("");
    stream.precision(7);
    stream << static_cast<float>(value);
    EXPECT_EQ(text_of(static_cast<float>(value)), stream.str());
  }
}

TEST(NumberTextTest, AcceptsWhatIsLexicallyANumber) {
  for (const char* text : {"5", "5.", ".5", "+.5", "-0", "00012", "1e5", "1E+05", "5.e-3", ".5e1",
                           "INF", "-INF", "NaN"}) {
    double value;
    EXPECT_TRUE(read_double(text, &value)) << text;
  }
  for (const char* text :
       {"",         "+",   ".",    "-.",   "e5",    ".e5",   "1e",      "1e+",  "1e+-5",
        "+-1",      "--1", " 1",   "1 ",   "1,5",   "0x10",  "1f",      "+INF", "inf",
        "Infinity", "nan", "-NaN", "+NaN", "1.2.3", "1e5.0", "\xD9\xA1"}) {
    double value = 17;
    EXPECT_FALSE(read_double(text, &value)) << text;
    EXPECT_EQ(value, 17) << text;
  }
  double value = 17;
  EXPECT_FALSE(read_double(std::string_view("1\0", 2), &value));
  EXPECT_FALSE(read_double({}, &value));
}

// The grammar as an automaton. Columns: digit, point, e or E, sign; "x" is the end of the road.
bool is_in_grammar(const std::string& text) {
  static const char* const rows[] = {
      "23x1",  // 0: nothing yet
      "23xx",  // 1: a sign
      "245x",  // 2: digits
      "4xxx",  // 3: a point with nothing before it
      "4x5x",  // 4: a point with a digit on either side
      "7xx6",  // 5: e
      "7xxx",  // 6: e and a sign
      "7xxx",  // 7: digits of the exponent
  };
  int state = 0;
  for (char c : text) {
    const int column = c == '.' ? 1 : c == 'e' || c == 'E' ? 2 : c == '+' || c == '-' ? 3 : 0;
    if (rows[state][column] == 'x') return false;
    state = rows[state][column] - '0';
  }
  return state == 2 || state == 4 || state == 7;
}

TEST(NumberTextTest, AgreesWithTheGrammarOnAllShortTexts) {
  const std::string alphabet = "07.eE+-";
  std::vector<std::string> texts = {""};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string text = texts[i];
    double value;
    const bool is_number = read_double(text, &value);
    ASSERT_EQ(is_number, is_in_grammar(text)) << text;
    if (is_number) {
      ASSERT_EQ(bits_of(value), bits_of(parsed(text))) << text;
    }
    if (text.size() == 6) continue;
    for (char c : alphabet) texts.push_back(text + c);
  }
}

void expect_as_strtod(const std::string& text) {
  double value = 0;
  ASSERT_TRUE(read_double(text, &value)) << text;
  ASSERT_EQ(bits_of(value), bits_of(parsed(text))) << text;
}

TEST(NumberTextTest, ReadsEdgeTextsToTheBit) {
  const std::string many_zeros(400, '0');
  const std::string texts[] = {
      "0",
      "-0",
      "+0",
      "0.0",
      "-0.0e5",
      "0e99999999999999999999",
      "-0e-99999999999999999999",
      "9007199254740991",
      "9007199254740992",
      "9007199254740993",
      "9007199254740993.0000000001",
      "9223372036854775807",
      "18446744073709551615",
      "18446744073709551616",
      "18446744073709551616.05",
      "1e22",
      "1e23",
      "1e-22",
      "1e-23",
      "9007199254740991e22",
      "9007199254740991e-22",
      "1.7976931348623157e308",
      "1.7976931348623158e308",
      "1.7976931348623159e308",
      "1e309",
      "-1e309",
      "1e99999999999999999999",
      "-1e-99999999999999999999",
      "2.2250738585072014e-308",
      "2.2250738585072011e-308",
      "4.9406564584124654e-324",
      "2.4703282292062327e-324",
      "2.4703282292062328e-324",
      "-3e-324",
      "1e-324",
      "1e-400",
      "0." + many_zeros + "1e400",
      "1" + many_zeros + "e-400",
      "0." + many_zeros + "1",
      "1" + many_zeros,
      "0.1000000000000000055511151231257827021181583404541015625",
      "8.5",
      "0.0512",
      "400",
      "100.000000000000000000000000000000000000001",
      "7.2057594037927933e16",
  };
  for (const std::string& text : texts) expect_as_strtod(text);
}

TEST(NumberTextTest, ReadsRandomTextsToTheBit) {
  std::mt19937_64 random(1976);
  for (int i = 0; i < 200000; ++i) {
    const double value = with_bits<double>(random());
    if (!std::isfinite(value)) continue;
    expect_as_strtod(printed(value, static_cast<int>(random() % 20), "%.*e"));
    const double near_one =
        std::ldexp(static_cast<double>(random()), -static_cast<int>(random() % 90));
    expect_as_strtod(printed(near_one, static_cast<int>(random() % 20), "%.*f"));
    if (::testing::Test::HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace lmx::internal
