// JSON on standard output.
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

// Members stand in the order in which they were put in.
using Json = nlohmann::ordered_json;

// Indented by two blanks a level, behind `level` levels. What is no UTF-8 becomes U+FFFD, what is
// no finite number null.
std::string text_of(const Json& value, unsigned level = 0);

// An array whose entries are printed one by one, so that none has to wait for the last.
class JsonArrayOutput {
 public:
  explicit JsonArrayOutput(unsigned level) : level_(level) {}

  void begin();
  void print(const Json& entry);
  void end() const;

 private:
  const unsigned level_;
  bool is_empty_ = true;
};
