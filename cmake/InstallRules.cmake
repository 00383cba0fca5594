# Installs the headers, the library, its CMake package and its pkg-config file. All paths within
# them are relative to where they lie, so an installed tree may be moved.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/foundation_json)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY include/foundation
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT foundation_json_Development
    FILES_MATCHING PATTERN *.hpp)

install(TARGETS foundation_json foundation_json_parser
    EXPORT foundation_json-targets
    RUNTIME COMPONENT foundation_json_Runtime
    LIBRARY COMPONENT foundation_json_Runtime NAMELINK_COMPONENT foundation_json_Development
    ARCHIVE COMPONENT foundation_json_Development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(EXPORT foundation_json-targets
    NAMESPACE foundation::
    DESTINATION ${package_dir}
    COMPONENT foundation_json_Development)

configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/packaging/foundation_json-config.cmake.in
    ${PROJECT_BINARY_DIR}/packaging/foundation_json-config.cmake
    INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/packaging/foundation_json-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/packaging/foundation_json-config.cmake
    ${PROJECT_BINARY_DIR}/packaging/foundation_json-config-version.cmake
    DESTINATION ${package_dir}
    COMPONENT foundation_json_Development)

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
# The shared library has ICU linked in; whoever links the static one needs it too, with or without
# the option --static, since there is no other library beside it.
set(PKGCONFIG_REQUIRES)
set(PKGCONFIG_CFLAGS)
if(NOT BUILD_SHARED_LIBS)
    set(PKGCONFIG_REQUIRES icu-uc)
    set(PKGCONFIG_CFLAGS " -DFOUNDATION_JSON_STATIC")
endif()
configure_file(
    ${PROJECT_SOURCE_DIR}/packaging/foundation_json.pc.in
    ${PROJECT_BINARY_DIR}/packaging/foundation_json.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/packaging/foundation_json.pc
    DESTINATION ${pkgconfig_dir}
    COMPONENT foundation_json_Development)

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
if(BUILD_SHARED_LIBS)
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
