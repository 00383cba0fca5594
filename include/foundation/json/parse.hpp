/// @file
/// Parses JSON into values: the main header of the library foundation::json_parser.
///
///     Value pair = parse("[1, 2.5]");
///     ParseOptions options;
///     options.comments = true;
///     Value config = parse_file("server.json", options);
///
/// The input is JSON as defined by RFC 8259, in valid UTF-8; a byte order mark at the start is
/// skipped. Any other input throws ParserException. Its what() says what was found; describe() adds
/// the position, the line and a caret:
///
///     try {
///         Value list = parse("[1, 2,]");
///     } catch (const ParserException& error) {
///         std::cout << describe(error, "list.json");
///         // ->
///         // list.json:1:7: found ']' after a comma: the option trailing_commas allows it
///         // [1, 2,]
///         //       ^
///     }
///
/// ValueStream parses several values, one after the other. See also read.hpp and records.hpp.
///
/// All functions may run in several threads at once. They do not depend on locales or on the
/// floating-point environment, and leave the latter unchanged, including its flags.
#ifndef FOUNDATION_JSON_PARSE_HPP
#define FOUNDATION_JSON_PARSE_HPP

#include <foundation/json/describe.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/parse_errors.hpp>
#include <foundation/json/parse_options.hpp>
#include <foundation/json/value.hpp>

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace foundation::json {

/// Parses a string.
///
/// Strings and names are unescaped; an unpaired surrogate escape becomes U+FFFD. A number that is
/// too small for a double becomes 0 or a subnormal number; one that is too large is an error. -0 is
/// the double -0.0.
///
/// The position of an error is the first byte that cannot continue a JSON text; for a number that
/// is too large and for a duplicate name, it is their first byte. Bytes count from 0,
/// including a byte order mark. Lines end with LF or CR LF. Columns count characters, that is all
/// bytes but the continuation bytes of UTF-8, and leave out a byte order mark. The quoted text is
/// the line without its end, with at most 160 bytes on either side of the error.
///
/// @param text     the JSON text; need not outlive the call
/// @param options  what to accept
/// @throws ParserException the options do not accept the text
/// @throws std::bad_alloc  memory runs out
/// @complexity linear in the length of the text, plus a search in the object for each name that is
/// not in ascending order. Besides the text and the value, or the part that was parsed before an
/// error, it uses at most 1 MiB and 64 bytes for each open array or object; also a sixth of what
/// the value takes, where `sizeof(Value)` is less than 40, as on systems of 32 bits and with
/// libc++. Memory for the elements of a long array is reserved once, for as many as the text seems
/// to have: at most one for every two bytes.
FOUNDATION_JSON_PARSER_EXPORT Value parse(std::string_view text, const ParseOptions& options = {});

/// Parses the rest of a stream, from its current position to its end; otherwise like parse() of a
/// string.
///
/// Reads unformatted, including whitespace, to the end of the stream, and holds the whole text in
/// memory. Afterwards eofbit is set, which throws nothing here, whatever the stream's exceptions().
///
/// @throws std::ios_base::failure the stream is not good at first, or fails before its end; then
///         badbit is set
/// @throws whatever the stream buffer throws, with badbit set
/// @throws ParserException        positions count from the initial position of the stream
FOUNDATION_JSON_PARSER_EXPORT Value parse(std::istream& stream, const ParseOptions& options = {});

/// The same with a limit.
/// @param stream     as above
/// @param options    what to accept
/// @param max_bytes  how long the text may be; reading ends after so many bytes
/// @throws ParserException also if the text is longer
FOUNDATION_JSON_PARSER_EXPORT Value parse(std::istream& stream, const ParseOptions& options,
                                          std::size_t max_bytes);

/// Parses a file: a regular file, a pipe, or whatever else can be read to its end.
///
/// @throws std::system_error the file cannot be read, is a directory, or became shorter while it
///         was read; what() names it
/// @throws ParserException   the options do not accept its content
FOUNDATION_JSON_PARSER_EXPORT Value parse_file(const std::filesystem::path& path,
                                               const ParseOptions& options = {});

/// The same with a limit.
/// @param path       of the file
/// @param options    what to accept
/// @param max_bytes  how long the file may be; reading ends after so many bytes
/// @throws ParserException also if the file is longer
FOUNDATION_JSON_PARSER_EXPORT Value parse_file(const std::filesystem::path& path,
                                               const ParseOptions& options, std::size_t max_bytes);

/// Parses values of a stream one after the other: JSON Lines, or simply concatenated values.
///
///     ValueStream values(stream);
///     for (Value value; values.next(value);) {
///         std::cout << serialize(value) << '\n';
///     }
///
/// A value is returned as soon as its last byte was read: an array, object or string with its
/// closing bracket or quote, a number or word with the whitespace after it. next() waits for
/// no byte beyond that, but may take all that the stream has available. Values need a separator
/// only where they would run into each other. One value and its text are in memory at a time;
/// whitespace and comments between values are not.
///
/// Two threads must not use it at once.
class FOUNDATION_JSON_PARSER_EXPORT ValueStream {
public:
    /// Refers to the stream, which must outlive this object; reads nothing yet.
    /// @throws std::bad_alloc memory runs out
    explicit ValueStream(std::istream& stream, const ParseOptions& options = {});

    /// The same with a limit.
    /// @param stream     must outlive this object; nothing is read yet
    /// @param options    what to accept
    /// @param max_bytes  how long the text of one value may be, without the whitespace around it;
    ///                   a longer one is an error of next()
    ValueStream(std::istream& stream, const ParseOptions& options, std::size_t max_bytes);

    ValueStream(ValueStream&& other) noexcept; ///< then, the other may only be assigned to
    ValueStream& operator=(ValueStream&& other) noexcept; ///< the same
    ~ValueStream();

    /// Reads the next value.
    ///
    /// @param value  becomes the value that was parsed. At the end of the stream and after an
    ///               exception it is unchanged, with one exception: it is the bool false if memory
    ///               runs out when an array would become an object, or an object an array
    /// @return false at the end of the stream
    /// @throws ParserException        the options do not accept what comes next; the next call
    ///         continues with the line after that of the error. Positions count from the initial
    ///         position of the stream. The rest of the line is read first, since the error quotes
    ///         it: if the stream is an open pipe, the call waits for the end of the line
    /// @throws std::ios_base::failure the stream is not good at first, or fails before its end
    /// @throws whatever the stream buffer throws; once the stream works again, the next call
    ///         continues with the same value
    /// @throws std::bad_alloc         memory runs out; the next call continues with the same value
    /// @complexity linear in the length of the text, also where values are refused
    bool next(Value& value);

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace foundation::json

#endif
