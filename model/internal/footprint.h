// What an object takes from the heap.
#pragma once

#include <cstdint>

#include "model/internal/object.h"

namespace zol_v2::internal {

// Of the object, if it stands on the heap by itself, and of everything in it: the bytes that its
// blocks were asked for, each with a head. What an allocator adds, and chunks that are not full,
// are not counted. Reads every row once; if memory runs out, what was counted until then.
std::uint64_t footprint(const Object& object) noexcept;

}  // namespace zol_v2::internal
