// Patterns of paths.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Steps by slashes: "*" stands for any letters of a name, "?" for one, and a step "**" for any
// steps. A step without a number means all of its name. Unless it begins with the root or a slash,
// a pattern may begin anywhere in a path; it always goes to the end.
class PathGlob {
 public:
  explicit PathGlob(std::string_view pattern);

  bool matches(std::string_view path) const;
  // Empty, or that no path has a name of the pattern.
  std::string fault() const;

 private:
  std::vector<std::string> steps_;
};
