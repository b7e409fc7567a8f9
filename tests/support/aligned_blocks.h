// Blocks at a multiple of something, which Windows takes back by a function of their own.
#pragma once

#include <cstddef>
#include <cstdlib>
#if defined(_WIN32)
#include <malloc.h>
#endif

namespace zol_test {

inline void* take_aligned(std::size_t alignment, std::size_t size) {
#if defined(_WIN32)
  return _aligned_malloc(size, alignment);
#else
  return std::aligned_alloc(alignment, size);
#endif
}

inline void free_aligned(void* block) {
#if defined(_WIN32)
  _aligned_free(block);
#else
  std::free(block);
#endif
}

}  // namespace zol_test
