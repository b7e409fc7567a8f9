// Content that nobody asks about: skipping it, and copying it back into text. Both are loops, so
// that the depth of a document costs memory and no stack.
#include <string>
#include <string_view>
#include <vector>

#include "lmx/internal/byte_buffer.h"
#include "lmx/internal/char_table.h"
#include "lmx/tokeniser.h"

namespace lmx {

namespace {

using internal::is_name_char;
using internal::is_space;

// The names of open elements while a loop walks through their content.
class OpenNames {
 public:
  explicit OpenNames(std::string_view name) : names_(0) { push(name); }

  bool empty() const { return offsets_.empty(); }
  void push(std::string_view name) {
    offsets_.push_back(names_.size());
    names_.append(name);
  }
  std::string_view top() const {
    return {names_.data() + offsets_.back(), names_.size() - offsets_.back()};
  }
  void pop() {
    names_.truncate(offsets_.back());
    offsets_.pop_back();
  }

 private:
  internal::ByteBuffer names_;
  std::vector<std::size_t> offsets_;
};

}  // namespace

// --- Skipping -----------------------------------------------------------------------------------

bool c_xml::skip_rest_of_element(const std::string& name) {
  bool empty = false;
  return skip_start_tag(&empty) && (empty || skip_element_body(name));
}

bool c_xml::skip_rest_of_empty_element(const std::string& name) {
  bool empty = false;
  return skip_start_tag(&empty) && (empty || is_element_end_tag(name));
}

bool c_xml::skip_element_body(const std::string& name) {
  OpenNames open(name);
  c_xml_local scope;  // takes the declarations, which nobody will ask for
  std::string token;
  bool empty = false;
  while (true) {
    scope.clear();
    switch (get_element_name(&scope, &token)) {
      case elxp_text:
        break;
      case elxp_name:
        if (!skip_start_tag(&empty)) return false;
        if (!empty) open.push(token);
        break;
      case elxp_end_tag:
        if (token != open.top()) {
          getter_.error(elmx_error_level, elmx_not_well_formed,
                        "Element start tag (" + std::string(open.top()) + ") and end tag (" +
                            token + ") do not match");
          return false;
        }
        open.pop();
        if (open.empty()) return true;
        break;
      default:
        return false;
    }
  }
}

// --- Copying ------------------------------------------------------------------------------------

c_xml::NestedToken c_xml::next_nested_token(std::string* text, std::string* name,
                                            bool expand_entities) {
  text->clear();
  name->clear();
  int c = get();
  for (; is_space(c); c = get()) getter_.add_char_wsp(text, c, false);
  if (c < 0) return NestedToken::error;
  if (c != '<') {
    for (; c >= 0 && c != '<'; c = get()) {
      if (c != '&' || !expand_entities) {
        getter_.add_char_wsp(text, c, false);
      } else if (!expand_in_content(text)) {
        return NestedToken::error;
      }
    }
    unget(c);
    return NestedToken::text;
  }
  c = get();
  if (c == '?') return getter_.skip_PI() ? NestedToken::text : NestedToken::error;
  if (c == '!') {
    c = get();
    if (c == '-') {
      return get() == '-' && getter_.skip_comment() ? NestedToken::text : NestedToken::error;
    }
    if (c != '[') return NestedToken::error;
    *text += "<![CDATA[";
    if (!read_cdata(text)) return NestedToken::error;
    *text += "]]>";
    return NestedToken::text;
  }
  if (c == '/') {
    for (c = get(); is_name_char(c); c = get()) name->push_back(static_cast<char>(c));
    while (is_space(c)) c = get();
    return c == '>' ? NestedToken::end_tag : NestedToken::error;
  }
  if (c < 0 || is_space(c)) return NestedToken::error;
  for (; is_name_char(c); c = get()) name->push_back(static_cast<char>(c));
  unget(c);
  return NestedToken::start_tag;
}

// The attributes that were read ahead first, and then what is left of the tag.
bool c_xml::copy_start_tag(const std::string& name, std::string* out, bool* empty) {
  *out += '<';
  *out += name;
  for (internal::AttributeList* const list : {&ns_attributes_, &attributes_}) {
    list->rewind();
    while (list->has_entry()) {
      *out += ' ';
      *out += list->rest();
      list->next();
      const std::string_view value = list->rest();
      *out += '=';
      *out += value;
      if (!value.empty()) *out += value.front();
      list->next();
    }
    list->clear();
  }
  int quote = 0;
  for (int c = get(); c >= 0; c = get()) {
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>' || c == '/') {
      *empty = c == '/';
      if (*empty) {
        *out += '/';
        while (c >= 0 && c != '>') c = get();
      }
      *out += '>';
      return c == '>';
    }
    out->push_back(static_cast<char>(c));
  }
  return false;
}

bool c_xml::copy_element(const std::string& name, std::string* out, bool expand_entities) {
  bool empty = false;
  if (!copy_start_tag(name, out, &empty)) return false;
  if (empty) return true;
  OpenNames open(name);
  std::string text;
  std::string tag;
  while (!open.empty()) {
    const NestedToken token = next_nested_token(&text, &tag, expand_entities);
    if (token == NestedToken::error) return false;
    *out += text;
    if (token == NestedToken::start_tag) {
      if (!copy_start_tag(tag, out, &empty)) return false;
      if (!empty) open.push(tag);
    } else if (token == NestedToken::end_tag) {
      if (tag != open.top()) return false;
      *out += "</";
      *out += tag;
      *out += '>';
      open.pop();
    }
  }
  return true;
}

bool c_xml::get_any_element(const std::string& name, std::string* value, elmx_whitespace mode,
                            bool expand_entities) {
  value->clear();
  getter_.set_ws_mode(mode);
  return copy_element(name, value, expand_entities);
}

bool c_xml::get_nested_element_value(std::string* value, std::string* end_name,
                                     elmx_whitespace mode, bool expand_entities) {
  value->clear();
  end_name->clear();
  attributes_.clear();
  ns_attributes_.clear();
  getter_.set_ws_mode(mode);
  std::string text;
  std::string tag;
  while (true) {
    const NestedToken token = next_nested_token(&text, &tag, expand_entities);
    if (token == NestedToken::error) return false;
    *value += text;
    if (token == NestedToken::start_tag) {
      if (!copy_element(tag, value, expand_entities)) return false;
    } else if (token == NestedToken::end_tag) {
      *end_name = tag;
      return true;
    }
  }
}

}  // namespace lmx
