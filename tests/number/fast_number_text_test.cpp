/// @file
/// The text of numbers by the fast path: the same as by the reference algorithm, for every number.
#include "number/fast_number_text.hpp"

#include "number/digits.hpp"
#include "number/number_text.hpp"
#include "support/float_environments.hpp"
#include "support/locales.hpp"
#include "support/random_numbers.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json::detail {
namespace {

// ---- Helpers -------------------------------------------------------------------------------

template <class Number>
std::string fast_text(Number number) {
    char text[fast_number_room];
    return {text, fast_number_text(text, FloatingBits(number))};
}

/// Compares the fast text of a number with that of the reference algorithm.
template <class Number>
void compare_one(Number number) {
    char fast[fast_number_room];
    const char* const end = fast_number_text(fast, FloatingBits(number));
    NumberBuffer buffer;
    const char* const reference = number_text(buffer, FloatingBits(number));
    const std::string_view text(fast, static_cast<std::size_t>(end - fast));
    if (text != reference) {
        ADD_FAILURE() << "fast " << text << ", reference " << reference;
    }
}

template <class Number>
struct Limits;

template <>
struct Limits<double> {
    static constexpr int lowest_power_of_ten = -307;
    static constexpr int highest_power_of_ten = 308;
    static constexpr int few_digits = 15;
    static constexpr int many_digits = 17;
};

template <>
struct Limits<float> {
    static constexpr int lowest_power_of_ten = -37;
    static constexpr int highest_power_of_ten = 38;
    static constexpr int few_digits = 6;
    static constexpr int many_digits = 9;
};

template <class Number>
void compare(Number number) {
    compare_one(number);
    compare_one(-number);
}

/// Compares a number and `count` neighbours on either side.
template <class Number>
void compare_with_neighbours(Number number, int count = 2) {
    compare(number);
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

// ---- Texts ---------------------------------------------------------------------------------

TEST(FastDoubleText, HasTheDigitsAndTheNotationOfTheReferenceAlgorithm) {
    struct Case {
        double number;
        const char* text;
    };
    const Case cases[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {1, "1"},
        {-1, "-1"},
        {9, "9"},
        {10, "10"},
        {123456, "123456"},
        {0.5, "0.5"},
        {0.25, "0.25"},
        {-0.25, "-0.25"},
        {9.5, "9.5"},
        {99.5, "99.5"},
        {0.1, "0.1"},
        {0.2, "0.2"},
        {0.3, "0.3"},
        {0.7, "0.7"},
        {8.41, "8.41"},
        {48.8583701, "48.8583701"},
        {123456.789012345, "123456.789012345"},

        // seventeen digits where fifteen do not read back; never sixteen
        {0.1 + 0.2, "0.30000000000000004"},
        {1.0 / 3, "0.33333333333333331"},
        {2.0 / 3, "0.66666666666666663"},
        {3.14159265358979, "3.14159265358979"},
        {3.141592653589793, "3.1415926535897931"},
        {-122.41941550000001, "-122.41941550000001"},
        {1.0000000000000002, "1.0000000000000002"},

        // nines, at the edge of a carry
        {0.999999999999999, "0.999999999999999"},
        {0.99999999999999989, "0.99999999999999989"},
        {9.99999999999999, "9.99999999999999"},
        {9.9999999999999982, "9.9999999999999982"},
        {99999.9999999999, "99999.9999999999"},
        {9.99999999999999e15, "9.99999999999999E+15"},

        // the smallest numbers in plain notation, and below
        {1e-4, "0.0001"},
        {1.0000000000000002e-4, "0.00010000000000000002"},
        {9.9999999999999991e-5, "9.9999999999999991E-5"},
        {0.00012345, "0.00012345"},
        {0.000123456789012345, "0.000123456789012345"},
        {1e-5, "1E-5"},
        {1.5e-5, "1.5E-5"},
        {5e-7, "5E-7"},
        {1e-10, "1E-10"},
        {1e-11, "1E-11"},
        {1e-12, "1E-12"},
        {1e-22, "1E-22"},
        {1e-100, "1E-100"},
        {-1e-307, "-1E-307"},
        {DBL_MIN, "2.2250738585072014E-308"},

        // one million, and above
        {999999, "999999"},
        {999999.5, "999999.5"},
        {999999.99999999988, "999999.99999999988"},
        {1e6, "1.0E+6"},
        {1000001, "1.000001E+6"},
        {1234567, "1.234567E+6"},
        {999999999999999, "9.99999999999999E+14"},
        {1e15, "1.0E+15"},
        {1000000000000001, "1.000000000000001E+15"},
        {1234567890123456, "1.234567890123456E+15"},
        {9007199254740991, "9.007199254740991E+15"},
        {9007199254740992, "9.007199254740992E+15"},
        {1e16, "1.0E+16"},
        {1e17, "1.0E+17"},
        {123456789012345678.0, "1.2345678901234568E+17"},
        {1e21, "1.0E+21"},
        {1e22, "1.0E+22"},
        {1e100, "1.0E+100"},
        {-1e308, "-1.0E+308"},
        {DBL_MAX, "1.7976931348623157E+308"},

        // powers of two
        {0x1p-30, "9.3132257461547852E-10"},
        {0x1p-31, "4.6566128730773926E-10"},
        {0x1p-40, "9.0949470177292824E-13"},
        {0x1p60, "1.152921504606847E+18"},
        {0x1p1023, "8.98846567431158E+307"},

        // half way between two numbers of fifteen digits, and of seventeen: to the even one
        {100000000000000.5, "1.000000000000005E+14"},
        {100000000000001.5, "1.000000000000015E+14"},

        {HUGE_VAL, "\"Inf\""},
        {-HUGE_VAL, "\"-Inf\""},
        {std::nan(""), "\"NaN\""},
        {-std::nan(""), "\"NaN\""},
    };
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(fast_text(number), text);
    }
}

TEST(FastFloatText, HasTheDigitsAndTheNotationOfTheReferenceAlgorithm) {
    struct Case {
        float number;
        const char* text;
    };
    const Case cases[] = {
        {0.0f, "0"},
        {-0.0f, "-0"},
        {1.0f, "1"},
        {0.5f, "0.5"},
        {9.5f, "9.5"},
        {0.1f, "0.1"},
        {-0.3f, "-0.3"},
        {0.7f, "0.7"},

        // nine digits where six do not read back
        {1.0f / 3, "0.333333343"},
        {2.0f / 3, "0.666666687"},
        {0.99999994f, "0.99999994"},
        {9.99999f, "9.99999"},
        {9.999999f, "9.99999905"},
        {99999.9f, "99999.9"},
        {123456.7f, "123456.703"},
        {65536.5f, "65536.5"},

        // the smallest numbers in plain notation, and below
        {1e-4f, "0.0001"},
        {9.9999e-5f, "9.9999E-5"},
        {1e-5f, "1E-5"},
        {1e-10f, "1E-10"},
        {1e-11f, "1E-11"},
        {1e-20f, "1E-20"},
        {1.5e-37f, "1.5E-37"},
        {FLT_MIN, "1.17549435E-38"},

        // one million, and above
        {999999.0f, "999999"},
        {999999.5f, "999999.5"},
        {1e6f, "1.0E+6"},
        {1000001.0f, "1.000001E+6"},
        {1234567.0f, "1.234567E+6"},
        {8388607.5f, "8.3886075E+6"},
        {8388608.0f, "8.388608E+6"},
        {9999999.0f, "9.999999E+6"},
        {16777216.0f, "1.6777216E+7"},
        {1e7f, "1.0E+7"},
        {1e8f, "1.0E+8"},
        {1e9f, "1.0E+9"},
        {1e10f, "1.0E+10"},
        {1e20f, "1.0E+20"},
        {-1e38f, "-1.0E+38"},
        {3.4028233e38f, "3.40282326E+38"},
        {0x1p127f, "1.70141183E+38"},

        // half way between two numbers of nine digits: to the even one
        {0x3p-14f, "0.000183105469"},
        {1048576.5f, "1.0485765E+6"},

        {HUGE_VALF, "\"Inf\""},
        {-HUGE_VALF, "\"-Inf\""},
        {std::nanf(""), "\"NaN\""},
    };
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(fast_text(number), text);
    }
}

template <class Number>
void expect_texts(const std::vector<std::pair<Number, std::string>>& cases) {
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(fast_text(number), text);
        EXPECT_EQ(fast_text(-number), "-" + text);
        compare(number);
    }
}

TEST(FastNumberText, IsTheReferenceTextOfSubnormalNumbersAndTheLargestFloat) {
    expect_texts<double>({
        {5e-324, "4.94065645841247E-324"},
        {1e-310, "9.99999999999997E-311"},
        {2.2250738585072009e-308, "2.2250738585072009E-308"},
    });
    expect_texts<float>({
        {1.4e-45f, "1.4013E-45"},
        {1e-40f, "9.99995E-41"},
        {1.17549421e-38f, "1.17549421E-38"},
        {FLT_MAX, "3.402823466E+38"},
    });
}

TEST(FastNumberText, IsTheReferenceTextOfNumbersHalfWayBetweenTexts) {
    expect_texts<double>({
        {562949953421312.125, "5.6294995342131212E+14"},
        {562949953421312.375, "5.6294995342131238E+14"},
        {1125899906842624.25, "1.1258999068426242E+15"},
        {1125899906842624.75, "1.1258999068426248E+15"},
        {0x1p-25, "2.9802322387695312E-8"},
        {0x3p-25, "8.9406967163085938E-8"},
    });
    expect_texts<float>({
        {999999.9375f, "999999.938"},
        {0x1p-14f, "6.10351562E-5"},
    });
}

TEST(FastNumberText, IsTheReferenceTextOfNumbersWithATextHalfWayToTheNext) {
    expect_texts<double>({
        {1e23, "1.0E+23"},
        {std::nextafter(1e23, HUGE_VAL), "1.0000000000000001E+23"},
    });
}

// ---- Numbers where an error would show first -----------------------------------------------

template <class Number>
class FastNumberText : public testing::Test {};

struct NumberNames {
    template <class Number>
    static std::string GetName(int) {
        return std::is_same_v<Number, double> ? "OfDoubles" : "OfFloats";
    }
};

using Numbers = testing::Types<double, float>;
TYPED_TEST_SUITE(FastNumberText, Numbers, NumberNames);

TYPED_TEST(FastNumberText, IsTheReferenceTextAroundEveryPowerOfTenAndItsMultiples) {
    using L = Limits<TypeParam>;
    for (int power = L::lowest_power_of_ten; power <= L::highest_power_of_ten; ++power) {
        for (int factor = 1; factor <= 9; ++factor) {
            const std::string text = std::to_string(factor) + "e" + std::to_string(power);
            const TypeParam number = read(text, TypeParam());
            if (std::isfinite(number)) {
                compare_with_neighbours(number);
            }
        }
    }
}

TYPED_TEST(FastNumberText, IsTheReferenceTextWhereRoundingCarries) {
    using L = Limits<TypeParam>;
    for (int power = L::lowest_power_of_ten; power < L::highest_power_of_ten; ++power) {
        std::string nines = "9.";
        for (int digits = 1; digits <= L::many_digits; ++digits) {
            nines += '9';
            compare_with_neighbours(read(nines + "e" + std::to_string(power), TypeParam()), 1);
            compare(read(nines + "5e" + std::to_string(power), TypeParam()));
        }
    }
}

// All exponents together use every power of ten and every shift of the arithmetic.
TYPED_TEST(FastNumberText, IsTheReferenceTextForEveryBinaryExponent) {
    using Limit = std::numeric_limits<TypeParam>;
    std::mt19937_64 random(Limit::digits);
    std::uniform_real_distribution<TypeParam> mantissa(1, 2);
    for (int exponent = Limit::min_exponent - 1; exponent < Limit::max_exponent; ++exponent) {
        compare_with_neighbours(std::ldexp(TypeParam(1), exponent), 3);
        compare(std::ldexp(TypeParam(1.5), exponent));
        for (int i = 0; i < 8; ++i) {
            compare(std::ldexp(mantissa(random), exponent));
        }
    }
}

TYPED_TEST(FastNumberText, IsTheReferenceTextAroundTheBoundariesOfTheNotations) {
    for (const double boundary :
         {1e-5,       1e-4, 1e-3, 0.01, 0.1,  1.0,  10.0,   1e5,    1e6,    1e7,
          16777216.0, 1e9,  1e14, 1e15, 1e16, 1e17, 0x1p52, 0x1p53, 0x1p63, 0x1p64}) {
        compare_with_neighbours(static_cast<TypeParam>(boundary), 300);
    }
    compare_with_neighbours(std::numeric_limits<TypeParam>::min(), 300);
    const TypeParam largest = std::numeric_limits<TypeParam>::max();
    compare(largest);
    compare_with_neighbours(std::nextafter(largest, TypeParam(0)), 1);
}

// A number is a half-way case if it has exactly one digit more than the format, a five. Such a
// number is odd * 2^-power, where odd * 5^power has that many digits.
TYPED_TEST(FastNumberText, IsTheReferenceTextHalfWayBetweenDecimals) {
    using L = Limits<TypeParam>;
    for (const int digits : {L::few_digits, 16, L::many_digits}) {
        for (int power = 1; power < 28; ++power) {
            const double lowest = std::pow(10.0, digits) / std::pow(5.0, power);
            const double highest =
                std::min(10 * lowest, std::ldexp(1.0, std::numeric_limits<TypeParam>::digits));
            for (double at = lowest; at < highest; at += lowest / 13 + 1) {
                const double odd = 2 * std::floor(at / 2) + 1;
                compare_with_neighbours(static_cast<TypeParam>(std::ldexp(odd, -power)), 1);
            }
        }
    }
}

TYPED_TEST(FastNumberText, IsTheReferenceTextForWholeNumbers) {
    for (int number = 0; number < 20000; ++number) {
        compare(static_cast<TypeParam>(number));
    }
    double power = 1e4;
    for (int digits = 5; digits <= 19; ++digits, power *= 10) {
        for (int factor = 1; factor <= 9; ++factor) {
            for (int offset = -20; offset <= 20; ++offset) {
                compare(static_cast<TypeParam>(power * factor + offset));
            }
        }
    }
}

// ---- Random numbers ------------------------------------------------------------------------

template <class Number>
using RandomFastNumberText = FastNumberText<Number>;
TYPED_TEST_SUITE(RandomFastNumberText, Numbers, NumberNames);

TYPED_TEST(RandomFastNumberText, IsTheReferenceText) {
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

// ---- When the fast path applies ------------------------------------------------------------

TEST(FastNumberTextApplies, InTheClassicLocaleWhileRoundingToNearest) {
    EXPECT_TRUE(fast_number_text_applies());
}

// Elsewhere, the reference algorithm stands for the fast path, everywhere.
#ifdef FOUNDATION_JSON_WIDE_DIGITS

TEST(FastNumberTextApplies, NotWhereTheRadixCharacterIsNoPoint) {
    for (const int category : {LC_NUMERIC, LC_ALL}) {
        const test::ScopedCLocale german(category, "de_DE.UTF-8");
        ASSERT_TRUE(german.succeeded());
        EXPECT_FALSE(fast_number_text_applies());
    }
    EXPECT_TRUE(fast_number_text_applies());
}

TEST(FastNumberTextApplies, WhereOtherCategoriesOfTheLocaleChange) {
    for (const int category : {LC_CTYPE, LC_COLLATE, LC_MONETARY, LC_TIME}) {
        const test::ScopedCLocale german(category, "de_DE.UTF-8");
        ASSERT_TRUE(german.succeeded());
        EXPECT_TRUE(fast_number_text_applies());
    }
}

TEST(FastNumberTextApplies, NotWhileRoundingInAnotherDirection) {
    for (const int direction : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        const test::ScopedRounding rounding(direction);
        ASSERT_TRUE(rounding.succeeded());
        EXPECT_FALSE(fast_number_text_applies());
    }
    EXPECT_TRUE(fast_number_text_applies());
}

#endif

} // namespace
} // namespace foundation::json::detail
