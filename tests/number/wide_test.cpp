/// @file
/// Products of 128 bits: on any machine, and in the quickest way of this one.
#include "number/wide.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

namespace foundation::json::detail {
namespace {

constexpr std::uint64_t most = UINT64_MAX;

TEST(PortableProduct, HasAllBits) {
    EXPECT_TRUE((portable_product(0, most) == WordPair{0, 0}));
    EXPECT_TRUE((portable_product(most, 1) == WordPair{0, most}));
    EXPECT_TRUE((portable_product(most, most) == WordPair{most - 1, 1}));
    EXPECT_TRUE((portable_product(1ULL << 63, 2) == WordPair{1, 0}));
    EXPECT_TRUE((portable_product(0x100000001, 0xFFFFFFFF) == WordPair{0, most}));
    EXPECT_TRUE((portable_product(10000000000000000000ULL, 10000000000000000000ULL) ==
                 WordPair{0x4B3B4CA85A86C47A, 0x098A224000000000}));
}

TEST(PortableScaled, LeavesOutTheLastWord) {
    EXPECT_TRUE((portable_scaled(10, {7, 0}) == WordPair{0, 70}));
    EXPECT_TRUE((portable_scaled(most, {1, most}) == WordPair{1, most - 2}));
    EXPECT_TRUE((portable_scaled(most, {most, most}) == WordPair{most - 1, most}));
}

TEST(Scaled, IsThatOfAnyMachine) {
    std::mt19937_64 random(128);
    for (int i = 0; i < 10000; ++i) {
        const std::uint64_t factor = random() >> random() % 64;
        const WordPair bits{random() >> random() % 64, random()};
        ASSERT_TRUE(scaled(factor, bits) == portable_scaled(factor, bits))
            << factor << ' ' << bits.high << ' ' << bits.low;
    }
}

} // namespace
} // namespace foundation::json::detail
