# How this project builds its own targets: an optimized build unless told otherwise, warnings, and
# sanitizers when asked for. None of it reaches the users of the library.
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "The kind of build" FORCE)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)

# Windows looks for DLLs in the folder of the program.
if(WIN32 AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_RUNTIME_OUTPUT_DIRECTORY)
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
endif()

add_library(foundation_json_warnings INTERFACE)
if(MSVC)
    # But for attributes and pragmas of other compilers, and classes of the standard library in
    # exported ones.
    target_compile_options(foundation_json_warnings INTERFACE
        /W3 /wd4068 /wd4251 /wd4275 /wd5030 /permissive- /utf-8 /Zc:__cplusplus
        $<$<BOOL:${FOUNDATION_JSON_WERROR}>:/WX>)
else()
    target_compile_options(foundation_json_warnings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow
        $<$<BOOL:${FOUNDATION_JSON_WERROR}>:-Werror>)
endif()

# The fuzz targets take all code to report which of it they reach, and sanitizers to notice what
# goes wrong there.
if(FOUNDATION_JSON_BUILD_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "The fuzz targets need clang++, which libFuzzer comes with")
    endif()
    if(NOT FOUNDATION_JSON_BUILD_EXAMPLES)
        message(FATAL_ERROR "One of the fuzz targets is of an example: build the examples too")
    endif()
    if(NOT FOUNDATION_JSON_SANITIZE)
        set(FOUNDATION_JSON_SANITIZE address,undefined,float-cast-overflow)
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(FOUNDATION_JSON_SANITIZE)
    add_compile_options(-fsanitize=${FOUNDATION_JSON_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${FOUNDATION_JSON_SANITIZE})
endif()
