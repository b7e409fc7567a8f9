// Conversions between UTF-8 and units of one to four bytes, a block at a time. A block is read and
// written whole; what stands behind the part that a function says it took means nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "lmx/internal/vector.h"
#include "lmx/internal/word.h"

namespace lmx::internal {

#if ZOL_LANES
inline constexpr std::size_t k_unit_block = 16;
#else
inline constexpr std::size_t k_unit_block = 8;
#endif

// The most bytes that narrow_block may touch.
inline constexpr std::size_t k_narrow_room = 2 * k_unit_block + 1;

// --- Where units come from --------------------------------------------------------------------

// Each form tells its unit at a place, and eight of them in lanes of 16 bits. There a unit above
// 0x7FFF may come as any other that is above, or as a negative one.

struct WideUnits {
  static constexpr std::size_t k_size = sizeof(wchar_t);
  static std::uint32_t at(const char* p) {
    wchar_t unit;
    std::memcpy(&unit, p, sizeof unit);
    return static_cast<std::uint32_t>(unit);
  }
#if ZOL_LANES
  static Vector load(const char* p) {
    if constexpr (k_size == 2) {
      return load_vector(p);
    } else {
      return signed_words_as_units(load_vector(p), load_vector(p + 16));
    }
  }
#endif
};

struct LittleEndianUnits {
  static constexpr std::size_t k_size = 2;
  static std::uint32_t at(const char* p) {
    return static_cast<unsigned char>(p[0]) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(p[1])) << 8;
  }
#if ZOL_LANES
  static Vector load(const char* p) { return load_vector(p); }
#endif
};

struct BigEndianUnits {
  static constexpr std::size_t k_size = 2;
  static std::uint32_t at(const char* p) {
    return static_cast<unsigned char>(p[1]) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(p[0])) << 8;
  }
#if ZOL_LANES
  static Vector load(const char* p) {
    const Vector swapped = load_vector(p);
    return either(shift_units_left<8>(swapped), shift_units_right<8>(swapped));
  }
#endif
};

struct Latin1Units {
  static constexpr std::size_t k_size = 1;
  static std::uint32_t at(const char* p) { return static_cast<unsigned char>(*p); }
#if ZOL_LANES
  static Vector load(const char* p) { return load_bytes_as_units(p); }
#endif
};

// What a caller of narrow_block wants to see for itself.
struct NoneOwn {
  static constexpr bool has(std::uint32_t) { return false; }
#if ZOL_LANES
  static unsigned find(Vector, Vector) { return 0; }
#endif
};

// The four characters that XML text writes as references.
struct EscapesOwn {
  static constexpr bool has(std::uint32_t unit) {
    return unit == '"' || unit == '\'' || unit == '&' || unit == '<';
  }
#if ZOL_LANES
  static unsigned find(Vector low, Vector high) {
    const Vector bytes = signed_units_as_bytes(low, high);  // what is not ASCII stays so
    const auto equals = [bytes](char c) { return equal_bytes(bytes, all_bytes(c)); };
    return high_bits(either(either(equals('"'), equals('\'')), either(equals('&'), equals('<'))));
  }
#endif
};

// A line end in its own right, which is to be read as a line feed.
struct NextLineOwn {
  static constexpr std::uint32_t k_next_line = 0x85;
  static constexpr bool has(std::uint32_t unit) { return unit == k_next_line; }
#if ZOL_LANES
  static unsigned find(Vector low, Vector high) {
    const Vector next_line = all_units(k_next_line);
    return high_bits(
        unit_flags_as_bytes(equal_units(low, next_line), equal_units(high, next_line)));
  }
#endif
};

// --- Blocks -----------------------------------------------------------------------------------

#if ZOL_LANES

// How many bits of a byte are set below each of its bits.
struct BitRanks {
  unsigned char of[256][8] = {};

  constexpr BitRanks() {
    for (unsigned byte = 0; byte < 256; ++byte) {
      for (unsigned i = 0; i < 7; ++i) {
        of[byte][i + 1] = static_cast<unsigned char>(of[byte][i] + (byte >> i & 1));
      }
    }
  }
};
inline constexpr BitRanks k_bit_ranks;

// Takes ASCII and sequences of two bytes, up to the first other byte, from a block to units.
// Returns the bytes taken and moves `*out` behind the units.
//
// In a block that holds both, each byte is given the unit that it would begin; that of a byte which
// begins none is overwritten by the next.
inline std::size_t widen_block(const char* in, wchar_t** out) {
  const Vector bytes = load_vector(in);
  const auto put = [](wchar_t* to, Vector units) {
    if constexpr (sizeof(wchar_t) == 2) {
      store_vector(to, units);
    } else {
      store_vector(to, low_units_as_words(units));
      store_vector(to + 4, high_units_as_words(units));
    }
  };
  const auto put_plain = [&] {
    put(*out, low_bytes_as_units(bytes));
    put(*out + 8, high_bytes_as_units(bytes));
  };
  const unsigned others = high_bits(bytes);
  if (others == 0) {
    put_plain();
    *out += k_unit_block;
    return k_unit_block;
  }

  const auto has_bits = [bytes](char mask, char value) {
    return equal_bytes(both(bytes, all_bytes(mask)), all_bytes(value));
  };
  const Vector is_lead = has_bits('\xE0', '\xC0');
  const unsigned leads = high_bits(is_lead);
  const unsigned tails = high_bits(has_bits('\xC0', '\x80'));
  if ((leads | tails) != others || tails != (leads << 1 & 0xFFFF)) {
    const auto run = static_cast<std::size_t>(lowest_bit(others));
    if (run != 0) put_plain();
    *out += run;
    return run;
  }

  const Vector six_bits = both(shift_bytes_down(bytes), all_bytes(0x3F));
  const auto join = [](Vector lead_flags, Vector first, Vector tail) {
    const Vector high = shift_units_left<6>(both(first, all_units(0x1F)));
    return choose(lead_flags, either(high, tail), first);
  };
  std::uint16_t units[k_unit_block];
  store_vector(units, join(low_bytes_twice(is_lead), low_bytes_as_units(bytes),
                           low_bytes_as_units(six_bits)));
  store_vector(units + 8, join(high_bytes_twice(is_lead), high_bytes_as_units(bytes),
                               high_bytes_as_units(six_bits)));
  // A lead at the end has its tail in the next block.
  const unsigned cut = leads & 0x8000;
  const unsigned begins = ~(tails | cut);
  const auto place = [begins, &units](unsigned half, wchar_t* to) {
    const unsigned flags = begins >> 8 * half & 0xFF;
    const unsigned char* const ranks = k_bit_ranks.of[flags];
    for (unsigned i = 0; i < 8; ++i) to[ranks[i]] = static_cast<wchar_t>(units[8 * half + i]);
    return to + ranks[7] + (flags >> 7);
  };
  *out = place(1, place(0, *out));
  return cut == 0 ? k_unit_block : k_unit_block - 1;
}

// Takes units up to the first that is above 0x7FF or the caller's own from a block to UTF-8.
// Returns the units taken and moves `*out` behind the bytes.
template <class Form, class Own>
std::size_t narrow_block(const char* in, char** out) {
  const Vector low = Form::load(in);
  const Vector high = Form::load(in + 8 * Form::k_size);
  const auto are_below = [&](short limit) {
    return high_bits(unit_flags_as_bytes(units_below(low, limit), units_below(high, limit)));
  };
  const unsigned longs = are_below(0x80) ^ 0xFFFF;
  const unsigned own = Own::find(low, high);
  if ((longs | own) == 0) {
    store_vector(*out, signed_units_as_bytes(low, high));
    *out += k_unit_block;
    return k_unit_block;
  }
  if (own != 0 || are_below(0x800) != 0xFFFF) {
    const auto run = static_cast<std::size_t>(lowest_bit(longs | own));
    store_vector(*out, signed_units_as_bytes(low, high));
    *out += run;
    return run;
  }

  const auto spell = [](Vector units) {
    const Vector second = shift_units_left<8>(both(units, all_units(0x3F)));
    const Vector pair = either(either(shift_units_right<6>(units), second), all_units(0x80C0));
    return choose(units_below(units, 0x80), units, pair);
  };
  std::uint16_t pairs[k_unit_block];
  store_vector(pairs, spell(low));
  store_vector(pairs + 8, spell(high));
  const auto place = [longs, &pairs](unsigned half, char* to) {
    const unsigned flags = longs >> 8 * half & 0xFF;
    const unsigned char* const ranks = k_bit_ranks.of[flags];
    for (unsigned i = 0; i < 8; ++i) std::memcpy(to + i + ranks[i], &pairs[8 * half + i], 2);
    return to + 8 + ranks[7] + (flags >> 7);
  };
  *out = place(1, place(0, *out));
  return k_unit_block;
}

#else

inline std::size_t widen_block(const char* in, wchar_t** out) {
  for (std::size_t i = 0; i < k_unit_block; ++i) {
    (*out)[i] = static_cast<wchar_t>(static_cast<unsigned char>(in[i]));
  }
  const std::uint64_t others = load_word(in) & k_highs;
  const std::size_t run =
      others == 0 ? k_unit_block : static_cast<std::size_t>(lowest_byte(others));
  *out += run;
  return run;
}

template <class Form, class Own>
std::size_t narrow_block(const char* in, char** out) {
  std::size_t run = 0;
  for (; run < k_unit_block; ++run) {
    const std::uint32_t unit = Form::at(in + run * Form::k_size);
    if (unit >= 0x80 || Own::has(unit)) break;
    *(*out)++ = static_cast<char>(unit);
  }
  return run;
}

#endif

}  // namespace lmx::internal
