#include "lmx/internal/pool.h"

#include <algorithm>
#include <cstdlib>

#include "port/threads.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZOL_SEES_EACH_BLOCK 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZOL_SEES_EACH_BLOCK 1
#endif
#endif

namespace lmx::internal {

// --- Batches ----------------------------------------------------------------------------------

// Lives as long as a chunk of it does, or the pool or batch that holds it.
struct BatchRecord {
  enum class State { being_made, intact, disturbed };

  std::atomic<State> state{State::being_made};
  std::atomic<std::int64_t> holders{1};
  std::atomic<BatchEntry*> entries{nullptr};
  Chunk* chunks = nullptr;  // held, one block more than they have, until it is disturbed

  bool is_intact() const { return state.load(std::memory_order_relaxed) == State::intact; }
  bool is_disturbed() const { return state.load(std::memory_order_relaxed) == State::disturbed; }
  void disturb();
  void add(BatchEntry* entry) {
    entry->next = entries.load(std::memory_order_relaxed);
    while (!entries.compare_exchange_weak(entry->next, entry, std::memory_order_acq_rel)) continue;
  }
  void give_up() {
    if (holders.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }
  void free_all() const;
};

// --- Chunks -----------------------------------------------------------------------------------

namespace {

#if defined(ZOL_SEES_EACH_BLOCK)
bool s_uses_chunks = false;
#else
bool s_uses_chunks = true;
#endif

constexpr unsigned k_page_bits = 12;
constexpr std::size_t k_page = std::size_t{1} << k_page_bits;

}  // namespace

// Whole pages, which belong to nothing else.
struct Chunk {
  // Added to the count while blocks are being cut off.
  static constexpr std::int64_t k_open = std::int64_t{1} << 40;

  explicit Chunk(std::size_t of_pages) : pages(of_pages) {}

  char* begin() { return reinterpret_cast<char*>(this + 1); }
  char* end() { return reinterpret_cast<char*>(this) + pages * k_page; }
  void give_up(std::int64_t count);
  void free() noexcept;

  std::atomic<std::int64_t> live{k_open};  // blocks that are not released
  std::size_t pages;
  BatchRecord* record = nullptr;
  Chunk* next = nullptr;  // of the batch
};

static_assert(sizeof(Chunk) % Pool::k_alignment == 0, "the first block is not aligned");

namespace {

// Which chunk a page belongs to: a tree of three levels over the bits of its address. Its nodes
// stay, so that any thread may look while others add.
class PageMap {
 public:
  // Null for what lies in no chunk.
  static Chunk* find(const void* at) {
    const std::uint64_t address = reinterpret_cast<std::uintptr_t>(at);
    if (address >> k_address_bits != 0) return nullptr;
    const Branch* const branch = s_root[index(address, 2)].load(std::memory_order_acquire);
    if (branch == nullptr) return nullptr;
    const Leaf* const leaf = branch->at[index(address, 1)].load(std::memory_order_acquire);
    if (leaf == nullptr) return nullptr;
    return leaf->at[index(address, 0)].load(std::memory_order_relaxed);
  }

  // False for an address beyond those that are kept; throws std::bad_alloc.
  static bool add(Chunk* chunk) {
    const std::uint64_t begin = reinterpret_cast<std::uintptr_t>(chunk);
    const std::uint64_t end = begin + chunk->pages * k_page;
    if ((end - 1) >> k_address_bits != 0) return false;
    for (std::uint64_t page = begin; page != end; page += k_page) leaf_of(page);
    for (std::uint64_t page = begin; page != end; page += k_page) set(page, chunk);
    return true;
  }
  static void remove(const Chunk* chunk) {
    const std::uint64_t begin = reinterpret_cast<std::uintptr_t>(chunk);
    const std::uint64_t end = begin + chunk->pages * k_page;
    for (std::uint64_t page = begin; page != end; page += k_page) set(page, nullptr);
  }

 private:
  static constexpr unsigned k_level_bits = 12;
  static constexpr unsigned k_address_bits = k_page_bits + 3 * k_level_bits;
  static constexpr std::size_t k_fan_out = std::size_t{1} << k_level_bits;

  template <class T>
  struct Node {
    std::atomic<T*> at[k_fan_out] = {};
  };
  using Leaf = Node<Chunk>;
  using Branch = Node<Leaf>;

  static std::size_t index(std::uint64_t address, unsigned level) {
    return static_cast<std::size_t>(address >> (k_page_bits + level * k_level_bits)) &
           (k_fan_out - 1);
  }
  template <class T>
  static T& made(std::atomic<T*>& place) {
    T* node = place.load(std::memory_order_acquire);
    if (node != nullptr) return *node;
    void* const memory = std::malloc(sizeof(T));
    if (memory == nullptr) throw std::bad_alloc();
    auto* const fresh = ::new (memory) T;
    if (place.compare_exchange_strong(node, fresh, std::memory_order_acq_rel)) return *fresh;
    std::free(memory);
    return *node;
  }
  static Leaf& leaf_of(std::uint64_t address) {
    return made(made(s_root[index(address, 2)]).at[index(address, 1)]);
  }
  static void set(std::uint64_t page, Chunk* chunk) {
    leaf_of(page).at[index(page, 0)].store(chunk, std::memory_order_relaxed);
  }

  static std::atomic<Branch*> s_root[k_fan_out];
};

std::atomic<PageMap::Branch*> PageMap::s_root[k_fan_out];

}  // namespace

void Chunk::free() noexcept {
  PageMap::remove(this);
  BatchRecord* const batch = record;
  ::operator delete(this, std::align_val_t(k_page));
  if (batch != nullptr) batch->give_up();
}

// Counting for all threads costs more than making most objects does.
inline void Chunk::give_up(std::int64_t count) {
  std::int64_t before = 0;
  if (zol::port::is_single_threaded()) {
    before = live.load(std::memory_order_relaxed);
    live.store(before - count, std::memory_order_relaxed);
  } else {
    before = live.fetch_sub(count, std::memory_order_acq_rel);
  }
  if (before == count) free();
}

void BatchRecord::disturb() {
  if (state.load(std::memory_order_relaxed) == State::disturbed ||
      state.exchange(State::disturbed, std::memory_order_acq_rel) == State::disturbed) {
    return;
  }
  for (Chunk* chunk = std::exchange(chunks, nullptr); chunk != nullptr;) {
    Chunk* const next = chunk->next;
    chunk->give_up(1);
    chunk = next;
  }
}

// The caller holds the record.
void BatchRecord::free_all() const {
  for (BatchEntry* entry = entries.load(std::memory_order_acquire); entry != nullptr;) {
    BatchEntry* const next = entry->next;
    entry->destroy(entry);
    entry = next;
  }
  for (Chunk* chunk = chunks; chunk != nullptr;) {
    Chunk* const next = chunk->next;
    chunk->free();
    chunk = next;
  }
}

void Batch::let_go() {
  if (record_ == nullptr) return;
  BatchRecord* const record = std::exchange(record_, nullptr);
  record->is_intact() ? record->free_all() : record->disturb();
  record->give_up();
}

bool Batch::is_intact() const { return record_ != nullptr && record_->is_intact(); }

// --- Pools ------------------------------------------------------------------------------------

Chunk* Pool::new_chunk(std::size_t size) {
  const std::size_t pages = (size + k_page - 1) / k_page;
  if (kind_ == Kind::batch && batch_.record_ == nullptr) batch_.record_ = new BatchRecord;
  struct Delete {
    void operator()(void* memory) const { ::operator delete(memory, std::align_val_t(k_page)); }
  };
  std::unique_ptr<void, Delete> memory(::operator new(pages* k_page, std::align_val_t(k_page)));
  auto* const chunk = ::new (memory.get()) Chunk(pages);
  if (!PageMap::add(chunk)) return nullptr;
  (void)memory.release();
  if (batch_.record_ != nullptr) {
    BatchRecord& record = *batch_.record_;
    record.holders.fetch_add(1, std::memory_order_relaxed);
    chunk->record = &record;
    if (!record.is_disturbed()) {
      chunk->next = std::exchange(record.chunks, chunk);
      chunk->live.fetch_add(1, std::memory_order_relaxed);
    }
  }
  return chunk;
}

void Pool::use_chunks(bool in_chunks) { s_uses_chunks = in_chunks; }

bool Pool::add_chunk() {
  if (!s_uses_chunks) return false;
  Chunk* const chunk = new_chunk(chunk_size_);
  if (chunk == nullptr) return false;
  retire();
  chunk_ = chunk;
  at_ = chunk->begin();
  end_ = chunk->end();
  made_ = 0;
  chunk_size_ = std::min(2 * chunk_size_, k_last_chunk);
  return true;
}

// A block of a batch has a chunk for itself.
void* Pool::allocate_large(std::size_t size) {
  if (!s_uses_chunks || kind_ == Kind::plain) return allocate_alone(size);
  Chunk* const chunk = new_chunk(sizeof(Chunk) + size);
  if (chunk == nullptr) {
    batch_.record_->disturb();
    return allocate_alone(size);
  }
  chunk->give_up(Chunk::k_open - 1);
  return chunk->begin();
}

void Pool::retire() {
  if (chunk_ != nullptr) chunk_->give_up(Chunk::k_open - made_);
  chunk_ = nullptr;
  at_ = end_ = nullptr;
}

void Pool::release(void* block) noexcept {
  if (block == nullptr) return;
  Chunk* const chunk = PageMap::find(block);
  if (chunk == nullptr) return ::operator delete(block);
  if (chunk->record != nullptr) chunk->record->disturb();
  chunk->give_up(1);
}

void Pool::release_plain(void* block) noexcept {
  if (block == nullptr) return;
  Chunk* const chunk = PageMap::find(block);
  if (chunk == nullptr) return ::operator delete(block);
  chunk->give_up(1);
}

void Pool::move_to(Batch* batch) {
  retire();
  batch->let_go();
  batch->swap(batch_);
  if (batch->record_ == nullptr) return;
  auto state = BatchRecord::State::being_made;
  batch->record_->state.compare_exchange_strong(state, BatchRecord::State::intact);
}

bool Pool::add_to_batch(const void* at, BatchEntry* entry) {
  Chunk* const chunk = PageMap::find(at);
  if (chunk == nullptr || chunk->record == nullptr) return false;
  chunk->record->add(entry);
  return true;
}

void Pool::disturb(const void* at) noexcept {
  Chunk* const chunk = PageMap::find(at);
  if (chunk != nullptr && chunk->record != nullptr) chunk->record->disturb();
}

bool Pool::goes_with_batch(const void* at) noexcept {
  Chunk* const chunk = PageMap::find(at);
  return chunk != nullptr && chunk->record != nullptr && chunk->record->is_intact();
}

bool Pool::is_in_chunk(const void* at) noexcept { return PageMap::find(at) != nullptr; }

}  // namespace lmx::internal
