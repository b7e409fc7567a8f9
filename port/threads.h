// Whether anybody else can be at work in the process.
#pragma once

#if defined(__has_include)
#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#define ZOL_KNOWS_SINGLE_THREADED 1
#endif
#endif

namespace zol::port {

// False as soon as the process has had a second thread, and where nobody knows.
inline bool is_single_threaded() {
#if defined(ZOL_KNOWS_SINGLE_THREADED)
  return __libc_single_threaded != 0;
#else
  return false;
#endif
}

}  // namespace zol::port
