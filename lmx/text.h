// Text: UTF-8 to UTF-16 and back, character classes, and small helpers of generated code.
//
// Text inside the runtime is UTF-8 in std::string. Text in the model's public values is UTF-16 in
// std::wstring, one unit to a wchar_t on every platform: a character from U+10000 up takes two
// units also where wchar_t has 32 bits. No function here reports bad text; a conversion ends at
// the first fault and keeps what it has. Nothing here reads the process locale.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>

#include "port/export.h"

namespace lmx {

// Decodes the sequence at `s`. Overlong forms, surrogates and values above U+10FFFF pass. False
// for an illegal lead byte, with *c -1, or for a bad continuation byte, with the part decoded so
// far in *c.
ZOL_API bool utf8_to_unicode_char(const char* s, int* c);

// Writes `c` and a terminating zero into `buf`, which has at least five bytes, and returns `buf`.
// Values of 127 or less, negative ones too, become one byte; bits past the 21st are cut.
ZOL_API char* unicode_char_to_utf8(int c, char* buf);

// Judges the byte at `p` and, where the first byte narrows it, the one after by the table of
// well-formed UTF-8 sequences (Unicode Standard, table 3-7). Later bytes are not looked at.
ZOL_API bool is_valid_utf8_char_sequence(const char* p);

// UTF-8 to UTF-16, from a validated lexical text to a model value. A surrogate pair that was
// written as two sequences of three bytes becomes that pair; an unpaired high surrogate ends the
// conversion and is dropped.
ZOL_API std::wstring& vtostring(std::wstring& out, const std::string& utf8);
// A copy.
ZOL_API std::string& vtostring(std::string& out, const std::string& in);

// UTF-16 to UTF-8. A high surrogate without its partner is encoded alone, and the unit after it is
// skipped whatever it is.
ZOL_API std::string& convert(std::string* out, const std::wstring& in);
// The wide vtostring.
ZOL_API std::wstring& convert(std::wstring* out, const std::string& in);

// The one-argument forms behind the managed interface. `convert` gives its argument back.
ZOL_API std::wstring convert(const std::wstring& text);
// UTF-16 to UTF-8.
ZOL_API std::string convert_to_narrow(const std::wstring& text);
// UTF-8 to UTF-16.
ZOL_API std::wstring convert_to_wide(const std::string& utf8);

// 0.0 by a real call, so that a division by it is done at run time and makes a NaN or an infinity.
ZOL_API double float_zero();

// Exchanges two separate blocks of `n` bytes. This is no change of byte order.
ZOL_API void bswap(void* a, void* b, unsigned n);

// std::string(a).compare(pos, n, b): throws std::out_of_range for a `pos` past the end of `a`. A
// null pointer counts as the empty text.
ZOL_API int stringncompare(const char* a, const char* b, unsigned pos, unsigned n);

namespace internal {

enum CharClass : unsigned char {
  k_class_upper = 1,
  k_class_lower = 2,
  k_class_digit = 4,
  k_class_hex_letter = 8,
  k_class_space = 16,
  k_class_print = 32,
};

// The classes of each ASCII character; no byte above 127 belongs to any.
struct CharClassTable {
  unsigned char mask[256] = {};

  constexpr CharClassTable() {
    for (int c = 0x20; c < 0x7F; ++c) mask[c] |= k_class_print;
    for (int c = 'A'; c <= 'Z'; ++c) mask[c] |= k_class_upper;
    for (int c = 'a'; c <= 'z'; ++c) mask[c] |= k_class_lower;
    for (int c = '0'; c <= '9'; ++c) mask[c] |= k_class_digit;
    for (int c = 'A'; c <= 'F'; ++c) mask[c] |= k_class_hex_letter;
    for (int c = 'a'; c <= 'f'; ++c) mask[c] |= k_class_hex_letter;
    for (int c = '\t'; c <= '\r'; ++c) mask[c] |= k_class_space;
    mask[static_cast<int>(' ')] |= k_class_space;
  }
};

inline constexpr CharClassTable k_char_classes;

inline constexpr bool has_class(int c, unsigned mask) {
  return static_cast<unsigned>(c) < 256 && (k_char_classes.mask[c] & mask) != 0;
}

}  // namespace internal

// The standard library's classes in the "C" locale, for any int: what is below 1 or above 127 is
// in no class, so a signed char may be passed as it is.
inline bool xisalpha(int c) {
  return internal::has_class(c, internal::k_class_upper | internal::k_class_lower);
}
// White space.
inline bool xisspace(int c) { return internal::has_class(c, internal::k_class_space); }
// A letter or digit.
inline bool xisalnum(int c) {
  return internal::has_class(
      c, internal::k_class_upper | internal::k_class_lower | internal::k_class_digit);
}
// A decimal digit.
inline bool xisdigit(int c) { return static_cast<unsigned>(c) - '0' < 10; }
// A hexadecimal digit of either case.
inline bool xisxdigit(int c) {
  return internal::has_class(c, internal::k_class_digit | internal::k_class_hex_letter);
}
// A character that is seen, or a blank.
inline bool xisprint(int c) { return internal::has_class(c, internal::k_class_print); }

// One item of an xs:any, for the managed interface. UTF-8.
class ZOL_API c_any_info {
 public:
  c_any_info() = default;
  // Copies of the namespace URI, the local name and the text.
  explicit c_any_info(const std::string& ns, const std::string& name = std::string(),
                      const std::string& value = std::string())
      : namespace_(ns), name_(name), value_(value) {}

  // The namespace URI.
  const std::string& get_namespace() const { return namespace_; }
  // The local name.
  const std::string& get_name() const { return name_; }
  // The element as text.
  const std::string& get_value() const { return value_; }
  // Takes any text.
  void set_namespace(const std::string& ns) { namespace_ = ns; }
  // Takes any text.
  void set_name(const std::string& name) { name_ = name; }
  // Takes any text.
  void set_value(const std::string& value) { value_ = value; }

 private:
  std::string namespace_;
  std::string name_;
  std::string value_;
};

// Splits the text of an xs:list value at whitespace. Holds a copy of the text.
class ZOL_API c_xml_list_tokeniser {
 public:
  // Copies the text.
  explicit c_xml_list_tokeniser(const std::string& text) : text_(text) {}

  // Starts with another text.
  void set(const std::string& text);
  // False at the end of the text, with *token as it was.
  bool get(std::string* token);

 private:
  std::string text_;
  std::size_t position_ = 0;
};

// A qualified name: namespace and local name.
template <class S>
class ct_qname {
 public:
  ct_qname() = default;
  // Of a namespace URI and a local name, neither of which is checked.
  ct_qname(S ns, S local_name) : namespace_(std::move(ns)), local_name_(std::move(local_name)) {}

  // The namespace URI; empty for none.
  const S& get_namespace() const { return namespace_; }
  // The name without its prefix.
  const S& get_local_name() const { return local_name_; }
  // Replaces both.
  void set(const S& ns, const S& local_name) {
    namespace_ = ns;
    local_name_ = local_name;
  }

  // Both namespace and local name count.
  friend bool operator==(const ct_qname& a, const ct_qname& b) {
    return a.namespace_ == b.namespace_ && a.local_name_ == b.local_name_;
  }
  friend bool operator!=(const ct_qname& a, const ct_qname& b) { return !(a == b); }
  // By namespace, and in one namespace by local name.
  friend bool operator<(const ct_qname& a, const ct_qname& b) {
    const int order = a.namespace_.compare(b.namespace_);
    return order != 0 ? order < 0 : a.local_name_ < b.local_name_;
  }
  friend bool operator>(const ct_qname& a, const ct_qname& b) { return b < a; }
  friend bool operator<=(const ct_qname& a, const ct_qname& b) { return !(b < a); }
  friend bool operator>=(const ct_qname& a, const ct_qname& b) { return !(a < b); }

 private:
  S namespace_;
  S local_name_;
};

// How generated code stores an xs:QName: a plain string keeps the full name, a ct_qname the
// namespace and the local name.
ZOL_API void make_qname(std::string* out, const std::string& full_name, const std::string& ns,
                        const std::string& local_name);
ZOL_API void make_qname(std::wstring* out, const std::string& full_name, const std::string& ns,
                        const std::string& local_name);
ZOL_API void make_qname(ct_qname<std::string>* out, const std::string& full_name,
                        const std::string& ns, const std::string& local_name);
ZOL_API void make_qname(ct_qname<std::wstring>* out, const std::string& full_name,
                        const std::string& ns, const std::string& local_name);

}  // namespace lmx

namespace std {

// As == has it.
template <class S>
struct hash<lmx::ct_qname<S>> {
  // Of namespace and local name.
  std::size_t operator()(const lmx::ct_qname<S>& name) const noexcept {
    return std::hash<S>()(name.get_namespace()) * 1000003 + std::hash<S>()(name.get_local_name());
  }
};

}  // namespace std
