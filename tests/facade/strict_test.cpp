// What the strict option refuses and takes beyond the reader, where it says so, and what it costs.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "facade/files.h"
#include "model/Zol.h"
#include "support/files.h"

namespace {

using namespace zol_test;
using zol_v2::checkText;
using zol_v2::LoadOptions;
using zol_v2::LoadReport;
using zol_v2::openFile;
using zol_v2::openText;
using zol_v2::saveText;
using zol_v2::Zol;

LoadOptions strict() {
  LoadOptions options;
  options.strict = true;
  return options;
}

std::string repeated(std::size_t count, std::string_view text) {
  std::string all;
  all.reserve(count * text.size());
  while (count-- != 0) all += text;
  return all;
}

std::string named(const char* name, unsigned number) { return name + std::to_string(number); }

// A whole document, with places for markup of somebody else's: in front of it and in a Revision.
std::string document(const std::string& front, const std::string& entry) {
  return front +
         "<Zol:Zol xmlns:Zol=\"http://example.org/zol/v2\">\n<Zol:Preamble><Zol:Header>"
         "<Zol:Creator>c</Zol:Creator><Zol:CreatorVersion>1</Zol:CreatorVersion>"
         "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory><Zol:Purpose>p</Zol:Purpose>\n"
         "<Zol:Revision>" +
         entry + "</Zol:Revision></Zol:Header></Zol:Preamble></Zol:Zol>\n";
}

enum class Encoding { utf8, marked_utf8, utf16_be, utf16_le, latin1 };

// Of a text whose characters all are Latin-1.
std::string encoded(const std::string& latin1, Encoding encoding) {
  std::string bytes;
  if (encoding == Encoding::latin1) {
    bytes = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>";
  } else if (encoding == Encoding::marked_utf8) {
    bytes = "\xEF\xBB\xBF";
  } else if (encoding != Encoding::utf8) {
    bytes = encoding == Encoding::utf16_be ? "\xFE\xFF" : "\xFF\xFE";
  }
  for (const char c : latin1) {
    const auto code = static_cast<unsigned char>(c);
    if (encoding == Encoding::latin1) {
      bytes += c;
    } else if (encoding == Encoding::utf16_be || encoding == Encoding::utf16_le) {
      bytes += encoding == Encoding::utf16_be ? '\0' : c;
      bytes += encoding == Encoding::utf16_be ? c : '\0';
    } else if (code < 0x80) {
      bytes += c;
    } else {
      bytes += static_cast<char>(0xC0 | code >> 6);
      bytes += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return bytes;
}

struct Refused {
  const char* what;
  std::string entry;
  int line;    // of the entry's first one: 3
  int column;  // of the place where the parser noticed
  const char* item;
  const char* words;
};

// Each is a document that the reader takes.
const Refused k_refused[] = {
    {"an attribute twice", "\n<x a='1' a='2'/>", 4, 15, "a", "stands twice"},
    {"a twin under another prefix", "<x xmlns:p='u' xmlns:q='u'\n p:a='' q:a=''/>", 4, 15,
     "Revision", "under two prefixes"},
    {"a bracket in a value", "<x\na='\xE9\xE9<'/>", 4, 6, "Revision", "'<'"},
    {"hyphens", "<x><!-- a --\n b --></x>", 3, 25, "x", "'--'"},
    {"an end of a section", "<x>]]></x>", 3, 18, "x", "']]>'"},
    {"a control character", "<x>\x01</x>", 3, 18, "x", "XML does not have"},
    {"a reference to one", "<x>\n&#1;</x>", 4, 5, "x", "XML does not have"},
    {"a prefix of an element", "<y:x/>", 3, 19, "y:x", "is not declared"},
    {"a prefix of an attribute", "<x y:a=''/>", 3, 24, "y:a", "is not declared"},
    {"attributes without a blank", "<x a='1'b='2'/>", 3, 23, "Revision", "blank"},
    {"a blank in an end tag", "<x/ >", 3, 17, "Revision", ""},
    {"a missing semicolon", "<x>&amp</x>", 3, 22, "x", "semicolon"},
    {"two colons", "<x xmlns:a='u'><a:b:c/></x>", 3, 34, "x", "colon"},
};

TEST(Strict, RefusesWhatTheReaderTakes) {
  TempDir dir;
  for (const Refused& refused : k_refused) {
    for (const Encoding encoding : {Encoding::utf8, Encoding::marked_utf8, Encoding::utf16_be,
                                    Encoding::utf16_le, Encoding::latin1}) {
      SCOPED_TRACE(testing::Message() << refused.what << static_cast<int>(encoding));
      const std::string text = encoded(document("", refused.entry), encoding);
      Zol loaded;
      ASSERT_EQ(openText(loaded, text), lmx::elmx_ok);
      LoadReport report;
      loaded.append_Color();
      EXPECT_EQ(openText(loaded, text, &report, strict()), lmx::elmx_not_well_formed);
      EXPECT_EQ(loaded.size_Color(), 1U);
      EXPECT_EQ(report.line, refused.line);
      EXPECT_EQ(report.column, refused.column);
      EXPECT_EQ(report.item, refused.item);
      EXPECT_NE(report.message.find(refused.words), std::string::npos) << report.message;
    }
  }
}

TEST(Strict, CountsLinesAsTheReaderDoes) {
  for (const char* line_end : {"\n", "\r\n", "\r"}) {
    for (const Encoding encoding : {Encoding::utf8, Encoding::utf16_be, Encoding::latin1}) {
      std::string text = document("", "\n<!--\xFC-->\n<x><y></x>");
      for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos;) {
        text.replace(at, 1, line_end);
        at += std::string_view(line_end).size();
      }
      LoadReport by_reader;
      LoadReport by_book;
      Zol loaded;
      EXPECT_NE(openText(loaded, encoded(text, encoding), &by_reader), lmx::elmx_ok);
      EXPECT_NE(checkText(encoded(text, encoding), &by_book), lmx::elmx_ok);
      EXPECT_EQ(by_reader.line, 5);
      EXPECT_EQ(by_book.line, 5);
      EXPECT_EQ(by_book.column, 11);
    }
  }
}

TEST(Strict, LeavesNothingBehindTheRoot) {
  for (const std::string_view rest : {std::string_view("\0", 1), std::string_view("\n\0<", 3),
                                      std::string_view("x"), std::string_view("\xC3")}) {
    std::string text = document("", "");
    EXPECT_EQ(checkText(text), lmx::elmx_ok);
    text += rest;
    EXPECT_EQ(checkText(text), lmx::elmx_not_well_formed);
    // Behind what the parser takes at once.
    text.insert(text.size() - rest.size(), 100000, ' ');
    EXPECT_EQ(checkText(text), lmx::elmx_not_well_formed);
  }
  EXPECT_EQ(checkText(encoded("<x/>", Encoding::utf16_le) + '\n'), lmx::elmx_not_well_formed);
}

TEST(Strict, TakesWhatIsGood) {
  const std::string types =
      "<?xml version=\"1.0\"?>\n<!DOCTYPE Zol:Zol SYSTEM \"no.dtd\" [<!ENTITY e \"<x>y</x>\">"
      "<!ENTITY far SYSTEM \"http://127.0.0.1/no\"><!ATTLIST x a CDATA \"1\">"
      "<!-- c --><?p i?>]>\n";
  for (const std::string& text :
       {document("", ""), document(types, "&e;<z a='&lt;&#x1F3A8;'>&e;<![CDATA[<]]></z>"),
        document("", repeated(400, "<d>") + repeated(400, "</d>")),
        document("", "<x>" + std::string(11000000, 'x') + "</x>"),
        document("", "<x a='" + std::string(11000000, 'x') + "'/>"),
        document("", "<!--" + std::string(11000000, 'x') + "-->")}) {
    LoadReport report;
    Zol loaded;
    EXPECT_EQ(openText(loaded, text, &report, strict()), lmx::elmx_ok) << report.message;
  }
}

TEST(Strict, ReadsEveryKindOfFile) {
  TempDir dir;
  Zol document;
  ASSERT_EQ(document.unmarshal(ZOL_SOURCE_DIR "/examples/documents/coverage-spaces.zol"),
            lmx::elmx_ok);
  std::string text;
  ASSERT_EQ(document.marshal(&text), lmx::elmx_ok);
  const std::string bad = "<!-- -- -->" + text.substr(text.find("<Zol:Zol"));
  for (const char* name : {"x.zol", "x.zolz"}) {
    LoadReport report;
    Zol loaded;
    ASSERT_EQ(saveText(text, dir.wide(name)), lmx::elmx_ok);
    EXPECT_EQ(openFile(loaded, dir.wide(name), &report, strict()), lmx::elmx_ok) << report.message;
    ASSERT_EQ(saveText(bad, dir.wide(name)), lmx::elmx_ok);
    EXPECT_EQ(openFile(loaded, dir.wide(name)), lmx::elmx_ok);
    EXPECT_EQ(openFile(loaded, dir.wide(name), &report, strict()), lmx::elmx_not_well_formed);
    EXPECT_EQ(report.line, 1);
    LoadOptions small = strict();
    small.largest_document = 100;
    EXPECT_EQ(openFile(loaded, dir.wide(name), &report, small), lmx::elmx_user_defined_1);
    EXPECT_EQ(openFile(loaded, dir.wide("none.zol"), &report, strict()), lmx::elmx_no_file);
  }
}

// Each would take minutes, gigabytes or the whole stack of a parser that follows it to its end.
TEST(Strict, IsNotBlownUp) {
  std::string tower = "<!ENTITY e0 \"0123456789\">";
  std::string chain = tower;
  for (unsigned i = 1; i <= 12; ++i) {
    tower +=
        "<!ENTITY " + named("e", i) + " \"" + repeated(10, "&" + named("e", i - 1) + ";") + "\">";
  }
  for (unsigned i = 1; i <= 5000; ++i) {
    chain += "<!ENTITY " + named("e", i) + " \"&" + named("e", i - 1) + ";\">";
  }
  const std::string wide = "<!ENTITY e12 \"" + std::string(100000, 'x') + "\">";
  const std::string loop = "<!ENTITY e12 \"&e1;&e1;\"><!ENTITY e1 \"&e12;&e12;\">";
  std::string attributes;
  std::string prefixes;
  for (unsigned i = 0; i < 100000; ++i) {
    attributes += ' ' + named("a", i) + "=''";
    prefixes += " xmlns:" + named("p", i) + "='u'";
  }
  const auto with_type = [](const std::string& type, const std::string& rest) {
    return "<!DOCTYPE x [" + type + "]>" + rest;
  };
  for (const std::string& text :
       {with_type(tower, "<x>&e12;</x>"), with_type(tower, "<x a='&e12;'/>"),
        with_type(tower + "<!ATTLIST x a CDATA '&e12;'>", "<x/>"),
        with_type(wide, "<x>" + repeated(100000, "&e12;") + "</x>"),
        with_type(wide, "<x a='" + repeated(100000, "&e12;") + "'/>"),
        with_type(loop, "<x>&e12;</x>"), with_type(loop, "<x a='&e12;'/>"),
        with_type(chain, "<x>&e5000;</x>"), with_type(chain, "<x a='&e5000;'/>"),
        "<x" + attributes + "/>", "<x" + prefixes + "/>",
        with_type("<!ENTITY e \"<x" + attributes + "/>\">", "<x>&e;</x>")}) {
    LoadReport report;
    EXPECT_EQ(checkText(text, &report), lmx::elmx_not_well_formed) << text.substr(0, 100);
    EXPECT_NE(report.message.find("too "), std::string::npos) << report.message;
  }
}

}  // namespace
