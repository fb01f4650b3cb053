# nd_test(NAME SOURCES… LIBRARIES …): one test program, one entry of ctest.
function(nd_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}/generated")
  target_link_libraries(${name} PRIVATE nd_warnings ${ARG_LIBRARIES} GTest::gmock GTest::gtest GTest::gtest_main)
  target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h> <memory> <string> <vector>)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
endfunction()
