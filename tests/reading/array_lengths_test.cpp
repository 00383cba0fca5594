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

/// The number of elements from which on an array is long.
constexpr std::size_t least = ArrayLengths::least;

/// The lengths of the arrays of a text.
class Lengths {
public:
    explicit Lengths(std::string_view text, const ParseOptions& options = {})
        : end_(text.data() + text.size()), lengths_(options) {}

    std::size_t length(const char* element, std::size_t before, std::size_t depth = 1) {
        return lengths_.length(element, end_, before, depth);
    }

private:
    const char* end_;
    ArrayLengths lengths_;
};

const ParseOptions& options_with(bool comments) {
    static const ParseOptions without;
    static const ParseOptions with = [] {
        ParseOptions options;
        options.comments = true;
        return options;
    }();
    return comments ? with : without;
}

/// The length of the array that a text begins with, counted from its first element on.
std::size_t length_of(std::string_view text, bool comments = false) {
    return Lengths(text, options_with(comments)).length(text.data() + 1, 0);
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
    Lengths lengths(text, options_with(false));
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

TEST(ArrayLengths, CountAtMostOneElementForTwoBytesOfWhatIsNotJson) {
    const std::string commas(1000, ',');
    EXPECT_LE(length_of("[1,2" + commas), 4u);
    EXPECT_LE(length_of("[" + commas), 3u);
    EXPECT_LE(length_of("[1,\"a\"" + commas), 4u);
    EXPECT_LE(length_of("[1,[2]" + commas), 4u);
    EXPECT_LE(length_of("[1,x" + commas + "[2,3]"), 4u);
}

TEST(ArrayLengths, CountNothingBeyondTheDeepestLevelThatIsAllowed) {
    ParseOptions options;
    options.max_depth = 10;
    const std::string text = "[1,2,[[3,4]],5,[[[6]]],7,8]";
    EXPECT_EQ(Lengths(text, options).length(&text[1], 0, 7), 7u);
    EXPECT_EQ(Lengths(text, options).length(&text[1], 0, 8), 5u);
    EXPECT_EQ(Lengths(text, options).length(&text[1], 0, 10), 3u);
}

TEST(ArrayLengths, AreKeptForLongArraysWithinTheOneThatIsCounted) {
    const std::string inner = array_of("[0]", least);
    const std::string text = "[" + inner + "," + array_of("0", least - 1) + "," + inner + "]";
    std::string changed = text;
    Lengths lengths(changed, options_with(false));
    EXPECT_EQ(lengths.length(&changed[1], 0), 3u);
    // Another count of the changed text would find less.
    for (char& byte : changed) {
        byte = byte == ',' ? ' ' : byte;
    }
    const std::size_t last = text.size() - 1 - inner.size();
    EXPECT_EQ(lengths.length(&changed[2], 0), least);
    EXPECT_EQ(lengths.length(&changed[inner.size() + 3], 0), 1u);
    EXPECT_EQ(lengths.length(&changed[last + 1], 0), least);
    // A length is kept for one call, since each array is read once.
    EXPECT_EQ(lengths.length(&changed[last + 1], 0), 1u);
}

TEST(ArrayLengths, AreThoseOfTheInnermostArrayAroundTheElement) {
    const std::string inner = array_of("0", least + 44);
    std::string middle = "[" + inner + "," + inner;
    for (std::size_t i = 0; i != least + 42; ++i) {
        middle += ",1";
    }
    middle += ",[]]";
    const std::string text = "[" + middle + "]";
    const char* const first = &text[2];
    const char* const second = first + inner.size() + 1;
    const char* const end_of_middle = &text[text.size() - 2];
    // More than any length, so that it shows where elements are counted again.
    const std::size_t before = 1000000;
    Lengths counted(text, options_with(false));
    EXPECT_EQ(counted.length(&text[1], 0), 1u);
    {
        Lengths lengths = counted;
        EXPECT_EQ(lengths.length(first + 1, before), least + 44);
        EXPECT_EQ(lengths.length(second + 1, before), least + 44);
        EXPECT_EQ(lengths.length(end_of_middle, before), least + 45);
        EXPECT_EQ(lengths.length(end_of_middle, before), before + 1) << "each is kept for one call";
    }
    {
        Lengths lengths = counted;
        EXPECT_EQ(lengths.length(second, before), least + 45) << "an array is no element of itself";
    }
    {
        Lengths lengths = counted;
        EXPECT_EQ(lengths.length(second - 1, before), least + 45)
            << "the first has ended before it";
    }
    {
        Lengths lengths = counted;
        EXPECT_EQ(lengths.length(second + inner.size() - 1, before), least + 44);
        EXPECT_EQ(lengths.length(end_of_middle, before), least + 45)
            << "the first was never asked for";
    }
}

} // namespace
} // namespace foundation::json::detail
