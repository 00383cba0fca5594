/// @file
/// The text of numbers as ECMAScript's Number::toString defines it, implemented once more for the
/// tests: the shortest digits are those of std::to_chars, then comes the notation, case by case.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_SHORTEST_RULE_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_SHORTEST_RULE_HPP

#include "support/float_environments.hpp"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <string>

namespace foundation::json::test {

/// @param digits  without trailing zeros
/// @param point   how many digits stand before the point, if they were written without an exponent
inline std::string in_ecmascript_notation(const std::string& digits, int point) {
    const int count = static_cast<int>(digits.size());
    if (count <= point && point <= 21) {
        return digits + std::string(static_cast<std::size_t>(point - count), '0');
    }
    if (0 < point && point <= 21) {
        const auto before = static_cast<std::size_t>(point);
        return digits.substr(0, before) + "." + digits.substr(before);
    }
    if (-6 < point && point <= 0) {
        return "0." + std::string(static_cast<std::size_t>(-point), '0') + digits;
    }
    const std::string exponent = (point > 0 ? "e+" : "e-") + std::to_string(std::abs(point - 1));
    return digits.substr(0, 1) + (count > 1 ? "." + digits.substr(1) : "") + exponent;
}

template <class Number>
[[gnu::noinline]] std::string shortest_rule_text(const Number& number) {
    if (number == 0) {
        return "0";
    }
    char buffer[40];
    char* const begin = buffer;
    const auto result = std::to_chars(begin, begin + sizeof buffer, std::fabs(number),
                                      std::chars_format::scientific);
    const std::string text(begin, result.ptr);
    const std::size_t letter = text.find('e');
    std::string digits = text.substr(0, letter);
    if (digits.size() > 1) {
        digits.erase(1, 1);
    }
    return (number < 0 ? "-" : "") +
           in_ecmascript_notation(digits, std::stoi(text.substr(letter + 1)) + 1);
}

/// @param number  finite
template <class Number>
std::string expected_shortest_text(const Number& number) {
    const EnvironmentKeeper keeper;
    set_default_environment();
    return shortest_rule_text(number);
}

} // namespace foundation::json::test

#endif
