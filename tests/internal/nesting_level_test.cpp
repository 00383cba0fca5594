// The count of levels that decides where operations begin to take little stack.
#include "value/nesting.hpp"

#include <gtest/gtest.h>

#include <thread>

namespace foundation::json::test {
namespace {

using detail::NestingLevel;

/// Whether the level so many levels within this one is beyond the ordinary ones.
bool beyond_ordinary_within(int levels) {
    const NestingLevel level;
    return levels != 0 ? beyond_ordinary_within(levels - 1) : level.beyond_ordinary();
}

TEST(NestingLevel, AHundredLevelsAreOrdinary) {
    EXPECT_FALSE(beyond_ordinary_within(0));
    EXPECT_FALSE(beyond_ordinary_within(99));
    EXPECT_TRUE(beyond_ordinary_within(100));
    EXPECT_TRUE(beyond_ordinary_within(5000));
}

TEST(NestingLevel, EndsWithItsScope) {
    for (int i = 0; i != 1000; ++i) {
        const NestingLevel level;
        EXPECT_FALSE(level.beyond_ordinary());
    }
    EXPECT_TRUE(beyond_ordinary_within(100));
    EXPECT_FALSE(beyond_ordinary_within(99));
}

TEST(NestingLevel, EachThreadCountsItsOwn) {
    bool other_beyond_ordinary = true;
    const NestingLevel level;
    std::thread([&] { other_beyond_ordinary = beyond_ordinary_within(99); }).join();
    EXPECT_FALSE(other_beyond_ordinary) << "counts the level of this thread, too";
    EXPECT_TRUE(beyond_ordinary_within(99));
}

} // namespace
} // namespace foundation::json::test
