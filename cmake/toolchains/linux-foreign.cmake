# What the toolchains of other processors share: Debian's cross compiler for ZOL_CROSS_TRIPLE, the
# libraries that scripts/cross unpacks below build/, and an emulator that runs the tests.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER "${ZOL_CROSS_TRIPLE}-g++")

get_filename_component(CMAKE_SYSROOT
  "${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot/${ZOL_CROSS_PROCESSOR}" ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_LIBRARY_ARCHITECTURE "${ZOL_CROSS_LIBRARIES}")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${CMAKE_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR}
  "${CMAKE_SYSROOT}/usr/lib/${ZOL_CROSS_LIBRARIES}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig")

set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-${CMAKE_SYSTEM_PROCESSOR}" -L "${CMAKE_SYSROOT}")
set(ZOL_TEST_PATIENCE 20)
