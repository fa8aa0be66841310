# Compile settings and the small functions with which the folders list what they hold.

add_library(kova_settings INTERFACE)
target_compile_options(
  kova_settings
  INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
            -Woverloaded-virtual -Wformat=2 -Wundef)
# g++ 12 sees overlaps in std::string's operator+ that are not there (its bug 105651).
target_compile_options(
  kova_settings INTERFACE $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
if(KOVABASE_WERROR)
  target_compile_options(kova_settings INTERFACE -Werror)
endif()
# Single and batch forms of the geometry agree bit for bit only without contraction.
target_compile_options(kova_settings INTERFACE -ffp-contract=off)

if(KOVABASE_SANITIZE STREQUAL "address")
  set(_kova_sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(KOVABASE_SANITIZE STREQUAL "thread")
  set(_kova_sanitizers -fsanitize=thread -fno-omit-frame-pointer)
elseif(NOT KOVABASE_SANITIZE STREQUAL "")
  message(FATAL_ERROR "KOVABASE_SANITIZE is '${KOVABASE_SANITIZE}': use address or thread")
endif()
if(_kova_sanitizers)
  add_compile_options(${_kova_sanitizers})
  add_link_options(${_kova_sanitizers})
endif()
if(KOVABASE_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "KOVABASE_FUZZ needs clang (libFuzzer); configure with --preset fuzz")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# kovabase_sources(HEADERS public... PRIVATE internal... SOURCES cpp...)
# Adds the files of the calling folder to the library. Only HEADERS are installed.
function(kovabase_sources)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "HEADERS;PRIVATE;SOURCES")
  foreach(kind HEADERS PRIVATE SOURCES)
    list(TRANSFORM arg_${kind} PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  endforeach()
  target_sources(kovabase PRIVATE ${arg_SOURCES} ${arg_PRIVATE})
  if(arg_HEADERS)
    target_sources(
      kovabase PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${arg_HEADERS})
  endif()
endfunction()

# kova_add_test(name SOURCES ... [LIBRARIES ...] [OWN_PROCESS])
# A GoogleTest program, one ctest entry per test, each in a process of its own.
function(kova_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  include(GoogleTest)
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE KOVABase::KOVABase kova_settings GTest::gtest_main ${arg_LIBRARIES})
  if(KOVABASE_SANITIZE)
    # g++ 12 takes the instrumented std::regex for uninitialised.
    target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_compile_definitions(${name} PRIVATE KOVA_TEST_SANITIZED)
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS ${name})
endfunction()

# kova_add_fuzz(name source) with its corpus in corpus/<name>.
# Without libFuzzer the target is a program that replays files, and a test runs the corpus.
function(kova_add_fuzz name source)
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE KOVABase::KOVABase kova_settings)
  if(KOVABASE_FUZZ)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  else()
    target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz/ReplayMain.cpp")
    add_test(NAME ${name}_corpus COMMAND ${name} "${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}")
  endif()
endfunction()

# kova_add_benchmark(name SOURCES ... [LIBRARIES ...])
function(kova_add_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE KOVABase::KOVABase kova_settings benchmark::benchmark ${arg_LIBRARIES})
endfunction()
