/// @file
/// Unicode text in UTF-16 and UTF-8 side by side, encoded here and nowhere else.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_UTF_TEXT_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_UTF_TEXT_HPP

#include <string>

namespace foundation::json::test {

struct UtfText {
    std::u16string utf16;
    std::string utf8;

    /// Appends a code point, which must not be a surrogate.
    void append(char32_t code_point) {
        append_utf16(code_point);
        append_utf8(code_point);
    }

    /// Appends an unpaired surrogate, and what stands for it in UTF-8: U+FFFD.
    void append_unpaired(char16_t surrogate) {
        utf16 += surrogate;
        utf8 += "\xEF\xBF\xBD";
    }

private:
    void append_utf16(char32_t c) {
        if (c < 0x10000) {
            utf16 += static_cast<char16_t>(c);
        } else {
            utf16 += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            utf16 += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }

    void append_utf8(char32_t c) {
        const auto lead = [&](unsigned mark, int shift) {
            utf8 += static_cast<char>(mark | (c >> shift));
        };
        const auto trail = [&](int shift) {
            utf8 += static_cast<char>(0x80 | ((c >> shift) & 0x3F));
        };
        if (c < 0x80) {
            lead(0, 0);
        } else if (c < 0x800) {
            lead(0xC0, 6);
            trail(0);
        } else if (c < 0x10000) {
            lead(0xE0, 12);
            trail(6);
            trail(0);
        } else {
            lead(0xF0, 18);
            trail(12);
            trail(6);
            trail(0);
        }
    }
};

} // namespace foundation::json::test

#endif
