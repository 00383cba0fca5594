/// @file
/// Classes of bytes: whitespace, digits, letters, hexadecimal digits, control characters and so on.
#ifndef FOUNDATION_JSON_SRC_TEXT_CHARACTERS_HPP
#define FOUNDATION_JSON_SRC_TEXT_CHARACTERS_HPP

namespace foundation::json::detail {

constexpr bool is_blank(char byte) noexcept {
    return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t';
}

constexpr bool is_digit(char byte) noexcept {
    return byte >= '0' && byte <= '9';
}

constexpr bool begins_number(char byte) noexcept {
    return is_digit(byte) || byte == '-';
}

constexpr bool is_letter(char byte) noexcept {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_';
}

constexpr bool continues_word(char byte) noexcept {
    return is_letter(byte) || is_digit(byte);
}

/// Whether a byte right behind a number would be taken for a part of it.
constexpr bool continues_number(char byte) noexcept {
    return continues_word(byte) || byte == '.' || byte == '+' || byte == '-';
}

constexpr bool is_ascii(char byte) noexcept {
    return static_cast<unsigned char>(byte) < 0x80;
}

constexpr bool is_control(char byte) noexcept {
    return static_cast<unsigned char>(byte) < 0x20;
}

/// Whether a byte continues a UTF-8 sequence: 10xxxxxx in binary.
constexpr bool is_continuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The value of a hexadecimal digit; negative for other bytes.
constexpr int hex_digit(char byte) noexcept {
    if (is_digit(byte)) {
        return byte - '0';
    }
    const char lower = static_cast<char>(byte | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace foundation::json::detail

#endif
