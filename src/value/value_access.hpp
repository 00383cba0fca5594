/// @file
/// Defines ValueAccess::undefined(), which content.hpp declares for the library's own sources: the
/// Undefined that stands for what is not there.
#ifndef FOUNDATION_JSON_SRC_VALUE_VALUE_ACCESS_HPP
#define FOUNDATION_JSON_SRC_VALUE_VALUE_ACCESS_HPP

#include <foundation/json/content.hpp>

namespace foundation::json::detail {

inline const Value& ValueAccess::undefined() noexcept {
    return Value::UNDEFINED;
}

} // namespace foundation::json::detail

#endif
