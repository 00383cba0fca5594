/// @file
/// Writing a value onto a stream in any state. The bytes give the stream's state and the value. The
/// result must be the same, for everything that a caller can see, as by one formatted insertion per
/// piece of text.
#include "expect.hpp"
#include "input.hpp"
#include "tree_reader.hpp"

#include "serialization/layout.hpp"
#include "serialization/stream_output.hpp"
#include "support/float_environments.hpp"
#include "support/locales.hpp"
#include "support/probe_stream.hpp"
#include "support/tree.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <algorithm>
#include <cfenv>
#include <cstdint>
#include <ios>
#include <limits>
#include <locale>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::fuzz {
namespace {

using std::ios_base;
using test::Refusal;
using test::Tree;

// ---- The stream --------------------------------------------------------------------------------

/// The state of a stream, as far as it affects a write.
struct StreamState {
    ios_base::fmtflags flags = ios_base::dec | ios_base::skipws;
    std::streamsize width = 0;
    std::streamsize precision = 6;
    char fill = ' ';
    std::string grouping; ///< empty for the classic locale
    ios_base::iostate state = ios_base::goodbit;
    ios_base::iostate exceptions = ios_base::goodbit;
    bool tied = false;
    bool fails = false;
    std::size_t bytes = 0; ///< written before it fails
    Refusal refusal = Refusal::forever;
    bool flush_fails = false;
    std::size_t flushes = 0; ///< performed before they fail
    Refusal flush_refusal = Refusal::forever;
    test::Environment arithmetic{FE_TONEAREST, false, test::usual_setting};

    /// Whether the number of flushes depends on the number of insertions.
    bool unbuffered() const { return (flags & ios_base::unitbuf) != 0; }
};

/// Each bit of the first two bytes says whether something differs from a stream's default state.
StreamState read_state(Input& input) {
    static const ios_base::iostate states[] = {ios_base::badbit, ios_base::failbit,
                                               ios_base::eofbit,
                                               ios_base::badbit | ios_base::failbit};
    static const Refusal refusals[] = {Refusal::forever, Refusal::once, Refusal::by_throwing};
    const unsigned differs = input.bits<std::uint16_t>();
    const auto bit = [differs](unsigned index) { return ((differs >> index) & 1) != 0; };
    StreamState result;
    if (bit(0)) {
        static const ios_base::fmtflags flags[] = {
            ios_base::dec,       ios_base::hex,     ios_base::oct,       ios_base::showbase,
            ios_base::uppercase, ios_base::showpos, ios_base::left,      ios_base::right,
            ios_base::internal,  ios_base::fixed,   ios_base::boolalpha, ios_base::scientific,
            ios_base::showpoint};
        const unsigned set = input.bits<std::uint16_t>();
        result.flags = {};
        for (unsigned index = 0; index < std::size(flags); ++index) {
            result.flags |= ((set >> index) & 1) != 0 ? flags[index] : ios_base::fmtflags();
        }
    }
    if (bit(1)) {
        result.width = static_cast<std::streamsize>(input.below(40)) - 2;
    }
    if (bit(2)) {
        result.fill = static_cast<char>(input.byte());
    }
    if (bit(3)) {
        result.precision = static_cast<std::streamsize>(input.below(30));
    }
    if (bit(4)) {
        result.grouping = input.flag() ? "\3" : "\1\2";
    }
    if (bit(5)) {
        result.state = input.one_of(states);
    }
    if (bit(6)) {
        result.exceptions = input.one_of(states) & ~result.state;
    }
    result.tied = bit(7);
    if (bit(8)) {
        result.fails = true;
        result.bytes = input.bits<std::uint16_t>() >> input.below(16);
        result.refusal = input.one_of(refusals);
    }
    if (bit(9)) {
        result.flags |= ios_base::unitbuf;
    }
    if (bit(10) && !result.unbuffered()) {
        result.flush_fails = true;
        result.flushes = input.below(12);
        result.flush_refusal = input.one_of(refusals);
    }
    if (bit(11)) {
        const std::vector<test::MachineSetting>& settings = test::machine_settings();
        result.arithmetic.direction = test::directions()[input.below(4)];
        result.arithmetic.traps = input.flag();
        result.arithmetic.setting = settings[input.bits<std::uint16_t>() % settings.size()];
    }
    return result;
}

template <class Write>
std::string thrown_by(const Write& write) {
    try {
        write();
    } catch (const test::ProbeFailure&) {
        return "the buffer's exception";
    } catch (const ios_base::failure&) {
        return "the stream's failure";
    }
    return "nothing";
}

/// Everything that a caller can see of a write onto a stream in that state.
template <class Write>
std::string outcome(const StreamState& state, const Write& write) {
    test::ProbeStream tied;
    test::ProbeStream stream =
        state.fails ? test::ProbeStream(state.bytes, state.refusal) : test::ProbeStream();
    if (state.flush_fails) {
        stream.allow_flushes(state.flushes, state.flush_refusal);
    }
    if (!state.grouping.empty()) {
        stream.imbue(test::grouping_locale(state.grouping));
    }
    stream.flags(state.flags);
    stream.width(state.width);
    stream.fill(state.fill);
    stream.precision(state.precision);
    stream.tie(state.tied ? &tied : nullptr);
    stream.clear(state.state);
    stream.exceptions(state.exceptions);

    std::string thrown;
    test::flags_raised_in(state.arithmetic, [&] { thrown = thrown_by([&] { write(stream); }); });

    std::ostringstream result;
    result << (state.unbuffered() ? stream.bytes() : stream.log()) << "\nflags " << stream.flags()
           << ", width " << stream.width() << ", fill " << int(stream.fill()) << ", precision "
           << stream.precision() << ", state " << stream.rdstate() << ", exceptions "
           << stream.exceptions() << ", tied stream flushed " << (tied.flushes() > 0)
           << ", flushed at all " << (stream.flushes() > 0) << ", thrown: " << thrown;
    return result.str();
}

// ---- The ways to write -------------------------------------------------------------------------

void write_by_pieces(std::ostream& stream, const Value& value, bool pretty) {
    detail::StreamOutput output(stream);
    if (pretty) {
        detail::LayoutWriter<detail::StreamOutput, detail::Layout::fixed_pretty>(output).write(
            {}, value);
    } else {
        detail::LayoutWriter<detail::StreamOutput, detail::Layout::fixed>(output).write({}, value);
    }
}

void check_streams(const StreamState& state, const Tree& tree, const Value& value, bool pretty) {
    const std::string expected = outcome(
        state, [&](std::ostream& stream) { test::ReferenceWriter(stream, pretty).write(tree); });
    expect_equal(outcome(state,
                         [&](std::ostream& stream) {
                             Serializer serializer;
                             serializer.pretty_print(pretty);
                             serializer.write(stream, value);
                         }),
                 expected, "the outcome of Serializer");
    expect_equal(
        outcome(state, [&](std::ostream& stream) { write_by_pieces(stream, value, pretty); }),
        expected, "the outcome of writing piece by piece");
}

void check_strings(const StreamState& state, const Tree& tree, const Value& value, bool pretty) {
    std::ostringstream stream;
    std::string text;
    test::flags_raised_in(state.arithmetic, [&] {
        test::ReferenceWriter(stream, pretty).write(tree);
        text = pretty ? pretty_print(value) : serialize(value);
    });
    expect_equal(text, stream.str(), "the text as a string");
}

void check(Input input) {
    const std::uint8_t choices = input.byte();
    const bool pretty = (choices & 1) != 0;
    const bool grouping_everywhere = (choices & 0x0E) == 0x0E;
    const StreamState state = read_state(input);
    const Tree tree = TreeReader(input).tree();
    const Value value = to_value(tree);
    check_streams(state, tree, value, pretty);
    if (grouping_everywhere) {
        const test::ScopedGlobalLocale global(test::grouping_locale("\3"));
        check_strings(state, tree, value, pretty);
        check_streams(state, tree, value, pretty);
    } else {
        check_strings(state, tree, value, pretty);
    }
}

} // namespace
} // namespace foundation::json::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace foundation::json::fuzz;
    check(Input(data, size));
    return 0;
}
