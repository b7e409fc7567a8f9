// The state of the tokeniser, and its steps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "lmx/entities.h"
#include "lmx/input.h"
#include "lmx/internal/byte_buffer.h"
#include "lmx/names.h"
#include "lmx/tokeniser.h"

namespace lmx::internal {

// What stands behind c_xml, which tells what each of its functions does.
class Tokeniser {
 public:
  Tokeniser(c_read& source, c_error& error, bool treat_refs_as_ws);
  Tokeniser(const Tokeniser&) = delete;
  Tokeniser& operator=(const Tokeniser&) = delete;

  elxp_xml_event get_element_name(c_xml_local* scope, std::string* name);
  elxp_xml_event get_attribute_name(std::string* name, bool ends_with_question_mark);
  bool get_attribute_value(std::string* value, elmx_whitespace mode);
  bool skip_attribute_value();

  bool get_named_attribute(const c_xml_local* scope, int ns_id, const std::string& local_name,
                           std::string* value);
  bool get_xsi_type(const c_xml_local* scope, int* ns_id, std::string* name);
  bool is_xsi_attribute(const c_xml_local* scope, const std::string& name) const;
  int get_ns_id(const c_xml_local* scope, const std::string& name) const;

  bool get_element_value(std::string* value, elmx_whitespace mode, bool expand_entities);
  bool is_element_end_tag(const std::string& name);
  bool skip_start_tag(bool* empty);
  bool skip_rest_of_element(const std::string& name);
  bool skip_rest_of_empty_element(const std::string& name);
  bool skip_element_body(const std::string& name);

  bool get_any_element(const std::string& name, std::string* value, elmx_whitespace mode,
                       bool expand_entities);
  bool get_any_element(const c_xml_local& scope, const std::string& name, std::string* value);
  bool get_nested_element_value(std::string* value, std::string* end_name, elmx_whitespace mode,
                                bool expand_entities);

  void rewind();

  c_enumerated_namespaces& namespaces() { return namespaces_; }
  const c_enumerated_namespaces& namespaces() const { return namespaces_; }
  c_get_for_xml& getter() { return getter_; }
  const c_get_for_xml& getter() const { return getter_; }
  // Where the local name begins in the last name that was given, 0 without a prefix.
  std::size_t local_at() const { return local_at_; }
  // The rest of a start tag without attributes to come, a text that is stored as it stands and the
  // end tag, if they stand whole in the window. Otherwise false, with nothing taken or stored.
  bool take_simple_value(const std::string& name, elmx_whitespace mode, std::string* value);
  // The whole document, while nothing of it was read; see c_xml_reader::peek_document.
  bool peek_whole(std::string_view* bytes) {
    return !content_begun_ && !dtd_read_ && getter_.peek_whole(bytes);
  }
  void take_whole(const SourceBytes& bytes, elmx_whitespace mode) {
    content_begun_ = true;
    getter_.set_ws_mode(mode);
    getter_.take_whole(bytes);
  }

 private:
  class Copy;  // copies elements and content

  int get() { return getter_.get(); }
  void unget(int value) { getter_.unget(value); }
  bool report_not_well_formed(const char* text);

  elxp_xml_event take_tag_in_window(std::string* name);
  const char* pass_tag_name(const char* at, const char* end);
  elxp_xml_event get_element_name_by_character(c_xml_local* scope, std::string* name);
  // Each of the markup readers gives true with an event, or false to go on with what follows.
  bool read_markup(c_xml_local* scope, std::string* name, elxp_xml_event* event);
  elxp_xml_event read_start_tag(c_xml_local* scope, std::string* name, int c);
  elxp_xml_event read_end_tag(std::string* name);
  bool read_instruction(elxp_xml_event* event);
  bool read_declaration(std::string* name, elxp_xml_event* event);
  bool read_doctype();
  elxp_xml_event read_text(std::string* name);
  bool take_text_in_window(std::string* out);
  bool read_cdata(std::string* out);

  const char* take_attributes_in_window(const char* at, const char* end, int* lines);
  bool read_attributes(c_xml_local* scope);
  bool read_attribute(c_xml_local* scope, int c);
  bool read_value(AttributeList* out);
  bool report_value(const char* before, int c, const char* after);
  bool read_namespace_declaration(c_xml_local* scope, int c);
  std::string expand_uri(const std::string& uri);

  bool expand_reference(c_entity_name_reader& reader, std::string* out);
  bool expand_in_content(std::string* out);
  bool expand_entity_text(const char* text, std::string* out);

  c_get_for_xml getter_;
  std::string entity_name_;
  c_internal_dtd dtd_;
  c_enumerated_namespaces namespaces_;
  bool dtd_read_ = false;
  bool content_begun_ = false;
  AttributeList attributes_;
  AttributeList ns_attributes_;
  int expansion_depth_ = 0;
  std::size_t local_at_ = 0;
  // The name of the last tag that had a long one, which is a good guess at the next.
  ByteBuffer last_long_tag_;
  std::size_t last_long_tag_local_at_ = 0;
};

}  // namespace lmx::internal
