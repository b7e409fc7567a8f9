#include "facade/internal/source_text.h"

#include <algorithm>

#include "lmx/entities.h"
#include "lmx/internal/char_table.h"
#include "lmx/internal/runs.h"
#include "lmx/internal/transcode.h"
#include "lmx/text.h"

namespace zol_v2::internal {

namespace {

constexpr int k_next_line = 0x85;
constexpr int k_line_separator = 0x2028;
constexpr std::string_view k_next_line_utf8 = "\xC2\x85";
constexpr std::string_view k_line_separator_utf8 = "\xE2\x80\xA8";

bool is_space(int unit) { return unit < 0x80 && lmx::internal::is_space(unit); }
bool is_quote(int unit) { return unit == '"' || unit == '\''; }
// A unit outside ASCII may be one of a name.
bool is_name(int unit) { return unit >= 0x80 || (unit > 0 && lmx::internal::is_name_char(unit)); }
bool is_name_start(int unit) {
  return unit >= 0x80 || (unit > 0 && lmx::internal::is_name_start(unit));
}
bool is_high(int unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low(int unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace

SourceText::SourceText(std::string_view bytes) : bytes_(bytes) {
  const auto begins = [bytes](std::string_view mark) {
    return bytes.substr(0, mark.size()) == mark;
  };
  using std::string_view_literals::operator""sv;
  if (begins("\xEF\xBB\xBF")) begin_ = 3;
  if (begins("\xFE\xFF") || begins("\xFF\xFE")) begin_ = 2;
  if (begins("\xFE\xFF") || (bytes.size() > 1 && bytes[0] == '\0')) form_ = Form::utf16_be;
  if (begins("\xFF\xFE") || (bytes.size() > 1 && bytes[0] != '\0' && bytes[1] == '\0')) {
    form_ = Form::utf16_le;
  }
  if (form_ != Form::utf8 || !begins("<?xml")) return;
  const std::string_view declaration = bytes.substr(0, std::min(bytes.find('>'), bytes.size()));
  const std::size_t word = declaration.find("encoding");
  const std::size_t quote = declaration.find_first_of("\"'", word);
  if (word == std::string_view::npos || quote == std::string_view::npos) return;
  const std::size_t end = declaration.find(declaration[quote], quote + 1);
  const std::string_view name = declaration.substr(quote + 1, end - quote - 1);
  if (lmx::internal::is_same_encoding_name(name, "ISO-8859-1") ||
      lmx::internal::is_same_encoding_name(name, "US-ASCII")) {
    form_ = Form::latin1;
  }
}

// --- Markup -------------------------------------------------------------------------------------

bool SourceText::is_at(std::size_t at, std::string_view ascii) const {
  for (const char c : ascii) {
    if (unit(at) != c) return false;
    at += width();
  }
  return true;
}

std::size_t SourceText::pass(std::size_t at, std::string_view ascii) const {
  if (width() == 1) {
    const std::size_t found = bytes_.find(ascii, at);
    return found == std::string_view::npos ? bytes_.size() : found + ascii.size();
  }
  for (; at < bytes_.size(); at += width()) {
    if (is_at(at, ascii)) return at + ascii.size() * width();
  }
  return bytes_.size();
}

std::size_t SourceText::find(std::size_t at, std::string_view ascii) const {
  const std::size_t behind = pass(at, ascii);
  const std::size_t size = ascii.size() * width();
  return behind >= size && is_at(behind - size, ascii) ? behind - size : bytes_.size();
}

std::size_t SourceText::skip_space(std::size_t at, std::size_t end) const {
  while (at < end && is_space(unit(at))) at += width();
  return std::min(at, end);
}

std::size_t SourceText::skip_to_content(std::size_t at) const {
  at = std::max(at, begin_);
  while (true) {
    at = skip_space(at, bytes_.size());
    if (is_at(at, "<?")) {
      at = pass(at, "?>");
    } else if (is_at(at, "<!--")) {
      at = pass(at, "-->");
    } else if (is_at(at, "<!DOCTYPE")) {
      // Up to a bracket, or to the end of the subset in brackets.
      while (at < bytes_.size() && unit(at) != '[' && unit(at) != '>') at += width();
      if (unit(at) == '[') at = pass(at, "]");
      at = pass(at, ">");
    } else {
      return at;
    }
  }
}

Span SourceText::trimmed(Span span) const {
  span.begin = skip_space(span.begin, span.end);
  while (span.end > span.begin && is_space(unit(span.end - width()))) span.end -= width();
  return span;
}

std::size_t SourceText::name_end(std::size_t at) const {
  while (is_name(unit(at))) at += width();
  return at;
}

Span SourceText::tag_head(std::size_t at) const {
  std::size_t end = at + width();
  if (unit(end) == '/') end += width();
  return {at, std::min(name_end(end), bytes_.size())};
}

Span SourceText::tag(std::size_t at) const {
  int quote = 0;
  std::size_t end = at;
  for (int c = unit(end); c >= 0; c = unit(end)) {
    end += width();
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (is_quote(c)) {
      quote = c;
    } else if (c == '>') {
      break;
    }
  }
  return {at, end};
}

bool SourceText::read_attribute(std::size_t at, Attribute* out) const {
  at = skip_space(at, bytes_.size());
  *out = {{at, name_end(at)}, {at, at}};
  if (out->name.size() == 0) return false;
  at = skip_space(out->name.end, bytes_.size());
  if (unit(at) != '=') return false;
  at = skip_space(at + width(), bytes_.size());
  out->value = {at, std::min(at + width(), bytes_.size())};
  const int quote = unit(at);
  if (!is_quote(quote)) return false;
  out->value = {at + width(), at + width()};
  while (unit(out->value.end) >= 0 && unit(out->value.end) != quote) out->value.end += width();
  return unit(out->value.end) == quote;
}

SourceText::Attribute SourceText::attribute(std::size_t at, std::string_view name,
                                            unsigned number) const {
  Attribute found;
  for (at = tag_head(at).end; read_attribute(at, &found); at = found.value.end + width()) {
    if (text(found.name) == name && number-- == 0) return found;
  }
  return {};
}

SourceText::Attribute SourceText::broken_attribute(std::size_t at) const {
  Attribute found;
  for (at = tag_head(at).end; read_attribute(at, &found); at = found.value.end + width()) {
  }
  return found;
}

// --- References and encodings -------------------------------------------------------------------

Span SourceText::declared_encoding() const {
  const std::size_t at = skip_space(begin_, bytes_.size());
  return is_at(at, "<?xml") ? attribute(at + width(), "encoding").value : Span();
}

bool SourceText::is_bare_bracket(std::size_t at) const {
  const int next = unit(at + width());
  return unit(at) == '<' && !is_name_start(next) && next != '/' && next != '!' && next != '?';
}

bool SourceText::has_slash(std::size_t at) const {
  int quote = 0;
  for (at += width(); unit(at) >= 0 && unit(at) != '>'; at += width()) {
    const int c = unit(at);
    if (quote == 0 && c == '/') return true;
    if (quote != 0 ? c == quote : is_quote(c)) quote = quote != 0 ? 0 : c;
  }
  return false;
}

SourceText::Closing SourceText::closing(std::size_t from, std::string_view name,
                                        std::string_view other) const {
  const std::string end = "/" + std::string(name);
  const std::string outer = "/" + std::string(other);
  for (std::size_t at = from; (at = pass(at, "<")) < bytes_.size();) {
    const auto is_tag = [&](std::string_view text) {
      return is_at(at, text) && !is_name(unit(at + text.size() * width()));
    };
    // Which of two elements of one name it would be is not to be told.
    if (is_tag(end)) return {at, name != other};
    if (is_tag(outer) || is_tag(name)) return {at, false};
  }
  return {bytes_.size(), false};
}

Span SourceText::reference_before(std::size_t end) const {
  std::size_t at = end;
  while (at >= begin_ + width() && unit(at) != '&') at -= width();
  return unit(at) == '&' ? Span{at, end} : Span{end, end};
}

Span SourceText::strange_reference(Span span) const {
  for (std::size_t at = span.begin; at < span.end; at += width()) {
    if (is_at(at, "<!") || is_at(at, "<?")) {
      at = pass(at, is_at(at, "<![") ? "]]>" : is_at(at, "<!") ? "-->" : "?>") - width();
      continue;
    }
    if (unit(at) != '&') continue;
    std::size_t end = at + width();
    if (unit(end) == '#') end += width();
    end = name_end(end);
    const std::string name = text({at + width(), end});
    if (unit(end) == ';') end += width();
    if (lmx::internal::predefined_entity(name) == '\0') return {at, end};
  }
  return {};
}

std::size_t SourceText::bad_utf8(std::size_t from, std::size_t end) const {
  while (form_ == Form::utf8 && from < end) {
    const auto lead = static_cast<unsigned char>(bytes_[from]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const std::string_view sequence = bytes_.substr(from, length);
    const bool is_whole =
        sequence.size() == length && std::all_of(sequence.begin() + 1, sequence.end(), [](char c) {
          return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        });
    if (!is_whole || !lmx::is_valid_utf8_char_sequence(sequence.data())) return from;
    from += length;
  }
  return end;
}

std::string SourceText::text(Span span) const {
  if (form_ == Form::utf8) return std::string(bytes_.substr(span.begin, span.size()));
  std::string out;
  for (std::size_t at = span.begin; at < span.end; at += width()) {
    int c = unit(at);
    if (is_high(c) && is_low(unit(at + width()))) {
      at += width();
      c = ((c & 0x3FF) << 10) + (unit(at) & 0x3FF) + 0x10000;
    }
    char sequence[5];
    out += lmx::unicode_char_to_utf8(c, sequence);
  }
  return out;
}

int SourceText::character(std::size_t at, std::size_t* behind) const {
  int c = unit(at);
  *behind = std::min(at + width(), bytes_.size());
  if (form_ == Form::utf8 && c >= 0x80) {
    const std::size_t length = c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
    const std::string_view sequence = bytes_.substr(at, length);
    if (bad_utf8(at, at + 1) == at) return -1;
    c &= 0xFF >> (length + 1);
    for (const char next : sequence.substr(1)) c = c << 6 | (next & 0x3F);
    *behind = at + length;
  } else if (is_high(c) && is_low(unit(*behind))) {
    c = ((c & 0x3FF) << 10) + (unit(*behind) & 0x3FF) + 0x10000;
    *behind += width();
  } else if (is_high(c) || is_low(c)) {
    return -1;
  }
  return c;
}

std::size_t SourceText::before(std::size_t at) const {
  std::size_t back = at - width();
  if (form_ == Form::utf8) {
    const std::size_t least = at < begin_ + 4 ? begin_ : at - 4;
    while (back > least && (static_cast<unsigned char>(bytes_[back]) & 0xC0) == 0x80) --back;
    std::size_t behind = back;
    static_cast<void>(character(back, &behind));
    return behind == at ? back : at - 1;
  }
  if (is_low(unit(back)) && back >= begin_ + width() && is_high(unit(back - width()))) {
    back -= width();
  }
  return back;
}

bool SourceText::is_line_end(std::size_t at) const {
  std::size_t behind = at;
  const int c = character(at, &behind);
  return c == '\n' || c == '\r' || c == k_next_line || c == k_line_separator;
}

// --- Lines --------------------------------------------------------------------------------------

// Whatever the reader takes for a line end is one here, each of them once.
void SourceText::advance(SourcePlace& place, std::size_t to) const {
  auto at = static_cast<std::size_t>(place.offset);
  place.offset = to;
  if (form_ == Form::utf8) {
    const std::string_view piece = bytes_.substr(at, to - at);
    std::size_t line = 0;  // where the last one begins
    if (const int lines =
            lmx::internal::count_line_ends(piece.data(), piece.data() + piece.size())) {
      place.line += static_cast<std::uint64_t>(lines);
      line = piece.find_last_of("\r\n") + 1;
    }
    for (const std::string_view rare : {k_next_line_utf8, k_line_separator_utf8}) {
      for (std::size_t i = 0; (i = piece.find(rare, i)) != std::string_view::npos;) {
        ++place.line;
        i += rare.size();
        line = std::max(line, i);
      }
    }
    if (line != 0) place.column = 1;
    place.column += static_cast<std::uint64_t>(
        std::count_if(piece.begin() + static_cast<std::ptrdiff_t>(line), piece.end(),
                      [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
    return;
  }
  for (; at < to; at += width()) {
    const int c = unit(at);
    if (c == '\n' || c == '\r' || c == k_next_line || c == k_line_separator) {
      if (c == '\r' && unit(at + width()) == '\n') continue;  // which ends the line
      ++place.line;
      place.column = 1;
    } else if (!is_low(c)) {
      ++place.column;
    }
  }
}

void SourceText::find_lines(std::vector<SourcePlace*> places) const {
  std::sort(places.begin(), places.end(),
            [](const SourcePlace* a, const SourcePlace* b) { return a->offset < b->offset; });
  SourcePlace at{1, 1, begin_};
  for (SourcePlace* const place : places) {
    const auto offset = static_cast<std::size_t>(place->offset);
    if (offset > at.offset) advance(at, std::min(offset, bytes_.size()));
    *place = at;
    place->offset = offset;
  }
}

}  // namespace zol_v2::internal
