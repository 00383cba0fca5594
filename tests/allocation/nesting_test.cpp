// Running out of memory while deeply nested values are copied: other code copies the levels beyond
// the hundredth.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/nested.hpp"
#include "support/values_of_each_kind.hpp"

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

/// A value of `depth` levels, arrays and objects in turn, with one of every kind beside each of the
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
    const Value source = nested(levels, one_of_each_kind());
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
            EXPECT_EQ(kind_name(o.target), kind_left);
            EXPECT_EQ(describe(o.source), description);
        },
        [&](const Operands& o) {
            EXPECT_EQ(describe(o.target), description);
            EXPECT_EQ(describe(o.source), description);
        });
}

TEST(DeepAssignmentOutOfMemory, LeavesAnArrayInPlaceOfAnArray) {
    const Value source = nested(levels, one_of_each_kind());
    EXPECT_GT(failures_of_assigning(Array{}, source, "JSON array"), 2u * levels);
    EXPECT_GT(failures_of_assigning(nested(levels, other_samples()), source, "JSON array"), 0u);
    EXPECT_GT(failures_of_assigning(nested(levels - 3, {}), source, "JSON array"), 0u);
    EXPECT_GT(failures_of_assigning(nested(levels + 3, {}), source, "JSON array"), 0u);
}

TEST(DeepAssignmentOutOfMemory, LeavesFalseWhereTheKindWouldHaveChanged) {
    EXPECT_GT(failures_of_assigning("a text too long for a string's own storage",
                                    nested(levels, one_of_each_kind()), "JSON boolean"),
              2u * levels);
}

// ---- The state that each failure leaves, compared with that at level 0 --------------------------

const char* const long_text = "a text too long for a string's own storage";
const char* const other_text = "another text that is too long for a string's own storage";

struct Change {
    const char* name;
    Value (*target)();
    Value source;
};

/// An array with room for eight elements that holds two.
Value with_room() {
    Value array(Array(8, 0));
    const Value two(Array{long_text, Array{1, long_text}});
    array = two;
    return array;
}

std::vector<Change> changes() {
    const Value mixed(Array{other_text, Array{Array{1}, other_text}, Object{{"c", other_text}},
                            Object{{other_text, Array{2, other_text}}}, other_text});
    return {
        {"as many elements",
         [] {
             return Value(Array{1, Array{Array{long_text, Null()}, 2}, Object{{"a", long_text}}, 3,
                                Array{4, long_text}});
         },
         mixed},
        {"more elements than there is room for",
         [] {
             return Value(Array{1, Array{long_text}});
         },
         mixed},
        {"more elements, with room for them", with_room, mixed},
        {"fewer elements",
         [] {
             return Value(Array{1, Array{2, long_text}, 3, 4, 5, 6, Array{long_text}, Object{}});
         },
         mixed},
        {"other members",
         [] {
             return Value(Object{{"a", 1}, {"b", Array{long_text}}});
         },
         Value(Object{{"a", mixed}, {"c", other_text}, {"d", Object{{"e", mixed}}}})},
        {"an array in place of a text", [] { return Value(long_text); }, mixed},
        {"an object in place of an array", [] { return Value(Array{long_text}); },
         Value(Object{{"a", mixed}})},
        {"a text in place of an object",
         [] {
             return Value(Object{{long_text, 1}});
         },
         Value(other_text)},
    };
}

/// Assigns to a value within `level` arrays while the n-th allocation fails. Returns the value's
/// text after that, and whether its former first element is still where it was; nothing if no
/// allocation has failed.
std::optional<std::string> left_by_failure(const Change& change, std::size_t level, std::size_t n) {
    Value target = within_arrays(change.target(), level);
    const Value source = within_arrays(change.source, level);
    Value& core = core_of(target, level);
    const Value* const first = kind_name(core) == "JSON array" ? &core[0] : nullptr;
    bool failed = false;
    {
        const FailingAllocation failing(n, Failing::once);
        try {
            target = source;
        } catch (const std::bad_alloc&) {
        }
        failed = failing.happened();
    }
    EXPECT_EQ(&core_of(target, level), &core);
    if (!failed) {
        EXPECT_EQ(content_text(core), content_text(change.source));
        return std::nullopt;
    }
    const bool in_place =
        kind_name(core) == "JSON array" && core.length() != 0 && &core[0] == first;
    return content_text(core) + (in_place ? ", in place" : "");
}

std::vector<std::string> left_by_failures(const Change& change, std::size_t level) {
    std::vector<std::string> left;
    while (const auto text = left_by_failure(change, level, left.size() + 1)) {
        left.push_back(*text);
    }
    return left;
}

TEST(DeepAssignmentOutOfMemory, LeavesTheSameStateAtEveryLevel) {
    for (const Change& change : changes()) {
        const std::vector<std::string> near_the_surface = left_by_failures(change, 0);
        EXPECT_FALSE(near_the_surface.empty()) << change.name;
        for (const std::size_t level : {1u, 97u, 98u, 99u, 100u, 101u, 102u, 103u, 1000u}) {
            EXPECT_EQ(left_by_failures(change, level), near_the_surface)
                << change.name << " at level " << level;
        }
    }
}

TEST(DeepAssignmentOutOfMemory, KeepsTheElementsAlreadyAssigned) {
    const Change change{"",
                        [] {
                            return Value(Array{1, 2, 3});
                        },
                        Value(Array{4, other_text, Array{5}})};
    const std::vector<std::string> left = {
        "[4,2,3], in place",
        "[4,\"another text that is too long for a string's own storage\",false], in place",
        "[4,\"another text that is too long for a string's own storage\",false], in place",
    };
    for (const std::size_t level : {0u, 99u, 100u, 101u, 1000u}) {
        EXPECT_EQ(left_by_failures(change, level), left) << "at level " << level;
    }
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
