// Patches that are made of two values.
#include "support/deep_stack.hpp"
#include "support/describe.hpp"
#include "support/json_reader.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/patch.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <functional>
#include <string>
#include <utility>

namespace foundation::json {
namespace {

using test::content_text;
using test::read_json;

/// The patch for two values; it must work.
Value checked_diff(const Value& from, const Value& to) {
    Value operations = diff(from, to);
    Value patched = from;
    EXPECT_TRUE(equivalent(patch(patched, operations), to)) << content_text(operations);
    return operations;
}

struct DiffCase {
    const char* from;
    const char* to;
    const char* operations;
};

void expect_operations(const DiffCase& c) {
    const Value operations = checked_diff(read_json(c.from), read_json(c.to));
    EXPECT_EQ(content_text(operations), content_text(read_json(c.operations)))
        << c.from << ' ' << c.to;
}

TEST(Diff, OfObjectsNamesTheMembersThatChange) {
    for (const DiffCase& c : {
             DiffCase{R"({"a":1})", R"({"a":1})", R"([])"},
             DiffCase{R"({"a":1})", R"({"a":2})", R"([{"op":"replace","path":"/a","value":2}])"},
             DiffCase{R"({"a":1})", R"({"a":1,"b":[2]})",
                      R"([{"op":"add","path":"/b","value":[2]}])"},
             DiffCase{R"({"a":1,"b":2})", R"({"b":2})", R"([{"op":"remove","path":"/a"}])"},
             DiffCase{R"({"a":1})", R"({"b":1})", R"([{"op":"remove","path":"/a"},
                                                     {"op":"add","path":"/b","value":1}])"},
             DiffCase{R"({"a":{"b":{"c":1,"d":2}}})", R"({"a":{"b":{"c":1,"d":3}}})",
                      R"([{"op":"replace","path":"/a/b/d","value":3}])"},
             DiffCase{R"({"a/b":{"~":1},"":{"":1}})", R"({"a/b":{"~":2},"":{"":2}})",
                      R"([{"op":"replace","path":"//","value":2},
                          {"op":"replace","path":"/a~1b/~0","value":2}])"},
             DiffCase{R"({"a":{"x":1},"b":{"x":1},"c":1})", R"({"a":{"x":2},"b":{"x":2},"c":2})",
                      R"([{"op":"replace","path":"/c","value":2},
                          {"op":"replace","path":"/a/x","value":2},
                          {"op":"replace","path":"/b/x","value":2}])"},
             DiffCase{R"({"a":{}})", R"({"a":[]})", R"([{"op":"replace","path":"/a","value":[]}])"},
         }) {
        expect_operations(c);
    }
}

TEST(Diff, OfOtherValuesReplacesThem) {
    for (const DiffCase& c : {
             DiffCase{"1", "1", "[]"},
             DiffCase{"1", "2", R"([{"op":"replace","path":"","value":2}])"},
             DiffCase{"1", "\"1\"", R"([{"op":"replace","path":"","value":"1"}])"},
             DiffCase{"null", "false", R"([{"op":"replace","path":"","value":false}])"},
             DiffCase{"[]", "{}", R"([{"op":"replace","path":"","value":{}}])"},
             DiffCase{R"({"a":1})", "[1]", R"([{"op":"replace","path":"","value":[1]}])"},
         }) {
        expect_operations(c);
    }
}

TEST(Diff, OfArraysFindsWhatWasInsertedAndRemoved) {
    for (const DiffCase& c : {
             DiffCase{"[1,2,3]", "[1,2,3]", "[]"},
             DiffCase{"[1,2,3]", "[1,3]", R"([{"op":"remove","path":"/1"}])"},
             DiffCase{"[1,3]", "[1,2,3]", R"([{"op":"add","path":"/1","value":2}])"},
             DiffCase{"[1]", "[1,2]", R"([{"op":"add","path":"/1","value":2}])"},
             DiffCase{"[2]", "[1,2]", R"([{"op":"add","path":"/0","value":1}])"},
             DiffCase{"[1,2,3]", "[1,5,3]", R"([{"op":"replace","path":"/1","value":5}])"},
             DiffCase{"[1]", "[2]", R"([{"op":"replace","path":"/0","value":2}])"},
             DiffCase{"[1,2,3,4]", "[1,4]",
                      R"([{"op":"remove","path":"/1"},{"op":"remove","path":"/1"}])"},
             DiffCase{"[0,1,2,3,4,5,6,7,8,9]", "[1,2,3,4,10,5,6,8,9,11]",
                      R"([{"op":"remove","path":"/0"},
                          {"op":"add","path":"/4","value":10},
                          {"op":"remove","path":"/7"},
                          {"op":"add","path":"/9","value":11}])"},
             DiffCase{"[1,2]", "[2,3]", R"([{"op":"remove","path":"/0"},
                                           {"op":"add","path":"/1","value":3}])"},
             DiffCase{R"([{"a":1,"b":1},{"a":2},{"a":3}])", R"([{"a":2},{"a":3},{"a":4}])",
                      R"([{"op":"remove","path":"/0"},{"op":"add","path":"/2","value":{"a":4}}])"},
             DiffCase{R"([{"a":1},[1],{"a":3}])", R"([{"a":2},[2],{"a":3}])",
                      R"([{"op":"replace","path":"/0/a","value":2},
                          {"op":"replace","path":"/1/0","value":2}])"},
             DiffCase{R"([[1,2],0,[3]])", R"([0,[1,2],[3,4]])",
                      R"([{"op":"remove","path":"/0"},
                          {"op":"replace","path":"/1","value":[1,2]},
                          {"op":"add","path":"/2","value":[3,4]}])"},
         }) {
        const Value operations = checked_diff(read_json(c.from), read_json(c.to));
        const Value expected = read_json(c.operations);
        EXPECT_LE(operations.length(), expected.length())
            << content_text(operations) << ' ' << c.from << ' ' << c.to;
    }
}

TEST(Diff, OfArraysWithNothingInCommonReplacesTheArray) {
    for (const DiffCase& c : {
             DiffCase{"[1,2,3]", "[4,5,6]", R"([{"op":"replace","path":"","value":[4,5,6]}])"},
             DiffCase{R"({"a":[1,2]})", R"({"a":[]})",
                      R"([{"op":"replace","path":"/a","value":[]}])"},
             DiffCase{R"({"a":[]})", R"({"a":[1,2]})",
                      R"([{"op":"replace","path":"/a","value":[1,2]}])"},
             DiffCase{R"([1,{"a":1}])", R"(["x",{"a":2}])",
                      R"([{"op":"replace","path":"/0","value":"x"},
                          {"op":"replace","path":"/1/a","value":2}])"},
         }) {
        expect_operations(c);
    }
}

TEST(Diff, ComparesNumbersByValueAndTakesUndefinedMembersForMissing) {
    EXPECT_EQ(content_text(checked_diff(Array{1, 2}, Array{1LL, 2.0f})), "[]");
    EXPECT_EQ(content_text(checked_diff(Object{{"a", Value()}, {"b", 1}},
                                        Object{{"b", Value()}, {"c", Value()}})),
              R"([{"op":"remove","path":"\/b"}])");
    EXPECT_EQ(content_text(checked_diff(Object{{"a", Value()}}, Object{{"a", 1}})),
              R"([{"op":"add","path":"\/a","value":1}])");
    EXPECT_EQ(checked_diff(Array{1, Value()}, Array{1, 2}).length(), 1u);
    EXPECT_EQ(checked_diff(Array{1, 2}, Array{1, Value()}).length(), 1u);
    EXPECT_EQ(checked_diff(Value(), 1).length(), 1u);
    EXPECT_EQ(checked_diff(1, Value()).length(), 1u);
    EXPECT_EQ(checked_diff(Value(), Value()).length(), 0u);
    EXPECT_EQ(diff(std::nan(""), std::nan("")).length(), 1u) << "NaN is equivalent to nothing";
}

// ---- Long arrays ---------------------------------------------------------------------------

/// An array of objects, no two of which are alike.
Array records(std::size_t count, std::size_t first = 0) {
    Array result;
    result.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        result.emplace_back(Object{{"id", static_cast<double>(first + i)}, {"name", "record"}});
    }
    return result;
}

/// The number of operations that lead from an array to what an action makes of it.
std::size_t operations_for(const Array& from, const std::function<void(Array&)>& change) {
    Array to = from;
    change(to);
    return checked_diff(from, to).length();
}

TEST(Diff, OfALongArrayIsAsLongAsTheChanges) {
    const Array from = records(5000);
    EXPECT_EQ(operations_for(from, [](Array& a) { a.erase(a.begin()); }), 1u);
    EXPECT_EQ(operations_for(from, [](Array& a) { a.erase(a.begin() + 2500); }), 1u);
    EXPECT_EQ(operations_for(from, [](Array& a) { a.insert(a.begin(), Value("x")); }), 1u);
    EXPECT_EQ(operations_for(from, [](Array& a) { a.push_back("x"); }), 1u);
    EXPECT_EQ(operations_for(from,
                             [](Array& a) {
                                 a.insert(a.begin() + 4000, Value("x"));
                                 a.erase(a.begin() + 1000);
                             }),
              2u)
        << "the length stays";
    EXPECT_EQ(operations_for(from,
                             [](Array& a) {
                                 a[4900]["name"] = "changed";
                                 a.erase(a.begin() + 3000);
                                 a[2000]["id"] = 1;
                                 a.insert(a.begin() + 1000, Value("x"));
                                 a[10]["more"] = true;
                             }),
              5u);
    EXPECT_EQ(operations_for(from,
                             [](Array& a) {
                                 for (std::size_t i = 0; i < 100; ++i) {
                                     a.erase(a.begin() + static_cast<std::ptrdiff_t>(i * 40));
                                 }
                             }),
              100u);
}

TEST(Diff, OfElementsThatOccurOftenIsAsLongAsTheChanges) {
    Array bits;
    for (unsigned i = 1; i < 2000; ++i) {
        bits.push_back((i * i * 2654435761u >> 13) % 2 != 0);
    }
    EXPECT_LE(operations_for(bits,
                             [](Array& a) {
                                 a.erase(a.begin() + 100);
                                 a.erase(a.begin() + 700);
                                 a.insert(a.begin() + 1200, Value(true));
                                 a.insert(a.begin() + 1800, Value(false));
                             }),
              4u);
}

TEST(Diff, OfManyElementsThatChangeWhereTheyAreIsAsLongAsTheChanges) {
    EXPECT_EQ(operations_for(records(300),
                             [](Array& a) {
                                 for (std::size_t i = 0; i < 300; i += 3) {
                                     a[i]["name"] = "changed";
                                 }
                             }),
              100u);
}

TEST(Diff, OfVeryDifferentArraysComparesElementByElement) {
    const std::size_t count = 20000;
    const Array from = records(count);
    const Array to = records(count, count);
    const Value operations = checked_diff(from, to);
    EXPECT_EQ(operations.length(), count);
    EXPECT_EQ(content_text(operations[count - 1]),
              R"({"op":"replace","path":"\/19999\/id","value":39999})");
}

TEST(Diff, OfReversedArraysTakesBoundedWork) {
    Array reversed = records(20000);
    std::reverse(reversed.begin(), reversed.end());
    EXPECT_LE(checked_diff(records(20000), reversed).length(), 20000u);
}

// ---- Bounds --------------------------------------------------------------------------------

TEST(Diff, IsOneOperationWhereThePointersWouldTakeMoreMemoryThanTheValue) {
    const std::string name(10000, 'n');
    Array from;
    Array to;
    for (int i = 0; i < 1000; ++i) {
        from.push_back(i);
        to.push_back(i % 4 == 0 ? i : i + 1000);
    }
    const Value first = Object{{name, from}};
    const Value second = Object{{name, to}};
    const Value operations = checked_diff(first, second);
    EXPECT_EQ(operations.length(), 1u);
    EXPECT_EQ(operations[0]["path"], Value(""));
    // As many operations with short pointers are no reason.
    EXPECT_EQ(checked_diff(Object{{"n", from}}, Object{{"n", to}}).length(), 750u);
    // Nor is a value that takes still more.
    const Value big(std::string(20000000, 'x'));
    const Value large = Object{{"text", big}, {name, to}};
    EXPECT_EQ(checked_diff(Object{{"text", big}, {name, from}}, large).length(), 750u);
    const Value less(std::string(2000000, 'x'));
    EXPECT_EQ(checked_diff(Object{{"text", less}, {name, from}}, Object{{"text", less}, {name, to}})
                  .length(),
              1u);
    // What has not been compared yet is left.
    const Value more = Object{{name, from}, {"z", Object{{"a", from}}}};
    EXPECT_EQ(
        checked_diff(more, Object{{name, to}, {"z", Object{{"a", to}, {"s", "text"}}}}).length(),
        1u);
}

/// A value within so many arrays or objects.
Value within(std::size_t levels, bool objects, Value value) {
    for (; levels > 0; --levels) {
        Value outer = objects ? Value(Object{{"a", Value()}}) : Value(Array{Value()});
        (objects ? outer["a"] : outer[0]).swap(value);
        value.swap(outer);
    }
    return value;
}

TEST(Diff, OfElementsThatDifferOnlyFarBelowTellsThemApart) {
    // Deeper than elements are searched for by what they hold.
    for (const bool objects : {false, true}) {
        Array from;
        for (int i = 0; i < 6; ++i) {
            from.push_back(within(50, objects, i));
        }
        EXPECT_LE(operations_for(from, [](Array& a) { a.erase(a.begin() + 2); }), 4u);
        EXPECT_LE(operations_for(from,
                                 [](Array& a) {
                                     a.erase(a.begin() + 1);
                                     a.push_back("x");
                                 }),
                  6u);
    }
}

/// A value within so many arrays of two elements, and another one in the same place.
std::pair<Value, Value> nested_in_arrays(std::size_t levels) {
    std::pair<Value, Value> result(1, 2);
    for (; levels > 0; --levels) {
        for (Value* const value : {&result.first, &result.second}) {
            Value outer{Array{"beside", Value()}};
            outer[1].swap(*value);
            value->swap(outer);
        }
    }
    return result;
}

TEST(Diff, OfDeepArraysTakesTimeInProportionToTheDepth) {
    test::run_with_deep_stack([] {
        constexpr std::size_t levels = 60000;
        const auto [from, to] = nested_in_arrays(levels);
        const std::clock_t begin = std::clock();
        const Value operations = diff(from, to);
        // If each level were compared again for each level above it, these would be two billion
        // comparisons.
        EXPECT_LT(std::clock() - begin, 3 * CLOCKS_PER_SEC);
        ASSERT_EQ(operations.length(), 1u);
        EXPECT_EQ(get<std::string>(operations[0]["path"]).size(), 2 * levels);
    });
}

} // namespace
} // namespace foundation::json
