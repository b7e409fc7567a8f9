#include "facade/internal/well_formed.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "lmx/internal/libxml2_silence.h"

namespace zol_v2::internal {

namespace {

// --- What the parser says ---------------------------------------------------------------------

// What is known of an error of the parser. Its sentences speak to writers of parsers.
struct Rule {
  int code;
  const char* name;
  const char* sentence;
  bool is_local = false;  // what follows means what it seems to
};

constexpr Rule k_rules[] = {
    {XML_ERR_INTERNAL_ERROR, "document-type", "the document type is broken"},
    {XML_ERR_DOCUMENT_EMPTY, "root-element", "there is no root element"},
    {XML_ERR_DOCUMENT_END, "root-element", "something stands behind the root element"},
    {XML_ERR_INVALID_HEX_CHARREF, "character-reference", "a reference to a character is broken"},
    {XML_ERR_INVALID_DEC_CHARREF, "character-reference", "a reference to a character is broken"},
    {XML_ERR_INVALID_CHARREF, "character-reference", "a reference to a character is broken"},
    {XML_ERR_INVALID_CHAR, "character-range",
     "a character stands here that XML does not have, or bytes that are none"},
    {XML_ERR_ENTITYREF_NO_NAME, "entity-reference", "an ampersand stands for itself"},
    {XML_ERR_ENTITYREF_SEMICOL_MISSING, "missing-semicolon", "a reference has no semicolon"},
    {XML_ERR_UNDECLARED_ENTITY, "undeclared-entity", "an entity is not declared"},
    {XML_ERR_UNPARSED_ENTITY, "entity-reference", "an entity that is no text is referred to"},
    {XML_ERR_ENTITY_IS_EXTERNAL, "external",
     "an attribute refers to an entity that stands in another file"},
    {XML_ERR_ENTITY_LOOP, "entity-expansion", "an entity refers to itself"},
    {XML_ERR_ENTITY_BOUNDARY, "entity-boundaries", "an entity holds half of something"},
    {XML_ERR_NOT_WELL_BALANCED, "entity-boundaries", "an entity holds half of something"},
    {XML_ERR_UNKNOWN_ENCODING, "encoding", "the encoding is not known"},
    {XML_ERR_UNSUPPORTED_ENCODING, "encoding", "the encoding is not known"},
    {XML_ERR_INVALID_ENCODING, "encoding", "bytes stand here that are not in the encoding"},
    {XML_ERR_XMLDECL_NOT_FINISHED, "declaration", "the XML declaration does not end"},
    {XML_ERR_VERSION_MISSING, "declaration", "the XML declaration names no version"},
    {XML_ERR_STANDALONE_VALUE, "declaration", "'standalone' is neither 'yes' nor 'no'"},
    {XML_ERR_RESERVED_XML_NAME, "instruction-name",
     "an instruction or declaration that begins with 'xml' stands where none may"},
    {XML_ERR_PI_NOT_FINISHED, "instruction", "an instruction does not end"},
    {XML_ERR_COMMENT_NOT_FINISHED, "comment", "a comment does not end"},
    {XML_ERR_HYPHEN_IN_COMMENT, "hyphens-in-comment", "'--' stands in a comment", true},
    {XML_ERR_CDATA_NOT_FINISHED, "section", "a CDATA section does not end"},
    {XML_ERR_MISPLACED_CDATA_END, "section-end-in-text", "']]>' stands in text", true},
    {XML_ERR_DOCTYPE_NOT_FINISHED, "document-type", "the document type does not end"},
    {XML_ERR_NAME_REQUIRED, "name-characters",
     "a name is missing, or begins with a character that none may begin with"},
    {XML_ERR_SPACE_REQUIRED, "markup", "a blank is missing"},
    {XML_ERR_GT_REQUIRED, "markup", "a '>' is missing"},
    {XML_ERR_EQUAL_REQUIRED, "markup", "a '=' is missing"},
    {XML_ERR_ATTRIBUTE_NOT_STARTED, "markup", "the value of an attribute has no quotes"},
    {XML_ERR_ATTRIBUTE_NOT_FINISHED, "markup", "the value of an attribute does not end"},
    {XML_ERR_ATTRIBUTE_WITHOUT_VALUE, "markup", "an attribute has no value"},
    {XML_ERR_LT_IN_ATTRIBUTE, "less-than-in-attribute", "'<' stands in the value of an attribute"},
    {XML_ERR_ATTRIBUTE_REDEFINED, "repeated-attribute", "an attribute stands twice in its tag",
     true},
    {XML_ERR_TAG_NAME_MISMATCH, "end-tag", "an end tag has another name than its start tag"},
    {XML_ERR_TAG_NOT_FINISHED, "end-tag", "the document ends inside of an element"},
    {XML_NS_ERR_UNDEFINED_NAMESPACE, "namespaces", "a prefix is not declared", true},
    {XML_NS_ERR_ATTRIBUTE_REDEFINED, "namespaces",
     "an attribute stands twice in its tag, under two prefixes", true},
    {XML_NS_ERR_QNAME, "namespaces", "a name has a colon where none may stand", true},
    {XML_NS_ERR_COLON, "namespaces", "a name has a colon where none may stand", true},
    {XML_NS_ERR_EMPTY, "namespaces", "a prefix is declared for no namespace", true},
    {XML_NS_ERR_XML_NAMESPACE, "namespaces", "'xml' or 'xmlns' is declared for something else",
     true},
};

Rule rule_of(int code, const char* own_sentence) {
  for (const Rule& rule : k_rules) {
    if (rule.code == code) return rule;
  }
  return {code, "markup", own_sentence};
}

std::string_view as_text(const char* text) { return text == nullptr ? "" : text; }
std::string_view as_text(const xmlChar* text) {
  return as_text(reinterpret_cast<const char*>(text));
}

// Without the name of the parser's function in front, and the line feed at the end; others may
// stand in a name that is quoted.
std::string one_line(std::string_view message) {
  if (message.substr(0, 3) == "xml") message.remove_prefix(message.find(' ') + 1);
  std::string line(message.substr(0, message.find_last_not_of('\n') + 1));
  std::replace(line.begin(), line.end(), '\n', ' ');
  return line;
}

// The attribute or element that the parser names beside its error.
template <class Error>
std::string item_of(const Error& error, const xmlParserCtxt& parser) {
  switch (error.code) {
    case XML_ERR_ATTRIBUTE_REDEFINED:
    case XML_NS_ERR_UNDEFINED_NAMESPACE: {
      std::string name(as_text(error.str1));
      if (error.str2 != nullptr) name.append(":").append(error.str2);
      return name;
    }
    default:
      return std::string(as_text(parser.name));
  }
}

// --- Where it says so --------------------------------------------------------------------------

// What the bytes of a document are made of.
enum class Units { utf8, bytes, utf16_be, utf16_le };

Units units_of(std::string_view text, bool is_utf8) {
  const std::string_view begin = text.substr(0, 2);
  if (begin == "\xFE\xFF" || begin == std::string_view("\0<", 2)) return Units::utf16_be;
  if (begin == "\xFF\xFE" || begin == std::string_view("<\0", 2)) return Units::utf16_le;
  return is_utf8 ? Units::utf8 : Units::bytes;
}

// Takes the first character off a text, which may be cut within its last one.
unsigned take_character(std::string_view* text, Units units) {
  const auto byte = [text](std::size_t i) -> unsigned {
    return i < text->size() ? static_cast<unsigned char>((*text)[i]) : 0;
  };
  unsigned c = byte(0);
  std::size_t length = 1;
  if (units == Units::utf8 && c >= 0xC0) {
    length = c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
    c &= 0xFFU >> (length + 1);
    for (std::size_t i = 1; i < length; ++i) c = c << 6U | (byte(i) & 0x3FU);
  } else if (units == Units::utf16_be || units == Units::utf16_le) {
    c = units == Units::utf16_be ? c << 8U | byte(1) : byte(1) << 8U | c;
    length = (c & 0xFC00U) == 0xD800 ? 4 : 2;
  }
  text->remove_prefix(std::min(length, text->size()));
  return c;
}

struct Place {
  std::uint64_t line = 1;
  std::uint64_t column = 1;
};

// The end of a text. Lines end as they do for the library's own reader.
Place end_of(std::string_view text, Units units) {
  constexpr unsigned k_mark = 0xFEFF;
  constexpr unsigned k_next_line = 0x85;
  constexpr unsigned k_line_separator = 0x2028;
  Place place;
  unsigned last = k_mark;
  while (!text.empty()) {
    const unsigned c = take_character(&text, units);
    const bool is_pair = last == '\r' && (c == '\n' || c == k_next_line);
    if (c == '\r' || c == k_next_line || c == k_line_separator || c == '\n') {
      place.line += is_pair ? 0 : 1;
      place.column = 1;
    } else if (c != k_mark || last != k_mark) {
      ++place.column;
    }
    last = c;
  }
  return place;
}

// --- One run ----------------------------------------------------------------------------------

// As the library's own reader has it: what entities expand to may exceed the one or the other, but
// not both.
constexpr std::uint64_t k_most_expanded = std::uint64_t{8} << 20;
constexpr std::uint64_t k_most_expansion = 100;
// Of an entity, beside its text.
constexpr std::uint64_t k_reference_cost = 32;
// The parser counts most levels twice.
constexpr int k_deepest_entity = 192;
// Of a tag, and of prefixes in sight. The parser compares each with each.
constexpr int k_most_attributes = 10000;
constexpr int k_most_prefixes = 1000;

// The parser is never halted, which would pull its buffers away under the function that reported.
// It meets an end of its input instead, and entities without text.
class Judge {
 public:
  Judge(std::string_view text, std::size_t limit) : text_(text), limit_(limit) {}
  Judge(const Judge&) = delete;
  Judge& operator=(const Judge&) = delete;

  std::vector<XmlFault> run();

 private:
  struct FreeParser {
    void operator()(xmlParserCtxt* parser) const {
      xmlFreeDoc(parser->myDoc);
      xmlFreeParserCtxt(parser);
    }
  };

  static Judge& of(void* parser) {
    return *static_cast<Judge*>(static_cast<xmlParserCtxt*>(parser)->_private);
  }

  static xmlSAXHandler callbacks();
  static int read(void* judge, char* block, int size);
  static xmlEntityPtr get_entity(void* parser, const xmlChar* name);
  static xmlEntityPtr get_parameter_entity(void* parser, const xmlChar* name);
  template <class Error>
  static void hear(void* parser, const Error* error);

  bool may_enter(void* parser, xmlEntityPtr entity);
  void look_at_tables();
  void give_up(const char* rule, std::string_view sentence, const xmlChar* item);
  template <class Error>
  void note(const Error& error);
  void add(const char* rule, std::string_view sentence, std::string item);
  Place place() const;
  bool is_read_to_its_end() const;

  const std::string_view text_;
  const std::size_t limit_;
  std::unique_ptr<xmlParserCtxt, FreeParser> parser_;
  std::vector<XmlFault> faults_;
  std::size_t at_ = 0;
  std::uint64_t expanded_ = 0;
  bool is_done_ = false;
  bool is_out_of_memory_ = false;
};

// Entities must be known to judge what refers to them. No tree is made: that would cost ten times
// the memory of the text.
xmlSAXHandler Judge::callbacks() {
  xmlSAXHandler callbacks{};
  xmlSAXVersion(&callbacks, 2);
  callbacks.externalSubset = nullptr;
  callbacks.resolveEntity = nullptr;
  callbacks.attributeDecl = nullptr;
  callbacks.elementDecl = nullptr;
  callbacks.startElement = nullptr;
  callbacks.endElement = nullptr;
  callbacks.startElementNs = nullptr;
  callbacks.endElementNs = nullptr;
  callbacks.reference = nullptr;
  callbacks.characters = nullptr;
  callbacks.cdataBlock = nullptr;
  callbacks.ignorableWhitespace = nullptr;
  callbacks.processingInstruction = nullptr;
  callbacks.comment = nullptr;
  callbacks.warning = nullptr;
  callbacks.error = nullptr;
  callbacks.fatalError = nullptr;
  callbacks.getEntity = get_entity;
  callbacks.getParameterEntity = get_parameter_entity;
  callbacks.serror = [](void* parser, auto* error) { hear(parser, error); };
  return callbacks;
}

int Judge::read(void* judge, char* block, int size) {
  Judge& self = *static_cast<Judge*>(judge);
  self.look_at_tables();
  if (self.is_done_) return 0;
  const std::size_t count = std::min(static_cast<std::size_t>(size), self.text_.size() - self.at_);
  std::memcpy(block, self.text_.data() + self.at_, count);
  self.at_ += count;
  return static_cast<int>(count);
}

// Nothing in its stead would send the parser to look for itself.
xmlEntityPtr Judge::get_entity(void* parser, const xmlChar* name) {
  const xmlEntityPtr entity = xmlSAX2GetEntity(parser, name);
  return of(parser).may_enter(parser, entity) ? entity : xmlGetPredefinedEntity(BAD_CAST "amp");
}

xmlEntityPtr Judge::get_parameter_entity(void* parser, const xmlChar* name) {
  const xmlEntityPtr entity = xmlSAX2GetParameterEntity(parser, name);
  return of(parser).may_enter(parser, entity) ? entity : nullptr;
}

// The parser asks anew for each reference, nested ones too.
bool Judge::may_enter(void* parser, xmlEntityPtr entity) {
  if (is_done_) return false;
  if (entity == nullptr || entity->content == nullptr ||
      entity->etype == XML_INTERNAL_PREDEFINED_ENTITY) {
    return true;
  }
  const std::string_view text = as_text(entity->content);
  expanded_ += k_reference_cost + text.size();
  if (expanded_ > k_most_expanded && expanded_ / k_most_expansion > text_.size()) {
    give_up("entity-expansion", "entities expand to too much", entity->name);
  } else if (static_cast<xmlParserCtxt*>(parser)->depth > k_deepest_entity) {
    give_up("entity-expansion", "entities nest too deep", entity->name);
  } else if (std::count(text.begin(), text.end(), '=') > k_most_attributes) {
    give_up("entity-expansion", "an entity has too many attributes", entity->name);
  }
  return !is_done_;
}

void Judge::look_at_tables() {
  constexpr int k_words_per_attribute = 5;
  constexpr int k_words_per_prefix = 2;
  if (parser_ == nullptr || is_done_) return;
  if (parser_->maxatts / k_words_per_attribute > 2 * k_most_attributes) {
    give_up("limit", "a tag has too many attributes", nullptr);
  } else if (parser_->nsNr / k_words_per_prefix > k_most_prefixes) {
    give_up("limit", "too many prefixes are declared", nullptr);
  }
}

void Judge::give_up(const char* rule, std::string_view sentence, const xmlChar* item) {
  try {
    add(rule, sentence, std::string(as_text(item)));
  } catch (const std::bad_alloc&) {
    is_out_of_memory_ = true;
  }
  is_done_ = true;
}

template <class Error>
void Judge::hear(void* parser, const Error* error) {
  if (static_cast<xmlParserCtxt*>(parser)->_private == nullptr) return;
  Judge& self = of(parser);
  if (error->code == XML_ERR_NO_MEMORY) self.is_out_of_memory_ = self.is_done_ = true;
  // A name of a namespace need not be a URI to be told from others.
  const bool is_fault = error->level == XML_ERR_FATAL ||
                        (error->level == XML_ERR_ERROR && error->domain == XML_FROM_NAMESPACE &&
                         error->code != XML_WAR_NS_URI);
  if (!is_fault || self.is_done_) return;
  try {
    self.note(*error);
  } catch (const std::bad_alloc&) {
    self.is_out_of_memory_ = self.is_done_ = true;
  }
}

template <class Error>
void Judge::note(const Error& error) {
  const std::string own = one_line(as_text(error.message));
  const Rule rule = rule_of(error.code, own.c_str());
  add(rule.name, rule.sentence, item_of(error, *parser_));
  if (!rule.is_local || faults_.size() >= limit_) is_done_ = true;
}

void Judge::add(const char* rule, std::string_view sentence, std::string item) {
  XmlFault fault;
  fault.rule = rule;
  fault.sentence = sentence;
  fault.item = std::move(item);
  const Place place = this->place();
  fault.line = place.line;
  fault.column = place.column;
  faults_.push_back(std::move(fault));
}

// Inside of an entity that of the reference in the document. The parser's own count of lines knows
// one kind of line end.
Place Judge::place() const {
  if (parser_->inputNr == 0) return {};
  const xmlParserInputPtr top = std::exchange(parser_->input, parser_->inputTab[0]);
  const xmlParserInputBuffer* const buffer = parser_->input->buf;
  const bool is_utf8 = buffer == nullptr || buffer->encoder == nullptr;
  const long offset = xmlByteConsumed(parser_.get());
  parser_->input = top;
  const auto length = static_cast<std::size_t>(std::max(offset, 0L));
  return end_of(text_.substr(0, length), units_of(text_, is_utf8));
}

// A zero behind the root element is an end to the parser, and half a unit is nothing.
bool Judge::is_read_to_its_end() const {
  if (parser_->input == nullptr || at_ < text_.size()) return false;
  if (parser_->input->cur < parser_->input->end) return false;
  const xmlParserInputBuffer* const buffer = parser_->input->buf;
  return buffer == nullptr || buffer->raw == nullptr || xmlBufUse(buffer->raw) == 0;
}

std::vector<XmlFault> Judge::run() {
  const lmx::internal::Libxml2Silence silence;
  xmlInitParser();
  xmlSAXHandler handler = callbacks();
  parser_.reset(
      xmlCreateIOParserCtxt(&handler, nullptr, read, nullptr, this, XML_CHAR_ENCODING_NONE));
  if (parser_ == nullptr) throw std::bad_alloc();
  parser_->_private = this;
  // Without XML_PARSE_HUGE a long text would be a fault; against bombs there is may_enter().
  xmlCtxtUseOptions(parser_.get(), XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_RECOVER);
  xmlParseDocument(parser_.get());
  if (is_out_of_memory_) throw std::bad_alloc();
  if (faults_.empty() && parser_->wellFormed == 0) add("markup", "the markup is broken", {});
  if (faults_.empty() && !is_read_to_its_end()) {
    add("root-element", "something stands behind the root element", {});
  }
  return std::move(faults_);
}

}  // namespace

std::vector<XmlFault> find_xml_faults(std::string_view text, std::size_t limit) {
  return Judge(text, limit).run();
}

}  // namespace zol_v2::internal
