# What every target of the project shares, and the two functions that make a room and its tests.

include_guard(GLOBAL)

# Generated sources mirror the tree under this one directory, so that "model/Zol.h" is found like
# any header that was written by hand.
set(ZOL_GENERATED_DIR "${PROJECT_BINARY_DIR}/generated")

# A project that takes this one in says nothing of it most often, and gets a shared library.
set(ZOL_LIBRARY_KIND SHARED)
if(WIN32)
  # The headers say what comes out of a library there, and objects for one can't make the other.
  if(ZOL_BUILD_STATIC OR (DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS))
    message(STATUS "On Windows the libraries are shared: no static ones are made")
  endif()
  set(ZOL_BUILD_STATIC OFF)
elseif(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
  set(ZOL_LIBRARY_KIND STATIC)
  # There is nothing to stand beside.
  set(ZOL_BUILD_STATIC OFF)
endif()

# zol_static_runtime(TARGET): what is linked needs no library of the compiler beside it.
function(zol_static_runtime target)
  if(MINGW AND ZOL_STATIC_RUNTIME)
    target_link_options(${target} PRIVATE -static)
  endif()
endfunction()

# Settings of our own targets; a project that takes this one in keeps its own.
function(zol_target_defaults target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /utf-8)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
    # A document has the same numbers on every processor: none joins a product and a sum in one
    # rounding, and a double is not held in more than its bits.
    target_compile_options(${target} PRIVATE -ffp-contract=off)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86_64|X86)$")
      target_compile_options(${target} PRIVATE -msse2 -mfpmath=sse)
    endif()
    if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND UNIX)
      target_compile_definitions(${target} PRIVATE _FILE_OFFSET_BITS=64)
    endif()
  endif()
  if(MINGW AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_definitions(${target} PRIVATE __MINGW_USE_VC2005_COMPAT)
  endif()
  zol_static_runtime(${target})
  if(ZOL_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${ZOL_SANITIZE} -fno-sanitize-recover=all
                                             -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=${ZOL_SANITIZE})
    # Tests and tools are many, and take longer to optimise than to run.
    get_target_property(type ${target} TYPE)
    if(NOT ZOL_FUZZ AND NOT type STREQUAL "OBJECT_LIBRARY")
      target_compile_options(${target} PRIVATE -O0)
    endif()
  endif()
  if(ZOL_FUZZ)
    # The fuzzer is led by what its inputs reach in the library, not in the target alone.
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# zol_room(NAME SOURCES... [LIBRARIES ...]): the objects of one room, which the shared library and
# the tests of inner symbols both link.
function(zol_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_library(zol_${name} OBJECT ${ROOM_SOURCES})
  zol_target_defaults(zol_${name})
  target_compile_definitions(zol_${name} PRIVATE ZOL_BUILDING)
  target_include_directories(zol_${name} PUBLIC "${PROJECT_SOURCE_DIR}" "${ZOL_GENERATED_DIR}")
  target_link_libraries(zol_${name} PUBLIC ${ROOM_LIBRARIES})
endfunction()

# zol_library(NAME EXPORT_NAME EXPORTED OBJECTS targets... [PUBLIC ...] [LIBRARIES ...]): a library
# that is installed, under the name Zol::EXPORTED. It is shared unless BUILD_SHARED_LIBS says
# otherwise; ZOL_BUILD_STATIC makes the target NAME_static beside it, of the same objects. PUBLIC are
# libraries of the project that clients need, LIBRARIES what it is linked with itself.
function(zol_library name)
  cmake_parse_arguments(LIBRARY "" "EXPORT_NAME" "OBJECTS;PUBLIC;LIBRARIES" ${ARGN})
  add_library(${name} ${ZOL_LIBRARY_KIND})
  add_library(Zol::${LIBRARY_EXPORT_NAME} ALIAS ${name})
  set(targets ${name})
  if(ZOL_BUILD_STATIC)
    add_library(${name}_static STATIC)
    list(APPEND targets ${name}_static)
    set_target_properties(${name}_static PROPERTIES OUTPUT_NAME ${name})
  endif()

  foreach(target IN LISTS targets)
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_include_directories(${target} PUBLIC
      "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>" "$<BUILD_INTERFACE:${ZOL_GENERATED_DIR}>")
    if(MINGW AND CMAKE_SIZEOF_VOID_P EQUAL 4)
      # A time of 64 bits, in the library and in its clients alike.
      target_compile_definitions(${target} PUBLIC __MINGW_USE_VC2005_COMPAT)
    endif()
    set_target_properties(${target} PROPERTIES
      LINKER_LANGUAGE CXX EXPORT_NAME ${LIBRARY_EXPORT_NAME}
      LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}")

    get_target_property(type ${target} TYPE)
    set(public ${LIBRARY_PUBLIC})
    set(libraries ${LIBRARY_LIBRARIES})
    if(type STREQUAL "STATIC_LIBRARY")
      if(NOT target STREQUAL name)
        list(TRANSFORM public APPEND _static)
        list(TRANSFORM libraries REPLACE "^(zol[a-z]+)$" "\\1_static")
      endif()
      foreach(objects IN LISTS LIBRARY_OBJECTS)
        target_sources(${target} PRIVATE $<TARGET_OBJECTS:${objects}>)
      endforeach()
      target_compile_definitions(${target} PUBLIC ZOL_STATIC)
      set_target_properties(${target} PROPERTIES
        ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}")
    else()
      target_link_libraries(${target} PRIVATE ${LIBRARY_OBJECTS})
      zol_static_runtime(${target})
      set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
      if(WIN32)
        # What a managed client asks for, with whatever compiler the library was built.
        set_target_properties(${target} PROPERTIES PREFIX "")
      elseif(NOT APPLE)
        set(symbols "${PROJECT_SOURCE_DIR}/cmake/${name}.map")
        target_link_options(${target} PRIVATE "LINKER:--version-script=${symbols}")
        set_target_properties(${target} PROPERTIES LINK_DEPENDS "${symbols}")
      endif()
    endif()
    target_link_libraries(${target} PUBLIC ${public} PRIVATE ${libraries})
  endforeach()
endfunction()

# zol_small_code(SOURCES...): optimised for size in what is shipped.
function(zol_small_code)
  if(NOT MSVC)
    set_source_files_properties(${ARGN} PROPERTIES
      COMPILE_OPTIONS "$<$<CONFIG:Release>:-Os>")
  endif()
endfunction()

# How many times longer than elsewhere the tests take: the longest look at as many times fewer inputs.
if(NOT ZOL_TEST_PATIENCE)
  set(ZOL_TEST_PATIENCE 1)
  if(ZOL_SANITIZE)
    set(ZOL_TEST_PATIENCE 20)
  endif()
endif()

# zol_test(NAME SOURCES... ROOMS ...): one GoogleTest program on the objects of the given rooms.
# A program that lists no room is a client: it links the shared library alone. Each program is run a
# second time under a locale whose decimal point is a comma.
function(zol_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;ROOMS;LIBRARIES" ${ARGN})
  add_executable(${name} ${TEST_SOURCES} "${PROJECT_SOURCE_DIR}/tests/support/process_locale.cpp")
  zol_target_defaults(${name})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_compile_definitions(${name} PRIVATE
    ZOL_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ZOL_BINARY_DIR="${PROJECT_BINARY_DIR}"
    ZOL_TEST_PATIENCE=${ZOL_TEST_PATIENCE})
  if(TEST_ROOMS)
    foreach(room IN LISTS TEST_ROOMS)
      target_link_libraries(${name} PRIVATE zol_${room})
    endforeach()
    target_compile_definitions(${name} PRIVATE ZOL_STATIC)
    if(MINGW)
      # Functions of its own that give memory replace those of a runtime in the program alone.
      target_link_options(${name} PRIVATE -static)
    endif()
  else()
    target_link_libraries(${name} PRIVATE Zol::zol)
  endif()
  target_link_libraries(${name} PRIVATE ${TEST_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main)
  set(timeout 600)
  if(CMAKE_CROSSCOMPILING)
    # The library is as it is shipped; the tests of another system need not be fast themselves. Each
    # start of a program takes the emulator a while.
    target_compile_options(${name} PRIVATE -O1)
    set(timeout 1800)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT ${timeout})
  else()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT ${timeout})
  endif()
  add_test(NAME ${name}.decimal_comma COMMAND ${name} --gtest_brief=1)
  set_tests_properties(${name}.decimal_comma PROPERTIES TIMEOUT ${timeout}
    ENVIRONMENT "${ZOL_COMMA_ENVIRONMENT}")
endfunction()
