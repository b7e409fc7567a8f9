// Memory for the many small objects that are made while a document is read.
//
// A pool cuts blocks off a chunk, one after another. Each block knows its chunk, and a chunk goes
// with the last of its blocks, in whatever order and thread they are released. So the objects live
// as if each were on the heap by itself, and one that stays keeps at most its chunk.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "port/export.h"

// Without chunks AddressSanitizer sees each block.
#ifndef ZOL_POOL_IN_CHUNKS
#if defined(__SANITIZE_ADDRESS__)
#define ZOL_POOL_IN_CHUNKS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZOL_POOL_IN_CHUNKS 0
#endif
#endif
#endif
#ifndef ZOL_POOL_IN_CHUNKS
#define ZOL_POOL_IN_CHUNKS 1
#endif

namespace lmx::internal {

class Pool {
 public:
  // Of every block.
  static constexpr std::size_t k_alignment = 8;

  Pool() = default;
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  ~Pool() { retire(); }

  // Throws std::bad_alloc.
  void* allocate(std::size_t size) {
    const std::size_t whole = sizeof(Header) + (size + k_alignment - 1) / k_alignment * k_alignment;
    if (!ZOL_POOL_IN_CHUNKS || whole > k_max_block) return allocate_alone(size);
    if (static_cast<std::size_t>(end_ - at_) < whole) add_chunk();
    Header* const header = ::new (static_cast<void*>(at_)) Header{chunk_};
    at_ += whole;
    ++made_;
    return header + 1;
  }
  // A block that is in no chunk.
  static void* allocate_alone(std::size_t size) {
    return ::new (::operator new(sizeof(Header) + size)) Header{nullptr} + 1;
  }
  // For blocks of either kind; null is let pass.
  ZOL_API static void release(void* block) noexcept;

 private:
  struct Chunk {
    // Blocks that are not released, and while blocks are being cut off this many more.
    static constexpr std::int64_t k_open = std::int64_t{1} << 40;

    std::atomic<std::int64_t> live{k_open};

    void give_up(std::int64_t count);
  };
  struct alignas(k_alignment) Header {
    Chunk* chunk;
  };

  static constexpr std::size_t k_first_chunk = 4 * 1024;
  static constexpr std::size_t k_last_chunk = 64 * 1024;
  static constexpr std::size_t k_max_block = k_first_chunk / 4;

  ZOL_API void add_chunk();
  // Leaves the chunk to its blocks.
  ZOL_API void retire();

  Chunk* chunk_ = nullptr;
  char* at_ = nullptr;
  char* end_ = nullptr;
  std::int64_t made_ = 0;
  std::size_t chunk_size_ = k_first_chunk;
};

// Destroys what stands in a block and releases it.
struct ReleaseBlock {
  template <class T>
  void operator()(T* object) const {
    object->~T();
    Pool::release(const_cast<std::remove_const_t<T>*>(object));
  }
};

template <class T>
using Owned = std::unique_ptr<T, ReleaseBlock>;

// An object in a block of the pool, or in one of its own if there is no pool.
template <class T, class... Args>
Owned<T> make_owned_in(Pool* pool, Args&&... args) {
  static_assert(alignof(T) <= Pool::k_alignment, "blocks are not aligned for this type");
  struct Release {
    void operator()(void* block) const { Pool::release(block); }
  };
  std::unique_ptr<void, Release> block(pool != nullptr ? pool->allocate(sizeof(T))
                                                       : Pool::allocate_alone(sizeof(T)));
  T* const object = ::new (block.get()) T(std::forward<Args>(args)...);
  (void)block.release();
  return Owned<T>(object);
}

template <class T, class... Args>
Owned<T> make_owned(Args&&... args) {
  return make_owned_in<T>(nullptr, std::forward<Args>(args)...);
}

// Gives a class and what derives from it blocks, so that it is made and deleted like any other, and
// yet may be made in a pool.
struct Pooled {
  static void* operator new(std::size_t size) { return Pool::allocate_alone(size); }
  static void* operator new(std::size_t size, Pool& pool) { return pool.allocate(size); }
  static void* operator new(std::size_t, void* at) noexcept { return at; }
  static void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
      return operator new(size);
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }
  static void operator delete(void* block) { Pool::release(block); }
  static void operator delete(void* block, Pool&) { Pool::release(block); }
  static void operator delete(void*, void*) noexcept {}
  static void operator delete(void* block, const std::nothrow_t&) { Pool::release(block); }
};

}  // namespace lmx::internal
