/// @file
/// The records of a stream, by each framing: what is behind Records and ValueStream.
#ifndef FOUNDATION_JSON_SRC_READING_RECORD_SOURCE_HPP
#define FOUNDATION_JSON_SRC_READING_RECORD_SOURCE_HPP

#include "grammar/position.hpp"
#include "reading/reuse.hpp"

#include <foundation/json/read.hpp>
#include <foundation/json/records.hpp>

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string_view>

namespace foundation::json::detail {

/// What a record becomes.
class RecordTarget {
public:
    explicit RecordTarget(Value& value) noexcept : value_(&value) {}
    explicit RecordTarget(const ReadObject& object) noexcept : object_(&object) {}

    /// Reads a text. @return false if its value has to be taken
    bool read(std::string_view text, const ReadOptions& options) const {
        return object_ != nullptr && object_->read(object_->object, text, options);
    }

    /// @param value   unspecified afterwards
    /// @throws ConversionError it does not fit the type of an object
    void take(Value& value, const ReadOptions& options) const;

private:
    Value* value_ = nullptr;
    const ReadObject* object_ = nullptr; ///< null for a Value
};

/// Finds the records of a stream and reads them.
class RecordSource {
public:
    RecordSource() = default;
    RecordSource(const RecordSource&) = delete;
    RecordSource& operator=(const RecordSource&) = delete;
    virtual ~RecordSource() = default;

    /// Reads the next record, as Records::next() does.
    bool next(const RecordTarget& record);

    // Of the last record, as in Records.

    std::string_view text() const noexcept { return text_; }
    std::size_t index() const noexcept { return index_; }
    Position position();

protected:
    /// Finds the next record.
    /// @return false at the end
    virtual bool find() = 0;

    /// Reads the record that has been found. Called again if memory has run out.
    virtual void read(const RecordTarget& record) = 0;

    /// The position of a byte of the text that is there, or where reading goes on.
    /// @param at  null for that
    virtual TextPosition locate(const char* at) noexcept = 0;

    /// Gives a record the value of a text, which has been read to be used again.
    /// @return the error, if that does not fit the type of the record
    std::optional<ReadError> give(const RecordTarget& record, std::string_view text,
                                  const ReadOptions& options);

    /// Sets the text of the record, of which an error will be thrown. @return where it begins
    TextPosition set_bad_text(const char* begin, const char* end) noexcept;

    std::string_view text_;
    Reuse reuse_; ///< the record before the last one, which becomes the next

private:
    void end_record() noexcept;
    void keep_for_reuse() noexcept;

    bool found_ = false; ///< a record that has not been read yet
    std::size_t index_ = 0;
    std::size_t next_index_ = 0;
    std::optional<TextPosition> begin_;                    ///< of the record, if it is known
    std::size_t last_size_ = static_cast<std::size_t>(-1); ///< of the text of what the caller has
};

/// @param stream  must outlive the source
std::unique_ptr<RecordSource> make_record_source(std::istream& stream, const Framing& framing,
                                                 const ReadOptions& options);

} // namespace foundation::json::detail

#endif
