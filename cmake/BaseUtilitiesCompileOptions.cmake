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
