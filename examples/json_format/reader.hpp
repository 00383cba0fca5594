/// @file
/// A reader of JSON text: what a caller of foundation::json writes to get from text to a Value,
/// with errors that say exactly where and what.
#ifndef JSON_FORMAT_READER_HPP
#define JSON_FORMAT_READER_HPP

#include <foundation/json/value.hpp>

#include <cstddef>
#include <string_view>

namespace json_format {

/// How deep arrays and objects may nest. Reading, and later writing and destroying the value,
/// recurses once per level, so the limit is what keeps hostile input from exhausting the stack.
constexpr std::size_t max_depth = 1000;

/// The value of a JSON text as RFC 8259 defines it: UTF-8, one value, nothing but blanks around it.
///
/// Numbers become the double kind. Where an object names a member twice the last wins. A surrogate
/// escape without its partner becomes U+FFFD.
/// @throws foundation::json::ParserException at the first byte that cannot continue a JSON text;
///         README.md tells which code means what
/// @throws std::bad_alloc if memory runs out
/// Complexity: linear in the length of the text, but for the lookup of member names.
foundation::json::Value read(std::string_view text);

} // namespace json_format

#endif
