# How a library of this project is built.
#
# foundation_json_add_library(NAME
#     EXPORT_NAME NAME       what callers link with, as foundation::NAME
#     EXPORTS FILE           a version script of what the shared library exports
#     SOURCES FILE...
#     PUBLIC TARGET...       what callers need besides
#     PRIVATE TARGET...      what the sources need besides
#     LINKED TARGET...       those of the latter that are linked, rather than headers alone)
#
# makes the target NAME, its alias, and NAME_objects, the compiled sources, which the tests of
# internals use. With FOUNDATION_JSON_STATIC_TOO it also makes NAME_static, an archive beside the
# shared library.
option(FOUNDATION_JSON_STATIC_TOO "Build static libraries beside the shared ones" OFF)

# Calls between the sources need not go by way of the symbol table: nobody replaces single functions.
function(foundation_json_compile target)
    if(MINGW)
        # Callers need the inline functions that are exported with their classes.
        target_compile_options(${target} PRIVATE -fkeep-inline-dllexport)
    elseif(NOT MSVC)
        target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    endif()
    target_compile_definitions(${target}
        PRIVATE $<$<BOOL:${FOUNDATION_JSON_HARDENED}>:FOUNDATION_JSON_HARDENED>
        # The tests of internals look at what is left.
        PUBLIC $<BUILD_INTERFACE:$<$<BOOL:${FOUNDATION_JSON_PORTABLE}>:FOUNDATION_JSON_PORTABLE>>)
    set_target_properties(${target} PROPERTIES
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_include_directories(${target}
        PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
endfunction()

function(foundation_json_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_NAME;EXPORTS" "SOURCES;PUBLIC;PRIVATE;LINKED")

    # The sources are compiled once, for the library and for the tests of its internals.
    add_library(${name}_objects OBJECT ${arg_SOURCES})
    foundation_json_compile(${name}_objects)
    target_include_directories(${name}_objects PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name}_objects
        PUBLIC ${arg_PUBLIC} ${arg_PRIVATE}
        PRIVATE foundation_json_warnings)

    add_library(${name} $<TARGET_OBJECTS:${name}_objects>)
    add_library(foundation::${arg_EXPORT_NAME} ALIAS ${name})
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        EXPORT_NAME ${arg_EXPORT_NAME})
    target_compile_features(${name} PUBLIC cxx_std_17)
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
    target_link_libraries(${name} PUBLIC ${arg_PUBLIC})
    if(BUILD_SHARED_LIBS)
        target_link_libraries(${name} PRIVATE ${arg_LINKED})
    else()
        # Callers have to link these too, and not only those who build with CMake understand so.
        target_link_libraries(${name} PUBLIC ${arg_LINKED})
        target_compile_definitions(${name}_objects PUBLIC FOUNDATION_JSON_STATIC)
        target_compile_definitions(${name} PUBLIC FOUNDATION_JSON_STATIC)
        return()
    endif()
    if(WIN32)
        # What the headers mark is exported: by these objects, also where tests link them.
        target_compile_definitions(${name}_objects PUBLIC ${name}_EXPORTS)
    else()
        target_link_options(${name} PRIVATE LINKER:--version-script=${arg_EXPORTS})
        set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${arg_EXPORTS})
    endif()

    # Compiled by itself: what is linked into a caller is not exported from there.
    if(FOUNDATION_JSON_STATIC_TOO)
        add_library(${name}_static STATIC ${arg_SOURCES})
        add_library(foundation::${arg_EXPORT_NAME}_static ALIAS ${name}_static)
        foundation_json_compile(${name}_static)
        target_include_directories(${name}_static PRIVATE ${PROJECT_SOURCE_DIR}/src)
        target_compile_definitions(${name}_static PUBLIC FOUNDATION_JSON_STATIC)
        set_target_properties(${name}_static PROPERTIES
            OUTPUT_NAME ${name}
            EXPORT_NAME ${arg_EXPORT_NAME}_static)
        list(TRANSFORM arg_PUBLIC REPLACE "^(foundation_json.*)$" "\\1_static")
        list(REMOVE_ITEM arg_PRIVATE ${arg_LINKED})
        # What is only headers is no matter of callers.
        foreach(target IN LISTS arg_PRIVATE)
            target_include_directories(${name}_static SYSTEM
                PRIVATE $<TARGET_PROPERTY:${target},INTERFACE_INCLUDE_DIRECTORIES>)
        endforeach()
        target_link_libraries(${name}_static PUBLIC ${arg_PUBLIC} ${arg_LINKED})
        target_compile_options(${name}_static
            PRIVATE $<TARGET_PROPERTY:foundation_json_warnings,INTERFACE_COMPILE_OPTIONS>)
    endif()
endfunction()
