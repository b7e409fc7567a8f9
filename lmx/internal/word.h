// Eight bytes at a time: a flag for each byte of a word, in its high bit. Borrows may set flags
// above the lowest one that is due, so only the lowest is to be trusted.
#pragma once

#include <cstdint>
#include <cstring>

namespace lmx::internal {

constexpr std::uint64_t k_ones = 0x0101010101010101u;
constexpr std::uint64_t k_highs = 0x8080808080808080u;

// The first byte is the lowest of the word.
inline std::uint64_t load_word(const char* p) {
  std::uint64_t word = 0;
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  for (int i = 0; i < 8; ++i) {
    word |= static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])) << (8 * i);
  }
#else
  std::memcpy(&word, p, sizeof word);
#endif
  return word;
}

inline std::uint64_t flag_equal(std::uint64_t word, unsigned char c) {
  const std::uint64_t difference = word ^ (k_ones * c);
  return (difference - k_ones) & ~difference & k_highs;
}

// For a bound of at most 128.
inline std::uint64_t flag_below(std::uint64_t word, unsigned char bound) {
  return (word - k_ones * bound) & ~word & k_highs;
}

// The place of the lowest bit that is set.
inline int lowest_bit(std::uint64_t word) {
#if defined(__GNUC__)
  return __builtin_ctzll(word);
#else
  int place = 0;
  for (; (word & 1) == 0; word >>= 1) ++place;
  return place;
#endif
}

// The place of the lowest byte that is not zero.
inline int lowest_byte(std::uint64_t word) { return lowest_bit(word) / 8; }

}  // namespace lmx::internal
