#include "grammar/strings.hpp"
#include "text/escapes.hpp"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace foundation::json::detail {

namespace {

constexpr std::size_t unicode_escape_size = 6; // \uXXXX
constexpr std::uint32_t replacement = 0xFFFD;

constexpr bool is_first_of_pair(std::uint32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool is_second_of_pair(std::uint32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The UTF-16 unit of a well-formed \u escape.
std::uint32_t unicode_unit(const char* escape) noexcept {
    std::uint32_t unit = 0;
    for (std::size_t i = 2; i != unicode_escape_size; ++i) {
        unit = unit << 4 | static_cast<std::uint32_t>(hex_digit(escape[i]));
    }
    return unit;
}

/// The character of a \u escape, or of two that are a surrogate pair.
/// @param position  at the escape; is moved behind it
std::uint32_t unicode_character(const char*& position, const char* end) noexcept {
    const std::uint32_t first = unicode_unit(position);
    position += unicode_escape_size;
    if (!is_first_of_pair(first)) {
        return is_second_of_pair(first) ? replacement : first;
    }
    if (end - position >= static_cast<std::ptrdiff_t>(unicode_escape_size) && position[0] == '\\' &&
        position[1] == 'u') {
        const std::uint32_t second = unicode_unit(position);
        if (is_second_of_pair(second)) {
            position += unicode_escape_size;
            return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
        }
    }
    return replacement;
}

/// Calls put(bytes, size) with the content of a string, piece by piece.
template <class Put>
void for_each_piece(const StringToken& token, Put put) {
    for (const char* position = token.text; position != token.end;) {
        const auto left = static_cast<std::size_t>(token.end - position);
        const void* const found = std::memchr(position, '\\', left);
        if (found == nullptr) {
            put(position, left);
            return;
        }
        const auto* const escape = static_cast<const char*>(found);
        put(position, static_cast<std::size_t>(escape - position));
        position = escape;
        char bytes[4];
        if (position[1] == 'u') {
            const char* const end = put_utf8(bytes, unicode_character(position, token.end));
            put(bytes, static_cast<std::size_t>(end - bytes));
        } else {
            bytes[0] = escaped_bytes[static_cast<unsigned char>(position[1])];
            put(bytes, 1);
            position += 2;
        }
    }
}

} // namespace

StringError scan_escape(const char*& position, const char* end) noexcept {
    ++position;
    if (position == end) {
        return StringError::escape_ends;
    }
    if (*position != 'u') {
        if (escaped_bytes[static_cast<unsigned char>(*position)] == '\0') {
            return StringError::escape;
        }
        ++position;
        return StringError::none;
    }
    ++position;
    for (int i = 0; i != 4; ++i, ++position) {
        if (position == end || *position == '"') {
            return StringError::escape_ends;
        }
        if (hex_digit(*position) < 0) {
            return StringError::unicode_escape;
        }
    }
    return StringError::none;
}

const char* begin_of_unit(const StringToken& token) noexcept {
    const std::string_view text(token.text, token.size());
    if (token.error == StringError::escape_ends) {
        return token.text + text.rfind('\\');
    }
    // Behind the last lead byte, at most three more may be missing.
    const char* at = token.end;
    for (int i = 0; i != 3 && at != token.text && !is_ascii(at[-1]); ++i) {
        --at;
        if (!is_continuation(*at)) {
            return utf8_sequence(at, token.end).complete ? token.end : at;
        }
    }
    return token.end;
}

void decode(const StringToken& token, std::string& target) {
    if (!token.escaped) {
        target.assign(token.text, token.size());
        return;
    }
    // The length is counted first, since an escape may be six times as long as its character.
    std::size_t size = 0;
    for_each_piece(token, [&size](const char*, std::size_t count) { size += count; });
    target.resize(size);
    char* out = target.data();
    for_each_piece(token, [&out](const char* bytes, std::size_t count) {
        std::memcpy(out, bytes, count);
        out += count;
    });
}

} // namespace foundation::json::detail
