/// @file
/// The text of number_text(), computed by integer arithmetic instead of trial and error wherever
/// its 128 bits suffice.
#ifndef FOUNDATION_JSON_SRC_NUMBER_FAST_NUMBER_TEXT_HPP
#define FOUNDATION_JSON_SRC_NUMBER_FAST_NUMBER_TEXT_HPP

#include <foundation/json/detail/floating_bits.hpp>

#include <cstddef>

namespace foundation::json::detail {

/// The text of a number that is not finite.
template <class Number>
const char* non_finite_text(const FloatingBits<Number>& bits) noexcept {
    if (bits.is_nan()) {
        return "\"NaN\"";
    }
    return bits.is_negative() ? "\"-Inf\"" : "\"Inf\"";
}

/// Room for every text of fast_number_text(), with a reserve for computing in place.
constexpr std::size_t fast_number_room = 40;

/// Whether number_text() depends on the number alone: the radix character is `.` and the rounding
/// mode is to nearest.
bool fast_number_text_applies() noexcept;

/// Writes the text of number_text(), without a terminator, if fast_number_text_applies(). No other
/// part of the floating-point environment has an effect, and none is changed.
///
/// A few numbers take number_text() itself: subnormal ones, the largest float, and those that lie
/// next to a half-way case between two texts, or have a text next to one between two numbers.
/// @return the end of the text
char* fast_number_text(char* out, FloatingBits<double> bits) noexcept;
char* fast_number_text(char* out, FloatingBits<float> bits) noexcept;

} // namespace foundation::json::detail

#endif
