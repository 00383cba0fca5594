// Numbers are read as the nearest double, whatever the environment, or as 64-bit integers.
#include "support/describe.hpp"
#include "support/float_environments.hpp"
#include "support/locales.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"

#include "grammar/numbers.hpp"
#include "value/value_access.hpp"

#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>

#include <boost/variant/get.hpp>
#include <gtest/gtest.h>

#include <cfenv>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace foundation::json::test {
namespace {

std::uint64_t bits_of(double number) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

/// Whether a text is read as a double; 0 and -0 differ.
bool reads_as(const std::string& text, double expected) {
    ParseOptions options;
    options.integers = ParseOptions::Integers::as_double;
    // With more text behind the number, and without.
    const Value first = parse("[" + text + "," + text + "]" + std::string(50, ' '), options);
    const Value alone = parse(text, options);
    const auto same = [expected](const Value& value) {
        return value == Value(expected) &&
               std::signbit(expected) == (test::content_text(value)[0] == '-');
    };
    return same(first[0]) && same(first[1]) && same(alone);
}

// ---- Kinds -----------------------------------------------------------------------------------

TEST(ParserNumbers, WholeNumbersThatDoublesHoldAreDoubles) {
    const struct {
        const char* text;
        double number;
    } cases[] = {
        {"0", 0.0},
        {"-0", -0.0},
        {"1", 1.0},
        {"-1", -1.0},
        {"4294967296", 4294967296.0},
        {"9007199254740991", 9007199254740991.0},
        {"9007199254740992", 9007199254740992.0},
        {"-9007199254740992", -9007199254740992.0},
        {"9007199254740994", 9007199254740994.0},
        {"9223372036854775808", 9223372036854775808.0},
        {"-9223372036854775808", -9223372036854775808.0},
        {"18446744073709549568", 18446744073709549568.0},
        {"1152921504606846976", 1152921504606846976.0},
        {"18446744073709551616", 18446744073709551616.0},
        {"100000000000000000000", 1e20},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(parse(c.text), Value(c.number)) << c.text;
        EXPECT_TRUE(reads_as(c.text, c.number)) << c.text;
    }
    EXPECT_EQ(test::content_text(parse("-0")), "-0");
    EXPECT_EQ(test::content_text(parse("[-0]" + std::string(50, ' '))), "[-0]");
}

TEST(ParserNumbers, WholeNumbersThatNoDoubleHoldsKeepAllDigits) {
    const struct {
        const char* text;
        Value value;
    } cases[] = {
        {"9007199254740993", 9007199254740993LL},
        {"-9007199254740993", -9007199254740993LL},
        {"1234567890123456789", 1234567890123456789LL},
        {"9223372036854775807", 9223372036854775807LL},
        {"-9223372036854775807", -9223372036854775807LL},
        {"9223372036854775809", 9223372036854775809ULL},
        {"18446744073709551615", 18446744073709551615ULL},
    };
    for (const auto& c : cases) {
        const std::string text = c.text;
        EXPECT_EQ(parse(text), c.value) << text;
        EXPECT_EQ(parse("[" + text + "]"), Value(std::vector<Value>{c.value}));
        EXPECT_EQ(parse("{\"a\":" + text + "}" + std::string(50, ' ')),
                  Value(std::map<std::string, Value>{{"a", c.value}}));
        EXPECT_EQ(test::content_text(parse(text)), text);
        EXPECT_TRUE(reads_as(text, std::strtod(c.text, nullptr)));
    }
}

TEST(ParserNumbers, AreTheSameWhereverTheyStand) {
    const struct {
        const char* text;
        Value number;
    } cases[] = {
        {"7", 7},
        {"-0.5", -0.5},
        {"0.00", 0},
        {"4503599627370497.5", 4503599627370498.0}, // half way between two doubles
        {"1e3", 1000},
        {"12345678901234567", 12345678901234567LL},
        {"-12345678901234567", -12345678901234567LL},
        {"12345678901234568", 12345678901234568.0},
        {"18446744073709551615", 18446744073709551615ULL},
        {"-18446744073709551615", -18446744073709551616.0},
        {"0.00000000000000000000000000000000001", 1e-35},
        {"4.9406564584124654e-324", 4.9406564584124654e-324},
        {"1.7976931348623157e308", 1.7976931348623157e308},
    };
    const std::string blanks(40, ' ');
    for (const auto& c : cases) {
        for (const std::string& behind : {std::string(), blanks}) {
            const std::string text = c.text + behind;
            EXPECT_EQ(parse(text), c.number) << text;
            EXPECT_EQ(parse("[" + text + "]"), Value(std::vector<Value>{c.number})) << text;
            EXPECT_EQ(parse("{\"a\":" + text + "}"),
                      Value(std::map<std::string, Value>{{"a", c.number}}))
                << text;
        }
    }
    for (const std::string& large : {std::string("1e309"), "-" + std::string(310, '9')}) {
        for (const std::string& text : {large, "[" + large + "]", "{\"a\":" + large + "}"}) {
            EXPECT_THROW(parse(text), ParserException) << text;
            EXPECT_THROW(parse(text + blanks), ParserException) << text;
        }
    }
}

TEST(ParserNumbers, ZerosOfAnyLengthAreZeroWithTheirSign) {
    for (std::size_t decimals = 1; decimals != 60; ++decimals) {
        for (const char* exponent : {"", "e9"}) {
            const std::string text = "0." + std::string(decimals, '0') + exponent;
            EXPECT_TRUE(reads_as(text, 0.0)) << text;
            EXPECT_TRUE(reads_as("-" + text, -0.0)) << text;
        }
    }
}

// They are told by a product that wraps around; these have such products after as few rounds as a
// text can lead to.
TEST(ParserNumbers, MultiplesOfAPowerOfTwoAreNotMistaken) {
    constexpr std::uint64_t power_of_5 = 152587890625; // 5^16, of which 2^64 has 120892581
    std::uint64_t factor = std::uint64_t{120892581} * 5;
    for (int found = 0; found != 100; ++factor) {
        const std::uint64_t digits = factor * power_of_5;
        if (digits % 10 == 0) {
            ++found;
            const std::string decimals = std::to_string(digits / 10);
            const std::string text = "0." + std::string(15 - decimals.size(), '0') + decimals;
            EXPECT_TRUE(reads_as(text, std::strtod(text.c_str(), nullptr))) << text;
        }
    }
}

TEST(ParserNumbers, WholeNumbersBeyond64BitsAreTheNearestDouble) {
    EXPECT_EQ(parse("-9223372036854775809"), Value(-9223372036854775808.0));
    EXPECT_EQ(parse("18446744073709551617"), Value(18446744073709551616.0));
    EXPECT_EQ(parse("-18446744073709551615"), Value(-18446744073709551616.0));
    EXPECT_EQ(parse("123456789012345678901234567890"), Value(123456789012345678901234567890.0));
}

TEST(ParserNumbers, APointOrAnExponentMakesADouble) {
    EXPECT_EQ(parse("9007199254740993.0"), Value(9007199254740992.0));
    EXPECT_EQ(parse("9007199254740993e0"), Value(9007199254740992.0));
    EXPECT_EQ(parse("9007199254740993E+0"), Value(9007199254740992.0));
    EXPECT_EQ(parse("1E2"), Value(100.0));
}

// ---- Hard cases ------------------------------------------------------------------------------

TEST(ParserNumbers, HardCasesAreTheNearestDouble) {
    const struct {
        std::string text;
        double number;
    } cases[] = {
        {"0.1", 0.1},
        {"-65.613616999999977", -65.613616999999977},
        {"1e22", 1e22},
        {"1e23", 1e23},
        {"8.5e-1", 0.85},
        {"123456789.123456789", 123456789.123456789},
        {"0.000001", 1e-6},
        {"1.7976931348623157e308", DBL_MAX},
        {"1.7976931348623158e308", DBL_MAX},
        {"2.2250738585072014e-308", DBL_MIN},
        {"2.2250738585072011e-308", 2.2250738585072011e-308},
        {"2.225073858507201136057409796709131975934819546351645648023426109724822222021076945516"
         "529523908135087914149158913039621106870086438694594645527657207407820621743379988141063"
         "267329253552286881372149012981122451451889849057222307285255133155755015914397476397983"
         "411801999323962548289017107081850690630666655994938275772572015763062690663332647565300"
         "009245888316433037779791869612049497390377829704905051080609940730262937128958950003583"
         "799967207254304360284078895771796150945516748243471030702609144621572289880258182545180"
         "325707018860872113128079512233426288368622321503775666622503982534335974568884423900265"
         "498198385487948292206894721689831099698365846814022854243330660339850886445804001034933"
         "970427567186443383770486037861622771738545623065874679014086723327636718751234567890123"
         "4567890123456789012345678901e-308",
         2.2250738585072014e-308},
        {"4.9406564584124654e-324", 4.9406564584124654e-324},
        {"2.4703282292062328e-324", 4.9406564584124654e-324},
        {"2.4703282292062327e-324", 0.0},
        {"-2.4703282292062327e-324", -0.0},
        {"1e-400", 0.0},
        {"-1e-400", -0.0},
        {"0e999999999999999999999", 0.0},
        {"-0.0e-999999999999999999999", -0.0},
        {"1e-999999999999999999999", 0.0},
        {"9007199254740993", 9007199254740992.0},
        {"9007199254740995", 9007199254740996.0},
        {"9007199254740993.00000000000000000000000000000000000001", 9007199254740994.0},
        {"9007199254740992.99999999999999999999999999999999999999", 9007199254740992.0},
        {"4503599627370496.5", 4503599627370496.0},
        {"4503599627370497.5", 4503599627370498.0},
        {"4503599627370496.50000000000000000000000001", 4503599627370497.0},
        {"0.500000000000000166533453693773481063544750213623046875", 0.5000000000000002},
        {"3.518437208883201171875e13", 35184372088832.01171875},
        {"1" + std::string(400, '0') + "e-400", 1.0},
        {"0." + std::string(400, '0') + "1e401", 1.0},
        {"0." + std::string(1000, '0') + "123e1000", 0.123},
        {std::string(25, '9'), 1e25},
        {"1." + std::string(800, '0') + "1", 1.0},
        {"100000000000000000000000000000.000e-29", 1.0},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(reads_as(c.text, c.number)) << c.text;
        EXPECT_TRUE(reads_as(c.text[0] == '-' ? c.text.substr(1) : "-" + c.text, -c.number))
            << c.text;
    }
}

TEST(ParserNumbers, ADistantDigitDecidesATie) {
    // 1 + 2^-53 lies half way between two doubles.
    const std::string half_way = "1.00000000000000011102230246251565404236316680908203125";
    for (const int zeros : {0, 1, 100, 700, 1000, 100000}) {
        const std::string more = half_way + std::string(static_cast<std::size_t>(zeros), '0');
        EXPECT_TRUE(reads_as(more, 1.0)) << zeros;
        EXPECT_TRUE(reads_as(more + "1", 1.0000000000000002)) << zeros;
    }
}

TEST(ParserNumbers, NumbersThatAreTooLargeBeginHalfAStepAboveTheLargestDouble) {
    // 2^1024 - 2^970, without its last digit.
    const std::string half_way =
        "17976931348623158079372897140530341507993413271003782693617377898044496829276475"
        "09466490179775872070963302864166928879109465555478519404026306574886715058206819"
        "08902000708383676273854845817711531764475730270069855571366959622842914819860834"
        "93647529271907416844436551070434271155969950809304288017790417449779";
    EXPECT_EQ(parse(half_way + "1"), Value(DBL_MAX));
    EXPECT_EQ(parse(half_way + "1.999999"), Value(DBL_MAX));
    EXPECT_THROW(parse(half_way + "2"), ParserException);
    EXPECT_THROW(parse("1e309"), ParserException);
    EXPECT_THROW(parse("1e99999999999999999999"), ParserException);
    EXPECT_THROW(parse("-0.1e310"), ParserException);
}

// ---- Against the C library -------------------------------------------------------------------

/// A number of random length, size and layout.
std::string random_number(std::mt19937_64& random) {
    const auto below = [&random](std::uint64_t limit) { return random() % limit; };
    std::string text = below(2) == 0 ? "-" : "";
    const auto digits = [&](std::uint64_t count) {
        for (std::uint64_t i = 0; i != count; ++i) {
            text += static_cast<char>('0' + below(10));
        }
    };
    if (below(3) == 0) {
        text += '0';
    } else {
        text += static_cast<char>('1' + below(9));
        digits(below(below(5) == 0 ? 30 : 12));
    }
    if (below(4) != 0) {
        text += '.';
        digits(1 + below(below(5) == 0 ? 30 : 17));
    }
    if (below(3) == 0) {
        text += (below(2) == 0 ? "e" : "E");
        text += (below(3) == 0 ? "+" : below(2) == 0 ? "-" : "");
        text += std::to_string(below(below(2) == 0 ? 30 : 320));
    }
    return text;
}

TEST(ParserNumbers, RandomNumbersAgreeWithTheCLibrary) {
    const std::uint64_t seed = random_seed();
    std::mt19937_64 random(seed);
    for (std::size_t i = 0; i != 4 * test_repetitions(); ++i) {
        const std::string text = random_number(random);
        const double expected = std::strtod(text.c_str(), nullptr);
        if (std::isfinite(expected)) {
            ASSERT_TRUE(reads_as(text, expected)) << text << ", seed " << seed;
        } else {
            ASSERT_THROW(parse(text), ParserException) << text << ", seed " << seed;
        }
    }
}

TEST(ParserNumbers, EveryDoubleIsReadBackFromItsText) {
    const std::uint64_t seed = random_seed();
    std::mt19937_64 random(seed);
    for (std::size_t i = 0; i != 4 * test_repetitions(); ++i) {
        const std::uint64_t bits = random();
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        if (!std::isfinite(number)) {
            continue;
        }
        char text[32];
        std::snprintf(text, sizeof text, "%.17g", number);
        ASSERT_TRUE(reads_as(text, number)) << text << ", seed " << seed;
    }
}

TEST(ParserNumbers, TheFastPathIsRightWhereItDecides) {
    const std::uint64_t seed = random_seed();
    std::mt19937_64 random(seed);
    std::size_t undecided = 0;
    const std::size_t rounds = 20 * test_repetitions();
    for (std::size_t i = 0; i != rounds; ++i) {
        const std::uint64_t digits = (random() >> random() % 64) % 10'000'000'000'000'000'000U;
        const int exponent = static_cast<int>(random() % 660) - 345;
        const std::string text = std::to_string(digits) + "e" + std::to_string(exponent);
        const double expected = std::strtod(text.c_str(), nullptr);
        double number = -1;
        switch (detail::nearest_double({digits, exponent, false}, number)) {
        case detail::Rounding::decided:
            ASSERT_EQ(bits_of(number), bits_of(expected)) << text << ", seed " << seed;
            break;
        case detail::Rounding::too_large:
            ASSERT_TRUE(std::isinf(expected)) << text << ", seed " << seed;
            break;
        case detail::Rounding::undecided:
            ++undecided;
        }
    }
#if defined(__SIZEOF_INT128__)
    EXPECT_LT(undecided, rounds / 10) << "most are subnormal";
#endif
}

#if defined(__SIZEOF_INT128__)

/// Digits next to half-way cases between two doubles, for some exponents, and any others.
std::uint64_t delicate_digits(std::mt19937_64& random) {
    const std::uint64_t mantissa = random() >> 11 | std::uint64_t{1} << 52;
    switch (random() % 3) {
    case 0:
        return (2 * mantissa + 1) << random() % 9;
    case 1:
        return ((2 * mantissa + 1) << random() % 9) + random() % 3 - 1;
    default:
        return random() >> random() % 64 | 1;
    }
}

TEST(ParserNumbers, FewBitsOfAPowerDecideAsAllOfThemDo) {
    const std::uint64_t seed = random_seed();
    std::mt19937_64 random(seed);
    for (std::size_t i = 0; i != 20 * test_repetitions(); ++i) {
        const std::uint64_t digits = delicate_digits(random);
        const int exponent = random() % 2 == 0 ? static_cast<int>(random() % 5) - 2
                                               : static_cast<int>(random() % 651) - 342;
        double number = -1;
        double expected = -1;
        const detail::Rounding rounding =
            detail::nearest_normal_by_all_bits(digits, exponent, expected);
        ASSERT_EQ(detail::nearest_normal(digits, exponent, number), rounding)
            << digits << 'e' << exponent << ", seed " << seed;
        ASSERT_EQ(bits_of(number), bits_of(expected))
            << digits << 'e' << exponent << ", seed " << seed;
    }
}

#endif

/// Whether a number without exponent has the form that JSON demands.
bool is_valid(const std::string& whole, bool has_point, const std::string& decimals) {
    return !whole.empty() && (whole[0] != '0' || whole.size() == 1) &&
           (!has_point || !decimals.empty());
}

std::string random_digits(std::mt19937_64& random, std::uint64_t count) {
    std::string digits;
    const char same = static_cast<char>('0' + 9 * (random() % 2));
    for (std::uint64_t i = 0; i != count; ++i) {
        digits += random() % 3 == 0 ? static_cast<char>('0' + random() % 10) : same;
    }
    return digits;
}

TEST(ParserNumbers, UsualOnesAreReadToTheirEnd) {
    const std::uint64_t seed = random_seed();
    std::mt19937_64 random(seed);
    std::size_t read = 0;
    for (std::size_t i = 0; i != 40 * test_repetitions(); ++i) {
        const std::string whole = random_digits(random, random() % 21);
        const bool has_point = random() % 4 != 0;
        const std::string decimals = random_digits(random, has_point ? random() % 20 : 0);
        const std::string number =
            (random() % 2 != 0 ? "-" : "") + whole + (has_point ? "." : "") + decimals;
        const char* const behind[] = {",", "]", " ", "\n", "x", "/"};
        const char* const exponents[] = {"e5", "E-1", "e", "E+0"};
        const bool has_exponent = random() % 8 == 0;
        std::string text = number + (has_exponent ? exponents[random() % 4] : behind[random() % 6]);
        text.append(detail::usual_number_room + 2, random() % 2 == 0 ? '1' : ' ');
        double found = -1;
        const char* const end = detail::usual_number(text.data(), found);
        if (end == nullptr) {
            continue;
        }
        ++read;
        ASSERT_TRUE(is_valid(whole, has_point, decimals) && !has_exponent) << text;
        ASSERT_EQ(static_cast<std::size_t>(end - text.data()), number.size()) << text;
        ASSERT_EQ(bits_of(found), bits_of(std::strtod(number.c_str(), nullptr)))
            << text << ", seed " << seed;
    }
#if defined(__SIZEOF_INT128__)
    EXPECT_GT(read, 10 * test_repetitions());
#else
    EXPECT_GT(read, 0U);
#endif
}

// ---- The environment -------------------------------------------------------------------------

/// Texts that an environment could change the result of: half-way cases, subnormal numbers, and
/// numbers for each path of the code.
const char* const delicate[] = {
    "0.1",
    "-0.3",
    "65.613616999999977",
    "1e22",
    "1e23",
    "123456789012345678",
    "9007199254740993",
    "9007199254740993.1e-3",
    "4503599627370496.5",
    "4503599627370497.5",
    "1.00000000000000011102230246251565404236316680908203125",
    "1.00000000000000011102230246251565404236316680908203126",
    "2.2250738585072011e-308",
    "4.9406564584124654e-324",
    "2.4703282292062328e-324",
    "1e-310",
    "1.7976931348623157e308",
    "12345678901234567890123",
    "1e300",
    "3",
    "0.5",
    "-0.0",
    "101.25",
    "999.9999999999999999",
    "1.00000000000000011",
};

/// The bits of a double, since the environment could also affect comparing or writing it.
std::uint64_t bits_of(const Value& value) {
    return bits_of(boost::strict_get<double>(detail::ValueAccess::variant(value)));
}

std::vector<std::uint64_t> bits_of_delicate() {
    ParseOptions options;
    options.integers = ParseOptions::Integers::as_double;
    std::vector<std::uint64_t> result;
    for (const char* const text : delicate) {
        const Value alone = parse(text, options);
        const Value longer = parse("[" + std::string(text) + "]" + std::string(50, ' '), options);
        result.push_back(bits_of(alone));
        result.push_back(bits_of(longer[0]));
    }
    return result;
}

TEST(ParserNumbers, DoNotDependOnTheRoundingMode) {
    const std::vector<std::uint64_t> expected = bits_of_delicate();
    for (const int direction : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::vector<std::uint64_t> found;
        {
            const ScopedRounding rounding(direction);
            ASSERT_TRUE(rounding.succeeded());
            found = bits_of_delicate();
            EXPECT_EQ(std::fegetround(), direction);
        }
        EXPECT_EQ(found, expected) << direction;
    }
}

TEST(ParserNumbers, DoNotDependOnTheLocale) {
    const std::vector<std::uint64_t> expected = bits_of_delicate();
    const ScopedCLocale locale(LC_ALL, "de_DE.UTF-8");
    ASSERT_TRUE(locale.succeeded());
    EXPECT_EQ(bits_of_delicate(), expected);
}

#if defined(__SSE2__)

TEST(ParserNumbers, DoNotDependOnTheVectorUnitsControlRegister) {
    const std::vector<std::uint64_t> expected = bits_of_delicate();
    constexpr unsigned flush_to_zero = 0x8000;
    constexpr unsigned denormals_are_zero = 0x0040;
    constexpr unsigned rounding = 0x6000;
    constexpr unsigned traps = 0x1F80;
    const unsigned before = _mm_getcsr();
    for (const unsigned changed :
         {before | flush_to_zero, before | denormals_are_zero, before | rounding, before | 0x2000u,
          before | flush_to_zero | denormals_are_zero | rounding, (before & ~traps) & ~0x3Fu}) {
        _mm_setcsr(changed);
        const std::vector<std::uint64_t> found = bits_of_delicate();
        const unsigned after = _mm_getcsr();
        _mm_setcsr(before);
        EXPECT_EQ(found, expected) << std::hex << changed;
        EXPECT_EQ(after, changed) << "flags included";
    }
}

#endif

TEST(ParserNumbers, RaiseNoFlag) {
    for (const char* const text : delicate) {
        std::feclearexcept(FE_ALL_EXCEPT);
        const Value value = parse(text);
        EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0) << text;
    }
}

} // namespace
} // namespace foundation::json::test
