/// @file
/// The text of the four kinds of numbers.
#include "support/float_environments.hpp"
#include "support/number_rule.hpp"
#include "support/random_trees.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cfenv>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr float float_infinity = std::numeric_limits<float>::infinity();

template <class Number>
struct Case {
    Number number;
    const char* text;
};

/// Expects the texts of the numbers, at the top and within containers.
template <class Number, std::size_t N>
void expect_texts(const Case<Number> (&cases)[N]) {
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(serialize(number), text);
        EXPECT_EQ(pretty_print(number), text);
        EXPECT_EQ(serialize(std::vector<Value>{number}), std::string("[") + text + "]");
        EXPECT_EQ(serialize(std::map<std::string, Value>{{"n", number}}),
                  std::string("{\"n\":") + text + "}");
    }
}

// ---- Doubles -------------------------------------------------------------------------------

TEST(DoubleText, BelowOneMillionIsPlain) {
    const Case<double> cases[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {1.0, "1"},
        {3.0, "3"},
        {-7.0, "-7"},
        {10.0, "10"},
        {100000.0, "100000"},
        {123456.0, "123456"},
        {999999.0, "999999"},
        {-999999.0, "-999999"},
        {0.1, "0.1"},
        {0.5, "0.5"},
        {-1.5, "-1.5"},
        {-123.456, "-123.456"},
        {100000.5, "100000.5"},
        {999999.5, "999999.5"},
        {0.0001, "0.0001"},
        {0.000123, "0.000123"},
        {0.00012345, "0.00012345"},
    };
    expect_texts(cases);
}

TEST(DoubleText, BelowOneTenThousandthHasATrimmedExponent) {
    const Case<double> cases[] = {
        {1e-5, "1E-5"},
        {1.5e-5, "1.5E-5"},
        {-2.5e-5, "-2.5E-5"},
        {0.00001234, "1.234E-5"},
        {1e-6, "1E-6"},
        {1e-7, "1E-7"},
        {1e-9, "1E-9"},
        {1e-10, "1E-10"},
        {1e-20, "1E-20"},
        {1e-99, "1E-99"},
        {1e-100, "1E-100"},
        {1e-101, "1E-101"},
        {5e-5 / 3, "1.6666666666666667E-5"},
    };
    expect_texts(cases);
}

TEST(DoubleText, FromOneMillionUpHasAnExponentAndAPoint) {
    const Case<double> cases[] = {
        {1e6, "1.0E+6"},
        {-1e6, "-1.0E+6"},
        {2000000.0, "2.0E+6"},
        {1234567.0, "1.234567E+6"},
        {1000000.5, "1.0000005E+6"},
        {1010000.0, "1.01E+6"},
        {1500000.0, "1.5E+6"},
        {9999999.0, "9.999999E+6"},
        {1e7, "1.0E+7"},
        {10203040.0, "1.020304E+7"},
        {-99999999.0, "-9.9999999E+7"},
        {1e8, "1.0E+8"},
        {138586341.0, "1.38586341E+8"},
        {120000000.0, "1.2E+8"},
        {-999999999.0, "-9.99999999E+8"},
        {1234567890.0, "1.23456789E+9"},
        {12345678.9, "1.23456789E+7"},
        {4294967296.0, "4.294967296E+9"},
        {1e9, "1.0E+9"},
        {1e10, "1.0E+10"},
        {1e15, "1.0E+15"},
        {1e20, "1.0E+20"},
        {1e21, "1.0E+21"},
        {1e22, "1.0E+22"},
        {1e23, "1.0E+23"},
        {1e99, "1.0E+99"},
        {1e100, "1.0E+100"},
        {-1e100, "-1.0E+100"},
        {1e101, "1.0E+101"},
        {1e200, "1.0E+200"},
        {1.001e300, "1.001E+300"},
    };
    expect_texts(cases);
}

TEST(DoubleText, ChangesItsNotationAtExactlyOneMillion) {
    const Case<double> cases[] = {
        {999999.0, "999999"},
        {999999.5, "999999.5"},
        {999999.99999999, "999999.99999999"},
        {std::nextafter(1e6, 0.0), "999999.99999999988"},
        {1e6, "1.0E+6"},
        {std::nextafter(1e6, infinity), "1.0000000000000001E+6"},
        {-999999.0, "-999999"},
        {-999999.5, "-999999.5"},
        {-999999.99999999, "-999999.99999999"},
        {std::nextafter(-1e6, 0.0), "-999999.99999999988"},
        {-1e6, "-1.0E+6"},
        {std::nextafter(-1e6, -infinity), "-1.0000000000000001E+6"},
    };
    expect_texts(cases);
}

TEST(DoubleText, HasFifteenDigitsIfTheyReadBackAndElseSeventeen) {
    const Case<double> cases[] = {
        {0.3, "0.3"},
        {0.1 + 0.2, "0.30000000000000004"},
        {1.1 * 1.1, "1.2100000000000002"},
        {3.14159265358979, "3.14159265358979"},
        {3.1415926535897931, "3.1415926535897931"},
        {1.0 + DBL_EPSILON, "1.0000000000000002"},
        {333333.333333333, "333333.333333333"},
        {1e6 / 3, "333333.33333333331"},
        {3333333.33333333, "3.33333333333333E+6"},
        {1e7 / 3, "3.3333333333333335E+6"},
        {123456789012345678.0, "1.2345678901234568E+17"},
        {9223372036854775808.0, "9.2233720368547758E+18"},
    };
    expect_texts(cases);
}

TEST(DoubleText, NeverStopsAtSixteenDigits) {
    const Case<double> cases[] = {
        {0.3333333333333333, "0.33333333333333331"},
        {0.6666666666666666, "0.66666666666666663"},
        {0.7999999999999999, "0.79999999999999993"},
        {0.9999999999999999, "0.99999999999999989"},
        {3.141592653589793, "3.1415926535897931"},
        {7.205759403792794e16, "7.2057594037927936E+16"},
        {2.225073858507201e-308, "2.2250738585072009E-308"},
    };
    expect_texts(cases);
}

TEST(DoubleText, DropsTheTrailingZerosOfSeventeenDigits) {
    const Case<double> cases[] = {
        {9007199254740992.0, "9.007199254740992E+15"},
        {300.29999999999995, "300.29999999999995"},
        {0x1p-11, "0.00048828125"},
        {9007199254740990.0, "9.00719925474099E+15"},
    };
    expect_texts(cases);
}

TEST(DoubleText, CoversTheWholeRange) {
    const Case<double> cases[] = {
        {DBL_MAX, "1.7976931348623157E+308"},
        {-DBL_MAX, "-1.7976931348623157E+308"},
        {std::nextafter(DBL_MAX, 0.0), "1.7976931348623155E+308"},
        {DBL_MIN, "2.2250738585072014E-308"},
        {-DBL_MIN, "-2.2250738585072014E-308"},
    };
    expect_texts(cases);
}

TEST(DoubleText, CoversSubnormals) {
    const Case<double> cases[] = {
        {std::nextafter(DBL_MIN, 0.0), "2.2250738585072009E-308"},
        {2.5e-310, "2.50000000000002E-310"},
        {1e-320, "9.99988867182683E-321"},
        {1e-323, "9.88131291682493E-324"},
        {5e-324, "4.94065645841247E-324"},
        {-5e-324, "-4.94065645841247E-324"},
    };
    expect_texts(cases);
}

TEST(DoubleText, OfNonFiniteNumbersIsAQuotedString) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Case<double> cases[] = {
        {nan, "\"NaN\""},
        {std::copysign(nan, -1.0), "\"NaN\""},
        {infinity, "\"Inf\""},
        {-infinity, "\"-Inf\""},
    };
    expect_texts(cases);
}

TEST(DoubleText, OfAnIntIsThatOfTheSameDouble) {
    const Case<int> cases[] = {
        {0, "0"},
        {-1, "-1"},
        {999999, "999999"},
        {1000000, "1.0E+6"},
        {-1000000, "-1.0E+6"},
        {2000000, "2.0E+6"},
        {INT_MAX, "2.147483647E+9"},
        {INT_MIN, "-2.147483648E+9"},
    };
    expect_texts(cases);
}

// ---- Floats --------------------------------------------------------------------------------

TEST(FloatText, BelowOneMillionIsPlain) {
    const Case<float> cases[] = {
        {0.0f, "0"},         {-0.0f, "-0"},         {3.0f, "3"},           {0.1f, "0.1"},
        {0.3f, "0.3"},       {0.5f, "0.5"},         {1.5f, "1.5"},         {-123.456f, "-123.456"},
        {0.0001f, "0.0001"}, {100000.0f, "100000"}, {123456.0f, "123456"},
    };
    expect_texts(cases);
}

TEST(FloatText, BelowOneTenThousandthHasATrimmedExponent) {
    const Case<float> cases[] = {
        {1e-5f, "1E-5"},   {-2.5e-5f, "-2.5E-5"}, {1e-7f, "1E-7"},
        {1e-10f, "1E-10"}, {1e-38f, "1E-38"},
    };
    expect_texts(cases);
}

TEST(FloatText, FromOneMillionUpHasAnExponentAndAPoint) {
    const Case<float> cases[] = {
        {1e6f, "1.0E+6"},   {-1e6f, "-1.0E+6"}, {2.5e6f, "2.5E+6"}, {1e7f, "1.0E+7"},
        {1e10f, "1.0E+10"}, {1e20f, "1.0E+20"}, {1e38f, "1.0E+38"},
    };
    expect_texts(cases);
}

TEST(FloatText, ChangesItsNotationAtExactlyOneMillion) {
    const Case<float> cases[] = {
        {999999.0f, "999999"},
        {999999.5f, "999999.5"},
        {999999.9375f, "999999.938"},
        {1e6f, "1.0E+6"},
        {1000000.0625f, "1.00000006E+6"},
        {-999999.9375f, "-999999.938"},
        {-1e6f, "-1.0E+6"},
        {-1000000.0625f, "-1.00000006E+6"},
    };
    expect_texts(cases);
}

TEST(FloatText, HasSixDigitsIfTheyReadBackAndElseNine) {
    const Case<float> cases[] = {
        {1.1f, "1.1"},
        {0.333333f, "0.333333"},
        {1.0f / 3, "0.333333343"},
        {2.0f / 3, "0.666666687"},
        {123456.5f, "123456.5"},
        {1234560.0f, "1.23456E+6"},
        {1234567.0f, "1.234567E+6"},
        {8388607.5f, "8.3886075E+6"},
        {16777216.0f, "1.6777216E+7"},
        {2147483648.0f, "2.14748365E+9"},
        {3.3333333e9f, "3.33333325E+9"},
    };
    expect_texts(cases);
}

TEST(FloatText, OfTheLargestFloatAloneHasTenDigits) {
    const Case<float> cases[] = {
        {FLT_MAX, "3.402823466E+38"},
        {-FLT_MAX, "-3.402823466E+38"},
        {std::nextafter(FLT_MAX, 0.0f), "3.40282326E+38"},
        {std::nextafter(-FLT_MAX, 0.0f), "-3.40282326E+38"},
    };
    expect_texts(cases);
}

TEST(FloatText, CoversTheSmallestNumbers) {
    const Case<float> cases[] = {
        {FLT_MIN, "1.17549435E-38"},
        {-FLT_MIN, "-1.17549435E-38"},
        {std::nextafter(FLT_MIN, 0.0f), "1.17549421E-38"},
        {1e-40f, "9.99995E-41"},
        {std::numeric_limits<float>::denorm_min(), "1.4013E-45"},
        {-std::numeric_limits<float>::denorm_min(), "-1.4013E-45"},
    };
    expect_texts(cases);
}

TEST(FloatText, OfNonFiniteNumbersIsAQuotedString) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Case<float> cases[] = {
        {nan, "\"NaN\""},
        {std::copysign(nan, -1.0f), "\"NaN\""},
        {float_infinity, "\"Inf\""},
        {-float_infinity, "\"-Inf\""},
    };
    expect_texts(cases);
}

TEST(FloatText, IsNotThatOfTheSameNumberAsADouble) {
    EXPECT_EQ(serialize(0.1f), "0.1");
    EXPECT_EQ(serialize(static_cast<double>(0.1f)), "0.10000000149011612");
    EXPECT_EQ(serialize(FLT_MAX), "3.402823466E+38");
    EXPECT_EQ(serialize(static_cast<double>(FLT_MAX)), "3.4028234663852886E+38");
}

// ---- 64-bit integers -----------------------------------------------------------------------

TEST(IntegerText, OfSignedIntegersIsPlainDecimal) {
    const Case<long long> cases[] = {
        {0, "0"},
        {-1, "-1"},
        {999999, "999999"},
        {1000000, "1000000"},
        {2000000, "2000000"},
        {-2000000, "-2000000"},
        {9007199254740993, "9007199254740993"},
        {LLONG_MAX, "9223372036854775807"},
        {LLONG_MIN, "-9223372036854775808"},
    };
    expect_texts(cases);
}

TEST(IntegerText, OfUnsignedIntegersIsPlainDecimal) {
    const Case<unsigned long long> cases[] = {
        {0, "0"},
        {1000000, "1000000"},
        {9223372036854775808ULL, "9223372036854775808"},
        {ULLONG_MAX, "18446744073709551615"},
    };
    expect_texts(cases);
}

// ---- Rounding ------------------------------------------------------------------------------

std::string serialize_rounding(int direction, const Value& value) {
    const test::ScopedRounding rounding(direction);
    return rounding.succeeded() ? serialize(value) : "cannot round so";
}

#ifndef _WIN32 // where std::snprintf() rounds to nearest in every direction

TEST(NumberText, RoundsAsTheProcessDoes) {
    EXPECT_EQ(serialize_rounding(FE_TONEAREST, 0.1), "0.1");
    EXPECT_EQ(serialize_rounding(FE_TONEAREST, 0.3), "0.3");
    EXPECT_EQ(serialize_rounding(FE_TONEAREST, 1e23), "1.0E+23");

    EXPECT_EQ(serialize_rounding(FE_UPWARD, 0.1), "0.10000000000000001");
    EXPECT_EQ(serialize_rounding(FE_UPWARD, 1.0 / 3), "0.33333333333333332");
    EXPECT_EQ(serialize_rounding(FE_UPWARD, 1e23), "9.9999999999999992E+22");
    EXPECT_EQ(serialize_rounding(FE_UPWARD, 0.1f), "0.100000002");

    EXPECT_EQ(serialize_rounding(FE_DOWNWARD, 0.3), "0.29999999999999998");
    EXPECT_EQ(serialize_rounding(FE_DOWNWARD, 2.0f / 3), "0.666666686");
    EXPECT_EQ(serialize_rounding(FE_TOWARDZERO, 0.3), "0.29999999999999998");
}

#else

TEST(NumberText, RoundsToNearestWhereTheSystemAlwaysDoes) {
    for (const int direction : test::directions()) {
        EXPECT_EQ(serialize_rounding(direction, 0.1), "0.1");
        EXPECT_EQ(serialize_rounding(direction, 0.3), "0.3");
        EXPECT_EQ(serialize_rounding(direction, 1e23), "1.0E+23");
        EXPECT_EQ(serialize_rounding(direction, 2.0f / 3), "0.666666687");
    }
}

#endif

// ---- Random numbers ------------------------------------------------------------------------

template <class Number>
void expect_rule_for_random_numbers(int count) {
    const std::uint64_t seed = test::random_seed();
    test::RandomTrees random(seed, test::RandomTrees::Kinds::all);
    for (int i = 0; i < count && !testing::Test::HasFailure(); ++i) {
        const Number number = random.number<Number>();
        const std::string text = serialize(number);
        EXPECT_EQ(text, test::expected_number_text(number)) << "seed " << seed;
        EXPECT_EQ(test::read_back(text, number), number) << text << ", seed " << seed;
    }
}

TEST(DoubleText, FollowsTheRuleForRandomNumbers) {
    expect_rule_for_random_numbers<double>(300000);
}

TEST(FloatText, FollowsTheRuleForRandomNumbers) {
    expect_rule_for_random_numbers<float>(300000);
}

TEST(DoubleText, FollowsTheRuleAroundEveryPowerOfTen) {
    for (int power = -323; power <= 308; ++power) {
        const double exact = std::strtod(("1e" + std::to_string(power)).c_str(), nullptr);
        for (const double factor : {1.0, 2.0, 5.0, 9.5}) {
            const double number = factor * exact;
            for (const double n :
                 {number, std::nextafter(number, 0.0), std::nextafter(number, infinity)}) {
                EXPECT_EQ(serialize(n), test::expected_number_text(n));
            }
        }
    }
}

TEST(FloatText, FollowsTheRuleAroundEveryPowerOfTwo) {
    for (int power = -149; power <= 127; ++power) {
        const float number = std::ldexp(1.0f, power);
        for (const float n :
             {number, std::nextafter(number, 0.0f), std::nextafter(number, float_infinity)}) {
            EXPECT_EQ(serialize(n), test::expected_number_text(n));
        }
    }
}

TEST(IntegerText, ReadsBackForRandomNumbers) {
    const std::uint64_t seed = test::random_seed();
    std::mt19937_64 random(seed);
    for (int i = 0; i < 20000; ++i) {
        const auto bits = static_cast<unsigned long long>(random()) >> (random() % 64);
        const auto number = static_cast<long long>(random()) >> (random() % 64);
        EXPECT_EQ(std::stoull(serialize(bits)), bits) << "seed " << seed;
        EXPECT_EQ(std::stoll(serialize(number)), number) << "seed " << seed;
    }
}

} // namespace
} // namespace foundation::json
