// The two text conversions that a reader of JSON text calls.
#include <foundation/json/text_helpers.hpp>

#include "support/locales.hpp"
#include "support/utf_text.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace foundation::json::test {
namespace {

using detail::string_to_double;
using detail::u16_to_u8;
using testing::ThrowsMessage;

/// u16_to_u8 of a whole string.
std::string to_utf8(std::u16string text) {
    return u16_to_u8(text.data(), static_cast<int>(text.size()));
}

/// Compares long texts without printing them.
void expect_converted(const UtfText& text) {
    const std::string converted = to_utf8(text.utf16);
    ASSERT_EQ(converted.size(), text.utf8.size());
    for (std::size_t i = 0; i != converted.size(); ++i) {
        ASSERT_EQ(converted[i], text.utf8[i]) << "at byte " << i;
    }
}

// ---- UTF-16 to UTF-8 ---------------------------------------------------------------------------

struct Conversion {
    const char* name;
    std::u16string utf16;
    std::string utf8;
};

TEST(U16ToU8, EncodesEveryLengthOfCharacter) {
    const Conversion cases[] = {
        {"nothing", u"", ""},
        {"ASCII", u"Hello, \"world\"\n", "Hello, \"world\"\n"},
        {"U+0000", std::u16string(1, u'\0'), std::string(1, '\0')},
        {"U+0001", u"\x0001", "\x01"},
        {"U+007F, the last of one byte", u"\x007F", "\x7F"},
        {"U+0080, the first of two bytes", u"\x0080", "\xC2\x80"},
        {"U+00E4", u"\x00E4", "\xC3\xA4"},
        {"U+07FF, the last of two bytes", u"\x07FF", "\xDF\xBF"},
        {"U+0800, the first of three bytes", u"\x0800", "\xE0\xA0\x80"},
        {"U+20AC", u"\x20AC", "\xE2\x82\xAC"},
        {"U+D7FF, the last before the surrogates", u"\xD7FF", "\xED\x9F\xBF"},
        {"U+E000, the first after the surrogates", u"\xE000", "\xEE\x80\x80"},
        {"U+FEFF, a byte order mark", u"\xFEFF", "\xEF\xBB\xBF"},
        {"U+FFFD", u"\xFFFD", "\xEF\xBF\xBD"},
        {"U+FFFE", u"\xFFFE", "\xEF\xBF\xBE"},
        {"U+FFFF, the last of three bytes", u"\xFFFF", "\xEF\xBF\xBF"},
        {"U+10000, the first of four bytes", u"\xD800\xDC00", "\xF0\x90\x80\x80"},
        {"U+1F600", u"\xD83D\xDE00", "\xF0\x9F\x98\x80"},
        {"U+10FFFF, the last of all", u"\xDBFF\xDFFF", "\xF4\x8F\xBF\xBF"},
        {"one of each", u"a\x00E4\x20AC\xD83D\xDE00z", "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z"},
    };
    for (const Conversion& c : cases) {
        EXPECT_EQ(to_utf8(c.utf16), c.utf8) << c.name;
    }
}

TEST(U16ToU8, KeepsZeroUnits) {
    EXPECT_EQ(to_utf8(std::u16string(u"a\0b\0", 4)), std::string("a\0b\0", 4));
    EXPECT_EQ(to_utf8(std::u16string(3, u'\0')), std::string(3, '\0'));
    EXPECT_EQ(to_utf8(std::u16string(u"\0\xD83D\xDE00\0", 4)),
              std::string("\0\xF0\x9F\x98\x80\0", 6));
}

TEST(U16ToU8, AnUnpairedSurrogateBecomesAReplacementCharacter) {
    const Conversion cases[] = {
        {"high alone", u"\xD83D", "\xEF\xBF\xBD"},
        {"low alone", u"\xDE00", "\xEF\xBF\xBD"},
        {"first and last high", u"\xD800 \xDBFF", "\xEF\xBF\xBD \xEF\xBF\xBD"},
        {"first and last low", u"\xDC00 \xDFFF", "\xEF\xBF\xBD \xEF\xBF\xBD"},
        {"high at the end", u"ab\xD83D", "ab\xEF\xBF\xBD"},
        {"low at the end", u"ab\xDE00", "ab\xEF\xBF\xBD"},
        {"high at the start",
         u"\xD83D"
         u"ab",
         "\xEF\xBF\xBD"
         "ab"},
        {"low at the start",
         u"\xDE00"
         u"ab",
         "\xEF\xBF\xBD"
         "ab"},
        {"pair in reverse", u"\xDE00\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"two high", u"\xD83D\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"two low", u"\xDE00\xDE00", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"high before a pair", u"\xD83D\xD83D\xDE00", "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
        {"low after a pair", u"\xD83D\xDE00\xDE00", "\xF0\x9F\x98\x80\xEF\xBF\xBD"},
        {"high before U+E000", u"\xD83D\xE000", "\xEF\xBF\xBD\xEE\x80\x80"},
        {"parted by a zero", std::u16string(u"\xD83D\0\xDE00", 3),
         std::string("\xEF\xBF\xBD\0\xEF\xBF\xBD", 7)},
    };
    for (const Conversion& c : cases) {
        EXPECT_EQ(to_utf8(c.utf16), c.utf8) << c.name;
    }
}

TEST(U16ToU8, ConvertsExactlyAsManyUnitsAsItIsTold) {
    char16_t text[] = {u'a', u'b', 0xD83D, 0xDE00, u'c'};
    EXPECT_EQ(u16_to_u8(text, 0), "");
    EXPECT_EQ(u16_to_u8(text, 1), "a");
    EXPECT_EQ(u16_to_u8(text, 2), "ab");
    EXPECT_EQ(u16_to_u8(text, 3), "ab\xEF\xBF\xBD") << "cut between the two halves of a pair";
    EXPECT_EQ(u16_to_u8(text, 4), "ab\xF0\x9F\x98\x80");
    EXPECT_EQ(u16_to_u8(text, 5), "ab\xF0\x9F\x98\x80"
                                  "c");
}

TEST(U16ToU8, ReadsNothingAfterTheLastUnit) {
    const std::vector<char16_t> exact{u'a', 0xD83D, 0xDE00};
    std::vector<char16_t> text(exact);
    text.shrink_to_fit();
    EXPECT_EQ(u16_to_u8(text.data(), 3), "a\xF0\x9F\x98\x80");
}

TEST(U16ToU8, OfNoUnitsIsEmptyEvenOfANullPointer) {
    EXPECT_EQ(u16_to_u8(nullptr, 0), "");
}

TEST(U16ToU8, ANegativeLengthIsALengthError) {
    char16_t text[] = u"text";
    for (const int length : {-1, -2, INT_MIN + 1, INT_MIN}) {
        EXPECT_THAT([&] { static_cast<void>(u16_to_u8(text, length)); },
                    ThrowsMessage<std::length_error>("string too long"))
            << length;
        EXPECT_THROW(static_cast<void>(u16_to_u8(nullptr, length)), std::length_error);
    }
    EXPECT_EQ(u16_to_u8(text, 4), "text") << "the failure has no lasting effect";
}

TEST(U16ToU8, KeepsNothingFromOneCallToTheNext) {
    EXPECT_EQ(to_utf8(u"\xD83D"), "\xEF\xBF\xBD");
    EXPECT_EQ(to_utf8(u"\xDE00"), "\xEF\xBF\xBD");
}

TEST(U16ToU8, ConvertsEveryCodePoint) {
    UtfText text;
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c < 0xD800 || c > 0xDFFF) {
            text.append(c);
        }
    }
    ASSERT_EQ(text.utf16.size(), 2160640u);
    expect_converted(text);
}

TEST(U16ToU8, ReplacesEveryUnpairedSurrogate) {
    UtfText text;
    for (char32_t c = 0xD800; c <= 0xDFFF; ++c) {
        text.append_unpaired(static_cast<char16_t>(c));
        text.append(U'-');
    }
    expect_converted(text);
}

TEST(U16ToU8, LongStringsMayHaveACharacterAcrossAnyBoundary) {
    // Whatever the size of the pieces a long text is converted in, some character straddles the
    // boundaries between them: here every multiple of 512 bytes, in every possible position.
    struct Straddler {
        const char* name;
        char32_t character;
        std::size_t length;
    };
    const Straddler straddlers[] = {
        {"two bytes", 0xE4, 2}, {"three bytes", 0x20AC, 3}, {"four bytes", 0x1F600, 4}};
    for (const Straddler& s : straddlers) {
        for (std::size_t before = 1; before != s.length; ++before) {
            UtfText text;
            for (std::size_t boundary = 512; text.utf16.size() < 100000; boundary += 512) {
                while (text.utf8.size() < boundary - before) {
                    text.append(U'a' + static_cast<char32_t>(text.utf8.size() % 26));
                }
                text.append(s.character);
            }
            SCOPED_TRACE(s.name);
            expect_converted(text);
        }
    }
}

// ---- Number text -------------------------------------------------------------------------------

TEST(StringToDouble, ReadsTheNumberThatAStringBeginsWith) {
    struct Case {
        const char* text;
        double number;
    };
    const Case cases[] = {
        {"0", 0.0},     {"1.5", 1.5},    {"-1.5", -1.5}, {"1.5e3", 1500.0},
        {"12E-1", 1.2}, {"1.5abc", 1.5}, {"1.5 ", 1.5},  {"1,5", 1.0},
        {"", 0.0},      {"abc", 0.0},    {" 1", 0.0},    {"+1", 0.0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(string_to_double(c.text), c.number) << '"' << c.text << '"';
    }
}

TEST(StringToDouble, ReadsUpToTheTerminatingZero) {
    const char text[] = "12\0"
                        "34";
    EXPECT_EQ(string_to_double(text), 12.0);
    EXPECT_EQ(string_to_double(text + 3), 34.0);
}

// ---- Both --------------------------------------------------------------------------------------

TEST(TextHelpers, ConvertTheSameInEveryLocale) {
    const ScopedCLocale c_locale(LC_ALL, "de_DE.UTF-8");
    ASSERT_TRUE(c_locale.succeeded()) << "LOCPATH must name the folder of the generated locale";
    EXPECT_EQ(to_utf8(u"\x00E4\x20AC"), "\xC3\xA4\xE2\x82\xAC");
    const ScopedCLocale ascii_locale(LC_ALL, "C");
    EXPECT_EQ(to_utf8(u"\x00E4\x20AC"), "\xC3\xA4\xE2\x82\xAC");
}

TEST(TextHelpers, HaveTheSignaturesThatReadersCall) {
    static_assert(std::is_same_v<decltype(&u16_to_u8), std::string (*)(char16_t*, int)>);
    static_assert(std::is_same_v<decltype(&string_to_double), double (*)(const char*)>);
}

} // namespace
} // namespace foundation::json::test
