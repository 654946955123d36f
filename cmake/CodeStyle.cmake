# `format` writes every source in the project's format, `tidy` checks them; both take what git knows.
find_program(CLANG_FORMAT clang-format)
if(CLANG_FORMAT)
  add_custom_target(format
    COMMAND git ls-files -z "*.cpp" "*.h" | xargs -0 ${CLANG_FORMAT} -i
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM)
endif()
find_program(RUN_CLANG_TIDY run-clang-tidy)
if(RUN_CLANG_TIDY)
  add_custom_target(tidy
    COMMAND ${RUN_CLANG_TIDY} -quiet -p ${PROJECT_BINARY_DIR} "${PROJECT_SOURCE_DIR}/(KestrovaCore|Platform|Kestrova)/.*"
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM)
endif()
