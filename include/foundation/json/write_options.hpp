/// @file
/// The options of write(), and the exception for what JSON cannot express. It includes neither
/// Value nor any container.
#ifndef FOUNDATION_JSON_WRITE_OPTIONS_HPP
#define FOUNDATION_JSON_WRITE_OPTIONS_HPP

#include <foundation/json/export.hpp>

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::json {

/// @cond
namespace detail {

/// An object of any type, and how it is written; see write_types.hpp.
struct AnyObject;

/// How write_types.hpp makes itself known to the headers that can do without it: it declares
/// functions object_of(OfOtherType, const T&), which give an AnyObject.
struct OfOtherType {};

template <class T, class = void>
inline constexpr bool is_other_type = false;
template <class T>
inline constexpr bool
    is_other_type<T, std::void_t<decltype(object_of(OfOtherType(), std::declval<const T&>()))>> =
        true;

} // namespace detail
/// @endcond

/// How a value is written. By default as by JSON.stringify(value), except that what JSON cannot
/// express is an error.
struct WriteOptions {
    /// The spaces for each level, on lines of their own; 0 writes all on one line. As in
    /// JSON.stringify, more than 10 count as 10.
    unsigned indent = 0;

    /// Whether every character beyond ASCII is written as `\u` and four digits, in pairs beyond
    /// U+FFFF.
    bool ascii = false;

    /// Whether a slash is written `\/`, so that JSON in a script of an HTML page cannot end it.
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
        utf16 ///< by the UTF-16 units of names; names that are not UTF-8 have no defined position.
              ///< A Writer must be given names in this order; one that breaks it, or comes twice,
              ///< is a WriteError
    };
    MemberOrder member_order = MemberOrder::as_given; ///< by default as they come

    /// The default options with an indentation: `write(value, WriteOptions::indented(2))`.
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

/// The exception for what JSON cannot express. what() begins with the location of the error, "at
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

    /// The location as a JSON Pointer, not escaped. The empty string is the root. For a name that
    /// cannot be written it is that of the object.
    [[nodiscard]] const std::string& pointer() const noexcept { return *pointer_; }

private:
    std::shared_ptr<const std::string> pointer_; // shared, so that copies cannot throw
};

} // namespace foundation::json

#endif
