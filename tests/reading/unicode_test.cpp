// What is known of characters: their class and width. The expectations are those of Unicode's files
// UnicodeData.txt and EastAsianWidth.txt, for characters that were assigned before version 13. All
// characters of version 15.0 that are not hidden were compared with another library once: none
// differs. What later versions assign is hidden to a library that has the data of an earlier one.
#include "text/unicode.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace foundation::json::test {
namespace {

using detail::CharacterClass;

struct Range {
    std::uint32_t first;
    std::uint32_t last;
    CharacterClass type;
    std::size_t width; ///< 9: does not matter, since it is not shown
};

constexpr auto visible = CharacterClass::visible;
constexpr auto mark = CharacterClass::mark;
constexpr auto space = CharacterClass::space;
constexpr auto hidden = CharacterClass::hidden;

constexpr Range ranges[] = {
    {0x0000, 0x001F, hidden, 9}, // controls
    {0x0020, 0x0020, space, 1},
    {0x0021, 0x007E, visible, 1},
    {0x007F, 0x009F, hidden, 9},
    {0x00A0, 0x00A0, space, 1}, // no-break space
    {0x00A1, 0x00AC, visible, 1},
    {0x00AD, 0x00AD, hidden, 9}, // soft hyphen
    {0x00AE, 0x02FF, visible, 1},
    {0x0300, 0x036F, mark, 0},
    {0x0391, 0x03A1, visible, 1},
    {0x0488, 0x0489, mark, 0}, // enclosing
    {0x05D0, 0x05EA, visible, 1},
    {0x0600, 0x0605, hidden, 9}, // formats
    {0x0903, 0x0903, mark, 1},   // spacing
    {0x1100, 0x115F, visible, 2},
    {0x1160, 0x11FF, visible, 1}, // vowels of Hangul, one by one
    {0x2000, 0x200A, space, 1},
    {0x200B, 0x200C, hidden, 9},
    {0x200D, 0x200D, CharacterClass::joiner, 0},
    {0x200E, 0x200F, hidden, 9}, // directions
    {0x2013, 0x2027, visible, 1},
    {0x2028, 0x202E, hidden, 9}, // line ends and directions
    {0x202F, 0x202F, space, 1},
    {0x20AC, 0x20AC, visible, 1},
    {0x231A, 0x231B, visible, 2}, // a watch and an hourglass
    {0x3000, 0x3000, space, 2},
    {0x3041, 0x3096, visible, 2},
    {0x3400, 0x4DB5, visible, 2},
    {0x4E00, 0x9FEF, visible, 2},
    {0xAC00, 0xD7A3, visible, 2},
    {0xD800, 0xF8FF, hidden, 9}, // surrogates and private use
    {0xF900, 0xFA6D, visible, 2},
    {0xFE00, 0xFE0F, mark, 0}, // variation selectors
    {0xFEFF, 0xFEFF, hidden, 9},
    {0xFF01, 0xFF60, visible, 2},
    {0xFF61, 0xFF9D, visible, 1},
    {0xFFFC, 0xFFFD, visible, 1},
    {0xFFFE, 0xFFFF, hidden, 9}, // no characters
    {0x1D400, 0x1D454, visible, 1},
    {0x1F600, 0x1F64F, visible, 2},
    {0x20000, 0x2A6D6, visible, 2},
    {0xE0001, 0xE0001, hidden, 9},
    {0xE0100, 0xE01EF, mark, 0},
    {0xF0000, 0x10FFFF, hidden, 9},
    {0x110000, 0x110010, hidden, 9}, // beyond Unicode
    {0xFFFFFFFF, 0xFFFFFFFF, hidden, 9},
};

TEST(Unicode, KnowsTheClassAndWidthOfCharacters) {
    for (const Range& range : ranges) {
        for (std::uint64_t i = range.first; i <= range.last; ++i) {
            const auto code = static_cast<std::uint32_t>(i);
            ASSERT_EQ(detail::class_of(code), range.type) << std::hex << code;
            if (range.type != hidden) {
                ASSERT_EQ(detail::width_of(code), range.width) << std::hex << code;
            }
        }
    }
}

TEST(Unicode, NoCharacterIsWiderThanTwoColumns) {
    for (std::uint32_t code = 0; code != 0x110010; ++code) {
        ASSERT_LE(detail::width_of(code), 2u) << std::hex << code;
    }
}

} // namespace
} // namespace foundation::json::test
