#include "serialization/buffered_output.hpp"

#include "serialization/fast_string_text.hpp"

#include <algorithm>
#include <locale>
#include <string_view>

namespace foundation::json::detail {

template <class Sink>
template <class Number>
char* BufferedOutput<Sink>::real_number(Cursor at, NumberBits<Number> bits) {
    if (!has_room(at, fast_number_room)) {
        return real_number_in_new_room(at, bits);
    }
    return fast_or_plain_number_text(at, bits);
}

/// Apart from the common case, which need not save registers.
template <class Sink>
template <class Number>
[[gnu::noinline]] char* BufferedOutput<Sink>::real_number_in_new_room(Cursor at,
                                                                      NumberBits<Number> bits) {
    return fast_or_plain_number_text(sink().make_room(at), bits);
}

template <class Sink>
template <class Number>
char* BufferedOutput<Sink>::integer(Cursor at, Number value) {
    return fast_integer_text(ensure_room(at, fast_number_room), value);
}

template <class Sink>
char* BufferedOutput<Sink>::number(Cursor at, NumberBits<double> bits) {
    return real_number(at, bits);
}

template <class Sink>
char* BufferedOutput<Sink>::number(Cursor at, NumberBits<float> bits) {
    return real_number(at, bits);
}

template <class Sink>
char* BufferedOutput<Sink>::number(Cursor at, long long value) {
    return integer(at, value);
}

template <class Sink>
char* BufferedOutput<Sink>::number(Cursor at, unsigned long long value) {
    return integer(at, value);
}

template <class Sink>
char* BufferedOutput<Sink>::string(Cursor at, const std::string& text) {
    // One check of the room serves a quote, a block with every byte escaped, and another quote.
    constexpr std::ptrdiff_t block = 256;
    constexpr std::size_t room = 2 * block + 32;
    static_assert(room <= minimum_room);
    const char* from = text.data();
    const char* const end = from + text.size();
    at = ensure_room(at, room);
    *at++ = '"';
    if (end - from <= block && copy_clean<VectorBytes>(at, from, text.size())) {
        at += text.size();
        *at++ = '"';
        return at;
    }
    while (from != end) {
        const char* const block_end = end - from > block ? from + block : end;
        const EscapedCopy copied = copy_escaped<VectorBytes>(at, from, block_end);
        from = copied.from;
        at = copied.out;
        if (from != block_end) {
            at = sink().unicode_escape(at, static_cast<unsigned char>(*from++));
        }
        if (from != end) {
            at = ensure_room(at, room);
        }
    }
    at = ensure_room(at, 1);
    *at++ = '"';
    return at;
}

template <class Sink>
char* BufferedOutput<Sink>::spaces(Cursor at, std::size_t count) {
    constexpr std::size_t block = 256;
    for (; count > block; count -= block) {
        at = std::fill_n(ensure_room(at, block), block, ' ');
    }
    return std::fill_n(ensure_room(at, block), count, ' ');
}

template class BufferedOutput<StringOutput>;
template class BufferedOutput<BufferedStreamOutput>;

StringOutput::StringOutput() noexcept : begin_(first_) {
    static_assert(sizeof first_ >= minimum_room);
    end_ = first_ + sizeof first_;
}

char* StringOutput::make_room(const char* at) {
    const auto size = static_cast<std::size_t>(at - begin_);
    const std::size_t capacity = std::max(sizeof first_, (total_ + size) / 8);
    Chunk chunk{std::unique_ptr<char[]>(new char[capacity]), 0};
    (chunks_.empty() ? first_size_ : chunks_.back().size) = size;
    total_ += size;
    begin_ = chunk.text.get();
    end_ = begin_ + capacity;
    chunks_.push_back(std::move(chunk));
    return begin_;
}

char* StringOutput::unicode_escape(Cursor at, unsigned char byte) {
    constexpr char digits[] = "0123456789abcdef";
    at = ensure_room(text(at, "\\u00"), 2);
    *at++ = digits[byte >> 4];
    *at++ = digits[byte & 0xF];
    return at;
}

std::string StringOutput::take(const char* at) {
    const auto size = static_cast<std::size_t>(at - begin_);
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

namespace {

/// Whether a locale's facet is the classic locale's own.
template <class Facet>
bool has_classic(const std::locale& locale) {
    return &std::use_facet<Facet>(locale) == &std::use_facet<Facet>(std::locale::classic());
}

} // namespace

bool writes_as_classic(const std::locale& locale) {
    // The comparison alone would do, were it not by name, which locales made by combine() keep.
    return locale == std::locale::classic() && has_classic<std::num_put<char>>(locale) &&
           has_classic<std::numpunct<char>>(locale) && has_classic<std::ctype<char>>(locale);
}

bool BufferedStreamOutput::applies_to(const std::ostream& stream) {
    const std::ios_base::fmtflags shaping =
        std::ios_base::basefield | std::ios_base::showpos | std::ios_base::unitbuf;
    const bool plain = stream.good() && stream.width() == 0 && stream.tie() == nullptr &&
                       (stream.flags() & shaping) == std::ios_base::dec;
    if (!plain) {
        return false;
    }
    return writes_as_classic(stream.getloc());
}

BufferedStreamOutput::BufferedStreamOutput(std::ostream& stream) noexcept
    : stream_(stream), plain_(stream) {
    end_ = buffer_ + sizeof buffer_;
}

char* BufferedStreamOutput::hand_over(Cursor at) {
    // Formatted insertion, as for every piece, so that a failure leaves the same state.
    const std::string_view text(buffer_, static_cast<std::size_t>(at - buffer_));
    if (!text.empty()) {
        stream_ << text;
    }
    return buffer_;
}

char* BufferedStreamOutput::line_end(Cursor at) {
    at = hand_over(at);
    plain_.line_end({});
    return at;
}

char* BufferedStreamOutput::unicode_escape(Cursor at, unsigned char byte) {
    // Leaves its traces on the stream: the fill character, and a width where the stream has failed.
    at = hand_over(at);
    plain_.unicode_escape(byte);
    return at;
}

void BufferedStreamOutput::finish(Cursor at) {
    // The last piece goes by itself: it tells a stream that failed before it from one that failed
    // with it.
    const char last = *--at;
    hand_over(at);
    stream_ << last;
}

} // namespace foundation::json::detail
