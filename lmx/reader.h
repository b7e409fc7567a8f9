// The pull reader that generated unmarshalling code drives: events, names by number, values and the
// current error.
//
// There is no tree and no callback: each function asks for the next event, compares it with the
// events it knows, reads the value and asks again. Nothing here throws of its own.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "lmx/errors.h"
#include "lmx/facets.h"
#include "lmx/input.h"
#include "lmx/names.h"
#include "lmx/tokeniser.h"

namespace lmx {

class c_xml_reader;

// What a name is the name of: an attribute without a prefix is in no namespace.
enum elxp_attr_elem : int { elxp_attribute = 0, elxp_element = 1 };

// One row of a generated table of names. A null name ends the table, so that any tail of a table is
// one too.
struct s_event_map {
  // As c_xml_reader::get_ns_id gives it, 1 for no namespace.
  int ns_id;
  // The local name in UTF-8; null ends the table.
  const char* name;
  // Of the name, in bytes.
  std::size_t name_length;
  // What c_xml_reader::get_current_event then gives, 12 or more.
  int event;
};

// One row of a table of elements that belong to an enclosing level.
struct s_known_elements {
  // As c_xml_reader::get_ns_id gives it, 1 for no namespace.
  int ns_id;
  // The local name in UTF-8; null ends the table.
  const char* name;
  // Of the name, in bytes.
  std::size_t name_length;
};

// The names of the open elements, outermost first.
class ZOL_API c_string_stack {
 public:
  c_string_stack() { bytes_.reserve(256); }
  // Bytes in use, with a zero behind each name.
  std::size_t get_stack_size() const { return bytes_.size(); }

  // The innermost name; empty if there is none.
  std::string_view top() const;

 private:
  friend class c_string_stack_node;
  std::string bytes_;
};

// Keeps a string on the stack for as long as the node lives. Nodes die in the reverse order.
class ZOL_API c_string_stack_node {
 public:
  // Copies the text, and borrows the stack.
  c_string_stack_node(c_string_stack& stack, std::string_view text)
      : stack_(&stack), offset_(stack.bytes_.size()), length_(text.size()) {
    stack.bytes_.append(text);
    stack.bytes_.push_back('\0');
  }
  c_string_stack_node(const c_string_stack_node&) = delete;
  c_string_stack_node& operator=(const c_string_stack_node&) = delete;
  ~c_string_stack_node() { stack_->bytes_.erase(offset_); }

  // Good until the next node is made.
  const char* get_str() const { return stack_->bytes_.data() + offset_; }
  // The same with its length.
  std::string_view get_view() const { return {get_str(), length_}; }

  // Is it that name?
  bool operator==(const std::string& text) const { return get_view() == text; }
  // Is it another?
  bool operator!=(const std::string& text) const { return !(*this == text); }

 private:
  c_string_stack* stack_;
  std::size_t offset_;
  std::size_t length_;
};

// A namespace scope of a reader, the innermost one for as long as it lives. Scopes die in the
// reverse order.
class ZOL_API c_xml_reader_local : public c_xml_local {
 public:
  // A root level of its own, until it is given a reader.
  c_xml_reader_local() = default;
  explicit c_xml_reader_local(c_xml_reader& reader);
  c_xml_reader_local(const c_xml_reader_local&) = delete;
  c_xml_reader_local& operator=(const c_xml_reader_local&) = delete;
  ~c_xml_reader_local();

  // Borrows the reader.
  void set_reader(c_xml_reader* reader) { reader_ = reader; }

 private:
  c_xml_reader_local* previous_local_ = nullptr;
  c_xml_reader* reader_ = nullptr;
};

namespace internal {

// What a reader must have before its tokeniser is made.
struct ReaderErrors {
  c_error errors;
};

class ElementDepthGuard;
class Pool;
struct ReaderState;
struct WholeDocument;

}  // namespace internal

// Reads one document as events. For one thread at a time.
class ZOL_API c_xml_reader : private internal::ReaderErrors, public c_xml {
 public:
  // A single space: what get_namespace gives for a prefix that nothing declares.
  static const std::string k_namespace_not_found;

  // Borrows the source for its whole life.
  explicit c_xml_reader(c_read& source);
  virtual ~c_xml_reader();

  // The last word on every failure: gives the code to go on with, 0 to carry on as if nothing had
  // happened. `file` and `line` are the place in the reading code. The default asks the short form,
  // which gives its argument back.
  virtual elmx_error user_handle_error(elmx_error code, const std::string& item, const char* file,
                                       int line);
  // The short form: gives its argument back.
  virtual elmx_error user_handle_error(elmx_error code);
  // "No Error", or the line, the item and the text of the last code that was handled.
  virtual const std::string& get_error_message(std::string* out) const;

  // --- Events -------------------------------------------------------------------------------

  // Moves to the next tag or text, whose name or text goes to *name. Sets *error for an error or
  // the end of input, and leaves it alone otherwise. With a table a name is tokenised.
  void get_element_event(const s_event_map* map, elmx_error* error, std::string* name);
  // As above, but passes elements that neither the table nor the known elements hold. A known one
  // comes back as event 1.
  void get_known_element_event(const s_event_map* map, elmx_error* error, std::string* name);
  // True with an attribute, whose value must then be read or skipped, or with an error; false at
  // the end of the start tag. Sets *error in each case.
  bool get_attribute_event(const s_event_map* map, elmx_error* error, std::string* name);
  // Replaces the current event by the table's event for the last name, 1 if no row matches. Names
  // of the instance namespace have fixed events and bypass the table.
  void tokenise(const s_event_map* map, elxp_attr_elem kind);
  // The last event: one of elxp_xml_event, or of the table that the last name was compared with.
  int get_current_event() const { return current_event_; }
  // Makes this the current event, as one who looked ahead must.
  void restore_event(int event) { current_event_ = event; }
  // Is it a name that may be compared with another table?
  bool is_current_event_tokenisable() const {
    return current_event_ == elxp_unknown || current_event_ == elxp_name ||
           current_event_ > elxp_xsi_no_namespace_schema_location;
  }

  // --- Values and names ---------------------------------------------------------------------

  // Reads the rest of a start tag, text and end tag. False with 11, 29 or 10. The current event
  // stays as it was.
  bool get_simple_type_value(const std::string& name, elmx_whitespace mode, std::string* value,
                             elmx_error* error, bool* empty);
  // The same for an element of any content, which is kept as text.
  bool get_element_ur_value(const std::string& name, std::string* value, elmx_error* error,
                            bool* empty);
  // As the tokeniser's; success makes the current event 6.
  bool get_nested_element_value(std::string* value, std::string* end_name, elmx_whitespace mode,
                                bool expand_entities);

  // The last name of an element or attribute, as it stands.
  const std::string& get_full_name() const;
  // The same without its prefix. Good until the next name is read.
  const std::string& get_local_name() const;
  using c_xml::get_local_name;
  // The same in place, good until the next name is read.
  std::string_view get_local_view() const;
  // The id of its namespace, 0 if nothing declares its prefix; without a prefix that of the default
  // namespace.
  int get_ns_id() const;
  // The same, but 1 where no default namespace is declared.
  int get_element_ns_id() const;
  // Had it a prefix?
  bool get_has_ns_prefix() const;

  // The URI of a qualified name's prefix in the current scope, "" for no namespace.
  void get_namespace(const std::string& name, std::string* uri) const;
  // Is it a name whose prefix, if any, is declared here?
  bool is_valid_qname(const std::string& text) const;
  // Is the prefix that of XML Schema instances?
  bool is_xsi_attribute(const std::string& name) const;
  // What xsi:type of the element at hand says, as id and local name; false if there is none. An
  // attribute is not read by that.
  bool get_xsi_type(int* ns_id, std::string* name);
  // The value of an attribute of the element at hand, likewise.
  bool get_named_attribute(int ns_id, const std::string& local_name, std::string* value);

  // --- Errors and set-up --------------------------------------------------------------------

  // Every failure of reading code passes here: keeps code and item for get_error_message, and gives
  // the code that user_handle_error leaves.
  elmx_error handle_error(elmx_error code, const std::string& item, const char* file, int line);
  // What was last reported below the reader; the first fatal report stays.
  elmx_error get_error() const { return errors.get_last_error(); }
  // The same with severity and line; false, with nothing stored, if nothing was reported.
  bool get_error_info(elmx_error_type* type, elmx_error* code, int* line) const {
    return errors.get_error_info(type, code, line);
  }
  // The item of the last failure that was handled.
  const std::string& get_error_item_name() const;
  // The line at hand, from 1.
  int get_line_no() const { return get_line_num(); }

  // Fixes the ids of the table's URIs and applies the mappings below. Needed again after rewind().
  void set_ns_map(const s_ns_map* map);
  // A prefix that is declared for the whole document, from the next set_ns_map on.
  void add_namespace_mapping(const std::string& prefix, const std::string& uri);
  // The same for names without a prefix.
  void add_default_namespace_mapping(const std::string& uri) { add_namespace_mapping("", uri); }

  // The reader's own, for c_string_stack_node.
  c_string_stack& get_element_name_stack();
  // Borrows the table; null for none.
  void set_known_elements(const s_known_elements* table);
  // The table that was set, or null.
  const s_known_elements* get_known_elements() const;
  // The innermost scope; never null.
  c_xml_reader_local* get_reader_local() const { return current_local_; }
  // For c_xml_reader_local; null is not allowed.
  void set_reader_local(c_xml_reader_local* local) { current_local_ = local; }
  // Memory for what is made of the document; it may outlive the reader.
  internal::Pool& pool();
  // The bytes of the document, if nothing was read or set yet that has a bearing on it and the
  // source has them all at hand. Good until the next event is asked for; nothing counts as read.
  bool peek_document(std::string_view* bytes);
  // Takes a document that was read without events.
  void take_document(const internal::WholeDocument& document);

  // Work strings of the reading code; one set serves the whole document.
  std::string name;
  std::string value;
  std::string attribute_name;

 private:
  friend class internal::ElementDepthGuard;
  bool is_known_element() const;

  c_xml_reader_local* current_local_;
  int current_event_ = elxp_end_of_input;
  std::unique_ptr<internal::ReaderState> state_;
};

// Reads a file, in any accepted encoding. Whether it opened, is_open() tells, and the caller asks.
class ZOL_API c_xml_reader_file : public c_xml_reader {
 public:
  // A path in the encoding of the system's own calls.
  explicit c_xml_reader_file(const char* path);
  // A path in UTF-16, one unit a wchar_t.
  explicit c_xml_reader_file(const wchar_t* path);
  // The file is closed with the reader.
  explicit c_xml_reader_file(std::FILE* file);
  ~c_xml_reader_file() override;

  // Did the file open?
  bool is_open() const { return file_.is_open(); }

 private:
  c_read_file file_;
};

// Reads `size` bytes of memory, which stay the caller's and must outlive the reader.
class ZOL_API c_xml_reader_memory : public c_xml_reader {
 public:
  // In any encoding that the document names.
  c_xml_reader_memory(const char* data, std::size_t size);
  ~c_xml_reader_memory() override;

  // True.
  bool is_open() const { return memory_.is_open(); }

 private:
  c_read_memory memory_;
};

// Selects a table of known elements for as long as it lives.
class ZOL_API c_known_elements_selector {
 public:
  // Borrows both; the table that was set before comes back at the end.
  c_known_elements_selector(c_xml_reader& reader, const s_known_elements* table)
      : reader_(&reader), previous_(reader.get_known_elements()) {
    reader.set_known_elements(table);
  }
  c_known_elements_selector(const c_known_elements_selector&) = delete;
  c_known_elements_selector& operator=(const c_known_elements_selector&) = delete;
  ~c_known_elements_selector() { reader_->set_known_elements(previous_); }

 private:
  c_xml_reader* reader_;
  const s_known_elements* previous_;
};

// Peeks at the namespace URI of the root element, and rewinds. False if there is none. A file is
// peeked at with a reader of its own: see c_read_file::rewind.
ZOL_API bool get_instance_namespace(c_xml_reader& reader, std::string* uri);

// Scans the document for an attribute of that namespace and local name, and rewinds. The first
// answer of the callback other than 0 is the result; 1 stands for a document that can't be read.
ZOL_API elmx_must_understand
has_must_understand(c_xml_reader& reader, const std::string& ns_uri, const std::string& attribute,
                    elmx_must_understand (*callback)(const std::string&));

// --- Inline bodies ----------------------------------------------------------------------------

inline c_xml_reader_local::c_xml_reader_local(c_xml_reader& reader)
    : c_xml_local(*reader.get_reader_local()),
      previous_local_(reader.get_reader_local()),
      reader_(&reader) {
  reader.set_reader_local(this);
}

inline c_xml_reader_local::~c_xml_reader_local() {
  if (previous_local_ != nullptr) reader_->set_reader_local(previous_local_);
}

}  // namespace lmx
