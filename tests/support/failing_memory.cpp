#include "support/failing_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "support/aligned_blocks.h"

namespace {

unsigned g_failing = 0;
bool g_for_good = false;
unsigned g_count = 0;
std::atomic<std::ptrdiff_t> g_blocks{0};

void* allocate(std::size_t size, std::size_t alignment = 0) noexcept {
  if (g_failing != 0 && ++g_count >= g_failing && (g_for_good || g_count == g_failing)) {
    return nullptr;
  }
  void* const block =
      alignment != 0 ? zol_test::take_aligned(alignment, size) : std::malloc(size == 0 ? 1 : size);
  g_blocks += block != nullptr;
  return block;
}

void release(void* block) noexcept {
  g_blocks -= block != nullptr;
  std::free(block);
}

void release_aligned(void* block) noexcept {
  g_blocks -= block != nullptr;
  zol_test::free_aligned(block);
}

void* allocate_or_throw(std::size_t size, std::size_t alignment = 0) {
  if (void* block = allocate(size, alignment)) return block;
  throw std::bad_alloc();
}

}  // namespace

namespace zol_test {

void fail_allocation(unsigned number, bool for_good) {
  g_failing = number;
  g_for_good = for_good;
  g_count = 0;
}

unsigned count_allocations() { return g_count; }

std::ptrdiff_t count_blocks() { return g_blocks; }

}  // namespace zol_test

void* operator new(std::size_t size) { return allocate_or_throw(size); }
void* operator new[](std::size_t size) { return allocate_or_throw(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocate_or_throw(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete(void* block, std::align_val_t) noexcept { release_aligned(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  release_aligned(block);
}
