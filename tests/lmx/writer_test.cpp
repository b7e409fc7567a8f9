#include "lmx/writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <iterator>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "lmx/internal/string_sink.h"
#include "lmx/internal/writer_state.h"
#include "lmx/names.h"
#include "lmx/text.h"

namespace lmx {
namespace {

constexpr s_ns_map k_map[] = {{1000, "Zol", "urn:zol"}, {0, nullptr, nullptr}};
constexpr s_ns_map k_other_map[] = {
    {1000, "", "urn:default"}, {1001, "o", "urn:other"}, {0, nullptr, nullptr}};
const std::string k_xsi = " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";

template <class T>
std::string streamed(const T& value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

// What the block writes, from a writer that nobody derived from.
template <class Append>
std::string through_block(const Append& append) {
  std::ostringstream stream;
  c_xml_writer writer(stream, "\t", "\n");
  {
    internal::WriterState& state = internal::WriterState::of(writer);
    internal::MarshalScope scope(state);
    append(state.block());
  }
  return stream.str();
}

TEST(WriterTest, WritesThePrologThatTheFlagsAskFor) {
  const struct {
    int flags;
    const char* text;
  } rows[] = {
      {0, ""},
      {4, ""},
      {c_xml_writer::include_xml_decl, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"},
      {c_xml_writer::include_standalone,
       "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"},
      {c_xml_writer::include_xml_decl | c_xml_writer::include_standalone,
       "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"},
  };
  for (const auto& row : rows) {
    std::ostringstream stream;
    { c_xml_writer writer(stream, row.flags, "\t", "\r\n"); }
    EXPECT_EQ(stream.str(), row.text) << row.flags;
  }
}

TEST(WriterTest, NestsOncePerLevelAndNeverBelowZero) {
  std::ostringstream stream;
  c_xml_writer writer(stream, "--", "\n");
  writer.undent();
  writer(true) << "a" << writer.endl();
  writer.indent();
  writer.indent();
  writer(true) << "b" << writer.endl();
  writer(false) << "c" << writer.endl();
  writer.undent();
  writer.undent();
  writer.undent();
  writer(true) << "d";
  EXPECT_EQ(stream.str(), "a\n----b\nc\nd");
}

TEST(WriterTest, GivesTheStreamTheClassicLocale) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  std::ostringstream stream;
  stream.imbue(std::locale(std::locale::classic(), new Comma));
  c_xml_writer writer(stream, "\t", "\n");
  writer(false) << c_as_xml<double>(12345.5) << ' ' << 1000000;
  EXPECT_EQ(stream.str(), "12345.5 1000000");
}

// Each row drives a fresh writer and names what its start tag carries.
TEST(WriterTest, WritesNamespaceAttributes) {
  using W = c_xml_writer;
  const struct {
    const char* name;
    void (*prepare)(W&);
    bool need_xsi;
    std::string text;
  } rows[] = {
      {"map alone", [](W& w) { w.conditionally_select_ns_map(k_map); }, false,
       " xmlns:Zol=\"urn:zol\""},
      {"map and instance", [](W& w) { w.conditionally_select_ns_map(k_map); }, true,
       " xmlns:Zol=\"urn:zol\"" + k_xsi},
      {"no map", [](W&) {}, true, k_xsi},
      {"first map wins",
       [](W& w) {
         w.conditionally_select_ns_map(k_other_map);
         w.conditionally_select_ns_map(k_map);
       },
       false, " xmlns=\"urn:default\" xmlns:o=\"urn:other\""},
      {"added namespaces, twice the same, without escapes",
       [](W& w) {
         w.conditionally_select_ns_map(k_map);
         w.add_namespace("p", "urn:<&>");
         w.add_default_namespace("urn:d");
         w.add_namespace("p", "urn:<&>");
       },
       false, " xmlns:Zol=\"urn:zol\" xmlns:p=\"urn:<&>\" xmlns=\"urn:d\" xmlns:p=\"urn:<&>\""},
      {"locations bring the instance namespace",
       [](W& w) {
         w.add_schema_location("urn:a", "a.xsd");
         w.add_schema_location("urn:b", "b.xsd");
       },
       false, k_xsi + " xsi:schemaLocation=\"urn:a a.xsd urn:b b.xsd\""},
      {"first location without namespace",
       [](W& w) {
         w.add_no_namespace_schema_location("none.xsd");
         w.add_schema_location("urn:b", "b.xsd");
       },
       false, k_xsi + " xsi:noNamespaceSchemaLocation=\"none.xsd\""},
      {"later location without namespace",
       [](W& w) {
         w.add_schema_location("urn:a", "a.xsd");
         w.add_no_namespace_schema_location("none.xsd");
       },
       true, k_xsi + " xsi:schemaLocation=\"urn:a a.xsd  none.xsd\""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::ostringstream stream;
    W writer(stream, "\t", "\n");
    row.prepare(writer);
    writer.conditionally_write_ns_attrs(row.need_xsi);
    EXPECT_EQ(stream.str(), row.text);
    writer.conditionally_write_ns_attrs(true);
    writer.add_namespace("late", "urn:late");
    writer.conditionally_write_ns_attrs(true);
    EXPECT_EQ(stream.str(), row.text);
  }
}

TEST(WriterTest, ReenablingStartsTheNamespacesAnew) {
  std::ostringstream stream;
  c_xml_writer writer(stream, "\t", "\n");
  writer.conditionally_select_ns_map(k_map);
  writer.conditionally_write_ns_attrs(false);
  writer.add_namespace("late", "urn:late");
  writer.reenable_ns_map_output();
  EXPECT_EQ(writer.get_namespace_prefix("urn:zol"), nullptr);
  writer.conditionally_select_ns_map(k_other_map);
  writer.conditionally_write_ns_attrs(false);
  EXPECT_EQ(stream.str(),
            " xmlns:Zol=\"urn:zol\""
            " xmlns=\"urn:default\" xmlns:o=\"urn:other\" xmlns:late=\"urn:late\"");
}

TEST(WriterTest, FindsPrefixesInTheMapBeforeTheAddedOnes) {
  std::ostringstream stream;
  c_xml_writer writer(stream, "\t", "\n");
  writer.conditionally_select_ns_map(k_map);
  writer.add_namespace("again", "urn:zol");
  writer.add_namespace("p", "urn:p");
  writer.add_namespace("q", "urn:p");
  EXPECT_STREQ(writer.get_namespace_prefix("urn:zol"), "Zol");
  EXPECT_STREQ(writer.get_namespace_prefix("urn:p"), "p");
  EXPECT_EQ(writer.get_namespace_prefix("urn:zo"), nullptr);
  EXPECT_EQ(writer.get_namespace_prefix(""), nullptr);
}

TEST(WriterTest, HoldsTheExpectedIdentityUntilItIsCleared) {
  std::ostringstream stream;
  c_xml_writer writer(stream, "\t", "\n");
  static const char identity[] = "CMYK";
  EXPECT_EQ(writer.get_expected_class_identity(), nullptr);
  writer.set_expected_class_identity(identity);
  EXPECT_EQ(writer.get_expected_class_identity(), static_cast<const char*>(identity));
  writer.clear_expected_class_identity();
  EXPECT_EQ(writer.get_expected_class_identity(), nullptr);
}

class WaivingWriter : public c_xml_writer {
 public:
  using c_xml_writer::c_xml_writer;
  elmx_error user_handle_error(elmx_error error) override {
    return error == elmx_bad_choice ? elmx_ok : c_xml_writer::user_handle_error(error);
  }
};

TEST(WriterTest, RecordsWhatTheErrorHandlerMakesOfAnError) {
  std::ostringstream stream;
  std::string message = "old";
  c_xml_writer writer(stream, "\t", "\n");
  EXPECT_EQ(&writer.get_error_message(&message), &message);
  EXPECT_EQ(message, "No Error");

  EXPECT_EQ(writer.handle_error(elmx_bad_choice, "Zol:ValueChoice", __FILE__, __LINE__),
            elmx_bad_choice);
  EXPECT_EQ(writer.get_error_item_name(), "Zol:ValueChoice");
  EXPECT_EQ(writer.get_error_message(&message),
            "'Zol:ValueChoice'-Inappropriate choice option selected");
  elmx_error_type type;
  elmx_error error;
  int line;
  EXPECT_FALSE(writer.get_error_info(&type, &error, &line));

  WaivingWriter waiving(stream, "\t", "\n");
  EXPECT_EQ(waiving.handle_error(elmx_bad_choice, "sg_ColorSpace", __FILE__, __LINE__), elmx_ok);
  EXPECT_EQ(waiving.get_error_item_name(), "sg_ColorSpace");
  EXPECT_EQ(waiving.get_error_message(&message), "No Error");
  EXPECT_EQ(waiving.handle_error(elmx_type_not_set, "", __FILE__, __LINE__), elmx_type_not_set);
  EXPECT_EQ(waiving.get_error_message(&message), "''-Type not set");
}

TEST(ManipulatorTest, WritesWideText) {
  const struct {
    const char* name;
    std::wstring text;
    std::string bytes;
  } rows[] = {
      {"empty", {}, ""},
      {"the four escapes", L"a\"b'c&d<e>f", "a&quot;b&apos;c&amp;d&lt;e>f"},
      {"control characters", std::wstring(L"\t\n\r\x01\0]]>", 8),
       std::string("\t\n\r\x01\0]]>", 8)},
      {"edges of the lengths",
       {0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFF},
       "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"},
      {"pairs", {0xD800, 0xDC00, 0xDBFF, 0xDFFF}, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {"lone low surrogate",
       {'a', 0xDC00, 'b'},
       "a\xED\xB0\x80"
       "b"},
      {"high surrogate at the end", {'a', 0xD800}, "a"},
      {"high surrogate before a letter", {'a', 0xD800, 'b', 'c'}, "a"},
      {"high surrogate before a high one", {'a', 0xD83D, 0xD83D, 0xDE00}, "a"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(streamed(c_as_xml<std::wstring>(row.text)), row.bytes) << row.name;
    EXPECT_EQ(through_block([&row](auto& block) { block.append_escaped(row.text); }), row.bytes)
        << row.name;
  }
  if constexpr (sizeof(wchar_t) > 2) {
    EXPECT_EQ(streamed(c_as_xml<std::wstring>({static_cast<wchar_t>(0x1F600)})),
              "\xF0\x9F\x98\x80");
  }
}

// Runs of one kind of character of many lengths, so that every edge of a block is met, and that of
// the writer's store too.
TEST(ManipulatorTest, LongTextsAreWrittenAsTheirCharactersAre) {
  const std::wstring characters[] = {
      L"a", L"&", L"\u00E9", L"<", L"\u20AC", std::wstring(1, wchar_t{0xDC00}), {0xD83C, 0xDFA8},
      L"\""};
  std::vector<std::string> bytes;
  for (const auto& character : characters) {
    bytes.push_back(streamed(c_as_xml<std::wstring>(character)));
  }
  std::mt19937 random(1);
  for (int round = 0; round < 1000; ++round) {
    std::wstring wide;
    std::string narrow;
    std::string expected;
    for (unsigned run = random() % 16; run != 0; --run) {
      const std::size_t kind = random() % std::size(characters);
      for (unsigned i = random() % (run == 1 ? 2000 : 40); i != 0; --i) {
        wide += characters[kind];
        narrow += convert_to_narrow(characters[kind]);
        expected += bytes[kind];
      }
    }
    ASSERT_EQ(streamed(c_as_xml<std::wstring>(wide)), expected) << round;
    ASSERT_EQ(streamed(c_as_xml<std::string>(narrow)), expected) << round;
    wide += static_cast<wchar_t>(0xD800);
    wide += L"lost behind the broken pair";
    ASSERT_EQ(streamed(c_as_xml<std::wstring>(wide)), expected) << round;
  }
}

TEST(ManipulatorTest, WritesNarrowTextAndTruthValues) {
  const std::string text("\"'&<> \xC3\xA9\xFF\0z", 10);
  const std::string bytes("&quot;&apos;&amp;&lt;> \xC3\xA9\xFF\0z", 27);
  EXPECT_EQ(streamed(c_as_xml<std::string>(text)), bytes);
  EXPECT_EQ(streamed(c_as_escaped<std::string>(text)), bytes);
  EXPECT_EQ(streamed(c_as_xml<bool>(true)), "true");
  EXPECT_EQ(streamed(c_as_xml<bool>(false)), "false");
  EXPECT_EQ(streamed(c_as_bool_digit<bool>(true)), "1");
  EXPECT_EQ(streamed(c_as_bool_digit<bool>(false)), "0");
  EXPECT_EQ(streamed(c_as_ascii<std::wstring>(L"<\"\x7F\x80\xD800z")), "<\"\x7F..z");
}

TEST(ManipulatorTest, WritesNumbersInTheStreamsFormatAndLeavesItsPrecision) {
  std::ostringstream stream;
  stream.precision(3);
  stream << c_as_xml<double>(1.0 / 3) << ' ' << c_as_xml<float>(1.0F / 3) << ' '
         << c_as_xml<double>(1.0) << ' ' << c_as_xml<double>(-0.0) << ' ' << 1.0 / 3;
  EXPECT_EQ(stream.str(), "0.33333333333333 0.3333333 1 -0.0 0.333");

  stream.str("");
  stream << std::fixed << std::showpos << c_as_xml<double>(0.5) << ' '
         << c_as_xml<double>(std::numeric_limits<double>::infinity()) << ' '
         << c_as_xml<double>(0.0);
  EXPECT_EQ(stream.str(), "+0.50000000000000 INF 0.0");
  EXPECT_EQ(stream.precision(), 3);

  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
  };
  std::ostringstream other;
  other.imbue(std::locale::classic());
  other.fill('_');
  other << std::setw(5) << c_as_xml<double>(0.5) << ' ' << std::setw(5) << c_as_xml<float>(0.0F)
        << ' ' << c_as_xml<double>(0.5) << ' ' << std::uppercase << c_as_xml<double>(1e30);
  other.imbue(std::locale(std::locale::classic(), new Comma));
  other << std::nouppercase << ' ' << c_as_xml<double>(0.5) << ' ' << c_as_xml<double>(0.0);
  EXPECT_EQ(other.str(), "__0.5 __0.0 0.5 1E+30 0,5 0.0");
}

TEST(WriteBlockTest, WritesNumbersAsTheStreamWould) {
  for (const bool is_fixed : {false, true}) {
    std::ostringstream expected;
    std::ostringstream stream;
    if (is_fixed) expected << std::fixed << std::hex << std::showbase;
    if (is_fixed) stream << std::fixed << std::hex << std::showbase;
    c_xml_writer writer(stream, "\t", "\n");
    {
      internal::WriterState& state = internal::WriterState::of(writer);
      internal::MarshalScope scope(state);
      for (double value : {0.0512, 0.0, 1e300, std::nan(""), -2.5}) {
        expected << c_as_xml<double>(value) << ' ' << c_as_xml<float>(static_cast<float>(value));
        state.block().append_number(value);
        state.block().append(' ');
        state.block().append_number(static_cast<float>(value));
      }
      for (std::int64_t value :
           {std::int64_t{0}, std::int64_t{-17}, std::numeric_limits<std::int64_t>::min()}) {
        expected << value;
        state.block().append_integer(value);
      }
    }
    EXPECT_EQ(stream.str(), expected.str());
  }
}

// Pieces of every kind and size, so that each of them meets the end of the block at each place.
TEST(WriteBlockTest, LosesNothingWhereItIsFull) {
  const std::wstring wide = L"<\x20AC" + std::wstring{0xD83D, 0xDE00} + L"x&";
  const std::string wide_bytes = "&lt;\xE2\x82\xAC\xF0\x9F\x98\x80x&amp;";
  for (std::size_t lead = 8100; lead < 8200; ++lead) {
    const std::string filler(lead, '.');
    const std::string bytes = through_block([&](internal::WriteBlock& block) {
      block.append(filler);
      block.append_escaped(wide);
      block.append('!');
      block.append_escaped(std::string_view("a'b"));
      block.append_number(-1234.5);
      block.append_integer(77);
    });
    ASSERT_EQ(bytes, filler + wide_bytes + "!a&apos;b-1234.577") << lead;
  }
  const std::string large(50000, 'x');
  const std::wstring large_wide(50000, L'"');
  const std::string bytes = through_block([&](internal::WriteBlock& block) {
    block.append("(");
    block.append(large);
    block.append_escaped(large);
    block.append_escaped(large_wide);
    block.append(")");
  });
  EXPECT_EQ(bytes.size(), 2 + 100000 + 300000U);
  EXPECT_EQ(bytes.front(), '(');
  EXPECT_EQ(bytes.back(), ')');
}

// A little model: an element with a child of simple content, written by the library's own road.
void marshal(c_xml_writer& writer, int depth) {
  internal::WriterState& state = internal::WriterState::of(writer);
  internal::MarshalScope scope(state);
  internal::WriteBlock& block = state.block();
  state.begin_line();
  block.append("<e>");
  state.end_line();
  writer.indent();
  state.begin_line();
  block.append("<v>");
  block.append_number(0.25);
  block.append("</v>");
  state.end_line();
  if (depth > 0) marshal(writer, depth - 1);
  writer.undent();
  state.begin_line();
  block.append("</e>");
  state.end_line();
}

const char k_two_levels[] = "<e>\n\t<v>0.25</v>\n\t<e>\n\t\t<v>0.25</v>\n\t</e>\n</e>\n";

TEST(MarshalScopeTest, LeavesTheStreamWholeAfterEachRun) {
  std::ostringstream stream;
  c_xml_writer writer(stream, "\t", "\n");
  marshal(writer, 1);
  EXPECT_EQ(stream.str(), k_two_levels);
  marshal(writer, 1);
  EXPECT_EQ(stream.str(), std::string(k_two_levels) + k_two_levels);
}

TEST(MarshalScopeTest, IndentsAsDeepAsItMust) {
  for (const char* tab : {"", "\t", "12345", "a tab that is longer than any buffer for it"}) {
    std::ostringstream stream;
    c_xml_writer writer(stream, tab, "\r\n");
    std::string expected;
    std::string indentation;
    internal::WriterState& state = internal::WriterState::of(writer);
    internal::MarshalScope scope(state);
    for (int depth = 0; depth < 70; ++depth) {
      state.begin_line();
      state.block().append('x');
      state.end_line();
      writer.indent();
      expected += indentation + "x\r\n";
      indentation += tab;
    }
    writer(false);
    EXPECT_EQ(stream.str(), expected) << tab;
  }
}

TEST(MarshalScopeTest, AlternatesWithTheStream) {
  std::ostringstream stream;
  c_xml_writer writer(stream, "\t", "\n");
  writer.conditionally_select_ns_map(k_map);
  {
    internal::WriterState& state = internal::WriterState::of(writer);
    internal::MarshalScope scope(state);
    std::ostream& taken = writer(true);
    taken << "<a";
    writer.conditionally_write_ns_attrs(false);
    taken << ">" << writer.endl();
    writer.indent();
    state.begin_line();
    state.block().append("<b/>");
    state.end_line();
    writer(true) << "<c/>" << writer.endl();
    state.block().append("<d/>");
    writer(false) << "|";
    state.block().append("<e/>");
    EXPECT_EQ(writer.handle_error(elmx_bad_choice, "x", "", 0), elmx_bad_choice);
    EXPECT_EQ(stream.str(), "<a xmlns:Zol=\"urn:zol\">\n\t<b/>\n\t<c/>\n<d/>|<e/>");
  }
  EXPECT_EQ(stream.str(), "<a xmlns:Zol=\"urn:zol\">\n\t<b/>\n\t<c/>\n<d/>|<e/>");
}

// Overrides that reach the stream by each way there is.
class StreamingWriter : public c_xml_writer {
 public:
  enum Way { through_own_reference, through_operator, through_base };

  StreamingWriter(std::ostream& os, Way way) : c_xml_writer(os, "\t", "\n"), os_(os), way_(way) {}

  void nest() override {
    switch (way_) {
      case through_own_reference:
        os_ << "[" << levels_++ << "]";
        break;
      case through_operator:
        (*this)(false) << "[" << levels_++ << "]";
        break;
      case through_base:
        os_ << "[" << levels_++;
        c_xml_writer::nest();
        os_ << "]";
        break;
    }
  }
  const char* endl() override {
    os_ << "{" << levels_ << "}";
    return c_xml_writer::endl();
  }

 private:
  std::ostream& os_;
  Way way_;
  int levels_ = 0;
};

TEST(MarshalScopeTest, CallsOverriddenHooksInTheRightPlace) {
  for (auto way : {StreamingWriter::through_own_reference, StreamingWriter::through_operator,
                   StreamingWriter::through_base}) {
    std::ostringstream stream;
    StreamingWriter writer(stream, way);
    marshal(writer, 1);
    const std::string tab = way == StreamingWriter::through_base ? "\t" : "";
    const auto level = [&tab](int number) { return "[" + std::to_string(number) + tab + "]"; };
    EXPECT_EQ(stream.str(), "<e>{0}\n" + level(0) + "<v>0.25</v>{1}\n" + level(1) + "<e>{2}\n" +
                                level(2) + level(3) + "<v>0.25</v>{4}\n" + level(4) +
                                "</e>{5}\n</e>{5}\n");
  }
}

TEST(MarshalScopeTest, WritesTheSameBytesForASubclassThatOverridesNothing) {
  std::ostringstream stream;
  WaivingWriter writer(stream, "\t", "\n");
  marshal(writer, 1);
  EXPECT_EQ(stream.str(), k_two_levels);
}

TEST(MarshalScopeTest, KeepsTheBytesBeforeAnException) {
  std::ostringstream stream;
  c_xml_writer writer(stream, "\t", "\n");
  const auto run = [&writer] {
    internal::WriterState& state = internal::WriterState::of(writer);
    internal::MarshalScope outer(state);
    state.block().append("before");
    internal::MarshalScope inner(state);
    throw std::runtime_error("handler");
  };
  EXPECT_THROW(run(), std::runtime_error);
  EXPECT_EQ(stream.str(), "before");
  marshal(writer, 0);
  EXPECT_EQ(stream.str(), "before<e>\n\t<v>0.25</v>\n</e>\n");
}

// A stream with nowhere to put anything.
class FullBuffer : public std::streambuf {};

TEST(MarshalScopeTest, PassesTheExceptionsOfTheStream) {
  FullBuffer buffer;
  std::ostream stream(&buffer);
  c_xml_writer silent(stream, "\t", "\n");
  marshal(silent, 1);
  EXPECT_TRUE(stream.bad());

  stream.clear();
  stream.exceptions(std::ios_base::badbit);
  c_xml_writer writer(stream, "\t", "\n");
  EXPECT_THROW(marshal(writer, 1), std::ios_base::failure);
  stream.clear();
  const auto run = [&writer] {
    internal::WriterState& state = internal::WriterState::of(writer);
    internal::MarshalScope scope(state);
    state.block().append("lost");
    throw std::runtime_error("first");
  };
  EXPECT_THROW(run(), std::runtime_error);
}

TEST(StringSinkTest, JoinsWhatTheStreamWrote) {
  internal::StringSink sink;
  std::ostream stream(&sink);
  std::string text = "replaced";
  sink.move_to(&text);
  EXPECT_EQ(text, "");

  std::string expected;
  for (std::size_t size : {1, 4095, 4096, 4097, 20, 300000, 0, 65536}) {
    const std::string piece(size, static_cast<char>('a' + size % 26));
    stream.write(piece.data(), static_cast<std::streamsize>(piece.size()));
    stream.put('\xFF') << std::flush << 1.5;
    expected += piece + "\xFF" + "1.5";
  }
  sink.move_to(&text);
  EXPECT_EQ(text, expected);
  EXPECT_TRUE(stream.good());

  stream << "again";
  sink.move_to(&text);
  EXPECT_EQ(text, "again");
}

TEST(StringSinkTest, WidensAcrossItsChunksAsInOnePiece) {
  const struct {
    const char* name;
    std::string bytes;
  } rows[] = {
      {"ASCII", "abcdef"},
      {"two, three and four bytes", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z"},
      {"pair of two sequences", "\xED\xA0\xBD\xED\xB8\x80z"},
      {"lone high surrogate", "\xED\xA0\xBDz"},
      {"two high surrogates", "\xED\xA0\xBD\xED\xA0\xBD\xED\xB8\x80z"},
      {"lone low surrogate", "\xED\xB8\x80z"},
      {"bad lead byte", "a\xFFz"},
      {"bad continuation", "\xE2\x82z\xAC"},
      {"cut at the end", "ab\xF0\x9F\x98"},
      {"high surrogate at the end", "ab\xED\xA0\xBD"},
  };
  // The first chunk has 4096 bytes: each row meets its end at each of its own bytes.
  for (const auto& row : rows) {
    for (std::size_t lead = 4084; lead <= 4100; ++lead) {
      for (const std::size_t tail : {0, 1, 20, 10000}) {
        const std::string bytes = std::string(lead, '.') + row.bytes + std::string(tail, '!');
        internal::StringSink sink;
        sink.sputn(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        std::wstring wide = L"replaced";
        sink.move_to(&wide);
        std::wstring expected;
        convert(&expected, bytes);
        ASSERT_TRUE(wide == expected) << row.name << ' ' << lead << ' ' << tail;
      }
    }
  }
}

}  // namespace
}  // namespace lmx
