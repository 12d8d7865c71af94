# Run by ctest: adds the suites of a test program as tests. yfw_add_tests sets program, executable, cost, labels,
# demanding.
if(NOT EXISTS "${executable}")
  add_test(${program}_NOT_BUILT ${program}_NOT_BUILT)
  return()
endif()

# Skipped means that the last line of the output names a skipped test. After a failure, a crash or a leak the output
# ends differently; this matters because ctest counts a skipped test as passed whatever its exit status.
macro(yfw_add_suite name)
  add_test(${name} ${executable} ${ARGN})
  set_tests_properties(${name} PROPERTIES TIMEOUT 900 COST ${cost} LABELS "${labels}"
                       SKIP_REGULAR_EXPRESSION "\\[  SKIPPED \\] [^ \n]+\n$")
endmacro()

execute_process(COMMAND ${executable} --gtest_list_tests OUTPUT_VARIABLE listed RESULT_VARIABLE result)
string(REGEX MATCHALL "(^|\n)[A-Za-z0-9_/]+\\." suites "${listed}")
if(NOT result EQUAL 0 OR NOT suites)
  message(FATAL_ERROR "${executable} does not list its tests: ${result}\n${listed}")
endif()
foreach(suite IN LISTS suites)
  string(REGEX MATCH "[A-Za-z0-9_/]+" suite "${suite}")
  yfw_add_suite(${program}.${suite} --gtest_filter=${suite}.*)
  if(";${demanding};" MATCHES ";${suite};") # ctest has no IN_LIST here
    # They are started first. At the end, they would wait for the others, and be alone.
    set_tests_properties(${program}.${suite} PROPERTIES PROCESSORS 3 COST 1000)
  endif()
endforeach()
