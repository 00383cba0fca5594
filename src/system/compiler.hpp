/// @file
/// What compilers and processors offer beyond C++17, each with what stands for it elsewhere. Counts
/// of bits are in the public headers, which need them too; vectors in text/byte_vector.hpp.
#ifndef FOUNDATION_JSON_SRC_SYSTEM_COMPILER_HPP
#define FOUNDATION_JSON_SRC_SYSTEM_COMPILER_HPP

#include <cstdint>

// Big-endian is what says so: a compiler that has no such macro is one for Windows.
#if defined(__BYTE_ORDER__)
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#define FOUNDATION_JSON_LITTLE_ENDIAN
#endif
#elif defined(_WIN32)
#define FOUNDATION_JSON_LITTLE_ENDIAN
#else
#error "the byte order of this machine is not known"
#endif

// The x87 unit does the arithmetic, rather than SSE2.
#if defined(__i386__) && !defined(__SSE2_MATH__)
#define FOUNDATION_JSON_X87
#endif

// On Windows, std::fesetenv() does not set the register of SSE2 to what programs start with.
#if defined(_WIN32) && (defined(__SSE2__) || defined(_M_X64))
#define FOUNDATION_JSON_MXCSR_APART
#include <emmintrin.h>
#endif

// Has the compiler confirm that a constant takes no code at run time, if it can check it.
#if defined(__clang__)
#define FOUNDATION_JSON_CONSTINIT [[clang::require_constant_initialization]]
#elif defined(__GNUC__) && __GNUC__ >= 10
#define FOUNDATION_JSON_CONSTINIT __constinit
#else
#define FOUNDATION_JSON_CONSTINIT
#endif

// Says that a variable is of this library alone, which makes it quicker to reach. Windows exports
// what is marked for it, and nothing else.
#if defined(__GNUC__) && !defined(_WIN32)
#define FOUNDATION_JSON_HIDDEN [[gnu::visibility("hidden")]]
#else
#define FOUNDATION_JSON_HIDDEN
#endif

namespace foundation::json::detail {

#if defined(__SIZEOF_INT128__)
#define FOUNDATION_JSON_WIDE
/// 128 bits, where the compiler has them.
__extension__ using Wide = unsigned __int128;
#endif

#ifdef FOUNDATION_JSON_LITTLE_ENDIAN
constexpr bool little_endian = true;
#else
constexpr bool little_endian = false;
#endif

/// Any compiler knows what instruction this is.
constexpr std::uint64_t bytes_reversed(std::uint64_t word) noexcept {
    word = (word & 0x00FF00FF00FF00FF) << 8 | (word >> 8 & 0x00FF00FF00FF00FF);
    word = (word & 0x0000FFFF0000FFFF) << 16 | (word >> 16 & 0x0000FFFF0000FFFF);
    return word << 32 | word >> 32;
}

/// The condition, of which the compiler learns that it nearly always holds.
constexpr bool likely(bool condition) noexcept {
#ifdef __GNUC__
    return __builtin_expect(static_cast<long>(condition), 1) != 0;
#else
    return condition;
#endif
}

/// Has the processor begin to load what is soon to be read.
inline void prefetch([[maybe_unused]] const void* address) noexcept {
#ifdef __GNUC__
    __builtin_prefetch(address);
#endif
}

} // namespace foundation::json::detail

#endif
