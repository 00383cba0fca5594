/// @file
/// From text to values: the library foundation_json_parser.
///
///     Value pair = parse("[1, 2.5]");
///     ParseOptions options;
///     options.comments = true;
///     Value config = parse_file("server.json", options);
///
/// The text is JSON as RFC 8259 has it, in UTF-8, which is checked; a byte order mark at the start
/// is skipped. Anything else is a ParserException, whose what() says by itself what was found;
/// describe() shows it with the line and a caret under the byte:
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
/// Several values, one per line or merely one after the other, come from a ValueStream.
///
/// All of these may run in any number of threads at once. None depends on the locale or on the
/// floating-point environment, which they leave as it is, flags included.
#ifndef FOUNDATION_JSON_PARSE_HPP
#define FOUNDATION_JSON_PARSE_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/parse_errors.hpp>
#include <foundation/json/value.hpp>

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace foundation::json {

/// What to accept, and as what.
struct ParseOptions {
    /// How deep arrays and objects may nest. Reading takes no stack for it, but copying, comparing,
    /// writing and destroying a value do: 100,000 levels are safe on a stack of 8 MiB.
    std::size_t max_depth = 1000;

    /// What becomes of a whole number, written without point and exponent, that no double holds
    /// exactly, such as 9007199254740993.
    enum class Integers {
        exact,    ///< int64, else uint64, if one of these holds it
        as_double ///< the nearest double, as all other numbers
    };
    Integers integers = Integers::exact; ///< by default such numbers keep all digits

    /// What becomes of a name that an object has already. Names are compared without their escapes.
    enum class DuplicateNames {
        last_wins, ///< its value replaces the earlier one
        error      ///< the text is refused
    };
    DuplicateNames duplicate_names = DuplicateNames::last_wins; ///< by default none is an error

    /// Whether `// to the end of the line` and `/* this */` may stand wherever blanks may.
    bool comments = false;

    /// Whether a comma may follow the last element or member.
    bool trailing_commas = false;
};

/// The value of a text.
///
/// Strings and names are kept as they are written, without escapes; a surrogate escape without its
/// partner becomes U+FFFD. A number that is too small for a double becomes 0 or the smallest ones;
/// one that is too large is an error. -0 is the double -0.0.
///
/// An error is located at the first byte that cannot continue a JSON text, but for two: a number
/// that is too large and a name that occurs twice, which are located at their first byte. Bytes
/// count from 0, a byte order mark included. Lines end with LF or CR LF. Columns count characters:
/// every byte but continuation bytes of UTF-8, a byte order mark not included. The quoted text is
/// the line, without its end, of which no more than 160 bytes on either side of the place.
///
/// @param text     need not outlive the call
/// @param options  what to accept
/// @throws ParserException the text is not what the options accept
/// @throws std::bad_alloc  memory runs out
/// @complexity linear in the length of the text, but for names that do not ascend, each of which
/// takes a search in its object. Besides the text and the value, memory of a few pages is in use.
FOUNDATION_JSON_EXPORT Value parse(std::string_view text, const ParseOptions& options = {});

/// The value of a stream from where it stands to its end; as the parse() of a text.
///
/// Reads unformatted, blanks included, to the end of the stream, and then holds the whole text.
/// Afterwards the stream has eofbit set, but throws nothing on account of that whatever its
/// exceptions().
///
/// @throws std::ios_base::failure the stream is not good at first, or turns bad: an error in its
///         middle is not its end. badbit is set then
/// @throws whatever the stream buffer throws, with badbit set
/// @throws ParserException        positions count from where the stream stood
FOUNDATION_JSON_EXPORT Value parse(std::istream& stream, const ParseOptions& options = {});

/// The value of a file: a regular file, a pipe, or whatever else can be read to its end.
///
/// @throws std::system_error the file cannot be read, is a directory, or became shorter while it
///         was read; what() names it
/// @throws ParserException   the text is not what the options accept
FOUNDATION_JSON_EXPORT Value parse_file(const std::filesystem::path& path,
                                        const ParseOptions& options = {});

/// Values one after the other, of a stream: JSON Lines, or merely concatenated.
///
///     ValueStream values(stream);
///     for (Value value; values.next(value);) {
///         std::cout << serialize(value) << '\n';
///     }
///
/// A value is there as soon as its last byte is: an array, object or string with its closing
/// bracket or quote, a number or word with the blank or line end behind it. No more is asked of the
/// stream until then, but all that is there without waiting may be taken from it. Values need no
/// more between them than it takes to tell them apart. One value, and the text of one, is held at a
/// time.
///
/// Not for use by two threads at once.
class FOUNDATION_JSON_EXPORT ValueStream {
public:
    /// Refers to the stream, which must outlive it; reads nothing yet.
    /// @throws std::bad_alloc memory runs out
    explicit ValueStream(std::istream& stream, const ParseOptions& options = {});

    ValueStream(ValueStream&& other) noexcept; ///< leaves the other fit only to be assigned to
    ValueStream& operator=(ValueStream&& other) noexcept; ///< the same
    ~ValueStream();

    /// Reads the next value.
    ///
    /// @param value  becomes the value read; stays as it is if there is none and after an error
    /// @return false at the end of the stream
    /// @throws ParserException        what comes next is no value that the options accept; the next
    ///         call goes on with the line behind that of the error. Positions count from where the
    ///         stream stood at first
    /// @throws std::ios_base::failure the stream is not good at first, or turns bad
    /// @throws whatever the stream buffer throws
    /// @throws std::bad_alloc         memory runs out; the next call goes on with the same value
    bool next(Value& value);

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

/// An error as people want to see it: `NAME:LINE:COLUMN: what()`, the line, and a caret under the
/// place, three lines that each end with a line feed.
///
/// Tabs appear as single blanks, and what does not print as a dot, in the name as well; long lines
/// are cut around the place. The caret allows for wide and combining characters.
/// @param error  of the parser, or of another reader
/// @param name   what was read, such as a file; where it is empty the text begins with LINE
/// @throws std::bad_alloc memory runs out
FOUNDATION_JSON_EXPORT std::string describe(const ParserException& error,
                                            std::string_view name = {});

} // namespace foundation::json

#endif
