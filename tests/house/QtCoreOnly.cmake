# Stands before every search for a package: stops where a project asks for anything but Qt 6 Core,
# whether it is installed or not. What Qt's own package files look for passes.
macro(baseutilities_qt_core_only method package)
    if(NOT CMAKE_CURRENT_LIST_DIR MATCHES "/cmake/Qt6")
        if(NOT "${package}" STREQUAL "Qt6" OR NOT "${ARGN}" MATCHES "^([^;]*;)*COMPONENTS;Core$")
            message(FATAL_ERROR "find_package(${package} ${ARGN}) asks for more than Qt 6 Core")
        endif()
    endif()
endmacro()
cmake_language(SET_DEPENDENCY_PROVIDER baseutilities_qt_core_only SUPPORTED_METHODS FIND_PACKAGE)
