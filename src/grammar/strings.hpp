/// @file
/// The strings of a text: finds their end, checks and decodes them.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_STRINGS_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_STRINGS_HPP

#include "text/skipping.hpp"
#include "text/utf8.hpp"
#include "text/utf8_validation.hpp"

#include <cstddef>
#include <string>

namespace foundation::json::detail {

enum class StringError {
    none,
    text_ends,
    line_ends,
    control,        ///< a control byte that is no line end
    escape,         ///< a character that may not follow a backslash
    escape_ends,    ///< the text or the string ends within an escape
    unicode_escape, ///< a character that is no hexadecimal digit
    utf8,
};

/// A string as it stands in a text.
struct StringToken {
    const char* text; ///< its content, behind the opening quote
    const char* end;  ///< the closing quote, or the first byte that cannot continue the string
    StringError error = StringError::none; ///< what is wrong at the end
    bool escaped = false;                  ///< whether the content has escapes

    std::size_t size() const noexcept { return static_cast<std::size_t>(end - text); }
};

/// Reads an escape.
/// @param position  at the backslash; moved to the byte after the escape, or to the first byte that
///                  cannot continue it
/// @return none, or what is wrong there
StringError scan_escape(const char*& position, const char* end) noexcept;

constexpr StringError error_of_control(char byte) noexcept {
    return byte == '\n' || byte == '\r' ? StringError::line_ends : StringError::control;
}

/// Reads the rest of a string, from a byte on that skip_clean() does not skip.
template <class Bytes>
[[gnu::noinline]] StringToken scan_special(StringToken token, const char* end) noexcept {
    for (const char*& position = token.end;;) {
        if (position == end) {
            token.error = StringError::text_ends;
        } else if (*position == '"') {
            return token;
        } else if (*position == '\\') {
            token.escaped = true;
            token.error = scan_escape(position, end);
        } else if (is_control(*position)) {
            token.error = error_of_control(*position);
        } else if (is_ascii(*position)) {
            position = skip_clean<Bytes>(position, end);
        } else if (const char* const behind = skip_utf8<Bytes>(position, end); behind != position) {
            position = behind;
        } else {
            while (end - position >= 3 && is_usual_of_three(position)) {
                position += 3;
            }
            while (end - position >= 2 && is_any_of_two(position)) {
                position += 2;
            }
            if (position != end && !is_ascii(*position)) {
                const Utf8Sequence sequence = utf8_sequence(position, end);
                position += sequence.length;
                if (!sequence.complete) {
                    token.error = position == end ? StringError::text_ends : StringError::utf8;
                }
            }
        }
        if (token.error != StringError::none) {
            return token;
        }
    }
}

/// Reads a string that may be long.
template <class Bytes>
[[gnu::noinline]] StringToken scan_long_string(const char* from, const char* end) noexcept {
    const StringToken token{from, skip_clean<Bytes>(from, end)};
    return token.end != end && *token.end == '"' ? token : scan_special<Bytes>(token, end);
}

/// Reads a string.
/// @param from  behind the opening quote
template <class Bytes>
[[gnu::always_inline]] inline StringToken scan_string(const char* from, const char* end) noexcept {
    if (end - from >= static_cast<std::ptrdiff_t>(Bytes::size)) {
        const auto found = Bytes(from).special_in_string();
        if (!found.empty() && from[found.first()] == '"') {
            return {from, from + found.first()};
        }
    }
    return scan_long_string<Bytes>(from, end);
}

/// Where the escape or character begins that a text ends within, if it ends within a string; else
/// the end of the text.
/// @param token  ends with the text
const char* begin_of_unit(const StringToken& token) noexcept;

/// Decodes a token into a string.
/// @throws std::bad_alloc
void decode(const StringToken& token, std::string& target);

} // namespace foundation::json::detail

#endif
