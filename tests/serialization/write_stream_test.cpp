/// @file
/// write() onto a stream: unformatted output, with the state and the exceptions that
/// std::ostream::write() leaves.
#include <foundation/json/write.hpp>

#include "support/nested.hpp"
#include "support/probe_stream.hpp"
#include "support/write_outcome.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <fstream>
#include <iomanip>
#include <ios>
#include <ostream>
#include <sstream>
#include <string>

namespace foundation::json {
namespace {

using std::ios_base;
using test::ProbeStream;
using test::Refusal;

const Value& short_value() {
    static const Value value(Object{{"a", Array{1.5, -7LL, "x\n", Null()}}, {"b", true}});
    return value;
}

/// A text of so many pieces that several buffers are needed, and of strings that need none.
Value long_value() {
    Array elements;
    for (int i = 0; i < 3000; ++i) {
        elements.emplace_back(Object{{"number", i / 8.0}, {"text", "some text"}});
        if (i % 1000 == 0) {
            elements.emplace_back(std::string(10000, 'x'));
        }
    }
    return elements;
}

TEST(WriteOntoStream, WritesTheSameTextAsToAString) {
    for (const Value& value : {short_value(), long_value(), Value("x"), Value(Array{})}) {
        for (const unsigned spaces : {0U, 2U}) {
            std::ostringstream stream;
            write(stream, value, WriteOptions::indented(spaces));
            EXPECT_EQ(stream.str(), write(value, WriteOptions::indented(spaces)));
            EXPECT_TRUE(stream.good());
        }
    }
}

TEST(WriteOntoStream, IgnoresTheFormatOfTheStream) {
    std::ostringstream stream;
    stream << std::hex << std::showbase << std::uppercase << std::showpos << std::boolalpha
           << std::setprecision(2) << std::setfill('*') << std::setw(100);
    stream.imbue(std::locale(std::locale::classic(), new std::numpunct<char>()));
    const auto flags = stream.flags();
    write(stream, short_value());
    EXPECT_EQ(stream.str(), R"({"a":[1.5,-7,"x\n",null],"b":true})");
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_EQ(stream.width(), 100);
    EXPECT_EQ(stream.fill(), '*');
    EXPECT_EQ(stream.precision(), 2);
}

TEST(WriteOntoStream, DoesNotFlush) {
    ProbeStream stream;
    write(stream, short_value(), WriteOptions::indented(2));
    EXPECT_EQ(stream.flushes(), 0U);
    write(stream, long_value());
    EXPECT_EQ(stream.flushes(), 0U);
}

TEST(WriteOntoStream, FlushesWhatTheStreamAsksFor) {
    // As std::ostream::write() does: a tied stream before, its own buffer behind, with unitbuf.
    ProbeStream tied;
    ProbeStream stream;
    stream.tie(&tied);
    stream << std::unitbuf;
    write(stream, Array{1});
    EXPECT_EQ(stream.log(), "[1]~");
    EXPECT_EQ(tied.log(), "~");
}

// ---- Streams that fail ---------------------------------------------------------------------

struct Outcome {
    std::string log;
    ios_base::iostate state;
    std::string thrown;

    bool operator==(const Outcome& other) const {
        return log == other.log && state == other.state && thrown == other.thrown;
    }
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return stream << outcome.log << ", state " << outcome.state << ", thrown " << outcome.thrown;
}

template <class Action>
Outcome outcome_of(ProbeStream& stream, Action action) {
    std::string thrown = "nothing";
    try {
        action(stream);
    } catch (const test::ProbeFailure&) {
        thrown = "the exception of the buffer";
    } catch (const ios_base::failure&) {
        thrown = "ios_base::failure";
    }
    return {stream.log(), stream.rdstate(), thrown};
}

template <class Prepare>
void expect_the_outcome_of_ostream_write(std::size_t allowed, Refusal refusal, Prepare prepare) {
    const std::string text = write(short_value());
    ProbeStream expected(allowed, refusal);
    ProbeStream stream(allowed, refusal);
    prepare(expected);
    prepare(stream);
    EXPECT_EQ(outcome_of(stream, [](std::ostream& s) { write(s, short_value()); }),
              outcome_of(expected, [&](std::ostream& s) {
                  s.write(text.data(), static_cast<std::streamsize>(text.size()));
              }));
}

TEST(WriteOntoStream, LeavesAStreamThatFailsAsOstreamWriteDoes) {
    const std::size_t size = write(short_value()).size();
    for (std::size_t allowed = 0; allowed <= size; ++allowed) {
        for (const Refusal refusal : {Refusal::forever, Refusal::once, Refusal::by_throwing}) {
            for (const ios_base::iostate mask :
                 {ios_base::goodbit, ios_base::badbit, ios_base::failbit,
                  ios_base::badbit | ios_base::failbit}) {
                expect_the_outcome_of_ostream_write(
                    allowed, refusal, [mask](std::ostream& stream) { stream.exceptions(mask); });
            }
        }
    }
}

TEST(WriteOntoStream, LeavesAStreamThatHasFailedAsOstreamWriteDoes) {
    for (const ios_base::iostate state : {ios_base::badbit, ios_base::failbit, ios_base::eofbit}) {
        expect_the_outcome_of_ostream_write(
            1000, Refusal::forever, [state](std::ostream& stream) { stream.setstate(state); });
    }
    std::ostream none(nullptr);
    write(none, short_value());
    EXPECT_TRUE(none.bad());
}

TEST(WriteOntoStream, WritesNothingMoreOnceTheStreamHasFailed) {
    const std::string text = write(long_value());
    ProbeStream stream(5000, Refusal::once);
    write(stream, long_value());
    EXPECT_TRUE(stream.bad());
    EXPECT_EQ(stream.bytes(), text.substr(0, 5000));
}

TEST(WriteOntoStream, ShowsAFullDisk) {
    std::ofstream full("/dev/full");
    if (!full) {
        GTEST_SKIP() << "there is no /dev/full";
    }
    write(full, long_value());
    full.flush();
    EXPECT_TRUE(full.bad());
}

// ---- Errors --------------------------------------------------------------------------------

TEST(WriteOntoStream, WritesNothingOfAShortTextWithAnError) {
    std::ostringstream stream;
    EXPECT_EQ(test::write_error([&] {
                  write(stream, Array{std::string(4000, 'x'), std::nan("")});
              }),
              "at /1: NaN is not a JSON number: the option not_finite allows it");
    EXPECT_EQ(stream.str(), "");
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(test::write_error([&] { write(stream, Value()); }),
              "at the root: Undefined has no JSON text");
    EXPECT_EQ(stream.str(), "");
}

TEST(WriteOntoStream, WritesABeginningOfALongTextWithAnError) {
    Value value = long_value();
    const std::string text = write(value);
    value.push("\xFF");
    std::ostringstream stream;
    EXPECT_EQ(test::text_or_location([&] {
                  write(stream, value);
                  return std::string();
              }),
              "error at /3003");
    EXPECT_GT(stream.str().size(), 100000U);
    EXPECT_EQ(text.substr(0, stream.str().size()), stream.str());
    EXPECT_TRUE(stream.good());
}

} // namespace
} // namespace foundation::json
