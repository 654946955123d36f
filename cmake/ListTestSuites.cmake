# Writes OUTPUT, which gives ctest a test for each suite of EXECUTABLE, with LABEL and TIMEOUT (seconds).
execute_process(COMMAND ${EXECUTABLE} --gtest_list_tests OUTPUT_VARIABLE listing TIMEOUT 60 COMMAND_ERROR_IS_FATAL ANY)
# Suites stand at the beginning of a line and end with a dot, their tests are indented.
string(REGEX MATCHALL "(^|\n)[^ \n]+\\." suites "${listing}")
if(NOT suites)
  message(FATAL_ERROR "${EXECUTABLE} has no tests")
endif()
set(lines "")
foreach(suite IN LISTS suites)
  string(REGEX REPLACE "^\n?(.*)\\.$" "\\1" suite "${suite}")
  string(APPEND lines "add_test([=[${suite}]=] [=[${EXECUTABLE}]=] [=[--gtest_filter=${suite}.*]=])\n"
    "set_tests_properties([=[${suite}]=] PROPERTIES LABELS [=[${LABEL}]=] TIMEOUT ${TIMEOUT})\n")
endforeach()
file(WRITE ${OUTPUT} "${lines}")
