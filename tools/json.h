// Prints JSON, indented by two blanks a level.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Builds one value. Calls must nest as JSON does: a key before each member of an object.
class JsonWriter {
 public:
  void begin_object() { open('{'); }
  void end_object() { close('}'); }
  void begin_array() { open('['); }
  void end_array() { close(']'); }
  void key(std::string_view name);

  // What is no UTF-8 becomes U+FFFD.
  void value(std::string_view text);
  void value(const char* text) { value(std::string_view(text)); }
  void value(bool is_true) { plain(is_true ? "true" : "false"); }
  void value(std::int64_t number) { plain(std::to_string(number)); }
  void value(int number) { plain(std::to_string(number)); }
  void value(unsigned number) { plain(std::to_string(number)); }
  // Null for what is no finite number.
  void value(double number);

  template <class T>
  void member(std::string_view name, const T& content) {
    key(name);
    value(content);
  }

  const std::string& text() const { return text_; }

 private:
  void open(char bracket);
  void close(char bracket);
  void plain(std::string_view token);
  // Goes to where the next value or key begins.
  void separate();
  void quote(std::string_view text);

  std::string text_;
  std::vector<bool> has_content_;  // one a level
  bool after_key_ = false;
};
