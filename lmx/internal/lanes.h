// Sixteen bytes at a time where the processor has it: a bit for each byte of a block.
#pragma once

#include "lmx/internal/vector.h"

namespace lmx::internal {

#if ZOL_LANES

class Lanes {
 public:
  static constexpr int k_size = 16;

  explicit Lanes(const char* p) : bytes_(load_vector(p)) {}

  unsigned equal(char c) const { return high_bits(equals(c)); }
  unsigned is_space_or_tab_or_line_feed() const {
    return high_bits(either(equals(' '), either(equals('\t'), equals('\n'))));
  }
  // Control characters, bytes above 127, and two given characters.
  unsigned is_unusual_or(char a, char b) const {
    return high_bits(either(signed_bytes_below(bytes_, ' '), either(equals(a), equals(b))));
  }
  // A bit for each byte that is the same in both.
  unsigned equal(const Lanes& other) const { return high_bits(equal_bytes(bytes_, other.bytes_)); }
  // All bits of a byte that is a line feed, or a carriage return that no line feed follows. `next`
  // begins one byte further on.
  Vector line_ends(const Lanes& next) const {
    return either(equals('\n'), without(equals('\r'), next.equals('\n')));
  }

 private:
  Vector equals(char c) const { return equal_bytes(bytes_, all_bytes(c)); }

  Vector bytes_;
};

// Counts bytes of which all bits are set, in a number of blocks.
class Tally {
 public:
  static constexpr int k_most = 255;

  void add(Vector flags) { counts_ = subtract_bytes(counts_, flags); }
  int sum() const { return sum_of_bytes(counts_); }

 private:
  Vector counts_ = all_bytes(0);
};

#endif

}  // namespace lmx::internal
