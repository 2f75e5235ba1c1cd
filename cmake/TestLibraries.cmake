# GoogleTest and Google Benchmark of the system; else those of the address below, fetched into the build folder. The
# archives are the ones that Debian 12 has as its source packages.
include(FetchContent)

macro(pelistra_find_googletest)
    find_package(GTest QUIET)
    if(NOT GTest_FOUND)
        # A system may have the sources alone.
        if(EXISTS /usr/src/googletest/CMakeLists.txt)
            set(FETCHCONTENT_SOURCE_DIR_GOOGLETEST /usr/src/googletest)
        endif()
        set(INSTALL_GTEST OFF)
        FetchContent_Declare(googletest DOWNLOAD_EXTRACT_TIMESTAMP ON
            URL https://github.com/google/googletest/archive/refs/tags/release-1.12.1.tar.gz
            URL_HASH SHA256=81964fe578e9bd7c94dfdb09c8e4d6e6759e19967e397dbea48d1c10e45d0df2)
        FetchContent_MakeAvailable(googletest)
        # A toolchain that lets the linker leave names open has no stub of the C library.
        if(CMAKE_EXE_LINKER_FLAGS MATCHES "dynamic_lookup")
            separate_arguments(flags NATIVE_COMMAND "${CMAKE_CXX_FLAGS}")
            execute_process(COMMAND ${PROJECT_SOURCE_DIR}/cmake/c-library-stub ${CMAKE_BINARY_DIR}/c-library.tbd
                ${CMAKE_CXX_COMPILER} ${flags} COMMAND_ERROR_IS_FATAL ANY)
            target_link_libraries(gtest INTERFACE ${CMAKE_BINARY_DIR}/c-library.tbd)
        endif()
    endif()
endmacro()

macro(pelistra_find_google_benchmark)
    find_package(benchmark QUIET)
    if(NOT benchmark_FOUND)
        set(BENCHMARK_ENABLE_TESTING OFF)
        set(BENCHMARK_ENABLE_INSTALL OFF)
        set(BENCHMARK_ENABLE_WERROR OFF)
        FetchContent_Declare(benchmark DOWNLOAD_EXTRACT_TIMESTAMP ON
            URL https://github.com/google/benchmark/archive/refs/tags/v1.7.1.tar.gz
            URL_HASH SHA256=6430e4092653380d9dc4ccb45a1e2dc9259d581f4866dc0759713126056bc1d7)
        FetchContent_MakeAvailable(benchmark)
    endif()
endmacro()
