/// @file
/// How the width, fill and flags of the caller's stream affect the text, how writing the text
/// changes them, and when a stream is flushed.
#include "support/probe_stream.hpp"
#include "support/write_as.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <iomanip>
#include <ios>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

using test::Layout;
using test::ProbeStream;
using test::write;

using Array = std::vector<Value>;
using Object = std::map<std::string, Value>;
using Flags = std::ios_base::fmtflags;
using std::ios_base;

/// The text of a value on a stream with those flags, and of that width with fill character `*`.
std::string written(const Value& value, Flags flags, int width = 0,
                    Layout layout = Layout::compact) {
    std::ostringstream stream;
    stream.flags(flags);
    stream.width(width);
    stream.fill('*');
    write(stream, value, layout);
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_TRUE(stream.good());
    return stream.str();
}

// ---- Width and fill ------------------------------------------------------------------------

TEST(StreamWidth, PadsTheFirstPieceOfEveryKind) {
    struct Case {
        const char* what;
        Value value;
        const char* right;
        const char* left;
        const char* internal;
    };
    const Case cases[] = {
        {"Null", Null(), "****null", "null****", "****null"},
        {"true", true, "****true", "true****", "****true"},
        {"false", false, "***false", "false***", "***false"},
        {"a double", 1.5, "*****1.5", "1.5*****", "*****1.5"},
        {"a negative double", -1.5, "****-1.5", "-1.5****", "****-1.5"},
        {"an int", -42, "*****-42", "-42*****", "*****-42"},
        {"a large int", 2000000, "**2.0E+6", "2.0E+6**", "**2.0E+6"},
        {"NaN", std::nan(""), "***\"NaN\"", "\"NaN\"***", "***\"NaN\""},
        {"infinity", -HUGE_VAL, "**\"-Inf\"", "\"-Inf\"**", "**\"-Inf\""},
        {"a float", -0.5f, "****-0.5", "-0.5****", "****-0.5"},
        {"an int64", 42LL, "******42", "42******", "******42"},
        {"a negative int64", -42LL, "*****-42", "-42*****", "-*****42"},
        {"a uint64", 42ULL, "******42", "42******", "******42"},
        {"a string", "ab", "*******\"ab\"", "\"*******ab\"", "*******\"ab\""},
        {"the empty string", "", "*******\"\"", "\"*******\"", "*******\"\""},
        {"an escape first", "/", "*******\"\\/\"", "\"*******\\/\"", "*******\"\\/\""},
        {"an array", Array{1, 2}, "*******[1,2]", "[*******1,2]", "*******[1,2]"},
        {"an empty array", Array{}, "*******[]", "[*******]", "*******[]"},
        {"an object", Object{{"a", 1}}, "*******{\"a\":1}", "{*******\"a\":1}", "*******{\"a\":1}"},
        {"an empty object", Object{}, "*******{}", "{*******}", "*******{}"},
    };
    for (const Case& c : cases) {
        const Flags flags = ios_base::dec | ios_base::skipws;
        EXPECT_EQ(written(c.value, flags, 8), c.right) << c.what;
        EXPECT_EQ(written(c.value, flags | ios_base::right, 8), c.right) << c.what;
        EXPECT_EQ(written(c.value, flags | ios_base::left, 8), c.left) << c.what;
        EXPECT_EQ(written(c.value, flags | ios_base::internal, 8), c.internal) << c.what;
    }
}

TEST(StreamWidth, PadsTheFirstPieceOfPrettyText) {
    const Flags flags = ios_base::dec;
    EXPECT_EQ(written(Array{1}, flags, 4, Layout::pretty), "***[\n    1\n]");
    EXPECT_EQ(written(Array{1}, flags | ios_base::left, 4, Layout::pretty), "[***\n    1\n]");
    EXPECT_EQ(written(Array{}, flags, 4, Layout::pretty), "***[]");
    EXPECT_EQ(written(Object{{"a", Array{}}}, flags, 4, Layout::pretty),
              "***{\n    \"a\":[    ]\n}");
}

TEST(StreamWidth, IsUsedUpByTheFirstPiece) {
    const Value values[] = {Null(),           true, 1.5,  "ab", Array{}, Array{1},
                            Object{{"a", 1}}, 0.5f, -1LL, 1ULL};
    for (const Value& value : values) {
        std::ostringstream stream;
        stream.width(20);
        write(stream, value);
        EXPECT_EQ(stream.width(), 0) << serialize(value);
        EXPECT_EQ(stream.fill(), ' ') << serialize(value);
    }
}

TEST(StreamWidth, IsUsedUpByAPieceThatFillsIt) {
    for (const int width : {1, 3, 4}) {
        std::ostringstream stream;
        stream.width(width);
        write(stream, Null());
        EXPECT_EQ(stream.str(), "null");
        EXPECT_EQ(stream.width(), 0);
    }
}

TEST(StreamWidth, StaysWhereUndefinedWritesNothing) {
    for (const Layout layout : {Layout::compact, Layout::pretty}) {
        std::ostringstream stream;
        stream.width(3);
        write(stream, Undefined(), layout);
        EXPECT_EQ(stream.str(), "");
        EXPECT_EQ(stream.width(), 3);
    }
}

TEST(StreamFill, StaysZeroAfterTheEscapeOfAControlByte) {
    std::ostringstream stream;
    stream.fill('*');
    write(stream, "\x01");
    EXPECT_EQ(stream.str(), R"("\u0001")");
    EXPECT_EQ(stream.fill(), '0');
    EXPECT_EQ(stream.width(), 0);
    stream << std::setw(3) << 7;
    EXPECT_EQ(stream.str(), R"("\u0001"007)");
}

TEST(StreamFill, BecomesZeroThroughTheControlByteOfAName) {
    std::ostringstream stream;
    write(stream, Array{Object{{"\x1F", 1}}}, Layout::pretty);
    EXPECT_EQ(stream.fill(), '0');
}

TEST(StreamFill, StaysTheCallersWithoutSuchAnEscape) {
    for (const char* const text : {"", "text", "\b\t\n\f\r\"/\\", "\x7F\xFF"}) {
        std::ostringstream stream;
        stream.fill('*');
        write(stream, Array{text, Object{{text, 1}}});
        EXPECT_EQ(stream.fill(), '*') << text;
    }
}

TEST(StreamFill, PadsBeforeAnEscapeAsTheCallerChose) {
    EXPECT_EQ(written("\x01", ios_base::dec, 6), R"(*****"\u0001")");
    EXPECT_EQ(written("\x01", ios_base::dec | ios_base::left, 6), R"("*****\u1000")");
}

// ---- Flags ---------------------------------------------------------------------------------

TEST(StreamFlags, GovernSixtyFourBitIntegers) {
    const Flags hex = ios_base::hex;
    const Flags oct = ios_base::oct;
    const Flags dec = ios_base::dec;
    const Flags showbase = ios_base::showbase;
    const Flags uppercase = ios_base::uppercase;
    const Flags showpos = ios_base::showpos;
    struct Case {
        Flags flags;
        Value value;
        const char* text;
    };
    const Case cases[] = {
        {hex, 255LL, "ff"},
        {hex, -1LL, "ffffffffffffffff"},
        {hex, LLONG_MIN, "8000000000000000"},
        {hex, ULLONG_MAX, "ffffffffffffffff"},
        {hex | uppercase, 48879LL, "BEEF"},
        {hex | showbase, 255LL, "0xff"},
        {hex | showbase, 0LL, "0"},
        {hex | showbase | uppercase, 255ULL, "0XFF"},
        {hex | showpos, 255LL, "ff"},
        {oct, 8LL, "10"},
        {oct, -1LL, "1777777777777777777777"},
        {oct | showbase, 8ULL, "010"},
        {oct | showbase, 0ULL, "0"},
        {dec | showpos, 5LL, "+5"},
        {dec | showpos, 0LL, "+0"},
        {dec | showpos, -5LL, "-5"},
        {dec | showpos, 5ULL, "5"},
        {dec | showbase | uppercase, 255LL, "255"},
        {Flags(), 255LL, "255"},
        {hex | oct, 255LL, "255"},
        {hex | oct | dec, 255ULL, "255"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(written(c.value, c.flags), c.text);
        EXPECT_EQ(written(Array{c.value, c.value}, c.flags),
                  std::string("[") + c.text + "," + c.text + "]");
    }
    EXPECT_EQ(written(255LL, hex | showbase | ios_base::internal, 8), "0x****ff");
    EXPECT_EQ(written(5LL, dec | showpos | ios_base::internal, 4), "+**5");
}

TEST(StreamFlags, LeaveAllOtherKindsAlone) {
    const Value value = Array{Null(),
                              true,
                              0.1,
                              1e6,
                              255,
                              0.1f,
                              1e6f,
                              std::nan(""),
                              "a/\n",
                              Array{},
                              Object{{"k", false}}};
    const char text[] = R"([null,true,0.1,1.0E+6,255,0.1,1.0E+6,"NaN","a\/\n",[],{"k":false}])";
    const Flags all_flags[] = {
        ios_base::hex | ios_base::showbase | ios_base::uppercase,
        ios_base::oct | ios_base::showbase,
        ios_base::dec | ios_base::showpos | ios_base::showpoint,
        ios_base::dec | ios_base::fixed,
        ios_base::dec | ios_base::scientific | ios_base::uppercase,
        ios_base::dec | ios_base::fixed | ios_base::scientific,
        ios_base::dec | ios_base::boolalpha | ios_base::left,
        ios_base::dec | ios_base::internal,
    };
    for (const Flags flags : all_flags) {
        EXPECT_EQ(written(value, flags), text);
    }
}

TEST(StreamFlags, PrecisionLeavesNumbersAlone) {
    for (const int precision : {0, 1, 30}) {
        std::ostringstream stream;
        stream.precision(precision);
        write(stream, Array{0.1, 1.0 / 3, 0.1f, 123LL});
        EXPECT_EQ(stream.str(), "[0.1,0.33333333333333331,0.1,123]");
        EXPECT_EQ(stream.precision(), precision);
    }
}

TEST(StreamFlags, AffectTheDigitsOfEscapes) {
    const Flags dec = ios_base::dec;
    struct Case {
        const char* what;
        Flags flags;
        const char* text; // of the bytes 0x00, 0x01 and 0x1F
    };
    const Case cases[] = {
        {"default", dec, R"("\u0000\u0001\u001f")"},
        {"no base at all", Flags(), R"("\u0000\u0001\u001f")"},
        {"octal", ios_base::oct, R"("\u0000\u0001\u001f")"},
        {"octal and decimal", ios_base::oct | dec, R"("\u0000\u0001\u001f")"},
        {"hexadecimal", ios_base::hex, R"("\u0000\u0001\u001f")"},
        {"right", dec | ios_base::right, R"("\u0000\u0001\u001f")"},
        {"internal", dec | ios_base::internal, R"("\u0000\u0001\u001f")"},
        {"left", dec | ios_base::left, R"("\u0000\u1000\u1f00")"},
        {"uppercase", dec | ios_base::uppercase, R"("\u0000\u0001\u001F")"},
        {"showpos", dec | ios_base::showpos, R"("\u0000\u0001\u001f")"},
        {"showbase", dec | ios_base::showbase, R"("\u0000\u00x1\u0x1f")"},
        {"showbase, left", dec | ios_base::showbase | ios_base::left, R"("\u0000\u0x10\u0x1f")"},
        {"showbase, internal", dec | ios_base::showbase | ios_base::internal,
         R"("\u0000\u0x01\u0x1f")"},
        {"showbase, uppercase", dec | ios_base::showbase | ios_base::uppercase,
         R"("\u0000\u00X1\u0X1F")"},
    };
    const std::string bytes("\0\x01\x1F", 3);
    for (const Case& c : cases) {
        EXPECT_EQ(written(bytes, c.flags), c.text) << c.what;
        EXPECT_EQ(written(Object{{bytes, 1}}, c.flags), std::string("{") + c.text + ":1}")
            << c.what;
    }
}

TEST(StreamFlags, LeaveTheLettersOfShortEscapesAlone) {
    const Flags flags = ios_base::hex | ios_base::uppercase | ios_base::showbase | ios_base::left;
    EXPECT_EQ(written("\b\t\n\f\r\"/\\", flags), R"("\b\t\n\f\r\"\/\\")");
}

TEST(StreamFlags, AreInForceAgainAfterAnEscape) {
    EXPECT_EQ(written(Array{"\x1F", 8LL}, ios_base::oct | ios_base::showbase | ios_base::internal),
              R"(["\u0x1f",010])");
    EXPECT_EQ(written(Array{"\x1F", 255LL}, ios_base::dec), R"(["\u001f",255])");
}

// ---- Flushing ------------------------------------------------------------------------------

// In the logs below, `~` is a flush.

TEST(StreamFlush, FollowsEveryLineEndOfPrettyText) {
    ProbeStream stream;
    write(stream, Object{{"a", Array{1, true, Null()}}, {"b", "x"}}, Layout::pretty);
    EXPECT_EQ(stream.log(), "{\n~"
                            "    \"a\":[\n~"
                            "        1,\n~"
                            "        true,\n~"
                            "        null\n~"
                            "    ],\n~"
                            "    \"b\":\"x\"\n~"
                            "}");
}

TEST(StreamFlush, HappensOncePerItemAndOncePerContainerThatHasAny) {
    struct Case {
        const char* what;
        Value value;
        std::size_t flushes;
    };
    const Case cases[] = {
        {"a scalar", 1, 0},
        {"a string with a line feed", "\n", 0},
        {"Undefined", Undefined(), 0},
        {"an empty array", Array{}, 0},
        {"an empty object", Object{}, 0},
        {"one element", Array{1}, 1 + 1},
        {"one Undefined element", Array{Undefined()}, 1 + 1},
        {"three members", Object{{"a", 1}, {"b", 2}, {"c", Undefined()}}, 3 + 1},
        {"an empty array inside", Array{Value(Array{})}, 1 + 1},
        {"one element inside", Array{Value(Array{1})}, 2 + 2},
        {"several", Array{Array{1, 2}, Object{{"a", Object{}}}, 3}, 6 + 3},
    };
    for (const Case& c : cases) {
        ProbeStream stream;
        write(stream, c.value, Layout::pretty);
        EXPECT_EQ(stream.flushes(), c.flushes) << c.what;
    }
}

TEST(StreamFlush, NeverHappensInCompactText) {
    ProbeStream stream;
    write(stream, Object{{"a", Array{1, true, Null(), Object{}}}, {"b", "x\n"}});
    EXPECT_EQ(stream.log(), R"({"a":[1,true,null,{}],"b":"x\n"})");
}

/// Records how often the tied stream was flushed before the first byte arrived.
class TieWitness : public std::streambuf {
public:
    explicit TieWitness(const ProbeStream& tied) : tied_(tied) {}

    std::size_t flushes_before_first_byte = 0;
    std::string text;

protected:
    int_type overflow(int_type byte) override {
        if (text.empty()) {
            flushes_before_first_byte = tied_.flushes();
        }
        text += traits_type::to_char_type(byte);
        return byte;
    }

private:
    const ProbeStream& tied_;
};

TEST(StreamFlush, OfTheTiedStreamPrecedesTheFirstByte) {
    const Value values[] = {Null(), 1.5, "x", Array{1}, Object{}, 1LL};
    for (const Value& value : values) {
        ProbeStream tied;
        TieWitness buffer(tied);
        std::ostream stream(&buffer);
        stream.tie(&tied);
        write(stream, value);
        EXPECT_EQ(buffer.text, serialize(value));
        EXPECT_GE(buffer.flushes_before_first_byte, 1u) << buffer.text;
        EXPECT_EQ(tied.bytes(), "");
        EXPECT_EQ(stream.tie(), &tied);
    }
}

TEST(StreamFlush, OfTheTiedStreamDoesNotHappenForUndefined) {
    ProbeStream tied;
    ProbeStream stream;
    stream.tie(&tied);
    write(stream, Undefined());
    EXPECT_EQ(tied.log(), "");
}

TEST(StreamFlush, LeavesNothingUnflushedOnAStreamWithUnitBuffering) {
    const Value values[] = {Null(), 1.5, "x", Array{1, "x"}, Object{}, 1LL};
    for (const Layout layout : {Layout::compact, Layout::pretty}) {
        for (const Value& value : values) {
            ProbeStream stream;
            stream << std::unitbuf;
            write(stream, value, layout);
            EXPECT_EQ(stream.bytes(), text_of(value, layout));
            EXPECT_EQ(stream.log().back(), '~') << stream.log();
        }
    }
}

} // namespace
} // namespace foundation::json
