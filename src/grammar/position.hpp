/// @file
/// Positions in a document, as errors state them.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_POSITION_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_POSITION_HPP

#include <cstddef>
#include <string_view>

namespace foundation::json::detail {

inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

/// The length of the byte order mark at the start of a text; 0 if there is none.
inline std::size_t mark_length(std::string_view text) noexcept {
    return text.substr(0, byte_order_mark.size()) == byte_order_mark ? byte_order_mark.size() : 0;
}

/// A position in the whole input, of which a text may be a part.
struct TextPosition {
    std::size_t byte = 0;
    std::size_t line = 1;
    std::size_t column = 1;

    /// Moves to the end of a text that begins here. A byte order mark at the start of the input
    /// takes no column.
    void advance(std::string_view text) noexcept;
};

/// The most bytes of a line that an error quotes on either side of its position.
inline constexpr std::size_t most_quoted = 160;

/// How many bytes behind its position an error must know: one more shows whether what is quoted
/// ends within a character, or with the end of the line; and an error of a comment lies one byte
/// farther on, behind the slash.
inline constexpr std::size_t quoted_behind = most_quoted + 2;

/// A limit on bytes that is none.
inline constexpr std::size_t unlimited = ~std::size_t{0};

/// What is known of the input around an error.
struct Context {
    Context(std::string_view all, const TextPosition& position) noexcept
        : text(all), begin(position), marked(all.data()), mark(position) {}

    /// At least most_quoted bytes before the error and quoted_behind behind it, as far as its line
    /// has so many.
    std::string_view text;
    TextPosition begin; ///< where that text begins in the whole input
    const char* marked; ///< a byte of the text whose position is known
    TextPosition mark;  ///< its position

    TextPosition position_of(const char* at) const noexcept {
        TextPosition result = at < marked ? begin : mark;
        const char* const from = at < marked ? text.data() : marked;
        result.advance({from, static_cast<std::size_t>(at - from)});
        return result;
    }
};

/// The opening bracket of the innermost array or object that is open at an error.
struct Opening {
    char bracket = '\0'; ///< `[` or `{`, or NUL if none is open
    TextPosition position;
};

} // namespace foundation::json::detail

#endif
