/// @file
/// Reports the errors that a fuzz target finds: on standard error, and by ending the process, so
/// that the fuzzer keeps the input.
#ifndef FOUNDATION_JSON_FUZZ_EXPECT_HPP
#define FOUNDATION_JSON_FUZZ_EXPECT_HPP

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace foundation::json::fuzz {

inline void expect(bool condition, std::string_view expectation) {
    if (!condition) {
        std::cerr << "Not so: " << expectation << '\n';
        std::abort();
    }
}

template <class Actual, class Expected>
void expect_equal(const Actual& actual, const Expected& expected, std::string_view what) {
    if (!(actual == expected)) {
        std::cerr << "Differs: " << what << "\n  actual:   " << actual
                  << "\n  expected: " << expected << '\n';
        std::abort();
    }
}

} // namespace foundation::json::fuzz

#endif
