// The one table by which every stage above the character input classifies bytes.
#pragma once

namespace lmx::internal {

enum CharMask : unsigned char {
  k_name_start = 1,  // may begin a name
  k_name = 2,        // may stand in a name
  k_space = 4,
  // Ends a run of element text: markup, a reference, or a byte that needs a look.
  k_text_stop = 8,
  // Ends a run of an attribute value's source text: a quote or a byte that needs a look.
  k_value_stop = 16,
  k_ascii_name = 32,  // k_name below 128
  // Ends a run of an attribute value that can be taken as it stands.
  k_plain_stop = 64,
  k_ascii_ncname = 128,  // k_ascii_name but for the colon
};

// Bytes above 127 pass as name characters whatever they spell.
struct CharTable {
  unsigned char mask[256] = {};

  constexpr CharTable() {
    for (int c = 0x80; c < 0x100; ++c) {
      mask[c] = k_name_start | k_name | k_text_stop | k_value_stop;
    }
    for (int c = 'a'; c <= 'z'; ++c) mask[c] |= k_name_start | k_name | k_ascii_name;
    for (int c = 'A'; c <= 'Z'; ++c) mask[c] |= k_name_start | k_name | k_ascii_name;
    for (int c = '0'; c <= '9'; ++c) mask[c] |= k_name | k_ascii_name;
    for (const char c : {'_', ':'}) {
      mask[static_cast<int>(c)] |= k_name_start | k_name | k_ascii_name;
    }
    for (const char c : {'.', '-'}) mask[static_cast<int>(c)] |= k_name | k_ascii_name;
    for (int c = 0; c < 0x80; ++c) {
      if (c != ':' && (mask[c] & k_ascii_name) != 0) mask[c] |= k_ascii_ncname;
    }
    for (int c = '\t'; c <= '\r'; ++c) mask[c] |= k_space | k_plain_stop;
    mask[0x20] |= k_space | k_plain_stop;
    for (const char c : {'\0', '\r', '\n'}) mask[static_cast<int>(c)] |= k_text_stop | k_value_stop;
    for (const char c : {'<', '&'}) mask[static_cast<int>(c)] |= k_text_stop;
    for (const char c : {'"', '\''}) mask[static_cast<int>(c)] |= k_value_stop;
    for (const char c : {'\0', '&'}) mask[static_cast<int>(c)] |= k_plain_stop;
  }
};

inline constexpr CharTable k_char_table;

inline bool has_mask(char c, unsigned mask) {
  return (k_char_table.mask[static_cast<unsigned char>(c)] & mask) != 0;
}

// For characters as the getters give them; -1, the end of input, is in no class.
inline bool is_name_start(int c) {
  return static_cast<unsigned>(c) < 256 && (k_char_table.mask[c] & k_name_start) != 0;
}
inline bool is_name_char(int c) {
  return static_cast<unsigned>(c) < 256 && (k_char_table.mask[c] & k_name) != 0;
}
inline bool is_space(int c) {
  return static_cast<unsigned>(c) < 256 && (k_char_table.mask[c] & k_space) != 0;
}

}  // namespace lmx::internal
