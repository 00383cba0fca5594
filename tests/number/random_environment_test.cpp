/// @file
/// Compares the texts of random numbers in random floating-point environments: by the fast path, by
/// the reference algorithm, and by the implementation in the tests.
#include "number/fast_number_text.hpp"
#include "number/number_text.hpp"
#include "support/float_environments.hpp"
#include "support/notable_numbers.hpp"
#include "support/number_rule.hpp"
#include "support/repetitions.hpp"

#include <gtest/gtest.h>

#include <cfenv>
#include <cstddef>
#include <random>
#include <string>
#include <type_traits>

namespace foundation::json::detail {
namespace {

using test::Environment;
using test::flags_raised_in;

template <class Number>
std::string reference_text(FloatingBits<Number> bits) {
    NumberBuffer buffer;
    return number_text(buffer, bits);
}

template <class Number>
std::string fast_text(FloatingBits<Number> bits) {
    char text[fast_number_room];
    return {text, fast_number_text(text, bits)};
}

template <class Number>
void expect_the_rule(const Environment& environment, const Number& number) {
    const FloatingBits<Number> bits(number);
    std::string expected;
    {
        const test::EnvironmentKeeper keeper;
        std::fesetround(environment.direction);
        expected = test::expected_number_text(number);
    }
    std::string reference;
    EXPECT_EQ(flags_raised_in(environment, [&] { reference = reference_text(bits); }), 0);
    EXPECT_EQ(reference, expected) << test::name_of(environment);
    std::string fast = expected;
    const int flags = flags_raised_in(environment, [&] {
        if (fast_number_text_applies()) {
            fast = fast_text(bits);
        }
    });
    EXPECT_EQ(flags, 0) << expected;
    EXPECT_EQ(fast, expected) << test::name_of(environment);
}

template <class Item>
const Item& any_of(const std::vector<Item>& items, std::mt19937_64& random) {
    return items[static_cast<std::size_t>(random() % items.size())];
}

Environment any_environment(std::mt19937_64& random) {
    // Half of them round to nearest, as the fast path requires.
    const int direction = random() % 2 != 0 ? FE_TONEAREST : any_of(test::directions(), random);
    return {direction, random() % 2 != 0, any_of(test::machine_settings(), random)};
}

template <class Number>
class NumberTextInRandomEnvironments : public testing::Test {};

struct NumberNames {
    template <class Number>
    static std::string GetName(int) {
        return std::is_same_v<Number, double> ? "OfDoubles" : "OfFloats";
    }
};

using Numbers = testing::Types<double, float>;
TYPED_TEST_SUITE(NumberTextInRandomEnvironments, Numbers, NumberNames);

TYPED_TEST(NumberTextInRandomEnvironments, FollowsTheRuleForRandomBits) {
    std::mt19937_64 random(20261121);
    for (std::size_t i = 0; i < test::test_repetitions(); ++i) {
        const auto word = static_cast<test::WordOf<TypeParam>>(random());
        expect_the_rule(any_environment(random), test::number_of<TypeParam>(word));
    }
}

TYPED_TEST(NumberTextInRandomEnvironments, FollowsTheRuleForRandomSubnormalBits) {
    std::mt19937_64 random(20261122);
    using Word = test::WordOf<TypeParam>;
    constexpr Word mantissa = FloatingBits<TypeParam>::implicit_bit - 1;
    for (std::size_t i = 0; i < test::test_repetitions() / 2; ++i) {
        const Word word = static_cast<Word>(random()) & ~FloatingBits<TypeParam>::infinity;
        const Word shifted = static_cast<Word>((word & mantissa) >>
                                               (random() % FloatingBits<TypeParam>::mantissa_bits));
        const Word sign = word & ~mantissa;
        expect_the_rule(any_environment(random), test::number_of<TypeParam>(sign | shifted));
    }
}

TYPED_TEST(NumberTextInRandomEnvironments, FollowsTheRuleForNotableNumbers) {
    std::mt19937_64 random(20261123);
    for (const auto word : test::notable_words<TypeParam>()) {
        for (int i = 0; i < 20; ++i) {
            expect_the_rule(any_environment(random), test::number_of<TypeParam>(word));
        }
    }
}

} // namespace
} // namespace foundation::json::detail
