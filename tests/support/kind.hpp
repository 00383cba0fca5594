/// @file
/// The kind of a value, as a caller can learn it.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_KIND_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_KIND_HPP

#include <foundation/json/value.hpp>

#include <stdexcept>
#include <string>

namespace foundation::json::test {

/// The name of a value's kind, from the message of length(); an array has a length instead.
inline std::string kind_of(const Value& value) {
    try {
        static_cast<void>(value.length());
        return "JSON array";
    } catch (const std::runtime_error& error) {
        const std::string message = error.what();
        return message.substr(message.rfind(':') + 1);
    }
}

} // namespace foundation::json::test

#endif
