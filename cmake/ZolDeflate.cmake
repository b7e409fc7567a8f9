# Zol::deflate, the library that has no package for find_package: for the build, and for the clients
# of a static library.
find_path(ZOL_LIBDEFLATE_INCLUDE_DIR libdeflate.h)
find_library(ZOL_LIBDEFLATE_LIBRARY deflate)
mark_as_advanced(ZOL_LIBDEFLATE_INCLUDE_DIR ZOL_LIBDEFLATE_LIBRARY)
if(ZOL_LIBDEFLATE_INCLUDE_DIR AND ZOL_LIBDEFLATE_LIBRARY AND NOT TARGET Zol::deflate)
  add_library(Zol::deflate UNKNOWN IMPORTED GLOBAL)
  set_target_properties(Zol::deflate PROPERTIES
    IMPORTED_LOCATION "${ZOL_LIBDEFLATE_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${ZOL_LIBDEFLATE_INCLUDE_DIR}")
endif()
