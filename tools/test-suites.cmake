# Run by ctest: adds the suites of one program as tests. yfw_add_tests sets program, executable, whole, cost and labels.
if(NOT EXISTS "${executable}")
  add_test(${program}_NOT_BUILT ${program}_NOT_BUILT)
  return()
endif()

# Skipped is what names a skipped test in its last line. After a failure, a crash or a leak that line is another; for
# ctest, a test that is skipped has not failed, whatever its exit status.
macro(yfw_add_suite name)
  add_test(${name} ${executable} ${ARGN})
  set_tests_properties(${name} PROPERTIES TIMEOUT 900 COST ${cost} LABELS "${labels}"
                       SKIP_REGULAR_EXPRESSION "\\[  SKIPPED \\] [^ \n]+\n$")
endmacro()

if(whole)
  yfw_add_suite(${program})
  return()
endif()

execute_process(COMMAND ${executable} --gtest_list_tests OUTPUT_VARIABLE listed RESULT_VARIABLE result)
string(REGEX MATCHALL "(^|\n)[A-Za-z0-9_/]+\\." suites "${listed}")
if(NOT result EQUAL 0 OR NOT suites)
  message(FATAL_ERROR "${executable} does not list its tests: ${result}\n${listed}")
endif()
foreach(suite IN LISTS suites)
  string(REGEX MATCH "[A-Za-z0-9_/]+" suite "${suite}")
  yfw_add_suite(${program}.${suite} --gtest_filter=${suite}.*)
endforeach()
