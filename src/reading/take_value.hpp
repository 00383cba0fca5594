/// @file
/// Gives a caller's Value its new content.
#ifndef FOUNDATION_JSON_SRC_READING_TAKE_VALUE_HPP
#define FOUNDATION_JSON_SRC_READING_TAKE_VALUE_HPP

#include <foundation/json/content.hpp>

#include <utility>

namespace foundation::json::detail {

/// Moves a value to a target, which is unchanged if memory runs out; the source is unspecified
/// then.
inline void take_value(Value& target, Value& source) {
    if (kind_of(target) == kind_of(source)) {
        target.swap(source);
        return;
    }
    Value old(std::move(target)); // an array or object leaves an empty one
    try {
        target = std::move(source);
    } catch (...) {
        source = Value();        // gives memory back
        target = std::move(old); // takes memory for an array or object alone
        throw;
    }
}

} // namespace foundation::json::detail

#endif
