/// @file
/// The tokens of JSON Pointers (RFC 6901).
#ifndef FOUNDATION_JSON_SRC_TEXT_POINTER_TOKEN_HPP
#define FOUNDATION_JSON_SRC_TEXT_POINTER_TOKEN_HPP

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::detail {

/// Appends the token of a member: `~` is written `~0`, `/` is written `~1`.
inline void append_token(std::string& pointer, std::string_view name) {
    pointer += '/';
    for (const char byte : name) {
        if (byte == '~' || byte == '/') {
            pointer += '~';
            pointer += byte == '~' ? '0' : '1';
        } else {
            pointer += byte;
        }
    }
}

/// Appends the token of an element.
inline void append_token(std::string& pointer, std::size_t index) {
    pointer += '/';
    pointer += std::to_string(index);
}

} // namespace foundation::json::detail

#endif
