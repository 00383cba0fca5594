/// @file
/// Makes and throws the parser's exceptions, with message, position and quoted line.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_ERRORS_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_ERRORS_HPP

#include "grammar/numbers.hpp"
#include "grammar/position.hpp"
#include "grammar/strings.hpp"

#include <foundation/json/parse.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::detail {

/// Throws the errors of a text.
///
/// Each function takes the first byte that cannot continue the text, or the end of the text.
/// `opening` is that of the innermost array or object that is open there.
class Errors {
public:
    /// @param context  has all pointers that the functions take
    Errors(const Context& context, const ParseOptions& options) noexcept
        : context_(context), options_(options) {}

    [[noreturn]] void no_value(const char* at, const Opening& opening, bool after_comma) const;
    [[noreturn]] void no_name(const char* at, const Opening& opening, bool after_comma) const;
    [[noreturn]] void no_colon(const char* at, const Opening& opening) const;
    [[noreturn]] void no_separator(const char* at, const Opening& opening) const;
    [[noreturn]] void after_value(const char* at, char last) const;
    [[noreturn]] void bad_word(const char* word, const char* at) const;
    [[noreturn]] void bad_number(const NumberToken& token) const;
    [[noreturn]] void bad_string(const StringToken& token) const;
    [[noreturn]] void bad_comment(const char* at, const TextPosition& comment) const;
    [[noreturn]] void too_large(const char* number, const char* end) const;
    [[noreturn]] void too_deep(const char* at) const;
    [[noreturn]] void too_long(const char* at, std::size_t max_bytes) const;
    /// @param what  is wrong with a value, which is none of the text's errors
    [[noreturn]] void not_wanted(const char* at, const std::string& what) const;
    [[noreturn]] void duplicate_name(const char* at, const StringToken& name) const;

private:
    [[noreturn]] void fail(ParseResult result, const char* at, const std::string& what) const;
    void check_comment(const char* at, ParseResult result) const;
    [[noreturn]] void not_utf8(const char* at) const;
    void check_glued(const char* at, ParseResult result) const;

    const char* end() const noexcept { return context_.text.data() + context_.text.size(); }
    [[noreturn]] void ends_within(ParseResult result, const Opening& opening) const;
    std::string name_of(const char* at) const;
    bool is_curly_quote(const char* at) const noexcept;
    std::string_view word_at(const char* at) const noexcept;

    Context context_;
    const ParseOptions& options_;
};

} // namespace foundation::json::detail

#endif
