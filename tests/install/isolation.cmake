# For projects that contain the library's source folder: checks that it does not change the project.

# list_settings(RESULT) gives all that the library could change for the project, as NAME=VALUE, but
# for what bears its name and what CMake keeps of the packages that the library looks for.
function(list_settings result)
    set(settings)
    get_cmake_property(names VARIABLES)
    list(FILTER names EXCLUDE REGEX "^(foundation_json|FOUNDATION_JSON)_")
    list(FILTER names EXCLUDE REGEX "^(Boost|boost_headers|utf8proc|FastFloat)_")
    # What CMake's own modules and the functions of this file work with.
    list(FILTER names EXCLUDE REGEX "^(__cmake|FETCHCONTENT|FIND_PACKAGE_MESSAGE)_")
    list(FILTER names EXCLUDE REGEX "^(ARG.*|result|before|folder)$")
    foreach(name IN LISTS names)
        list(APPEND settings "${name}=${${name}}")
    endforeach()
    foreach(name IN ITEMS COMPILE_DEFINITIONS COMPILE_OPTIONS INCLUDE_DIRECTORIES LINK_DIRECTORIES
                          LINK_LIBRARIES LINK_OPTIONS TESTS)
        get_directory_property(value ${name})
        list(APPEND settings "${name}=${value}")
    endforeach()
    set(${result} "${settings}" PARENT_SCOPE)
endfunction()

# check_isolation(BEFORE FOLDER) compares with the settings from before the library was added in the
# build folder's FOLDER, and looks at what it brings along.
function(check_isolation before folder)
    list_settings(after)
    if(NOT before STREQUAL after)
        list(REMOVE_ITEM after ${before})
        message(FATAL_ERROR "foundation_json changes settings outside its folder: ${after}")
    endif()
    foreach(option IN ITEMS INSTALL WERROR
                            BUILD_TESTS BUILD_EXAMPLES BUILD_BENCHMARKS BUILD_FUZZERS)
        if(FOUNDATION_JSON_${option})
            message(FATAL_ERROR "FOUNDATION_JSON_${option} is on inside another project")
        endif()
    endforeach()
    get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
    get_property(tests DIRECTORY ${folder} PROPERTY TESTS)
    get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
    list(FILTER targets EXCLUDE REGEX "^foundation_json")
    if(folders OR tests OR targets)
        message(FATAL_ERROR "foundation_json brings more than the library: "
                            "${folders} ${tests} ${targets}")
    endif()
endfunction()

# check_kind(TYPE) fails unless the library is of that type.
function(check_kind expected)
    get_target_property(type foundation_json TYPE)
    if(NOT type STREQUAL expected)
        message(FATAL_ERROR "foundation_json is a ${type}, expected: ${expected}")
    endif()
endfunction()
