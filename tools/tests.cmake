# Tests' own code is compiled quickly rather than well: matchers take long to optimise, the more so with sanitizers,
# and gain nothing by it. Nor has a fuzzer's counters to be in it. What is tested keeps the flags of the build.
function(yfw_test_code)
  foreach(target IN LISTS ARGN)
    target_compile_options(${target} PRIVATE -O0 -g1 $<$<BOOL:${YFW_FUZZ}>:-fno-sanitize=fuzzer-no-link>)
  endforeach()
endfunction()

# yfw_add_tests(PROGRAM [WHOLE] [COST seconds]): the tests of a GoogleTest program, one test of ctest for each suite.
# One for each of the thousands of tests would start a process for each, which takes longer than most of them. Suites
# are listed when ctest runs, so a new scenario needs no new build. WHOLE: the program is one test. COST: about how long
# the longest of them takes; where that is told, they are started first.
function(yfw_add_tests program)
  cmake_parse_arguments(PARSE_ARGV 1 arg "WHOLE" "COST" "")
  yfw_test_code(${program})
  if(NOT arg_COST)
    set(arg_COST 0)
  endif()
  set(listing ${CMAKE_CURRENT_BINARY_DIR}/${program}_suites.cmake)
  file(GENERATE OUTPUT ${listing} CONTENT "set(program ${program})
set(executable \"$<TARGET_FILE:${program}>\")
set(whole ${arg_WHOLE})
set(cost ${arg_COST})
include(\"${CMAKE_SOURCE_DIR}/tools/test-suites.cmake\")
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${listing})
endfunction()
