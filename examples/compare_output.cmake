# Fails unless PROGRAM succeeds and writes exactly the content of the file EXPECTED.
file(READ ${EXPECTED} expected)
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "expected:\n${expected}\nbut it wrote:\n${output}")
endif()
