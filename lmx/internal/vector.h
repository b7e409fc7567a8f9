// Sixteen bytes in a register, where the processor has such: the operations that blocks of bytes
// and of 16-bit units need, as SSE2 and as NEON spell them. A flag is a byte or a unit of which all
// bits are set.
#pragma once

#ifndef ZOL_LANES
#if defined(__SSE2__) || defined(_M_X64)
#define ZOL_LANES 1
#elif defined(__aarch64__) && defined(__ARM_NEON) && !defined(__ARM_BIG_ENDIAN)
#define ZOL_LANES 1
#else
#define ZOL_LANES 0
#endif
#endif

#if ZOL_LANES
#ifdef __ARM_NEON
#include <arm_neon.h>
#else
#include <emmintrin.h>
#endif

namespace lmx::internal {

#ifdef __ARM_NEON

using Vector = uint8x16_t;

inline int8x16_t as_signed_bytes(Vector v) { return vreinterpretq_s8_u8(v); }
inline uint16x8_t as_units(Vector v) { return vreinterpretq_u16_u8(v); }
inline int16x8_t as_signed_units(Vector v) { return vreinterpretq_s16_u8(v); }
inline Vector as_vector(uint16x8_t units) { return vreinterpretq_u8_u16(units); }

inline Vector load_vector(const void* p) { return vld1q_u8(static_cast<const unsigned char*>(p)); }
inline void store_vector(void* p, Vector v) { vst1q_u8(static_cast<unsigned char*>(p), v); }
inline Vector all_bytes(char c) { return vdupq_n_u8(static_cast<unsigned char>(c)); }
inline Vector all_units(unsigned short unit) { return as_vector(vdupq_n_u16(unit)); }

inline Vector both(Vector a, Vector b) { return vandq_u8(a, b); }
inline Vector either(Vector a, Vector b) { return vorrq_u8(a, b); }
inline Vector without(Vector a, Vector b) { return vbicq_u8(a, b); }
inline Vector choose(Vector flags, Vector a, Vector b) { return vbslq_u8(flags, a, b); }

inline Vector equal_bytes(Vector a, Vector b) { return vceqq_u8(a, b); }
inline Vector signed_bytes_below(Vector v, char bound) {
  return vcltq_s8(as_signed_bytes(v), as_signed_bytes(all_bytes(bound)));
}
inline Vector subtract_bytes(Vector a, Vector b) { return vsubq_u8(a, b); }
inline int sum_of_bytes(Vector v) { return vaddlvq_u8(v); }
inline Vector shift_bytes_down(Vector v) { return vextq_u8(v, vdupq_n_u8(0), 1); }

inline Vector equal_units(Vector a, Vector b) {
  return as_vector(vceqq_u16(as_units(a), as_units(b)));
}
inline Vector units_below(Vector v, short bound) {
  return as_vector(vcltq_u16(as_units(v), vdupq_n_u16(static_cast<unsigned short>(bound))));
}
template <int Bits>
Vector shift_units_left(Vector v) {
  return as_vector(vshlq_n_u16(as_units(v), Bits));
}
template <int Bits>
Vector shift_units_right(Vector v) {
  return as_vector(vshrq_n_u16(as_units(v), Bits));
}

inline Vector load_bytes_as_units(const char* p) {
  return as_vector(vmovl_u8(vld1_u8(reinterpret_cast<const unsigned char*>(p))));
}
inline Vector low_bytes_as_units(Vector v) { return as_vector(vmovl_u8(vget_low_u8(v))); }
inline Vector high_bytes_as_units(Vector v) { return as_vector(vmovl_high_u8(v)); }
inline Vector low_bytes_twice(Vector v) { return vzip1q_u8(v, v); }
inline Vector high_bytes_twice(Vector v) { return vzip2q_u8(v, v); }
inline Vector low_units_as_words(Vector v) {
  return vreinterpretq_u8_u32(vmovl_u16(vget_low_u16(as_units(v))));
}
inline Vector high_units_as_words(Vector v) {
  return vreinterpretq_u8_u32(vmovl_high_u16(as_units(v)));
}

inline Vector signed_units_as_bytes(Vector low, Vector high) {
  return vqmovun_high_s16(vqmovun_s16(as_signed_units(low)), as_signed_units(high));
}
inline Vector unit_flags_as_bytes(Vector low, Vector high) { return vuzp1q_u8(low, high); }
inline Vector signed_words_as_units(Vector low, Vector high) {
  const int16x4_t first = vqmovn_s32(vreinterpretq_s32_u8(low));
  return vreinterpretq_u8_s16(vqmovn_high_s32(first, vreinterpretq_s32_u8(high)));
}

inline unsigned high_bits(Vector v) {
  constexpr unsigned char k_weights[16] = {1, 2, 4, 8, 16, 32, 64, 128,
                                           1, 2, 4, 8, 16, 32, 64, 128};
  const Vector flags = vreinterpretq_u8_s8(vshrq_n_s8(as_signed_bytes(v), 7));
  const Vector weights = vandq_u8(flags, vld1q_u8(k_weights));
  return vaddv_u8(vget_low_u8(weights)) | static_cast<unsigned>(vaddv_u8(vget_high_u8(weights)))
                                              << 8;
}

#else

using Vector = __m128i;

inline Vector load_vector(const void* p) { return _mm_loadu_si128(static_cast<const Vector*>(p)); }
inline void store_vector(void* p, Vector v) { _mm_storeu_si128(static_cast<Vector*>(p), v); }
inline Vector all_bytes(char c) { return _mm_set1_epi8(c); }
inline Vector all_units(unsigned short unit) { return _mm_set1_epi16(static_cast<short>(unit)); }

inline Vector both(Vector a, Vector b) { return _mm_and_si128(a, b); }
inline Vector either(Vector a, Vector b) { return _mm_or_si128(a, b); }
// What is set in `a` and not in `b`.
inline Vector without(Vector a, Vector b) { return _mm_andnot_si128(b, a); }
inline Vector choose(Vector flags, Vector a, Vector b) {
  return either(both(flags, a), without(b, flags));
}

inline Vector equal_bytes(Vector a, Vector b) { return _mm_cmpeq_epi8(a, b); }
inline Vector signed_bytes_below(Vector v, char bound) {
  return _mm_cmplt_epi8(v, all_bytes(bound));
}
inline Vector subtract_bytes(Vector a, Vector b) { return _mm_sub_epi8(a, b); }
inline int sum_of_bytes(Vector v) {
  const Vector sums = _mm_sad_epu8(v, _mm_setzero_si128());
  return _mm_cvtsi128_si32(sums) + _mm_cvtsi128_si32(_mm_srli_si128(sums, 8));
}
// Each byte goes one place towards the first, and the last is zero.
inline Vector shift_bytes_down(Vector v) { return _mm_srli_si128(v, 1); }

inline Vector equal_units(Vector a, Vector b) { return _mm_cmpeq_epi16(a, b); }
// Units have no sign, and the bound is above zero.
inline Vector units_below(Vector v, short bound) {
  return _mm_andnot_si128(_mm_srai_epi16(v, 15), _mm_cmplt_epi16(v, _mm_set1_epi16(bound)));
}
template <int Bits>
Vector shift_units_left(Vector v) {
  return _mm_slli_epi16(v, Bits);
}
template <int Bits>
Vector shift_units_right(Vector v) {
  return _mm_srli_epi16(v, Bits);
}

// Reads eight bytes.
inline Vector load_bytes_as_units(const char* p) {
  return _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const Vector*>(p)),
                           _mm_setzero_si128());
}
inline Vector low_bytes_as_units(Vector v) { return _mm_unpacklo_epi8(v, _mm_setzero_si128()); }
inline Vector high_bytes_as_units(Vector v) { return _mm_unpackhi_epi8(v, _mm_setzero_si128()); }
inline Vector low_bytes_twice(Vector v) { return _mm_unpacklo_epi8(v, v); }
inline Vector high_bytes_twice(Vector v) { return _mm_unpackhi_epi8(v, v); }
inline Vector low_units_as_words(Vector v) { return _mm_unpacklo_epi16(v, _mm_setzero_si128()); }
inline Vector high_units_as_words(Vector v) { return _mm_unpackhi_epi16(v, _mm_setzero_si128()); }

// What does not fit becomes the nearest that does.
inline Vector signed_units_as_bytes(Vector low, Vector high) { return _mm_packus_epi16(low, high); }
inline Vector unit_flags_as_bytes(Vector low, Vector high) { return _mm_packs_epi16(low, high); }
inline Vector signed_words_as_units(Vector low, Vector high) { return _mm_packs_epi32(low, high); }

// The highest bit of each byte, that of the first byte lowest.
inline unsigned high_bits(Vector v) { return static_cast<unsigned>(_mm_movemask_epi8(v)); }

#endif

}  // namespace lmx::internal

#endif
