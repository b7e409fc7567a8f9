#include "lmx/reader.h"

#include <memory>
#include <string_view>
#include <vector>

#include "lmx/internal/byte_buffer.h"
#include "lmx/internal/char_table.h"
#include "lmx/internal/reader_state.h"
#include "lmx/internal/tokeniser.h"

namespace lmx {

namespace {

// The names of the instance namespace that have an event.
constexpr struct {
  std::string_view name;
  int event;
} k_xsi_events[] = {
    {"type", elxp_xsi_type},
    {"nil", elxp_xsi_nil},
    {"noNamespaceSchemaLocation", elxp_xsi_no_namespace_schema_location},
    {"schemaLocation", elxp_xsi_schema_location},
};

int xsi_event(std::string_view name) {
  for (const auto& row : k_xsi_events) {
    if (row.name == name) return row.event;
  }
  return elxp_unknown;
}

// Works for s_event_map and s_known_elements.
template <class Row>
bool is_match(const Row& row, int ns_id, std::string_view name) {
  return row.ns_id == ns_id && row.name_length == name.size() &&
         (name.empty() ||
          (row.name[0] == name[0] && internal::is_equal_short(row.name, name.data(), name.size())));
}

}  // namespace

const std::string c_xml_reader::k_namespace_not_found(" ");

c_xml_reader::c_xml_reader(c_read& source)
    : c_xml(source, errors, true), state_(std::make_unique<internal::ReaderState>()) {
  current_local_ = &state_->root_local;
  current_local_->set_reader(this);
}

c_xml_reader::~c_xml_reader() = default;

std::string_view c_string_stack::top() const {
  if (bytes_.empty()) return {};
  std::string_view names(bytes_.data(), bytes_.size() - 1);
  return names.substr(names.rfind('\0') + 1);
}

// --- Events -----------------------------------------------------------------------------------

void c_xml_reader::get_element_event(const s_event_map* map, elmx_error* error, std::string* name) {
  current_local_->clear();
  current_event_ = tokeniser().get_element_name(current_local_, name);
  switch (current_event_) {
    case elxp_name:
      state_->cracked_name.split(current_local_, *name, tokeniser().local_at());
      if (map != nullptr) tokenise(map, elxp_element);
      break;
    case elxp_end_of_input:
      *error = elmx_unexpected_end;
      break;
    case elxp_error:
      *error = get_error();
      break;
    default:
      break;
  }
}

void c_xml_reader::get_known_element_event(const s_event_map* map, elmx_error* error,
                                           std::string* name) {
  while (true) {
    get_element_event(nullptr, error, name);
    if (current_event_ != elxp_name) return;
    if (map != nullptr) {
      tokenise(map, elxp_element);
      if (current_event_ != elxp_unknown) return;
    }
    if (is_known_element()) {
      current_event_ = elxp_unknown;
      return;
    }
    if (!skip_rest_of_element(*name)) {
      *error = elmx_badly_formed;
      return;
    }
  }
}

bool c_xml_reader::is_known_element() const {
  if (state_->known_elements == nullptr) return false;
  const int ns_id = get_element_ns_id();
  const std::string_view local_name = state_->cracked_name.local_view();
  for (const s_known_elements* row = state_->known_elements; row->name != nullptr; ++row) {
    if (is_match(*row, ns_id, local_name)) return true;
  }
  return false;
}

bool c_xml_reader::get_attribute_event(const s_event_map* map, elmx_error* error,
                                       std::string* name) {
  *error = elmx_ok;
  current_event_ = tokeniser().get_attribute_name(name, false);
  switch (current_event_) {
    case elxp_name:
      state_->cracked_name.split(current_local_, *name, tokeniser().local_at());
      if (map != nullptr) tokenise(map, elxp_attribute);
      return true;
    case elxp_error:
      *error = get_error();
      return true;
    default:
      return false;
  }
}

void c_xml_reader::tokenise(const s_event_map* map, elxp_attr_elem kind) {
  const c_cracked_name& cracked = state_->cracked_name;
  const int ns_id = cracked.get_has_ns_prefix() ? cracked.get_ns_id()
                    : kind == elxp_element      ? cracked.get_element_ns_id()
                                                : k_ns_none;
  const std::string_view local_name = cracked.local_view();
  if (ns_id == k_ns_xsi) {
    current_event_ = xsi_event(local_name);
    return;
  }
  for (; map->name != nullptr; ++map) {
    if (is_match(*map, ns_id, local_name)) {
      current_event_ = map->event;
      return;
    }
  }
  current_event_ = elxp_unknown;
}

// --- Values and names -------------------------------------------------------------------------

bool c_xml_reader::get_simple_type_value(const std::string& name, elmx_whitespace mode,
                                         std::string* value, elmx_error* error, bool* empty) {
  if (tokeniser().take_simple_value(name, mode, value)) {
    *empty = false;
    return true;
  }
  value->clear();
  if (!skip_start_tag(empty)) {
    *error = elmx_bad_start_tag_end;
    return false;
  }
  if (*empty) return true;
  if (!get_element_value(value, mode, true)) {
    *error = elmx_bad_element_value;
    return false;
  }
  if (!is_element_end_tag(name)) {
    *error = elmx_bad_end_of_element;
    return false;
  }
  return true;
}

bool c_xml_reader::get_element_ur_value(const std::string& name, std::string* value,
                                        elmx_error* error, bool* empty) {
  value->clear();
  if (!skip_start_tag(empty)) {
    *error = elmx_bad_start_tag_end;
    return false;
  }
  if (*empty) return true;
  std::string end_name;
  if (!get_nested_element_value(value, &end_name, elmx_preserve, false)) {
    *error = elmx_bad_element_value;
    return false;
  }
  if (end_name != name) {
    *error = elmx_bad_end_of_element;
    return false;
  }
  return true;
}

bool c_xml_reader::get_nested_element_value(std::string* value, std::string* end_name,
                                            elmx_whitespace mode, bool expand_entities) {
  if (!c_xml::get_nested_element_value(value, end_name, mode, expand_entities)) return false;
  current_event_ = elxp_end_tag;
  return true;
}

void c_xml_reader::get_namespace(const std::string& name, std::string* uri) const {
  const int ns_id = c_xml::get_ns_id(current_local_, name);
  const char* const found = ns_id == k_ns_none ? "" : find_namespace_from_id(ns_id);
  *uri = found != nullptr ? found : k_namespace_not_found;
}

bool c_xml_reader::is_valid_qname(const std::string& text) const {
  const c_cracked_name cracked(current_local_, text);
  if (cracked.get_ns_id() == k_ns_not_found) return false;

  const auto is_valid_part = [](std::string_view part) {
    if (!has_mask(part[0], internal::k_name_start)) return false;
    for (const char c : part.substr(1)) {
      if (c == ':' || !has_mask(c, internal::k_name)) return false;
    }
    return true;
  };
  const std::string& prefix = cracked.get_ns_prefix();
  if (cracked.get_has_ns_prefix() && (prefix.empty() || !is_valid_part(prefix))) return false;
  return !cracked.local_view().empty() && is_valid_part(cracked.local_view());
}

bool c_xml_reader::is_xsi_attribute(const std::string& name) const {
  return c_xml::is_xsi_attribute(current_local_, name);
}

bool c_xml_reader::get_xsi_type(int* ns_id, std::string* name) {
  return c_xml::get_xsi_type(current_local_, ns_id, name);
}

bool c_xml_reader::get_named_attribute(int ns_id, const std::string& local_name,
                                       std::string* value) {
  return c_xml::get_named_attribute(current_local_, ns_id, local_name, value);
}

const std::string& c_xml_reader::get_full_name() const {
  return state_->cracked_name.get_full_name();
}

const std::string& c_xml_reader::get_local_name() const {
  return state_->cracked_name.get_local_name();
}

std::string_view c_xml_reader::get_local_view() const { return state_->cracked_name.local_view(); }

int c_xml_reader::get_ns_id() const { return state_->cracked_name.get_ns_id(); }

int c_xml_reader::get_element_ns_id() const { return state_->cracked_name.get_element_ns_id(); }

bool c_xml_reader::get_has_ns_prefix() const { return state_->cracked_name.get_has_ns_prefix(); }

// --- Errors and set-up ------------------------------------------------------------------------

const std::string& c_xml_reader::get_error_item_name() const { return state_->error_item_name; }

c_string_stack& c_xml_reader::get_element_name_stack() { return state_->element_names; }

void c_xml_reader::set_known_elements(const s_known_elements* table) {
  state_->known_elements = table;
}

const s_known_elements* c_xml_reader::get_known_elements() const { return state_->known_elements; }

internal::Pool& c_xml_reader::pool() { return state_->pool; }

elmx_error c_xml_reader::handle_error(elmx_error code, const std::string& item, const char* file,
                                      int line) {
  state_->handled_error = code;
  state_->error_item_name = item;
  state_->handled_error = user_handle_error(code, item, file, line);
  return state_->handled_error;
}

elmx_error c_xml_reader::user_handle_error(elmx_error code, const std::string&, const char*, int) {
  return user_handle_error(code);
}

elmx_error c_xml_reader::user_handle_error(elmx_error code) { return code; }

const std::string& c_xml_reader::get_error_message(std::string* out) const {
  if (state_->handled_error == elmx_ok) {
    *out = get_error_description(elmx_ok);
  } else {
    *out = "line:" + std::to_string(get_line_no()) + "-'" + state_->error_item_name + "'-" +
           get_error_description(state_->handled_error);
  }
  return *out;
}

void c_xml_reader::set_ns_map(const s_ns_map* map) {
  if (map != nullptr) {
    for (; map->uri != nullptr; ++map) add_namespace(map->uri, map->ns_id);
  }
  for (const auto& [prefix, uri] : state_->namespace_mappings) {
    state_->root_local.add_namespace(prefix.c_str(), add_namespace(uri.c_str()));
  }
}

void c_xml_reader::add_namespace_mapping(const std::string& prefix, const std::string& uri) {
  state_->namespace_mappings.emplace_back(prefix, uri);
}

bool c_xml_reader::peek_document(std::string_view* bytes) {
  return state_->namespace_mappings.empty() && current_local_->mappings() == nullptr &&
         state_->open_elements == 0 && state_->element_names.get_stack_size() == 0 &&
         tokeniser().peek_whole(bytes);
}

void c_xml_reader::take_document(const internal::WholeDocument& document) {
  for (const std::string& uri : *document.declared) add_namespace(uri.c_str());
  tokeniser().take_whole(document.bytes, document.mode);
  name.assign(document.name);
  value.assign(document.value);
  attribute_name.clear();
  state_->cracked_name.set_parts(document.last_name, document.last_name_ns_id);
  current_event_ = elxp_end_tag;
}

void internal::ElementDepthGuard::report() {
  reader_->tokeniser().getter().error(elmx_fatal, elmx_not_well_formed,
                                      "Elements nested too deeply");
}

// --- Readers of files and memory --------------------------------------------------------------

// The tokeniser only keeps the source's address until the first read.
c_xml_reader_file::c_xml_reader_file(const char* path) : c_xml_reader(file_), file_(path) {}

c_xml_reader_file::c_xml_reader_file(const wchar_t* path) : c_xml_reader(file_), file_(path) {}

c_xml_reader_file::c_xml_reader_file(std::FILE* file) : c_xml_reader(file_), file_(file) {}

c_xml_reader_file::~c_xml_reader_file() = default;

c_xml_reader_memory::c_xml_reader_memory(const char* data, std::size_t size)
    : c_xml_reader(memory_), memory_(data, size) {}

c_xml_reader_memory::~c_xml_reader_memory() = default;

// --- Peeking ----------------------------------------------------------------------------------

bool get_instance_namespace(c_xml_reader& reader, std::string* uri) {
  const c_xml_reader_local local(reader);
  elmx_error error = elmx_ok;
  reader.get_element_event(nullptr, &error, &reader.name);
  const bool is_element = reader.get_current_event() == elxp_name;
  if (is_element) reader.get_namespace(reader.name, uri);
  reader.rewind();
  return is_element && *uri != c_xml_reader::k_namespace_not_found;
}

namespace {

// Walks through a document with one scope a level, as reading code has, but in constant stack.
class MustUnderstandScan {
 public:
  MustUnderstandScan(c_xml_reader& reader, const std::string& ns_uri, const std::string& attribute,
                     elmx_must_understand (*callback)(const std::string&))
      : reader_(reader), ns_uri_(ns_uri), attribute_(attribute), callback_(callback) {}
  ~MustUnderstandScan() {
    while (!levels_.empty()) levels_.pop_back();
  }

  // Entered at the root's start tag, with its scope open.
  elmx_must_understand scan() {
    elmx_must_understand result = scan_start_tag();
    while (result == elmx_must_understand_false && !levels_.empty()) {
      Level& level = levels_.back();
      level.children.reset();  // the scope of one child ends before the next begins
      level.children = std::make_unique<c_xml_reader_local>(reader_);
      elmx_error error = elmx_ok;
      reader_.get_element_event(nullptr, &error, &reader_.name);
      if (error != elmx_ok) return elmx_must_understand_invalid;
      switch (reader_.get_current_event()) {
        case elxp_text:
          break;
        case elxp_name:
          result = scan_start_tag();
          break;
        case elxp_end_tag:
          if (reader_.name != level.name) return elmx_must_understand_invalid;
          levels_.pop_back();
          break;
        default:
          return elmx_must_understand_invalid;
      }
    }
    return result;
  }

 private:
  struct Level {
    std::string name;
    std::unique_ptr<c_xml_reader_local> children;
  };

  // Opens a level unless the element is empty.
  elmx_must_understand scan_start_tag() {
    std::string name = reader_.name;
    elmx_error error = elmx_ok;
    while (reader_.get_attribute_event(nullptr, &error, &reader_.attribute_name)) {
      if (reader_.get_current_event() != elxp_name) return elmx_must_understand_invalid;
      std::string uri;
      if (reader_.get_local_name() == attribute_) {
        reader_.get_namespace(reader_.attribute_name, &uri);
      }
      if (reader_.get_local_name() != attribute_ || uri != ns_uri_) {
        reader_.skip_attribute_value();
        continue;
      }
      if (!reader_.get_attribute_value(&reader_.value, elmx_preserve)) {
        return elmx_must_understand_invalid;
      }
      const elmx_must_understand answer = callback_(reader_.value);
      if (answer != elmx_must_understand_false) return answer;
    }
    if (reader_.get_current_event() != elxp_end_tag) {
      levels_.push_back({std::move(name), nullptr});
    }
    return elmx_must_understand_false;
  }

  c_xml_reader& reader_;
  const std::string& ns_uri_;
  const std::string& attribute_;
  elmx_must_understand (*callback_)(const std::string&);
  std::vector<Level> levels_;
};

}  // namespace

elmx_must_understand has_must_understand(c_xml_reader& reader, const std::string& ns_uri,
                                         const std::string& attribute,
                                         elmx_must_understand (*callback)(const std::string&)) {
  const c_xml_reader_local local(reader);
  elmx_error error = elmx_ok;
  reader.get_element_event(nullptr, &error, &reader.name);
  if (reader.get_current_event() != elxp_name) return elmx_must_understand_invalid;
  elmx_must_understand result;
  {
    MustUnderstandScan scan(reader, ns_uri, attribute, callback);
    result = scan.scan();
  }
  reader.rewind();
  return result;
}

}  // namespace lmx
