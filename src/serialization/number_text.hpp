/// @file
/// The text of doubles and floats: the shorter of two fixed precisions that reads back to exactly
/// the same number, in plain notation below one million and in a trimmed exponent notation from one
/// million up.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_NUMBER_TEXT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_NUMBER_TEXT_HPP

#include "serialization/number_bits.hpp"

namespace foundation::json::detail {

/// Holds any text of number_text(), NUL-terminated.
using NumberBuffer = char[80];

/// The text of a number; a quoted one for NaN and the infinities.
///
/// Follows the radix character of the process's C locale and the direction of std::fegetround(),
/// and nothing else of the floating-point environment, which is left as it was.
/// @return the text, in the buffer or in static storage
const char* number_text(NumberBuffer& buffer, NumberBits<double> bits);
const char* number_text(NumberBuffer& buffer, NumberBits<float> bits);

/// Fills the buffer with the text of a finite number, computing in the environment as it is.
void format_double(NumberBuffer& buffer, const double& number);
void format_float(NumberBuffer& buffer, const float& number);

} // namespace foundation::json::detail

#endif
