# Runs a program in an empty folder and compares what it writes.
#
#   cmake -D PROGRAM=... -D FOLDER=... -D EXPECTED=... [-D ERRORS=...] [-D ARGUMENTS=a;b] -P RunExample.cmake
#
# EXPECTED holds the standard output to the byte, ERRORS the standard error, which is empty without
# that file. The program must end with 0. Settings of whoever runs the tests do not reach it.

file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")

foreach(name KOVAConsoleTracesLevel KOVALogLevel KOVALoggers KOVATaskTiming KOVATaskInfoDetailed TMPDIR)
  unset(ENV{${name}})
endforeach()

execute_process(
  COMMAND "${PROGRAM}" ${ARGUMENTS}
  WORKING_DIRECTORY "${FOLDER}"
  OUTPUT_FILE "${FOLDER}/output.txt"
  ERROR_FILE "${FOLDER}/errors.txt"
  RESULT_VARIABLE status)

set(failed FALSE)
if(NOT status STREQUAL "0")
  message("${PROGRAM} ended with ${status}")
  set(failed TRUE)
endif()

if(NOT ERRORS)
  set(ERRORS /dev/null)
endif()
foreach(pair "${EXPECTED};output.txt" "${ERRORS};errors.txt")
  list(GET pair 0 expected)
  list(GET pair 1 actual)
  execute_process(COMMAND diff -u "${expected}" "${FOLDER}/${actual}" RESULT_VARIABLE differs)
  if(differs)
    set(failed TRUE)
  endif()
endforeach()

if(failed)
  message(FATAL_ERROR "the example does not do what its page says")
endif()
