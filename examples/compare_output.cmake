# Fails unless PROGRAM succeeds and writes exactly the content of the file EXPECTED.
file(READ ${EXPECTED} expected)
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ended with ${status}")
endif()
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "expected:\n${expected}\nbut it wrote:\n${output}")
endif()
