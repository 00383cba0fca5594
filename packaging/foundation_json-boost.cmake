# Finds the headers of Boost, for the library itself and for its installed package: the target
# Boost::headers, Boost_VERSION, and Boost_INCLUDE_DIRS. Sets Boost_FOUND. Where Boost comes with a
# CMake package, by that; else by the headers alone, which is all that is needed.
#
# CMake's own module for Boost is not used: newer versions of CMake warn of it, or are without it.
set(Boost_MINIMUM 1.74)

# What BOOST_ROOT means is said below. For this file alone: include() keeps policies apart.
if(POLICY CMP0144)
    cmake_policy(SET CMP0144 NEW)
endif()

if(NOT TARGET Boost::headers)
    # Somebody who names a folder wants no other Boost.
    set(Boost_only)
    foreach(Boost_place IN ITEMS "${BOOST_ROOT}" "${Boost_ROOT}" "$ENV{BOOST_ROOT}" "$ENV{Boost_ROOT}")
        if(Boost_place AND NOT Boost_only)
            set(Boost_only PATHS "${Boost_place}" NO_DEFAULT_PATH)
        endif()
    endforeach()
    if(NOT Boost_INCLUDE_DIR)
        find_package(Boost ${Boost_MINIMUM} QUIET CONFIG ${Boost_only})
    endif()
    if(NOT TARGET Boost::headers)
        find_path(Boost_INCLUDE_DIR boost/version.hpp PATH_SUFFIXES include ${Boost_only})
        mark_as_advanced(Boost_INCLUDE_DIR)
        if(Boost_INCLUDE_DIR)
            add_library(Boost::headers INTERFACE IMPORTED)
            set_target_properties(Boost::headers PROPERTIES
                INTERFACE_INCLUDE_DIRECTORIES "${Boost_INCLUDE_DIR}")
        endif()
    endif()
endif()

# Whoever has found or made the target: the headers know their version.
set(Boost_FOUND FALSE)
set(Boost_VERSION)
set(Boost_INCLUDE_DIRS)
if(TARGET Boost::headers)
    get_target_property(Boost_INCLUDE_DIRS Boost::headers INTERFACE_INCLUDE_DIRECTORIES)
    foreach(Boost_place IN LISTS Boost_INCLUDE_DIRS)
        if(EXISTS "${Boost_place}/boost/version.hpp")
            file(STRINGS "${Boost_place}/boost/version.hpp" Boost_line
                REGEX "^#define BOOST_VERSION [0-9]+")
            string(REGEX MATCH "[0-9]+" Boost_number "${Boost_line}")
            math(EXPR Boost_VERSION_MAJOR "${Boost_number} / 100000")
            math(EXPR Boost_VERSION_MINOR "${Boost_number} / 100 % 1000")
            math(EXPR Boost_VERSION_PATCH "${Boost_number} % 100")
            set(Boost_VERSION ${Boost_VERSION_MAJOR}.${Boost_VERSION_MINOR}.${Boost_VERSION_PATCH})
            break()
        endif()
    endforeach()
    # A project that has Boost among its own sources may keep them in another way.
    if(NOT Boost_VERSION OR Boost_VERSION VERSION_GREATER_EQUAL Boost_MINIMUM)
        set(Boost_FOUND TRUE)
    endif()
endif()
