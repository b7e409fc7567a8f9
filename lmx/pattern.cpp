#include "lmx/pattern.h"

#include <libxml/xmlregexp.h>
#include <libxml/xmlstring.h>

#include "lmx/text.h"

namespace lmx {
namespace {

// libxml2's characters are unsigned, its texts end at the first zero.
const xmlChar* as_xml(const std::string& utf8) {
  return reinterpret_cast<const xmlChar*>(utf8.c_str());
}

// The engine trusts its pattern to be UTF-8, and one that is not can make it take memory without
// end.
_xmlRegexp* compile(const std::string& pattern) {
  const xmlChar* const text = as_xml(pattern);
  return xmlCheckUTF8(text) != 0 ? xmlRegexpCompile(text) : nullptr;
}

}  // namespace

c_regex::c_regex(const std::string& pattern) : compiled_(compile(pattern)) {}

c_regex::~c_regex() { xmlRegFreeRegexp(compiled_); }

bool c_regex::is_match(const std::string& utf8) const {
  return compiled_ != nullptr && xmlRegexpExec(compiled_, as_xml(utf8)) != 0;
}

bool c_pattern::is_match(const std::wstring& value) const {
  return is_match(convert_to_narrow(value));
}

}  // namespace lmx
