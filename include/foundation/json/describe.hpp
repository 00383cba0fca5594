/// @file
/// Shows errors of parsing. Part of the library foundation::json_parser; parse.hpp and
/// read.hpp include this header.
#ifndef FOUNDATION_JSON_DESCRIBE_HPP
#define FOUNDATION_JSON_DESCRIBE_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/parse_errors.hpp>

#include <string>
#include <string_view>

namespace foundation::json {

/// Describes an error for people, in three lines that each end with a line feed:
/// `NAME:LINE:COLUMN: what()`, the line of the text, and a caret under the position.
///
/// A tab is shown as a space, and any other character that does not print as a dot, also in the
/// name. Long lines are cut around the error. Wide and combining characters are taken into account.
/// @param error  of this parser, or of another one
/// @param name   of what was read, such as a file; if it is empty the description begins with LINE
/// @throws std::bad_alloc memory runs out
FOUNDATION_JSON_PARSER_EXPORT std::string describe(const ParserException& error,
                                                   std::string_view name = {});

} // namespace foundation::json

#endif
