# Builds and runs the consumer project in one of the ways in which the library can be used:
# installed, moved (the installed tree, in another place), build_tree, subdirectory, pkg_config.
cmake_minimum_required(VERSION 3.25)

function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  message(STATUS "${what}\n${output}")
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed: ${status}")
  endif()
endfunction()

find_program(compiler "${COMPILER}")
if(NOT compiler)
  message(STATUS "${COMPILER} is not installed")
  return()
endif()

file(REMOVE_RECURSE "${BINARY}")
file(MAKE_DIRECTORY "${BINARY}")

if(WAY STREQUAL "pkg_config")
  find_program(pkg_config pkg-config)
  if(NOT pkg_config)
    message(STATUS "pkg-config is not installed")
    return()
  endif()
  set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIBDIR}/pkgconfig")
  execute_process(COMMAND "${pkg_config}" --cflags --libs kovabase OUTPUT_VARIABLE options
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(options UNIX_COMMAND "${options}")
  run("compile" "${compiler}" -std=c++${STANDARD} -O2 "${SOURCE}/main.cpp" -o "${BINARY}/consumer" ${options}
      "-Wl,-rpath,${PREFIX}/${LIBDIR}")
  run("run" "${BINARY}/consumer")
  return()
endif()

# Divided by commas, since a list would fall apart on its way through the command line.
set(components Library)
if(HAS_APPS)
  string(APPEND components ",TranslatorInterface,Program,Translators")
endif()
if(WAY STREQUAL "moved")
  file(COPY "${PREFIX}/" DESTINATION "${BINARY}/some where else")
  set(PREFIX "${BINARY}/some where else")
elseif(WAY STREQUAL "build_tree")
  set(PREFIX "${BUILD_TREE}")
elseif(WAY STREQUAL "subdirectory")
  set(extra "-DKOVABASE_SOURCE=${KOVABASE_SOURCE}" "-DKOVABASE_WERROR=${WERROR}")
endif()
run("configure"
    "${CMAKE_COMMAND}" -G "${GENERATOR}" -S "${SOURCE}" -B "${BINARY}/build" -DCMAKE_BUILD_TYPE=Release
    "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DCMAKE_CXX_COMPILER=${compiler}" "-DCMAKE_CXX_STANDARD=${STANDARD}"
    "-DCOMPONENTS=${components}" ${extra})
run("build" "${CMAKE_COMMAND}" --build "${BINARY}/build")
run("run" "${BINARY}/build/consumer")
if(EXISTS "${BINARY}/build/run_translator")
  run("run the translator" "${BINARY}/build/run_translator" "${BINARY}/build/libkova_corners.so")
endif()
