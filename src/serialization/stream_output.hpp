/// @file
/// Text onto a stream, piece by piece: what the text of a value means for every stream in every
/// state.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_STREAM_OUTPUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_STREAM_OUTPUT_HPP

#include <cstddef>
#include <ostream>
#include <string>

namespace foundation::json::detail {

/// An output of the layout: one formatted insertion per piece. A field width pads the first piece
/// and is used up by it, and the stream's flags and locale reach the integers.
class StreamOutput {
public:
    explicit StreamOutput(std::ostream& stream) noexcept : stream_(stream) {}

    template <std::size_t N>
    void text(const char (&piece)[N]) {
        stream_ << piece;
    }

    void number(double value);
    void number(float value);
    void number(long long value) { stream_ << value; }
    void number(unsigned long long value) { stream_ << value; }
    void string(const std::string& text);
    void line_end() { stream_ << std::endl; }
    void spaces(std::size_t count) { stream_ << std::string(count, ' '); }

    /// Writes a byte as \u escape. The stream's flags shape the digits, and its fill character
    /// stays the digit zero.
    void unicode_escape(unsigned char byte);

private:
    void escaped(unsigned char byte);

    std::ostream& stream_;
};

} // namespace foundation::json::detail

#endif
