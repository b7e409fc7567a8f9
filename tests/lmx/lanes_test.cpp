// Steps over whole blocks against the same, byte by byte or unit by unit. Built twice: for the
// lanes of the processor and for one that has none.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "lmx/internal/runs.h"
#include "lmx/internal/unicode.h"
#include "lmx/internal/unit_blocks.h"

namespace lmx::test {
namespace {

using namespace internal;

// `size` bytes, most of them alike, so that blocks are met of which each lane is the first to
// differ.
std::string bytes_for(std::mt19937& random, std::size_t size) {
  static constexpr char k_bytes[] = "\0\t\n\n\r\x1F \"&'<>az\x7F\x80\x85\xBF\xC0\xC2\xE2\xFF";
  const char filling = "a \n"[random() % 3];
  std::string result(size, filling);
  for (char& byte : result) {
    if (random() % 12 == 0) byte = k_bytes[random() % (sizeof k_bytes - 1)];
  }
  return result;
}

bool is_ascii_text(char c) { return c >= ' ' && static_cast<unsigned char>(c) < 0x80; }

TEST(LanesTest, RunsEndWhereTheyWouldByteByByte) {
  const struct {
    const char* what;
    const char* (*pass)(const char* p, const char* end);
    bool (*goes_on)(char c);
  } rows[] = {
      {"text", pass_plain_ascii, [](char c) { return is_ascii_text(c) && c != '<' && c != '&'; }},
      {"value", pass_plain_value, [](char c) { return is_ascii_text(c) && c != '"' && c != '&'; }},
      {"indentation", pass_indentation, [](char c) { return c == ' ' || c == '\t' || c == '\n'; }},
      {"tabs", pass_tabs, [](char c) { return c == '\t'; }},
  };
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    const std::string text = bytes_for(random, random() % 70);
    const char* const end = text.data() + text.size();
    for (const auto& row : rows) {
      ASSERT_EQ(row.pass(text.data(), end), std::find_if_not(text.data(), end, row.goes_on))
          << row.what << " " << round;
    }
  }
}

TEST(LanesTest, LineEndsAreCountedAcrossBlocks) {
  std::mt19937 random(2);
  for (int round = 0; round < 2000; ++round) {
    // Now and then more blocks than a tally holds.
    const std::string text = bytes_for(random, random() % (round % 100 == 0 ? 10000 : 100));
    int lines = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const bool is_pair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
      lines += text[i] == '\n' || (text[i] == '\r' && !is_pair);
    }
    ASSERT_EQ(count_line_ends(text.data(), text.data() + text.size()), lines) << round;
  }
}

// A block may be taken in part, but no less than its plain beginning.
TEST(LanesTest, AWidenedBlockIsTheTextOfItsBytes) {
  static constexpr const char* k_characters[] = {"a",        "\x7F",     "\xC2\x80",
                                                 "\xD0\x96", "\xDF\xBF", "\xE2\x82\xAC",
                                                 "\x80",     "\xC3",     "\xF0\x9F\x8E\xA8"};
  std::mt19937 random(3);
  for (int round = 0; round < 50000; ++round) {
    const std::size_t kinds = round % 4 == 0 ? 2 : round % 4 == 1 ? 5 : std::size(k_characters);
    std::string text;
    while (text.size() < k_unit_block) {
      text += k_characters[random() % 3 == 0 ? random() % kinds : 0];
    }
    text.resize(k_unit_block);
    wchar_t units[2 * k_unit_block];
    wchar_t* out = units;
    const std::size_t taken = widen_block(text.data(), &out);

    std::wstring expected;
    for (std::size_t at = 0; at < taken;) {
      const auto lead = static_cast<unsigned char>(text[at]);
      if (lead < 0x80) {
        expected += static_cast<wchar_t>(lead);
        at += 1;
      } else {
        ASSERT_EQ(lead & 0xE0, 0xC0) << round;
        ASSERT_LE(at + 2, taken) << round;
        expected += static_cast<wchar_t>((lead & 0x1F) << 6 | (text[at + 1] & 0x3F));
        at += 2;
      }
    }
    ASSERT_EQ(std::wstring(units, out), expected) << round;
    const auto plain = std::find_if(text.begin(), text.end(),
                                    [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    ASSERT_GE(static_cast<std::ptrdiff_t>(taken), plain - text.begin()) << round;
  }
}

template <class Unit>
std::string as_bytes(const std::vector<Unit>& units) {
  return std::string(reinterpret_cast<const char*>(units.data()), units.size() * sizeof(Unit));
}

std::string in_order(const std::vector<std::uint32_t>& units, bool is_big) {
  std::string result;
  for (const std::uint32_t unit : units) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit);
    result += is_big ? high : low;
    result += is_big ? low : high;
  }
  return result;
}

template <class Form, class Own>
void expect_narrow(const std::vector<std::uint32_t>& units, const std::string& in) {
  char bytes[k_narrow_room];
  char* out = bytes;
  const std::size_t taken = narrow_block<Form, Own>(in.data(), &out);
  char expected[4 * k_unit_block];
  char* end = expected;
  for (std::size_t i = 0; i < taken; ++i) {
    ASSERT_LT(units[i], 0x800u);
    ASSERT_FALSE(Own::has(units[i]));
    end = put_code_point(units[i], end);
  }
  ASSERT_EQ(std::string(bytes, out), std::string(expected, end));
  const auto plain = std::find_if(units.begin(), units.end(), [](std::uint32_t unit) {
    return unit >= 0x80 || Own::has(unit);
  });
  ASSERT_GE(static_cast<std::ptrdiff_t>(taken), plain - units.begin());
}

template <class Form>
void expect_narrow(const std::vector<std::uint32_t>& units, const std::string& in) {
  expect_narrow<Form, NoneOwn>(units, in);
  expect_narrow<Form, EscapesOwn>(units, in);
  expect_narrow<Form, NextLineOwn>(units, in);
}

TEST(LanesTest, ANarrowedBlockIsTheTextOfItsUnits) {
  // The last few are for wide characters alone, and no text has the last.
  static constexpr std::uint32_t k_units[] = {
      'a',   0x7F,   0x80,   0x85,   0xE9,   '<',    '"',     '\'',    '&',     0x7FF,
      0x800, 0x20AC, 0x7FFF, 0x8000, 0xD83C, 0xFFFF, 0x10000, 0x1003C, 0x1F3A8, 0x80000041};
  constexpr std::size_t k_of_latin1 = 9;
  constexpr std::size_t k_of_two_bytes = 16;
  std::mt19937 random(4);
  for (int round = 0; round < 50000; ++round) {
    const std::size_t kinds = round % 3 == 0   ? k_of_latin1
                              : round % 3 == 1 ? k_of_two_bytes
                                               : std::size(k_units);
    const std::size_t most = round % 2 == 0 ? std::min<std::size_t>(kinds, 5) : kinds;
    std::vector<std::uint32_t> units(k_unit_block);
    for (std::uint32_t& unit : units) unit = k_units[random() % 4 == 0 ? random() % most : 0];

    SCOPED_TRACE(round);
    if (kinds <= k_of_latin1) {
      expect_narrow<Latin1Units>(units, std::string(units.begin(), units.end()));
    }
    if (kinds <= k_of_two_bytes) {
      expect_narrow<LittleEndianUnits>(units, in_order(units, false));
      expect_narrow<BigEndianUnits>(units, in_order(units, true));
    }
    if (sizeof(wchar_t) > 2 || kinds <= k_of_two_bytes) {
      expect_narrow<WideUnits>(units, as_bytes(std::vector<wchar_t>(units.begin(), units.end())));
    }
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace lmx::test
