/// @file
/// Strings as messages show them, for the library's other headers. Not for programs: what is here
/// may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_QUOTED_HPP
#define FOUNDATION_JSON_DETAIL_QUOTED_HPP

#include <foundation/json/export.hpp>

#include <string>
#include <string_view>

namespace foundation::json::detail {

/// Appends a text as it stands between the quotes of a JSON string: quotes, backslashes and control
/// bytes are escaped.
FOUNDATION_JSON_EXPORT void append_escaped(std::string& target, std::string_view text);

/// The same in double quotes.
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string quoted(std::string_view text);

} // namespace foundation::json::detail

#endif
/// @endcond
