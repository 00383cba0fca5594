/// @file
/// What the C libraries of systems do differently with locales and numbers.
#ifndef FOUNDATION_JSON_SRC_SYSTEM_LOCALE_HPP
#define FOUNDATION_JSON_SRC_SYSTEM_LOCALE_HPP

#ifdef _WIN32
#include <clocale>
#else
#include <langinfo.h>
#endif

namespace foundation::json::detail::system {

#ifdef _WIN32

/// The radix character of the C locale.
inline const char* radix_character() noexcept {
    return std::localeconv()->decimal_point;
}

/// Whether std::strtod() finds the nearest double for every text.
constexpr bool strtod_is_exact = false;

#else

inline const char* radix_character() noexcept {
    // Unlike localeconv(), it may be called by several threads at once.
    return nl_langinfo(RADIXCHAR);
}

constexpr bool strtod_is_exact = true;

#endif

} // namespace foundation::json::detail::system

#endif
