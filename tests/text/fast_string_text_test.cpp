/// @file
/// Copying and escaping strings many bytes at a time: the result is the same as byte by byte, with
/// no read outside the string and no write beyond the room.
#include "text/fast_string_text.hpp"
#include "text/shuffled_string_text.hpp"

#include "support/edge_memory.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace foundation::json::detail {
namespace {

/// The result of copying: how many bytes were read, and what was written for them.
struct Copied {
    std::size_t count = 0;
    std::string text;

    bool operator==(const Copied& other) const {
        return count == other.count && text == other.text;
    }
};

std::ostream& operator<<(std::ostream& stream, const Copied& copied) {
    return stream << copied.count << " bytes as " << testing::PrintToString(copied.text);
}

// The rules: that of the fixed text, that of JSON alone, and both where bytes beyond ASCII stop.
using JsonEscapes = EscapeRule<Solidus::raw, BeyondAscii::plain>;
using CheckedEscapes = EscapeRule<Solidus::raw, BeyondAscii::special>;
using CheckedFixedEscapes = EscapeRule<Solidus::escaped, BeyondAscii::special>;

template <class Rule>
constexpr bool escapes_slash =
    std::is_same_v<Rule, FixedEscapes> || std::is_same_v<Rule, CheckedFixedEscapes>;
template <class Rule>
constexpr bool checks =
    std::is_same_v<Rule, CheckedEscapes> || std::is_same_v<Rule, CheckedFixedEscapes>;

template <class Rule>
bool stops_at(signed char byte) {
    return (byte >= 0 && byte < 0x20) || (byte < 0 && checks<Rule>);
}

/// The expected result, made byte by byte.
template <class Rule>
Copied copied_by_bytes(std::string_view content) {
    const std::string_view escaped = escapes_slash<Rule> ? "\b\t\n\f\r\"\\/" : "\b\t\n\f\r\"\\";
    constexpr std::string_view letters = "btnfr\"\\/";
    Copied result;
    for (const char byte : content) {
        const std::size_t index = escaped.find(byte);
        if (index != std::string_view::npos) {
            result.text += '\\';
            result.text += letters[index];
        } else if (stops_at<Rule>(static_cast<signed char>(byte))) {
            break;
        } else {
            result.text += byte;
        }
        ++result.count;
    }
    return result;
}

/// A way to copy: by blocks of vectors or of words, or the quickest that there is.
template <class BlockType, class EscapeRule>
struct By {
    using Bytes = BlockType;
    using Rule = EscapeRule;
};
template <class Rule>
using VectorBytes = By<Block, Rule>;
template <class Rule>
using PortableBytes = By<PortableBlock, Rule>;
template <class Rule>
using QuickestBytes = By<void, Rule>;

template <class Way>
constexpr bool is_quickest = std::is_void_v<typename Way::Bytes>;

/// Copies content that lies at an edge of memory into exactly the room that is asked for.
class EdgeCopier {
public:
    enum class Place { at_the_begin, at_the_end };

    /// Puts the content in place.
    char* place(std::string_view content, Place at) {
        size_ = content.size();
        begin_ = at == Place::at_the_end ? source_.end() - size_ : source_.begin();
        std::copy(content.begin(), content.end(), begin_);
        return begin_;
    }

    /// The content as copy_clean() copies it, with no more room than it takes.
    template <class Way>
    std::optional<std::string> copy_if_clean() {
        char* const out = target_.end() - size_;
        if (!copy_clean<typename Way::Rule, typename Way::Bytes>(out, begin_, size_)) {
            return std::nullopt;
        }
        return std::string(out, size_);
    }

    template <class Way>
    Copied copy() {
        char* const out = target_.end() - (2 * size_ + 16);
        EscapedCopy copied;
        if constexpr (is_quickest<Way>) {
            copied = copy_escaped_quickly<typename Way::Rule>(out, begin_, begin_ + size_);
        } else {
            copied =
                copy_escaped<typename Way::Rule, typename Way::Bytes>(out, begin_, begin_ + size_);
        }
        return {static_cast<std::size_t>(copied.from - begin_), {out, copied.out}};
    }

private:
    test::EdgeMemory source_;
    test::EdgeMemory target_;
    std::size_t size_ = 0;
    char* begin_ = nullptr;
};

constexpr EdgeCopier::Place places[] = {EdgeCopier::Place::at_the_begin,
                                        EdgeCopier::Place::at_the_end};

/// `size` bytes that need no escape; neighbours differ.
template <class Rule = FixedEscapes>
std::string clean_content(std::size_t size) {
    constexpr std::string_view clean =
        checks<Rule> ? "abcI !#.0[]\x7F{}zA+-" : "abc\xE9 !#.0[]\x7F\x80\xFFzA\xC3\xA9";
    std::string content;
    while (content.size() < size) {
        content += clean[content.size() % clean.size()];
    }
    return content;
}

template <class Way>
class CopyEscapedBy : public testing::Test {
protected:
    void expect_bytewise(const std::string& content) {
        for (const EdgeCopier::Place place : places) {
            copier.place(content, place);
            EXPECT_EQ(copier.template copy<Way>(), copied_by_bytes<typename Way::Rule>(content));
        }
    }

    EdgeCopier copier;
};

struct BytesNames {
    template <class Way>
    static std::string GetName(int) {
        using Rule = typename Way::Rule;
        std::string name = is_quickest<Way>                         ? "TheQuickestWay"
                           : std::is_same_v<Way, VectorBytes<Rule>> ? "WithVectors"
                                                                    : "WithWords";
        name += escapes_slash<Rule> ? "Fixed" : "Json";
        return name + (checks<Rule> ? "Checked" : "");
    }
};

using AllBytes = testing::Types<VectorBytes<FixedEscapes>, PortableBytes<FixedEscapes>,
                                QuickestBytes<FixedEscapes>, VectorBytes<JsonEscapes>,
                                PortableBytes<JsonEscapes>, QuickestBytes<JsonEscapes>,
                                VectorBytes<CheckedEscapes>, PortableBytes<CheckedEscapes>>;
TYPED_TEST_SUITE(CopyEscapedBy, AllBytes, BytesNames);

template <class Way>
Copied copied_at(EdgeCopier& copier, const std::string& content, EdgeCopier::Place place) {
    copier.place(content, place);
    return copier.template copy<Way>();
}

template <class Rule>
void expect_copied(const std::string& content, const Copied& copied) {
    EdgeCopier copier;
    for (const EdgeCopier::Place place : places) {
        EXPECT_EQ(copied_at<VectorBytes<Rule>>(copier, content, place), copied);
        EXPECT_EQ(copied_at<PortableBytes<Rule>>(copier, content, place), copied);
        if constexpr (!checks<Rule>) {
            EXPECT_EQ(copied_at<QuickestBytes<Rule>>(copier, content, place), copied);
        }
    }
}

TEST(CopyEscaped, WritesShortEscapesAndStopsAtOtherControlBytes) {
    struct Case {
        std::string content;
        Copied copied;
    };
    const Case cases[] = {
        {"", {0, ""}},
        {"a", {1, "a"}},
        {"/", {1, "\\/"}},
        {"\x01", {0, ""}},
        {"a\x01z", {1, "a"}},
        {std::string("a\0z", 3), {1, "a"}},
        {"a\"b\\c/d\be\tf\ng\fh\ri", {17, R"(a\"b\\c\/d\be\tf\ng\fh\ri)"}},
        {"\b\t\n\x0B\f\r", {3, R"(\b\t\n)"}},
        {"\x20\x7F\x80\xFF", {4, "\x20\x7F\x80\xFF"}},
        {"0123456789abcdef0123456789abcdef", {32, "0123456789abcdef0123456789abcdef"}},
        {"0123456789abcde/0123456789abcde\x1F", {31, R"(0123456789abcde\/0123456789abcde)"}},
    };
    for (const auto& [content, copied] : cases) {
        expect_copied<FixedEscapes>(content, copied);
    }
}

TEST(CopyEscaped, LeavesTheSlashWhereTheRuleSaysSo) {
    expect_copied<JsonEscapes>("a/b\"", {4, "a/b\\\""});
    expect_copied<JsonEscapes>("0123456789/bcde\\/\x7F\x80", {19, "0123456789/bcde\\\\/\x7F\x80"});
    expect_copied<CheckedEscapes>("////", {4, "////"});
    expect_copied<CheckedFixedEscapes>("/", {1, "\\/"});
}

TEST(CopyEscaped, StopsBeyondAsciiWhereTheRuleSaysSo) {
    expect_copied<CheckedEscapes>("a\x7F\x80", {2, "a\x7F"});
    expect_copied<CheckedEscapes>("\xFF", {0, ""});
    expect_copied<CheckedEscapes>("0123456789\"/ bcdef \xC3\xA9", {19, "0123456789\\\"/ bcdef "});
    expect_copied<CheckedFixedEscapes>("0123456789\"/ bcdef \xC3\xA9",
                                       {19, "0123456789\\\"\\/ bcdef "});
}

TYPED_TEST(CopyEscapedBy, FindsEveryByteAtEveryPosition) {
    for (std::size_t size = 0; size <= 40; ++size) {
        const std::string clean = clean_content<typename TypeParam::Rule>(size);
        this->expect_bytewise(clean);
        for (const EdgeCopier::Place place : places) {
            char* const content = this->copier.place(clean, place);
            for (std::size_t at = 0; at != size; ++at) {
                for (int byte = 0; byte <= 0xFF; ++byte) {
                    content[at] = static_cast<char>(byte);
                    ASSERT_EQ(this->copier.template copy<TypeParam>(),
                              copied_by_bytes<typename TypeParam::Rule>({content, size}));
                }
                content[at] = clean[at];
            }
        }
    }
}

TYPED_TEST(CopyEscapedBy, FindsEveryPairOfEscapes) {
    for (std::size_t size = 2; size <= 40; ++size) {
        for (std::size_t first = 0; first != size; ++first) {
            for (std::size_t second = first + 1; second != size; ++second) {
                for (const char last : {'\\', '\x1F'}) {
                    std::string content = clean_content<typename TypeParam::Rule>(size);
                    content[first] = '"';
                    content[second] = last;
                    this->expect_bytewise(content);
                }
            }
        }
    }
}

TYPED_TEST(CopyEscapedBy, NeedsNoMoreRoomThanTwiceTheContentAndSixteenBytes) {
    for (std::size_t size = 0; size <= 300; ++size) {
        for (const char byte : {'/', 'x', '\n', '\x01'}) {
            this->expect_bytewise(std::string(size, byte));
            this->expect_bytewise(std::string(size, '"') + byte);
        }
    }
}

TYPED_TEST(CopyEscapedBy, CopiesRandomContentAsByteByByte) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees random(seed, test::RandomTrees::Kinds::all);
    for (std::size_t i = test::test_repetitions(); i > 0 && !this->HasFailure(); --i) {
        std::string content = clean_content<typename TypeParam::Rule>(random.below(300));
        for (std::size_t escapes = random.below(6); escapes > 0 && !content.empty(); --escapes) {
            content[random.below(content.size())] = "\"\\/\b\t\n\f\r\x01\x1F"[random.below(10)];
        }
        this->expect_bytewise(content + random.string());
    }
}

template <class Way>
class CopyClean : public testing::Test {
protected:
    EdgeCopier copier;
};

using CleanBytes =
    testing::Types<VectorBytes<FixedEscapes>, PortableBytes<FixedEscapes>, VectorBytes<JsonEscapes>,
                   PortableBytes<JsonEscapes>, VectorBytes<CheckedEscapes>,
                   PortableBytes<CheckedEscapes>, VectorBytes<CheckedFixedEscapes>,
                   PortableBytes<CheckedFixedEscapes>>;
TYPED_TEST_SUITE(CopyClean, CleanBytes, BytesNames);

TYPED_TEST(CopyClean, CopiesContentThatStaysAsItIs) {
    for (std::size_t size = 0; size <= 300; ++size) {
        const std::string content = clean_content<typename TypeParam::Rule>(size);
        for (const EdgeCopier::Place place : places) {
            this->copier.place(content, place);
            EXPECT_EQ(this->copier.template copy_if_clean<TypeParam>(), content);
        }
    }
}

TYPED_TEST(CopyClean, RefusesEveryByteThatIsEscapedAtEveryPosition) {
    using Rule = typename TypeParam::Rule;
    const std::string_view escaped = escapes_slash<Rule> ? "\"\\/" : "\"\\";
    for (std::size_t size = 1; size <= 70; ++size) {
        const std::string clean = clean_content<typename TypeParam::Rule>(size);
        for (const EdgeCopier::Place place : places) {
            char* const content = this->copier.place(clean, place);
            for (std::size_t at = 0; at != size; ++at) {
                for (int byte = 0; byte <= 0xFF; ++byte) {
                    content[at] = static_cast<char>(byte);
                    const bool refused = stops_at<Rule>(static_cast<signed char>(content[at])) ||
                                         escaped.find(content[at]) != std::string_view::npos;
                    ASSERT_EQ(this->copier.template copy_if_clean<TypeParam>(),
                              refused ? std::nullopt
                                      : std::optional<std::string>(std::string(content, size)))
                        << "byte " << byte << " at " << at << " of " << size;
                }
                content[at] = clean[at];
            }
        }
    }
}

template <class Way>
class CountClean : public testing::Test {
protected:
    static std::size_t count(const char* content, std::size_t size) {
        return count_clean<typename Way::Rule, typename Way::Bytes>(content, content + size);
    }
};

TYPED_TEST_SUITE(CountClean, CleanBytes, BytesNames);

TYPED_TEST(CountClean, CountsTheBytesBeforeTheFirstThatIsEscaped) {
    for (std::size_t size = 16; size <= 70; ++size) {
        std::string content = clean_content<typename TypeParam::Rule>(size);
        const char* const begin = content.data();
        EXPECT_EQ(this->count(begin, size), size);
        content.back() = '"';
        for (std::size_t at = size; at-- > 0;) {
            const char clean = content[at];
            content[at] = '\x1F';
            ASSERT_EQ(this->count(begin, size), at) << "of " << size;
            content[at] = clean;
        }
    }
}

} // namespace
} // namespace foundation::json::detail
