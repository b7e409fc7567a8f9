// What the calls of a POSIX system have in common.
#pragma once

#include <unistd.h>

#include <cerrno>

namespace zol::port::internal {

// Repeats a call that a signal broke off.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

// Closes for a failure, whose number stays. Nothing is done for -1.
inline void abandon(int descriptor) {
  if (descriptor == -1) return;
  const int error = errno;
  ::close(descriptor);
  errno = error;
}

}  // namespace zol::port::internal
