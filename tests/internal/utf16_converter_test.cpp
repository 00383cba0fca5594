// Converts UTF-16 text to a named encoding.
#include "parse_errors/utf16_converter.hpp"

#include "support/utf_text.hpp"

#include <gtest/gtest.h>

#include <unicode/uclean.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>

namespace foundation::json::test {
namespace {

using detail::Utf16Converter;

const std::u16string high(1, char16_t{0xD83D});
const std::u16string low(1, char16_t{0xDE00});

TEST(Utf16Converter, ConvertsIntoTheEncodingItIsMadeFor) {
    const std::u16string text = u"a\x00E4\x20AC\xD83D\xDE00";
    EXPECT_EQ(Utf16Converter("UTF-8", true).convert(text), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(Utf16Converter("UTF-16BE", true).convert(text),
              std::string("\0a\0\xE4\x20\xAC\xD8\x3D\xDE\0", 10));
    EXPECT_EQ(Utf16Converter("UTF-16LE", true).convert(text),
              std::string("a\0\xE4\0\xAC\x20\x3D\xD8\0\xDE", 10));
    EXPECT_EQ(Utf16Converter("UTF-32BE", true).convert(u"a\xD83D\xDE00"),
              std::string("\0\0\0a\0\x01\xF6\0", 8));
    EXPECT_EQ(Utf16Converter("ISO-8859-1", true).convert(u"a\x00E4\x00FF"), "a\xE4\xFF");
}

TEST(Utf16Converter, AcceptsAnEncodingUnderAnyOfItsNames) {
    for (const char* name : {"UTF-8", "utf-8", "UTF8", "utf_8"}) {
        EXPECT_EQ(Utf16Converter(name, true).convert(u"\x00E4"), "\xC3\xA4") << name;
    }
    for (const char* name : {"ISO-8859-1", "latin1", "iso8859_1"}) {
        EXPECT_EQ(Utf16Converter(name, true).convert(u"\x00E4"), "\xE4") << name;
    }
}

TEST(Utf16Converter, ConvertsAnEmptyTextToAnEmptyText) {
    for (const bool substitute : {true, false}) {
        EXPECT_EQ(Utf16Converter("UTF-8", substitute).convert(u""), "");
        EXPECT_EQ(Utf16Converter("UTF-16BE", substitute).convert(u""), "");
    }
}

TEST(Utf16Converter, AnUnknownEncodingIsAnErrorThatNamesIt) {
    for (const bool substitute : {true, false}) {
        try {
            const Utf16Converter converter("no-such-encoding", substitute);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), "unknown encoding: no-such-encoding");
        }
    }
}

TEST(Utf16Converter, AnEmptyNameIsAnUnknownEncoding) {
    try {
        const Utf16Converter converter("", true);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "unknown encoding: ");
    }
}

TEST(Utf16Converter, ANameTooLongForAnyEncodingIsUnknown) {
    const std::string name(10000, 'x');
    EXPECT_THROW(Utf16Converter(name, true), std::invalid_argument);
}

TEST(Utf16Converter, SubstitutesWhatCannotBeConvertedIfAsked) {
    const Utf16Converter utf8("UTF-8", true);
    EXPECT_EQ(utf8.convert(u"a" + high + u"b"), "a\xEF\xBF\xBD"
                                                "b");
    EXPECT_EQ(utf8.convert(u"a" + low + u"b"), "a\xEF\xBF\xBD"
                                               "b");
    EXPECT_EQ(utf8.convert(u"a" + high), "a\xEF\xBF\xBD");
    EXPECT_EQ(utf8.convert(low + high), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(Utf16Converter("ISO-8859-1", true)
                  .convert(u"a\x20AC"
                           u"b"),
              "a\x1A"
              "b");
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
    EXPECT_THROW(Utf16Converter("ISO-8859-1", false).convert(u"a\x20AC"), std::range_error);
}

TEST(Utf16Converter, ConvertsWellFormedTextWithoutSubstitution) {
    const Utf16Converter utf8("UTF-8", false);
    EXPECT_EQ(utf8.convert(high + low), "\xF0\x9F\x98\x80");
    EXPECT_EQ(utf8.convert(std::u16string(u"\0\xFFFF\xFFFD", 3)),
              std::string("\0\xEF\xBF\xBF\xEF\xBF\xBD", 7));
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

TEST(Utf16Converter, BeginsInTheInitialShiftStateAfterAnError) {
    const Utf16Converter converter("ISO-2022-JP", false);
    EXPECT_EQ(converter.convert(u"\x65E5"), "\x1B$BF|\x1B(B") << "shifted in and out again";
    EXPECT_THROW(converter.convert(u"\x65E5" + high), std::range_error);
    EXPECT_EQ(converter.convert(u"a"), "a") << "nothing to shift out of";
}

TEST(Utf16Converter, ConvertsTextsLongerThanAnyPiece) {
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
    EXPECT_EQ(Utf16Converter("UTF-16LE", true).convert(text.utf16).size(), 2 * text.utf16.size());
}

/// Lets ICU's allocations fail during its lifetime.
class NoMemoryForIcu {
public:
    NoMemoryForIcu() {
        set([](const void*, std::size_t) -> void* { return nullptr; });
    }
    ~NoMemoryForIcu() {
        set([](const void*, std::size_t size) -> void* { return std::malloc(size); });
    }
    NoMemoryForIcu(const NoMemoryForIcu&) = delete;
    NoMemoryForIcu& operator=(const NoMemoryForIcu&) = delete;

private:
    static void set(UMemAllocFn* allocate) {
        UErrorCode status = U_ZERO_ERROR;
        u_setMemoryFunctions(
            nullptr, allocate,
            [](const void*, void* memory, std::size_t size) { return std::realloc(memory, size); },
            [](const void*, void* memory) { std::free(memory); }, &status);
        if (U_FAILURE(status)) {
            throw std::runtime_error("ICU takes no other memory functions");
        }
    }
};

TEST(Utf16Converter, ThrowsBadAllocWhereMemoryRunsOut) {
    for (const bool substitute : {true, false}) {
        // Once before, since ICU keeps what it needs for every converter.
        EXPECT_EQ(Utf16Converter("UTF-8", substitute).convert(u"a"), "a");
        {
            const NoMemoryForIcu no_memory;
            EXPECT_THROW(Utf16Converter("UTF-8", substitute), std::bad_alloc);
        }
        EXPECT_EQ(Utf16Converter("UTF-8", substitute).convert(u"a"), "a");
    }
}

} // namespace
} // namespace foundation::json::test
