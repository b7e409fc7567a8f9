#include "lmx/binary.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string_view>
#include <utility>

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

constexpr std::uint32_t k_no_letter = 0x80000000u;

// What a letter adds to the 24 bits of its group, at each of the four places; k_no_letter for other
// characters.
struct Base64Places {
  std::uint32_t bits[4][256] = {};

  constexpr Base64Places() {
    for (int place = 0; place < 4; ++place) {
      for (int c = 0; c < 256; ++c) {
        const std::uint32_t code = k_base64.code[c];
        bits[place][c] = code < 64 ? code << (18 - 6 * place) : k_no_letter;
      }
    }
  }
};

constexpr Base64Places k_base64_places;

// The two letters of each twelve bits.
struct Base64Pairs {
  char letters[4096][2] = {};

  constexpr Base64Pairs() {
    for (int bits = 0; bits < 4096; ++bits) {
      letters[bits][0] = k_base64_alphabet[bits >> 6];
      letters[bits][1] = k_base64_alphabet[bits & 0x3F];
    }
  }
};

constexpr Base64Pairs k_base64_pairs;

std::size_t base64_size(std::size_t bytes) { return (bytes + 2) / 3 * 4; }

char* put_pair(std::uint64_t bits, char* out) {
  std::memcpy(out, k_base64_pairs.letters[bits & 0xFFF], 2);
  return out + 2;
}

// Writes base64_size(size) characters and returns their end.
char* encode_base64(const unsigned char* data, std::size_t size, char* out) {
  const auto bits_of = [&data](int count) {
    std::uint64_t bits = 0;
    for (int i = 0; i < count; ++i) bits = bits << 8 | data[i];
    return bits;
  };
  for (; size >= 6; data += 6, size -= 6) {
    const std::uint64_t bits = bits_of(6);
    for (int shift = 36; shift >= 0; shift -= 12) out = put_pair(bits >> shift, out);
  }
  if (size >= 3) {
    const std::uint64_t bits = bits_of(3);
    out = put_pair(bits, put_pair(bits >> 12, out));
    data += 3;
    size -= 3;
  }
  if (size == 0) return out;
  const std::uint64_t bits = bits_of(static_cast<int>(size)) << 8 * (3 - size);
  put_pair(bits, put_pair(bits >> 12, out));
  std::fill(out + size + 1, out + 4, '=');
  return out + 4;
}

// Letters on their way to bytes, which are appended to a vector that has room for them.
class Base64Decoder {
 public:
  explicit Base64Decoder(unsigned char* out) : out_(out) {}

  // The most bytes that a text gives.
  static std::size_t room(std::string_view text) { return text.size() / 4 * 3 + 3; }

  std::size_t letters() const { return letters_; }

  // Takes letters and white space up to another character. Returns how much it took.
  std::size_t take(std::string_view text) {
    const char* at = text.data();
    const char* const end = at + text.size();
    for (; at != end; ++at) {
      if (count_ == 0) at = take_groups(at, end);
      if (at == end) break;
      const unsigned char code = base64_code(*at);
      if (code == k_other) break;
      if (code == k_space) continue;
      bits_ = bits_ << 6 | code;
      ++letters_;
      if (++count_ == 4) {
        put(3);
        count_ = 0;
      }
    }
    return static_cast<std::size_t>(at - text.data());
  }

  // Writes what is left over, of which a lone letter still gives one byte, and returns the end.
  unsigned char* finish() {
    if (count_ != 0) {
      bits_ <<= (4 - count_) * 6;
      put(count_ == 3 ? 2 : 1);
      count_ = 0;
    }
    return out_;
  }

 private:
  void put(int bytes) {
    for (int i = 0; i < bytes; ++i) *out_++ = static_cast<unsigned char>(bits_ >> (16 - 8 * i));
  }

  // Passes whole groups of four letters.
  const char* take_groups(const char* at, const char* end) {
    const auto bits = [&at](int place) {
      return k_base64_places.bits[place][static_cast<unsigned char>(at[place])];
    };
    const char* const begin = at;
    unsigned char* out = out_;  // what is written may alias a member, but no local
    for (; end - at >= 4; at += 4, out += 3) {
      const std::uint32_t group = bits(0) | bits(1) | bits(2) | bits(3);
      if ((group & k_no_letter) != 0) break;
      out[0] = static_cast<unsigned char>(group >> 16);
      out[1] = static_cast<unsigned char>(group >> 8);
      out[2] = static_cast<unsigned char>(group);
    }
    letters_ += static_cast<std::size_t>(at - begin);
    out_ = out;
    return at;
  }

  unsigned char* out_;
  std::size_t letters_ = 0;
  std::uint32_t bits_ = 0;  // of the letters of a group that is not whole
  int count_ = 0;
};

// Judges a text by what stands in front of the first character that is neither letter nor white
// space, and by what begins with it.
bool is_whole_base64(std::string_view front, std::size_t letters, std::string_view back) {
  if (front.empty() && back.empty()) return true;
  if (front.size() < 2 || back.size() > 2 || (back.size() + letters) % 4 != 0) return false;
  for (const char c : back) {
    if (base64_code(c) == k_space) break;
    if (c != '=') return false;
  }
  return true;
}

// Any character has a value; the ones that are no digits give nonsense.
unsigned hex_value(char c) {
  if (xisdigit(c)) return static_cast<unsigned>(c - '0');
  return static_cast<unsigned>(c >= 'a' && c <= 'f' ? c - 'a' + 10 : c - 'A' + 10);
}

}  // namespace

namespace internal {

bool is_valid_base64(std::string_view text) {
  std::size_t letters = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    const char* const at = text.data() + i;
    if (text.size() - i >= 4 &&
        (base64_code(at[0]) | base64_code(at[1]) | base64_code(at[2]) | base64_code(at[3])) < 64) {
      i += 4;
      letters += 4;
      continue;
    }
    const unsigned char code = base64_code(*at);
    if (code == k_other) break;
    ++i;
    letters += code != k_space;
  }
  return is_whole_base64(text.substr(0, i), letters, text.substr(i));
}

bool read_base64(std::string_view text, c_binary* value) {
  std::vector<unsigned char> bytes(Base64Decoder::room(text));
  Base64Decoder decoder(bytes.data());
  const std::size_t taken = decoder.take(text);
  if (!is_whole_base64(text.substr(0, taken), decoder.letters(), text.substr(taken))) {
    return false;
  }
  bytes.resize(static_cast<std::size_t>(decoder.finish() - bytes.data()));
  value->bytes_ = std::move(bytes);
  return true;
}

void append_base64(std::string* out, const unsigned char* data, std::size_t size) {
  const std::size_t start = out->size();
  out->resize(start + base64_size(size));
  encode_base64(data, size, out->data() + start);
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
  bytes_.resize(Base64Decoder::room(text));
  Base64Decoder decoder(bytes_.data());
  for (std::string_view rest = text; !rest.empty(); rest.remove_prefix(1)) {
    rest.remove_prefix(decoder.take(rest));
    if (rest.empty()) break;
  }
  bytes_.resize(static_cast<std::size_t>(decoder.finish() - bytes_.data()));
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
