#include "grammar/numbers.hpp"

#include "number/default_environment.hpp"

#include <fast_float/fast_float.h>

#include <cstring>
#include <limits>

namespace foundation::json::detail {

namespace {

/// Finds the nearest double for every number; slower than nearest_double().
/// @return false if it is too large
[[gnu::noinline]] bool read_any(const char* from, const char* end, double& number) noexcept {
    const DefaultEnvironment environment;
    fast_float::from_chars(from, end, number);
    // Tests the bits: compilers might move a comparison of doubles behind the end of the
    // environment, where a subnormal number may trap.
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    constexpr std::uint64_t exponent = std::uint64_t{0x7FF} << 52;
    return (bits & exponent) != exponent;
}

// Larger exponents are cut to this: no text has enough digits to make up for it, and adding the
// number of digits to it does not overflow.
constexpr std::int64_t most_exponent = std::int64_t{1} << 60;

} // namespace

const char* scan_exponent(const char* from, const char* end, NumberToken& token) noexcept {
    ++from;
    const bool negative = from != end && *from == '-';
    from += negative || (from != end && *from == '+') ? 1 : 0;
    if (from == end || !is_digit(*from)) {
        token.error = INVALID_EXPONENT;
        return from;
    }
    std::int64_t exponent = 0;
    for (; from != end && is_digit(*from); ++from) {
        exponent = exponent < most_exponent / 10 ? exponent * 10 + (*from - '0') : most_exponent;
    }
    token.whole = false;
    token.magnitude.exponent += negative ? -exponent : exponent;
    return from;
}

Decimal leading_digits(const char* from, const char* end, std::int64_t exponent) noexcept {
    Decimal result{0, exponent, false};
    int count = 0;
    for (; from != end; ++from) {
        if (*from == '.') {
            continue;
        }
        if (count == Decimal::most_digits) {
            result.cut_off = result.cut_off || *from != '0';
            ++result.exponent;
        } else {
            result.digits = result.digits * 10 + static_cast<std::uint64_t>(*from - '0');
            count += result.digits != 0 ? 1 : 0;
        }
    }
    return result;
}

std::optional<std::uint64_t> whole_number(const char* from, const char* end) noexcept {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t number = 0;
    for (; from != end; ++from) {
        const auto digit = static_cast<std::uint64_t>(*from - '0');
        if (number > most / 10 || number * 10 > most - digit) {
            return std::nullopt;
        }
        number = number * 10 + digit;
    }
    return number;
}

bool number_value(const char* from, const NumberToken& token, double& number) noexcept {
    switch (nearest_double(token.magnitude, number)) {
    case Rounding::decided:
        number = token.negative ? -number : number;
        return true;
    case Rounding::too_large:
        return false;
    default:
        return read_any(from, token.end, number);
    }
}

} // namespace foundation::json::detail
