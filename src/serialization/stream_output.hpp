/// @file
/// Text to a stream, piece by piece: the reference for every stream in every state.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_STREAM_OUTPUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_STREAM_OUTPUT_HPP

#include <foundation/json/detail/floating_bits.hpp>

#include <cstddef>
#include <ostream>
#include <string>

namespace foundation::json::detail {

/// An output of the layout: one formatted insertion per piece. A field width pads the first piece
/// and is then reset; the stream's flags and locale affect the integers.
class StreamOutput {
public:
    /// Empty, since the stream itself knows its position.
    struct Cursor {};

    /// What happens to an exception during an insertion.
    enum class Failure {
        as_the_stream_says, ///< the stream's exception mask decides
        silent,             ///< as with an empty mask, but that std::bad_alloc passes
    };

    /// @param stream   where to write; for silent failures a stream of the output's own, whose
    ///                 exception mask it sets
    explicit StreamOutput(std::ostream& stream, Failure failure = Failure::as_the_stream_says);

    Cursor text(Cursor at, const char* piece);
    Cursor number(Cursor at, FloatingBits<double> bits);
    Cursor number(Cursor at, FloatingBits<float> bits);
    Cursor number(Cursor at, long long value);
    Cursor number(Cursor at, unsigned long long value);
    Cursor string(Cursor at, const std::string& text);
    Cursor line_end(Cursor at);
    Cursor spaces(Cursor at, std::size_t count);

    /// Writes a byte as \u escape. The stream's flags affect the digits, and its fill character
    /// stays the digit zero.
    void unicode_escape(unsigned char byte);

private:
    template <class Piece>
    void insert(const Piece& piece);
    void silence();
    void escaped(unsigned char byte);

    std::ostream& stream_;
    Failure failure_;
};

} // namespace foundation::json::detail

#endif
