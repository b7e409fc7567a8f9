// The tokeniser: cuts the character stream into tags, attributes and text, without any notion of a
// schema. It is deliberately no conforming XML processor: it accepts what it can make sense of,
// checks what the binding needs and leaves the rest.
//
// What stands whole in the getter's window is taken in runs; everything else goes character by
// character, with the same events, values, line numbers and reports.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "lmx/entities.h"
#include "lmx/input.h"
#include "lmx/names.h"

namespace lmx {

// What the tokeniser came upon.
enum elxp_xml_event : int {
  elxp_end_of_input = 0,  // the input ended where a tag or text may stand
  elxp_unknown = 1,       // a name that no table row matched
  elxp_error_2 = 2,       // an error event that is never produced
  elxp_error = 3,         // the code, if there was a report, is in the c_error
  elxp_start_tag_end = 4,
  elxp_text = 5,
  elxp_end_tag = 6,  // or the "/>" of an empty element
  elxp_name = 7,     // a start tag or an attribute
  elxp_xsi_type = 8,
  elxp_xsi_nil = 9,
  elxp_xsi_schema_location = 10,
  elxp_xsi_no_namespace_schema_location = 11
  // 12 and up: the names of the generated tables
};

// The white-space modes of XML Schema.
enum elmx_whitespace : int { elmx_preserve = 0, elmx_replace = 1, elmx_collapse = 2 };

// The getter with the XML-aware character tools.
class ZOL_API c_get_for_xml : public c_get_with_entities {
 public:
  // `treat_refs_as_ws` says whether a character reference to a white-space character counts as
  // white space in the modes replace and collapse.
  c_get_for_xml(c_read& source, c_error& error, bool treat_refs_as_ws)
      : c_get_with_entities(source, error), treat_refs_as_ws_(treat_refs_as_ws) {}

  // The next character that is no white space, or -1.
  int get_non_ws();
  // The mode of what is read from now on.
  void set_ws_mode(elmx_whitespace mode) {
    ws_mode_ = mode;
    pending_space_ = false;
  }
  // Sets the present mode again.
  void reset_ws_mode() { pending_space_ = false; }
  // Appends one character as the mode has it. A collapsed run of white space waits for what
  // follows, so that none is written at either end.
  void add_char_wsp(std::string* out, int c, bool from_reference);
  // Takes the characters of `text`. False at the first that differs, which is left in the input.
  bool read_specified_string_from_input(const char* text);
  // A text in single or double quotes, taken as it stands.
  bool get_simple_quoted_value(std::string* out);
  // Entered after "<?xml".
  bool read_xml_decl();
  // Entered after "<!--". False if the input ends within.
  bool skip_comment();
  // Reads up to "?>".
  bool skip_PI();
  // Passes the rest of a start tag; *empty, unless null, tells of a "/>".
  bool move_to_start_tag_end(bool* empty);
  // Entered after "&#". The semicolon is optional; what lies above 0x100000 is refused.
  bool insert_character_entity(c_entity_name_reader& reader, std::string* out);
  // Starts the document again, without entities, in the mode preserve.
  void rewind();

  // --- For the stages above -----------------------------------------------------------------

  // Appends characters that are in no need of a look, as add_char_wsp would one by one.
  void add_run(std::string* out, const char* begin, const char* end) {
    if (ws_mode_ == elmx_preserve) {
      out->append(begin, static_cast<std::size_t>(end - begin));
    } else {
      add_run_wsp(out, begin, end);
    }
  }
  // Takes what the window has up to a character of ASCII, as it stands. Appends it unless `out` is
  // null.
  void take_up_to(char stop, std::string* out);

 private:
  bool report(elmx_error_type type, elmx_error code, const std::string& text);
  void add_run_wsp(std::string* out, const char* begin, const char* end);

  std::string character_reference_;
  elmx_whitespace ws_mode_ = elmx_preserve;
  bool pending_space_ = false;
  bool treat_refs_as_ws_;
};

namespace internal {
class Tokeniser;
}

// Cuts a document into tags, attributes and text. For one thread at a time.
class ZOL_API c_xml {
 public:
  // Borrows source and error tally, for its whole life.
  c_xml(c_read& source, c_error& error, bool treat_refs_as_ws);
  c_xml(const c_xml&) = delete;
  c_xml& operator=(const c_xml&) = delete;
  ~c_xml();

  // The next markup or text: events 0, 3, 5, 6 and 7. The attributes of a start tag are read ahead,
  // and its namespace declarations go to `scope`; without a scope they are plain attributes.
  elxp_xml_event get_element_name(c_xml_local* scope, std::string* name);
  // The next attribute (7), after which its value must be read or skipped, or the end of the tag
  // (4, 6) or an error (3).
  elxp_xml_event get_attribute_name(std::string* name, bool ends_with_question_mark);
  // False if a reference failed or the value holds a zero; it is passed all the same.
  bool get_attribute_value(std::string* value, elmx_whitespace mode);
  // Passes the value of the attribute whose name was given last. True.
  bool skip_attribute_value();

  // Looks through the attributes that were not read yet; the next to be read is the first again.
  bool get_named_attribute(const c_xml_local* scope, int ns_id, const std::string& local_name,
                           std::string* value);
  // The type that xsi:type names, as id and local name; false if there is no such attribute.
  bool get_xsi_type(const c_xml_local* scope, int* ns_id, std::string* name);
  // Is the prefix that of XML Schema instances?
  bool is_xsi_attribute(const c_xml_local* scope, const std::string& name) const;
  // The id of the name's prefix, or of the default namespace; 0 if unknown.
  int get_ns_id(const c_xml_local* scope, const std::string& name) const;

  // Text up to the next tag, which stays in the input.
  bool get_element_value(std::string* value, elmx_whitespace mode, bool expand_entities);
  // Takes the next tag. True if it is that end tag.
  bool is_element_end_tag(const std::string& name);
  // Passes the rest of the start tag; *empty tells of a "/>". False at the end of input or a bad
  // end of the tag.
  bool skip_start_tag(bool* empty);
  // Each passes the rest of an element whose start tag was the last event, or its body, at any
  // depth in constant stack.
  bool skip_rest_of_element(const std::string& name);
  // See skip_rest_of_element; nothing but the end tag may follow.
  bool skip_rest_of_empty_element(const std::string& name);
  // See skip_rest_of_element; entered behind the start tag.
  bool skip_element_body(const std::string& name);

  // Copies the element whose start tag was the last event back into text, without comments and
  // instructions. Expanded references leave well-formed text: what they stand for is escaped again
  // where it would be markup. False if a reference or a tag can't be read.
  bool get_any_element(const std::string& name, std::string* value, elmx_whitespace mode,
                       bool expand_entities);
  // The same as text that means the same anywhere: white space is preserved, references are
  // expanded, and the first tag gets the declarations of `scope` that the element uses and does not
  // have.
  bool get_any_element(const c_xml_local& scope, const std::string& name, std::string* value);
  // Copies content back into text, up to an end tag whose name goes to *end_name.
  bool get_nested_element_value(std::string* value, std::string* end_name, elmx_whitespace mode,
                                bool expand_entities);

  // Starts the document again, without namespaces and entities; fixed ids must be set anew.
  void rewind();

  // The line at hand, from 1.
  int get_line_num() const;
  // Bytes of the source that were read and not pushed back.
  std::uint64_t bytes_read() const;
  // As the source gives it; null if it has no name.
  const char* get_source_id() const;
  // Does the event stand for a fault?
  static bool is_error_event(int event) { return event == elxp_error_2 || event == elxp_error; }

  // An entity that the document need not declare.
  void add_general_entity(const std::string& name, const std::string& text);
  // The same, for references with "%".
  void add_parameter_entity(const std::string& name, const std::string& text);
  // The id of the URI, a new one if it was not known.
  int add_namespace(const char* uri);
  // Fixes the id of a URI; one that is known keeps its old id.
  void add_namespace(const char* uri, int id);
  // The id of the URI, 0 if it has none.
  int find_enumerated_namespace(const std::string& uri) const;
  // The first URI of the id, or null.
  const char* find_namespace_from_id(int id) const;

  // The text after the first colon, and before it. `out` may be `name` itself.
  static void get_local_name(const std::string& name, std::string* out);
  // See get_local_name.
  static void get_namespace_prefix(const std::string& name, std::string* out);

 protected:
  // The library's own way in.
  internal::Tokeniser& tokeniser() { return *tokeniser_; }
  // The same.
  const internal::Tokeniser& tokeniser() const { return *tokeniser_; }

 private:
  std::unique_ptr<internal::Tokeniser> tokeniser_;
};

}  // namespace lmx
