// Counts what a test program asks of the heap.
#pragma once

namespace zol_test {

// Calls of operator new so far, by all threads.
long allocation_count();

}  // namespace zol_test
