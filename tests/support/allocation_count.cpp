#include "support/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "support/aligned_blocks.h"

namespace {

std::atomic<long> allocations{0};

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  ++allocations;
  void* const block = zol_test::take_aligned(static_cast<std::size_t>(alignment), size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, std::align_val_t) noexcept { zol_test::free_aligned(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  zol_test::free_aligned(block);
}

namespace zol_test {

long allocation_count() { return allocations; }

}  // namespace zol_test
