# Warnings are errors with the compilers that the project knows; a newer one may have more of them, which
# should keep nobody from building.
set(PELISTRA_WERROR)
if((CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        OR (CMAKE_CXX_COMPILER_ID STREQUAL Clang AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 20))
    set(PELISTRA_WERROR -Werror)
endif()

# What every target of this project is compiled with.
function(pelistra_target_defaults target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wold-style-cast
        -Wnon-virtual-dtor -Woverloaded-virtual -Wextra-semi ${PELISTRA_WERROR})
    if(PELISTRA_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined
            -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
        target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    endif()
endfunction()

# For a target of many sources: what nearly all of them read, and the further headers given, compiled once.
function(pelistra_precompile_headers target)
    target_precompile_headers(${target} PRIVATE <algorithm> <array> <chrono> <functional> <map> <memory> <optional>
        <ranges> <string> <string_view> <utility> <variant> <vector> ${ARGN})
    # Without a time inside, so that a compiler cache knows it again.
    target_compile_options(${target} PRIVATE "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()
