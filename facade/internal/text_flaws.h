// What becomes of a text between writing and reading.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zol_v2::internal {

enum class TextFlaw : unsigned char {
  none,
  lone_surrogate,        // the written text ends there
  no_character,          // XML has no such character
  section_end,           // "]]>", which XML forbids between tags
  line_end,              // comes back as a line feed
  lost_space,            // the row does not keep white space
  attribute_white_space  // other readers than this library's take it for a blank
};

struct TextFault {
  TextFlaw flaw = TextFlaw::none;
  std::uint32_t unit = 0;  // the one at which it shows
};

struct TextRules {
  bool is_attribute;
  bool collapses;
  bool is_exact;  // written with references, which leave only what XML cannot hold
};

// Whether every character is one that always comes back.
bool is_plain_text(std::string_view utf8);
bool is_plain_text(const std::wstring& text);

// Whether there is no surrogate in it without its partner.
bool is_written(const std::wstring& text);
// For people: what can't be written becomes U+FFFD.
std::string utf8_of(std::wstring text);

// The first flaw, but of white space in attributes only if there is no other.
TextFault find_flaw(const std::wstring& text, const TextRules& rules);

}  // namespace zol_v2::internal
