/// @file
/// The text of numbers, implemented once more for the tests: format with few digits, read back,
/// format with more digits if that is not the same number, remove zeros. Valid if the radix
/// character is a point; of the floating-point environment, only the rounding direction has an
/// effect.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_NUMBER_RULE_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_NUMBER_RULE_HPP

#include "support/float_environments.hpp"

#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace foundation::json::test {

inline std::string general_text(double number, int digits) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%.*G", digits, number);
    return text.data();
}

inline std::string exponent_text(double number, int digits) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%#.*E", digits - 1, number);
    return text.data();
}

inline double read_back(const std::string& text, double) {
    return std::strtod(text.c_str(), nullptr);
}

inline float read_back(const std::string& text, float) {
    return static_cast<float>(std::strtod(text.c_str(), nullptr));
}

/// Without the leading zeros of the exponent and, if asked, the trailing zeros of the mantissa.
inline std::string tidied(const std::string& text, bool tidy_mantissa) {
    const std::size_t letter = text.find('E');
    if (letter == std::string::npos) {
        return text;
    }
    std::string mantissa = text.substr(0, letter);
    std::string exponent = text.substr(letter + 2);
    exponent = std::to_string(std::stoi(exponent));
    if (tidy_mantissa) {
        mantissa.erase(mantissa.find_last_not_of('0') + 1);
        if (mantissa.back() == '.') {
            mantissa += '0';
        }
    }
    return mantissa + text.substr(letter, 2) + exponent;
}

/// @param few   significant digits that are tried first
/// @param many  significant digits that always suffice
template <class Number>
std::string two_format_text(Number number, int few, int many) {
    const bool plain = std::fabs(number) < Number(1000000);
    const auto text_of = [&](int digits) {
        return plain ? general_text(number, digits) : exponent_text(number, digits);
    };
    std::string text = text_of(few);
    if (read_back(text, number) != number) {
        text = text_of(many);
    }
    return tidied(text, !plain);
}

template <class Number>
std::string non_finite_text(Number number) {
    return std::isnan(number) ? "\"NaN\"" : number > 0 ? "\"Inf\"" : "\"-Inf\"";
}

[[gnu::noinline]] inline std::string rule_text(const double& number) {
    return std::isfinite(number) ? two_format_text(number, 15, 17) : non_finite_text(number);
}

[[gnu::noinline]] inline std::string rule_text(const float& number) {
    if (!std::isfinite(number)) {
        return non_finite_text(number);
    }
    return two_format_text(number, 6, std::fabs(number) == FLT_MAX ? 10 : 9);
}

template <class Number>
std::string expected_number_text(const Number& number) {
    const DefaultArithmetic arithmetic;
    return rule_text(number);
}

} // namespace foundation::json::test

#endif
