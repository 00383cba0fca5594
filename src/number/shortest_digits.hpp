/// @file
/// The shortest decimal number that reads back as a given double or float.
#ifndef FOUNDATION_JSON_SRC_NUMBER_SHORTEST_DIGITS_HPP
#define FOUNDATION_JSON_SRC_NUMBER_SHORTEST_DIGITS_HPP

#include "number/digits.hpp"
#include "number/large.hpp"
#include "number/product.hpp"
#include "number/wide.hpp"

#include <foundation/json/detail/floating_bits.hpp>

#include <algorithm>
#include <cstdint>

namespace foundation::json::detail {

/// How to find, for the positive number mantissa * 2^exponent, the decimal number with the fewest
/// digits that reads back as it and, of these, the nearest.
///
/// The numbers that read back as it reach half way to its neighbours. The half-way point itself
/// reads back as the number whose mantissa is even. Half a step of the mantissa is scaled to a
/// number from 1/2 to 5 decimal units. So there is a whole number of units within reach, and at
/// most one multiple of ten units; that one is shorter, otherwise the nearest whole number is
/// taken.
template <class Number>
class ShortestDigits {
public:
    using Bits = FloatingBits<Number>;

    /// @param bits  of a positive, finite number
    static DecimalNumber of(Bits bits) noexcept {
        const ShortestDigits number(bits);
        const Product scaled = number.scaled_to_units();
        constexpr std::uint64_t one = Product::one;
        const std::uint64_t whole = scaled.whole();
        const std::uint64_t rest = scaled.rest();
        const std::uint64_t ten_below = whole / 10 * 10;
        const std::uint64_t to_ten_below = (whole - ten_below) * one + rest;
        const std::uint64_t to_ten_above = 10 * one - to_ten_below;
        const std::uint64_t reach_above = scaled.half_step(0);
        const std::uint64_t reach_below = reach_above >> (number.is_narrow_below_ ? 1 : 0);
        const std::uint64_t round_up_from = std::min(one / 2, reach_below);
        if (is_close(to_ten_below, reach_below) || is_close(to_ten_above, reach_above) ||
            is_close(rest, round_up_from)) {
            return exactly_of(bits);
        }
        // Which one it is, is unpredictable, so it is computed without branches.
        const std::uint64_t nearest = whole + (rest > round_up_from ? 1 : 0);
        const std::uint64_t not_above = choose(to_ten_below < reach_below, ten_below, nearest);
        return {choose(to_ten_above < reach_above, ten_below + 10, not_above), number.unit_};
    }

    /// The same, by comparisons of large whole numbers.
    [[gnu::noinline, gnu::cold]] static DecimalNumber exactly_of(Bits bits) noexcept {
        const ShortestDigits number(bits);
        // One less if it is a whole number and its power of ten is cut off.
        const std::uint64_t whole = number.scaled_to_units().whole();
        const std::uint64_t ten_below = whole / 10 * 10;
        if (number.reaches_up_to(ten_below + 10)) {
            return {ten_below + 10, number.unit_};
        }
        if (number.reaches_down_to(ten_below)) {
            return {ten_below, number.unit_};
        }
        const std::uint64_t twice = 2 * number.mantissa_;
        const int order = number.compare_with(twice, number.exponent_, 2 * whole + 1);
        const bool up =
            order > 0 || (order == 0 && whole % 2 != 0) || !number.reaches_down_to(whole);
        return {whole + (up ? 1 : 0), number.unit_};
    }

private:
    explicit ShortestDigits(Bits bits) noexcept
        : mantissa_(bits.exponent() == 0 ? bits.magnitude() : bits.mantissa()),
          exponent_(static_cast<int>(std::max<typename Bits::Word>(bits.exponent(), 1)) -
                    Bits::bias),
          // The next number below a power of two is half as far away.
          is_narrow_below_(mantissa_ == Bits::implicit_bit && bits.exponent() > 1),
          // floor(log10()) of a step of the mantissa or, if narrow, of three quarters of it.
          unit_((exponent_ * 315653 - (is_narrow_below_ ? 131008 : 0)) >> 20) {}

    Product scaled_to_units() const noexcept { return {mantissa_, exponent_, -unit_}; }

    /// Whether errors of the product may decide which of two distances is greater: those of each
    /// are less than three units of the last bit.
    static bool is_close(std::uint64_t left, std::uint64_t right) noexcept {
        constexpr std::uint64_t doubt = 4;
        return left - right + doubt <= 2 * doubt;
    }

    static std::uint64_t choose(bool first, std::uint64_t one_number,
                                std::uint64_t other) noexcept {
        return other + ((one_number - other) & (0 - std::uint64_t{first}));
    }

    bool reaches_up_to(std::uint64_t units) const noexcept {
        const int order = compare_with(4 * mantissa_ + 2, exponent_ - 2, units);
        return order > 0 || (order == 0 && mantissa_ % 2 == 0);
    }

    bool reaches_down_to(std::uint64_t units) const noexcept {
        const std::uint64_t limit = 4 * mantissa_ - (is_narrow_below_ ? 1 : 2);
        const int order = compare_with(limit, exponent_ - 2, units);
        return order < 0 || (order == 0 && mantissa_ % 2 == 0);
    }

    /// Compares number * 2^exponent with so many decimal units.
    int compare_with(std::uint64_t number, int exponent, std::uint64_t units) const noexcept {
        Large binary(number);
        Large decimal(units);
        (unit_ < 0 ? binary : decimal).multiply_by_power_of_5(unit_ < 0 ? -unit_ : unit_);
        const int twos = exponent - unit_;
        (twos < 0 ? decimal : binary).multiply_by_power_of_2(twos < 0 ? -twos : twos);
        return compare(binary, decimal);
    }

    std::uint64_t mantissa_;
    int exponent_;
    bool is_narrow_below_;
    int unit_; ///< the exponent of the decimal unit
};

} // namespace foundation::json::detail

#endif
