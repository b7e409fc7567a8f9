#include "tools/json.h"

#include "tools/output.h"

std::string text_of(const Json& value, unsigned level) {
  constexpr int k_indent = 2;
  std::string text = value.dump(k_indent, ' ', false, Json::error_handler_t::replace);
  if (level == 0) return text;
  std::string indented;
  for (const char c : text) {
    indented += c;
    if (c == '\n') indented.append(level * k_indent, ' ');
  }
  return indented;
}

void JsonArrayOutput::begin() { ::print("["); }

void JsonArrayOutput::print(const Json& entry) {
  std::string text = is_empty_ ? "\n" : ",\n";
  text.append(2 * (level_ + 1), ' ');
  ::print(text + text_of(entry, level_ + 1));
  is_empty_ = false;
}

void JsonArrayOutput::end() const {
  ::print(is_empty_ ? "]" : '\n' + std::string(2 * level_, ' ') + ']');
}
