// The equality of values in which numbers count by their amount.
#include "support/describe.hpp"
#include "support/float_environments.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/patch.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

constexpr double two_to_53 = 9007199254740992;
constexpr double two_to_63 = 9223372036854775808.0;
constexpr double two_to_64 = 18446744073709551616.0;
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Values of different kinds that are equivalent; to none in any other row.
const std::vector<std::vector<Value>>& equivalence_classes() {
    static const std::vector<std::vector<Value>> classes = {
        {0, -0.0, 0.0f, -0.0f, 0LL, 0ULL},
        {1, 1.0f, 1LL, 1ULL},
        {-1, -1.0f, -1LL},
        {7, 7.0f, 7LL, 7ULL},
        {0.5, 0.5f},
        {0.1},
        {0.1f, static_cast<double>(0.1f)},
        {two_to_53 - 1, 9007199254740991LL, 9007199254740991ULL},
        {two_to_53, 9007199254740992.0f, 9007199254740992LL, 9007199254740992ULL},
        {9007199254740993LL, 9007199254740993ULL},
        {two_to_53 + 2, 9007199254740994LL, 9007199254740994ULL},
        {-9007199254740993LL},
        {-two_to_53, -9007199254740992LL},
        {16777216, 16777216.0f, 16777216LL, 16777216ULL},
        {16777217, 16777217LL, 16777217ULL},
        {two_to_63, 9223372036854775808.0f, 9223372036854775808ULL},
        {-two_to_63, -9223372036854775808.0f, std::numeric_limits<long long>::min()},
        {std::numeric_limits<long long>::max(), 9223372036854775807ULL},
        {std::nextafter(two_to_63, 0), 9223372036854774784LL, 9223372036854774784ULL},
        {std::numeric_limits<unsigned long long>::max()},
        {two_to_64, 18446744073709551616.0f},
        {-two_to_64},
        {std::nextafter(two_to_64, 0), 18446744073709549568ULL},
        {1e300},
        {std::numeric_limits<double>::max()},
        {static_cast<double>(std::numeric_limits<float>::max()), std::numeric_limits<float>::max()},
        {std::numeric_limits<double>::denorm_min()},
        {2 * std::numeric_limits<double>::denorm_min()},
        {std::numeric_limits<double>::min()},
        {static_cast<double>(std::numeric_limits<float>::denorm_min()),
         std::numeric_limits<float>::denorm_min()},
        {infinity, std::numeric_limits<float>::infinity()},
        {-infinity, -std::numeric_limits<float>::infinity()},
        {"7"},
        {""},
        {true},
        {false},
        {Null()},
        {Value()},
        {Value(Array{})},
        {Value(Array{Undefined()})},
        {Value(Array{Null()})},
        {Array{1, 7}, Array{1.0f, 7ULL}, Array{1LL, 7LL}},
        {Value(Array{7, 1})},
        {Value(Array{1, 7, 1})},
        {Object{}, Object{{"a", Undefined()}}, Object{{"a", Undefined()}, {"b", Undefined()}}},
        {Object{{"a", 1}}, Object{{"a", 1LL}}, Object{{"", Undefined()}, {"a", 1}},
         Object{{"a", 1ULL}, {"b", Undefined()}}},
        {Object{{"b", 1}}, Object{{"a", Undefined()}, {"b", 1.0f}},
         Object{{"b", 1}, {"c", Undefined()}}},
        {Object{{"a", 2}}},
        {Object{{"a", Null()}}},
        {Object{{"a", Object{{"b", Array{1}}}}}, Object{{"a", Object{{"b", Array{1ULL}}}}},
         Object{{"a", Object{{"a", Undefined()}, {"b", Array{1.0f}}}}}},
        {Object{{"a", Object{{"b", Array{Object{}}}}}},
         Object{{"a", Object{{"b", Array{Object{{"x", Undefined()}}}}}}}},
        {Value(Array{Value(Array{})})},
        {Array{Object{}}, Array{Object{{"a", Undefined()}}}},
    };
    return classes;
}

/// The number of pairs of values about which equivalent() is wrong. It does no arithmetic with
/// their numbers.
std::size_t wrong_verdicts() {
    const auto& classes = equivalence_classes();
    std::size_t wrong = 0;
    for (std::size_t i = 0; i != classes.size(); ++i) {
        for (std::size_t j = 0; j != classes.size(); ++j) {
            for (const Value& a : classes[i]) {
                for (const Value& b : classes[j]) {
                    wrong += equivalent(a, b) != (i == j);
                }
            }
        }
    }
    return wrong;
}

TEST(Equivalent, ComparesNumbersByValueAndNothingElseAcrossKinds) {
    const auto& classes = equivalence_classes();
    for (std::size_t i = 0; i != classes.size(); ++i) {
        for (std::size_t j = 0; j != classes.size(); ++j) {
            for (const Value& a : classes[i]) {
                for (const Value& b : classes[j]) {
                    ASSERT_EQ(equivalent(a, b), i == j)
                        << test::describe(a) << " and " << test::describe(b);
                }
            }
        }
    }
}

TEST(Equivalent, HoldsForNoNaN) {
    const Value nans[] = {std::nan(""), -std::nan(""), std::numeric_limits<float>::quiet_NaN(),
                          std::numeric_limits<double>::signaling_NaN()};
    for (const Value& nan : nans) {
        for (const Value& other : nans) {
            EXPECT_FALSE(equivalent(nan, other));
            EXPECT_FALSE(equivalent(Array{nan}, Array{other}));
            EXPECT_FALSE(equivalent(Object{{"a", nan}}, Object{{"a", other}}));
        }
        for (const Value& number : {Value(0), Value(infinity), Value(0LL), Value(0.0f)}) {
            EXPECT_FALSE(equivalent(nan, number));
            EXPECT_FALSE(equivalent(number, nan));
        }
    }
}

TEST(Equivalent, DoesNotDependOnTheFloatingPointEnvironment) {
    EXPECT_EQ(wrong_verdicts(), 0u);
    test::for_each_environment([](const test::Environment& environment) {
        std::size_t wrong = 0;
        const int flags = test::flags_raised_in(environment, [&] { wrong = wrong_verdicts(); });
        EXPECT_EQ(wrong, 0u) << name_of(environment);
        EXPECT_EQ(flags, 0) << name_of(environment);
    });
}

TEST(Equivalent, ComparesStringsOfEveryLengthToTheLastByte) {
    for (std::size_t length = 0; length <= 40; ++length) {
        const std::string text(length, 'a');
        EXPECT_TRUE(equivalent(text, text));
        EXPECT_TRUE(equivalent(Object{{text, 1}}, Object{{text, 1}}));
        EXPECT_FALSE(equivalent(text, text + 'a'));
        for (std::size_t i = 0; i < length; ++i) {
            std::string other = text;
            other[i] = '\0';
            ASSERT_FALSE(equivalent(text, other)) << length << ' ' << i;
            ASSERT_FALSE(equivalent(Object{{text, 1}}, Object{{other, 1}})) << length << ' ' << i;
        }
    }
}

} // namespace
} // namespace foundation::json
