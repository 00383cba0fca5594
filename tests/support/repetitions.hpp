/// @file
/// The number of rounds of random tests.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_REPETITIONS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_REPETITIONS_HPP

#include <cstddef>
#include <cstdlib>

namespace foundation::json::test {

/// How many random values of each sort a test compares: few, unless the environment variable
/// FOUNDATION_JSON_TEST_ROUNDS asks for another number.
inline std::size_t test_repetitions() {
    const char* const chosen = std::getenv("FOUNDATION_JSON_TEST_ROUNDS");
    return chosen != nullptr ? static_cast<std::size_t>(std::strtoull(chosen, nullptr, 10)) : 5000;
}

} // namespace foundation::json::test

#endif
