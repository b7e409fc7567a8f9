#include "lmx/internal/pool.h"

#include <algorithm>

#include "port/threads.h"

namespace lmx::internal {

// Counting for all threads costs more than making most objects does.
inline void Pool::Chunk::give_up(std::int64_t count) {
  std::int64_t before = 0;
  if (zol::port::is_single_threaded()) {
    before = live.load(std::memory_order_relaxed);
    live.store(before - count, std::memory_order_relaxed);
  } else {
    before = live.fetch_sub(count, std::memory_order_acq_rel);
  }
  if (before == count) ::operator delete(this);
}

void Pool::retire() {
  if (chunk_ != nullptr) chunk_->give_up(Chunk::k_open - made_);
  chunk_ = nullptr;
}

void Pool::release(void* block) noexcept {
  if (block == nullptr) return;
  Header* const header = static_cast<Header*>(block) - 1;
  if (header->chunk == nullptr) {
    ::operator delete(header);
  } else {
    header->chunk->give_up(1);
  }
}

void Pool::add_chunk() {
  auto* const memory = static_cast<char*>(::operator new(chunk_size_));
  retire();
  chunk_ = ::new (static_cast<void*>(memory)) Chunk;
  at_ = memory + std::max(sizeof(Chunk), k_alignment);
  end_ = memory + chunk_size_;
  made_ = 0;
  chunk_size_ = std::min(2 * chunk_size_, k_last_chunk);
}

}  // namespace lmx::internal
