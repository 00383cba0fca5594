/// @file
/// The text of numbers by the rule of ECMAScript's Number::toString.
#include "number/shortest_number_text.hpp"

#include "number/shortest_digits.hpp"
#include "support/float_environments.hpp"
#include "support/locales.hpp"
#include "support/notable_numbers.hpp"
#include "support/random_numbers.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"
#include "support/shortest_rule.hpp"

#include <gtest/gtest.h>

#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <type_traits>

namespace foundation::json::detail {
namespace {

template <class Number>
std::string text_of(FloatingBits<Number> bits) {
    char room[shortest_number_room];
    char* const text = room;
    return {text, shortest_number_text(text, bits)};
}

template <class Number>
std::string text_of(const Number& number) {
    return text_of(FloatingBits<Number>(number));
}

// ---- Literal texts -------------------------------------------------------------------------

TEST(ShortestDoubleText, IsThatOfEcmaScript) {
    const struct {
        double number;
        const char* text;
    } rows[] = {
        {0.0, "0"},
        {-0.0, "0"},
        {1, "1"},
        {-1, "-1"},
        {9, "9"},
        {10, "10"},
        {-65535, "-65535"},
        {1000000, "1000000"},
        {12345678, "12345678"},
        {100000000, "100000000"},
        {1763781000016, "1763781000016"},
        {0.5, "0.5"},
        {0.1, "0.1"},
        {-0.1, "-0.1"},
        {0.3, "0.3"},
        {0.1 + 0.2, "0.30000000000000004"},
        {1.0 / 3, "0.3333333333333333"},
        {2.0 / 3, "0.6666666666666666"},
        {3.141592653589793, "3.141592653589793"},
        {123456.789, "123456.789"},
        {1234567.5, "1234567.5"},
        {99999999.5, "99999999.5"},

        // whole numbers about the bits of the mantissa, and the fractions below
        {4503599627370495.5, "4503599627370495.5"},
        {4503599627370496.0, "4503599627370496"},
        {9007199254740991.0, "9007199254740991"},
        {9007199254740992.0, "9007199254740992"},
        {9007199254740994.0, "9007199254740994"},
        {-9007199254740994.0, "-9007199254740994"},
        {0x1p60, "1152921504606847000"},
        {0x1p63, "9223372036854776000"},
        {0x1p64, "18446744073709552000"},

        // from 1e21 on with an exponent
        {100000000000000000000.0, "100000000000000000000"},
        {123456789012345680000.0, "123456789012345680000"},
        {999999999999999868928.0, "999999999999999900000"},
        {1e21, "1e+21"},
        {1.5e21, "1.5e+21"},
        {1e22, "1e+22"},
        {1e23, "1e+23"},
        {-1.2345e99, "-1.2345e+99"},
        {1e100, "1e+100"},
        {DBL_MAX, "1.7976931348623157e+308"},

        // below 1e-6, too
        {0.001, "0.001"},
        {1e-6, "0.000001"},
        {1.234e-6, "0.000001234"},
        {0.0000012345678901234567, "0.0000012345678901234567"},
        {9.999999999999997e-7, "9.999999999999997e-7"},
        {1e-7, "1e-7"},
        {1.5e-7, "1.5e-7"},
        {-1e-10, "-1e-10"},
        {1e-100, "1e-100"},
        {DBL_MIN, "2.2250738585072014e-308"},
        {2.225073858507201e-308, "2.225073858507201e-308"},
        {1e-323, "1e-323"},
        {5e-324, "5e-324"},

        // half way between two texts of as many digits: the even one
        {1125899906842624.25, "1125899906842624.2"},
        {1125899906842624.75, "1125899906842624.8"},
        {5e-324 * 3, "1.5e-323"},

        // powers of two, whose lower neighbour is half as far away
        {0x1p-44, "5.684341886080802e-14"},
        {0x1p-1022, "2.2250738585072014e-308"},
        {0x1p1023, "8.98846567431158e+307"},
        {9007199254740992.0 * 1024, "9223372036854776000"},
    };
    for (const auto& [number, text] : rows) {
        EXPECT_EQ(text_of(number), text);
    }
}

TEST(ShortestFloatText, HasTheFewestDigitsThatReadBackAsAFloat) {
    const struct {
        float number;
        const char* text;
    } rows[] = {
        {0.0f, "0"},
        {-0.0f, "0"},
        {1.0f, "1"},
        {0.5f, "0.5"},
        {0.1f, "0.1"},
        {-0.3f, "-0.3"},
        {1.0f / 3, "0.33333334"},
        {123456.7f, "123456.7"},
        {999999.94f, "999999.94"},
        {8388607.5f, "8388607.5"},
        {16777216.0f, "16777216"},
        {16777218.0f, "16777218"},
        {0x1p30f, "1073741800"},
        {1e10f, "10000000000"},
        {1e20f, "100000000000000000000"},
        {1e21f, "1e+21"},
        {FLT_MAX, "3.4028235e+38"},
        {1e-6f, "0.000001"},
        {1e-7f, "1e-7"},
        {FLT_MIN, "1.1754944e-38"},
        {1e-45f, "1e-45"},
        {3e-45f, "3e-45"},
    };
    for (const auto& [number, text] : rows) {
        EXPECT_EQ(text_of(number), text);
    }
}

TEST(ShortestNumberText, FitsIntoItsRoom) {
    EXPECT_EQ(text_of(-1.2345678901234567e-6).size(), 25U);
    EXPECT_LE(text_of(-2.2250738585072014e-308).size(), 25U);
    EXPECT_LE(text_of(-123456789012345680000.0).size(), 25U);
}

// ---- The plain rule ------------------------------------------------------------------------

template <class Number>
void compare(const Number& number) {
    if (!std::isfinite(number)) {
        return;
    }
    ASSERT_EQ(text_of(number), test::shortest_rule_text(number));
    const FloatingBits<Number> bits = FloatingBits<Number>(number).without_sign();
    if (bits.word != 0) {
        const DecimalNumber digits = ShortestDigits<Number>::of(bits);
        const DecimalNumber exact = ShortestDigits<Number>::exactly_of(bits);
        ASSERT_EQ(digits.digits, exact.digits);
        ASSERT_EQ(digits.exponent, exact.exponent);
    }
}

template <class Number>
void compare_with_neighbours(Number number, int count = 2) {
    compare(number);
    compare(-number);
    for (const Number limit :
         {std::numeric_limits<Number>::infinity(), -std::numeric_limits<Number>::infinity()}) {
        Number neighbour = number;
        for (int i = 0; i < count; ++i) {
            neighbour = std::nextafter(neighbour, limit);
            compare(neighbour);
        }
    }
}

double read(const std::string& text, double) {
    return std::strtod(text.c_str(), nullptr);
}

float read(const std::string& text, float) {
    return std::strtof(text.c_str(), nullptr);
}

template <class Number>
class ShortestNumberText : public testing::Test {};

struct NumberNames {
    template <class Number>
    static std::string GetName(int) {
        return std::is_same_v<Number, double> ? "OfDoubles" : "OfFloats";
    }
};

using Numbers = testing::Types<double, float>;
TYPED_TEST_SUITE(ShortestNumberText, Numbers, NumberNames);

// All exponents together use every power of ten and every shift of the arithmetic.
TYPED_TEST(ShortestNumberText, FollowsTheRuleForEveryBinaryExponent) {
    using Limits = std::numeric_limits<TypeParam>;
    std::mt19937_64 random(Limits::digits);
    std::uniform_real_distribution<TypeParam> mantissa(1, 2);
    for (int exponent = Limits::min_exponent - Limits::digits; exponent < Limits::max_exponent;
         ++exponent) {
        compare_with_neighbours(std::ldexp(TypeParam(1), exponent), 3);
        compare_with_neighbours(std::ldexp(TypeParam(1.5), exponent), 1);
        for (int i = 0; i < 8 && !this->HasFailure(); ++i) {
            compare(std::ldexp(mantissa(random), exponent));
        }
    }
}

TYPED_TEST(ShortestNumberText, FollowsTheRuleAroundPowersOfTenAndTheirMultiples) {
    using Limits = std::numeric_limits<TypeParam>;
    for (int power = Limits::min_exponent10 - Limits::digits10; power <= Limits::max_exponent10;
         ++power) {
        for (int factor = 1; factor <= 99 && !this->HasFailure(); ++factor) {
            const std::string text = std::to_string(factor) + "e" + std::to_string(power);
            compare_with_neighbours(read(text, TypeParam()), 1);
        }
    }
}

TYPED_TEST(ShortestNumberText, FollowsTheRuleAroundTheBoundariesOfTheNotations) {
    for (const double boundary :
         {1e-7, 1e-6, 1e-5, 0.1,  1.0,  10.0,   1e7,    1e8,    1e9,    1e15,
          1e16, 1e17, 1e20, 1e21, 1e22, 0x1p24, 0x1p52, 0x1p53, 0x1p63, 0x1p64}) {
        compare_with_neighbours(static_cast<TypeParam>(boundary), 300);
    }
    compare_with_neighbours(std::numeric_limits<TypeParam>::min(), 300);
    compare_with_neighbours(std::numeric_limits<TypeParam>::denorm_min(), 300);
    compare_with_neighbours(std::numeric_limits<TypeParam>::max(), 300);
}

// Where a half-way point between two numbers is a decimal number with few digits.
TYPED_TEST(ShortestNumberText, FollowsTheRuleForWholeNumbersBeyondTheMantissa) {
    constexpr int digits = std::numeric_limits<TypeParam>::digits;
    std::mt19937_64 random(digits);
    for (int exponent = 0; exponent < 70; ++exponent) {
        for (int i = 0; i < 300 && !this->HasFailure(); ++i) {
            const auto mantissa = static_cast<TypeParam>(random() >> (64 - digits));
            compare(std::ldexp(mantissa, exponent));
        }
    }
}

TYPED_TEST(ShortestNumberText, FollowsTheRuleForFractionsOfTwo) {
    std::mt19937_64 random(2);
    for (int exponent = 1; exponent < 60; ++exponent) {
        for (int i = 0; i < 300 && !this->HasFailure(); ++i) {
            const auto mantissa =
                static_cast<TypeParam>(random() >> (64 - std::numeric_limits<TypeParam>::digits));
            compare(std::ldexp(mantissa, -exponent));
        }
    }
}

TYPED_TEST(ShortestNumberText, FollowsTheRuleForSmallWholeNumbers) {
    for (int number = -20000; number < 20000 && !this->HasFailure(); ++number) {
        compare(static_cast<TypeParam>(number));
    }
}

template <class Number>
using RandomShortestNumberText = ShortestNumberText<Number>;
TYPED_TEST_SUITE(RandomShortestNumberText, Numbers, NumberNames);

TYPED_TEST(RandomShortestNumberText, FollowsTheRule) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomNumbers<TypeParam> numbers(seed);
    for (std::size_t i = test::test_repetitions(); i > 0 && !this->HasFailure(); --i) {
        compare(numbers.any_bits());
        compare(numbers.decimal());
        compare_with_neighbours(numbers.decimal(), 1);
        compare(numbers.scaled_decimal());
        compare(numbers.whole());
        compare(numbers.fraction_of_two());
        compare(numbers.coordinate());
        compare(numbers.between_zero_and_one());
    }
}

// ---- Environments and locales --------------------------------------------------------------

template <class Number>
void expect_the_same_in_every_environment() {
    for (const auto word : test::notable_words<Number>()) {
        FloatingBits<Number> bits(Number{});
        bits.word = word;
        if (!bits.is_finite()) {
            continue;
        }
        const std::string expected = test::expected_shortest_text(test::number_of<Number>(word));
        test::for_each_environment([&](const test::Environment& environment) {
            std::string text;
            const int flags = test::flags_raised_in(environment, [&] { text = text_of(bits); });
            EXPECT_EQ(text, expected) << test::name_of(environment);
            EXPECT_EQ(flags, 0) << test::name_of(environment);
        });
    }
}

TEST(ShortestNumberText, IsTheSameInEveryEnvironment) {
    expect_the_same_in_every_environment<double>();
    expect_the_same_in_every_environment<float>();
}

TEST(ShortestNumberText, IsTheSameInEveryLocale) {
    const test::ScopedCLocale german(LC_ALL, "de_DE.UTF-8");
    ASSERT_TRUE(german.succeeded());
    EXPECT_EQ(text_of(1.5), "1.5");
    EXPECT_EQ(text_of(1e-9), "1e-9");
}

} // namespace
} // namespace foundation::json::detail
