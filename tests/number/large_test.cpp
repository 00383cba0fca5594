/// @file
/// Large whole numbers, and the table of powers of ten that is computed with them.
#include "number/large.hpp"
#include "number/powers_of_10.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>

namespace foundation::json::detail {
namespace {

constexpr std::uint64_t top = std::uint64_t{1} << 63;

Large product(std::uint64_t number, int fives, int twos) {
    Large result(number);
    result.multiply_by_power_of_5(fives);
    result.multiply_by_power_of_2(twos);
    return result;
}

TEST(Large, ComparesByValue) {
    EXPECT_EQ(compare(Large(0), Large(0)), 0);
    EXPECT_LT(compare(Large(0), Large(1)), 0);
    EXPECT_GT(compare(Large(top), Large(top - 1)), 0);
    EXPECT_EQ(compare(Large(625), product(1, 4, 0)), 0);
    EXPECT_LT(compare(Large(624), product(1, 4, 0)), 0);
    EXPECT_EQ(compare(Large(1000), product(1, 3, 3)), 0);
    EXPECT_GT(compare(product(1, 300, 64), product(1, 300, 63)), 0);
    EXPECT_LT(compare(product(3, 300, 64), product(7, 300, 63)), 0);
    EXPECT_EQ(compare(product(0, 300, 100), Large(0)), 0);
}

TEST(Large, DividesWhatItMultiplied) {
    Large number = product(0xFEDCBA9876543210, 200, 77);
    for (int i = 0; i < 10; ++i) {
        number.multiply(7);
        number.multiply(0xFFFFFFFF);
    }
    EXPECT_NE(compare(number, product(0xFEDCBA9876543210, 200, 77)), 0);
    for (int i = 0; i < 10; ++i) {
        number.divide(0xFFFFFFFF);
        number.divide(7);
    }
    EXPECT_EQ(compare(number, product(0xFEDCBA9876543210, 200, 77)), 0);
}

TEST(Large, RoundsDownWhenItDivides) {
    Large number(19);
    number.divide(10);
    EXPECT_EQ(compare(number, Large(1)), 0);
    number.divide(10);
    EXPECT_EQ(compare(number, Large(0)), 0);
}

TEST(Large, HasLeadingBits) {
    const auto leading = [](std::uint64_t number, int twos) {
        return product(number, 0, twos).leading_bits();
    };
    EXPECT_TRUE((leading(1, 0) == WordPair{top, 0}));
    EXPECT_TRUE((leading(3, 700) == WordPair{top | top >> 1, 0}));
    EXPECT_TRUE((leading(0x8000000000000001, 0) == WordPair{0x8000000000000001, 0}));
    EXPECT_TRUE((leading(0x4000000000000001, 0) == WordPair{0x8000000000000002, 0}));
    Large both(0xFFFFFFFFFFFFFFFF);
    both.multiply(0xFFFFFFFF);
    both.multiply(0xFFFFFFFF); // 2^128 - 2^97 + 2^33 - 1
    EXPECT_TRUE((both.leading_bits() == WordPair{0xFFFFFFFE00000000, 0x00000001FFFFFFFF}));
}

// ---- Powers of ten -------------------------------------------------------------------------

TEST(PowersOf10, HaveTheirLeadingBits) {
    const struct {
        int exponent;
        WordPair bits;
        int binary_exponent;
    } rows[] = {
        {0, {top, 0}, -127},
        {1, {0xA000000000000000, 0}, -124},
        {2, {0xC800000000000000, 0}, -121},
        {19, {0x8AC7230489E80000, 0}, -64},
        {55, {0xD0CF4B50CFE20765, 0xFFF4B4E3F741CF6D}, 55},
        {-1, {0xCCCCCCCCCCCCCCCC, 0xCCCCCCCCCCCCCCCC}, -131},
        {-2, {0xA3D70A3D70A3D70A, 0x3D70A3D70A3D70A3}, -134},
    };
    for (const auto& [exponent, bits, binary_exponent] : rows) {
        EXPECT_TRUE(powers_of_10.leading_bits(exponent) == bits) << exponent;
        EXPECT_EQ(PowersOf10::binary_exponent(exponent), binary_exponent) << exponent;
    }
}

/// Compares the bits of a power, taken as a whole number, with what they stand for.
int compare_with_power(WordPair bits, int exponent) {
    Large scaled_bits(bits);
    Large power(1);
    (exponent < 0 ? scaled_bits : power).multiply_by_power_of_5(std::abs(exponent));
    const int twos = PowersOf10::binary_exponent(exponent) - exponent;
    (twos < 0 ? power : scaled_bits).multiply_by_power_of_2(std::abs(twos));
    return compare(scaled_bits, power);
}

TEST(PowersOf10, AreCutOffAfter128Bits) {
    for (int exponent = PowersOf10::least; exponent <= PowersOf10::largest; ++exponent) {
        SCOPED_TRACE(exponent);
        const WordPair bits = powers_of_10.leading_bits(exponent);
        EXPECT_GE(bits.high, top);
        EXPECT_LE(compare_with_power(bits, exponent), 0);
        EXPECT_GT(compare_with_power({bits.high + (bits.low == UINT64_MAX ? 1 : 0), bits.low + 1},
                                     exponent),
                  0);
        EXPECT_EQ(compare_with_power(bits, exponent) == 0, PowersOf10::is_exact(exponent));
    }
}

} // namespace
} // namespace foundation::json::detail
