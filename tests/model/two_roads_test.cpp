// An honest document in memory is read by tables alone, and anything else by events. Whatever is
// done to a document, nobody may be able to tell which of the two read it.
#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <set>

#include "model/documents.h"
#include "model/small_documents.h"
#include "support/roads.h"

namespace zol_test {
namespace {

using namespace zol_v2;

// Sanitizers and emulators look for other things.
constexpr std::size_t k_patience = ZOL_TEST_PATIENCE;
// However the inputs are chosen, fewer would say nothing.
constexpr std::size_t k_least_inputs = 20000 / k_patience;

// The namespaces, for use within literals.
#define URI "http://example.org/zol/v2"
#define XSI "http://www.w3.org/2001/XMLSchema-instance"

// --- The roads --------------------------------------------------------------------------------

using std::string_literals::operator""s;

// What differs between the roads, or nothing.
template <class Document>
std::string difference_as(std::string_view text) {
  const auto told = [](const Account& account) { return account.report + account.tree; };
  for (const Handling handling : {Handling::stop, Handling::waive}) {
    const Account memory = account_of<Document, MemorySource>(text, handling);
    const Account bytes = account_of<Document, ByteSource>(text, handling);
    if (memory != bytes) {
      return "from memory:\n" + told(memory) + "\nbyte by byte:\n" + told(bytes) + '\n';
    }
    if (handling == Handling::waive) break;
    Document plain;
    const lmx::elmx_error code = plain.unmarshal(text.data(), text.size());
    if (code != memory.code || tree_of(plain) != memory.tree) {
      return "without a reader it gave " + std::to_string(code) + ":\n" + tree_of(plain) +
             "\nwith one:\n" + told(memory) + '\n';
    }
    // A handler that was never asked is as good as any.
    if (memory.report.compare(0, 6, "fault ") != 0) break;
  }
  return {};
}

using Difference = std::string (*)(std::string_view text);

// Elements of the format that can be documents.
const std::map<std::string_view, Difference> k_documents = {
    {"Zol", difference_as<Zol>},
    {"ColorSpaceCIELab", difference_as<ColorSpaceCIELab>},
    {"ColorSpaceCMYKPlusN", difference_as<ColorSpaceCMYKPlusN>},
    {"ColorSpaceSpecificationSpectrumTristimulus",
     difference_as<ColorSpaceSpecificationSpectrumTristimulus>},
    {"FunctionDE94", difference_as<FunctionDE94>},
    {"Standard", difference_as<Standard>},
    {"Measurement", difference_as<Measurement>},
    {"SampleSpot", difference_as<SampleSpot>},
    {"SubstrateMetal", difference_as<SubstrateMetal>},
};

std::string escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte == '\n' || (byte >= ' ' && byte < 0x7F)) {
      out += c;
    } else {
      char code[8];
      std::snprintf(code, sizeof code, "{%02X}", byte);
      out += code;
    }
  }
  return out;
}

// Looks at changed documents until a few were found that are read in two ways, and tells the least
// of each.
class Search {
 public:
  explicit Search(Difference difference) : difference_(difference) {}

  bool is_over() const { return testing::Test::HasFailure(); }
  // How many were looked at.
  std::size_t count() const { return count_; }
  void look_at(const std::string& text, const std::string& what) {
    ++count_;
    if (is_over() || difference_(text).empty()) return;
    const std::string least = reduced(text);
    ADD_FAILURE() << what << "\n--- The roads part at\n"
                  << escaped(least) << "\n--- where they give\n"
                  << escaped(difference_(least));
  }

 private:
  std::string reduced(std::string text) const {
    for (std::size_t piece = text.size() / 2; piece != 0; piece /= 2) {
      for (std::size_t at = 0; at + piece <= text.size();) {
        std::string less = text;
        less.erase(at, piece);
        if (difference_(less).empty()) {
          at += piece;
        } else {
          text = std::move(less);
        }
      }
    }
    return text;
  }

  Difference difference_;
  std::size_t count_ = 0;
};

// --- The documents ----------------------------------------------------------------------------

struct Specimen {
  std::string root;
  std::string text;
  std::string prefix;  // with its colon
  Difference difference;
};

// A part of a document as one of its own, under the declarations of the whole.
std::string excerpt(const Element& element, const Element& root, std::string_view text) {
  const std::size_t declarations = root.begin + 1 + root.name.size();
  const std::size_t behind_name = element.begin + 1 + element.name.size();
  std::string out(text.substr(element.begin, behind_name - element.begin));
  out.append(text.substr(declarations, root.content - 1 - declarations));
  return out.append(text.substr(behind_name, element.end - behind_name));
}

const std::vector<Specimen>& specimens() {
  static const std::vector<Specimen> made = [] {
    SmallDocuments small([](const std::string& text) { return Zol().unmarshal(text) == 0; });
    std::vector<Specimen> all;
    std::set<std::string_view> roots;
    for (const std::string& name : sample_names()) {
      for (const std::string& text : small.of(sample_bytes(name))) {
        const std::unique_ptr<Element> root = parse(text);
        const std::string prefix(root->name.substr(0, root->name.find(':') + 1));
        all.push_back({"Zol", text, prefix, k_documents.at("Zol")});
        for (const Element* const element : elements_of(*root)) {
          const auto found = k_documents.find(element->local_name());
          if (element == root.get() || found == k_documents.end()) continue;
          if (!roots.insert(found->first).second) continue;
          all.push_back(
              {std::string(found->first), excerpt(*element, *root, text), prefix, found->second});
        }
      }
    }
    return all;
  }();
  return made;
}

// A piece of text that speaks of "Zol:" in the words of the document.
std::string adapted(std::string piece, const Specimen& specimen) {
  const std::string name = specimen.prefix.substr(0, specimen.prefix.size() - 1);
  for (const auto& [word, own] :
       {std::pair("Zol:"s, specimen.prefix), std::pair("xmlns:Zol="s, "xmlns:" + name + '=')}) {
    for (std::size_t at = 0; (at = piece.find(word, at)) != piece.npos; at += own.size()) {
      piece.replace(at, word.size(), own);
    }
  }
  return piece;
}

TEST(TwoRoads, ReadEverySpecimen) {
  std::set<std::string_view> roots;
  for (const Specimen& specimen : specimens()) {
    roots.insert(specimen.root);
    EXPECT_EQ(specimen.difference(specimen.text), "") << specimen.text;
  }
  for (const auto& row : k_documents) EXPECT_EQ(roots.count(row.first), 1u) << row.first;
}

// --- What is done to them ---------------------------------------------------------------------

const std::string k_tokens[] = {
    " ",
    "\n",
    "\r",
    "\r\n",
    "\t",
    "\v",
    "x",
    "0",
    "-",
    ".",
    ":",
    "<",
    ">",
    "/",
    "/>",
    "</",
    "&",
    "&amp;",
    "&#65;",
    "&#10;",
    "&#x20;",
    "&#x85;",
    "&#x41",
    "&#0;",
    "&nope;",
    "]]>",
    "<!-- c -->",
    "<!-- c --->",
    "<!-- \n -- -->",
    "<?pi x?>",
    "<?xml?>",
    "<?xml version='1.0'?>",
    "<!DOCTYPE x [<!ENTITY nope 'y'>]>",
    "<![CDATA[y]]>",
    "<![CDATA[]]>",
    "\"",
    "'",
    "=",
    "\0"s,
    "\xEF\xBB\xBF",
    "\xC3\xA9",
    "\xC2\x85",
    "\xE2\x80\xA8",
    "\x80",
    "\xC3",
    "\xED\xA0\x80",
    "\xF4\x90\x80\x80",
    " xsi:nil='true'",
    " xsi:nil=' 0 '",
    " xsi:type='Zol:ColorSpaceCMYKPlusNType'",
    " a='b'",
    " UniqueID='\n&lt;'",
    "<Zol:X/>",
    "<x xmlns='urn:x'>y</x>",
    "</Zol:Color>",
    "</Zol:Zol>",
};

// The places in a text, by the characters before and behind and by whose tag or content it is. In
// the middle of a word one is like another.
class Places {
 public:
  explicit Places(std::string_view text) : text_(text), tags_(text.size() + 1) {
    std::string_view tag;
    bool is_in_tag = false;
    for (std::size_t at = 0; at <= text.size(); ++at) {
      tags_[at] = tag;
      forms_ += is_in_tag ? 't' : 'c';
      if (at == text.size()) break;
      if (text[at] == '<') {
        const std::size_t name = at + (text[at + 1] == '/' ? 2 : 1);
        tag = text.substr(name, text.find_first_of(" \t\r\n/>", name) - name);
        is_in_tag = true;
      } else if (text[at] == '>') {
        is_in_tag = false;
      }
    }
  }

  std::string form(std::size_t at) const { return {class_at(at - 1), class_at(at), forms_[at]}; }
  std::string form_and_tag(std::size_t at) const {
    const std::string form = this->form(at);
    return form[0] == 'a' && form[1] == 'a' ? form : form + std::string(tags_[at]);
  }

 private:
  char class_at(std::size_t at) const {
    if (at >= text_.size()) return '$';
    const char c = text_[at];
    return std::isalnum(static_cast<unsigned char>(c)) != 0 ? 'a' : c;
  }

  std::string_view text_;
  std::string forms_;
  std::vector<std::string_view> tags_;
};

// Which of many inputs are looked at: all at a place of a new form, some where the tag is new as
// well, and few elsewhere, in turn.
class Choice {
 public:
  void move_to(const Specimen& specimen, const Places& places, std::size_t at) {
    const bool is_new = seen_.insert(specimen.root + places.form_and_tag(at)).second;
    stride_ = seen_.insert(specimen.root + places.form(at)).second ? 1 : is_new ? 3 : 397;
  }
  bool takes_next() { return count_++ % (stride_ * k_patience) == 0; }

 private:
  std::set<std::string> seen_;
  std::size_t stride_ = 1;
  std::size_t count_ = 0;
};

TEST(TwoRoads, AreOneWithATokenAnywhere) {
  Choice choice;
  std::size_t inputs = 0;
  for (const Specimen& specimen : specimens()) {
    Search search(specimen.difference);
    const Places places(specimen.text);
    for (std::size_t at = 0; at <= specimen.text.size() && !search.is_over(); ++at) {
      choice.move_to(specimen, places, at);
      for (const std::string& token : k_tokens) {
        if (!choice.takes_next()) continue;
        search.look_at(std::string(specimen.text).insert(at, adapted(token, specimen)),
                       "'" + escaped(token) + "' before byte " + std::to_string(at));
      }
    }
    inputs += search.count();
  }
  EXPECT_GT(inputs, k_least_inputs);
}

TEST(TwoRoads, AreOneWhereverTheDocumentEnds) {
  std::set<std::string> seen;
  std::size_t count = 0;
  std::size_t inputs = 0;
  for (const Specimen& specimen : specimens()) {
    Search search(specimen.difference);
    const Places places(specimen.text);
    for (std::size_t size = 0; size < specimen.text.size() && !search.is_over(); ++size) {
      constexpr std::size_t k_stride = 11;
      const bool is_new = seen.insert(specimen.root + places.form_and_tag(size)).second;
      if (++count % (is_new ? k_patience : k_stride * k_patience) != 0) continue;
      search.look_at(specimen.text.substr(0, size), "cut behind " + std::to_string(size));
    }
    inputs += search.count();
  }
  EXPECT_GT(inputs, k_least_inputs);
}

// Memory as a client may hand it over: nothing of it stands behind the document, no zero either.
// AddressSanitizer tells.
TEST(TwoRoads, ReadNothingBehindTheEnd) {
  std::set<std::string> seen;
  for (const Specimen& specimen : specimens()) {
    if (specimen.root != "Zol") continue;
    const Places places(specimen.text);
    for (std::size_t size = 0; size < specimen.text.size(); ++size) {
      if (!seen.insert(places.form_and_tag(size)).second) continue;
      const auto memory = std::make_unique<char[]>(size);
      specimen.text.copy(memory.get(), size);
      static_cast<void>(Zol().unmarshal(memory.get(), size));
    }
  }
  EXPECT_GT(seen.size(), 1000);
}

// --- Encodings --------------------------------------------------------------------------------

// Other encodings than UTF-8. Each byte of a text stands for the character of that number.
struct Encoding {
  const char* name;
  std::string mark;
  std::size_t width;
  bool has_high_byte_first;
};
const Encoding k_encodings[] = {
    {"ISO-8859-1", "", 1, false},    {"US-ASCII", "", 1, false}, {"UTF-16", "\xFF\xFE", 2, false},
    {"UTF-16", "\xFE\xFF", 2, true}, {"UTF-16", "", 2, false},   {"UTF-16", "", 2, true},
};

// With a declaration in place of the text's own.
std::string encoded(const std::string& text, const Encoding& encoding) {
  const std::size_t declaration = text.find("<?xml");
  const std::size_t begin = declaration < 4 ? text.find("?>", declaration) + 2 : 0;
  std::string out = encoding.mark;
  for (const char c : "<?xml version='1.0' encoding='"s + encoding.name + "'?>" +
                          text.substr(std::min(begin, text.size()))) {
    if (encoding.width == 2 && encoding.has_high_byte_first) out += '\0';
    out += c;
    if (encoding.width == 2 && !encoding.has_high_byte_first) out += '\0';
  }
  return out;
}

// Bytes that mean something, or nothing, in one of the encodings.
const std::string k_raw_tokens[] = {
    "\0"s,
    "\0\0"s,
    "\x85"s,
    "\x85\0"s,
    "\0\x85"s,
    "\x28\x20"s,
    "\x20\x28"s,
    "\x0D\0\x0A\0"s,
    "\0\x0D\0\x0A"s,
    "\xFF\xFE"s,
    "\xFE\xFF"s,
    "\x3C\xD8\x42\xDF"s,
    "\xD8\x3C\xDF\x42"s,
    "\x3C\xD8"s,
    "\xD8\x3C"s,
    "\x42\xDF"s,
    "\xDF\x42"s,
    "\xFF\xFF"s,
    "\xE9"s,
    "\xE9\0"s,
};

TEST(TwoRoads, AreOneInEveryEncoding) {
  constexpr std::size_t k_stride = 4001 * k_patience;
  std::size_t count = 0;
  std::size_t inputs = 0;
  for (const Specimen& specimen : specimens()) {
    Search search(specimen.difference);
    for (const Encoding& encoding : k_encodings) {
      const std::string plain = encoded(specimen.text, encoding);
      search.look_at(plain, encoding.name);
      for (std::size_t at = 0; at <= specimen.text.size() && !search.is_over(); ++at) {
        for (const std::string& token : k_tokens) {
          if (++count % (3 * k_stride) != 0) continue;
          search.look_at(
              encoded(std::string(specimen.text).insert(at, adapted(token, specimen)), encoding),
              "'" + escaped(token) + "' in " + encoding.name);
        }
      }
      for (std::size_t at = 0; at <= plain.size() && !search.is_over(); ++at) {
        for (const std::string& token : k_raw_tokens) {
          if (++count % k_stride != 0) continue;
          search.look_at(std::string(plain).insert(at, token),
                         "'" + escaped(token) + "' in the bytes of " + encoding.name);
          search.look_at(plain.substr(0, at), std::string("a cut in ") + encoding.name);
        }
      }
    }
    inputs += search.count();
  }
  EXPECT_GT(inputs, k_least_inputs);
}

// --- Namespaces -------------------------------------------------------------------------------

const char* const k_declarations[] = {
    " xmlns:Zol='" URI "'",
    " xmlns:Zol='urn:o'",
    " xmlns:Zol='urn:o' xmlns:Zol='" URI "'",
    " xmlns:Zol=''",
    " xmlns='" URI "'",
    " xmlns='urn:o'",
    " xmlns=''",
    " xmlns:q='" URI "'",
    " xmlns:q='" URI "' xmlns:q='urn:o'",
    " xmlns:q='\nurn:o &amp; '",
    " xmlns:q='http&#58;//example.org/zol/v2'",
    " xmlns:q='" XSI "' q:nil='1'",
    " q:nil='1' xmlns:q='" XSI "'",
    " xmlns:q='" XSI "' q:type='Zol:ColorSpaceCMYKPlusNType'",
    " xmlns:q='urn:o' xsi:type='q:ColorSpaceCMYKPlusNType'",
    " xmlns:q='" URI "' xsi:type='q:ColorSpaceCMYKPlusNType'",
    " xmlns='" URI "' xsi:type='ColorSpaceCMYKPlusNType'",
    " xmlns:xsi='urn:o' xsi:nil='1'",
    " xmlns:xsi='" URI "' xsi:nil='1'",
    " xmlns:xml='urn:o' xml:lang='en'",
    " xmlns:xmlns='urn:o'",
    " xmlns:='urn:o'",
    " xmlns:a:b='" URI "'",
    " xmlns:q='urn:o' q:Name='n'",
    " xmlns:xm\xC3\xA9='" URI "'",
};

// An element that bears another prefix, and who declares it.
struct Renaming {
  const char* prefix;
  const char* on_root;  // these are put into the start tags
  const char* on_parent;
  const char* on_sibling;  // the one before it
  const char* on_itself;
};
const Renaming k_renamings[] = {
    {"q:", "", "", "", " xmlns:q='" URI "'"},
    {"q:", "", "", " xmlns:q='" URI "'", ""},
    {"q:", " xmlns:q='urn:o'", "", " xmlns:q='" URI "'", ""},
    {"q:", " xmlns:q='" URI "'", "", " xmlns:q='urn:o'", ""},
    {"q:", "", " xmlns:q='" URI "'", "", ""},
    {"q:", " xmlns:q='" URI "'", " xmlns:q='urn:o'", "", ""},
    {"q:", " xmlns:q='urn:o'", " xmlns:q='" URI "'", " xmlns:q='urn:o'", ""},
    {"q:", " xmlns:q='" URI "'", "", "", " xmlns:q='urn:o'"},
    {"", " xmlns='" URI "'", "", "", ""},
    {"", "", " xmlns='" URI "'", "", ""},
    {"", "", "", " xmlns='" URI "'", ""},
    {"", " xmlns='" URI "'", "", "", " xmlns=''"},
    {"", " xmlns='urn:o'", "", "", " xmlns='" URI "'"},
    {"Zol2:", " xmlns:Zol2='" URI "'", "", "", ""},
    {"aLongPrefix:", "", "", "", " xmlns:aLongPrefix='" URI "'"},
    {"\xC3\xA9:", " xmlns:\xC3\xA9='" URI "'", "", "", ""},
};

// Pieces that go into a text, each at a place of the old one.
class Edits {
 public:
  void insert(std::size_t at, std::string_view piece) { pieces_.push_back({at, 0, piece}); }
  void replace(std::size_t at, std::size_t size, std::string_view piece) {
    pieces_.push_back({at, size, piece});
  }
  std::string applied_to(std::string_view text) {
    std::stable_sort(pieces_.begin(), pieces_.end(),
                     [](const Piece& a, const Piece& b) { return a.at < b.at; });
    std::string out;
    std::size_t at = 0;
    for (const Piece& piece : pieces_) {
      out.append(text.substr(at, piece.at - at)).append(piece.text);
      at = piece.at + piece.size;
    }
    return out.append(text.substr(at));
  }

 private:
  struct Piece {
    std::size_t at;
    std::size_t size;
    std::string_view text;
  };
  std::vector<Piece> pieces_;
};

std::size_t behind_name(const Element& element) { return element.begin + 1 + element.name.size(); }

void rename(const Element& element, std::string_view prefix, Edits& edits) {
  const std::size_t size = element.name.size() - element.local_name().size();
  edits.replace(element.begin + 1, size, prefix);
  if (element.close != element.end) edits.replace(element.close + 2, size, prefix);
}

void rename_all(const Element& element, std::string_view prefix, Edits& edits) {
  rename(element, prefix, edits);
  for (const auto& child : element.children) rename_all(*child, prefix, edits);
}

TEST(TwoRoads, AreOneWhateverIsDeclared) {
  std::set<std::string> seen;
  std::size_t n = 0;
  std::size_t inputs = 0;
  for (const Specimen& specimen : specimens()) {
    Search search(specimen.difference);
    const std::unique_ptr<Element> root = parse(specimen.text);
    for (const Element* const element : elements_of(*root)) {
      const Element* const parent = element->parent;
      const std::string kind = std::string(parent == nullptr ? "" : parent->local_name()) + '/' +
                               std::string(element->local_name());
      if (!seen.insert(specimen.root[0] + kind).second) continue;
      for (const char* const words : k_declarations) {
        const std::string declaration = adapted(words, specimen);
        if (n++ % k_patience != 0) continue;
        for (const std::size_t at : {behind_name(*element), element->content - 1}) {
          if (specimen.text[at - 1] == '/') continue;
          search.look_at(std::string(specimen.text).insert(at, declaration),
                         kind + " with" + declaration);
        }
      }
      if (parent == nullptr) continue;
      const Element* sibling = nullptr;
      for (const auto& child : parent->children) {
        if (child.get() == element) break;
        sibling = child.get();
      }
      for (const Renaming& row : k_renamings) {
        if (n++ % k_patience != 0) continue;
        for (const bool with_children : {false, true}) {
          if (with_children && element->children.empty()) continue;
          Edits edits;
          edits.insert(behind_name(*root), row.on_root);
          if (parent != root.get()) edits.insert(behind_name(*parent), row.on_parent);
          if (sibling != nullptr) edits.insert(behind_name(*sibling), row.on_sibling);
          (with_children ? rename_all : rename)(*element, row.prefix, edits);
          edits.insert(behind_name(*element), row.on_itself);
          search.look_at(edits.applied_to(specimen.text), kind + " renamed to " + row.prefix);
        }
      }
    }
    inputs += search.count();
  }
  EXPECT_GT(inputs, k_least_inputs);
}

// --- Faults that were found ---------------------------------------------------------------------

// A document, up to where the things of interest stand.
std::string beginning(const std::string& declarations) {
  return "<Zol:Zol xmlns:Zol='" URI "' xmlns:xsi='" XSI "'" + declarations +
         "><Zol:Preamble><Zol:Header><Zol:Creator>c</Zol:Creator><Zol:CreatorVersion>1"
         "</Zol:CreatorVersion>";
}
const std::string k_date = "2020-01-01T10:00:00Z";
const std::string k_history = "<Zol:ChangeHistory>" + k_date + "</Zol:ChangeHistory>";
const std::string k_end_of_preamble = "</Zol:Header></Zol:Preamble>";
const std::string k_end = k_end_of_preamble + "</Zol:Zol>";

// One document for all its kind, and the code that it gives.
struct Fault {
  const char* name;
  std::string text;
  int code;
};
const Fault k_faults[] = {
    {"a sibling's declaration leaks",
     beginning(" xmlns:q='urn:o'") + k_history +
         "<Zol:Purpose/><q:ReadSDKInformation xmlns:q='" URI "'><Zol:SDKName/><Zol:SDKVersion>1"
         "</Zol:SDKVersion></q:ReadSDKInformation><q:WritePlatformInformation>"
         "<Zol:OperatingSystem/><Zol:OperatingSystemVersion/></q:WritePlatformInformation>" +
         k_end,
     10},
    {"NEL straight behind a tag name",
     beginning("") + "<Zol:ChangeHistory\xC2\x85>" + k_date + "</Zol:ChangeHistory><Zol:Purpose/>" +
         k_end,
     0},
    {"LS straight behind a tag name",
     beginning("") + "<Zol:ChangeHistory\xE2\x80\xA8>" + k_date +
         "</Zol:ChangeHistory><Zol:Purpose/>" + k_end,
     0},
    {"the line of the row where a colour space is cut",
     beginning("") + k_history + "<Zol:Purpose/>" + k_end_of_preamble +
         "<Zol:Color ColorName='c'>" + k_history + "<Zol:ColorSpaceNCS>" + k_history,
     34},
    {"an unknown attribute where there are no rows of attributes",
     beginning("") + k_history +
         "<Zol:Purpose/></Zol:Header><Zol:Owner a='1'/></Zol:Preamble></Zol:Zol>",
     39},
    {"a line end behind the instruction that has no name",
     "<?\n?>" + beginning("") + k_history + "<Zol:Purpose/>" + k_end, 0},
    {"a line end behind an attribute",
     beginning("") + k_history + "<Zol:Purpose/>" + k_end_of_preamble +
         "<Zol:Color ColorName=\"c\"\n>" + k_history + "</Zol:Color></Zol:Zol>",
     0},
    {"a default namespace that is declared behind the attribute",
     beginning("") + k_history + "<Zol:Purpose/>" + k_end_of_preamble +
         "<Zol:Color ColorName='c'>" + k_history + "<Zol:ColorSpaceEmissiveSpectral>" + k_history +
         "<Zol:ColorSpaceSpecificationEmissiveSpectral xsi:nil='1'/><Zol:EmissiveSpectralPoint "
         "Wavelength=\"400\" xmlns=''>1</Zol:EmissiveSpectralPoint>"
         "</Zol:ColorSpaceEmissiveSpectral></Zol:Color></Zol:Zol>",
     0},
    {"a default namespace that is taken back around a foreign element",
     beginning(" xmlns='urn:o'") + k_history + "<Zol:Purpose/><Zol:Revision xmlns=''><o/>" +
         "</Zol:Revision>" + k_end,
     0},
    {"the number of a foreign namespace behind others",
     beginning("") + k_history +
         "<Zol:Purpose/><Zol:ReadSDKInformation xmlns:p='urn:p'><Zol:SDKName/>"
         "<Zol:SDKVersion>1</Zol:SDKVersion></Zol:ReadSDKInformation><Zol:Revision>" +
         "<q:o xmlns:q='urn:q'/></Zol:Revision>" + k_end,
     0},
};

TEST(TwoRoads, AreOneWhereTheyWereNot) {
  for (const Fault& fault : k_faults) {
    EXPECT_EQ(Zol().unmarshal(fault.text), fault.code) << fault.name;
    EXPECT_EQ(difference_as<Zol>(fault.text), "") << fault.name;
  }
  // What the first road had read of an element of a type stayed, and was refused by the second.
  const std::string comments =
      "<Zol:ColorSpaceSpecificationSpectrumTristimulus xmlns:Zol='" URI "' Comments='c' a='1'/>";
  EXPECT_EQ(ColorSpaceSpecificationSpectrumTristimulus().unmarshal(comments), 39);
}

}  // namespace
}  // namespace zol_test
