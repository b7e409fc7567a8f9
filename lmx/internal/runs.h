// Steps over bytes in a window: what may be taken as it stands, in runs.
#pragma once

#include <cstddef>

#include "lmx/internal/char_table.h"
#include "lmx/internal/lanes.h"
#include "lmx/internal/word.h"

namespace lmx::internal {

inline unsigned char byte_at(const char* p) { return static_cast<unsigned char>(*p); }

// The length of a UTF-8 sequence that may be copied as it stands, or 0 if the getter has to look at
// it: what is ill-formed, cut by the window's end or a line end.
inline int plain_sequence_length(const char* p, const char* end) {
  const unsigned lead = byte_at(p);
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const int length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (end - p < length) return 0;
  for (int i = 1; i < length; ++i) {
    if ((byte_at(p + i) & 0xC0) != 0x80) return 0;
  }
  const unsigned second = byte_at(p + 1);
  switch (lead) {
    case 0xC2:
      return second == 0x85 ? 0 : length;
    case 0xE0:
      return second >= 0xA0 ? length : 0;
    case 0xE2:
      return second == 0x80 && byte_at(p + 2) == 0xA8 ? 0 : length;
    case 0xED:
      return second <= 0x9F ? length : 0;
    case 0xF0:
      return second >= 0x90 ? length : 0;
    case 0xF4:
      return second <= 0x8F ? length : 0;
    default:
      return length;
  }
}

// The end of a run of ASCII without control characters, up to a stop: "<" or "&". Of white space
// only the blank passes, so that no mode but the collapsing one has anything to do.
inline const char* pass_plain_ascii(const char* p, const char* end) {
#if ZOL_LANES
  for (; end - p >= Lanes::k_size; p += Lanes::k_size) {
    const unsigned stop = Lanes(p).is_unusual_or('<', '&');
    if (stop != 0) return p + lowest_bit(stop);
  }
#else
  for (; end - p >= 8; p += 8) {
    const std::uint64_t word = load_word(p);
    const std::uint64_t stop =
        (word & k_highs) | flag_below(word, ' ') | flag_equal(word, '<') | flag_equal(word, '&');
    if (stop != 0) return p + lowest_byte(stop);
  }
#endif
  while (p != end && byte_at(p) >= ' ' && byte_at(p) < 0x80 && *p != '<' && *p != '&') ++p;
  return p;
}

// The same in an attribute, up to a double quote or "&".
inline const char* pass_plain_value(const char* p, const char* end) {
#if ZOL_LANES
  for (; end - p >= Lanes::k_size; p += Lanes::k_size) {
    const unsigned stop = Lanes(p).is_unusual_or('"', '&');
    if (stop != 0) return p + lowest_bit(stop);
  }
#endif
  while (p != end && byte_at(p) >= ' ' && byte_at(p) < 0x80 && *p != '"' && *p != '&') ++p;
  return p;
}

// Text with well-formed sequences that need no look of their own.
inline const char* pass_plain_run(const char* p, const char* end) {
  while (true) {
    p = pass_plain_ascii(p, end);
    if (p == end || byte_at(p) < 0x80) return p;
    const int length = plain_sequence_length(p, end);
    if (length == 0) return p;
    p += length;
  }
}

// Is there neither a zero nor anything that is no such sequence?
inline bool is_plain_utf8(const char* p, const char* end) {
  while (p != end) {
    if (end - p >= 8) {
      const std::uint64_t word = load_word(p);
      if (((word & k_highs) | flag_equal(word, 0)) == 0) {
        p += 8;
        continue;
      }
    }
    if (*p == '\0') return false;
    const int length = byte_at(p) < 0x80 ? 1 : plain_sequence_length(p, end);
    if (length == 0) return false;
    p += length;
  }
  return true;
}

// Line feeds, and carriage returns that are not followed by one.
inline int count_line_ends(const char* p, const char* end) {
  int lines = 0;
#if ZOL_LANES
  while (end - p > Lanes::k_size) {
    // The byte behind a block is looked at as well, since a pair may be cut.
    Tally tally;
    for (int i = 0; i < Tally::k_most && end - p > Lanes::k_size; ++i, p += Lanes::k_size) {
      tally.add(Lanes(p).line_ends(Lanes(p + 1)));
    }
    lines += tally.sum();
  }
#endif
  for (; p != end; ++p) {
    if (*p == '\n' || (*p == '\r' && (p + 1 == end || p[1] != '\n'))) ++lines;
  }
  return lines;
}

// Passes line feeds, tabs and blanks, as most lines begin.
inline const char* pass_indentation(const char* p, const char* end) {
#if ZOL_LANES
  for (; end - p >= Lanes::k_size; p += Lanes::k_size) {
    const unsigned others = Lanes(p).is_space_or_tab_or_line_feed() ^ 0xFFFF;
    if (others != 0) return p + lowest_bit(others);
  }
#endif
  while (p != end && (*p == '\t' || *p == '\n' || *p == ' ')) ++p;
  return p;
}

// Passes the bytes that are in none of the classes of `stop`.
inline const char* pass_plain(const char* p, const char* end, unsigned stop) {
  while (p != end && !has_mask(*p, stop)) ++p;
  return p;
}

// Passes line feeds, well-formed sequences and everything else that is not in `stop` or a byte for
// the getter. `stop` is k_text_stop or k_value_stop, which hold them all.
inline const char* pass_run(const char* p, const char* end, unsigned stop, int* lines) {
  while (true) {
    p = pass_plain(p, end, stop);
    if (p == end) return p;
    if (*p == '\n') {
      ++*lines;
      ++p;
    } else if (const int length = plain_sequence_length(p, end)) {
      p += length;
    } else {
      return p;
    }
  }
}

// Passes line feeds, well-formed sequences and everything else up to an ASCII character or a byte
// for the getter.
inline const char* pass_up_to(const char* p, const char* end, char stop, int* lines) {
  while (p != end) {
#if ZOL_LANES
    if (end - p >= Lanes::k_size) {
      const unsigned unusual = Lanes(p).is_unusual_or(stop, stop);
      if (unusual == 0) {
        p += Lanes::k_size;
        continue;
      }
      p += lowest_bit(unusual);
    }
#else
    if (end - p >= 8) {
      const std::uint64_t word = load_word(p);
      const auto stop_byte = static_cast<unsigned char>(stop);
      const std::uint64_t unusual =
          flag_below(word, ' ') | flag_equal(word, stop_byte) | (word & k_highs);
      if (unusual == 0) {
        p += 8;
        continue;
      }
      p += lowest_byte(unusual);
    }
#endif
    if (*p == '\n') {
      ++*lines;
      ++p;
    } else if (*p == stop || *p == '\r' || *p == '\0') {
      return p;
    } else if (byte_at(p) < 0x80) {
      ++p;
    } else if (const int length = plain_sequence_length(p, end)) {
      p += length;
    } else {
      return p;
    }
  }
  return p;
}

// Passes the tabs that indent most lines.
inline const char* pass_tabs(const char* p, const char* end) {
  for (; end - p >= 8; p += 8) {
    const std::uint64_t others = load_word(p) ^ (k_ones * '\t');
    if (others != 0) return p + lowest_byte(others);
  }
  while (p != end && *p == '\t') ++p;
  return p;
}

// Passes white space, with a carriage return only before a line feed.
inline const char* pass_space(const char* p, const char* end, int* lines) {
#if ZOL_LANES
  // Most of it is one line end and an indentation.
  for (; end - p >= Lanes::k_size; p += Lanes::k_size) {
    const Lanes lanes(p);
    const unsigned others = lanes.is_space_or_tab_or_line_feed() ^ 0xFFFF;
    unsigned line_feeds = lanes.equal('\n') & (others - 1) & ~others;
    for (; line_feeds != 0; line_feeds &= line_feeds - 1) ++*lines;
    if (others == 0) continue;
    p += lowest_bit(others);
    if (!has_mask(*p, k_space)) return p;
    break;
  }
#endif
  while (p != end) {
    if (*p == '\n') {
      ++*lines;
      p = pass_tabs(p + 1, end);
    } else if (has_mask(*p, k_space) && (*p != '\r' || (end - p >= 2 && p[1] == '\n'))) {
      ++p;
    } else {
      break;
    }
  }
  return p;
}

// Passes the bytes of a class.
inline const char* pass_class(const char* p, const char* end, unsigned mask) {
  for (; end - p >= 4; p += 4) {
    if (!has_mask(p[0], mask)) return p;
    if (!has_mask(p[1], mask)) return p + 1;
    if (!has_mask(p[2], mask)) return p + 2;
    if (!has_mask(p[3], mask)) return p + 3;
  }
  while (p != end && has_mask(*p, mask)) ++p;
  return p;
}

// Passes a name in ASCII and tells where its local part begins.
inline const char* pass_name(const char* name, const char* end, std::size_t* local_at) {
  const char* const p = pass_class(name, end, k_ascii_ncname);
  *local_at = 0;
  if (p == end || *p != ':') return p;
  *local_at = static_cast<std::size_t>(p - name) + 1;
  return pass_class(p, end, k_ascii_name);
}

}  // namespace lmx::internal
