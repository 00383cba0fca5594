/// @file
/// The short escapes of strings, and which bytes take them: in the fixed text, and where JSON
/// demands it.
#ifndef FOUNDATION_JSON_SRC_TEXT_ESCAPES_HPP
#define FOUNDATION_JSON_SRC_TEXT_ESCAPES_HPP

#include <array>
#include <cstddef>

namespace foundation::json::detail {

/// The character that follows the backslash in the byte's short escape, or NUL if it has none. JSON
/// allows a solidus to be raw or escaped.
constexpr char short_escape(unsigned char byte) noexcept {
    switch (byte) {
    case 0x08:
        return 'b';
    case 0x09:
        return 't';
    case 0x0A:
        return 'n';
    case 0x0C:
        return 'f';
    case 0x0D:
        return 'r';
    case 0x22:
        return '"';
    case 0x2F:
        return '/';
    case 0x5C:
        return '\\';
    default:
        return '\0';
    }
}

constexpr std::array<char, 256> make_escaped_bytes() noexcept {
    std::array<char, 256> bytes{};
    for (int byte = 0; byte < 0x80; ++byte) {
        const char letter = short_escape(static_cast<unsigned char>(byte));
        if (letter != '\0') {
            bytes[static_cast<unsigned char>(letter)] = static_cast<char>(byte);
        }
    }
    return bytes;
}

/// For the character behind a backslash the byte that this short escape means, or NUL.
inline constexpr std::array<char, 256> escaped_bytes = make_escaped_bytes();

/// Whether the solidus is escaped.
enum class Solidus { raw, escaped };

/// Whether bytes beyond ASCII count as special, too, since they have to be checked.
enum class BeyondAscii { plain, special };

/// A choice of bytes that are special: that are not just copied.
template <Solidus solidus, BeyondAscii beyond_ascii>
struct EscapeRule {
    static constexpr bool escapes_solidus = solidus == Solidus::escaped;
    static constexpr bool stops_beyond_ascii = beyond_ascii == BeyondAscii::special;

    /// 0 for bytes that are copied, `u` for those that take a \u escape or have to be checked, for
    /// others the letter of their short escape.
    static constexpr char letter(unsigned char byte) noexcept {
        if (byte == '/' && !escapes_solidus) {
            return '\0';
        }
        const char letter = short_escape(byte);
        const bool copied = byte >= 0x20 && (byte < 0x80 || !stops_beyond_ascii);
        return letter != '\0' || copied ? letter : 'u';
    }
};

/// The rule of serialize(): strings are written byte for byte but for the escapes.
using FixedEscapes = EscapeRule<Solidus::escaped, BeyondAscii::plain>;

template <class Rule>
constexpr std::array<char, 256> make_escape_letters() noexcept {
    std::array<char, 256> letters{};
    for (std::size_t byte = 0; byte < letters.size(); ++byte) {
        letters[byte] = Rule::letter(static_cast<unsigned char>(byte));
    }
    return letters;
}

/// Rule::letter() of each byte.
template <class Rule>
inline constexpr std::array<char, 256> escape_letters = make_escape_letters<Rule>();

} // namespace foundation::json::detail

#endif
