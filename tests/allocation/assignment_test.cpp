// Running out of memory in assignment and swap, for every pair of kinds.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>

namespace foundation::json::test {
namespace {

struct Operands {
    Value a;
    Value b;
};

template <class Test>
void for_all_pairs_of_kinds(Test test) {
    for (const Sample& a : one_of_each_kind()) {
        for (const Sample& b : other_samples()) {
            SCOPED_TRACE(a.kind + " and " + b.kind);
            test(a, b);
        }
    }
}

/// Checks the target of a copy assignment that has failed.
void expect_after_failed_copy(const Value& target, const Sample& before, const Sample& source) {
    if (!source.is_container()) {
        EXPECT_EQ(describe(target), before.description);
    } else if (before.kind != source.kind) {
        EXPECT_EQ(describe(target), "JSON boolean false");
    } else {
        EXPECT_EQ(kind_name(target), before.kind);
    }
}

TEST(CopyAssignmentOutOfMemory, LeavesTheTargetInAKnownStateAndTheSourceAsItWas) {
    for_all_pairs_of_kinds([](const Sample& a, const Sample& b) {
        const std::size_t failures = fail_each_allocation(
            [&] {
                return Operands{a.value, b.value};
            },
            [](Operands& o) { o.a = std::as_const(o.b); },
            [&](const Operands& o) {
                expect_after_failed_copy(o.a, a, b);
                EXPECT_EQ(describe(o.b), b.description);
            },
            [&](const Operands& o) {
                EXPECT_EQ(describe(o.a), b.description);
                EXPECT_EQ(describe(o.b), b.description);
            });
        EXPECT_EQ(failures > 0, b.is_string() || b.is_container());
    });
}

TEST(CopyAssignmentOutOfMemory, LeavesAnObjectUsable) {
    const std::size_t failures = fail_each_allocation(
        [] {
            return Operands{Object{{"a", 1}}, Object{{"b", 2}, {"c", 3}}};
        },
        [](Operands& o) { o.a = std::as_const(o.b); },
        [](Operands& o) {
            EXPECT_FALSE(o.a.hasOwnProperty("a"));
            o.a["d"] = 4;
            EXPECT_TRUE(o.a.hasOwnProperty("d"));
        });
    EXPECT_GT(failures, 0u);
}

// The bool that is left must be false whatever the target was, true included.
TEST(CopyAssignmentOutOfMemory, TurnsATrueFlagFalseOnlyWhereTheKindWouldHaveBecomeAContainer) {
    const auto true_and_array = [] { return Operands{true, Array{1, 2}}; };
    const auto true_and_text = [] { return Operands{true, "a text too long to be held in place"}; };
    const auto assign = [](Operands& o) { o.a = std::as_const(o.b); };
    EXPECT_EQ(fail_each_allocation(true_and_array, assign,
                                   [](const Operands& o) { EXPECT_EQ(o.a, Value(false)); }),
              2u);
    EXPECT_EQ(fail_each_allocation(true_and_text, assign,
                                   [](const Operands& o) { EXPECT_EQ(o.a, Value(true)); }),
              1u);
}

TEST(MoveAssignmentOutOfMemory, LeavesTheTargetFalseAndTheSourceAsItWas) {
    for_all_pairs_of_kinds([](const Sample& a, const Sample& b) {
        const bool changes_to_container = b.is_container() && a.kind != b.kind;
        const bool exchanges = b.is_container() && a.kind == b.kind;
        const std::size_t failures = fail_each_allocation(
            [&] {
                return Operands{a.value, b.value};
            },
            [](Operands& o) { o.a = std::move(o.b); },
            [&](const Operands& o) {
                EXPECT_EQ(describe(o.a), "JSON boolean false");
                EXPECT_EQ(describe(o.b), b.description);
            },
            [&](const Operands& o) {
                EXPECT_EQ(describe(o.a), b.description);
                EXPECT_EQ(describe(o.b), exchanges ? a.description : b.left_behind);
            });
        EXPECT_EQ(failures, changes_to_container ? 1u : 0u);
    });
}

// A swap of different kinds makes three moves. When one of them fails, the content in the temporary
// is lost, but both sides are still valid values.
TEST(SwapOutOfMemory, LeavesBothAsTheyWereOrOneOfThemFalse) {
    for_all_pairs_of_kinds([](const Sample& a, const Sample& b) {
        std::size_t expected_failures = 0;
        if (a.kind != b.kind) {
            // b into the temporary, a into b, the temporary into a
            expected_failures = 2 * b.is_container() + a.is_container();
        }
        const std::size_t failures = fail_each_allocation(
            [&] {
                return Operands{a.value, b.value};
            },
            [](Operands& o) { o.a.swap(o.b); },
            [&](const Operands& o) {
                const std::string left = describe(o.a) + " and " + describe(o.b);
                const bool first_move_failed = left == a.description + " and " + b.description;
                const bool second_move_failed = left == a.description + " and JSON boolean false";
                const bool third_move_failed = left == "JSON boolean false and " + a.description;
                EXPECT_TRUE(first_move_failed || second_move_failed || third_move_failed) << left;
            });
        EXPECT_EQ(failures, expected_failures);
    });
}

TEST(SwapOutOfMemory, LeavesAStateThatDependsOnTheMoveThatFailed) {
    // Both are containers, so each of the three moves can fail.
    const char* const left[] = {
        "JSON array [1] and JSON object {\"a\":2}", // nothing was moved yet
        "JSON array [1] and JSON boolean false",    // the object went with the temporary
        "JSON boolean false and JSON array [1]",    // here, too
    };
    for (std::size_t move = 0; move != 3; ++move) {
        Value a(Array{1});
        Value b(Object{{"a", 2}});
        bool failed = false;
        try {
            const FailingAllocation failing(move + 1, Failing::once);
            a.swap(b);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        EXPECT_TRUE(failed);
        EXPECT_EQ(describe(a) + " and " + describe(b), left[move]);
    }
}

} // namespace
} // namespace foundation::json::test
