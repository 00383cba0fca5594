/// @file
/// Writing text to memory first: the same bytes as from StreamOutput, without the cost of a stream
/// operation for every piece.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_BUFFERED_OUTPUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_BUFFERED_OUTPUT_HPP

#include "number/fast_number_text.hpp"
#include "serialization/block_output.hpp"
#include "serialization/buffer_chain.hpp"
#include "serialization/stream_output.hpp"

#include <cstddef>
#include <locale>
#include <ostream>
#include <string>

namespace foundation::json::detail {

/// Whether integers, escapes and line ends are written as in the classic locale.
bool writes_as_classic(const std::locale& locale);

/// An output of the layout that fills a buffer with the fixed text. The Sink, which derives from
/// this class, has the functions that BlockOutput asks for, and
///
///     before_integer()                       is told that an integer comes
template <class Sink>
class BufferedOutput : public BlockOutput<Sink> {
public:
    using Cursor = char*;

    Cursor number(Cursor at, FloatingBits<double> bits);
    Cursor number(Cursor at, FloatingBits<float> bits);
    Cursor number(Cursor at, long long value);
    Cursor number(Cursor at, unsigned long long value);
    Cursor string(Cursor at, const std::string& text);

protected:
    BufferedOutput() = default;
    ~BufferedOutput() = default;

private:
    Sink& sink() { return static_cast<Sink&>(*this); }

    template <class Number>
    Cursor real_number(Cursor at, FloatingBits<Number> bits);
    template <class Number>
    Cursor real_number_in_new_room(Cursor at, FloatingBits<Number> bits);
    template <class Number>
    Cursor integer(Cursor at, Number value);
};

/// Text into a string, through a chain of buffers.
class StringOutput : public BufferedOutput<StringOutput> {
public:
    StringOutput();

    Cursor start() noexcept { return chain_.start().begin; }

    Cursor line_end(Cursor at) {
        ask_locale();
        return text(at, "\n");
    }

    /// Whether the text has a piece that the global locale writes differently. The text is of no
    /// use then, and has to be written to a stream.
    bool depends_on_locale() const noexcept { return locale_ == Locale::relevant; }

    /// The text up to the cursor. Call it once, at the end.
    std::string take(const char* at) { return chain_.take(at); }

private:
    friend class BlockOutput<StringOutput>;
    friend class BufferedOutput<StringOutput>;

    Cursor make_room(const char* at);
    Cursor pass(Cursor at, const char* text, std::size_t size);
    Cursor unicode_escape(Cursor at, unsigned char byte);

    /// To be called for each piece that depends on the locale. Most texts have none, and the answer
    /// takes longer than a short text.
    void ask_locale() {
        if (locale_ == Locale::unknown) {
            find_out_locale();
        }
    }

    void find_out_locale();

    void before_integer() { ask_locale(); }

    enum class Locale { unknown, irrelevant, relevant };

    Locale locale_ = Locale::unknown;
    BufferChain chain_;
};

/// Text to a stream, in large pieces. Only for streams for which that makes no difference; see
/// applies_to().
class BufferedStreamOutput : public BufferedOutput<BufferedStreamOutput> {
public:
    /// Whether large pieces make no observable difference: the stream is good, has no width, does
    /// not flush after every piece, and formats integers as plain decimal digits.
    static bool applies_to(const std::ostream& stream);

    explicit BufferedStreamOutput(std::ostream& stream) noexcept;

    Cursor start() noexcept { return buffer_; }
    Cursor line_end(Cursor at);

    /// Inserts the rest. Call it once, at the end, and only after a text whose last byte is a piece
    /// of its own.
    void finish(Cursor at);

private:
    friend class BlockOutput<BufferedStreamOutput>;
    friend class BufferedOutput<BufferedStreamOutput>;

    Cursor make_room(Cursor at) { return hand_over(at); }
    Cursor pass(Cursor at, const char* text, std::size_t size);
    // The locale was asked already whether integers are written as they are.
    void before_integer() const noexcept {}

    Cursor hand_over(Cursor at);
    Cursor unicode_escape(Cursor at, unsigned char byte);

    std::ostream& stream_;
    StreamOutput by_pieces_;
    char buffer_[8192];
};

extern template class BufferedOutput<StringOutput>;
extern template class BufferedOutput<BufferedStreamOutput>;

} // namespace foundation::json::detail

#endif
