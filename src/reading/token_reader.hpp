/// @file
/// Reads a document token by token: what is behind a Reader.
#ifndef FOUNDATION_JSON_SRC_READING_TOKEN_READER_HPP
#define FOUNDATION_JSON_SRC_READING_TOKEN_READER_HPP

#include "grammar/cursor.hpp"
#include "grammar/window.hpp"
#include "reading/reuse.hpp"
#include "reading/stack.hpp"

#include <foundation/json/reader.hpp>

#include <cstddef>
#include <exception>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace foundation::json::detail {

/// Reads the tokens of a document in a Window, and knows where it is.
///
/// The names and brackets that lead to where it is are in the text as long as that is there; what
/// the window gives up is copied first.
class TokenReader final : private WindowListener {
public:
    /// @param options  must outlive the reader
    /// @param input    the arguments of the constructor of the Window
    template <class... Arguments>
    explicit TokenReader(const ParseOptions& options, const Arguments&... input)
        : cursor_(options, input...),
          number_room_(window().most_kept() < std::size_t{skipped_number_room}
                           ? unlimited_room
                           : skipped_number_room) {
        window().set_listener(this);
    }
    TokenReader(const TokenReader&) = delete;
    TokenReader& operator=(const TokenReader&) = delete;
    ~TokenReader() = default;

    /// After an exception there is no current token. What is not about the text may be tried again.
    Token next() {
        skips_ = false;
        return read();
    }
    Token token() const noexcept { return token_; }

    // Of the current token, as in Reader.

    /// A string or name.
    const StringToken& string() const noexcept { return string_; }
    /// The text of a number.
    std::string_view number_text() const noexcept {
        return {begin_, static_cast<std::size_t>(number_end_ - begin_)};
    }
    NumberContent number_content() const noexcept;
    bool boolean() const noexcept { return *begin_ == 't'; }

    /// The content of a string or name.
    std::string decoded() const;

    void skip();

    /// Goes to the begin of the value that is there, of the member whose name is, or of what an
    /// earlier call has failed to read. @return whether there is one
    bool find_value();

    /// The value that find_value() has found. Goes to its end.
    Value value();

    /// The same into a value whose memory is used again; calls a function to take it. If that
    /// throws, the reader stays where it was.
    template <class Take>
    void value(Reuse& target, const Take& take);

    /// The text of the value that is passed, or has been; behind an error, its begin.
    std::string_view text_of_value() const noexcept {
        return {begin_of_value_, static_cast<std::size_t>(end_of_value_ - begin_of_value_)};
    }

    /// Where the error is that has been thrown.
    const char* error() const noexcept { return end_of_value_; }

    std::size_t depth() const noexcept { return levels_.size(); }
    std::string pointer() const;
    TextPosition position() noexcept {
        return position_of(begin_ != nullptr ? begin_ : window().at());
    }
    TextPosition position_of(const char* at) noexcept { return window().locate(at); }

private:
    /// What comes next.
    enum class State {
        separator_in_array, ///< a comma, or the end of the array
        separator_in_object,
        member,        ///< the value of a member
        first_element, ///< an element, or the end of the array
        first_name,    ///< a name, or the end of the object
        first_rare,
        start = first_rare,
        root,    ///< the value of the document
        element, ///< what follows a comma in an array
        name,    ///< the same in an object
        colon,
        behind, ///< nothing but space
        ended,
        interrupted, ///< by an exception that is not about the text
        failed,      ///< for good
    };

    /// An array or object that is open.
    struct Level {
        static constexpr std::size_t no_name = ~std::size_t{0};

        std::size_t opening; ///< the byte of the input that is its bracket
        std::size_t name;    ///< the byte of the input where the name of the present member begins
        std::size_t name_size; //
        std::size_t elements;  ///< so far, with the present one
        bool is_array;
        bool name_is_escaped;
    };

    /// Gives the opening bracket of the innermost level.
    struct OpeningOf {
        Opening operator()() const { return reader.opening(); }
        const TokenReader& reader;
    };

    /// What a level had in text that is given up.
    struct Kept {
        TextPosition opening;
        std::string name;
    };

    static constexpr std::ptrdiff_t unlimited_room = std::numeric_limits<std::ptrdiff_t>::max();

    void forget(const Context& context, const char* end) override;
    void forget_of(std::size_t level, const Context& context, std::size_t first, std::size_t last);

    Token read();
    Token read_next();
    Token read_rare();
    void interrupt() noexcept;
    void fail(const ParserException& error) noexcept;
    void go_on(const char* at, State state) noexcept;
    Token read_name(const char* at, bool behind_comma);
    Token read_value(const char* at, bool behind_comma);
    void read_any_number(const char* at);
    Token end_value(const char* end, Token token) noexcept;
    Token open(const char* at, Token token);
    Token close(const char* at, Token token);
    void check_duplicate();
    bool is_at_container() const noexcept {
        return token_ == Token::begin_array || token_ == Token::begin_object;
    }
    Value scalar() const;
    void read_value(Value& target, Reuse* reuse);
    void read_container(Value& target, Reuse* reuse);
    void go_back() noexcept;
    void go_behind();

    Opening opening() const;
    void append_name(std::string& pointer, std::size_t level) const;

    Window& window() noexcept { return cursor_.input(); }
    const Window& window() const noexcept { return cursor_.input(); }

    Cursor<Window> cursor_;
    const std::ptrdiff_t number_room_; ///< with more, a number needs no check of its length
    State state_ = State::start;
    State interrupted_ = State::start; ///< what has been interrupted
    std::exception_ptr error_;         ///< what has failed for good
    Token token_ = Token::none;
    const char* begin_ = nullptr; ///< of the current token, or of an error; null without one
    char last_ = '\0';            ///< of the value before
    StringToken string_{};
    const char* number_end_ = nullptr;
    const char* begin_of_value_ = nullptr;
    const char* end_of_value_ = nullptr;
    bool skips_ = false;         ///< whether skip() has begun
    std::size_t skipped_to_ = 0; ///< the depth at which it ends
    Stack<Level> levels_;
    std::vector<Kept> kept_;                   ///< for the outer levels
    std::vector<std::set<std::string>> names_; ///< for each level, if they must differ
};

template <class Take>
void TokenReader::value(Reuse& target, const Take& take) {
    read_value(target.value, &target);
    try {
        take();
    } catch (...) {
        go_back();
        throw;
    }
    go_behind();
}

} // namespace foundation::json::detail

#endif
