/// @file
/// The message of a failed conversion, for tests that take it apart.
#ifndef FOUNDATION_JSON_TESTS_CONVERT_CONVERSION_ERROR_HPP
#define FOUNDATION_JSON_TESTS_CONVERT_CONVERSION_ERROR_HPP

#include <foundation/json/convert.hpp>

#include <string>

namespace foundation::json::test {

/// The what() of the ConversionError that the action throws.
template <class Action>
std::string conversion_error(Action&& action) {
    try {
        action();
    } catch (const ConversionError& error) {
        return error.what();
    }
    return "(nothing was thrown)";
}

} // namespace foundation::json::test

#endif
