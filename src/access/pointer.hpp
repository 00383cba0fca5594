/// @file
/// The tokens of JSON Pointers.
#ifndef FOUNDATION_JSON_SRC_ACCESS_POINTER_HPP
#define FOUNDATION_JSON_SRC_ACCESS_POINTER_HPP

#include <string_view>

namespace foundation::json::detail {

/// Whether a token means an element of an array rather than a member's name: it consists of digits,
/// even if it has leading zeros, or is "-".
bool looks_like_index(std::string_view token) noexcept;

} // namespace foundation::json::detail

#endif
