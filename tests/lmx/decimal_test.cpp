#include "lmx/decimal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>

namespace lmx {
namespace {

template <class T>
std::string streamed(const T& value) {
  std::ostringstream os;
  os << value;
  EXPECT_EQ(os.str(), value.get_as_string());
  return os.str();
}

TEST(BigIntTest, ReadsCanonicalText) {
  const struct {
    const char *text, *canonical;
  } rows[] = {
      {"007", "7"},
      {"+7", "7"},
      {"-7", "-7"},
      {"-007", "-7"},
      {"-0", "0"},
      {"+000", "0"},
      {"", "0"},
      {"12abc", "12"},
      {"abc", "0"},
      {"-", "0"},
      {"-abc", "0"},
      {"--5", "0"},
      {" 5", "0"},
      {"1.9", "1"},
      {"-00098765432109876543210987654321", "-98765432109876543210987654321"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(streamed(c_big_int(row.text)), row.canonical) << row.text;
    c_big_int assigned(99L);
    assigned = row.text;
    EXPECT_EQ(assigned.get_as_string(), row.canonical) << row.text;
    assigned = std::string(row.text);
    EXPECT_EQ(assigned, c_big_int(row.canonical)) << row.text;
  }
  EXPECT_EQ(c_big_int().get_as_string(), "0");
  EXPECT_EQ(c_big_int(-2147483647L - 1).get_as_string(), "-2147483648");
}

TEST(BigIntTest, TakesEveryIntegralType) {
  EXPECT_EQ(c_big_int(0), c_big_int("0"));
  EXPECT_EQ(c_big_int(-7), c_big_int("-7"));
  EXPECT_EQ(c_big_int(static_cast<unsigned char>(200)), c_big_int("200"));
  EXPECT_EQ(c_big_int(std::numeric_limits<long long>::min()), c_big_int("-9223372036854775808"));
  EXPECT_EQ(c_big_int(std::numeric_limits<unsigned long long>::max()),
            c_big_int("18446744073709551615"));
  c_big_int value;
  value = 4000000000u;
  EXPECT_TRUE(value == "4000000000" && value > 0 && value != 5);
  value = 0;
  EXPECT_TRUE(value == 0);
}

TEST(BigIntTest, ConvertsIn32Bits) {
  const struct {
    const char* text;
    long value;
    bool overflow;
  } rows[] = {
      {"0", 0, false},
      {"-17", -17, false},
      {"2147483647", 2147483647, false},
      {"-2147483647", -2147483647, false},
      {"2147483648", -2147483647L - 1, true},
      {"-2147483648", -2147483647L - 1, true},
      {"4294967297", 1, true},
      {"99999999999999999999", 1661992959, true},
  };
  for (const auto& row : rows) {
    bool overflow = !row.overflow;
    EXPECT_EQ(c_big_int(row.text).get(&overflow), row.value) << row.text;
    EXPECT_EQ(overflow, row.overflow) << row.text;
    EXPECT_EQ(c_big_int(row.text).get(nullptr), row.value) << row.text;
  }
  EXPECT_EQ(c_big_int("-98765432109876543210").get_as_float(), -98765432109876543210.0);
  EXPECT_TRUE(std::isinf(c_big_int(std::string(400, '9')).get_as_float()));
}

// How a value stands to a text: '<', '=' or '>', checked in all operators and from both sides.
template <class Text>
void expect_order(const c_big_int& value, const Text& text, char order, const char* what) {
  EXPECT_EQ(value == text, order == '=') << what;
  EXPECT_EQ(value != text, order != '=') << what;
  EXPECT_EQ(value > text, order == '>') << what;
  EXPECT_EQ(value >= text, order != '<') << what;
  EXPECT_EQ(value < text, order == '<') << what;
  EXPECT_EQ(value <= text, order != '>') << what;
  EXPECT_EQ(text == value, order == '=') << what;
  EXPECT_EQ(text != value, order != '=') << what;
  EXPECT_EQ(text < value, order == '>') << what;
  EXPECT_EQ(text <= value, order != '<') << what;
  EXPECT_EQ(text > value, order == '<') << what;
  EXPECT_EQ(text >= value, order != '>') << what;
}

TEST(BigIntTest, ComparesWithTextThatIsNotCanonical) {
  const struct {
    const char *value, *text;
    char order;
  } rows[] = {
      {"0", "-000", '='},   {"0", "-0", '='},     {"0", "+0", '='},    {"12", "+00012", '='},
      {"5", "5x", '<'},     {"5", "", '<'},       {"-5", "", '<'},     {"0", "", '<'},
      {"100", "99", '>'},   {"-100", "-99", '<'}, {"-1", "0", '<'},    {"-1", "-0", '<'},
      {"1", "-0", '>'},     {"0", "-1", '>'},     {"0", "00000", '='}, {"-7", "-007", '='},
      {"-99", "-100", '>'}, {"19", "2", '>'},     {"2", "19", '<'},    {"0", "7", '<'},
      {"0", "-0abc", '='},  {"9", "-", '>'},      {"-9", "-", '<'},    {"0", "abc", '<'},
      {"1", "0", '>'},
  };
  for (const auto& row : rows) {
    const std::string what = std::string(row.value) + " " + row.order + " '" + row.text + "'";
    expect_order(c_big_int(row.value), row.text, row.order, what.c_str());
    expect_order(c_big_int(row.value), std::string(row.text), row.order, what.c_str());
  }
  const char* const null = nullptr;
  expect_order(c_big_int("0"), null, '=', "0 against null");
  expect_order(c_big_int("5"), null, '>', "5 against null");
}

TEST(BigIntTest, OrdersAsMachineNumbersDo) {
  std::mt19937 random(1);
  for (int i = 0; i < 20000; ++i) {
    const int bits = static_cast<int>(random() % 30);
    const long a = static_cast<long>(random() % (1u << bits)) - (1L << bits) / 2;
    const long b = static_cast<long>(random() % (1u << bits)) - (1L << bits) / 2;
    const char order = a < b ? '<' : a > b ? '>' : '=';
    const std::string text = std::to_string(b);
    expect_order(c_big_int(a), c_big_int(b), order, text.c_str());
    expect_order(c_big_int(a), text, order, text.c_str());
  }
}

TEST(DecimalTest, ReadsAndWritesText) {
  const struct {
    const char *text, *written;
    bool is_valid;
  } rows[] = {
      {"0", "0", true},
      {"", "0", false},
      {".", "0", false},
      {"5.", "5", true},
      {".5", ".5", true},
      {"0.50", ".50", true},
      {"-0.5", "-.5", true},
      {"+1.0", "1.0", true},
      {"-0", "-0", true},
      {"-0.0", "-.0", true},
      {"007.10", "7.10", true},
      {"1e5", "1", false},
      {"1.2.3", "1.2", false},
      {"--5", "-0", false},
      {"1.2x", "1.2", false},
      {"123456789012345678901234567890.000000000000000000000000000001",
       "123456789012345678901234567890.000000000000000000000000000001", true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(streamed(c_decimal(row.text)), row.written) << row.text;
    EXPECT_EQ(c_decimal::is_valid(row.text), row.is_valid) << row.text;
    c_decimal assigned("-9.9");
    assigned = std::string(row.text);
    EXPECT_EQ(assigned.get_as_string(), row.written) << row.text;
  }
  EXPECT_EQ(c_decimal().get_as_string(), "0");
}

TEST(DecimalTest, ShiftsMachineNumbers) {
  const struct {
    long value;
    int scale;
    const char* written;
  } rows[] = {
      {1234, 2, "12.34"},
      {5, 3, ".005"},
      {-5, 0, "-5"},
      {12, -2, "1200"},
      {-1200, 2, "-12.00"},
      {1005, 3, "1.005"},
      {0, 2, ".00"},
      {0, 0, "0"},
      {0, -3, "0"},
      {100, 3, ".100"},
      {999, 1, "99.9"},
      {7, 25, ".0000000000000000000000007"},
      {std::numeric_limits<int>::min(), 4, "-214748.3648"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(c_decimal(row.value, row.scale).get_as_string(), row.written) << row.written;
    c_decimal set("-1.5");
    set.set_scaled(row.value, row.scale);
    EXPECT_EQ(set.get_as_string(), row.written);
  }
}

TEST(DecimalTest, RoundsDoubles) {
  const struct {
    double value;
    unsigned places;
    const char* written;
  } rows[] = {
      {0.1, 15, ".100000000000000"},
      {0.1, 99, ".100000000000000"},
      {2.5, 0, "2"},
      {3.5, 0, "4"},
      {-1.005, 2, "-1.00"},
      {1e-20, 3, ".000"},
      {1234.5678, 2, "1234.57"},
      {-0.0, 1, "-.0"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(c_decimal(row.value, row.places).get_as_string(), row.written) << row.written;
  }
  c_decimal value;
  value = 1e308;
  EXPECT_EQ(value.get_as_string().size(), 309u + 1 + 15);
  value = -std::numeric_limits<double>::max();
  EXPECT_EQ(value.get_as_string().size(), 1 + 309u + 1 + 15);
  value = std::numeric_limits<double>::infinity();
  EXPECT_EQ(value.get_as_string(), "0");
}

TEST(DecimalTest, TakesEveryArithmeticType) {
  const auto text = [](const c_decimal& value) { return value.get_as_string(); };
  EXPECT_EQ(text(c_decimal(0)), "0");
  EXPECT_EQ(text(c_decimal(5)), "5");
  EXPECT_EQ(text(c_decimal(-1234, 2)), "-12.34");
  EXPECT_EQ(text(c_decimal(1234u, 2u)), "12.34");
  EXPECT_EQ(text(c_decimal(true, short(-2))), "100");
  EXPECT_EQ(text(c_decimal(std::numeric_limits<long long>::min(), 18)), "-9.223372036854775808");
  EXPECT_EQ(text(c_decimal(std::numeric_limits<unsigned long long>::max(), 19)),
            "1.8446744073709551615");
  EXPECT_EQ(text(c_decimal(std::numeric_limits<unsigned long long>::max(), 25)),
            ".0000018446744073709551615");
  EXPECT_EQ(text(c_decimal(0.1, 15)), ".100000000000000");
  EXPECT_EQ(text(c_decimal(0.25, 1ul)), ".2");
  EXPECT_EQ(text(c_decimal(0.5f)), ".500000000000000");
  c_decimal value;
  value = 0;
  EXPECT_EQ(text(value), "0");
  value = -5ll;
  EXPECT_EQ(text(value), "-5");
  value = 0.5;
  EXPECT_EQ(text(value), ".500000000000000");
}

TEST(DecimalTest, GivesItsParts) {
  const struct {
    const char* text;
    int scale;
    long scaled;
    bool overflow;
  } rows[] = {
      {"1.2", 3, 1200, false},
      {"-1.29", 1, -12, false},
      {"1234", -2, 12, false},
      {"1234", -4, 0, false},
      {"1234", -99, 0, false},
      {"-1.5", 0, -1, false},
      {"214748364.7", 1, 2147483647, false},
      {"214748364.8", 1, -2147483647L - 1, true},
      {"1234", std::numeric_limits<int>::min(), 0, false},
  };
  for (const auto& row : rows) {
    bool overflow = !row.overflow;
    EXPECT_EQ(c_decimal(row.text).get_scaled(row.scale, &overflow), row.scaled) << row.text;
    EXPECT_EQ(overflow, row.overflow) << row.text;
  }

  bool overflow = true;
  EXPECT_EQ(c_decimal("-17.25").get_integral(&overflow), -17);
  EXPECT_FALSE(overflow);
  EXPECT_EQ(c_decimal("1.05").get_fractional(4, &overflow), 500u);
  EXPECT_EQ(c_decimal("1.05").get_fractional(1, nullptr), 0u);
  EXPECT_EQ(c_decimal("1.05").get_fractional(-1, nullptr), 0u);
  EXPECT_EQ(c_decimal("0.4294967295").get_fractional(10, &overflow), 4294967295u);
  EXPECT_FALSE(overflow);
  EXPECT_EQ(c_decimal("0.4294967296").get_fractional(10, &overflow), 0u);
  EXPECT_TRUE(overflow);
  EXPECT_EQ(c_decimal("-12.625").get_as_float(), -12.625);
}

TEST(DecimalTest, SetsItsParts) {
  c_decimal value("-1.5");
  value.set_integral(20);
  EXPECT_EQ(value.get_as_string(), "20.5");
  value.set_integral(-3);
  EXPECT_EQ(value.get_as_string(), "-3.5");
  value.set_fractional(1234, 2);
  EXPECT_EQ(value.get_as_string(), "-3.12");
  value.set_fractional(5, 3);
  EXPECT_EQ(value.get_as_string(), "-3.005");
  value.set_fractional(7, 0);
  EXPECT_EQ(value.get_as_string(), "-3");
}

TEST(DecimalTest, OrdersByItsOwnRule) {
  const struct {
    const char *a, *b;
    char order;
  } rows[] = {
      {"1.50", "1.5", '='},   {"1.5", "1.51", '>'},   {"1.6", "1.51", '>'},   {"1.4", "1.51", '<'},
      {"1", "1.000", '='},    {"1", "1.001", '>'},    {"-0", "0", '<'},       {"0", "-0", '>'},
      {"-1.5", "-1.51", '<'}, {"-1.6", "-1.51", '<'}, {"-2", "-1", '<'},      {"-1", "1", '<'},
      {"10", "9.9", '>'},     {"0.5", "0.50", '='},   {"-1.50", "-1.5", '='},
  };
  for (const auto& row : rows) {
    const c_decimal a(row.a);
    const c_decimal b(row.b);
    EXPECT_EQ(a == b, row.order == '=') << row.a << " " << row.b;
    EXPECT_EQ(a != b, row.order != '=') << row.a << " " << row.b;
    EXPECT_EQ(a > b, row.order == '>') << row.a << " " << row.b;
    EXPECT_EQ(a >= b, row.order != '<') << row.a << " " << row.b;
    EXPECT_EQ(a < b, row.order == '<') << row.a << " " << row.b;
    EXPECT_EQ(a <= b, row.order != '>') << row.a << " " << row.b;
    EXPECT_EQ(std::hash<c_decimal>()(a) == std::hash<c_decimal>()(b), row.order == '=')
        << row.a << " " << row.b;
  }
}

}  // namespace
}  // namespace lmx
