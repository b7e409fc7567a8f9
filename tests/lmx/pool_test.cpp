#include "lmx/internal/pool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

#include "support/aligned_blocks.h"

namespace {

// What this program has from the heap.
std::atomic<long> live_blocks{0};

}  // namespace

// Where only one of the two is inlined, GCC sees `free` with what `new` made.
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  ++live_blocks;
  return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
  if (block == nullptr) return;
  --live_blocks;
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  void* const block = zol_test::take_aligned(static_cast<std::size_t>(alignment), size);
  if (block == nullptr) throw std::bad_alloc();
  ++live_blocks;
  return block;
}
void operator delete(void* block, std::align_val_t) noexcept {
  if (block == nullptr) return;
  --live_blocks;
  zol_test::free_aligned(block);
}
void operator delete(void* block, std::size_t, std::align_val_t alignment) noexcept {
  operator delete(block, alignment);
}

namespace {

using lmx::internal::Batch;
using lmx::internal::make_owned;
using lmx::internal::make_owned_in;
using lmx::internal::Owned;
using lmx::internal::Pool;
using lmx::internal::Pooled;

const int k_with_chunks = (Pool::use_chunks(true), 0);

struct Piece {
  void* block;
  std::size_t size;
  unsigned char fill;
};

// Blocks of all sizes, each filled from end to end with a byte of its own.
std::vector<Piece> fill_blocks(Pool* pool, int count) {
  std::vector<Piece> pieces;
  for (int i = 0; i < count; ++i) {
    const std::size_t size = static_cast<std::size_t>(i * 37 % 1500);
    pieces.push_back({pool->allocate(size), size, static_cast<unsigned char>(i)});
    std::memset(pieces.back().block, pieces.back().fill, size);
  }
  return pieces;
}

bool is_whole(const Piece& piece) {
  const auto* const bytes = static_cast<const unsigned char*>(piece.block);
  return reinterpret_cast<std::uintptr_t>(bytes) % Pool::k_alignment == 0 &&
         std::all_of(bytes, bytes + piece.size, [&](unsigned char c) { return c == piece.fill; });
}

TEST(Pool, BlocksStandApartAndOutliveIt) {
  const long before = live_blocks;
  {
    std::vector<Piece> pieces;
    {
      Pool pool;
      pieces = fill_blocks(&pool, 5000);
    }
    std::shuffle(pieces.begin(), pieces.end(), std::mt19937(1));
    for (const Piece& piece : pieces) {
      ASSERT_TRUE(is_whole(piece));
      Pool::release(piece.block);
    }
  }
  EXPECT_EQ(live_blocks, before);
  Pool::release(nullptr);
}

TEST(Pool, KeepsNoChunkWhoseBlocksAreReleased) {
  const long before = live_blocks;
  Pool pool;
  for (int i = 0; i < 200'000; ++i) {
    Pool::release(pool.allocate(200));
    ASSERT_LE(live_blocks, before + 1);
  }
  void* const kept = pool.allocate(1);
  for (int i = 0; i < 200'000; ++i) Pool::release(pool.allocate(200));
  EXPECT_LE(live_blocks, before + 2);  // the last chunk, and the one of the block that is kept
  Pool::release(kept);
}

TEST(Pool, BlocksMayBeReleasedInAnyThread) {
  const long before = live_blocks;
  {
    Pool pool;
    std::vector<Piece> pieces = fill_blocks(&pool, 20'000);
    std::shuffle(pieces.begin(), pieces.end(), std::mt19937(2));
    std::vector<std::thread> threads;
    for (std::size_t first = 0; first < 4; ++first) {
      threads.emplace_back([&pieces, first] {
        for (std::size_t i = first; i < pieces.size(); i += 4) {
          if (!is_whole(pieces[i])) std::abort();
          Pool::release(pieces[i].block);
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  EXPECT_EQ(live_blocks, before);
}

struct Refusing {
  Refusing() { throw std::runtime_error("no"); }
};

TEST(Pool, OwnedObjectsAreDestroyedAndReleased) {
  const long before = live_blocks;
  {
    Pool pool;
    const Owned<std::vector<int>> in_pool = make_owned_in<std::vector<int>>(&pool, 100, 7);
    const Owned<const std::vector<int>> alone = make_owned<std::vector<int>>(*in_pool);
    EXPECT_EQ(*alone, *in_pool);
    EXPECT_THROW(make_owned_in<Refusing>(&pool), std::runtime_error);
    EXPECT_THROW(make_owned<Refusing>(), std::runtime_error);
  }
  EXPECT_EQ(live_blocks, before);
}

struct Base : Pooled {
  explicit Base(bool refuse = false) {
    if (refuse) throw std::runtime_error("no");
  }
  virtual ~Base() = default;
};
struct Derived : Base {
  std::vector<int> values = std::vector<int>(10);
};

TEST(Pool, ClassesWithBlocksAreMadeAndDeletedLikeOthers) {
  const long before = live_blocks;
  {
    Pool pool;
    delete new Derived;
    delete new (std::nothrow) Derived;
    delete static_cast<Base*>(new (pool) Derived);
    const Owned<Base> owned(new (pool) Derived);
    EXPECT_THROW(new Base(true), std::runtime_error);
    EXPECT_THROW(new (pool) Base(true), std::runtime_error);
    alignas(Derived) char place[sizeof(Derived)];
    (new (place) Derived)->~Derived();
  }
  EXPECT_EQ(live_blocks, before);
}

// --- Batches ----------------------------------------------------------------------------------

// A pool whose blocks are all that its batch has, of every size.
struct Read {
  explicit Read(Batch* batch) {
    Pool pool(Pool::Kind::batch);
    pieces = fill_blocks(&pool, 5000);
    text = make_owned_in<std::vector<int>>(&pool, 100, 7).release();
    large = pool.allocate(100'000);
    pool.move_to(batch);
  }

  std::vector<Piece> pieces;
  std::vector<int>* text = nullptr;
  void* large = nullptr;
};

TEST(Batch, GoesAsAWhole) {
  const long before = live_blocks;
  {
    Batch kept;
    {
      Batch batch;
      const Read read(&batch);
      EXPECT_TRUE(batch.is_intact());
      EXPECT_TRUE(Pool::goes_with_batch(read.text));
      EXPECT_TRUE(Pool::goes_with_batch(read.large));
      EXPECT_TRUE(Pool::goes_with_batch(static_cast<char*>(read.pieces[8].block) + 5));
      EXPECT_FALSE(Pool::goes_with_batch(&batch));
      kept.swap(batch);
      EXPECT_FALSE(batch.is_intact());
    }
    EXPECT_TRUE(kept.is_intact());
  }
  EXPECT_EQ(live_blocks, before);
}

TEST(Batch, GoesOneByOneOnceItIsDisturbed) {
  const long before = live_blocks;
  const auto release_all = [](const Read& read) {
    for (const Piece& piece : read.pieces) Pool::release(piece.block);
    Owned<std::vector<int>>(read.text).reset();
    Pool::release(read.large);
  };
  {
    Batch batch;
    const Read read(&batch);
    Pool::disturb(read.pieces[1000].block);
    EXPECT_FALSE(batch.is_intact());
    release_all(read);
  }
  EXPECT_EQ(live_blocks, before) << "said by its owner";
  {
    Batch batch;
    Read read(&batch);
    Pool::release(read.pieces.back().block);
    read.pieces.pop_back();
    EXPECT_FALSE(batch.is_intact());
    release_all(read);
  }
  EXPECT_EQ(live_blocks, before) << "told by a block that was released";
  {
    auto batch = std::make_unique<Batch>();
    const Read read(batch.get());
    Pool::disturb(read.large);
    batch.reset();
    release_all(read);
  }
  EXPECT_EQ(live_blocks, before) << "held by somebody who outlives the document";
}

}  // namespace
