/// @file
/// Number text to double, independent of locales.
#ifndef FOUNDATION_JSON_SRC_NUMBER_READ_DOUBLE_HPP
#define FOUNDATION_JSON_SRC_NUMBER_READ_DOUBLE_HPP

#include <cstddef>

namespace foundation::json::detail {

/// Reads the longest leading number among `count` characters, in the form std::from_chars reads.
///
/// @return the nearest double; an infinity or zero with the number's sign if out of range; 0 if the
///         text does not begin with a number
double read_double(const char* text, std::size_t count) noexcept;

} // namespace foundation::json::detail

#endif
