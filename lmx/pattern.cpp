#include "lmx/pattern.h"

#include <libxml/xmlregexp.h>
#include <libxml/xmlstring.h>

#include "lmx/internal/libxml2_silence.h"
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
  const internal::Libxml2Silence silence;
  const xmlChar* const text = as_xml(pattern);
  return xmlCheckUTF8(text) != 0 ? xmlRegexpCompile(text) : nullptr;
}

// The length of the character that a text begins with, 0 if it is none of XML or a line end: those
// "." does not match.
std::size_t dot_length(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80) return byte(0) >= ' ' || text[0] == '\t' ? 1 : 0;
  const std::size_t length = byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
  if (text.size() < length || !is_valid_utf8_char_sequence(text.data())) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  const bool is_no_character = byte(0) == 0xEF && byte(1) == 0xBF && byte(2) >= 0xBE;
  return is_no_character ? 0 : length;
}

}  // namespace

c_regex::c_regex(const std::string& pattern) : compiled_(compile(pattern)) {}

c_regex::~c_regex() { xmlRegFreeRegexp(compiled_); }

bool c_regex::is_match(const std::string& utf8) const {
  if (compiled_ == nullptr) return false;
  const internal::Libxml2Silence silence;
  return xmlRegexpExec(compiled_, as_xml(utf8)) != 0;
}

bool c_pattern::is_match(const std::wstring& value) const {
  return is_match(convert_to_narrow(value));
}

bool internal::is_zoned_text(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  // The first "T" that has something before it leaves the most behind it.
  const std::size_t t = text.find('T', 1);
  if (t == std::string_view::npos || text.size() < t + 3) return false;
  const std::size_t sign = text.find_first_of("+-", t + 2);
  if (text.back() != 'Z' && (sign == std::string_view::npos || sign + 1 == text.size())) {
    return false;
  }
  while (!text.empty()) {
    const std::size_t length = dot_length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace lmx
