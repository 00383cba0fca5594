/// @file
/// Shows where errors are.
#ifndef FOUNDATION_JSON_SRC_READING_QUOTED_LINE_HPP
#define FOUNDATION_JSON_SRC_READING_QUOTED_LINE_HPP

#include <foundation/json/parse_errors.hpp>

#include <string>
#include <string_view>

namespace foundation::json::detail {

/// A message, the line of text where an error is, and a caret under the position, as describe()
/// shows them.
std::string describe_line(std::string_view message, const ParserException& where);

} // namespace foundation::json::detail

#endif
