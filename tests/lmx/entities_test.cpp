#include "lmx/entities.h"

#include <gtest/gtest.h>

#include <string>

#include "lmx/xml_support.h"

namespace lmx::test {
namespace {

// The text of the root element, or "!" and the reports if it fails.
std::string text_of(const std::string& document) {
  RecordingError error;
  c_read_string source(document);
  c_xml xml(source, error, true);
  std::string name;
  std::string text;
  bool empty = false;
  if (xml.get_element_name(nullptr, &name) != elxp_name || !xml.skip_start_tag(&empty) ||
      !xml.get_element_value(&text, elmx_preserve, true)) {
    return "!" + text + "!" + error.log;
  }
  return text + error.log;
}

// The value of the root element's first attribute.
std::string attribute_of(const std::string& document) {
  RecordingError error;
  c_read_string source(document);
  c_xml xml(source, error, true);
  std::string name;
  std::string value;
  if (xml.get_element_name(nullptr, &name) != elxp_name ||
      xml.get_attribute_name(&name, false) != elxp_name ||
      !xml.get_attribute_value(&value, elmx_preserve)) {
    return "!" + value + "!" + error.log;
  }
  return value + error.log;
}

TEST(Entities, DeclarationsPassOrFail) {
  const struct {
    const char* prolog;
    const char* text;  // of "&e;" in content
  } k_rows[] = {
      {"<!DOCTYPE a [<!ENTITY e 'x'>]>", "x"},
      {"<!DOCTYPE a SYSTEM 'x.dtd' [<!ENTITY e \"x\">] >", "x"},
      {"<!DOCTYPE a [<!ENTITY e 'x'><!ENTITY e 'y'>]>", "y"},
      {"<!DOCTYPE a [<!ENTITY e SYSTEM 'f'>]>",
       "SYSTEM2 17 @1 External Entity definitions not supported\n"},
      {"<!DOCTYPE a [<!ENTITY e PUBLIC 'i' 'f>'>]>",
       "PUBLIC2 17 @1 External Entity definitions not supported\n"},
      {"<!DOCTYPE a [<!ENTITY e word>]>",
       "word1 33 @1 Unexpected value in Entity definition: word\n"},
      {"<!DOCTYPE a [<!-- > --><?p ]> ?><!ELEMENT a ('>')><!ENTITY e 'x'>]>", "x"},
      {"<!DOCTYPE a [<?Pi?><?\?><?p>?><?p[?><?p? ?><!ENTITY e 'x'>]>", "x"},
      {"<!DOCTYPE a [<?><!ENTITY e 'no'>?><!ENTITY e 'x'>]>", "x"},
      {"<!DOCTYPE a [<!ENTITY e '&#65;&#x42;&amp;'>]>", "AB&"},
      {"<!DOCTYPE a [<!ENTITY lt 'no'><!ENTITY e '&lt;'>]>", "<"},
      // Parameter entities, between declarations, in a word and in a quoted text.
      {"<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x\">'>%p;]>", "x"},
      {"<!DOCTYPE a [<!ENTITY % p 'e'><!ENTITY %p; 'x'>]>", "!&e;!"},
      {"<!DOCTYPE a [<!ENTITY % n 'e'><!ENTITY x%n; 'x'><!ENTITY e '&xe;'>]>", "x"},
      {"<!DOCTYPE a [<!ENTITY % p \"a'b\"><!ENTITY e '%p;c'>]>", "a'bc"},
      {"<!DOCTYPE a [<!ENTITY e '%q;c'>]>", "c1 41 @1 Entity '%q' not found\n"},
      {"<!DOCTYPE a [<!ENTITY e 'x&#0;y'>]>", "!!"},
      {"<!DOCTYPE a>", "!&e;!"},
      {"<!DOCTYPE a SYSTEM 'x.dtd'>", "!&e;!"},
      {"<!DOCTYPE a [ x ]>", "!!0 9 @1 DTD not Well Formed (got x)\n"},
      {"<!DOCTYPE a [ ] x>", "!!0 9 @1 DTD not Well Formed (expected '>', got x)\n"},
  };
  for (const auto& row : k_rows) {
    EXPECT_EQ(text_of(std::string(row.prolog) + "<a>&e;</a>"), row.text) << row.prolog;
  }
}

TEST(Entities, AnEarlyEndOfTheDtdFails) {
  for (const char* const document :
       {"<!DOCTYPE", "<!DOCTYPE a", "<!DOCTYPE a [<!ENTITY", "<!DOCTYPE a [<!ENTITY e",
        "<!DOCTYPE a [<!ENTITY e 'x'", "<!DOCTYPE a [<!-- "}) {
    EXPECT_EQ(trace(std::string(document)).substr(0, 4), "3 []") << document;
  }
  EXPECT_EQ(text_of("<!DOCTYPE a ["), "!!0 9 @1 DTD not Well Formed (got )\n");
}

TEST(Entities, ContentIsParsedAndAttributesAreNot) {
  const std::string prolog = "<!DOCTYPE a [<!ENTITY e '<b/>'><!ENTITY f '1&e;&#38;lt;2'>]>";
  EXPECT_EQ(attribute_of(prolog + "<a x='&e;'/>"), "<b/>");
  EXPECT_EQ(attribute_of(prolog + "<a x='&f;'/>"), "1<b/><2");
  EXPECT_EQ(attribute_of(prolog + "<a x='%e;'/>"), "%e;");
  EXPECT_EQ(trace(prolog + "<a>&e;</a>", Way::skip), trace(prolog + "<a><b/></a>", Way::skip));
  // The end of an entity does not show.
  EXPECT_EQ(text_of("<!DOCTYPE a [<!ENTITY e '1'>]><a>&e;2&e&e;</a>"), "1211");
  EXPECT_EQ(text_of("<!DOCTYPE a [<!ENTITY e '\xC3\xA9'>]><a>&e;</a>"), "\xC3\xA9");
}

TEST(Entities, UnknownNamesStandAsTheyWere) {
  EXPECT_EQ(text_of("<a>1&no;2</a>"), "!1&no;!");
  EXPECT_EQ(text_of("<a>1&no 2</a>"), "!1&no!");
  EXPECT_EQ(attribute_of("<a x='1&no;2'/>"), "!1&no;!");
  EXPECT_EQ(text_of("<a>&lt;&gt&amp;&apos;&quot;</a>"), "<>&'\"");
}

TEST(Entities, ClientsMayPredefineThem) {
  RecordingError error;
  const std::string document = "<a x='&e;'/>";
  c_read_string source(document);
  c_xml xml(source, error, true);
  xml.add_general_entity("e", "mine\xFF");  // no byte of it is taken for the end
  std::string name;
  std::string value;
  xml.get_element_name(nullptr, &name);
  xml.get_attribute_name(&name, false);
  EXPECT_TRUE(xml.get_attribute_value(&value, elmx_preserve));
  EXPECT_EQ(value, "mine\xFF");
  xml.rewind();  // forgets it
  xml.get_element_name(nullptr, &name);
  xml.get_attribute_name(&name, false);
  EXPECT_FALSE(xml.get_attribute_value(&value, elmx_preserve));
}

TEST(Entities, RecursionIsFatal) {
  const std::string prolog =
      "<!DOCTYPE a [<!ENTITY r '1&r;2'><!ENTITY s '&t;'><!ENTITY t '&s;'><!ENTITY u 'x'>"
      "<!ENTITY v 'x'>]>";
  EXPECT_NE(text_of(prolog + "<a>&r;</a>").find("0 9 @1 Recursive entity definition for: 1&r;2\n"),
            std::string::npos);
  EXPECT_NE(text_of(prolog + "<a>&s;</a>").find("0 9 @1 Recursive entity definition for: &t;\n"),
            std::string::npos);
  EXPECT_NE(attribute_of(prolog + "<a x='&r;'/>").find("0 9 @1"), std::string::npos);
  EXPECT_NE(attribute_of(prolog + "<a x='&s;'/>").find("0 9 @1"), std::string::npos);
  // Equal text is not the same entity.
  EXPECT_EQ(text_of(prolog + "<a>&u;&v;&u;</a>"), "xxx");
}

// Nested entities in an attribute value end at a fixed depth, in content nowhere.
TEST(Entities, Depth) {
  const auto chain = [](int length) {
    std::string prolog = "<!DOCTYPE a [<!ENTITY e0 'x'>";
    for (int i = 1; i < length; ++i) {
      prolog += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
    }
    return prolog + "]>";
  };
  EXPECT_EQ(attribute_of(chain(64) + "<a x='&e63;'/>"), "x");
  EXPECT_EQ(attribute_of(chain(65) + "<a x='&e64;'/>"), "!!0 9 @1 Entities nested too deeply\n");
  on_small_stack([&] { EXPECT_EQ(text_of(chain(20000) + "<a>&e19999;</a>"), "x"); });
}

// Ten to the power of twelve characters from a few hundred.
TEST(Entities, AnExplosionIsFatal) {
  std::string prolog = "<!DOCTYPE a [<!ENTITY e0 '0123456789'>";
  for (int i = 1; i < 12; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    std::string text;
    for (int k = 0; k < 10; ++k) text += inner;
    prolog += "<!ENTITY e" + std::to_string(i) + " '" + text + "'>";
  }
  prolog += "<!ENTITY % p '";
  prolog += std::string(3000, ' ') + "'>";
  const std::string report = "0 9 @1 Entities expand to too much text\n";
  const std::string in_content = text_of(prolog + "]><a>&e11;</a>");
  EXPECT_EQ(in_content.substr(in_content.size() - report.size()), report);
  EXPECT_LT(in_content.size(), 10u << 20);
  const std::string in_attribute = attribute_of(prolog + "]><a x='&e11;'/>");
  EXPECT_EQ(in_attribute.substr(in_attribute.size() - report.size()), report);
  std::string references;
  for (int i = 0; i < 3000; ++i) references += "%p;";
  EXPECT_EQ(text_of(prolog + references + "]><a/>"), "!!" + report);
  // As much as that is fine where the document itself is large.
  EXPECT_EQ(text_of(prolog + "]><!--" + std::string(200000, ' ') + "--><a>" +
                    "&e5;&e5;&e5;&e5;&e5;&e5;&e5;&e5;</a>")
                .size(),
            8000000u);
}

// A declaration inside a parameter entity may replace that entity.
TEST(Entities, ATextThatIsBeingReadStaysAlive) {
  EXPECT_EQ(text_of("<!DOCTYPE a [<!ENTITY % p '<!ENTITY &#37; p \"new\"><!ENTITY e \"x\">'>"
                    "%p;]><a>&e;</a>"),
            "x");
}

}  // namespace
}  // namespace lmx::test
