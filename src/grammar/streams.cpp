#include "grammar/streams.hpp"

#include <istream>

namespace foundation::json::detail {

void set_state(std::istream& stream, std::ios_base::iostate bits) noexcept {
    try {
        stream.setstate(bits);
    } catch (...) {
        // The stream has set its state before it throws.
    }
}

namespace {

/// Does what every input function does first.
/// @return whether the stream can be read; else failbit is set
bool prepare(std::istream& stream) {
    if (!stream.good()) {
        set_state(stream, std::ios_base::failbit);
        return false;
    }
    try {
        const std::istream::sentry sentry(stream, true); // flushes the stream that is tied to it
        return static_cast<bool>(sentry);
    } catch (const std::ios_base::failure&) {
        return false; // with another message than the one for the caller
    }
}

} // namespace

void begin_reading(std::istream& stream) {
    if (!prepare(stream)) {
        throw std::ios_base::failure(stream.eof() ? "the stream to read from is at its end already"
                                                  : "the stream to read from has failed, or is of "
                                                    "a file that could not be opened");
    }
}

void end_reading(std::istream& stream) {
    if (stream.bad()) {
        throw std::ios_base::failure("the stream cannot be read to its end");
    }
    set_state(stream, std::ios_base::eofbit);
}

} // namespace foundation::json::detail
