# The pretty printers for gdb, beside the library and in the folder from which gdb loads them.

# The names of the result codes come from the one header that has them.
set(_kova_codes "${PROJECT_SOURCE_DIR}/kovabase/foundation/KOVAResultCodes.h")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${_kova_codes}")
file(STRINGS "${_kova_codes}" _kova_lines REGEX "inline constexpr int k[A-Za-z]+ = 0x[0-9A-F]+;")
set(_kova_result_names "")
foreach(_kova_line IN LISTS _kova_lines)
  string(REGEX REPLACE ".*int (k[A-Za-z]+) = (0x[0-9A-F]+);.*" "    \\2: \"\\1\",\n" _kova_line "${_kova_line}")
  string(APPEND _kova_result_names "${_kova_line}")
endforeach()

set(_kova_name "libkovabase.so.${PROJECT_VERSION}-gdb.py")
configure_file("${PROJECT_SOURCE_DIR}/kovabase/gdb/kovabase-gdb.py.in" "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${_kova_name}" @ONLY)
# gdb looks below this folder for the path of the library as it is installed under /usr.
install(
  FILES "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${_kova_name}"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR}"
  COMPONENT Development)
