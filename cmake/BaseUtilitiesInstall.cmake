# Headers, library and package configuration, for find_package in other projects.

include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/BaseUtilities")

install(TARGETS BaseUtilities
    EXPORT BaseUtilitiesTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT BaseUtilitiesTargets
    NAMESPACE BaseUtilities::
    DESTINATION "${package_dir}")

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/BaseUtilitiesConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/BaseUtilitiesConfig.cmake"
    INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/BaseUtilitiesConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/BaseUtilitiesConfig.cmake"
    "${PROJECT_BINARY_DIR}/BaseUtilitiesConfigVersion.cmake"
    DESTINATION "${package_dir}")
