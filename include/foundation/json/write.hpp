/// @file
/// JSON text for other programs: byte for byte what JSON.stringify writes. Not part of json.hpp.
///
///     std::string answer = write(value);                            // {"id":1763781000016}
///     write(stream, value, WriteOptions::indented(2));              // onto a std::ostream
///     write_file("settings.json", value, WriteOptions::indented(2)); // all or nothing
///     std::string signed_text = write(value, WriteOptions::canonical()); // RFC 8785
///
/// A text that is too big to be a Value first is written piece by piece:
///
///     Writer writer(stream);
///     writer.begin_object().name("items").begin_array();
///     for (const Item& item : items) {
///         writer.begin_object().name("id").value(item.id).end();
///     }
///     writer.end().end();
///
/// Layout, escapes and numbers are those of ECMAScript's JSON.stringify(value, null, indent). Whole
/// numbers below 1e21 are digits; other doubles and floats are the shortest text that reads back as
/// the same double or float; int64 and uint64 have all their digits. Members come in the byte-wise
/// order of their names, as a Value has them; Undefined members are left out, and Undefined
/// elements are null. What JSON cannot express is an error that names its place, where
/// JSON.stringify would write something else.
///
/// The text depends on the value and the options alone: not on locales, the flags and the width of
/// a stream, or the floating-point environment, which stays unchanged with its flags. The fixed
/// text of serializer.hpp has rules of its own.
#ifndef FOUNDATION_JSON_WRITE_HPP
#define FOUNDATION_JSON_WRITE_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/value.hpp>

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace foundation::json {

/// How a text is written. An option that is not set has the value of JSON.stringify(value), but
/// that what JSON cannot express is an error.
struct WriteOptions {
    /// The spaces for each level, on lines of their own; 0 writes all on one line. As in
    /// JSON.stringify, more than 10 count as 10.
    unsigned indent = 0;

    /// Whether every character beyond ASCII is written as `\u` and four digits, in pairs beyond
    /// U+FFFF.
    bool ascii = false;

    /// Whether a slash is written `\/`: then a text within a script of an HTML page cannot end it.
    bool escape_slash = false;

    /// What becomes of NaN and the infinities.
    enum class NotFinite {
        error, ///< a WriteError
        null,  ///< null, as JSON.stringify writes them
        string ///< "NaN", "Infinity" or "-Infinity", which Number() of ECMAScript reads
    };
    NotFinite not_finite = NotFinite::error; ///< by default an error

    /// What becomes of bytes in strings and names that are not UTF-8.
    enum class BadUtf8 {
        error,   ///< a WriteError
        replace, ///< U+FFFD for each byte or cut-off sequence, as web browsers decode it
        keep     ///< such bytes are written as they are; the text is not UTF-8 then
    };
    BadUtf8 bad_utf8 = BadUtf8::error; ///< by default an error

    /// What becomes of an int64 or uint64 beyond 2^53. Readers that have only doubles, such as web
    /// browsers, lose the last digits of these.
    enum class BigIntegers {
        digits,   ///< all digits
        string,   ///< all digits, in quotes
        as_double ///< as the double that it equals; a WriteError if it equals none
    };
    BigIntegers big_integers = BigIntegers::digits; ///< by default all digits

    /// The order of the members of an object.
    enum class MemberOrder {
        as_given, ///< that of a Value, by the bytes of names; that of the calls of a Writer
        utf16     ///< by the UTF-16 units of names. A Writer has to be given them in this order; a
                  ///< name that breaks it, or comes twice, is a WriteError.
    };
    MemberOrder member_order = MemberOrder::as_given; ///< by default as they come

    /// All on one line but for the indentation: `write(value, WriteOptions::indented(2))`.
    [[nodiscard]] static WriteOptions indented(unsigned spaces) noexcept {
        WriteOptions options;
        options.indent = spaces;
        return options;
    }

    /// The canonical form of RFC 8785: the same data give the same bytes everywhere, to be hashed
    /// or signed. What has no such form is an error.
    [[nodiscard]] static WriteOptions canonical() noexcept {
        WriteOptions options;
        options.big_integers = BigIntegers::as_double;
        options.member_order = MemberOrder::utf16;
        return options;
    }
};

/// The exception for what a text cannot express. what() begins with the location of the error, "at
/// /servers/3/load: " or "at the root: "; quotes, backslashes and control bytes in it are escaped
/// as in a JSON string.
class FOUNDATION_JSON_EXPORT WriteError : public std::runtime_error {
public:
    /// @param pointer  the location, as a JSON Pointer (RFC 6901)
    /// @param problem  what what() says after the location
    /// @throws std::bad_alloc if memory runs out
    WriteError(std::string pointer, const std::string& problem);

    WriteError(const WriteError&) = default;            ///< never throws
    WriteError& operator=(const WriteError&) = default; ///< never throws
    ~WriteError() override;

    /// The location as a JSON Pointer, not escaped. The empty text is the root. For a name that
    /// cannot be written it is that of the object.
    [[nodiscard]] const std::string& pointer() const noexcept { return *pointer_; }

private:
    std::shared_ptr<const std::string> pointer_; // shared, so that copies cannot throw
};

/// @name Whole values
/// All throw WriteError for what the options do not allow: NaN, an infinity, a string or name that
/// is not UTF-8, an integer that is no double, and Undefined by itself.
/// @complexity linear in the length of the text; recursion as deep as the nesting, 100,000 levels
/// on
///             a stack of 8 MiB. With MemberOrder::utf16, sorting besides, in objects that need it.
/// @{

/// The text of a value, without a line end.
/// @throws WriteError     the options do not allow something in it
/// @throws std::bad_alloc memory runs out
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string write(const Value& value,
                                                       const WriteOptions& options = {});

/// Writes the text of a value onto a stream, without a line end.
///
/// It is unformatted output, in pieces of some kilobytes, each as by std::ostream::write: flags,
/// width, fill and locale have no effect, nothing is flushed, and a piece that the stream buffer
/// does not take in full sets badbit. Text written to a failed stream is lost.
///
/// @throws WriteError     the options do not allow something in it; the stream may have got the
///                        pieces before that. A text of less than 4096 bytes is one piece
/// @throws std::bad_alloc memory runs out, and the same holds
/// @throws whatever std::ostream::write throws, by the exceptions() of the stream
FOUNDATION_JSON_EXPORT void write(std::ostream& stream, const Value& value,
                                  const WriteOptions& options = {});

/// Writes the text of a value and a line end to a file, all or nothing: a new file, beside the old
/// one, gets the text, and takes its place once everything is on the disk.
///
/// After any error, the old file is as it was, or there is none, and nothing else is left in its
/// folder. Only a program that ends abruptly may leave the new file there, a hidden one with the
/// name `.foundation_json.*`.
///
/// The new file has the permissions of the old one and, as far as the process may give a file away,
/// its owner and group; without an old one it has those that the process gives new files. If the
/// path is a symbolic link, the file it leads to is replaced or made. Other hard links to the old
/// file keep the old text. Programs that read the file meanwhile get the old text or the new.
///
/// @throws std::system_error "cannot write 'a.json': ...", with the reason that the system gives:
///         the folder does not exist or may not be written to, the disk is full, the old file is
///         write-protected or is not a regular file
/// @throws WriteError        the options do not allow something in the value
/// @throws std::bad_alloc    memory runs out
FOUNDATION_JSON_EXPORT void write_file(const std::filesystem::path& path, const Value& value,
                                       const WriteOptions& options = {});
/// @}

} // namespace foundation::json

#endif
