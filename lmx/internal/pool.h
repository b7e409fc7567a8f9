// Memory for the many small objects that are made while a document is read.
//
// A pool cuts blocks off a chunk, one after another. The address of a block tells its chunk, and a
// chunk goes with the last of its blocks, in whatever order and thread they are released. So the
// objects live as if each were on the heap by itself, and one that stays keeps at most its chunk.
//
// A document that was read as a whole mostly goes as a whole. Its pool then makes a batch: as long
// as nobody changed what the blocks hold between them, all its chunks are let go of at once and no
// object is looked at. Whoever gives such an object something that stands elsewhere, or takes
// something away from it, disturbs the batch, and from then on its blocks go one by one.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "port/export.h"

namespace lmx::internal {

struct Chunk;
struct BatchRecord;

// What goes with a batch and has a destructor to be run.
struct BatchEntry {
  BatchEntry* next = nullptr;
  void (*destroy)(BatchEntry* entry) = nullptr;
};

// The blocks of one document, for as long as they are intact.
class Batch {
 public:
  Batch() = default;
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;
  // Lets go of all blocks if nobody disturbed them, and else leaves them to those who hold them.
  ~Batch() { let_go(); }

  void swap(Batch& other) noexcept { std::swap(record_, other.record_); }
  ZOL_API bool is_intact() const;

 private:
  friend class Pool;

  ZOL_API void let_go();

  BatchRecord* record_ = nullptr;
};

class Pool {
 public:
  // Of every block.
  static constexpr std::size_t k_alignment = 8;

  enum class Kind : bool { plain, batch };

  explicit Pool(Kind kind = Kind::plain) : kind_(kind) {}
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  ~Pool() { retire(); }

  // Throws std::bad_alloc.
  void* allocate(std::size_t size) {
    const std::size_t whole =
        (std::max(size, k_alignment) + k_alignment - 1) / k_alignment * k_alignment;
    if (whole > k_max_block) return allocate_large(size);
    if (static_cast<std::size_t>(end_ - at_) < whole && !add_chunk()) return allocate_large(size);
    void* const block = at_;
    at_ += whole;
    ++made_;
    return block;
  }
  // A block that is in no chunk.
  static void* allocate_alone(std::size_t size) { return ::operator new(size); }
  // For blocks of either kind; null is let pass. Disturbs the batch of the block.
  ZOL_API static void release(void* block) noexcept;
  // The same for a block of bytes, which a batch may lose without harm.
  ZOL_API static void release_plain(void* block) noexcept;

  // Without chunks each block stands alone, as AddressSanitizer wants it: it is the default there.
  // For a program that has no pool at work yet.
  ZOL_API static void use_chunks(bool in_chunks);

  // A pool that makes a batch gives up its blocks to it.
  ZOL_API void move_to(Batch* batch);
  // What stands in a block, or in an object there, is destroyed with the batch.
  template <class T>
  void destroy_with_batch(T* object);
  // The same for an entry that stands on the heap by itself, and is given to what lies at `at`.
  // False if that is in no batch. Whoever lets go of the entry disturbs the batch. Any thread may
  // call it.
  ZOL_API static bool add_to_batch(const void* at, BatchEntry* entry);

  // Says that what is at this address gets or loses something that it owns.
  ZOL_API static void disturb(const void* at) noexcept;
  // Does this address lie in a batch that is intact, and so goes with it?
  ZOL_API static bool goes_with_batch(const void* at) noexcept;
  ZOL_API static bool is_in_chunk(const void* at) noexcept;

 private:
  static constexpr std::size_t k_first_chunk = 4 * 1024;
  static constexpr std::size_t k_last_chunk = 64 * 1024;
  static constexpr std::size_t k_max_block = k_first_chunk / 4;

  // False where there are to be none.
  ZOL_API bool add_chunk();
  ZOL_API void* allocate_large(std::size_t size);
  Chunk* new_chunk(std::size_t size);
  // Leaves the chunk to its blocks.
  ZOL_API void retire();

  const Kind kind_;
  Chunk* chunk_ = nullptr;
  char* at_ = nullptr;
  char* end_ = nullptr;
  std::int64_t made_ = 0;
  std::size_t chunk_size_ = k_first_chunk;
  Batch batch_;
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
  Owned<T> owned(object);
  if (pool != nullptr) pool->destroy_with_batch(object);
  return owned;
}

template <class T, class... Args>
Owned<T> make_owned(Args&&... args) {
  return make_owned_in<T>(nullptr, std::forward<Args>(args)...);
}

template <class T>
void Pool::destroy_with_batch(T* object) {
  if (kind_ == Kind::plain || std::is_trivially_destructible_v<T> || !is_in_chunk(object)) return;
  struct Entry : BatchEntry {
    T* object;
  };
  auto* const entry = ::new (allocate(sizeof(Entry))) Entry;
  // Nobody releases it; it is there as long as the object's batch is.
  --made_;
  entry->object = object;
  entry->destroy = [](BatchEntry* self) { static_cast<Entry*>(self)->object->~T(); };
  add_to_batch(entry, entry);
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
