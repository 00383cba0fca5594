/// @file
/// A stream that allocates nothing while it is written.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_FIXED_STREAM_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_FIXED_STREAM_HPP

#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

namespace foundation::json::test {

/// A stream buffer of a fixed size, allocated beforehand. It accepts no more bytes than that.
class FixedBuffer : public std::streambuf {
public:
    explicit FixedBuffer(std::size_t room) : room_(room) {
        setp(room_.data(), room_.data() + room_.size());
    }

    std::string text() const { return {pbase(), pptr()}; }

private:
    std::vector<char> room_;
};

/// Holds a stream's buffer; a base, so that it is there before the stream is.
struct FixedBufferHolder {
    FixedBuffer buffer;
};

/// A stream on a FixedBuffer of its own.
class FixedStream : private FixedBufferHolder, public std::ostream {
public:
    explicit FixedStream(std::size_t room)
        : FixedBufferHolder{FixedBuffer(room)}, std::ostream(&buffer) {}

    std::string text() const { return buffer.text(); }
};

} // namespace foundation::json::test

#endif
