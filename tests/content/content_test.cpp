// Content by kind: holds(), get_if(), get() and what is changed through them.
#include <foundation/json/content.hpp>

#include "support/describe.hpp"

#include <foundation/json/builders.hpp>
#include <foundation/json/serializer.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json {
namespace {

using testing::ThrowsMessage;

/// A value of each kind, with its expected properties.
struct Row {
    Value value;
    Kind kind;
    int order;
    const char* name;
};

std::vector<Row> one_of_each_kind() {
    return {
        {Undefined(), Kind::undefined, 0, "undefined"},
        {Null(), Kind::null, 1, "JSON null"},
        {true, Kind::boolean, 2, "JSON boolean"},
        {2.5, Kind::number, 3, "JSON number"},
        {"text", Kind::string, 4, "JSON string"},
        {Array{1, 2}, Kind::array, 5, "JSON array"},
        {Object{{"a", 1}}, Kind::object, 6, "JSON object"},
        {2.5f, Kind::float32, 7, "float"},
        {-7LL, Kind::int64, 8, "int64"},
        {7ULL, Kind::uint64, 9, "uint64"},
    };
}

TEST(Content, HasTheKindOfItsValue) {
    for (const Row& row : one_of_each_kind()) {
        EXPECT_EQ(kind_of(row.value), row.kind) << row.name;
        EXPECT_EQ(static_cast<int>(row.kind), row.order) << row.name;
        EXPECT_STREQ(name_of(row.kind), row.name);
    }
    EXPECT_EQ(kind_of(Value(1)), Kind::number) << "an int becomes a double";
    EXPECT_STREQ(name_of(static_cast<Kind>(10)), "no kind");
    static_assert(noexcept(kind_of(std::declval<const Value&>())));
    static_assert(noexcept(name_of(Kind::null)));
}

/// The result of get, get_if and holds for content of type T: "content" if all find it, or the
/// message of get if none does.
template <class T>
std::string outcome(Value& value) {
    const Value& constant = value;
    const bool there = holds<T>(value);
    if (there != (get_if<T>(&value) != nullptr) || there != (get_if<T>(&constant) != nullptr)) {
        return "holds and get_if differ";
    }
    try {
        T& content = get<T>(value);
        const T& constant_content = get<T>(constant);
        const bool same = &content == &constant_content && &content == get_if<T>(&value) &&
                          &content == get_if<T>(&constant);
        return !there ? "get differs" : same ? "content" : "different places";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT([&] { static_cast<void>(get<T>(constant)); },
                    ThrowsMessage<std::runtime_error>(error.what()));
        return there ? "get differs" : error.what();
    }
}

template <class T>
void expect_content_of_one_kind(Kind expected, const std::string& name) {
    for (Row& row : one_of_each_kind()) {
        const std::string before = test::content_text(row.value);
        EXPECT_EQ(outcome<T>(row.value),
                  row.kind == expected
                      ? "content"
                      : std::string("invalid conversion: ") + row.name + " to " + name);
        EXPECT_EQ(test::content_text(row.value), before);
        EXPECT_EQ(kind_of(row.value), row.kind);
    }
}

TEST(Content, IsThereForOneKindAndAnErrorForEveryOther) {
    expect_content_of_one_kind<Undefined>(Kind::undefined, "undefined");
    expect_content_of_one_kind<Null>(Kind::null, "JSON null");
    expect_content_of_one_kind<bool>(Kind::boolean, "JSON boolean");
    expect_content_of_one_kind<double>(Kind::number, "JSON number");
    expect_content_of_one_kind<std::string>(Kind::string, "JSON string");
    expect_content_of_one_kind<Array>(Kind::array, "JSON array");
    expect_content_of_one_kind<Object>(Kind::object, "JSON object");
    expect_content_of_one_kind<float>(Kind::float32, "float");
    expect_content_of_one_kind<long long>(Kind::int64, "int64");
    expect_content_of_one_kind<unsigned long long>(Kind::uint64, "uint64");
}

TEST(Content, IsMissingWhereThereIsNoValue) {
    EXPECT_EQ(get_if<bool>(static_cast<Value*>(nullptr)), nullptr);
    EXPECT_EQ(get_if<Array>(static_cast<const Value*>(nullptr)), nullptr);
}

TEST(Content, IsAsConstAsItsValue) {
    using Changing = Value&;
    using Reading = const Value&;
    static_assert(std::is_same_v<decltype(get<Array>(std::declval<Changing>())), Array&>);
    static_assert(std::is_same_v<decltype(get<Array>(std::declval<Reading>())), const Array&>);
    static_assert(std::is_same_v<decltype(get_if<bool>(std::declval<Value*>())), bool*>);
    static_assert(
        std::is_same_v<decltype(get_if<bool>(std::declval<const Value*>())), const bool*>);
    static_assert(noexcept(get_if<bool>(std::declval<Value*>())));
    static_assert(noexcept(get_if<bool>(std::declval<const Value*>())));
    static_assert(noexcept(holds<bool>(std::declval<const Value&>())));
}

/// What get() returns for an argument of a type.
template <class T, class Argument>
using Got = decltype(get<T>(std::declval<Argument>()));

TEST(Content, OfATemporaryComesByValue) {
    static_assert(std::is_same_v<Got<double, Value&>, double&>);
    static_assert(std::is_same_v<Got<double, const Value&>, const double&>);
    static_assert(std::is_same_v<Got<double, Value>, double>);
    static_assert(std::is_same_v<Got<double, const Value>, double>);
    static_assert(std::is_same_v<Got<Array, Value>, Array>);
    static_assert(std::is_same_v<Got<std::string, const Value>, std::string>);
}

TEST(Content, OfWhatConvertsToAValueComesByValue) {
    static_assert(std::is_same_v<Got<double, int>, double>);
    static_assert(std::is_same_v<Got<std::string, const char*>, std::string>);
    static_assert(std::is_same_v<Got<Array, Array&>, Array>);
    static_assert(std::is_same_v<Got<Array, Element>, Array>);
    static_assert(std::is_same_v<Got<Array, const Element&>, Array>);
    static_assert(std::is_same_v<Got<Object, Property>, Object>);
    static_assert(std::is_same_v<Got<Object, const Property&>, Object>);
    EXPECT_EQ(get<std::string>("text"), "text");
    EXPECT_EQ(get<Array>((Element(1), Element("two"))), (Array{1, "two"}));
    EXPECT_EQ(get<Object>(Property("a") = 1), (Object{{"a", 1}}));
    EXPECT_THAT([] { static_cast<void>(get<Array>(Property("a") = 1)); },
                ThrowsMessage<std::runtime_error>("invalid conversion: JSON object to JSON array"));
}

TEST(Content, IsMovedOutOfATemporary) {
    Value text = "a text that is too long for the room within a string";
    const char* const bytes = get<std::string>(text).data();
    const std::string taken = get<std::string>(std::move(text));
    EXPECT_EQ(taken.data(), bytes);
    EXPECT_EQ(get<std::string>(text), "");

    Value list = Array{1, 2};
    const Value* const elements = get<Array>(list).data();
    const Array taken_list = get<Array>(std::move(list));
    EXPECT_EQ(taken_list.data(), elements);
    EXPECT_EQ(get<Array>(list).size(), 0u);

    Value object = Object{{"a", 1}};
    const Value* const member = &get<Object>(object).at("a");
    const Object taken_object = get<Object>(std::move(object));
    EXPECT_EQ(&taken_object.at("a"), member);
    EXPECT_EQ(get<Object>(object).size(), 0u);

    EXPECT_EQ(get<double>(Value(1.5)), 1.5);
    EXPECT_EQ(get<bool>(Value(true)), true);
}

TEST(Content, IsCopiedFromAConstTemporary) {
    const Value list = Array{1, 2};
    const Array copy = get<Array>(std::move(list)); // NOLINT(performance-move-const-arg)
    EXPECT_EQ(copy, get<Array>(list));
    EXPECT_NE(copy.data(), get<Array>(list).data());
}

TEST(Content, OfAnotherTypeStaysInATemporary) {
    Value text = "a text that is too long for the room within a string";
    EXPECT_THAT([&] { static_cast<void>(get<Array>(std::move(text))); },
                ThrowsMessage<std::runtime_error>("invalid conversion: JSON string to JSON array"));
    EXPECT_EQ(get<std::string>(text).size(), 52u);
}

// As long as both operands exist, so does the content.
TEST(Content, OfAFallbackIsAReferenceToThatOfTheOperand) {
    static_assert(std::is_same_v<Got<double, Value::Or>, const double&>);
    static_assert(std::is_same_v<Got<Array, const Value::Or&>, const Array&>);
}

TEST(Content, OfAFallbackIsThatOfTheChosenValue) {
    const Value present = "here";
    const Value missing;
    const Value other = "other";
    EXPECT_EQ(&get<std::string>(present || other), &get<std::string>(present));
    EXPECT_EQ(&get<std::string>(missing || other), &get<std::string>(other));
}

TEST(Content, ChangesReachTheValue) {
    Value value(Object{{"list", Array{1, "two"}}});
    EXPECT_EQ(&get<Object>(value).at("list"), &value["list"]);
    EXPECT_EQ(&get<Array>(value["list"])[1], &value["list"][1]);

    get<double>(value["list"][0]) += 0.5;
    get<std::string>(value["list"][1]) += "!";
    get<Array>(value["list"]).push_back(true);
    EXPECT_EQ(test::content_text(value), "{\"list\":[1.5,\"two!\",true]}");
    get<bool>(value["list"][2]) = false;
    get<Object>(value).emplace("n", 1LL);
    get<long long>(value["n"]) -= 2;
    EXPECT_EQ(test::content_text(value), "{\"list\":[1.5,\"two!\",false],\"n\":-1}");
    get<Object>(value).erase("list");
    EXPECT_EQ(test::content_text(value), "{\"n\":-1}");
}

TEST(Content, CanBeIteratedAndChanged) {
    Value value(Object{{"a", 1}, {"b", 2}});
    std::string names;
    for (auto& [name, member] : get<Object>(value)) {
        names += name;
        get<double>(member) *= 10;
    }
    EXPECT_EQ(names, "ab");
    EXPECT_EQ(test::content_text(value), "{\"a\":10,\"b\":20}");
}

TEST(Content, TakesOverAContainerWithoutCopyingItsElements) {
    Array elements{"one", "two"};
    const Value* const first = &elements[0];
    Value value(Object{{"list", Array()}});
    get<Array>(value["list"]) = std::move(elements);
    EXPECT_EQ(&value["list"][0], first);
    EXPECT_EQ(test::content_text(value), "{\"list\":[\"one\",\"two\"]}");

    Object members{{"a", 1}};
    const Value* const member = &members.at("a");
    Value object{Object()};
    get<Object>(object) = std::move(members);
    EXPECT_EQ(&object["a"], member);
    EXPECT_EQ(test::content_text(object), "{\"a\":1}");
}

TEST(Content, HasNoSpareCapacityInAnArrayMadeFromOneThatHas) {
    Array elements{1, 2, 3};
    elements.reserve(100);
    const Value array(elements);
    const Value copy(array);
    EXPECT_EQ(get<Array>(array).capacity(), 3u);
    EXPECT_EQ(get<Array>(copy).capacity(), 3u);
}

} // namespace
} // namespace foundation::json
