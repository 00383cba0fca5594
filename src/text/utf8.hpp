/// @file
/// UTF-8: checks, decodes and encodes characters.
#ifndef FOUNDATION_JSON_SRC_TEXT_UTF8_HPP
#define FOUNDATION_JSON_SRC_TEXT_UTF8_HPP

#include "text/characters.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace foundation::json::detail {

/// The UTF-8 sequence, or part of one, at the start of a text.
struct Utf8Sequence {
    std::size_t length; ///< of the sequence, or of the part of it that is well-formed
    bool complete;
};

/// Finds the sequence of a character beyond ASCII. Overlong forms, surrogates and characters beyond
/// U+10FFFF are not well-formed.
/// @param from  not the end; *from is not ASCII
inline Utf8Sequence utf8_sequence(const char* from, const char* end) noexcept {
    const auto byte = [from](std::size_t i) { return static_cast<unsigned char>(from[i]); };
    const unsigned lead = byte(0);
    if (lead < 0xC2 || lead > 0xF4) {
        return {0, false};
    }
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const auto left = static_cast<std::size_t>(end - from);
    const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (left < 2 || byte(1) < lowest || byte(1) > highest) {
        return {1, false};
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (left <= i || !is_continuation(from[i])) {
            return {i, false};
        }
    }
    return {length, true};
}

/// Whether a text goes on with one of those sequences of three bytes that have no limits but those
/// of each byte.
/// @param from  at least three bytes
inline bool is_usual_of_three(const char* from) noexcept {
    const auto lead = static_cast<unsigned char>(from[0]);
    return lead > 0xE0 && lead < 0xF0 && lead != 0xED && is_continuation(from[1]) &&
           is_continuation(from[2]);
}

/// Whether a text goes on with a sequence of two bytes.
/// @param from  at least two bytes
inline bool is_any_of_two(const char* from) noexcept {
    const auto lead = static_cast<unsigned char>(from[0]);
    return lead >= 0xC2 && lead < 0xE0 && is_continuation(from[1]);
}

/// The character of a complete sequence, or of an ASCII byte.
inline std::uint32_t code_point(std::string_view sequence) noexcept {
    constexpr unsigned payload[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    std::uint32_t code = static_cast<unsigned char>(sequence[0]) & payload[sequence.size()];
    for (const char byte : sequence.substr(1)) {
        code = code << 6 | (static_cast<unsigned char>(byte) & 0x3F);
    }
    return code;
}

/// Writes a character as UTF-8.
/// @param code  no surrogate, at most 0x10FFFF
/// @return the position after it
inline char* put_utf8(char* out, std::uint32_t code) noexcept {
    const auto put = [&out](std::uint32_t byte) { *out++ = static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
    return out;
}

} // namespace foundation::json::detail

#endif
