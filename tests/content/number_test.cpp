// number<T>() and integer(): every pair of types at its limits.
#include <foundation/json/content.hpp>

#include "support/describe.hpp"
#include "support/float_environments.hpp"
#include "support/locales.hpp"
#include "support/repetitions.hpp"

#include <foundation/json/serializer.hpp>

#include <gtest/gtest.h>

#include <cfenv>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace foundation::json {
namespace {

constexpr double two_to_31 = 2147483648.0;
constexpr double two_to_32 = 4294967296.0;
constexpr double two_to_63 = 9223372036854775808.0;
constexpr double two_to_64 = 18446744073709551616.0;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

/// The number, or the message of the error.
template <class Number>
std::string outcome(const Value& value) {
    try {
        return std::to_string(number<Number>(value));
    } catch (const std::out_of_range& error) {
        return error.what();
    } catch (const std::runtime_error& error) {
        return std::string("runtime_error: ") + error.what();
    }
}

struct Row {
    Value value;
    const char* expected;
};

template <class Number>
void expect(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(outcome<Number>(row.value), row.expected)
            << name_of(kind_of(row.value)) << ' ' << test::content_text(row.value);
    }
}

TEST(NumberAsInteger, IsExactFromEveryKindOfNumber) {
    expect<int>({{-7, "-7"}, {-7.0f, "-7"}, {-7LL, "-7"}, {7ULL, "7"}});
    expect<unsigned>({{7, "7"}, {7.0f, "7"}, {7LL, "7"}, {7ULL, "7"}});
    expect<int>({{0.0, "0"}, {-0.0, "0"}, {0.0f, "0"}, {-0.0f, "0"}, {0LL, "0"}, {0ULL, "0"}});
    expect<unsigned>({{-0.0, "0"}, {-0.0f, "0"}});
}

TEST(NumberAsInteger, IsWithinTheLimitsOfTheType) {
    expect<signed char>({{-128, "-128"},
                         {-129, "-129 is not within -128 to 127"},
                         {127.0f, "127"},
                         {128.0f, "128 is not within -128 to 127"},
                         {-128LL, "-128"},
                         {-129LL, "-129 is not within -128 to 127"},
                         {127ULL, "127"},
                         {128ULL, "128 is not within -128 to 127"}});
    expect<unsigned char>({{255, "255"},
                           {256, "256 is not within 0 to 255"},
                           {-1, "-1 is not within 0 to 255"},
                           {-1.0f, "-1 is not within 0 to 255"},
                           {-1LL, "-1 is not within 0 to 255"}});
    expect<short>({{-32768, "-32768"},
                   {-32769, "-32769 is not within -32768 to 32767"},
                   {32767, "32767"},
                   {32768, "32768 is not within -32768 to 32767"}});
    expect<unsigned short>({{65535, "65535"},
                            {70000, "70000 is not within 0 to 65535"},
                            {65536ULL, "65536 is not within 0 to 65535"}});
    expect<int>({{-two_to_31, "-2147483648"},
                 {-two_to_31 - 1, "-2147483649 is not within -2147483648 to 2147483647"},
                 {two_to_31 - 1, "2147483647"},
                 {two_to_31, "2147483648 is not within -2147483648 to 2147483647"},
                 {-2147483649LL, "-2147483649 is not within -2147483648 to 2147483647"},
                 {2147483648ULL, "2147483648 is not within -2147483648 to 2147483647"}});
    expect<unsigned>({{two_to_32 - 1, "4294967295"},
                      {two_to_32, "4294967296 is not within 0 to 4294967295"},
                      {LLONG_MIN, "-9223372036854775808 is not within 0 to 4294967295"}});
}

TEST(NumberAsInteger, IsWithinTheLimitsOf64Bits) {
    const Value below = std::nextafter(two_to_63, 0.0);
    expect<long long>(
        {{-two_to_63, "-9223372036854775808"},
         {std::nextafter(-two_to_63, -infinity),
          "-9223372036854777856 is not within -9223372036854775808 to 9223372036854775807"},
         {below, "9223372036854774784"},
         {two_to_63,
          "9223372036854775808 is not within -9223372036854775808 to 9223372036854775807"},
         {-9223372036854775808.0f, "-9223372036854775808"},
         {9223372036854775808.0f,
          "9223372036854775808 is not within -9223372036854775808 to 9223372036854775807"},
         {LLONG_MIN, "-9223372036854775808"},
         {LLONG_MAX, "9223372036854775807"},
         {9223372036854775807ULL, "9223372036854775807"},
         {9223372036854775808ULL,
          "9223372036854775808 is not within -9223372036854775808 to 9223372036854775807"}});
    expect<unsigned long long>(
        {{std::nextafter(two_to_64, 0.0), "18446744073709549568"},
         {two_to_63, "9223372036854775808"},
         {two_to_64, "1.8446744073709552E+19 is not within 0 to 18446744073709551615"},
         {18446744073709551616.0f, "1.84467441E+19 is not within 0 to 18446744073709551615"},
         {1e300, "1E+300 is not within 0 to 18446744073709551615"},
         {-1e300, "-1E+300 is not within 0 to 18446744073709551615"},
         {ULLONG_MAX, "18446744073709551615"},
         {-1LL, "-1 is not within 0 to 18446744073709551615"},
         {LLONG_MIN, "-9223372036854775808 is not within 0 to 18446744073709551615"}});
}

TEST(NumberAsInteger, IsWhole) {
    expect<int>(
        {{2.5, "2.5 is not a whole number"},
         {-2.5f, "-2.5 is not a whole number"},
         {0.1, "0.1 is not a whole number"},
         {0.1f, "0.1 is not a whole number"},
         {0.30000000000000004, "0.30000000000000004 is not a whole number"},
         {16777.217f, "16777.2168 is not a whole number"},
         {1e-300, "1E-300 is not a whole number"},
         {2147483647.5, "2147483647.5 is not a whole number"},
         {std::nextafter(1.0, 2.0), "1.0000000000000002 is not a whole number"},
         {std::nextafter(1.0, 0.0), "0.99999999999999989 is not a whole number"},
         {std::numeric_limits<double>::denorm_min(), "4.94065645841247E-324 is not a whole number"},
         {std::numeric_limits<float>::denorm_min(), "1.4013E-45 is not a whole number"},
         {4503599627370495.5, "4503599627370495.5 is not a whole number"}});
    expect<long long>({{4503599627370496.0, "4503599627370496"},
                       {4503599627370495.5, "4503599627370495.5 is not a whole number"}});
}

TEST(NumberAsInteger, IsNeitherNaNNorAnInfinity) {
    expect<int>({{not_a_number, "NaN is not a whole number"},
                 {-not_a_number, "NaN is not a whole number"},
                 {std::numeric_limits<double>::signaling_NaN(), "NaN is not a whole number"},
                 {std::numeric_limits<float>::quiet_NaN(), "NaN is not a whole number"},
                 {infinity, "Inf is not within -2147483648 to 2147483647"},
                 {-infinity, "-Inf is not within -2147483648 to 2147483647"},
                 {-std::numeric_limits<float>::infinity(),
                  "-Inf is not within -2147483648 to 2147483647"}});
}

TEST(Number, IsNotMadeOfOtherKinds) {
    const std::vector<Row> rows = {
        {Undefined(), "runtime_error: invalid conversion: undefined to JSON number"},
        {Null(), "runtime_error: invalid conversion: JSON null to JSON number"},
        {true, "runtime_error: invalid conversion: JSON boolean to JSON number"},
        {"1", "runtime_error: invalid conversion: JSON string to JSON number"},
        {Array{1}, "runtime_error: invalid conversion: JSON array to JSON number"},
        {Object{{"a", 1}}, "runtime_error: invalid conversion: JSON object to JSON number"},
    };
    expect<int>(rows);
    expect<unsigned long long>(rows);
    expect<float>(rows);
    expect<double>(rows);
    expect<long double>(rows);
}

TEST(Number, HasTheTypeAskedFor) {
    const Value value = 7;
    static_assert(std::is_same_v<decltype(number<std::uint8_t>(value)), std::uint8_t>);
    static_assert(std::is_same_v<decltype(number<long>(value)), long>);
    static_assert(std::is_same_v<decltype(number<long double>(value)), long double>);
    EXPECT_EQ(number<std::int8_t>(value), 7);
    EXPECT_EQ(number<std::int64_t>(value), 7);
    EXPECT_EQ(number<std::size_t>(value), 7u);
    EXPECT_EQ(number<long>(Value(7)), 7) << "from a temporary";
    EXPECT_EQ(number<int>(Value() || value), 7) << "from a fallback";
}

/// The bits of a number, so that -0 and NaN have a text.
template <class Floating>
std::string bits_of(Floating number) {
    std::conditional_t<sizeof number == 4, std::uint32_t, std::uint64_t> bits;
    std::memcpy(&bits, &number, sizeof bits);
    char text[20];
    std::snprintf(text, sizeof text, "%llx", static_cast<unsigned long long>(bits));
    return text;
}

template <class Floating>
struct FloatingRow {
    Value value;
    const char* bits;
};

const std::vector<FloatingRow<double>> doubles = {
    {0.1, "3fb999999999999a"},
    {-0.0, "8000000000000000"},
    {infinity, "7ff0000000000000"},
    {5e-324, "1"},
    {0.1f, "3fb99999a0000000"},
    {-0.0f, "8000000000000000"},
    {0.0f, "0"},
    {std::numeric_limits<float>::denorm_min(), "36a0000000000000"},
    {-std::numeric_limits<float>::denorm_min(), "b6a0000000000000"},
    {1.17549421e-38f, "380fffffc0000000"}, // the largest subnormal float
    {std::numeric_limits<float>::min(), "3810000000000000"},
    {std::numeric_limits<float>::max(), "47efffffe0000000"},
    {std::numeric_limits<float>::infinity(), "7ff0000000000000"},
    {-std::numeric_limits<float>::infinity(), "fff0000000000000"},
    {std::numeric_limits<float>::quiet_NaN(), "7ff8000000000000"},
    {std::numeric_limits<float>::signaling_NaN(), "7ff8000000000000"},
    {0LL, "0"},
    {-7LL, "c01c000000000000"},
    {9007199254740992LL, "4340000000000000"},
    {9007199254740993LL, "4340000000000000"}, // half way, to the even one below
    {9007199254740995LL, "4340000000000002"}, // half way, to the even one above
    {-9007199254740993LL, "c340000000000000"},
    {9007199254740994LL, "4340000000000001"},
    {18014398509481983LL, "4350000000000000"}, // up to the next power of two
    {LLONG_MAX, "43e0000000000000"},
    {LLONG_MIN, "c3e0000000000000"},
    {9223372036854775295LL, "43dfffffffffffff"}, // less than half way to 2^63
    {9223372036854775296LL, "43e0000000000000"}, // half way
    {ULLONG_MAX, "43f0000000000000"},
    {9223372036854775808ULL, "43e0000000000000"},
    {9223372036854776832ULL, "43e0000000000000"}, // half way, to the even one below
    {9223372036854776833ULL, "43e0000000000001"}, // a little more
    {9223372036854779904ULL, "43e0000000000002"},
};

const std::vector<FloatingRow<float>> floats = {
    {0.1f, "3dcccccd"},
    {0.1, "3dcccccd"},
    {-0.1, "bdcccccd"},
    {-0.0, "80000000"},
    {16777217.0, "4b800000"}, // half way, to the even one below
    {16777219.0, "4b800002"}, // half way, to the even one above
    {std::nextafter(16777217.0, infinity), "4b800001"},
    {3.4028234663852886e38, "7f7fffff"}, // the largest float
    {3.4028235677973362e38, "7f7fffff"}, // less than half way beyond it
    {3.4028235677973366e38, "7f800000"}, // half way
    {-3.4028235677973366e38, "ff800000"},
    {1e300, "7f800000"},
    {infinity, "7f800000"},
    {-infinity, "ff800000"},
    {not_a_number, "7fc00000"},
    {std::numeric_limits<double>::signaling_NaN(), "7fc00000"},
    {1.1754943508222875e-38, "800000"}, // the smallest normal float
    {1.1754942807573643e-38, "800000"}, // half way, rounded up out of the subnormal ones
    {1.1754942807573641e-38, "7fffff"}, // a little less
    {1.1754942106924411e-38, "7fffff"}, // the largest subnormal float
    {1.401298464324817e-45, "1"},       // the smallest float
    {2.1019476964872256e-45, "2"},      // half way, to the even one above
    {7.006492321624085e-46, "0"},       // half way, to zero
    {7.006492321624087e-46, "1"},       // a little more
    {-7.006492321624085e-46, "80000000"},
    {3.5032461608120427e-46, "0"}, // a quarter
    {5e-324, "0"},
    {-5e-324, "80000000"},
    {16777217LL, "4b800000"},
    {-16777219LL, "cb800002"},
    {LLONG_MAX, "5f000000"},
    {LLONG_MIN, "df000000"},
    {ULLONG_MAX, "5f800000"},
    {0ULL, "0"},
};

template <class Floating>
void expect_bits(const std::vector<FloatingRow<Floating>>& rows, const std::string& where) {
    for (const auto& row : rows) {
        EXPECT_EQ(bits_of(number<Floating>(row.value)), row.bits)
            << name_of(kind_of(row.value)) << ' ' << test::content_text(row.value) << ' ' << where;
    }
}

TEST(NumberAsFloatingPoint, IsTheNearest) {
    expect_bits(doubles, "");
    expect_bits(floats, "");
}

TEST(NumberAsFloatingPoint, KeepsTheBitsOfItsOwnType) {
    const double quiet = std::nan("1");
    EXPECT_EQ(bits_of(number<double>(Value(quiet))), bits_of(quiet));
    EXPECT_EQ(bits_of(number<float>(Value(-0.0f))), "80000000");
}

TEST(NumberAsFloatingPoint, IsExactAsLongDouble) {
    const struct {
        Value value;
        long double expected;
    } rows[] = {
        {0.1, 0.1},
        {-0.1f, -0.1f},
        {5e-324, 5e-324},
        {-2.2250738585072009e-308, -2.2250738585072009e-308}, // the largest subnormal double
        {2.2250738585072014e-308, 2.2250738585072014e-308},
        {1.7976931348623157e308, 1.7976931348623157e308},
        {std::numeric_limits<float>::denorm_min(), std::numeric_limits<float>::denorm_min()},
        {-infinity, -std::numeric_limits<long double>::infinity()},
        {9007199254740993LL, 9007199254740993.0L},
        {LLONG_MIN, -9223372036854775808.0L},
        {LLONG_MAX, 9223372036854775807.0L},
        {ULLONG_MAX, 18446744073709551615.0L},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(number<long double>(row.value), row.expected) << test::content_text(row.value);
    }
    EXPECT_TRUE(std::signbit(number<long double>(Value(-0.0))));
    EXPECT_FALSE(std::signbit(number<long double>(Value(0.0))));
    EXPECT_TRUE(std::isnan(number<long double>(Value(not_a_number))));
}

TEST(NumberAsFloatingPoint, IsTheSameInEveryRoundingMode) {
    for (const int direction : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        const test::ScopedRounding rounding(direction);
        ASSERT_TRUE(rounding.succeeded());
        const std::string where = "in rounding mode " + std::to_string(direction);
        expect_bits(doubles, where);
        expect_bits(floats, where);
        EXPECT_EQ(number<long double>(Value(ULLONG_MAX)), 18446744073709551615.0L) << where;
    }
}

TEST(Number, IsTheSameWhereSubnormalNumbersAreFlushedToZero) {
    const test::ScopedFlushToZero flushed;
    expect_bits(doubles, "flushed");
    expect_bits(floats, "flushed");
    EXPECT_EQ(outcome<int>(Value(5e-324)), "4.94065645841247E-324 is not a whole number");
    EXPECT_EQ(outcome<int>(Value(std::numeric_limits<float>::denorm_min())),
              "1.4013E-45 is not a whole number");
    EXPECT_GT(number<long double>(Value(5e-324)), 0.0L);
    EXPECT_LT(number<long double>(Value(-5e-324)), 0.0L);
}

TEST(Number, RaisesNoFloatingPointException) {
    std::feclearexcept(FE_ALL_EXCEPT);
    for (const auto& row : doubles) {
        static_cast<void>(number<double>(row.value));
        static_cast<void>(number<long double>(row.value));
    }
    for (const auto& row : floats) {
        static_cast<void>(number<float>(row.value));
        static_cast<void>(number<long double>(row.value));
    }
    for (const double whole : {-two_to_63, -7.0, -0.0, 0.0, 7.0, two_to_31}) {
        EXPECT_EQ(static_cast<double>(number<long long>(Value(whole))), whole);
    }
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
}

TEST(Number, IsWrittenTheSameWayInMessagesInEveryLocale) {
    const test::ScopedCLocale german(LC_ALL, "de_DE.UTF-8");
    ASSERT_TRUE(german.succeeded()) << "LOCPATH must name the folder of the generated locale";
    const test::ScopedGlobalLocale grouping(test::grouping_locale("\3"));
    EXPECT_EQ(outcome<int>(Value(1234.5)), "1234.5 is not a whole number");
    EXPECT_EQ(outcome<int>(Value(0.1f)), "0.1 is not a whole number");
    EXPECT_EQ(outcome<int>(Value(-1.25e-7)), "-1.25E-07 is not a whole number");
    EXPECT_EQ(outcome<int>(Value(1e12)), "1000000000000 is not within -2147483648 to 2147483647");
}

// Composing the digits rounds, and takes numbers that would be flushed to zero.
TEST(Number, IsWrittenTheSameWayInMessagesInEveryEnvironment) {
    const std::vector<Row> rows = {
        {0.1, "0.1 is not a whole number"},
        {-2.5, "-2.5 is not a whole number"},
        {1.0 / 3, "0.33333333333333331 is not a whole number"},
        {5e-324, "4.94065645841247E-324 is not a whole number"},
        {-1e300, "-1E+300 is not within -2147483648 to 2147483647"},
        {1e12, "1000000000000 is not within -2147483648 to 2147483647"},
        {0.1f, "0.1 is not a whole number"},
        {1.0f / 3, "0.333333343 is not a whole number"},
        {std::numeric_limits<float>::denorm_min(), "1.4013E-45 is not a whole number"},
        {ULLONG_MAX, "18446744073709551615 is not within -2147483648 to 2147483647"},
    };
    test::for_each_environment([&](const test::Environment& environment) {
        for (const auto& row : rows) {
            std::string message;
            const int flags =
                test::flags_raised_in(environment, [&] { message = outcome<int>(row.value); });
            EXPECT_EQ(message, row.expected) << test::name_of(environment);
            EXPECT_EQ(flags, 0) << test::name_of(environment);
        }
    });
}

/// A double or float of any bits.
template <class Floating>
Floating any_of(std::mt19937_64& random) {
    const auto bits = static_cast<typename detail::FloatingBits<Floating>::Word>(random());
    Floating number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

/// The processor's conversion of a number within the limits of a type, by the rules of the
/// language.
template <class Integer, class Floating>
std::string converted(Floating number, Floating least, Floating beyond) {
    if (!(number >= least && number < beyond)) {
        return "out of range";
    }
    return std::trunc(number) == number ? std::to_string(static_cast<Integer>(number))
                                        : "out of range";
}

template <class Integer>
std::string outcome_in_short(const Value& value) {
    try {
        return std::to_string(number<Integer>(value));
    } catch (const std::out_of_range&) {
        return "out of range";
    }
}

TEST(Number, AgreesWithTheProcessorsConversionWhereThatIsDefined) {
    std::mt19937_64 random(20261122);
    for (std::size_t round = 0; round < test::test_repetitions(); ++round) {
        // Numbers of all exponents, and of the exponents of ordinary numbers.
        const double number = round % 2 == 0 ? any_of<double>(random)
                                             : std::ldexp(static_cast<double>(random() % 4096),
                                                          static_cast<int>(random() % 60) - 6) *
                                                   (random() % 2 == 0 ? 1 : -1);
        EXPECT_EQ(outcome_in_short<int>(number), converted<int>(number, -two_to_31, two_to_31))
            << bits_of(number);
        EXPECT_EQ(outcome_in_short<long long>(number),
                  converted<long long>(number, -two_to_63, two_to_63))
            << bits_of(number);
        EXPECT_EQ(outcome_in_short<unsigned long long>(number),
                  converted<unsigned long long>(number, 0.0, two_to_64))
            << bits_of(number);
        const auto narrow = static_cast<float>(number);
        if (!std::isnan(number)) {
            EXPECT_EQ(bits_of(foundation::json::number<float>(Value(number))), bits_of(narrow))
                << bits_of(number);
        }
        if (!std::isnan(narrow)) {
            EXPECT_EQ(bits_of(foundation::json::number<double>(Value(narrow))),
                      bits_of(static_cast<double>(narrow)))
                << bits_of(narrow);
        }
        const auto whole = static_cast<unsigned long long>(random() >> random() % 64);
        const auto negative = -static_cast<long long>(whole / 2);
        EXPECT_EQ(bits_of(foundation::json::number<double>(Value(whole))),
                  bits_of(static_cast<double>(whole)));
        EXPECT_EQ(bits_of(foundation::json::number<float>(Value(whole))),
                  bits_of(static_cast<float>(whole)));
        EXPECT_EQ(bits_of(foundation::json::number<double>(Value(negative))),
                  bits_of(static_cast<double>(negative)));
        EXPECT_EQ(bits_of(foundation::json::number<float>(Value(negative))),
                  bits_of(static_cast<float>(negative)));
    }
}

/// The kind and text of the value that integer() makes of a number.
template <class Integer>
std::string made_of(Integer n) {
    return test::describe(integer(n));
}

TEST(Integer, HasTheKindOfItsTypesSignedness) {
    EXPECT_EQ(made_of<signed char>(-128), "int64 -128");
    EXPECT_EQ(made_of<unsigned char>(255), "uint64 255");
    EXPECT_EQ(made_of<short>(-32768), "int64 -32768");
    EXPECT_EQ(made_of<unsigned short>(65535), "uint64 65535");
    EXPECT_EQ(made_of<int>(7), "int64 7");
    EXPECT_EQ(made_of<unsigned>(4294967295u), "uint64 4294967295");
    EXPECT_EQ(made_of<long>(-1), "int64 -1");
    EXPECT_EQ(made_of<unsigned long>(1), "uint64 1");
    EXPECT_EQ(made_of<long long>(LLONG_MIN), "int64 -9223372036854775808");
    EXPECT_EQ(made_of<unsigned long long>(ULLONG_MAX), "uint64 18446744073709551615");
    EXPECT_EQ(made_of<std::int64_t>(9007199254740993), "int64 9007199254740993");
    EXPECT_EQ(made_of<std::size_t>(3), "uint64 3");
}

TEST(Integer, IsReadBackExactly) {
    EXPECT_EQ(number<std::int64_t>(integer(std::int64_t{9007199254740993})), 9007199254740993);
    EXPECT_EQ(number<std::size_t>(integer(~std::size_t{0})), ~std::size_t{0});
}

} // namespace
} // namespace foundation::json
