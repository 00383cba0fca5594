/// @file
/// The grammar of JSON: whitespace, comments, separators, names and tokens. It knows no arrays,
/// objects or values; those who use it do.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_CURSOR_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_CURSOR_HPP

#include "grammar/comments.hpp"
#include "grammar/errors.hpp"
#include "grammar/numbers.hpp"
#include "grammar/strings.hpp"
#include "text/byte_block.hpp"
#include "text/skipping.hpp"
#include "text/utf8.hpp"

#include <foundation/json/parse.hpp>

#include <cstddef>
#include <cstdint>

namespace foundation::json::detail {

/// Reads the tokens of an input, a WholeText or a Window.
///
/// Functions take the position where they begin to read and return the one behind what they read,
/// so that it stays in a register. With an input that refills, each call makes all other pointers
/// into the text invalid, but for what it returns.
///
/// `opening` is a callable that gives the Opening of the innermost array or object that is open; it
/// is called for errors alone.
/// @throws ParserException in every function; with a Window, also whatever reading a stream does
template <class Input>
class Cursor {
public:
    /// @param options  must outlive the cursor
    /// @param input    the arguments of the input's constructor
    template <class... Arguments>
    explicit Cursor(const ParseOptions& options, const Arguments&... input)
        : input_(input...), options_(options) {}

    Input& input() noexcept { return input_; }
    const Input& input() const noexcept { return input_; }
    const ParseOptions& options() const noexcept { return options_; }

    const char* end() const noexcept { return input_.end(); }
    bool is_at(const char* at, char byte) const noexcept { return at != end() && *at == byte; }
    /// Whether an array or object begins.
    bool is_opening(const char* at) const noexcept { return is_at(at, '[') || is_at(at, '{'); }

    // ---- Between tokens ----------------------------------------------------------------------

    /// Skips whitespace and, where they are allowed, comments. At the end, the input ends there.
    const char* skip_space(const char* at);

    /// The same where an earlier call may have ended with an exception within a comment.
    /// @param at  where the input goes on
    const char* skip_space_again(const char* at);

    /// Forgets such a comment, to go on elsewhere.
    void restart() noexcept { interrupted_ = {}; }

    /// Skips to the first element or name of a container. @return false if the container ends
    bool find_first(const char*& at, char close);

    /// Skips to the next element or name of a container. @return false if the container ends
    template <class OpeningOf>
    bool find_next(const char*& at, char close, const OpeningOf& opening);

    /// Skips a comma; fails unless there is one or the container ends.
    /// @param at  behind the space behind an element or member
    /// @return false if the container ends
    template <class OpeningOf>
    bool comma(const char*& at, char close, const OpeningOf& opening);

    /// Whether a container may end here and does.
    bool ends_behind_comma(const char* at, char close) const noexcept {
        return options_.trailing_commas && is_at(at, close);
    }

    /// Skips a colon; fails if there is none.
    /// @param at  behind the space behind a name
    template <class OpeningOf>
    const char* colon(const char* at, const OpeningOf& opening);

    /// Fails if the text of a token or value is longer than allowed.
    void check_length(const char* begin, const char* end);

    /// The same for a token, or for the value that it is part of where the input keeps that.
    void check_length_of_token(const char* token, const char* end);

    /// Fails if what follows a value would belong to it, had a number not ended before.
    /// @param last  the last byte of the value
    void expect_separation(const char* at, char last);

    /// Fails unless only space follows.
    /// @param last  the last byte of the value before it
    void expect_end(const char* at, char last);

    // ---- Tokens ------------------------------------------------------------------------------

    /// Checks the depth of an array or object that begins.
    /// @param depth  how many are open
    const char* open(const char* at, std::size_t depth);

    /// A member name; fails if there is none.
    template <class OpeningOf>
    StringToken name(const char* at, const OpeningOf& opening, bool after_comma);

    /// @param at  at the opening quote
    StringToken string(const char* at);

    /// @param at  moved to where the number begins, which may be elsewhere then
    NumberToken number(const char*& at);

    /// A number of the most frequent form, of few digits and without exponent.
    /// @return null if it is another one, or too near to the end of the text
    const char* usual_number(const char* at, double& number) const noexcept;

    /// The same, of which only the end is wanted.
    /// @param room  how much of the text must be there: at least skipped_number_room
    const char* skip_usual_number(const char* at, std::ptrdiff_t room) const noexcept;

    /// A word such as null.
    template <std::size_t Size>
    const char* word(const char* at, const char (&word)[Size]);

    // ---- Errors ------------------------------------------------------------------------------

    /// What is wrong where no value begins.
    template <class OpeningOf>
    [[noreturn]] void fail_without_value(const char* at, const OpeningOf& opening,
                                         bool after_comma);
    [[noreturn]] void fail_too_large(const char* number, const char* number_end);
    [[noreturn]] void fail_duplicate(const StringToken& name);
    [[noreturn]] void fail_too_long(const char* limit);

private:
    Errors errors(const char* at);
    Errors errors_in_token(const char* at, const char* token);
    TextPosition position_of(const char* at) noexcept;
    const char* skip_rest_of_space(const char* at);
    bool skip_comment(const char*& at);
    const char* end_comment(CommentToken token, char second, const TextPosition& begin);
    bool more(const char*& at);
    bool more(const char*& at, const char*& from);
    bool more_of_token(const char*& at, const char*& token);
    void finish(StringToken& token);
    NumberToken finish_number(const char*& at);

    /// A comment within which reading was interrupted.
    struct Interrupted {
        char second = '\0'; ///< its second byte
        TextPosition begin;
    };

    Input input_;
    const ParseOptions& options_;
    Interrupted interrupted_;
};

// What is too long is found to be so by its length alone, wherever the pieces of a stream end:
// before more of it is read, where it ends, and where it has an error behind the limit.

/// Reads more text.
/// @param from  the text is needed from here
/// @return false at the end of the input
template <class Input>
bool Cursor<Input>::more([[maybe_unused]] const char*& at, [[maybe_unused]] const char*& from) {
    if constexpr (Input::refills) {
        check_length_of_token(at, at);
        return input_.refill(at, from);
    } else {
        return false;
    }
}

template <class Input>
bool Cursor<Input>::more(const char*& at) {
    const char* from = at;
    return more(at, from);
}

template <class Input>
bool Cursor<Input>::more_of_token(const char*& at, const char*& token) {
    check_length_of_token(token, at);
    return more(at, token);
}

/// What is known of the input around an error. Moves no text.
template <class Input>
[[gnu::cold, gnu::noinline]] Errors Cursor<Input>::errors([[maybe_unused]] const char* at) {
    if constexpr (Input::refills) {
        check_length_of_token(at, at);
        return {input_.context_for_error(at), options_};
    } else {
        return {input_.context(), options_};
    }
}

template <class Input>
[[gnu::cold, gnu::noinline]] Errors Cursor<Input>::errors_in_token(const char* at,
                                                                   const char* token) {
    check_length_of_token(token, at);
    return errors(at);
}

template <class Input>
TextPosition Cursor<Input>::position_of(const char* at) noexcept {
    if constexpr (Input::refills) {
        return input_.locate(at);
    } else {
        return input_.context().position_of(at);
    }
}

// ---- Between tokens --------------------------------------------------------------------------

template <class Input>
[[gnu::always_inline]] inline const char* Cursor<Input>::skip_space(const char* at) {
    const auto is_token = [](char byte) {
        return static_cast<unsigned char>(byte) > ' ' && byte != '/';
    };
    if (end() - at >= 2) {
        if (is_token(*at)) {
            return at;
        }
        if (*at == ' ' && is_token(at[1])) {
            return at + 1;
        }
    }
    at = skip_blanks<Block>(at, end());
    return at != end() && *at != '/' ? at : skip_rest_of_space(at);
}

/// Skips what follows the whitespace that is there: comments, and what has still to be read.
template <class Input>
[[gnu::noinline]] const char* Cursor<Input>::skip_rest_of_space(const char* at) {
    for (;; at = skip_blanks<Block>(at, end())) {
        if (at == end()) {
            if (!more(at)) {
                return at;
            }
        } else if (*at != '/' || !options_.comments || !skip_comment(at)) {
            return at;
        }
    }
}

/// @param at  at a slash; moved behind the comment
/// @return false if no comment begins there
template <class Input>
bool Cursor<Input>::skip_comment(const char*& at) {
    const char* behind = end();
    while (behind - at < 2 && more(behind, at)) {
        behind = end();
    }
    if (behind - at < 2 || !begins_comment(at[1])) {
        check_length_of_token(at + 1, at + 1); // the error is behind the slash
        return false;
    }
    const char second = at[1];
    const CommentToken token = scan_comment(at + 2, behind, second);
    // Where it began is asked for only if it matters: each answer takes a scan of the text.
    at = token.status == CommentEnd::closed ? token.end
                                            : end_comment(token, second, position_of(at));
    return true;
}

/// Reads the rest of a comment that does not end within the text, or fails.
template <class Input>
[[gnu::noinline]] const char* Cursor<Input>::end_comment(CommentToken token, char second,
                                                         const TextPosition& begin) {
    interrupted_ = {second, begin};
    while (token.status == CommentEnd::text_ends && more(token.end)) {
        token = scan_comment(token.end, end(), second);
    }
    if (token.status == CommentEnd::closed || (second == '/' && token.end == end())) {
        interrupted_ = {};
        return token.end;
    }
    const char* const bad = token.status == CommentEnd::utf8 ? token.end : end();
    errors(bad).bad_comment(bad, begin);
}

template <class Input>
const char* Cursor<Input>::skip_space_again(const char* at) {
    if (interrupted_.second != '\0') {
        const Interrupted comment = interrupted_;
        at = end_comment(scan_comment(at, end(), comment.second), comment.second, comment.begin);
    }
    return skip_space(at);
}

template <class Input>
inline void Cursor<Input>::check_length([[maybe_unused]] const char* begin,
                                        [[maybe_unused]] const char* end) {
    if constexpr (Input::refills) {
        if (const char* const limit = input_.limit_before(begin, end)) {
            fail_too_long(limit);
        }
    }
}

template <class Input>
inline void Cursor<Input>::check_length_of_token([[maybe_unused]] const char* token,
                                                 [[maybe_unused]] const char* end) {
    if constexpr (Input::refills) {
        check_length(input_.kept() != nullptr ? input_.kept() : token, end);
    }
}

template <class Input>
inline bool Cursor<Input>::find_first(const char*& at, char close) {
    at = skip_space(at);
    return !is_at(at, close);
}

template <class Input>
template <class OpeningOf>
[[gnu::always_inline]] inline bool Cursor<Input>::comma(const char*& at, char close,
                                                        const OpeningOf& opening) {
    if (is_at(at, ',')) {
        ++at;
        return true;
    }
    if (!is_at(at, close)) {
        errors(at).no_separator(at, opening());
    }
    return false;
}

template <class Input>
template <class OpeningOf>
[[gnu::always_inline]] inline bool Cursor<Input>::find_next(const char*& at, char close,
                                                            const OpeningOf& opening) {
    at = skip_space(at);
    if (!comma(at, close, opening)) {
        return false;
    }
    at = skip_space(at);
    return !ends_behind_comma(at, close);
}

template <class Input>
template <class OpeningOf>
[[gnu::always_inline]] inline const char* Cursor<Input>::colon(const char* at,
                                                               const OpeningOf& opening) {
    if (!is_at(at, ':')) {
        errors(at).no_colon(at, opening());
    }
    return at + 1;
}

template <class Input>
void Cursor<Input>::expect_separation(const char* at, char last) {
    if (at != end() && is_digit(last) && continues_number(*at)) {
        errors(at).after_value(at, last);
    }
}

template <class Input>
void Cursor<Input>::expect_end(const char* at, char last) {
    at = skip_space(at);
    if (at != end()) {
        errors(at).after_value(at, last);
    }
}

// ---- Tokens ----------------------------------------------------------------------------------

template <class Input>
inline const char* Cursor<Input>::open(const char* at, std::size_t depth) {
    if (depth >= options_.max_depth) {
        errors(at).too_deep(at);
    }
    return at + 1;
}

template <class Input>
template <class OpeningOf>
inline StringToken Cursor<Input>::name(const char* at, const OpeningOf& opening, bool after_comma) {
    if (!is_at(at, '"')) {
        errors(at).no_name(at, opening(), after_comma);
    }
    return string(at);
}

template <class Input>
[[gnu::always_inline]] inline StringToken Cursor<Input>::string(const char* at) {
    StringToken token = scan_string<Block>(at + 1, end());
    if (token.error != StringError::none) {
        finish(token);
    }
    return token;
}

/// Reads the rest of a string that does not end within the text, or fails.
template <class Input>
[[gnu::noinline]] void Cursor<Input>::finish(StringToken& token) {
    if constexpr (Input::refills) {
        while (token.error != StringError::none && token.end == end()) {
            const char* at = begin_of_unit(token);
            const char* quote = token.text - 1;
            if (!more_of_token(at, quote)) {
                break;
            }
            token.text = quote + 1;
            token.end = at;
            token.error = StringError::none;
            token = scan_special<Block>(token, end());
        }
    }
    if (token.error != StringError::none) {
        errors_in_token(token.end, token.text - 1).bad_string(token);
    }
}

template <class Input>
inline NumberToken Cursor<Input>::number(const char*& at) {
    NumberToken token = scan_number(at, end());
    if constexpr (Input::refills) {
        if (token.end == end()) {
            token = finish_number(at);
        }
    }
    if (token.error != NO_PARSE_ERROR) {
        errors_in_token(token.end, at).bad_number(token);
    }
    return token;
}

/// Reads the rest of a number that the text ends with.
template <class Input>
[[gnu::noinline]] NumberToken Cursor<Input>::finish_number(const char*& at) {
    // Each byte is looked at twice, in however many pieces the number comes.
    NumberPart part = NumberPart::begin;
    const char* behind = at;
    do {
        behind = skip_number(behind, end(), part);
    } while (behind == end() && more_of_token(behind, at));
    return scan_number(at, end());
}

template <class Input>
[[gnu::always_inline]] inline const char*
Cursor<Input>::usual_number(const char* at, double& number) const noexcept {
    return end() - at > usual_number_room ? detail::usual_number(at, number) : nullptr;
}

template <class Input>
[[gnu::always_inline]] inline const char*
Cursor<Input>::skip_usual_number(const char* at, std::ptrdiff_t room) const noexcept {
    const char* const digits = at + (*at == '-' ? 1 : 0);
    return end() - digits > room ? detail::skip_usual_number(digits) : nullptr;
}

template <class Input>
template <std::size_t Size>
const char* Cursor<Input>::word(const char* at, const char (&word)[Size]) {
    const char* begin = at;
    for (std::size_t i = 0; i != Size; ++i) {
        if (at == end()) {
            more(at, begin);
        }
        // Behind the last letter, the word must end.
        const bool as_expected =
            i == Size - 1 ? at == end() || !continues_word(*at) : is_at(at, word[i]);
        if (!as_expected) {
            errors(at).bad_word(begin, at);
        }
        at += i == Size - 1 ? 0 : 1;
    }
    return at;
}

// ---- Errors ----------------------------------------------------------------------------------

template <class Input>
template <class OpeningOf>
[[gnu::cold, gnu::noinline]] void
Cursor<Input>::fail_without_value(const char* at, const OpeningOf& opening, bool after_comma) {
    errors(at).no_value(at, opening(), after_comma);
}

template <class Input>
[[gnu::cold, gnu::noinline]] void Cursor<Input>::fail_too_large(const char* number,
                                                                const char* number_end) {
    check_length_of_token(number, number_end);
    errors(number).too_large(number, number_end);
}

template <class Input>
[[gnu::cold, gnu::noinline]] void Cursor<Input>::fail_duplicate(const StringToken& name) {
    const char* const quote = name.text - 1;
    check_length_of_token(quote, name.end + 1);
    errors(quote).duplicate_name(quote, name);
}

template <class Input>
[[gnu::cold, gnu::noinline]] void Cursor<Input>::fail_too_long(const char* limit) {
    errors(limit).too_long(limit, input_.most_kept());
}

} // namespace foundation::json::detail

#endif
