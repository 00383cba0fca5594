/// @file
/// Reader: JSON text token by token, from memory or a stream, without a Value of the whole. Part of
/// the library foundation::json_parser.
///
///     Reader reader(stream);
///     double sum = 0;
///     while (reader.next() != Token::end) {
///         if (reader.token() == Token::name && reader.string() == "price") {
///             reader.next();
///             sum += reader.number<double>();
///         }
///     }
///
/// A Reader takes the same memory for documents of every size. Whatever parse() refuses, it refuses
/// with the same exception, once it gets there. To parse the elements of a large array one by one,
/// or one value per line, records.hpp takes fewer lines.
#ifndef FOUNDATION_JSON_READER_HPP
#define FOUNDATION_JSON_READER_HPP

#include <foundation/json/detail/number_parts.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/number.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/value.hpp>

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace foundation::json {

/// What a Reader is at.
enum class Token {
    none,         ///< nothing yet: next() has not been called
    begin_array,  ///< `[`
    end_array,    ///< `]`
    begin_object, ///< `{`
    end_object,   ///< `}`
    name,         ///< the name of a member; its value comes next
    string,
    number,
    boolean,
    null,
    end, ///< the end of the document
};

/// A position in a document.
struct Position {
    std::size_t byte = 0;   ///< from 0, including a byte order mark
    std::size_t line = 1;   ///< from 1
    std::size_t column = 1; ///< from 1, in characters
};

/// Reads one document token by token.
///
/// What asks for the content of a value of another type throws std::runtime_error, "invalid
/// conversion: JSON string to JSON number"; where the current token has no such content whatever
/// the document, as at the end of an array, std::logic_error. Two threads must not use one Reader
/// at once.
class FOUNDATION_JSON_EXPORT Reader {
public:
    /// Reads a text.
    /// @param text     must outlive the reader
    /// @param options  as for parse()
    /// @throws std::bad_alloc memory runs out
    explicit Reader(std::string_view text, const ParseOptions& options = {});

    /// A string that is gone before the first token cannot be read.
    template <class String,
              std::enable_if_t<std::is_same_v<std::remove_const_t<String>, std::string>, int> = 0>
    explicit Reader(String&& text, const ParseOptions& options = {}) = delete;

    /// Reads the rest of a stream, of which a piece is in memory at a time. Waits for no more of it
    /// than the next token needs: a number or word ends with the byte behind it.
    /// @param stream     must outlive the reader
    /// @param max_bytes  how long a string, number or name may be
    explicit Reader(std::istream& stream, const ParseOptions& options = {},
                    std::size_t max_bytes = static_cast<std::size_t>(-1));

    Reader(Reader&& other) noexcept;            ///< leaves the other fit only to be assigned to
    Reader& operator=(Reader&& other) noexcept; ///< the same
    ~Reader();

    /// Goes on to the next token.
    /// @return that token; Token::end again behind the end
    /// @throws ParserException        as parse(); every later call throws the same
    /// @throws std::ios_base::failure the stream is not good at first, or fails before its end
    /// @throws whatever the stream buffer throws
    /// @throws std::bad_alloc         memory runs out; the next call goes on with the same token
    /// @complexity linear in the length of the token and the space before it
    Token next();

    /// The current token. Constant time.
    [[nodiscard]] Token token() const noexcept;

    /// @name Content of the current token
    /// @{

    /// The content of a string or name, without escapes.
    /// @return valid until the next call of next(), skip() or value()
    /// @throws std::bad_alloc memory runs out for a string with escapes
    [[nodiscard]] std::string_view string() const;

    /// A number, by the rules of number() in number.hpp.
    /// @throws std::out_of_range for an integer type: the number is not within its range, or not
    ///         whole
    template <class Number>
    [[nodiscard]] Number number() const {
        if constexpr (detail::require_number<Number>()) {
            return detail::to_number<Number>(number_content());
        } else {
            detail::refused();
        }
    }

    /// The text of a number, as it stands in the document.
    /// @return valid as that of string()
    [[nodiscard]] std::string_view number_text() const;

    /// The value of `true` or `false`.
    [[nodiscard]] bool boolean() const;
    /// @}

    /// @name Whole values
    /// They go on to the last token of the value that begins with the current one, or of the member
    /// whose name it is. Behind a value, they do nothing, or throw std::logic_error.
    /// @{

    /// Skips that value. What is skipped is checked as all else is.
    /// @throws as next()
    void skip();

    /// That value. It and its text are in memory then.
    /// @throws as next()
    [[nodiscard]] Value value();
    /// @}

    /// @name Where the reader is
    /// @{

    /// How many arrays and objects are open: one within `[`, none behind `]`.
    [[nodiscard]] std::size_t depth() const noexcept;

    /// The JSON Pointer to the value of the current token; at a name, to its member.
    /// @throws std::bad_alloc memory runs out
    [[nodiscard]] std::string pointer() const;

    /// Where the current token begins.
    /// @complexity amortized linear in the text since the last call
    [[nodiscard]] Position position() const;
    /// @}

private:
    [[nodiscard]] detail::NumberContent number_content() const;

    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace foundation::json

#endif
