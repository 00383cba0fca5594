#include "serialization/buffered_output.hpp"

#include "serialization/fast_string_text.hpp"
#include "serialization/number_text.hpp"

#include <algorithm>
#include <locale>
#include <string_view>

namespace foundation::json::detail {

template <class Sink>
template <class Number>
void BufferedOutput<Sink>::real_number(Number value) {
    ensure_room(fast_number_room);
    if (char* const end = fast_number_text(next_, value)) {
        next_ = end;
        return;
    }
    NumberBuffer buffer;
    const std::string_view text = number_text(buffer, value);
    std::memcpy(next_, text.data(), text.size());
    next_ += text.size();
}

template <class Sink>
template <class Number>
void BufferedOutput<Sink>::integer(Number value) {
    ensure_room(fast_number_room);
    next_ = fast_integer_text(next_, value);
}

template <class Sink>
void BufferedOutput<Sink>::number(double value) {
    real_number(value);
}

template <class Sink>
void BufferedOutput<Sink>::number(float value) {
    real_number(value);
}

template <class Sink>
void BufferedOutput<Sink>::number(long long value) {
    integer(value);
}

template <class Sink>
void BufferedOutput<Sink>::number(unsigned long long value) {
    integer(value);
}

template <class Sink>
void BufferedOutput<Sink>::string(const std::string& text) {
    // One check of the room serves a quote, a block with every byte escaped, and another quote.
    constexpr std::ptrdiff_t block = 256;
    static_assert(2 * block + 32 <= minimum_room);
    const char* from = text.data();
    const char* const end = from + text.size();
    ensure_room(2 * block + 32);
    *next_++ = '"';
    while (from != end) {
        const char* const block_end = end - from > block ? from + block : end;
        const EscapedCopy copied = copy_escaped<VectorBytes>(next_, from, block_end);
        from = copied.from;
        next_ = copied.out;
        if (from != block_end) {
            sink().unicode_escape(static_cast<unsigned char>(*from++));
        }
        if (from != end) {
            ensure_room(2 * block + 32);
        }
    }
    ensure_room(1);
    *next_++ = '"';
}

template <class Sink>
void BufferedOutput<Sink>::spaces(std::size_t count) {
    constexpr std::size_t block = 256;
    while (count > block) {
        ensure_room(block);
        std::memset(next_, ' ', block);
        next_ += block;
        count -= block;
    }
    ensure_room(block);
    std::memset(next_, ' ', count);
    next_ += count;
}

template class BufferedOutput<StringOutput>;
template class BufferedOutput<BufferedStreamOutput>;

StringOutput::StringOutput() noexcept : begin_(first_) {
    static_assert(sizeof first_ >= minimum_room);
    next_ = first_;
    end_ = first_ + sizeof first_;
}

void StringOutput::make_room() {
    const auto size = static_cast<std::size_t>(next_ - begin_);
    const std::size_t capacity = std::max(sizeof first_, (total_ + size) / 8);
    chunks_.reserve(chunks_.size() + 1);
    std::unique_ptr<char[]> text(new char[capacity]);
    (chunks_.empty() ? first_size_ : chunks_.back().size) = size;
    total_ += size;
    begin_ = next_ = text.get();
    end_ = begin_ + capacity;
    chunks_.push_back({std::move(text), 0});
}

void StringOutput::unicode_escape(unsigned char byte) {
    constexpr char digits[] = "0123456789abcdef";
    text("\\u00");
    ensure_room(2);
    *next_++ = digits[byte >> 4];
    *next_++ = digits[byte & 0xF];
}

std::string StringOutput::take() {
    const auto size = static_cast<std::size_t>(next_ - begin_);
    if (chunks_.empty()) {
        return std::string(first_, size);
    }
    chunks_.back().size = size;
    std::string result;
    result.reserve(total_ + size);
    result.append(first_, first_size_);
    for (const Chunk& chunk : chunks_) {
        result.append(chunk.text.get(), chunk.size);
    }
    return result;
}

bool BufferedStreamOutput::applies_to(const std::ostream& stream) {
    const std::ios_base::fmtflags shaping =
        std::ios_base::basefield | std::ios_base::showpos | std::ios_base::unitbuf;
    return stream.good() && stream.width() == 0 && stream.tie() == nullptr &&
           (stream.flags() & shaping) == std::ios_base::dec &&
           stream.getloc() == std::locale::classic();
}

BufferedStreamOutput::BufferedStreamOutput(std::ostream& stream) noexcept
    : stream_(stream), plain_(stream) {
    next_ = buffer_;
    end_ = buffer_ + sizeof buffer_;
}

void BufferedStreamOutput::hand_over() {
    // Formatted insertion, as for every piece, so that a failure leaves the same state.
    const std::string_view text(buffer_, static_cast<std::size_t>(next_ - buffer_));
    next_ = buffer_;
    if (!text.empty()) {
        stream_ << text;
    }
}

void BufferedStreamOutput::line_end() {
    hand_over();
    plain_.line_end();
}

void BufferedStreamOutput::unicode_escape(unsigned char byte) {
    // Leaves its traces on the stream: the fill character, and a width where the stream has failed.
    hand_over();
    plain_.unicode_escape(byte);
}

void BufferedStreamOutput::finish() {
    // The last piece goes by itself: it tells a stream that failed before it from one that failed
    // with it.
    const char last = *--next_;
    hand_over();
    stream_ << last;
}

} // namespace foundation::json::detail
