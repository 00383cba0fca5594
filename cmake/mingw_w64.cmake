# For 64-bit Windows by MinGW-w64, with the threads of C++: a toolchain file for CMake. What the
# libraries and tests need is looked for in the compiler's folder and in those of CMAKE_PREFIX_PATH.
# Programs that a build starts run under Wine, where it is installed.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
find_program(CMAKE_C_COMPILER NAMES x86_64-w64-mingw32-gcc-posix x86_64-w64-mingw32-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-g++ REQUIRED)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind IN ITEMS LIBRARY INCLUDE PACKAGE)
    set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()

find_program(FOUNDATION_JSON_WINE NAMES wine wine64)
if(FOUNDATION_JSON_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${FOUNDATION_JSON_WINE})
endif()
