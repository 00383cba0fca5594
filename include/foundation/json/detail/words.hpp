/// @file
/// Counts of bits, which C++17 lacks, for the library's other headers. Not for programs: what is
/// here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_WORDS_HPP
#define FOUNDATION_JSON_DETAIL_WORDS_HPP

#include <cstdint>

namespace foundation::json::detail {

/// With any compiler.
/// @param word  not 0
constexpr int portable_leading_zeros(std::uint64_t word) noexcept {
    int zeros = 0;
    for (int half = 32; half != 0; half /= 2) {
        if (word >> (64 - half) == 0) {
            word <<= half;
            zeros += half;
        }
    }
    return zeros;
}

/// @param word  not 0
constexpr int portable_trailing_zeros(std::uint64_t word) noexcept {
    return 63 - detail::portable_leading_zeros(word & (0 - word));
}

/// In the quickest way of this one.
/// @param word  not 0
constexpr int leading_zeros(std::uint64_t word) noexcept {
#ifdef __GNUC__
    return __builtin_clzll(word);
#else
    return detail::portable_leading_zeros(word);
#endif
}

/// @param word  not 0
constexpr int trailing_zeros(std::uint64_t word) noexcept {
#ifdef __GNUC__
    return __builtin_ctzll(word);
#else
    return detail::portable_trailing_zeros(word);
#endif
}

} // namespace foundation::json::detail

/// @endcond
#endif
