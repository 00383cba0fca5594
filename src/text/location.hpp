/// @file
/// Locations within values, as JSON Pointers (RFC 6901) and as messages show them.
#ifndef FOUNDATION_JSON_SRC_TEXT_LOCATION_HPP
#define FOUNDATION_JSON_SRC_TEXT_LOCATION_HPP

#include <foundation/json/detail/quoted.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::detail {

/// Appends the token of a member to a JSON Pointer: `~` is written `~0`, `/` is written `~1`.
inline void append_name_token(std::string& pointer, std::string_view name) {
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
inline void append_index_token(std::string& pointer, std::size_t index) {
    pointer += '/';
    pointer += std::to_string(index);
}

/// Assigns the name that a token of a valid JSON Pointer stands for, within the string's memory if
/// it has room.
inline void assign_unescaped(std::string& name, std::string_view token) {
    std::size_t tilde = token.find('~');
    name = token.substr(0, tilde);
    while (tilde != std::string_view::npos) {
        name += token[tilde + 1] == '0' ? '~' : '/';
        const std::size_t next = token.find('~', tilde + 2);
        name += token.substr(tilde + 2, next - (tilde + 2));
        tilde = next;
    }
}

/// The name that a token of a valid JSON Pointer stands for.
inline std::string unescaped(std::string_view token) {
    std::string name;
    assign_unescaped(name, token);
    return name;
}

/// Whether a token means an element of an array rather than a member's name: it consists of digits,
/// even if it has leading zeros, or is "-".
inline bool looks_like_index(std::string_view token) noexcept {
    return token == "-" ||
           (!token.empty() && token.find_first_not_of("0123456789") == std::string_view::npos);
}

/// How messages begin that name a location: "at /servers/3/port: ", or "at the root: ".
inline std::string describe_location(std::string_view pointer) {
    if (pointer.empty()) {
        return "at the root: ";
    }
    std::string result = "at ";
    append_escaped(result, pointer);
    return result += ": ";
}

/// How messages of several errors end, if there may be more.
inline std::string cut_off_line(std::size_t errors) {
    return "the conversion ended after " + std::to_string(errors) + " errors: there may be more";
}

} // namespace foundation::json::detail

#endif
