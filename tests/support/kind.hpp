/// @file
/// The kind of a value, by its name.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_KIND_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_KIND_HPP

#include <foundation/json/content.hpp>

#include <string>

namespace foundation::json::test {

/// The name of a value's kind, as messages have it.
inline std::string kind_name(const Value& value) {
    return name_of(kind_of(value));
}

} // namespace foundation::json::test

#endif
