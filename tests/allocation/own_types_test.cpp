// Conversion to a caller's own types and back, with each allocation failing in turn.
#include "convert/fleet.hpp"
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"

#include <foundation/json/convert.hpp>

#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace foundation::json {
namespace {

using test::allocations_of;
using test::describe;
using test::fail_each_allocation;

using Everything =
    std::tuple<fleet::Cluster, std::deque<std::string>, std::list<std::optional<std::string>>,
               std::set<std::string>, std::unordered_map<std::string, std::vector<int>>, Value,
               Array, Object, std::vector<bool>, std::pair<std::string, fleet::Level>>;

const std::string long_text = "a text too long for a string's own storage";

Everything everything() {
    return {{long_text, {{long_text, 80, {long_text, "b"}, 0.5}}, {{long_text, {{}}}}},
            {long_text, "a"},
            {long_text, std::nullopt},
            {long_text, long_text + "b"},
            {{long_text, {1, 2}}},
            Array{long_text},
            {1, long_text},
            {{long_text, 1}},
            {true, false},
            {long_text, fleet::Level::high}};
}

const std::string text_of_everything = describe(from(everything()));

struct Operands {
    Value value;
    std::optional<Everything> object;
};

TEST(AllocationFailures, OfAConversionToATypeOfTheCallerLeakNothing) {
    const std::size_t failures = fail_each_allocation(
        [] {
            return Operands{from(everything()), std::nullopt};
        },
        [](Operands& o) { o.object = to<Everything>(o.value); },
        [](const Operands& o) {
            EXPECT_FALSE(o.object.has_value());
            EXPECT_EQ(describe(o.value), text_of_everything);
        },
        [](const Operands& o) { EXPECT_EQ(describe(from(*o.object)), text_of_everything); });
    EXPECT_GT(failures, 30u);
}

TEST(AllocationFailures, OfAConversionFromATypeOfTheCallerLeakNothing) {
    const std::size_t failures = fail_each_allocation(
        [] {
            return Operands{1.5, everything()};
        },
        [](Operands& o) { o.value = Value(from(*o.object)); },
        [](const Operands& o) { EXPECT_EQ(describe(o.value).substr(0, 4), "JSON"); },
        [](const Operands& o) { EXPECT_EQ(describe(o.value), text_of_everything); });
    EXPECT_GT(failures, 30u);
}

/// Members without a value, for which from() makes defaults: of the class and of what is around it.
using Defaults = std::tuple<std::vector<fleet::Server>, std::array<fleet::Server, 2>>;

Defaults defaults() {
    return {std::vector<fleet::Server>(3), {}};
}

TEST(AllocationFailures, OfDefaultsLeakNothing) {
    const std::string text = describe(from(defaults()));
    struct Made {
        Value value;
        std::optional<Defaults> object;
    };
    const std::size_t failures = fail_each_allocation(
        [] {
            return Made{1.5, defaults()};
        },
        [](Made& m) { m.value = Value(from(*m.object)); },
        [](const Made& m) { EXPECT_EQ(describe(m.value).substr(0, 4), "JSON"); },
        [&](const Made& m) { EXPECT_EQ(describe(m.value), text); });
    EXPECT_GT(failures, 30u);
}

/// The message of a conversion that fails.
std::string failure_of(const Value& value) {
    try {
        to<std::map<std::string, std::vector<fleet::Level>>>(value);
    } catch (const ConversionError& error) {
        return error.pointer() + " | " + error.what();
    }
    return "(nothing was thrown)";
}

struct Failure {
    Value value;
    std::string message;
};

TEST(AllocationFailures, OfAConversionErrorLeakNothing) {
    const std::size_t failures = fail_each_allocation(
        [] {
            return Failure{Object{{long_text, Array{"low", long_text}}}, {}};
        },
        [](Failure& f) { f.message = failure_of(f.value); },
        [](const Failure& f) { EXPECT_EQ(f.message, ""); },
        [](const Failure& f) {
            EXPECT_EQ(f.message,
                      "/" + long_text + "/1 | at /" + long_text + "/1: the enumerator \"" +
                          long_text +
                          "\" is unknown; known are \"low\", \"middle\", \"high\", \"top\"");
        });
    EXPECT_GT(failures, 5u);
}

TEST(AllocationFailures, OfANumberThatDoesNotFitLeakNothing) {
    struct Narrow {
        Value value;
        std::string message;
    };
    const std::size_t failures = fail_each_allocation(
        [] {
            return Narrow{1e300, {}};
        },
        [](Narrow& n) {
            try {
                to<int>(n.value);
            } catch (const ConversionError& error) {
                n.message = error.what();
            }
        },
        [](const Narrow& n) { EXPECT_EQ(n.message, ""); },
        [](const Narrow& n) {
            EXPECT_EQ(n.message.substr(n.message.find(" is not")),
                      " is not within -2147483648 to 2147483647");
        });
    EXPECT_GT(failures, 2u);
}

TEST(AllocationFailures, OfALookupLeakNothing) {
    const std::size_t failures = fail_each_allocation(
        [] {
            return Failure{Object{{long_text, Array{"x"}}}, {}};
        },
        [](Failure& f) { f.message = to_or(f.value, "/" + long_text + "/0", long_text); },
        [](const Failure& f) { EXPECT_EQ(f.message, ""); },
        [](const Failure& f) { EXPECT_EQ(f.message, "x"); });
    EXPECT_GT(failures, 1u);
}

TEST(Allocations, OfAConversionAreThoseOfWhatItMakes) {
    const Value server = Object{{"host", "a"}, {"port", 80}};
    EXPECT_EQ(allocations_of([&] { to<fleet::Server>(server); }), 0u);
    const Value numbers = Array{1, 2, 3};
    EXPECT_EQ(allocations_of([&] { to<std::vector<int>>(numbers); }), 1u);
    EXPECT_EQ(allocations_of([&] { to_or(numbers, "/0", 7); }), 0u);
    EXPECT_EQ(allocations_of([] { from(7); }), 0u);
    // The array and its elements; for each, the object, three members and an array; one default.
    const std::vector<fleet::Server> servers(100);
    EXPECT_EQ(allocations_of([&] { from(servers); }), 2u + 100 * 5u + 1u);
}

} // namespace
} // namespace foundation::json
