#include <reader.hpp>
#include <report.hpp>
#include <utf8.hpp>

#include <foundation/json/json.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::json;
using json_format::read;

std::string repeat(const std::string& piece, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

// A text that holds zero bytes.
template <std::size_t Size>
std::string bytes(const char (&literal)[Size]) {
    return std::string(literal, Size - 1);
}

// ---- Where reading fails, and as what ----------------------------------------------------------

struct Failure {
    std::string text;
    ParseResult result;
    std::size_t byte_position;
    std::size_t line;
    std::size_t column;
    std::size_t quoted_byte_position;
    std::string quoted_text;
    std::string what;
};

void check(const std::vector<Failure>& failures) {
    for (const Failure& expected : failures) {
        SCOPED_TRACE(expected.text.substr(0, 80));
        try {
            read(expected.text);
            ADD_FAILURE() << "was accepted";
        } catch (const ParserException& e) {
            EXPECT_EQ(e.get_parse_result(), expected.result);
            EXPECT_EQ(e.get_byte_position(), expected.byte_position);
            EXPECT_EQ(e.get_line_number(), expected.line);
            EXPECT_EQ(e.get_column(), expected.column);
            EXPECT_EQ(e.get_quoted_byte_position(), expected.quoted_byte_position);
            EXPECT_EQ(e.get_quoted_text(), expected.quoted_text);
            EXPECT_EQ(e.what(), expected.what);
        }
    }
}

const char* const no_null = "Failed to match the string 'null'";
const char* const no_boolean =
    "Failed to match either of 'true' or 'false' while parsing value of type boolean";
const char* const no_trailing_quote =
    "Expected trailing '\"' character while parsing value of type string";
const char* const no_digits = "expected four hexadecimal digits";

TEST(JsonFormatReader, EmptyOrBlankInputIsAnError) {
    const char* const what = "The given input sequence is empty";
    check({
        {"", EMPTY_INPUT, 0, 1, 1, 0, "", what},
        {"  \t", EMPTY_INPUT, 3, 1, 4, 3, "  \t", what},
        {"\r\n \n", EMPTY_INPUT, 4, 3, 1, 0, "", what},
    });
}

TEST(JsonFormatReader, AMisspeltNullIsAnError) {
    check({
        {"nul", NULL_MISMATCH, 3, 1, 4, 3, "nul", no_null},
        {"nil", NULL_MISMATCH, 1, 1, 2, 1, "nil", no_null},
        {"nulls", NULL_MISMATCH, 4, 1, 5, 4, "nulls", no_null},
        {"null0", NULL_MISMATCH, 4, 1, 5, 4, "null0", no_null},
        {"NULL", NULL_MISMATCH, 0, 1, 1, 0, "NULL", no_null},
        {"[1, NaN]", NULL_MISMATCH, 4, 1, 5, 4, "[1, NaN]", no_null},
    });
}

TEST(JsonFormatReader, AMisspeltBooleanIsAnError) {
    check({
        {"tru", BOOLEAN_MISMATCH, 3, 1, 4, 3, "tru", no_boolean},
        {"[falsy]", BOOLEAN_MISMATCH, 5, 1, 6, 5, "[falsy]", no_boolean},
        {"truefalse", BOOLEAN_MISMATCH, 4, 1, 5, 4, "truefalse", no_boolean},
        {"True", BOOLEAN_MISMATCH, 0, 1, 1, 0, "True", no_boolean},
        {"[\n  False\n]", BOOLEAN_MISMATCH, 4, 2, 3, 2, "  False", no_boolean},
    });
}

TEST(JsonFormatReader, AnEscapeCutShortIsAnError) {
    const char* const what = "Incomplete escape sequence while parsing value of type string";
    check({
        {"\"ab\\", INCOMPLETE_ESCAPE_SEQUENCE, 4, 1, 5, 4, "\"ab\\", what},
        {"\"\\u00e", INCOMPLETE_ESCAPE_SEQUENCE, 6, 1, 7, 6, "\"\\u00e", no_digits},
        {"[\"\\u\"]", INCOMPLETE_ESCAPE_SEQUENCE, 4, 1, 5, 4, "[\"\\u\"]", no_digits},
        {"\"\\u123\"", INCOMPLETE_ESCAPE_SEQUENCE, 6, 1, 7, 6, "\"\\u123\"", no_digits},
        {"\"\\ud83d\\u\"", INCOMPLETE_ESCAPE_SEQUENCE, 9, 1, 10, 9, "\"\\ud83d\\u\"", no_digits},
    });
}

TEST(JsonFormatReader, AnUnknownEscapeIsAnError) {
    check({
        {"\"\\x41\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3, 2, "\"\\x41\"", "'x' after '\\'"},
        {"\"\\'\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3, 2, "\"\\'\"", "''' after '\\'"},
        {"\"\\U0041\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3, 2, "\"\\U0041\"", "'U' after '\\'"},
        {"\"\\\n\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3, 2, "\"\\", "byte 0x0A after '\\'"},
        {bytes("\"\\\0\""), INVALID_ESCAPE_SEQUENCE, 2, 1, 3, 2, bytes("\"\\\0\""),
         "byte 0x00 after '\\'"},
    });
}

TEST(JsonFormatReader, ARawControlByteInAStringIsAnError) {
    check({
        {"\"a\tb\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3, 2, "\"a\tb\"", "byte 0x09 must be escaped"},
        {"\"\x1F\"", INVALID_ESCAPE_SEQUENCE, 1, 1, 2, 1, "\"\x1F\"", "byte 0x1F must be escaped"},
        {bytes("[\"\0\"]"), INVALID_ESCAPE_SEQUENCE, 2, 1, 3, 2, bytes("[\"\0\"]"),
         "byte 0x00 must be escaped"},
        {"{\"a\bc\":1}", INVALID_ESCAPE_SEQUENCE, 3, 1, 4, 3, "{\"a\bc\":1}",
         "byte 0x08 must be escaped"},
    });
}

TEST(JsonFormatReader, AUnicodeEscapeWithoutFourDigitsIsAnError) {
    check({
        {"\"\\u00g0\"", INVALID_UNICODE_ESCAPE, 5, 1, 6, 5, "\"\\u00g0\"", no_digits},
        {"\"\\u{41}\"", INVALID_UNICODE_ESCAPE, 3, 1, 4, 3, "\"\\u{41}\"", no_digits},
        {"\"\\u+041\"", INVALID_UNICODE_ESCAPE, 3, 1, 4, 3, "\"\\u+041\"", no_digits},
        {"\"\\uD83D\\uDE0 \"", INVALID_UNICODE_ESCAPE, 12, 1, 13, 12, "\"\\uD83D\\uDE0 \"",
         no_digits},
        {"\"\\u00\xC3\xA9\"", INVALID_UNICODE_ESCAPE, 5, 1, 6, 5, "\"\\u00\xC3\xA9\"", no_digits},
    });
}

TEST(JsonFormatReader, InvalidUtf8InAStringIsAnErrorAtItsFirstByte) {
    const auto in_string = [](const std::string& text, const std::string& byte) {
        const std::string quoted = "\"a" + text + "\"";
        return Failure{quoted, INVALID_UNICODE_ESCAPE,
                       2,      1,
                       3,      2,
                       quoted, "byte 0x" + byte + " begins no valid UTF-8"};
    };
    check({
        in_string("\xFF", "FF"),             // no lead byte at all
        in_string("\x80", "80"),             // a continuation alone
        in_string("\xC3", "C3"),             // cut short
        in_string("\xE2\x82", "E2"),         // cut short
        in_string("\xF0\x9F\x98", "F0"),     // cut short
        in_string("\xC0\x80", "C0"),         // overlong U+0000
        in_string("\xC1\xBF", "C1"),         // overlong U+007F
        in_string("\xE0\x9F\xBF", "E0"),     // overlong U+07FF
        in_string("\xF0\x8F\xBF\xBF", "F0"), // overlong U+FFFF
        in_string("\xED\xA0\x80", "ED"),     // the surrogate U+D800
        in_string("\xF4\x90\x80\x80", "F4"), // U+110000
        in_string("\xF5\x80\x80\x80", "F5"), // beyond it
    });
}

TEST(JsonFormatReader, AQuoteWithinAStringIsAnErrorWhereAWordFollows) {
    const char* const what = "Found '\"' character outside escape sequence before end of string";
    check({
        {R"(["say "hi""])", UNESCAPED_QUOTE, 6, 1, 7, 6, R"(["say "hi""])", what},
        {R"({"a"b":1})", UNESCAPED_QUOTE, 3, 1, 4, 3, R"({"a"b":1})", what},
        {R"(""x)", UNESCAPED_QUOTE, 1, 1, 2, 1, R"(""x)", what},
    });
}

TEST(JsonFormatReader, AMissingLeadingQuoteIsAnError) {
    check({
        {"{a:1}", MISSING_LEADING_QUOTE, 1, 1, 2, 1, "{a:1}", "expected a member name, found 'a'"},
        {"{'a':1}", MISSING_LEADING_QUOTE, 1, 1, 2, 1, "{'a':1}",
         "expected a member name, found '''"},
        {"{1:1}", MISSING_LEADING_QUOTE, 1, 1, 2, 1, "{1:1}", "expected a member name, found '1'"},
        {"{,}", MISSING_LEADING_QUOTE, 1, 1, 2, 1, "{,}", "expected a member name, found ','"},
        {"{]", MISSING_LEADING_QUOTE, 1, 1, 2, 1, "{]", "expected a member name, found ']'"},
        {"hello", MISSING_LEADING_QUOTE, 0, 1, 1, 0, "hello", "expected a value, found 'h'"},
        {"['a']", MISSING_LEADING_QUOTE, 1, 1, 2, 1, "['a']", "expected a value, found '''"},
        {"Infinity", MISSING_LEADING_QUOTE, 0, 1, 1, 0, "Infinity", "expected a value, found 'I'"},
        {"undefined", MISSING_LEADING_QUOTE, 0, 1, 1, 0, "undefined",
         "expected a value, found 'u'"},
    });
}

TEST(JsonFormatReader, AMissingTrailingQuoteIsAnError) {
    const char* const line_end = "the line ends within a string";
    check({
        {"\"", MISSING_TRAILING_QUOTE, 1, 1, 2, 1, "\"", no_trailing_quote},
        {"[\"abc", MISSING_TRAILING_QUOTE, 5, 1, 6, 5, "[\"abc", no_trailing_quote},
        {"\"abc\\\"", MISSING_TRAILING_QUOTE, 6, 1, 7, 6, "\"abc\\\"", no_trailing_quote},
        {"{\"a", MISSING_TRAILING_QUOTE, 3, 1, 4, 3, "{\"a", no_trailing_quote},
        {"[\"a\nb\"]", MISSING_TRAILING_QUOTE, 3, 1, 4, 3, "[\"a", line_end},
        {"[\"a\r\n]", MISSING_TRAILING_QUOTE, 3, 1, 4, 3, "[\"a", line_end},
        {"[\"a\rb\"]", MISSING_TRAILING_QUOTE, 3, 1, 4, 3, "[\"a\rb\"]", line_end},
    });
}

TEST(JsonFormatReader, ASignWithoutDigitsIsAnError) {
    check({
        {"-", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2, 1, "-",
         "expected a digit, found the end of the input"},
        {"[-]", MISSING_QUANTITY_AFTER_SIGN, 2, 1, 3, 2, "[-]", "expected a digit, found ']'"},
        {"--1", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2, 1, "--1", "expected a digit, found '-'"},
        {"-.5", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2, 1, "-.5", "expected a digit, found '.'"},
        {"- 1", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2, 1, "- 1",
         "expected a digit, found byte 0x20"},
        {"-Infinity", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2, 1, "-Infinity",
         "expected a digit, found 'I'"},
    });
}

TEST(JsonFormatReader, WhatBeginsNoValueIsAMissingLeadingDigit) {
    check({
        {"+1", MISSING_LEADING_DIGIT, 0, 1, 1, 0, "+1", "expected a value, found '+'"},
        {".5", MISSING_LEADING_DIGIT, 0, 1, 1, 0, ".5", "expected a value, found '.'"},
        {"[,1]", MISSING_LEADING_DIGIT, 1, 1, 2, 1, "[,1]", "expected a value, found ','"},
        {"[1,,2]", MISSING_LEADING_DIGIT, 3, 1, 4, 3, "[1,,2]", "expected a value, found ','"},
        {"{\"a\":}", MISSING_LEADING_DIGIT, 5, 1, 6, 5, "{\"a\":}", "expected a value, found '}'"},
        {"[}", MISSING_LEADING_DIGIT, 1, 1, 2, 1, "[}", "expected a value, found '}'"},
        {"// no", MISSING_LEADING_DIGIT, 0, 1, 1, 0, "// no", "expected a value, found '/'"},
        {"#", MISSING_LEADING_DIGIT, 0, 1, 1, 0, "#", "expected a value, found '#'"},
    });
}

TEST(JsonFormatReader, ALeadingZeroIsAnError) {
    const char* const what = "a leading zero must stand alone";
    check({
        {"01", MISSING_LEADING_DIGIT, 1, 1, 2, 1, "01", what},
        {"00", MISSING_LEADING_DIGIT, 1, 1, 2, 1, "00", what},
        {"[-012]", MISSING_LEADING_DIGIT, 3, 1, 4, 3, "[-012]", what},
        {"00.5", MISSING_LEADING_DIGIT, 1, 1, 2, 1, "00.5", what},
    });
}

TEST(JsonFormatReader, BinaryBytesOutsideStringsAreAnError) {
    check({
        {bytes("\0"), MISSING_LEADING_DIGIT, 0, 1, 1, 0, bytes("\0"),
         "expected a value, found byte 0x00"},
        {"\x7F"
         "ELF",
         MISSING_LEADING_DIGIT, 0, 1, 1, 0,
         "\x7F"
         "ELF",
         "expected a value, found byte 0x7F"},
        {"[\xFF]", MISSING_LEADING_DIGIT, 1, 1, 2, 1, "[\xFF]",
         "expected a value, found byte 0xFF"},
        {"\v1", MISSING_LEADING_DIGIT, 0, 1, 1, 0, "\v1", "expected a value, found byte 0x0B"},
        {"\xC2\xA0"
         "1",
         MISSING_LEADING_DIGIT, 0, 1, 1, 0,
         "\xC2\xA0"
         "1",
         "expected a value, found byte 0xC2"},
        {bytes("[1\0]"), MISSING_ARRAY_CLOSE, 2, 1, 3, 2, bytes("[1\0]"),
         "expected ',' or ']', found byte 0x00"},
        {bytes("1\0"), MISSING_ARRAY_OPEN, 1, 1, 2, 1, bytes("1\0"),
         "found byte 0x00 after the end of the value"},
    });
}

TEST(JsonFormatReader, AByteOrderMarkIsAnError) {
    check({
        {"\xEF\xBB\xBF{}", MISSING_LEADING_DIGIT, 0, 1, 1, 0, "\xEF\xBB\xBF{}",
         "expected a value, found a byte order mark"},
        {" \xEF\xBB\xBF{}", MISSING_LEADING_DIGIT, 1, 1, 2, 1, " \xEF\xBB\xBF{}",
         "expected a value, found byte 0xEF"},
    });
}

TEST(JsonFormatReader, AFractionWithoutDigitsIsAnError) {
    check({
        {"1.", INVALID_FRACTION, 2, 1, 3, 2, "1.", "expected a digit, found the end of the input"},
        {"[0.]", INVALID_FRACTION, 3, 1, 4, 3, "[0.]", "expected a digit, found ']'"},
        {"1.e5", INVALID_FRACTION, 2, 1, 3, 2, "1.e5", "expected a digit, found 'e'"},
        {"1..5", INVALID_FRACTION, 2, 1, 3, 2, "1..5", "expected a digit, found '.'"},
    });
}

TEST(JsonFormatReader, AnExponentWithoutDigitsIsAnError) {
    check({
        {"1e", INVALID_EXPONENT, 2, 1, 3, 2, "1e", "expected a digit, found the end of the input"},
        {"[1E+]", INVALID_EXPONENT, 4, 1, 5, 4, "[1E+]", "expected a digit, found ']'"},
        {"1.5e-x", INVALID_EXPONENT, 5, 1, 6, 5, "1.5e-x", "expected a digit, found 'x'"},
        {"1e+-1", INVALID_EXPONENT, 3, 1, 4, 3, "1e+-1", "expected a digit, found '-'"},
        {"1e.5", INVALID_EXPONENT, 2, 1, 3, 2, "1e.5", "expected a digit, found '.'"},
    });
}

TEST(JsonFormatReader, ANumberTooLargeForADoubleIsAnErrorAtItsFirstByte) {
    const char* const what = "the number is too large for a double";
    check({
        {"1e309", INVALID_EXPONENT, 0, 1, 1, 0, "1e309", what},
        {"[0,\n-1.8e308]", INVALID_EXPONENT, 4, 2, 1, 0, "-1.8e308]", what},
        {"1" + repeat("0", 309), INVALID_EXPONENT, 0, 1, 1, 0, "1" + repeat("0", 27), what},
        {"1e99999999999999999999", INVALID_EXPONENT, 0, 1, 1, 0, "1e99999999999999999999", what},
    });
}

TEST(JsonFormatReader, AnArrayLeftOpenIsAnError) {
    check({
        {"[1", MISSING_ARRAY_CLOSE, 2, 1, 3, 2, "[1",
         "expected ',' or ']', found the end of the input"},
        {"[1 2]", MISSING_ARRAY_CLOSE, 3, 1, 4, 3, "[1 2]", "expected ',' or ']', found '2'"},
        {"[1}", MISSING_ARRAY_CLOSE, 2, 1, 3, 2, "[1}", "expected ',' or ']', found '}'"},
        {"[\"a\"\n\"b\"]", MISSING_ARRAY_CLOSE, 5, 2, 1, 0, "\"b\"]",
         "expected ',' or ']', found '\"'"},
        {"[0x10]", MISSING_ARRAY_CLOSE, 2, 1, 3, 2, "[0x10]", "expected ',' or ']', found 'x'"},
        {"[1.5.2]", MISSING_ARRAY_CLOSE, 4, 1, 5, 4, "[1.5.2]", "expected ',' or ']', found '.'"},
    });
}

TEST(JsonFormatReader, AnObjectLeftOpenIsAnError) {
    check({
        {"{\"a\":1", MISSING_OBJECT_CLOSE, 6, 1, 7, 6, "{\"a\":1",
         "expected ',' or '}', found the end of the input"},
        {"{\"a\":1 \"b\":2}", MISSING_OBJECT_CLOSE, 7, 1, 8, 7, "{\"a\":1 \"b\":2}",
         "expected ',' or '}', found '\"'"},
        {"{\"a\":1]", MISSING_OBJECT_CLOSE, 6, 1, 7, 6, "{\"a\":1]",
         "expected ',' or '}', found ']'"},
    });
}

TEST(JsonFormatReader, AMissingColonIsAnError) {
    check({
        {"{\"a\"}", MISSING_NAME_SEPARATOR, 4, 1, 5, 4, "{\"a\"}", "found '}'"},
        {"{\"a\" 1}", MISSING_NAME_SEPARATOR, 5, 1, 6, 5, "{\"a\" 1}", "found '1'"},
        {"{\"a\",1}", MISSING_NAME_SEPARATOR, 4, 1, 5, 4, "{\"a\",1}", "found ','"},
        {"{\"a\"", MISSING_NAME_SEPARATOR, 4, 1, 5, 4, "{\"a\"", "found the end of the input"},
    });
}

TEST(JsonFormatReader, InputThatEndsBeforeAValueOrNameIsAnError) {
    check({
        {"[", UNEXPECTED_END_OF_INPUT, 1, 1, 2, 1, "[", "expected a value"},
        {"[1,", UNEXPECTED_END_OF_INPUT, 3, 1, 4, 3, "[1,", "expected a value"},
        {"[1,\r\n", UNEXPECTED_END_OF_INPUT, 5, 2, 1, 0, "", "expected a value"},
        {"[1,\r", UNEXPECTED_END_OF_INPUT, 4, 1, 5, 4, "[1,\r", "expected a value"},
        {"{\"a\":", UNEXPECTED_END_OF_INPUT, 5, 1, 6, 5, "{\"a\":", "expected a value"},
        {"{", UNEXPECTED_END_OF_INPUT, 1, 1, 2, 1, "{", "expected a member name"},
        {"{\"a\":1, ", UNEXPECTED_END_OF_INPUT, 8, 1, 9, 8, "{\"a\":1, ", "expected a member name"},
    });
}

TEST(JsonFormatReader, TrailingCommaIsAnError) {
    check({
        {"[1,]", MISSING_LEADING_DIGIT, 3, 1, 4, 3, "[1,]", "expected a value, found ']'"},
        {"{\"a\":1,}", MISSING_LEADING_QUOTE, 7, 1, 8, 7, "{\"a\":1,}",
         "expected a member name, found '}'"},
        {"1,", MISSING_ARRAY_OPEN, 1, 1, 2, 1, "1,", "found ',' after the end of the value"},
    });
}

TEST(JsonFormatReader, AClosingBracketWithNothingOpenIsAnError) {
    check({
        {"]", MISSING_ARRAY_OPEN, 0, 1, 1, 0, "]",
         "No leading '[' while parsing value of type array"},
        {"}", MISSING_OBJECT_OPEN, 0, 1, 1, 0, "}",
         "No leading '{' while parsing value of type object"},
        {"[1]]", MISSING_ARRAY_OPEN, 3, 1, 4, 3, "[1]]", "found ']' after the end of the value"},
        {"{}\n}", MISSING_OBJECT_OPEN, 3, 2, 1, 0, "}", "found '}' after the end of the value"},
    });
}

TEST(JsonFormatReader, TextAfterTheValueIsAnError) {
    check({
        {"1 2", MISSING_ARRAY_OPEN, 2, 1, 3, 2, "1 2", "found '2' after the end of the value"},
        {"{} x", MISSING_ARRAY_OPEN, 3, 1, 4, 3, "{} x", "found 'x' after the end of the value"},
        {"null\n\nnull", MISSING_ARRAY_OPEN, 6, 3, 1, 0, "null",
         "found 'n' after the end of the value"},
        {"\"a\":1", MISSING_OBJECT_OPEN, 3, 1, 4, 3, "\"a\":1",
         "found ':' after the end of the value"},
    });
}

TEST(JsonFormatReader, OnlyAPieceOfALongLineIsQuoted) {
    const std::string line = "\n[" + repeat("1,", 100) + "?" + repeat(",2", 100) + "]\n";
    check({
        {line, MISSING_LEADING_DIGIT, 202, 2, 202, 50,
         repeat("1,", 25) + "?" + repeat(",2", 13) + ",", "expected a value, found '?'"},
    });
}

TEST(JsonFormatReader, TheQuotedPieceCutsNoCharacterInTwo) {
    const std::string e = "\xC3\xA9";
    const std::string line = "[\"" + repeat(e, 40) + "\",?,\"" + repeat(e, 40) + "\"]";
    check({
        {line, MISSING_LEADING_DIGIT, 84, 1, 85, 50, repeat(e, 24) + "\",?,\"" + repeat(e, 12),
         "expected a value, found '?'"},
        {"[\"a" + repeat(e, 40) + "\",?,\" " + repeat(e, 40) + "\"]", MISSING_LEADING_DIGIT, 85, 1,
         86, 50, repeat(e, 24) + "\",?,\" " + repeat(e, 12), "expected a value, found '?'"},
        {"[ " + repeat(e, 40), MISSING_LEADING_DIGIT, 2, 1, 3, 2, "[ " + repeat(e, 14),
         "expected a value, found byte 0xC3"},
        {"[  \"" + repeat(e, 40) + "?", MISSING_TRAILING_QUOTE, 85, 1, 86, 49, repeat(e, 24) + "?",
         no_trailing_quote},
    });
}

TEST(JsonFormatReader, LinesEndAtLineFeedsAndColumnsCountBytes) {
    check({
        {"[\"\xC3\xA9\", ?]", MISSING_LEADING_DIGIT, 7, 1, 8, 7, "[\"\xC3\xA9\", ?]",
         "expected a value, found '?'"},
        {"[\r\n1,\r\n\t?\r\n]", MISSING_LEADING_DIGIT, 8, 3, 2, 1, "\t?",
         "expected a value, found '?'"},
        {"[\r?]", MISSING_LEADING_DIGIT, 2, 1, 3, 2, "[\r?]", "expected a value, found '?'"},
    });
}

// ---- Depth -------------------------------------------------------------------------------------

TEST(JsonFormatReader, AThousandLevelsAreRead) {
    const std::string arrays = repeat("[", 1000) + repeat("]", 1000);
    EXPECT_EQ(serialize(read(arrays)), arrays);
    const std::string objects = repeat("{\"a\":", 999) + "{}" + repeat("}", 999);
    EXPECT_EQ(serialize(read(objects)), objects);
}

TEST(JsonFormatReader, MoreThanAThousandLevelsAreAnError) {
    const char* const what = "nested deeper than 1000 levels";
    const std::string quoted = repeat("[", 78);
    check({
        {repeat("[", 1001) + repeat("]", 1001), MISSING_ARRAY_CLOSE, 1000, 1, 1001, 50,
         repeat("[", 51) + repeat("]", 27), what},
        {repeat("[", 250000), MISSING_ARRAY_CLOSE, 1000, 1, 1001, 50, quoted, what},
        {repeat("[\n", 250000), MISSING_ARRAY_CLOSE, 2000, 1001, 1, 0, "[", what},
        {repeat("{\"\":", 250000), MISSING_OBJECT_CLOSE, 4000, 1, 4001, 50,
         "\":" + repeat("{\"\":", 19), what},
        {repeat("[{\"\":", 250000), MISSING_ARRAY_CLOSE, 2500, 1, 2501, 50,
         repeat("[{\"\":", 15) + "[{\"", what},
    });
}

TEST(JsonFormatReader, DepthCountsNestingAndNotNeighbours) {
    const std::string text = "[" + repeat("[],{},", 1500) + "[]]";
    EXPECT_EQ(serialize(read(text)), text);
}

// ---- What is accepted, and as what -------------------------------------------------------------

TEST(JsonFormatReader, EveryKindOfTextIsRead) {
    struct Case {
        const char* text;
        Value value;
    };
    const std::vector<Case> cases = {
        {"null", Null()},
        {"true", true},
        {"false", false},
        {"0", 0.0},
        {"\"\"", ""},
        {"[]", std::vector<Value>{}},
        {"{}", std::map<std::string, Value>{}},
        {" \t\r\n1\n\r\t ", 1.0},
        {"[ ]", std::vector<Value>{}},
        {"{\n}", std::map<std::string, Value>{}},
        {"[null,true,1,\"a\",[],{}]", std::vector<Value>{Null(), true, 1, "a", std::vector<Value>{},
                                                         std::map<std::string, Value>{}}},
        {" [ 1 , [ 2 ] ] ", std::vector<Value>{1, std::vector<Value>{2}}},
        {"{\"b\":[1],\"a\":{\"\":null}}",
         std::map<std::string, Value>{{"a", std::map<std::string, Value>{{"", Null()}}},
                                      {"b", std::vector<Value>{1}}}},
        {" { \"a\" : 1 , \"b\" : 2 } ", std::map<std::string, Value>{{"a", 1}, {"b", 2}}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(serialize(read(c.text)), serialize(c.value)) << c.text;
        EXPECT_TRUE(read(c.text) == c.value) << c.text;
    }
}

TEST(JsonFormatReader, NumbersBecomeTheNearestDouble) {
    struct Case {
        const char* text;
        double number;
    };
    const std::vector<Case> cases = {
        {"0", 0.0},
        {"-1", -1.0},
        {"10", 10.0},
        {"0.5", 0.5},
        {"-0.0625", -0.0625},
        {"0e0", 0.0},
        {"0E+5", 0.0},
        {"1e5", 100000.0},
        {"1E+5", 100000.0},
        {"1e-05", 0.00001},
        {"12.5e1", 125.0},
        {"0.1", 0.1},
        {"9007199254740993", 9007199254740992.0},
        {"123456789012345678901234567890", 1.2345678901234568e29},
        {"2.2250738585072011e-308", 2.2250738585072011e-308},
        {"5e-324", 5e-324},
        {"1e-400", 0.0},
        {"1.7976931348623157e308", 1.7976931348623157e308},
        {"0.10000000000000000000000000000000000000000000000001", 0.1},
    };
    for (const Case& c : cases) {
        EXPECT_TRUE(read(c.text) == Value(c.number)) << c.text;
    }
}

TEST(JsonFormatReader, MinusZeroKeepsItsSign) {
    EXPECT_EQ(serialize(read("[-0,-0.0,-0e5,0]")), "[-0,-0,-0,0]");
}

TEST(JsonFormatReader, EscapesAreDecoded) {
    struct Case {
        const char* text;
        std::string decoded;
    };
    const std::vector<Case> cases = {
        {R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
        {R"("a\nb\nc")", "a\nb\nc"},
        {R"("\u0041")", "A"},
        {R"("\u0000")", bytes("\0")},
        {R"("a\u0000b")", bytes("a\0b")},
        {R"("\u001f\u007f\u0080")", "\x1F\x7F\xC2\x80"},
        {R"("\u00e9\u00E9")", "\xC3\xA9\xC3\xA9"},
        {R"("\u65e5\u672C")", "\xE6\x97\xA5\xE6\x9C\xAC"},
        {R"("\uFFFF")", "\xEF\xBF\xBF"},
        {R"("\uD83D\uDE00")", "\xF0\x9F\x98\x80"},
        {R"("x\ud83d\ude00y")", "x\xF0\x9F\x98\x80y"},
        {R"("\u0041\ud800\udc00\udbff\udfff\u0042")", "A\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"
                                                      "B"},
        {R"("\u005C\u0022")", "\\\""},
        {R"("\\u0041")", "\\u0041"},
    };
    for (const Case& c : cases) {
        EXPECT_TRUE(read(c.text) == Value(c.decoded)) << c.text << ' ' << serialize(read(c.text));
    }
}

TEST(JsonFormatReader, ALoneSurrogateEscapeBecomesTheReplacementCharacter) {
    struct Case {
        const char* text;
        const char* decoded;
    };
    const std::vector<Case> cases = {
        {R"("\uD800")", "\xEF\xBF\xBD"},
        {R"("\uDFFF")", "\xEF\xBF\xBD"},
        {R"("\uD83D \uDE00")", "\xEF\xBF\xBD \xEF\xBF\xBD"},
        {R"("\uDE00\uD83D")", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {R"("\uD83D\u0041")", "\xEF\xBF\xBD"
                              "A"},
    };
    for (const Case& c : cases) {
        EXPECT_TRUE(read(c.text) == Value(c.decoded)) << c.text << ' ' << serialize(read(c.text));
    }
}

TEST(JsonFormatReader, ALongRunOfEscapesKeepsItsPairs) {
    const std::string text = "\"\\u0041" + repeat("\\ud83d\\ude00", 600000) + "\"";
    EXPECT_TRUE(read(text) == Value("A" + repeat("\xF0\x9F\x98\x80", 600000)));
}

TEST(JsonFormatReader, Utf8InStringsIsKeptByteForByte) {
    const std::vector<std::string> texts = {
        "\x7F",
        "\xC2\x80",
        "\xDF\xBF",
        "\xE0\xA0\x80",
        "\xED\x9F\xBF",
        "\xEE\x80\x80",
        "\xEF\xBB\xBF",
        "\xEF\xBF\xBF",
        "\xF0\x90\x80\x80",
        "\xF4\x8F\xBF\xBF",
        "caf\xC3\xA9 \xE6\x97\xA5 \xF0\x9F\x98\x80",
    };
    for (const std::string& text : texts) {
        EXPECT_TRUE(read("\"" + text + "\"") == Value(text)) << text;
    }
}

TEST(JsonFormatReader, NamesAreReadAsStringsAre) {
    EXPECT_EQ(serialize(read(R"({"a\u00e9\n\"":1,"":2})")), "{\"\":2,\"a\xC3\xA9\\n\\\"\":1}");
}

TEST(JsonFormatReader, OfEqualNamesTheLastWins) {
    EXPECT_EQ(serialize(read(R"({"a":1,"b":2,"a":[3],"\u0061":{"a":4}})")),
              R"({"a":{"a":4},"b":2})");
    EXPECT_EQ(serialize(read(R"({"a":[1,2],"a":[3]})")), R"({"a":[3]})");
}

// ---- Reading back what was written -------------------------------------------------------------

/// Random values of the kinds that JSON text can hold, the same ones in every run.
class Generator {
public:
    Value value(int depth) {
        switch (below(depth > 0 ? 7 : 5)) {
        case 0:
            return Null();
        case 1:
            return below(2) == 0;
        case 2:
            return static_cast<int>(below(2000000)) - 1000000;
        case 3:
            return finite_double();
        case 4:
            return text();
        case 5:
            return array(depth);
        default:
            return object(depth);
        }
    }

    Value array(int depth) {
        Value result(std::vector<Value>{});
        for (std::uint64_t count = below(8); count > 0; --count) {
            result.push(value(depth - 1));
        }
        return result;
    }

    Value object(int depth) {
        Value result(std::map<std::string, Value>{});
        for (std::uint64_t count = below(8); count > 0; --count) {
            result[text()] = value(depth - 1);
        }
        return result;
    }

private:
    std::uint64_t below(std::uint64_t bound) { return random_() % bound; }

    double finite_double() {
        double number = std::numeric_limits<double>::infinity();
        while (!std::isfinite(number)) {
            const std::uint64_t bits = random_();
            std::memcpy(&number, &bits, sizeof number);
        }
        return number;
    }

    std::string text() {
        static const std::vector<std::string> pieces = {bytes("\0"),
                                                        "\x1F",
                                                        "\n",
                                                        "\"",
                                                        "\\",
                                                        "/",
                                                        "a",
                                                        "zz",
                                                        " ",
                                                        "\x7F",
                                                        "\xC3\xA9",
                                                        "\xE6\x97\xA5",
                                                        "\xF0\x9F\x98\x80",
                                                        "\\u0041"};
        std::string result;
        for (std::uint64_t count = below(12); count > 0; --count) {
            result += pieces[static_cast<std::size_t>(below(pieces.size()))];
        }
        return result;
    }

    std::mt19937_64 random_{20240501};
};

void check_read_back(const Value& value) {
    const std::string compact = serialize(value);
    EXPECT_TRUE(read(compact) == value);
    EXPECT_TRUE(read(pretty_print(value)) == value);
    EXPECT_EQ(serialize(read(compact)), compact);
}

TEST(JsonFormatReader, GeneratedDocumentsReadBackEqual) {
    Generator generator;
    for (int i = 0; i < 300; ++i) {
        check_read_back(generator.array(6));
        check_read_back(generator.object(6));
    }
}

std::string content(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(JsonFormatReader, RealDocumentsReadBackEqual) {
    const std::string corpus = FOUNDATION_JSON_CORPUS;
    const std::string folder = corpus.empty() ? JSON_FORMAT_FOLDER : corpus;
    int documents = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".json") {
            SCOPED_TRACE(entry.path().filename());
            check_read_back(read(content(entry.path())));
            ++documents;
        }
    }
    EXPECT_GT(documents, 0);
}

// ---- The report --------------------------------------------------------------------------------

std::string report_of(const std::string& text) {
    try {
        return serialize(read(text));
    } catch (const ParserException& e) {
        return json_format::report("x.json", e);
    }
}

TEST(JsonFormatReport, TheCaretStandsUnderTheFailingByte) {
    EXPECT_EQ(report_of("[1,\n  2 3]"), "x.json:2:5: No trailing ']' while parsing value of type "
                                        "array (possible missing comma?): expected ',' or ']', "
                                        "found '3'\n"
                                        "  2 3]\n"
                                        "    ^\n");
}

TEST(JsonFormatReport, TheDescriptionIsNotRepeated) {
    EXPECT_EQ(report_of("nul"), "x.json:1:4: Failed to match the string 'null'\n"
                                "nul\n"
                                "   ^\n");
}

TEST(JsonFormatReport, CharactersOfSeveralBytesTakeOneColumn) {
    EXPECT_EQ(
        report_of("[\"\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80\",tru]"),
        "x.json:1:17: Failed to match either of 'true' or 'false' while parsing value of type "
        "boolean\n"
        "[\"\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80\",tru]\n"
        "          ^\n");
}

TEST(JsonFormatReport, BytesThatCannotBeShownBecomeDotsAndTabsBlanks) {
    EXPECT_EQ(report_of("\t[\x1B\x7F\xFF\xC2\x9B\xC3]"),
              "x.json:1:3: Expected leading digit while parsing value of type number: expected a "
              "value, found byte 0x1B\n"
              " [.....]\n"
              "  ^\n");
    EXPECT_EQ(report_of("[\"\xC3\xA9\", \"a\xE6\x97\"]"),
              "x.json:1:10: Invalid Unicode escape sequence while parsing value of type string: "
              "byte 0xE6 begins no valid UTF-8\n"
              "[\"\xC3\xA9\", \"a..\"]\n"
              "        ^\n");
}

TEST(JsonFormatReport, TheEndOfTheInputIsBehindTheLastByte) {
    EXPECT_EQ(report_of("[1,"), "x.json:1:4: Unexpected end of input: expected a value\n"
                                "[1,\n"
                                "   ^\n");
    EXPECT_EQ(report_of(""), "x.json:1:1: The given input sequence is empty\n"
                             "\n"
                             "^\n");
}

TEST(JsonFormatReport, TheFileNameStaysOnOneLine) {
    const ParserException error("m", EMPTY_INPUT, 0, 1, 1, 0, "");
    EXPECT_EQ(json_format::report("a\nb", error),
              "a.b:1:1: The given input sequence is empty: m\n\n^\n");
}

TEST(JsonFormatUtf8, TheLengthOfTheFirstSequenceIsTold) {
    struct Case {
        std::string text;
        std::size_t length;
    };
    const std::vector<Case> cases = {
        {"", 0},          {bytes("\0"), 1},     {"ab", 1},
        {"\xC3\xA9x", 2}, {"\xE6\x97\xA5x", 3}, {"\xF0\x9F\x98\x80x", 4},
        {"\x80", 0},      {"\xC3", 0},          {"\xC3x", 0},
        {"\xE6\x97x", 0}, {"\xF0\x9F\x98x", 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(json_format::utf8_length(c.text), c.length) << c.text;
    }
}

} // namespace
