#include "serialization/buffered_output.hpp"

#include "text/fast_string_text.hpp"
#include "text/shuffled_string_text.hpp"

#include <algorithm>
#include <locale>
#include <string_view>
#include <utility>

namespace foundation::json::detail {

template <class Sink>
template <class Number>
char* BufferedOutput<Sink>::real_number(Cursor at, FloatingBits<Number> bits) {
    if (!has_room(at, fast_number_room)) {
        return real_number_in_new_room(at, bits);
    }
    return fast_or_reference_number_text(at, bits);
}

/// Separate from the common case, which then need not save registers.
template <class Sink>
template <class Number>
[[gnu::noinline]] char* BufferedOutput<Sink>::real_number_in_new_room(Cursor at,
                                                                      FloatingBits<Number> bits) {
    return fast_or_reference_number_text(sink().make_room(at), bits);
}

template <class Sink>
template <class Number>
char* BufferedOutput<Sink>::integer(Cursor at, Number value) {
    sink().before_integer();
    return integer_text(ensure_room(at, fast_number_room), value);
}

template <class Sink>
char* BufferedOutput<Sink>::number(Cursor at, FloatingBits<double> bits) {
    return real_number(at, bits);
}

template <class Sink>
char* BufferedOutput<Sink>::number(Cursor at, FloatingBits<float> bits) {
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
    // From this size on, copying costs more than what it takes to do without.
    constexpr std::size_t long_text = 4096;
    const char* from = text.data();
    const char* const end = from + text.size();
    at = ensure_room(at, room);
    *at++ = '"';
    if (end - from <= block && copy_clean<VectorBytes>(at, from, text.size())) {
        at += text.size();
        *at++ = '"';
        return at;
    }
    if (text.size() >= long_text) {
        if (const std::size_t clean = count_clean<VectorBytes>(from, end); clean >= long_text) {
            at = ensure_room(sink().pass(at, from, clean), room);
            from += clean;
        }
    }
    while (from != end) {
        const char* const block_end = end - from > block ? from + block : end;
        const EscapedCopy copied = copy_escaped_quickly(at, from, block_end);
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

namespace {

/// Whether a new stream asks the global locale's facets for nothing until it formats a piece that
/// depends on them. Others may ask when they are made, and so fail with a facet that throws.
#if defined(_GLIBCXX_RELEASE) && _GLIBCXX_RELEASE < 16
constexpr bool streams_are_made_without_facets = true;
#else
constexpr bool streams_are_made_without_facets = false;
#endif

} // namespace

StringOutput::StringOutput() : begin_(first_) {
    static_assert(sizeof first_ >= minimum_room);
    end_ = first_ + sizeof first_;
    if constexpr (!streams_are_made_without_facets) {
        find_out_locale();
    }
}

void StringOutput::end_piece(const char* text, std::size_t size) {
    pieces_.emplace_back(text, size);
    total_ += size;
}

char* StringOutput::make_room(const char* at) {
    end_piece(begin_, static_cast<std::size_t>(at - begin_));
    const std::size_t capacity = std::max(sizeof first_, total_ / 8);
    std::unique_ptr<char[]> buffer(new char[capacity]);
    begin_ = buffer.get();
    buffers_.push_back(std::move(buffer));
    end_ = begin_ + capacity;
    return begin_;
}

char* StringOutput::pass(Cursor at, const char* text, std::size_t size) {
    end_piece(begin_, static_cast<std::size_t>(at - begin_));
    end_piece(text, size);
    begin_ = at;
    return at;
}

char* StringOutput::unicode_escape(Cursor at, unsigned char byte) {
    ask_locale();
    constexpr char digits[] = "0123456789abcdef";
    at = ensure_room(text(at, "\\u00"), 2);
    *at++ = digits[byte >> 4];
    *at++ = digits[byte & 0xF];
    return at;
}

std::string StringOutput::take(const char* at) {
    const auto size = static_cast<std::size_t>(at - begin_);
    if (pieces_.empty()) {
        return std::string(begin_, size);
    }
    std::string result;
    result.reserve(total_ + size);
    for (const std::string_view piece : pieces_) {
        result += piece;
    }
    result.append(begin_, size);
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
    // Locales are compared by name, which those made by combine() keep.
    return has_classic<std::num_put<char>>(locale) && has_classic<std::numpunct<char>>(locale) &&
           has_classic<std::ctype<char>>(locale);
}

void StringOutput::find_out_locale() {
    const std::locale global;
    locale_ = writes_as_classic(global) ? Locale::irrelevant : Locale::relevant;
}

bool BufferedStreamOutput::applies_to(const std::ostream& stream) {
    const std::ios_base::fmtflags shaping =
        std::ios_base::basefield | std::ios_base::showpos | std::ios_base::unitbuf;
    const bool ordinary = stream.good() && stream.width() == 0 && stream.tie() == nullptr &&
                          (stream.flags() & shaping) == std::ios_base::dec;
    if (!ordinary) {
        return false;
    }
    return writes_as_classic(stream.getloc());
}

BufferedStreamOutput::BufferedStreamOutput(std::ostream& stream) noexcept
    : stream_(stream), by_pieces_(stream) {
    end_ = buffer_ + sizeof buffer_;
}

char* BufferedStreamOutput::hand_over(Cursor at) {
    // A formatted insertion, as for single pieces, so that a failure leaves the same state.
    const std::string_view text(buffer_, static_cast<std::size_t>(at - buffer_));
    if (!text.empty()) {
        stream_ << text;
    }
    return buffer_;
}

char* BufferedStreamOutput::pass(Cursor at, const char* text, std::size_t size) {
    at = hand_over(at);
    stream_ << std::string_view(text, size);
    return at;
}

char* BufferedStreamOutput::line_end(Cursor at) {
    at = hand_over(at);
    by_pieces_.line_end({});
    return at;
}

char* BufferedStreamOutput::unicode_escape(Cursor at, unsigned char byte) {
    // This changes the stream's fill character, and uses up its width if the stream has failed.
    at = hand_over(at);
    by_pieces_.unicode_escape(byte);
    return at;
}

void BufferedStreamOutput::finish(Cursor at) {
    // The last piece is inserted separately: whether the stream fails before it or at it makes a
    // difference to the stream's state.
    const char last = *--at;
    hand_over(at);
    stream_ << last;
}

} // namespace foundation::json::detail
