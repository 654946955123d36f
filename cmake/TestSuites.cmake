# Makes a test of each suite of a GoogleTest executable. A process a suite, not a process a test: under the sanitizers
# starting and ending a process takes longer than what most tests do. What fails is named by the output.
function(kestrova_discover_suites name)
  cmake_parse_arguments(ARG "" "LABEL;TIMEOUT" "" ${ARGN})
  set(suites ${CMAKE_CURRENT_BINARY_DIR}/${name}_suites.cmake)
  add_custom_command(TARGET ${name} POST_BUILD
    COMMAND ${CMAKE_COMMAND}
      -D EXECUTABLE=$<TARGET_FILE:${name}> -D OUTPUT=${suites} -D LABEL=${ARG_LABEL} -D TIMEOUT=${ARG_TIMEOUT}
      -P ${PROJECT_SOURCE_DIR}/cmake/ListTestSuites.cmake
    BYPRODUCTS ${suites} VERBATIM)
  # Read when the tests run. An executable that was never built has to fail, not to be passed over.
  file(WRITE ${suites}.in
    "if(EXISTS \"${suites}\")\n  include(\"${suites}\")\nelse()\n  add_test(${name}_NOT_BUILT ${name}_NOT_BUILT)\nendif()\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${suites}.in)
endfunction()
