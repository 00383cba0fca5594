// Running out of memory while values are built, copied and moved: nothing leaks, and the source
// stays as it was.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace foundation::json::test {
namespace {

const char* const long_text = "a text too long for a string's own storage";

/// Builds a Value from the source with every allocation failing in turn. Returns how many could.
template <class Source>
std::size_t failures_of_building_from(Source source, const std::string& description) {
    struct Operands {
        Source source;
        std::optional<Value> result;
    };
    return fail_each_allocation(
        [&] {
            return Operands{source, std::nullopt};
        },
        [](Operands& o) { o.result.emplace(std::as_const(o.source)); },
        [](const Operands& o) { EXPECT_FALSE(o.result.has_value()); },
        [&](const Operands& o) {
            ASSERT_TRUE(o.result.has_value());
            EXPECT_EQ(describe(*o.result), description);
        });
}

TEST(BuildingOutOfMemory, CannotHappenToTagsAndScalars) {
    EXPECT_EQ(failures_of_building_from(Undefined(), "undefined"), 0u);
    EXPECT_EQ(failures_of_building_from(Null(), "JSON null null"), 0u);
    EXPECT_EQ(failures_of_building_from(true, "JSON boolean true"), 0u);
    EXPECT_EQ(failures_of_building_from(1, "JSON number 1"), 0u);
    EXPECT_EQ(failures_of_building_from(0.5, "JSON number 0.5"), 0u);
    EXPECT_EQ(failures_of_building_from(0.5f, "float 0.5"), 0u);
    EXPECT_EQ(failures_of_building_from(1LL, "int64 1"), 0u);
    EXPECT_EQ(failures_of_building_from(1ULL, "uint64 1"), 0u);
    EXPECT_EQ(allocations_of([] { Value(); }), 0u);
}

TEST(BuildingOutOfMemory, LeaksNoString) {
    const std::string description = std::string("JSON string \"") + long_text + '"';
    EXPECT_EQ(failures_of_building_from(long_text, description), 1u);
    EXPECT_EQ(failures_of_building_from(std::string(long_text), description), 1u);
    EXPECT_EQ(failures_of_building_from("short", "JSON string \"short\""), 0u);
}

TEST(BuildingOutOfMemory, LeaksNoElements) {
    EXPECT_EQ(failures_of_building_from(Array{}, "JSON array []"), 1u);
    EXPECT_EQ(failures_of_building_from(Array{1, 2}, "JSON array [1,2]"), 2u);
    // The outer container and its storage, then the inner ones and the text.
    EXPECT_EQ(failures_of_building_from(Array{1, Array{"an element of an inner array", 2}, Array{}},
                                        "JSON array [1,[\"an element of an inner array\",2],[]]"),
              6u);
}

TEST(BuildingOutOfMemory, LeaksNoMembers) {
    EXPECT_EQ(failures_of_building_from(Object{}, "JSON object {}"), 1u);
    EXPECT_EQ(
        failures_of_building_from(Object{{"a", 1}, {"b", 2}}, "JSON object {\"a\":1,\"b\":2}"), 3u);
    // The outer container and its three nodes, the long name, the inner container with its one
    // node, and the text.
    EXPECT_EQ(
        failures_of_building_from(Object{{"a", "the text of a member"},
                                         {"b", Object{{"c", 1}}},
                                         {"the long name of a member", 2}},
                                  "JSON object {\"a\":\"the text of a member\",\"b\":{\"c\":1},"
                                  "\"the long name of a member\":2}"),
        8u);
}

/// Makes a value of each kind from another with every allocation failing in turn. Afterwards the
/// other must be as it was or, after a success, as the samples' member says.
template <class Make>
void expect_source_kept(Make make, std::string Sample::*after, bool strings_allocate) {
    struct Operands {
        Value source;
        std::optional<Value> target;
    };
    for (const Sample& sample : other_samples()) {
        SCOPED_TRACE(sample.kind);
        const std::size_t failures = fail_each_allocation(
            [&] {
                return Operands{sample.value, std::nullopt};
            },
            [&](Operands& o) { make(o.target, o.source); },
            [&](const Operands& o) {
                EXPECT_FALSE(o.target.has_value());
                EXPECT_EQ(describe(o.source), sample.description);
            },
            [&](const Operands& o) {
                EXPECT_EQ(describe(*o.target), sample.description);
                EXPECT_EQ(describe(o.source), sample.*after);
            });
        EXPECT_EQ(failures > 0, sample.is_container() || (strings_allocate && sample.is_string()));
    }
}

TEST(CopyingOutOfMemory, LeaksNothingAndLeavesTheSourceAsItWas) {
    expect_source_kept([](auto& target, Value& source) { target.emplace(std::as_const(source)); },
                       &Sample::description, true);
}

// One container is all that a move takes: see the counts of allocations.
TEST(MovingOutOfMemory, LeaksNothingAndLeavesTheSourceAsItWas) {
    expect_source_kept([](auto& target, Value& source) { target.emplace(std::move(source)); },
                       &Sample::left_behind, false);
}

} // namespace
} // namespace foundation::json::test
