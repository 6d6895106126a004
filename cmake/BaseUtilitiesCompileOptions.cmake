# Private options of this project's own targets; nothing here reaches a consumer.

# Every process adds its counts to one file for each program and module, wherever it runs and
# whatever its environment; the counts of threads are exact.
if(BASEUTILITIES_COVERAGE)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang" OR CMAKE_CXX_COMPILER_VERSION VERSION_LESS 19)
        message(FATAL_ERROR "Coverage is measured with clang 19 or later (script/coverage).")
    endif()
    set(BASEUTILITIES_COVERAGE_OPTIONS
        "-fprofile-instr-generate=${PROJECT_BINARY_DIR}/profiles/%m.profraw"
        -fprofile-update=atomic)
endif()

function(baseutilities_compile_options target)
    target_compile_features(${target} PRIVATE cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
        -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wnull-dereference
        $<$<BOOL:${BASEUTILITIES_WERROR}>:-Werror>)
    if(BASEUTILITIES_SANITIZE)
        set(flags -fsanitize=${BASEUTILITIES_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_compile_options(${target} PRIVATE ${flags})
        target_link_options(${target} PRIVATE ${flags})
    endif()
    if(BASEUTILITIES_COVERAGE)
        target_compile_options(${target} PRIVATE
            ${BASEUTILITIES_COVERAGE_OPTIONS} -fcoverage-mapping -fcoverage-mcdc)
        target_link_options(${target} PRIVATE ${BASEUTILITIES_COVERAGE_OPTIONS})
    endif()
endfunction()

# Nothing pays twice for the boundary of a library: functions of ours call one another directly and
# may be inlined, and calls to other libraries go through one pointer instead of a stub. Data stays
# as it is, so exceptions and inline statics are still one for the whole process, and allocators can
# still be replaced. Optimised, functions begin on cache lines: where a change elsewhere moves them
# to decides nothing then.
function(baseutilities_binding_options target)
    target_compile_options(${target} PRIVATE -fno-semantic-interposition -fno-plt
        "$<$<CONFIG:Release,RelWithDebInfo>:-falign-functions=64>")
    target_link_options(${target} PRIVATE LINKER:-Bsymbolic-functions)
endfunction()
