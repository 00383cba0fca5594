// Records, as callers see them, and ValueStream.
#include "reading/record_source.hpp"

#include <foundation/json/pointer.hpp>
#include <foundation/json/records.hpp>

#include <utility>

namespace foundation::json {

Framing Framing::elements(std::string pointer) {
    const Value nothing;
    static_cast<void>(find(nothing, pointer)); // checks it
    Framing result(concatenated);
    result.is_elements_ = true;
    result.pointer_ = std::move(pointer);
    return result;
}

namespace detail {

RecordStream::RecordStream(std::istream& stream, const Framing& framing, const ReadOptions& options)
    : source_(make_record_source(stream, framing, options)) {}
RecordStream::RecordStream(RecordStream&& other) noexcept = default;
RecordStream& RecordStream::operator=(RecordStream&& other) noexcept = default;
RecordStream::~RecordStream() = default;

bool RecordStream::next(Value& record) {
    return source_->next(RecordTarget(record));
}

bool RecordStream::next(const ReadObject& record) {
    return source_->next(RecordTarget(record));
}

std::string_view RecordStream::text() const noexcept {
    return source_->text();
}

std::size_t RecordStream::index() const noexcept {
    return source_->index();
}

Position RecordStream::position() const {
    return source_->position();
}

} // namespace detail

namespace {

ReadOptions limited(const ParseOptions& options, std::size_t max_bytes) {
    ReadOptions result;
    static_cast<ParseOptions&>(result) = options;
    result.max_bytes = max_bytes;
    return result;
}

} // namespace

class ValueStream::Implementation : public detail::RecordStream {
public:
    using RecordStream::RecordStream;
};

ValueStream::ValueStream(std::istream& stream, const ParseOptions& options)
    : ValueStream(stream, options, ReadOptions().max_bytes) {}
ValueStream::ValueStream(std::istream& stream, const ParseOptions& options, std::size_t max_bytes)
    : implementation_(std::make_unique<Implementation>(stream, Framing::concatenated,
                                                       limited(options, max_bytes))) {}
ValueStream::ValueStream(ValueStream&& other) noexcept = default;
ValueStream& ValueStream::operator=(ValueStream&& other) noexcept = default;
ValueStream::~ValueStream() = default;

bool ValueStream::next(Value& value) {
    return implementation_->next(value);
}

} // namespace foundation::json
