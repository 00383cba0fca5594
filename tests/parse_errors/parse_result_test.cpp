// The codes of reading errors and their descriptions.
#include <foundation/json/parse_errors.hpp>

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <type_traits>

namespace foundation::json::test {
namespace {

struct Code {
    ParseResult code;
    int number;
    const char* description;
};

const Code codes[] = {
    {NULL_MISMATCH, 1, "Failed to match the string 'null'"},
    {BOOLEAN_MISMATCH, 2,
     "Failed to match either of 'true' or 'false' while parsing value of type boolean"},
    {EMPTY_INPUT, 3, "The given input sequence is empty"},
    {INCOMPLETE_ESCAPE_SEQUENCE, 4,
     "Incomplete escape sequence while parsing value of type string"},
    {INVALID_ESCAPE_SEQUENCE, 5, "Invalid escape sequence while parsing value of type char"},
    {INVALID_UNICODE_ESCAPE, 6,
     "Invalid Unicode escape sequence while parsing value of type string"},
    {UNESCAPED_QUOTE, 7, R"(Found '"' character outside escape sequence before end of string)"},
    {MISSING_LEADING_QUOTE, 8,
     R"(Expected leading '"' character while parsing value of type string)"},
    {MISSING_TRAILING_QUOTE, 9,
     R"(Expected trailing '"' character while parsing value of type string)"},
    {MISSING_QUANTITY_AFTER_SIGN, 10,
     "No quantity found after sign while parsing value of type number"},
    {MISSING_LEADING_DIGIT, 11, "Expected leading digit while parsing value of type number"},
    {INVALID_FRACTION, 12,
     "Error in fractional component after decimal place while parsing value of type number"},
    {INVALID_EXPONENT, 13, "Error in exponent while parsing value of type number"},
    {MISSING_ARRAY_OPEN, 14, "No leading '[' while parsing value of type array"},
    {MISSING_ARRAY_CLOSE, 15,
     "No trailing ']' while parsing value of type array (possible missing comma?)"},
    {MISSING_OBJECT_OPEN, 16, "No leading '{' while parsing value of type object"},
    {MISSING_OBJECT_CLOSE, 17,
     "No trailing '}' while parsing value of type object (possible missing comma?)"},
    {MISSING_NAME_SEPARATOR, 18, "No ':' after name while parsing value of type object"},
    {UNEXPECTED_END_OF_INPUT, 19, "Unexpected end of input"},
    {INVALID_INTEGER_ARRAY_VALUE, 20, "Invalid intergal value while parsing interger array"},
};

TEST(ParseResult, EveryErrorHasItsNumberAndItsDescription) {
    int number = 0;
    for (const Code& c : codes) {
        EXPECT_EQ(c.number, ++number);
        EXPECT_EQ(static_cast<int>(c.code), c.number);
        EXPECT_STREQ(get_parse_result_description(c.code), c.description);
        EXPECT_STREQ(get_parse_result_description(static_cast<ParseResult>(c.number)),
                     c.description);
    }
    EXPECT_EQ(number, 20);
}

TEST(ParseResult, NoErrorIsZeroAndHasNoDescription) {
    EXPECT_EQ(static_cast<int>(NO_PARSE_ERROR), 0);
    EXPECT_STREQ(get_parse_result_description(NO_PARSE_ERROR), "Unrecognized error code");
    EXPECT_STREQ(get_parse_result_description(ParseResult()), "Unrecognized error code");
}

TEST(ParseResult, ANumberThatIsNoCodeHasNoDescription) {
    for (const int number : {-1, -2, -20, -21, 21, 22, 100, 255, 256, 257, 65537, INT_MIN,
                             INT_MIN + 1, INT_MIN + 5, INT_MAX, INT_MAX - 1}) {
        EXPECT_STREQ(get_parse_result_description(static_cast<ParseResult>(number)),
                     "Unrecognized error code")
            << number;
    }
}

TEST(ParseResult, ADescriptionIsTheSameObjectEveryTime) {
    for (const Code& c : codes) {
        EXPECT_EQ(get_parse_result_description(c.code), get_parse_result_description(c.code));
    }
    EXPECT_EQ(get_parse_result_description(NO_PARSE_ERROR),
              get_parse_result_description(static_cast<ParseResult>(21)));
}

TEST(ParseResult, CodesAreNamedWithOrWithoutTheirType) {
    static_assert(ParseResult::EMPTY_INPUT == foundation::json::EMPTY_INPUT);
    static_assert(ParseResult::INVALID_INTEGER_ARRAY_VALUE == INVALID_INTEGER_ARRAY_VALUE);
    static_assert(ParseResult::NO_PARSE_ERROR == NO_PARSE_ERROR);
}

TEST(ParseResult, IsAnEnumerationOfSigned32BitNumbers) {
    static_assert(std::is_enum_v<ParseResult>);
    static_assert(std::is_same_v<std::underlying_type_t<ParseResult>, std::int32_t>);
    static_assert(sizeof(ParseResult) == 4);
    static_assert(std::is_same_v<decltype(get_parse_result_description(EMPTY_INPUT)), const char*>);
}

} // namespace
} // namespace foundation::json::test
