/// @file
/// Serializes values with the layout, escapes and digits of JSON.stringify. Not part of json.hpp.
///
///     Value value(Property("id") = 1763781000016LL);
///     std::string text = write(value); // -> {"id":1763781000016}
///     write(stream, value, WriteOptions::indented(2));
///     write_file(path, value); // all or nothing
///     std::string same_everywhere = write(value, WriteOptions::canonical());
///
/// A document that is too big to be a Value is written piece by piece:
///
///     Writer writer(stream);
///     writer.begin_object().name("items").begin_array();
///     for (const Item& item : items) {
///         writer.begin_object().name("id").value(item.id).end();
///     }
///     writer.end().end(); // -> {"items":[{"id":1},{"id":2}]}
///
/// Layout, escapes and numbers are those of ECMAScript's JSON.stringify(value, null, indent). Whole
/// numbers below 1e21 are digits; other doubles and floats are the shortest text that parses as the
/// same double or float; int64 and uint64 have all their digits. Members come in the byte-wise
/// order of their names, as a Value has them; Undefined members are left out, and Undefined
/// elements are null. What JSON cannot express is an error that names its location, where
/// JSON.stringify would write something else.
///
/// The text depends on the value and the options alone: not on locales, the flags and the width of
/// a stream, or the floating-point environment, which stays unchanged with its flags. The fixed
/// format of serializer.hpp has rules of its own.
#ifndef FOUNDATION_JSON_WRITE_HPP
#define FOUNDATION_JSON_WRITE_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/value.hpp>
#include <foundation/json/write_file.hpp>
#include <foundation/json/write_options.hpp>

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace foundation::json {

/// @cond
namespace detail {

class WriterState;
struct AnyObject;

/// Whether T is a character type: an integral type that is neither bool nor one of the signed and
/// unsigned integer types.
template <class T>
constexpr bool is_character_type() noexcept {
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return !std::is_same_v<T, std::make_signed_t<T>> &&
               !std::is_same_v<T, std::make_unsigned_t<T>>;
    } else {
        return false;
    }
}

/// The content of Writer::value() as one of the types that a Writer takes.
template <class T>
decltype(auto) writer_content(const T& content) {
    constexpr bool is_character = is_character_type<T>();
    if constexpr (std::is_same_v<T, Value> || (is_content<T> && !std::is_same_v<T, std::string>)) {
        return (content);
    } else if constexpr (std::is_same_v<T, std::nullptr_t>) {
        return Null();
    } else if constexpr (std::is_integral_v<T> && !is_character) {
        using Integer = std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>;
        return static_cast<Integer>(content);
    } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
        return std::string_view(content);
    } else if constexpr (std::is_class_v<T> && std::is_convertible_v<const T&, Value>) {
        return Value(content);
    } else if constexpr (!is_character && is_other_type<T>) {
        return object_of(OfOtherType(), content);
    } else {
        static_assert(!is_character, "a character is neither a string nor a number in JSON: write "
                                     "std::string(1, c) or int(c)");
        static_assert(is_character, "a Writer does not know this type: write bool, a number, a "
                                    "string, nullptr, Null, Undefined, Value, Array or Object");
        return Null(); // so that the compiler says nothing else
    }
}

} // namespace detail
/// @endcond

/// @name Whole values
/// All throw WriteError for what the options do not allow: NaN, an infinity, a string or name that
/// is not UTF-8, an integer that is no double, and Undefined by itself.
/// @complexity linear in the length of the text; with MemberOrder::utf16, plus sorting the
///             members of objects that need it. Recursion as deep as the nesting: 100,000 levels
///             are safe on a stack of 8 MiB.
/// @{

/// Serializes a value to a string, without a line end.
/// @throws WriteError     the options do not allow something in it
/// @throws std::bad_alloc memory runs out
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string write(const Value& value,
                                                       const WriteOptions& options = {});

/// Serializes a value onto a stream, without a line end.
///
/// It is unformatted output, in pieces of some kilobytes, each as by std::ostream::write: flags,
/// width, fill and locale have no effect, nothing is flushed, and a piece that the stream buffer
/// does not take in full sets badbit. Text written to a failed stream is lost.
///
/// @throws WriteError     the options do not allow something in it; the stream may have got the
///                        pieces before that. A text of less than 4096 bytes is one piece
/// @throws std::bad_alloc memory runs out; the stream may have got the pieces before that
/// @throws whatever std::ostream::write throws, by the exceptions() of the stream
FOUNDATION_JSON_EXPORT void write(std::ostream& stream, const Value& value,
                                  const WriteOptions& options = {});
/// @}

/// Writes a document piece by piece, onto a stream or to a string, if it is too big to be a Value.
///
///     std::string text;
///     Writer writer(text, WriteOptions::indented(2));
///     writer.begin_object();
///     writer.name("id").value(7);
///     writer.name("tags").begin_array().value("new").value(2.5).end();
///     writer.name("owner").value(owner); // a Value
///     writer.end();
///
/// A document is an array, an object or a single value. It is complete with the last end(), or with
/// that value, and only then the stream or string has all of it; nothing has to be closed or
/// flushed. After finish(), which checks that, the Writer can write another document, such as
/// the next line of JSON Lines.
///
/// The options have the same effect as in write(). A member whose value is Undefined is left out
/// with its name. Names that occur twice are only noticed with MemberOrder::utf16.
///
/// Calls return the Writer itself. A call that does not fit, such as value() within an object
/// without name(), throws std::logic_error and changes nothing; what() says what is expected: "at
/// /items: value() where name() or end() is expected". After any other exception the
/// document cannot be continued, and what the stream or string has of it is unspecified.
///
/// Memory is that for a buffer, for the longest name and for the names that lead to the present
/// level, and some bytes for each level, however long the text is. Nesting takes no stack.
///
/// Two threads must not use a Writer at once.
class FOUNDATION_JSON_EXPORT Writer {
public:
    /// Writes onto a stream, unformatted and without a flush, in pieces of some kilobytes.
    /// @param stream   must outlive the Writer
    /// @param options  how to write; only copied
    /// @throws std::bad_alloc memory runs out
    explicit Writer(std::ostream& stream FOUNDATION_JSON_LIFETIME_BOUND,
                    const WriteOptions& options = {});

    /// Appends to a string.
    /// @param text     must outlive the Writer; should not change until the text is complete
    /// @param options  how to write; only copied
    /// @throws std::bad_alloc memory runs out
    explicit Writer(std::string& text FOUNDATION_JSON_LIFETIME_BOUND,
                    const WriteOptions& options = {});

    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// Does not check whether the text is complete; finish() does.
    ~Writer();

    /// @name Pieces
    /// Amortized constant time, or linear in the length of what is written.
    /// @throws std::logic_error the call does not fit; nothing has changed
    /// @throws WriteError       the options do not allow the name or value
    /// @throws std::bad_alloc   memory runs out
    /// @throws whatever std::ostream::write throws, by the exceptions() of the stream
    /// @{

    Writer& begin_object(); ///< `{`; then come name() and a value, or end()
    Writer& begin_array();  ///< `[`; then come values, or end()
    Writer& end();          ///< ends the array or object that began last

    /// The name of a member; its value comes next.
    Writer& name(std::string_view name);

    /// A value.
    ///
    /// @tparam T  bool; float, double and the integer types, which keep all digits; std::string,
    ///            literals and what else converts to std::string_view; nullptr; Null, Undefined;
    ///            Value, Array, Object and what converts to a Value. A character does not compile
    template <class T>
    Writer& value(const T& content) {
        put(detail::writer_content(content));
        return *this;
    }

    /// Existing JSON text, as the next value. It is neither checked nor changed.
    /// @param json  the text of exactly one value
    Writer& raw(std::string_view json);
    /// @}

    /// Checks that the document is complete. What is written next begins another one.
    /// @throws std::logic_error it is not complete; what() says where, and what is expected
    void finish();

private:
    void put(const Null&);
    void put(const Undefined&);
    void put(bool flag);
    void put(const double& number);
    void put(const float& number);
    void put(long long number);
    void put(unsigned long long number);
    void put(std::string_view text);
    void put(const Value& value);
    void put(const Array& elements);
    void put(const Object& members);
    void put(const detail::AnyObject& object);

    // The state is behind a pointer, so that it can change without a change of the class.
    std::unique_ptr<detail::WriterState> state_;
};

} // namespace foundation::json

#endif
