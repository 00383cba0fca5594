/// @file
/// Makes and throws the parser's exceptions, with message, place and quoted line.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_ERRORS_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_ERRORS_HPP

#include "grammar/numbers.hpp"
#include "grammar/strings.hpp"

#include <foundation/json/parse.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::detail {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

/// A place in the whole input, of which a text may be a part.
struct TextPosition {
    std::size_t byte = 0;
    std::size_t line = 1;
    std::size_t column = 1;

    /// Moves to the end of a text that begins here. A byte order mark at the start of the input
    /// takes no column.
    void advance(std::string_view text) noexcept;
};

/// The most bytes of a line that an error quotes on either side of the place.
constexpr std::size_t most_quoted = 160;

/// Throws the errors of a text.
///
/// Each function takes the first byte that cannot continue the text, or the end of the text.
/// `opening` is the opening bracket of the innermost array or object that is open there, or null.
class Errors {
public:
    /// @param begin  where the text begins in the whole input
    Errors(std::string_view text, const TextPosition& begin, const ParseOptions& options) noexcept
        : text_(text), begin_(begin), options_(options) {}

    [[noreturn]] void no_value(const char* place, const char* opening, bool after_comma) const;
    [[noreturn]] void no_name(const char* place, const char* opening, bool after_comma) const;
    [[noreturn]] void no_colon(const char* place, const char* opening) const;
    [[noreturn]] void no_separator(const char* place, const char* opening) const;
    [[noreturn]] void after_value(const char* place, const char* value_end) const;
    [[noreturn]] void bad_word(const char* word, const char* place) const;
    [[noreturn]] void bad_number(const NumberToken& token) const;
    [[noreturn]] void bad_string(const StringToken& token) const;
    [[noreturn]] void bad_comment(const char* place, const char* comment) const;
    [[noreturn]] void too_large(const char* number, const char* end) const;
    [[noreturn]] void too_deep(const char* place) const;
    [[noreturn]] void duplicate_name(const char* place, const StringToken& name) const;

private:
    [[noreturn]] void fail(ParseResult result, const char* place, const std::string& what) const;
    void check_comment(const char* place, ParseResult result) const;
    [[noreturn]] void not_utf8(const char* place) const;
    void check_glued(const char* place, ParseResult result) const;

    const char* end() const noexcept { return text_.data() + text_.size(); }
    TextPosition place_of(const char* place) const noexcept;
    std::string where(const char* place) const;
    [[noreturn]] void ends_within(ParseResult result, const char* opening) const;
    std::string name_of(const char* place) const;
    bool is_curly_quote(const char* place) const noexcept;
    std::string_view word_at(const char* place) const noexcept;

    std::string_view text_;
    TextPosition begin_;
    const ParseOptions& options_;
};

} // namespace foundation::json::detail

#endif
