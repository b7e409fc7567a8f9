// The system calls on files that the program and its libraries make, which can be made to fail.
#pragma once

#include <initializer_list>

namespace zol_test {

struct CallFault {
  unsigned number;             // of the call that fails, counted from 1
  bool for_good = false;       // all later ones, too
  int error = 5;               // EIO
  const char* call = nullptr;  // counts these alone
};

// From now on; each fault counts for itself, up to four of them. A call that fails does nothing,
// but one that closes.
void fail_calls(std::initializer_list<CallFault> faults);
inline void fail_call(const CallFault& fault) { fail_calls({fault}); }
// Everything is as usual. Gives the calls since then that the first fault counted.
unsigned end_failing_calls();

// The calls that failed since the last `fail_calls`.
unsigned count_failed_calls(const char* call);

}  // namespace zol_test
