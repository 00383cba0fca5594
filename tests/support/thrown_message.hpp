/// @file
/// The message of the exception that an action throws.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_THROWN_MESSAGE_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_THROWN_MESSAGE_HPP

#include <stdexcept>
#include <string>
#include <typeinfo>

namespace foundation::json::test {

/// The what() of the std::runtime_error that the action throws; nothing derived from it counts.
template <class Action>
std::string thrown_message(Action&& action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        if (typeid(error) != typeid(std::runtime_error)) {
            return std::string("(thrown as ") + typeid(error).name() + ") " + error.what();
        }
        return error.what();
    }
    return "(nothing was thrown)";
}

} // namespace foundation::json::test

#endif
