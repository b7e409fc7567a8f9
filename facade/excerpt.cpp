// The line of a fault as a terminal shows it.
#include <algorithm>
#include <iterator>

#include "facade/faults.h"
#include "facade/internal/source_text.h"
#include "lmx/text.h"

namespace zol_v2 {

namespace {

constexpr std::string_view k_tab = "  ";
constexpr std::string_view k_ellipsis = "\xE2\x80\xA6";
constexpr int k_replacement = 0xFFFD;

struct Range {
  int first;
  int last;
};

// Characters that take two columns, by the property East_Asian_Width (Unicode Standard Annex 11),
// in the large: what is not assigned inside a block counts with it.
constexpr Range k_wide[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x23E9, 0x23EC},   {0x2E80, 0x303E},
    {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},
    {0xA960, 0xA97F},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},
    {0xFE30, 0xFE6F},   {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x18DFF},
    {0x1B000, 0x1B2FF}, {0x1F300, 0x1F320}, {0x1F32D, 0x1F335}, {0x1F337, 0x1F37C},
    {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA}, {0x1F3E0, 0x1F3F0}, {0x1F400, 0x1F43E},
    {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D}, {0x1F550, 0x1F567}, {0x1F5FB, 0x1F64F},
    {0x1F680, 0x1F6C5}, {0x1F90C, 0x1F9FF}, {0x20000, 0x3FFFD}};
// Those that take none: they stand on the one before, or steer it.
constexpr Range k_narrowest[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD},  {0x0610, 0x061A}, {0x064B, 0x065F},
    {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F},  {0x20D0, 0x20FF}, {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0xE0100, 0xE01EF}};

template <std::size_t count>
bool is_in(const Range (&ranges)[count], int c) {
  const auto* const found =
      std::lower_bound(std::begin(ranges), std::end(ranges), c,
                       [](const Range& range, int value) { return range.last < value; });
  return found != std::end(ranges) && found->first <= c;
}

std::size_t columns_of(int c) {
  if (c == '\t') return k_tab.size();
  if (c < 0x300) return 1;
  return is_in(k_narrowest, c) ? 0 : is_in(k_wide, c) ? 2 : 1;
}

void append(std::string* out, int c) {
  if (c == '\t') {
    out->append(k_tab);
    return;
  }
  char sequence[5];
  const bool is_control = c < 0x20 || (c >= 0x7F && c < 0xA0);
  out->append(lmx::unicode_char_to_utf8(is_control ? k_replacement : c, sequence));
}

}  // namespace

Excerpt excerptOf(std::string_view bytes, const Fault& fault, std::size_t columns) {
  Excerpt excerpt;
  if (!fault.place || fault.place.offset > bytes.size()) return excerpt;
  const internal::SourceText source(bytes);
  const auto at = std::max(static_cast<std::size_t>(fault.place.offset), source.begin());
  const std::size_t end = std::min(at + static_cast<std::size_t>(fault.length), bytes.size());
  const auto width_at = [&source](std::size_t place, std::size_t* behind) {
    return columns_of(source.character(place, behind));
  };

  // As much before the fault as leaves it half of the room, or all that it needs.
  std::size_t begin = at;
  while (begin > source.begin() && excerpt.begin < columns / 2) {
    const std::size_t back = source.before(begin);
    if (source.is_line_end(back)) break;
    std::size_t behind = 0;
    excerpt.begin += width_at(back, &behind);
    begin = back;
  }
  if (begin > source.begin() && !source.is_line_end(source.before(begin))) {
    excerpt.text = k_ellipsis;
    ++excerpt.begin;
  }

  std::size_t column = excerpt.text.empty() ? 0 : 1;
  std::size_t place = begin;
  while (place < bytes.size() && !source.is_line_end(place)) {
    std::size_t behind = place;
    const int c = source.character(place, &behind);
    const std::size_t width = columns_of(c);
    if (column + width > columns) {
      excerpt.text += k_ellipsis;
      break;
    }
    append(&excerpt.text, c);
    column += width;
    if (place >= at && place < end) excerpt.width += width;
    place = behind;
  }
  excerpt.width = std::max<std::size_t>(excerpt.width, 1);
  return excerpt;
}

}  // namespace zol_v2
