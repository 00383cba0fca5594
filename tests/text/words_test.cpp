/// @file
/// Counts of bits and the order of bytes: with any compiler, and in the quickest way of this one.
#include "system/compiler.hpp"

#include <foundation/json/detail/words.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>

namespace foundation::json::detail {
namespace {

TEST(Zeros, AreThoseBeforeAndAfterABit) {
    for (int i = 0; i < 64; ++i) {
        const std::uint64_t bit = std::uint64_t{1} << i;
        for (const std::uint64_t word : {bit, bit | (bit - 1)}) {
            EXPECT_EQ(portable_leading_zeros(word), 63 - i) << word;
            EXPECT_EQ(leading_zeros(word), 63 - i) << word;
        }
        for (const std::uint64_t word : {bit, ~(bit - 1)}) {
            EXPECT_EQ(portable_trailing_zeros(word), i) << word;
            EXPECT_EQ(trailing_zeros(word), i) << word;
        }
    }
}

TEST(Zeros, AreTheSameInEveryWay) {
    std::mt19937_64 random(64);
    for (int i = 0; i < 10000; ++i) {
        const std::uint64_t word = random() >> random() % 64 | 1ULL << random() % 64;
        ASSERT_EQ(portable_leading_zeros(word), leading_zeros(word)) << word;
        ASSERT_EQ(portable_trailing_zeros(word), trailing_zeros(word)) << word;
    }
}

TEST(Bytes, AreReversed) {
    EXPECT_EQ(bytes_reversed(0x0123456789ABCDEF), 0xEFCDAB8967452301);
    EXPECT_EQ(bytes_reversed(0xFF), 0xFF00000000000000);
}

TEST(Bytes, HaveTheOrderOfTheMachine) {
    const char bytes[] = {1, 0, 0, 0, 0, 0, 0, 0};
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    EXPECT_EQ(word == 1, little_endian);
}

} // namespace
} // namespace foundation::json::detail
