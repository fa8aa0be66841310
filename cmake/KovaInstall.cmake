# Install rules in four components, the package configuration and the pkg-config files.
#
#   Runtime      the shared library
#   Development  headers, what links against the library, and what translators are written with
#   Program      kova-translate with its manual page, and the memory monitor that its timings show
#   Translators  the libraries that the program loads by name
#
# Nothing that is installed names a folder of the machine that built it: the tree can be moved.

include(CMakePackageConfigHelpers)
if(KOVABASE_PACKAGES)
  include(KovaPackages)
endif()

set(_kova_cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/KOVABase")
set(_kova_plugin_dir "${CMAKE_INSTALL_LIBDIR}/kovabase")
set(_kova_translator_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/kovabase-translators")

# The library.
install(
  TARGETS kovabase
  EXPORT KOVABaseLibraryTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Runtime NAMELINK_COMPONENT Development
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT Development)
set(_kova_exports Library)
install(TARGETS KOVAPerf LIBRARY DESTINATION "${_kova_plugin_dir}" COMPONENT Program)

if(KOVABASE_BUILD_APPS)
  # What translators are written with.
  set(_kova_interface_targets kova_translator_interface kova_translator_model)
  set_target_properties(kova_translator_interface PROPERTIES EXPORT_NAME TranslatorInterface)
  set_target_properties(kova_translator_model PROPERTIES EXPORT_NAME TranslatorModel)
  add_library(KOVABase::TranslatorInterface ALIAS kova_translator_interface)
  add_library(KOVABase::TranslatorModel ALIAS kova_translator_model)
  foreach(target IN LISTS _kova_interface_targets)
    get_target_property(folder ${target} SOURCE_DIR)
    get_target_property(headers ${target} SOURCES)
    list(FILTER headers INCLUDE REGEX "\\.h$")
    list(TRANSFORM headers PREPEND "${folder}/")
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${headers})
  endforeach()
  install(
    TARGETS ${_kova_interface_targets}
    EXPORT KOVABaseTranslatorInterfaceTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Development
    FILE_SET HEADERS DESTINATION "${_kova_translator_include_dir}" COMPONENT Development)

  # The program and the translators.
  install(TARGETS kova-translate EXPORT KOVABaseProgramTargets RUNTIME COMPONENT Program)
  set(_kova_page "${PROJECT_SOURCE_DIR}/packaging/manual/kova-translate.1")
  if(KOVABASE_PACKAGES)
    kova_gzip("${_kova_page}" "${PROJECT_BINARY_DIR}/packaging/kova-translate.1.gz")
    set(_kova_page "${PROJECT_BINARY_DIR}/packaging/kova-translate.1.gz")
  endif()
  install(
    FILES "${_kova_page}"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
    COMPONENT Program)
  install(
    FILES "${PROJECT_SOURCE_DIR}/packaging/manual/kova-translate.bash"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
    RENAME kova-translate
    COMPONENT Program)
  get_property(_kova_translators GLOBAL PROPERTY KOVA_TRANSLATORS)
  install(
    TARGETS ${_kova_translators}
    EXPORT KOVABaseTranslatorsTargets
    LIBRARY DESTINATION "${_kova_plugin_dir}" COMPONENT Translators)
  list(APPEND _kova_exports TranslatorInterface Program Translators)
endif()

# The package configuration: one file of targets for each component that `find_package` can ask for,
# installed with what it describes. The build tree offers the same to projects beside it.
foreach(part IN LISTS _kova_exports)
  if(part MATCHES "^(Program|Translators)$")
    set(component ${part})
  else()
    set(component Development)
  endif()
  install(
    EXPORT KOVABase${part}Targets
    NAMESPACE KOVABase::
    DESTINATION "${_kova_cmake_dir}"
    COMPONENT ${component})
  export(EXPORT KOVABase${part}Targets NAMESPACE KOVABase:: FILE "${PROJECT_BINARY_DIR}/KOVABase${part}Targets.cmake")
endforeach()

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/KOVABaseConfig.cmake.in" "${PROJECT_BINARY_DIR}/install/KOVABaseConfig.cmake"
  INSTALL_DESTINATION "${_kova_cmake_dir}"
  PATH_VARS _kova_plugin_dir)
# The same file for the build tree, where plug-ins lie beside the library.
set(_kova_plugin_dir lib)
configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/KOVABaseConfig.cmake.in" "${PROJECT_BINARY_DIR}/KOVABaseConfig.cmake"
  INSTALL_DESTINATION .
  INSTALL_PREFIX "${PROJECT_BINARY_DIR}"
  PATH_VARS _kova_plugin_dir)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KOVABaseConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(
  FILES "${PROJECT_BINARY_DIR}/install/KOVABaseConfig.cmake" "${PROJECT_BINARY_DIR}/KOVABaseConfigVersion.cmake"
  DESTINATION "${_kova_cmake_dir}"
  COMPONENT Development)

file(RELATIVE_PATH _kova_pc_to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" _kova_pc_to_prefix "${_kova_pc_to_prefix}")
set(_kova_pc_files kovabase)
if(KOVABASE_BUILD_APPS)
  list(APPEND _kova_pc_files kovabase-translators)
endif()
foreach(name IN LISTS _kova_pc_files)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in" "${PROJECT_BINARY_DIR}/install/${name}.pc" @ONLY)
  install(
    FILES "${PROJECT_BINARY_DIR}/install/${name}.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT Development)
endforeach()

include(KovaGdb)

