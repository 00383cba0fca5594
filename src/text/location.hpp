/// @file
/// Locations within values, as JSON Pointers (RFC 6901) and as messages show them.
#ifndef FOUNDATION_JSON_SRC_TEXT_LOCATION_HPP
#define FOUNDATION_JSON_SRC_TEXT_LOCATION_HPP

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::detail {

/// Appends the token of a member to a JSON Pointer: `~` is written `~0`, `/` is written `~1`.
void append_name_token(std::string& pointer, std::string_view name);

/// Appends the token of an element.
void append_index_token(std::string& pointer, std::size_t index);

/// How messages begin that name a location: "at /servers/3/port: ", or "at the root: ".
std::string describe_location(std::string_view pointer);

} // namespace foundation::json::detail

#endif
