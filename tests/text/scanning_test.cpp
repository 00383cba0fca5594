// Compares scanning sixteen bytes at a time, with and without vectors, with one byte at a time.
#include "support/edge_memory.hpp"

#include "text/byte_block.hpp"
#include "text/skipping.hpp"
#include "text/utf8.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::detail {
namespace {

bool is_plain_blank(char byte) {
    return std::string_view(" \t\r\n").find(byte) != std::string_view::npos;
}

bool is_plain_special(char byte) {
    const auto number = static_cast<unsigned char>(byte);
    return number < 0x20 || number >= 0x80 || byte == '"' || byte == '\\';
}

bool is_plain_structural(char byte) {
    return std::string_view("[]{},\"/").find(byte) != std::string_view::npos;
}

template <class Mask>
std::vector<std::size_t> indices(Mask mask) {
    std::vector<std::size_t> result;
    for (; !mask.empty(); mask.remove_first()) {
        result.push_back(mask.first());
    }
    return result;
}

template <class Predicate>
std::vector<std::size_t> plain_indices(const std::string& text, Predicate predicate) {
    std::vector<std::size_t> result;
    for (std::size_t i = 0; i != text.size(); ++i) {
        if (predicate(text[i])) {
            result.push_back(i);
        }
    }
    return result;
}

template <class Bytes>
class ByteBlocks : public testing::Test {};

using BlockTypes = testing::Types<Block, PortableBlock>;

struct BlockNames {
    template <class Bytes>
    static std::string GetName(int index) {
        return index == 0 ? "OfThisMachine" : "OfWords";
    }
};

TYPED_TEST_SUITE(ByteBlocks, BlockTypes, BlockNames);

TYPED_TEST(ByteBlocks, ClassifyEveryByteAtEveryPosition) {
    for (int byte = 0; byte != 256; ++byte) {
        for (std::size_t place = 0; place != TypeParam::size; ++place) {
            for (const char other : {'x', ' ', '"', '\0', '\xFF'}) {
                std::string text(TypeParam::size, other);
                text[place] = static_cast<char>(byte);
                const TypeParam block(text.data());
                const auto not_blank = [](char c) { return !is_plain_blank(c); };
                EXPECT_EQ(indices(block.not_blank()), plain_indices(text, not_blank)) << byte;
                EXPECT_EQ(indices(block.special_in_string()), plain_indices(text, is_plain_special))
                    << byte;
                EXPECT_EQ(indices(block.structural()), plain_indices(text, is_plain_structural))
                    << byte;
            }
        }
    }
}

TYPED_TEST(ByteBlocks, ReadTheDigitsThatTheyBeginWith) {
    const std::string digits = "9081726354900001";
    for (std::size_t count = 0; count <= TypeParam::size; ++count) {
        for (int byte = 0; byte != 256; ++byte) {
            if (count != TypeParam::size && byte >= '0' && byte <= '9') {
                continue;
            }
            std::string text = digits.substr(0, count);
            text.resize(TypeParam::size, static_cast<char>(byte));
            const TypeParam values = TypeParam(text.data()).digit_values();
            const auto others = values.not_digit_values();
            ASSERT_EQ(others.empty() ? TypeParam::size : others.first(), count) << byte;
            const std::string with_zeros = digits.substr(0, count) + std::string(16 - count, '0');
            ASSERT_EQ(values.decimal(count), std::stoull(with_zeros)) << text;
        }
    }
}

TYPED_TEST(ByteBlocks, AreAsciiIfNoByteIsBeyondIt) {
    for (std::size_t place = 0; place != TypeParam::size; ++place) {
        for (const char byte : {'\0', '\x7f', '\x80', '\xff'}) {
            std::string text(TypeParam::size, 'a');
            text[place] = byte;
            const bool is_ascii = static_cast<unsigned char>(byte) < 0x80;
            EXPECT_EQ(TypeParam(text.data()).is_ascii(), is_ascii) << place;
            const TypeParam both = TypeParam(text.data()) | TypeParam(0, 0);
            EXPECT_EQ(both.is_ascii(), is_ascii) << place;
        }
    }
}

TYPED_TEST(ByteBlocks, SkipToTheFirstOtherByteAndReadNothingBeyondTheEnd) {
    const test::EdgeMemory memory;
    for (std::size_t size = 0; size != 70; ++size) {
        char* const begin = memory.end() - size;
        for (std::size_t place = 0; place <= size; ++place) {
            std::fill(begin, memory.end(), ' ');
            if (place != size) {
                begin[place] = 'x';
            }
            EXPECT_EQ(skip_blanks<TypeParam>(begin, memory.end()), begin + place);
            std::fill(begin, memory.end(), 'x');
            if (place != size) {
                begin[place] = '"';
            }
            EXPECT_EQ(skip_clean<TypeParam>(begin, memory.end()), begin + place);
        }
    }
}

// ---- UTF-8 -----------------------------------------------------------------------------------

/// The UTF-8 sequences of all characters beyond ASCII, by their first byte.
std::map<char, std::vector<std::string>> all_sequences() {
    std::map<char, std::vector<std::string>> result;
    for (std::uint32_t code = 0x80; code <= 0x10FFFF; ++code) {
        if (code < 0xD800 || code > 0xDFFF) {
            char bytes[4];
            const char* const end = put_utf8(bytes, code);
            result[bytes[0]].push_back(std::string(static_cast<const char*>(bytes), end));
        }
    }
    return result;
}

/// Finds how much of a text's first sequence is well-formed, by a search among all sequences.
Utf8Sequence plain_sequence(const std::vector<std::string>& sequences, const std::string& text) {
    std::size_t best = 0;
    // The sequences that share the longest prefix with the text are its neighbours.
    auto next = std::upper_bound(sequences.begin(), sequences.end(), text);
    for (int i = 0; i != 2 && !sequences.empty(); ++i) {
        if (next != sequences.end()) {
            const auto different =
                std::mismatch(next->begin(), next->end(), text.begin(), text.end());
            if (different.first == next->end()) {
                return {next->size(), true};
            }
            best = std::max(best, static_cast<std::size_t>(different.first - next->begin()));
        }
        if (next != sequences.begin()) {
            --next;
        }
    }
    return {best, false};
}

TEST(Utf8, AcceptsTheSequencesOfCharactersAndNoOthers) {
    auto sequences = all_sequences();
    std::vector<std::string> texts;
    const int second_bytes[] = {0x00, 0x28, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF};
    for (const int lead : {0x80, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF,
                           0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF}) {
        const std::string begin(1, static_cast<char>(lead));
        texts.push_back(begin);
        for (const int second : second_bytes) {
            const std::string two = begin + static_cast<char>(second);
            texts.push_back(two);
            texts.push_back(two + '\x80');
            texts.push_back(two + '\xBF' + '\x80');
            texts.push_back(two + '\x80' + 'x');
            texts.push_back(two + '\xC2' + '\x80');
        }
    }
    for (const std::string& text : texts) {
        const Utf8Sequence expected = plain_sequence(sequences[text[0]], text);
        const Utf8Sequence sequence = utf8_sequence(text.data(), text.data() + text.size());
        EXPECT_EQ(sequence.length, expected.length) << testing::PrintToString(text);
        EXPECT_EQ(sequence.complete, expected.complete) << testing::PrintToString(text);
    }
}

TEST(Utf8, EveryCharacterIsWrittenAndReadBack) {
    for (std::uint32_t code = 0; code <= 0x10FFFF; ++code) {
        char bytes[4];
        const auto size = static_cast<std::size_t>(put_utf8(bytes, code) - bytes);
        ASSERT_EQ(code_point({bytes, size}), code);
        ASSERT_EQ(size, code < 0x80 ? 1u : code < 0x800 ? 2u : code < 0x10000 ? 3u : 4u);
    }
}

} // namespace
} // namespace foundation::json::detail
