// Assignment and swap, of every kind to every kind.
#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace foundation::json {
namespace {

using test::Array;
using test::describe;
using test::Object;
using test::one_of_each_kind;
using test::other_samples;
using test::Sample;

/// Calls the test with every pair of kinds: a target of one_of_each_kind(), a source of
/// other_samples().
template <class Test>
void for_all_pairs_of_kinds(Test test) {
    for (const Sample& target : one_of_each_kind()) {
        for (const Sample& source : other_samples()) {
            SCOPED_TRACE("target: " + target.kind + ", source: " + source.kind);
            test(target, source);
        }
    }
}

// ---- Copy assignment -----------------------------------------------------------------------

TEST(CopyAssignment, MakesTheTargetACopyAndLeavesTheSourceAsItWas) {
    for_all_pairs_of_kinds([](const Sample& target, const Sample& source) {
        Value a = target.value;
        const Value b = source.value;
        EXPECT_EQ(&(a = b), &a);
        EXPECT_EQ(describe(a), source.description);
        EXPECT_EQ(describe(b), source.description);
    });
}

TEST(CopyAssignment, OfItselfChangesNothing) {
    for (const Sample& sample : one_of_each_kind()) {
        Value value = sample.value;
        const Value& same = value;
        EXPECT_EQ(&(value = same), &value);
        EXPECT_EQ(describe(value), sample.description);
    }
}

TEST(CopyAssignment, IsDeep) {
    const Value source(Array{Array{1}, Object{{"a", Array{2}}}});
    Value same_kind(Array{Array{"old"}, Array{}, "older"});
    Value other_kind;
    same_kind = source;
    other_kind = source;
    for (Value* copy : {&same_kind, &other_kind}) {
        (*copy)[0].push("added");
        (*copy)[1]["a"][0] = "changed";
        EXPECT_EQ(describe(*copy), "JSON array [[1,\"added\"],{\"a\":[\"changed\"]}]");
    }
    EXPECT_EQ(describe(source), "JSON array [[1],{\"a\":[2]}]");
}

TEST(CopyAssignment, ReplacesAllMembersOfAnObject) {
    Value target(Object{{"a", 1}, {"b", 2}});
    target = Value(Object{{"b", 3}, {"c", 4}});
    EXPECT_EQ(describe(target), "JSON object {\"b\":3,\"c\":4}");
}

TEST(CopyAssignment, ShortensALongerArray) {
    const Value source(Array{4});
    Value target(Array{1, 2, 3});
    target = source;
    EXPECT_EQ(describe(target), "JSON array [4]");
}

TEST(CopyAssignment, OfACopiedChildReplacesItsParent) {
    Value value(Object{{"child", Array{1, "two"}}});
    value = Value(value["child"]);
    EXPECT_EQ(describe(value), "JSON array [1,\"two\"]");
}

// An array or object within would be destroyed before it is copied.
TEST(CopyAssignment, TakesWhatIsNoContainerOutOfItsOwnContainer) {
    for (const Value& content :
         {Value(), Value(Null()), Value(true), Value(1.5), Value(1.5f), Value(-7LL), Value(7ULL),
          Value("text"), Value("a text that is too long for the room within a string")}) {
        Value object(Object{{"a", content}, {"b", 1}});
        object = object["a"];
        EXPECT_EQ(describe(object), describe(content));
        Value list(Array{1, content});
        list = list[1];
        EXPECT_EQ(describe(list), describe(content));
        Value nested(Array{Object{{"a", content}}});
        nested = nested[0]["a"];
        EXPECT_EQ(describe(nested), describe(content));
    }
}

TEST(CopyAssignment, TakesNativeValuesAndTags) {
    Value value;
    EXPECT_EQ(describe(value = Null()), "JSON null null");
    EXPECT_EQ(describe(value = true), "JSON boolean true");
    EXPECT_EQ(describe(value = 5), "JSON number 5");
    EXPECT_EQ(describe(value = 0.5), "JSON number 0.5");
    EXPECT_EQ(describe(value = 0.5f), "float 0.5");
    EXPECT_EQ(describe(value = 5LL), "int64 5");
    EXPECT_EQ(describe(value = 5ULL), "uint64 5");
    EXPECT_EQ(describe(value = "text"), "JSON string \"text\"");
    EXPECT_EQ(describe(value = std::string("string")), "JSON string \"string\"");
    EXPECT_EQ(describe(value = Array{1}), "JSON array [1]");
    EXPECT_EQ(describe(value = Object{{"a", 1}}), "JSON object {\"a\":1}");
    EXPECT_EQ(describe(value = Undefined()), "undefined");
}

// ---- Move assignment -----------------------------------------------------------------------

TEST(MoveAssignment, TakesOverTheContentOfEveryKind) {
    for_all_pairs_of_kinds([](const Sample& target, const Sample& source) {
        Value a = target.value;
        Value b = source.value;
        EXPECT_EQ(&(a = std::move(b)), &a);
        EXPECT_EQ(describe(a), source.description);
        // Two arrays, or two objects, exchange what they hold.
        const bool exchanged = target.kind == source.kind && source.is_container();
        EXPECT_EQ(describe(b), exchanged ? target.description : source.left_behind);
    });
}

TEST(MoveAssignment, OfItselfChangesNothing) {
    for (const Sample& sample : one_of_each_kind()) {
        Value value = sample.value;
        Value& same = value;
        EXPECT_EQ(&(value = std::move(same)), &value);
        EXPECT_EQ(describe(value), sample.description);
    }
}

TEST(MoveAssignment, OfAShortStringToItselfKeepsIt) {
    Value value("x");
    Value& same = value;
    value = std::move(same);
    EXPECT_EQ(describe(value), "JSON string \"x\"");
}

TEST(MoveAssignment, BetweenArraysExchangesTheirElements) {
    Value a(Array{1, 2});
    Value b(Array{3});
    const Value* const element_of_a = &a[0];
    const Value* const element_of_b = &b[0];
    a = std::move(b);
    EXPECT_EQ(describe(a), "JSON array [3]");
    EXPECT_EQ(describe(b), "JSON array [1,2]");
    EXPECT_EQ(&a[0], element_of_b);
    EXPECT_EQ(&b[0], element_of_a);
}

TEST(MoveAssignment, OfAnArrayToAnotherKindKeepsElementsWhereTheyAre) {
    Value a(1.5);
    Value b(Array{1, 2});
    const Value* const element = &b[0];
    a = std::move(b);
    EXPECT_EQ(&a[0], element);
    EXPECT_EQ(describe(b), "JSON array []");
}

TEST(MoveAssignment, OfAStringEmptiesIt) {
    for (const char* text : {"x", "a text too long for a string's own storage"}) {
        Value source(text);
        Value string("old");
        string = std::move(source);
        EXPECT_EQ(string, Value(text));
        EXPECT_EQ(describe(source), "JSON string \"\"");

        source = text;
        Value number(1);
        number = std::move(source);
        EXPECT_EQ(number, Value(text));
        EXPECT_EQ(describe(source), "JSON string \"\"");
    }
}

TEST(MoveAssignment, LeavesTheSourceUsable) {
    Value source(Array{1});
    Value target;
    target = std::move(source);
    source.push(2);
    EXPECT_EQ(describe(source), "JSON array [2]");
    EXPECT_EQ(describe(target), "JSON array [1]");
}

// ---- Swap ----------------------------------------------------------------------------------

TEST(Swap, ExchangesValuesOfAllKinds) {
    for_all_pairs_of_kinds([](const Sample& left, const Sample& right) {
        Value a = left.value;
        Value b = right.value;
        EXPECT_EQ(&a.swap(b), &a);
        EXPECT_EQ(describe(a), right.description);
        EXPECT_EQ(describe(b), left.description);
    });
}

TEST(Swap, WithItselfChangesNothing) {
    for (const Sample& sample : one_of_each_kind()) {
        Value value = sample.value;
        EXPECT_EQ(&value.swap(value), &value);
        EXPECT_EQ(describe(value), sample.description);
    }
}

TEST(Swap, OfArraysExchangesTheElementsThemselves) {
    Value a(Array{1, 2});
    Value b(Array{3});
    const Value* const element_of_a = &a[1];
    const Value* const element_of_b = &b[0];
    a.swap(b);
    EXPECT_EQ(&a[0], element_of_b);
    EXPECT_EQ(&b[1], element_of_a);
}

TEST(Swap, OfObjectsExchangesTheMembersThemselves) {
    Value a(Object{{"a", 1}});
    Value b(Object{{"b", 2}});
    const Value* const member_of_a = &a["a"];
    const Value* const member_of_b = &b["b"];
    a.swap(b);
    EXPECT_EQ(&a["b"], member_of_b);
    EXPECT_EQ(&b["a"], member_of_a);
}

TEST(Swap, OfDifferentContainersKeepsElementsAndMembersWhereTheyAre) {
    Value a(Array{1});
    Value b(Object{{"b", 2}});
    const Value* const element = &a[0];
    const Value* const member = &b["b"];
    a.swap(b);
    EXPECT_EQ(&a["b"], member);
    EXPECT_EQ(&b[0], element);
}

TEST(Swap, BringsAChildOutOfItsParent) {
    Value parent(Object{{"child", Array{1, 2}}});
    Value child;
    child.swap(parent["child"]);
    EXPECT_EQ(describe(child), "JSON array [1,2]");
    EXPECT_EQ(describe(parent), "JSON object {\"child\":}");
}

} // namespace
} // namespace foundation::json
