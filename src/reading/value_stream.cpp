// ValueStream: reads values one after the other from a stream.
#include "reading/take_value.hpp"
#include "reading/value_reader.hpp"

#include <foundation/json/parse.hpp>

#include <algorithm>
#include <istream>
#include <optional>

namespace foundation::json {

class ValueStream::Implementation {
public:
    Implementation(std::istream& stream, const ParseOptions& options, std::size_t max_bytes)
        : options_(options), cursor_(options_, &stream, max_bytes), window_(cursor_.input()) {}

    bool next(Value& value);

private:
    bool find_value();
    void skip_line();
    void read_value(Value& value);
    [[noreturn]] void refuse(const ParserException& error);
    void end_value(const char* at) noexcept;
    void go_on_behind(const ParserException& error) noexcept;

    const ParseOptions options_;
    detail::Cursor<detail::Window> cursor_;
    detail::Window& window_;
    std::optional<detail::ValueReader<detail::Window>> reader_;
    bool started_ = false;
    bool skips_line_ = false; ///< whether the rest of the line belongs to an error
};

/// @return false at the end
bool ValueStream::Implementation::find_value() {
    try {
        if (!started_) {
            window_.begin();
            started_ = true;
        }
        skip_line();
        window_.go_to(cursor_.skip_space_again(window_.at()));
    } catch (const ParserException& error) {
        go_on_behind(error);
        throw;
    }
    return window_.at() != cursor_.end();
}

void ValueStream::Implementation::skip_line() {
    if (skips_line_) {
        window_.settle();
    }
    while (skips_line_) {
        const char* const line_feed = std::find(window_.at(), window_.end(), '\n');
        const bool found = line_feed != window_.end();
        const char* at = found ? line_feed + 1 : line_feed;
        window_.go_to(at);
        skips_line_ = !found && window_.refill(at);
    }
}

void ValueStream::Implementation::read_value(Value& value) {
    try {
        if (!reader_) {
            reader_.emplace(cursor_);
        }
        window_.keep(window_.at());
        Value result;
        const char* const end = reader_->read(window_.at(), result);
        cursor_.check_length(end);
        cursor_.expect_separation(end, end[-1]);
        detail::take_value(value, result);
        window_.go_to(end);
        window_.release();
    } catch (const ParserException& error) {
        refuse(error);
    } catch (...) {
        end_value(window_.kept());
        throw;
    }
}

/// Throws the error of a value, unless the value is too long and so may end elsewhere.
void ValueStream::Implementation::refuse(const ParserException& error) {
    const char* const limit = window_.limit_before(window_.at_byte(error.get_byte_position()));
    if (limit == nullptr) {
        go_on_behind(error);
        throw;
    }
    try {
        cursor_.fail_too_long(limit);
    } catch (const ParserException& too_long) {
        go_on_behind(too_long);
        throw;
    }
}

/// @param at  where to go on
void ValueStream::Implementation::end_value(const char* at) noexcept {
    window_.go_to(at);
    reader_.reset();
    window_.release();
    cursor_.restart();
}

void ValueStream::Implementation::go_on_behind(const ParserException& error) noexcept {
    end_value(window_.at_byte(error.get_byte_position()));
    window_.locate(window_.at());
    skips_line_ = window_.at() != window_.end();
}

bool ValueStream::Implementation::next(Value& value) {
    if (!find_value()) {
        return false;
    }
    read_value(value);
    return true;
}

ValueStream::ValueStream(std::istream& stream, const ParseOptions& options)
    : ValueStream(stream, options, detail::unlimited) {}
ValueStream::ValueStream(std::istream& stream, const ParseOptions& options, std::size_t max_bytes)
    : implementation_(std::make_unique<Implementation>(stream, options, max_bytes)) {}
ValueStream::ValueStream(ValueStream&& other) noexcept = default;
ValueStream& ValueStream::operator=(ValueStream&& other) noexcept = default;
ValueStream::~ValueStream() = default;

bool ValueStream::next(Value& value) {
    return implementation_->next(value);
}

} // namespace foundation::json
