/// @file
/// Whether a text is UTF-8: sequence by sequence and in blocks, compared with the table of
/// well-formed sequences that the Unicode standard has.
#include "text/utf8_validation.hpp"

#include "support/edge_memory.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace foundation::json::detail {
namespace {

struct Row {
    unsigned char first[2];
    unsigned char second[2];
    std::size_t length;
};

/// Further bytes are from 80 to BF.
constexpr Row well_formed[] = {
    {{0x00, 0x7F}, {0x00, 0x00}, 1}, {{0xC2, 0xDF}, {0x80, 0xBF}, 2},
    {{0xE0, 0xE0}, {0xA0, 0xBF}, 3}, {{0xE1, 0xEC}, {0x80, 0xBF}, 3},
    {{0xED, 0xED}, {0x80, 0x9F}, 3}, {{0xEE, 0xEF}, {0x80, 0xBF}, 3},
    {{0xF0, 0xF0}, {0x90, 0xBF}, 4}, {{0xF1, 0xF3}, {0x80, 0xBF}, 4},
    {{0xF4, 0xF4}, {0x80, 0x8F}, 4},
};

bool is_within(char byte, const unsigned char (&limits)[2]) {
    const auto code = static_cast<unsigned char>(byte);
    return code >= limits[0] && code <= limits[1];
}

bool matches(std::string_view text, const Row& row) {
    if (text.size() < row.length || !is_within(text[0], row.first)) {
        return false;
    }
    for (std::size_t i = 1; i < row.length; ++i) {
        constexpr unsigned char continuation[2] = {0x80, 0xBF};
        if (!is_within(text[i], i == 1 ? row.second : continuation)) {
            return false;
        }
    }
    return true;
}

/// The number of bytes before the first sequence that is not in the table.
std::size_t good_bytes(std::string_view text) {
    std::size_t count = 0;
    while (count != text.size()) {
        const auto* const row =
            std::find_if(std::begin(well_formed), std::end(well_formed),
                         [&](const Row& each) { return matches(text.substr(count), each); });
        if (row == std::end(well_formed)) {
            break;
        }
        count += row->length;
    }
    return count;
}

/// Looks at texts that lie at the edges of memory.
class Utf8Validation : public testing::Test {
protected:
    void expect_the_rule(std::string_view text) {
        const std::size_t good = good_bytes(text);
        for (char* const begin : {memory_.begin(), memory_.end() - text.size()}) {
            std::copy(text.begin(), text.end(), begin);
            const char* const end = begin + text.size();
            ASSERT_EQ(static_cast<std::size_t>(find_bad_utf8(begin, end) - begin), good)
                << testing::PrintToString(text);
            ASSERT_EQ(is_utf8(begin, end), good == text.size()) << testing::PrintToString(text);
#if defined(FOUNDATION_JSON_SHUFFLES)
            if (has_shuffles()) {
                ASSERT_EQ(is_utf8_by_shuffles(begin, end), good == text.size())
                    << testing::PrintToString(text);
            }
#endif
            expect_to_skip(text, static_cast<std::size_t>(skip_utf8<Block>(begin, end) - begin));
            ASSERT_EQ(skip_utf8<PortableBlock>(begin, end), begin);
        }
    }

private:
    /// Where nothing is wrong up to the byte that ends a string, all of it is skipped; else up to a
    /// character that is at most a block and a character before what is wrong.
    static void expect_to_skip(std::string_view text, std::size_t skipped) {
        const std::string_view string = text.substr(0, end_of_string(text));
        const std::size_t good = good_bytes(string);
        ASSERT_LE(skipped, good) << testing::PrintToString(text);
        ASSERT_EQ(good_bytes(text.substr(0, skipped)), skipped) << testing::PrintToString(text);
#if defined(FOUNDATION_JSON_SHUFFLES)
        if (has_shuffles()) {
            const std::size_t left = good == string.size() ? 0 : Block::size + 3;
            ASSERT_LE(good - skipped, left) << testing::PrintToString(text);
        }
#endif
    }

    static std::size_t end_of_string(std::string_view text) {
        const auto* const found = std::find_if(text.begin(), text.end(), [](char byte) {
            return byte == '"' || byte == '\\' || static_cast<unsigned char>(byte) < 0x20;
        });
        return static_cast<std::size_t>(found - text.begin());
    }

    test::EdgeMemory memory_;
};

TEST_F(Utf8Validation, AcceptsAndRefusesLiteralStrings) {
    const struct {
        std::string text;
        bool good;
    } rows[] = {
        {"", true},
        {"plain", true},
        {"caf\xC3\xA9", true},
        {"\xE6\x97\xA5\xE6\x9C\xAC", true},
        {"\xF0\x9F\x99\x82", true},
        {"\xEF\xBF\xBF", true},
        {"\xF4\x8F\xBF\xBF", true},
        {"caf\xC3", false},
        {"\xE6\x97", false},
        {"\xF0\x9F\x99", false},
        {"\x80", false},
        {"\xC0\x80", false},
        {"\xE0\x9F\xBF", false},
        {"\xED\xA0\x80", false},
        {"\xF0\x8F\xBF\xBF", false},
        {"\xF4\x90\x80\x80", false},
        {"\xF5\x80\x80\x80", false},
        {"\xFF", false},
        {"\xC3\xA9\xA9", false},
        {"\xE6\x97\xA5\xA5", false},
    };
    for (const auto& [text, good] : rows) {
        EXPECT_EQ(is_utf8(text.data(), text.data() + text.size()), good) << text;
        expect_the_rule(text);
        // In blocks, too.
        const std::string longer = text + std::string(40, ' ');
        EXPECT_EQ(is_utf8(longer.data(), longer.data() + longer.size()), good) << text;
    }
}

/// One or several bytes of each class that matters.
constexpr unsigned char notable[] = {0x00, 0x22, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0,
                                     0xBF, 0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED,
                                     0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xF8, 0xFF};

TEST_F(Utf8Validation, FollowsTheRuleForFourBytesInEveryBlock) {
    for (const std::size_t before : {0U, 13U, 14U, 15U, 16U}) {
        std::string text(before + 4, 'x');
        for (const unsigned char a : notable) {
            for (const unsigned char b : notable) {
                for (const unsigned char c : notable) {
                    constexpr unsigned char last[] = {0x20, 0x80, 0xBF, 0xC2, 0xF0};
                    for (const unsigned char d : last) {
                        const unsigned char bytes[] = {a, b, c, d};
                        std::memcpy(&text[before], bytes, sizeof bytes);
                        expect_the_rule(text);
                    }
                }
            }
            ASSERT_FALSE(HasFailure());
        }
    }
}

TEST_F(Utf8Validation, FollowsTheRuleForEveryPairOfBytes) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const char bytes[] = {static_cast<char>(first), static_cast<char>(second)};
            expect_the_rule(std::string_view(bytes, 2));
            expect_the_rule(std::string(15, 'a') + std::string(bytes, 2) + std::string(15, 'a'));
        }
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(Utf8Validation, AcceptsEveryCharacter) {
    std::string text;
    for (std::uint32_t code = 0; code < 0x110000; code += code < 0x3000 ? 1 : 37) {
        if (code >= 0xD800 && code < 0xE000) {
            continue;
        }
        char bytes[4];
        text.append(bytes, put_utf8(bytes, code));
    }
    EXPECT_EQ(good_bytes(text), text.size());
    EXPECT_TRUE(is_utf8(text.data(), text.data() + text.size()));
}

class RandomUtf8Validation : public Utf8Validation {};

TEST_F(RandomUtf8Validation, FollowsTheRule) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees random(seed, test::RandomTrees::Kinds::all);
    for (std::size_t i = test::test_repetitions(); i > 0 && !HasFailure(); --i) {
        std::string text;
        for (std::size_t count = random.below(60); count > 0; --count) {
            std::uint32_t code = 0;
            do {
                constexpr std::uint32_t limits[] = {0x80, 0x800, 0x10000, 0x110000};
                code = static_cast<std::uint32_t>(random.below(limits[random.below(4)]));
            } while (code >= 0xD800 && code < 0xE000);
            char bytes[4];
            text.append(bytes, put_utf8(bytes, code));
        }
        expect_the_rule(text);
        if (!text.empty()) {
            text[random.below(text.size())] = static_cast<char>(notable[random.below(27)]);
            expect_the_rule(text);
        }
    }
}

} // namespace
} // namespace foundation::json::detail
