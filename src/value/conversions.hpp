/// @file
/// The strict accessors: a value's array or object in place, and an error for every other kind.
#ifndef FOUNDATION_JSON_SRC_VALUE_CONVERSIONS_HPP
#define FOUNDATION_JSON_SRC_VALUE_CONVERSIONS_HPP

#include "value/value_access.hpp"

namespace foundation::json::detail {

/// @throws std::runtime_error "invalid conversion: <source> to <target>"
[[noreturn]] void throw_invalid_conversion(const char* source, const char* target);

/// @throws std::runtime_error "invalid conversion: <kind> to JSON array" for other kinds
Array& strict_array(Value& value);
const Array& strict_array(const Value& value);

/// @throws std::runtime_error "invalid conversion: <kind> to JSON object" for other kinds
Object& strict_object(Value& value);
const Object& strict_object(const Value& value);

} // namespace foundation::json::detail

#endif
