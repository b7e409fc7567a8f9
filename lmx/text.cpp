#include "lmx/text.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "lmx/internal/lexical.h"
#include "lmx/internal/runs.h"
#include "lmx/internal/unicode.h"
#include "lmx/internal/unit_blocks.h"

namespace lmx {
namespace {

using internal::byte_at;
using internal::is_high_surrogate;
using internal::is_low_surrogate;
using internal::k_unit_block;

// Both conversions fill a piece on the stack and append it: what is appended needs no first
// filling, and a text that fits in one piece is walked once.
constexpr std::size_t k_piece = 512;

// Length of the sequence that a lead byte opens; 0 for a byte that opens none.
unsigned sequence_length(unsigned char lead) {
  if (lead < 0x80) return 1;
  if ((lead & 0xE0) == 0xC0) return 2;
  if ((lead & 0xF0) == 0xE0) return 3;
  if ((lead & 0xF8) == 0xF0) return 4;
  return 0;
}

bool is_continuation(unsigned byte) { return (byte & 0xC0) == 0x80; }

// A text on its way to wide units, up to the first fault.
class Widener {
 public:
  explicit Widener(std::string_view utf8) : at_(utf8.data()), end_(at_ + utf8.size()) {}

  // Nothing is left, or a fault comes next.
  bool is_done() const { return is_faulty_ || at_ == end_; }
  std::string_view rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }

  // Writes up to less than a block before `room_end`, which is at least a block away, and returns
  // the end of what it wrote.
  wchar_t* fill(wchar_t* out, const wchar_t* room_end) {
    const char* at = at_;  // what is written may alias a member, but no local
    const wchar_t* const limit = room_end - k_unit_block;
    while (at != end_ && out <= limit) {
      if (static_cast<std::size_t>(end_ - at) >= k_unit_block) {
        const std::size_t taken = internal::widen_block(at, &out);
        at += taken;
        if (taken != 0) continue;
      } else if (byte_at(at) < 0x80) {
        *out++ = static_cast<wchar_t>(*at++);
        continue;
      }
      // One sequence of three bytes is mostly followed by others.
      const wchar_t* const row = out;
      for (unsigned unit; out <= limit && (unit = three_byte_unit(at)) != 0; at += 3) {
        *out++ = static_cast<wchar_t>(unit);
      }
      if (out != row) continue;
      at_ = at;
      out = take_other(out);
      at = at_;
      if (is_faulty_) break;
    }
    at_ = at;
    return out;
  }

 private:
  // The unit of a sequence of three bytes, 0 if there is none or it is the first of a pair.
  unsigned three_byte_unit(const char* at) const {
    if (end_ - at < 3) return 0;
    const unsigned lead = byte_at(at);
    if (lead - 0xE0 >= 0x10) return 0;
    const unsigned second = byte_at(at + 1);
    const unsigned third = byte_at(at + 2);
    if (!is_continuation(second) || !is_continuation(third)) return 0;
    const unsigned unit = (lead & 0x0F) << 12 | (second & 0x3F) << 6 | (third & 0x3F);
    return is_high_surrogate(unit) ? 0 : unit;
  }

  // Takes a sequence of any length, or two that are a surrogate pair, as two units at most.
  wchar_t* take_other(wchar_t* out) {
    std::uint32_t c;
    std::size_t length = decode(rest(), &c);
    if (length != 0 && is_high_surrogate(c)) {
      std::uint32_t low;
      const std::size_t low_length = decode(rest().substr(length), &low);
      length = low_length != 0 && is_low_surrogate(low) ? length + low_length : 0;
      if (length != 0) c = internal::join_surrogates(c, low);
    }
    if (length == 0) {
      is_faulty_ = true;
      return out;
    }
    at_ += length;
    if (c < 0x10000) {
      *out = static_cast<wchar_t>(c);
      return out + 1;
    }
    out[0] = static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10 & 0x3FF));
    out[1] = static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
    return out + 2;
  }

  // The length of the sequence that `text` begins with, 0 if there is none.
  static std::size_t decode(std::string_view text, std::uint32_t* c) {
    if (text.empty()) return 0;
    const std::size_t length = sequence_length(static_cast<unsigned char>(text[0]));
    int value;
    if (text.size() < length || !utf8_to_unicode_char(text.data(), &value)) return 0;
    *c = static_cast<std::uint32_t>(value);
    return length;
  }

  const char* at_;
  const char* const end_;
  bool is_faulty_ = false;
};

// The sum of `weight`, at most 3 for each element. Small sums for short stretches let the compiler
// use lanes.
template <class Char, class Weight>
std::size_t sum_of(std::basic_string_view<Char> text, Weight weight) {
  constexpr std::size_t k_stretch = 64;
  std::size_t sum = 0;
  for (; text.size() >= k_stretch; text.remove_prefix(k_stretch)) {
    std::conditional_t<sizeof(Char) == 1, std::uint8_t, std::uint32_t> part = 0;
    for (std::size_t i = 0; i < k_stretch; ++i) {
      part = static_cast<decltype(part)>(part + weight(text[i]));
    }
    sum += part;
  }
  for (const Char c : text) sum += weight(c);
  return sum;
}

// The units that a sound text gives: one for each byte that opens a sequence, and one more for the
// leads of four. A stored value then holds no spare memory.
std::size_t count_units(std::string_view text) {
  return sum_of(text, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return static_cast<unsigned char>(((byte & 0xC0) != 0x80) + (byte >= 0xF0));
  });
}

// The bytes that units give, but for pairs of surrogates, which give two less.
std::size_t count_bytes(std::wstring_view text) {
  return sum_of(text, [](wchar_t unit) {
    const auto value = static_cast<std::uint32_t>(unit);
    return 1u + static_cast<unsigned>(value >= 0x80) + static_cast<unsigned>(value >= 0x800);
  });
}

// Wide units on their way to UTF-8; there is no fault.
class Narrower {
 public:
  explicit Narrower(std::wstring_view text) : at_(text.data()), end_(at_ + text.size()) {}

  bool is_done() const { return at_ == end_; }
  std::wstring_view rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }

  // Writes up to less than k_narrow_room before `room_end` and returns the end of what it wrote.
  char* fill(char* out, const char* room_end) {
    const wchar_t* at = at_;
    const char* const limit = room_end - internal::k_narrow_room;
    while (at != end_ && out <= limit) {
      if (static_cast<std::size_t>(end_ - at) >= k_unit_block) {
        const std::size_t taken = internal::narrow_block<internal::WideUnits, internal::NoneOwn>(
            reinterpret_cast<const char*>(at), &out);
        at += taken;
        if (taken != 0) continue;
      } else {
        const wchar_t* const tail = at;
        while (at != end_ && static_cast<std::uint32_t>(*at) < 0x80) {
          *out++ = static_cast<char>(*at++);
        }
        if (at != tail) continue;
      }
      // One character of several bytes is mostly followed by others.
      do {
        auto c = static_cast<std::uint32_t>(*at++);
        if (is_high_surrogate(c) && at != end_) {
          const auto low = static_cast<std::uint32_t>(*at++);
          if (is_low_surrogate(low)) c = internal::join_surrogates(c, low);
        }
        out = internal::put_code_point(c, out);
      } while (at != end_ && out <= limit && static_cast<std::uint32_t>(*at) >= 0x80);
    }
    at_ = at;
    return out;
  }

 private:
  const wchar_t* at_;
  const wchar_t* const end_;
};

bool is_ascii(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  for (; end - at >= 8; at += 8) {
    if ((internal::load_word(at) & internal::k_highs) != 0) return false;
  }
  while (at != end && byte_at(at) < 0x80) ++at;
  return at == end;
}

// Appends a piece. The string's own way to grow is longer than that to begin anew.
template <class Text, class Char>
void store_piece(Text* out, const Char* begin, const Char* end) {
  const auto size = static_cast<std::size_t>(end - begin);
  if (out->empty() && size > out->capacity()) {
    *out = Text(begin, size);
  } else {
    out->append(begin, size);
  }
}

}  // namespace

namespace internal {

std::size_t append_wide(std::wstring* out, std::string_view utf8) {
  if (out->empty() && is_ascii(utf8)) {
    *out = std::wstring(utf8.begin(), utf8.end());  // with neither slack nor a first filling
    return utf8.size();
  }
  Widener widener(utf8);
  wchar_t piece[k_piece];
  const wchar_t* end = widener.fill(piece, piece + k_piece);
  if (widener.is_done()) {
    store_piece(out, piece, end);
  } else {
    const std::size_t start = out->size();
    const auto first = static_cast<std::size_t>(end - piece);
    out->resize(start + first + count_units(widener.rest()));
    wchar_t* at = std::copy(piece, piece + first, out->data() + start);
    at = widener.fill(at, out->data() + out->size());
    end = widener.fill(piece, piece + k_piece);
    at = std::copy(static_cast<const wchar_t*>(piece), end, at);
    out->resize(static_cast<std::size_t>(at - out->data()));
  }
  return utf8.size() - widener.rest().size();
}

void append_narrow(std::string* out, const std::wstring& in) {
  Narrower narrower(in);
  char piece[k_piece];
  const char* end = narrower.fill(piece, piece + k_piece);
  if (!narrower.is_done()) {
    out->reserve(out->size() + static_cast<std::size_t>(end - piece) +
                 count_bytes(narrower.rest()));
  }
  store_piece(out, piece, end);
  while (!narrower.is_done()) {
    end = narrower.fill(piece, piece + k_piece);
    out->append(piece, static_cast<std::size_t>(end - piece));
  }
}

}  // namespace internal

bool utf8_to_unicode_char(const char* s, int* c) {
  const auto lead = static_cast<unsigned char>(*s);
  const unsigned length = sequence_length(lead);
  if (length == 0) {
    *c = -1;
    return false;
  }
  if (length == 1) {
    *c = lead;
    return true;
  }
  *c = lead & (0x7F >> length);
  for (unsigned i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(s[i]);
    if ((next & 0xC0) != 0x80) return false;
    *c = *c << 6 | (next & 0x3F);
  }
  return true;
}

char* unicode_char_to_utf8(int c, char* buf) {
  *internal::put_code_point(static_cast<std::uint32_t>(c), buf) = '\0';
  return buf;
}

bool is_valid_utf8_char_sequence(const char* p) {
  const auto first = static_cast<unsigned char>(p[0]);
  if (first < 0x80) return true;
  if (first < 0xC2 || first > 0xF4) return false;
  const auto second = static_cast<unsigned char>(p[1]);
  switch (first) {
    case 0xE0:
      return second >= 0xA0 && second <= 0xBF;
    case 0xED:
      return second >= 0x80 && second <= 0x9F;
    case 0xF0:
      return second >= 0x90 && second <= 0xBF;
    case 0xF4:
      return second >= 0x80 && second <= 0x8F;
    default:
      return true;
  }
}

std::wstring& vtostring(std::wstring& out, const std::string& utf8) {
  out.clear();
  internal::append_wide(&out, utf8);
  return out;
}

std::string& vtostring(std::string& out, const std::string& in) { return out = in; }

std::string& convert(std::string* out, const std::wstring& in) {
  out->clear();
  internal::append_narrow(out, in);
  return *out;
}

std::wstring& convert(std::wstring* out, const std::string& in) { return vtostring(*out, in); }

std::wstring convert(const std::wstring& text) { return text; }

std::string convert_to_narrow(const std::wstring& text) {
  std::string utf8;
  internal::append_narrow(&utf8, text);
  return utf8;
}

std::wstring convert_to_wide(const std::string& utf8) {
  std::wstring text;
  internal::append_wide(&text, utf8);
  return text;
}

double float_zero() { return 0.0; }

void bswap(void* a, void* b, unsigned n) {
  auto* const first = static_cast<unsigned char*>(a);
  auto* const second = static_cast<unsigned char*>(b);
  for (unsigned i = 0; i < n; ++i) std::swap(first[i], second[i]);
}

int stringncompare(const char* a, const char* b, unsigned pos, unsigned n) {
  const auto view = [](const char* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
  };
  return view(a).compare(pos, n, view(b));
}

void c_xml_list_tokeniser::set(const std::string& text) {
  text_ = text;
  position_ = 0;
}

bool c_xml_list_tokeniser::get(std::string* token) {
  std::size_t start = position_;
  while (start < text_.size() && xisspace(text_[start])) ++start;
  std::size_t end = start;
  while (end < text_.size() && !xisspace(text_[end])) ++end;
  position_ = end;
  if (start == end) return false;
  token->assign(text_, start, end - start);
  return true;
}

void make_qname(std::string* out, const std::string& full_name, const std::string&,
                const std::string&) {
  *out = full_name;
}

void make_qname(std::wstring* out, const std::string& full_name, const std::string&,
                const std::string&) {
  convert(out, full_name);
}

void make_qname(ct_qname<std::string>* out, const std::string&, const std::string& ns,
                const std::string& local_name) {
  out->set(ns, local_name);
}

void make_qname(ct_qname<std::wstring>* out, const std::string&, const std::string& ns,
                const std::string& local_name) {
  out->set(convert_to_wide(ns), convert_to_wide(local_name));
}

}  // namespace lmx
