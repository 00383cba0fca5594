/// @file
/// The text of numbers by the rule of ECMAScript's Number::toString.
#ifndef FOUNDATION_JSON_SRC_NUMBER_SHORTEST_NUMBER_TEXT_HPP
#define FOUNDATION_JSON_SRC_NUMBER_SHORTEST_NUMBER_TEXT_HPP

#include <foundation/json/detail/floating_bits.hpp>

#include <cstddef>

namespace foundation::json::detail {

/// Room for every text of shortest_number_text(), with a reserve for computing in place.
constexpr std::size_t shortest_number_room = 40;

/// Writes a finite number with the fewest digits that read back as the same number of its type and,
/// of these, the nearest to it; in plain notation from 1e-6 up to 1e21, otherwise with an exponent.
/// Negative zero is `0`.
///
/// Computed in integer arithmetic: no part of the floating-point environment has an effect, and
/// none is changed.
///
/// @return the end of the text, of at most 25 characters
char* shortest_number_text(char* out, FloatingBits<double> bits) noexcept;
char* shortest_number_text(char* out, FloatingBits<float> bits) noexcept;

} // namespace foundation::json::detail

#endif
