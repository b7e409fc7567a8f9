// The program's allocation functions, one call of which can be made to fail.
#pragma once

namespace zol_test {

// The allocation that fails from now on, counted from 1; 0 for none.
void fail_allocation(unsigned number);
// Since `fail_allocation`.
unsigned count_allocations();

}  // namespace zol_test
