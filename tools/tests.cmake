# yfw_add_tests(PROGRAM [arguments of gtest_discover_tests]): the tests of a GoogleTest program. Each is a test of
# its own, but not with sanitizers: there starting a process takes longer than most tests, so a program runs whole.
function(yfw_add_tests program)
  if(YFW_SANITIZE)
    add_test(NAME ${program} COMMAND ${program})
    set_tests_properties(${program} PROPERTIES TIMEOUT 900)
  else()
    gtest_discover_tests(${program} ${ARGN})
  endif()
endfunction()
