# Install rules, the package configuration and the pkg-config file.

include(CMakePackageConfigHelpers)

set(_kova_cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/KOVABase")

install(
  TARGETS kovabase
  EXPORT KOVABaseTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(TARGETS KOVAPerf LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(EXPORT KOVABaseTargets NAMESPACE KOVABase:: DESTINATION "${_kova_cmake_dir}")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/KOVABaseConfig.cmake.in" "${PROJECT_BINARY_DIR}/KOVABaseConfig.cmake"
  INSTALL_DESTINATION "${_kova_cmake_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KOVABaseConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KOVABaseConfig.cmake"
              "${PROJECT_BINARY_DIR}/KOVABaseConfigVersion.cmake" DESTINATION "${_kova_cmake_dir}")

configure_file("${PROJECT_SOURCE_DIR}/cmake/kovabase.pc.in" "${PROJECT_BINARY_DIR}/kovabase.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/kovabase.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
