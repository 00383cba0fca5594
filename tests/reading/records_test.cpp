// Records: the values of a stream by line, one behind the other, or as elements of an array.
#include "support/every_way.hpp"
#include "support/piecewise_stream.hpp"

#include <foundation/json/json.hpp>
#include <foundation/json/records.hpp>

#include <gtest/gtest.h>

#ifndef _WIN32
#include <unistd.h>
#endif

#include <array>
#include <cstddef>
#include <fstream>
#include <functional>
#include <ios>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

constexpr std::array<std::size_t, 5> pieces{1, 2, 3, 7, 1000000};

/// All records as `index byte=line:column text -> value`, and errors as their message.
std::string all_records(std::istream& stream, const Framing& framing,
                        const ReadOptions& options = {}) {
    Records<Value> records(stream, framing, options);
    std::string result;
    Value record;
    for (bool more = true; more;) {
        std::string outcome;
        try {
            more = records.next(record);
            outcome = content_text(record);
        } catch (const ParserException& error) {
            outcome = std::to_string(error.get_line_number()) + ':' +
                      std::to_string(error.get_column()) + ": " + error.what();
        } catch (const std::runtime_error& error) {
            outcome = error.what();
        }
        result += std::to_string(records.index()) + ' ' + to_text(records.position()) + ' ' +
                  std::string(records.text()) + " -> " + (more ? outcome : "end") + '\n';
    }
    return result;
}

void expect_records(const std::string& text, const Framing& framing, const std::string& expected,
                    const ReadOptions& options = {}) {
    for (const std::size_t piece : pieces) {
        PiecewiseStream stream(text, piece);
        EXPECT_EQ(all_records(stream, framing, options), expected)
            << text << "\nin pieces of " << piece;
    }
}

ReadOptions with_comments() {
    ReadOptions options;
    options.comments = true;
    return options;
}

ReadOptions at_most(std::size_t max_bytes) {
    ReadOptions options;
    options.max_bytes = max_bytes;
    return options;
}

// ---- Lines -----------------------------------------------------------------------------------

TEST(RecordsOfLines, EachLineIsARecord) {
    expect_records("{\"a\":1}\n [2] \n\"3\"\n", Framing::lines,
                   "0 0=1:1 {\"a\":1} -> {\"a\":1}\n"
                   "1 8=2:1  [2]  -> [2]\n"
                   "2 14=3:1 \"3\" -> \"3\"\n"
                   "3 18=4:1  -> end\n");
    expect_records("1 2\n[1,\n2]\n3", Framing::lines,
                   "0 0=1:1 1 2 -> 1:3: found '2' after the end of the value\n"
                   "1 4=2:1 [1, -> 2:4: the text ends within the array that begins at line 2, "
                   "column 1\n"
                   "2 8=3:1 2] -> 3:2: found ']' after the end of the value\n"
                   "3 11=4:1 3 -> 3\n"
                   "4 12=4:2  -> end\n");
    expect_records("", Framing::lines, "0 0=1:1  -> end\n");
    std::istringstream stream("1");
    Records<Value> records(stream);
    Value value;
    EXPECT_TRUE(records.next(value)) << "lines are the usual framing";
}

TEST(RecordsOfLines, LinesEndInEveryManner) {
    expect_records("1\r\n2\n3", Framing::lines,
                   "0 0=1:1 1 -> 1\n1 3=2:1 2 -> 2\n2 5=3:1 3 -> 3\n3 6=3:2  -> end\n");
    expect_records("1\r\n2\r\n", Framing::lines,
                   "0 0=1:1 1 -> 1\n1 3=2:1 2 -> 2\n2 6=3:1  -> end\n");
    // A carriage return by itself is whitespace.
    expect_records("1\r2\r", Framing::lines,
                   "0 0=1:1 1\r2\r -> 1:3: found '2' after the end of the value\n"
                   "1 4=1:5  -> end\n");
    expect_records("[1,\r\n", Framing::lines,
                   "0 0=1:1 [1, -> 1:4: the text ends within the array that begins at line 1, "
                   "column 1\n1 5=2:1  -> end\n");
}

TEST(RecordsOfLines, LinesWithoutAValueArePassedOver) {
    expect_records("\n\r\n \t\n1\n\n  \n2\n \n", Framing::lines,
                   "0 6=4:1 1 -> 1\n1 12=7:1 2 -> 2\n2 16=9:1  -> end\n");
    expect_records("// a\n1 // b\n/* c */ // \xC3\xA9\n /**/ 2\n//", Framing::lines,
                   "0 5=2:1 1 // b -> 1\n1 26=4:1  /**/ 2 -> 2\n2 36=5:3  -> end\n",
                   with_comments());
    expect_records("// a\n1\n", Framing::lines,
                   "0 0=1:1 // a -> 1:1: found a comment: the option comments allows it\n"
                   "1 5=2:1 1 -> 1\n2 7=3:1  -> end\n");
}

TEST(RecordsOfLines, ACommentEndsWithItsLine) {
    expect_records("/* a\n1\n*/\n// \xFF\n/x\n", Framing::lines,
                   "0 0=1:1 /* a -> 1:5: the text ends within the comment that begins at line 1, "
                   "column 1\n"
                   "1 5=2:1 1 -> 1\n"
                   "2 7=3:1 */ -> 3:1: found '*' where a value should begin\n"
                   "3 10=4:1 // \xFF -> 4:4: the text is not UTF-8: found byte 0xFF\n"
                   "4 15=5:1 /x -> 5:2: found 'x' after '/': a comment begins with // or /*\n"
                   "5 18=6:1  -> end\n",
                   with_comments());
}

TEST(RecordsOfLines, AfterAnErrorTheNextLineIsRead) {
    expect_records("{\"a\":1}\n{\"a\":\n{\"a\":3}\n[\"4\n[5]", Framing::lines,
                   "0 0=1:1 {\"a\":1} -> {\"a\":1}\n"
                   "1 8=2:1 {\"a\": -> 2:6: the text ends within the object that begins at line 2, "
                   "column 1\n"
                   "2 14=3:1 {\"a\":3} -> {\"a\":3}\n"
                   "3 22=4:1 [\"4 -> 4:4: the text ends within a string\n"
                   "4 26=5:1 [5] -> [5]\n"
                   "5 29=5:4  -> end\n");
}

TEST(RecordsOfLines, AnErrorQuotesItsLine) {
    for (const std::size_t piece : pieces) {
        PiecewiseStream stream("1\n [2, x] \r\n3\n", piece);
        Records<Value> records(stream);
        Value value;
        records.next(value);
        try {
            records.next(value);
            ADD_FAILURE();
        } catch (const ParserException& error) {
            EXPECT_EQ(error.get_quoted_text(), " [2, x] ");
            EXPECT_EQ(error.get_quoted_byte_position(), 5U);
            EXPECT_EQ(error.get_byte_position(), 7U);
            EXPECT_EQ(
                describe(error, "log"),
                "log:2:6: found 'x' where a value should begin: strings are written in double "
                "quotes\n [2, x] \n     ^\n");
        }
        EXPECT_EQ(records.text(), " [2, x] ");
        EXPECT_EQ(value, Value(1)) << "unchanged";
    }
}

TEST(RecordsOfLines, AByteOrderMarkIsSkippedAtTheStartAlone) {
    expect_records("\xEF\xBB\xBF"
                   "1\n\xEF\xBB\xBF"
                   "2\n",
                   Framing::lines,
                   "0 3=1:1 1 -> 1\n"
                   "1 5=2:1 \xEF\xBB\xBF"
                   "2 -> 2:1: found U+FEFF where a value should begin\n"
                   "2 10=3:1  -> end\n");
    expect_records(
        "\xEF\xBB\xBF\n[x\n", Framing::lines,
        "0 4=2:1 [x -> 2:2: found 'x' where a value should begin: strings are written in "
        "double quotes\n1 7=3:1  -> end\n");
    expect_records(
        "\xEF\xBB\xBF[x", Framing::lines,
        "0 3=1:1 [x -> 1:2: found 'x' where a value should begin: strings are written in "
        "double quotes\n1 5=1:3  -> end\n");
}

TEST(RecordsOfLines, ALineThatIsTooLongIsAnErrorAndItsRestIsSkipped) {
    const std::string too_long = "longer than 5 bytes: the argument max_bytes is the limit\n";
    expect_records("[1,2]\n[1,23]\n[3]\r\n     1\n      \n12345\r\n123456\r\n7", Framing::lines,
                   "0 0=1:1 [1,2] -> [1,2]\n"
                   "1 6=2:1 [1,23 -> 2:6: " +
                       too_long +
                       "2 13=3:1 [3] -> [3]\n"
                       "3 18=4:1       -> 4:6: " +
                       too_long + "4 25=5:1       -> 5:6: " + too_long +
                       "5 32=6:1 12345 -> 12345\n"
                       "6 39=7:1 12345 -> 7:6: " +
                       too_long +
                       "7 47=8:1 7 -> 7\n"
                       "8 48=8:2  -> end\n",
                   at_most(5));
    expect_records("1\n22", Framing::lines,
                   "0 0=1:1  -> 1:1: longer than 0 bytes: the argument max_bytes is the limit\n"
                   "1 2=2:1  -> 2:1: longer than 0 bytes: the argument max_bytes is the limit\n"
                   "2 4=2:3  -> end\n",
                   at_most(0));
    // Even if it is wrong before, or has no end.
    expect_records("x" + std::string(300000, 'y') + "\n[1]\n\"" + std::string(300000, 'z'),
                   Framing::lines,
                   "0 0=1:1 xyyyy -> 1:6: " + too_long +
                       "1 300002=2:1 [1] -> [1]\n2 300006=3:1 "
                       "\"zzzz -> 3:6: " +
                       too_long + "3 600007=3:300002  -> end\n",
                   at_most(5));
}

TEST(RecordsOfLines, TheErrorOfALongLineQuotesWhatIsAroundTheLimit) {
    for (const std::size_t piece : pieces) {
        PiecewiseStream stream("0\n" + std::string(200, 'a') + std::string(300, 'b') + "\n1",
                               piece);
        Records<Value> records(stream, Framing::lines, at_most(200));
        Value value;
        EXPECT_TRUE(records.next(value));
        try {
            records.next(value);
            ADD_FAILURE();
        } catch (const ParserException& error) {
            EXPECT_EQ(error.get_quoted_text(), std::string(160, 'a') + std::string(160, 'b'));
            EXPECT_EQ(error.get_quoted_byte_position(), 160U);
        }
        EXPECT_TRUE(records.next(value));
        EXPECT_EQ(value, Value(1));
    }
}

// ---- Values that follow each other -----------------------------------------------------------

TEST(RecordsConcatenated, ValuesFollowEachOther) {
    expect_records("{\"a\":1}[2]\"x\" 3 \n[4,\n5]true", Framing::concatenated,
                   "0 0=1:1 {\"a\":1} -> {\"a\":1}\n"
                   "1 7=1:8 [2] -> [2]\n"
                   "2 10=1:11 \"x\" -> \"x\"\n"
                   "3 14=1:15 3 -> 3\n"
                   "4 17=2:1 [4,\n5] -> [4,5]\n"
                   "5 23=3:3 true -> true\n"
                   "6 27=3:7  -> end\n");
    expect_records(" \n", Framing::concatenated, "0 2=2:1  -> end\n");
    expect_records("\xEF\xBB\xBF [1]", Framing::concatenated,
                   "0 4=1:2 [1] -> [1]\n1 7=1:5  -> end\n");
}

TEST(RecordsConcatenated, AfterAnErrorTheNextLineIsRead) {
    expect_records(
        "1 [2,\nx] 3\n4 nul 5\n6x\n7", Framing::concatenated,
        "0 0=1:1 1 -> 1\n"
        "1 2=1:3 [2,\n -> 2:1: found 'x' where a value should begin: strings are written "
        "in double quotes\n"
        "2 11=3:1 4 -> 4\n"
        "3 13=3:3 nul -> 3:6: found 'nul' where null may be meant, or a string in double "
        "quotes\n"
        "4 19=4:1 6 -> 4:2: found 'x' right after a number\n"
        "5 22=5:1 7 -> 7\n"
        "6 23=5:2  -> end\n");
}

TEST(RecordsConcatenated, AnErrorBetweenValuesIsThatOfARecord) {
    expect_records("1 /* \xFF */ 2\n3 /x\n4 // a\n/* b", Framing::concatenated,
                   "0 0=1:1 1 -> 1\n"
                   "1 5=1:6  -> 1:6: the text is not UTF-8: found byte 0xFF\n"
                   "2 12=2:1 3 -> 3\n"
                   "3 14=2:3 / -> 2:4: found 'x' after '/': a comment begins with // or /*\n"
                   "4 17=3:1 4 -> 4\n"
                   "5 28=4:5  -> 4:5: the text ends within the comment that begins at line 4, "
                   "column 1\n"
                   "6 28=4:5  -> end\n",
                   with_comments());
}

TEST(RecordsConcatenated, AValueThatIsTooLongIsAnError) {
    const std::string too_long = ": longer than 5 bytes: the argument max_bytes is the limit\n";
    expect_records(
        "[1,2]      \"abc\" 12345\n[1,23] 4\n5 nullx\n1e999\n", Framing::concatenated,
        "0 0=1:1 [1,2] -> [1,2]\n"
        "1 11=1:12 \"abc\" -> \"abc\"\n"
        "2 17=1:18 12345 -> 12345\n"
        "3 23=2:1 [1,23 -> 2:6" +
            too_long +
            "4 32=3:1 5 -> 5\n"
            "5 34=3:3 null -> 3:7: found 'nullx' where null may be meant, or a string in "
            "double quotes\n"
            "6 40=4:1  -> 4:1: the number 1e999 is too large for a double\n"
            "7 46=5:1  -> end\n",
        at_most(5));
}

// ---- Elements of an array --------------------------------------------------------------------

TEST(RecordsOfElements, EachElementIsARecord) {
    expect_records(" [ {\"a\":1}, 2 ,\n[3], \"x\\n\", null ] ", Framing::elements(),
                   "0 3=1:4 {\"a\":1} -> {\"a\":1}\n"
                   "1 12=1:13 2 -> 2\n"
                   "2 16=2:1 [3] -> [3]\n"
                   "3 21=2:6 \"x\\n\" -> \"x\\n\"\n"
                   "4 28=2:13 null -> null\n"
                   "5 35=2:20  -> end\n");
    expect_records("[]", Framing::elements(), "0 2=1:3  -> end\n");
    expect_records("\xEF\xBB\xBF[1]", Framing::elements(), "0 4=1:2 1 -> 1\n1 6=1:4  -> end\n");
}

TEST(RecordsOfElements, ThePointerLeadsToTheArray) {
    const std::string text =
        R"({"x":[9],"a/b":{"~":[0,[[1],[2,3]],4]},"":{"":["e"]},"n\u0061me":[5],"y":{}})";
    const std::pair<std::string, std::string> cases[] = {
        {"/x", "9 "},
        {"/a~1b/~0", "0 [[1],[2,3]] 4 "},
        {"/a~1b/~0/1", "[1] [2,3] "},
        {"/a~1b/~0/1/1", "2 3 "},
        {"//", "\"e\" "},
        {"/name", "5 "},
    };
    for (const auto& [pointer, expected] : cases) {
        for (const std::size_t piece : pieces) {
            PiecewiseStream stream(text, piece);
            Records<Value> records(stream, Framing::elements(pointer));
            std::string found;
            for (Value record; records.next(record);) {
                found += content_text(record) + ' ';
            }
            EXPECT_EQ(found, expected) << pointer;
            EXPECT_EQ(records.position().byte, text.size());
        }
    }
    expect_records("[[1,2],[3,[4]]]", Framing::elements("/1/1"),
                   "0 11=1:12 4 -> 4\n1 15=1:16  -> end\n");
    // Of members with the same name, the first counts.
    expect_records(R"({"a":[1],"a":[2]})", Framing::elements("/a"),
                   "0 6=1:7 1 -> 1\n1 17=1:18  -> end\n");
}

TEST(RecordsOfElements, APointerThatLeadsToNoArrayIsAnError) {
    const std::string text = R"({"a":{"b":1,"c":"x"},"l":[1,[2],{}]})";
    const std::pair<std::string, std::string> cases[] = {
        {"", "at the root: the value is no array"},
        {"/b", "at /b: there is no value"},
        {"/a", "at /a: the value is no array"},
        {"/a/b", "at /a/b: the value is no array"},
        {"/a/c", "at /a/c: the value is no array"},
        {"/a/c/d", "at /a/c/d: there is no value"},
        {"/a/d", "at /a/d: there is no value"},
        {"/l/0", "at /l/0: the value is no array"},
        {"/l/0/0", "at /l/0/0: there is no value"},
        {"/l/2", "at /l/2: the value is no array"},
        {"/l/3", "at /l/3: there is no value"},
        {"/l/4", "at /l/4: there is no value"},
        {"/l/1/1", "at /l/1/1: there is no value"},
        {"/l/1/0", "at /l/1/0: the value is no array"},
        {"/l/-", "at /l/-: there is no value"},
        {"/l/01", "at /l/01: there is no value"},
        {"/l/x", "at /l/x: there is no value"},
        {"/l/", "at /l/: there is no value"},
        {"/l/18446744073709551616", "at /l/18446744073709551616: there is no value"},
        {"/l/2/0", "at /l/2/0: there is no value"},
    };
    for (const auto& [pointer, message] : cases) {
        for (const std::size_t piece : pieces) {
            PiecewiseStream stream(text, piece);
            Records<Value> records(stream, Framing::elements(pointer));
            Value value = "before";
            try {
                records.next(value);
                ADD_FAILURE() << pointer;
            } catch (const std::runtime_error& error) {
                EXPECT_EQ(error.what(), message);
            }
            EXPECT_EQ(value, Value("before"));
            EXPECT_FALSE(records.next(value)) << "there are no more";
            EXPECT_EQ(records.index(), 0U);
        }
    }
}

TEST(RecordsOfElements, APointerIsCheckedAtOnce) {
    for (const std::string pointer : {"a", "/~", "/a~2"}) {
        EXPECT_THROW(static_cast<void>(Framing::elements(pointer)), std::invalid_argument)
            << pointer;
    }
}

TEST(RecordsOfElements, AnElementFarBackIsFound) {
    std::string text = "[";
    for (int i = 0; i != 20000; ++i) {
        text += "[" + std::to_string(i) + "],";
    }
    text += "[7,8]]";
    std::istringstream stream(text);
    Records<Value> records(stream, Framing::elements("/20000"));
    Value value;
    EXPECT_TRUE(records.next(value));
    EXPECT_EQ(value, Value(7));
    EXPECT_TRUE(records.next(value));
    EXPECT_FALSE(records.next(value));
}

TEST(RecordsOfElements, AnErrorEndsThem) {
    const std::string error = "found 'x' where a value should begin: strings are written in double "
                              "quotes\n";
    expect_records("[1, [2, [3, x]], 4]", Framing::elements(),
                   "0 1=1:2 1 -> 1\n1 4=1:5 [2, [3,  -> 1:13: " + error + "2 12=1:13  -> end\n");
    expect_records("[1, {\"a\":2}, x]", Framing::elements(),
                   "0 1=1:2 1 -> 1\n1 4=1:5 {\"a\":2} -> {\"a\":2}\n2 13=1:14  -> 1:14: " + error +
                       "3 13=1:14  -> end\n");
    expect_records("{\"a\": x, \"b\":[1]}", Framing::elements("/b"),
                   "0 6=1:7  -> 1:7: " + error + "1 6=1:7  -> end\n");
    expect_records("[[1,2], [3 4], 5]", Framing::elements("/1"),
                   "0 9=1:10 3 -> 3\n1 11=1:12  -> 1:12: a comma is missing before '4'\n2 11=1:12  "
                   "-> end\n");
}

TEST(RecordsOfElements, TheRestOfTheDocumentIsChecked) {
    expect_records("{\"a\":[1],\"b\":x}", Framing::elements("/a"),
                   "0 6=1:7 1 -> 1\n1 13=1:14  -> 1:14: found 'x' where a value should begin: "
                   "strings are written in double quotes\n2 13=1:14  -> end\n");
    expect_records(
        "[1] 2", Framing::elements(),
        "0 1=1:2 1 -> 1\n1 4=1:5  -> 1:5: found '2' after the ']' that ends the value\n2 "
        "4=1:5  -> end\n");
    expect_records("[1", Framing::elements(),
                   "0 1=1:2 1 -> 1\n1 2=1:3  -> 1:3: the text ends within the array that begins at "
                   "line 1, column 1\n2 2=1:3  -> end\n");
}

TEST(RecordsOfElements, AnElementThatIsTooLongIsAnError) {
    expect_records("[[1,2], \"abc\", 12345, [1,23], 4]", Framing::elements(),
                   "0 1=1:2 [1,2] -> [1,2]\n"
                   "1 8=1:9 \"abc\" -> \"abc\"\n"
                   "2 15=1:16 12345 -> 12345\n"
                   "3 22=1:23 [1,23 -> 1:28: longer than 5 bytes: the argument max_bytes is the "
                   "limit\n4 27=1:28  -> end\n",
                   at_most(5));
}

// ---- All framings ----------------------------------------------------------------------------

struct Framed {
    Framing framing;
    std::string text;
};

const std::vector<Framed>& all_framings() {
    static const std::vector<Framed> all{
        {Framing::lines,
         "1\n\n{\"name\":[1,\"two\\n\"]} // a\n[x\n\"\xC3\xA9\"\r\n /* b */ \n-1.5e3"},
        {Framing::concatenated,
         "1 {\"name\":\n[1,\"two\\n\"]} // a\n[x\n\"\xC3\xA9\" /* b\n */ true -1.5e3"},
        {Framing::elements("/list/1"),
         "{\"a long name of an allocated string\":{\"b\":[1]}, /* c */ \"li\\u0073t\": [[0],\n"
         "[1,{\"name\":[1,\"two\\n\"]}, // a\n\"\xC3\xA9\" /* b */, true,-1.5e3],2], \"d\": {}}"},
    };
    return all;
}

TEST(Records, GoOnWithTheSameRecordAfterAnExceptionOfTheStream) {
    for (const Framed& framed : all_framings()) {
        PiecewiseStream undisturbed(framed.text, 1000);
        const std::string expected =
            outcomes_of_records(Records<Value>(undisturbed, framed.framing, with_comments()));
        for (const std::size_t piece : {1U, 2U, 3U, 7U}) {
            InterruptedBuffer buffer(framed.text, piece);
            std::istream stream(&buffer);
            Records<Value> records(stream, framed.framing, with_comments());
            std::string found;
            Value value;
            for (bool more = true; more;) {
                const std::string outcome = until_not_interrupted(stream, [&] {
                    return outcome_of([&] {
                        more = records.next(value);
                        return value;
                    });
                });
                if (more) {
                    found += outcome + " | " + std::to_string(records.index()) + ' ' +
                             to_text(records.position()) + ' ' + std::string(records.text()) + '\n';
                }
            }
            EXPECT_EQ(found, expected) << piece;
        }
    }
}

TEST(Records, MaxBytesGivesTheSameWhateverTheSizeOfPieces) {
    for (const Framed& framed : all_framings()) {
        for (std::size_t limit = 0; limit != 45 && !HasFailure(); ++limit) {
            const std::string expected =
                record_outcomes_within(framed.text, framed.framing, with_comments(), limit, 1000);
            for (const std::size_t piece : {1U, 2U, 3U, 5U, 8U}) {
                EXPECT_EQ(record_outcomes_within(framed.text, framed.framing, with_comments(),
                                                 limit, piece),
                          expected)
                    << "at most " << limit << ", in pieces of " << piece;
            }
        }
    }
}

TEST(Records, LeaveTheCallersValueUnchangedWhereThereIsNone) {
    for (const Framed& framed : all_framings()) {
        PiecewiseStream empty(framed.framing.is_elements() ? "{\"list\":[1,[]]}" : "");
        Records<Value> none(empty, framed.framing);
        Value value = "before";
        EXPECT_FALSE(none.next(value));
        EXPECT_EQ(value, Value("before"));
        PiecewiseStream bad(framed.framing.is_elements() ? "{\"list\":[1,[[1,x]]]}" : "[1,x]");
        Records<Value> refused(bad, framed.framing);
        EXPECT_THROW(refused.next(value), ParserException);
        EXPECT_EQ(value, Value("before"));
    }
}

TEST(Records, NothingIsReadOrKnownBeforeTheFirstCall) {
    for (const Framed& framed : all_framings()) {
        PiecewiseStream stream(framed.text, 1, StreamFailure::by_throwing);
        const Records<Value> records(stream, framed.framing);
        EXPECT_EQ(stream.taken(), 0U);
        EXPECT_EQ(records.index(), 0U);
        EXPECT_EQ(records.text(), "");
        EXPECT_EQ(to_text(records.position()), "0=1:1");
    }
}

TEST(Records, AfterTheEndThereIsNothing) {
    for (const Framed& framed : all_framings()) {
        std::istringstream stream(framed.text);
        Records<Value> records(stream, framed.framing, with_comments());
        static_cast<void>(outcomes_of_records(records));
        const std::size_t count = records.index();
        Value value;
        EXPECT_FALSE(records.next(value));
        EXPECT_EQ(records.index(), count) << "the number of records";
        EXPECT_EQ(records.text(), "");
        EXPECT_EQ(records.position().byte, framed.text.size());
        EXPECT_TRUE(stream.eof());
        EXPECT_FALSE(stream.fail());
    }
}

TEST(Records, AFailureAfterAnyByteIsNotTakenForTheEnd) {
    for (const Framed& framed : all_framings()) {
        for (std::size_t size = 0; size <= framed.text.size(); ++size) {
            PiecewiseStream bad(framed.text.substr(0, size), 3, StreamFailure::by_turning_bad);
            Records<Value> records(bad, framed.framing, with_comments());
            EXPECT_THROW(outcomes_of_records(records), std::ios_base::failure) << size;
            Value value;
            EXPECT_THROW(records.next(value), std::ios_base::failure) << size;
        }
    }
}

TEST(Records, AStreamThatIsNotGoodIsNotRead) {
    for (const Framed& framed : all_framings()) {
        std::ifstream missing("/no/such/file");
        Records<Value> records(missing, framed.framing);
        Value value;
        EXPECT_THROW(records.next(value), std::ios_base::failure);
        EXPECT_THROW(records.next(value), std::ios_base::failure);
    }
}

TEST(Records, RecordsLongerThanTheWindowAreWhole) {
    for (const std::size_t size : {60000U, 65375U, 65536U, 1000000U}) {
        const std::string record = "[\"" + std::string(size, 'x') + "\",{\"a\":[1,2]}]";
        const std::pair<Framing, std::string> cases[] = {
            {Framing::lines, "1\n" + record + "\r\n" + record + "\n[]"},
            {Framing::concatenated, "1 " + record + record + "[]"},
            {Framing::elements("/a"), "{\"a\":[1," + record + " , " + record + ",[]]}"},
        };
        for (const auto& [framing, text] : cases) {
            for (const std::size_t piece : {1U, 4096U, 10000000U}) {
                PiecewiseStream stream(text, piece);
                Records<Value> records(stream, framing);
                Value value;
                ASSERT_TRUE(records.next(value));
                for (int i = 0; i != 2; ++i) {
                    ASSERT_TRUE(records.next(value));
                    EXPECT_TRUE(content_text(value) == record) << size;
                    EXPECT_TRUE(records.text() == record) << size;
                    EXPECT_TRUE(text.substr(records.position().byte, record.size()) == record);
                }
                ASSERT_TRUE(records.next(value));
                EXPECT_EQ(content_text(value), "[]");
                EXPECT_FALSE(records.next(value));
            }
        }
    }
}

TEST(Records, TakeNoMoreThanARecordNeeds) {
    struct Case {
        Framing framing;
        std::string text;
        std::string value;
    };
    const Case cases[] = {
        {Framing::lines, "[1]\n", "[1]"},
        {Framing::lines, "\n 2\r\n", "2"},
        {Framing::concatenated, "[1]", "[1]"},
        {Framing::concatenated, "{\"a\":[]}", "{\"a\":[]}"},
        {Framing::concatenated, "\"a\"", "\"a\""},
        {Framing::concatenated, "12 ", "12"},
        {Framing::elements(), "[[1]", "[1]"},
        {Framing::elements("/a/0"), "{\"b\":1,\"a\":[[\"x\"", "\"x\""},
        {Framing::elements(), "[12,", "12"},
    };
    for (const Case& c : cases) {
        // The buffer would throw at the byte after those.
        PiecewiseStream stream(c.text, 1, StreamFailure::by_throwing);
        Records<Value> records(stream, c.framing);
        Value value;
        EXPECT_TRUE(records.next(value)) << c.text;
        EXPECT_EQ(content_text(value), c.value);
        EXPECT_THROW(records.next(value), BufferFailure);
        EXPECT_TRUE(stream.bad());
    }
}

#ifndef _WIN32

TEST(Records, WaitForNoMoreOfAPipeThanARecord) {
#ifdef _LIBCPP_VERSION
    GTEST_SKIP() << "a std::ifstream of libc++ waits until its buffer is full";
#endif
    const std::pair<Framing, std::vector<std::string>> cases[] = {
        {Framing::lines, {"1\n", "[2]\n", "\n{\"a\":3}\r\n"}},
        {Framing::concatenated, {"1 ", "[2]", "\"x\"", "{\"a\":\n3}"}},
        {Framing::elements("/a"), {"{\"a\":[1,", "[2]", ",\"x\"", ",{\"a\":\n3}"}},
    };
    for (const auto& [framing, parts] : cases) {
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        std::ifstream stream("/dev/fd/" + std::to_string(ends[0]));
        Records<Value> records(stream, framing);
        Value value;
        for (const std::string& part : parts) {
            ASSERT_EQ(::write(ends[1], part.data(), part.size()),
                      static_cast<ssize_t>(part.size()));
            ASSERT_TRUE(records.next(value)) << part;
        }
        ::close(ends[1]);
        if (framing.is_elements()) {
            EXPECT_THROW(records.next(value), ParserException);
        } else {
            EXPECT_FALSE(records.next(value));
        }
        ::close(ends[0]);
    }
}

#endif

TEST(Records, MovedRecordsGoOnWhereTheOthersWere) {
    for (const Framed& framed : all_framings()) {
        PiecewiseStream stream(framed.text);
        Records<Value> records(stream, framed.framing, with_comments());
        Value value;
        EXPECT_TRUE(records.next(value));
        Records<Value> moved(std::move(records));
        EXPECT_EQ(moved.text(), "1");
        EXPECT_TRUE(moved.next(value));
        EXPECT_EQ(content_text(value), "{\"name\":[1,\"two\\n\"]}");
        EXPECT_EQ(moved.index(), 1U);
        PiecewiseStream other("4");
        moved = Records<Value>(other, Framing::lines);
        EXPECT_TRUE(moved.next(value));
        EXPECT_EQ(value, Value(4));
    }
}

TEST(Records, TakeEveryOption) {
    ReadOptions options;
    options.trailing_commas = true;
    options.duplicate_names = ParseOptions::DuplicateNames::error;
    options.integers = ParseOptions::Integers::as_double;
    options.max_depth = 2;
    for (const Framing& framing : {Framing(Framing::lines), Framing(Framing::concatenated)}) {
        expect_records("[9007199254740993,]\n{\"a\":1,\"a\":2}\n[[[]]]\n", framing,
                       std::string("0 0=1:1 [9007199254740993,] -> [9.007199254740992E+15]\n") +
                           (framing.kind() == Framing::lines ? "1 20=2:1 {\"a\":1,\"a\":2} -> 2:8: "
                                                             : "1 20=2:1 {\"a\":1, -> 2:8: ") +
                           "the name \"a\" occurs twice in an object: the option duplicate_names "
                           "allows it\n" +
                           (framing.kind() == Framing::lines ? "2 34=3:1 [[[]]] -> 3:3: "
                                                             : "2 34=3:1 [[ -> 3:3: ") +
                           "nested deeper than 2 levels: the option max_depth is the limit\n3 "
                           "41=4:1  -> end\n",
                       options);
    }
    expect_records("[[1,],{\"a\":[]}]", Framing::elements(),
                   "0 1=1:2 [1,] -> [1]\n1 6=1:7 {\"a\": -> 1:12: nested deeper than 2 levels: the "
                   "option max_depth is the limit\n2 11=1:12  -> end\n",
                   options);
}

/// The text of a random value with few names, so that many records share them.
std::string random_text(std::mt19937& random, int depth) {
    const auto below = [&random](unsigned limit) {
        return static_cast<unsigned>(random() % limit);
    };
    const auto any_string = [&] {
        return '"' + std::string(below(4) == 0 ? below(700) : below(20), 'x') +
               (below(3) == 0 ? "\\u00e9\"" : "\"");
    };
    const unsigned choice = below(depth == 0 ? 4 : 9);
    if (choice < 2) {
        return any_string();
    }
    if (choice < 4) {
        const char* const scalars[] = {"null", "true", "1.5", "18446744073709551615"};
        return scalars[below(4)];
    }
    const bool is_array = choice == 4;
    std::string result = is_array ? "[" : "{";
    for (unsigned left = below(below(8) == 0 ? 40 : 5); left > 0; --left) {
        const char* const names[] = {"a", "b", "c", "d", "\\u0061", "a name that is rather long"};
        result += is_array ? "" : '"' + std::string(names[below(6)]) + "\":";
        result += random_text(random, depth - 1) + (left > 1 ? "," : "");
    }
    return result + (is_array ? ']' : '}');
}

TEST(Records, OfRandomShapesAreWhatParseMakesOfThem) {
    std::random_device device;
    const unsigned seed = device();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (const auto duplicates :
         {ParseOptions::DuplicateNames::last_wins, ParseOptions::DuplicateNames::error}) {
        ReadOptions options;
        options.duplicate_names = duplicates;
        std::string lines;
        std::string expected;
        std::size_t count = 0;
        for (int i = 0; i != 3000; ++i) {
            const std::string text = random_text(random, 4);
            lines += text + '\n';
            try {
                expected += content_text(parse(text, options)) + '\n';
                ++count;
            } catch (const ParserException& error) {
                expected += error.what() + std::string("\n");
            }
        }
        EXPECT_GE(count, 100U);
        std::istringstream stream(lines);
        Records<Value> records(stream, Framing::lines, options);
        std::string found;
        Value record;
        for (bool more = true; more;) {
            try {
                more = records.next(record);
                found += more ? content_text(record) + '\n' : "";
            } catch (const ParserException& error) {
                found += error.what() + std::string("\n");
            }
        }
        ASSERT_EQ(found, expected);
    }
}

TEST(Records, LeaveWhatHasBeenTakenFromARecordAlone) {
    std::istringstream stream("{\"a\":\"first, and longer than the room of a string\"}\n"
                              "{\"a\":\"second, and longer than the room of a string\"}\n"
                              "{\"a\":\"third, and longer than the room of a string\"}\n");
    Records<Value> records(stream);
    Value record;
    ASSERT_TRUE(records.next(record));
    const Value copy = record;
    const Value moved = std::move(record);
    ASSERT_TRUE(records.next(record));
    ASSERT_TRUE(records.next(record));
    EXPECT_EQ(content_text(copy), "{\"a\":\"first, and longer than the room of a string\"}");
    EXPECT_EQ(content_text(moved), "{\"a\":\"first, and longer than the room of a string\"}");
    EXPECT_EQ(content_text(record), "{\"a\":\"third, and longer than the room of a string\"}");
}

TEST(Records, PositionsMayBeAskedForAtAnyTime) {
    // Behind an error, and then of the records that follow.
    std::string text;
    for (int i = 0; i != 300; ++i) {
        text += std::string(static_cast<std::size_t>(i * 7 % 400), ' ') + "[\xC3\xA9 1]   \n{}\n";
    }
    for (const std::size_t piece : {1U, 1000U, 1000000U}) {
        EXPECT_EQ(disagreement_in_pieces_of(text, {}, piece), "");
    }
}

} // namespace
} // namespace foundation::json::test
