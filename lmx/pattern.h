// The pattern facet: regular expressions of XML Schema, which match the whole text. Compiling and
// matching are libxml2's, but what it has to say about a pattern or a text is heard by nobody.
#pragma once

#include <string>
#include <string_view>

#include "port/export.h"

struct _xmlRegexp;

namespace lmx {

// One compiled expression. It is never changed, so threads may share it.
class ZOL_API c_regex {
 public:
  // `pattern` is UTF-8. One that does not compile is not reported; it matches nothing.
  explicit c_regex(const std::string& pattern);
  c_regex(const c_regex&) = delete;
  c_regex& operator=(const c_regex&) = delete;
  virtual ~c_regex();

  // A failure inside the engine counts as a match.
  bool is_match(const std::string& utf8) const;

 private:
  _xmlRegexp* compiled_;
};

// The pattern facet of one type.
class ZOL_API c_pattern {
 public:
  // As for c_regex; null is not allowed.
  explicit c_pattern(const char* pattern) : regex_(std::string(pattern)) {}

  // Does the whole text match? UTF-8.
  bool is_match(const std::string& utf8) const { return regex_.is_match(utf8); }
  // The same for UTF-16.
  bool is_match(const std::wstring& value) const;

 private:
  c_regex regex_;
};

// Stands where no pattern is set: it ignores its own and matches every text.
class ZOL_API c_pattern_null {
 public:
  // The pattern is not looked at.
  explicit c_pattern_null(const std::string&) {}

  // True.
  bool is_match(const std::string&) const { return true; }
};

namespace internal {

// Does a text in UTF-8 match ".+T.+(Z|[+\-].+)"? The answer is that of c_pattern in one pass, where
// the engine takes quadratic time. Where the engine fails, at what is no character of XML, nothing
// matches.
ZOL_API bool is_zoned_text(std::string_view text);

}  // namespace internal
}  // namespace lmx
