#include "lmx/tokeniser.h"

#include <cstring>
#include <string_view>

#include "lmx/internal/char_table.h"
#include "lmx/internal/runs.h"
#include "lmx/internal/tokeniser.h"

namespace lmx {

namespace {

using internal::byte_at;
using internal::has_mask;
using internal::pass_plain;
using internal::Tokeniser;
using internal::Window;

// Entities inside entities in an attribute value, where the call stack grows with them.
constexpr int k_max_expansion_depth = 64;
// A shorter name is scanned as fast as it is compared with a guess.
constexpr std::size_t k_long_name = 12;

constexpr char k_xmlns[] = "xmlns";
constexpr std::size_t k_xmlns_length = 5;

constexpr char k_not_well_formed_tag[] = "XML not Well-Formed";
constexpr char k_not_well_formed[] = "XML not well-formed";

bool is_quote(int c) { return c == '"' || c == '\''; }

// Passes text that is stored as it stands in the given mode.
const char* pass_plain_text(const Window& window, elmx_whitespace mode) {
  return pass_plain(
      window.at, window.end,
      mode == elmx_preserve ? internal::k_text_stop : internal::k_text_stop | internal::k_space);
}

// Does a start or end tag stand here, and no other markup?
bool is_tag_start(const char* p, const char* end) {
  return end - p >= 2 && p[0] == '<' && (p[1] == '/' || has_mask(p[1], internal::k_ascii_name));
}

// Does "</name>" stand here?
bool is_end_tag_of(const std::string& name, const char* p, const char* end) {
  const std::size_t length = name.size();
  return static_cast<std::size_t>(end - p) >= length + 3 && p[0] == '<' && p[1] == '/' &&
         p[length + 2] == '>' && internal::is_equal_short(p + 2, name.data(), length);
}

// After a carriage return, a line feed in any spelling is none of its own.
bool can_begin_run(const c_get_for_xml& getter, const Window& window) {
  return !getter.is_after_cr() || (*window.at != '\n' && byte_at(window.at) < 0x80);
}

std::string with_character(std::string text, int c) {
  if (c >= 0) text.push_back(static_cast<char>(c));
  return text;
}

std::size_t local_name_offset(const std::string& name) { return name.find(':') + 1; }

std::string_view prefix_of(const std::string& name) {
  const std::size_t local_at = local_name_offset(name);
  return std::string_view(name).substr(0, local_at == 0 ? 0 : local_at - 1);
}

}  // namespace

// --- Set-up and names -------------------------------------------------------------------------

Tokeniser::Tokeniser(c_read& source, c_error& error, bool treat_refs_as_ws)
    : getter_(source, error, treat_refs_as_ws), dtd_(getter_), last_long_tag_(64) {}

void Tokeniser::rewind() {
  namespaces_.clear();
  dtd_.reset();
  dtd_read_ = false;
  content_begun_ = false;
  attributes_.clear();
  ns_attributes_.clear();
  getter_.rewind();
}

int Tokeniser::get_ns_id(const c_xml_local* scope, const std::string& name) const {
  return scope != nullptr ? scope->find_namespace_id(prefix_of(name)) : k_ns_not_found;
}

bool Tokeniser::is_xsi_attribute(const c_xml_local* scope, const std::string& name) const {
  // A default namespace does not apply to attributes.
  return local_name_offset(name) != 0 && get_ns_id(scope, name) == k_ns_xsi;
}

bool Tokeniser::report_not_well_formed(const char* text) {
  getter_.error(elmx_error_level, elmx_not_well_formed, text);
  return false;
}

// --- Elements and text ------------------------------------------------------------------------

elxp_xml_event Tokeniser::get_element_name(c_xml_local* scope, std::string* name) {
  const elxp_xml_event event = take_tag_in_window(name);
  return event != elxp_unknown ? event : get_element_name_by_character(scope, name);
}

elxp_xml_event Tokeniser::get_element_name_by_character(c_xml_local* scope, std::string* name) {
  elxp_xml_event event = elxp_unknown;
  while (event == elxp_unknown) {
    name->clear();
    const int c = getter_.get_non_ws();
    if (c < 0) {
      content_begun_ = true;
      return elxp_end_of_input;
    }
    if (c == '<') {
      if (read_markup(scope, name, &event)) break;
      event = take_tag_in_window(name);  // the comment or instruction may be over there
      continue;
    }
    if (c == '&') {
      if (!expand_in_content(name)) return elxp_error;
      if (name->empty()) continue;  // the text is the input now
    } else {
      name->push_back(static_cast<char>(c));
    }
    return read_text(name);
  }
  return event;
}

// Passes the name of a tag, which is often the last long one again.
inline const char* Tokeniser::pass_tag_name(const char* at, const char* end) {
  const std::size_t guess = last_long_tag_.size();
  if (static_cast<std::size_t>(end - at) > guess && guess != 0 &&
      !has_mask(at[guess], internal::k_ascii_name) &&
      internal::is_equal_short(at, last_long_tag_.data(), guess)) {
    local_at_ = last_long_tag_local_at_;
    return at + guess;
  }
  const char* const name_end = pass_name(at, end, &local_at_);
  const std::size_t length = static_cast<std::size_t>(name_end - at);
  if (length >= k_long_name) {
    last_long_tag_.clear();
    last_long_tag_.append(at, length);
    last_long_tag_local_at_ = local_at_;
  }
  return name_end;
}

// A tag that stands whole in the window and holds nothing out of the ordinary. White space before
// it is passed in any case. elxp_unknown if there is no such tag.
elxp_xml_event Tokeniser::take_tag_in_window(std::string* name) {
  Window window;
  if (!getter_.open_window(&window) || !can_begin_run(getter_, window)) return elxp_unknown;
  const char* const end = window.end;
  int lines = 0;
  const char* const tag = pass_space(window.at, end, &lines);
  if (end - tag >= 4 && *tag == '<') {
    if (tag[1] == '/') {
      int tag_lines = lines;
      const char* const name_end = pass_tag_name(tag + 2, end);
      const char* const tag_end = pass_space(name_end, end, &tag_lines);
      if (name_end != tag + 2 && tag_end != end && *tag_end == '>') {
        internal::store(name, tag + 2, static_cast<std::size_t>(name_end - tag - 2));
        getter_.take_window(tag_end + 1, tag_lines);
        content_begun_ = true;
        return elxp_end_tag;
      }
    } else if (has_mask(tag[1], internal::k_ascii_name) && is_name_start(tag[1])) {
      const char* const name_end = pass_tag_name(tag + 1, end);
      int tag_lines = lines;
      attributes_.clear();
      ns_attributes_.clear();
      const char* tag_end = name_end;
      if (name_end == end || *name_end != '>') {
        tag_end = take_attributes_in_window(name_end, end, &tag_lines);
      }
      if (tag_end != nullptr) {
        internal::store(name, tag + 1, static_cast<std::size_t>(name_end - tag - 1));
        getter_.take_window(tag_end, tag_lines);
        content_begun_ = true;
        return elxp_name;
      }
    }
  }
  if (tag != window.at) getter_.take_window(tag, lines);
  return elxp_unknown;
}

// Entered after "<".
bool Tokeniser::read_markup(c_xml_local* scope, std::string* name, elxp_xml_event* event) {
  const int c = get();
  if (is_name_start(c)) {
    *event = read_start_tag(scope, name, c);
    return true;
  }
  switch (c) {
    case '/':
      *event = read_end_tag(name);
      return true;
    case '?':
      return read_instruction(event);
    case '!':
      return read_declaration(name, event);
    default:
      report_not_well_formed(k_not_well_formed_tag);
      getter_.move_to_start_tag_end(nullptr);
      *event = elxp_error;
      return true;
  }
}

elxp_xml_event Tokeniser::read_start_tag(c_xml_local* scope, std::string* name, int c) {
  for (; is_name_char(c); c = get()) name->push_back(static_cast<char>(c));
  if (c < 0) {
    report_not_well_formed(k_not_well_formed_tag);
    return elxp_error;
  }
  unget(c);
  local_at_ = local_name_offset(*name);
  if (!read_attributes(scope)) return elxp_error;
  content_begun_ = true;
  return elxp_name;
}

elxp_xml_event Tokeniser::read_end_tag(std::string* name) {
  int c = get();
  for (; is_name_char(c); c = get()) name->push_back(static_cast<char>(c));
  if (name->empty()) return elxp_error;
  while (is_space(c)) c = get();
  if (c != '>') {
    report_not_well_formed(k_not_well_formed_tag);
    return elxp_error;
  }
  content_begun_ = true;
  return elxp_end_tag;
}

// Entered after "<?". A target that merely begins with "xml" is taken for the declaration.
bool Tokeniser::read_instruction(elxp_xml_event* event) {
  *event = elxp_error;
  if (!getter_.read_specified_string_from_input("xml")) {
    // The input may end within; the next read sees that.
    getter_.skip_PI();
    return false;
  }
  if (content_begun_) {
    getter_.error(elmx_fatal, elmx_bad_xml_decl, "XML declaration not at start of document");
    return true;
  }
  return !getter_.read_xml_decl();
}

// Entered after "<!".
bool Tokeniser::read_declaration(std::string* name, elxp_xml_event* event) {
  *event = elxp_error;
  int c = get();
  if (c == '[') {
    name->clear();
    if (!read_cdata(name)) {
      report_not_well_formed(k_not_well_formed_tag);
      return true;
    }
    content_begun_ = true;
    *event = elxp_text;
    return true;
  }
  if (c == '-') {
    c = get();
    if (c == '-') return !getter_.skip_comment();
  } else if (c == 'D' && getter_.read_specified_string_from_input("OCTYPE")) {
    return !read_doctype();
  }
  getter_.move_to_start_tag_end(nullptr);
  return true;
}

bool Tokeniser::read_doctype() {
  if (content_begun_ || dtd_read_) {
    getter_.error(elmx_error_level, elmx_bad_dtd,
                  content_begun_ ? "Document Type Declaration not at start of document"
                                 : "Document Type Declaration already read");
    return false;
  }
  dtd_read_ = dtd_.read_doctype_decl();
  return dtd_read_;
}

// The first of the text is in `name`.
elxp_xml_event Tokeniser::read_text(std::string* name) {
  getter_.reset_ws_mode();
  while (!take_text_in_window(name)) {
    const int c = get();
    if (c < 0 || c == '<') {
      unget(c);
      break;
    }
    if (c != '&') {
      getter_.add_char_wsp(name, c, false);
    } else if (!expand_in_content(name)) {
      return elxp_error;
    }
  }
  content_begun_ = true;
  return elxp_text;
}

// Takes a run of text, if there is one in the window. True if a tag follows, which is left there.
bool Tokeniser::take_text_in_window(std::string* out) {
  Window window;
  if (!getter_.open_window(&window) || !can_begin_run(getter_, window)) return false;
  int lines = 0;
  const char* const stop = pass_run(window.at, window.end, internal::k_text_stop, &lines);
  if (stop != window.at) {
    getter_.add_run(out, window.at, stop);
    getter_.take_window(stop, lines);
  }
  return is_tag_start(stop, window.end);
}

// Entered after "<![".
bool Tokeniser::read_cdata(std::string* out) {
  if (!getter_.read_specified_string_from_input("CDATA[")) return false;
  std::size_t brackets = 0;
  while (true) {
    if (brackets == 0) getter_.take_up_to(']', out);
    const int c = get();
    if (c < 0) return false;
    if (c == ']') {
      ++brackets;
      continue;
    }
    if (c == '>' && brackets >= 2) {
      out->append(brackets - 2, ']');
      return true;
    }
    out->append(brackets, ']');
    brackets = 0;
    out->push_back(static_cast<char>(c));
  }
}

bool Tokeniser::get_element_value(std::string* value, elmx_whitespace mode, bool expand_entities) {
  getter_.set_ws_mode(mode);
  Window window;
  if (getter_.open_window(&window)) {
    const char* const stop = pass_plain_text(window, mode);
    if (is_tag_start(stop, window.end)) {
      internal::store(value, window.at, static_cast<std::size_t>(stop - window.at));
      if (stop != window.at) getter_.take_window(stop, 0);
      return true;
    }
  }
  value->clear();
  while (!take_text_in_window(value)) {
    int c = get();
    if (c < 0) {
      getter_.error(elmx_error_level, elmx_unexpected_end, "Premature end of file encountered");
      return false;
    }
    if (c == '&' && expand_entities) {
      if (!expand_in_content(value)) return false;
      continue;
    }
    if (c != '<') {
      getter_.add_char_wsp(value, c, false);
      continue;
    }
    c = get();
    if (c == '?') {
      getter_.skip_PI();
    } else if (c == '!') {
      c = get();
      const bool is_good = c == '['   ? read_cdata(value)
                           : c == '-' ? get() == '-' && getter_.skip_comment()
                                      : false;
      if (!is_good) return report_not_well_formed(k_not_well_formed);
    } else {
      unget(c);
      unget('<');
      return true;
    }
  }
  return true;
}

bool Tokeniser::take_simple_value(const std::string& name, elmx_whitespace mode,
                                  std::string* value) {
  Window window;
  if (!getter_.open_window(&window) || *window.at != '>') return false;
  ++window.at;
  const char* const stop = pass_plain_text(window, mode);
  if (!is_end_tag_of(name, stop, window.end)) return false;
  getter_.set_ws_mode(mode);
  internal::store(value, window.at, static_cast<std::size_t>(stop - window.at));
  getter_.take_window(stop + name.size() + 3, 0);
  return true;
}

bool Tokeniser::is_element_end_tag(const std::string& name) {
  Window window;
  if (getter_.open_window(&window) && is_end_tag_of(name, window.at, window.end)) {
    getter_.take_window(window.at + name.size() + 3, 0);
    return true;
  }
  if (getter_.get_non_ws() != '<' || get() != '/') return false;
  for (const char expected : name) {
    if (get() != static_cast<unsigned char>(expected)) return false;
  }
  return getter_.get_non_ws() == '>';
}

bool Tokeniser::skip_start_tag(bool* empty) {
  Window window;
  if (getter_.open_window(&window) && *window.at == '>') {
    getter_.take_window(window.at + 1, 0);
    if (empty != nullptr) *empty = false;
    return true;
  }
  return getter_.move_to_start_tag_end(empty);
}

// --- Attributes -------------------------------------------------------------------------------

// Reads the attributes from the end of the tag's name on and gives the place where they stop, at
// ">" or "/". Null, with nothing taken, if the tag holds anything that needs the long road; a
// namespace declaration is such a thing.
const char* Tokeniser::take_attributes_in_window(const char* at, const char* end, int* lines) {
  // Wherever a name ends, the character after it is read, pushed back and read again. A line end
  // there counts twice.
  const auto count_pushed_back = [&] {
    if (at != end && (*at == '\n' || *at == '\r')) ++*lines;
  };
  count_pushed_back();
  while (true) {
    at = pass_space(at, end, lines);
    if (at == end) return nullptr;
    if (*at == '>' || *at == '/') return at;
    if (byte_at(at) >= 0x80 || !is_name_start(*at)) return nullptr;

    const char* const name = at;
    std::size_t local_at = 0;
    at = pass_name(at, end, &local_at);
    const std::size_t name_length = static_cast<std::size_t>(at - name);
    if (name_length >= k_xmlns_length && std::memcmp(name, k_xmlns, k_xmlns_length) == 0) {
      return nullptr;
    }
    count_pushed_back();
    at = pass_space(at, end, lines);
    if (at == end || *at != '=') return nullptr;
    at = pass_space(at + 1, end, lines);
    if (at == end || !is_quote(*at)) return nullptr;

    const char* const value = at;
    at = pass_plain(at + 1, end, internal::k_value_stop);
    while (at != end && *at != *value) {
      const char* const stop = at;
      if (is_quote(*at)) ++at;
      at = pass_run(at, end, internal::k_value_stop, lines);
      if (at == stop) return nullptr;
    }
    if (at == end) return nullptr;
    attributes_.append({name, name_length}, local_at,
                       {value, static_cast<std::size_t>(at - value)});
    ++at;
  }
}

bool Tokeniser::read_attributes(c_xml_local* scope) {
  attributes_.clear();
  ns_attributes_.clear();
  int c = getter_.get_non_ws();
  bool is_good = true;
  while (is_good && is_name_start(c)) {
    is_good = read_attribute(scope, c);
    if (is_good) c = getter_.get_non_ws();
  }
  if (!is_good) return false;
  unget(c);
  return c >= 0;
}

// `c` is the first character of the name.
bool Tokeniser::read_attribute(c_xml_local* scope, int c) {
  std::size_t matched = 0;
  while (matched < k_xmlns_length && c == k_xmlns[matched]) {
    ++matched;
    c = get();
  }
  if (scope != nullptr && matched == k_xmlns_length && (c == ':' || !is_name_char(c))) {
    return read_namespace_declaration(scope, c);
  }
  for (std::size_t i = 0; i < matched; ++i) attributes_.push_back(k_xmlns[i]);
  for (; is_name_char(c); c = get()) attributes_.push_back(static_cast<char>(c));
  unget(c);
  attributes_.end_string();
  return read_value(&attributes_);
}

// `c` is the character after "xmlns".
bool Tokeniser::read_namespace_declaration(c_xml_local* scope, int c) {
  for (const char letter : std::string_view(k_xmlns)) ns_attributes_.push_back(letter);
  const std::size_t prefix_at = ns_attributes_.size() + (c == ':' ? 1 : 0);
  for (; is_name_char(c); c = get()) ns_attributes_.push_back(static_cast<char>(c));
  unget(c);
  ns_attributes_.end_string();
  const std::string prefix(ns_attributes_.last_from(prefix_at));
  const std::size_t value_at = ns_attributes_.size() + 1;  // after the quote
  if (!read_value(&ns_attributes_)) return false;

  std::string uri(ns_attributes_.last_from(value_at));
  int id = k_ns_none;
  if (!prefix.empty() || !uri.empty()) {
    if (uri.find('&') != std::string::npos) uri = expand_uri(uri);
    // Cut at the zero it would be another namespace.
    if (uri.find('\0') != std::string::npos) {
      getter_.error(elmx_error_level, elmx_bad_attribute_value, "Zero in a namespace name");
      return false;
    }
    id = namespaces_.add_namespace(uri.c_str());
  }
  scope->add_namespace(prefix.c_str(), id);
  return true;
}

std::string Tokeniser::expand_uri(const std::string& uri) {
  std::string expanded;
  for (std::size_t i = 0; i < uri.size();) {
    const char c = uri[i++];
    if (c == '&') {
      // An unknown name stays in the text as it was written.
      c_entity_name_reader_for_c_str reader(uri.c_str(), &i);
      expand_reference(reader, &expanded);
    } else {
      expanded.push_back(c);
    }
  }
  return expanded;
}

bool Tokeniser::read_value(internal::AttributeList* out) {
  int c = getter_.get_non_ws();
  if (c < 0) {
    getter_.error(elmx_fatal, elmx_unexpected_end, "Unexpected end of file");
    return false;
  }
  if (c != '=') return report_value("Schema is not Well Formed (expected '=', got '", c, "')");
  c = getter_.get_non_ws();
  if (is_quote(c)) {
    const int quote = c;
    out->push_back(static_cast<char>(quote));
    for (c = get(); c >= 0 && c != quote; c = get()) out->push_back(static_cast<char>(c));
    if (c == quote) {
      out->end_string();
      return true;
    }
  }
  return report_value("Schema is not Well Formed (expected '\"' or ''', got ", c, ")");
}

bool Tokeniser::report_value(const char* before, int c, const char* after) {
  getter_.error(elmx_fatal, elmx_not_well_formed, with_character(before, c) + after);
  return false;
}

elxp_xml_event Tokeniser::get_attribute_name(std::string* name, bool ends_with_question_mark) {
  if (attributes_.has_entry()) {
    const std::string_view entry = attributes_.rest();
    internal::store(name, entry.data(), entry.size());
    local_at_ = attributes_.local_at();
    attributes_.next();
    return elxp_name;
  }
  name->clear();
  Window window;
  if (getter_.open_window(&window) && *window.at == '>') {
    getter_.take_window(window.at + 1, 0);
    return elxp_start_tag_end;
  }
  const int c = getter_.get_non_ws();
  if (c == '>') return elxp_start_tag_end;
  if (c == (ends_with_question_mark ? '?' : '/') && getter_.get_non_ws() == '>') {
    return elxp_end_tag;
  }
  report_not_well_formed(k_not_well_formed);
  return elxp_error;
}

bool Tokeniser::get_attribute_value(std::string* value, elmx_whitespace mode) {
  getter_.set_ws_mode(mode);
  if (!attributes_.rest().empty()) attributes_.skip(1);  // the quote
  std::string_view rest = attributes_.rest();
  const char* const begin = rest.data();
  const char* const end = begin + rest.size();
  const char* const stop = pass_plain(begin, end, internal::k_plain_stop);
  if (stop == end) {
    internal::store(value, begin, rest.size());
    attributes_.next();
    return true;
  }
  value->clear();
  bool is_good = true;
  while (is_good && !rest.empty()) {
    const std::size_t run = std::min(rest.find('&'), rest.size());
    getter_.add_run(value, rest.data(), rest.data() + run);
    attributes_.skip(run);
    if (run < rest.size()) {
      attributes_.skip(1);
      c_entity_name_reader_for_attribute_data reader(attributes_);
      is_good = expand_reference(reader, value);
    }
    rest = attributes_.rest();
  }
  attributes_.next();
  return is_good && value->find('\0') == std::string::npos;
}

bool Tokeniser::skip_attribute_value() {
  attributes_.next();
  return true;
}

bool Tokeniser::get_named_attribute(const c_xml_local* scope, int ns_id,
                                    const std::string& local_name, std::string* value) {
  std::string name;
  bool is_found = false;
  bool is_good = false;
  while (!is_found && attributes_.has_entry()) {
    const std::string_view entry = attributes_.rest();
    name.assign(entry.data(), entry.size());
    attributes_.next();
    if (name.compare(local_name_offset(name), std::string::npos, local_name) == 0) {
      is_found = (local_name_offset(name) != 0 ? get_ns_id(scope, name) : k_ns_none) == ns_id;
    }
    if (is_found) {
      is_good = get_attribute_value(value, elmx_preserve);
    } else {
      attributes_.next();
    }
  }
  attributes_.rewind();
  return is_good;
}

bool Tokeniser::get_xsi_type(const c_xml_local* scope, int* ns_id, std::string* name) {
  std::string qualified;
  if (!get_named_attribute(scope, k_ns_xsi, "type", &qualified)) return false;
  *ns_id = c_cracked_name(scope, qualified).get_element_ns_id();
  c_xml::get_local_name(qualified, name);
  return true;
}

// --- References -------------------------------------------------------------------------------

// Entered after "&".
bool Tokeniser::expand_reference(c_entity_name_reader& reader, std::string* out) {
  int c = reader.get();
  if (c == '#') return getter_.insert_character_entity(reader, out);

  entity_name_.clear();
  for (; is_name_char(c); c = reader.get()) entity_name_.push_back(static_cast<char>(c));
  const bool has_semicolon = c == ';';
  if (!has_semicolon) reader.unget(c);

  if (const char character = internal::predefined_entity(entity_name_)) {
    out->push_back(character);
    return true;
  }
  const char* text = nullptr;
  if (getter_.get_general_entity(entity_name_.c_str(), &text)) {
    if (!reader.get_expand_into_input()) return expand_entity_text(text, out);
    // A refusal was fatal, and the input is at its end.
    getter_.set_input_entity_value(text);
    return true;
  }
  out->push_back('&');
  *out += entity_name_;
  if (has_semicolon) out->push_back(';');
  return false;
}

bool Tokeniser::expand_in_content(std::string* out) {
  c_entity_name_reader_for_c_get reader(getter_);
  reader.set_expand_into_input(true);
  return expand_reference(reader, out);
}

bool Tokeniser::expand_entity_text(const char* text, std::string* out) {
  if (expansion_depth_ == k_max_expansion_depth) {
    getter_.error(elmx_fatal, elmx_bad_dtd, "Entities nested too deeply");
    return false;
  }
  if (!getter_.count_expansion(text)) return false;

  struct Level {
    explicit Level(int* depth) : depth(depth) { ++*depth; }
    ~Level() { --*depth; }
    int* depth;
  } level(&expansion_depth_);
  for (const char* at = text; *at != '\0';) {
    const char c = *at++;
    if (c == '&' || c == '%') {
      c_entity_name_reader_for_entity reader(&at);
      if (!expand_reference(reader, out)) return false;
    } else {
      getter_.add_char_wsp(out, static_cast<unsigned char>(c), false);
    }
  }
  return true;
}

// --- The face ---------------------------------------------------------------------------------

c_xml::c_xml(c_read& source, c_error& error, bool treat_refs_as_ws)
    : tokeniser_(std::make_unique<Tokeniser>(source, error, treat_refs_as_ws)) {}

c_xml::~c_xml() = default;

elxp_xml_event c_xml::get_element_name(c_xml_local* scope, std::string* name) {
  return tokeniser_->get_element_name(scope, name);
}

elxp_xml_event c_xml::get_attribute_name(std::string* name, bool ends_with_question_mark) {
  return tokeniser_->get_attribute_name(name, ends_with_question_mark);
}

bool c_xml::get_attribute_value(std::string* value, elmx_whitespace mode) {
  return tokeniser_->get_attribute_value(value, mode);
}

bool c_xml::skip_attribute_value() { return tokeniser_->skip_attribute_value(); }

bool c_xml::get_named_attribute(const c_xml_local* scope, int ns_id, const std::string& local_name,
                                std::string* value) {
  return tokeniser_->get_named_attribute(scope, ns_id, local_name, value);
}

bool c_xml::get_xsi_type(const c_xml_local* scope, int* ns_id, std::string* name) {
  return tokeniser_->get_xsi_type(scope, ns_id, name);
}

bool c_xml::is_xsi_attribute(const c_xml_local* scope, const std::string& name) const {
  return tokeniser_->is_xsi_attribute(scope, name);
}

int c_xml::get_ns_id(const c_xml_local* scope, const std::string& name) const {
  return tokeniser_->get_ns_id(scope, name);
}

bool c_xml::get_element_value(std::string* value, elmx_whitespace mode, bool expand_entities) {
  return tokeniser_->get_element_value(value, mode, expand_entities);
}

bool c_xml::is_element_end_tag(const std::string& name) {
  return tokeniser_->is_element_end_tag(name);
}

bool c_xml::skip_start_tag(bool* empty) { return tokeniser_->skip_start_tag(empty); }

bool c_xml::skip_rest_of_element(const std::string& name) {
  return tokeniser_->skip_rest_of_element(name);
}

bool c_xml::skip_rest_of_empty_element(const std::string& name) {
  return tokeniser_->skip_rest_of_empty_element(name);
}

bool c_xml::skip_element_body(const std::string& name) {
  return tokeniser_->skip_element_body(name);
}

bool c_xml::get_any_element(const std::string& name, std::string* value, elmx_whitespace mode,
                            bool expand_entities) {
  return tokeniser_->get_any_element(name, value, mode, expand_entities);
}

bool c_xml::get_any_element(const c_xml_local& scope, const std::string& name, std::string* value) {
  return tokeniser_->get_any_element(scope, name, value);
}

bool c_xml::get_nested_element_value(std::string* value, std::string* end_name,
                                     elmx_whitespace mode, bool expand_entities) {
  return tokeniser_->get_nested_element_value(value, end_name, mode, expand_entities);
}

void c_xml::rewind() { tokeniser_->rewind(); }

int c_xml::get_line_num() const { return tokeniser_->getter().get_line_num(); }

std::uint64_t c_xml::bytes_read() const { return tokeniser_->getter().bytes_read(); }

const char* c_xml::get_source_id() const { return tokeniser_->getter().get_source_id(); }

void c_xml::add_general_entity(const std::string& name, const std::string& text) {
  tokeniser_->getter().add_general_entity(name.c_str(), text.c_str());
}

void c_xml::add_parameter_entity(const std::string& name, const std::string& text) {
  tokeniser_->getter().add_parameter_entity(name.c_str(), text.c_str());
}

int c_xml::add_namespace(const char* uri) { return tokeniser_->namespaces().add_namespace(uri); }

void c_xml::add_namespace(const char* uri, int id) {
  tokeniser_->namespaces().add_namespace(uri, id);
}

int c_xml::find_enumerated_namespace(const std::string& uri) const {
  return tokeniser().namespaces().find_namespace(uri);
}

const char* c_xml::find_namespace_from_id(int id) const {
  return tokeniser().namespaces().find_namespace_from_id(id);
}

void c_xml::get_local_name(const std::string& name, std::string* out) {
  *out = name.substr(local_name_offset(name));
}

void c_xml::get_namespace_prefix(const std::string& name, std::string* out) {
  *out = std::string(prefix_of(name));
}

}  // namespace lmx
