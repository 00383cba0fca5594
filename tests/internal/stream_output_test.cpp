/// @file
/// The bytes of each piece on a stream; and silent failures, which have the same effect as on a
/// stream with an empty exception mask, whatever happens after the first failure.
#include "serialization/stream_output.hpp"

#include <gtest/gtest.h>

#include <ios>
#include <locale>
#include <new>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>

namespace foundation::json::detail {
namespace {

TEST(StreamOutput, WritesThePiecesOneAfterTheOther) {
    std::ostringstream stream;
    StreamOutput output(stream);
    output.text({}, "[");
    output.line_end({});
    output.spaces({}, 2);
    output.number({}, FloatingBits<double>(1.5));
    output.number({}, FloatingBits<float>(0.25f));
    output.number({}, -7LL);
    output.number({}, 8ULL);
    output.text({}, "null");
    EXPECT_EQ(stream.str(), "[\n  1.50.25-78null");
}

TEST(StreamOutput, EscapesStrings) {
    std::ostringstream stream;
    StreamOutput(stream).string({}, "a \b\t\n\f\r\"/\\\x01\x1F\x7F");
    EXPECT_EQ(stream.str(), "\"a \\b\\t\\n\\f\\r\\\"\\/\\\\\\u0001\\u001f\x7F\"");
}

/// Takes a few bytes, then throws.
template <class Exception>
class ThrowingBuffer : public std::streambuf {
public:
    explicit ThrowingBuffer(std::size_t room) : room_(room) {}

    std::string text;

protected:
    int_type overflow(int_type byte) override {
        if (text.size() == room_) {
            throw Exception();
        }
        text += traits_type::to_char_type(byte);
        return byte;
    }

private:
    std::size_t room_;
};

struct Fault : std::runtime_error {
    Fault() : std::runtime_error("a buffer's") {}
};

/// Throws when it is to widen a line feed.
class ThrowingCtype : public std::ctype<char> {
protected:
    char do_widen(char) const override { throw std::runtime_error("a facet's"); }
    const char* do_widen(const char*, const char*, char*) const override {
        throw std::runtime_error("a facet's");
    }
};

TEST(SilentStreamOutput, EndsTheTextAtAFailure) {
    ThrowingBuffer<Fault> buffer(3);
    std::ostream stream(&buffer);
    StreamOutput output(stream, StreamOutput::Failure::silent);
    EXPECT_NO_THROW(output.text({}, "true"));
    EXPECT_TRUE(stream.bad());
    EXPECT_NO_THROW(output.text({}, "false"));
    EXPECT_NO_THROW(output.string({}, "a\x01z"));
    EXPECT_NO_THROW(output.number({}, 1ULL));
    EXPECT_NO_THROW(output.line_end({}));
    EXPECT_EQ(buffer.text, "tru");
}

TEST(SilentStreamOutput, ThrowsBadAlloc) {
    ThrowingBuffer<std::bad_alloc> buffer(3);
    std::ostream stream(&buffer);
    StreamOutput output(stream, StreamOutput::Failure::silent);
    EXPECT_THROW(output.text({}, "true"), std::bad_alloc);
}

TEST(SilentStreamOutput, ThrowsWhatAFacetThrowsForLineEndsBeforeAndAfterAFailure) {
    const std::locale throwing(std::locale::classic(), new ThrowingCtype);
    ThrowingBuffer<Fault> buffer(1);
    std::ostream stream(&buffer);
    StreamOutput output(stream, StreamOutput::Failure::silent);
    stream.imbue(throwing);
    EXPECT_THROW(output.line_end({}), std::runtime_error);
    EXPECT_TRUE(stream.good());
    EXPECT_NO_THROW(output.text({}, "[]"));
    EXPECT_TRUE(stream.bad());
    EXPECT_THROW(output.line_end({}), std::runtime_error);
    EXPECT_EQ(buffer.text, "[");
}

TEST(StreamOutput, ThrowsAccordingToTheExceptionMaskOfTheStream) {
    ThrowingBuffer<Fault> buffer(3);
    std::ostream stream(&buffer);
    stream.exceptions(std::ios_base::badbit);
    StreamOutput output(stream);
    EXPECT_THROW(output.text({}, "true"), Fault);
    EXPECT_EQ(stream.exceptions(), std::ios_base::badbit);
}

} // namespace
} // namespace foundation::json::detail
