// A comparison of a value with a number, as "L>50".
#pragma once

#include <string>
#include <string_view>

#include "model/reflection.h"
#include "tools/path_glob.h"

class NumberCondition {
 public:
  // A pattern of paths, one of < <= > >= = !=, and a number.
  explicit NumberCondition(std::string_view text);

  // Empty, or what is wrong with it.
  std::string fault() const;
  bool is_about(std::string_view path) const { return glob_.matches(path); }
  // Never for a value that is no number; NaN is different from every number.
  bool holds(const zol_v2::reflection::Value& value) const;

 private:
  PathGlob glob_;
  std::string sign_;
  double number_ = 0;
  bool is_number_ = false;
};
