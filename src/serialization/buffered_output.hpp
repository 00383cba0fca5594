/// @file
/// Writing text to memory first: the same bytes as from StreamOutput, without the cost of a stream
/// operation for every piece.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_BUFFERED_OUTPUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_BUFFERED_OUTPUT_HPP

#include "number/digits.hpp"
#include "number/fast_number_text.hpp"
#include "serialization/stream_output.hpp"

#include <cstddef>
#include <cstring>
#include <locale>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::detail {

/// Whether integers, escapes and line ends are written as in the classic locale.
bool writes_as_classic(const std::locale& locale);

/// An output of the layout that fills a buffer. The Sink, which derives from this class, empties a
/// full buffer. It has these functions, which take a cursor and return the next one:
///
///     make_room(Cursor)                      makes room for at least minimum_room bytes
///     pass(Cursor, const char*, std::size_t) writes many bytes that stay as they are until the end
///     unicode_escape(Cursor, unsigned char)  writes a byte as \u escape
///     before_integer()                       is told that an integer comes
template <class Sink>
class BufferedOutput {
public:
    /// Where the text so far ends in the buffer.
    using Cursor = char*;

    BufferedOutput(const BufferedOutput&) = delete;
    BufferedOutput& operator=(const BufferedOutput&) = delete;

    template <std::size_t N>
    Cursor text(Cursor at, const char (&piece)[N]) {
        at = ensure_room(at, N - 1);
        std::memcpy(at, piece, N - 1);
        return at + N - 1;
    }

    Cursor number(Cursor at, FloatingBits<double> bits);
    Cursor number(Cursor at, FloatingBits<float> bits);
    Cursor number(Cursor at, long long value);
    Cursor number(Cursor at, unsigned long long value);
    Cursor string(Cursor at, const std::string& text);
    Cursor spaces(Cursor at, std::size_t count);

protected:
    static constexpr std::size_t minimum_room = 1024;

    BufferedOutput() = default;
    ~BufferedOutput() = default;

    bool has_room(const char* at, std::size_t count) const {
        return static_cast<std::size_t>(end_ - at) >= count;
    }

    Cursor ensure_room(Cursor at, std::size_t count) {
        return has_room(at, count) ? at : sink().make_room(at);
    }

    /// The end of the buffer.
    char* end_ = nullptr;

private:
    Sink& sink() { return static_cast<Sink&>(*this); }

    template <class Number>
    Cursor real_number(Cursor at, FloatingBits<Number> bits);
    template <class Number>
    Cursor real_number_in_new_room(Cursor at, FloatingBits<Number> bits);
    template <class Number>
    Cursor integer(Cursor at, Number value);
};

/// Text into a string, through a chain of buffers. The size of each is a fraction of the text
/// before it, so that at most the text, a copy and that fraction are in memory at once. Long
/// strings that need no escapes are not copied until the text is put together.
class StringOutput : public BufferedOutput<StringOutput> {
public:
    StringOutput();

    Cursor start() noexcept { return first_; }

    Cursor line_end(Cursor at) {
        ask_locale();
        return text(at, "\n");
    }

    /// Whether the text has a piece that the global locale writes differently. The text is of no
    /// use then, and has to be written to a stream.
    bool depends_on_locale() const noexcept { return locale_ == Locale::relevant; }

    /// The text up to the cursor. Call it once, at the end.
    std::string take(const char* at);

private:
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

    void end_piece(const char* text, std::size_t size);

    enum class Locale { unknown, irrelevant, relevant };

    Locale locale_ = Locale::unknown;
    char first_[4096];
    std::vector<std::unique_ptr<char[]>> buffers_;
    /// The text before that of the present buffer from `begin_` on.
    std::vector<std::string_view> pieces_;
    std::size_t total_ = 0;
    char* begin_;
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
