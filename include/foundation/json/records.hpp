/// @file
/// Records: the values of a stream one after the other, whatever its size: one per line, simply
/// concatenated, or the elements of an array in a document. Part of the library
/// foundation::json_parser.
///
///     Records<Value> records(stream, Framing::lines);
///     for (Value record; records.next(record);) {
///         std::cout << serialize(record["name"]) << '\n';
///     }
///
/// One record and its JSON text are in memory at a time; the next record reuses that memory.
#ifndef FOUNDATION_JSON_RECORDS_HPP
#define FOUNDATION_JSON_RECORDS_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/read_options.hpp>
#include <foundation/json/reader.hpp>
#include <foundation/json/value.hpp>

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace foundation::json {

/// How the records of a stream are told apart.
class FOUNDATION_JSON_PARSER_EXPORT Framing {
public:
    /// What ends a record.
    enum Kind {
        /// Each line is a record. Lines without a value, of whitespace or comments alone, are
        /// skipped. After an error, the next line is read. Lines end with LF or CR LF; the last
        /// one may have no end.
        lines,
        /// Values follow each other, with or without whitespace between them; a value may span
        /// lines. After an error, the line after that of the error is read.
        concatenated,
    };

    Framing(Kind kind) noexcept : kind_(kind) {} ///< implicit: Framing::lines is a Framing

    /// The elements of an array in a document. After an error in the document, there are no more.
    /// The rest of the document is checked after the last of them.
    /// @param pointer  the array, as a JSON Pointer (RFC 6901). Of members with the same name, it
    ///                 means the first
    /// @throws std::invalid_argument the pointer is none
    [[nodiscard]] static Framing elements(std::string pointer = {});

    /// @cond
    Kind kind() const noexcept { return kind_; }
    bool is_elements() const noexcept { return is_elements_; }
    const std::string& pointer() const noexcept { return pointer_; }
    /// @endcond

private:
    Kind kind_;
    bool is_elements_ = false;
    std::string pointer_;
};

/// @cond
namespace detail {

class RecordSource;

/// The records of a stream, whatever they become.
class FOUNDATION_JSON_PARSER_EXPORT RecordStream {
public:
    RecordStream(std::istream& stream, const Framing& framing, const ReadOptions& options);
    RecordStream(RecordStream&& other) noexcept;
    RecordStream& operator=(RecordStream&& other) noexcept;
    ~RecordStream();

    bool next(Value& record);
    bool next(const ReadObject& record);

    std::string_view text() const noexcept;
    std::size_t index() const noexcept;
    Position position() const;

private:
    std::unique_ptr<RecordSource> source_;
};

} // namespace detail
/// @endcond

/// Reads the records of a stream one after the other.
///
/// A Value reuses the memory of earlier records: the members of objects, even for other names, the
/// capacity of their strings and that of short arrays, but not the elements of arrays. Records with
/// the same names need no allocation at all. For that, this object keeps the record that the last
/// call of next() replaced, unless its text was longer than 64 KiB.
///
/// Waits for no more of a stream than a record and its end: the end of its line or, for other
/// framings, its closing bracket or quote, or the byte after a number or word. Two threads must
/// not use one object at once.
/// @tparam T  what records become: Value or, if you include read.hpp, any type that read() knows
template <class T>
class Records {
public:
    /// @param stream   must outlive this object; nothing is read yet
    /// @param framing  how records are told apart
    /// @param options  what is accepted, and the greatest length of a record
    /// @throws std::bad_alloc memory runs out
    explicit Records(std::istream& stream, const Framing& framing = Framing::lines,
                     const ReadOptions& options = {})
        : records_(stream, framing, options) {}

    /// Reads the next record.
    /// @param record  becomes the record; its memory is reused where that is possible. At the end
    ///                of the stream it is unchanged. After an exception, a Value is unchanged,
    ///                except that it is the bool false if memory runs out when an array would
    ///                become an object, or an object an array; an object of another type is as its
    ///                default constructor makes it
    /// @return true if there was another record; false at the end of the stream, where `index()` is
    ///         the number of records
    /// @throws ParserException        the options do not accept the record. The next call goes on
    ///                                as its framing says. Positions count from the initial
    ///                                position of the stream, bytes from 0, lines and columns from
    ///                                1
    /// @throws ReadError              the record does not fit T, which is not Value; the next call
    ///                                goes on after it. The pointer is that within the record
    /// @throws std::runtime_error     the pointer of Framing::elements() leads to no array
    /// @throws std::ios_base::failure the stream is not good at first, or fails before its end
    /// @throws whatever the stream buffer throws; once the stream works again, the next call
    ///         goes on with the same record
    /// @throws std::bad_alloc         memory runs out; the next call goes on with the same record
    /// @complexity linear in the length of the text
    bool next(T& record) {
        if constexpr (std::is_same_v<T, Value>) {
            return records_.next(record);
        } else {
            bool found = false;
            detail::ObjectReader<T>::read(
                record, [&](const detail::ReadObject& target) { found = records_.next(target); });
            return found;
        }
    }

    /// @name The record that was read last, or that caused an exception
    /// @{

    /// Its JSON text, without the end of the line; empty at the end of the stream. After an error,
    /// it is the whole line with Framing::lines, otherwise the text up to the error; of a record
    /// that is too long, it is the first max_bytes bytes.
    /// @return valid until the next call of next()
    [[nodiscard]] std::string_view text() const noexcept { return records_.text(); }

    /// How many records came before it, those with errors included; at the end of the stream, how
    /// many there were.
    [[nodiscard]] std::size_t index() const noexcept { return records_.index(); }

    /// Where it begins. With Framing::lines, that is where its line begins. At the end of the
    /// stream, that end.
    /// @complexity amortized linear in the text since the last call
    [[nodiscard]] Position position() const { return records_.position(); }
    /// @}

private:
    detail::RecordStream records_;
};

} // namespace foundation::json

#endif
