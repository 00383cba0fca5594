/// @file
/// The reference for writing a value is one formatted insertion per piece of its text. Whatever the
/// library does instead has the same effect on every stream in every state.
#include "support/fixed_stream.hpp"
#include "support/locales.hpp"
#include "support/probe_stream.hpp"
#include "support/random_trees.hpp"
#include "support/tree.hpp"
#include "support/write_as.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ios>
#include <ostream>
#include <sstream>
#include <string>

namespace foundation::json {
namespace {

using test::Layout;
using test::ProbeStream;
using test::Refusal;

using Flags = std::ios_base::fmtflags;
using std::ios_base;

/// The state of a stream, as far as it affects a write.
struct StreamSetup {
    Flags flags = ios_base::dec | ios_base::skipws;
    int width = 0;
    char fill = ' ';
    int precision = 6;
    std::string grouping;
    ios_base::iostate state = ios_base::goodbit;
    ios_base::iostate exceptions = ios_base::goodbit;
    bool tied = false;
    bool fails = false;
    std::size_t bytes = 0; // written before it fails
    Refusal refusal = Refusal::forever;
    bool flush_fails = false;
    std::size_t flushes = 0; // performed before they fail
    Refusal flush_refusal = Refusal::forever;
};

class RandomSetups {
public:
    explicit RandomSetups(std::uint64_t seed) : random_(seed, test::RandomTrees::Kinds::all) {}

    /// A stream whose state mostly differs in little from the default one, since few differences at
    /// once show what each of them does.
    StreamSetup setup(std::size_t text_size) {
        StreamSetup result;
        if (random_.once_in(2)) {
            result.flags = flags();
        }
        if (random_.once_in(4)) {
            result.width = static_cast<int>(random_.below(12));
        }
        if (random_.once_in(4)) {
            result.fill = "*0 x"[random_.below(4)];
        }
        if (random_.once_in(4)) {
            result.precision = static_cast<int>(random_.below(20));
        }
        if (random_.once_in(6)) {
            result.grouping = random_.once_in(2) ? "\1" : "\3";
        }
        if (random_.once_in(10)) {
            result.state = state();
        }
        if (random_.once_in(3)) {
            result.exceptions = state() & ~result.state;
        }
        result.tied = random_.once_in(10);
        result.fails = random_.once_in(2);
        result.bytes = random_.below(text_size + 2);
        result.refusal = refusal();
        // How many flushes a stream without buffering sees depends on the number of insertions.
        result.flush_fails = random_.once_in(8) && (result.flags & ios_base::unitbuf) == 0;
        result.flushes = random_.below(6);
        result.flush_refusal = refusal();
        return result;
    }

private:
    Flags flags() {
        static constexpr Flags bases[] = {ios_base::dec, ios_base::dec,
                                          ios_base::hex, ios_base::oct,
                                          Flags(),       ios_base::hex | ios_base::dec};
        static constexpr Flags sides[] = {Flags(), ios_base::left, ios_base::right,
                                          ios_base::internal};
        Flags result = bases[random_.below(6)] | sides[random_.below(4)];
        for (const Flags flag : {ios_base::showbase, ios_base::uppercase, ios_base::showpos,
                                 ios_base::boolalpha, ios_base::fixed, ios_base::scientific}) {
            if (random_.once_in(4)) {
                result |= flag;
            }
        }
        return random_.once_in(10) ? result | ios_base::unitbuf : result;
    }

    ios_base::iostate state() {
        static constexpr ios_base::iostate states[] = {ios_base::badbit, ios_base::failbit,
                                                       ios_base::eofbit,
                                                       ios_base::badbit | ios_base::failbit};
        return states[random_.below(4)];
    }

    Refusal refusal() {
        static constexpr Refusal refusals[] = {Refusal::forever, Refusal::once,
                                               Refusal::by_throwing};
        return refusals[random_.below(3)];
    }

    test::RandomTrees random_;
};

/// Describes what an action throws.
std::string thrown_by(const std::function<void()>& action) {
    try {
        action();
    } catch (const test::ProbeFailure&) {
        return "the buffer's exception";
    } catch (const ios_base::failure&) {
        return "the stream's failure";
    }
    return "nothing";
}

/// All that a caller can see of a write onto a stream set up like that.
std::string outcome(const StreamSetup& setup,
                    const std::function<void(std::ostream&)>& write_onto) {
    ProbeStream tied;
    ProbeStream stream = setup.fails ? ProbeStream(setup.bytes, setup.refusal) : ProbeStream();
    if (setup.flush_fails) {
        stream.allow_flushes(setup.flushes, setup.flush_refusal);
    }
    if (!setup.grouping.empty()) {
        stream.imbue(test::grouping_locale(setup.grouping));
    }
    stream.flags(setup.flags);
    stream.width(setup.width);
    stream.fill(setup.fill);
    stream.precision(setup.precision);
    stream.tie(setup.tied ? &tied : nullptr);
    stream.clear(setup.state);
    stream.exceptions(setup.exceptions);

    const std::string thrown = thrown_by([&] { write_onto(stream); });

    const bool unbuffered = (setup.flags & ios_base::unitbuf) != 0;
    std::ostringstream result;
    result << (unbuffered ? stream.bytes() : stream.log()) << "\nflags " << stream.flags()
           << ", width " << stream.width() << ", fill " << stream.fill() << ", precision "
           << stream.precision() << ", state " << stream.rdstate() << ", exceptions "
           << stream.exceptions() << ", tied stream flushed " << (tied.flushes() > 0)
           << ", unflushed " << (unbuffered && !stream.log().empty() && stream.log().back() != '~')
           << ", thrown: " << thrown;
    return result.str();
}

/// Expects a write to have the same outcome as one insertion per piece of text, on a stream set up
/// like that.
void expect_equivalence(const test::Tree& tree, Layout layout, const StreamSetup& setup) {
    const Value value = to_value(tree);
    const auto write_by_the_reference = [&](std::ostream& stream) {
        test::ReferenceWriter(stream, layout == Layout::pretty).write(tree);
    };
    EXPECT_EQ(outcome(setup, [&](std::ostream& stream) { write(stream, value, layout); }),
              outcome(setup, write_by_the_reference));
}

/// As above, on a random stream.
void expect_equivalence(const test::Tree& tree, Layout layout, RandomSetups& setups) {
    expect_equivalence(tree, layout, setups.setup(text_of(to_value(tree), layout).size()));
}

/// Every kind, in and beside containers, and control bytes at the begin and end of strings.
test::Tree every_kind() {
    using test::Elements;
    using test::Members;
    return {Elements{{Undefined()},
                     {Null()},
                     {true},
                     {-0.5},
                     {std::nan("")},
                     {5e-324},
                     {std::string("x/\x1F")},
                     {std::string("\x01")},
                     {1e6f},
                     {-12LL},
                     {34ULL},
                     {Elements{}},
                     {Members{}},
                     {Members{{"a\x02", {Elements{{false}, {Elements{{std::string()}}}}}},
                              {"b", {Undefined()}},
                              {"c", {0.25f}}}}}};
}

constexpr Layout layouts[] = {Layout::compact, Layout::pretty};
constexpr Refusal refusals[] = {Refusal::forever, Refusal::once, Refusal::by_throwing};
constexpr ios_base::iostate exceptions_to_throw[] = {
    ios_base::goodbit, ios_base::badbit, ios_base::failbit, ios_base::badbit | ios_base::failbit};

/// Expects the same of a tree on every kind of stream that fails after `bytes` bytes.
void expect_equivalence_after(std::size_t bytes, const test::Tree& tree, Layout layout) {
    for (const Refusal refusal : refusals) {
        for (const ios_base::iostate exceptions : exceptions_to_throw) {
            SCOPED_TRACE(std::to_string(bytes) + " bytes");
            StreamSetup setup;
            setup.fill = '*';
            setup.fails = true;
            setup.bytes = bytes;
            setup.refusal = refusal;
            setup.exceptions = exceptions;
            expect_equivalence(tree, layout, setup);
        }
    }
}

TEST(FailingStream, IsLeftAsByOneInsertionPerPieceWhereverItFails) {
    const test::Tree tree = every_kind();
    for (const Layout layout : layouts) {
        const std::size_t size = text_of(to_value(tree), layout).size();
        for (std::size_t bytes = 0; bytes <= size + 1; ++bytes) {
            expect_equivalence_after(bytes, tree, layout);
        }
    }
}

TEST(FailingStream, IsLeftAsByOneInsertionPerPieceForScalarsToo) {
    const test::Tree trees[] = {
        {Null()},     {true},  {-0.5},  {std::nan("")},         {std::string("x\x1F")},
        {1e6f},       {-12LL}, {34ULL}, {std::string("\x01y")}, {std::string()},
        {Undefined()}};
    for (const test::Tree& tree : trees) {
        for (std::size_t bytes = 0; bytes < 10; ++bytes) {
            expect_equivalence_after(bytes, tree, Layout::compact);
        }
    }
}

TEST(FailingStream, IsLeftAsByOneInsertionPerPieceWhereverAFlushFails) {
    const test::Tree tree = every_kind();
    for (std::size_t flushes = 0; flushes < 30; ++flushes) {
        for (const Refusal refusal : refusals) {
            for (const ios_base::iostate exceptions : exceptions_to_throw) {
                StreamSetup setup;
                setup.flush_fails = true;
                setup.flushes = flushes;
                setup.flush_refusal = refusal;
                setup.exceptions = exceptions;
                expect_equivalence(tree, Layout::pretty, setup);
            }
        }
    }
}

// The text is handed over in pieces of up to 8192 bytes; more room is made well before that.
TEST(FailingStream, IsLeftAsByOneInsertionPerPieceNearTheEndsOfLargePieces) {
    const test::Tree tree{test::Elements{{std::string(7600, 'x')},
                                         {std::string(550, '/')},
                                         every_kind(),
                                         {std::string(7600, 'y') + "\x1F"},
                                         every_kind()}};
    for (const Layout layout : layouts) {
        for (const std::size_t end : {7640u, 8192u, 8704u}) {
            for (std::size_t bytes = end - 12; bytes < end + 12; bytes += 3) {
                expect_equivalence_after(bytes, tree, layout);
            }
        }
    }
}

TEST(FailingStream, TakesExactlyTheBytesThatItHasRoomFor) {
    test::Elements elements;
    for (int i = 0; i < 150; ++i) {
        elements.push_back(every_kind());
    }
    const Value value = test::to_value({elements});
    for (const Layout layout : layouts) {
        const std::string text = text_of(value, layout);
        ASSERT_GT(text.size(), 8192u);
        for (std::size_t room = 0; room <= text.size() + 1; room += room < 300 ? 1 : 61) {
            test::FixedStream stream(room);
            write(stream, value, layout);
            EXPECT_EQ(stream.text(), text.substr(0, room));
            EXPECT_EQ(stream.bad(), room < text.size());
        }
    }
}

TEST(AnyStream, IsLeftAsByOneInsertionPerPiece) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees trees(seed, test::RandomTrees::Kinds::all);
    RandomSetups setups(seed + 1);
    for (int i = 0; i < 15000 && !HasFailure(); ++i) {
        const test::Tree tree = trees.tree();
        expect_equivalence(tree, Layout::compact, setups);
        expect_equivalence(tree, Layout::pretty, setups);
    }
}

TEST(AnyStream, IsLeftAsByOneInsertionPerPieceForLargeValuesToo) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees trees(seed, test::RandomTrees::Kinds::all);
    RandomSetups setups(seed + 1);
    for (int i = 0; i < 30 && !HasFailure(); ++i) {
        test::Elements elements;
        for (int count = 0; count < 300; ++count) {
            elements.push_back(trees.tree());
        }
        const test::Tree tree{elements};
        expect_equivalence(tree, Layout::compact, setups);
        expect_equivalence(tree, Layout::pretty, setups);
    }
}

} // namespace
} // namespace foundation::json
