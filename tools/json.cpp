#include "tools/json.h"

#include <cmath>

#include "tools/text.h"

void JsonWriter::key(std::string_view name) {
  separate();
  quote(name);
  text_ += ": ";
  after_key_ = true;
}

void JsonWriter::value(std::string_view text) {
  separate();
  quote(text);
}

void JsonWriter::value(double number) {
  plain(std::isfinite(number) ? number_text(number) : "null");
}

void JsonWriter::plain(std::string_view token) {
  separate();
  text_ += token;
}

void JsonWriter::open(char bracket) {
  separate();
  text_ += bracket;
  has_content_.push_back(false);
}

void JsonWriter::close(char bracket) {
  const bool had_content = has_content_.back();
  has_content_.pop_back();
  if (had_content) {
    text_ += '\n';
    text_.append(2 * has_content_.size(), ' ');
  }
  text_ += bracket;
  if (has_content_.empty()) text_ += '\n';
}

void JsonWriter::separate() {
  if (after_key_) {
    after_key_ = false;
    return;
  }
  if (has_content_.empty()) return;
  text_ += has_content_.back() ? ",\n" : "\n";
  text_.append(2 * has_content_.size(), ' ');
  has_content_.back() = true;
}

void JsonWriter::quote(std::string_view text) {
  static constexpr char k_hex[] = "0123456789abcdef";
  text_ += '"';
  for (const char c : valid_utf8(text)) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      text_ += '\\';
      text_ += c;
    } else if (c == '\n') {
      text_ += "\\n";
    } else if (c == '\t') {
      text_ += "\\t";
    } else if (byte < 0x20 || byte == 0x7F) {
      text_ += "\\u00";
      text_ += k_hex[byte >> 4];
      text_ += k_hex[byte & 0xF];
    } else {
      text_ += c;
    }
  }
  text_ += '"';
}
