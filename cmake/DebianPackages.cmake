# Has CPack make Debian packages of what is installed: one for each shared library, which programs
# need to run, and one for all the rest, which it takes to build them. scripts/package builds for it
# and starts it.
set(debian ${PROJECT_SOURCE_DIR}/packaging/debian)
set(development CPACK_DEBIAN_FOUNDATION_JSON_DEVELOPMENT)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "foundation-json developers <noreply@foundation-json.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # that of each package is the first line below
set(CPACK_COMPONENTS_ALL foundation_json_Development)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_FOUNDATION_JSON_CONTROL ${PROJECT_BINARY_DIR}/packaging)
set(CPACK_PRE_BUILD_SCRIPTS ${debian}/finish_files.cmake)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE foundation-json)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(description "foundation::json holds JSON data in memory, builds and compares it,
and writes it as compact or indented JSON text.
.")

# runtime_package(COMPONENT PACKAGE LIBRARY SUMMARY) describes the package of a shared library.
set(runtime_packages)
macro(runtime_package component package library summary)
    string(TOUPPER ${component} runtime)
    set(runtime CPACK_DEBIAN_${runtime})
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    list(APPEND runtime_packages "${package} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
    # What programs that are linked with it depend on. CPack would write this file too, and with it
    # scripts that do what the trigger does.
    file(WRITE ${CPACK_FOUNDATION_JSON_CONTROL}/${package}/shlibs
        "${library} ${PROJECT_VERSION_MAJOR} ${package} (>= ${PROJECT_VERSION})\n")
    set(${runtime}_PACKAGE_NAME ${package})
    set(${runtime}_PACKAGE_SECTION libs)
    set(${runtime}_PACKAGE_SHLIBDEPS ON)
    set(${runtime}_PACKAGE_CONTROL_EXTRA ${debian}/triggers
        ${CPACK_FOUNDATION_JSON_CONTROL}/${package}/shlibs
        ${CPACK_FOUNDATION_JSON_CONTROL}/${package}/symbols)
    set(${runtime}_DESCRIPTION "${summary}
${description}
This package contains the shared library.")
endmacro()

runtime_package(foundation_json_Runtime libfoundation-json${PROJECT_VERSION_MAJOR} libfoundation_json
    "model of JSON data and writer of JSON text")
runtime_package(foundation_json_parser_Runtime libfoundation-json-parser${PROJECT_VERSION_MAJOR}
    libfoundation_json_parser "reader of JSON text")
# The other library is not yet a package when dpkg-shlibdeps looks for it.
list(GET runtime_packages 0 ${runtime}_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})

# The headers include those of Boost. A value holds a Boost type, so the version must be the one
# that the library was built with, from the package that is named by it: a release of Debian may have
# several. utf8proc and fast_float are the library's own matter.
set(${development}_PACKAGE_NAME libfoundation-json-dev)
set(${development}_PACKAGE_SECTION libdevel)
string(JOIN ", " ${development}_PACKAGE_DEPENDS
    ${runtime_packages}
    "libboost${Boost_VERSION_MAJOR}.${Boost_VERSION_MINOR}-dev")
set(${development}_DESCRIPTION "model of JSON data and writer of JSON text (development files)
${description}
This package contains the headers, the static libraries, what CMake and
pkg-config need to find the libraries, and examples.")

include(CPack)
