/// @file
/// Text that goes through buffers: the same bytes, and the same effects on a stream, as insertions
/// piece by piece.
#include "serialization/buffered_output.hpp"

#include "serialization/layout.hpp"
#include "serialization/stream_output.hpp"
#include "support/locales.hpp"
#include "support/probe_stream.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"
#include "support/tree.hpp"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ios>
#include <locale>
#include <sstream>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace foundation::json::detail {
namespace {

using std::ios_base;
using test::ProbeStream;
using test::Refusal;

// ---- Pieces --------------------------------------------------------------------------------

// A text, given as the calls that a layout makes. It ends in a bracket, as finish() requires.

struct LineEnd {};
struct Spaces {
    std::size_t count;
};
using Piece =
    std::variant<LineEnd, Spaces, bool, double, float, long long, unsigned long long, std::string>;
using Pieces = std::vector<Piece>;

template <class Output>
class WritePiece {
public:
    using Cursor = typename Output::Cursor;

    WritePiece(Output& output, Cursor at) : output_(output), at_(at) {}

    Cursor operator()(LineEnd) const { return output_.line_end(at_); }
    Cursor operator()(Spaces spaces) const { return output_.spaces(at_, spaces.count); }
    Cursor operator()(bool flag) const {
        return flag ? output_.text(at_, "true") : output_.text(at_, "false");
    }
    Cursor operator()(const std::string& text) const { return output_.string(at_, text); }

    template <class Number>
    Cursor operator()(Number number) const {
        if constexpr (std::is_floating_point_v<Number>) {
            return output_.number(at_, FloatingBits(number));
        } else {
            return output_.number(at_, number);
        }
    }

private:
    Output& output_;
    Cursor at_;
};

template <class Output>
auto write_pieces(Output& output, typename Output::Cursor at, const Pieces& pieces) {
    for (const Piece& piece : pieces) {
        at = std::visit(WritePiece<Output>(output, at), piece);
    }
    return output.text(at, "]");
}

void write_by_the_reference(std::ostream& stream, const Pieces& pieces) {
    StreamOutput output(stream);
    write_pieces(output, {}, pieces);
}

void write_buffered(std::ostream& stream, const Pieces& pieces) {
    BufferedStreamOutput output(stream);
    output.finish(write_pieces(output, output.start(), pieces));
}

std::string string_text(const Pieces& pieces) {
    StringOutput output;
    return output.take(write_pieces(output, output.start(), pieces));
}

/// Everything that a caller can see of a stream after a write, flushes included.
std::string outcome(ProbeStream& stream, const std::function<void(std::ostream&)>& write) {
    std::string thrown = "nothing";
    try {
        write(stream);
    } catch (const test::ProbeFailure&) {
        thrown = "the buffer's exception";
    } catch (const ios_base::failure&) {
        thrown = "the stream's failure";
    }
    std::ostringstream result;
    result << stream.log() << "\nstate " << stream.rdstate() << ", flags " << stream.flags()
           << ", width " << stream.width() << ", fill " << stream.fill() << ", thrown: " << thrown;
    return result.str();
}

/// Expects the same text of all three outputs.
void expect_same_text(const Pieces& pieces) {
    ProbeStream reference;
    ProbeStream buffered;
    const std::string expected =
        outcome(reference, [&](std::ostream& stream) { write_by_the_reference(stream, pieces); });
    EXPECT_EQ(outcome(buffered, [&](std::ostream& stream) { write_buffered(stream, pieces); }),
              expected);
    EXPECT_EQ(string_text(pieces), reference.bytes());
}

// ---- Texts ---------------------------------------------------------------------------------

TEST(BufferedOutput, WritesEveryPiece) {
    const Pieces pieces = {true,      LineEnd(),  false,     Spaces{4}, 1.5, 0.5f,
                           LLONG_MIN, ULLONG_MAX, "a/\x01z", Spaces{0}, ""};
    const std::string text = "true\nfalse    1.50.5-922337203685477580818446744073709551615"
                             R"("a\/\u0001z"""])";
    EXPECT_EQ(string_text(pieces), text);
    std::ostringstream stream;
    write_buffered(stream, pieces);
    EXPECT_EQ(stream.str(), text);
    expect_same_text(pieces);
}

TEST(BufferedOutput, HasTheReferenceTextOfNumbersThatTheFastPathLeavesOut) {
    EXPECT_EQ(string_text({5e-324, 2.2250738585072009e-308, FLT_MAX, -FLT_MAX, 1.4e-45f, 1e-40f,
                           -2.5e-310}),
              "4.94065645841247E-324"
              "2.2250738585072009E-308"
              "3.402823466E+38"
              "-3.402823466E+38"
              "1.4013E-45"
              "9.99995E-41"
              "-2.50000000000002E-310]");
}

TEST(BufferedOutput, WritesControlBytesAsTheStreamDoes) {
    std::string every_byte;
    for (int byte = 0; byte <= 0xFF; ++byte) {
        every_byte += static_cast<char>(byte);
    }
    expect_same_text({every_byte, LineEnd(), every_byte + every_byte});
    EXPECT_EQ(string_text({std::string("\0\x01\x07\x0B\x0E\x10\x1F", 7)}),
              R"("\u0000\u0001\u0007\u000b\u000e\u0010\u001f"])");
}

// ---- Edges of buffers ----------------------------------------------------------------------

/// Every kind of piece, to follow a string.
std::vector<Pieces> endings() {
    return {
        {},
        {LineEnd()},
        {Spaces{1}, Spaces{300}, true},
        {-1.2345678901234567e-300, -1.2345678e-30f},
        {5e-324, FLT_MAX, 1e6},
        {LLONG_MIN, ULLONG_MAX, 0LL},
        {""},
        {"\x01", true, std::string("\0\0", 2)},
        {std::string(40, '/')},
        {std::string(255, 'x') + "\x1F" + std::string(300, '"')},
    };
}

/// Expects the same text for every ending behind a string of `size` bytes.
void expect_same_text_behind(std::size_t size, char byte) {
    for (const Pieces& ending : endings()) {
        Pieces pieces = {std::string(size, byte)};
        pieces.insert(pieces.end(), ending.begin(), ending.end());
        expect_same_text(pieces);
    }
}

// Buffers hold 4096 and 8192 bytes; more room is made from 1 to 544 bytes before their end.
TEST(BufferedOutput, LosesNothingWhereABufferEnds) {
    for (const std::size_t end : {4096u, 8192u}) {
        for (const std::size_t room : {0u, 256u, 512u, 544u}) {
            for (std::size_t distance = room; distance < room + 50; distance += 1 + room / 100) {
                expect_same_text_behind(end - distance, 'x');
            }
        }
        for (std::size_t beyond = 0; beyond < 10; ++beyond) {
            expect_same_text_behind(end + beyond, 'x');
        }
    }
}

TEST(BufferedOutput, LosesNothingInStringsOfEveryLengthAboutABlock) {
    for (const std::size_t blocks : {1u, 2u, 4u, 16u, 32u}) {
        for (std::size_t size = 256 * blocks - 4; size <= 256 * blocks + 4; ++size) {
            for (const char byte : {'x', '/', '\x01'}) {
                const std::string last(1, byte);
                expect_same_text({std::string(size, 'x') + last});
                expect_same_text({last + std::string(size, 'x') + last + last});
                expect_same_text({std::string(size, byte)});
            }
        }
    }
}

TEST(BufferedOutput, LosesNothingInLongStringsWhereverTheyAreFirstEscaped) {
    for (const std::size_t size : {1023U, 1024U, 1025U, 1039U, 1040U, 5000U, 20000U}) {
        expect_same_text({true, std::string(size, 'x'), 0.5, std::string(size, 'y'), 5LL});
        for (const std::size_t at : {std::size_t{0}, std::size_t{1}, size / 2, std::size_t{1022},
                                     std::size_t{1023}, size - 17, size - 16, size - 1}) {
            for (const char byte : {'/', '\n', '\x01'}) {
                std::string text(size, 'x');
                text[at] = byte;
                expect_same_text({text, false, text});
            }
        }
    }
}

TEST(BufferedOutput, WritesAControlByteAtEveryDistanceFromTheEndOfABuffer) {
    for (const std::size_t end : {4096u, 8192u}) {
        for (std::size_t size = end - 20; size < end + 4; ++size) {
            expect_same_text({std::string(size, 'x') + "\x01"});
            expect_same_text({std::string(size, 'x'), "\x01", std::string(600, '\x02')});
        }
    }
}

TEST(BufferedOutput, WritesMoreSpacesThanABufferHolds) {
    for (const std::size_t count :
         {1u, 255u, 256u, 257u, 511u, 512u, 513u, 4095u, 4096u, 8191u, 8192u, 8193u, 100000u}) {
        expect_same_text(Pieces(1, Spaces{count}));
        expect_same_text({true, Spaces{count}, "x", LineEnd(), Spaces{count}, Spaces{count}});
    }
    EXPECT_EQ(string_text({Spaces{20000}}), std::string(20000, ' ') + "]");
}

TEST(BufferedOutput, KeepsTheOrderThroughManyBuffers) {
    Pieces pieces(100000);
    std::string text;
    long long number = 1000000;
    for (Piece& piece : pieces) {
        piece = number;
        text += std::to_string(number++);
    }
    EXPECT_EQ(string_text(pieces), text + "]");
    std::ostringstream stream;
    write_buffered(stream, pieces);
    EXPECT_EQ(stream.str(), text + "]");
}

// ---- Values --------------------------------------------------------------------------------

template <Layout layout>
void expect_same_text_of_value(const Value& value) {
    ProbeStream reference;
    StreamOutput reference_output(reference);
    LayoutWriter<StreamOutput, layout>(reference_output).write({}, value);

    ProbeStream buffered;
    BufferedStreamOutput buffered_output(buffered);
    buffered_output.finish(LayoutWriter<BufferedStreamOutput, layout>(buffered_output)
                               .write(buffered_output.start(), value));
    EXPECT_EQ(buffered.log(), reference.log());
    EXPECT_EQ(buffered.fill(), reference.fill());

    StringOutput string;
    EXPECT_EQ(string.take(LayoutWriter<StringOutput, layout>(string).write(string.start(), value)),
              reference.bytes());
}

TEST(BufferedOutput, IndentsDeeplyNestedValues) {
    Value value(Array{});
    for (int level = 0; level < 400; ++level) {
        Value outer(level % 2 == 0 ? Value(Array{1}) : Value(Object{{"name", Value()}}));
        (level % 2 == 0 ? outer[0] : outer["name"]).swap(value);
        value.swap(outer);
    }
    expect_same_text_of_value<Layout::fixed_pretty>(value);
    expect_same_text_of_value<Layout::fixed>(value);
}

TEST(RandomBufferedOutput, HasTheReferenceTextOfValues) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees trees(seed, test::RandomTrees::Kinds::all);
    for (std::size_t i = test::test_repetitions() / 20; i > 0 && !HasFailure(); --i) {
        test::Elements elements;
        for (std::size_t count = trees.below(40); count > 0; --count) {
            elements.push_back(trees.tree());
        }
        const Value value = test::to_value({elements});
        expect_same_text_of_value<Layout::fixed_pretty>(value);
        expect_same_text_of_value<Layout::fixed>(value);
    }
}

// ---- Streams in many states, and failing ones ----------------------------------------------

class RandomPieces {
public:
    explicit RandomPieces(std::uint64_t seed) : random(seed, test::RandomTrees::Kinds::all) {}

    Pieces pieces() {
        Pieces result;
        for (std::size_t count = random.below(20); count > 0; --count) {
            result.push_back(piece());
        }
        return result;
    }

    test::RandomTrees random;

private:
    Piece piece() {
        switch (random.below(10)) {
        case 0:
            return LineEnd();
        case 1:
            return Spaces{random.below(random.once_in(20) ? 10000 : 20)};
        case 2:
            return random.once_in(2);
        case 3:
            return random.number<double>();
        case 4:
            return random.number<float>();
        case 5:
            return static_cast<long long>(random.below(SIZE_MAX)) >> random.below(64);
        case 6:
            return static_cast<unsigned long long>(random.below(SIZE_MAX)) >> random.below(64);
        case 7:
            return std::string(random.below(random.once_in(5) ? 10000 : 600), 'x') +
                   random.string();
        default:
            return random.string();
        }
    }
};

TEST(RandomBufferedOutput, LeavesAnyStreamThatItAppliesToAsTheReferenceDoes) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomPieces random(seed);
    test::RandomTrees& choice = random.random;
    for (std::size_t i = test::test_repetitions() / 2; i > 0 && !HasFailure(); --i) {
        const Pieces pieces = random.pieces();
        const std::string text = string_text(pieces);
        const bool fails = choice.once_in(2);
        const std::size_t bytes = choice.below(text.size() + 2);
        const bool flush_fails = choice.once_in(4);
        const std::size_t flushes = choice.below(4);
        constexpr Refusal refusals[] = {Refusal::forever, Refusal::once, Refusal::by_throwing};
        const Refusal refusal = refusals[choice.below(3)];
        constexpr ios_base::fmtflags sides[] = {ios_base::fmtflags(), ios_base::left,
                                                ios_base::internal, ios_base::uppercase,
                                                ios_base::showbase | ios_base::left};
        const ios_base::fmtflags flags = ios_base::dec | sides[choice.below(5)];
        constexpr ios_base::iostate states[] = {ios_base::goodbit, ios_base::badbit,
                                                ios_base::failbit,
                                                ios_base::badbit | ios_base::failbit};
        const ios_base::iostate exceptions = states[choice.below(4)];
        const auto outcome_of = [&](void (*write)(std::ostream&, const Pieces&)) {
            ProbeStream stream = fails ? ProbeStream(bytes, refusal) : ProbeStream();
            if (flush_fails) {
                stream.allow_flushes(flushes, refusal);
            }
            stream.flags(flags);
            stream.fill('*');
            stream.exceptions(exceptions);
            EXPECT_TRUE(BufferedStreamOutput::applies_to(stream));
            return outcome(stream, [&](std::ostream& s) { write(s, pieces); });
        };
        EXPECT_EQ(outcome_of(write_buffered), outcome_of(write_by_the_reference));
    }
}

// ---- Streams that it applies to ------------------------------------------------------------

/// Whether buffered output applies to a stream in its default state but for a change.
bool applies_after(const std::function<void(std::ostream&)>& change) {
    std::ostringstream stream;
    change(stream);
    return BufferedStreamOutput::applies_to(stream);
}

bool applies_with_flags(ios_base::fmtflags flags) {
    return applies_after([&](std::ostream& stream) { stream.flags(flags); });
}

TEST(BufferedStreamOutputApplies, ToAStreamInItsDefaultState) {
    EXPECT_TRUE(BufferedStreamOutput::applies_to(std::ostringstream()));
    EXPECT_TRUE(BufferedStreamOutput::applies_to(ProbeStream()));
}

TEST(BufferedStreamOutputApplies, WithAllOtherFlagsAndSettings) {
    for (const ios_base::fmtflags flags :
         {ios_base::left, ios_base::right, ios_base::internal, ios_base::uppercase,
          ios_base::showbase, ios_base::showpoint, ios_base::boolalpha, ios_base::fixed,
          ios_base::scientific, ios_base::skipws}) {
        EXPECT_TRUE(applies_with_flags(ios_base::dec | flags)) << flags;
    }
    EXPECT_TRUE(applies_after([](std::ostream& stream) { stream.fill('*'); }));
    EXPECT_TRUE(applies_after([](std::ostream& stream) { stream.precision(3); }));
    EXPECT_TRUE(applies_after([](std::ostream& stream) {
        stream.exceptions(ios_base::badbit | ios_base::failbit | ios_base::eofbit);
    }));
}

TEST(BufferedStreamOutputApplies, NotToAStreamThatIsNotGood) {
    for (const ios_base::iostate state : {ios_base::badbit, ios_base::failbit, ios_base::eofbit}) {
        EXPECT_FALSE(applies_after([&](std::ostream& stream) { stream.setstate(state); }));
    }
    EXPECT_FALSE(applies_after([](std::ostream& stream) { stream.rdbuf(nullptr); }));
}

TEST(BufferedStreamOutputApplies, NotToAStreamWithAWidth) {
    EXPECT_FALSE(applies_after([](std::ostream& stream) { stream.width(1); }));
    EXPECT_FALSE(applies_after([](std::ostream& stream) { stream.width(-1); }));
}

TEST(BufferedStreamOutputApplies, NotToAStreamThatIsTiedToAnother) {
    std::ostringstream other;
    EXPECT_FALSE(applies_after([&](std::ostream& stream) { stream.tie(&other); }));
}

TEST(BufferedStreamOutputApplies, NotToAStreamWithUnitBuffering) {
    EXPECT_FALSE(applies_with_flags(ios_base::dec | ios_base::unitbuf));
}

TEST(BufferedStreamOutputApplies, NotToAStreamOfAnotherBase) {
    EXPECT_FALSE(applies_with_flags(ios_base::hex));
    EXPECT_FALSE(applies_with_flags(ios_base::oct));
    EXPECT_FALSE(applies_with_flags(ios_base::fmtflags()));
    EXPECT_FALSE(applies_with_flags(ios_base::dec | ios_base::hex));
}

TEST(BufferedStreamOutputApplies, NotToAStreamThatShowsPlusSigns) {
    EXPECT_FALSE(applies_with_flags(ios_base::dec | ios_base::showpos));
}

TEST(BufferedStreamOutputApplies, NotToAStreamOfAnotherLocale) {
    EXPECT_FALSE(
        applies_after([](std::ostream& stream) { stream.imbue(test::grouping_locale("\3")); }));
    EXPECT_FALSE(applies_after([](std::ostream& stream) {
        stream.imbue(std::locale(std::locale::classic(), new std::ctype<char>));
    }));
    EXPECT_FALSE(
        applies_after([](std::ostream& stream) { stream.imbue(std::locale("de_DE.UTF-8")); }));
}

} // namespace
} // namespace foundation::json::detail
