/// @file
/// A value's kind and content as one line, so that a whole value is one expectation.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_DESCRIBE_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_DESCRIBE_HPP

#include "support/kind.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

namespace foundation::json::test {

/// The kind and the compact text: `JSON array [1,"two"]`, `int64 7`, `undefined`.
inline std::string describe(const Value& value) {
    const std::string text = serialize(value);
    return text.empty() ? kind_name(value) : kind_name(value) + " " + text;
}

} // namespace foundation::json::test

#endif
