// Conversions between UTF-8 and units of one to four bytes, a block at a time. A block is read and
// written whole; what stands behind the part that a function says it took means nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "lmx/internal/lanes.h"
#include "lmx/internal/word.h"

namespace lmx::internal {

#if ZOL_LANES

inline constexpr std::size_t k_unit_block = 16;

inline __m128i load_lanes(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
inline void store_lanes(void* p, __m128i lanes) {
  _mm_storeu_si128(static_cast<__m128i*>(p), lanes);
}
inline unsigned lane_bits(__m128i flags) { return static_cast<unsigned>(_mm_movemask_epi8(flags)); }

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
  static __m128i load(const char* p) {
    if constexpr (k_size == 2) {
      return load_lanes(p);
    } else {
      return _mm_packs_epi32(load_lanes(p), load_lanes(p + 16));
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
  static __m128i load(const char* p) { return load_lanes(p); }
#endif
};

struct BigEndianUnits {
  static constexpr std::size_t k_size = 2;
  static std::uint32_t at(const char* p) {
    return static_cast<unsigned char>(p[1]) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(p[0])) << 8;
  }
#if ZOL_LANES
  static __m128i load(const char* p) {
    const __m128i swapped = load_lanes(p);
    return _mm_or_si128(_mm_slli_epi16(swapped, 8), _mm_srli_epi16(swapped, 8));
  }
#endif
};

struct Latin1Units {
  static constexpr std::size_t k_size = 1;
  static std::uint32_t at(const char* p) { return static_cast<unsigned char>(*p); }
#if ZOL_LANES
  static __m128i load(const char* p) {
    return _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)),
                             _mm_setzero_si128());
  }
#endif
};

// What a caller of narrow_block wants to see for itself.
struct NoneOwn {
  static constexpr bool has(std::uint32_t) { return false; }
#if ZOL_LANES
  static unsigned find(__m128i, __m128i) { return 0; }
#endif
};

// The four characters that XML text writes as references.
struct EscapesOwn {
  static constexpr bool has(std::uint32_t unit) {
    return unit == '"' || unit == '\'' || unit == '&' || unit == '<';
  }
#if ZOL_LANES
  static unsigned find(__m128i low, __m128i high) {
    const __m128i bytes = _mm_packus_epi16(low, high);  // what is not ASCII stays so
    const auto equals = [bytes](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
    return lane_bits(_mm_or_si128(_mm_or_si128(equals('"'), equals('\'')),
                                  _mm_or_si128(equals('&'), equals('<'))));
  }
#endif
};

// A line end in its own right, which is to be read as a line feed.
struct NextLineOwn {
  static constexpr std::uint32_t k_next_line = 0x85;
  static constexpr bool has(std::uint32_t unit) { return unit == k_next_line; }
#if ZOL_LANES
  static unsigned find(__m128i low, __m128i high) {
    const __m128i next_line = _mm_set1_epi16(k_next_line);
    return lane_bits(
        _mm_packs_epi16(_mm_cmpeq_epi16(low, next_line), _mm_cmpeq_epi16(high, next_line)));
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
  const __m128i bytes = load_lanes(in);
  const __m128i zero = _mm_setzero_si128();
  const auto put = [zero](wchar_t* to, __m128i units) {
    if constexpr (sizeof(wchar_t) == 2) {
      store_lanes(to, units);
    } else {
      store_lanes(to, _mm_unpacklo_epi16(units, zero));
      store_lanes(to + 4, _mm_unpackhi_epi16(units, zero));
    }
  };
  const auto put_plain = [&] {
    put(*out, _mm_unpacklo_epi8(bytes, zero));
    put(*out + 8, _mm_unpackhi_epi8(bytes, zero));
  };
  const unsigned others = lane_bits(bytes);
  if (others == 0) {
    put_plain();
    *out += k_unit_block;
    return k_unit_block;
  }

  const auto has_bits = [bytes](char mask, char value) {
    return _mm_cmpeq_epi8(_mm_and_si128(bytes, _mm_set1_epi8(mask)), _mm_set1_epi8(value));
  };
  const __m128i is_lead = has_bits('\xE0', '\xC0');
  const unsigned leads = lane_bits(is_lead);
  const unsigned tails = lane_bits(has_bits('\xC0', '\x80'));
  if ((leads | tails) != others || tails != (leads << 1 & 0xFFFF)) {
    const auto run = static_cast<std::size_t>(lowest_bit(others));
    if (run != 0) put_plain();
    *out += run;
    return run;
  }

  const __m128i six_bits = _mm_and_si128(_mm_srli_si128(bytes, 1), _mm_set1_epi8(0x3F));
  const auto join = [](__m128i lead_flags, __m128i first, __m128i tail) {
    const __m128i high = _mm_slli_epi16(_mm_and_si128(first, _mm_set1_epi16(0x1F)), 6);
    return _mm_or_si128(_mm_and_si128(lead_flags, _mm_or_si128(high, tail)),
                        _mm_andnot_si128(lead_flags, first));
  };
  std::uint16_t units[k_unit_block];
  store_lanes(units, join(_mm_unpacklo_epi8(is_lead, is_lead), _mm_unpacklo_epi8(bytes, zero),
                          _mm_unpacklo_epi8(six_bits, zero)));
  store_lanes(units + 8, join(_mm_unpackhi_epi8(is_lead, is_lead), _mm_unpackhi_epi8(bytes, zero),
                              _mm_unpackhi_epi8(six_bits, zero)));
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
  const __m128i low = Form::load(in);
  const __m128i high = Form::load(in + 8 * Form::k_size);
  const auto are_below = [&](short limit) {
    const auto flags = [limit](__m128i units) {
      return _mm_andnot_si128(_mm_srai_epi16(units, 15),
                              _mm_cmplt_epi16(units, _mm_set1_epi16(limit)));
    };
    return lane_bits(_mm_packs_epi16(flags(low), flags(high)));
  };
  const unsigned longs = are_below(0x80) ^ 0xFFFF;
  const unsigned own = Own::find(low, high);
  if ((longs | own) == 0) {
    store_lanes(*out, _mm_packus_epi16(low, high));
    *out += k_unit_block;
    return k_unit_block;
  }
  if (own != 0 || are_below(0x800) != 0xFFFF) {
    const auto run = static_cast<std::size_t>(lowest_bit(longs | own));
    store_lanes(*out, _mm_packus_epi16(low, high));
    *out += run;
    return run;
  }

  const auto spell = [](__m128i units) {
    const __m128i is_long = _mm_cmpgt_epi16(units, _mm_set1_epi16(0x7F));
    const __m128i second = _mm_slli_epi16(_mm_and_si128(units, _mm_set1_epi16(0x3F)), 8);
    const __m128i pair = _mm_or_si128(_mm_or_si128(_mm_srli_epi16(units, 6), second),
                                      _mm_set1_epi16(static_cast<short>(0x80C0)));
    return _mm_or_si128(_mm_and_si128(is_long, pair), _mm_andnot_si128(is_long, units));
  };
  std::uint16_t pairs[k_unit_block];
  store_lanes(pairs, spell(low));
  store_lanes(pairs + 8, spell(high));
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
