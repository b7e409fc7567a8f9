#include "lmx/tokeniser.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <string>

#include "lmx/xml_support.h"

namespace lmx::test {
namespace {

// The events of a document in one line: "7 a" a start tag, "@b=1" an attribute, "4" its end, "5 x"
// text, "6 a" an end tag or "6" for "/>", "3" an error, "0" the end; and the reports in brackets.
std::string events(const std::string& document) {
  RecordingError error;
  c_read_string source(document);
  c_xml xml(source, error, true);
  c_xml_local scope;
  std::string out;
  std::string name;
  std::string value;
  const auto note = [&](int event) {
    out += std::to_string(event) + (name.empty() ? "" : " " + name) + ", ";
    return event;
  };
  for (int errors = 0; errors < 3;) {
    switch (note(xml.get_element_name(&scope, &name))) {
      case elxp_end_of_input:
        return out + error.log;
      case elxp_error:
        ++errors;
        break;
      case elxp_name:
        while (xml.get_attribute_name(&name, false) == elxp_name) {
          out += "@" + name + "=";
          out += xml.get_attribute_value(&value, elmx_preserve) ? value : value + "(failed)";
          out += ", ";
        }
        break;
      default:
        break;
    }
  }
  return out + error.log;
}

struct EventRow {
  const char* document;
  const char* events;
};

void expect_events(const EventRow& row) {
  EXPECT_EQ(events(row.document), row.events) << row.document;
}

TEST(Tokeniser, TagsThatPass) {
  const EventRow k_rows[] = {
      {"<a/>", "7 a, 0, "},
      {"<a></a >", "7 a, 6 a, 0, "},
      {"<a b='1'c=\"2\"/>", "7 a, @b=1, @c=2, 0, "},
      {"<a b = '1' >", "7 a, @b=1, 0, "},
      {"<a b='x<y\"'/>", "7 a, @b=x<y\", 0, "},
      {"<a b='1' b='2'/>", "7 a, @b=1, @b=2, 0, "},
      {"<a b='\t1\n&#9;&#10;'/>", "7 a, @b=\t1\n\t\n, 0, "},  // none of it becomes a blank
      {"<:_a-.1:b/>", "7 :_a-.1:b, 0, "},
      {"<\xC3\xA9\xE2\x82\xAC/>", "7 \xC3\xA9\xE2\x82\xAC, 0, "},
      {"<a xmlnsb='1' xmln='2' x='3'/>", "7 a, @xmlnsb=1, @xmln=2, @x=3, 0, "},
      {"<a xmlns='u' xmlns:p='v' b='1'/>", "7 a, @b=1, 0, "},
      {"</1>", "6 1, 0, "},
      {"<a></b>", "7 a, 6 b, 0, "},
  };
  for (const EventRow& row : k_rows) expect_events(row);
}

TEST(Tokeniser, TagsThatFail) {
  const EventRow k_rows[] = {
      {"<a", "3 a, 0, 1 23 @1 XML not Well-Formed\n"},
      {"<a ", "3 a, 0, "},
      {"<a b", "3 a, 0, 0 34 @1 Unexpected end of file\n"},
      {"<a b=", "3 a, 0, 0 23 @1 Schema is not Well Formed (expected '\"' or ''', got )\n"},
      {"<a b=1/>", "3 a, 0, 0 23 @1 Schema is not Well Formed (expected '\"' or ''', got 1)\n"},
      {"<a b='1/>", "3 a, 0, 0 23 @1 Schema is not Well Formed (expected '\"' or ''', got )\n"},
      {"<a b/>", "3 a, 0, 0 23 @1 Schema is not Well Formed (expected '=', got '/')\n"},
      {"<a xmlns:p='u'", "3 a, 0, "},
      {"<a xmlns:p='u", "3 a, 0, 0 23 @1 Schema is not Well Formed (expected '\"' or ''', got )\n"},
      {"<a \"><b/>", "7 a, 5 >, 7 b, 0, 1 23 @1 XML not well-formed\n"},
      {"<a / ><b/ x>", "7 a, 7 b, 5 >, 0, 1 23 @1 XML not well-formed\n"},
      {"</ a>x", "3, 5 a>x, 0, "},
      {"</a x>", "3 a, 5 >, 0, 1 23 @1 XML not Well-Formed\n"},
      {"</a", "3 a, 0, 1 23 @1 XML not Well-Formed\n"},
      {"<1 b>x", "3, 5 x, 0, 1 23 @1 XML not Well-Formed\n"},
      {"<", "3, 0, 1 23 @1 XML not Well-Formed\n"},
      {"<!x>y", "3, 5 y, 0, "},
      {"<!-x>y", "3, 5 y, 0, "},
      {"<!DOX>y", "3, 5 y, 0, "},
      {"<![CDATA x]]>", "3, 5 x]]>, 0, 1 23 @1 XML not Well-Formed\n"},
      {"<![CDATA[x]]", "3 x, 0, 1 23 @1 XML not Well-Formed\n"},
  };
  for (const EventRow& row : k_rows) expect_events(row);
}

TEST(Tokeniser, DeclarationsCommentsInstructions) {
  const EventRow k_rows[] = {
      {"<?xml version='1.0'?><a/>", "7 a, 0, "},
      {"<?xmlversion = \"1.1\" encoding='Utf-8' standalone='maybe' ?><a/>", "7 a, 0, "},
      {"<!-- c --><?xml version='1.0'?><a/>", "7 a, 0, "},
      {"<?xml version='1.2'?><a/>", "3, 5 ?>, 7 a, 0, 1 14 @1 XML version 1.2 not understood\n"},
      {"<?xml standalone='no' version='1.0'?>",
       "3, 5 tandalone='no' version='1.0'?>, 0, 1 13 @1 Version not present in XML Decl\n"},
      {"<?xml version='1.0' standalone='no'?>",
       "3, 5 ?>, 0, 1 13 @1 XML Document is not standalone\n"},
      {"<?xml version='1.0' encoding='windows-1252'?><a/>",
       "3, 0, 0 6 @1 Unknown character encoding specified\n"},
      {"<?xml version='1.0' encoding='UTF-16'?><a/>",
       "3, 0, 0 15 @1 Mis-match between specfied encoding and byte format\n"},
      {"<?xml version='1.0' x?><a/>", "3, 5 ?>, 7 a, 0, "},
      {"<?xml version=1.0?><a/>", "3, 5 .0?>, 7 a, 0, "},
      {"<?xml-stylesheet href='x'?><a/>",
       "3, 5 stylesheet href='x'?>, 7 a, 0, 1 13 @1 Version not present in XML Decl\n"},
      {"<a/><?xml version='1.0'?><b/>",
       "7 a, 3, 0, 0 13 @1 XML declaration not at start of document\n"},
      {"<?p?><?x ?\?><?xm?><a/>", "7 a, 0, "},
      {"<?p", "0, "},
      {"<!----><!-- a -- b ---><a/>", "7 a, 0, 2 8 @1 End of comment not Well-Formed\n"},
      {"<!--->--><a/>", "7 a, 0, "},
      {"<!-- ", "3, 0, "},
      {"<!DOCTYPE a><!DOCTYPE b><a/>",
       "3, 5 b>, 7 a, 0, 1 9 @1 Document Type Declaration already read\n"},
      {"<a/><!DOCTYPE b>",
       "7 a, 3, 5 b>, 0, 1 9 @1 Document Type Declaration not at start of document\n"},
  };
  for (const EventRow& row : k_rows) expect_events(row);
}

TEST(Tokeniser, TextAsAToken) {
  const EventRow k_rows[] = {
      {" x <a/>", "5 x , 7 a, 0, "},
      {"<a> \n x\ty </a>", "7 a, 5 x\ty , 6 a, 0, "},
      {"<a><![CDATA[]]]> x ]]>y</a>", "7 a, 5 ], 5 x ]]>y, 6 a, 0, "},
      {"<a>]]></a>", "7 a, 5 ]]>, 6 a, 0, "},
      {"<a>&lt;b&#62;</a>", "7 a, 5 <b>, 6 a, 0, "},
      {"<a>x&y;z</a>", "7 a, 3 x&y;, 5 z, 6 a, 0, "},
      {"<a>&", "7 a, 3 &, 0, "},
  };
  for (const EventRow& row : k_rows) expect_events(row);
}

TEST(Tokeniser, IllFormedUtf8SwallowsNothing) {
  const EventRow k_rows[] = {
      {"<?p M\xFCller?><a/>", "0, "},
      {"<!-- \xE9t\xE9 --><a/>", "3, 0, "},
      {"<!DOCTYPE a [<!ENTITY e '\xE9'>]><a>&e;</a>", "3, 0, "},
      {"<a>Stra\xDF GmbH</a>", "7 a, 5 Stra, 0, "},
      {"<a><![CDATA[\xE9]]></a>", "7 a, 3, 0, 1 23 @1 XML not Well-Formed\n"},
      {"<a b='\xE9t\xE9'/>",
       "3 a, 0, 0 23 @1 Schema is not Well Formed (expected '\"' or ''', got )\n"},
  };
  for (const EventRow& row : k_rows) expect_events(row);
}

// The text after the first start tag, with "!" before it if it can't be read, "..." after it if no
// end tag of "a" follows, and the reports.
std::string value_of(const std::string& document, elmx_whitespace mode, bool treat_refs = true) {
  RecordingError error;
  c_read_string source(document);
  c_xml xml(source, error, treat_refs);
  std::string text;
  bool empty = false;
  xml.get_element_name(nullptr, &text);
  xml.skip_start_tag(&empty);
  if (!xml.get_element_value(&text, mode, true)) return "!" + text + error.log;
  return text + (xml.is_element_end_tag("a") ? "" : "...") + error.log;
}

std::string value_in_mode(const std::string& content, elmx_whitespace mode,
                          bool treat_refs = true) {
  return value_of("<a>" + content + "</a>", mode, treat_refs);
}

TEST(Tokeniser, WhiteSpaceModes) {
  const struct {
    const char* content;
    const char* preserved;
    const char* replaced;
    const char* collapsed;
  } k_rows[] = {
      {"", "", "", ""},
      {"1.5", "1.5", "1.5", "1.5"},
      {" x\t\ny ", " x\t\ny ", " x  y ", "x y"},
      {" x<![CDATA[ y ]]>", " x y ", " x y ", "x y "},
      {"a <!-- c --> b<?p?>c", "a  bc", "a  bc", "a bc"},
      {"a&#9;&#xA;b&#32;", "a\t\nb ", "a  b ", "a b"},
      {"a&#133;b&#x2028;", "a\nb\n", "a b ", "a b"},
      {"\xC3\xA9 \xC3\xA9", "\xC3\xA9 \xC3\xA9", "\xC3\xA9 \xC3\xA9", "\xC3\xA9 \xC3\xA9"},
      // A predefined entity is appended without a look at the mode.
      {"a &lt; b", "a < b", "a < b", "a< b"},
      {"a<b/>", "a...", "a...", "a..."},
      {"a<!x>", "!a1 23 @1 XML not well-formed\n", "!a1 23 @1 XML not well-formed\n",
       "!a1 23 @1 XML not well-formed\n"},
      {"&no;", "!&no;", "!&no;", "!&no;"},
  };
  for (const auto& row : k_rows) {
    EXPECT_EQ(value_in_mode(row.content, elmx_preserve), row.preserved) << row.content;
    EXPECT_EQ(value_in_mode(row.content, elmx_replace), row.replaced) << row.content;
    EXPECT_EQ(value_in_mode(row.content, elmx_collapse), row.collapsed) << row.content;
  }
  EXPECT_EQ(value_in_mode("a&#9;\tb", elmx_replace, false), "a\t b");
  EXPECT_EQ(value_in_mode("&#10;", elmx_collapse, false), "\n");
}

TEST(Tokeniser, CharacterReferences) {
  const struct {
    const char* reference;
    std::string text;
  } k_rows[] = {
      {"&#65;", "A"},
      {"&#x41", "A"},
      {"&#x41;", "A"},
      {"&#x4a;&#x4A;", "JJ"},
      {"&#xe9;", "\xC3\xA9"},
      {"&#x100000;", "\xF4\x80\x80\x80"},
      {"&#0;", bytes("\0")},
      {"&#000000000000000000000000000000065;", "A"},
      {"&#x100001;", "!"},
      {"&#x110000;", "!"},
      {"&#99999999999999999999;", "!"},
      {"&#X41;", "!"},
      {"&#;", "!"},
      {"&#x;", "!"},
  };
  for (const auto& row : k_rows) {
    EXPECT_EQ(value_in_mode(row.reference, elmx_preserve), row.text) << row.reference;
  }
}

TEST(Tokeniser, AnEarlyEndInAValue) {
  const struct {
    const char* document;
    const char* result;
  } k_rows[] = {
      {"<a>x", "!x1 34 @1 Premature end of file encountered\n"},
      {"<a>x<?p", "!x1 34 @1 Premature end of file encountered\n"},
      {"<a>x<!--", "!x1 23 @1 XML not well-formed\n"},
      {"<a>x<![CDATA[y", "!xy1 23 @1 XML not well-formed\n"},
      {"<a>x<", "x..."},  // left for whoever reads on
  };
  for (const auto& row : k_rows) EXPECT_EQ(value_of(row.document, elmx_preserve), row.result);
}

TEST(Tokeniser, EndOfAStartTag) {
  const struct {
    const char* rest;
    bool result;
    const char* empty;
    const char* reports;
  } k_rows[] = {
      {">", true, "no", ""},
      {" >", true, "no", ""},
      {" b='>/' \"/>\">", true, "no", ""},
      {"/>", true, "yes", ""},
      {"/ \n>", true, "yes", ""},
      {"/", true, "yes", ""},
      {"/ xy>", false, "yes", "1 12 @1 Illegal character(s) after / at end of tag - x\n"},
      {"", false, "as it was", ""},
      {" '", false, "as it was", ""},
  };
  for (const auto& row : k_rows) {
    bool empty[] = {false, true};
    for (bool& told : empty) {
      RecordingError error;
      const std::string document = std::string("<") + row.rest;
      c_read_string source(document);
      c_get_for_xml getter(source, error, true);
      getter.get();
      EXPECT_EQ(getter.move_to_start_tag_end(&told), row.result) << row.rest;
      EXPECT_EQ(error.log, row.reports) << row.rest;
    }
    EXPECT_STREQ(empty[0] != empty[1] ? "as it was"
                 : empty[0]           ? "yes"
                                      : "no",
                 row.empty)
        << row.rest;
  }
}

TEST(Tokeniser, CopiesContentAsText) {
  const std::string inner =
      "x <b c='1'  d=\"'>/\">y<!-- no --><?no?><e/></b> <f g='/'/><![CDATA[<&]]>&amp; ";
  const std::string copied = "x <b c='1'  d=\"'>/\">y<e/></b> <f g='/'/><![CDATA[<&]]>&amp; ";
  RecordingError error;
  const std::string document = "<a xmlns:p='u' q='&lt;\"'>" + inner + "</a><n>" + inner + "</z >";
  c_read_string source(document);
  c_xml xml(source, error, true);
  c_xml_local scope;
  std::string name;
  std::string text;
  std::string end_name;
  bool empty = false;
  ASSERT_EQ(xml.get_element_name(&scope, &name), elxp_name);
  EXPECT_TRUE(xml.get_any_element(name, &text, elmx_preserve, false));
  EXPECT_EQ(text, "<a xmlns:p='u' q='&lt;\"'>" + copied + "</a>");
  ASSERT_EQ(xml.get_element_name(&scope, &name), elxp_name);
  ASSERT_TRUE(xml.skip_start_tag(&empty));
  EXPECT_TRUE(xml.get_nested_element_value(&text, &end_name, elmx_preserve, false));
  EXPECT_EQ(text, copied);
  EXPECT_EQ(end_name, "z");
  EXPECT_EQ(error.log, "");
}

// The first child of the root as text that stands by itself, or "!" if it can't be copied.
std::string detached(const std::string& document) {
  c_error error;
  c_read_string source(document);
  c_xml xml(source, error, true);
  c_xml_local outer;
  std::string name;
  std::string text;
  bool empty = false;
  if (xml.get_element_name(&outer, &name) != elxp_name || !xml.skip_start_tag(&empty)) return "!";
  c_xml_local inner(outer);
  if (xml.get_element_name(&inner, &name) != elxp_name) return "!";
  return xml.get_any_element(inner, name, &text) ? text : "!";
}

bool is_well_formed(const std::string& text) {
  const int options = XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET;
  xmlDoc* const document =
      xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, options);
  xmlFreeDoc(document);
  const xmlError* const error = xmlGetLastError();
  return document != nullptr && (error == nullptr || error->code == XML_ERR_OK);
}

TEST(Tokeniser, CopiesAnElementThatStandsByItself) {
  const std::string prolog =
      "<!DOCTYPE r [<!ENTITY e 'x'><!ENTITY m '<b c=\"&e;\"/>'><!ENTITY lt2 '&#38;#60;'>"
      "<!ENTITY cr '&#13;'><!ENTITY q '\"&#39;'><!ENTITY u 'urn:u?a&#38;#38;b'>]>"
      "<r xmlns='urn:d' xmlns:p='&u;' xmlns:q='urn:q' xmlns:unused='urn:n'>";
  const struct {
    const char* entry;
    const char* copied;
  } k_rows[] = {
      // References, in text and in attributes.
      {"<q:a xmlns:q='v'>&e;&lt;&gt;&amp;&apos;&quot;&#65;&#x42</q:a>",
       "<q:a xmlns:q='v'>x&lt;&gt;&amp;'\"AB</q:a>"},
      {"<q:a xmlns:q='v'>&m;&lt2;b/&#62;</q:a>",
       "<q:a xmlns=\"urn:d\" xmlns:q='v'><b c=\"x\"/>&lt;b/&gt;</q:a>"},
      {"<q:a xmlns:q='v' b='&m;&lt2;&amp;&q;<' c=\"&q;\"/>",
       "<q:a xmlns:q='v' b='&lt;b c=\"x\"/>&lt;&amp;\"&apos;&lt;' c=\"&quot;'\"/>"},
      {"<q:a xmlns:q='v' b=' &#9;\n&#10;&cr;'>\t&#9;&#10;&#13;&cr;&#1;</q:a>",
       "<q:a xmlns:q='v' b=' &#9;\n&#10;&#13;'>\t\t\n&#13;&#13;&#1;</q:a>"},
      {"<q:a xmlns:q='v'>1 ]]> 2 ]]<!-- -->> 3 > 4</q:a>",
       "<q:a xmlns:q='v'>1 ]]&gt; 2 ]]&gt; 3 > 4</q:a>"},
      {"<q:a xmlns:q='v'  b = '1'\n><?no?><![CDATA[<&e;]]><c / ></q:a >",
       "<q:a xmlns=\"urn:d\" xmlns:q='v' b='1'><![CDATA[<&e;]]><c/></q:a>"},
      {"<q:a xmlns:q='&u;'/>", "<q:a xmlns:q='urn:u?a&amp;b'/>"},
      // Declarations, as far as they are used and not there.
      {"<a/>", "<a xmlns=\"urn:d\"/>"},
      {"<p:a/>", "<p:a xmlns:p=\"urn:u?a&amp;b\"/>"},
      {"<a xmlns=''><b/></a>", "<a xmlns=''><b/></a>"},
      {"<q:a b='1' p:c='2'/>", "<q:a xmlns:p=\"urn:u?a&amp;b\" xmlns:q=\"urn:q\" b='1' p:c='2'/>"},
      {"<q:a xmlns:q='v'><q:b xmlns:p='w'><p:c/></q:b></q:a>",
       "<q:a xmlns:q='v'><q:b xmlns:p='w'><p:c/></q:b></q:a>"},
      {"<q:a xmlns:q='v'><q:b xmlns:p='w'/><q:b xmlns:p='w'></q:b><p:c/></q:a>",
       "<q:a xmlns:p=\"urn:u?a&amp;b\" xmlns:q='v'><q:b xmlns:p='w'/><q:b xmlns:p='w'></q:b><p:c/>"
       "</q:a>"},
      {"<q:a xmlns:q='v'><q:b p:c='1' xmlns:p='w'/></q:a>",
       "<q:a xmlns:q='v'><q:b p:c='1' xmlns:p='w'/></q:a>"},
      {"<q:a xmlns:q='v' q:type='p:T' r:s='http://x'  xml:lang='en'/>",
       "<q:a xmlns:p=\"urn:u?a&amp;b\" xmlns:q='v' q:type='p:T' r:s='http://x' xml:lang='en'/>"},
      // What can't be.
      {"<a>&no;</a>", "!"},
      {"<a b='&no;'/>", "!"},
      {"<a>a & b</a>", "!"},
      {"<a b='&#0;'/>", "!"},
      {"<a><b c=1/></a>", "!"},
      {"<a><1/></a>", "!"},
      {"<a><b / x></a>", "!"},
      {"<a><b></a>", "!"},
  };
  for (const auto& row : k_rows) {
    const std::string copied = detached(prolog + row.entry + "</r>");
    EXPECT_EQ(copied, row.copied) << row.entry;
    const bool is_xml = copied.find("&#1;") == std::string::npos &&
                        copied.find("r:s") == std::string::npos;  // nor declared before
    xmlResetLastError();
    EXPECT_EQ(is_well_formed(copied), copied != "!" && is_xml) << copied;
    // A copy of the copy is the same, wherever it stands.
    if (copied == "!") continue;
    EXPECT_EQ(detached("<r xmlns:p='other'>" + copied + "</r>"), copied);
  }
  EXPECT_EQ(detached(bytes("<r><a b='\0'/></r>")), "!");
}

// The prefixes of an entry cost no more than their number.
TEST(Tokeniser, AnElementMayUseManyPrefixes) {
  std::string declarations;
  std::string uses;
  for (int i = 0; i < 20000; ++i) {
    const std::string number = std::to_string(i);
    declarations += " xmlns:p" + number + "='urn:" + number + "'";
    uses += "<p" + number + ":b xmlns:q" + number + "='v'/>";
  }
  const std::string copied = detached("<r" + declarations + "><a>" + uses + "</a></r>");
  EXPECT_EQ(copied.size(), ("<a" + declarations + ">" + uses + "</a>").size());
}

TEST(Tokeniser, RefusesToCopyWhatDoesNotMatch) {
  for (const char* const document : {"<a><b></c></a>", "<a><b>", "<a>< b/></a>",
                                     "<a><![CDATA[x</a>", "<a><b c='></a>", "<a></b>"}) {
    c_error error;
    const std::string kept = document;
    c_read_string source(kept);
    c_xml xml(source, error, true);
    std::string name;
    std::string text;
    xml.get_element_name(nullptr, &name);
    EXPECT_FALSE(xml.get_any_element(name, &text, elmx_preserve, false)) << document;
  }
}

TEST(Tokeniser, SkipsContent) {
  const struct {
    const char* document;
    bool result;
    const char* next;  // the name after it
    const char* reports;
  } k_rows[] = {
      {"<a/><n/>", true, "n", ""},
      {"<a b='>'>x<c><d e='/'/>&amp;</c><![CDATA[</a>]]><!-- </a> --></a><n/>", true, "n", ""},
      {"<a><b></c></a>", false, "a",
       "1 23 @1 Element start tag (b) and end tag (c) do not match\n"},
      {"<a><b>", false, "", ""},
      {"<a>&no;</a>", false, "a", ""},
  };
  for (const auto& row : k_rows) {
    RecordingError error;
    const std::string kept = row.document;
    c_read_string source(kept);
    c_xml xml(source, error, true);
    std::string name;
    xml.get_element_name(nullptr, &name);
    EXPECT_EQ(xml.skip_rest_of_element(name), row.result) << row.document;
    xml.get_element_name(nullptr, &name);
    EXPECT_EQ(name, row.next) << row.document;
    EXPECT_EQ(error.log, row.reports) << row.document;
  }
  const struct {
    const char* document;
    bool result;
  } k_empty_rows[] = {
      {"<a/>", true}, {"<a></a>", true}, {"<a> \n</a >", true}, {"<a>x</a>", false}};
  for (const auto& row : k_empty_rows) {
    c_error error;
    const std::string kept = row.document;
    c_read_string source(kept);
    c_xml xml(source, error, true);
    std::string name;
    xml.get_element_name(nullptr, &name);
    EXPECT_EQ(xml.skip_rest_of_empty_element(name), row.result) << row.document;
  }
}

std::string repeat(const std::string& text, std::size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) result += text;
  return result;
}

TEST(Tokeniser, AMillionNestedElementsInASmallStack) {
  const std::size_t k_depth = 1000000;
  const std::string nested = repeat("<b>", k_depth) + repeat("</b>", k_depth);
  on_small_stack([&] {
    c_error error;
    const std::string document = "<a>" + nested + "</a><a>" + nested + "</a>";
    c_read_string source(document);
    c_xml xml(source, error, true);
    std::string name;
    std::string text;
    ASSERT_EQ(xml.get_element_name(nullptr, &name), elxp_name);
    EXPECT_TRUE(xml.skip_rest_of_element(name));
    ASSERT_EQ(xml.get_element_name(nullptr, &name), elxp_name);
    EXPECT_TRUE(xml.get_any_element(name, &text, elmx_preserve, false));
    EXPECT_EQ(text, "<a>" + nested + "</a>");
  });
}

// A zero byte is a character like others, but no name and no value holds one: the value fails, and
// what follows it keeps its own name and value.
TEST(Tokeniser, AZeroDoesNotShiftAttributes) {
  const std::string zero("\0", 1);
  const std::string rest = ", @c=1, @d:e=2, 0, ";
  const struct {
    std::string document;
    std::string events;
  } k_rows[] = {
      {bytes("<a b='x\0y' c='1' d:e='2'/>"), "7 a, @b=x" + zero + "y(failed)" + rest},
      {bytes("<a b='\0' c='1' d:e='2'/>"), "7 a, @b=" + zero + "(failed)" + rest},
      {"<a b='x&#0;y' c='1' d:e='2'/>", "7 a, @b=x" + zero + "y(failed)" + rest},
      {"<!DOCTYPE a [<!ENTITY z '&#38;#0;'>]><a b='x&z;' c='1' d:e='2'/>",
       "7 a, @b=x" + zero + "(failed)" + rest},
      {bytes("<a xmlns='u\0' c='1'/>"), "3 a, 5 c='1'/>, 0, 1 28 @1 Zero in a namespace name\n"},
      {"<a xmlns:p='&#0;' c='1'/>", "3 a, 5 c='1'/>, 0, 1 28 @1 Zero in a namespace name\n"},
      {bytes("<a b\0='1'/>"), "3 a, 0, 0 23 @1 Schema is not Well Formed (expected '=', got '\n"},
      {bytes("<a>\0</a>"), "7 a, 5 " + zero + ", 6 a, 0, "},
      {bytes("<a\0/>"), "7 a, 5 />, 0, 1 23 @1 XML not well-formed\n"},
  };
  for (const auto& row : k_rows) EXPECT_EQ(events(row.document), row.events) << row.document;
}

}  // namespace
}  // namespace lmx::test
