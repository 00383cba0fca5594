# Installs the headers, the libraries, their CMake package and their pkg-config files. All paths
# within them are relative to where they lie, so an installed tree may be moved.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/foundation_json)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(development COMPONENT foundation_json_Development)

install(DIRECTORY include/foundation
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${development}
    FILES_MATCHING PATTERN *.hpp)

# ---- Libraries -------------------------------------------------------------------------------

# pkg-config knows the folder of the file itself; the rest follows from that. Absolute folders
# cannot move with it and stay as they are.
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
    set(PKGCONFIG_PREFIX ${CMAKE_INSTALL_PREFIX})
else()
    file(RELATIVE_PATH up /${pkgconfig_dir} /)
    string(REGEX REPLACE "/$" "" up ${up})
    set(PKGCONFIG_PREFIX "\${pcfiledir}/${up}")
endif()
foreach(kind IN ITEMS LIBDIR INCLUDEDIR)
    if(IS_ABSOLUTE ${CMAKE_INSTALL_${kind}})
        set(PKGCONFIG_${kind} ${CMAKE_INSTALL_${kind}})
    else()
        set(PKGCONFIG_${kind} "\${prefix}/${CMAKE_INSTALL_${kind}}")
    endif()
endforeach()

# foundation_json_install(NAME
#     RUNTIME COMPONENT        of what programs need to run
#     DESCRIPTION TEXT         for pkg-config
#     REQUIRES MODULE...       pkg-config modules that callers need besides
#     STATIC_REQUIRES ...      and those that callers of a static library need
#     STATIC_LIBRARIES ...     the same as libraries)
function(foundation_json_install name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "RUNTIME;DESCRIPTION"
        "REQUIRES;STATIC_REQUIRES;STATIC_LIBRARIES")
    install(TARGETS ${name}
        EXPORT foundation_json-targets
        RUNTIME COMPONENT ${arg_RUNTIME}
        LIBRARY COMPONENT ${arg_RUNTIME} NAMELINK_COMPONENT foundation_json_Development
        ARCHIVE ${development}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
    if(TARGET ${name}_static)
        install(TARGETS ${name}_static
            EXPORT foundation_json-static-targets
            ARCHIVE ${development}
            INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
    endif()

    # The shared library has all linked in; whoever links the static one alone needs the rest too,
    # with or without the option --static. Where both are there, it takes that option, and no module
    # that would have to be there for callers of the shared library.
    set(PKGCONFIG_CFLAGS)
    set(PKGCONFIG_STATIC_LIBRARIES)
    if(NOT BUILD_SHARED_LIBS)
        list(APPEND arg_REQUIRES ${arg_STATIC_REQUIRES})
        set(PKGCONFIG_CFLAGS " -DFOUNDATION_JSON_STATIC")
    elseif(TARGET ${name}_static)
        list(JOIN arg_STATIC_LIBRARIES " " PKGCONFIG_STATIC_LIBRARIES)
    endif()
    list(JOIN arg_REQUIRES " " PKGCONFIG_REQUIRES)
    set(PKGCONFIG_NAME ${name})
    set(PKGCONFIG_DESCRIPTION ${arg_DESCRIPTION})
    configure_file(
        ${PROJECT_SOURCE_DIR}/packaging/library.pc.in
        ${PROJECT_BINARY_DIR}/packaging/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/packaging/${name}.pc
        DESTINATION ${pkgconfig_dir} ${development})
endfunction()

foundation_json_install(foundation_json
    RUNTIME foundation_json_Runtime
    DESCRIPTION ${PROJECT_DESCRIPTION}
    STATIC_REQUIRES libutf8proc
    STATIC_LIBRARIES -lutf8proc)
foundation_json_install(foundation_json_parser
    RUNTIME foundation_json_parser_Runtime
    DESCRIPTION "A reader of JSON text"
    REQUIRES "foundation_json = ${PROJECT_VERSION}"
    STATIC_REQUIRES libutf8proc
    STATIC_LIBRARIES -lutf8proc)

# ---- The CMake package -----------------------------------------------------------------------

install(EXPORT foundation_json-targets
    NAMESPACE foundation::
    DESTINATION ${package_dir} ${development})
if(TARGET foundation_json_static)
    install(EXPORT foundation_json-static-targets
        NAMESPACE foundation::
        DESTINATION ${package_dir} ${development})
endif()

configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/packaging/foundation_json-config.cmake.in
    ${PROJECT_BINARY_DIR}/packaging/foundation_json-config.cmake
    INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/packaging/foundation_json-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_SOURCE_DIR}/packaging/foundation_json-boost.cmake
    ${PROJECT_SOURCE_DIR}/packaging/foundation_json-utf8proc.cmake
    ${PROJECT_BINARY_DIR}/packaging/foundation_json-config.cmake
    ${PROJECT_BINARY_DIR}/packaging/foundation_json-config-version.cmake
    DESTINATION ${package_dir} ${development})

# ---- Debuggers -------------------------------------------------------------------------------

# What shows values in debuggers. For the shared library, gdb finds the script by itself: below its
# folder for that, under the full name of the library.
set(debugger_dir ${PROJECT_SOURCE_DIR}/debugger)
install(FILES
    ${debugger_dir}/foundation_json_gdb.py
    ${debugger_dir}/foundation_json_lldb.py
    ${debugger_dir}/foundation_json_values.py
    ${debugger_dir}/foundation_json.natvis
    DESTINATION ${CMAKE_INSTALL_DATADIR}/foundation_json
    COMPONENT foundation_json_Development)
if(BUILD_SHARED_LIBS AND NOT WIN32)
    # The prefix is that of the installation, which need not be that of the build.
    set(full_libdir ${CMAKE_INSTALL_LIBDIR})
    if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
        set(full_libdir "\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}")
    endif()
    install(FILES ${debugger_dir}/foundation_json_gdb.py
        DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load/${full_libdir}
        RENAME $<TARGET_FILE_NAME:foundation_json>-gdb.py
        COMPONENT foundation_json_Development)
endif()
