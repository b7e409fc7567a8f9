// The program's allocation functions, whose calls can be made to fail.
#pragma once

#include <cstddef>

namespace zol_test {

// The allocation that fails from now on, counted from 1, and whether all later ones do, too; 0 for
// none.
void fail_allocation(unsigned number, bool for_good = false);
// Since `fail_allocation`.
unsigned count_allocations();

// That were not freed yet.
std::ptrdiff_t count_blocks();

}  // namespace zol_test
