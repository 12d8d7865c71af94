# Precompiles the headers that nearly every test includes. The caller has found GoogleTest.
add_library(test_headers OBJECT ${CMAKE_SOURCE_DIR}/tools/test_headers.cpp)
target_link_libraries(test_headers PRIVATE GTest::gmock)
target_precompile_headers(test_headers PRIVATE ${CMAKE_SOURCE_DIR}/tools/test_headers.h)

# Test code is compiled for a short compile time: not optimised and without sanitizers, which would take half as long again.
# The code under test keeps the flags of the build. -fPIC throughout, since code that uses a precompiled header must have
# the header's flags.
function(yfw_test_flags target)
  target_compile_options(${target} PRIVATE -O0 -U_FORTIFY_SOURCE -g1 -fPIC)
  if(YFW_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
  endif()
  # Lets ccache cache the files that include the precompiled headers.
  target_compile_options(${target} PRIVATE
    "$<$<AND:$<BOOL:${YFW_CCACHE}>,$<CXX_COMPILER_ID:Clang>>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()
yfw_test_flags(test_headers)

# yfw_test_code(TARGET ...): compiles these targets as test code.
function(yfw_test_code)
  foreach(target IN LISTS ARGN)
    yfw_test_flags(${target})
    target_precompile_headers(${target} REUSE_FROM test_headers)
  endforeach()
endfunction()

# yfw_add_tests(PROGRAM [COST SECONDS] [LABELS LABEL ...] [DEMANDING SUITE ...]): adds a GoogleTest program to ctest, one
# ctest test per suite: starting a process for each of the thousands of tests would take longer than most tests. Suites
# are listed when ctest runs, so a new scenario needs no build. COST: roughly how long its longest suite takes; tests
# with a high cost are started first. LABELS: for ctest. DEMANDING: suites that count for three of the tests that ctest
# runs at the same time.
function(yfw_add_tests program)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "COST" "LABELS;DEMANDING")
  yfw_test_code(${program})
  if(NOT arg_COST)
    set(arg_COST 0)
  endif()
  set(listing ${CMAKE_CURRENT_BINARY_DIR}/${program}_suites.cmake)
  file(GENERATE OUTPUT ${listing} CONTENT "set(program ${program})
set(executable \"$<TARGET_FILE:${program}>\")
set(cost ${arg_COST})
set(labels \"${arg_LABELS}\")
set(demanding \"${arg_DEMANDING}\")
include(\"${CMAKE_SOURCE_DIR}/tools/test-suites.cmake\")
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${listing})
endfunction()
