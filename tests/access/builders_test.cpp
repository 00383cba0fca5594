// Arrays and objects written as expressions, with Element and Property.
#include <foundation/json/builders.hpp>
#include <foundation/json/serializer.hpp>

#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::json::test {
namespace {

// ---- Element -----------------------------------------------------------------------------------

TEST(Element, AloneIsAnArrayOfOneElement) {
    EXPECT_EQ(content_text(Element(Value(Null()))), "[null]");
    EXPECT_EQ(content_text(Element(1)), "[1]");
}

TEST(Element, TakesWhateverAValueTakes) {
    for (const Sample& sample : one_of_each_kind()) {
        const Value array = Element(sample.value);
        EXPECT_EQ(array.length(), 1u) << sample.kind;
        EXPECT_EQ(describe(array[0]), sample.description);
    }
    EXPECT_EQ(content_text((Element(true), Element("text"), Element(1.5f), Element(Array{1}))),
              R"([true,"text",1.5,[1]])");
}

TEST(Element, AChainIsAnArrayOfItsTermsInOrder) {
    EXPECT_EQ(content_text((Element(1), Element(2), Element(3))), "[1,2,3]");
    EXPECT_EQ(content_text((Element(3), Element("b"), Element(Null()), Element(false))),
              R"([3,"b",null,false])");
    EXPECT_EQ(content_text((Element(1), Element(1))), "[1,1]");
}

TEST(Element, WrappingAChainOnceMoreNestsIt) {
    EXPECT_EQ(content_text((Element(1), Element((Element(2), Element(3))))), "[1,[2,3]]");
    EXPECT_EQ(content_text((Element((Element(1), Element(2))), Element(3))), "[[1,2],3]");
    EXPECT_EQ(content_text((Element(1), Element((Element(2), Element((Element(3), Element(4))))))),
              "[1,[2,[3,4]]]");
}

TEST(Element, AParenthesisedChainAsRightOperandIsNotNested) {
    EXPECT_EQ(content_text((Element(1), (Element(2), Element(3)))), "[1,2,3]");
}

TEST(Element, CopyingANamedElementWrapsIt) {
    const Element e((Element(1), Element(2)));
    EXPECT_EQ(content_text(e), "[[1,2]]") << "the chain is not a temporary to be elided";
    const Element copy(e);
    EXPECT_EQ(content_text(copy), "[[[1,2]]]");
    const Element copy_of_copy = copy;
    EXPECT_EQ(content_text(copy_of_copy), "[[[[1,2]]]]");
    EXPECT_EQ(content_text(e), "[[1,2]]");
}

TEST(Element, MovingANamedElementWrapsACopyToo) {
    Element e(1);
    const Element moved(std::move(e));
    EXPECT_EQ(content_text(moved), "[[1]]");
    EXPECT_EQ(content_text(e), "[1]");
}

// Since C++17, a temporary of the same type is not copied: it becomes the object itself. Only a
// chain, a named Element or a Value is wrapped.
TEST(Element, ATemporaryElementIsNotCopiedAndThusNotWrapped) {
    EXPECT_EQ(content_text(Element(Element(1))), "[1]");
    EXPECT_EQ(content_text(Element(Element(Element(1)))), "[1]");
    EXPECT_EQ(content_text(Element(Value(Element(1)))), "[[1]]");
}

TEST(Element, AppendsToTheLeftOperandAndReturnsIt) {
    const Element left(1);
    const Element right(2);
    const Element& result = (left, right);
    EXPECT_EQ(&result, &left);
    EXPECT_EQ(content_text(left), "[1,2]");
    EXPECT_EQ(content_text(right), "[2]");
}

TEST(Element, AppendsAllElementsOfTheRightOperand) {
    const Element left((Element(1), Element(2)));
    const Element right(3);
    EXPECT_EQ(content_text((right, Element(4), left, right)), "[3,4,[1,2],3,4,[1,2]]");
}

TEST(Element, AppendedToItselfIsDoubled) {
    const Element e(1);
    (e, Element("x"));
    (e, e);
    EXPECT_EQ(content_text(e), R"([1,"x",1,"x"])");
    const Element nested(Array{Object{{"a", "b"}}});
    for (std::size_t size = 1; size != 1024; size *= 2) {
        (nested, nested);
        ASSERT_EQ(Value(nested).length(), 2 * size);
    }
    const Value value(nested);
    for (int i = 0; i != 1024; ++i) {
        ASSERT_EQ(content_text(value[i]), R"([{"a":"b"}])");
    }
}

TEST(Element, HoldsCopiesOfWhatItIsGiven) {
    Value source(Array{1});
    const Element e(source);
    source.push(2);
    EXPECT_EQ(content_text(e), "[[1]]");

    const Element right("a");
    (e, right);
    (right, Element("b"));
    EXPECT_EQ(content_text(e), R"([[1],"a"])");
}

TEST(Element, ConvertsToEqualAndIndependentValuesTwice) {
    const Element e((Element(1), Element(Array{2})));
    Value first(e);
    const Value second(e);
    EXPECT_EQ(first, second);
    first[0][1].push(3);
    first.push(4);
    EXPECT_EQ(content_text(first), "[[1,[2,3]],4]");
    EXPECT_EQ(content_text(second), "[[1,[2]]]");
    EXPECT_EQ(content_text(e), "[[1,[2]]]");
}

TEST(Element, ConvertsFromAValueOnlyWhereAskedTo) {
    static_assert(std::is_constructible_v<Element, const Value&>);
    static_assert(!std::is_convertible_v<const Value&, Element>);
    static_assert(!std::is_convertible_v<int, Element>);
    static_assert(std::is_convertible_v<const Element&, Value>);
    static_assert(!std::is_default_constructible_v<Element>);
    static_assert(
        std::is_same_v<decltype((std::declval<const Element&>(), std::declval<const Element&>())),
                       const Element&>);
}

TEST(Element, AssignmentTakesTheElementsAndDoesNotNest) {
    Element e(1);
    const Element other((Element(2), Element(3)));
    Element& result = (e = other);
    EXPECT_EQ(&result, &e);
    EXPECT_EQ(content_text(e), "[[2,3]]");
    e = (Element("a"), Element("b"));
    EXPECT_EQ(content_text(e), R"(["a","b"])");
    EXPECT_EQ(content_text(other), "[[2,3]]");
    const Element& same = e;
    e = same;
    EXPECT_EQ(content_text(e), R"(["a","b"])");
    static_assert(!std::is_assignable_v<Element&, const Value&>);
}

// ---- A comma between a builder and something else ----------------------------------------------

// Other tests check that such a comma causes a warning.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

TEST(CommaBetweenABuilderAndAnotherType, GivesTheRightOperandItself) {
    const Element element(1);
    const Property property("a");
    int number = 2;
    const std::string text("text");
    Value array(Array{3});
    static_assert(std::is_same_v<decltype((element, "two")), const char(&)[4]>);
    static_assert(std::is_same_v<decltype((element, number)), int&>);
    static_assert(std::is_same_v<decltype((property, text)), const std::string&>);
    static_assert(std::is_same_v<decltype((property, array)), Value&>);
    EXPECT_EQ(&(element, number), &number);
    EXPECT_EQ(&(property, text), &text);
    EXPECT_EQ(&(element, array), &array);
    (element, number) = 5;
    EXPECT_EQ(number, 5);
    EXPECT_EQ(content_text((element, "two")), R"("two")");
    EXPECT_EQ(content_text((Element(1), Value("two"), Element(3))), "[3]");
}

TEST(CommaBetweenABuilderAndAnotherType, GivesTheTemporaryOnItsRight) {
    static_assert(std::is_same_v<decltype((Element(1), 2)), int>);
    static_assert(std::is_same_v<decltype((Element(1), nullptr)), std::nullptr_t>);
    static_assert(std::is_same_v<decltype((Element(1), std::string())), std::string>);
    static_assert(std::is_same_v<decltype((Property("a"), Value())), Value>);
    EXPECT_EQ(content_text((Element(1), 2)), "2");
    EXPECT_EQ(content_text((Property("a") = 1, Value(Array{2, "x"}))), R"([2,"x"])");
    const std::string& kept = (Element(1), std::string("as long as the reference"));
    EXPECT_EQ(kept, "as long as the reference");
    std::string text("not moved from");
    EXPECT_EQ(content_text((Element(1), std::move(text))), R"("not moved from")");
    EXPECT_EQ(text, "not moved from");
}

TEST(CommaBetweenABuilderAndAnotherType, GivesTheOtherBuilder) {
    EXPECT_EQ(content_text((Element(1), Property("a") = 2)), R"({"a":2})");
    EXPECT_EQ(content_text((Property("a") = 1, Element(2))), "[2]");
    const Element chain((Property("a") = 1, Element(2)));
    EXPECT_EQ(content_text(chain), "[2]") << "does not nest";
    EXPECT_EQ(content_text((Property("a") = 1, (Element(2), Element(3)))), "[2,3]");
}

TEST(CommaBetweenABuilderAndAnotherType, AcceptsOperandsThatNoValueHolds) {
    struct Fixed {
        Fixed() = default;
        Fixed(const Fixed&) = delete;
    };
    const auto nothing = [] {};
    static_assert(std::is_same_v<decltype((Element(1), nothing())), void>);
    static_assert(std::is_same_v<decltype((Element(1), Fixed())), Fixed>);
    static_assert(std::is_same_v<decltype((Property("a"), std::declval<Fixed&>())), Fixed&>);
}

#pragma GCC diagnostic pop

// ---- Property ----------------------------------------------------------------------------------

TEST(Property, WithoutAnAssignmentIsAnEmptyObject) {
    EXPECT_EQ(content_text(Property("a")), "{}");
    EXPECT_EQ(kind_name(Value(Property("a"))), "JSON object");
}

TEST(Property, TakesWhateverAValueTakes) {
    for (const Sample& sample : one_of_each_kind()) {
        const Value object = (Property("k") = sample.value);
        EXPECT_TRUE(object.hasOwnProperty("k")) << sample.kind;
        EXPECT_EQ(describe(object["k"]), sample.description);
    }
    EXPECT_EQ(content_text((Property("a") = true, Property("b") = "text", Property("c") = 1.5f,
                            Property("d") = Array{1})),
              R"({"a":true,"b":"text","c":1.5,"d":[1]})");
}

TEST(Property, NamesAreTakenByteForByte) {
    EXPECT_EQ(content_text(Property("") = 1), R"({"":1})");
    const std::string name("a\0b", 3);
    const Value value = (Property(name) = 1, Property("a") = 2);
    EXPECT_EQ(value[name], Value(1));
    EXPECT_EQ(value["a"], Value(2));
}

TEST(Property, AChainIsAnObjectOfItsTerms) {
    EXPECT_EQ(content_text((Property("a") = 1, Property("b") = "two")), R"({"a":1,"b":"two"})");
    EXPECT_EQ(content_text((Property("b") = 2, Property("") = 3, Property("a") = 1)),
              R"({"":3,"a":1,"b":2})")
        << "in the order of the names";
}

TEST(Property, InAChainTheLeftmostOfEqualNamesWins) {
    EXPECT_EQ(content_text((Property("a") = 1, Property("a") = 2)), R"({"a":1})");
    EXPECT_EQ(content_text((Property("a") = 1, Property("b") = 2, Property("a") = 3)),
              R"({"a":1,"b":2})");
    EXPECT_EQ(content_text(
                  (Property("b") = 1, (Property("a") = 2, Property("b") = 3, Property("c") = 4))),
              R"({"a":2,"b":1,"c":4})");
    EXPECT_EQ(content_text((Property("a") = Undefined(), Property("a") = 2)), R"({"a":})")
        << "an Undefined member is a member";
}

TEST(Property, OfRepeatedAssignmentsTheLastWins) {
    Property p("a");
    p = 1;
    p = 2;
    EXPECT_EQ(content_text(p), R"({"a":2})");
    p = "a string in place of a number";
    p = Array{3};
    EXPECT_EQ(content_text(p), R"({"a":[3]})");
    p = (Property("b") = 4);
    EXPECT_EQ(content_text(p), R"({"a":{"b":4}})");
    p = Undefined();
    EXPECT_EQ(content_text(p), R"({"a":})");
}

TEST(Property, AssigningAPropertyNests) {
    EXPECT_EQ(content_text(Property("a") = (Property("b") = true)), R"({"a":{"b":true}})");
    EXPECT_EQ(content_text((Property("x") = 1, Property("y") = (Property("z") = true))),
              R"({"x":1,"y":{"z":true}})");
    EXPECT_EQ(content_text(Property("a") = (Property("b") = 1, Property("c") = 2)),
              R"({"a":{"b":1,"c":2}})");
}

TEST(Property, AssignmentGroupsFromTheRight) {
    EXPECT_EQ(content_text(Property("a") = Property("b") = 1), R"({"a":{"b":1}})");
    EXPECT_EQ(content_text(Property("a") = Property("b") = Property("c") = "deep"),
              R"({"a":{"b":{"c":"deep"}}})");
}

TEST(Property, TheNameOfAnAssignedPropertyIsNotUsed) {
    EXPECT_EQ(content_text(Property("a") = Property("b")), R"({"a":{}})");
    const Property other("ignored");
    (other, Property("kept") = 1);
    EXPECT_EQ(content_text(Property("a") = other), R"({"a":{"kept":1}})");
}

TEST(Property, AssignedToItselfNestsItself) {
    const Property p("a");
    p = 1;
    const Property& same = p;
    p = same;
    EXPECT_EQ(content_text(p), R"({"a":{"a":1}})");
    p = Value(p);
    EXPECT_EQ(content_text(p), R"({"a":{"a":{"a":1}}})");
}

TEST(Property, AssignmentKeepsTheOtherMembers) {
    const Property p("a");
    (p, Property("b") = 1, Property("c") = 2);
    p = 3;
    EXPECT_EQ(content_text(p), R"({"a":3,"b":1,"c":2})");
    p = (Property("d") = 4);
    EXPECT_EQ(content_text(p), R"({"a":{"d":4},"b":1,"c":2})");
}

TEST(Property, WithoutAMemberAddsNothingToAChain) {
    EXPECT_EQ(content_text((Property("x"), Property("y"))), "{}");
    EXPECT_EQ(content_text((Property("x"), Property("y") = 1)), R"({"y":1})");
    EXPECT_EQ(content_text((Property("x") = 1, Property("y"))), R"({"x":1})");
}

TEST(Property, ChainedToItselfDoesNotChange) {
    const Property p("a");
    (p = 1, Property("b") = Array{2});
    EXPECT_EQ(&(p, p), &p);
    EXPECT_EQ(content_text(p), R"({"a":1,"b":[2]})");
    const Property empty("a");
    EXPECT_EQ(content_text((empty, empty)), "{}");
}

TEST(Property, AssignmentsAndChainsReturnTheLeftOperand) {
    const Property p("a");
    EXPECT_EQ(&(p = 1), &p);
    EXPECT_EQ(&(p = Property("b")), &p);
    EXPECT_EQ(&(p, Property("c") = 1), &p);
    EXPECT_EQ(&(p, Property("d")), &p);
}

TEST(Property, ChainingLeavesTheRightOperandAsItIs) {
    const Property left("a");
    const Property right("b");
    left = 1;
    right = "right";
    (left, right);
    EXPECT_EQ(content_text(right), R"({"b":"right"})");
    right = "changed";
    EXPECT_EQ(content_text(left), R"({"a":1,"b":"right"})");
}

TEST(Property, ACopyIsEqualAndIndependent) {
    const Property p("a");
    p = Array{1};
    (p, Property("b") = 2);
    const Property copy(p);
    EXPECT_EQ(content_text(copy), R"({"a":[1],"b":2})");
    copy = "only the copy, under the same name";
    EXPECT_EQ(content_text(p), R"({"a":[1],"b":2})");
    EXPECT_EQ(content_text(copy), R"({"a":"only the copy, under the same name","b":2})");
}

TEST(Property, MovingCopiesToo) {
    Property p("a");
    p = 1;
    const Property moved(std::move(p));
    EXPECT_EQ(content_text(moved), R"({"a":1})");
    EXPECT_EQ(content_text(p), R"({"a":1})");
    p = 2;
    EXPECT_EQ(content_text(p), R"({"a":2})");
}

TEST(Property, HoldsCopiesOfWhatItIsGiven) {
    std::string name("a");
    const Property p(name);
    name = "b";
    Value source(Array{1});
    p = source;
    source.push(2);
    EXPECT_EQ(content_text(p), R"({"a":[1]})");

    const Property inner("inner");
    inner = 1;
    p = inner;
    inner = 2;
    EXPECT_EQ(content_text(p), R"({"a":{"inner":1}})");
}

TEST(Property, ConvertsToEqualAndIndependentValuesTwice) {
    const Property p("a");
    p = Array{1};
    Value first(p);
    const Value second(p);
    EXPECT_EQ(first, second);
    first["a"].push(2);
    first["b"] = 3;
    EXPECT_EQ(content_text(first), R"({"a":[1,2],"b":3})");
    EXPECT_EQ(content_text(second), R"({"a":[1]})");
    EXPECT_EQ(content_text(p), R"({"a":[1]})");
}

TEST(Property, ConvertsFromANameOnlyWhereAskedTo) {
    static_assert(std::is_constructible_v<Property, const std::string&>);
    static_assert(!std::is_convertible_v<const std::string&, Property>);
    static_assert(!std::is_convertible_v<const char*, Property>);
    static_assert(std::is_convertible_v<const Property&, Value>);
    static_assert(!std::is_default_constructible_v<Property>);
    static_assert(
        std::is_same_v<decltype(std::declval<const Property&>() = std::declval<const Property&>()),
                       const Property&>);
    static_assert(
        std::is_same_v<decltype(std::declval<const Property&>() = Value()), const Property&>);
    static_assert(
        std::is_same_v<decltype((std::declval<const Property&>(), std::declval<const Property&>())),
                       const Property&>);
}

// ---- Both --------------------------------------------------------------------------------------

TEST(Builders, NestInEachOther) {
    EXPECT_EQ(content_text(
                  (Property("a") = Element(1), Property("b") = (Element(true), Element(Null())))),
              R"({"a":[1],"b":[true,null]})");
    EXPECT_EQ(content_text((Element(Property("a") = 1), Element(Property("b")))),
              R"([{"a":1},{}])");
    EXPECT_EQ(content_text((Property("list") =
                                (Element(Property("id") = 1),
                                 Element((Property("id") = 2, Property("tags") = Element("x")))))),
              R"({"list":[{"id":1},{"id":2,"tags":["x"]}]})");
}

} // namespace
} // namespace foundation::json::test
