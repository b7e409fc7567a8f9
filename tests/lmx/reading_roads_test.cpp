// One document, many roads: whatever the source hands over, and in whatever encoding, the events,
// values, line numbers and reports are the same.
#include <string>
#include <vector>

#include "lmx/xml_support.h"

namespace lmx::test {
namespace {

const Way k_ways[] = {Way::attributes, Way::values, Way::copy, Way::detach, Way::nested, Way::skip};
const elmx_whitespace k_modes[] = {elmx_preserve, elmx_replace, elmx_collapse};

// Good and broken, so that each construct stands whole, at a block's edge and cut.
const std::string k_documents[] = {
    "<a/>",
    "<?xml version='1.0' standalone='yes'?>\n<r>\n\t<a b='1' "
    "c=\"2\">text</a>\n\t<a>0.5</a>\n</r>\n",
    "<r xmlns='u' xmlns:p='v'><p:a p:b=' x\ty ' q:c='&lt;&#65;&#x42;'/><q:b "
    "xmlns:q=\"w&amp;\"/></r>",
    "\n\n<r\na = '1'\n\tb\n=\n'two\nlines'\n>\n<e\n/></r\n>",
    "<r>\r\n\t<a b='1'\r\nc='2'\r\n>x\r\ny</a\r>\r<b>\r</b>\n\r<c\rd\r=\r'\r\n'/></r>",
    "<r> one <a>  two   three </a> four <!-- a -- b ---> five <?pi data?> six </r>",
    "<r><a> x <![CDATA[ y ]] > ]]]> z </a><![CDATA[<b>]]>tail</r>",
    "<r>caf\xC3\xA9 <\xC3\xA9l a\xC3\xA9='\xE2\x82\xAC'>\xF0\x9D\x84\x9E</\xC3\xA9l>\xC2\x85 "
    "\xE2\x80\xA8 x</r>",
    "<r><?p M\xFCller?><!-- \xE9t\xE9 --><a>Stra\xDF e</a></r>",
    "<r><a b='\xE9t\xE9'>1</a><\xE9t\xE9/></r>",
    "<!DOCTYPE r [<!ENTITY e 'x y'><!ENTITY m '<b c=\"1\"/>'>"
    "<!ENTITY % p '<!ENTITY q \"Q&#38;e;\">'> %p; <!ELEMENT r ANY><!-- c -->]>"
    "<r>&e; &m;<a d='&e;&m;'>1&q;2</a>&undefined; 3</r>",
    "<!DOCTYPE r [<!ENTITY r 'a&r;b'><!ENTITY s SYSTEM 'f'>]><r a='&s;'><a>&r;</a><b/></r>",
    "<r><a>1</b><a x=1/></r>",
    "<r><a b='x<y'c=\"2\"/><a/ x><a></ a></r>",
    "<r><a>text&#x41 &#66;&bad;</a><a>&amp</a></r>",
    "<r><></r><r><!x><!-x></r><!DOCTYPE q></r>",
    "<r a='1' a='2' xsi:type='p:T' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'"
    " xmlns:p='v'><a>1</a></r>",
    "<r><longer-name-than-a-word:and.more-of_it0 attribute-of-some-length='and its "
    "value'>0123456789"
    "0123456789</longer-name-than-a-word:and.more-of_it0></r>",
    "<r><!-- a note that goes on\r\nover lines, caf\xC3\xA9 - \xC2\x85 -- dashes\n\r-->"
    "<?pi more than one ? block of it\r\n?>x</r>",
    "<r><a>x<![CDATA[ section of <more> than ]] a block > &c;\r\r\n caf\xC3\xA9 \xE2\x80\xA8"
    "]]]></a></r>",
};

// Every source of the same bytes gives this trace.
void expect_one_trace(const std::string& document, const std::string& what) {
  for (const Way way : k_ways) {
    for (const elmx_whitespace mode : k_modes) {
      ByteSource by_byte(document);
      const std::string expected = trace(by_byte, way, mode);
      ASSERT_EQ(trace(document, way, mode), expected) << "from memory: " << what;
      for (const std::size_t size : {2, 3, 7, 64}) {
        BlockSource blocks(document, size);
        ASSERT_EQ(trace(blocks, way, mode), expected) << "blocks of " << size << ": " << what;
      }
    }
  }
}

TEST(ReadingRoads, CutAtEveryByte) {
  for (const std::string& document : k_documents) {
    for (std::size_t size = 0; size <= document.size(); ++size) {
      ASSERT_NO_FATAL_FAILURE(expect_one_trace(document.substr(0, size), document.substr(0, size)));
    }
  }
}

TEST(ReadingRoads, WithEveryByteReplaced) {
  const std::string replacements = bytes("<>&\"'/= \r\n;!]-:\0\x80\xC3\xE2\xFFx");
  for (const std::string& document : k_documents) {
    for (std::size_t at = 0; at < document.size(); ++at) {
      // A few for each place; with the places all of them meet.
      for (std::size_t i = at % 4; i < replacements.size(); i += 4) {
        std::string broken = document;
        broken[at] = replacements[i];
        const std::string expected = trace(broken, k_ways[at % 2], k_modes[i % 3]);
        ByteSource by_byte(broken);
        ASSERT_EQ(trace(by_byte, k_ways[at % 2], k_modes[i % 3]), expected) << broken;
        BlockSource blocks(broken, 3);
        ASSERT_EQ(trace(blocks, k_ways[at % 2], k_modes[i % 3]), expected) << broken;
      }
    }
  }
}

// Byte by byte no encoding but UTF-8 has a window; from blocks it is made of pieces.
TEST(ReadingRoads, SameInUtf16) {
  for (const std::string& document : k_documents) {
    for (std::size_t size = 2; size <= document.size(); ++size) {
      const std::string part = document.substr(0, size);
      std::wstring whole;
      std::string back;
      if (convert(&back, convert(&whole, part)) != part) continue;  // cut in a character
      for (const bool is_big_endian : {false, true}) {
        const std::string utf16 = to_utf16(part, is_big_endian, size % 2 == 0);
        for (const Way way : k_ways) {
          for (const elmx_whitespace mode : k_modes) {
            const std::string expected = trace(part, way, mode);
            ASSERT_EQ(trace(utf16, way, mode), expected) << part;
            ByteSource by_byte(utf16);
            ASSERT_EQ(trace(by_byte, way, mode), expected) << part;
            BlockSource blocks(utf16, 3 + size % 40);
            ASSERT_EQ(trace(blocks, way, mode), expected) << part;
          }
        }
      }
    }
  }
}

TEST(ReadingRoads, SameInEncodingsThatADeclarationNames) {
  const std::string latin1 = "<?xml version='1.0' encoding='ISO-8859-1'?>\n";
  const std::string ucs2 = "<?xml version='1.0' encoding='ISO-10646-UCS-2'?>\n";
  const std::string utf16 = "<?xml version='1.0' encoding='UTF-16'?>\n";
  for (const std::string& document : k_documents) {
    if (document.compare(0, 5, "<?xml") == 0) continue;
    // Two characters that are line ends here, and one that only UTF-16 has.
    const std::string more = document + "\xC2\x85<b>\xE2\x80\xA8\r\n \xF0\x9D\x84\x9E</b>";
    for (std::string bytes :
         {latin1 + document, latin1 + "\x85\xE9" + document, to_utf16(utf16 + more, true, true),
          to_utf16(ucs2 + more, false, true), to_utf16(ucs2 + more, true, false)}) {
      for (const bool is_broken : {false, true}) {
        if (is_broken) bytes.insert(bytes.size() / 2, "\xD8");
        for (const Way way : k_ways) {
          ByteSource by_byte(bytes);
          const std::string expected = trace(by_byte, way, elmx_collapse);
          ASSERT_EQ(trace(bytes, way, elmx_collapse), expected) << bytes;
          for (const std::size_t size : {2, 5, 64, 100}) {
            BlockSource blocks(bytes, size);
            ASSERT_EQ(trace(blocks, way, elmx_collapse), expected) << size << ": " << bytes;
          }
        }
      }
    }
  }
}

TEST(ReadingRoads, FromFile) {
  std::string filler;
  while (filler.size() < 70000)
    filler += "<a b='" + std::to_string(filler.size()) + "'>\n x </a>\r\n";
  for (const std::string& document : k_documents) {
    // Blocks of both sizes end inside the filler, and the document stands after it.
    const std::string text = "<f>" + filler + document;
    const TempFile temp(text);
    c_read_file by_path(temp.path());
    ASSERT_EQ(trace(by_path), trace(text));
    c_read_file by_handle(std::fopen(temp.path(), "rb"));
    ASSERT_EQ(trace(by_handle, Way::values, elmx_collapse),
              trace(text, Way::values, elmx_collapse));
  }
}

// A class that overrides read() alone is asked for each byte, whatever it derives from.
template <class Source>
class Upper : public Source {
 public:
  using Source::Source;
  int read() override {
    const int c = Source::read();
    return c == 'a' ? 'A' : c;
  }
};

TEST(ReadingRoads, OverriddenReadIsHeard) {
  const std::string document = "<a>banana</a>";
  const std::string expected = trace("<A>bAnAnA</A>");
  Upper<c_read_memory> memory(document.data(), document.size());
  EXPECT_EQ(trace(memory), expected);
  Upper<c_read_string> string(document);
  EXPECT_EQ(trace(string), expected);
  const TempFile temp(document);
  Upper<c_read_file> file(temp.path());
  EXPECT_EQ(trace(file), expected);
}

}  // namespace
}  // namespace lmx::test
