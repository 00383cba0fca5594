/// @file
/// Objects of a caller's own types as values.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_OBJECT_VALUE_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_OBJECT_VALUE_HPP

#include <foundation/json/detail/text_sink.hpp>
#include <foundation/json/value.hpp>

#include <string_view>

namespace foundation::json::detail {

/// A value that is written as the object is, with a further member.
/// @throws ConversionError  something in it has no value
/// @throws std::exception   it is no object in JSON
Value tagged_value(std::string_view member, std::string_view tag, const AnyObject& object);

} // namespace foundation::json::detail

#endif
