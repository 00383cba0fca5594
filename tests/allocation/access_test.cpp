// Running out of memory in push() and lookups: the value stays as it was.
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

const std::string long_key = "a key too long for a string's own storage";

// ---- push ----------------------------------------------------------------------------------

/// An array of elements of several kinds, with or without room for more.
Value three_elements(bool with_room) {
    Value array(Array{"the text of the first element", Array{2, Object{{"a", 3}}}});
    array.push("the text of the last element"); // doubles the storage
    if (!with_room) {
        array.push(4);
    }
    return array;
}

/// Pushes a value with every allocation failing in turn. After a failure the array must be as it
/// was, with its elements where they were.
std::size_t failures_of_pushing(const Value& value, bool with_room) {
    struct Operands {
        Value array;
        Value value;
        const Value* first_element;
    };
    const std::string before = describe(three_elements(with_room));
    const std::size_t length_before = three_elements(with_room).length();
    return fail_each_allocation(
        [&] {
            Operands o{three_elements(with_room), value, nullptr};
            o.first_element = &o.array[0];
            return o;
        },
        [](Operands& o) { o.array.push(o.value); },
        [&](const Operands& o) {
            EXPECT_EQ(describe(o.array), before);
            EXPECT_EQ(&o.array[0], o.first_element);
        },
        [&](const Operands& o) {
            EXPECT_EQ(o.array.length(), length_before + 1);
            EXPECT_EQ(o.array[length_before], o.value);
        });
}

TEST(PushOutOfMemory, LeavesAnArrayWithRoomAsItWas) {
    EXPECT_EQ(failures_of_pushing(1, true), 0u);
    EXPECT_EQ(failures_of_pushing(long_key, true), 1u);
    EXPECT_EQ(failures_of_pushing(Array{"a text in an array that is pushed", 2}, true), 3u);
    EXPECT_EQ(failures_of_pushing(Object{{"a", 1}, {"b", Array{}}}, true), 4u);
}

TEST(PushOutOfMemory, LeavesAnArrayThatHasToGrowAsItWas) {
    // Beyond the copy itself: its storage, the larger storage, and a container for each element
    // that moves there.
    EXPECT_EQ(failures_of_pushing(1, false), 3u);
    EXPECT_EQ(failures_of_pushing(long_key, false), 4u);
    EXPECT_EQ(failures_of_pushing(Array{"a text in an array that is pushed", 2}, false), 7u);
    EXPECT_EQ(failures_of_pushing(Object{{"a", 1}, {"b", Array{}}}, false), 8u);
}

TEST(PushOutOfMemory, OfAnArrayIntoItselfLeavesItAsItWas) {
    for (const bool with_room : {true, false}) {
        const Value before = three_elements(with_room);
        const std::size_t failures = fail_each_allocation(
            [&] { return three_elements(with_room); }, [](Value& array) { array.push(array); },
            [&](const Value& array) { EXPECT_EQ(array, before); },
            [&](const Value& array) {
                EXPECT_EQ(array.length(), before.length() + 1);
                EXPECT_EQ(array[before.length()], before);
            });
        EXPECT_GT(failures, 0u);
    }
}

TEST(PushOutOfMemory, OfAnOwnElementLeavesTheArrayAsItWas) {
    for (const bool with_room : {true, false}) {
        for (const int index : {0, 1, 2}) {
            const Value before = three_elements(with_room);
            const std::size_t failures =
                fail_each_allocation([&] { return three_elements(with_room); },
                                     [&](Value& array) { array.push(array[index]); },
                                     [&](const Value& array) { EXPECT_EQ(array, before); },
                                     [&](const Value& array) {
                                         EXPECT_EQ(array.length(), before.length() + 1);
                                         EXPECT_EQ(array[before.length()], before[index]);
                                     });
            EXPECT_GT(failures, 0u);
        }
    }
}

// ---- Lookup --------------------------------------------------------------------------------

/// Looks up a missing member with every allocation failing in turn. After a failure nothing may
/// have been inserted.
template <class Key>
std::size_t failures_of_inserting(const Key& key) {
    const std::string before = "JSON object {\"a\":1,\"b\":\"the text of a member\"}";
    return fail_each_allocation(
        [] {
            return Value(Object{{"a", 1}, {"b", "the text of a member"}});
        },
        [&](Value& object) { object[key]; },
        [&](const Value& object) {
            EXPECT_FALSE(object.hasOwnProperty(long_key));
            EXPECT_EQ(describe(object), before);
        },
        [&](const Value& object) {
            EXPECT_TRUE(object.hasOwnProperty(long_key));
            EXPECT_EQ(kind_name(object[long_key]), "undefined");
        });
}

TEST(LookupOutOfMemory, InsertsNothing) {
    EXPECT_EQ(failures_of_inserting(long_key), 2u) << "the node and the key in it";
    EXPECT_EQ(failures_of_inserting(Value(long_key)), 2u);
    EXPECT_EQ(failures_of_inserting(long_key.c_str()), 3u) << "and the text as a string";
}

TEST(LookupOutOfMemory, OfAConstValueLeavesItAsItWas) {
    struct Operands {
        Value object;
        const Value* found;
    };
    const std::size_t failures = fail_each_allocation(
        [] {
            return Operands{Object{{long_key, 1}}, nullptr};
        },
        [](Operands& o) { o.found = &std::as_const(o.object)[long_key.c_str()]; },
        [](const Operands& o) { EXPECT_EQ(o.found, nullptr); },
        [](const Operands& o) { EXPECT_EQ(*o.found, Value(1)); });
    EXPECT_EQ(failures, 1u) << "the text as a string";
}

TEST(LookupOutOfMemory, CannotHappenToMembersThatAreThere) {
    Value object(Object{{long_key, 1}});
    const Value key(long_key);
    EXPECT_EQ(allocations_of([&] { object[long_key]; }), 0u);
    EXPECT_EQ(allocations_of([&] { object[key]; }), 0u);
    EXPECT_EQ(allocations_of([&] { static_cast<void>(std::as_const(object)[long_key]); }), 0u);
    EXPECT_EQ(allocations_of([&] { static_cast<void>(std::as_const(object)[key]); }), 0u);
}

// ---- hasOwnProperty and HasProperty --------------------------------------------------------

TEST(HasPropertyOutOfMemory, CannotHappenToHasOwnProperty) {
    const Value object(Object{{long_key, 1}});
    const std::string missing_key = long_key + " either";
    bool found = false;
    bool missing_found = true;
    EXPECT_EQ(allocations_of([&] { found = object.hasOwnProperty(long_key); }), 0u);
    EXPECT_TRUE(found);
    EXPECT_EQ(allocations_of([&] { missing_found = object.hasOwnProperty(missing_key); }), 0u);
    EXPECT_FALSE(missing_found);
    for (const Sample& sample : one_of_each_kind()) {
        missing_found = true;
        EXPECT_EQ(allocations_of([&] { missing_found = sample.value.hasOwnProperty(long_key); }),
                  0u)
            << sample.kind;
        EXPECT_FALSE(missing_found) << sample.kind;
    }
}

TEST(HasPropertyOutOfMemory, LeaksNoName) {
    const Value object(Object{{long_key, 1}});
    const std::optional<Value::HasProperty> none;
    const auto expect_none = [](const auto& test) { EXPECT_FALSE(test.has_value()); };
    const auto expect_test = [&](const auto& test) { EXPECT_TRUE((*test)(object)); };

    EXPECT_EQ(fail_each_allocation([&] { return none; }, [](auto& test) { test.emplace(long_key); },
                                   expect_none, expect_test),
              1u);

    const Value::HasProperty original(long_key);
    EXPECT_EQ(fail_each_allocation([&] { return none; },
                                   [&](auto& test) { test.emplace(original); }, expect_none,
                                   expect_test),
              1u);
}

TEST(HasPropertyOutOfMemory, KeepsTheNameWhenCopyAssignmentFails) {
    const Value object(Object{{"old", 1}});
    const Value other(Object{{long_key, 1}});
    const Value::HasProperty source(long_key);
    const std::size_t failures = fail_each_allocation(
        [] { return Value::HasProperty("old"); }, [&](Value::HasProperty& test) { test = source; },
        [&](const Value::HasProperty& test) {
            EXPECT_TRUE(test(object));
            EXPECT_FALSE(test(other));
            EXPECT_TRUE(source(other));
        },
        [&](const Value::HasProperty& test) {
            EXPECT_FALSE(test(object));
            EXPECT_TRUE(test(other));
        });
    EXPECT_EQ(failures, 1u);
}

} // namespace
} // namespace foundation::json::test
