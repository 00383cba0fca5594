// Construction, copies and moves of a value, and its memory layout.
#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json {
namespace {

using test::Array;
using test::describe;
using test::Object;
using test::one_of_each_kind;
using test::Sample;

// ---- Construction --------------------------------------------------------------------------

TEST(Value, TakesItsKindFromWhatItIsBuiltFrom) {
    struct Case {
        Value value;
        const char* description;
    };
    const Case cases[] = {
        {Value(), "undefined"},
        {Value(Undefined()), "undefined"},
        {Value(Null()), "JSON null null"},
        {Value(true), "JSON boolean true"},
        {Value(false), "JSON boolean false"},
        {Value(5), "JSON number 5"},
        {Value(-5), "JSON number -5"},
        {Value(0), "JSON number 0"},
        {Value(2.5), "JSON number 2.5"},
        {Value(1.5f), "float 1.5"},
        {Value(5LL), "int64 5"},
        {Value(std::numeric_limits<long long>::min()), "int64 -9223372036854775808"},
        {Value(5ULL), "uint64 5"},
        {Value(std::numeric_limits<unsigned long long>::max()), "uint64 18446744073709551615"},
        {Value("text"), "JSON string \"text\""},
        {Value(""), "JSON string \"\""},
        {Value(std::string("text")), "JSON string \"text\""},
        {Value(Array{}), "JSON array []"},
        {Value(Array{1, "two", Null()}), "JSON array [1,\"two\",null]"},
        {Value(Object{}), "JSON object {}"},
        {Value(Object{{"b", 2}, {"a", 1}}), "JSON object {\"a\":1,\"b\":2}"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(describe(c.value), c.description);
    }
}

TEST(Value, HoldsAnIntAsTheSameDouble) {
    EXPECT_EQ(Value(5), Value(5.0));
    EXPECT_EQ(Value(2147483647), Value(2147483647.0));
    EXPECT_EQ(Value(-2147483647 - 1), Value(-2147483648.0));
}

TEST(Value, KeepsNanAndInfinities) {
    const double infinity = std::numeric_limits<double>::infinity();
    const float float_infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(Value(infinity), Value(infinity));
    EXPECT_EQ(Value(-infinity), Value(-infinity));
    EXPECT_NE(Value(infinity), Value(-infinity));
    EXPECT_EQ(Value(float_infinity), Value(float_infinity));
    EXPECT_EQ(describe(Value(std::nan(""))), "JSON number \"NaN\"");
    EXPECT_EQ(describe(Value(std::nanf(""))), "float \"NaN\"");
}

TEST(Value, CopiesTheStringItIsBuiltFrom) {
    char buffer[] = "text";
    const Value from_pointer(static_cast<const char*>(buffer));
    std::string text = "text";
    const Value from_string(text);
    buffer[0] = 'n';
    text[0] = 'n';
    EXPECT_EQ(describe(from_pointer), "JSON string \"text\"");
    EXPECT_EQ(describe(from_string), "JSON string \"text\"");
}

TEST(Value, EndsACStringButNoStringAtTheFirstZeroByte) {
    EXPECT_EQ(Value("a\0b"), Value("a"));
    EXPECT_NE(Value(std::string("a\0b", 3)), Value("a"));
    EXPECT_EQ(Value(std::string("a\0b", 3)), Value(std::string("a\0b", 3)));
}

TEST(Value, CopiesEvenFromTemporaryStringsAndContainers) {
    std::string text = "text";
    const Value string(std::move(text));
    EXPECT_EQ(text, "text"); // NOLINT(bugprone-use-after-move): that nothing was moved is the point
    EXPECT_EQ(describe(string), "JSON string \"text\"");

    Array elements{1, 2};
    const Value array(std::move(elements));
    EXPECT_EQ(elements.size(), 2u); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(describe(array), "JSON array [1,2]");

    Object members{{"a", 1}};
    const Value object(std::move(members));
    EXPECT_EQ(members.size(), 1u); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(describe(object), "JSON object {\"a\":1}");
}

TEST(Value, KeepsNoSpareCapacityOfTheVectorItIsBuiltFrom) {
    Array elements{1, 2, 3};
    elements.reserve(100);
    Value array(elements);
    const auto first = reinterpret_cast<std::uintptr_t>(&array[0]);
    array.push(4);
    EXPECT_NE(reinterpret_cast<std::uintptr_t>(&array[0]), first);
}

enum Unscoped { FIRST, SECOND };

TEST(Value, TakesSmallIntegersAndUnscopedEnumerationsAsInts) {
    EXPECT_EQ(describe(Value(static_cast<short>(-3))), "JSON number -3");
    EXPECT_EQ(describe(Value(static_cast<unsigned short>(65535))), "JSON number 65535");
    EXPECT_EQ(describe(Value('A')), "JSON number 65");
    EXPECT_EQ(describe(Value(static_cast<signed char>(-1))), "JSON number -1");
    EXPECT_EQ(describe(Value(static_cast<unsigned char>(255))), "JSON number 255");
    EXPECT_EQ(describe(Value(SECOND)), "JSON number 1");
}

TEST(Value, CompilesWithANullPointerWhichIsTakenForAString) {
    static_assert(std::is_convertible_v<std::nullptr_t, Value>);
    static_assert(std::is_assignable_v<Value&, std::nullptr_t>);
    using Comparison = decltype(std::declval<Value&>()["x"] == nullptr);
    static_assert(std::is_same_v<Comparison, bool>);
}

TEST(Value, CannotBeBuiltFromNumbersForWhichConstructorsAreAmbiguous) {
    static_assert(std::is_constructible_v<Value, std::int64_t> !=
                  std::is_same_v<std::int64_t, long>);
    static_assert(!std::is_constructible_v<Value, unsigned int>);
    static_assert(!std::is_constructible_v<Value, long>);
    static_assert(!std::is_constructible_v<Value, unsigned long>);
    static_assert(!std::is_constructible_v<Value, long double>);
}

TEST(Value, IsBuiltImplicitlyFromEverythingItCanHold) {
    static_assert(std::is_convertible_v<Undefined, Value>);
    static_assert(std::is_convertible_v<Null, Value>);
    static_assert(std::is_convertible_v<bool, Value>);
    static_assert(std::is_convertible_v<int, Value>);
    static_assert(std::is_convertible_v<double, Value>);
    static_assert(std::is_convertible_v<float, Value>);
    static_assert(std::is_convertible_v<long long, Value>);
    static_assert(std::is_convertible_v<unsigned long long, Value>);
    static_assert(std::is_convertible_v<const char*, Value>);
    static_assert(std::is_convertible_v<const char(&)[5], Value>);
    static_assert(std::is_convertible_v<std::string, Value>);
    static_assert(std::is_convertible_v<Array, Value>);
    static_assert(std::is_convertible_v<Object, Value>);

    const Array mixed{Undefined(), Null(), true, 1, "text", 1.5f, 2LL, 3ULL, Array{}, Object{}};
    EXPECT_EQ(describe(mixed), "JSON array [,null,true,1,\"text\",1.5,2,3,[],{}]");
}

// ---- Copying and moving --------------------------------------------------------------------

TEST(Value, CopiesEqualTheirSourceWhichStaysAsItWas) {
    for (const Sample& sample : one_of_each_kind()) {
        const Value copy(sample.value);
        EXPECT_EQ(describe(copy), sample.description);
        EXPECT_EQ(describe(sample.value), sample.description);
    }
}

TEST(Value, CopiesAreDeep) {
    Value original(Array{Array{1, Object{{"a", "one"}}}, 2});
    Value copy(original);
    copy[0][0] = "changed";
    copy[0][1]["a"] = "changed";
    copy[0].push("added");
    EXPECT_EQ(describe(original), "JSON array [[1,{\"a\":\"one\"}],2]");
    original[0][1]["b"] = "added";
    EXPECT_EQ(describe(copy), "JSON array [[\"changed\",{\"a\":\"changed\"},\"added\"],2]");
}

TEST(Value, MovingEmptiesStringsAndContainersAndLeavesOtherKindsAsTheyWere) {
    for (Sample& sample : one_of_each_kind()) {
        const Value target(std::move(sample.value));
        EXPECT_EQ(describe(target), sample.description);
        EXPECT_EQ(describe(sample.value), sample.left_behind);
    }
}

TEST(Value, MovingAShortStringEmptiesItToo) {
    Value source("x");
    const Value target(std::move(source));
    EXPECT_EQ(describe(target), "JSON string \"x\"");
    EXPECT_EQ(describe(source), "JSON string \"\"");
}

TEST(Value, MovingKeepsElementsAndMembersWhereTheyAre) {
    Value array(Array{1, 2, 3});
    const Value* const element = &array[1];
    Value moved_array(std::move(array));
    EXPECT_EQ(&moved_array[1], element);

    Value object(Object{{"a", 1}, {"b", 2}});
    const Value* const member = &object["b"];
    Value moved_object(std::move(object));
    EXPECT_EQ(&moved_object["b"], member);
}

TEST(Value, MoveConstructorMayThrow) {
    EXPECT_FALSE(std::is_nothrow_move_constructible_v<Value>);
}

TEST(Value, IsCopiedWhereAVectorOfValuesGrowsAndNotWhereItHasRoom) {
    Array values;
    values.reserve(2);
    values.push_back(Array{1, 2, 3});
    const auto element = reinterpret_cast<std::uintptr_t>(&values[0][0]);
    values.push_back(Null());
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&values[0][0]), element);
    values.reserve(values.capacity() + 1);
    EXPECT_NE(reinterpret_cast<std::uintptr_t>(&values[0][0]), element);
}

// ---- Memory --------------------------------------------------------------------------------

TEST(Value, IsAKindIndexBesideTheStorageOfAString) {
    EXPECT_EQ(sizeof(Value), alignof(std::string) + sizeof(std::string));
    EXPECT_EQ(alignof(Value), alignof(std::string));
}

TEST(Value, BeginsWithItsKindIndex) {
    std::int32_t expected = 0;
    for (const Sample& sample : one_of_each_kind()) {
        std::int32_t index = -1;
        std::memcpy(&index, &sample.value, sizeof index);
        EXPECT_EQ(index, expected++) << sample.kind;
    }
}

} // namespace
} // namespace foundation::json
