# Headers, library and package configuration: for find_package and pkg-config in other projects,
# from an install prefix that may be moved, and from the build tree.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# A distribution keeps a library without a version in its soname in a folder of its own.
set(BASEUTILITIES_INSTALL_LIBRARYDIR "" CACHE STRING
    "Where the library itself is installed, if not in CMAKE_INSTALL_LIBDIR")
set(library_dir "${CMAKE_INSTALL_LIBDIR}")
if(BASEUTILITIES_INSTALL_LIBRARYDIR)
    set(library_dir "${BASEUTILITIES_INSTALL_LIBRARYDIR}")
endif()
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/BaseUtilities")
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(TARGETS BaseUtilities
    EXPORT BaseUtilitiesTargets
    LIBRARY
        DESTINATION "${library_dir}"
        COMPONENT Runtime
    FILE_SET HEADERS
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
        COMPONENT Development)
install(EXPORT BaseUtilitiesTargets
    NAMESPACE BaseUtilities::
    DESTINATION "${package_dir}"
    COMPONENT Development)
export(EXPORT BaseUtilitiesTargets
    NAMESPACE BaseUtilities::
    FILE "${PROJECT_BINARY_DIR}/BaseUtilitiesTargets.cmake")

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
    DESTINATION "${package_dir}"
    COMPONENT Development)

# Relative to the file itself where it can be, so that a moved prefix stays valid; absolute only
# where the installation was told so. Blanks are escaped as pkg-config escapes its own variables.
function(baseutilities_pkgconfig_folder result folder)
    if(NOT IS_ABSOLUTE "${folder}" AND NOT IS_ABSOLUTE "${pkgconfig_dir}")
        set(folder "\${prefix}/${folder}")
    elseif(NOT IS_ABSOLUTE "${folder}")
        set(folder "${CMAKE_INSTALL_PREFIX}/${folder}")
    endif()
    string(REPLACE " " "\\ " folder "${folder}")
    set(${result} "${folder}" PARENT_SCOPE)
endfunction()

set(pkgconfig_prefix "${CMAKE_INSTALL_PREFIX}")
if(NOT IS_ABSOLUTE "${pkgconfig_dir}")
    file(RELATIVE_PATH up "/${pkgconfig_dir}" "/")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(pkgconfig_prefix "\${pcfiledir}/${up}")
endif()
baseutilities_pkgconfig_folder(pkgconfig_includedir "${CMAKE_INSTALL_INCLUDEDIR}")
baseutilities_pkgconfig_folder(pkgconfig_libdir "${library_dir}")
configure_file(
    "${PROJECT_SOURCE_DIR}/cmake/BaseUtilities.pc.in"
    "${PROJECT_BINARY_DIR}/BaseUtilities.pc"
    @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/BaseUtilities.pc"
    DESTINATION "${pkgconfig_dir}"
    COMPONENT Development)

# GDB loads the file beside a library by itself where that folder is trusted, and from its own
# auto-load folder, which belongs to the system, always.
set(BASEUTILITIES_INSTALL_GDBDIR "" CACHE STRING
    "Where GDB's printers are installed, if not beside the library")
set(gdb_dir "${library_dir}")
if(BASEUTILITIES_INSTALL_GDBDIR)
    set(gdb_dir "${BASEUTILITIES_INSTALL_GDBDIR}")
endif()
install(FILES "${PROJECT_SOURCE_DIR}/share/gdb/libBaseUtilities.so-gdb.py"
    DESTINATION "${gdb_dir}"
    COMPONENT Development)

# Opt-in adapters to other libraries, each for those who have that library.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/BaseUtilities/adapters"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/BaseUtilities"
    COMPONENT Development)
