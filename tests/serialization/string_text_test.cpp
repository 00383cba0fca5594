/// @file
/// The text of strings and member names, byte by byte.
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <ostream>
#include <sstream>
#include <string>

namespace foundation::json {
namespace {

using Object = std::map<std::string, Value>;

// clang-format off
/// The text of each byte between the quotation marks; eight to a row.
const char* const byte_texts[256] = {
    "\\u0000", "\\u0001", "\\u0002", "\\u0003", "\\u0004", "\\u0005", "\\u0006", "\\u0007", // 0x00
    "\\b", "\\t", "\\n", "\\u000b", "\\f", "\\r", "\\u000e", "\\u000f", // 0x08
    "\\u0010", "\\u0011", "\\u0012", "\\u0013", "\\u0014", "\\u0015", "\\u0016", "\\u0017", // 0x10
    "\\u0018", "\\u0019", "\\u001a", "\\u001b", "\\u001c", "\\u001d", "\\u001e", "\\u001f", // 0x18
    " ", "!", "\\\"", "#", "$", "%", "&", "'", // 0x20
    "(", ")", "*", "+", ",", "-", ".", "\\/", // 0x28
    "0", "1", "2", "3", "4", "5", "6", "7", // 0x30
    "8", "9", ":", ";", "<", "=", ">", "?", // 0x38
    "@", "A", "B", "C", "D", "E", "F", "G", // 0x40
    "H", "I", "J", "K", "L", "M", "N", "O", // 0x48
    "P", "Q", "R", "S", "T", "U", "V", "W", // 0x50
    "X", "Y", "Z", "[", "\\\\", "]", "^", "_", // 0x58
    "`", "a", "b", "c", "d", "e", "f", "g", // 0x60
    "h", "i", "j", "k", "l", "m", "n", "o", // 0x68
    "p", "q", "r", "s", "t", "u", "v", "w", // 0x70
    "x", "y", "z", "{", "|", "}", "~", "\x7F", // 0x78
    "\x80", "\x81", "\x82", "\x83", "\x84", "\x85", "\x86", "\x87", // 0x80
    "\x88", "\x89", "\x8A", "\x8B", "\x8C", "\x8D", "\x8E", "\x8F", // 0x88
    "\x90", "\x91", "\x92", "\x93", "\x94", "\x95", "\x96", "\x97", // 0x90
    "\x98", "\x99", "\x9A", "\x9B", "\x9C", "\x9D", "\x9E", "\x9F", // 0x98
    "\xA0", "\xA1", "\xA2", "\xA3", "\xA4", "\xA5", "\xA6", "\xA7", // 0xA0
    "\xA8", "\xA9", "\xAA", "\xAB", "\xAC", "\xAD", "\xAE", "\xAF", // 0xA8
    "\xB0", "\xB1", "\xB2", "\xB3", "\xB4", "\xB5", "\xB6", "\xB7", // 0xB0
    "\xB8", "\xB9", "\xBA", "\xBB", "\xBC", "\xBD", "\xBE", "\xBF", // 0xB8
    "\xC0", "\xC1", "\xC2", "\xC3", "\xC4", "\xC5", "\xC6", "\xC7", // 0xC0
    "\xC8", "\xC9", "\xCA", "\xCB", "\xCC", "\xCD", "\xCE", "\xCF", // 0xC8
    "\xD0", "\xD1", "\xD2", "\xD3", "\xD4", "\xD5", "\xD6", "\xD7", // 0xD0
    "\xD8", "\xD9", "\xDA", "\xDB", "\xDC", "\xDD", "\xDE", "\xDF", // 0xD8
    "\xE0", "\xE1", "\xE2", "\xE3", "\xE4", "\xE5", "\xE6", "\xE7", // 0xE0
    "\xE8", "\xE9", "\xEA", "\xEB", "\xEC", "\xED", "\xEE", "\xEF", // 0xE8
    "\xF0", "\xF1", "\xF2", "\xF3", "\xF4", "\xF5", "\xF6", "\xF7", // 0xF0
    "\xF8", "\xF9", "\xFA", "\xFB", "\xFC", "\xFD", "\xFE", "\xFF", // 0xF8
};
// clang-format on

TEST(StringText, OfEveryByteIsAsInTheTable) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const std::string string(1, static_cast<char>(byte));
        const std::string text = std::string("\"") + byte_texts[byte] + "\"";
        EXPECT_EQ(serialize(string), text) << "byte " << byte;
        EXPECT_EQ(pretty_print(string), text) << "byte " << byte;
    }
}

TEST(StringText, OfMemberNamesIsThatOfStrings) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const std::string name(1, static_cast<char>(byte));
        const std::string text = std::string("\"") + byte_texts[byte] + "\"";
        EXPECT_EQ(serialize(Object{{name, 1}}), "{" + text + ":1}") << "byte " << byte;
        EXPECT_EQ(pretty_print(Object{{name, 1}}), "{\n    " + text + ":1\n}") << "byte " << byte;
    }
}

TEST(StringText, OfAllBytesInARowIsThatOfEachOfThem) {
    std::string string;
    std::string text = "\"";
    for (std::size_t byte = 0; byte < 256; ++byte) {
        string += static_cast<char>(byte);
        text += byte_texts[byte];
    }
    EXPECT_EQ(serialize(string), text + "\"");
}

TEST(StringText, EscapesWhereverTheByteStands) {
    struct Case {
        const char* what;
        std::string string;
        std::string text;
    };
    using namespace std::string_literals;
    const Case cases[] = {
        {"nothing at all", "", R"("")"},
        {"nothing to escape", "plain text", R"("plain text")"},
        {"a solidus in the middle", "a/b", R"("a\/b")"},
        {"a solidus first and last", "/a/", R"("\/a\/")"},
        {"a quotation mark", "x\"y", R"("x\"y")"},
        {"backslashes in a row", "\\\\", R"("\\\\")"},
        {"an escape is no escape any more", "\\n", R"("\\n")"},
        {"a zero byte in the middle", "a\0b"s, R"("a\u0000b")"},
        {"zero bytes alone", "\0\0"s, R"("\u0000\u0000")"},
        {"a zero byte last", "a\0"s, R"("a\u0000")"},
        {"a digit after a control byte",
         "\x01"
         "1",
         R"("\u00011")"},
        {"control bytes of both sorts", "\x0B\n\x1F\t", R"("\u000b\n\u001f\t")"},
        {"a delete", "a\x7F", "\"a\x7F\""},
        {"two bytes of UTF-8", "\xC3\xA9", "\"\xC3\xA9\""},
        {"four bytes of UTF-8", "\xF0\x9F\x98\x80/", "\"\xF0\x9F\x98\x80\\/\""},
        {"line separators of Unicode", "\xE2\x80\xA8\xE2\x80\xA9", "\"\xE2\x80\xA8\xE2\x80\xA9\""},
        {"a lone 0xFF", "\xFF", "\"\xFF\""},
        {"UTF-8 cut short", "\xE2\x82", "\"\xE2\x82\""},
        {"a continuation byte before an escape", "\xA9\n", "\"\xA9\\n\""},
        {"an overlong solidus", "\xC0\xAF", "\"\xC0\xAF\""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(serialize(c.string), c.text) << c.what;
        EXPECT_EQ(serialize(Object{{c.string, Null()}}), "{" + c.text + ":null}") << c.what;
    }
}

TEST(StringText, OfAMemberNameIsEscapedLikeAString) {
    EXPECT_EQ(serialize(Object{{"x\"y", "x\"y"}}), R"({"x\"y":"x\"y"})");
    EXPECT_EQ(serialize(Object{{"", ""}}), R"({"":""})");
}

TEST(StringText, EscapesAtEveryPositionOfALongString) {
    for (std::size_t place = 0; place < 300; ++place) {
        const std::string before(place, 'a');
        const std::string after(300 - place, 'b');
        EXPECT_EQ(serialize(before + "/" + after), "\"" + before + "\\/" + after + "\"");
        EXPECT_EQ(serialize(before + "\x1E" + after), "\"" + before + "\\u001e" + after + "\"");
    }
}

TEST(StringText, OfALongStringIsComplete) {
    const std::size_t length = 1000003;
    EXPECT_EQ(serialize(std::string(length, 'x')), "\"" + std::string(length, 'x') + "\"");
    std::string solidi;
    for (std::size_t i = 0; i < 100000; ++i) {
        solidi += "\\/";
    }
    EXPECT_EQ(serialize(std::string(100000, '/')), "\"" + solidi + "\"");
}

} // namespace
} // namespace foundation::json
