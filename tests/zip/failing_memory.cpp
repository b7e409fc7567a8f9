#include "zip/failing_memory.h"

#include <cstdlib>
#include <new>

namespace {

unsigned g_failing = 0;
unsigned g_count = 0;

void* allocate(std::size_t size) noexcept {
  if (g_failing != 0 && ++g_count == g_failing) return nullptr;
  return std::malloc(size == 0 ? 1 : size);
}

void* allocate_or_throw(std::size_t size) {
  if (void* block = allocate(size)) return block;
  throw std::bad_alloc();
}

}  // namespace

namespace zol_test {

void fail_allocation(unsigned number) {
  g_failing = number;
  g_count = 0;
}

unsigned count_allocations() { return g_count; }

}  // namespace zol_test

void* operator new(std::size_t size) { return allocate_or_throw(size); }
void* operator new[](std::size_t size) { return allocate_or_throw(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }
