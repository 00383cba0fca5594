// Tests the lengths of arrays, which are counted ahead of reading them. A wrong length would cost
// time and memory, but change no value.
#include "reading/array_lengths.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::detail {
namespace {

std::string array_of(const std::string& element, std::size_t count) {
    std::string text = "[" + element;
    for (std::size_t i = 1; i != count; ++i) {
        text += "," + element;
    }
    return text + "]";
}

/// The length of the array that a text begins with, counted from its first element on.
std::size_t length_of(std::string_view text, bool comments = false) {
    ArrayLengths lengths(text.data() + text.size(), comments);
    return lengths.length(text.data() + 1, 0);
}

TEST(ArrayLengths, CountElementsOfEveryKind) {
    for (const char* const element :
         {"1", "-1.5e3", "\"\"", "\"a,b]\"", "\"\\\"],\"", "\"\\\\\"", "[]", "[1,2]", "{}",
          "{\"a\":1,\"b\":[2,3]}", "[[[],[]]]", " null ", "\n        true", "\"\xC3\xA9,\xC3\xA9\"",
          "\"a string that is longer than a block, with [ and , and } in it\""}) {
        for (const std::size_t count : {1U, 2U, 3U, 10U, 300U}) {
            EXPECT_EQ(length_of(array_of(element, count)), count) << element;
            EXPECT_EQ(length_of(array_of(element, count) + ",1,[2],3]"), count) << element;
        }
    }
}

TEST(ArrayLengths, CountFromAnElementOn) {
    const std::string text = "[0,1,2,[3,3],4]";
    ArrayLengths lengths(text.data() + text.size(), false);
    EXPECT_EQ(lengths.length(&text[1], 0), 5u);
    EXPECT_EQ(lengths.length(&text[5], 2), 5u);
    EXPECT_EQ(lengths.length(&text[13], 4), 5u);
}

TEST(ArrayLengths, SkipCommentsWhereTheyAreAllowed) {
    for (const char* const comment : {"/*,*/", "//,]\n", "/*]*/", "/**/", "/*/,*/", "/***/",
                                      "/*,**/", "/* a comment of more than a block, or two */"}) {
        EXPECT_EQ(length_of(array_of(std::string("1") + comment, 300), true), 300u) << comment;
        EXPECT_EQ(length_of(array_of(std::string(comment) + "[2]", 300), true), 300u) << comment;
    }
    // Otherwise they are an error, which the parser finds.
    EXPECT_EQ(length_of("[1/*,*/,2]", false), 3u);
    EXPECT_EQ(length_of("[1//,]\n,2]", false), 2u);
    EXPECT_EQ(length_of("[1/,2]", true), 2u);
}

TEST(ArrayLengths, CountToTheEndOfATextThatIsCutOff) {
    for (const char* const text : {"[1,2", "[1,2,\"a,", "[1,2,\"\\", "[1,2,[3,4", "[1,2,{\"a\":1,",
                                   "[1,2,[3,4],\"a string of more than a block"}) {
        EXPECT_GE(length_of(text), 2u) << text;
        EXPECT_LE(length_of(text), 4u) << text;
    }
    EXPECT_EQ(length_of("[1,2/*,", true), 2u);
    EXPECT_EQ(length_of("[1,2//,", true), 2u);
    EXPECT_EQ(length_of("[1,2/*,*", true), 2u);
    EXPECT_EQ(length_of("[1,2/", true), 2u);
    EXPECT_EQ(length_of("[", true), 1u);
}

TEST(ArrayLengths, AreKeptForLongArraysWithinTheOneThatIsCounted) {
    const std::string inner = array_of("[0]", 256);
    const std::string text = "[" + inner + "," + array_of("0", 255) + "," + inner + "]";
    std::string changed = text;
    ArrayLengths lengths(changed.data() + changed.size(), false);
    EXPECT_EQ(lengths.length(&changed[1], 0), 3u);
    // Another count of the changed text would find less.
    for (char& byte : changed) {
        byte = byte == ',' ? ' ' : byte;
    }
    const std::size_t last = text.size() - 1 - inner.size();
    EXPECT_EQ(lengths.length(&changed[2], 0), 256u);
    EXPECT_EQ(lengths.length(&changed[inner.size() + 3], 0), 1u);
    EXPECT_EQ(lengths.length(&changed[last + 1], 0), 256u);
    // A length is kept for one call, since each array is read once.
    EXPECT_EQ(lengths.length(&changed[last + 1], 0), 1u);
}

TEST(ArrayLengths, AreThoseOfTheInnermostArrayAroundTheElement) {
    const std::string inner = array_of("0", 300);
    std::string middle = "[" + inner + "," + inner;
    for (int i = 0; i != 298; ++i) {
        middle += ",1";
    }
    middle += ",[]]";
    const std::string text = "[" + middle + "]";
    const char* const first = &text[2];
    const char* const second = first + inner.size() + 1;
    const char* const end_of_middle = &text[text.size() - 2];
    // More than any length, so that it shows where elements are counted again.
    const std::size_t before = 1000;
    ArrayLengths counted(text.data() + text.size(), false);
    EXPECT_EQ(counted.length(&text[1], 0), 1u);
    {
        ArrayLengths lengths = counted;
        EXPECT_EQ(lengths.length(first + 1, before), 300u);
        EXPECT_EQ(lengths.length(second + 1, before), 300u);
        EXPECT_EQ(lengths.length(end_of_middle, before), 301u);
        EXPECT_EQ(lengths.length(end_of_middle, before), before + 1) << "each is kept for one call";
    }
    {
        ArrayLengths lengths = counted;
        EXPECT_EQ(lengths.length(second, before), 301u) << "an array is no element of itself";
    }
    {
        ArrayLengths lengths = counted;
        EXPECT_EQ(lengths.length(second - 1, before), 301u) << "the first has ended before it";
    }
    {
        ArrayLengths lengths = counted;
        EXPECT_EQ(lengths.length(second + inner.size() - 1, before), 300u);
        EXPECT_EQ(lengths.length(end_of_middle, before), 301u) << "the first was never asked for";
    }
}

} // namespace
} // namespace foundation::json::detail
