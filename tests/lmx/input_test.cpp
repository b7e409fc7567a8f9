#include "lmx/input.h"

#include <gtest/gtest.h>

#include <string>

#include "lmx/xml_support.h"

namespace lmx::test {
namespace {

// All that a getter gives up to the first end of input, and the reports after it.
std::string read_all(const std::string& document, int* line = nullptr,
                     const char* encoding_after_first = nullptr) {
  RecordingError error;
  c_read_string source(document);
  c_get_as_utf8 getter(source, error);
  std::string result;
  for (int c = getter.get(); c >= 0; c = getter.get()) {
    result.push_back(static_cast<char>(c));
    if (encoding_after_first != nullptr) {
      getter.set_encoding(encoding_after_first);
      encoding_after_first = nullptr;
    }
  }
  if (line != nullptr) *line = getter.get_line_num();
  return result + error.log;
}

const char k_unrecognised[] = "0 6 @1 Unrecognised character encoding\n";

TEST(CharacterInput, FindsTheEncodingFromTheFirstBytes) {
  const struct {
    std::string bytes;
    std::string text;
  } k_rows[] = {
      {"", ""},
      {"<a", "<a"},
      {"<", "<"},
      {" \xC3\xA9", " \xC3\xA9"},
      {bytes("<\0a\0"), "<a"},
      {bytes("\0<\0a"), "<a"},
      {bytes("\xFF\xFE<\0a\0"), "<a"},
      {bytes("\xFE\xFF\0a\0<"), "a<"},
      {"\xEF\xBB\xBF\x61", "a"},
      {"\xEF\xBB\xBF\xC3\xA9", "\xC3\xA9"},
      {"\xEF\xBB\xBF", ""},
      {"abc", k_unrecognised},
      {bytes("\0a"), k_unrecognised},
      {bytes("\xFF\xFE\0<"), k_unrecognised},
      {bytes("\xFE\xFF<\0"), k_unrecognised},
      {bytes("\xFE\xFE\0<"), k_unrecognised},
      {"\xEF\xBB", k_unrecognised},
      {"\xC3\xA9", k_unrecognised},
      // What follows the first character is looked at only once, and whole.
      {"<\xE2\x82\xAC!", "<\xE2\x82\xAC!"},
      {"<\xC3", "<"},
      {"<\xC0\x80", "<"},
  };
  for (const auto& row : k_rows) {
    EXPECT_EQ(read_all(row.bytes), row.text) << ::testing::PrintToString(row.bytes);
  }
}

TEST(CharacterInput, IllFormedUtf8IsTheEndForGood) {
  const struct {
    const char* bytes;
    const char* text;
  } k_rows[] = {
      {" Stra\xDF e GmbH", " Stra"},  // Latin-1 without a declaration
      {" a\xE2\x82(x", " a"},         // a bad third byte
      {" a\xF0\x9D\x84(x", " a"},
      {" a\xC0\x80z", " a"},  // overlong
      {" a\xE0\x9F\xBFz", " a"},
      {" a\xED\xA0\x80z", " a"},  // a surrogate
      {" a\xF0\x8F\xBF\xBFz", " a"},
      {" a\xF4\x90\x80\x80z", " a"},  // past the last code point
      {" a\xF8\x88\x80\x80\x80z", " a"},
      {" a\xFF\xFF\xFF\xFF\xFF\xFFz", " a"},
      {" a\x80z", " a"},
      {"<\xC3(x", "<"},  // where the encoding is found
      {" a\xF4\x8F\xBF\xBFz", " a\xF4\x8F\xBF\xBFz"},
      {" a\xED\x9F\xBFz", " a\xED\x9F\xBFz"},
      {" a\xC3", " a"},
  };
  for (const auto& row : k_rows) {
    EXPECT_EQ(read_all(row.bytes), row.text) << row.text;
    RecordingError error;
    const std::string document = row.bytes;
    c_read_string source(document);
    c_get_as_utf8 getter(source, error);
    for (int round = 0; round < 2; ++round) {
      while (getter.get() >= 0) {
      }
      internal::Window window;
      EXPECT_FALSE(getter.open_window(&window)) << row.text;
      EXPECT_EQ(getter.get(), -1) << row.text;
      getter.unget('u');  // what was read before the end can still be pushed back
      EXPECT_EQ(getter.get(), 'u') << row.text;
      EXPECT_EQ(getter.get(), -1) << row.text;
      getter.rewind();
      EXPECT_EQ(getter.get(), row.bytes[0]) << row.text;
    }
  }
}

TEST(CharacterInput, NormalisesLineEnds) {
  const struct {
    std::string bytes;
    std::string text;
    int line;
  } k_rows[] = {
      {" a\nb\n", " a\nb\n", 3},
      {" a\r\nb\r\n", " a\nb\n", 3},
      {" a\rb\r", " a\nb\n", 3},
      {" a\n\rb", " a\n\nb", 3},
      {" \r\r\nb", " \n\nb", 3},
      {" a\xC2\x85\x62", " a\nb", 2},
      {" a\xE2\x80\xA8\x62", " a\nb", 2},
      {" a\r\xC2\x85\x62", " a\nb", 2},
      {bytes(" \0\r\0\n\0b\0"), " \nb", 2},
  };
  for (const auto& row : k_rows) {
    int line = 0;
    EXPECT_EQ(read_all(row.bytes, &line), row.text) << ::testing::PrintToString(row.bytes);
    EXPECT_EQ(line, row.line) << ::testing::PrintToString(row.bytes);
  }
}

// From memory characters come out of pieces, byte by byte they do not; the sum of what was read may
// not tell them apart, also where the encoding turns out to be another.
TEST(CharacterInput, CountsTheBytesThatWereRead) {
  const std::string text =
      "<\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E z\r\n and more of it than a block";
  const struct {
    std::string bytes;
    const char* name;
  } k_rows[] = {
      {to_utf16(text, false, true), "UTF-16"},
      {to_utf16(text, true, false), "UTF-16"},
      {to_utf16(text, false, true), "ISO-10646-UCS-2"},
      {text, "ISO-8859-1"},
      {text, "UTF-8"},
  };
  for (const auto& row : k_rows) {
    RecordingError error;
    c_read_string memory(row.bytes);
    ByteSource by_byte(row.bytes);
    c_get_as_utf8 in_pieces(memory, error);
    c_get_as_utf8 one_by_one(by_byte, error);
    for (int i = 0, c = 0; c >= 0; ++i) {
      c = in_pieces.get();
      ASSERT_EQ(one_by_one.get(), c) << row.name << " " << i;
      ASSERT_EQ(in_pieces.bytes_read(), one_by_one.bytes_read()) << row.name << " " << i;
      if (i == 0) {
        EXPECT_TRUE(in_pieces.set_encoding(row.name));
        EXPECT_TRUE(one_by_one.set_encoding(row.name));
      }
    }
    EXPECT_EQ(in_pieces.bytes_read(), row.bytes.size()) << row.name;
  }
}

TEST(CharacterInput, DecodesUtf16) {
  const std::string text = "<\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E";
  for (const bool is_big_endian : {false, true}) {
    for (const bool has_mark : {false, true}) {
      EXPECT_EQ(read_all(to_utf16(text, is_big_endian, has_mark)), text);
    }
  }
  // A high surrogate alone is refused, a low one is not; half a unit is the end.
  EXPECT_EQ(read_all(bytes("<\0\x34\xD8x\0")), std::string("<") + k_unrecognised);
  EXPECT_EQ(read_all(bytes("<\0\x34\xDCx\0")), "<\xED\xB0\xB4x");
  EXPECT_EQ(read_all(bytes("<\0x")), "<");
  EXPECT_EQ(read_all(bytes("<\0\x34\xD8\x1E")), "<");
  // Each unit of UCS-2 is a character.
  EXPECT_EQ(read_all(bytes("<\0\x34\xD8\x1E\xDD"), nullptr, "iso-10646-ucs-2"),
            "<\xED\xA0\xB4\xED\xB4\x9E");
}

TEST(CharacterInput, RefinesTheEncodingByName) {
  const char k_mismatch[] = "0 15 @1 Mis-match between specfied encoding and byte format\n";
  const std::string wide_le = bytes("<\0a\0");
  const std::string wide_be = bytes("\0<\0a");
  const struct {
    std::string bytes;
    const char* name;
    std::string text;
  } k_rows[] = {
      {"<a", "UTF-8", "<a"},
      {"<a", "utf-8", "<a"},
      {"<a\xE9", "ISO-8859-1", "<a\xC3\xA9"},
      {"<a\x85\x7F", "us-ascii", "<a\n\x7F"},
      {"<a", "UTF-16", std::string("<") + k_mismatch},
      {"<a", "ISO-10646-UCS-2", std::string("<") + k_mismatch},
      {wide_le, "utf-16", "<a"},
      {wide_be, "UTF-16", "<a"},
      {wide_be, "ISO-10646-UCS-2", "<a"},
      {wide_le, "UTF-8", std::string("<") + k_mismatch},
      {wide_le, "ISO-8859-1", std::string("<") + k_mismatch},
      {wide_be, "US-ASCII", std::string("<") + k_mismatch},
      {"<a", "windows-1252", "<0 6 @1 Unknown character encoding specified\n"},
      {"<a", "UTF-8 ", "<0 6 @1 Unknown character encoding specified\n"},
  };
  for (const auto& row : k_rows) {
    EXPECT_EQ(read_all(row.bytes, nullptr, row.name), row.text) << row.name;
  }
}

TEST(CharacterInput, ALineFeedPushedBackCountsAgain) {
  RecordingError error;
  const std::string text = " \nx";
  c_read_string source(text);
  c_get_as_utf8 getter(source, error);
  getter.get();
  getter.unget(getter.get());
  EXPECT_EQ(getter.get_line_num(), 2);
  EXPECT_EQ(getter.get(), '\n');
  EXPECT_EQ(getter.get_line_num(), 3);
  for (const int c : {1, 2, 3, 4}) getter.unget(c);  // one more than there is room for
  for (const int c : {3, 2, 1, static_cast<int>('x'), -1}) EXPECT_EQ(getter.get(), c);
}

TEST(CharacterInput, AFatalReportStopsIt) {
  c_error error;
  const std::string text = "<ab";
  c_read_string source(text);
  c_get_as_utf8 getter(source, error);
  EXPECT_EQ(getter.get(), '<');
  error.error(elmx_fatal, elmx_undefined, "short form");  // through the getter that is bound
  int line = 0;
  elmx_error code;
  elmx_error_type type;
  ASSERT_TRUE(error.get_error_info(&type, &code, &line));
  EXPECT_EQ(line, 1);
  getter.unget('x');
  EXPECT_EQ(getter.get(), -1);
}

TEST(CharacterInput, StartsAgain) {
  const struct {
    const char* at;
    std::string text;
    int count;  // read before
  } k_rows[] = {
      {"the second unit", bytes("<\0\n\0"), 2},
      {"inside a character", "<\xE2\x82\xAC!", 2},
      {"behind a carriage return", "\n\r!", 2},
  };
  for (const auto& row : k_rows) {
    c_error error;
    c_read_string source(row.text);
    c_get_as_utf8 getter(source, error);
    const std::string whole = read_all(row.text);
    for (int i = 0; i < row.count; ++i)
      EXPECT_EQ(getter.get(), static_cast<unsigned char>(whole[i]));
    getter.unget('u');
    getter.rewind();
    EXPECT_EQ(getter.get_line_num(), 1);
    std::string again;
    for (int c = getter.get(); c >= 0; c = getter.get()) again.push_back(static_cast<char>(c));
    EXPECT_EQ(again, whole) << row.at;
  }
}

// What is left of the piece of 512 bytes comes first, and then the file from its start.
TEST(FileSource, RewindDeliversTheRestOfItsPiece) {
  // A document may begin with any of it, and no two pieces are alike.
  std::string text;
  for (unsigned number = 0; text.size() < 70000; ++number) {
    for (unsigned bit = 1; bit <= 1u << 15; bit *= 2) text += (number & bit) != 0 ? '<' : ' ';
  }
  text.resize(70000);
  const TempFile temp(text);
  for (const bool by_path : {true, false}) {
    for (const std::size_t count : {2, 511, 512, 513, 65000, 65536, 69999}) {
      const auto open = [&] {
        return by_path ? std::make_unique<c_read_file>(temp.path())
                       : std::make_unique<c_read_file>(std::fopen(temp.path(), "rb"));
      };
      const std::size_t piece_end = std::min((count + 511) / 512 * 512, text.size());
      const std::string expected = text.substr(count, piece_end - count) + text;

      const auto source = open();
      for (std::size_t i = 0; i < count; ++i) source->read();
      source->rewind();
      std::string rest;
      for (int c = source->read(); c >= 0; c = source->read()) rest.push_back(static_cast<char>(c));
      EXPECT_TRUE(rest == expected) << count;

      // The same through a getter, which takes whole blocks.
      const auto other = open();
      RecordingError error;
      c_get_as_utf8 getter(*other, error);
      for (std::size_t i = 0; i < count; ++i) getter.get();
      getter.rewind();
      rest.clear();
      for (int c = getter.get(); c >= 0; c = getter.get()) rest.push_back(static_cast<char>(c));
      EXPECT_TRUE(rest + error.log == expected) << count;
    }
  }
}

TEST(FileSource, OpensAndCloses) {
  const TempFile temp("<a/>");
  c_read_file missing("/nonexistent/zol");
  EXPECT_FALSE(missing.is_open());
  EXPECT_EQ(missing.read(), -1);
  missing.rewind();

  EXPECT_FALSE(c_read_file(::testing::TempDir().c_str()).is_open());
  EXPECT_TRUE(c_read_file(TempFile("").path()).is_open());

  const std::string path = temp.path();
  c_read_file wide(std::wstring(path.begin(), path.end()).c_str());
  EXPECT_TRUE(wide.is_open());
  EXPECT_EQ(wide.get_source_id(), path);
  wide.close();
  EXPECT_FALSE(wide.is_open());
  EXPECT_EQ(wide.read(), -1);

  std::FILE* const file = std::fopen(temp.path(), "rb");
  {
    c_read_file handed_in(file);
    EXPECT_STREQ(handed_in.get_source_id(), "");
    handed_in.leave_file_open_on_delete(true);
    EXPECT_EQ(handed_in.read(), '<');
  }
  EXPECT_EQ(std::fclose(file), 0);
}

}  // namespace
}  // namespace lmx::test
