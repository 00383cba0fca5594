// Access to elements and members: the ten operator[], length and hasOwnProperty.
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeindex>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

using testing::ResultOf;
using testing::Throws;
using testing::ThrowsMessage;

/// One way of writing a lookup. AnyValue is Value or const Value.
template <class AnyValue>
struct Lookup {
    const char* form;
    std::function<AnyValue&(AnyValue&)> look_up;
};

template <class AnyValue>
std::vector<Lookup<AnyValue>> lookups_of_element(int index) {
    return {
        {"value[int]", [=](AnyValue& v) -> AnyValue& { return v[index]; }},
        {"value[std::size_t]",
         [=](AnyValue& v) -> AnyValue& { return v[static_cast<std::size_t>(index)]; }},
        {"value[Value(double)]",
         [=](AnyValue& v) -> AnyValue& { return v[Value(static_cast<double>(index))]; }},
        {"value[Value(int)]", [=](AnyValue& v) -> AnyValue& { return v[Value(index)]; }},
    };
}

template <class AnyValue>
std::vector<Lookup<AnyValue>> lookups_of_member(const std::string& name) {
    return {
        {"value[std::string]", [=](AnyValue& v) -> AnyValue& { return v[name]; }},
        {"value[const char*]", [=](AnyValue& v) -> AnyValue& { return v[name.c_str()]; }},
        {"value[Value(std::string)]", [=](AnyValue& v) -> AnyValue& { return v[Value(name)]; }},
        {"value[Value(const char*)]",
         [=](AnyValue& v) -> AnyValue& { return v[Value(name.c_str())]; }},
    };
}

/// What holds for the const and the non-const overloads alike.
template <class AnyValue>
class IndexingConstAndNot : public testing::Test {};

struct ConstnessName {
    template <class AnyValue>
    static std::string GetName(int) {
        return std::is_const_v<AnyValue> ? "Const" : "NonConst";
    }
};

using ConstAndNot = testing::Types<Value, const Value>;
TYPED_TEST_SUITE(IndexingConstAndNot, ConstAndNot, ConstnessName);

// ---- Elements ----------------------------------------------------------------------------------

TYPED_TEST(IndexingConstAndNot, AnIndexGivesTheElementAtThatPosition) {
    TypeParam array(Array{"zero", "one", "two"});
    for (const auto& [form, look_up] : lookups_of_element<TypeParam>(0)) {
        EXPECT_EQ(look_up(array), Value("zero")) << form;
    }
    for (const auto& [form, look_up] : lookups_of_element<TypeParam>(1)) {
        EXPECT_EQ(look_up(array), Value("one")) << form;
    }
    for (const auto& [form, look_up] : lookups_of_element<TypeParam>(2)) {
        EXPECT_EQ(look_up(array), Value("two")) << form;
    }
}

TYPED_TEST(IndexingConstAndNot, EveryKindOfIndexGivesTheSameObject) {
    TypeParam array(Array{"zero", "one", "two"});
    const Value* const first = &array[0];
    for (const auto& [form, look_up] : lookups_of_element<TypeParam>(2)) {
        EXPECT_EQ(&look_up(array), first + 2) << form << ": elements lie one after another";
    }
}

TYPED_TEST(IndexingConstAndNot, ANumberAsKeyIsTruncatedTowardZero) {
    struct Case {
        double key;
        const char* element;
    };
    const Case cases[] = {{0.0, "zero"},   {0.5, "zero"},  {0.9999999999999999, "zero"},
                          {1.0, "one"},    {1.9, "one"},   {1.9999999999999998, "one"},
                          {2.0, "two"},    {2.7, "two"},   {2.9999999999999996, "two"},
                          {-0.0, "zero"},  {-0.5, "zero"}, {-0.9999999999999999, "zero"},
                          {5e-324, "zero"}};
    TypeParam array(Array{"zero", "one", "two"});
    for (const Case& c : cases) {
        EXPECT_EQ(array[Value(c.key)], Value(c.element)) << c.key;
    }
}

TYPED_TEST(IndexingConstAndNot, AnIndexIntoAnythingButAnArrayNamesBothKinds) {
    for (Sample& sample : one_of_each_kind()) {
        for (const Lookup<TypeParam>& lookup : lookups_of_element<TypeParam>(0)) {
            if (sample.kind != "JSON array") {
                EXPECT_THAT([&] { lookup.look_up(sample.value); },
                            ThrowsMessage<std::runtime_error>("invalid conversion: " + sample.kind +
                                                              " to JSON array"))
                    << lookup.form;
            }
        }
    }
}

// ---- Members -----------------------------------------------------------------------------------

TYPED_TEST(IndexingConstAndNot, ANameGivesTheMemberOfThatName) {
    TypeParam object(Object{{"a", "A"}, {"ab", "AB"}, {"b", "B"}});
    for (const auto& [form, look_up] : lookups_of_member<TypeParam>("ab")) {
        EXPECT_EQ(look_up(object), Value("AB")) << form;
        EXPECT_EQ(&look_up(object), &object[std::string("ab")]) << form;
    }
    EXPECT_EQ(content_text(object), R"({"a":"A","ab":"AB","b":"B"})");
}

TYPED_TEST(IndexingConstAndNot, TheEmptyNameIsANameLikeAnyOther) {
    TypeParam object(Object{{"", "empty"}, {"a", "A"}});
    for (const auto& [form, look_up] : lookups_of_member<TypeParam>("")) {
        EXPECT_EQ(look_up(object), Value("empty")) << form;
    }
}

TYPED_TEST(IndexingConstAndNot, AZeroByteBelongsToANameUnlessTheNameIsACString) {
    const std::string name("a\0b", 3);
    TypeParam object(Object{{"a", "short"}, {name, "whole"}});
    EXPECT_EQ(object[name], Value("whole"));
    EXPECT_EQ(object[Value(name)], Value("whole"));
    EXPECT_EQ(object["a\0b"], Value("short"));
}

TYPED_TEST(IndexingConstAndNot, ANameInAnythingButAnObjectNamesBothKinds) {
    for (Sample& sample : one_of_each_kind()) {
        for (const char* name : {"0", "a", "", "length"}) {
            for (const Lookup<TypeParam>& lookup : lookups_of_member<TypeParam>(name)) {
                if (sample.kind != "JSON object") {
                    EXPECT_THAT([&] { lookup.look_up(sample.value); },
                                ThrowsMessage<std::runtime_error>(
                                    "invalid conversion: " + sample.kind + " to JSON object"))
                        << lookup.form << " with \"" << name << '"';
                }
            }
        }
    }
}

// ---- Values as keys ----------------------------------------------------------------------------

TYPED_TEST(IndexingConstAndNot, OnlyANumberOrAStringIsAKey) {
    const Value keys[] = {
        Value(Undefined()), Value(Null()),   Value(true),     Value(false),
        Value(Array{}),     Value(Array{0}), Value(Object{}), Value(Object{{"a", 1}}),
        Value(0.0f),        Value(0LL),      Value(0ULL),
    };
    for (Sample& sample : one_of_each_kind()) {
        TypeParam& value = sample.value;
        for (const Value& key : keys) {
            EXPECT_THAT([&] { static_cast<void>(value[key]); },
                        ThrowsMessage<std::runtime_error>("Undefined value"))
                << sample.kind << " by " << kind_name(key);
        }
        EXPECT_EQ(describe(value), sample.description);
    }
}

TYPED_TEST(IndexingConstAndNot, WholeNumbersOfOtherKindsDoNotIndexAnArray) {
    TypeParam array(Array{"zero", "one", "two"});
    EXPECT_THAT([&] { static_cast<void>(array[Value(2LL)]); },
                ThrowsMessage<std::runtime_error>("Undefined value"));
    EXPECT_THAT([&] { static_cast<void>(array[Value(2ULL)]); },
                ThrowsMessage<std::runtime_error>("Undefined value"));
    EXPECT_THAT([&] { static_cast<void>(array[Value(2.0f)]); },
                ThrowsMessage<std::runtime_error>("Undefined value"));
    EXPECT_THAT([&] { static_cast<void>(array[Value(true)]); },
                ThrowsMessage<std::runtime_error>("Undefined value"));
    EXPECT_EQ(array[Value(2)], Value("two")) << "an int is stored as a number";
}

TYPED_TEST(IndexingConstAndNot, ErrorsAreNothingDerivedFromTheRuntimeError) {
    const auto type_of = [](const std::runtime_error& e) { return std::type_index(typeid(e)); };
    TypeParam value(1);
    for (const Value& key : {Value(0), Value("a"), Value()}) {
        EXPECT_THAT([&] { static_cast<void>(value[key]); },
                    Throws<std::runtime_error>(
                        ResultOf(type_of, std::type_index(typeid(std::runtime_error)))));
    }
}

TYPED_TEST(IndexingConstAndNot, AKeyIsNotConvertedToWhatTheContainerWants) {
    TypeParam array(Array{"zero"});
    EXPECT_THAT([&] { static_cast<void>(array[Value("0")]); },
                ThrowsMessage<std::runtime_error>("invalid conversion: JSON array to JSON object"));
    TypeParam object(Object{{"0", "zero"}});
    EXPECT_THAT([&] { static_cast<void>(object[Value(0.0)]); },
                ThrowsMessage<std::runtime_error>("invalid conversion: JSON object to JSON array"));
}

TYPED_TEST(IndexingConstAndNot, AKeyMayBePartOfTheValueItIndexes) {
    TypeParam array(Array{2, "x", "found"});
    EXPECT_EQ(array[array[0]], Value("found"));
    TypeParam object(Object{{"target", "found"}, {"use", "target"}});
    EXPECT_EQ(object[object["use"]], Value("found"));
}

TYPED_TEST(IndexingConstAndNot, LookupsChain) {
    TypeParam value(Object{{"a", Array{1, Object{{"b", "deep"}}}}});
    EXPECT_EQ(value["a"][1]["b"], Value("deep"));
}

TYPED_TEST(IndexingConstAndNot, AFailingLookupLeavesTheValueAsItWas) {
    for (const Value& key : {Value("missing"), Value(0.0), Value(0LL), Value(Null())}) {
        for (Sample& sample : one_of_each_kind()) {
            TypeParam& value = sample.value;
            try {
                static_cast<void>(value[key]);
            } catch (const std::runtime_error&) {
                EXPECT_EQ(describe(value), sample.description) << "by " << kind_name(key);
            }
        }
    }
}

// ---- Missing members ---------------------------------------------------------------------------

TEST(ConstIndexing, AMissingMemberIsOneConstantUndefinedValueAndIsNotInserted) {
    const Value empty{Object{}};
    const Value full(Object{{"a", 1}, {"c", 3}});
    const Value* const undefined = &empty["anything"];
    EXPECT_EQ(kind_name(*undefined), "undefined");
    for (const char* name : {"", "b", "missing", "A"}) {
        for (const auto& [form, look_up] : lookups_of_member<const Value>(name)) {
            EXPECT_EQ(&look_up(empty), undefined) << form;
            EXPECT_EQ(&look_up(full), undefined) << form;
        }
        EXPECT_FALSE(empty.hasOwnProperty(name));
        EXPECT_FALSE(full.hasOwnProperty(name));
    }
    EXPECT_EQ(content_text(empty), "{}");
    EXPECT_EQ(content_text(full), R"({"a":1,"c":3})");
}

TEST(ConstIndexing, TheUndefinedOfAMissingMemberOutlivesTheObject) {
    const Value* undefined = nullptr;
    {
        const Value object{Object{}};
        undefined = &object["a"];
    }
    EXPECT_EQ(kind_name(*undefined), "undefined");
}

TEST(ConstIndexing, AnUndefinedMemberIsNotTheUndefinedOfAMissingOne) {
    const Value object(Object{{"a", Value()}});
    EXPECT_EQ(kind_name(object["a"]), "undefined");
    EXPECT_NE(&object["a"], &object["missing"]);
}

TEST(ConstIndexing, TheUndefinedOfAMissingMemberStaysUndefinedWhateverItsCopiesBecome) {
    const Value object{Object{}};
    Value copy = object["missing"];
    copy = "changed";
    EXPECT_EQ(kind_name(object["missing"]), "undefined");
}

template <class T, class = void>
struct HasPublicUndefined : std::false_type {};
template <class T>
struct HasPublicUndefined<T, std::void_t<decltype(T::UNDEFINED)>> : std::true_type {};

TEST(ConstIndexing, IsTheOnlyWayToTheUndefinedConstant) {
    EXPECT_FALSE(HasPublicUndefined<Value>::value);
}

TEST(NonConstIndexing, AMissingMemberIsInsertedUndefinedAndStays) {
    for (const auto& [form, look_up] : lookups_of_member<Value>("x")) {
        Value object{Object{}};
        Value& member = look_up(object);
        EXPECT_EQ(kind_name(member), "undefined") << form;
        EXPECT_TRUE(object.hasOwnProperty("x")) << form;
        EXPECT_EQ(&look_up(object), &member) << form;
        EXPECT_EQ(&static_cast<const Value&>(object)["x"], &member) << form;
        EXPECT_EQ(content_text(object), R"({"x":})") << form;
    }
}

TEST(NonConstIndexing, AnInsertedMemberCanBeAssigned) {
    for (const auto& [form, look_up] : lookups_of_member<Value>("x")) {
        Value object(Object{{"w", 1}, {"y", 3}});
        look_up(object) = 2;
        EXPECT_EQ(content_text(object), R"({"w":1,"x":2,"y":3})") << form;
    }
}

TEST(NonConstIndexing, ElementsAndMembersCanBeAssignedInPlace) {
    for (const auto& [form, look_up] : lookups_of_element<Value>(1)) {
        Value array(Array{1, 2, 3});
        look_up(array) = "new";
        EXPECT_EQ(content_text(array), R"([1,"new",3])") << form;
    }
    for (const auto& [form, look_up] : lookups_of_member<Value>("b")) {
        Value object(Object{{"a", 1}, {"b", 2}});
        look_up(object) = "new";
        EXPECT_EQ(content_text(object), R"({"a":1,"b":"new"})") << form;
    }
}

TEST(NonConstIndexing, LookingUpAPresentMemberInsertsNothing) {
    for (const auto& [form, look_up] : lookups_of_member<Value>("a")) {
        Value object(Object{{"a", 1}});
        look_up(object);
        EXPECT_EQ(content_text(object), R"({"a":1})") << form;
    }
}

TEST(NonConstIndexing, AMissingMemberWithAZeroByteInItsNameIsInsertedUnderTheWholeName) {
    const std::string name("a\0b", 3);
    Value object{Object{}};
    object[name];
    EXPECT_TRUE(object.hasOwnProperty(name));
    EXPECT_FALSE(object.hasOwnProperty("a"));
    object["c\0d"];
    EXPECT_TRUE(object.hasOwnProperty("c"));
    EXPECT_FALSE(object.hasOwnProperty(std::string("c\0d", 3)));
}

TEST(NonConstIndexing, NamesAreOrderedByTheirBytes) {
    Value object{Object{}};
    int count = 0;
    for (const char* name : {"b", "ab", "\xC3\xA4", "a", "Z", "", "a b"}) {
        object[name] = ++count;
    }
    EXPECT_EQ(content_text(object),
              "{\"\":6,\"Z\":5,\"a\":4,\"a b\":7,\"ab\":2,\"b\":1,\"\xC3\xA4\":3}");
}

TEST(NonConstIndexing, MembersKeepTheirAddressesWhenOthersAreInserted) {
    Value object(Object{{"m", "here"}});
    Value* const member = &object["m"];
    for (int i = 0; i != 100; ++i) {
        object[std::to_string(i)] = i;
    }
    EXPECT_EQ(&object["m"], member);
    EXPECT_EQ(*member, Value("here"));
}

TEST(NonConstIndexing, ConstAndNonConstAccessReachTheSameObject) {
    Value array(Array{1, 2});
    EXPECT_EQ(&array[1], &static_cast<const Value&>(array)[1]);
    Value object(Object{{"a", 1}});
    EXPECT_EQ(&object["a"], &static_cast<const Value&>(object)["a"]);
}

TEST(NonConstIndexing, AMemberOfAValueThatIsNoObjectIsNotInserted) {
    Value object(Object{{"a", 1}});
    EXPECT_THAT(
        [&] { object["a"]["b"] = 2; },
        ThrowsMessage<std::runtime_error>("invalid conversion: JSON number to JSON object"));
    EXPECT_EQ(content_text(object), R"({"a":1})");
    EXPECT_THAT([&] { object["new"]["b"] = 2; },
                ThrowsMessage<std::runtime_error>("invalid conversion: undefined to JSON object"));
    EXPECT_EQ(content_text(object), R"({"a":1,"new":})") << "the first step had succeeded";
}

TEST(Indexing, ResultsAreReferences) {
    static_assert(std::is_same_v<decltype(std::declval<Value&>()[std::string()]), Value&>);
    static_assert(std::is_same_v<decltype(std::declval<Value&>()["a"]), Value&>);
    static_assert(std::is_same_v<decltype(std::declval<Value&>()[0]), Value&>);
    static_assert(std::is_same_v<decltype(std::declval<Value&>()[std::size_t{0}]), Value&>);
    static_assert(std::is_same_v<decltype(std::declval<Value&>()[Value()]), Value&>);
    static_assert(
        std::is_same_v<decltype(std::declval<const Value&>()[std::string()]), const Value&>);
    static_assert(std::is_same_v<decltype(std::declval<const Value&>()["a"]), const Value&>);
    static_assert(std::is_same_v<decltype(std::declval<const Value&>()[0]), const Value&>);
    static_assert(
        std::is_same_v<decltype(std::declval<const Value&>()[std::size_t{0}]), const Value&>);
    static_assert(std::is_same_v<decltype(std::declval<const Value&>()[Value()]), const Value&>);
    static_assert(std::is_same_v<decltype(std::declval<const Value&>().length()), std::size_t>);
    static_assert(std::is_same_v<decltype(std::declval<Value&>().push(Value())), void>);
}

// ---- length ------------------------------------------------------------------------------------

TEST(Length, IsTheNumberOfElementsOfAnArray) {
    EXPECT_EQ(Value(Array{}).length(), 0u);
    EXPECT_EQ(Value(Array{Value()}).length(), 1u) << "an Undefined element counts";
    EXPECT_EQ(Value(Array{1, 2, 3}).length(), 3u);
    EXPECT_EQ(Value(Array{Array{1, 2, 3}, Array{}}).length(), 2u) << "only the outermost counts";
    EXPECT_EQ(Value(Array(1000)).length(), 1000u);
}

TEST(Length, OfAnythingButAnArrayNamesTheKindWithoutASpaceBeforeIt) {
    for (const Sample& sample : one_of_each_kind()) {
        if (sample.kind != "JSON array") {
            EXPECT_THAT([&] { static_cast<void>(sample.value.length()); },
                        ThrowsMessage<std::runtime_error>(
                            "json::Value::length not supported for values of type:" + sample.kind));
        }
    }
}

// ---- hasOwnProperty ----------------------------------------------------------------------------

TEST(HasOwnProperty, IsTrueForTheNamesOfAnObject) {
    const Value object(Object{{"a", 1}, {"ab", 2}});
    EXPECT_TRUE(object.hasOwnProperty("a"));
    EXPECT_TRUE(object.hasOwnProperty("ab"));
    EXPECT_FALSE(object.hasOwnProperty(""));
    EXPECT_FALSE(object.hasOwnProperty("A"));
    EXPECT_FALSE(object.hasOwnProperty("abc"));
    EXPECT_FALSE(object.hasOwnProperty("b"));
    EXPECT_FALSE(Value(Object{}).hasOwnProperty("a"));
}

TEST(HasOwnProperty, LooksAtTheOutermostObjectOnly) {
    const Value object(Object{{"outer", Object{{"inner", 1}}}});
    EXPECT_FALSE(object.hasOwnProperty("inner"));
    EXPECT_TRUE(object["outer"].hasOwnProperty("inner"));
}

TEST(HasOwnProperty, IsFalseForEveryKindButObject) {
    for (const Sample& sample : one_of_each_kind()) {
        const bool is_object = sample.kind == "JSON object";
        EXPECT_EQ(sample.value.hasOwnProperty("a"), is_object) << sample.kind;
        for (const char* name : {"", "0", "length", "text"}) {
            EXPECT_FALSE(sample.value.hasOwnProperty(name)) << sample.kind << ' ' << name;
        }
    }
}

} // namespace
} // namespace foundation::json::test
