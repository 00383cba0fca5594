// Random changes of random values: beside a plain implementation, and from one value to another.
#include "support/describe.hpp"
#include "support/random_changes.hpp"
#include "support/random_trees.hpp"
#include "support/reference_patch.hpp"
#include "support/repetitions.hpp"

#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace foundation::json {
namespace {

using test::are_identical;
using test::describe;
using test::RandomChanges;
using test::reference_equivalent;

/// What a failed round prints.
std::string round_of(std::uint64_t seed, const Value& a, const Value& b) {
    return describe(a) + "\nand\n" + describe(b) + "\nseed " + std::to_string(seed);
}

/// A value, and another one or the same with changes.
std::pair<Value, Value> random_pair(RandomChanges& random) {
    std::pair<Value, Value> pair(random.value(), Value());
    if (random.once_in(4)) {
        pair.second = random.value();
    } else {
        pair.second = Value(pair.first);
        random.change(pair.second);
    }
    return pair;
}

TEST(RandomEquivalent, AgreesWithTheReference) {
    const std::uint64_t seed = test::random_seed();
    RandomChanges random(seed);
    for (std::size_t round = 5 * test::test_repetitions(); round > 0; --round) {
        const auto [a, b] = random_pair(random);
        ASSERT_EQ(equivalent(a, b), reference_equivalent(a, b)) << round_of(seed, a, b);
        ASSERT_EQ(equivalent(b, a), reference_equivalent(a, b)) << round_of(seed, a, b);
        ASSERT_EQ(equivalent(a, a), reference_equivalent(a, a)) << round_of(seed, a, b);
    }
}

TEST(RandomDiff, MakesAPatchThatGivesTheOtherValue) {
    const std::uint64_t seed = test::random_seed();
    RandomChanges random(seed);
    for (std::size_t round = 5 * test::test_repetitions(); round > 0; --round) {
        const auto [a, b] = random_pair(random);
        if (!reference_equivalent(b, b)) {
            continue; // NaN is equivalent to nothing
        }
        const Value operations = diff(a, b);
        Value patched = a;
        ASSERT_EQ(&patch(patched, operations), &patched);
        ASSERT_TRUE(reference_equivalent(patched, b)) << round_of(seed, a, b) << '\n'
                                                      << describe(operations);
        Value plain = a;
        ASSERT_EQ(test::reference_patch(plain, get<Array>(operations)), std::nullopt)
            << round_of(seed, a, b) << '\n'
            << describe(operations);
        ASSERT_TRUE(are_identical(plain, patched)) << round_of(seed, a, b);
        ASSERT_EQ(operations.length() == 0, reference_equivalent(a, b)) << round_of(seed, a, b);
    }
}

/// Whether an object in a value has a member that is null where another value has not; arrays are
/// not looked into.
bool makes_null(const Value& from, const Value& to) {
    if (!holds<Object>(to)) {
        return false;
    }
    for (const auto& [name, value] : get<Object>(to)) {
        const Value& before = holds<Object>(from) ? from[name] : Value();
        if ((holds<Null>(value) && !holds<Null>(before)) || makes_null(Value(before), value)) {
            return true;
        }
    }
    return false;
}

TEST(RandomMergeDiff, MakesAMergePatchThatGivesTheOtherValue) {
    const std::uint64_t seed = test::random_seed();
    RandomChanges random(seed);
    std::size_t compared = 0;
    for (std::size_t round = test::test_repetitions(); round > 0; --round) {
        const auto [a, b] = random_pair(random);
        const bool impossible = makes_null(a, b) || (holds<Undefined>(b) && !holds<Undefined>(a));
        try {
            const Value changes = merge_diff(a, b);
            ASSERT_FALSE(impossible) << round_of(seed, a, b);
            Value merged = a;
            merge_patch(merged, changes);
            ASSERT_TRUE(reference_equivalent(merged, b) || !reference_equivalent(b, b))
                << round_of(seed, a, b) << '\n'
                << describe(changes);
            ++compared;
        } catch (const PointerError& error) {
            ASSERT_TRUE(impossible) << error.what() << '\n' << round_of(seed, a, b);
        }
    }
    EXPECT_GT(compared, 0u);
}

TEST(RandomMergePatch, AgreesWithTheReference) {
    const std::uint64_t seed = test::random_seed();
    RandomChanges random(seed);
    for (std::size_t round = test::test_repetitions(); round > 0; --round) {
        const auto [a, b] = random_pair(random);
        const Value expected = test::reference_merge(a, b);
        Value merged = a;
        merge_patch(merged, b);
        ASSERT_TRUE(are_identical(merged, expected)) << round_of(seed, a, b);
        Value moved = a;
        merge_patch(moved, Value(b));
        ASSERT_TRUE(are_identical(moved, expected)) << round_of(seed, a, b);
    }
}

/// Applies a patch.
/// @return the index of the operation that fails; nothing if none does
template <class Operations>
std::optional<std::size_t> failure_of_patch(Value& root, Operations&& operations) {
    try {
        patch(root, std::forward<Operations>(operations));
        return std::nullopt;
    } catch (const PatchError& error) {
        return error.index();
    }
}

TEST(RandomPatch, AgreesWithTheReference) {
    const std::uint64_t seed = test::random_seed();
    RandomChanges random(seed);
    for (std::size_t round = 2 * test::test_repetitions(); round > 0; --round) {
        const Value original = random.value();
        const Value operations = test::random_operations(random, original);
        Value expected = original;
        const auto failure = test::reference_patch(expected, get<Array>(operations));
        Value patched = original;
        ASSERT_EQ(failure_of_patch(patched, operations), failure)
            << round_of(seed, original, operations);
        ASSERT_TRUE(are_identical(patched, expected)) << round_of(seed, original, operations);

        // Values that a patch may take are given back if it fails.
        Value taken = operations;
        Value other = original;
        ASSERT_EQ(failure_of_patch(other, std::move(taken)), failure);
        ASSERT_TRUE(are_identical(other, expected)) << round_of(seed, original, operations);
        if (failure) {
            ASSERT_TRUE(are_identical(taken, operations)) << round_of(seed, original, operations);
        }
    }
}

/// The value that is changed, and what a change returns of it.
struct Changed {
    Value root;
    std::optional<Value> result;
};

/// Makes a change that may fail.
template <class Change>
Changed changed(const Value& root, Change change) {
    Changed made{root, std::nullopt};
    try {
        made.result = change(made.root);
    } catch (const PointerError&) {
        EXPECT_TRUE(are_identical(made.root, root));
    }
    return made;
}

/// The same by the reference.
template <class Change>
Changed reference_changed(const Value& root, Change change) {
    Changed made{root, std::nullopt};
    try {
        made.result = change(made.root);
    } catch (const test::ReferenceFailure&) {
        made.root = Value(root);
    }
    return made;
}

bool are_identical_changes(const Changed& a, const Changed& b) {
    return are_identical(a.root, b.root) && a.result.has_value() == b.result.has_value() &&
           (!a.result || are_identical(*a.result, *b.result));
}

TEST(RandomChangesByPointer, AgreeWithTheReference) {
    const std::uint64_t seed = test::random_seed();
    RandomChanges random(seed);
    for (std::size_t round = 2 * test::test_repetitions(); round > 0; --round) {
        const Value root = random.value();
        const Value value = random.value(2);
        const std::string pointer = random.pointer(root);
        const std::string other = random.pointer(root);
        const auto tokens = test::tokens_of(pointer);
        const auto other_tokens = test::tokens_of(other);

        ASSERT_TRUE(
            are_identical_changes(changed(root, [&](Value& v) { return set(v, pointer, value); }),
                                  reference_changed(root,
                                                    [&](Value& v) {
                                                        test::reference_set(v, tokens, value);
                                                        return value;
                                                    })))
            << "set " << pointer << '\n'
            << round_of(seed, root, value);
        ASSERT_TRUE(are_identical_changes(
            changed(root, [&](Value& v) { return insert(v, pointer, value); }),
            reference_changed(root,
                              [&](Value& v) {
                                  test::reference_add(v, tokens, value);
                                  return value;
                              })))
            << "insert " << pointer << '\n'
            << round_of(seed, root, value);
        ASSERT_TRUE(are_identical_changes(
            changed(root, [&](Value& v) { return erase(v, pointer); }),
            reference_changed(root, [&](Value& v) { return test::reference_remove(v, tokens); })))
            << "erase " << pointer << '\n'
            << round_of(seed, root, value);
        ASSERT_TRUE(are_identical_changes(
            changed(root, [&](Value& v) { return move(v, pointer, other); }),
            reference_changed(root,
                              [&](Value& v) {
                                  Value moved = test::reference_find(v, tokens);
                                  test::reference_move(v, tokens, other_tokens);
                                  return moved;
                              })))
            << "move " << pointer << " to " << other << '\n'
            << round_of(seed, root, value);
        ASSERT_TRUE(are_identical_changes(
            changed(root, [&](Value& v) { return copy(v, pointer, other); }),
            reference_changed(root,
                              [&](Value& v) {
                                  Value copied = test::reference_find(v, tokens);
                                  test::reference_add(v, other_tokens, copied);
                                  return copied;
                              })))
            << "copy " << pointer << " to " << other << '\n'
            << round_of(seed, root, value);
    }
}

} // namespace
} // namespace foundation::json
