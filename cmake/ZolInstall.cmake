# What an installed copy holds, and the packages made of it.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# Headers stand in a directory of their own, which is on the include path of a client.
set(headers_dir "${CMAKE_INSTALL_INCLUDEDIR}/zol")
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Zol")
target_include_directories(zol PUBLIC "$<INSTALL_INTERFACE:${headers_dir}>")

install(TARGETS zol EXPORT ZolTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")

# A library beside it finds the one that it stands on in its own directory.
function(zol_install_beside target)
  target_include_directories(${target} PUBLIC "$<INSTALL_INTERFACE:${headers_dir}>")
  if(UNIX AND NOT APPLE)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  endif()
  install(TARGETS ${target} EXPORT ZolTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endfunction()
if(ZOL_BUILD_COLORIMETRY)
  zol_install_beside(zolcolor)
endif()
if(ZOL_BUILD_INTERCHANGE)
  zol_install_beside(zolinterchange)
endif()

# The public headers of each room, and those of its inner ones that they include.
set(rooms_with_headers lmx zip model facade)
if(ZOL_BUILD_COLORIMETRY)
  list(APPEND rooms_with_headers colorimetry)
endif()
if(ZOL_BUILD_INTERCHANGE)
  list(APPEND rooms_with_headers interchange)
endif()
foreach(room IN LISTS rooms_with_headers)
  file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${room}/*.h")
  install(FILES ${headers} DESTINATION "${headers_dir}/${room}")
endforeach()
install(FILES "${ZOL_GENERATED_DIR}/model/Zol.h" DESTINATION "${headers_dir}/model")
install(FILES "${ZOL_GENERATED_DIR}/facade/version.h" DESTINATION "${headers_dir}/facade")
install(FILES port/export.h port/files.h port/narrow_text.h port/replacement_file.h port/wide_text.h
        DESTINATION "${headers_dir}/port")
install(FILES lmx/internal/pool.h DESTINATION "${headers_dir}/lmx/internal")
install(FILES model/internal/bases.h model/internal/object.h model/internal/tables.h
              model/internal/walkers.h
        DESTINATION "${headers_dir}/model/internal")
if(ZOL_BUILD_BRIDGE)
  install(FILES bridge/conventions.h bridge/zol_helpers.h
                "${ZOL_GENERATED_DIR}/bridge/zol_exports.h"
          DESTINATION "${headers_dir}/bridge")
  if(ZOL_BUILD_MANAGED)
    install(FILES "${ZOL_MANAGED_DIR}/Zol.Net.dll" DESTINATION "${CMAKE_INSTALL_LIBDIR}/zol" OPTIONAL)
  endif()
endif()
install(FILES "${ZOL_GENERATED_DIR}/zol.xsd" DESTINATION "${CMAKE_INSTALL_DATADIR}/xml/zol")
install(FILES "${ZOL_GENERATED_DIR}/zol.schema.json" DESTINATION "${CMAKE_INSTALL_DATADIR}/zol")

if(ZOL_BUILD_TOOLS)
  # The command finds the library of its own copy, wherever that is moved to.
  file(RELATIVE_PATH library_dir "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  if(UNIX AND NOT APPLE)
    set_target_properties(zol_command PROPERTIES INSTALL_RPATH "$ORIGIN/${library_dir}")
  endif()
  install(TARGETS zol_command DESTINATION "${CMAKE_INSTALL_BINDIR}")
  install(FILES tools/zol.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
  install(FILES tools/zol.bash RENAME zol
          DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
  install(FILES tools/_zol DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")
endif()

# find_package(Zol)
install(EXPORT ZolTargets NAMESPACE Zol:: DESTINATION "${package_dir}")
configure_package_config_file(cmake/ZolConfig.cmake.in ZolConfig.cmake
  INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(ZolConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/ZolConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/ZolConfigVersion.cmake"
        DESTINATION "${package_dir}")

# pkg-config zol, zolcolor and zolinterchange. The paths follow from where the file stands, so that the copy can be moved.
set(pkgconfig_dir "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pc_libdir "${pkgconfig_dir}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH pc_includedir "${pkgconfig_dir}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}/zol")
configure_file(cmake/zol.pc.in zol.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/zol.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(ZOL_BUILD_COLORIMETRY)
  configure_file(cmake/zolcolor.pc.in zolcolor.pc @ONLY)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/zolcolor.pc"
          DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endif()

if(ZOL_BUILD_INTERCHANGE)
  configure_file(cmake/zolinterchange.pc.in zolinterchange.pc @ONLY)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/zolinterchange.pc"
          DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endif()

# cpack: a Debian package, and an archive.
set(CPACK_PACKAGE_NAME zol)
set(CPACK_PACKAGE_VENDOR "The Zol project")
set(CPACK_PACKAGE_CONTACT "The Zol project <zol@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
  "A C++ library with its headers, the command zol, and an XML Schema of the format.")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "python3-numpy, python3-pandas")
find_program(ZOL_SHLIBDEPS dpkg-shlibdeps)
mark_as_advanced(ZOL_SHLIBDEPS)
if(ZOL_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}")
else()
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libstdc++6, libxml2, zlib1g, libbz2-1.0")
  if(ZOL_LIBDEFLATE_LIBRARY)
    string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", libdeflate0")
  endif()
  if(ZOL_BUILD_COLORIMETRY)
    string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", liblcms2-2")
  endif()
endif()
include(CPack)
