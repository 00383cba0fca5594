/// @file
/// Text into memory first: the same bytes as from StreamOutput, without a stream's cost for every
/// piece.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_BUFFERED_OUTPUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_BUFFERED_OUTPUT_HPP

#include "serialization/fast_number_text.hpp"
#include "serialization/stream_output.hpp"

#include <cstddef>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace foundation::json::detail {

/// An output of the layout that fills a buffer. What becomes of a full buffer is the Sink's matter,
/// which derives from this class:
///
///     make_room()                    makes room for at least minimum_room bytes
///     unicode_escape(unsigned char)  writes a byte as \u escape
template <class Sink>
class BufferedOutput {
public:
    BufferedOutput(const BufferedOutput&) = delete;
    BufferedOutput& operator=(const BufferedOutput&) = delete;

    template <std::size_t N>
    void text(const char (&piece)[N]) {
        ensure_room(N - 1);
        std::memcpy(next_, piece, N - 1);
        next_ += N - 1;
    }

    void number(double value);
    void number(float value);
    void number(long long value);
    void number(unsigned long long value);
    void string(const std::string& text);
    void spaces(std::size_t count);

protected:
    static constexpr std::size_t minimum_room = 1024;

    BufferedOutput() = default;
    ~BufferedOutput() = default;

    void ensure_room(std::size_t count) {
        if (static_cast<std::size_t>(end_ - next_) < count) {
            sink().make_room();
        }
    }

    /// The free part of the buffer.
    char* next_ = nullptr;
    char* end_ = nullptr;

private:
    Sink& sink() { return static_cast<Sink&>(*this); }

    template <class Number>
    void real_number(Number value);
    template <class Number>
    void integer(Number value);
};

/// Text into a string, by way of a chain of buffers: each is a fraction of the text before it, so
/// that no more than the text, a copy and that fraction is in memory at once.
class StringOutput : public BufferedOutput<StringOutput> {
public:
    StringOutput() noexcept;

    void line_end() { text("\n"); }

    /// The text; to be called once, at the end.
    std::string take();

private:
    friend class BufferedOutput<StringOutput>;

    struct Chunk {
        std::unique_ptr<char[]> text;
        std::size_t size;
    };

    void make_room();
    void unicode_escape(unsigned char byte);

    char first_[4096];
    std::size_t first_size_ = 0;
    std::vector<Chunk> chunks_;
    std::size_t total_ = 0;
    char* begin_;
};

/// Text onto a stream, in large pieces. Only for a stream that cannot tell them from small ones;
/// see applies_to().
class BufferedStreamOutput : public BufferedOutput<BufferedStreamOutput> {
public:
    /// Whether the stream's state lets nobody tell the difference: it is good, pads nothing,
    /// flushes nothing along with every piece, and writes integers as they are.
    static bool applies_to(const std::ostream& stream);

    explicit BufferedStreamOutput(std::ostream& stream) noexcept;

    void line_end();

    /// Hands the rest over; to be called once, at the end, and only after a text whose last byte is
    /// a piece of its own.
    void finish();

private:
    friend class BufferedOutput<BufferedStreamOutput>;

    void make_room() { hand_over(); }
    void hand_over();
    void unicode_escape(unsigned char byte);

    std::ostream& stream_;
    StreamOutput plain_;
    char buffer_[8192];
};

extern template class BufferedOutput<StringOutput>;
extern template class BufferedOutput<BufferedStreamOutput>;

} // namespace foundation::json::detail

#endif
