// Which documents are read by the tables alone. That both roads come to the same is tested beside
// this, and would hold as well if nothing ever took the quick one.
#include "model/internal/strict_reader.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "model/documents.h"

namespace zol_test {
namespace {

using std::string_literals::operator""s;

bool is_taken(std::string_view text) {
  lmx::internal::Pool pool;
  zol_v2::Zol document;
  return zol_v2::internal::StrictReader(text, pool).read(document, zol_v2::Zol::k_class);
}

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

// Of a text in ASCII.
std::string in_two_bytes(const std::string& text, bool has_high_byte_first) {
  std::string out = has_high_byte_first ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : text) {
    out += has_high_byte_first ? std::string{'\0', c} : std::string{c, '\0'};
  }
  return out;
}

// The sample with declarations of its own.
constexpr char k_with_entities[] = "quality-control";

const std::string k_history = "<Zol:ChangeHistory>2020-01-01T10:00:00Z</Zol:ChangeHistory>";

// A colour with something in front of what it holds, and among its attributes.
std::string with_color(const std::string& children, const std::string& attributes = "") {
  return document("<Zol:Color ColorName=\"c\"" + attributes + '>' + children + k_history +
                  "</Zol:Color>");
}

TEST(StrictReader, TakesHonestDocuments) {
  for (const std::string& name : sample_names()) {
    if (name == k_with_entities) continue;
    const std::string text = sample_bytes(name);
    EXPECT_TRUE(is_taken(text)) << name;
    EXPECT_TRUE(is_taken(replaced(replaced(text, "\r\n", "\n"), "\n", "\r\n"))) << name;
  }
  const std::string plain = with_color("");
  const std::string k_good[] = {
      plain,
      "\xEF\xBB\xBF" + plain,
      "<?xml version='1.0' encoding='utf-8' standalone='yes'?>\n" + plain,
      "<?xml version='1.0' encoding='Iso-8859-1'?>" + with_color("", " Comments='\xE9'"),
      in_two_bytes(plain, false),
      in_two_bytes("<?xml version='1.0' encoding='utf-16'?>" + plain, true),
      replaced(replaced(plain, "Zol:", ""), "xmlns:Zol", "xmlns"),
      replaced(replaced(plain, "Zol:", "a.long-prefix:"), "xmlns:Zol", "xmlns:a.long-prefix"),
      replaced(plain, "xmlns:Zol=", "xmlns:Zol='" + std::string(k_uri) + "' xmlns:spare=")
          .replace(0, 0, "<!-- c --><?pi?>\n"),
      replaced(plain, "<Zol:Purpose>p", "<Zol:Purpose>&lt;<![CDATA[<]]><!-- c -->&#xE9;\xC3\xA9"),
      replaced(plain, "<Zol:Purpose>p</Zol:Purpose>",
               "<Zol:Purpose\n/><Zol:Revision><q:o xmlns:q='urn:q' q:a='1'>t</q:o></Zol:Revision>"),
      with_color("", "\n  Comments = '&amp;'"),
      with_color("<!-- c -->\n<?pi?>\t"),
  };
  for (const std::string& text : k_good) {
    ASSERT_EQ(zol_v2::Zol().unmarshal(text), 0) << text;
    EXPECT_TRUE(is_taken(text)) << text;
  }
}

// Whatever has a fault, or needs more than the tables.
TEST(StrictReader, LeavesTheRestToTheOtherRoad) {
  const std::string plain = with_color("");
  const std::string k_others[] = {
      "",
      "<",
      plain.substr(0, plain.size() - 1),
      sample_bytes(k_with_entities),
      "<!DOCTYPE x [<!ENTITY e 'p'>]>" + replaced(plain, "<Zol:Purpose>p", "<Zol:Purpose>&e;"),
      "<?xml version='1.0' encoding='EBCDIC'?>" + plain,
      replaced(plain, "<Zol:Purpose>p", "<Zol:Purpose>&nope;"),
      replaced(plain, "<Zol:Purpose>p", "<Zol:Purpose>\xC3("),
      replaced(plain, "<Zol:Purpose>p", "<Zol:Purpose>\0"s),
      replaced(plain, "<Zol:Purpose>p", "<Zol:Purpose>&#0;"),
      replaced(plain, "<Zol:Purpose>p", "<Zol:Purpose><Zol:Purpose/>"),
      replaced(plain, "</Zol:Purpose>", "</Zol:purpose>"),
      replaced(plain, k_uri, "urn:o"),
      with_color("", " Comments='a' Comments='b'"),
      with_color("", " Nope='a'"),
      with_color("<Zol:Nope/>"),
      with_color("text"),
      replaced(plain, "<Zol:Creator>",
               "<Zol:CustomAttribute><Zol:Name>n</Zol:Name><Zol:ValueChoice><Zol:IntegerValue>x"
               "</Zol:IntegerValue></Zol:ValueChoice></Zol:CustomAttribute><Zol:Creator>"),
      replaced(plain, "<Zol:CreatorVersion>1</Zol:CreatorVersion>", ""),
      replaced(plain, " ColorName=\"c\"", ""),
  };
  ASSERT_TRUE(is_taken(plain));
  for (const std::string& text : k_others) EXPECT_FALSE(is_taken(text)) << text;
}

}  // namespace
}  // namespace zol_test
