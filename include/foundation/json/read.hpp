/// @file
/// Parses JSON into objects of your own types, without a Value in between. Part of the library
/// foundation::json_parser.
///
///     const auto server = read<Server>(R"({"host": "a.example"})");
///     const auto servers = read_file<std::vector<Server>>("servers.json");
///
/// The types are those of convert.hpp with their tables, and so are the rules: read<T>(text) gives
/// what to<T>(parse(text)) gives, or throws where that throws. It takes a fraction of the time, and
/// little memory besides that of the object. With records.hpp, Records::next() parses values of a
/// stream into such objects, and with reader.hpp, Reader::read().
///
/// This header includes neither Value nor Boost: types that have a Value in them need value.hpp.
///
/// If a document does not fit the type, the exception has the position and the JSON Pointer, which
/// describe() shows:
///
///     try {
///         const auto wrong = read<Server>(R"({"host": "a.example", "port": "80"})");
///     } catch (const ReadError& error) {
///         std::cout << describe(error);
///         // ->
///         // 1:31: at /port: "80" is a string, not a number
///         // {"host": "a.example", "port": "80"}
///         //                               ^
///     }
#ifndef FOUNDATION_JSON_READ_HPP
#define FOUNDATION_JSON_READ_HPP

#include <foundation/json/conversion_error.hpp>
#include <foundation/json/describe.hpp>
#include <foundation/json/detail/converters.hpp>
#include <foundation/json/detail/read_object.hpp>
#include <foundation/json/detail/refused.hpp>
#include <foundation/json/detail/text_source.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/fwd.hpp>
#include <foundation/json/members.hpp>
#include <foundation/json/parse_errors.hpp>
#include <foundation/json/position.hpp>
#include <foundation/json/read_options.hpp>

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json {

/// The exception of a document that does not fit a type. what() is that of a ConversionError with
/// the line and column before it, and with the name of the file if it was read by read_file():
/// `server.json:12:17: at /port: "80" is a string, not a number`. With the option max_errors, it
/// has such a line for each error.
class FOUNDATION_JSON_PARSER_EXPORT ReadError : public ConversionError {
public:
    /// @param error      what is wrong
    /// @param where      for each of its errors, an exception with the position, and the line to
    ///                   quote
    /// @param file_name  may be empty
    /// @throws std::invalid_argument if there are more or fewer positions than errors
    /// @throws std::bad_alloc if memory runs out
    ReadError(const ConversionError& error, const std::vector<ParserException>& where,
              std::string_view file_name);

    ReadError(const ReadError&) = default;            ///< never throws
    ReadError& operator=(const ReadError&) = default; ///< never throws
    ~ReadError() override;

    /// The message: the file, the line and the column, then the location and what is wrong.
    const char* what() const noexcept override;

    /// Where the value begins that the error is about; of several errors, the first one. Constant
    /// time.
    [[nodiscard]] Position position() const noexcept;

    /// @cond
    struct Details;
    const Details& details() const noexcept { return *details_; }
    /// @endcond

private:
    std::shared_ptr<const Details> details_; // shared, so that copies cannot throw
};

/// Describes an error for people, in three lines that each end with a line feed: what(), the line
/// of the text, and a caret under the position. Several errors are described one after the other.
///
/// Characters that do not print, and long lines, are shown as by describe() of a ParserException.
/// @param error  of this header's functions
/// @param name   of what was read, such as a file; if it is empty, the file of read_file()
/// @throws std::bad_alloc memory runs out
FOUNDATION_JSON_PARSER_EXPORT std::string describe(const ReadError& error,
                                                   std::string_view name = {});

/// @cond
namespace detail {

/// What happens to a byte order mark at the beginning.
enum class Mark { skipped, refused };

/// Reads a document.
/// @param base  null or, if the object is not new, a new one
/// @return false if the document has to be read in another way, which then finds out what is wrong
/// @throws std::bad_alloc memory runs out
/// @throws what has no base std::exception, from a constructor or a container
[[nodiscard]] FOUNDATION_JSON_PARSER_EXPORT bool
read_document(std::string_view text, const ReadOptions& options, void* object, const void* base,
              ReadAny read, Mark mark = Mark::skipped);

/// Reads a document by way of a Value: for exact errors, and for rare cases.
/// @param object  a new one
/// @throws ParserException, ReadError
FOUNDATION_JSON_PARSER_EXPORT void read_by_value(std::string_view text, const ReadOptions& options,
                                                 std::string_view file_name, void* object,
                                                 ReadAny read);

/// Reads a value.
/// @param object  a new one
/// @throws ConversionError
FOUNDATION_JSON_PARSER_EXPORT void convert_value(const Value& value, const ReadOptions& options,
                                                 void* object, ReadAny read);

/// The whole text of a stream or file, as parse() and parse_file() read it.
class FOUNDATION_JSON_PARSER_EXPORT DocumentText {
public:
    DocumentText(std::istream& stream, const ReadOptions& options);
    DocumentText(const std::filesystem::path& path, const ReadOptions& options);
    DocumentText(const DocumentText&) = delete;
    DocumentText& operator=(const DocumentText&) = delete;
    ~DocumentText();

    std::string_view text() const noexcept { return text_; }

private:
    class Storage;
    std::unique_ptr<Storage> storage_;
    std::string_view text_;
};

/// Whether a type can be read; if it cannot, says what to write instead.
template <class T>
constexpr bool require_readable() {
    if constexpr (detail::is_known<T>) {
        return detail::require_default<T>();
    } else {
        return detail::refuse_type<T>();
    }
}

/// A new object, read by way of a Value: for exact errors, and for rare cases.
template <class T>
[[FOUNDATION_JSON_GNU(noinline)]] T read_by_value(std::string_view text, const ReadOptions& options,
                                                  std::string_view file_name) {
    T result{};
    detail::read_by_value(text, options, file_name, std::addressof(result), &detail::read_any<T>);
    return result;
}

template <class T>
T read_new(std::string_view text, const ReadOptions& options, std::string_view file_name) {
    T result{};
    const bool is_read =
        detail::read_document(text, options, std::addressof(result), nullptr, &detail::read_any<T>);
    if constexpr (std::is_move_assignable_v<T>) {
        if (!is_read) {
            result = detail::read_by_value<T>(text, options, file_name);
        }
        return result;
    } else {
        return is_read ? std::move(result) : detail::read_by_value<T>(text, options, file_name);
    }
}

template <class T>
T read_text(std::string_view text, const ReadOptions& options, std::string_view file_name) {
    if constexpr (!std::is_default_constructible_v<T>) {
        return std::move(*detail::read_text<Made<T>>(text, options, file_name).object);
    } else {
        return detail::read_new<T>(text, options, file_name);
    }
}

/// The name of a file as messages show it.
FOUNDATION_JSON_PARSER_EXPORT std::string shown_name(const std::filesystem::path& path);

} // namespace detail
/// @endcond

/// @name Reading
/// T is any type that to() accepts.
/// @{

/// Parses a string into a new object: the result of to<T>(parse(text, options), options).
///
/// Members are read in the order of the document. After an error, or where an object has a name
/// twice, the text is parsed to a Value, which is converted.
/// @param text     need not outlive the call
/// @param options  what to accept
/// @throws ParserException the text is not what the options accept
/// @throws ReadError       the document does not fit the type: where to() throws ConversionError
/// @throws std::bad_alloc  memory runs out
/// @throws what a default constructor, or the insertion into a container, throws
/// @complexity linear in the length of the text, times the logarithm of the sizes of tables and
///             containers; recursion as deep as the nesting of T. Besides the memory of the object,
///             that of up to 256 names for each class; where a Value is needed, also that of the
///             Value. A long vector gets room for as many elements as the rest of the text would
///             have if it were like the part before, and gives back what is far too much.
template <class T>
[[nodiscard]] T read(std::string_view text, const ReadOptions& options = {}) {
    if constexpr (detail::require_readable<T>()) {
        return detail::read_text<T>(text, options, {});
    } else {
        detail::refused();
    }
}

/// The same for the rest of a stream, from its current position to its end, which is read as by
/// parse().
/// @throws std::ios_base::failure the stream is not good at first, or fails before its end; then
///         badbit is set
/// @throws whatever the stream buffer throws, with badbit set
/// @throws as above
template <class T>
[[nodiscard]] T read(std::istream& stream, const ReadOptions& options = {}) {
    if constexpr (detail::require_readable<T>()) {
        const detail::DocumentText document(stream, options);
        return detail::read_text<T>(document.text(), options, {});
    } else {
        detail::refused();
    }
}

/// The same for a file, which is read as by parse_file(). ReadError names it.
/// @throws std::system_error the file cannot be read; what() names it
/// @throws as above
template <class T>
[[nodiscard]] T read_file(const std::filesystem::path& path, const ReadOptions& options = {}) {
    if constexpr (detail::require_readable<T>()) {
        const detail::DocumentText document(path, options);
        return detail::read_text<T>(document.text(), options, detail::shown_name(path));
    } else {
        detail::refused();
    }
}

/// Parses a string into an existing object, and reuses its memory: that of strings, vectors and
/// other sequences, and of their elements.
///
///     Server server;
///     for (const std::string& line : lines) {
///         read_into(server, line);
///     }
///
/// The object becomes what read() gives: a member that the document lacks gets the value of
/// the class's default constructor. Data members that no table names may keep their values.
/// @param object   after an exception, it is as its default constructor makes it
/// @param text     must not be part of the object
/// @param options  what to accept
/// @throws as read()
template <class T>
void read_into(T& object, std::string_view text, const ReadOptions& options = {}) {
    if constexpr (detail::require_readable<T>()) {
        T fresh{};
        try {
            if (!detail::read_document(text, options, std::addressof(object), std::addressof(fresh),
                                       &detail::read_any<T>)) {
                object = detail::read_by_value<T>(text, options, {});
            }
        } catch (...) {
            object = std::move(fresh);
            throw;
        }
    }
}
/// @}

/// @cond
namespace detail {

template <class T>
struct ObjectReader {
    /// Has an object read by a function that takes a ReadObject.
    template <class Read>
    static void read(T& object, const Read& read) {
        if constexpr (detail::require_readable<T>()) {
            Both both{object, T{}};
            try {
                read(ReadObject{&both, &read_text, &convert});
            } catch (...) {
                object = std::move(both.fresh);
                throw;
            }
        }
    }

private:
    struct Both {
        T& object;
        T fresh; ///< a new one
    };

    static bool read_text(void* both, std::string_view text, const ReadOptions& options) {
        T& object = static_cast<Both*>(both)->object;
        return detail::read_document(text, options, std::addressof(object),
                                     std::addressof(static_cast<Both*>(both)->fresh),
                                     &detail::read_any<T>, Mark::refused);
    }

    static void convert(void* both, const Value& value, const ReadOptions& options) {
        T converted{};
        detail::convert_value(value, options, std::addressof(converted), &detail::read_any<T>);
        static_cast<Both*>(both)->object = std::move(converted);
    }
};

} // namespace detail
/// @endcond

} // namespace foundation::json

#endif
