# Writes what the program prints for WORDS into FILE.
execute_process(COMMAND ${PROGRAM} ${WORDS} OUTPUT_FILE ${FILE} RESULT_VARIABLE code)
if(code)
  file(REMOVE ${FILE})
  message(FATAL_ERROR "the program cannot print '${WORDS}'")
endif()
