#include "number/read_double.hpp"

#include "number/default_environment.hpp"

#include <fast_float/fast_float.h>

#include <system_error>

namespace foundation::json::detail {

namespace {

/// Not inlined, so that all its arithmetic is between two changes of the environment.
[[gnu::noinline]] std::errc read(const char* text, std::size_t count, double& number) noexcept {
    return fast_float::from_chars(text, text + count, number).ec;
}

} // namespace

double read_double(const char* text, std::size_t count) noexcept {
    [[maybe_unused]] const DoublePrecision precision;
    double number = 0;
    return read(text, count, number) == std::errc::invalid_argument ? 0 : number;
}

} // namespace foundation::json::detail
