// The time that the process itself took, which other programs do not add to.
#pragma once

#include <ctime>
#if defined(_WIN32)
#include "port/internal/windows_calls.h"
#endif

namespace zol_test {

inline double processor_seconds() {
#if defined(_WIN32)  // where std::clock tells the time of day
  FILETIME started, ended, kernel, user;
  GetProcessTimes(GetCurrentProcess(), &started, &ended, &kernel, &user);
  const auto seconds = [](const FILETIME& time) {
    return (time.dwHighDateTime * 4294967296.0 + time.dwLowDateTime) * 1e-7;
  };
  return seconds(kernel) + seconds(user);
#else
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
#endif
}

}  // namespace zol_test
