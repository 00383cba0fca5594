# Finds utf8proc, for the library itself and for callers of its static kind: the target
# utf8proc::utf8proc. Sets utf8proc_FOUND. By its CMake package, which not every version comes with, or
# by its header and library.
if(NOT TARGET utf8proc::utf8proc)
    find_package(utf8proc QUIET CONFIG)
endif()
if(NOT TARGET utf8proc::utf8proc)
    find_path(utf8proc_INCLUDE_DIR utf8proc.h)
    find_library(utf8proc_LIBRARY NAMES utf8proc utf8proc_static)
    mark_as_advanced(utf8proc_INCLUDE_DIR utf8proc_LIBRARY)
    if(utf8proc_INCLUDE_DIR AND utf8proc_LIBRARY)
        add_library(utf8proc::utf8proc UNKNOWN IMPORTED)
        set_target_properties(utf8proc::utf8proc PROPERTIES
            IMPORTED_LOCATION "${utf8proc_LIBRARY}"
            INTERFACE_INCLUDE_DIRECTORIES "${utf8proc_INCLUDE_DIR}")
        # Windows tells functions of a DLL from those of an archive in the header, too.
        if(WIN32 AND NOT utf8proc_LIBRARY MATCHES "\\.dll\\.a$")
            set_target_properties(utf8proc::utf8proc PROPERTIES
                INTERFACE_COMPILE_DEFINITIONS UTF8PROC_STATIC)
        endif()
    endif()
endif()

set(utf8proc_FOUND FALSE)
if(TARGET utf8proc::utf8proc)
    set(utf8proc_FOUND TRUE)
endif()
