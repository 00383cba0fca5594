// The converter of UTF-16 text; what becomes of its text is tested by what callers call.
#include "parse_errors/utf16_converter.hpp"

#include "support/utf_text.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>

namespace foundation::json::test {
namespace {

using detail::Utf16Converter;
using testing::ThrowsMessage;

const std::u16string high(1, char16_t{0xD83D});
const std::u16string low(1, char16_t{0xDE00});

TEST(Utf16Converter, AnUnknownEncodingIsAnErrorThatNamesIt) {
    for (const std::string name : {"", "no-such-encoding"}) {
        EXPECT_THAT([&] { Utf16Converter(name, true); },
                    ThrowsMessage<std::invalid_argument>("unknown encoding: " + name));
    }
}

TEST(Utf16Converter, ThrowsAtWhatCannotBeConvertedIfNotAskedToSubstitute) {
    const Utf16Converter utf8("UTF-8", false);
    EXPECT_THROW(utf8.convert(high), std::range_error);
    EXPECT_THROW(utf8.convert(low), std::range_error);
    EXPECT_THROW(utf8.convert(u"a" + high + u"b"), std::range_error);
    EXPECT_THROW(utf8.convert(u"a" + low + u"b"), std::range_error);
    EXPECT_THROW(utf8.convert(u"a" + high), std::range_error);
    EXPECT_THROW(utf8.convert(low + high), std::range_error);
    EXPECT_THROW(utf8.convert(std::u16string(5000, u'x') + high), std::range_error);
}

TEST(Utf16Converter, CanBeUsedAgain) {
    const Utf16Converter converter("UTF-8", true);
    EXPECT_EQ(converter.convert(u"first"), "first");
    EXPECT_EQ(converter.convert(u"second"), "second");
    EXPECT_EQ(converter.convert(high), "\xEF\xBF\xBD");
    EXPECT_EQ(converter.convert(low), "\xEF\xBF\xBD") << "no half of a pair is kept";
}

TEST(Utf16Converter, CanBeUsedAgainAfterAnError) {
    const Utf16Converter converter("UTF-8", false);
    EXPECT_THROW(converter.convert(u"a" + high), std::range_error);
    EXPECT_THROW(converter.convert(low), std::range_error) << "no half of a pair is kept";
    EXPECT_EQ(converter.convert(u"good"), "good");
    EXPECT_THROW(converter.convert(high + u"b"), std::range_error);
    EXPECT_EQ(converter.convert(high + low), "\xF0\x9F\x98\x80");
}

TEST(Utf16Converter, ConvertsStringsLongerThanAnyPiece) {
    UtfText text;
    for (char32_t i = 0; i != 50000; ++i) {
        text.append(U'a' + i % 26);
        text.append(0x1F600 + i % 16);
        text.append(0x20AC);
    }
    for (const bool substitute : {true, false}) {
        const Utf16Converter converter("UTF-8", substitute);
        EXPECT_TRUE(converter.convert(text.utf16) == text.utf8);
        EXPECT_TRUE(converter.convert(text.utf16) == text.utf8);
    }
}

} // namespace
} // namespace foundation::json::test
