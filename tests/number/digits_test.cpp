/// @file
/// Decimal digits as text.
#include "number/digits.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

namespace foundation::json::detail {
namespace {

template <class Number>
std::string text_of(Number number) {
    char room[24];
    char* const text = room;
    return {text, integer_text(text, number)};
}

TEST(IntegerText, IsPlainDecimal) {
    EXPECT_EQ(text_of(0LL), "0");
    EXPECT_EQ(text_of(-1LL), "-1");
    EXPECT_EQ(text_of(LLONG_MAX), "9223372036854775807");
    EXPECT_EQ(text_of(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(text_of(0ULL), "0");
    EXPECT_EQ(text_of(ULLONG_MAX), "18446744073709551615");
}

TEST(IntegerText, HasAsManyDigitsAsTheNumber) {
    std::string nines;
    std::string one_and_zeros = "1";
    unsigned long long power = 1;
    for (int digits = 1; digits < 20; ++digits) {
        nines += '9';
        one_and_zeros += '0';
        power *= 10;
        EXPECT_EQ(text_of(power - 1), nines);
        EXPECT_EQ(text_of(power), one_and_zeros);
        if (digits < 19) {
            const auto signed_power = static_cast<long long>(power);
            EXPECT_EQ(text_of(signed_power - 1), nines);
            EXPECT_EQ(text_of(signed_power), one_and_zeros);
            EXPECT_EQ(text_of(-signed_power), "-" + one_and_zeros);
        }
    }
}

template <class Number>
std::string quick_text_of(Number number) {
    char room[32];
    char* const text = room;
    return {text, quick_integer_text(text, number)};
}

TEST(QuickIntegerText, IsTheSame) {
    for (unsigned long long number = 0; number != 200; ++number) {
        EXPECT_EQ(quick_text_of(number), std::to_string(number));
        const unsigned long long longer = number * 100000000 + 12345678; // up to two digits more
        EXPECT_EQ(quick_text_of(longer), std::to_string(longer));
    }
    std::mt19937_64 random(10);
    for (int i = 0; i < 100000; ++i) {
        const unsigned long long number = random() >> random() % 64;
        ASSERT_EQ(quick_text_of(number), std::to_string(number));
        const auto with_sign = static_cast<long long>(random()) >> random() % 64;
        ASSERT_EQ(quick_text_of(with_sign), std::to_string(with_sign));
    }
    EXPECT_EQ(quick_text_of(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(quick_text_of(ULLONG_MAX), "18446744073709551615");
}

// ---- Seventeen digits ----------------------------------------------------------------------

/// All seventeen digits, and how many there are without trailing zeros.
template <class AnyDigits>
std::string described(std::uint64_t number) {
    const AnyDigits digits(number);
    char rest[16];
    digits.store_behind_first(rest);
    return digits.first() + std::string(rest, 16) + " " + std::to_string(digits.count());
}

TEST(Digits, AreCountedWithoutTrailingZeros) {
    const struct {
        std::uint64_t number;
        const char* text;
    } rows[] = {
        {10000000000000000, "10000000000000000 1"},  {12000000000000000, "12000000000000000 2"},
        {12345678900000000, "12345678900000000 9"},  {12345678910000000, "12345678910000000 10"},
        {12345678901234560, "12345678901234560 16"}, {12345678901234567, "12345678901234567 17"},
        {99999999999999999, "99999999999999999 17"}, {10000000000000001, "10000000000000001 17"},
        {30000000100000000, "30000000100000000 9"},
    };
    for (const auto& [number, text] : rows) {
        EXPECT_EQ(described<Digits>(number), text);
        EXPECT_EQ(described<PlainDigits>(number), text);
    }
}

TEST(Digits, CanBeStoredWithoutTheFirstOnes) {
    for (int skipped = 0; skipped < 16; ++skipped) {
        const auto count = static_cast<std::size_t>(16 - skipped);
        char wide[16];
        char plain[16];
        Digits(12345678901234567).store_behind_first(wide, skipped);
        PlainDigits(12345678901234567).store_behind_first(plain, skipped);
        const std::string expected = std::string("2345678901234567").substr(16 - count);
        EXPECT_EQ(std::string(wide, count), expected);
        EXPECT_EQ(std::string(plain, count), expected);
    }
}

TEST(Digits, AreThoseOfThePlainWay) {
    std::mt19937_64 random(17);
    for (int i = 0; i < 10000 && !testing::Test::HasFailure(); ++i) {
        const std::uint64_t zeros = small_powers_of_10[static_cast<int>(random() % 17)];
        const std::uint64_t number =
            small_powers_of_10[16] + random() % (9 * small_powers_of_10[16]) / zeros * zeros;
        EXPECT_EQ(described<Digits>(number), described<PlainDigits>(number));
    }
}

TEST(CountDigits, ChangesAtPowersOfTen) {
    EXPECT_EQ(count_digits(0), 0);
    for (int digits = 1; digits < 20; ++digits) {
        EXPECT_EQ(count_digits(small_powers_of_10[digits] - 1), digits);
        EXPECT_EQ(count_digits(small_powers_of_10[digits]), digits + 1);
    }
    EXPECT_EQ(count_digits(ULLONG_MAX), 20);
}

} // namespace
} // namespace foundation::json::detail
