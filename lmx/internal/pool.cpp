#include "lmx/internal/pool.h"

#include <algorithm>

namespace lmx::internal {

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
