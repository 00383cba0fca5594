// Running out of memory while deeply nested values are copied: what lies beyond a hundred levels is
// copied in another way than the rest.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/samples.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

constexpr int levels = 103;

/// A value of so many levels, arrays and objects in turn, with one of every kind beside each of the
/// two deepest.
Value nested(int depth, const std::vector<Sample>& beside) {
    Value value(Array{});
    for (int level = depth; level > 0; --level) {
        const bool in_array = level % 2 == 1;
        Value outer(in_array ? Value(Array{Value()}) : Value(Object{{"inner", Value()}}));
        (in_array ? outer[0] : outer["inner"]).swap(value);
        for (std::size_t kind = 0; level > levels - 2 && kind != beside.size(); ++kind) {
            if (in_array) {
                outer.push(beside[kind].value);
            } else {
                outer["the name of kind number " + std::to_string(kind)] = beside[kind].value;
            }
        }
        value.swap(outer);
    }
    return value;
}

struct Operands {
    Value target;
    Value source;
};

TEST(DeepCopyOutOfMemory, LeaksNothingAndLeavesTheSourceAsItWas) {
    const Value source = nested(levels, samples());
    const std::string description = describe(source);
    const std::size_t failures = fail_each_allocation(
        [] { return std::optional<Value>(); }, [&](auto& copy) { copy.emplace(source); },
        [&](const auto& copy) {
            EXPECT_FALSE(copy.has_value());
            EXPECT_EQ(describe(source), description);
        },
        [&](const auto& copy) { EXPECT_EQ(describe(*copy), description); });
    EXPECT_GT(failures, 2u * levels);
}

/// Assigns one deep value to another with every allocation failing in turn. After a failure the
/// target must have the given kind.
std::size_t failures_of_assigning(const Value& target, const Value& source,
                                  const std::string& kind_left) {
    const std::string description = describe(source);
    return fail_each_allocation(
        [&] {
            return Operands{target, source};
        },
        [](Operands& o) { o.target = std::as_const(o.source); },
        [&](const Operands& o) {
            EXPECT_EQ(kind_of(o.target), kind_left);
            EXPECT_EQ(describe(o.source), description);
        },
        [&](const Operands& o) {
            EXPECT_EQ(describe(o.target), description);
            EXPECT_EQ(describe(o.source), description);
        });
}

TEST(DeepAssignmentOutOfMemory, LeavesAnArrayInPlaceOfAnArray) {
    const Value source = nested(levels, samples());
    EXPECT_GT(failures_of_assigning(Array{}, source, "JSON array"), 2u * levels);
    EXPECT_GT(failures_of_assigning(nested(levels, other_samples()), source, "JSON array"), 0u);
    EXPECT_GT(failures_of_assigning(nested(levels - 3, {}), source, "JSON array"), 0u);
    EXPECT_GT(failures_of_assigning(nested(levels + 3, {}), source, "JSON array"), 0u);
}

TEST(DeepAssignmentOutOfMemory, LeavesFalseWhereTheKindWouldHaveChanged) {
    EXPECT_GT(failures_of_assigning("a text too long for a string's own storage",
                                    nested(levels, samples()), "JSON boolean"),
              2u * levels);
}

TEST(DeepPushOutOfMemory, LeavesTheArrayAsItWas) {
    const Value source = nested(levels, {});
    const std::size_t failures = fail_each_allocation(
        [&] {
            return Operands{Array{1, 2}, source};
        },
        [](Operands& o) { o.target.push(o.source); },
        [](const Operands& o) { EXPECT_EQ(describe(o.target), "JSON array [1,2]"); },
        [](const Operands& o) { EXPECT_EQ(o.target[2], o.source); });
    EXPECT_GT(failures, 1u * levels);
}

} // namespace
} // namespace foundation::json::test
