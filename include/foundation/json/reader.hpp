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
/// A Reader takes the same memory for documents of every size. It throws the same exceptions as
/// parse(), but only when it comes to the error: it has returned the tokens before it by then. For
/// the elements of a large array, or one value per line, records.hpp takes fewer lines of code.
#ifndef FOUNDATION_JSON_READER_HPP
#define FOUNDATION_JSON_READER_HPP

#include <foundation/json/detail/number_parts.hpp>
#include <foundation/json/detail/read_object.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/members.hpp>
#include <foundation/json/number.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/position.hpp>
#include <foundation/json/value.hpp>

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace foundation::json {

/// The tokens of a Reader.
enum class Token {
    none,         ///< no token: next() has not been called, or has failed
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

/// Reads one document token by token.
///
/// A function that asks for content of another type than that of the current token throws
/// std::runtime_error, "invalid conversion: JSON string to JSON number". At a token that never has
/// such content, such as the end of an array, it throws std::logic_error.
///
/// With the option duplicate_names set to error, the names of all open objects are in memory. Two
/// threads must not use one Reader at once.
class FOUNDATION_JSON_PARSER_EXPORT Reader {
public:
    /// Parses a string.
    /// @param text     must outlive the reader
    /// @param options  as for parse()
    /// @throws std::bad_alloc memory runs out
    explicit Reader(std::string_view text, const ParseOptions& options = {});

    /// Deleted: a temporary string would be destroyed before the first token is read.
    template <class String,
              std::enable_if_t<std::is_same_v<std::remove_const_t<String>, std::string>, int> = 0>
    explicit Reader(String&& text, const ParseOptions& options = {}) = delete;

    /// Reads the rest of a stream, of which a piece is in memory at a time. Waits for no more of it
    /// than the next token needs: a number, `true`, `false` or `null` needs the byte after it.
    /// @param stream     must outlive the reader; nothing is read yet
    /// @param options    as for parse()
    /// @param max_bytes  how long the text of a string, number or name may be, with its quotes, or
    ///                   of a value(); a longer one is an error
    /// @throws std::bad_alloc memory runs out
    explicit Reader(std::istream& stream, const ParseOptions& options = {},
                    std::size_t max_bytes = static_cast<std::size_t>(-1));

    Reader(Reader&& other) noexcept;            ///< then, the other may only be assigned to
    Reader& operator=(Reader&& other) noexcept; ///< the same
    ~Reader();

    /// Goes on to the next token. After an exception there is no current token until a call
    /// succeeds.
    /// @return that token; Token::end again after the end
    /// @throws ParserException        as parse(); every later call of next(), skip() and value()
    ///                                throws the same
    /// @throws std::ios_base::failure the stream is not good at first, or fails before its end
    /// @throws whatever the stream buffer throws; once the stream works again, the next call goes
    ///         on with the same token
    /// @throws std::bad_alloc         memory runs out; the next call goes on with the same token
    /// @complexity linear in the length of the token and the whitespace before it; with the option
    ///             duplicate_names set to error, also a search among the names of the object
    Token next();

    /// The current token. Constant time.
    [[nodiscard]] Token token() const noexcept;

    /// @name Content of the current token
    /// @{

    /// The content of a string or name, without escapes.
    /// @return valid until the next call of next(), skip() or value()
    /// @complexity constant; linear in its length if it has escapes
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
    /// They go on to the last token of the value that begins at the current token or, at a name, of
    /// the value of that member. If the last call failed, they begin with the token that it did not
    /// read.
    /// @{

    /// Skips the value; does nothing where none begins. What is skipped is checked, too.
    /// @throws as next(); if that is not a ParserException, the next call of skip() continues, and
    ///         next() returns the token within the value that was not read
    void skip();

    /// The value. It and its JSON text are in memory then.
    /// @throws std::logic_error no value begins here
    /// @throws as next(); if that is not a ParserException, the reader is where it was
    [[nodiscard]] Value value();

    /// The value as an object of a type of your own, as by read_into() in read.hpp, which must be
    /// included.
    /// @param object   after an exception, it is as its default constructor makes it
    /// @param options  what to accept
    /// @throws ReadError        the value does not fit the type; then the reader is after it.
    ///                          Position and pointer are those in the document
    /// @throws std::logic_error no value begins here
    /// @throws as next(); if that is not a ParserException, the reader is where it was
    template <class T>
    void read(T& object, const ConvertOptions& options = {}) {
        detail::ObjectReader<T>::read(
            object, [&](const detail::ReadObject& target) { read_object(target, options); });
    }
    /// @}

    /// @name Where the reader is
    /// @{

    /// How many arrays and objects are open: one within `[`, none after `]`.
    [[nodiscard]] std::size_t depth() const noexcept;

    /// The JSON Pointer to the value of the current token; at a name, to its member. Without a
    /// token, it is that of the last one.
    /// @throws std::bad_alloc memory runs out
    /// @complexity linear in its length
    [[nodiscard]] std::string pointer() const;

    /// Where the current token begins. Without one, it is where the error is or, after another
    /// exception, somewhere after the last token.
    /// @complexity amortized linear in the text since the last call
    [[nodiscard]] Position position() const;
    /// @}

private:
    [[nodiscard]] detail::NumberContent number_content() const;
    void read_object(const detail::ReadObject& target, const ConvertOptions& conversion);

    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace foundation::json

#endif
