#pragma once

#include <cstddef>

namespace zol::port {

// Tells the system that all of a block of memory is about to be used. Where it is large, it may
// then come in large pages, which saves a fault for each small one. A hint: nothing depends on it.
void expect_use(void* block, std::size_t size) noexcept;

}  // namespace zol::port
