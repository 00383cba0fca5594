// The count of levels that decides where operations begin to take little stack.
#include "value/nesting.hpp"

#include <gtest/gtest.h>

#include <thread>

namespace foundation::json::test {
namespace {

using detail::NestingLevel;

/// Two results at a level: whether it is beyond the ordinary ones, and whether the level outside it
/// was the last ordinary one.
struct Within {
    bool beyond_ordinary;
    bool at_last_ordinary;
};

Within within(int levels) {
    const bool at_last_ordinary = NestingLevel::at_last_ordinary();
    const NestingLevel level;
    if (levels != 0) {
        return within(levels - 1);
    }
    return {level.beyond_ordinary(), at_last_ordinary};
}

TEST(NestingLevel, AHundredLevelsAreOrdinary) {
    EXPECT_FALSE(within(0).beyond_ordinary);
    EXPECT_FALSE(within(0).at_last_ordinary);
    EXPECT_FALSE(within(99).beyond_ordinary);
    EXPECT_FALSE(within(99).at_last_ordinary);
    EXPECT_TRUE(within(100).beyond_ordinary);
    EXPECT_TRUE(within(100).at_last_ordinary);
    EXPECT_TRUE(within(5000).beyond_ordinary);
    EXPECT_TRUE(within(5000).at_last_ordinary);
}

TEST(NestingLevel, EndsWithItsScope) {
    for (int i = 0; i != 1000; ++i) {
        const NestingLevel level;
        EXPECT_FALSE(level.beyond_ordinary());
    }
    EXPECT_TRUE(within(100).beyond_ordinary);
    EXPECT_FALSE(within(99).beyond_ordinary);
}

TEST(NestingLevel, EachThreadCountsItsOwn) {
    Within other{true, true};
    const NestingLevel level;
    std::thread([&] { other = within(99); }).join();
    EXPECT_FALSE(other.beyond_ordinary) << "counts the level of this thread, too";
    EXPECT_TRUE(within(99).beyond_ordinary);
}

} // namespace
} // namespace foundation::json::test
