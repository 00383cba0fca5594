// Positions of texts, counted in one step or many.
#include "grammar/position.hpp"
#include "support/every_way.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::detail {
namespace {

std::string to_text(const TextPosition& position) {
    return test::to_text({position.byte, position.line, position.column});
}

TextPosition advanced(TextPosition from, std::string_view text) {
    from.advance(text);
    return from;
}

TEST(TextPosition, CountsBytesLinesAndCharacters) {
    EXPECT_EQ(to_text(advanced({}, "")), "0=1:1");
    EXPECT_EQ(to_text(advanced({}, "abc")), "3=1:4");
    EXPECT_EQ(to_text(advanced({}, "\n")), "1=2:1");
    EXPECT_EQ(to_text(advanced({}, "a\r\nb\n\nc")), "7=4:2");
    EXPECT_EQ(to_text(advanced({}, "\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80")), "9=1:4");
    EXPECT_EQ(to_text(advanced({}, "\x80\x80")), "2=1:1") << "continuation bytes alone";
    EXPECT_EQ(to_text(advanced({10, 3, 7}, "ab")), "12=3:9");
    EXPECT_EQ(to_text(advanced({10, 3, 7}, "ab\nc")), "14=4:2");
}

TEST(TextPosition, AByteOrderMarkTakesNoColumnAtTheStartAlone) {
    EXPECT_EQ(to_text(advanced({}, "\xEF\xBB\xBF")), "3=1:1");
    EXPECT_EQ(to_text(advanced({}, "\xEF\xBB\xBF"
                                   "ab")),
              "5=1:3");
    EXPECT_EQ(to_text(advanced({}, "\xEF\xBB\xBF\n")), "4=2:1");
    EXPECT_EQ(to_text(advanced({1, 1, 2}, "\xEF\xBB\xBF")), "4=1:3");
    EXPECT_EQ(to_text(advanced({3, 1, 1}, "\xEF\xBB\xBF")), "6=1:2");
}

TEST(TextPosition, IsTheSameInOneStepAndInTwo) {
    // Longer than the counters of single bytes, with lines and characters of every length.
    std::string text = "\xEF\xBB\xBF";
    for (std::size_t i = 0; i != 60; ++i) {
        text += std::string(i, 'x') + "\xC3\xA9" + std::string(i / 7, '\n');
    }
    text += std::string(1000, '\n') + std::string(1000, 'x');
    for (std::size_t i = 3; i <= text.size(); ++i) {
        TextPosition position;
        position.advance(std::string_view(text).substr(0, i));
        ASSERT_EQ(to_text(position), test::to_text(test::plain_position(text, i)));
        position.advance(std::string_view(text).substr(i));
        ASSERT_EQ(to_text(position), test::to_text(test::plain_position(text, text.size())));
    }
}

TEST(Context, FindsThePositionsOfAllBytesFromAnyMark) {
    const std::string text = "a\n\xC3\xA9 b\r\n\nc";
    const TextPosition begin{20, 3, 5};
    for (std::size_t mark = 0; mark <= text.size(); ++mark) {
        Context context(text, begin);
        context.marked = text.data() + mark;
        context.mark = advanced(begin, text.substr(0, mark));
        for (std::size_t i = 0; i <= text.size(); ++i) {
            EXPECT_EQ(to_text(context.position_of(text.data() + i)),
                      to_text(advanced(begin, text.substr(0, i))));
        }
    }
}

} // namespace
} // namespace foundation::json::detail
