// What two sequences have in common: the most that there is, found with bounded work.
#include "access/common_subsequence.hpp"

#include "support/random_changes.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace foundation::json::test {
namespace {

using detail::common_subsequence;
using detail::Match;

using Sequence = std::vector<std::uint64_t>;

/// The length of the longest common subsequence, from a table of all beginnings of both.
std::size_t longest(const Sequence& from, const Sequence& to) {
    std::vector<std::size_t> row(to.size() + 1);
    for (const std::uint64_t element : from) {
        std::size_t diagonal = 0;
        for (std::size_t j = 0; j != to.size(); ++j) {
            const std::size_t above = row[j + 1];
            row[j + 1] = element == to[j] ? diagonal + 1 : std::max(above, row[j]);
            diagonal = above;
        }
    }
    return row.back();
}

/// Expects matches to be some, in order.
void expect_matches(const Sequence& from, const Sequence& to, const std::vector<Match>& matches) {
    for (std::size_t i = 0; i != matches.size(); ++i) {
        ASSERT_LT(matches[i].from, from.size());
        ASSERT_LT(matches[i].to, to.size());
        ASSERT_EQ(from[matches[i].from], to[matches[i].to]);
        ASSERT_TRUE(i == 0 || matches[i - 1].from < matches[i].from);
        ASSERT_TRUE(i == 0 || matches[i - 1].to < matches[i].to);
    }
}

std::size_t number_of_matches(const Sequence& from, const Sequence& to) {
    const std::vector<Match> matches = common_subsequence(from, to);
    expect_matches(from, to, matches);
    return matches.size();
}

Sequence numbers(std::size_t count, std::uint64_t first = 0) {
    Sequence result(count);
    std::iota(result.begin(), result.end(), first);
    return result;
}

TEST(CommonSubsequence, OfShortSequences) {
    EXPECT_EQ(number_of_matches({}, {}), 0u);
    EXPECT_EQ(number_of_matches({1}, {}), 0u);
    EXPECT_EQ(number_of_matches({}, {1}), 0u);
    EXPECT_EQ(number_of_matches({1}, {1}), 1u);
    EXPECT_EQ(number_of_matches({1}, {2}), 0u);
    EXPECT_EQ(number_of_matches({1, 2, 3}, {1, 3}), 2u);
    EXPECT_EQ(number_of_matches({1, 2, 3, 1, 2, 2, 1}, {3, 2, 1, 2, 1, 3}), 4u);
    EXPECT_EQ(number_of_matches({1, 2}, {2, 1}), 1u);
}

TEST(RandomCommonSubsequence, IsTheLongest) {
    const std::uint64_t seed = random_seed();
    RandomChanges random(seed);
    for (std::size_t round = test_repetitions(); round > 0; --round) {
        const std::size_t alphabet = 1 + random.below(12);
        const auto sequence = [&] {
            Sequence result(random.below(24));
            std::generate(result.begin(), result.end(), [&] { return random.below(alphabet); });
            return result;
        };
        const Sequence from = sequence();
        const Sequence to = sequence();
        ASSERT_EQ(number_of_matches(from, to), longest(from, to))
            << testing::PrintToString(from) << ' ' << testing::PrintToString(to) << "\nseed "
            << seed;
    }
}

TEST(CommonSubsequence, OfLongSequencesWithFewDifferences) {
    Sequence from = numbers(100000);
    Sequence to = from;
    for (std::size_t i = 0; i < 400; ++i) {
        to.erase(to.begin() + static_cast<std::ptrdiff_t>(i * 240));
    }
    EXPECT_EQ(number_of_matches(from, to), 100000u - 400u);
    EXPECT_EQ(number_of_matches(to, from), 100000u - 400u);
    std::rotate(to.begin(), to.begin() + 1, to.end());
    EXPECT_EQ(number_of_matches(from, to), 100000u - 401u);
}

TEST(CommonSubsequence, PassesOverWhatOnlyOneHas) {
    // More differences than would be searched for, if these elements counted.
    Sequence from = numbers(50000);
    Sequence to = numbers(50000, 1000000);
    for (std::size_t i = 0; i < 50000; i += 10) {
        to[i] = from[i];
    }
    EXPECT_EQ(number_of_matches(from, to), 5000u);
}

TEST(CommonSubsequence, GivesUpWhereTheDifferencesAreTooMany) {
    Sequence reversed = numbers(50000);
    std::reverse(reversed.begin(), reversed.end());
    EXPECT_EQ(number_of_matches(numbers(50000), reversed), 0u);
    EXPECT_EQ(number_of_matches(numbers(50000), numbers(50000, 50000)), 0u);
    reversed = numbers(300);
    std::reverse(reversed.begin(), reversed.end());
    EXPECT_EQ(number_of_matches(numbers(300), reversed), 0u) << "a short search is given up sooner";
}

} // namespace
} // namespace foundation::json::test
