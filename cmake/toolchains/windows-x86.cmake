# 32-bit Windows, by Debian's mingw-w64.
set(CMAKE_SYSTEM_PROCESSOR X86)
set(zol_triplet i686-w64-mingw32)
set(zol_architecture x86)
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")
