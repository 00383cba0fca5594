// describe(): the lines that show an error to people.
#include <foundation/json/parse.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::test {
namespace {

std::string description(std::string_view text, std::string_view name = {}) {
    try {
        parse(text);
    } catch (const ParserException& error) {
        return describe(error, name);
    }
    return "was accepted";
}

std::string repeat(const std::string& piece, std::size_t count) {
    std::string result;
    for (; count != 0; --count) {
        result += piece;
    }
    return result;
}

TEST(Describe, ShowsNamePositionMessageLineAndACaret) {
    EXPECT_EQ(description("{\n  \"list\": [1,]\n}", "server.json"),
              "server.json:2:14: found ']' after a comma: the option trailing_commas allows it\n"
              "  \"list\": [1,]\n"
              "             ^\n");
    EXPECT_EQ(description("{} {}"), "1:4: found '{' after the '}' that ends the value\n"
                                    "{} {}\n"
                                    "   ^\n");
    EXPECT_EQ(description("[1", "x"),
              "x:1:3: the text ends within the array that begins at line 1, column 1\n[1\n  ^\n");
    EXPECT_EQ(description("", "x"), "x:1:1: the document is empty\n\n^\n");
}

TEST(Describe, ShowsTabsAsSpaces) {
    EXPECT_EQ(description("\t[\t1 2]"), "1:6: a comma is missing before '2'\n [ 1 2]\n     ^\n");
}

TEST(Describe, PutsTheCaretBelowWideAndCombiningCharacters) {
    EXPECT_EQ(description("[\"\xE6\x97\xA5\xE6\x9C\xAC\" 2]"),
              "1:7: a comma is missing before '2'\n"
              "[\"\xE6\x97\xA5\xE6\x9C\xAC\" 2]\n"
              "        ^\n");
    EXPECT_EQ(description("[\"e\xCC\x81\xC3\xA9\" 2]"), "1:8: a comma is missing before '2'\n"
                                                        "[\"e\xCC\x81\xC3\xA9\" 2]\n"
                                                        "      ^\n");
    EXPECT_EQ(description("[\"\xF0\x9F\x98\x80\" 2]"), "1:6: a comma is missing before '2'\n"
                                                       "[\"\xF0\x9F\x98\x80\" 2]\n"
                                                       "      ^\n");
    // A letter of full width, and an emoji of two that a joiner joins.
    EXPECT_EQ(description("[\"\xEF\xBC\xA1\" 2]"), "1:6: a comma is missing before '2'\n"
                                                   "[\"\xEF\xBC\xA1\" 2]\n"
                                                   "      ^\n");
    const std::string joined = "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB";
    EXPECT_EQ(description("[\"" + joined + "\" 2]"), "1:8: a comma is missing before '2'\n"
                                                     "[\"" +
                                                         joined +
                                                         "\" 2]\n"
                                                         "        ^\n");
}

TEST(Describe, ShowsUnprintableCharactersAsDots) {
    EXPECT_EQ(description("[\"\x7F\xE2\x80\xAE\xC2\x85\xE2\x80\xA8\" \x1B[31m]", "a\nb\x1B"),
              "a.b.:1:9: found byte 0x1B where ',' or ']' is expected\n"
              "[\"....\" .[31m]\n"
              "        ^\n");
    EXPECT_EQ(description("[\"\xC3\xA9\xFF\"]"), "1:4: the text is not UTF-8: found byte 0xFF\n"
                                                 "[\"\xC3\xA9.\"]\n"
                                                 "   ^\n");
    EXPECT_EQ(describe(ParserException("a\nb", EMPTY_INPUT, 0, 1, 1, 0, "\r\n")),
              "1:1: a.b\n..\n^\n");
}

TEST(Describe, ShowsPrivateAndUnassignedCharactersAsDots) {
    // Private use in three planes, not assigned, a tag, and no character at all.
    EXPECT_EQ(description("[\"\xEE\x80\x80\xF3\xB0\x80\x80\xF4\x8F\xBF\xBD\xCD\xB8"
                          "\xF3\xA0\x81\x81\xEF\xBF\xBF\" 2]"),
              "1:11: a comma is missing before '2'\n"
              "[\"......\" 2]\n"
              "          ^\n");
}

TEST(Describe, ShowsNoCombiningMarkAfterAnEllipsis) {
    const std::string mark = "\xCC\x81";
    // The letter of the marks is cut away, and so are they.
    EXPECT_EQ(
        description("[\"" + repeat("a", 10) + "e" + repeat(mark, 3) + repeat("b", 36) + "\" x]"),
        "1:55: a comma is missing before 'x'\n"
        "..." +
            repeat("b", 35) + "\" x]\n" + std::string(40, ' ') + "^\n");
    EXPECT_EQ(
        description("[\"" + repeat("a", 10) + "e" + repeat(mark, 3) + repeat("b", 35) + "\" x]"),
        "1:54: a comma is missing before 'x'\n"
        "..." +
            repeat("b", 35) + "\" x]\n" + std::string(40, ' ') + "^\n");
    EXPECT_EQ(
        description("[\"" + repeat("a", 10) + "e" + repeat(mark, 3) + repeat("b", 34) + "\" x]"),
        "1:53: a comma is missing before 'x'\n"
        "...e" +
            repeat(mark, 3) + repeat("b", 34) + "\" x]\n" + std::string(40, ' ') + "^\n");
    // Cut by whoever quoted the line.
    EXPECT_EQ(describe(ParserException("what", EMPTY_INPUT, 99, 1, 100, 5, mark + "abcd")),
              "1:100: what\n...abcd\n      ^\n");
    // A joiner joins nothing to an ellipsis, nor do marks alone.
    EXPECT_EQ(describe(ParserException("what", EMPTY_INPUT, 99, 1, 100, 3,
                                       "\xE2\x80\x8D"
                                       "b")),
              "1:100: what\n...b\n   ^\n");
}

// Marks take no columns, but not any number of them is looked at.
TEST(Describe, LooksAtAThousandBytesBeforeTheError) {
    const std::string marks = repeat("\xCC\x81", 499);
    EXPECT_EQ(
        describe(ParserException("what", EMPTY_INPUT, 1000, 1, 502, 1000, "ef" + marks + "x")),
        "1:502: what\nef" + marks + "x\n  ^\n");
    EXPECT_TRUE(
        describe(ParserException("what", EMPTY_INPUT, 1001, 1, 503, 1001, "eff" + marks + "x")) ==
        "1:503: what\n...ff" + marks + "x\n     ^\n");
}

TEST(Describe, CutsLongLinesAroundTheError) {
    const std::string ones = repeat("1,", 100);
    EXPECT_EQ(description("[" + ones + "x," + ones + "1]"),
              "1:202: found 'x' where a value should begin: strings are written in double quotes\n"
              "..." +
                  repeat(",1", 18) + ",x," + repeat("1,", 17) + "...\n" + std::string(40, ' ') +
                  "^\n");
    // A line that fits stays whole.
    EXPECT_EQ(description("[1" + repeat(",1", 19) + ";" + repeat("1,", 18) + "1]"),
              "1:41: found ';' where ',' or ']' is expected\n"
              "[1" +
                  repeat(",1", 19) + ";" + repeat("1,", 18) + "1]\n" + std::string(40, ' ') +
                  "^\n");
    EXPECT_EQ(description("[10" + repeat(",1", 19) + ";" + repeat("1,", 18) + "11]"),
              "1:42: found ';' where ',' or ']' is expected\n"
              "...1" +
                  repeat(",1", 18) + ";" + repeat("1,", 17) + "1...\n" + std::string(40, ' ') +
                  "^\n");
    const std::string wide = repeat("\xE6\x97\xA5", 200);
    EXPECT_EQ(description("[\"" + wide + "\" \"" + wide + "\"]"),
              "1:205: a comma is missing before '\"'\n"
              "..." +
                  repeat("\xE6\x97\xA5", 17) + "\" \"" + repeat("\xE6\x97\xA5", 17) + "...\n" +
                  std::string(39, ' ') + "^\n");
}

TEST(Describe, MarksALineThatBeginsBeforeTheQuotedText) {
    EXPECT_EQ(describe(ParserException("what", EMPTY_INPUT, 9, 1, 10, 2, "abcd"), "n"),
              "n:1:10: what\n...abcd\n     ^\n");
    EXPECT_EQ(describe(ParserException("what", EMPTY_INPUT, 9, 1, 3, 2, "abcd"), "n"),
              "n:1:3: what\nabcd\n  ^\n");
}

TEST(Describe, ShowsExceptionsThatTheParserWouldNotThrow) {
    EXPECT_EQ(describe(ParserException("", EMPTY_INPUT, 0, 0, 0, 99, "abc")), "0:0: \nabc\n   ^\n");
    EXPECT_EQ(describe(ParserException("w", EMPTY_INPUT, 0, 1, 2, 1, "\xE6\x97\xA5")),
              "1:2: w\n...\n ^\n");
}

} // namespace
} // namespace foundation::json::test
