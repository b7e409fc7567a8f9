#include "lmx/text.h"

#include <cstdint>
#include <cstring>
#include <string_view>

#include "lmx/internal/lexical.h"

namespace lmx {
namespace {

constexpr int k_high_first = 0xD800;
constexpr int k_high_last = 0xDBFF;
constexpr int k_low_first = 0xDC00;
constexpr int k_low_last = 0xDFFF;

bool is_high_surrogate(int c) { return c >= k_high_first && c <= k_high_last; }
bool is_low_surrogate(int c) { return c >= k_low_first && c <= k_low_last; }

// Length of the sequence that a lead byte opens; 0 for a byte that opens none.
unsigned sequence_length(unsigned char lead) {
  if (lead < 0x80) return 1;
  if ((lead & 0xE0) == 0xC0) return 2;
  if ((lead & 0xF0) == 0xE0) return 3;
  if ((lead & 0xF8) == 0xF0) return 4;
  return 0;
}

constexpr std::uint64_t k_top_bits = 0x8080808080808080u;

std::size_t ascii_run(std::string_view text) {
  std::size_t i = 0;
  for (; text.size() - i >= sizeof k_top_bits; i += sizeof k_top_bits) {
    std::uint64_t block;
    std::memcpy(&block, text.data() + i, sizeof block);
    if ((block & k_top_bits) != 0) break;
  }
  while (i < text.size() && static_cast<unsigned char>(text[i]) < 0x80) ++i;
  return i;
}

// Writes the ASCII characters that `text` begins with, in whole blocks of eight, to `out`, and
// returns how many.
std::size_t widen_blocks(std::string_view text, wchar_t* out) {
  std::size_t i = 0;
  for (; text.size() - i >= sizeof k_top_bits; i += sizeof k_top_bits) {
    std::uint64_t block;
    std::memcpy(&block, text.data() + i, sizeof block);
    if ((block & k_top_bits) != 0) break;
    for (std::size_t k = 0; k < sizeof k_top_bits; ++k) {
      out[i + k] = static_cast<wchar_t>(text[i + k]);
    }
  }
  return i;
}

// The most units that a text can give: one for each byte that can open a sequence, two for the
// leads of four. It is exact for a sound text, so a stored value holds no spare memory.
std::size_t unit_bound(std::string_view text) {
  std::size_t units = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    units +=
        static_cast<std::size_t>((byte & 0xC0) != 0x80) + static_cast<std::size_t>(byte >= 0xF0);
  }
  return units;
}

// Writes the units of `text` to `out` up to the first fault and returns the end of what it wrote;
// `*used` is what it took in whole.
wchar_t* decode(std::string_view text, wchar_t* out, std::size_t* used) {
  int pending = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    if (pending == 0) {
      const std::size_t run = widen_blocks(text.substr(i), out);
      out += run;
      i += run;
      if (i == text.size()) break;
    }
    const unsigned length = sequence_length(static_cast<unsigned char>(text[i]));
    if (length == 0 || text.size() - i < length) break;
    int c;
    if (!utf8_to_unicode_char(text.data() + i, &c)) break;

    if (pending != 0) {
      if (!is_low_surrogate(c)) break;
      *out++ = static_cast<wchar_t>(pending);
      *out++ = static_cast<wchar_t>(c);
      pending = 0;
    } else if (is_high_surrogate(c)) {
      pending = c;
    } else if (c >= 0x10000) {
      *out++ = static_cast<wchar_t>(((c - 0x10000) >> 10 & 0x3FF) + k_high_first);
      *out++ = static_cast<wchar_t>((c & 0x3FF) + k_low_first);
    } else {
      *out++ = static_cast<wchar_t>(c);
    }
    i += length;
  }
  *used = pending == 0 ? i : i - 3;
  return out;
}

// Writes one to four bytes and returns their end.
char* encode(int c, char* out) {
  const auto bits = static_cast<unsigned>(c);
  const auto tail = [bits](int shift) { return static_cast<char>(0x80 | (bits >> shift & 0x3F)); };
  if (c <= 0x7F) {
    *out++ = static_cast<char>(bits);
  } else if (c <= 0x7FF) {
    *out++ = static_cast<char>(0xC0 | bits >> 6);
    *out++ = tail(0);
  } else if (c < 0x10000) {
    *out++ = static_cast<char>(0xE0 | bits >> 12);
    *out++ = tail(6);
    *out++ = tail(0);
  } else {
    *out++ = static_cast<char>(0xF0 | (bits >> 18 & 0x07));
    *out++ = tail(12);
    *out++ = tail(6);
    *out++ = tail(0);
  }
  return out;
}

bool is_ascii(const std::wstring& text) {
  unsigned seen = 0;
  for (const wchar_t unit : text) seen |= static_cast<unsigned>(unit);
  return seen < 0x80;
}

}  // namespace

namespace internal {

std::size_t append_wide(std::wstring* out, std::string_view utf8) {
  const std::size_t run = ascii_run(utf8);
  if (run == utf8.size() && out->empty()) {
    *out = std::wstring(utf8.begin(), utf8.end());  // with neither slack nor a first filling
    return run;
  }
  const std::string_view rest = utf8.substr(run);
  const std::size_t start = out->size();
  out->resize(start + run + unit_bound(rest));

  wchar_t* const target = &(*out)[0] + start;
  for (std::size_t i = 0; i < run; ++i) {
    target[i] = static_cast<wchar_t>(static_cast<unsigned char>(utf8[i]));
  }
  if (rest.empty()) return run;
  std::size_t used;
  const wchar_t* const end = decode(rest, target + run, &used);
  out->resize(static_cast<std::size_t>(end - out->data()));
  return run + used;
}

void append_narrow(std::string* out, const std::wstring& in) {
  if (is_ascii(in)) {
    const std::size_t start = out->size();
    out->resize(start + in.size());
    char* const target = &(*out)[0] + start;
    for (std::size_t i = 0; i < in.size(); ++i) target[i] = static_cast<char>(in[i]);
    return;
  }

  for (std::size_t i = 0; i < in.size(); ++i) {
    int c = static_cast<int>(in[i]);
    if (is_high_surrogate(c) && ++i < in.size()) {
      const int low = static_cast<int>(in[i]);
      if (is_low_surrogate(low)) c = (c & 0x3FF) * 1024 + (low & 0x3FF) + 0x10000;
    }
    char buffer[4];
    out->append(buffer, static_cast<std::size_t>(encode(c, buffer) - buffer));
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
  *encode(c, buf) = '\0';
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
