# What nearly every test includes, parsed once for all of them (YFW_TESTS has found GoogleTest by then).
add_library(test_headers OBJECT ${CMAKE_SOURCE_DIR}/tools/test_headers.cpp)
target_link_libraries(test_headers PRIVATE GTest::gmock)
target_precompile_headers(test_headers PRIVATE ${CMAKE_SOURCE_DIR}/tools/test_headers.h)

# How tests' own code is compiled: quickly rather than well. Matchers take long to optimise, the more so with
# sanitizers, and gain nothing by it. Of UndefinedBehaviorSanitizer's checks those stay out that stand at every access
# to a member and double the time of compiling; AddressSanitizer sees most of what they would see. What is tested keeps
# the flags of the build. All of it is -fPIC, as precompiled headers are of one kind of code.
function(yfw_test_flags target)
  target_compile_options(${target} PRIVATE -O0 -g1 -fPIC)
  if(YFW_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=vptr,null,alignment,object-size)
  endif()
  # So that ccache can keep what includes the precompiled headers.
  target_compile_options(${target} PRIVATE
    "$<$<AND:$<BOOL:${YFW_CCACHE}>,$<CXX_COMPILER_ID:Clang>>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()
yfw_test_flags(test_headers)

# yfw_test_code(TARGET ...): these are code of tests.
function(yfw_test_code)
  foreach(target IN LISTS ARGN)
    yfw_test_flags(${target})
    target_precompile_headers(${target} REUSE_FROM test_headers)
  endforeach()
endfunction()

# yfw_add_tests(PROGRAM [WHOLE] [COST seconds] [LABELS label ...]): the tests of a GoogleTest program, one test of ctest for each suite.
# One for each of the thousands of tests would start a process for each, which takes longer than most of them. Suites
# are listed when ctest runs, so a new scenario needs no new build. WHOLE: the program is one test. COST: about how long
# the longest of them takes; where that is told, they are started first. LABELS: ctest's.
function(yfw_add_tests program)
  cmake_parse_arguments(PARSE_ARGV 1 arg "WHOLE" "COST" "LABELS")
  yfw_test_code(${program})
  if(NOT arg_COST)
    set(arg_COST 0)
  endif()
  set(listing ${CMAKE_CURRENT_BINARY_DIR}/${program}_suites.cmake)
  file(GENERATE OUTPUT ${listing} CONTENT "set(program ${program})
set(executable \"$<TARGET_FILE:${program}>\")
set(whole ${arg_WHOLE})
set(cost ${arg_COST})
set(labels \"${arg_LABELS}\")
include(\"${CMAKE_SOURCE_DIR}/tools/test-suites.cmake\")
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${listing})
endfunction()
