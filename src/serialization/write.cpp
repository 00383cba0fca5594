// JSON text for other programs: of whole values, to a string and onto a stream.
#include <foundation/json/write.hpp>

#include "serialization/object_text.hpp"
#include "serialization/text_output.hpp"
#include "serialization/write_value.hpp"
#include "text/location.hpp"

#include <ostream>
#include <utility>

namespace foundation::json {

WriteError::WriteError(std::string pointer, const std::string& problem)
    : std::runtime_error(detail::describe_location(pointer) + problem),
      pointer_(new std::string(std::move(pointer))) {}

WriteError::~WriteError() = default;

namespace {

/// Collects a text that becomes a string.
class StringTarget : public detail::TextTarget {
public:
    detail::Room start() noexcept { return chain_.start(); }

    detail::Room next(const char* at) override { return chain_.next(at); }

    detail::Room pass(detail::Room rest, const char* text, std::size_t size) override {
        chain_.pass(rest.begin, text, size);
        return rest;
    }

    std::string take(const char* at) { return chain_.take(at); }

private:
    detail::BufferChain chain_;
};

/// Writes text onto a stream, unformatted.
class StreamTarget : public detail::TextTarget {
public:
    explicit StreamTarget(std::ostream& stream) noexcept : stream_(stream) {}

    detail::Room start() noexcept { return {buffer_, buffer_ + sizeof buffer_}; }

    detail::Room next(const char* at) override {
        stream_.write(buffer_, at - buffer_);
        return start();
    }

    detail::Room pass(detail::Room rest, const char* text, std::size_t size) override {
        next(rest.begin);
        stream_.write(text, static_cast<std::streamsize>(size));
        return start();
    }

private:
    std::ostream& stream_;
    char buffer_[8192];
};

template <class Content>
std::string text_of(const Content& content, const WriteOptions& options) {
    StringTarget target;
    const detail::Room room = target.start();
    detail::TextOutput output(target, room, options);
    return target.take(detail::write_root(output, room.begin, content));
}

template <class Content>
void write_onto(std::ostream& stream, const Content& content, const WriteOptions& options) {
    StreamTarget target(stream);
    const detail::Room room = target.start();
    detail::TextOutput output(target, room, options);
    target.next(detail::write_root(output, room.begin, content));
}

} // namespace

std::string write(const Value& value, const WriteOptions& options) {
    return text_of(value, options);
}

void write(std::ostream& stream, const Value& value, const WriteOptions& options) {
    write_onto(stream, value, options);
}

namespace detail {

std::string write_text(const AnyObject& object, const WriteOptions& options) {
    return text_of(object, options);
}

void write_text(std::ostream& stream, const AnyObject& object, const WriteOptions& options) {
    write_onto(stream, object, options);
}

} // namespace detail

} // namespace foundation::json
