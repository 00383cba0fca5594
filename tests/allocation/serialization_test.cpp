// Running out of memory while a value is written: the value stays as it was, no truncated text goes
// unnoticed, and the state of a stream shows the failure.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/fixed_stream.hpp"
#include "support/locales.hpp"
#include "support/values_of_each_kind.hpp"
#include "support/write_as.hpp"

#include <foundation/json/builders.hpp>
#include <foundation/json/serializer.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ios>
#include <locale>
#include <memory>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

constexpr Layout layouts[] = {Layout::compact, Layout::pretty};

// ---- Into a string -------------------------------------------------------------------------

/// Makes the text of a value with every allocation failing in turn. Returns how many could.
std::size_t failures_of_text(const Value& value, Layout layout) {
    struct Operands {
        const Value* value;
        std::string text;
    };
    const std::string expected = text_of(value, layout);
    const std::string description = describe(value);
    return fail_each_allocation(
        [&] {
            return Operands{&value, "untouched"};
        },
        [&](Operands& o) { o.text = text_of(*o.value, layout); },
        [&](const Operands& o) {
            EXPECT_EQ(o.text, "untouched");
            EXPECT_EQ(describe(*o.value), description);
        },
        [&](const Operands& o) { EXPECT_EQ(o.text, expected); });
}

/// A document whose text is longer than any small buffer.
Value long_document() {
    Value list((Element(1), Element("a string that is longer than a string's own storage")));
    for (int i = 0; i < 200; ++i) {
        list.push((Property("key") = "value"));
    }
    return list;
}

/// A document whose text is longer than many buffers.
Value huge_document() {
    return Array(300, Value(std::string(300, 'x') + "/\x01"));
}

TEST(TextOutOfMemory, IsNotMadeAtAll) {
    for (const Layout layout : layouts) {
        EXPECT_GE(failures_of_text(long_document(), layout), 1u);
        EXPECT_GE(failures_of_text(huge_document(), layout), 10u) << "many buffers are needed";
    }
}

TEST(TextOutOfMemory, IsNotMadeForAnyKind) {
    for (const Layout layout : layouts) {
        for (const Sample& sample : other_samples()) {
            SCOPED_TRACE(sample.kind);
            EXPECT_EQ(failures_of_text(sample.value, layout),
                      text_of(sample.value, layout).size() > std::string().capacity() ? 1u : 0u)
                << "the result itself";
        }
    }
}

// By default, a string stream does not report that it has run out of memory.
TEST(TextOutOfMemory, IsNeverCutShortInAnotherLocaleEither) {
    const ScopedGlobalLocale global(grouping_locale("\3"));
    for (const Layout layout : layouts) {
        EXPECT_GE(failures_of_text(long_document(), layout), 1u);
        EXPECT_GE(failures_of_text(Array{1234567LL, std::string(5000, 'x')}, layout), 2u);
    }
}

/// Takes memory for each integer.
class AllocatingNumPut : public std::num_put<char> {
protected:
    iter_type do_put(iter_type out, std::ios_base&, char,
                     unsigned long long number) const override {
        const std::vector<char> digits(100, static_cast<char>('0' + number));
        return std::copy_n(digits.begin(), 3, out);
    }
};

// A stream does not report that by default, either.
TEST(TextOutOfMemory, IsNotCutShortWhereAFacetNeedsTheMemory) {
    const ScopedGlobalLocale global(std::locale(std::locale::classic(), new AllocatingNumPut));
    EXPECT_EQ(serialize(Array{1ULL, 2ULL}), "[111,222]");
    for (const Layout layout : layouts) {
        EXPECT_GE(failures_of_text(Array{1ULL, 2ULL}, layout), 2u);
    }
}

// ---- Onto a stream -------------------------------------------------------------------------

/// Calls a function that writes onto a string stream. Where memory runs out, the streams of some
/// standard libraries let that exception pass, those of others throw their own.
template <class Write>
void throwing_bad_alloc(Write write_onto) {
    try {
        write_onto();
    } catch (const std::ios_base::failure&) {
        throw std::bad_alloc();
    }
}

/// With a width, the reference writes the text, piece by piece; without it, the fast path does.
constexpr std::streamsize widths[] = {0, 1};

/// Expects the first part of a text, or all of it.
void expect_first_part(const std::string& part, const std::string& text) {
    EXPECT_EQ(part, text.substr(0, part.size()));
}

/// Writes a text onto a string stream, with every allocation failing in turn.
template <class Write>
std::size_t failures_of_string_stream(Layout layout, std::streamsize width, Write write_onto) {
    struct Operands {
        Value value;
        std::optional<std::ostringstream> stream;
    };
    const std::string expected = text_of(long_document(), layout);
    return fail_each_allocation(
        [] {
            return Operands{long_document(), std::nullopt};
        },
        [&](Operands& o) {
            o.stream.emplace();
            o.stream->width(width);
            write_onto(*o.stream, o.value);
        },
        [&](const Operands& o) {
            EXPECT_EQ(o.value, long_document());
            ASSERT_TRUE(o.stream.has_value());
            expect_first_part(o.stream->str(), expected);
            EXPECT_EQ(o.stream->flags(), std::ios_base::dec | std::ios_base::skipws);
        },
        [&](const Operands& o) {
            EXPECT_EQ(o.stream->str(), expected);
            EXPECT_TRUE(o.stream->good());
        });
}

TEST(StringStreamOutOfMemory, GoesBad) {
    for (const Layout layout : layouts) {
        for (const std::streamsize width : widths) {
            const std::size_t failures = failures_of_string_stream(
                layout, width, [&](std::ostream& stream, const Value& value) {
                    write(stream, value, layout);
                    if (stream.bad()) {
                        throw std::bad_alloc(); // which the stream has not reported
                    }
                });
            EXPECT_GE(failures, 3u);
        }
    }
}

TEST(StringStreamOutOfMemory, ThrowsIfAsked) {
    for (const Layout layout : layouts) {
        for (const std::streamsize width : widths) {
            const std::size_t failures = failures_of_string_stream(
                layout, width, [&](std::ostream& stream, const Value& value) {
                    stream.exceptions(std::ios_base::badbit);
                    throwing_bad_alloc([&] { write(stream, value, layout); });
                });
            EXPECT_GE(failures, 3u);
        }
    }
}

/// Deep enough for indentation that does not fit into a string's own storage.
Value deep_document() {
    const Value deep = Array{1, Array{2, Array{Object{{"key", Array{0.1, 1e6f, 1LL}}}}}};
    return Array{1, Array{"a\x01z", Array{Array{deep}}}};
}

/// Writes with every allocation failing in turn, onto a stream that needs none.
std::size_t failures_of_fixed_stream(Layout layout, std::streamsize width) {
    struct Operands {
        Value value;
        std::unique_ptr<FixedStream> stream;
    };
    const std::string expected = text_of(deep_document(), layout);
    const auto make_stream = [] { return std::make_unique<FixedStream>(10000); };
    std::unique_ptr<FixedStream> another;
    return fail_each_allocation(
        [&] {
            another = make_stream();
            return Operands{deep_document(), make_stream()};
        },
        [&](Operands& o) {
            if (!o.stream->text().empty()) {
                o.stream.swap(another); // tried again
            }
            o.stream->width(width);
            write(*o.stream, o.value, layout);
        },
        [&](const Operands& o) {
            EXPECT_EQ(o.value, deep_document());
            expect_first_part(o.stream->text(), expected);
            EXPECT_EQ(o.stream->flags(), std::ios_base::dec | std::ios_base::skipws);
            EXPECT_EQ(o.stream->width(), 0);
        },
        [&](const Operands& o) {
            EXPECT_EQ(o.stream->text(), expected);
            EXPECT_TRUE(o.stream->good());
        });
}

TEST(StreamOutOfMemory, CannotHappenToAStreamThatHasAllItNeeds) {
    EXPECT_EQ(failures_of_fixed_stream(Layout::compact, 0), 0u);
    EXPECT_EQ(failures_of_fixed_stream(Layout::pretty, 0), 0u);
}

TEST(StreamOutOfMemory, CannotHappenToCompactTextPieceByPiece) {
    EXPECT_EQ(failures_of_fixed_stream(Layout::compact, 1), 0u);
}

TEST(StreamOutOfMemory, EndsPrettyTextWithinItsIndentation) {
    EXPECT_GE(failures_of_fixed_stream(Layout::pretty, 1), 5u) << "one for every deep indentation";
}

} // namespace
} // namespace foundation::json::test
