#include "value/conversions.hpp"

#include "support/describe.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::json {
namespace {

using detail::strict_array;
using detail::strict_object;
using test::describe;

/// What an accessor comes to: "content", or the message of its std::runtime_error.
template <class Accessor>
std::string outcome(Accessor access) {
    try {
        access();
        return "content";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(StrictAccessor, AcceptsOneKindAndNamesBothForEveryOther) {
    struct Row {
        Value value;
        const char* to_array;
        const char* to_object;
    };
    Row rows[] = {
        {Undefined(), "invalid conversion: undefined to JSON array",
         "invalid conversion: undefined to JSON object"},
        {Null(), "invalid conversion: JSON null to JSON array",
         "invalid conversion: JSON null to JSON object"},
        {true, "invalid conversion: JSON boolean to JSON array",
         "invalid conversion: JSON boolean to JSON object"},
        {7.0, "invalid conversion: JSON number to JSON array",
         "invalid conversion: JSON number to JSON object"},
        {"[]", "invalid conversion: JSON string to JSON array",
         "invalid conversion: JSON string to JSON object"},
        {Array{}, "content", "invalid conversion: JSON array to JSON object"},
        {Object{}, "invalid conversion: JSON object to JSON array", "content"},
        {7.0f, "invalid conversion: float to JSON array",
         "invalid conversion: float to JSON object"},
        {7LL, "invalid conversion: int64 to JSON array",
         "invalid conversion: int64 to JSON object"},
        {7ULL, "invalid conversion: uint64 to JSON array",
         "invalid conversion: uint64 to JSON object"},
    };
    for (Row& row : rows) {
        const std::string before = describe(row.value);
        const Value& constant = row.value;
        EXPECT_EQ(outcome([&] { strict_array(row.value); }), row.to_array);
        EXPECT_EQ(outcome([&] { strict_array(constant); }), row.to_array);
        EXPECT_EQ(outcome([&] { strict_object(row.value); }), row.to_object);
        EXPECT_EQ(outcome([&] { strict_object(constant); }), row.to_object);
        EXPECT_EQ(describe(row.value), before);
    }
}

TEST(StrictAccessor, IsAsConstAsItsValue) {
    static_assert(std::is_same_v<decltype(strict_array(std::declval<Value&>())), Array&>);
    static_assert(
        std::is_same_v<decltype(strict_array(std::declval<const Value&>())), const Array&>);
    static_assert(std::is_same_v<decltype(strict_object(std::declval<Value&>())), Object&>);
    static_assert(
        std::is_same_v<decltype(strict_object(std::declval<const Value&>())), const Object&>);
}

TEST(StrictAccessor, GivesTheContentInPlace) {
    Value array(Array{1, 2});
    const Value& constant_array = array;
    EXPECT_EQ(&strict_array(array), &strict_array(constant_array));
    EXPECT_EQ(&strict_array(array)[1], &array[1]);
    strict_array(array).push_back("three");
    EXPECT_EQ(describe(array), "JSON array [1,2,\"three\"]");

    Value object(Object{{"a", 1}});
    const Value& constant_object = object;
    EXPECT_EQ(&strict_object(object), &strict_object(constant_object));
    EXPECT_EQ(&strict_object(object).at("a"), &object["a"]);
    strict_object(object)["b"] = "two";
    EXPECT_EQ(describe(object), "JSON object {\"a\":1,\"b\":\"two\"}");
}

TEST(StrictAccessor, ShowsThatAnArrayHasNoSpareCapacity) {
    Array elements{1, 2, 3};
    elements.reserve(100);
    const Value array(elements);
    const Value copy(array);
    EXPECT_EQ(strict_array(array).capacity(), 3u);
    EXPECT_EQ(strict_array(copy).capacity(), 3u);
}

} // namespace
} // namespace foundation::json
