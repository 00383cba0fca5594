# Finds fast_float, by its CMake package or by its header alone.
# Provides the target FastFloat::fast_float.
find_path(FastFloat_INCLUDE_DIR fast_float/fast_float.h)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(FastFloat REQUIRED_VARS FastFloat_INCLUDE_DIR)
if(FastFloat_FOUND AND NOT TARGET FastFloat::fast_float)
    add_library(FastFloat::fast_float INTERFACE IMPORTED)
    target_include_directories(FastFloat::fast_float SYSTEM INTERFACE ${FastFloat_INCLUDE_DIR})
endif()
mark_as_advanced(FastFloat_INCLUDE_DIR)
