# Builds and runs the consumer project against an installed tree, in one of three ways:
# find_package, the same after the tree was moved, and pkg-config without CMake.

function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  message(STATUS "${what}\n${output}")
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed: ${status}")
  endif()
endfunction()

if(SANITIZE STREQUAL "address")
  set(flags "-fsanitize=address,undefined")
elseif(SANITIZE STREQUAL "thread")
  set(flags "-fsanitize=thread")
endif()

file(REMOVE_RECURSE "${BINARY}")
file(MAKE_DIRECTORY "${BINARY}")

if(WAY STREQUAL "moved")
  file(COPY "${PREFIX}/" DESTINATION "${BINARY}/elsewhere")
  set(PREFIX "${BINARY}/elsewhere")
endif()

if(WAY STREQUAL "pkg_config")
  find_program(pkg_config pkg-config)
  if(NOT pkg_config)
    message(STATUS "pkg-config is not installed")
    return()
  endif()
  set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIBDIR}/pkgconfig")
  execute_process(COMMAND "${pkg_config}" --cflags --libs kovabase RESULT_VARIABLE status
                  OUTPUT_VARIABLE options OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(options UNIX_COMMAND "${options}")
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run("compile" "${COMPILER}" -std=c++20 -O2 ${flags} "${SOURCE}/main.cpp" -o "${BINARY}/consumer" ${options}
      "-Wl,-rpath,${PREFIX}/${LIBDIR}")
else()
  run("configure" "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${BINARY}" -DCMAKE_BUILD_TYPE=Release
      "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${flags}")
  run("build" "${CMAKE_COMMAND}" --build "${BINARY}")
endif()
run("run" "${BINARY}/consumer")
