#include "facade/internal/text_flaws.h"

#include <algorithm>
#include <cstddef>

#include "lmx/internal/lexical.h"
#include "lmx/internal/unicode.h"

namespace zol_v2::internal {

namespace {

using lmx::internal::is_high_surrogate;
using lmx::internal::is_low_surrogate;

constexpr std::uint32_t k_next_line = 0x85;
constexpr std::uint32_t k_line_separator = 0x2028;

// The bytes with which a character that needs a look may begin: control characters, "]]>", NEL,
// LINE SEPARATOR, and the two behind U+FFFD.
struct SuspectBytes {
  bool is_suspect[256] = {};

  constexpr SuspectBytes() {
    for (unsigned c = 0; c < 0x20; ++c) is_suspect[c] = true;
    for (const unsigned c : {0x3Eu, 0xC2u, 0xE2u, 0xEFu}) is_suspect[c] = true;
  }
};
constexpr SuspectBytes k_suspects;

bool is_plain_unit(std::uint32_t unit) {
  if (unit < 0x80) return !k_suspects.is_suspect[unit];
  return unit != k_next_line && unit != k_line_separator && (unit < 0xD800 || unit > 0xDFFF) &&
         unit < 0xFFFE;
}

bool is_space(std::uint32_t unit) {
  return unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
}

// Runs of white space, white space at an edge, or another than a blank.
bool loses_space(const std::wstring& text) {
  bool was_space = true;
  for (const wchar_t c : text) {
    const auto unit = static_cast<std::uint32_t>(c);
    const bool is_here = is_space(unit);
    if (is_here && (was_space || unit != ' ')) return true;
    was_space = is_here;
  }
  return was_space && !text.empty();
}

// Two for a pair of surrogates.
std::size_t units_at(const std::wstring& text, std::size_t at) {
  const bool is_pair = is_high_surrogate(static_cast<std::uint32_t>(text[at])) &&
                       at + 1 < text.size() &&
                       is_low_surrogate(static_cast<std::uint32_t>(text[at + 1]));
  return is_pair ? 2 : 1;
}

TextFlaw flaw_at(const std::wstring& text, std::size_t at, const TextRules& rules) {
  const auto unit = static_cast<std::uint32_t>(text[at]);
  switch (unit) {
    case '\t':
    case '\n':
      return rules.is_attribute && !rules.is_exact ? TextFlaw::attribute_white_space
                                                   : TextFlaw::none;
    case '\r':
      return rules.is_exact ? TextFlaw::none : TextFlaw::line_end;
    case k_next_line:
    case k_line_separator:
      return TextFlaw::line_end;
    case '>':
      return !rules.is_exact && !rules.is_attribute && at >= 2 && text[at - 1] == ']' &&
                     text[at - 2] == ']'
                 ? TextFlaw::section_end
                 : TextFlaw::none;
    default:
      break;
  }
  if (is_high_surrogate(unit) || is_low_surrogate(unit)) return TextFlaw::lone_surrogate;
  if (unit < 0x20 || unit == 0xFFFE || unit == 0xFFFF || unit > 0x10FFFF) {
    return TextFlaw::no_character;
  }
  return TextFlaw::none;
}

}  // namespace

bool is_plain_text(std::string_view utf8) {
  return std::none_of(utf8.begin(), utf8.end(),
                      [](char c) { return k_suspects.is_suspect[static_cast<unsigned char>(c)]; });
}

bool is_plain_text(const std::wstring& text) {
  return std::all_of(text.begin(), text.end(),
                     [](wchar_t c) { return is_plain_unit(static_cast<std::uint32_t>(c)); });
}

bool is_written(const std::wstring& text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::size_t units = units_at(text, at);
    const auto unit = static_cast<std::uint32_t>(text[at]);
    if (units == 1 && (is_high_surrogate(unit) || is_low_surrogate(unit))) return false;
    at += units - 1;
  }
  return true;
}

std::string utf8_of(std::wstring text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::size_t units = units_at(text, at);
    const TextFlaw flaw = units == 1 ? flaw_at(text, at, {true, false, true}) : TextFlaw::none;
    if (flaw == TextFlaw::lone_surrogate || flaw == TextFlaw::no_character) text[at] = 0xFFFD;
    at += units - 1;
  }
  std::string utf8;
  lmx::internal::append_narrow(&utf8, text);
  return utf8;
}

TextFault find_flaw(const std::wstring& text, const TextRules& rules) {
  TextFault minor;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto unit = static_cast<std::uint32_t>(text[at]);
    if (units_at(text, at) == 2) {
      ++at;
      continue;
    }
    const TextFlaw flaw = flaw_at(text, at, rules);
    if (flaw == TextFlaw::none) continue;
    if (flaw != TextFlaw::attribute_white_space) return {flaw, unit};
    if (minor.flaw == TextFlaw::none) minor = {flaw, unit};
  }
  if (rules.collapses && loses_space(text)) return {TextFlaw::lost_space, ' '};
  return minor;
}

}  // namespace zol_v2::internal
