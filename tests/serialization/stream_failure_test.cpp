/// @file
/// Writing onto streams that have failed, that fail during the write, and that throw.
#include "support/probe_stream.hpp"
#include "support/write_as.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <ios>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

using test::Layout;
using test::ProbeStream;
using test::Refusal;
using test::write;

using Array = std::vector<Value>;
using Object = std::map<std::string, Value>;
using Flags = std::ios_base::fmtflags;
using std::ios_base;

// ---- Streams that have failed before the write ---------------------------------------------

TEST(FailedStream, TakesNothingAndStaysFailed) {
    const ios_base::iostate states[] = {ios_base::badbit, ios_base::failbit, ios_base::eofbit,
                                        ios_base::badbit | ios_base::failbit | ios_base::eofbit};
    const Value values[] = {Null(),        true,     1.5,  "x",  Array{},
                            Array{1, "x"}, Object{}, 0.5f, -1LL, 1ULL};
    for (const ios_base::iostate state : states) {
        for (const Layout layout : {Layout::compact, Layout::pretty}) {
            for (const Value& value : values) {
                ProbeStream stream;
                stream.setstate(state);
                stream.width(9);
                write(stream, value, layout);
                EXPECT_EQ(stream.log(), "");
                EXPECT_EQ(stream.rdstate() & state, state);
                EXPECT_EQ(stream.width(), 9);
                EXPECT_EQ(stream.fill(), ' ');
            }
        }
    }
}

TEST(FailedStream, KeepsTheFillAndWidthOfAnEscape) {
    ProbeStream stream;
    stream.setstate(ios_base::badbit);
    stream.flags(ios_base::oct | ios_base::left);
    write(stream, "\x01");
    EXPECT_EQ(stream.log(), "");
    EXPECT_EQ(stream.flags(), ios_base::oct | ios_base::left);
    EXPECT_EQ(stream.fill(), '0');
    EXPECT_EQ(stream.width(), 4); // no insertion has used it up
}

TEST(FailedStream, DoesNotFlushTheStreamItIsTiedTo) {
    ProbeStream tied;
    ProbeStream stream;
    stream.tie(&tied);
    stream.setstate(ios_base::failbit);
    write(stream, Array{1}, Layout::pretty);
    EXPECT_EQ(tied.log(), "");
}

TEST(FailedStream, MayHaveNoBufferAtAll) {
    for (const Layout layout : {Layout::compact, Layout::pretty}) {
        std::ostream stream(nullptr);
        write(stream, Array{1, "x\x01", Object{{"a", 1LL}}}, layout);
        EXPECT_TRUE(stream.bad());
        EXPECT_EQ(stream.rdbuf(), nullptr);
    }
}

TEST(FailedStream, WorksAgainOnceCleared) {
    ProbeStream stream;
    stream.setstate(ios_base::failbit);
    write(stream, Array{1});
    stream.clear();
    write(stream, Array{2});
    EXPECT_EQ(stream.log(), "[2]");
    EXPECT_TRUE(stream.good());
}

// ---- Streams that fail during the write ----------------------------------------------------

const char every_piece_compact[] =
    R"({"a":[null,true,-0.5,"x\/\u001f",1.0E+6,-12,34],"b\u0001":{},"c":[],"d":})";

const char every_piece_pretty[] = "{\n"
                                  "    \"a\":[\n"
                                  "        null,\n"
                                  "        true,\n"
                                  "        -0.5,\n"
                                  "        \"x\\/\\u001f\",\n"
                                  "        1.0E+6,\n"
                                  "        -12,\n"
                                  "        34\n"
                                  "    ],\n"
                                  "    \"b\\u0001\":{    },\n"
                                  "    \"c\":[    ],\n"
                                  "    \"d\":\n"
                                  "}";

Value every_piece() {
    return Object{{"a", Array{Null(), true, -0.5, "x/\x1F", 1e6f, -12LL, 34ULL}},
                  {"b\x01", Object{}},
                  {"c", Array{}},
                  {"d", Undefined()}};
}

struct LayoutCase {
    Layout layout;
    std::string text;
};

const LayoutCase every_piece_in_either_layout[] = {
    {Layout::compact, every_piece_compact},
    {Layout::pretty, every_piece_pretty},
};

TEST(FailingStream, TakesExactlyTheBytesBeforeItsFailure) {
    for (const auto& [layout, text] : every_piece_in_either_layout) {
        for (const Refusal refusal : {Refusal::forever, Refusal::by_throwing, Refusal::once}) {
            for (std::size_t bytes = 0; bytes <= text.size(); ++bytes) {
                ProbeStream stream(bytes, refusal);
                write(stream, every_piece(), layout);
                EXPECT_EQ(stream.bytes(), text.substr(0, bytes));
                EXPECT_EQ(stream.bad(), bytes < text.size()) << stream.bytes();
                EXPECT_EQ(stream.flags(), ios_base::dec | ios_base::skipws) << stream.bytes();
            }
        }
    }
}

TEST(FailingStream, IsNotFlushedAfterItsFailure) {
    const std::string until_failure = "{\n~    \"a\":[\n~        nul";
    ProbeStream stream(std::string("{\n    \"a\":[\n        nul").size());
    write(stream, every_piece(), Layout::pretty);
    EXPECT_EQ(stream.log(), until_failure);
}

TEST(FailingStream, ThrowsWhatItsBufferThrowsIfAsked) {
    for (const auto& [layout, text] : every_piece_in_either_layout) {
        for (std::size_t bytes = 0; bytes < text.size(); ++bytes) {
            ProbeStream stream(bytes, Refusal::by_throwing);
            stream.exceptions(ios_base::badbit);
            EXPECT_THROW(write(stream, every_piece(), layout), test::ProbeFailure);
            EXPECT_EQ(stream.bytes(), text.substr(0, bytes));
            EXPECT_TRUE(stream.bad());
            EXPECT_EQ(stream.flags(), ios_base::dec | ios_base::skipws) << stream.bytes();
            EXPECT_EQ(stream.exceptions(), ios_base::badbit);
        }
    }
}

TEST(FailingStream, ThrowsItsFailureIfAsked) {
    for (const auto& [layout, text] : every_piece_in_either_layout) {
        for (const Refusal refusal : {Refusal::forever, Refusal::once}) {
            for (std::size_t bytes = 0; bytes < text.size(); ++bytes) {
                ProbeStream stream(bytes, refusal);
                stream.exceptions(ios_base::badbit);
                EXPECT_THROW(write(stream, every_piece(), layout), ios_base::failure);
                EXPECT_EQ(stream.bytes(), text.substr(0, bytes));
                EXPECT_EQ(stream.flags(), ios_base::dec | ios_base::skipws) << stream.bytes();
            }
        }
    }
}

TEST(FailingStream, DoesNotThrowWhenAllWasTaken) {
    for (const auto& [layout, text] : every_piece_in_either_layout) {
        ProbeStream stream(text.size(), Refusal::by_throwing);
        stream.exceptions(ios_base::badbit | ios_base::failbit | ios_base::eofbit);
        EXPECT_NO_THROW(write(stream, every_piece(), layout));
        EXPECT_TRUE(stream.good());
    }
}

TEST(FailingStream, ThrowsNothingForUndefined) {
    ProbeStream stream(0, Refusal::by_throwing);
    stream.exceptions(ios_base::badbit);
    EXPECT_NO_THROW(write(stream, Undefined()));
    EXPECT_TRUE(stream.good());
}

/// Whether an insertion that fails leaves the stream's width as it was; the standard leaves it
/// open.
#ifdef _LIBCPP_VERSION
constexpr bool failure_leaves_width = true;
#else
constexpr bool failure_leaves_width = false;
#endif

TEST(FailingStream, HasItsFlagsBackWhereverAnEscapeFails) {
    struct Case {
        std::size_t bytes; // of the eight in "\u001f" with its quotation marks
        char fill;
        int width_if_silent; // where the failure does not end the write
    };
    const Case cases[] = {
        {0, '*', 4}, // the quotation mark fails, and the digits are never inserted
        {1, '*', 4}, // so it is for the backslash
        {2, '*', 4}, // and the u
        {3, '0', 0}, // the digits fail
        {4, '0', 0}, //
        {5, '0', 0}, //
        {6, '0', 0}, //
        {7, '0', 0}, // the closing quotation mark fails
    };
    const Flags flags = ios_base::oct | ios_base::internal;
    for (const Case& c : cases) {
        const bool digits_fail = c.bytes >= 3 && c.bytes < 7;
        const bool width_is_left = digits_fail && failure_leaves_width;
        for (const Refusal refusal : {Refusal::forever, Refusal::by_throwing}) {
            ProbeStream throwing(c.bytes, refusal);
            throwing.flags(flags);
            throwing.fill('*');
            throwing.exceptions(ios_base::badbit);
            EXPECT_ANY_THROW(write(throwing, "\x1F"));
            EXPECT_EQ(throwing.bytes(), std::string(R"("\u001f")").substr(0, c.bytes));
            EXPECT_EQ(throwing.flags(), flags) << c.bytes;
            EXPECT_EQ(throwing.fill(), c.fill) << c.bytes;
            EXPECT_EQ(throwing.width(), width_is_left ? 4 : 0) << c.bytes;

            ProbeStream silent(c.bytes, refusal);
            silent.flags(flags);
            silent.fill('*');
            EXPECT_NO_THROW(write(silent, "\x1F"));
            EXPECT_EQ(silent.bytes(), std::string(R"("\u001f")").substr(0, c.bytes));
            EXPECT_EQ(silent.flags(), flags) << c.bytes;
            EXPECT_EQ(silent.fill(), '0') << c.bytes;
            EXPECT_EQ(silent.width(), width_is_left ? 4 : c.width_if_silent) << c.bytes;
        }
    }
}

TEST(FailingStream, TakesNothingMoreOnceAFlushFailed) {
    for (const Refusal refusal : {Refusal::forever, Refusal::by_throwing, Refusal::once}) {
        ProbeStream stream;
        stream.allow_flushes(2, refusal);
        write(stream, Array{1, 2, 3}, Layout::pretty);
        EXPECT_EQ(stream.log(), "[\n~    1,\n~    2,\n");
        EXPECT_TRUE(stream.bad());
    }
}

TEST(FailingStream, ThrowsTheFailureOfAFlushIfAsked) {
    ProbeStream refusing;
    refusing.allow_flushes(1, Refusal::forever);
    refusing.exceptions(ios_base::badbit);
    EXPECT_THROW(write(refusing, Array{1, 2}, Layout::pretty), ios_base::failure);
    EXPECT_EQ(refusing.log(), "[\n~    1,\n");

    ProbeStream throwing;
    throwing.allow_flushes(1, Refusal::by_throwing);
    throwing.exceptions(ios_base::badbit);
    EXPECT_THROW(write(throwing, Array{1, 2}, Layout::pretty), test::ProbeFailure);
    EXPECT_EQ(throwing.log(), "[\n~    1,\n");
}

#ifndef _WIN32

// The buffer and the sizes of the pieces decide when the bytes are written to the device. Only a
// flush makes sure that they are.
TEST(FailingStream, OntoAFullDeviceHasFailedOnceFlushed) {
    for (const int elements : {1, 100, 300, 2000, 20000}) {
        for (const Layout layout : {Layout::compact, Layout::pretty}) {
            std::ofstream file("/dev/full");
            ASSERT_TRUE(file.good());
            write(file, Array(static_cast<std::size_t>(elements), Value("x")), layout);
            file.flush();
            EXPECT_TRUE(file.bad()) << elements;
        }
    }
}

#endif

TEST(FailingStream, TakesExactlyTheBytesOfALongTextBeforeItsFailure) {
    const std::string string(100000, 'x');
    const std::string text = "[\"" + string + "\",\"" + string + "\"]";
    for (const std::size_t bytes : {1u, 4095u, 4096u, 4097u, 65536u, 100002u, 100003u, 200006u}) {
        ProbeStream stream(bytes, Refusal::once);
        write(stream, Array{string, string});
        EXPECT_EQ(stream.bytes(), text.substr(0, bytes));
        EXPECT_TRUE(stream.bad());
    }
}

} // namespace
} // namespace foundation::json
