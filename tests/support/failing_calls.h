// The system calls on files that the program and its libraries make, which can be made to fail.
#pragma once

namespace zol_test {

struct CallFault {
  unsigned number;             // of the call that fails, counted from 1
  bool for_good = false;       // all later ones, too
  int error = 5;               // EIO
  const char* call = nullptr;  // counts these alone
};

// From now on. A call that fails does nothing, but one that closes.
void fail_call(const CallFault& fault);
// Everything is as usual. The calls since `fail_call` that were counted, of which the last failed
// or more than one.
unsigned end_failing_calls();

// The calls that failed since the last `fail_call`.
unsigned count_failed_calls(const char* call);

}  // namespace zol_test
