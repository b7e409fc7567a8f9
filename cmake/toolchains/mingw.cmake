# What the toolchains of mingw-w64 have in common. The libraries are those of
# scripts/windows-libraries, and static.
set(CMAKE_SYSTEM_NAME Windows)

# The flavour that has std::thread.
set(CMAKE_C_COMPILER ${zol_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${zol_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${zol_triplet}-windres)

get_filename_component(zol_libraries
  "${CMAKE_CURRENT_LIST_DIR}/../../build/windows-libraries/${zol_architecture}" ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH "${zol_libraries}" "/usr/${zol_triplet}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${zol_libraries}/lib/pkgconfig")
add_compile_definitions(LIBXML_STATIC)

# What is built runs on this machine where Wine does.
find_program(ZOL_WINE wine)
mark_as_advanced(ZOL_WINE)
if(ZOL_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${ZOL_WINE}")
endif()
