# Checks an installed tree: no file names a folder of the machine that built it, each component
# brings its own files, and asking for one that is not there fails with a sentence.

cmake_minimum_required(VERSION 3.25)

function(fail)
  message(SEND_ERROR ${ARGN})
endfunction()

file(GLOB_RECURSE files LIST_DIRECTORIES false "${PREFIX}/*")
foreach(file IN LISTS files)
  foreach(folder "${KOVABASE_SOURCE}" "${BUILD_TREE}")
    # Debug information names the sources; nothing else may.
    if(HAS_DEBUG_INFORMATION AND file MATCHES "\\.(so|a)|/bin/")
      continue()
    endif()
    file(STRINGS "${file}" found REGEX "${folder}" LIMIT_COUNT 1)
    if(found)
      fail("${file} names ${folder}: ${found}")
    endif()
  endforeach()
endforeach()

file(REMOVE_RECURSE "${BINARY}")
foreach(component Runtime Development Program Translators)
  execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_TREE}" --component ${component} --prefix
                          "${BINARY}/${component}" OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE "${BINARY}/${component}" "${BINARY}/${component}/*")
  list(APPEND all ${files})
  set(${component} ${files})
endforeach()
foreach(file IN LISTS Runtime)
  if(NOT file MATCHES "/libkovabase\\.so\\.[0-9.]+$")
    fail("Runtime has ${file}, which a program does not load")
  endif()
endforeach()
if(NOT "${LIBDIR}/libkovabase.so" IN_LIST Development)
  fail("Development has nothing to link against")
endif()
file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE "${PREFIX}" "${PREFIX}/*")
list(SORT files)
list(SORT all)
list(REMOVE_DUPLICATES all)
if(NOT files STREQUAL all)
  fail("All components together are not the whole:\n  ${files}\n  ${all}")
endif()

# A tree for development alone.
foreach(component Runtime Development)
  file(COPY "${BINARY}/${component}/" DESTINATION "${BINARY}/partial")
endforeach()
foreach(component Translators Viewer)
  file(WRITE "${BINARY}/ask/CMakeLists.txt"
       "cmake_minimum_required(VERSION 3.25)\nproject(Ask LANGUAGES NONE)\n"
       "find_package(KOVABase 1.0 CONFIG REQUIRED COMPONENTS Library ${component})\n")
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -G "${GENERATOR}" -S "${BINARY}/ask" -B "${BINARY}/ask/build" "-DCMAKE_PREFIX_PATH=${BINARY}/partial"
    RESULT_VARIABLE status ERROR_VARIABLE output OUTPUT_QUIET)
  string(REGEX REPLACE "[ \n]+" " " output "${output}")
  if(status EQUAL 0 OR NOT output MATCHES "(component '${component}' of KOVABase is not installed in|KOVABase has no component '${component}')")
    fail("Asking for ${component} says: ${output}")
  endif()
endforeach()
