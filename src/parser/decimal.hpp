/// @file
/// From decimal digits to the nearest double, in integer arithmetic.
#ifndef FOUNDATION_JSON_SRC_PARSER_DECIMAL_HPP
#define FOUNDATION_JSON_SRC_PARSER_DECIMAL_HPP

#include <cstdint>

namespace foundation::json::detail {

/// A positive number, or zero: digits times 10^exponent.
struct Decimal {
    /// As many digits as always fit into 64 bits.
    static constexpr int most_digits = 19;

    std::uint64_t digits;
    std::int64_t exponent;
    /// Whether further digits follow, so that the number lies between this and one digit more.
    bool cut_off;
};

enum class Rounding {
    decided,
    too_large, ///< for a double
    undecided, ///< the digits at hand do not tell which double is nearest, or it is subnormal
};

/// Finds the double nearest to a number, ties to even, whatever the floating-point environment.
///
/// Undecided are a few numbers in 2^53 that lie next to half way between two doubles, and numbers
/// too small to be normal.
/// @param number  set where that is decided
Rounding nearest_double(const Decimal& decimal, double& number) noexcept;

} // namespace foundation::json::detail

#endif
