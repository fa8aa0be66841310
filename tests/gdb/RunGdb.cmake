# Has gdb print the variables of a program and compares what it shows.
#
#   cmake -D PROGRAM=... -D LIBRARY_FOLDER=... -D EXPECTED=... -D OUTPUT=... -P RunGdb.cmake
#
# The printers are loaded as gdb does it by itself, from beside the library.

find_program(GDB gdb)
if(NOT GDB)
  message("skipped: there is no gdb; Debian: apt-get install gdb")
  return()
endif()
execute_process(
  COMMAND "${GDB}" -nx -batch -ex "python print('python', 3)"
  OUTPUT_VARIABLE python
  ERROR_QUIET)
if(NOT python MATCHES "python 3")
  message("skipped: this gdb has no Python")
  return()
endif()

file(STRINGS "${EXPECTED}" expected ENCODING UTF-8)
set(commands "")
foreach(line IN LISTS expected)
  if(line MATCHES "^([A-Za-z0-9]+): ")
    list(APPEND commands -ex "printf \"${CMAKE_MATCH_1}: \"" -ex "output ${CMAKE_MATCH_1}" -ex "printf \"\\n\"")
  endif()
endforeach()
set(ENV{LC_ALL} C.UTF-8)
execute_process(
  COMMAND
    "${GDB}" -nx -batch -iex "add-auto-load-safe-path ${LIBRARY_FOLDER}" -iex "set debuginfod enabled off" -ex
    "set width 0" -ex "set print frame-info short-location" -ex "break breakHere" -ex run -ex up -ex
    "printf \"--\\n\"" ${commands} "${PROGRAM}"
  OUTPUT_VARIABLE printed
  ERROR_VARIABLE errors)
if(NOT printed MATCHES "#1 [^\n]*show[^\n]*\n--\n")
  if(errors MATCHES "ptrace|Operation not permitted|During startup")
    message("skipped: gdb may not run programs here: ${errors}")
    return()
  endif()
  message(FATAL_ERROR "gdb did not come to the variables:\n${printed}\n${errors}")
endif()
string(REGEX REPLACE "^.*\n--\n" "" printed "${printed}")
file(WRITE "${OUTPUT}" "${printed}")
execute_process(COMMAND diff -u "${EXPECTED}" "${OUTPUT}" RESULT_VARIABLE differs)
if(differs)
  message(FATAL_ERROR "gdb shows something else: ${errors}")
endif()
