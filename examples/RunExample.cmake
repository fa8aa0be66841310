# Runs a program in an empty folder and compares what it writes.
#
#   cmake -D PROGRAM=... -D FOLDER=... -D EXPECTED=.../NAME.txt [-D ARGUMENTS=a;b] [-D STATUS=n]
#         -P RunExample.cmake
#
# NAME.txt holds the standard output to the byte, NAME_errors.txt beside it the standard error; without
# that file there must be none. The program must end with 0, or with the given status. Settings of whoever
# runs the tests do not reach it.

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
if(NOT STATUS)
  set(STATUS 0)
endif()
if(NOT status STREQUAL STATUS)
  message("${PROGRAM} ended with ${status}")
  set(failed TRUE)
endif()

string(REGEX REPLACE "\\.txt$" "_errors.txt" errors "${EXPECTED}")
if(NOT EXISTS "${errors}")
  set(errors /dev/null)
endif()
foreach(pair "${EXPECTED};output.txt" "${errors};errors.txt")
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
