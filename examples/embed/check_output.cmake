# Runs PROGRAM with ARGUMENT. Fails unless it ends with STATUS and prints on STREAM (OUTPUT or ERROR) exactly what
# stands in the file EXPECTED, and nothing on the other one.
set(OUTPUT)
set(ERROR)
execute_process(COMMAND "${PROGRAM}" "${ARGUMENT}" RESULT_VARIABLE status OUTPUT_VARIABLE OUTPUT
  ERROR_VARIABLE ERROR)
if(NOT status STREQUAL STATUS)
  message(FATAL_ERROR "The program ended with ${status} and not with ${STATUS}. It printed:\n${OUTPUT}${ERROR}")
endif()
file(READ "${EXPECTED}" expected)
if(NOT "${OUTPUT}${ERROR}" STREQUAL expected OR NOT "${${STREAM}}" STREQUAL expected)
  message(FATAL_ERROR "Expected:\n${expected}\nPrinted:\n${OUTPUT}\nPrinted as errors:\n${ERROR}")
endif()
