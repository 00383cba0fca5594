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
    /// The stream knows itself where it is.
    struct Cursor {};

    explicit StreamOutput(std::ostream& stream) noexcept : stream_(stream) {}

    template <std::size_t N>
    Cursor text(Cursor at, const char (&piece)[N]) {
        stream_ << piece;
        return at;
    }

    Cursor number(Cursor at, double value);
    Cursor number(Cursor at, float value);
    Cursor number(Cursor at, long long value);
    Cursor number(Cursor at, unsigned long long value);
    Cursor string(Cursor at, const std::string& text);
    Cursor line_end(Cursor at);
    Cursor spaces(Cursor at, std::size_t count);

    /// Writes a byte as \u escape. The stream's flags shape the digits, and its fill character
    /// stays the digit zero.
    void unicode_escape(unsigned char byte);

private:
    void escaped(unsigned char byte);

    std::ostream& stream_;
};

} // namespace foundation::json::detail

#endif
