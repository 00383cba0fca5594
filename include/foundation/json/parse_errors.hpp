/// @file
/// The errors of JSON parsers. A parser, such as that of parse.hpp, throws a ParserException with
/// one of these codes, a message and the position of the error. Its caller can show them, here with
/// the description of the code:
///
///     try {
///         value = read(text);
///     } catch (const ParserException& e) {
///         std::cout << e.get_line_number() << ':' << e.get_column() << ": "
///                   << get_parse_result_description(e.get_parse_result()) << '\n';
///     }
#ifndef FOUNDATION_JSON_PARSE_ERRORS_HPP
#define FOUNDATION_JSON_PARSE_ERRORS_HPP

#include <foundation/json/export.hpp>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace foundation::json {

/// The result of parsing. get_parse_result_description() describes each code in English.
enum ParseResult : std::int32_t {
    NO_PARSE_ERROR = 0,
    NULL_MISMATCH = 1,
    BOOLEAN_MISMATCH = 2,
    EMPTY_INPUT = 3,
    INCOMPLETE_ESCAPE_SEQUENCE = 4,
    INVALID_ESCAPE_SEQUENCE = 5,
    INVALID_UNICODE_ESCAPE = 6,
    UNESCAPED_QUOTE = 7,
    MISSING_LEADING_QUOTE = 8,
    MISSING_TRAILING_QUOTE = 9,
    MISSING_QUANTITY_AFTER_SIGN = 10,
    MISSING_LEADING_DIGIT = 11,
    INVALID_FRACTION = 12,
    INVALID_EXPONENT = 13,
    MISSING_ARRAY_OPEN = 14,
    MISSING_ARRAY_CLOSE = 15,
    MISSING_OBJECT_OPEN = 16,
    MISSING_OBJECT_CLOSE = 17,
    MISSING_NAME_SEPARATOR = 18,
    UNEXPECTED_END_OF_INPUT = 19,
    INVALID_INTEGER_ARRAY_VALUE = 20
};

/// An English sentence for a code, without a full stop.
///
/// NO_PARSE_ERROR has no description, since it is not an error: like any number that is not a code,
/// it gives "Unrecognized error code".
/// Never throws; constant time.
/// @return a string in static storage
[[nodiscard]] FOUNDATION_JSON_EXPORT const char* get_parse_result_description(ParseResult r);

/// The exception of a parser: a code, the position of the error, and the piece of input around it.
/// what() is the message that was given to the constructor. Copies are independent of each other.
class FOUNDATION_JSON_EXPORT ParserException : public std::runtime_error {
public:
    /// An exception with all its parts.
    /// @param message               the string of what()
    /// @param parse_result          what went wrong
    /// @param byte_position         offset of the failing byte in the input, from 0
    /// @param line_number           its line, from 1
    /// @param column                its column in that line, from 1
    /// @param quoted_byte_position  offset of the failing byte within quoted_text, from 0
    /// @param quoted_text           the piece of input to show with the error
    /// @throws std::bad_alloc if memory runs out
    ParserException(const std::string& message, ParseResult parse_result, std::size_t byte_position,
                    std::size_t line_number, std::size_t column, std::size_t quoted_byte_position,
                    const std::string& quoted_text);

    /// A copy, independent of the other.
    /// @throws std::bad_alloc if memory runs out
    ParserException(const ParserException& other);

    /// Takes over the other's quoted text, which becomes empty; its what(), code and positions
    /// stay.
    ParserException(ParserException&& other) noexcept;

    /// Copies everything from the other.
    /// @throws std::bad_alloc if memory runs out; then the message and the numbers may already be
    ///         the other's, while the quoted text is still this one's
    ParserException& operator=(const ParserException& other);

    /// Takes over the other's quoted text, which becomes empty; its what(), code and positions
    /// stay. Assigning an exception to itself changes nothing.
    ParserException& operator=(ParserException&& other) noexcept;

    ~ParserException() override;

    /// @name Accessors
    /// They return the constructor's arguments, in constant time and without throwing. Only
    /// get_quoted_text() copies its text, which may throw std::bad_alloc.
    /// @{
    [[nodiscard]] ParseResult get_parse_result() const;  ///< what went wrong
    [[nodiscard]] std::size_t get_byte_position() const; ///< offset of the failing byte, from 0
    [[nodiscard]] std::size_t get_line_number() const;   ///< its line, from 1
    [[nodiscard]] std::size_t get_column() const;        ///< its column in that line, from 1
    [[nodiscard]] std::size_t
    get_quoted_byte_position() const;                  ///< its offset in the quoted text, from 0
    [[nodiscard]] std::string get_quoted_text() const; ///< the piece of input to show
    /// @}

private:
    ParseResult parse_result_;
    std::size_t byte_position_;
    std::size_t line_number_;
    std::size_t column_;
    std::size_t quoted_byte_position_;
    std::string quoted_text_;
};

} // namespace foundation::json

#endif
