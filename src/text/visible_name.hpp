/// @file
/// The names of files as messages show them.
#ifndef FOUNDATION_JSON_SRC_TEXT_VISIBLE_NAME_HPP
#define FOUNDATION_JSON_SRC_TEXT_VISIBLE_NAME_HPP

#include "text/characters.hpp"

#include <foundation/json/detail/quoted.hpp>

#include <filesystem>
#include <string>

namespace foundation::json::detail {

/// The name of a file, in UTF-8 on every system, with control bytes escaped as in a JSON string:
/// NUL would end the message.
inline std::string visible_name(const std::filesystem::path& path) {
    std::string result;
    for (const char byte : path.u8string()) {
        if (is_control(byte)) {
            append_escaped(result, {&byte, 1});
        } else {
            result += byte;
        }
    }
    return result;
}

} // namespace foundation::json::detail

#endif
