/// @file
/// The whole library in one include.
///
/// foundation::json models JSON data in memory and writes it as JSON text:
///
/// - value.hpp: Value, a JSON value of one of ten kinds; the tags Null and Undefined
/// - builders.hpp: Element and Property, arrays and objects as expressions
/// - serializer.hpp: Serializer, serialize and pretty_print, values as JSON text
/// - parse_errors.hpp: ParseResult and ParserException, how reading JSON text can fail
/// - text_helpers.hpp: two text conversions for whoever writes a reader
/// - fwd.hpp: declarations of the classes, for headers that need no more
///
/// Each header stands alone; include the one you need where compile time matters.

/// @namespace foundation::json
/// JSON data in memory, and its text.

/// @namespace foundation::json::detail
/// What whoever writes a reader of JSON text may use besides.
#ifndef FOUNDATION_JSON_JSON_HPP
#define FOUNDATION_JSON_JSON_HPP

#include <foundation/json/builders.hpp>
#include <foundation/json/fwd.hpp>
#include <foundation/json/parse_errors.hpp>
#include <foundation/json/serializer.hpp>
#include <foundation/json/text_helpers.hpp>
#include <foundation/json/value.hpp>

#endif
