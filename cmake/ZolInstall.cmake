# What an installed copy holds, and which of its parts each file belongs to: `cmake --install BUILD
# --component zol_tools` installs one alone, and each is a Debian package.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME zol_development)

# Headers stand in a directory of their own, which is on the include path of a client.
set(headers_dir "${CMAKE_INSTALL_INCLUDEDIR}/zol")
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Zol")

# zol_install_library(TARGET): the kinds of it that are built, each with a file for find_package.
function(zol_install_library name)
  get_target_property(component ${name} EXPORT_NAME)
  foreach(target IN ITEMS ${name} ${name}_static)
    if(NOT TARGET ${target})
      continue()
    endif()
    get_target_property(type ${target} TYPE)
    string(REGEX REPLACE "_LIBRARY$" "" kind "${type}")
    string(TOLOWER "${kind}" kind)
    set(export "Zol-${component}-${kind}")
    target_include_directories(${target} PUBLIC "$<INSTALL_INTERFACE:${headers_dir}>")
    if(UNIX AND NOT APPLE AND kind STREQUAL "shared")
      # A library finds the one that it stands on in its own directory.
      set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
    endif()
    install(TARGETS ${target} EXPORT ${export}
      RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT zol_runtime
      LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT zol_runtime
              NAMELINK_COMPONENT zol_development
      ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT zol_development)
    install(EXPORT ${export} NAMESPACE Zol:: DESTINATION "${package_dir}"
      FILE ${export}.cmake COMPONENT zol_development)
  endforeach()
endfunction()
zol_install_library(zol)
if(ZOL_BUILD_COLORIMETRY)
  zol_install_library(zolcolor)
endif()
if(ZOL_BUILD_INTERCHANGE)
  zol_install_library(zolinterchange)
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
    set(ZOL_MANAGED_INSTALL_DIR "${CMAKE_INSTALL_LIBDIR}/zol" CACHE STRING
      "Where the assembly for Mono goes")
    set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME zol_managed)
    configure_file(bridge/managed/Zol.Net.dll.config.in "${ZOL_MANAGED_DIR}/Zol.Net.dll.config" @ONLY)
    install(FILES "${ZOL_MANAGED_DIR}/Zol.Net.dll" "${ZOL_MANAGED_DIR}/Zol.Net.dll.config"
            DESTINATION "${ZOL_MANAGED_INSTALL_DIR}" OPTIONAL)
    set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME zol_development)
  endif()
endif()
configure_file(tools/desktop/catalog.xml.in catalog.xml @ONLY)
install(FILES "${ZOL_GENERATED_DIR}/zol.xsd" "${CMAKE_CURRENT_BINARY_DIR}/catalog.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/xml/zol" COMPONENT zol_tools)
install(FILES "${ZOL_GENERATED_DIR}/zol.schema.json" DESTINATION "${CMAKE_INSTALL_DATADIR}/zol"
        COMPONENT zol_tools)

if(ZOL_BUILD_TOOLS)
  # The command finds the library of its own copy, wherever that is moved to.
  file(RELATIVE_PATH library_dir "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  if(UNIX AND NOT APPLE)
    set_target_properties(zol_command PROPERTIES INSTALL_RPATH "$ORIGIN/${library_dir}")
  endif()
  set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME zol_tools)
  install(TARGETS zol_command DESTINATION "${CMAKE_INSTALL_BINDIR}")
  install(FILES ${ZOL_MANUAL_PAGES} DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
  install(FILES tools/zol.bash RENAME zol
          DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
  # Debian has another place for what packages bring along.
  set(ZOL_ZSH_INSTALL_DIR "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" CACHE STRING
    "Where the completion for zsh goes")
  install(FILES tools/_zol DESTINATION "${ZOL_ZSH_INSTALL_DIR}")
  # What file managers show for a document.
  configure_file(tools/desktop/zol.mime.xml.in zol.mime.xml @ONLY)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/zol.mime.xml" RENAME zol.xml
          DESTINATION "${CMAKE_INSTALL_DATADIR}/mime/packages")
  get_target_property(definitions zol_command COMPILE_DEFINITIONS)
  if("ZOL_WITH_THUMBNAIL" IN_LIST definitions)
    install(FILES tools/desktop/zol.thumbnailer
            DESTINATION "${CMAKE_INSTALL_DATADIR}/thumbnailers")
  endif()
  set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME zol_development)
endif()

# find_package(Zol)
set(ZOL_WITH_SQLITE OFF)
if(ZOL_BUILD_INTERCHANGE)
  get_target_property(libraries zolinterchange LINK_LIBRARIES)
  if("SQLite::SQLite3" IN_LIST libraries)
    set(ZOL_WITH_SQLITE ON)
  endif()
endif()
set(ZOL_WITH_DEFLATE OFF)
if(TARGET Zol::deflate)
  set(ZOL_WITH_DEFLATE ON)
  install(FILES cmake/ZolDeflate.cmake DESTINATION "${package_dir}")
endif()
configure_package_config_file(cmake/ZolConfig.cmake.in ZolConfig.cmake
  INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(ZolConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/ZolConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/ZolConfigVersion.cmake"
        DESTINATION "${package_dir}")

# pkg-config. The paths follow from where a file stands, so that the copy can be moved. What a static
# library is linked with is told to those who ask with --static, and to all if there is no other kind.
set(pkgconfig_dir "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pc_libdir "${pkgconfig_dir}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH pc_includedir "${pkgconfig_dir}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}/zol")
# zol_pkg_config(NAME DESCRIPTION text [REQUIRES libraries of ours] [NEEDS modules] [FLAGS flags])
function(zol_pkg_config name)
  cmake_parse_arguments(PC "" "DESCRIPTION" "REQUIRES;NEEDS;FLAGS" ${ARGN})
  string(REGEX REPLACE "^zol(.*)$" "Zol \\1" pc_title "${name}")
  string(STRIP "${pc_title}" pc_title)
  list(TRANSFORM PC_REQUIRES APPEND " = ${PROJECT_VERSION}")
  if(ZOL_LIBRARY_KIND STREQUAL "STATIC")
    list(APPEND PC_REQUIRES ${PC_NEEDS})
    set(pc_libs ${PC_FLAGS})
  elseif(ZOL_BUILD_STATIC)
    set(pc_requires_private ${PC_NEEDS})
    set(pc_libs_private ${PC_FLAGS})
  endif()
  list(JOIN PC_REQUIRES ", " pc_requires)
  list(JOIN pc_requires_private ", " pc_requires_private)
  list(JOIN pc_libs_private " " pc_libs_private)
  list(TRANSFORM pc_libs PREPEND " ")
  list(JOIN pc_libs "" pc_libs)
  configure_file(cmake/zol.pc.in ${name}.pc @ONLY)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}.pc"
          DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endfunction()
set(deflate_flag "")
if(ZOL_WITH_DEFLATE)
  set(deflate_flag -ldeflate)
endif()
zol_pkg_config(zol DESCRIPTION "${PROJECT_DESCRIPTION}"
  NEEDS libxml-2.0 zlib FLAGS ${deflate_flag} -lbz2)
if(ZOL_BUILD_COLORIMETRY)
  zol_pkg_config(zolcolor
    DESCRIPTION "Colour of colour-data documents: spectra, conversions, differences, verdicts"
    REQUIRES zol NEEDS lcms2)
endif()
if(ZOL_BUILD_INTERCHANGE)
  set(needs libxml-2.0)
  if(ZOL_BUILD_COLORIMETRY)
    list(PREPEND needs "zolcolor = ${PROJECT_VERSION}")
  endif()
  if(ZOL_WITH_SQLITE)
    list(APPEND needs sqlite3)
  endif()
  zol_pkg_config(zolinterchange
    DESCRIPTION "Colour-data documents in the formats of other programs"
    REQUIRES zol NEEDS ${needs})
endif()

# The guides, and the site if the target docs was asked for it.
install(DIRECTORY docs/ DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT zol_documentation
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png")
install(DIRECTORY "${ZOL_GENERATED_DIR}/reference/" DESTINATION "${CMAKE_INSTALL_DOCDIR}/reference"
        COMPONENT zol_documentation)
install(DIRECTORY "${PROJECT_BINARY_DIR}/site/" DESTINATION "${CMAKE_INSTALL_DOCDIR}/html"
        COMPONENT zol_documentation OPTIONAL)
