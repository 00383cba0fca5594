/// @file
/// Random values, the same ones for the same seed.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_TREES_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_TREES_HPP

#include "support/tree.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>

namespace foundation::json::test {

/// Another seed in every run, unless the environment variable FOUNDATION_JSON_TEST_SEED names the
/// one of a run to be repeated. Tests print the seed with every failure.
inline std::uint64_t random_seed() {
    const char* const chosen = std::getenv("FOUNDATION_JSON_TEST_SEED");
    return chosen != nullptr ? std::strtoull(chosen, nullptr, 0) : std::random_device()();
}

class RandomTrees {
public:
    enum class Kinds {
        all,      ///< every kind and number
        readable, ///< what survives a JSON text: no Undefined, finite doubles, no other numbers
    };

    RandomTrees(std::uint64_t seed, Kinds kinds) : random_(seed), kinds_(kinds) {}

    /// A number from 0 to limit - 1.
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }

    /// True once in so many times.
    bool once_in(std::size_t times) { return below(times) == 0; }

    /// Of every size and length of digits; finite.
    template <class Number>
    Number number() {
        switch (below(6)) {
        case 0: // any bits
            return finite_bits<Number>();
        case 1: // an integer, mostly about the size where the notation changes
            return static_cast<Number>(signed_integer(once_in(3) ? 1u << 30 : 4000000));
        case 2: // a short decimal
            return static_cast<Number>(signed_integer(1u << (1 + below(30))) * decimal_power(12));
        case 3: // the neighbour of a short decimal
            return std::nextafter(static_cast<Number>(signed_integer(100000) * decimal_power(30)),
                                  static_cast<Number>(signed_integer(2)));
        case 4: // a decimal of about as many digits as the first format has
            return static_cast<Number>(std::strtod(decimal(1 + below(18)).c_str(), nullptr));
        default: // a few bits in a row
            return static_cast<Number>(std::ldexp(signed_integer(16), int(below(120)) - 60));
        }
    }

    /// Any bytes, with many of those that need an escape.
    std::string string() {
        static constexpr char special[] = "\"\\/\b\t\n\f\r\0\x01\x1f\x7f\xc3\xa9\xff aB0";
        std::string text;
        for (std::size_t length = below(once_in(8) ? 80 : 8); length > 0; --length) {
            text += once_in(3) ? static_cast<char>(below(256)) : special[below(sizeof special - 1)];
        }
        return text;
    }

    Tree tree(std::size_t levels = 4) {
        switch (below(levels > 0 ? 8 : 4)) {
        case 0:
            return word();
        case 1:
        case 2:
            return any_number();
        case 3:
            return {string()};
        case 4:
        case 5:
            return {elements(levels - 1)};
        default:
            return {members(levels - 1)};
        }
    }

private:
    template <class Number>
    Number finite_bits() {
        for (;;) {
            const std::uint64_t bits = random_();
            Number result = 0;
            std::memcpy(&result, &bits, sizeof result);
            if (std::isfinite(result)) {
                return result;
            }
        }
    }

    double signed_integer(std::uint64_t limit) {
        const double magnitude = static_cast<double>(random_() % limit);
        return once_in(3) ? -magnitude : magnitude;
    }

    /// From 10 to the minus limit up to 10 to the limit.
    double decimal_power(int limit) {
        return std::pow(10.0,
                        static_cast<int>(below(static_cast<std::size_t>(2 * limit) + 1)) - limit);
    }

    std::string decimal(std::size_t digits) {
        std::string text = once_in(3) ? "-0." : "0.";
        for (; digits > 0; --digits) {
            text += static_cast<char>('0' + below(10));
        }
        return text + "e" + std::to_string(static_cast<int>(below(30)) - 12);
    }

    Tree word() {
        switch (below(kinds_ == Kinds::all ? 4 : 3)) {
        case 0:
            return {Null()};
        case 1:
            return {true};
        case 2:
            return {false};
        default:
            return {Undefined()};
        }
    }

    Tree any_number() {
        switch (below(kinds_ == Kinds::all ? 6 : 1)) {
        case 1:
            return {number<float>()};
        case 2:
            return {static_cast<long long>(random_()) >> below(64)};
        case 3:
            return {static_cast<unsigned long long>(random_()) >> below(64)};
        case 4:
            return once_in(2) ? Tree{std::nan("")} : Tree{once_in(2) ? HUGE_VAL : -HUGE_VAL};
        default:
            return {number<double>()};
        }
    }

    Elements elements(std::size_t levels) {
        Elements result;
        for (std::size_t size = below(5); size > 0; --size) {
            result.push_back(tree(levels));
        }
        return result;
    }

    Members members(std::size_t levels) {
        std::map<std::string, Tree> by_name;
        for (std::size_t size = below(5); size > 0; --size) {
            by_name[string()] = tree(levels);
        }
        Members result;
        for (auto& [name, value] : by_name) {
            result.push_back({name, value});
        }
        return result;
    }

    std::mt19937_64 random_;
    Kinds kinds_;
};

} // namespace foundation::json::test

#endif
