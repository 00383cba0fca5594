/// @file
/// Random numbers of all kinds that programs write.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_NUMBERS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_NUMBERS_HPP

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>

namespace foundation::json::test {

/// Random numbers for one test: of all kinds that programs write, and of random bits.
template <class Number>
class RandomNumbers {
public:
    explicit RandomNumbers(std::uint64_t seed) : random_(seed) {}

    Number any_bits() {
        const std::uint64_t bits = random_();
        Number number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

    /// Has few digits.
    Number decimal() {
        const auto digits = static_cast<double>(random_() % below_power_of_ten(17));
        return static_cast<Number>(digits / std::pow(10.0, static_cast<double>(random_() % 18)));
    }

    /// Has few digits, and any exponent.
    Number scaled_decimal() {
        using Limits = std::numeric_limits<Number>;
        constexpr int lowest = Limits::min_exponent10;
        constexpr auto powers = static_cast<std::uint64_t>(Limits::max_exponent10 - lowest);
        const int power = static_cast<int>(random_() % powers) + lowest;
        const std::string text =
            std::to_string(random_() % below_power_of_ten(9)) + "e" + std::to_string(power);
        if constexpr (std::is_same_v<Number, float>) {
            return std::strtof(text.c_str(), nullptr);
        } else {
            return std::strtod(text.c_str(), nullptr);
        }
    }

    Number whole() { return static_cast<Number>(random_() >> (random_() % 64)); }

    /// An odd number of halves, quarters, eighths ...
    Number fraction_of_two() {
        const auto odd = static_cast<double>(random_() >> (11 + random_() % 53) | 1);
        return static_cast<Number>(std::ldexp(odd, -static_cast<int>(random_() % 60)));
    }

    /// In degrees, with as many decimals as maps use.
    Number coordinate() {
        const auto millionths = static_cast<double>(random_() % 360000000);
        return static_cast<Number>(millionths / 1e6 - 180);
    }

    Number between_zero_and_one() { return std::uniform_real_distribution<Number>(0, 1)(random_); }

private:
    /// 10 to the power of 1 to limit.
    std::uint64_t below_power_of_ten(std::uint64_t limit) {
        std::uint64_t power = 10;
        for (std::uint64_t i = random_() % limit; i > 0; --i) {
            power *= 10;
        }
        return power;
    }

    std::mt19937_64 random_;
};

} // namespace foundation::json::test

#endif
