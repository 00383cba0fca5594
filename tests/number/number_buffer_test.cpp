/// @file
/// How number text uses the buffer it is given.
#include "number/number_text.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iterator>

namespace foundation::json::detail {
namespace {

/// A buffer of other characters, with more of them behind it.
struct DirtyBuffer {
    DirtyBuffer() {
        std::fill(std::begin(text), std::end(text), '9');
        std::fill(std::begin(behind), std::end(behind), '9');
    }

    bool behind_is_untouched() const {
        return std::all_of(std::begin(behind), std::end(behind), [](char c) { return c == '9'; });
    }

    NumberBuffer text;
    char behind[80];
};

TEST(NumberBuffer, IsTerminatedAfterTheTextWhateverItHeld) {
    struct Case {
        double number;
        const char* text;
    };
    const Case cases[] = {
        {0, "0"},
        {-0.0, "-0"},
        {0.1, "0.1"},
        {0.1 + 0.2, "0.30000000000000004"},
        {-2.5e-5, "-2.5E-5"},
        {1e6, "1.0E+6"},
        {1e100, "1.0E+100"},
        {-DBL_MAX, "-1.7976931348623157E+308"},
        {-DBL_MIN, "-2.2250738585072014E-308"},
        {-std::nextafter(DBL_MIN, 0.0), "-2.2250738585072009E-308"},
    };
    for (const auto& [number, text] : cases) {
        DirtyBuffer buffer;
        format_double(buffer.text, number);
        EXPECT_STREQ(buffer.text, text);
        EXPECT_TRUE(buffer.behind_is_untouched()) << text;
    }
}

TEST(NumberBuffer, IsTerminatedAfterTheTextOfAFloat) {
    struct Case {
        float number;
        const char* text;
    };
    const Case cases[] = {
        {0.0f, "0"},
        {0.1f, "0.1"},
        {3.0f, "3"},
        {1e6f, "1.0E+6"},
        {16777216.0f, "1.6777216E+7"},
        {-FLT_MAX, "-3.402823466E+38"},
        {-FLT_MIN, "-1.17549435E-38"},
    };
    for (const auto& [number, text] : cases) {
        DirtyBuffer buffer;
        format_float(buffer.text, number);
        EXPECT_STREQ(buffer.text, text);
        EXPECT_TRUE(buffer.behind_is_untouched()) << text;
    }
}

TEST(NumberBuffer, HoldsTheTextOfEveryFiniteNumber) {
    NumberBuffer buffer;
    EXPECT_STREQ(number_text(buffer, FloatingBits(999999.5)), "999999.5");
    EXPECT_STREQ(number_text(buffer, FloatingBits(1e6)), "1.0E+6");
    EXPECT_STREQ(number_text(buffer, FloatingBits(DBL_MAX)), "1.7976931348623157E+308");
    EXPECT_STREQ(number_text(buffer, FloatingBits(FLT_MAX)), "3.402823466E+38");
}

TEST(NumberBuffer, IsNotNeededForNumbersThatAreNotFinite) {
    NumberBuffer buffer = "untouched";
    EXPECT_STREQ(number_text(buffer, FloatingBits(std::nan(""))), "\"NaN\"");
    EXPECT_STREQ(number_text(buffer, FloatingBits(HUGE_VAL)), "\"Inf\"");
    EXPECT_STREQ(number_text(buffer, FloatingBits(-HUGE_VAL)), "\"-Inf\"");
    EXPECT_STREQ(number_text(buffer, FloatingBits(std::nanf(""))), "\"NaN\"");
    EXPECT_STREQ(number_text(buffer, FloatingBits(HUGE_VALF)), "\"Inf\"");
    EXPECT_STREQ(number_text(buffer, FloatingBits(-HUGE_VALF)), "\"-Inf\"");
    EXPECT_STREQ(buffer, "untouched");
}

} // namespace
} // namespace foundation::json::detail
