/// @file
/// From decimal digits to the nearest double, in integer arithmetic.
#ifndef FOUNDATION_JSON_SRC_NUMBER_DECIMAL_HPP
#define FOUNDATION_JSON_SRC_NUMBER_DECIMAL_HPP

#include "number/powers_of_10.hpp"
#include "number/wide.hpp"
#include "system/compiler.hpp"

#include <foundation/json/detail/floating_bits.hpp>
#include <foundation/json/detail/words.hpp>

#include <cstdint>

namespace foundation::json::detail {

/// A positive number, or zero: digits times 10^exponent.
struct Decimal {
    /// The largest number of digits that always fits into 64 bits.
    static constexpr int most_digits = 19;

    std::uint64_t digits;
    std::int64_t exponent;
    /// Whether further digits are cut off: the number then lies between digits and digits + 1.
    bool cut_off;
};

enum class Rounding {
    decided,
    too_large, ///< for a double
    undecided, ///< needs more digits or bits to find the nearest double, or it is subnormal
};

// Numbers of up to 19 digits round to zero if their exponent is less than the first, and are too
// large for a double if it is greater than the second.
constexpr int least_decimal_exponent = -342;
constexpr int largest_decimal_exponent = 308;

#if defined(FOUNDATION_JSON_WIDE)

/// Makes a double of a number in binary, unless it is subnormal or too large.
/// @param bits      its leading bits, rounded to those that a double has; perhaps one more
/// @param exponent  of the last of them
inline Rounding encode_normal(std::uint64_t bits, int exponent, double& number) noexcept {
    using Bits = FloatingBits<double>;
    constexpr int least_biased = 1;
    constexpr int largest_biased = Bits::largest >> Bits::mantissa_bits;
    int biased = exponent + Bits::bias;
    if (bits >> (Bits::mantissa_bits + 1) != 0) {
        bits >>= 1;
        ++biased;
    }
    if (biased < least_biased) {
        return Rounding::undecided;
    }
    if (biased > largest_biased) {
        return Rounding::too_large;
    }
    // The first of the 53 bits adds one to the exponent field.
    number = Bits::number_of(
        false, (static_cast<std::uint64_t>(biased - 1) << Bits::mantissa_bits) + bits);
    return Rounding::decided;
}

/// How many bits of a product's high word are cut off to get those of a double.
constexpr int excess_bits(std::uint64_t high) noexcept {
    return 64 - (FloatingBits<double>::mantissa_bits + 1) - 1 + static_cast<int>(high >> 63);
}

/// The same as nearest_normal(), by all bits of the power.
[[gnu::noinline]] inline Rounding nearest_normal_by_all_bits(std::uint64_t digits, int q,
                                                             double& number) noexcept {
    const int normal_shift = leading_zeros(digits);
    const std::uint64_t factor = digits << normal_shift;
    const WordPair power = powers_of_10.leading_bits(q);
    const Wide low_product = Wide{factor} * power.low;
    const Wide product = Wide{factor} * power.high + (low_product >> 64);
    // The number is the product and an error of less than 2 units, times a power of 2. One unit is
    // for the bits cut off the low product, one for those cut off the power.
    const auto high = static_cast<std::uint64_t>(product >> 64);
    const auto low = static_cast<std::uint64_t>(product);
    const int excess = excess_bits(high);
    std::uint64_t bits = ((high >> (excess - 1)) + 1) >> 1;
    if (low == 0 || low == ~std::uint64_t{0}) {
        // Only here the error may decide how to round: where the part below the last bit is half of
        // that bit, or a unit less than half.
        const std::uint64_t half = std::uint64_t{1} << (excess - 1);
        const std::uint64_t below = high & (2 * half - 1);
        if (below == (low == 0 ? half : half - 1)) {
            if (!PowersOf10::is_exact(q)) {
                return Rounding::undecided;
            }
            const bool tie = (low | static_cast<std::uint64_t>(low_product)) == 0;
            bits -= bits & std::uint64_t{tie};
        }
    }
    const int exponent = excess + 128 + PowersOf10::binary_exponent(q) - normal_shift;
    return encode_normal(bits, exponent, number);
}

/// Finds the double nearest to digits times 10^q.
/// @param digits  not 0
/// @param q       least_decimal_exponent to largest_decimal_exponent
[[gnu::always_inline]] inline Rounding nearest_normal(std::uint64_t digits, int q,
                                                      double& number) noexcept {
    const int normal_shift = leading_zeros(digits);
    const Wide product = Wide{digits << normal_shift} * powers_of_10.leading_bits(q).high;
    const auto high = static_cast<std::uint64_t>(product >> 64);
    const int excess = excess_bits(high);
    // The low bits of the power, and those cut off, add less than 2 to the high word. So they do
    // not matter unless what is below the bit that decides how to round is about zero.
    const std::uint64_t half = std::uint64_t{1} << (excess - 1);
    const std::uint64_t below = high & (half - 1);
    if (!likely(below - 1 < half - 3)) {
        return nearest_normal_by_all_bits(digits, q, number);
    }
    const std::uint64_t bits = ((high >> (excess - 1)) + 1) >> 1;
    const int exponent = excess + 128 + PowersOf10::binary_exponent(q) - normal_shift;
    return encode_normal(bits, exponent, number);
}

#else

inline Rounding nearest_normal_by_all_bits(std::uint64_t, int, double&) noexcept {
    return Rounding::undecided;
}

inline Rounding nearest_normal(std::uint64_t, int, double&) noexcept {
    return Rounding::undecided;
}

#endif

/// Finds the double nearest to a number, ties to even, whatever the floating-point environment.
///
/// It leaves undecided the numbers that are too small to be normal, and a few in 2^53: those next
/// to a half-way case between two doubles.
/// @param number  set if the result is `decided`
Rounding nearest_double(const Decimal& decimal, double& number) noexcept;

} // namespace foundation::json::detail

#endif
