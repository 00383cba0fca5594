/// @file
/// Streams that deliver a text in pieces of any size, and that fail.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_PIECEWISE_STREAM_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_PIECEWISE_STREAM_HPP

#include <algorithm>
#include <cstddef>
#include <istream>
#include <streambuf>
#include <string>
#include <utility>

namespace foundation::json::test {

/// How a stream fails.
enum class StreamFailure {
    never,
    by_throwing,    ///< its buffer throws
    by_turning_bad, ///< its buffer ends, and the stream turns bad
};

/// What a throwing buffer throws. It is no std::exception, and must reach the caller unchanged.
struct BufferFailure {};

/// Delivers a text in pieces, and then fails or ends.
class PiecewiseBuffer : public std::streambuf {
public:
    PiecewiseBuffer(std::string text, std::size_t piece,
                    StreamFailure failing = StreamFailure::never)
        : text_(std::move(text)), piece_(piece), failing_(failing) {}

    void attach(std::istream& stream) { stream_ = &stream; }

    /// How many bytes of the text have been read.
    std::size_t taken() const { return given_ - static_cast<std::size_t>(egptr() - gptr()); }

protected:
    int_type underflow() override {
        if (given_ == text_.size()) {
            if (failing_ == StreamFailure::by_throwing) {
                throw BufferFailure();
            }
            if (failing_ == StreamFailure::by_turning_bad) {
                stream_->setstate(std::ios_base::badbit);
            }
            return traits_type::eof();
        }
        const std::size_t count = std::min(piece_, text_.size() - given_);
        char* const begin = &text_[given_];
        given_ += count;
        setg(begin, begin, begin + count);
        return traits_type::to_int_type(*begin);
    }

private:
    std::string text_;
    std::size_t piece_;
    StreamFailure failing_;
    std::size_t given_ = 0;
    std::istream* stream_ = nullptr;
};

class PiecewiseStream : public std::istream {
public:
    explicit PiecewiseStream(std::string text, std::size_t piece = 1,
                             StreamFailure failing = StreamFailure::never)
        : std::istream(nullptr), buffer_(std::move(text), piece, failing) {
        rdbuf(&buffer_);
        buffer_.attach(*this);
    }

    std::size_t taken() const { return buffer_.taken(); }

private:
    PiecewiseBuffer buffer_;
};

/// Delivers a text in pieces, and throws once before each.
class InterruptedBuffer : public std::streambuf {
public:
    explicit InterruptedBuffer(std::string text, std::size_t piece = 1)
        : text_(std::move(text)), piece_(piece) {}

protected:
    int_type underflow() override {
        if (!std::exchange(has_thrown_, true)) {
            throw BufferFailure();
        }
        has_thrown_ = false;
        const std::size_t count = std::min(piece_, text_.size() - given_);
        if (count == 0) {
            return traits_type::eof();
        }
        char* const begin = &text_[given_];
        given_ += count;
        setg(begin, begin, begin + count);
        return traits_type::to_int_type(*begin);
    }

private:
    std::string text_;
    std::size_t piece_;
    std::size_t given_ = 0;
    bool has_thrown_ = false;
};

/// Does something again and again until the buffer of a stream throws no more.
template <class Action>
auto until_not_interrupted(std::istream& stream, Action&& action) {
    for (;;) {
        try {
            return action();
        } catch (const BufferFailure&) {
            stream.clear();
        }
    }
}

} // namespace foundation::json::test

#endif
