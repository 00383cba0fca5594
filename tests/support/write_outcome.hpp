/// @file
/// What writing a text comes to: the text, or the error.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_WRITE_OUTCOME_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_WRITE_OUTCOME_HPP

#include <foundation/json/write.hpp>

#include <string>

namespace foundation::json::test {

/// The what() of the WriteError that an action throws.
template <class Action>
std::string write_error(Action&& action) {
    try {
        action();
    } catch (const WriteError& error) {
        return error.what();
    }
    return "(no WriteError was thrown)";
}

/// As stringified(): the text, or "error at " and the pointer.
template <class Action>
std::string text_or_location(Action&& action) {
    try {
        return action();
    } catch (const WriteError& error) {
        return "error at " + error.pointer();
    }
}

} // namespace foundation::json::test

#endif
