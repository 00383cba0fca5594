/// @file
/// How the program shows a ParserException.
#ifndef JSON_FORMAT_REPORT_HPP
#define JSON_FORMAT_REPORT_HPP

#include <foundation/json/parse_errors.hpp>

#include <string>

namespace json_format {

/// Three lines: where and what, the piece of input around it, and a caret under the failing byte.
///
///     numbers.json:1:4: Error in fractional component after decimal place while parsing value ...
///     [1.]
///        ^
///
/// The piece of input takes one column per character: what a terminal cannot show, or would obey,
/// becomes a dot, a tab a blank.
std::string report(const std::string& file, const foundation::json::ParserException& error);

} // namespace json_format

#endif
