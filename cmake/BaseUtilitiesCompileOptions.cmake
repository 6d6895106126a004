# Private options of this project's own targets; nothing here reaches a consumer.

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
        target_compile_options(${target} PRIVATE --coverage -fprofile-abs-path)
        target_link_options(${target} PRIVATE --coverage)
    endif()
endfunction()

# Nothing pays twice for the boundary of a library: functions of ours call one another directly and
# may be inlined, and calls to other libraries go through one pointer instead of a stub. Data stays
# as it is, so exceptions and inline statics are still one for the whole process, and allocators can
# still be replaced.
function(baseutilities_binding_options target)
    target_compile_options(${target} PRIVATE -fno-semantic-interposition -fno-plt)
    target_link_options(${target} PRIVATE LINKER:-Bsymbolic-functions)
endfunction()
