/// @file
/// The order of texts by their UTF-16 units.
#include "text/utf16_order.hpp"

#include "support/utf_text.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace foundation::json::detail {
namespace {

test::UtfText text_of(const std::vector<char32_t>& characters) {
    test::UtfText text;
    for (const char32_t character : characters) {
        text.append(character);
    }
    return text;
}

TEST(IsLessInUtf16, ComparesUnits) {
    constexpr char32_t notable[] = {0,       'A',      0x7F,    0x80,    0xFF,    0x7FF,
                                    0x800,   0xD7FF,   0xE000,  0xEFFF,  0xF000,  0xFFFD,
                                    0xFFFF,  0x10000,  0x103FF, 0x10400, 0x3FFFF, 0x40000,
                                    0xFFFFF, 0x100000, 0x10FFFF};
    std::vector<test::UtfText> texts = {text_of({}), text_of({'A', 'A'}),
                                        text_of({'A', 0x10000, 'A'})};
    for (const char32_t first : notable) {
        texts.push_back(text_of({first}));
        for (const char32_t second : notable) {
            texts.push_back(text_of({first, second}));
        }
    }
    for (const test::UtfText& left : texts) {
        for (const test::UtfText& right : texts) {
            ASSERT_EQ(is_less_in_utf16(left.utf8, right.utf8), left.utf16 < right.utf16)
                << testing::PrintToString(left.utf8) << ' ' << testing::PrintToString(right.utf8);
        }
    }
}

TEST(IsLessInUtf16, IsAnOrderOfAllBytes) {
    const auto byte = [](int code) { return std::string(1, static_cast<char>(code)); };
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            EXPECT_EQ(is_less_in_utf16(byte(a), byte(b)) + is_less_in_utf16(byte(b), byte(a)),
                      a == b ? 0 : 1);
        }
    }
}

TEST(HasPairInUtf16, IsTrueForCharactersBeyondFfff) {
    EXPECT_FALSE(has_pair_in_utf16(""));
    EXPECT_FALSE(has_pair_in_utf16("plain \xC3\xA9 \xEF\xBF\xBF"));
    EXPECT_TRUE(has_pair_in_utf16("\xF0\x90\x80\x80"));
    EXPECT_TRUE(has_pair_in_utf16("plain \xF4\x8F\xBF\xBF"));
}

} // namespace
} // namespace foundation::json::detail
