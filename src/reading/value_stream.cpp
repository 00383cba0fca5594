// ValueStream: reads values one after the other from a stream.
#include "reading/input.hpp"
#include "reading/parser.hpp"
#include "reading/value_finder.hpp"

#include <foundation/json/parse.hpp>

#include <algorithm>
#include <istream>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>

namespace foundation::json {

class ValueStream::Implementation {
public:
    Implementation(std::istream& stream, const ParseOptions& options)
        : stream_(stream), options_(options), finder_(options_) {}

    bool next(Value& value);

private:
    using Status = detail::ValueFinder::Status;

    void skip_mark();
    void skip_line();
    void find_value();
    void find_line_end();
    Value parse_value();
    bool fill();
    void forget_before(std::size_t position);

    std::string_view text() const noexcept { return text_; }

    std::istream& stream_;
    const ParseOptions options_;
    detail::ValueFinder finder_;

    std::string text_;           ///< taken from the stream and not yet forgotten
    detail::TextPosition known_; ///< the place of the last error, or the start of the text if later
    std::size_t known_at_ = 0;   ///< the position of that place in the text
    std::size_t value_ = 0;      ///< where the next value begins, or blanks before it
    std::size_t end_ = 0;        ///< how far the finder has read
    Status status_ = Status::nothing;
    bool started_ = false;
    bool ended_ = false;
    bool skips_line_ = false; ///< whether the rest of the line belongs to an error
};

namespace {

/// The most bytes that are taken from a stream at a time.
constexpr std::streamsize most_at_once = 65536;

} // namespace

/// Takes what the stream has at hand; waits only if that is nothing.
/// @return false at the end
bool ValueStream::Implementation::fill() {
    if (ended_) {
        return false;
    }
    detail::begin_reading(stream_);
    const std::size_t size = text_.size();
    try {
        std::streambuf& buffer = *stream_.rdbuf();
        using Traits = std::streambuf::traits_type;
        if (!Traits::eq_int_type(buffer.sgetc(), Traits::eof())) {
            const std::streamsize count =
                std::clamp<std::streamsize>(buffer.in_avail(), 1, most_at_once);
            text_.resize(size + static_cast<std::size_t>(count));
            text_.resize(size + static_cast<std::size_t>(buffer.sgetn(&text_[size], count)));
        }
    } catch (const std::bad_alloc&) {
        text_.resize(size);
        throw;
    } catch (...) {
        text_.resize(size);
        detail::set_state(stream_, std::ios_base::badbit);
        throw;
    }
    if (text_.size() == size) {
        detail::end_reading(stream_);
        ended_ = true;
    }
    return !ended_;
}

void ValueStream::Implementation::skip_mark() {
    while (!started_) {
        const std::string_view mark = detail::byte_order_mark;
        const std::size_t count = std::min(text_.size(), mark.size());
        const bool may_be = text().substr(0, count) == mark.substr(0, count);
        if (may_be && count < mark.size() && fill()) {
            continue;
        }
        value_ = end_ = may_be && count == mark.size() ? count : 0;
        started_ = true;
    }
}

void ValueStream::Implementation::skip_line() {
    while (skips_line_) {
        const std::size_t line_feed = text_.find('\n', value_);
        const bool found = line_feed != std::string::npos;
        value_ = end_ = found ? line_feed + 1 : text_.size();
        if (!found) {
            forget_before(value_);
        }
        skips_line_ = !found && fill();
    }
}

void ValueStream::Implementation::find_value() {
    for (;;) {
        const char* place = text_.data() + end_;
        status_ = finder_.go_on(place, text_.data() + text_.size());
        end_ = static_cast<std::size_t>(place - text_.data());
        if (status_ == Status::nothing) {
            value_ = end_;
        }
        if (status_ == Status::complete || status_ == Status::failed) {
            return;
        }
        forget_before(value_);
        if (!fill()) {
            status_ = finder_.finish();
            return;
        }
    }
}

/// Takes the rest of a line from the stream, for an error to quote.
void ValueStream::Implementation::find_line_end() {
    while (text_.size() - end_ < detail::most_quoted &&
           text_.find('\n', end_) == std::string::npos && fill()) {
    }
}

Value ValueStream::Implementation::parse_value() {
    const std::size_t end = status_ == Status::complete ? end_ : text_.size();
    try {
        Value value;
        // An error takes the rest of its line, so no other error quotes text before it.
        detail::Parser(text().substr(value_, end - value_), text().substr(known_at_), known_,
                       options_)
            .read(value);
        return value;
    } catch (const ParserException& error) {
        value_ = known_at_ + (error.get_byte_position() - known_.byte);
        known_ = {error.get_byte_position(), error.get_line_number(), error.get_column()};
        known_at_ = value_;
        skips_line_ = value_ < text_.size();
        finder_.restart();
        status_ = Status::nothing;
        end_ = value_;
        throw;
    }
}

bool ValueStream::Implementation::next(Value& value) {
    skip_mark();
    skip_line();
    if (status_ != Status::complete && status_ != Status::failed) {
        find_value();
    }
    if (status_ == Status::nothing) {
        return false;
    }
    if (status_ == Status::failed) {
        find_line_end();
    }
    value = parse_value();
    value_ = end_;
    status_ = Status::nothing;
    finder_.restart();
    return true;
}

/// Forgets the text before a position, except what an error may quote, once that is at least half
/// of all text.
void ValueStream::Implementation::forget_before(std::size_t position) {
    const std::size_t kept = std::min(position, detail::most_quoted);
    const std::size_t forgotten = position - kept;
    if (forgotten >= text_.size() / 2 && forgotten != 0) {
        const std::size_t known = std::max(known_at_, forgotten);
        known_.advance(text().substr(known_at_, known - known_at_));
        text_.erase(0, forgotten);
        known_at_ = known - forgotten;
        value_ -= forgotten;
        end_ -= forgotten;
    }
}

ValueStream::ValueStream(std::istream& stream, const ParseOptions& options)
    : implementation_(std::make_unique<Implementation>(stream, options)) {}
ValueStream::ValueStream(ValueStream&& other) noexcept = default;
ValueStream& ValueStream::operator=(ValueStream&& other) noexcept = default;
ValueStream::~ValueStream() = default;

bool ValueStream::next(Value& value) {
    return implementation_->next(value);
}

} // namespace foundation::json
