/// @file
/// A stream that records what reaches its buffer, and that fails on request.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_PROBE_STREAM_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_PROBE_STREAM_HPP

#include <cstddef>
#include <limits>
#include <ostream>
#include <streambuf>
#include <string>

namespace foundation::json::test {

/// How a ProbeBuffer fails once its allowance is used up.
enum class Refusal {
    forever,     ///< accepts nothing any more
    once,        ///< refuses once and then accepts everything again
    by_throwing, ///< throws ProbeFailure
};

/// What a throwing ProbeBuffer throws. Not a std::exception on purpose: it must pass through.
struct ProbeFailure {};

/// An unbuffered stream buffer with a log of the accepted bytes and of its flushes.
class ProbeBuffer : public std::streambuf {
public:
    /// Takes everything.
    ProbeBuffer() = default;

    /// Takes that many bytes and then fails.
    explicit ProbeBuffer(std::size_t bytes, Refusal refusal = Refusal::forever)
        : byte_allowance_(bytes), byte_refusal_(refusal) {}

    /// Performs that many flushes and then fails at flushing.
    void allow_flushes(std::size_t flushes, Refusal refusal) {
        flush_allowance_ = flushes;
        flush_refusal_ = refusal;
    }

    const std::string& bytes() const { return bytes_; } ///< what was taken
    const std::string& log() const { return log_; }     ///< the same with a `~` at every flush
    std::size_t flushes() const { return flushes_; }

protected:
    int_type overflow(int_type byte) override {
        if (!allowed(byte_allowance_, byte_refusal_)) {
            return traits_type::eof();
        }
        bytes_ += traits_type::to_char_type(byte);
        log_ += traits_type::to_char_type(byte);
        return byte;
    }

    int sync() override {
        if (!allowed(flush_allowance_, flush_refusal_)) {
            return -1;
        }
        ++flushes_;
        log_ += '~';
        return 0;
    }

private:
    static constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

    static bool allowed(std::size_t& allowance, Refusal refusal) {
        if (allowance == unlimited) {
            return true;
        }
        if (allowance > 0) {
            --allowance;
            return true;
        }
        if (refusal == Refusal::by_throwing) {
            throw ProbeFailure();
        }
        if (refusal == Refusal::once) {
            allowance = unlimited;
        }
        return false;
    }

    std::size_t byte_allowance_ = unlimited;
    Refusal byte_refusal_ = Refusal::forever;
    std::size_t flush_allowance_ = unlimited;
    Refusal flush_refusal_ = Refusal::forever;
    std::string bytes_;
    std::string log_;
    std::size_t flushes_ = 0;
};

/// Holds a stream's buffer; a base, so that it is there before the stream is.
struct ProbeBufferHolder {
    ProbeBuffer buffer;
};

/// A stream on a ProbeBuffer of its own.
class ProbeStream : private ProbeBufferHolder, public std::ostream {
public:
    /// Takes everything.
    ProbeStream() : std::ostream(&buffer) {}

    /// Takes that many bytes and then fails.
    explicit ProbeStream(std::size_t bytes, Refusal refusal = Refusal::forever)
        : ProbeBufferHolder{ProbeBuffer(bytes, refusal)}, std::ostream(&buffer) {}

    /// As the members of ProbeBuffer.
    void allow_flushes(std::size_t flushes, Refusal refusal) {
        buffer.allow_flushes(flushes, refusal);
    }
    const std::string& bytes() const { return buffer.bytes(); }
    const std::string& log() const { return buffer.log(); }
    std::size_t flushes() const { return buffer.flushes(); }
};

} // namespace foundation::json::test

#endif
