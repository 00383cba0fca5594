// Reading a double from a text: what counts as a number, which double it is, and which characters
// are read.
#include "number/read_double.hpp"

#include "support/locales.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>

namespace foundation::json::test {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Reads from a copy that ends where its storage ends, so that reads beyond the end are detected.
double read(const std::string& text) {
    const std::unique_ptr<char[]> exact(new char[text.size()]);
    std::copy(text.begin(), text.end(), exact.get());
    return detail::read_double(exact.get(), text.size());
}

std::uint64_t bits(double number) {
    std::uint64_t result;
    std::memcpy(&result, &number, sizeof result);
    return result;
}

struct Case {
    std::string text;
    double number;
};

/// Equal to the last bit, so that -0 and 0 differ.
template <std::size_t N>
void expect_read(const Case (&cases)[N]) {
    for (const Case& c : cases) {
        EXPECT_EQ(bits(read(c.text)), bits(c.number))
            << '"' << c.text << "\" was read as " << read(c.text) << ", not " << c.number;
    }
}

// ---- What counts as a number -------------------------------------------------------------------

TEST(ReadDouble, ReadsIntegersFractionsAndExponents) {
    expect_read({{"0", 0.0},
                 {"-0", -0.0},
                 {"-0.0", -0.0},
                 {"0.0", 0.0},
                 {"7", 7.0},
                 {"-7", -7.0},
                 {"007", 7.0},
                 {"1.5", 1.5},
                 {"-1.5", -1.5},
                 {".5", 0.5},
                 {"-.5", -0.5},
                 {"5.", 5.0},
                 {"-5.", -5.0},
                 {"1e3", 1000.0},
                 {"1E3", 1000.0},
                 {"1e+3", 1000.0},
                 {"1e-3", 0.001},
                 {"1.5e3", 1500.0},
                 {"-1.5e-3", -0.0015},
                 {".5e1", 5.0},
                 {"5.e1", 50.0},
                 {"1e003", 1000.0},
                 {"0e999999", 0.0},
                 {"-0e999999", -0.0},
                 {"123456789", 123456789.0}});
}

TEST(ReadDouble, StopsWhereTheNumberEnds) {
    expect_read({
        {"1.5abc", 1.5}, {"1.5 ", 1.5},   {"1.5.5", 1.5},      {"1,5", 1.0},
        {"1 5", 1.0},    {"1e", 1.0},     {"1e+", 1.0},        {"1e-", 1.0},
        {"1e ", 1.0},    {"1ee5", 1.0},   {"1e5e5", 1e5},      {"1e5.5", 1e5},
        {"1-2", 1.0},    {"1+2", 1.0},    {"5.e", 5.0},        {"1f", 1.0},
        {"1_000", 1.0},  {"-0x10", -0.0}, {"1]", 1.0},         {"1}", 1.0},
        {"0x10", 0.0},   {"0x1p4", 0.0},  {"1.5e3\n", 1500.0}, {std::string("1\0005", 3), 1.0},
    });
}

TEST(ReadDouble, IsZeroWhereThereIsNoNumber) {
    expect_read({
        {"", 0.0},
        {"abc", 0.0},
        {" 1", 0.0},
        {"\t1", 0.0},
        {"\n1", 0.0},
        {"+1", 0.0},
        {"+", 0.0},
        {"-", 0.0},
        {"--1", 0.0},
        {"-+1", 0.0},
        {"- 1", 0.0},
        {".", 0.0},
        {"-.", 0.0},
        {"e5", 0.0},
        {".e5", 0.0},
        {"-e5", 0.0},
        {"x1", 0.0},
        {",5", 0.0},
        {"in", 0.0},
        {"na", 0.0},
        {"-in", 0.0},
        {"+inf", 0.0},
        {std::string("\0001", 2), 0.0},
        {"$1", 0.0},
        {"\xEF\xBB\xBF"
         "1",
         0.0},
    });
}

TEST(ReadDouble, ReadsInfinitiesByName) {
    expect_read({{"inf", infinity},
                 {"INF", infinity},
                 {"Inf", infinity},
                 {"-inf", -infinity},
                 {"infinity", infinity},
                 {"-Infinity", -infinity},
                 {"infinite", infinity},
                 {"info", infinity}});
}

TEST(ReadDouble, ReadsNotANumberByName) {
    for (const char* text : {"nan", "NaN", "NAN", "-nan", "nan(1)", "nano"}) {
        EXPECT_TRUE(std::isnan(read(text))) << text;
    }
}

// ---- Which double ------------------------------------------------------------------------------

TEST(ReadDouble, OutOfRangeIsAnInfinityOrAZeroOfTheSameSign) {
    expect_read({{"1e400", infinity},
                 {"-1e400", -infinity},
                 {"1e309", infinity},
                 {"1e-400", 0.0},
                 {"-1e-400", -0.0},
                 {"1e999999999999", infinity},
                 {"-1e999999999999", -infinity},
                 {"1e-999999999999", 0.0},
                 {"-1e-999999999999", -0.0},
                 {"1e99999999999999999999", infinity},
                 {"1e-99999999999999999999", 0.0},
                 {"-2e308", -infinity}});
}

TEST(ReadDouble, ReadsTheEndsOfTheRange) {
    expect_read({
        {"1.7976931348623157e308", 0x1.fffffffffffffp+1023},
        {"1.7976931348623158e308", 0x1.fffffffffffffp+1023},
        {"1.7976931348623159e308", infinity},
        {"-1.7976931348623158e308", -0x1.fffffffffffffp+1023},
        {"-1.7976931348623159e308", -infinity},
        {"179769313486231580793e288", 0x1.fffffffffffffp+1023}, // just below half a step above
        {"179769313486231580794e288", infinity},                // just above it
        {"2.2250738585072014e-308", 0x1p-1022},                 // the least normal number
        {"2.2250738585072012e-308", 0x1p-1022},
        {"2.2250738585072011e-308", 0x0.fffffffffffffp-1022}, // the greatest subnormal one
        {"5e-324", 0x1p-1074},                                // the least of all
        {"4.9406564584124654e-324", 0x1p-1074},
        {"2.4703282292062328e-324", 0x1p-1074}, // just above half of it
        {"2.4703282292062327e-324", 0.0},       // just below
        {"-2.4703282292062328e-324", -0x1p-1074},
        {"-2.4703282292062327e-324", -0.0},
        {"1e-323", 0x1p-1073},
    });
}

TEST(ReadDouble, RoundsToTheNearestAndTiesToEven) {
    const std::string zeros(780, '0');
    const std::string nines(780, '9');
    expect_read({
        {"0.1", 0x1.999999999999ap-4},
        {"0.3", 0x1.3333333333333p-2},
        {"9007199254740991", 0x1.fffffffffffffp+52},
        {"9007199254740992", 0x1p+53},
        {"9007199254740993", 0x1p+53}, // half way, to even: down
        {"9007199254740993." + zeros, 0x1p+53},
        {"9007199254740993." + zeros + "1", 0x1.0000000000001p+53},
        {"9007199254740992." + nines, 0x1p+53},
        {"9007199254740994", 0x1.0000000000001p+53},
        {"9007199254740995", 0x1.0000000000002p+53}, // half way, to even: up
        {"9007199254740994." + nines, 0x1.0000000000001p+53},
        {"9223372036854775807", 0x1p+63},
        {"18446744073709551615", 0x1p+64},
        {"1.00000000000000011102230246251565404236316680908203125", 1.0}, // half way
        {"1.00000000000000011102230246251565404236316680908203124", 1.0},
        {"1.00000000000000011102230246251565404236316680908203126", 0x1.0000000000001p+0},
        {"1.00000000000000033306690738754696212708950042724609375", 0x1.0000000000002p+0},
    });
}

TEST(ReadDouble, ReadsHundredsOfDigits) {
    const std::string zeros(800, '0');
    expect_read({
        {"0." + std::string(800, '3'), 0x1.5555555555555p-2},
        {"0." + std::string(800, '9'), 1.0},
        {std::string(800, '9'), infinity},
        {'-' + std::string(800, '9'), -infinity},
        {std::string(800, '9') + "e-800", 1.0},
        {'1' + zeros, infinity},
        {'1' + zeros + "e-800", 1.0},
        {"0." + zeros + '1', 0.0},
        {"-0." + zeros + '1', -0.0},
        {"0." + zeros + "1e801", 1.0},
        {zeros + "1.5", 1.5},
        {"1." + zeros + '1', 1.0},
        {"1.5" + zeros + "x", 1.5},
        {"1e" + zeros + '2', 100.0},
    });
}

TEST(ReadDouble, ReadsBackSeventeenDigitsOfAnyDouble) {
    std::mt19937_64 random(20240229);
    for (int i = 0; i != 20000; ++i) {
        const std::uint64_t pattern = random();
        double number;
        std::memcpy(&number, &pattern, sizeof number);
        if (!std::isfinite(number)) {
            continue;
        }
        char text[40];
        const int length = std::snprintf(text, sizeof text, "%.17g", number);
        ASSERT_EQ(bits(detail::read_double(text, static_cast<std::size_t>(length))), pattern)
            << text;
    }
}

TEST(ReadDouble, AgreesWithTheRuntimeLibraryOnAnyDigits) {
    std::mt19937_64 random(19991231);
    for (int i = 0; i != 20000; ++i) {
        std::string text(random() % 2 == 0 ? "" : "-");
        for (auto digits = 1 + random() % 25; digits != 0; --digits) {
            text += static_cast<char>('0' + random() % 10);
        }
        text.insert(1 + static_cast<std::size_t>(random() % text.size()), ".");
        if (text[0] == '-' && text[1] == '.') {
            text.insert(1, "0");
        }
        text += 'e' + std::to_string(static_cast<int>(random() % 700) - 360);
        ASSERT_EQ(bits(read(text)), bits(std::strtod(text.c_str(), nullptr))) << text;
    }
}

// ---- Which characters are read -----------------------------------------------------------------

TEST(ReadDouble, ReadsExactlyAsManyCharactersAsItIsTold) {
    const std::string text = "-12.5e+10";
    const double numbers[] = {0.0, 0.0, -1.0, -12.0, -12.0, -12.5, -12.5, -12.5, -125.0, -1.25e11};
    for (std::size_t count = 0; count <= text.size(); ++count) {
        EXPECT_EQ(detail::read_double(text.data(), count), numbers[count]) << count;
        EXPECT_EQ(read(text.substr(0, count)), numbers[count]) << count;
    }
}

TEST(ReadDouble, EndsAtTheCountInTheMiddleOfANumber) {
    EXPECT_EQ(detail::read_double("12345", 0), 0.0);
    EXPECT_EQ(detail::read_double("12345", 1), 1.0);
    EXPECT_EQ(detail::read_double("12345", 3), 123.0);
    EXPECT_EQ(detail::read_double("0.12345678901234567890", 10), 0.12345678);
    EXPECT_EQ(detail::read_double("1e10", 3), 10.0);
    EXPECT_EQ(detail::read_double("infinity", 2), 0.0);
    EXPECT_EQ(detail::read_double("infinity", 4), infinity);
}

TEST(ReadDouble, NeedsNoTerminator) {
    // Long runs of digits are read several at a time: none of them may reach over the end.
    for (std::size_t count = 1; count != 64; ++count) {
        const double ones = std::strtod(std::string(count, '1').c_str(), nullptr);
        EXPECT_EQ(read(std::string(count, '1')), ones);
        EXPECT_EQ(read("." + std::string(count, '0')), 0.0);
        EXPECT_EQ(read("1e" + std::string(count, '0')), 1.0);
    }
}

// ---- Locales -----------------------------------------------------------------------------------

TEST(ReadDouble, ReadsADecimalPointInEveryLocale) {
    const ScopedCLocale c_locale(LC_ALL, "de_DE.UTF-8");
    ASSERT_TRUE(c_locale.succeeded()) << "LOCPATH must name the folder of the generated locale";
    const ScopedGlobalLocale cpp_locale(grouping_locale("\3")); // a decimal semicolon
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    ASSERT_EQ(std::strtod("1,5", nullptr), 1.5) << "the test needs the locale to be in effect";

    const std::string digits(800, '3');
    expect_read({
        {"1.5", 1.5},
        {"1,5", 1.0},
        {"1.234,5", 1.234},
        {"-2.5e-3", -0.0025},
        {"0." + digits, 0x1.5555555555555p-2},
        {"9007199254740993.0000000000000000000000001", 0x1.0000000000001p+53},
    });
}

TEST(ReadDouble, NeverThrows) {
    static_assert(noexcept(detail::read_double("", 0)));
}

} // namespace
} // namespace foundation::json::test
