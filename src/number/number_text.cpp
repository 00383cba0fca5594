#include "number/number_text.hpp"
#include "number/fast_number_text.hpp"

#include "number/default_environment.hpp"
#include "number/read_double.hpp"
#include "system/locale.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace foundation::json::detail {

namespace {

/// The precisions of one kind of number, in the order in which they are tried.
struct Formats {
    const char* first;
    const char* fallback;
};

constexpr Formats double_plain{"%.15G", "%.17G"};
constexpr Formats double_exponent{"%#.14E", "%#.16E"};
constexpr Formats float_plain{"%.6G", "%.9G"};
constexpr Formats float_exponent{"%#.5E", "%#.8E"};
constexpr Formats float_largest{"%#.5E", "%#.9E"};

/// Whether both conversions, the locale-independent one and the C library's, read the text as
/// exactly this number. In a locale with another radix character they differ, so one is not enough.
template <class Number>
bool round_trips(const char* text, Number number) {
    if (static_cast<Number>(read_double(text, std::strlen(text))) != number) {
        return false;
    }
    // Where it is not exact, it is not asked: an exact one would agree, since the only radix
    // character of a text that read_double() reads as a whole is a point.
    return !system::strtod_is_exact || static_cast<Number>(std::strtod(text, nullptr)) == number;
}

template <class Number>
void format(NumberBuffer& buffer, const Formats& formats, Number number) {
    const double widened = number;
    // The formats are the literals above.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(buffer, sizeof buffer, formats.first, widened);
    if (!round_trips(buffer, number)) {
        std::snprintf(buffer, sizeof buffer, formats.fallback, widened);
    }
#pragma GCC diagnostic pop
}

/// Removes leading zeros of the exponent, but keeps one digit: E+06 becomes E+6.
void trim_exponent(char* text) {
    char* const letter = std::strchr(text, 'E');
    if (letter == nullptr) {
        return;
    }
    char* const digits = letter + 2;
    const std::size_t zeros = std::min(std::strspn(digits, "0"), std::strlen(digits) - 1);
    std::memmove(digits, digits + zeros, std::strlen(digits + zeros) + 1);
}

/// Removes trailing zeros of the digits before the exponent, but keeps one right after the point.
/// Only `.` counts as the point: in a locale with another radix character, all zeros are removed.
/// The first digit is not zero.
void trim_mantissa(char* text) {
    char* const letter = std::strchr(text, 'E');
    char* end = letter;
    while (end[-1] == '0' && end[-2] != '.') {
        --end;
    }
    std::memmove(end, letter, std::strlen(letter) + 1);
}

template <class Number>
void format_plain(NumberBuffer& buffer, const Formats& formats, Number number) {
    format(buffer, formats, number);
    trim_exponent(buffer);
}

template <class Number>
void format_exponent(NumberBuffer& buffer, const Formats& formats, Number number) {
    format(buffer, formats, number);
    trim_exponent(buffer);
    trim_mantissa(buffer);
}

} // namespace

// Not to be inlined into number_text(); see DefaultEnvironment.

[[gnu::noinline]] void format_double(NumberBuffer& buffer, const double& number) {
    if (std::fabs(number) < 1e6) {
        format_plain(buffer, double_plain, number);
    } else {
        format_exponent(buffer, double_exponent, number);
    }
}

[[gnu::noinline]] void format_float(NumberBuffer& buffer, const float& number) {
    const float magnitude = std::fabs(number);
    if (magnitude < 1e6f) {
        format_plain(buffer, float_plain, number);
    } else if (magnitude < std::numeric_limits<float>::max()) {
        format_exponent(buffer, float_exponent, number);
    } else {
        format_exponent(buffer, float_largest, number);
    }
}

const char* number_text(NumberBuffer& buffer, FloatingBits<double> bits) {
    if (!bits.is_finite()) {
        return non_finite_text(bits);
    }
    const DefaultEnvironment environment(std::fegetround());
    format_double(buffer, bits.number());
    return buffer;
}

const char* number_text(NumberBuffer& buffer, FloatingBits<float> bits) {
    if (!bits.is_finite()) {
        return non_finite_text(bits);
    }
    const DefaultEnvironment environment(std::fegetround());
    format_float(buffer, bits.number());
    return buffer;
}

} // namespace foundation::json::detail
