/// @file
/// Products of 128 bits, which standard C++17 lacks.
#ifndef FOUNDATION_JSON_SRC_NUMBER_WIDE_HPP
#define FOUNDATION_JSON_SRC_NUMBER_WIDE_HPP

#include "system/compiler.hpp"

#include <cstdint>

namespace foundation::json::detail {

/// A number of 128 bits in two words.
struct WordPair {
    std::uint64_t high;
    std::uint64_t low;
};

constexpr bool operator==(const WordPair& left, const WordPair& right) noexcept {
    return left.high == right.high && left.low == right.low;
}

/// The product of two words, on any machine.
constexpr WordPair portable_product(std::uint64_t left, std::uint64_t right) noexcept {
    constexpr std::uint64_t half = 0xFFFFFFFF;
    const std::uint64_t low = (left & half) * (right & half);
    const std::uint64_t middle = (left >> 32) * (right & half) + (low >> 32);
    const std::uint64_t other = (left & half) * (right >> 32) + (middle & half);
    return {(left >> 32) * (right >> 32) + (middle >> 32) + (other >> 32),
            other << 32 | (low & half)};
}

/// The product of a word and 128 bits without its last 64 bits. It must not exceed 128 bits.
constexpr WordPair portable_scaled(std::uint64_t factor, WordPair bits) noexcept {
    const WordPair high = portable_product(factor, bits.high);
    const std::uint64_t low = high.low + portable_product(factor, bits.low).high;
    return {high.high + (low < high.low ? 1 : 0), low};
}

/// The same, in the quickest way of the machine.
inline WordPair scaled(std::uint64_t factor, WordPair bits) noexcept {
#if defined(FOUNDATION_JSON_WIDE)
    const Wide low = static_cast<Wide>(factor) * bits.low;
    const Wide product = static_cast<Wide>(factor) * bits.high + (low >> 64);
    return {static_cast<std::uint64_t>(product >> 64), static_cast<std::uint64_t>(product)};
#else
    return portable_scaled(factor, bits);
#endif
}

} // namespace foundation::json::detail

#endif
