# One target carries the language level, the warnings and the hardening of everything we build.
add_library(tarnwick_options INTERFACE)
target_compile_features(tarnwick_options INTERFACE cxx_std_20)
target_compile_options(tarnwick_options INTERFACE
  -Wall -Wextra -Werror -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused -Wnull-dereference
  -Wformat=2 -Wimplicit-fallthrough
  -fstack-protector-strong -fvisibility=hidden)
target_link_options(tarnwick_options INTERFACE -Wl,-z,relro,-z,now -Wl,-z,noexecstack)

# Fortified libc calls need optimisation, and sanitizers bring their own checks.
if(NOT TARNWICK_SANITIZE)
  target_compile_options(tarnwick_options INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
endif()
target_compile_definitions(tarnwick_options INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)

# g++ 12 reports null dereferences and free() of non-heap memory inside the library's own
# coroutine and string code once it has inlined everything; the warnings stay on elsewhere.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(tarnwick_options INTERFACE -Wno-null-dereference -Wduplicated-cond
                         -Wlogical-op)
endif()

set(TARNWICK_SANITIZE "" CACHE STRING "Sanitizers, e.g. address,undefined or thread")
if(TARNWICK_SANITIZE)
  add_compile_options(-fsanitize=${TARNWICK_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TARNWICK_SANITIZE})
  # This one check writes a constant that clang 14 cannot lay out for the pieces of a coroutine.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND TARNWICK_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize=function)
  endif()
endif()

# The fuzzer is led by the counters in our code, so all of it has them.
if(TARNWICK_BUILD_FUZZERS)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "The fuzz targets need clang; use the preset fuzz.")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

option(TARNWICK_COVERAGE "Instrument for coverage" OFF)
if(TARNWICK_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(TARNWICK_CCACHE ccache)
if(TARNWICK_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${TARNWICK_CCACHE}")
endif()
