/// @file
/// The strict accessors: a value's array or object in place, and an error for every other kind.
#ifndef FOUNDATION_JSON_SRC_VALUE_CONVERSIONS_HPP
#define FOUNDATION_JSON_SRC_VALUE_CONVERSIONS_HPP

#include "value/value_access.hpp"

#include <boost/variant/get.hpp>

namespace foundation::json::detail {

/// @throws std::runtime_error "invalid conversion: <source> to <target>"
[[noreturn]] void throw_invalid_conversion(const char* source, const char* target);

/// @throws std::runtime_error "invalid conversion: <kind> to <target>"
[[noreturn]] void throw_invalid_conversion(const Value& source, const char* target);

/// The content of one kind, const if the value is.
/// @throws std::runtime_error "invalid conversion: <kind> to <kind of Content>" for other kinds
template <class Content, class AnyValue>
auto& strict_content(AnyValue& value) {
    if (auto* const content = boost::strict_get<Content>(&ValueAccess::variant(value))) {
        return *content;
    }
    throw_invalid_conversion(value, traits<Content>::name);
}

/// @throws std::runtime_error "invalid conversion: <kind> to JSON array" for other kinds
inline Array& strict_array(Value& value) {
    return strict_content<Array>(value);
}

inline const Array& strict_array(const Value& value) {
    return strict_content<Array>(value);
}

/// @throws std::runtime_error "invalid conversion: <kind> to JSON object" for other kinds
inline Object& strict_object(Value& value) {
    return strict_content<Object>(value);
}

inline const Object& strict_object(const Value& value) {
    return strict_content<Object>(value);
}

} // namespace foundation::json::detail

#endif
