// Sixteen bytes at a time where the processor has it: a bit for each byte of a block.
#pragma once

#ifndef ZOL_LANES
#if defined(__SSE2__) || defined(_M_X64)
#define ZOL_LANES 1
#else
#define ZOL_LANES 0
#endif
#endif
#if ZOL_LANES
#include <emmintrin.h>
#endif

namespace lmx::internal {

#if ZOL_LANES

class Lanes {
 public:
  static constexpr int k_size = 16;

  explicit Lanes(const char* p) : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))) {}

  unsigned equal(char c) const { return bits(equals(c)); }
  unsigned is_space_or_tab_or_line_feed() const {
    return bits(_mm_or_si128(equals(' '), _mm_or_si128(equals('\t'), equals('\n'))));
  }
  // Control characters, bytes above 127, and two given characters.
  unsigned is_unusual_or(char a, char b) const {
    const __m128i unusual = _mm_cmplt_epi8(bytes_, _mm_set1_epi8(' '));
    return bits(_mm_or_si128(unusual, _mm_or_si128(equals(a), equals(b))));
  }
  // A bit for each byte that is the same in both.
  unsigned equal(const Lanes& other) const { return bits(_mm_cmpeq_epi8(bytes_, other.bytes_)); }
  // All bits of a byte that is a line feed, or a carriage return that no line feed follows. `next`
  // begins one byte further on.
  __m128i line_ends(const Lanes& next) const {
    return _mm_or_si128(equals('\n'), _mm_andnot_si128(next.equals('\n'), equals('\r')));
  }

 private:
  __m128i equals(char c) const { return _mm_cmpeq_epi8(bytes_, _mm_set1_epi8(c)); }
  static unsigned bits(__m128i flags) { return static_cast<unsigned>(_mm_movemask_epi8(flags)); }

  __m128i bytes_;
};

// Counts bytes of which all bits are set, in a number of blocks.
class Tally {
 public:
  static constexpr int k_most = 255;

  void add(__m128i flags) { counts_ = _mm_sub_epi8(counts_, flags); }
  int sum() const {
    const __m128i sums = _mm_sad_epu8(counts_, _mm_setzero_si128());
    return _mm_cvtsi128_si32(sums) + _mm_cvtsi128_si32(_mm_srli_si128(sums, 8));
  }

 private:
  __m128i counts_ = _mm_setzero_si128();
};

#endif

}  // namespace lmx::internal
