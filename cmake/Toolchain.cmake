# Language, warnings, visibility and sanitizers, the same for every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# What a shared library exports it also calls directly and inlines within itself: nobody replaces parts of it.
add_compile_options(-fno-semantic-interposition)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Most classes override in generated code what they inherit: a guess that they don't costs and is wrong.
  add_compile_options(-fno-devirtualize-speculatively)
endif()
add_link_options(-Wl,-Bsymbolic-functions)

find_program(ND_CCACHE ccache)
if(ND_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # A precompiled header carries its time of making; ccache has to be told to look past that.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${ND_CCACHE})
endif()

# nd_warnings: what every target of ours is compiled with, and nobody else's.
add_library(nd_warnings INTERFACE)
target_compile_options(nd_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror
  -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-align -Wcast-qual -Wformat=2 -Wnull-dereference
  -Wimplicit-fallthrough -Wextra-semi)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(nd_warnings INTERFACE
    -Wduplicated-cond -Wlogical-op -Wuseless-cast
    # g++ 12 sees null dereferences and overflows in inlined standard containers that are not there.
    -Wno-null-dereference -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread
    -Wno-restrict)
endif()

if(ND_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "ND_FUZZ needs clang; set CMAKE_CXX_COMPILER to clang++, or take the preset fuzz.")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=address,undefined)
  add_compile_definitions(ND_SANITIZED)
  # Another compiler warns of other things; here it is to find faults in what runs.
  target_compile_options(nd_warnings INTERFACE -Wno-error)
endif()
if(ND_SANITIZE AND ND_SANITIZE_THREAD)
  message(FATAL_ERROR "ND_SANITIZE and ND_SANITIZE_THREAD exclude each other; switch one off.")
endif()
if(ND_SANITIZE OR ND_SANITIZE_THREAD)
  # Not every compiler says so itself.
  add_compile_definitions(ND_SANITIZED)
endif()
# Building is most of what checking with sanitizers takes: their reports need lines only, and what is not optimised is
# compiled in half the time.
if(ND_SANITIZE_THREAD)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=thread)
endif()
if(ND_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=address,undefined)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
