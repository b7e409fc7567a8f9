// Content that nobody asks about: skipping it, and copying it back into text. Both are loops, so
// that the depth of a document costs memory and no stack.
#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "lmx/internal/byte_buffer.h"
#include "lmx/internal/char_table.h"
#include "lmx/internal/tokeniser.h"

namespace lmx {

namespace {

using internal::Tokeniser;

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

std::string_view prefix_of(std::string_view name) {
  const std::size_t colon = name.find(':');
  return name.substr(0, colon == std::string_view::npos ? 0 : colon);
}

// Which prefixes are declared around the place of a walk, and which were used where none was.
class Prefixes {
 public:
  void open_element() { levels_.push_back(declared_.size()); }
  void close_element() {
    for (; declared_.size() > levels_.back(); declared_.pop_back()) --declared_.back()->second;
    levels_.pop_back();
  }
  void declare(std::string_view prefix) {
    declared_.push_back(counts_.try_emplace(std::string(prefix), 0).first);
    ++declared_.back()->second;
  }
  void use(std::string_view prefix) {
    const auto found = counts_.find(prefix);
    if (found != counts_.end() && found->second != 0) return;
    if (missing_.find(prefix) == missing_.end()) missing_.emplace(prefix);
  }
  const std::set<std::string, std::less<>>& missing() const { return missing_; }

 private:
  using Counts = std::map<std::string, int, std::less<>>;

  Counts counts_;  // of the open elements that declare a prefix
  std::vector<Counts::iterator> declared_;
  std::vector<std::size_t> levels_;
  std::set<std::string, std::less<>> missing_;
};

void append_escaped(std::string* out, char c, char quote) {
  const bool is_content = quote == '\0';
  switch (c) {
    case '<':
      *out += "&lt;";
      return;
    case '&':
      *out += "&amp;";
      return;
    case '>':
      *out += is_content ? "&gt;" : ">";
      return;
    case '"':
    case '\'':
      if (c == quote) {
        *out += c == '"' ? "&quot;" : "&apos;";
        return;
      }
      break;
    case '\t':
    case '\n':
      if (is_content) break;
      [[fallthrough]];
    default:
      if (static_cast<unsigned char>(c) >= ' ') break;
      out->append("&#").append(std::to_string(c)).append(";");
      return;
  }
  out->push_back(c);
}

// Spells the characters from an offset on so that they are read as the same characters again,
// between these quotes or, for a zero, in content.
void escape_from(std::string* text, std::size_t offset, char quote) {
  const std::string characters = text->substr(offset);
  text->resize(offset);
  for (const char c : characters) append_escaped(text, c, quote);
}

}  // namespace

// --- Skipping -----------------------------------------------------------------------------------

bool Tokeniser::skip_rest_of_element(const std::string& name) {
  bool empty = false;
  return skip_start_tag(&empty) && (empty || skip_element_body(name));
}

bool Tokeniser::skip_rest_of_empty_element(const std::string& name) {
  bool empty = false;
  return skip_start_tag(&empty) && (empty || is_element_end_tag(name));
}

bool Tokeniser::skip_element_body(const std::string& name) {
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

// Copies markup back into text: to the letter, or so that the text stands by itself. Then it has no
// references but those to characters, and says itself what its prefixes mean.
class Tokeniser::Copy {
 public:
  Copy(Tokeniser& xml, std::string* out, elmx_whitespace mode, bool expands,
       const c_xml_local* scope = nullptr)
      : xml_(xml), out_(*out), mode_(mode), expands_(expands), scope_(scope) {
    out_.clear();
    xml_.getter_.set_ws_mode(mode);
  }

  // Entered with the attributes read ahead.
  bool element(const std::string& name) {
    const std::size_t start = out_.size();
    bool empty = false;
    if (!start_tag(name, &empty)) return false;
    if (!empty) {
      OpenNames open(name);
      while (!open.empty()) {
        switch (next()) {
          case Token::text:
            break;
          case Token::start_tag:
            if (!nested_start_tag(&empty)) return false;
            if (!empty) open.push(tag_);
            break;
          case Token::end_tag:
            if (tag_ != open.top()) return false;
            out_.append("</").append(tag_).push_back('>');
            if (expands_) prefixes_.close_element();
            open.pop();
            break;
          case Token::error:
            return false;
        }
      }
    }
    if (scope_ != nullptr) out_.insert(start + 1 + name.size(), declarations());
    return true;
  }

  // Up to an end tag, which is not copied.
  bool content(std::string* end_name) {
    while (true) {
      switch (next()) {
        case Token::text:
          break;
        case Token::start_tag: {
          const std::string name = tag_;
          if ((expands_ && !xml_.read_attributes(nullptr)) || !element(name)) return false;
          break;
        }
        case Token::end_tag:
          *end_name = tag_;
          return true;
        case Token::error:
          return false;
      }
    }
  }

 private:
  enum class Token { text, start_tag, end_tag, error };

  int get() { return xml_.get(); }

  // Text goes to the copy, the name of a tag to tag_.
  Token next() {
    text_.clear();
    tag_.clear();
    const Token token = read_token();
    if (token != Token::error) out_ += text_;
    return token;
  }

  Token read_token() {
    int c = get();
    for (; is_space(c); c = get()) add_text(c);
    if (c < 0) return Token::error;
    if (c != '<') {
      for (; c >= 0 && c != '<'; c = get()) {
        if (c != '&' || !expands_) {
          add_text(c);
        } else {
          const std::size_t offset = text_.size();
          if (!xml_.expand_in_content(&text_)) return Token::error;
          escape_from(&text_, offset, '\0');
        }
      }
      xml_.unget(c);
      return Token::text;
    }
    c = get();
    if (c == '?') return xml_.getter_.skip_PI() ? Token::text : Token::error;
    if (c == '!') return read_declaration();
    if (c == '/') {
      for (c = get(); is_name_char(c); c = get()) tag_.push_back(static_cast<char>(c));
      while (is_space(c)) c = get();
      return c == '>' ? Token::end_tag : Token::error;
    }
    if (expands_ ? !is_name_start(c) : c < 0 || is_space(c)) return Token::error;
    for (; is_name_char(c); c = get()) tag_.push_back(static_cast<char>(c));
    xml_.unget(c);
    return Token::start_tag;
  }

  // Entered after "<!". A section is copied in its source form.
  Token read_declaration() {
    const int c = get();
    if (c == '-') {
      return get() == '-' && xml_.getter_.skip_comment() ? Token::text : Token::error;
    }
    if (c != '[') return Token::error;
    text_ += "<![CDATA[";
    if (!xml_.read_cdata(&text_)) return Token::error;
    text_ += "]]>";
    return Token::text;
  }

  void add_text(int c) {
    xml_.getter_.add_char_wsp(&text_, c, false);
    if (!expands_ || text_.empty()) return;
    // A carriage return here is one of an entity's text, and would be read as a line feed.
    const std::size_t last = text_.size() - 1;
    const bool may_end_section = text_[last] == '>' && (last == 0 || text_[last - 1] == ']');
    if (text_[last] == '\r' || may_end_section) escape_from(&text_, last, '\0');
  }

  bool nested_start_tag(bool* empty) {
    return (!expands_ || xml_.read_attributes(nullptr)) && start_tag(tag_, empty);
  }

  // The attributes that were read ahead first, and then what is left of the tag.
  bool start_tag(const std::string& name, bool* empty) {
    out_.append("<").append(name);
    if (!expands_) {
      for (AttributeList* const list : {&xml_.ns_attributes_, &xml_.attributes_}) {
        copy_attributes(*list);
      }
      return copy_rest_of_tag(empty);
    }
    xml_.getter_.set_ws_mode(elmx_preserve);
    prefixes_.open_element();
    for (AttributeList* const list : {&xml_.ns_attributes_, &xml_.attributes_}) {
      declare_prefixes(*list);
    }
    prefixes_.use(prefix_of(name));
    for (AttributeList* const list : {&xml_.ns_attributes_, &xml_.attributes_}) {
      if (!expand_attributes(*list)) return false;
    }
    xml_.getter_.set_ws_mode(mode_);
    if (!xml_.getter_.move_to_start_tag_end(empty)) return false;
    out_ += *empty ? "/>" : ">";
    if (*empty) prefixes_.close_element();
    return true;
  }

  void copy_attributes(AttributeList& list) {
    for (list.rewind(); list.has_entry(); list.next()) {
      out_.append(" ").append(list.rest());
      list.next();
      const std::string_view value = list.rest();
      out_.append("=").append(value).append(value.substr(0, 1));
    }
    list.clear();
  }

  bool copy_rest_of_tag(bool* empty) {
    int quote = 0;
    for (int c = get(); c >= 0; c = get()) {
      if (quote != 0) {
        if (c == quote) quote = 0;
      } else if (c == '"' || c == '\'') {
        quote = c;
      } else if (c == '>' || c == '/') {
        *empty = c == '/';
        if (*empty) {
          out_ += '/';
          while (c >= 0 && c != '>') c = get();
        }
        out_ += '>';
        return c == '>';
      }
      out_.push_back(static_cast<char>(c));
    }
    return false;
  }

  void declare_prefixes(AttributeList& list) {
    for (list.rewind(); list.has_entry(); list.next()) {
      const std::string_view name = list.rest();
      if (name == "xmlns") prefixes_.declare("");
      if (prefix_of(name) == "xmlns") prefixes_.declare(name.substr(6));
      list.next();
    }
  }

  bool expand_attributes(AttributeList& list) {
    for (list.rewind(); list.has_entry(); list.next()) {
      const std::string_view name = list.rest();
      const std::string_view prefix = prefix_of(name);
      if (!prefix.empty()) prefixes_.use(prefix);
      out_.append(" ").append(name).append("=");
      list.next();
      const std::size_t value_at = out_.size() + 1;
      if (!expand_value(list)) return false;
      // It may be a qualified name, as that of a type is.
      const std::string_view first = prefix_of(std::string_view(out_).substr(value_at));
      if (!first.empty() && std::all_of(first.begin(), first.end(), [](char c) {
            return internal::has_mask(c, internal::k_name);
          })) {
        prefixes_.use(first);
      }
    }
    list.clear();
    return true;
  }

  // False if a reference failed or a zero stands in the value, as for whoever reads it.
  bool expand_value(AttributeList& list) {
    const char quote = list.rest().front();
    out_.push_back(quote);
    list.skip(1);
    for (std::string_view rest = list.rest(); !rest.empty(); rest = list.rest()) {
      const char c = rest.front();
      list.skip(1);
      const std::size_t offset = out_.size();
      if (c == '\0') return false;
      if (c != '&') {
        out_.push_back(c);
        if (c == '<') escape_from(&out_, offset, quote);
        continue;
      }
      c_entity_name_reader_for_attribute_data reader(list);
      if (!xml_.expand_reference(reader, &out_)) return false;
      if (out_.find('\0', offset) != std::string::npos) return false;
      escape_from(&out_, offset, quote);
    }
    out_.push_back(quote);
    return true;
  }

  // For the first tag: of the prefixes that are used and declared only around the element.
  std::string declarations() const {
    std::string result;
    for (const std::string& prefix : prefixes_.missing()) {
      const int id = scope_->find_namespace_id(prefix);
      const char* const uri = xml_.namespaces().find_namespace_from_id(id);
      if (uri == nullptr || id == k_ns_xml) continue;
      result.append(" xmlns").append(prefix.empty() ? "" : ":").append(prefix).append("=\"");
      const std::size_t offset = result.size();
      result.append(uri);
      escape_from(&result, offset, '"');
      result.push_back('"');
    }
    return result;
  }

  Tokeniser& xml_;
  std::string& out_;
  const elmx_whitespace mode_;
  const bool expands_;
  const c_xml_local* const scope_;
  std::string text_;
  std::string tag_;
  Prefixes prefixes_;
};

bool Tokeniser::get_any_element(const std::string& name, std::string* value, elmx_whitespace mode,
                                bool expand_entities) {
  return Copy(*this, value, mode, expand_entities).element(name);
}

bool Tokeniser::get_any_element(const c_xml_local& scope, const std::string& name,
                                std::string* value) {
  return Copy(*this, value, elmx_preserve, true, &scope).element(name);
}

bool Tokeniser::get_nested_element_value(std::string* value, std::string* end_name,
                                         elmx_whitespace mode, bool expand_entities) {
  end_name->clear();
  attributes_.clear();
  ns_attributes_.clear();
  return Copy(*this, value, mode, expand_entities).content(end_name);
}

}  // namespace lmx
