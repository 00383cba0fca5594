/// @file
/// The text of numbers in every floating-point environment that the machine has. It depends on the
/// numbers' bits and on the rounding mode of std::fesetround(); writing it raises no flag and
/// causes no trap.
#include "support/float_environments.hpp"
#include "support/notable_numbers.hpp"
#include "support/number_rule.hpp"
#include "support/write_as.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

using test::Environment;
using test::flags_raised_in;
using test::for_each_environment;
using test::Layout;
using test::number_of;
using Array = std::vector<Value>;

// ---- What is written -----------------------------------------------------------------------

template <class Number>
void append_notable_numbers(Array& numbers) {
    for (const auto word : test::notable_words<Number>()) {
        numbers.emplace_back(number_of<Number>(word));
    }
}

Value notable_numbers() {
    Array numbers;
    append_notable_numbers<double>(numbers);
    append_notable_numbers<float>(numbers);
    return numbers;
}

template <class Number>
void append_expected_texts(std::vector<std::string>& texts) {
    for (const auto word : test::notable_words<Number>()) {
        texts.push_back(test::expected_number_text(number_of<Number>(word)));
    }
}

/// By the implementation in the tests, in the current rounding mode.
std::vector<std::string> expected_texts() {
    std::vector<std::string> texts;
    append_expected_texts<double>(texts);
    append_expected_texts<float>(texts);
    return texts;
}

/// The two layouts of an array.
struct Texts {
    std::string compact;
    std::string pretty;
};

Texts array_of(const std::vector<std::string>& items) {
    Texts texts{"[", "["};
    const char* comma = "";
    for (const std::string& item : items) {
        texts.compact += comma + item;
        texts.pretty += comma + ("\n    " + item);
        comma = ",";
    }
    return {texts.compact + "]", texts.pretty + "\n]"};
}

std::map<int, Texts> expected_in_every_direction() {
    std::map<int, Texts> expected;
    for (const int direction : test::directions()) {
        const test::EnvironmentKeeper keeper;
        std::fesetround(direction);
        expected[direction] = array_of(expected_texts());
    }
    return expected;
}

// ---- The ways to write it ------------------------------------------------------------------

/// With a width, the reference writes the text, piece by piece.
std::string text_on_stream(const Value& value, Layout layout, std::streamsize width) {
    std::ostringstream stream;
    stream.width(width);
    write(stream, value, layout);
    return stream.str();
}

struct Way {
    const char* name;
    std::string (*text)(const Value&);
    std::string Texts::*expected;
    unsigned step; ///< only one in so many environments is tried
};

const Way ways[] = {
    {"serialize", [](const Value& v) { return serialize(v); }, &Texts::compact, 1},
    {"a stream, piece by piece",
     [](const Value& v) { return text_on_stream(v, Layout::compact, 1); }, &Texts::compact, 3},
    {"a stream", [](const Value& v) { return text_on_stream(v, Layout::compact, 0); },
     &Texts::compact, 7},
    {"pretty_print", [](const Value& v) { return pretty_print(v); }, &Texts::pretty, 11},
    {"a stream, pretty", [](const Value& v) { return text_on_stream(v, Layout::pretty, 0); },
     &Texts::pretty, 13},
};

// ---- Tests ---------------------------------------------------------------------------------

/// Everything that a caller can see after a text was written in an environment.
struct Outcome {
    std::string text;
    int flags = 0;
    int direction = 0;
    test::MachineSetting setting = 0;
};

Outcome outcome_in(const Environment& environment, const Way& way, const Value& value) {
    Outcome outcome;
    outcome.flags = flags_raised_in(environment, [&] {
        outcome.text = way.text(value);
        outcome.direction = std::fegetround();
        outcome.setting = test::machine_setting();
    });
    return outcome;
}

TEST(NumberTextInEveryEnvironment, DependsOnBitsAndRoundingModeAlone) {
    const Value numbers = notable_numbers();
    const std::map<int, Texts> expected = expected_in_every_direction();
    for (const Way& way : ways) {
        unsigned index = 0;
        for_each_environment([&](const Environment& environment) {
            if (index++ % way.step != 0 || HasFailure()) {
                return;
            }
            SCOPED_TRACE(way.name + (", in direction " + name_of(environment)));
            const Outcome outcome = outcome_in(environment, way, numbers);
            EXPECT_EQ(outcome.text, expected.at(environment.direction).*way.expected);
            EXPECT_EQ(outcome.flags, 0);
            EXPECT_EQ(outcome.direction, environment.direction);
            EXPECT_EQ(outcome.setting, environment.setting);
        });
    }
}

/// Raises a flag, changes the environment and restores it. Returns the flags that are set then;
/// emulators may lose some.
int flags_that_last(int flag, int direction) {
    return flags_raised_in({direction, false, test::usual_setting}, [&] {
        std::feraiseexcept(flag);
        const test::EnvironmentKeeper keeper;
        test::set_default_environment();
    });
}

TEST(NumberTextInEveryEnvironment, LeavesFlagsThatWereSet) {
    const Value numbers = notable_numbers();
    for (const Way& way : ways) {
        for (const int direction : test::directions()) {
            for (const int flag :
                 {FE_INVALID, FE_DIVBYZERO, FE_OVERFLOW, FE_UNDERFLOW, FE_INEXACT}) {
                const int lasting = flags_that_last(flag, direction);
                const Environment environment{direction, false, test::usual_setting};
                const int after = flags_raised_in(environment, [&] {
                    std::feraiseexcept(flag);
                    way.text(numbers);
                });
                EXPECT_EQ(after & lasting, lasting) << way.name << ", flag " << flag;
            }
        }
    }
}

// Literal texts of the numbers that an environment changes most easily.

struct Literal {
    Value number;
    const char* text;
};

const Literal literals[] = {
    {number_of<double>(0x000049A22DC398AC), "3.99999999999999E-310"},
    {number_of<double>(0x8000000000000001), "-4.94065645841247E-324"},
    {number_of<double>(0x000FFFFFFFFFFFFF), "2.2250738585072009E-308"},
    {number_of<double>(0x0010000000000000), "2.2250738585072014E-308"},
    {number_of<double>(0x8000000000000000), "-0"},
    {number_of<float>(0x00000001), "1.4013E-45"},
    {number_of<float>(0x800116C2), "-9.99995E-41"},
    {number_of<float>(0x007FFFFF), "1.17549421E-38"},
    {number_of<double>(0x7FF8000000000000), "\"NaN\""},
    {number_of<double>(0x7FF0000000000001), "\"NaN\""},
    {number_of<float>(0xFFC00000), "\"NaN\""},
    {number_of<float>(0x7F800001), "\"NaN\""},
};

TEST(NumberTextInEveryEnvironment, KeepsSubnormalNumbersAndSignsOfZero) {
    for (const auto& [number, text] : literals) {
        for (const test::MachineSetting setting : test::machine_settings()) {
            std::string written;
            const Environment environment{FE_TONEAREST, true, setting};
            flags_raised_in(environment, [&, n = &number] { written = serialize(*n); });
            ASSERT_EQ(written, text) << name_of(environment);
        }
    }
}

TEST(FloatEnvironments, AreWhatTheMachineOffers) {
    const std::vector<test::MachineSetting>& settings = test::machine_settings();
    EXPECT_NE(std::find(settings.begin(), settings.end(), test::usual_setting), settings.end());
    for (const test::MachineSetting setting : settings) {
        test::MachineSetting seen = 0;
        flags_raised_in({FE_TONEAREST, false, setting}, [&] { seen = test::machine_setting(); });
        EXPECT_EQ(seen, setting);
    }
}

} // namespace
} // namespace foundation::json
