# How the shipped file is compiled: hardened as the OpenSSF compiler guide says, the same bytes from
# whatever folder it is built in, and as fast with debug information as without. Private to this
# project's own targets, for the optimised configurations; a sanitizer or a debugger would be
# hindered.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

option(BASEUTILITIES_HARDENED "Harden optimised builds; off only to measure what it costs" ON)
set(BASEUTILITIES_RELEASE_COMPILE_OPTIONS "")
set(BASEUTILITIES_RELEASE_LINK_OPTIONS "")

# Debian's clang++ lacks some of what its g++ offers, and other processors lack control-flow
# protection: what the compiler refuses is left out here and missed by the test of the file.
foreach(flag IN ITEMS
        -fstack-protector-strong
        -fstack-clash-protection
        -fcf-protection=full
        -ftrivial-auto-var-init=zero
        -fno-delete-null-pointer-checks
        -fno-strict-overflow)
    string(MAKE_C_IDENTIFIER "BASEUTILITIES_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known} AND BASEUTILITIES_HARDENED)
        list(APPEND BASEUTILITIES_RELEASE_COMPILE_OPTIONS ${flag})
    endif()
endforeach()
foreach(flag IN ITEMS -z,relro -z,now -z,noexecstack -z,separate-code --build-id=sha1)
    string(MAKE_C_IDENTIFIER "BASEUTILITIES_LINKS${flag}" known)
    check_linker_flag(CXX "LINKER:${flag}" ${known})
    if(${known} AND (BASEUTILITIES_HARDENED OR flag STREQUAL "--build-id=sha1"))
        list(APPEND BASEUTILITIES_RELEASE_LINK_OPTIONS "LINKER:${flag}")
    endif()
endforeach()

# _GLIBCXX_ASSERTIONS of the guide is left out: the interface promises that no access checks a
# position, and consumers may set it for themselves.
if(BASEUTILITIES_HARDENED)
    list(APPEND BASEUTILITIES_RELEASE_COMPILE_OPTIONS -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
endif()
list(APPEND BASEUTILITIES_RELEASE_COMPILE_OPTIONS
    # The last match wins, and the build folder may lie within the sources.
    "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=."
    "-ffile-prefix-map=${PROJECT_BINARY_DIR}=build")

function(baseutilities_release_options target)
    if(BASEUTILITIES_SANITIZE OR BASEUTILITIES_COVERAGE)
        return()
    endif()
    set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
    target_compile_options(${target} PRIVATE
        "$<${optimised}:${BASEUTILITIES_RELEASE_COMPILE_OPTIONS}>"
        "$<$<CONFIG:RelWithDebInfo>:-O3>") # CMake's -O2 makes no vectors of letter case
    target_link_options(${target} PRIVATE
        "$<${optimised}:${BASEUTILITIES_RELEASE_LINK_OPTIONS}>")
endfunction()
