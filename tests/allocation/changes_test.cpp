// Running out of memory while values are changed by JSON Pointers and patches: all is as it was.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/json_reader.hpp"
#include "support/random_changes.hpp"
#include "support/random_trees.hpp"
#include "support/reference_patch.hpp"
#include "support/repetitions.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace foundation::json::test {
namespace {

const char* const long_name = "a name too long for a string's own storage";

/// Arrays of elements of several kinds, with and without room for more, in objects and in arrays.
Value document() {
    Value root = read_json(R"({
        "numbers": [1, 2, 3],
        "objects": [{"a": 1}, {"b": 2}, {"c": [3]}],
        "mixed": [1, ["a text too long for a string's own storage"], {"d": {}}, [[4]]],
        "inner": {"a name too long for a string's own storage": {"x": ["y"]}, "s": "text"}
    })");
    get<Array>(root["objects"]).reserve(10);
    return root;
}

using Change = std::function<void(Value& root, Value& given)>;

/// Changes a document while each allocation fails in turn. After a failure, both the document and
/// the value that the change may take must be as they were.
/// @param expected  the document in the end
/// @return how many allocations could fail
std::size_t failures_of(const Value& before, const Value& given, const std::string& expected,
                        const Change& change) {
    struct Operands {
        Value root;
        Value given;
        std::size_t capacity;
    };
    const std::string description = describe(before);
    const std::string description_of_given = describe(given);
    return fail_each_allocation(
        [&] {
            return Operands{before, given, 0};
        },
        [&](Operands& o) { change(o.root, o.given); },
        [&](const Operands& o) {
            EXPECT_EQ(describe(o.root), description);
            EXPECT_EQ(describe(o.given), description_of_given);
        },
        [&](const Operands& o) { EXPECT_EQ(content_text(o.root), expected); });
}

/// What a change makes of a document without a failure.
std::string changed(Value root, Value given, const Change& change) {
    change(root, given);
    return content_text(root);
}

/// Several pointers into the document, for places of every sort.
const char* const places[] = {
    "/numbers/0",   "/numbers/-",
    "/objects/0",   "/objects/2",
    "/objects/-",   "/mixed/0",
    "/mixed/1",     "/mixed/3",
    "/mixed/-",     "/inner/s",
    "/inner/new",   "/new",
    "/inner",       "/mixed/1/0",
    "/mixed/3/0/0", "/inner/a name too long for a string's own storage/x/0",
};

Array given_values() {
    return {1, "another text too long for a string's own storage", Array{5, Array{}},
            Object{{"a", 6}, {long_name, Object{}}}};
}

void expect_each_failure_to_change_nothing(const Change& change) {
    for (const Value& given : given_values()) {
        EXPECT_GT(failures_of(document(), given, changed(document(), given, change), change), 0u)
            << "nothing was tried out";
    }
}

TEST(ChangesOutOfMemory, BySetLeaveTheValueAsItWas) {
    for (const char* const place : places) {
        SCOPED_TRACE(place);
        expect_each_failure_to_change_nothing(
            [&](Value& root, Value& given) { set(root, place, std::move(given)); });
    }
    expect_each_failure_to_change_nothing([](Value& root, Value& given) {
        set(root, "/new/0/a name too long for a string's own storage/-/x", std::move(given));
    });
    expect_each_failure_to_change_nothing(
        [](Value& root, Value& given) { set(root, "/mixed/-/0/x", std::move(given)); });
}

TEST(ChangesOutOfMemory, ByInsertLeaveTheValueAsItWas) {
    for (const char* const place : places) {
        SCOPED_TRACE(place);
        expect_each_failure_to_change_nothing(
            [&](Value& root, Value& given) { insert(root, place, std::move(given)); });
    }
}

TEST(ChangesOutOfMemory, OfACopyLeaveTheValueAsItWas) {
    expect_each_failure_to_change_nothing(
        [](Value& root, Value& given) { set(root, "/mixed/1", std::as_const(given)); });
    expect_each_failure_to_change_nothing(
        [](Value& root, Value& given) { insert(root, "/mixed/1", std::as_const(given)); });
}

TEST(ChangesOutOfMemory, ByEraseLeaveTheValueAsItWas) {
    for (const char* const place :
         {"/numbers/0", "/objects/0", "/mixed/0", "/mixed/1", "/mixed/3", "/inner", "/inner/s",
          "/inner/a name too long for a string's own storage", "/objects/2/c/0"}) {
        SCOPED_TRACE(place);
        const Value whole = document();
        const Value removed = *find(whole, place);
        struct Operands {
            Value root;
            Value result; // of the right kind, so that nothing is allocated for it
        };
        Value expected = document();
        erase(expected, place);
        const std::size_t failures = fail_each_allocation(
            [&] {
                return Operands{document(), removed};
            },
            [&](Operands& o) {
                Value taken = erase(o.root, place);
                o.result.swap(taken);
            },
            [](const Operands& o) { EXPECT_EQ(o.root, document()); },
            [&](const Operands& o) {
                EXPECT_EQ(content_text(o.root), content_text(expected));
                EXPECT_EQ(content_text(o.result), content_text(removed));
            });
        EXPECT_GT(failures, 0u);
    }
}

TEST(ChangesOutOfMemory, ByMoveAndCopyLeaveTheValueAsItWas) {
    const std::pair<const char*, const char*> moves[] = {
        {"/objects/0", "/objects/2"},
        {"/objects/0", "/mixed/0"},
        {"/mixed/1", "/objects/-"},
        {"/mixed/2", "/mixed/0"},
        {"/mixed/3", "/inner/s"},
        {"/inner", "/mixed/1"},
        {"/inner/s", "/a new name too long for a string's own storage"},
        {"/inner/a name too long for a string's own storage", "/numbers/1"},
        {"/mixed/3/0", "/mixed/1/0"},
        {"/mixed/2", ""},
    };
    for (const auto& [from, to] : moves) {
        SCOPED_TRACE(std::string(from) + " to " + to);
        for (const bool copies : {false, true}) {
            const Change change = [&from = from, &to = to, copies](Value& root, Value&) {
                copies ? copy(root, from, to) : move(root, from, to);
            };
            EXPECT_GT(
                failures_of(document(), Value(), changed(document(), Value(), change), change), 0u);
        }
    }
}

TEST(ChangesOutOfMemory, OfTheRootLeaveItAsItWasButForOneCase) {
    const Value values[] = {
        Value(),
        1,
        "a text too long for a string's own storage",
        Array{1, "another text too long for a string's own storage"},
        Object{{"a", Array{2}}},
    };
    for (const Value& before : values) {
        for (const Value& given : values) {
            const bool turns = (holds<Array>(before) && holds<Object>(given)) ||
                               (holds<Object>(before) && holds<Array>(given));
            if (turns) {
                continue; // below
            }
            const Change change = [](Value& root, Value& value) {
                set(root, "", std::move(value));
            };
            // A change that allocates nothing has nothing to fail.
            static_cast<void>(failures_of(before, given, content_text(given), change));
        }
    }
}

TEST(ChangesOutOfMemory, ThatTurnTheRootFromArrayToObjectLeaveItAsItWasUntilTheLastStep) {
    const std::size_t failures = fail_each_allocation(
        [] {
            return std::pair<Value, Value>(Array{1, Array{2}}, Object{{"a", Array{3}}});
        },
        [](std::pair<Value, Value>& o) { set(o.first, "", std::move(o.second)); },
        [](std::pair<Value, Value>& o) {
            const std::string left = describe(o.first);
            EXPECT_TRUE(left == "JSON array [1,[2]]" || left == "JSON boolean false") << left;
            if (left == "JSON boolean false") {
                o.second = Object{{"a", Array{3}}};
            }
        },
        [](const std::pair<Value, Value>& o) {
            EXPECT_EQ(describe(o.first), R"(JSON object {"a":[3]})");
        });
    EXPECT_GT(failures, 1u);
}

// ---- Patches -------------------------------------------------------------------------------

/// Operations of each sort, in several places, upon each other.
Value operations() {
    return read_json(R"([
        {"op": "test", "path": "/numbers/0", "value": 1},
        {"op": "add", "path": "/objects/0", "value": {"new": [7]}},
        {"op": "add", "path": "/objects/0/new/0", "value": {"newer": 8}},
        {"op": "remove", "path": "/objects/1"},
        {"op": "replace", "path": "/mixed/1", "value": {"was": "an array"}},
        {"op": "move", "from": "/mixed/3", "path": "/mixed/0"},
        {"op": "add", "path": "/mixed/0/0/0", "value": ["a text too long for its own storage"]},
        {"op": "copy", "from": "/mixed", "path": "/inner/copy of a name that is long"},
        {"op": "move", "from": "/inner/s", "path": "/numbers/-"},
        {"op": "move", "from": "/numbers", "path": "/inner/s"},
        {"op": "replace", "path": "/inner/s/0", "value": null},
        {"op": "remove", "path": "/inner/a name too long for a string's own storage"},
        {"op": "add", "path": "/inner/a name too long for a string's own storage", "value": 1},
        {"op": "test", "path": "/inner/s", "value": [null, 2, 3, "text"]}
    ])");
}

TEST(PatchOutOfMemory, LeavesTheValueAsItWas) {
    const Change copying = [](Value& root, Value& given) { patch(root, std::as_const(given)); };
    const Change taking = [](Value& root, Value& given) { patch(root, std::move(given)); };
    const std::string expected = changed(document(), operations(), copying);
    EXPECT_EQ(expected,
              R"({"inner":{"a name too long for a string's own storage":1,)"
              R"("copy of a name that is long":[[[["a text too long for its own storage"],4]],1,)"
              R"({"was":"an array"},{"d":{}}],"s":[null,2,3,"text"]},)"
              R"("mixed":[[[["a text too long for its own storage"],4]],1,{"was":"an array"},)"
              R"({"d":{}}],"objects":[{"new":[{"newer":8},7]},{"b":2},{"c":[3]}]})");
    EXPECT_GT(failures_of(document(), operations(), expected, copying), 50u);
    EXPECT_GT(failures_of(document(), operations(), expected, taking), 30u);
}

TEST(PatchOutOfMemory, LeavesArraysWithRoomForMoreAsTheyWere) {
    const Value operations = read_json(R"([{"op": "add", "path": "/a/0", "value": {"x": 1}},
                                           {"op": "add", "path": "/b/0", "value": {"y": 2}},
                                           {"op": "add", "path": "/a/-", "value": [3]}])");
    const Value before = read_json(R"({"a": [{"p": 1}, {"q": 2}], "b": [{"r": 3}]})");
    const std::size_t failures = fail_each_allocation(
        [&] {
            std::pair<Value, Value> operands(before, operations);
            get<Array>(operands.first["a"]).reserve(10);
            get<Array>(operands.first["b"]).reserve(10);
            return operands;
        },
        [](std::pair<Value, Value>& o) { patch(o.first, std::move(o.second)); },
        [&](const std::pair<Value, Value>& o) {
            EXPECT_EQ(content_text(o.first), content_text(before));
            EXPECT_EQ(o.second, operations);
        },
        [&](const std::pair<Value, Value>& o) {
            EXPECT_EQ(content_text(o.first),
                      R"({"a":[{"x":1},{"p":1},{"q":2},[3]],"b":[{"y":2},{"r":3}]})");
        });
    EXPECT_GT(failures, 5u);
}

TEST(PatchOutOfMemory, ThatFailsAnywayLeavesTheValueAsItWas) {
    Value failing = operations();
    failing.push(operation::remove("/nowhere"));
    const std::size_t failures =
        fail_each_allocation([&] { return std::pair<Value, Value>(document(), failing); },
                             [](std::pair<Value, Value>& o) {
                                 try {
                                     patch(o.first, std::move(o.second));
                                     ADD_FAILURE() << "nothing was thrown";
                                 } catch (const PatchError&) {
                                 }
                             },
                             [&](const std::pair<Value, Value>& o) {
                                 EXPECT_EQ(o.first, document());
                                 EXPECT_EQ(o.second, failing);
                             },
                             [&](const std::pair<Value, Value>& o) {
                                 EXPECT_EQ(o.first, document());
                                 EXPECT_EQ(o.second, failing);
                             });
    EXPECT_GT(failures, 30u);
}

TEST(PatchOutOfMemory, ReplacingTheRootTwiceLeavesItAsItWas) {
    const Value replacing = read_json(R"([{"op": "replace", "path": "", "value": [1, [2]]},
                                          {"op": "add", "path": "/1/0", "value": {}},
                                          {"op": "move", "from": "/1", "path": ""},
                                          {"op": "replace", "path": "", "value": {"a": [3]}},
                                          {"op": "add", "path": "/a/-", "value": 4}])");
    const Change taking = [](Value& root, Value& given) { patch(root, std::move(given)); };
    EXPECT_GT(failures_of(document(), replacing, R"({"a":[3,4]})", taking), 5u);
    EXPECT_GT(failures_of(7, replacing, R"({"a":[3,4]})", taking), 5u);
    EXPECT_GT(failures_of("a text too long for a string's own storage", replacing, R"({"a":[3,4]})",
                          taking),
              5u);
}

TEST(MergePatchOutOfMemory, LeavesTheValueAsItWas) {
    const Value changes = read_json(R"({
        "numbers": {"became": {"an": "object"}},
        "objects": null,
        "mixed": [1, [2]],
        "inner": {"a name too long for a string's own storage": {"x": null, "z": [3]}, "s": {}},
        "another name too long for a string's own storage": {"u": {"v": null}}
    })");
    const Change copying = [](Value& root, Value& given) {
        merge_patch(root, std::as_const(given));
    };
    const Change taking = [](Value& root, Value& given) { merge_patch(root, std::move(given)); };
    const std::string expected = changed(document(), changes, copying);
    EXPECT_EQ(expected, R"({"another name too long for a string's own storage":{"u":{}},)"
                        R"("inner":{"a name too long for a string's own storage":{"z":[3]},)"
                        R"("s":{}},"mixed":[1,[2]],"numbers":{"became":{"an":"object"}}})");
    EXPECT_GT(failures_of(document(), changes, expected, copying), 20u);
    EXPECT_GT(failures_of(document(), changes, expected, taking), 20u);
}

/// Whether a value is an array or object, and another one of the other kind.
bool turns_container(const Value& before, const Value& after) {
    return (holds<Array>(before) && holds<Object>(after)) ||
           (holds<Object>(before) && holds<Array>(after));
}

TEST(RandomPatchOutOfMemory, LeavesTheValueAsItWas) {
    const std::uint64_t seed = random_seed();
    RandomChanges random(seed);
    for (std::size_t round = test_repetitions() / 50; round > 0 && !testing::Test::HasFailure();
         --round) {
        const Value before = random.value();
        const Value list = random_operations(random, before);
        Value after = before;
        const bool fails = reference_patch(after, get<Array>(list)).has_value();
        if (turns_container(before, after)) {
            continue; // the exception from the rule
        }
        SCOPED_TRACE("seed " + std::to_string(seed) + ' ' + describe(before) + ' ' +
                     describe(list));
        const auto expect = [&](const std::pair<Value, Value>& o, const Value& expected) {
            EXPECT_TRUE(are_identical(o.first, expected)) << describe(o.first);
        };
        static_cast<void>(fail_each_allocation(
            [&] { return std::pair<Value, Value>(before, list); },
            [&](std::pair<Value, Value>& o) {
                try {
                    patch(o.first, std::move(o.second));
                    EXPECT_FALSE(fails);
                } catch (const PatchError&) {
                    EXPECT_TRUE(fails);
                }
            },
            [&](const std::pair<Value, Value>& o) {
                expect(o, before);
                EXPECT_TRUE(are_identical(o.second, list)) << describe(o.second);
            },
            [&](const std::pair<Value, Value>& o) { expect(o, fails ? before : after); }));
    }
}

// ---- What is made of two values ------------------------------------------------------------

TEST(DiffOutOfMemory, LeaksNothing) {
    Value after = document();
    patch(after, operations());
    const Value before = document();
    const auto none = [] { return std::optional<Value>(); };
    const auto expect_none = [](const auto& made) { EXPECT_FALSE(made.has_value()); };
    EXPECT_GT(fail_each_allocation(
                  none, [&](auto& made) { made.emplace(diff(before, after)); }, expect_none,
                  [&](const auto& made) { EXPECT_EQ(*made, diff(before, after)); }),
              20u);
    after["inner"]["s"][0] = 0;
    EXPECT_GT(fail_each_allocation(
                  none, [&](auto& made) { made.emplace(merge_diff(before, after)); }, expect_none,
                  [&](const auto& made) { EXPECT_EQ(*made, merge_diff(before, after)); }),
              20u);
}

TEST(EquivalentOutOfMemory, CannotHappen) {
    const Value a = document();
    const Value b = document();
    EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(equivalent(a, b)); }), 0u);
}

TEST(OperationOutOfMemory, LeavesTheValueAsItWas) {
    const Value given = Array{"a text too long for a string's own storage"};
    struct Operands {
        Value value;
        std::optional<Value> result;
    };
    const std::size_t failures = fail_each_allocation(
        [&] {
            return Operands{given, std::nullopt};
        },
        [](Operands& o) { o.result.emplace(operation::add("/a", std::move(o.value))); },
        [&](const Operands& o) {
            EXPECT_FALSE(o.result.has_value());
            EXPECT_TRUE(o.value == given || o.value == Value(Array{}));
        });
    EXPECT_GT(failures, 3u);
}

TEST(PointerErrorOutOfMemory, IsStdBadAlloc) {
    // However the message is made, running out of memory for it leaves the value as it was.
    const std::size_t failures = fail_each_allocation(
        [] { return document(); },
        [](Value& root) {
            try {
                set(root, "/a name too long for a string's own storage/x", 1);
                set(root, "/a name too long for a string's own storage/x/y", 1);
                ADD_FAILURE() << "nothing was thrown";
            } catch (const PointerError& error) {
                static_cast<void>(error);
            }
        },
        [](const Value&) {});
    EXPECT_GT(failures, 3u);
}

// ---- Counts --------------------------------------------------------------------------------

/// An array of so many objects.
Value objects(std::size_t count, std::size_t capacity) {
    Value result{Array()};
    auto& elements = get<Array>(result);
    elements.reserve(capacity);
    for (std::size_t i = 0; i < count; ++i) {
        elements.emplace_back(Object{{"a", 1}});
    }
    return result;
}

TEST(ChangesCount, InsertingIntoAnArrayWithRoomAllocatesNothingForItsElements) {
    for (const std::size_t count : {10U, 1000U}) {
        Value array = objects(count, 2 * count);
        Value value = Object{{"b", 2}};
        EXPECT_LE(allocations_of([&] { insert(array, "/0", std::move(value)); }), 5u) << count;
        EXPECT_EQ(array.length(), count + 1);
        EXPECT_LE(allocations_of([&] { erase(array, "/0"); }), 10u) << count;
    }
}

TEST(ChangesCount, InsertingIntoAnArrayThatGrowsAllocatesOnceForEachContainer) {
    for (const std::size_t count : {10U, 1000U}) {
        Value array = objects(count, count);
        Value value = Object{{"b", 2}};
        EXPECT_LE(allocations_of([&] { insert(array, "/0", std::move(value)); }), count + 7);
        Value numbers = Array(count, Value(1));
        EXPECT_LE(allocations_of([&] { insert(numbers, "/0", 1); }), 7u);
    }
}

TEST(ChangesCount, APatchMovesTheElementsOfAnArrayOnce) {
    Value array = objects(1000, 1000);
    Array list;
    for (int i = 0; i < 100; ++i) {
        list.push_back(operation::add("/0", i));
    }
    Value patches = list;
    EXPECT_LE(allocations_of([&] { patch(array, std::move(patches)); }), 1500u);
    EXPECT_EQ(array.length(), 1100u);
}

} // namespace
} // namespace foundation::json::test
