/// @file
/// Compares the shortest text of random doubles, and of floats, with the plain rule: the digits of
/// std::to_chars, then the notation.
///
/// Usage: shortest_numbers [THREADS [DOUBLES [STEP]]]
///
/// DOUBLES is how many, 10^8 by default. Of the floats, one in STEP bit patterns is compared, every
/// one by default. Reports every difference; the exit status is 1 if there is one.
#include "number/shortest_digits.hpp"
#include "number/shortest_number_text.hpp"
#include "support/random_numbers.hpp"
#include "support/shortest_rule.hpp"

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace foundation::json;
using detail::FloatingBits;

std::atomic<std::uint64_t> compared;
std::atomic<std::uint64_t> differences;

template <class Number>
void compare(Number number) {
    if (!std::isfinite(number)) {
        return;
    }
    char room[detail::shortest_number_room];
    char* const begin = room;
    const std::string text(begin,
                           detail::shortest_number_text(begin, FloatingBits<Number>(number)));
    ++compared;
    if (const std::string expected = test::shortest_rule_text(number); text != expected) {
        ++differences;
        std::printf("%a: %s, expected %s\n", static_cast<double>(number), text.c_str(),
                    expected.c_str());
    }
}

void compare_doubles(std::uint64_t seed, std::uint64_t count) {
    test::RandomNumbers<double> numbers(seed);
    for (std::uint64_t i = 0; i < count; i += 8) {
        // Half of them are any bits, which are of any exponent.
        for (int any = 0; any < 4; ++any) {
            compare(numbers.any_bits());
        }
        compare(numbers.decimal());
        compare(numbers.whole());
        compare(numbers.fraction_of_two());
        compare(numbers.between_zero_and_one());
    }
}

void compare_floats(std::uint64_t first, std::uint64_t step) {
    for (std::uint64_t bits = first; bits <= 0xFFFFFFFF; bits += step) {
        const auto word = static_cast<std::uint32_t>(bits);
        float number = 0;
        std::memcpy(&number, &word, sizeof number);
        compare(number);
    }
}

/// The number that an argument gives, from 1 on.
std::uint64_t number_of(const char* text) {
    char* end = nullptr;
    const std::uint64_t number = std::strtoull(text, &end, 10);
    if (*text < '0' || *text > '9' || *end != '\0' || number == 0) {
        std::fprintf(stderr,
                     "shortest_numbers: '%s' is not a number in range (usage: shortest_numbers "
                     "[THREADS [DOUBLES [STEP]]])\n",
                     text);
        std::exit(2);
    }
    return number;
}

} // namespace

int main(int argc, char** argv) {
    const std::uint64_t threads = argc > 1 ? number_of(argv[1]) : 2;
    const std::uint64_t doubles = argc > 2 ? number_of(argv[2]) : 100'000'000;
    const std::uint64_t step = argc > 3 ? number_of(argv[3]) : 1;
    if (argc > 4) {
        std::fprintf(stderr,
                     "shortest_numbers: '%s' is one argument too many (usage: "
                     "shortest_numbers [THREADS [DOUBLES [STEP]]])\n",
                     argv[4]);
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::thread> workers;
    for (std::uint64_t i = 0; i < threads; ++i) {
        workers.emplace_back([=] {
            compare_doubles(i + 1, doubles / threads);
            compare_floats(i * step, threads * step);
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::printf("%llu numbers compared in %.0f s, %llu differences\n",
                static_cast<unsigned long long>(compared), seconds.count(),
                static_cast<unsigned long long>(differences));
    return differences == 0 ? 0 : 1;
}
