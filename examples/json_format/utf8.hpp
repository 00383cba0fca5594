/// @file
/// The one question about UTF-8 that both the reader and its error report ask.
#ifndef JSON_FORMAT_UTF8_HPP
#define JSON_FORMAT_UTF8_HPP

#include <cstddef>
#include <string_view>

namespace json_format {

/// The length in bytes of the well-formed UTF-8 sequence that a text begins with, 0 if it begins
/// with none. Overlong forms, surrogates and what lies beyond U+10FFFF are not well-formed.
inline std::size_t utf8_length(std::string_view text) {
    const auto byte = [text](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80) {
        return text.empty() ? 0 : 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byte(1) < lowest || byte(1) > highest) {
        return 0;
    }
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    for (std::size_t i = 2; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) {
            return 0;
        }
    }
    return length;
}

} // namespace json_format

#endif
