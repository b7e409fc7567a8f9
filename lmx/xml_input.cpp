// The getter with the XML-aware character tools. Long passages are taken out of the window, all
// else goes one character at a time.
#include <string>

#include "lmx/internal/char_table.h"
#include "lmx/internal/runs.h"
#include "lmx/tokeniser.h"

namespace lmx {

namespace {

using internal::has_mask;
using internal::is_space;

// Character references end below the top of Unicode.
constexpr unsigned k_max_reference = 0x100000;

bool is_quote(int c) { return c == '"' || c == '\''; }

}  // namespace

int c_get_for_xml::get_non_ws() {
  int c = get();
  while (is_space(c)) c = get();
  return c;
}

void c_get_for_xml::add_char_wsp(std::string* out, int c, bool from_reference) {
  if (ws_mode_ != elmx_preserve && is_space(c) && (!from_reference || treat_refs_as_ws_)) c = ' ';
  if (ws_mode_ == elmx_collapse) {
    if (c == ' ') {
      pending_space_ = true;
      return;
    }
    if (pending_space_ && !out->empty()) out->push_back(' ');
    pending_space_ = false;
  }
  out->push_back(static_cast<char>(c));
}

void c_get_for_xml::add_run_wsp(std::string* out, const char* begin, const char* end) {
  if (ws_mode_ == elmx_replace) {
    const std::size_t at = out->size();
    out->append(begin, static_cast<std::size_t>(end - begin));
    for (std::size_t i = at; i < out->size(); ++i) {
      if (has_mask((*out)[i], internal::k_space)) (*out)[i] = ' ';
    }
    return;
  }
  for (const char* p = begin; p != end;) {
    if (has_mask(*p, internal::k_space)) {
      pending_space_ = true;
      ++p;
      continue;
    }
    const char* const word = p;
    while (p != end && !has_mask(*p, internal::k_space)) ++p;
    if (pending_space_ && !out->empty()) out->push_back(' ');
    pending_space_ = false;
    out->append(word, static_cast<std::size_t>(p - word));
  }
}

bool c_get_for_xml::read_specified_string_from_input(const char* text) {
  for (; *text != '\0'; ++text) {
    const int c = get();
    if (c != static_cast<unsigned char>(*text)) {
      unget(c);
      return false;
    }
  }
  return true;
}

bool c_get_for_xml::get_simple_quoted_value(std::string* out) {
  out->clear();
  const int quote = get_non_ws();
  if (!is_quote(quote)) return false;
  int c = get();
  for (; c >= 0 && c != quote; c = get()) out->push_back(static_cast<char>(c));
  return c == quote;
}

bool c_get_for_xml::report(elmx_error_type type, elmx_error code, const std::string& text) {
  error(type, code, text);
  return false;
}

bool c_get_for_xml::read_xml_decl() {
  std::string value;
  const auto read_value = [&] { return get_non_ws() == '=' && get_simple_quoted_value(&value); };

  if (get_non_ws() != 'v' || !read_specified_string_from_input("ersion")) {
    return report(elmx_error_level, elmx_bad_xml_decl, "Version not present in XML Decl");
  }
  if (!read_value()) return false;
  if (value != "1.0" && value != "1.1") {
    return report(elmx_error_level, elmx_bad_xml_version,
                  "XML version " + value + " not understood");
  }
  int c = get_non_ws();
  if (c == 'e') {
    if (!read_specified_string_from_input("ncoding") || !read_value()) return false;
    if (!set_encoding(value.c_str())) return false;
    c = get_non_ws();
  }
  if (c == 's') {
    if (!read_specified_string_from_input("tandalone") || !read_value()) return false;
    if (value == "no") {
      return report(elmx_error_level, elmx_bad_xml_decl, "XML Document is not standalone");
    }
    c = get_non_ws();
  }
  return c == '?' && get() == '>';
}

void c_get_for_xml::take_up_to(char stop, std::string* out) {
  internal::Window window;
  if (!open_window(&window)) return;
  // After a carriage return, a line feed in any spelling is none of its own.
  if (is_after_cr() && (*window.at == '\n' || internal::byte_at(window.at) >= 0x80)) return;
  int lines = 0;
  const char* const end = internal::pass_up_to(window.at, window.end, stop, &lines);
  if (end == window.at) return;
  if (out != nullptr) out->append(window.at, static_cast<std::size_t>(end - window.at));
  take_window(end, lines);
}

bool c_get_for_xml::skip_comment() {
  int dashes = 0;
  while (true) {
    if (dashes == 0) take_up_to('-', nullptr);
    const int c = get();
    if (c < 0) return false;
    if (c == '-') {
      if (dashes < 3) ++dashes;
    } else if (c == '>' && dashes >= 2) {
      if (dashes > 2) {
        error(elmx_warning, elmx_bad_comment, "End of comment not Well-Formed");
      }
      return true;
    } else {
      dashes = 0;
    }
  }
}

bool c_get_for_xml::skip_PI() {
  bool after_question_mark = false;
  while (true) {
    if (!after_question_mark) take_up_to('?', nullptr);
    const int c = get();
    if (c < 0) return false;
    if (c == '>' && after_question_mark) return true;
    after_question_mark = c == '?';
  }
}

bool c_get_for_xml::move_to_start_tag_end(bool* empty) {
  int quote = 0;
  for (int c = get(); c >= 0; c = get()) {
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (is_quote(c)) {
      quote = c;
    } else if (c == '>') {
      if (empty != nullptr) *empty = false;
      return true;
    } else if (c == '/') {
      bool is_clean = true;
      for (c = get(); c >= 0 && c != '>'; c = get()) {
        if (!is_clean || is_space(c)) continue;
        is_clean = report(
            elmx_error_level, elmx_bad_end_tag,
            std::string("Illegal character(s) after / at end of tag - ") + static_cast<char>(c));
      }
      if (empty != nullptr) *empty = true;
      return is_clean;
    }
  }
  return false;
}

bool c_get_for_xml::insert_character_entity(c_entity_name_reader& reader, std::string* out) {
  character_reference_.clear();
  int c = reader.get();
  const bool is_hex = c == 'x';
  if (is_hex) {
    c = reader.get();
  } else if (!xisdigit(c)) {
    return false;
  }
  for (; is_hex ? xisxdigit(c) : xisdigit(c); c = reader.get()) {
    character_reference_.push_back(static_cast<char>(c));
  }
  if (c != ';') reader.unget(c);
  if (character_reference_.empty()) return false;

  // Digits that can't matter any more are passed over, however many there are.
  const unsigned radix = is_hex ? 16 : 10;
  unsigned value = 0;
  for (const char digit : character_reference_) {
    const unsigned digit_value = xisdigit(digit) ? static_cast<unsigned>(digit - '0')
                                                 : static_cast<unsigned>((digit | 0x20) - 'a') + 10;
    value = value * radix + digit_value;
    if (value > k_max_reference) return false;
  }
  if (value == 133 || value == 8232) value = '\n';
  if (value > 127) {
    char sequence[5];
    *out += unicode_char_to_utf8(static_cast<int>(value), sequence);
  } else {
    add_char_wsp(out, static_cast<int>(value), true);
  }
  return true;
}

void c_get_for_xml::rewind() {
  set_ws_mode(elmx_preserve);
  c_get_with_entities::rewind();
}

}  // namespace lmx
