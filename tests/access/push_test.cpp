// Growing arrays: push and the visitor behind it.
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeindex>

namespace foundation::json::test {
namespace {

using testing::ResultOf;
using testing::Throws;
using testing::ThrowsMessage;

const std::string refusal = "json::Value::push not supported for values of type: ";

TEST(Push, AppendsAtTheEnd) {
    Value array{Array{}};
    array.push(1);
    array.push("two");
    array.push(Null());
    EXPECT_EQ(content_text(array), R"([1,"two",null])");
    EXPECT_EQ(array.length(), 3u);
}

TEST(Push, AppendsAValueOfAnyKind) {
    Value array{Array{}};
    int count = 0;
    for (const Sample& sample : one_of_each_kind()) {
        array.push(sample.value);
        EXPECT_EQ(describe(array[count]), sample.description);
        ++count;
    }
    EXPECT_EQ(array.length(), 10u);
}

TEST(Push, AppendsACopyThatIsIndependentOfTheSource) {
    Value array{Array{}};
    Value source(Array{1, Object{{"a", "x"}}});
    array.push(source);
    EXPECT_EQ(content_text(source), R"([1,{"a":"x"}])");
    source[1]["a"] = "changed";
    EXPECT_EQ(content_text(array), R"([[1,{"a":"x"}]])");
    array[0][0] = 2;
    EXPECT_EQ(content_text(source), R"([1,{"a":"changed"}])");
}

TEST(Push, OntoAnythingButAnArrayNamesTheKindAndLeavesTheValueAsItWas) {
    for (Sample& sample : one_of_each_kind()) {
        if (sample.kind != "JSON array") {
            EXPECT_THAT([&] { sample.value.push(1); },
                        ThrowsMessage<std::runtime_error>(refusal + sample.kind));
            EXPECT_THAT([&] { sample.value.push(Array{1}); },
                        ThrowsMessage<std::runtime_error>(refusal + sample.kind));
            EXPECT_EQ(describe(sample.value), sample.description);
        }
    }
}

TEST(Push, ThrowsNothingDerivedFromTheRuntimeError) {
    const auto type_of = [](const std::runtime_error& e) { return std::type_index(typeid(e)); };
    EXPECT_THAT(
        [] { Value().push(1); },
        Throws<std::runtime_error>(ResultOf(type_of, std::type_index(typeid(std::runtime_error)))));
}

// ---- Pushing an array, or a part of it, into itself --------------------------------------------

TEST(Push, OfAnArrayIntoItselfAppendsTheArrayAsItWas) {
    Value array(Array{1, "x"});
    array.push(array);
    EXPECT_EQ(content_text(array), R"([1,"x",[1,"x"]])");
}

TEST(Push, OfAnArrayIntoItselfCanBeRepeated) {
    Value array(Array{1});
    array.push(array);
    array.push(array);
    array.push(array);
    EXPECT_EQ(content_text(array), "[1,[1],[1,[1]],[1,[1],[1,[1]]]]");
}

TEST(Push, OfAnEmptyArrayIntoItselfAppendsAnEmptyArray) {
    Value array{Array{}};
    array.push(array);
    EXPECT_EQ(content_text(array), "[[]]");
}

TEST(Push, OfAnArrayIntoItselfNeedNotGrowTheStorage) {
    Value array(Array{1, 2, 3});
    array.push(4); // the storage now holds more than it needs to
    const Value* const first = &array[0];
    array.push(array);
    EXPECT_EQ(content_text(array), "[1,2,3,4,[1,2,3,4]]");
    EXPECT_EQ(&array[0], first) << "this test is about a push that does not grow";
}

TEST(Push, OfAParentIntoItsChildAppendsTheParentAsItWas) {
    Value array(Array{Array{}, 1});
    array[0].push(array);
    EXPECT_EQ(content_text(array), "[[[[],1]],1]");
    Value object(Object{{"list", Array{1}}});
    object["list"].push(object);
    EXPECT_EQ(content_text(object), R"({"list":[1,{"list":[1]}]})");
}

TEST(Push, OfAnOwnElementCopiesItAtEverySizeOfTheStorage) {
    const std::string long_text(100, 'x');
    struct Case {
        Value element;
        std::string text;
    };
    const Case cases[] = {
        {Value(1.5), "1.5"},
        {Value(long_text), '"' + long_text + '"'},
        {Value(Array{1, Array{2}}), "[1,[2]]"},
        {Value(Object{{"a", Object{{"b", 2}}}}), R"({"a":{"b":2}})"},
    };
    for (const Case& c : cases) {
        Value array(Array{c.element});
        std::string expected = c.text;
        for (int i = 1; i != 100; ++i) {
            array.push(array[0]);
            expected += ',' + c.text;
            ASSERT_EQ(content_text(array), '[' + expected + ']');
        }
    }
}

TEST(Push, OfTheLastElementSurvivesTheGrowthThatMakesItMove) {
    for (int size = 1; size != 40; ++size) {
        const Value original(Array(static_cast<std::size_t>(size), Value("element")));
        Value array(original); // a copy has no storage to spare, so that the push must grow it
        array[size - 1] = "last";
        const Value* const first = &array[0];
        array.push(array[size - 1]);
        EXPECT_EQ(array[size], Value("last"));
        EXPECT_EQ(array[size - 1], Value("last"));
        EXPECT_NE(&array[0], first) << "this test is about a push that grows";
    }
}

TEST(Push, OfANestedElementAppendsACopy) {
    Value array(Array{Array{"deep", Array{1}}, 2});
    array.push(array[0][1]);
    array.push(array[0][0]);
    EXPECT_EQ(content_text(array), R"([["deep",[1]],2,[1],"deep"])");
}

// ---- Growth ------------------------------------------------------------------------------------

TEST(Push, GrowthLeavesTheContentOfElementsWhereItIs) {
    Value array(Array{Array{1, 2}, Object{{"a", Array{3}}}, Array{}});
    const Value* const element = &array[0][1];
    const Value* const member = &array[1]["a"];
    const Value* const element_of_member = &array[1]["a"][0];
    for (int i = 0; i != 1000; ++i) {
        array.push(i);
    }
    EXPECT_EQ(&array[0][1], element);
    EXPECT_EQ(&array[1]["a"], member);
    EXPECT_EQ(&array[1]["a"][0], element_of_member);
    EXPECT_EQ(*element, Value(2));
    EXPECT_EQ(*element_of_member, Value(3));
}

TEST(Push, GrowthKeepsElementsOfEveryKind) {
    Value array{Array{}};
    for (const Sample& sample : one_of_each_kind()) {
        array.push(sample.value);
    }
    for (int i = 0; i != 1000; ++i) {
        array.push(i);
    }
    int index = 0;
    for (const Sample& sample : one_of_each_kind()) {
        EXPECT_EQ(describe(array[index]), sample.description);
        ++index;
    }
}

TEST(Push, ManyTimesKeepsEveryElement) {
    constexpr int count = 100000;
    Value array{Array{}};
    for (int i = 0; i != count; ++i) {
        array.push(i);
    }
    ASSERT_EQ(array.length(), 100000u);
    for (int i = 0; i != count; ++i) {
        ASSERT_EQ(array[i], Value(i));
    }
}

TEST(Push, ManyTimesGrowsTheStorageSeldom) {
    Value array{Array{}};
    std::uintptr_t place = 0;
    int growths = 0;
    for (int i = 0; i != 100000; ++i) {
        array.push(i);
        const auto now = reinterpret_cast<std::uintptr_t>(&array[0]);
        growths += now != place ? 1 : 0;
        place = now;
    }
    EXPECT_LE(growths, 40) << "storage must grow by a factor, not by a constant";
}

// ---- The visitor -------------------------------------------------------------------------------

TEST(PushVisitor, AppendsToAVectorOfValues) {
    const Value value("pushed");
    const Value::push_visitor push(value);
    Array elements{1};
    push(elements);
    push(elements);
    EXPECT_EQ(content_text(elements), R"([1,"pushed","pushed"])");
}

TEST(PushVisitor, AppendsTheValueAsItIsWhenVisited) {
    Value value("before");
    const Value::push_visitor push(value);
    value = "after";
    Array elements;
    push(elements);
    EXPECT_EQ(content_text(elements), R"(["after"])");
}

TEST(PushVisitor, AppendsAnElementOfTheVectorItself) {
    Array elements(1, Array{"first"});
    for (int i = 0; i != 20; ++i) {
        Value::push_visitor{elements[0]}(elements);
    }
    ASSERT_EQ(elements.size(), 21u);
    for (const Value& element : elements) {
        EXPECT_EQ(content_text(element), R"(["first"])");
    }
}

TEST(PushVisitor, RejectsTheContentOfEveryOtherKind) {
    const Value value(1);
    const Value::push_visitor push(value);
    const auto expect_refused = [&push](auto content, const std::string& kind) {
        EXPECT_THAT([&] { push(content); }, ThrowsMessage<std::runtime_error>(refusal + kind));
    };
    expect_refused(Undefined(), "undefined");
    expect_refused(Null(), "JSON null");
    expect_refused(true, "JSON boolean");
    expect_refused(1.0, "JSON number");
    expect_refused(std::string("text"), "JSON string");
    expect_refused(Object{{"a", 1}}, "JSON object");
    expect_refused(1.0f, "float");
    expect_refused(1LL, "int64");
    expect_refused(1ULL, "uint64");
}

TEST(PushVisitor, IsAVisitorWithoutAResult) {
    static_assert(std::is_base_of_v<boost::static_visitor<>, Value::push_visitor>);
    static_assert(std::is_same_v<Value::push_visitor::result_type, void>);
    static_assert(std::is_constructible_v<Value::push_visitor, const Value&>);
}

} // namespace
} // namespace foundation::json::test
