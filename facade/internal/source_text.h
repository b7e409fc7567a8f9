// The bytes of a document as they stand in their source, for whoever shows places in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "facade/faults.h"

namespace zol_v2::internal {

// A stretch of the bytes.
struct Span {
  std::size_t begin = 0;
  std::size_t end = 0;

  std::size_t size() const { return end - begin; }
};

// Reads the markup around a place the way the reader of the document does, but only as far as is
// needed to point at it. Works on the code units of the source, whatever its encoding.
class SourceText {
 public:
  // The bytes stay the caller's. The encoding is found by the mark, the first characters and the
  // declaration.
  explicit SourceText(std::string_view bytes);

  std::size_t size() const { return bytes_.size(); }
  std::string_view bytes() const { return bytes_; }
  bool is_utf8() const { return form_ == Form::utf8; }
  // Where the first character stands: behind a mark.
  std::size_t begin() const { return begin_; }

  // The tag or text that comes at or behind a place, after white space, comments and instructions.
  std::size_t skip_to_content(std::size_t at) const;
  std::size_t skip_space(std::size_t at, std::size_t end) const;
  // The next occurrence; the end if there is none.
  std::size_t find(std::size_t at, std::string_view ascii) const;
  // Without the white space at both ends.
  Span trimmed(Span span) const;
  // "<name" or "</name".
  Span tag_head(std::size_t at) const;
  // A whole tag.
  Span tag(std::size_t at) const;
  // Of the attribute in the tag that begins at `at`, the `number`th of the name from 0; empty if
  // there is none.
  struct Attribute {
    Span name;
    Span value;  // between the quotes
  };
  Attribute attribute(std::size_t at, std::string_view name, unsigned number = 0) const;
  // The first that has no value in quotes, in the tag that begins at `at`: then `value` is what
  // stands instead of the quote, or empty if there is no "=". Without a name if there is none.
  Attribute broken_attribute(std::size_t at) const;
  // The name of the encoding in the declaration; empty if there is none.
  Span declared_encoding() const;
  // Is there a "<" that begins no markup?
  bool is_bare_bracket(std::size_t at) const;
  Span bracket(std::size_t at) const { return {at, at + width()}; }
  // Of something that is taken for a tag, behind its first character: is there a "/" in it?
  bool has_slash(std::size_t at) const;
  // Does the end tag of `name` come before that of `other`, and before another element of its name?
  // Whichever comes first begins at `at`; the end if none does.
  struct Closing {
    std::size_t at = 0;
    bool is_first = false;
  };
  Closing closing(std::size_t from, std::string_view name, std::string_view other) const;
  // The reference that ends before `end`.
  Span reference_before(std::size_t end) const;
  // The first reference of the stretch, from `at` on, that is not one of the five that every
  // document has or to a character that it may hold; empty if there is none.
  Span strange_reference(Span span) const;
  // The first bytes that are no UTF-8, from a place on; the given end if all before it are.
  std::size_t bad_utf8(std::size_t from, std::size_t end) const;

  // In UTF-8, as it stands.
  std::string text(Span span) const;
  // The character at a place, and the place behind it: -1 for bytes that are none, of which one is
  // passed, and at the end.
  int character(std::size_t at, std::size_t* behind) const;
  // The place of the character before.
  std::size_t before(std::size_t at) const;
  // Is there a line end at a place?
  bool is_line_end(std::size_t at) const;

  // Line and column of each place whose line is 1 and not known yet by more than its offset. In any
  // order; reads the text once.
  void find_lines(std::vector<SourcePlace*> places) const;

 private:
  enum class Form : unsigned char { utf8, latin1, utf16_be, utf16_le };

  std::size_t width() const { return form_ < Form::utf16_be ? 1 : 2; }
  // The code unit at a place, -1 at the end.
  int unit(std::size_t at) const {
    if (at + width() > bytes_.size()) return -1;
    const auto byte = [this](std::size_t i) { return static_cast<unsigned char>(bytes_[i]); };
    if (width() == 1) return byte(at);
    return form_ == Form::utf16_be ? byte(at) << 8 | byte(at + 1) : byte(at + 1) << 8 | byte(at);
  }
  bool is_at(std::size_t at, std::string_view ascii) const;
  // Behind the next occurrence; the end if there is none.
  std::size_t pass(std::size_t at, std::string_view ascii) const;
  std::size_t name_end(std::size_t at) const;
  // The attribute at or behind a place; false if none is there, or if its value has no quotes.
  bool read_attribute(std::size_t at, Attribute* out) const;
  void advance(SourcePlace& place, std::size_t to) const;

  std::string_view bytes_;
  Form form_ = Form::utf8;
  std::size_t begin_ = 0;
};

}  // namespace zol_v2::internal
