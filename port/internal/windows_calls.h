// What the calls of Windows have in common.
#pragma once

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#if !defined(WIN32_LEAN_AND_MEAN)
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <string>

namespace zol::port::internal {

// A path as the system's calls take it, however long it is: one that would be too long for them is
// given from its root, behind the prefix that lifts their limit.
std::wstring system_path(const std::wstring& path);

// The `errno` value for an error of the system.
int error_number(DWORD error);

// Leaves the number of the system's last error in `errno`. Always false.
bool fail_by_system();

}  // namespace zol::port::internal
