/// @file
/// The reference algorithm for the text of doubles and floats: the lower of two precisions at which
/// the text reads back as the same number, in plain notation below one million, and with an
/// exponent from one million on.
#ifndef FOUNDATION_JSON_SRC_NUMBER_NUMBER_TEXT_HPP
#define FOUNDATION_JSON_SRC_NUMBER_NUMBER_TEXT_HPP

#include <foundation/json/detail/floating_bits.hpp>

namespace foundation::json::detail {

/// Holds any text of number_text(), NUL-terminated.
using NumberBuffer = char[80];

/// The text of a number, quoted for NaN and the infinities.
///
/// Depends on the radix character of the C locale and the rounding direction of std::fegetround(),
/// but on nothing else of the floating-point environment, which stays unchanged.
/// @return the text, in the buffer or in static storage
const char* number_text(NumberBuffer& buffer, FloatingBits<double> bits);
const char* number_text(NumberBuffer& buffer, FloatingBits<float> bits);

/// Writes the text of a finite number to the buffer, in the current floating-point environment.
void format_double(NumberBuffer& buffer, const double& number);
void format_float(NumberBuffer& buffer, const float& number);

} // namespace foundation::json::detail

#endif
