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
  unsigned is_unusual_or(char a, char b, char c) const { return is_unusual_or(a, b) | equal(c); }

 private:
  __m128i equals(char c) const { return _mm_cmpeq_epi8(bytes_, _mm_set1_epi8(c)); }
  static unsigned bits(__m128i flags) { return static_cast<unsigned>(_mm_movemask_epi8(flags)); }

  __m128i bytes_;
};

#endif

}  // namespace lmx::internal
