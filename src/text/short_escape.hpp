/// @file
/// Which bytes of a string have an escape of two characters, and the letter of each.
#ifndef FOUNDATION_JSON_SRC_TEXT_SHORT_ESCAPE_HPP
#define FOUNDATION_JSON_SRC_TEXT_SHORT_ESCAPE_HPP

namespace foundation::json::detail {

/// The character that follows the backslash in the byte's short escape, or NUL if it has none. The
/// solidus is escaped, though JSON allows it raw.
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

} // namespace foundation::json::detail

#endif
