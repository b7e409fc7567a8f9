#include "support/failing_calls.h"

#include <dlfcn.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <string_view>

// The program's own functions of these names are found before those of the system, by its shared
// libraries, too. They are defined under other names, so that no header can contradict.

namespace {

struct CountedFault {
  zol_test::CallFault fault;
  unsigned count;
};
CountedFault g_faults[4];
std::size_t g_fault_count = 0;
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

bool is_met(CountedFault& each, const char* call) {
  const zol_test::CallFault& fault = each.fault;
  if (fault.call != nullptr && std::string_view(fault.call) != call) return false;
  ++each.count;
  return each.count == fault.number || (each.count > fault.number && fault.for_good);
}

bool fails(const char* call) {
  for (std::size_t i = 0; i < g_fault_count; ++i) {
    if (!is_met(g_faults[i], call)) continue;
    note_failure(call);
    errno = g_faults[i].fault.error;
    return true;
  }
  return false;
}

}  // namespace

namespace zol_test {

void fail_calls(std::initializer_list<CallFault> faults) {
  for (FailedCall& each : g_failed) each = {};
  g_fault_count = 0;
  for (const CallFault& fault : faults) g_faults[g_fault_count++] = {fault, 0};
}

unsigned end_failing_calls() {
  g_fault_count = 0;
  return g_faults[0].count;
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
