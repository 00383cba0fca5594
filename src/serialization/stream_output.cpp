#include "serialization/stream_output.hpp"

#include "serialization/number_text.hpp"
#include "serialization/string_text.hpp"

namespace foundation::json::detail {

namespace {

/// Gives a stream the flags again that it had, also when it throws.
class FlagsRestorer {
public:
    explicit FlagsRestorer(std::ios_base& stream) : stream_(stream), flags_(stream.flags()) {}
    ~FlagsRestorer() { stream_.flags(flags_); }
    FlagsRestorer(const FlagsRestorer&) = delete;
    FlagsRestorer& operator=(const FlagsRestorer&) = delete;

private:
    std::ios_base& stream_;
    std::ios_base::fmtflags flags_;
};

} // namespace

StreamOutput::Cursor StreamOutput::number(Cursor at, double value) {
    NumberBuffer buffer;
    stream_ << number_text(buffer, value);
    return at;
}

StreamOutput::Cursor StreamOutput::number(Cursor at, float value) {
    NumberBuffer buffer;
    stream_ << number_text(buffer, value);
    return at;
}

StreamOutput::Cursor StreamOutput::number(Cursor at, long long value) {
    stream_ << value;
    return at;
}

StreamOutput::Cursor StreamOutput::number(Cursor at, unsigned long long value) {
    stream_ << value;
    return at;
}

StreamOutput::Cursor StreamOutput::string(Cursor at, const std::string& text) {
    stream_ << '"';
    for (const char byte : text) {
        escaped(static_cast<unsigned char>(byte));
    }
    stream_ << '"';
    return at;
}

StreamOutput::Cursor StreamOutput::line_end(Cursor at) {
    stream_ << std::endl;
    return at;
}

StreamOutput::Cursor StreamOutput::spaces(Cursor at, std::size_t count) {
    stream_ << std::string(count, ' ');
    return at;
}

void StreamOutput::escaped(unsigned char byte) {
    if (const char letter = short_escape(byte); letter != '\0') {
        const char escape[] = {'\\', letter, '\0'};
        stream_ << escape;
    } else if (byte >= 0x20) {
        stream_ << static_cast<char>(byte);
    } else {
        unicode_escape(byte);
    }
}

void StreamOutput::unicode_escape(unsigned char byte) {
    // The fill character is meant to stay zero.
    const FlagsRestorer flags(stream_);
    stream_ << "\\u";
    stream_.width(4);
    stream_.fill('0');
    stream_.setf(std::ios_base::hex, std::ios_base::basefield);
    stream_ << static_cast<int>(byte);
}

} // namespace foundation::json::detail
