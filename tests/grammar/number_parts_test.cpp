// Numbers that arrive in parts.
#include "grammar/numbers.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::detail {
namespace {

/// How much of a text skip_number() skips if it comes in two parts.
std::size_t skipped(std::string_view text, std::size_t first) {
    NumberPart part = NumberPart::begin;
    const char* const border = text.data() + first;
    const char* const end = skip_number(text.data(), border, part);
    const char* const found =
        end == border ? skip_number(border, text.data() + text.size(), part) : end;
    return static_cast<std::size_t>(found - text.data());
}

TEST(SkipNumber, EndsWhereTheNumberDoesOrCannotGoOn) {
    struct Case {
        std::string_view text;
        std::size_t end;
    };
    const Case cases[] = {
        {"0", 1},      {"12,", 2},    {"-", 1},     {"-a", 1},     {"00", 1},  {"-01", 2},
        {"1.", 2},     {"1.x", 2},    {"1.5.5", 3}, {"1e", 2},     {"1E+", 3}, {"1e+x", 3},
        {"1e5e5", 3},  {"1-1", 1},    {"+1", 0},    {".5", 0},     {"e5", 0},  {"", 0},
        {"1e-05,", 5}, {"1.050]", 5}, {"--", 1},    {"0.0e0 ", 5}, {"1..", 2}, {"1e++", 3},
    };
    for (const Case& c : cases) {
        for (std::size_t first = 0; first <= c.text.size(); ++first) {
            EXPECT_EQ(skipped(c.text, first), c.end) << c.text << ", first " << first;
        }
    }
}

TEST(SkipNumber, EndsWhereScanNumberDoes) {
    constexpr std::string_view bytes = "017-+.eE x";
    // All texts of so many of these bytes, of which the first may begin a number.
    std::string text(7, ' ');
    for (std::size_t number = 0; number < 10000000; number += 13) {
        std::size_t rest = number;
        for (char& byte : text) {
            byte = bytes[rest % bytes.size()];
            rest /= bytes.size();
        }
        if (begins_number(text[0])) {
            const NumberToken token = scan_number(text.data(), text.data() + text.size());
            const auto expected = static_cast<std::size_t>(token.end - text.data());
            ASSERT_EQ(skipped(text, number % 8), expected) << text;
        }
    }
}

} // namespace
} // namespace foundation::json::detail
