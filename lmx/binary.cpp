#include "lmx/binary.h"

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string_view>

#include "lmx/internal/lexical.h"
#include "lmx/text.h"

namespace lmx {
namespace {

constexpr char k_base64_alphabet[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr unsigned char k_space = 64;
constexpr unsigned char k_other = 65;

// The six bits of each letter of the alphabet, or one of the two marks above.
struct Base64Table {
  unsigned char code[256] = {};

  constexpr Base64Table() {
    for (unsigned char& entry : code) entry = k_other;
    for (int c = 1; c < 128; ++c) {
      if (internal::has_class(c, internal::k_class_space)) code[c] = k_space;
    }
    for (unsigned char i = 0; i < 64; ++i) {
      code[static_cast<unsigned char>(k_base64_alphabet[i])] = i;
    }
  }
};

constexpr Base64Table k_base64;

unsigned char base64_code(char c) { return k_base64.code[static_cast<unsigned char>(c)]; }

std::size_t base64_size(std::size_t bytes) { return (bytes + 2) / 3 * 4; }

// Writes base64_size(size) characters and returns their end.
char* encode_base64(const unsigned char* data, std::size_t size, char* out) {
  const auto letter = [](std::uint32_t bits, int shift) {
    return k_base64_alphabet[bits >> shift & 0x3F];
  };
  for (; size >= 3; data += 3, size -= 3) {
    const std::uint32_t bits = std::uint32_t{data[0]} << 16 | std::uint32_t{data[1]} << 8 | data[2];
    *out++ = letter(bits, 18);
    *out++ = letter(bits, 12);
    *out++ = letter(bits, 6);
    *out++ = letter(bits, 0);
  }
  if (size == 0) return out;
  const std::uint32_t bits =
      std::uint32_t{data[0]} << 16 | (size == 2 ? std::uint32_t{data[1]} << 8 : 0);
  *out++ = letter(bits, 18);
  *out++ = letter(bits, 12);
  *out++ = size == 2 ? letter(bits, 6) : '=';
  *out++ = '=';
  return out;
}

// Any character has a value; the ones that are no digits give nonsense.
unsigned hex_value(char c) {
  if (xisdigit(c)) return static_cast<unsigned>(c - '0');
  return static_cast<unsigned>(c >= 'a' && c <= 'f' ? c - 'a' + 10 : c - 'A' + 10);
}

}  // namespace

namespace internal {

bool is_valid_base64(std::string_view text) {
  if (text.empty()) return true;
  std::size_t i = 0;
  std::size_t count = 0;
  for (; i < text.size(); ++i) {
    const unsigned char code = base64_code(text[i]);
    if (code == k_other) break;
    count += code != k_space;
  }
  if (i < 2 || text.size() - i > 2) return false;
  if ((text.size() - i + count) % 4 != 0) return false;
  for (; i < text.size() && base64_code(text[i]) != k_space; ++i) {
    if (text[i] != '=') return false;
  }
  return true;
}

void append_base64(std::string* out, const unsigned char* data, std::size_t size) {
  const std::size_t start = out->size();
  out->resize(start + base64_size(size));
  encode_base64(data, size, &(*out)[0] + start);
}

void append_base64(std::string* out, const c_binary& value) {
  append_base64(out, value.bytes_.data(), value.bytes_.size());
}

}  // namespace internal

c_binary::c_binary(const unsigned char* data, unsigned size) : bytes_(data, data + size) {}

c_binary& c_binary::operator=(const c_binary& other) {
  c_binary(other).swap(*this);
  return *this;
}

void c_binary::set(const unsigned char* data, unsigned size) { c_binary(data, size).swap(*this); }

bool c_binary::is_valid_hex(const std::string& text) {
  return text.size() % 2 == 0 &&
         std::all_of(text.begin(), text.end(), [](char c) { return xisxdigit(c); });
}

bool c_binary::is_valid_base64(const std::string& text) { return internal::is_valid_base64(text); }

void c_binary::from_hex(const std::string& text) {
  bytes_.clear();
  bytes_.reserve(text.size() / 2);
  for (std::size_t i = 1; i < text.size(); i += 2) {
    append(static_cast<unsigned char>(hex_value(text[i - 1]) * 16 + hex_value(text[i])));
  }
}

void c_binary::from_base64(const std::string& text) {
  bytes_.clear();
  bytes_.reserve(text.size() / 4 * 3 + text.size() % 4 * 3 / 4);
  const auto append_byte = [this](std::uint32_t bits, int shift) {
    append(static_cast<unsigned char>(bits >> shift & 0xFF));
  };
  std::uint32_t bits = 0;
  int count = 0;
  for (const char c : text) {
    const unsigned char code = base64_code(c);
    if (code >= 64) continue;
    bits = bits << 6 | code;
    if (++count < 4) continue;
    append_byte(bits, 16);
    append_byte(bits, 8);
    append_byte(bits, 0);
    bits = 0;
    count = 0;
  }
  if (count == 0) return;
  bits <<= (4 - count) * 6;
  append_byte(bits, 16);
  if (count == 3) append_byte(bits, 8);
}

void c_binary::out_hex(std::ostream& os) const {
  constexpr char k_digits[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes_.size() * 2);
  for (const unsigned char byte : bytes_) {
    text += k_digits[byte >> 4];
    text += k_digits[byte & 0x0F];
  }
  os.fill('0');
  os.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void c_binary::out_base64(std::ostream& os) const {
  constexpr std::size_t k_piece = 3 * 1024;  // whole groups, so that only the last one is padded
  char text[k_piece / 3 * 4];
  for (std::size_t start = 0; start < bytes_.size(); start += k_piece) {
    const std::size_t size = std::min(k_piece, bytes_.size() - start);
    os.write(text, encode_base64(bytes_.data() + start, size, text) - text);
  }
}

bool c_binary::equal(const unsigned char* data, unsigned size) const {
  return size == bytes_.size() && std::equal(bytes_.begin(), bytes_.end(), data);
}

unsigned char* c_binary::get(unsigned char* out, unsigned max) const {
  const std::size_t count = std::min<std::size_t>(max, bytes_.size());
  std::copy_n(bytes_.begin(), count, out);
  return out;
}

std::ostream& operator<<(std::ostream& os, const c_as_hex<c_binary>& hex) {
  hex.value().out_hex(os);
  return os;
}

std::ostream& operator<<(std::ostream& os, const c_as_base64<c_binary>& base64) {
  base64.value().out_base64(os);
  return os;
}

}  // namespace lmx
