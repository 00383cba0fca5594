/// @file
/// The powers of ten in 128 bits, for numbers from text and to text.
#ifndef FOUNDATION_JSON_SRC_NUMBER_POWERS_OF_10_HPP
#define FOUNDATION_JSON_SRC_NUMBER_POWERS_OF_10_HPP

#include "number/wide.hpp"
#include "system/compiler.hpp"

#include <cstdint>

namespace foundation::json::detail {

/// The leading 128 bits of each power of ten; lower bits are cut off. Powers of five have the same.
///
/// Each library has a copy, since none exports it.
class PowersOf10 {
public:
    static constexpr int least = -342;
    static constexpr int largest = 324;

    constexpr PowersOf10() noexcept;

    /// The highest bit is set.
    WordPair leading_bits(int exponent) const noexcept { return bits_[exponent - least]; }

    /// 10^exponent equals its leading bits times 2 to this power, but for the bits cut off.
    static constexpr int binary_exponent(int exponent) noexcept {
        return (exponent * 1741647 >> 19) - 127;
    }

    /// Whether no bits are cut off.
    static constexpr bool is_exact(int exponent) noexcept {
        return static_cast<unsigned>(exponent) <= 55;
    }

private:
    WordPair bits_[largest - least + 1];
};

FOUNDATION_JSON_HIDDEN extern const PowersOf10 powers_of_10;

/// The powers of ten that fit into a word.
struct SmallPowersOf10 {
    std::uint64_t power[20];

    constexpr SmallPowersOf10() noexcept : power{1} {
        for (int i = 1; i < 20; ++i) {
            power[i] = power[i - 1] * 10;
        }
    }

    constexpr std::uint64_t operator[](int exponent) const noexcept { return power[exponent]; }
};

inline constexpr SmallPowersOf10 small_powers_of_10;

} // namespace foundation::json::detail

#endif
