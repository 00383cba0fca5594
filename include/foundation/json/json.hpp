/// @file
/// The library foundation::json in one include: JSON values in memory, serialized in the fixed
/// format.
///
/// - value.hpp: Value, a JSON value of one of ten kinds; the tags Null and Undefined
/// - builders.hpp: Element and Property, arrays and objects as expressions
/// - serializer.hpp: Serializer, serialize and pretty_print, values in the fixed format
/// - parse_errors.hpp: ParseResult and ParserException, the errors of JSON parsers
/// - text_helpers.hpp: two conversions for a parser of your own
/// - fwd.hpp: declarations of the classes, for headers that need no more
///
/// Not included are content.hpp, to access content; write.hpp, to serialize for other programs;
/// pointer.hpp and patch.hpp, to change values; convert.hpp and chrono.hpp, for your own types; and
/// the headers of the parser. Each header can be included alone, which shortens compile time.

/// @namespace foundation::json
/// JSON values: access, changes, parsing, serializing.

/// @namespace foundation::json::detail
/// u16_to_u8() and string_to_double(), for a JSON parser of your own. All else in it is the
/// library's own, and may change.
#ifndef FOUNDATION_JSON_JSON_HPP
#define FOUNDATION_JSON_JSON_HPP

#include <foundation/json/builders.hpp>
#include <foundation/json/fwd.hpp>
#include <foundation/json/parse_errors.hpp>
#include <foundation/json/serializer.hpp>
#include <foundation/json/text_helpers.hpp>
#include <foundation/json/value.hpp>

#endif
