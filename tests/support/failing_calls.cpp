#include "support/failing_calls.h"

#include <dlfcn.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <string_view>

// The program's own functions of these names are found before those of the system, by its shared
// libraries, too. They are defined under other names, so that no header can contradict.

namespace {

bool g_is_armed = false;
zol_test::CallFault g_fault;
unsigned g_count = 0;
struct FailedCall {
  const char* call;
  unsigned times;
};
FailedCall g_failed[64];

void note_failure(const char* call) {
  for (FailedCall& each : g_failed) {
    if (each.call == nullptr) each.call = call;
    if (std::string_view(each.call) != call) continue;
    ++each.times;
    return;
  }
}

bool fails(const char* call) {
  if (!g_is_armed) return false;
  if (g_fault.call != nullptr && std::string_view(g_fault.call) != call) return false;
  ++g_count;
  if (g_count < g_fault.number || (g_count > g_fault.number && !g_fault.for_good)) return false;
  note_failure(call);
  errno = g_fault.error;
  return true;
}

}  // namespace

namespace zol_test {

void fail_call(const CallFault& fault) {
  g_fault = fault;
  g_count = 0;
  for (FailedCall& each : g_failed) each = {};
  g_is_armed = true;
}

unsigned end_failing_calls() {
  g_is_armed = false;
  return g_count;
}

unsigned count_failed_calls(const char* call) {
  for (const FailedCall& each : g_failed) {
    if (each.call != nullptr && std::string_view(each.call) == call) return each.times;
  }
  return 0;
}

}  // namespace zol_test

#define ZOL_FAILING_CALL(result, name, parameters, arguments)                                   \
  extern "C" __attribute__((visibility("default")))                                             \
  result failing_##name parameters __asm__(#name);                                              \
  result failing_##name parameters {                                                            \
    static const auto real = reinterpret_cast<result(*) parameters>(::dlsym(RTLD_NEXT, #name)); \
    return fails(#name) ? -1 : real arguments;                                                  \
  }

using Path = const char*;
struct stat;

ZOL_FAILING_CALL(int, open, (Path path, int flags, mode_t mode), (path, flags, mode))
ZOL_FAILING_CALL(int, openat, (int at, Path path, int flags, mode_t mode), (at, path, flags, mode))
ZOL_FAILING_CALL(ssize_t, read, (int file, void* to, std::size_t size), (file, to, size))
ZOL_FAILING_CALL(ssize_t, write, (int file, const void* from, std::size_t size), (file, from, size))
ZOL_FAILING_CALL(off_t, lseek, (int file, off_t to, int from), (file, to, from))
ZOL_FAILING_CALL(int, ftruncate, (int file, off_t size), (file, size))
ZOL_FAILING_CALL(int, fallocate, (int file, int mode, off_t at, off_t size), (file, mode, at, size))
ZOL_FAILING_CALL(int, fsync, (int file), (file))
ZOL_FAILING_CALL(int, flock, (int file, int kind), (file, kind))
ZOL_FAILING_CALL(int, stat, (Path path, struct stat* to), (path, to))
ZOL_FAILING_CALL(int, fstat, (int file, struct stat* to), (file, to))
ZOL_FAILING_CALL(int, fstatat, (int at, Path path, struct stat* to, int flags),
                 (at, path, to, flags))
ZOL_FAILING_CALL(int, access, (Path path, int kind), (path, kind))
ZOL_FAILING_CALL(int, faccessat, (int at, Path path, int kind, int flags), (at, path, kind, flags))
ZOL_FAILING_CALL(ssize_t, readlink, (Path path, char* to, std::size_t size), (path, to, size))
ZOL_FAILING_CALL(int, fchown, (int file, uid_t owner, gid_t group), (file, owner, group))
ZOL_FAILING_CALL(int, fchmod, (int file, mode_t mode), (file, mode))
ZOL_FAILING_CALL(ssize_t, llistxattr, (Path path, char* to, std::size_t size), (path, to, size))
ZOL_FAILING_CALL(ssize_t, lgetxattr, (Path path, Path name, void* to, std::size_t size),
                 (path, name, to, size))
ZOL_FAILING_CALL(int, fsetxattr,
                 (int file, Path name, const void* from, std::size_t size, int flags),
                 (file, name, from, size, flags))
ZOL_FAILING_CALL(int, fremovexattr, (int file, Path name), (file, name))
ZOL_FAILING_CALL(int, getentropy, (void* to, std::size_t size), (to, size))
ZOL_FAILING_CALL(int, linkat, (int from_at, Path from, int to_at, Path to, int flags),
                 (from_at, from, to_at, to, flags))
ZOL_FAILING_CALL(int, renameat, (int from_at, Path from, int to_at, Path to),
                 (from_at, from, to_at, to))
ZOL_FAILING_CALL(int, unlinkat, (int at, Path path, int flags), (at, path, flags))

// What fails to close is closed all the same.
extern "C" __attribute__((visibility("default"))) int failing_close(int file) __asm__("close");
int failing_close(int file) {
  static const auto real = reinterpret_cast<int (*)(int)>(::dlsym(RTLD_NEXT, "close"));
  const int done = real(file);
  return fails("close") ? -1 : done;
}
