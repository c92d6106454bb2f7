# Compiler and linker settings of all targets, and the folders for what they build.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Release or Debug" FORCE)
endif()
# -O2 rather than CMake's -O3: the code is many small functions, which -O3 makes larger and no quicker.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(QUAY_PYTHON_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/python)

# The run path: libraries are searched beside the library that needs them and in a program's ../lib, both in the build
# tree and installed.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

set(QUAY_SANITIZE "" CACHE STRING "Sanitizers to build with: address,undefined or thread")

add_library(project_flags INTERFACE)
target_compile_options(project_flags INTERFACE
  -Wall -Wextra -Wpedantic -Werror
  -fvisibility=hidden -fvisibility-inlines-hidden -fno-semantic-interposition)
target_link_options(project_flags INTERFACE -Wl,-Bsymbolic-functions -Wl,--as-needed)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Without this, statics of templates and inline functions are unique symbols, and a library that has one can never be
  # unmapped. Clang makes none.
  target_compile_options(project_flags INTERFACE -fno-gnu-unique)
endif()
if(QUAY_SANITIZE)
  target_compile_options(project_flags INTERFACE
    -fsanitize=${QUAY_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(project_flags INTERFACE -fsanitize=${QUAY_SANITIZE})
endif()
if(NOT QUAY_SANITIZE OR CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Clang leaves the sanitizers' functions undefined in shared libraries; the program provides them.
  target_link_options(project_flags INTERFACE -Wl,--no-undefined)
endif()

find_program(CCACHE ccache)
mark_as_advanced(CCACHE)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # ccache caches sources that use a precompiled header only with this sloppiness; the header's own content still
  # counts. Paths are hashed relative to the build folder, so that all working trees share the cache.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_NOHASHDIR=1
                              CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} ${CCACHE})
endif()
