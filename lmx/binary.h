// Byte sequences with their two text forms, xs:hexBinary and xs:base64Binary.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "port/export.h"

namespace lmx {

class c_binary;

namespace internal {

// Appends the value in base64, on one line and with padding.
void append_base64(std::string* out, const c_binary& value);

// from_base64 of a text that is_valid_base64, in one pass. False, with `*value` as it was, for any
// other text.
bool read_base64(std::string_view text, c_binary* value);

}  // namespace internal

// Neither form's reader reports anything: check is_valid_hex or is_valid_base64 first.
class ZOL_API c_binary {
 public:
  c_binary() = default;
  // A copy of the bytes.
  c_binary(const c_binary&) = default;
  // What was moved from has no bytes.
  c_binary(c_binary&&) noexcept = default;
  // A copy of `size` bytes.
  c_binary(const unsigned char* data, unsigned size);

  // If memory runs out, it stays as it was.
  c_binary& operator=(const c_binary& other);
  c_binary& operator=(c_binary&& other) noexcept = default;
  // Exchanges the bytes.
  void swap(c_binary& other) noexcept { bytes_.swap(other.bytes_); }
  // Replaces the bytes by a copy.
  void set(const unsigned char* data, unsigned size);

  // Pairs of hexadecimal digits in either case. The empty text is valid.
  static bool is_valid_hex(const std::string& text);
  // Whitespace may stand between the letters. What follows the letters, two characters at most,
  // counts towards a whole group of four. The empty text is valid.
  static bool is_valid_base64(const std::string& text);

  // Ignores an odd last character.
  void from_hex(const std::string& text);
  // Skips every character outside the alphabet. A lone last character still gives one byte.
  void from_base64(const std::string& text);

  // In upper case. Leaves "0" as the stream's fill character.
  void out_hex(std::ostream& os) const;
  // On one line, however long.
  void out_base64(std::ostream& os) const;

  // Are they these bytes? A null pointer is none.
  bool equal(const unsigned char* data, unsigned size) const;

  // An index at or past the size has no defined result here; `at` throws std::out_of_range for it.
  unsigned char operator[](unsigned index) const { return bytes_[index]; }
  // To be changed in place.
  unsigned char& operator[](unsigned index) { return bytes_[index]; }
  // Throws std::out_of_range past the end.
  unsigned char at(unsigned index) const { return bytes_.at(index); }
  // Throws std::out_of_range past the end.
  unsigned char& at(unsigned index) { return bytes_.at(index); }

  // A byte more.
  void append(unsigned char byte) { bytes_.push_back(byte); }
  // A byte more.
  void operator+=(unsigned char byte) { append(byte); }

  // In bytes.
  unsigned size() const { return static_cast<unsigned>(bytes_.size()); }
  // Copies the first min(size, max) bytes to `out` and gives `out`.
  unsigned char* get(unsigned char* out, unsigned max) const;

 private:
  friend void internal::append_base64(std::string* out, const c_binary& value);
  friend bool internal::read_base64(std::string_view text, c_binary* value);
  friend bool operator==(const c_binary& a, const c_binary& b) { return a.bytes_ == b.bytes_; }
  friend bool operator!=(const c_binary& a, const c_binary& b) { return !(a == b); }
  // Byte by byte, as words in a dictionary.
  friend bool operator<(const c_binary& a, const c_binary& b) { return a.bytes_ < b.bytes_; }
  friend bool operator>(const c_binary& a, const c_binary& b) { return b < a; }
  friend bool operator<=(const c_binary& a, const c_binary& b) { return !(b < a); }
  friend bool operator>=(const c_binary& a, const c_binary& b) { return !(a < b); }
  friend struct std::hash<c_binary>;

  std::vector<unsigned char> bytes_;
};

// The name that generated code has for it.
using tc_binary = c_binary;

// Manipulators: os << c_as_hex<c_binary>(value). They borrow the value.
template <class T>
class c_as_hex {
 public:
  // Lives for one stream expression.
  explicit c_as_hex(const T& value) : value_(value) {}
  // What is to be written.
  const T& value() const { return value_; }

 private:
  const T& value_;
};

// See c_as_hex.
template <class T>
class c_as_base64 {
 public:
  // Lives for one stream expression.
  explicit c_as_base64(const T& value) : value_(value) {}
  // What is to be written.
  const T& value() const { return value_; }

 private:
  const T& value_;
};

// As c_binary::out_hex.
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_hex<c_binary>& hex);
// As c_binary::out_base64.
ZOL_API std::ostream& operator<<(std::ostream& os, const c_as_base64<c_binary>& base64);

}  // namespace lmx

namespace std {

// As == has it.
template <>
struct hash<lmx::c_binary> {
  // Of the bytes.
  std::size_t operator()(const lmx::c_binary& value) const noexcept {
    return std::hash<std::string_view>()(
        {reinterpret_cast<const char*>(value.bytes_.data()), value.bytes_.size()});
  }
};

}  // namespace std
