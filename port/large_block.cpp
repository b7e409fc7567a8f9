#include "port/large_block.h"

#ifdef __linux__
#include <sys/mman.h>

#include <cerrno>
#include <cstdint>
#endif

namespace zol::port {

#ifdef __linux__

void expect_use(void* block, std::size_t size) noexcept {
  constexpr std::uintptr_t k_large_page = std::uintptr_t{1} << 21;
  const auto begin = (reinterpret_cast<std::uintptr_t>(block) + k_large_page - 1) & -k_large_page;
  const auto end = (reinterpret_cast<std::uintptr_t>(block) + size) & -k_large_page;
  if (end <= begin) return;
  const int error = errno;
  static_cast<void>(::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE));
  errno = error;
}

#else

void expect_use(void*, std::size_t) noexcept {}

#endif

}  // namespace zol::port
