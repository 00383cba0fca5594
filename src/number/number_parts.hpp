/// @file
/// The text of numbers in messages.
#ifndef FOUNDATION_JSON_SRC_NUMBER_NUMBER_PARTS_HPP
#define FOUNDATION_JSON_SRC_NUMBER_NUMBER_PARTS_HPP

#include <foundation/json/detail/number_parts.hpp>

#include <string>

namespace foundation::json::detail {

/// A number as messages show it, the same in every environment and locale: all digits of a whole
/// number of up to 64 bits, else as many as a double or float needs; "NaN", "Inf" and "-Inf".
/// @param is_float  whether the number comes from a float
std::string text_of(const NumberParts& number, bool is_float);

} // namespace foundation::json::detail

#endif
