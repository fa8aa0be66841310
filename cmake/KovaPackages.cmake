# The Debian packages: `script/package`, or `cmake --preset package`, a build, and `cpack` in its folder.
#
#   libkovabase1     Runtime
#   libkovabase-dev  Development
#   kova-translate   Program and Translators

if(NOT KOVABASE_BUILD_APPS)
  message(FATAL_ERROR "KOVABASE_PACKAGES needs KOVABASE_BUILD_APPS")
endif()
set(_kova_packages libkovabase${PROJECT_VERSION_MAJOR} libkovabase-dev kova-translate)
list(GET _kova_packages 0 _kova_runtime_package)

find_program(KOVA_GZIP gzip REQUIRED)
mark_as_advanced(KOVA_GZIP)
# As Debian compresses: the same bytes on every run.
function(kova_gzip source target)
  file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/packaging")
  execute_process(COMMAND "${KOVA_GZIP}" -9nc "${source}" OUTPUT_FILE "${target}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# What Debian wants beside the files of each package.
set(_kova_debian "${PROJECT_SOURCE_DIR}/packaging/debian")
kova_gzip("${_kova_debian}/changelog" "${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz")
foreach(component Runtime Development Program)
  list(POP_FRONT _kova_packages package)
  install(
    FILES "${_kova_debian}/copyright" "${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}"
    COMPONENT ${component})
endforeach()

# The system's loader finds the library; what is loaded by name lies in a folder of its own.
set_target_properties(kovabase PROPERTIES INSTALL_RPATH "$ORIGIN/kovabase")
get_property(_kova_translators GLOBAL PROPERTY KOVA_TRANSLATORS)
set_target_properties(kova-translate KOVAPerf ${_kova_translators} PROPERTIES INSTALL_RPATH "")

set(CPACK_GENERATOR DEB)
# Each package has a description of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_VENDOR "KOVABase maintainers")
set(CPACK_PACKAGE_CONTACT "KOVABase maintainers <maintainers@kovabase.example>")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Runtime Development Program Translators)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE kovabase)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(_kova_same "${_kova_runtime_package} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${_kova_runtime_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
file(WRITE "${PROJECT_BINARY_DIR}/packaging/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/packaging/triggers")
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION
    "foundation library for translators of CAD formats
Results, UTF-16 text with code pages and the escapes of STEP files, options,
events and logs, paths, worker threads, buffers, readers and writers, geometry
and units: what translators of CAD data stand on.
.
This package holds the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkovabase-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${_kova_same}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS kova-translate)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "foundation library for translators of CAD formats - development files
Results, UTF-16 text with code pages and the escapes of STEP files, options,
events and logs, paths, worker threads, buffers, readers and writers, geometry
and units: what translators of CAD data stand on.
.
This package holds the headers, the files for CMake and pkg-config, and the
static libraries with which translators for kova-translate are written.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME kova-translate)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${_kova_same}")
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION
    "translate CAD files from one format to another
Reads STEP files (assemblies, edges, tessellated surfaces) and STL and PLY
meshes, writes OBJ, PLY and STL, with units, layers, selection, a picture of
the result and figures for people and for machines.
.
This package holds the program and its translators, which it loads by name.")

include(CPack)
cpack_add_component_group(Library)
cpack_add_component_group(Development)
cpack_add_component_group(Program)
cpack_add_component(Runtime GROUP Library)
cpack_add_component(Development GROUP Development)
cpack_add_component(Program GROUP Program)
cpack_add_component(Translators GROUP Program)
