#include "lmx/entities.h"

#include <cstring>

#include "lmx/internal/byte_buffer.h"
#include "lmx/internal/char_table.h"
#include "lmx/tokeniser.h"

namespace lmx {

namespace {

// An expansion is hostile when it exceeds both: a plain size, and a multiple of the input that
// made it.
constexpr std::uint64_t k_harmless_expansion = 8u << 20;
constexpr std::uint64_t k_max_expansion_factor = 100;

}  // namespace

// --- The getter -------------------------------------------------------------------------------

int c_get_with_entities::get_from_stack() {
  while (stack_.back().unget.empty() && *stack_.back().at == '\0') {
    open_texts_.erase(stack_.back().start);
    stack_.pop_back();
    if (stack_.empty()) {
      retired_.clear();
      return c_get_as_utf8::get();
    }
  }
  Input& top = stack_.back();
  return top.unget.empty() ? static_cast<unsigned char>(*top.at++) : top.unget.get();
}

void c_get_with_entities::unget(int value) {
  if (stack_.empty()) {
    c_get_as_utf8::unget(value);
  } else {
    stack_.back().unget.unget(value);
  }
}

void c_get_with_entities::add(c_repository<const char*>* repository, const char* name,
                              const char* text) {
  const char* displaced = nullptr;
  repository->add(name, text, stack_.empty() ? nullptr : &displaced);
  if (displaced != nullptr) retired_.emplace_back(displaced);
}

void c_get_with_entities::add_general_entity(const char* name, const char* text) {
  add(&general_, name, text);
}

void c_get_with_entities::add_parameter_entity(const char* name, const char* text) {
  add(&parameter_, name, text);
}

bool c_get_with_entities::set_input_entity_value(const char* text) {
  if (open_texts_.count(text) != 0) {
    error(elmx_fatal, elmx_bad_dtd, std::string("Recursive entity definition for: ") + text);
    return false;
  }
  // What is left of the open entities still flows after a fatal report, but it brings in no more.
  if (get_error_handler().is_fatal_errored() || !count_expansion(text)) return false;
  open_texts_.insert(text);
  stack_.push_back({text, text, {}});
  leave_plain_state();
  return true;
}

bool c_get_with_entities::count_expansion(const char* text) {
  expanded_ += std::strlen(text);
  if (expanded_ <= k_harmless_expansion || expanded_ <= k_max_expansion_factor * bytes_read()) {
    return true;
  }
  error(elmx_fatal, elmx_bad_dtd, "Entities expand to too much text");
  return false;
}

void c_get_with_entities::rewind() {
  stack_.clear();
  open_texts_.clear();
  retired_.clear();
  general_.clear();
  parameter_.clear();
  expanded_ = 0;
  c_get_as_utf8::rewind();
}

// --- Where a reference can stand --------------------------------------------------------------

c_entity_name_reader::~c_entity_name_reader() = default;

int c_entity_name_reader_for_c_get::get() { return getter_->get(); }

void c_entity_name_reader_for_c_get::unget(int value) { getter_->unget(value); }

int c_entity_name_reader_for_entity::get() {
  return **at_ == '\0' ? -1 : static_cast<unsigned char>(*(*at_)++);
}

void c_entity_name_reader_for_entity::unget(int value) {
  if (value != -1 && *at_ != start_) --*at_;
}

int c_entity_name_reader_for_c_str::get() {
  return text_[*index_] == '\0' ? -1 : static_cast<unsigned char>(text_[(*index_)++]);
}

void c_entity_name_reader_for_c_str::unget(int value) {
  if (value != -1 && *index_ > 0) --*index_;
}

int c_entity_name_reader_for_attribute_data::get() { return list_->get(); }

void c_entity_name_reader_for_attribute_data::unget(int value) { list_->unget(value); }

// --- The words of a DTD -----------------------------------------------------------------------

int c_dtd_util::get() { return getter_->get(); }

void c_dtd_util::unget(int value) { getter_->unget(value); }

bool c_dtd_util::get_entity_value(std::string* out) {
  int c = getter_->get_non_ws();
  if (c < 0) return false;
  for (; c >= 0 && !internal::is_space(c) && c != '>'; c = get()) {
    if (c != '%') {
      out->push_back(static_cast<char>(c));
    } else if (!select_parameter_entity()) {
      return false;
    }
  }
  unget(c);
  return true;
}

bool c_dtd_util::get_quoted_entity_value(std::string* out) {
  const int quote = getter_->get_non_ws();
  if (quote != '"' && quote != '\'') return false;
  out->clear();
  const unsigned int depth = getter_->get_entity_stack_depth();
  for (int c = get(); c >= 0; c = get()) {
    if (c == quote && getter_->get_entity_stack_depth() == depth) return true;
    if (c == '%') {
      if (!select_parameter_entity()) return false;
    } else if (c != '&') {
      out->push_back(static_cast<char>(c));
    } else if (const int next = get(); next == '#') {
      c_entity_name_reader_for_c_get reader(*getter_);
      if (!getter_->insert_character_entity(reader, out)) return false;
    } else {
      // A reference to a general entity waits for its time of use.
      out->push_back('&');
      if (next < 0) return true;
      out->push_back(static_cast<char>(next));
    }
  }
  return true;
}

bool c_dtd_util::select_parameter_entity() {
  std::string name;
  int c = get();
  for (; internal::is_name_char(c); c = get()) name.push_back(static_cast<char>(c));
  if (c != ';') unget(c);
  const char* text = nullptr;
  if (getter_->get_parameter_entity(name.c_str(), &text)) {
    return getter_->set_input_entity_value(text);
  }
  getter_->error(elmx_error_level, elmx_entity_not_found, "Entity '%" + name + "' not found");
  return true;
}

// --- The internal subset ----------------------------------------------------------------------

int c_internal_dtd::get_non_space() { return getter().get_non_ws(); }

bool c_internal_dtd::report(const char* before, int c) {
  std::string text = before;
  if (c >= 0) text.push_back(static_cast<char>(c));
  getter().error(elmx_fatal, elmx_bad_dtd, text + ")");
  return false;
}

bool c_internal_dtd::read_doctype_decl() {
  int c = get();
  while (c >= 0 && c != '[' && c != '>') c = get();
  return c == '[' ? read_internal_subset() : c == '>';
}

bool c_internal_dtd::read_internal_subset() {
  while (true) {
    int c = get_non_space();
    switch (c) {
      case '<':
        if (!read_declaration()) return false;
        break;
      case '%':
        if (!select_parameter_entity()) return false;
        break;
      case ']':
        c = get_non_space();
        return c == '>' || report("DTD not Well Formed (expected '>', got ", c);
      default:
        return report("DTD not Well Formed (got ", c);
    }
  }
}

bool c_internal_dtd::read_declaration() {
  std::string word;
  while (word != "!--") {
    const int c = get();
    if (c < 0 || internal::is_space(c) || c == '[' || c == '>') {
      unget(c);
      break;
    }
    word.push_back(static_cast<char>(c));
  }
  if (word == "!--") return getter().skip_comment();
  if (word == "!ENTITY") return read_entity_declaration();
  if (word[0] == '?') {
    // The word of "<?p?>" is all there is of it.
    if (word.size() >= 2 && word.back() == '?') {
      const int c = get();
      if (c == '>') return true;
      unget(c);
    }
    return getter().skip_PI();
  }
  return skip_declaration();
}

bool c_internal_dtd::read_entity_declaration() {
  int c = get_non_space();
  const bool is_parameter = c == '%';
  if (!is_parameter) unget(c);
  std::string name;
  if (!get_entity_value(&name)) return false;

  c = get_non_space();
  unget(c);
  std::string text;
  if (c == '"' || c == '\'') {
    if (!get_quoted_entity_value(&text)) return false;
  } else {
    if (!get_entity_value(&text)) return false;
    if (text == "SYSTEM" || text == "PUBLIC") {
      getter().error(elmx_warning, elmx_external_entity,
                     "External Entity definitions not supported");
    } else {
      getter().error(elmx_error_level, elmx_unexpected_entity,
                     "Unexpected value in Entity definition: " + text);
    }
  }
  // Both would be cut at a zero.
  if (name.find('\0') != std::string::npos || text.find('\0') != std::string::npos) return false;
  if (is_parameter) {
    getter().add_parameter_entity(name.c_str(), text.c_str());
  } else {
    getter().add_general_entity(name.c_str(), text.c_str());
  }
  return skip_declaration();
}

// Reads up to a ">" outside quotes.
bool c_internal_dtd::skip_declaration() {
  int quote = 0;
  for (int c = get(); c >= 0; c = get()) {
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return true;
    }
  }
  return false;
}

char internal::predefined_entity(std::string_view name) {
  static constexpr struct {
    std::string_view name;
    char character;
  } k_predefined[] = {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"apos", '\''}, {"quot", '"'}};
  for (const auto& entity : k_predefined) {
    if (name == entity.name) return entity.character;
  }
  return '\0';
}

}  // namespace lmx
