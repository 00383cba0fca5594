// What comes before a source to compile it as MSVC would: all headers that are not this project's,
// and then no macro of clang's, but _MSC_VER. MSVC's own headers are not free to take, so those of
// libc++ and MinGW-w64 stand for them, which take the compiler for one that knows GNU extensions.

#include <locale.h>
#include <stdlib.h>

extern "C" {
float _strtof_l(const char* text, char** end, _locale_t locale);
long double _strtold_l(const char* text, char** end, _locale_t locale);
}

#include "../headers/standard_library.hpp"

// Boost would call members that std::type_info has in MSVC's headers alone.
#pragma push_macro("_MSC_VER")
#undef _MSC_VER
#include <boost/numeric/conversion/cast.hpp>
#include <boost/variant.hpp>
#pragma pop_macro("_MSC_VER")

#include <fast_float/fast_float.h>
#include <utf8proc.h>

#include <emmintrin.h>
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <share.h>
#include <sys/stat.h>
#include <sys/types.h>

#undef __BYTE_ORDER__
#undef __GNUC__
#undef __GNUC_MINOR__
#undef __GNUC_PATCHLEVEL__
#undef __MINGW32__
#undef __ORDER_BIG_ENDIAN__
#undef __ORDER_LITTLE_ENDIAN__
#undef __SIZEOF_INT128__
#undef __SSE2__
#undef __clang__
#undef __has_attribute
#undef __has_builtin
#undef __x86_64__

#if !defined(_MSC_VER) || !defined(_M_X64) || !defined(_WIN32)
#error "this is not a compiler for MSVC's target"
#endif
