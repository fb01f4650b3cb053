# What is tested is optimised in full, those who test it don't have to be. So little optimised, g++ 12 takes values of
# empty optionals for uninitialised ones.
set(ND_TEST_OPTIMISATION $<$<CONFIG:Release>:-O1>
  $<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU>>:-Wno-maybe-uninitialized>)

# What every test program reads first is compiled once, by this one, and taken over by the others.
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/generated/tests/precompiled.cpp" CONTENT "int main() {}\n")
add_executable(nd_test_precompiled "${PROJECT_BINARY_DIR}/generated/tests/precompiled.cpp")
target_link_libraries(nd_test_precompiled PRIVATE nd_warnings GTest::gmock GTest::gtest)
target_compile_options(nd_test_precompiled PRIVATE ${ND_TEST_OPTIMISATION})
target_precompile_headers(nd_test_precompiled PRIVATE <gmock/gmock.h> <gtest/gtest.h> <memory> <string> <vector>)

# nd_test(NAME SOURCES… LIBRARIES …): one test program, one entry of ctest.
function(nd_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}/generated")
  target_link_libraries(${name} PRIVATE nd_warnings ${ARG_LIBRARIES} GTest::gmock GTest::gtest GTest::gtest_main)
  target_compile_options(${name} PRIVATE ${ND_TEST_OPTIMISATION})
  target_precompile_headers(${name} REUSE_FROM nd_test_precompiled)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
endfunction()
