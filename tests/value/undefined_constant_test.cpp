// The Undefined constant of the interface.
#include "support/kind.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace foundation::json {
namespace {

using test::Array;
using test::kind_name;
using test::Object;

TEST(UndefinedConstant, IsWhatConstLookupsOfMissingMembersReturn) {
    const Value object(Object{{"a", 1}});
    EXPECT_EQ(kind_name(object["missing"]), "undefined");
}

TEST(UndefinedConstant, IsTheSameObjectEveryTime) {
    const Value one(Object{{"a", 1}});
    const Value* const undefined = &one["missing"];
    const Value other(Object{});
    const Value copy(one);
    EXPECT_EQ(&one["missing"], undefined);
    EXPECT_EQ(&one["absent"], undefined);
    EXPECT_EQ(&one[std::string("absent")], undefined);
    EXPECT_EQ(&one[Value("absent")], undefined);
    EXPECT_EQ(&other[""], undefined);
    EXPECT_EQ(&copy["missing"], undefined);
}

TEST(UndefinedConstant, IsNotTheMemberThatIsUndefined) {
    const Value object(Object{{"there", Undefined()}});
    EXPECT_NE(&object["there"], &object["missing"]);
}

TEST(UndefinedConstant, OutlivesTheValueLookedUpIn) {
    const Value* undefined = nullptr;
    {
        const Value object(Object{{"a", 1}});
        undefined = &object["missing"];
    }
    EXPECT_EQ(kind_name(*undefined), "undefined");
}

TEST(UndefinedConstant, StaysUndefinedWhateverItsCopiesBecome) {
    const Value object(Object{{"a", 1}});
    Value copy = object["missing"];
    copy = "changed";
    EXPECT_EQ(kind_name(object["missing"]), "undefined");
}

template <class T, class = void>
struct HasPublicUndefined : std::false_type {};
template <class T>
struct HasPublicUndefined<T, std::void_t<decltype(T::UNDEFINED)>> : std::true_type {};

TEST(UndefinedConstant, IsReachedThroughLookupsOnly) {
    EXPECT_FALSE(HasPublicUndefined<Value>::value);
}

} // namespace
} // namespace foundation::json
