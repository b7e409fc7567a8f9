#include "lmx/binary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "lmx/internal/lexical.h"

namespace lmx {
namespace {

c_binary bytes(const std::string& text) {
  return c_binary(reinterpret_cast<const unsigned char*>(text.data()),
                  static_cast<unsigned>(text.size()));
}

std::string hex(const c_binary& value) {
  std::ostringstream os;
  os << c_as_hex<c_binary>(value);
  return os.str();
}

std::string base64(const c_binary& value) {
  std::ostringstream os;
  os << c_as_base64<c_binary>(value);
  return os.str();
}

TEST(BinaryTest, ReadsAndWritesHex) {
  const struct {
    const char* text;
    bool is_valid;
    const char* written;
  } rows[] = {
      {"", true, ""},      {"0aFf", true, "0AFF"}, {"aB", true, "AB"},  {"ABC", false, "AB"},
      {"0G", false, "10"}, {"A", false, ""},       {"0 ", false, "E9"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(c_binary::is_valid_hex(row.text), row.is_valid) << row.text;
    c_binary value = bytes("old");
    value.from_hex(row.text);
    EXPECT_EQ(hex(value), row.written) << row.text;
  }
  std::ostringstream os;
  os << c_as_hex<c_binary>(bytes("\x01")) << std::setw(3) << 10;
  EXPECT_EQ(os.str(), "01010");  // decimal again, with the fill that stays
}

TEST(BinaryTest, JudgesBase64) {
  const struct {
    const char* text;
    bool is_valid;
  } rows[] = {
      {"", true},      {"QUJD", true},   {"QU\nJD", true},  {"QUJ=", true},     {"QU==", true},
      {"Q===", false}, {"QUJD ", true},  {"QU== ", false},  {"QU=J", false},    {"A", false},
      {"AA", false},   {"AAA", false},   {" ", false},      {"  ", true},       {" QUJD", true},
      {"QU= ", true},  {"QUJ= ", false}, {"Q U J D", true}, {"QUJ*", false},    {"====", false},
      {"==", false},   {"QUJD=", false}, {"+/+/", true},    {"QUJDQU==", true}, {"QU==QUJD", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(c_binary::is_valid_base64(row.text), row.is_valid) << "'" << row.text << "'";
  }
  EXPECT_FALSE(c_binary::is_valid_base64(std::string("QUJ\0", 4)));
}

TEST(BinaryTest, ReadsAndWritesBase64) {
  const struct {
    const char* text;
    std::string value;
    const char* written;
  } rows[] = {
      {"", "", ""},
      {"QUJD", "ABC", "QUJD"},
      {"QUI=", "AB", "QUI="},
      {"QQ==", "A", "QQ=="},
      {"Q", "\x40", "QA=="},
      {"  Q*U\nI = ", "AB", "QUI="},
      {"QUI=QUJD", "AB\x10\x50\x90", "QUIQUJA="},
      {"+/+/", "\xFB\xFF\xBF", "+/+/"},
  };
  for (const auto& row : rows) {
    c_binary value = bytes("old");
    value.from_base64(row.text);
    EXPECT_EQ(value, bytes(row.value)) << row.text;
    EXPECT_EQ(base64(value), row.written) << row.text;
  }
}

// Letters with now and then another character, in which case the check and the value may not differ
// from the two that go character by character.
TEST(BinaryTest, OnePassChecksAndReadsBase64) {
  const auto is_valid = [](const std::string& text) {
    std::size_t i = text.find_first_not_of(
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/ \t\r\n\v\f");
    const std::string tail = i == std::string::npos ? "" : text.substr(i);
    std::size_t letters = 0;
    for (const char c : text.substr(0, i)) letters += !std::isspace(static_cast<unsigned char>(c));
    const std::string upto = tail.substr(0, tail.find_first_of(" \t\r\n"));
    return text.empty() ||
           (text.size() - tail.size() >= 2 && tail.size() <= 2 &&
            (tail.size() + letters) % 4 == 0 && upto.find_first_not_of('=') == std::string::npos);
  };
  const std::string characters = "ABab01+/ \n==*";
  std::mt19937 random(1);
  int valid = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (unsigned i = random() % 40; i != 0; --i) {
      text += characters[random() % (random() % 4 == 0 ? characters.size() : 8)];
    }
    if (round % 2 == 0) text += std::string(random() % 3, '=');
    c_binary slow;
    slow.from_base64(text);
    c_binary fast = bytes("old");
    ASSERT_EQ(c_binary::is_valid_base64(text), is_valid(text)) << text;
    ASSERT_EQ(internal::read_base64(text, &fast), is_valid(text)) << text;
    ASSERT_EQ(fast, is_valid(text) ? slow : bytes("old")) << text;
    valid += is_valid(text);
  }
  EXPECT_GT(valid, 1000);
}

TEST(BinaryTest, EveryValueComesBackFromBothForms) {
  std::mt19937 random(1);
  // The sizes pass the piece in which base64 is written.
  for (const unsigned size : {1u, 2u, 3u, 100u, 3071u, 3072u, 3073u, 6144u, 10000u}) {
    c_binary value;
    for (unsigned i = 0; i < size; ++i) value += static_cast<unsigned char>(random());
    const std::string text = base64(value);
    EXPECT_EQ(text.size(), (size + 2) / 3 * 4);
    EXPECT_TRUE(c_binary::is_valid_base64(text));
    c_binary again;
    again.from_base64(text);
    EXPECT_EQ(again, value);
    again.from_hex(hex(value));
    EXPECT_EQ(again, value);

    std::string appended = "x";
    internal::append_base64(&appended, value);
    EXPECT_EQ(appended, "x" + text);
  }
}

TEST(BinaryTest, HoldsBytes) {
  c_binary value = bytes("abc");
  EXPECT_EQ(value.size(), 3u);
  value[1] = 'x';
  value.at(2) = 'y';
  value.append('z');
  EXPECT_EQ(value, bytes("axyz"));
  EXPECT_NE(value, bytes("axy"));
  EXPECT_THROW(value.at(4), std::out_of_range);

  unsigned char buffer[] = "......";
  EXPECT_EQ(value.get(buffer, 2), buffer);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(buffer)), "ax....");
  value.get(buffer, 99);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(buffer)), "axyz..");

  EXPECT_TRUE(value.equal(buffer, 4));
  EXPECT_FALSE(value.equal(nullptr, 5));
  EXPECT_TRUE(c_binary().equal(nullptr, 0));
  value.set(nullptr, 0);
  EXPECT_EQ(value.size(), 0u);
}

TEST(BinaryTest, OrdersAsADictionary) {
  const std::set<c_binary> sorted = {bytes("b"), bytes("ab"), bytes(""), bytes("a"), bytes("\xFF")};
  const std::vector<c_binary> expected = {bytes(""), bytes("a"), bytes("ab"), bytes("b"),
                                          bytes("\xFF")};
  EXPECT_TRUE(std::equal(sorted.begin(), sorted.end(), expected.begin(), expected.end()));
  EXPECT_EQ(std::hash<c_binary>()(bytes("ab")), std::hash<c_binary>()(bytes("ab")));
  EXPECT_NE(std::hash<c_binary>()(bytes("ab")), std::hash<c_binary>()(bytes("ba")));
}

}  // namespace
}  // namespace lmx
