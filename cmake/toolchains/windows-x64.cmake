# 64-bit Windows, by Debian's mingw-w64.
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(zol_triplet x86_64-w64-mingw32)
set(zol_architecture x64)
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")
