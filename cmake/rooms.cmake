# One function per thing that every folder needs: its library, its tests, the compiler's strictness.

add_library(halyard_strict INTERFACE)
target_compile_options(halyard_strict INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
# GCC 12 sees overlaps that can't happen in std::string's operator+ (its bug 105651, gone in 13).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(halyard_strict INTERFACE -Wno-restrict)
endif()
target_include_directories(halyard_strict INTERFACE ${CMAKE_SOURCE_DIR})
if(HALYARD_SANITIZE)
  target_compile_options(halyard_strict INTERFACE -fsanitize=${HALYARD_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(halyard_strict INTERFACE -fsanitize=${HALYARD_SANITIZE})
endif()
if(HALYARD_FUZZ)
  target_compile_options(halyard_strict INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Screens and menu actions of a folder whose readers and commands live on a lower floor (as in tools/lint/includes.py).
set(HALYARD_SCREENS "_(view|view_[a-z_]+|actions?|menu|screen|browser)(_test)?\\.cpp$")

# halyard_room(<name> <folder> [libraries…]): the library halyard_<name> of all sources in the folder, and
# <name>_tests of the *_test.cpp beside them. A new file needs no change here.
# A folder of two floors is two rooms: <name>, without its screens, and <name>_screens, with nothing else.
function(halyard_room name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  if(name MATCHES "_screens$")
    list(FILTER sources INCLUDE REGEX ${HALYARD_SCREENS})
  elseif(folder MATCHES "halyard/(simulator|device|packages|git|cache)$")
    list(FILTER sources EXCLUDE REGEX ${HALYARD_SCREENS})
  endif()
  set(tests ${sources})
  list(FILTER sources EXCLUDE REGEX "_test\\.cpp$")
  list(FILTER tests INCLUDE REGEX "_test\\.cpp$")
  # name_macos.cpp is for macOS alone, name_other.cpp for every other system.
  if(APPLE)
    list(FILTER sources EXCLUDE REGEX "_other\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_macos\\.(cpp|mm)$")
  endif()
  if(NOT sources)
    file(WRITE ${CMAKE_BINARY_DIR}/empty_${name}.cpp "")
    set(sources ${CMAKE_BINARY_DIR}/empty_${name}.cpp)
  endif()
  add_library(halyard_${name} STATIC ${sources})
  target_link_libraries(halyard_${name} PUBLIC halyard_strict ${ARGN})
  if(tests AND BUILD_TESTING AND NOT HALYARD_FUZZ)
    set_property(GLOBAL APPEND PROPERTY HALYARD_TEST_ROOMS ${name})
    set_property(GLOBAL PROPERTY HALYARD_TESTS_${name} ${tests})
  endif()
endfunction()

# The catalog travels inside the program as base64 text, made anew whenever the document changes.
function(halyard_embed_catalog target document)
  if(CMAKE_CROSSCOMPILING)
    # It runs here and now, so it is made by this machine's own compiler.
    set(embed_catalog ${CMAKE_BINARY_DIR}/embed_catalog)
    add_custom_command(
      OUTPUT ${embed_catalog}
      COMMAND c++ -std=c++20 -o ${embed_catalog} ${CMAKE_SOURCE_DIR}/tools/embed_catalog.cpp
      DEPENDS ${CMAKE_SOURCE_DIR}/tools/embed_catalog.cpp
      VERBATIM)
  else()
    set(embed_catalog embed_catalog)
    add_executable(embed_catalog ${CMAKE_SOURCE_DIR}/tools/embed_catalog.cpp)
    target_compile_features(embed_catalog PRIVATE cxx_std_20)
  endif()
  set(generated ${CMAKE_BINARY_DIR}/embedded_catalog.cpp)
  add_custom_command(
    OUTPUT ${generated}
    COMMAND ${embed_catalog} ${CMAKE_SOURCE_DIR}/${document} ${generated}
    DEPENDS ${embed_catalog} ${CMAKE_SOURCE_DIR}/${document}
    VERBATIM)
  target_sources(${target} PRIVATE ${generated})
endfunction()
