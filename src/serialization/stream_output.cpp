#include "serialization/stream_output.hpp"

#include "number/number_text.hpp"
#include "text/escapes.hpp"

#include <exception>
#include <new>

namespace foundation::json::detail {

namespace {

/// Restores the flags of a stream, also if it throws.
class FlagsRestorer {
public:
    explicit FlagsRestorer(std::ios_base& stream) : stream_(stream), flags_(stream.flags()) {}
    ~FlagsRestorer() { stream_.flags(flags_); }
    FlagsRestorer(const FlagsRestorer&) = delete;
    FlagsRestorer& operator=(const FlagsRestorer&) = delete;

private:
    std::ios_base& stream_;
    std::ios_base::fmtflags flags_;
};

} // namespace

StreamOutput::StreamOutput(std::ostream& stream, Failure failure)
    : stream_(stream), failure_(failure) {
    if (failure == Failure::silent) {
        // Otherwise the stream would hide running out of memory, too.
        stream.exceptions(std::ios_base::badbit);
    }
}

template <class Piece>
void StreamOutput::insert(const Piece& piece) {
    if (failure_ == Failure::as_the_stream_says) {
        stream_ << piece;
        return;
    }
    try {
        stream_ << piece;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        silence(); // GCOVR_EXCL_BR_LINE: the branches are those of the handler's own end
    }
}

/// Ends an exception as a stream with an empty mask does: the stream stays bad, so that no later
/// insertion writes anything. Passes exceptions on that such a stream does not catch, after which
/// it is good, or was bad before. Also passes on the cancellation of a thread, which is not a C++
/// exception: there is no current exception then.
void StreamOutput::silence() {
    const bool thrown_by_stream = stream_.exceptions() != std::ios_base::goodbit && stream_.bad();
    if (!thrown_by_stream || std::current_exception() == nullptr) {
        throw;
    }
    stream_.exceptions(std::ios_base::goodbit);
}

StreamOutput::Cursor StreamOutput::text(Cursor at, const char* piece) {
    insert(piece);
    return at;
}

StreamOutput::Cursor StreamOutput::number(Cursor at, FloatingBits<double> bits) {
    NumberBuffer buffer;
    insert(number_text(buffer, bits));
    return at;
}

StreamOutput::Cursor StreamOutput::number(Cursor at, FloatingBits<float> bits) {
    NumberBuffer buffer;
    insert(number_text(buffer, bits));
    return at;
}

StreamOutput::Cursor StreamOutput::number(Cursor at, long long value) {
    insert(value);
    return at;
}

StreamOutput::Cursor StreamOutput::number(Cursor at, unsigned long long value) {
    insert(value);
    return at;
}

StreamOutput::Cursor StreamOutput::string(Cursor at, const std::string& text) {
    insert('"');
    for (const char byte : text) {
        escaped(static_cast<unsigned char>(byte));
    }
    insert('"');
    return at;
}

StreamOutput::Cursor StreamOutput::line_end(Cursor at) {
    insert(static_cast<std::ostream& (&)(std::ostream&)>(std::endl));
    return at;
}

StreamOutput::Cursor StreamOutput::spaces(Cursor at, std::size_t count) {
    insert(std::string(count, ' '));
    return at;
}

void StreamOutput::escaped(unsigned char byte) {
    if (const char letter = short_escape(byte); letter != '\0') {
        const char escape[] = {'\\', letter, '\0'};
        insert(escape);
    } else if (byte >= 0x20) {
        insert(static_cast<char>(byte));
    } else {
        unicode_escape(byte);
    }
}

void StreamOutput::unicode_escape(unsigned char byte) {
    // The fill character stays zero on purpose.
    const FlagsRestorer flags(stream_);
    insert("\\u");
    stream_.width(4);
    stream_.fill('0');
    stream_.setf(std::ios_base::hex, std::ios_base::basefield);
    insert(static_cast<int>(byte));
}

} // namespace foundation::json::detail
