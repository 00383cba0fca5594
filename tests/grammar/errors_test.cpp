// The parser's errors: their place, code and message, the same in every way to parse.
#include "support/every_way.hpp"

#include <foundation/json/parse.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::test {
namespace {

using testing::AllOf;
using testing::Property;
using testing::StrEq;
using testing::Throws;

struct Failure {
    std::string text;
    ParseResult result;
    std::size_t byte_position;
    std::size_t line;
    std::size_t column;
    std::string what;
};

void expect_failure(const Failure& expected, const ParseOptions& options = {}) {
    SCOPED_TRACE(expected.text.substr(0, 80));
    EXPECT_THAT([&] { parse(expected.text, options); },
                Throws<ParserException>(
                    AllOf(Property(&ParserException::get_parse_result, expected.result),
                          Property(&ParserException::get_byte_position, expected.byte_position),
                          Property(&ParserException::get_line_number, expected.line),
                          Property(&ParserException::get_column, expected.column),
                          Property(&ParserException::what, StrEq(expected.what)))));
    EXPECT_EQ(disagreement(expected.text, options), "");
}

void check(const std::vector<Failure>& failures) {
    for (const Failure& failure : failures) {
        expect_failure(failure);
    }
}

TEST(ParserErrors, ATextWithoutAValueIsEmpty) {
    check({
        {"", EMPTY_INPUT, 0, 1, 1, "the document is empty"},
        {"  \t", EMPTY_INPUT, 3, 1, 4, "the document is empty"},
        {"\r\n \n", EMPTY_INPUT, 4, 3, 1, "the document is empty"},
        {"\xEF\xBB\xBF", EMPTY_INPUT, 3, 1, 1, "the document is empty"},
    });
}

TEST(ParserErrors, ACharacterAfterTheValueIsNamed) {
    check({
        {"1 2", MISSING_ARRAY_OPEN, 2, 1, 3, "found '2' after the end of the value"},
        {"1,2", MISSING_ARRAY_OPEN, 1, 1, 2, "found ',' after the end of the value"},
        {"true false", MISSING_ARRAY_OPEN, 5, 1, 6, "found 'f' after the end of the value"},
        {"\"a\" x", MISSING_ARRAY_OPEN, 4, 1, 5, "found 'x' after the end of the value"},
        {"\"]\" x", MISSING_ARRAY_OPEN, 4, 1, 5, "found 'x' after the end of the value"},
        {"1 // x", MISSING_ARRAY_OPEN, 2, 1, 3, "found a comment: the option comments allows it"},
    });
}

TEST(ParserErrors, ACharacterAfterAContainerNamesTheBracketThatClosedIt) {
    check({
        {"{} {}", MISSING_ARRAY_OPEN, 3, 1, 4, "found '{' after the '}' that ends the value"},
        {"[1]]", MISSING_ARRAY_OPEN, 3, 1, 4, "found ']' after the ']' that ends the value"},
        {"{}}", MISSING_OBJECT_OPEN, 2, 1, 3, "found '}' after the '}' that ends the value"},
        {"{}:", MISSING_OBJECT_OPEN, 2, 1, 3, "found ':' after the '}' that ends the value"},
        {"[]\n[]", MISSING_ARRAY_OPEN, 3, 2, 1, "found '[' after the ']' that ends the value"},
        {"{\n\"a\":{}}\n},\n\"b\":1}", MISSING_OBJECT_OPEN, 10, 3, 1,
         "found '}' after the '}' that ends the value"},
    });
    ParseOptions options;
    options.comments = true;
    expect_failure({"[1] /* [2} */ ,", MISSING_ARRAY_OPEN, 14, 1, 15,
                    "found ',' after the ']' that ends the value"},
                   options);
}

TEST(ParserErrors, AClosingBracketNeedsItsOpeningOne) {
    check({
        {"]", MISSING_ARRAY_OPEN, 0, 1, 1, "found ']' without a '[' before it"},
        {"}", MISSING_OBJECT_OPEN, 0, 1, 1, "found '}' without a '{' before it"},
    });
}

TEST(ParserErrors, ABracketAtTheWrongPositionNamesTheOneThatIsOpen) {
    check({
        {"[1}", MISSING_ARRAY_CLOSE, 2, 1, 3,
         "found '}' where ',' or ']' is expected: the array begins at line 1, column 1"},
        {"{\"a\":1]", MISSING_OBJECT_CLOSE, 6, 1, 7,
         "found ']' where ',' or '}' is expected: the object begins at line 1, column 1"},
        {"[[],\n [1}]", MISSING_ARRAY_CLOSE, 8, 2, 4,
         "found '}' where ',' or ']' is expected: the array begins at line 2, column 2"},
        {"[{\n\"a\":[]]", MISSING_OBJECT_CLOSE, 9, 2, 7,
         "found ']' where ',' or '}' is expected: the object begins at line 1, column 2"},
        {"{\"\xC3\xA9\":{}, {\"b\":1}}", MISSING_LEADING_QUOTE, 10, 1, 10,
         "found '{' where a name should begin: the object begins at line 1, column 1"},
        {"[1, {\"a\":{}, [2]}", MISSING_LEADING_QUOTE, 13, 1, 14,
         "found '[' where a name should begin: the object begins at line 1, column 5"},
        {"{]", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found ']' where a name should begin: the object begins at line 1, column 1"},
        {"{\"a\":\n[1,\n}", MISSING_LEADING_DIGIT, 10, 3, 1,
         "found '}' where a value should begin: the array begins at line 2, column 1"},
        {"[}", MISSING_LEADING_DIGIT, 1, 1, 2,
         "found '}' where a value should begin: the array begins at line 1, column 1"},
        {"{\"a\":}", MISSING_LEADING_DIGIT, 5, 1, 6, "found '}' where a value should begin"},
    });
}

TEST(ParserErrors, AColonWithinAnArrayNamesTheArray) {
    check({
        {"{\"a\": [1,\n \"b\": 2}", MISSING_ARRAY_CLOSE, 14, 2, 5,
         "found ':' where ',' or ']' is expected: the array begins at line 1, column 7"},
        {"{\"a\": 1 : 2}", MISSING_OBJECT_CLOSE, 8, 1, 9, "found ':' where ',' or '}' is expected"},
    });
}

TEST(ParserErrors, AMissingCommaIsNamed) {
    check({
        {"[1 2]", MISSING_ARRAY_CLOSE, 3, 1, 4, "a comma is missing before '2'"},
        {"[1 -2]", MISSING_ARRAY_CLOSE, 3, 1, 4, "a comma is missing before '-'"},
        {"[\"a\" \"b\"]", MISSING_ARRAY_CLOSE, 5, 1, 6, "a comma is missing before '\"'"},
        {"[[] []]", MISSING_ARRAY_CLOSE, 4, 1, 5, "a comma is missing before '['"},
        {"[{} {}]", MISSING_ARRAY_CLOSE, 4, 1, 5, "a comma is missing before '{'"},
        {"[true null]", MISSING_ARRAY_CLOSE, 6, 1, 7, "a comma is missing before 'n'"},
        {"{\"a\":1 \"b\":2}", MISSING_OBJECT_CLOSE, 7, 1, 8, "a comma is missing before '\"'"},
        {"{\"a\":[]\n\"b\":2}", MISSING_OBJECT_CLOSE, 8, 2, 1, "a comma is missing before '\"'"},
        {"[1 'x']", MISSING_ARRAY_CLOSE, 3, 1, 4, "a comma is missing before a single quote"},
    });
}

TEST(ParserErrors, ATrailingCommaNamesItsOption) {
    check({
        {"[1,]", MISSING_ARRAY_CLOSE, 3, 1, 4,
         "found ']' after a comma: the option trailing_commas allows it"},
        {"[1, ]", MISSING_ARRAY_CLOSE, 4, 1, 5,
         "found ']' after a comma: the option trailing_commas allows it"},
        {"[[],]", MISSING_ARRAY_CLOSE, 4, 1, 5,
         "found ']' after a comma: the option trailing_commas allows it"},
        {"{\"a\":1,}", MISSING_OBJECT_CLOSE, 7, 1, 8,
         "found '}' after a comma: the option trailing_commas allows it"},
        {"{\"a\":1,\n}", MISSING_OBJECT_CLOSE, 8, 2, 1,
         "found '}' after a comma: the option trailing_commas allows it"},
    });
}

TEST(ParserErrors, ACommaIsNoValue) {
    check({
        {"[,]", MISSING_LEADING_DIGIT, 1, 1, 2, "found ',' where a value should begin"},
        {"[,1]", MISSING_LEADING_DIGIT, 1, 1, 2, "found ',' where a value should begin"},
        {"[1,,2]", MISSING_LEADING_DIGIT, 3, 1, 4, "found ',' where a value should begin"},
        {"{,}", MISSING_LEADING_QUOTE, 1, 1, 2, "found ',' where a name should begin"},
        {"{\"a\":1,,\"b\":2}", MISSING_LEADING_QUOTE, 7, 1, 8,
         "found ',' where a name should begin"},
        {"{\"a\":,}", MISSING_LEADING_DIGIT, 5, 1, 6, "found ',' where a value should begin"},
        {",", MISSING_LEADING_DIGIT, 0, 1, 1, "found ',' where a value should begin"},
    });
}

TEST(ParserErrors, ANameIsWrittenInDoubleQuotes) {
    check({
        {"{1:2}", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found '1' where a name should begin: names are written in double quotes"},
        {"{a:1}", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found 'a' where a name should begin: names are written in double quotes"},
        {"{'a':1}", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found a single quote where a name should begin: names are written in double quotes"},
        {"{null:1}", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found 'null' where a name should begin: names are written in double quotes"},
        {"{-1:1}", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found '-' where a name should begin: names are written in double quotes"},
        {"{\xE2\x80", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found byte 0xE2 where a name should begin: names are written in double quotes"},
        {"{\"a\":1,b:2}", MISSING_LEADING_QUOTE, 7, 1, 8,
         "found 'b' where a name should begin: names are written in double quotes"},
    });
}

TEST(ParserErrors, AColonFollowsAName) {
    check({
        {"{\"a\" 1}", MISSING_NAME_SEPARATOR, 5, 1, 6,
         "found '1' where ':' is expected after a name"},
        {"{\"a\"}", MISSING_NAME_SEPARATOR, 4, 1, 5,
         "found '}' where ':' is expected after a name"},
        {"{\"a\",1}", MISSING_NAME_SEPARATOR, 4, 1, 5,
         "found ',' where ':' is expected after a name"},
        {"{\"a\"=1}", MISSING_NAME_SEPARATOR, 4, 1, 5,
         "found '=' where ':' is expected after a name"},
        {"{\"a\"b\":1}", UNESCAPED_QUOTE, 4, 1, 5,
         "found 'b' right after a string: a quote within a string is written \\\""},
    });
}

TEST(ParserErrors, ATextThatIsCutOffNamesTheContainerThatIsOpen) {
    check({
        {"[", MISSING_ARRAY_CLOSE, 1, 1, 2,
         "the text ends within the array that begins at line 1, column 1"},
        {"[1", MISSING_ARRAY_CLOSE, 2, 1, 3,
         "the text ends within the array that begins at line 1, column 1"},
        {"[1,", UNEXPECTED_END_OF_INPUT, 3, 1, 4,
         "the text ends within the array that begins at line 1, column 1"},
        {"[[]", MISSING_ARRAY_CLOSE, 3, 1, 4,
         "the text ends within the array that begins at line 1, column 1"},
        {"[[1", MISSING_ARRAY_CLOSE, 3, 1, 4,
         "the text ends within the array that begins at line 1, column 2"},
        {"{", MISSING_OBJECT_CLOSE, 1, 1, 2,
         "the text ends within the object that begins at line 1, column 1"},
        {"{\"a\"", MISSING_NAME_SEPARATOR, 4, 1, 5,
         "the text ends within the object that begins at line 1, column 1"},
        {"{\"a\":", UNEXPECTED_END_OF_INPUT, 5, 1, 6,
         "the text ends within the object that begins at line 1, column 1"},
        {"{\"a\":1", MISSING_OBJECT_CLOSE, 6, 1, 7,
         "the text ends within the object that begins at line 1, column 1"},
        {"{\"a\":1,", UNEXPECTED_END_OF_INPUT, 7, 1, 8,
         "the text ends within the object that begins at line 1, column 1"},
        {"[{\"a\":[", MISSING_ARRAY_CLOSE, 7, 1, 8,
         "the text ends within the array that begins at line 1, column 7"},
        {"{\"a\": 1,\n \"b\": {\"c\": [{}],\n  \"d\": 2}\n", MISSING_OBJECT_CLOSE, 37, 4, 1,
         "the text ends within the object that begins at line 1, column 1"},
        {"\xEF\xBB\xBF[\n\t\"\xC3\xA9\", {\"b\": {}\n", MISSING_OBJECT_CLOSE, 21, 3, 1,
         "the text ends within the object that begins at line 2, column 7"},
    });
}

TEST(ParserErrors, BracketsInStringsAndCommentsOpenAndCloseNothing) {
    check({
        {"{\"a]}\": [\"[{\", \"\\\"[\", \"\\\\\"", MISSING_ARRAY_CLOSE, 26, 1, 27,
         "the text ends within the array that begins at line 1, column 9"},
        {"{\"\\\"[\": {\"]]\": \"a string of more than sixteen bytes [\"]", MISSING_OBJECT_CLOSE,
         54, 1, 55,
         "found ']' where ',' or '}' is expected: the object begins at line 1, column 9"},
    });
    ParseOptions options;
    options.comments = true;
    expect_failure({"/* [ */ {\"a\": // {[\n [1 /* ] */, {} // ]", MISSING_ARRAY_CLOSE, 40, 2, 21,
                    "the text ends within the array that begins at line 2, column 2"},
                   options);
}

TEST(ParserErrors, OfManyOpenContainersTheInnermostIsNamed) {
    std::string text;
    for (int i = 0; i != 100; ++i) {
        text += "[{\"a\":";
    }
    check({{text, UNEXPECTED_END_OF_INPUT, 600, 1, 601,
            "the text ends within the object that begins at line 1, column 596"}});
    text += "[]";
    for (int i = 0; i != 50; ++i) {
        text += "},0]";
    }
    check({{text, MISSING_OBJECT_CLOSE, 802, 1, 803,
            "the text ends within the object that begins at line 1, column 296"},
           {text + "},1", MISSING_ARRAY_CLOSE, 805, 1, 806,
            "the text ends within the array that begins at line 1, column 295"}});
}

TEST(ParserErrors, ATextThatIsCutOffWithinAScalarNamesTheScalar) {
    check({
        {"\"", MISSING_TRAILING_QUOTE, 1, 1, 2, "the text ends within a string"},
        {"\"abc", MISSING_TRAILING_QUOTE, 4, 1, 5, "the text ends within a string"},
        {"\"\\", INCOMPLETE_ESCAPE_SEQUENCE, 2, 1, 3, "the text ends within a string"},
        {"\"\\u", INCOMPLETE_ESCAPE_SEQUENCE, 3, 1, 4, "the text ends within a string"},
        {"\"\\u12", INCOMPLETE_ESCAPE_SEQUENCE, 5, 1, 6, "the text ends within a string"},
        {"\"\xE3\x81", MISSING_TRAILING_QUOTE, 3, 1, 3, "the text ends within a string"},
        {"-", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2, "the text ends within a number"},
        {"1.", INVALID_FRACTION, 2, 1, 3, "the text ends within a number"},
        {"1e", INVALID_EXPONENT, 2, 1, 3, "the text ends within a number"},
        {"1e+", INVALID_EXPONENT, 3, 1, 4, "the text ends within a number"},
        {"t", BOOLEAN_MISMATCH, 1, 1, 2, "the text ends within 't'"},
        {"nul", NULL_MISMATCH, 3, 1, 4, "the text ends within 'nul'"},
        {"[fals", BOOLEAN_MISMATCH, 5, 1, 6, "the text ends within 'fals'"},
    });
}

TEST(ParserErrors, AMisspeltWordIsLocatedAtItsFirstWrongByte) {
    check({
        {"nil", NULL_MISMATCH, 1, 1, 2,
         "found 'nil' where null may be meant, or a string in double quotes"},
        {"fast", BOOLEAN_MISMATCH, 2, 1, 3,
         "found 'fast' where false may be meant, or a string in double quotes"},
        {"nulls", NULL_MISMATCH, 4, 1, 5,
         "found 'nulls' where null may be meant, or a string in double quotes"},
        {"null0", NULL_MISMATCH, 4, 1, 5,
         "found 'null0' where null may be meant, or a string in double quotes"},
        {"[tru]", BOOLEAN_MISMATCH, 4, 1, 5,
         "found 'tru' where true may be meant, or a string in double quotes"},
        {"[falsy]", BOOLEAN_MISMATCH, 5, 1, 6,
         "found 'falsy' where false may be meant, or a string in double quotes"},
        {"truefalse", BOOLEAN_MISMATCH, 4, 1, 5,
         "found 'truefalse' where true may be meant, or a string in double quotes"},
        {"nan", NULL_MISMATCH, 1, 1, 2, "nan is not a JSON number"},
        {"[none]", NULL_MISMATCH, 2, 1, 3,
         "found 'none' where null may be meant, or a string in double quotes"},
        {"f", BOOLEAN_MISMATCH, 1, 1, 2, "the text ends within 'f'"},
        {"true_", BOOLEAN_MISMATCH, 4, 1, 5,
         "found 'true_' where true may be meant, or a string in double quotes"},
    });
}

TEST(ParserErrors, AWordInCapitalsIsNamed) {
    check({
        {"NULL", NULL_MISMATCH, 0, 1, 1, "found 'NULL': null is written in lower case"},
        {"[True]", BOOLEAN_MISMATCH, 1, 1, 2, "found 'True': true is written in lower case"},
        {"FALSE", BOOLEAN_MISMATCH, 0, 1, 1, "found 'FALSE': false is written in lower case"},
    });
}

TEST(ParserErrors, AnUnknownWordIsTakenForAStringWithoutQuotes) {
    check({
        {"abc", MISSING_LEADING_QUOTE, 0, 1, 1,
         "found 'abc' where a value should begin: strings are written in double quotes"},
        {"[undefined]", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found 'undefined' where a value should begin: strings are written in double quotes"},
        {"[x1_Y, 2]", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found 'x1_Y' where a value should begin: strings are written in double quotes"},
        {"_", MISSING_LEADING_QUOTE, 0, 1, 1,
         "found '_' where a value should begin: strings are written in double quotes"},
        {"wordsoftoomanyletterstobequotedinamessage_wordsoftoomany", MISSING_LEADING_QUOTE, 0, 1, 1,
         "found 'wordsoftoomanyletterstobequotedinamessag...' where a value should begin: strings "
         "are written in double quotes"},
    });
}

TEST(ParserErrors, ANumberThatIsNotFiniteNamesItself) {
    check({
        {"NaN", MISSING_LEADING_DIGIT, 0, 1, 1, "NaN is not a JSON number"},
        {"[Infinity]", MISSING_LEADING_DIGIT, 1, 1, 2, "Infinity is not a JSON number"},
        {"-Infinity", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2, "-Infinity is not a JSON number"},
        {"[inf]", MISSING_LEADING_DIGIT, 1, 1, 2, "inf is not a JSON number"},
        {"-NaN", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2, "-NaN is not a JSON number"},
        {"-inf", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2, "-inf is not a JSON number"},
        {"INFINITY", MISSING_LEADING_DIGIT, 0, 1, 1, "INFINITY is not a JSON number"},
    });
}

TEST(ParserErrors, ASingleQuoteIsNamed) {
    check({
        {"'single'", MISSING_LEADING_QUOTE, 0, 1, 1,
         "found a single quote: strings are written in double quotes"},
        {"[1,'x']", MISSING_LEADING_QUOTE, 3, 1, 4,
         "found a single quote: strings are written in double quotes"},
    });
}

TEST(ParserErrors, ACurlyQuoteIsNamed) {
    check({
        {"\xE2\x80\x9C_\xE2\x80\x9D", MISSING_LEADING_DIGIT, 0, 1, 1,
         "found '\xE2\x80\x9C' where a value should begin: strings are written in straight double "
         "quotes"},
        {"[\xE2\x80\x98"
         "a]",
         MISSING_LEADING_DIGIT, 1, 1, 2,
         "found '\xE2\x80\x98' where a value should begin: strings are written in straight double "
         "quotes"},
        {"[\xE2\x80\x9F]", MISSING_LEADING_DIGIT, 1, 1, 2,
         "found '\xE2\x80\x9F' where a value should begin: strings are written in straight double "
         "quotes"},
        {"[\xE2\x80\x97]", MISSING_LEADING_DIGIT, 1, 1, 2,
         "found '\xE2\x80\x97' where a value should begin"},
        {"[\xE2\x80\xA0]", MISSING_LEADING_DIGIT, 1, 1, 2,
         "found '\xE2\x80\xA0' where a value should begin"},
        {"{\xE2\x80\x9C_\xE2\x80\x9D:1}", MISSING_LEADING_QUOTE, 1, 1, 2,
         "found '\xE2\x80\x9C' where a name should begin: names are written in straight double "
         "quotes"},
    });
}

TEST(ParserErrors, AMinusSignNeedsADigit) {
    check({
        {"-a", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2,
         "found 'a' where a digit is expected after '-'"},
        {"--1", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2,
         "found '-' where a digit is expected after '-'"},
        {"[-]", MISSING_QUANTITY_AFTER_SIGN, 2, 1, 3,
         "found ']' where a digit is expected after '-'"},
        {"-.5", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2,
         "found '.' where a digit is expected after '-'"},
        {"- 1", MISSING_QUANTITY_AFTER_SIGN, 1, 1, 2,
         "found a space where a digit is expected after '-'"},
    });
}

TEST(ParserErrors, ALeadingZeroStandsAlone) {
    check({
        {"01", MISSING_LEADING_DIGIT, 1, 1, 2, "found '1' after a leading 0"},
        {"-01", MISSING_LEADING_DIGIT, 2, 1, 3, "found '1' after a leading 0"},
        {"[00]", MISSING_LEADING_DIGIT, 2, 1, 3, "found '0' after a leading 0"},
        {"0123.5", MISSING_LEADING_DIGIT, 1, 1, 2, "found '1' after a leading 0"},
        {"00", MISSING_LEADING_DIGIT, 1, 1, 2, "found '0' after a leading 0"},
    });
}

TEST(ParserErrors, ANumberBeginsWithADigit) {
    check({
        {".5", MISSING_LEADING_DIGIT, 0, 1, 1, "found '.': numbers have a digit before it"},
        {"+1", MISSING_LEADING_DIGIT, 0, 1, 1, "found '+': numbers have no plus sign"},
        {"[+.5]", MISSING_LEADING_DIGIT, 1, 1, 2, "found '+': numbers have no plus sign"},
    });
}

TEST(ParserErrors, AFractionNeedsADigit) {
    check({
        {"1.a", INVALID_FRACTION, 2, 1, 3, "found 'a' where a digit is expected after '.'"},
        {"[1.]", INVALID_FRACTION, 3, 1, 4, "found ']' where a digit is expected after '.'"},
        {"1.e5", INVALID_FRACTION, 2, 1, 3, "found 'e' where a digit is expected after '.'"},
        {"-0.-", INVALID_FRACTION, 3, 1, 4, "found '-' where a digit is expected after '.'"},
    });
}

TEST(ParserErrors, AnExponentNeedsADigit) {
    check({
        {"1ex", INVALID_EXPONENT, 2, 1, 3, "found 'x' where a digit is expected in an exponent"},
        {"[1e]", INVALID_EXPONENT, 3, 1, 4, "found ']' where a digit is expected in an exponent"},
        {"1e+", INVALID_EXPONENT, 3, 1, 4, "the text ends within a number"},
        {"1E-x", INVALID_EXPONENT, 3, 1, 4, "found 'x' where a digit is expected in an exponent"},
        {"1.5e.", INVALID_EXPONENT, 4, 1, 5, "found '.' where a digit is expected in an exponent"},
        {"2e++1", INVALID_EXPONENT, 3, 1, 4, "found '+' where a digit is expected in an exponent"},
    });
}

TEST(ParserErrors, ACharacterRightAfterANumberIsNamed) {
    check({
        {"0x10", MISSING_ARRAY_OPEN, 1, 1, 2, "found 'x' right after a number"},
        {"1a", MISSING_ARRAY_OPEN, 1, 1, 2, "found 'a' right after a number"},
        {"[1.5.2]", MISSING_ARRAY_CLOSE, 4, 1, 5, "found '.' right after a number"},
        {"1-2", MISSING_ARRAY_OPEN, 1, 1, 2, "found '-' right after a number"},
        {"[12e3e4]", MISSING_ARRAY_CLOSE, 5, 1, 6, "found 'e' right after a number"},
        {"1_000", MISSING_ARRAY_OPEN, 1, 1, 2, "found '_' right after a number"},
        {"[1\"a\"]", MISSING_ARRAY_CLOSE, 2, 1, 3, "a comma is missing before '\"'"},
    });
}

TEST(ParserErrors, ANumberThatIsTooLargeIsLocatedAtItsFirstByte) {
    check({
        {"1e400", INVALID_EXPONENT, 0, 1, 1, "the number 1e400 is too large for a double"},
        {"[1, -1e309]", INVALID_EXPONENT, 4, 1, 5, "the number -1e309 is too large for a double"},
        {"1.7976931348623159e308", INVALID_EXPONENT, 0, 1, 1,
         "the number 1.7976931348623159e308 is too large for a double"},
        {"{\"a\":1" + std::string(320, '0') + "}", INVALID_EXPONENT, 5, 1, 6,
         "the number 1000000000000000000000000000000000000000... is too large for a double"},
    });
}

TEST(ParserErrors, ALineEndInAStringIsAnError) {
    check({
        {"\"a\n\"", MISSING_TRAILING_QUOTE, 2, 1, 3,
         "the line ends before the closing quote of a string, where a line end is written \\n"},
        {"\"a\r\n\"", MISSING_TRAILING_QUOTE, 2, 1, 3,
         "the line ends before the closing quote of a string, where a line end is written \\r"},
        {"[\"a\n]", MISSING_TRAILING_QUOTE, 3, 1, 4,
         "the line ends before the closing quote of a string, where a line end is written \\n"},
    });
}

TEST(ParserErrors, AControlByteInAStringIsShownEscaped) {
    check({
        {"\"a\tb\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3,
         "found a tab in a string, where it is written \\t"},
        {"\"\x1F\"", INVALID_ESCAPE_SEQUENCE, 1, 1, 2,
         "found byte 0x1F in a string, where it is written \\u001F"},
        {"{\"a\x08"
         "c\":1}",
         INVALID_ESCAPE_SEQUENCE, 3, 1, 4,
         "found byte 0x08 in a string, where it is written \\u0008"},
        {"\"\x01\"", INVALID_ESCAPE_SEQUENCE, 1, 1, 2,
         "found byte 0x01 in a string, where it is written \\u0001"},
        {std::string("\"\x00\"", 3), INVALID_ESCAPE_SEQUENCE, 1, 1, 2,
         "found byte 0x00 in a string, where it is written \\u0000"},
    });
}

TEST(ParserErrors, AnUnknownEscapeIsNamed) {
    check({
        {"\"\\x41\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3,
         "found 'x' after '\\' in a string: a backslash itself is written \\\\"},
        {"\"\\'\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3,
         "found a single quote after '\\' in a string: a backslash itself is written \\\\"},
        {"\"\\U0041\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3,
         "found 'U' after '\\' in a string: a backslash itself is written \\\\"},
        {"\"\\\n\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3,
         "found a line end after '\\' in a string: a backslash itself is written \\\\"},
        {"\"\\\xC3\xA9\"", INVALID_ESCAPE_SEQUENCE, 2, 1, 3,
         "found '\xC3\xA9' after '\\' in a string: a backslash itself is written \\\\"},
        {"{\"\\a\":1}", INVALID_ESCAPE_SEQUENCE, 3, 1, 4,
         "found 'a' after '\\' in a string: a backslash itself is written \\\\"},
    });
}

TEST(ParserErrors, AUnicodeEscapeNeedsFourDigits) {
    check({
        {"\"\\u\"", INCOMPLETE_ESCAPE_SEQUENCE, 3, 1, 4,
         "found '\"' within the four hexadecimal digits after \\u"},
        {"\"\\u123\"", INCOMPLETE_ESCAPE_SEQUENCE, 6, 1, 7,
         "found '\"' within the four hexadecimal digits after \\u"},
        {"\"\\u00g0\"", INVALID_UNICODE_ESCAPE, 5, 1, 6,
         "found 'g' within the four hexadecimal digits after \\u"},
        {"\"\\u{41}\"", INVALID_UNICODE_ESCAPE, 3, 1, 4,
         "found '{' within the four hexadecimal digits after \\u"},
        {"\"\\u+041\"", INVALID_UNICODE_ESCAPE, 3, 1, 4,
         "found '+' within the four hexadecimal digits after \\u"},
        {"\"\\uD83D\\u\"", INCOMPLETE_ESCAPE_SEQUENCE, 9, 1, 10,
         "found '\"' within the four hexadecimal digits after \\u"},
        {"\"\\u00\xC3\xA9\"", INVALID_UNICODE_ESCAPE, 5, 1, 6,
         "found '\xC3\xA9' within the four hexadecimal digits after \\u"},
    });
}

TEST(ParserErrors, AQuoteThatIsNotEscapedIsExplained) {
    check({
        {"\"say \"hi\"\"", UNESCAPED_QUOTE, 6, 1, 7,
         "found 'h' right after a string: a quote within a string is written \\\""},
        {"[\"a\"b\"]", UNESCAPED_QUOTE, 4, 1, 5,
         "found 'b' right after a string: a quote within a string is written \\\""},
        {"{\"a\":\"x\"y\"}", UNESCAPED_QUOTE, 8, 1, 9,
         "found 'y' right after a string: a quote within a string is written \\\""},
    });
}

TEST(ParserErrors, ATextThatIsNotUtf8IsLocatedAtTheWrongByte) {
    check({
        {"\"\x80\"", INVALID_UNICODE_ESCAPE, 1, 1, 2, "the text is not UTF-8: found byte 0x80"},
        {"\"\xBF\"", INVALID_UNICODE_ESCAPE, 1, 1, 2, "the text is not UTF-8: found byte 0xBF"},
        {"\"\xC0\xAF\"", INVALID_UNICODE_ESCAPE, 1, 1, 2, "the text is not UTF-8: found byte 0xC0"},
        {"\"\xC1\xBF\"", INVALID_UNICODE_ESCAPE, 1, 1, 2, "the text is not UTF-8: found byte 0xC1"},
        {"\"\xC3(\"", INVALID_UNICODE_ESCAPE, 2, 1, 3,
         "the text is not UTF-8: a character is cut off before '('"},
        {"\"\xE0\x80\xAF\"", INVALID_UNICODE_ESCAPE, 2, 1, 3,
         "the text is not UTF-8: found byte 0x80"},
        {"\"\xE0\x9F\xBF\"", INVALID_UNICODE_ESCAPE, 2, 1, 3,
         "the text is not UTF-8: found byte 0x9F"},
        {"\"\xE3\x81\"", INVALID_UNICODE_ESCAPE, 3, 1, 3,
         "the text is not UTF-8: a character is cut off before '\"'"},
        {"\"\xE3\x81(\"", INVALID_UNICODE_ESCAPE, 3, 1, 3,
         "the text is not UTF-8: a character is cut off before '('"},
        {"\"\xED\xA0\x80\"", INVALID_UNICODE_ESCAPE, 2, 1, 3,
         "the text is not UTF-8: found byte 0xA0"},
        {"\"\xED\xBF\xBF\"", INVALID_UNICODE_ESCAPE, 2, 1, 3,
         "the text is not UTF-8: found byte 0xBF"},
        {"\"\xF0\x8F\xBF\xBF\"", INVALID_UNICODE_ESCAPE, 2, 1, 3,
         "the text is not UTF-8: found byte 0x8F"},
        {"\"\xF0\x90\x80\"", INVALID_UNICODE_ESCAPE, 4, 1, 3,
         "the text is not UTF-8: a character is cut off before '\"'"},
        {"\"\xF4\x90\x80\x80\"", INVALID_UNICODE_ESCAPE, 2, 1, 3,
         "the text is not UTF-8: found byte 0x90"},
        {"\"\xF5\x80\x80\x80\"", INVALID_UNICODE_ESCAPE, 1, 1, 2,
         "the text is not UTF-8: found byte 0xF5"},
        {"\"\xFF\"", INVALID_UNICODE_ESCAPE, 1, 1, 2, "the text is not UTF-8: found byte 0xFF"},
        {"{\"\xC3\":1}", INVALID_UNICODE_ESCAPE, 3, 1, 4,
         "the text is not UTF-8: a character is cut off before '\"'"},
        {"[\"\xE9t\xE9\"]", INVALID_UNICODE_ESCAPE, 3, 1, 4,
         "the text is not UTF-8: a character is cut off before 't'"},
    });
}

TEST(ParserErrors, BytesAfterTheTextAreNotRead) {
    // Each beginning of a longer text is a text that ends too early, exactly at its end.
    const std::string_view whole = "[ \"\xE3\x81\x82\xC3\xA9\xF0\x9F\x8C\x8D\\u00e9\", true, "
                                   "\"a string of more than sixteen bytes\", {\"name\": null}]";
    for (std::size_t size = 1; size != whole.size() && !::testing::Test::HasFailure(); ++size) {
        try {
            parse(whole.substr(0, size));
            ADD_FAILURE() << size << " bytes are accepted";
        } catch (const ParserException& error) {
            EXPECT_EQ(error.get_byte_position(), size) << error.what();
            EXPECT_EQ(std::string(error.what()).substr(0, 13), "the text ends") << size;
        }
    }
}

TEST(ParserErrors, BytesThatBeginNoValueAreNamed) {
    check({
        {"\xE9", MISSING_LEADING_DIGIT, 0, 1, 1,
         "found byte 0xE9 where a value should begin: the text is not UTF-8"},
        {"[\xC3]", MISSING_LEADING_DIGIT, 1, 1, 2,
         "found byte 0xC3 where a value should begin: the text is not UTF-8"},
        {"\xC3\xA9", MISSING_LEADING_DIGIT, 0, 1, 1, "found '\xC3\xA9' where a value should begin"},
        {"[\x01]", MISSING_LEADING_DIGIT, 1, 1, 2, "found byte 0x01 where a value should begin"},
        {"[\x7F]", MISSING_LEADING_DIGIT, 1, 1, 2, "found byte 0x7F where a value should begin"},
        {"\x0B"
         "1",
         MISSING_LEADING_DIGIT, 0, 1, 1, "found byte 0x0B where a value should begin"},
        {"\xC2\xA0"
         "1",
         MISSING_LEADING_DIGIT, 0, 1, 1, "found U+00A0 where a value should begin"},
        {"[1\xC2\x85]", MISSING_ARRAY_CLOSE, 2, 1, 3, "found U+0085 where ',' or ']' is expected"},
        {"[1;2]", MISSING_ARRAY_CLOSE, 2, 1, 3, "found ';' where ',' or ']' is expected"},
        {"#", MISSING_LEADING_DIGIT, 0, 1, 1, "found '#' where a value should begin"},
        {"(1)", MISSING_LEADING_DIGIT, 0, 1, 1, "found '(' where a value should begin"},
        {std::string("[1]\x00", 4), MISSING_ARRAY_OPEN, 3, 1, 4,
         "found byte 0x00 after the ']' that ends the value"},
        {"[\xEF\xBB\xBF"
         "1]",
         MISSING_LEADING_DIGIT, 1, 1, 2, "found U+FEFF where a value should begin"},
        {"\\", MISSING_LEADING_DIGIT, 0, 1, 1, "found '\\' where a value should begin"},
        {"/", MISSING_LEADING_DIGIT, 0, 1, 1, "found '/' where a value should begin"},
        {"[1 /2]", MISSING_ARRAY_CLOSE, 3, 1, 4, "found '/' where ',' or ']' is expected"},
    });
}

TEST(ParserErrors, ACommentNamesItsOption) {
    check({
        {"// x", MISSING_LEADING_DIGIT, 0, 1, 1, "found a comment: the option comments allows it"},
        {"/* x */ 1", MISSING_LEADING_DIGIT, 0, 1, 1,
         "found a comment: the option comments allows it"},
        {"[1, // one\n2]", MISSING_LEADING_DIGIT, 4, 1, 5,
         "found a comment: the option comments allows it"},
        {"{ /**/ }", MISSING_LEADING_QUOTE, 2, 1, 3,
         "found a comment: the option comments allows it"},
        {"1 /* x */", MISSING_ARRAY_OPEN, 2, 1, 3,
         "found a comment: the option comments allows it"},
        {"{\"a\" /**/ :1}", MISSING_NAME_SEPARATOR, 5, 1, 6,
         "found a comment: the option comments allows it"},
        {"{\"a\":1 // x\n}", MISSING_OBJECT_CLOSE, 7, 1, 8,
         "found a comment: the option comments allows it"},
    });
}

TEST(ParserErrors, LinesEndWithLineFeedsAndColumnsCountCharacters) {
    check({
        {"[1,\n  2,\n  x]", MISSING_LEADING_QUOTE, 11, 3, 3,
         "found 'x' where a value should begin: strings are written in double quotes"},
        {"[1,\r\n\tx]", MISSING_LEADING_QUOTE, 6, 2, 2,
         "found 'x' where a value should begin: strings are written in double quotes"},
        {"[1,\r x]", MISSING_LEADING_QUOTE, 5, 1, 6,
         "found 'x' where a value should begin: strings are written in double quotes"},
        {"[\"\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80\", x]", MISSING_LEADING_QUOTE, 14, 1, 9,
         "found 'x' where a value should begin: strings are written in double quotes"},
        {"\xEF\xBB\xBFx", MISSING_LEADING_QUOTE, 3, 1, 1,
         "found 'x' where a value should begin: strings are written in double quotes"},
        {"\xEF\xBB\xBF[1,\n x]", MISSING_LEADING_QUOTE, 8, 2, 2,
         "found 'x' where a value should begin: strings are written in double quotes"},
        {"\n\n\n  ?", MISSING_LEADING_DIGIT, 5, 4, 3, "found '?' where a value should begin"},
    });
}

// ---- Options ---------------------------------------------------------------------------------

TEST(ParserErrors, ACommentThatDoesNotEndIsAnError) {
    ParseOptions options;
    options.comments = true;
    expect_failure({"[1 /* x", UNEXPECTED_END_OF_INPUT, 7, 1, 8,
                    "the text ends within the comment that begins at line 1, column 4"},
                   options);
    expect_failure({"/*/", UNEXPECTED_END_OF_INPUT, 3, 1, 4,
                    "the text ends within the comment that begins at line 1, column 1"},
                   options);
    expect_failure({"/**/\n[1] /* x\n//\n", UNEXPECTED_END_OF_INPUT, 17, 4, 1,
                    "the text ends within the comment that begins at line 2, column 5"},
                   options);
    expect_failure({"// x", EMPTY_INPUT, 4, 1, 5, "the document is empty"}, options);
    expect_failure({"[1 / 2]", MISSING_ARRAY_CLOSE, 4, 1, 5,
                    "found a space after '/': a comment begins with // or /*"},
                   options);
    expect_failure({"[1 /", UNEXPECTED_END_OF_INPUT, 4, 1, 5,
                    "the text ends within the comment that begins at line 1, column 4"},
                   options);
    expect_failure({"{/x", MISSING_LEADING_QUOTE, 2, 1, 3,
                    "found 'x' after '/': a comment begins with // or /*"},
                   options);
    expect_failure({"{\"a\"/x", MISSING_NAME_SEPARATOR, 5, 1, 6,
                    "found 'x' after '/': a comment begins with // or /*"},
                   options);
    expect_failure(
        {"1/x", MISSING_ARRAY_OPEN, 2, 1, 3, "found 'x' after '/': a comment begins with // or /*"},
        options);
    expect_failure({"// \xC3(\n1", INVALID_UNICODE_ESCAPE, 4, 1, 5,
                    "the text is not UTF-8: a character is cut off before '('"},
                   options);
    expect_failure(
        {"/* \xFF */1", INVALID_UNICODE_ESCAPE, 3, 1, 4, "the text is not UTF-8: found byte 0xFF"},
        options);
    expect_failure(
        {"1/* 23,\x80", INVALID_UNICODE_ESCAPE, 7, 1, 8, "the text is not UTF-8: found byte 0x80"},
        options);
}

TEST(ParserErrors, ANumberSignBeginsNoComment) {
    ParseOptions options;
    options.comments = true;
    const std::string what = "found '#': a comment begins with // or /*";
    expect_failure({"# x\n1", MISSING_LEADING_DIGIT, 0, 1, 1, what}, options);
    expect_failure({"[1, # x\n2]", MISSING_LEADING_DIGIT, 4, 1, 5, what}, options);
    expect_failure({"[1 # x\n]", MISSING_ARRAY_CLOSE, 3, 1, 4, what}, options);
    expect_failure({"{# x\n}", MISSING_LEADING_QUOTE, 1, 1, 2, what}, options);
    expect_failure({"{\"a\" # x\n:1}", MISSING_NAME_SEPARATOR, 5, 1, 6, what}, options);
    expect_failure({"1 # x", MISSING_ARRAY_OPEN, 2, 1, 3, what}, options);
    check({{"[1 # x\n]", MISSING_ARRAY_CLOSE, 3, 1, 4, "found '#' where ',' or ']' is expected"}});
}

TEST(ParserErrors, ATrailingCommaThatIsAllowedStillNeedsAnElementBeforeIt) {
    ParseOptions options;
    options.trailing_commas = true;
    expect_failure({"[,]", MISSING_LEADING_DIGIT, 1, 1, 2, "found ',' where a value should begin"},
                   options);
    expect_failure(
        {"[1,,]", MISSING_LEADING_DIGIT, 3, 1, 4, "found ',' where a value should begin"}, options);
    expect_failure({"{,}", MISSING_LEADING_QUOTE, 1, 1, 2, "found ',' where a name should begin"},
                   options);
    expect_failure({"1,", MISSING_ARRAY_OPEN, 1, 1, 2, "found ',' after the end of the value"},
                   options);
}

// In every category that shows nothing by itself: spaces, line ends, marks of direction, joiners,
// tags, private use, what is not assigned, and marks, which would combine with the quote.
TEST(ParserErrors, ACharacterThatCannotBeSeenIsNamedByItsNumber) {
    const struct {
        const char* character;
        const char* name;
    } rows[] = {
        {"\xC2\xA0", "U+00A0"},           {"\xC2\xAD", "U+00AD"},
        {"\xC2\x85", "U+0085"},           {"\xCC\x81", "U+0301"},
        {"\xCD\xB8", "U+0378"},           {"\xD8\x9C", "U+061C"},
        {"\xE1\x9A\x80", "U+1680"},       {"\xE1\xA0\x8E", "U+180E"},
        {"\xE2\x80\x83", "U+2003"},       {"\xE2\x80\x8B", "U+200B"},
        {"\xE2\x80\x8D", "U+200D"},       {"\xE2\x80\xA8", "U+2028"},
        {"\xE2\x80\xA9", "U+2029"},       {"\xE2\x80\xAE", "U+202E"},
        {"\xE2\x81\x9F", "U+205F"},       {"\xE2\x81\xA6", "U+2066"},
        {"\xE3\x80\x80", "U+3000"},       {"\xEE\x80\x80", "U+E000"},
        {"\xEF\xB8\x8F", "U+FE0F"},       {"\xEF\xBB\xBF", "U+FEFF"},
        {"\xEF\xBF\xBF", "U+FFFF"},       {"\xF3\xA0\x81\x81", "U+E0041"},
        {"\xF4\x8F\xBF\xBD", "U+10FFFD"},
    };
    for (const auto& row : rows) {
        expect_failure({std::string("[") + row.character, MISSING_LEADING_DIGIT, 1, 1, 2,
                        std::string("found ") + row.name + " where a value should begin"});
    }
    for (const char* const visible :
         {"\xC3\xA9", "\xE2\x82\xAC", "\xE3\x81\x82", "\xF0\x9F\x98\x80", "\xD8\xA7"}) {
        expect_failure({std::string("[") + visible, MISSING_LEADING_DIGIT, 1, 1, 2,
                        std::string("found '") + visible + "' where a value should begin"});
    }
}

TEST(ParserErrors, ANameThatOccursTwiceIsShownWithoutWhatCannotBeSeen) {
    ParseOptions options;
    options.duplicate_names = ParseOptions::DuplicateNames::error;
    const auto twice = [&](const std::string& name, const std::string& shown) {
        const std::string text = "{\"" + name + "\":1,\"" + name + "\":2}";
        SCOPED_TRACE(text);
        try {
            parse(text, options);
            ADD_FAILURE() << "was accepted";
        } catch (const ParserException& error) {
            EXPECT_EQ(std::string(error.what()), "the name \"" + shown +
                                                     "\" occurs twice in an object: the option "
                                                     "duplicate_names allows it");
        }
    };
    twice("a b", "a b");
    twice("e\xCC\x81", "e\xCC\x81");
    twice("\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB",
          "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB");
    twice("a\xE2\x80\xAE"
          "b\xE3\x80\x80\x7F",
          "a\\u202Eb\\u3000\\u007F");
    twice("\xF3\xA0\x81\x81", "\\uDB40\\uDC41");
    // Cut first, after 40 bytes of the text.
    twice(std::string(39, 'a') + "\xE2\x80\xAE", std::string(39, 'a') + "...");
    twice(std::string(37, 'a') + "\xE2\x80\xAE" + "aaa", std::string(37, 'a') + "\\u202E...");
}

TEST(ParserErrors, TheNameOfAFileIsTakenForOne) {
    for (const char* const name :
         {"file.json", "server.JSON", "my file.json", "data.geojson", "2026-11-21.jsonl",
          "nul.json5", "true.json", "-.json", "0.json", "C:\\config\\app.cfg", "../a/b.txt",
          "/etc/app/settings.conf", "https://example.org/data.json", "\xC3\xA9.json"}) {
        SCOPED_TRACE(name);
        try {
            parse(std::string_view(name));
            ADD_FAILURE() << "was accepted";
        } catch (const ParserException& error) {
            EXPECT_EQ(std::string(error.what()),
                      "'" + std::string(name) +
                          "' looks like the name of a file, not like JSON text: parse_file reads "
                          "files");
        }
    }
    // The place and the code stay those of the first byte that is no JSON.
    expect_failure({"nul.json", NULL_MISMATCH, 3, 1, 4,
                    "'nul.json' looks like the name of a file, not like JSON text: parse_file "
                    "reads files"});
    const std::string long_name = std::string(150, 'a') + ".json";
    expect_failure({long_name, MISSING_LEADING_QUOTE, 0, 1, 1,
                    "'" + long_name.substr(0, 40) +
                        "...' looks like the name of a file, not like JSON text: parse_file "
                        "reads files"});
}

TEST(ParserErrors, OtherTextsAreNotTakenForNamesOfFiles) {
    for (const std::string& text :
         {std::string("json"), std::string(".json "), std::string("a.json\n"), std::string("1.e5"),
          std::string("a.b"), std::string("example.org"), std::string("// a.json"),
          std::string("/* a/b.c"), std::string("[a.json"), std::string("x,a.json"),
          std::string("\"a.json"), std::string("a/b"), std::string("a.b/c"), std::string("a/b."),
          std::string("a/b.1"), std::string("a.json?x"), std::string("\x01.json"),
          std::string(160, 'a') + ".json"}) {
        try {
            parse(text);
            ADD_FAILURE() << "was accepted: " << text;
        } catch (const ParserException& error) {
            EXPECT_EQ(std::string(error.what()).find("file"), std::string::npos)
                << text << ": " << error.what();
        }
    }
}

TEST(ParserErrors, ANameThatOccursTwiceIsLocatedAtItsQuote) {
    ParseOptions options;
    options.duplicate_names = ParseOptions::DuplicateNames::error;
    expect_failure({"{\"a\":1, \"\\u0061\":x}", MISSING_OBJECT_CLOSE, 8, 1, 9,
                    "the name \"\\u0061\" occurs twice in an object: the option duplicate_names "
                    "allows it"},
                   options);
    expect_failure(
        {"[{\"a\":[],\n\"b\":0,\"a\"", MISSING_OBJECT_CLOSE, 16, 2, 7,
         "the name \"a\" occurs twice in an object: the option duplicate_names allows it"},
        options);
}

TEST(ParserErrors, TooManyLevelsNameTheOptionThatLimitsThem) {
    ParseOptions options;
    options.max_depth = 2;
    expect_failure({"[[[]]]", MISSING_ARRAY_CLOSE, 2, 1, 3,
                    "nested deeper than 2 levels: the option max_depth is the limit"},
                   options);
    expect_failure({"[{\"a\":{}}]", MISSING_OBJECT_CLOSE, 6, 1, 7,
                    "nested deeper than 2 levels: the option max_depth is the limit"},
                   options);
    options.max_depth = 0;
    expect_failure({" []", MISSING_ARRAY_CLOSE, 1, 1, 2,
                    "nested deeper than 0 levels: the option max_depth is the limit"},
                   options);
    expect_failure({std::string(1001, '['), MISSING_ARRAY_CLOSE, 1000, 1, 1001,
                    "nested deeper than 1000 levels: the option max_depth is the limit"});
}

// ---- The quoted line -------------------------------------------------------------------------

struct Quote {
    std::string text;
    std::size_t position;
    std::string quoted;
};

void expect_quote(const Quote& expected) {
    SCOPED_TRACE(expected.text.substr(0, 80));
    EXPECT_THAT([&] { parse(expected.text); },
                Throws<ParserException>(
                    AllOf(Property(&ParserException::get_quoted_byte_position, expected.position),
                          Property(&ParserException::get_quoted_text, expected.quoted))));
    EXPECT_EQ(disagreement(expected.text), "");
}

TEST(ParserErrors, QuoteTheLineWithoutItsEnd) {
    expect_quote({"", 0, ""});
    expect_quote({"[1,\n  x, 2\n]", 2, "  x, 2"});
    expect_quote({"[1,\r\n\tx]\r\n", 1, "\tx]"});
    expect_quote({"[\"a\r\n\"]", 3, "[\"a"});
    expect_quote({"[\"a\n\"]", 3, "[\"a"});
    expect_quote({"[\n", 0, ""});
    expect_quote({"\xEF\xBB\xBFx", 0, "x"});
    expect_quote({"[1,\r x]", 5, "[1,\r x]"});
    // Only with a line feed behind it does a carriage return end a line.
    expect_quote({"[x\r", 1, "[x\r"});
    expect_quote({"[1 2\r\r", 3, "[1 2\r\r"});
    expect_quote({"[x\r\r\n", 1, "[x\r"});
    expect_quote({"[1\r", 3, "[1\r"});
}

TEST(ParserErrors, QuoteOfALongLineNoMoreThan160BytesOnEitherSide) {
    const std::string blanks(500, ' ');
    expect_quote({"[" + blanks + "x" + blanks + "]", 160,
                  std::string(160, ' ') + "x" + std::string(159, ' ')});
    // A carriage return is part of the line unless the line ends behind it.
    const std::string before_return = "[x" + std::string(158, ' ') + "\r";
    expect_quote({before_return + blanks, 1, before_return});
    expect_quote({before_return + "\n" + blanks, 1, before_return.substr(0, 160)});
    expect_quote({before_return, 1, before_return});
    std::string umlauts;
    for (int i = 0; i != 200; ++i) {
        umlauts += "\xC3\xBC";
    }
    // Characters stay whole: 159 bytes before the place are those of 79 umlauts and a quote.
    expect_quote({"[\"" + umlauts + "\"x" + umlauts, 159,
                  umlauts.substr(0, 158) + "\"x" + umlauts.substr(0, 158)});
}

// A stream is read as far as the quote goes, also where the error is one byte farther on.
TEST(ParserErrors, QuoteTheSameOfAStreamAfterASlash) {
    ParseOptions options;
    options.comments = true;
    for (const std::size_t size : {157U, 158U, 159U, 160U, 161U, 162U, 300U}) {
        const std::string bytes(size, '\x9D');
        EXPECT_EQ(disagreement_in_pieces_of("[1, /" + bytes + "]", options, 1), "") << size;
        EXPECT_EQ(disagreement_in_pieces_of("[1, " + bytes + "]", options, 1), "") << size;
    }
}

} // namespace
} // namespace foundation::json::test
