// The conversions of numbers to an array index, defined for every double and every int.
#include "access/indexing.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>

namespace foundation::json::test {
namespace {

using detail::to_index;

struct Case {
    double number;
    std::uint64_t index;
};

constexpr double infinity = std::numeric_limits<double>::infinity();

template <std::size_t N>
void expect_indexes(const Case (&cases)[N]) {
    for (const Case& c : cases) {
        EXPECT_EQ(to_index(c.number), c.index) << c.number;
    }
}

TEST(IndexConversion, TruncatesTowardZero) {
    expect_indexes({
        {0.0, 0},
        {-0.0, 0},
        {5e-324, 0},
        {0.5, 0},
        {0x1.fffffffffffffp-1, 0}, // the greatest below 1
        {1.0, 1},
        {1.9, 1},
        {2.0, 2},
        {2.7, 2},
        {2147483647.5, 2147483647},
        {4294967296.75, 4294967296},
        {4503599627370495.5, 4503599627370495},
        {9007199254740992.0, 9007199254740992},
        {0x1.fffffffffffffp+62, 0x7FFFFFFFFFFFFC00}, // the greatest below 2^63
    });
}

TEST(IndexConversion, ANegativeFractionIsZero) {
    expect_indexes({
        {-5e-324, 0}, {-0.5, 0}, {-0.9, 0}, {-0x1.fffffffffffffp-1, 0}, // the least above -1
    });
}

TEST(IndexConversion, MinusOneAndLessWrapAround) {
    expect_indexes({
        {-1.0, 0xFFFFFFFFFFFFFFFF},
        {-1.9, 0xFFFFFFFFFFFFFFFF},
        {-2.0, 0xFFFFFFFFFFFFFFFE},
        {-2147483648.0, 0xFFFFFFFF80000000},
        {-4294967296.0, 0xFFFFFFFF00000000},
        {-0x1.fffffffffffffp+62, 0x8000000000000400}, // the least above -2^63
        {-0x1p+63, 0x8000000000000000},
    });
}

TEST(IndexConversion, KeepsTheTopBitFrom2To63On) {
    expect_indexes({
        {0x1p+63, 0x8000000000000000},
        {0x1p+63 + 2048, 0x8000000000000800},
        {0x1.8p+63, 0xC000000000000000},
        {0x1.fffffffffffffp+63, 0xFFFFFFFFFFFFF800}, // the greatest below 2^64
    });
}

TEST(IndexConversion, NumbersBeyond64BitsAreTheTopBitAlone) {
    const double numbers[] = {
        0x1p+64,
        0x1p+64 + 4096,
        1e300,
        std::numeric_limits<double>::max(),
        infinity,
        -0x1p+63 - 2048,
        -0x1p+64,
        -1e300,
        std::numeric_limits<double>::lowest(),
        -infinity,
        std::numeric_limits<double>::quiet_NaN(),
        -std::numeric_limits<double>::quiet_NaN(),
    };
    for (const double number : numbers) {
        EXPECT_EQ(to_index(number), 0x8000000000000000) << number;
    }
}

TEST(IndexConversion, AnIntIsExtendedWithItsSign) {
    const struct {
        int number;
        std::uint64_t index;
    } cases[] = {
        {0, 0},
        {1, 1},
        {2147483647, 0x7FFFFFFF},
        {-1, 0xFFFFFFFFFFFFFFFF},
        {-2, 0xFFFFFFFFFFFFFFFE},
        {-2147483647 - 1, 0xFFFFFFFF80000000},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(to_index(c.number), c.index) << c.number;
    }
}

TEST(IndexConversion, NeverThrows) {
    static_assert(noexcept(to_index(0.0)));
    static_assert(noexcept(to_index(0)));
}

} // namespace
} // namespace foundation::json::test
