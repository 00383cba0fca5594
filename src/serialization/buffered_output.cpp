#include "serialization/buffered_output.hpp"

#include "number/digits.hpp"

#include <locale>
#include <string_view>

namespace foundation::json::detail {

template <class Sink>
template <class Number>
char* BufferedOutput<Sink>::real_number(Cursor at, FloatingBits<Number> bits) {
    if (!this->has_room(at, fast_number_room)) {
        return real_number_in_new_room(at, bits);
    }
    return fast_number_text(at, bits);
}

/// Separate from the common case, which then need not save registers.
template <class Sink>
template <class Number>
[[gnu::noinline]] char* BufferedOutput<Sink>::real_number_in_new_room(Cursor at,
                                                                      FloatingBits<Number> bits) {
    return fast_number_text(sink().make_room(at), bits);
}

template <class Sink>
template <class Number>
char* BufferedOutput<Sink>::integer(Cursor at, Number value) {
    sink().before_integer();
    return integer_text(this->ensure_room(at, fast_number_room), value);
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
    return this->template quoted<FixedEscapes>(at, text);
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

StringOutput::StringOutput() {
    end_ = chain_.start().end;
    if constexpr (!streams_are_made_without_facets) {
        find_out_locale();
    }
}

char* StringOutput::make_room(const char* at) {
    const Room room = chain_.next(at);
    end_ = room.end;
    return room.begin;
}

char* StringOutput::pass(Cursor at, const char* text, std::size_t size) {
    chain_.pass(at, text, size);
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
