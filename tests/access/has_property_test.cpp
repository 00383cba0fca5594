// The predicate behind hasOwnProperty, on its own.
#include <foundation/json/builders.hpp>
#include <foundation/json/value.hpp>

#include "support/values_of_each_kind.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

using HasProperty = Value::HasProperty;

const char* const long_name = "a name too long to be stored within a string object itself";

/// Whether the predicate looks for the empty name.
bool has_empty_name(const HasProperty& predicate) {
    return predicate(Object{{"", 1}});
}

TEST(HasProperty, FindsAMemberOfAMap) {
    const Object members{{"a", 1}, {"ab", 2}, {"c", 3}};
    EXPECT_TRUE(HasProperty("a")(members));
    EXPECT_TRUE(HasProperty("ab")(members));
    EXPECT_TRUE(HasProperty("c")(members));
    EXPECT_FALSE(HasProperty("")(members));
    EXPECT_FALSE(HasProperty("A")(members));
    EXPECT_FALSE(HasProperty("b")(members)) << "lies between two members";
    EXPECT_FALSE(HasProperty("abc")(members));
    EXPECT_FALSE(HasProperty("d")(members)) << "lies after the last member";
    EXPECT_FALSE(HasProperty("a")(Object{}));
}

TEST(HasProperty, FindsAMemberWhateverItHolds) {
    for (const Sample& sample : one_of_each_kind()) {
        EXPECT_TRUE(HasProperty("a")(Object{{"a", sample.value}})) << sample.kind;
    }
}

TEST(HasProperty, IsFalseForAValueThatIsNoObject) {
    for (const Sample& sample : one_of_each_kind()) {
        const bool is_object = sample.kind == "JSON object";
        EXPECT_EQ(HasProperty("a")(sample.value), is_object) << sample.kind;
        EXPECT_FALSE(HasProperty("")(sample.value)) << sample.kind;
        EXPECT_FALSE(HasProperty("0")(sample.value)) << sample.kind;
    }
}

TEST(HasProperty, IsFalseForTheContentOfEveryOtherKind) {
    const HasProperty has_a("a");
    EXPECT_THAT((std::vector<bool>{has_a(Undefined()), has_a(Null()), has_a(true), has_a(1.0),
                                   has_a(std::string("a")), has_a(Array{"a"}), has_a(1.0f),
                                   has_a(1LL), has_a(1ULL)}),
                testing::Each(false));
}

TEST(HasProperty, AnswersForTheValueThatItsOperandConvertsTo) {
    const Value none;
    const Value record(Object{{"a", 1}});
    EXPECT_TRUE(HasProperty("a")(none || record));
    EXPECT_FALSE(HasProperty("b")(none || record));
    EXPECT_FALSE(HasProperty("a")(record["a"] || record)) << "a number is chosen";
    EXPECT_TRUE(HasProperty("a")((Property("a") = 1)));
    EXPECT_TRUE(HasProperty("b")((Property("a") = 1, Property("b") = 2)));
    EXPECT_FALSE(HasProperty("a")(Property("a"))) << "nothing has been assigned";
    EXPECT_FALSE(HasProperty("a")((Element("a"), Element(2))));
    EXPECT_FALSE(HasProperty("a")("a"));
    EXPECT_FALSE(HasProperty("a")(1));
}

TEST(HasProperty, TakesNothingElse) {
    static_assert(std::is_invocable_r_v<bool, HasProperty, Value>);
    static_assert(!std::is_invocable_v<HasProperty, std::map<int, Value>>);
    static_assert(!std::is_invocable_v<HasProperty, HasProperty>);
}

TEST(HasProperty, AnEmptyNameIsFoundOnlyWhereThereIsAnEmptyName) {
    const HasProperty predicate{std::string()};
    EXPECT_TRUE(predicate(Object{{"", 1}}));
    EXPECT_TRUE(predicate(Value(Object{{"", Undefined()}, {"a", 1}})));
    EXPECT_FALSE(predicate(Object{{"a", 1}}));
    EXPECT_FALSE(predicate(Object{{std::string(1, '\0'), 1}}));
    EXPECT_FALSE(predicate(Object{}));
}

TEST(HasProperty, ComparesNamesByteForByte) {
    const std::string name("a\0b", 3);
    EXPECT_TRUE(HasProperty(name)(Object{{name, 1}}));
    EXPECT_FALSE(HasProperty(name)(Object{{"a", 1}}));
    EXPECT_FALSE(HasProperty("a")(Object{{name, 1}}));
    EXPECT_FALSE(HasProperty("\xC3\xA4")(Object{{"\xC3\xA5", 1}}));
    EXPECT_TRUE(HasProperty("\xC3\xA4")(Object{{"\xC3\xA4", 1}}));
}

TEST(HasProperty, KeepsACopyOfTheName) {
    std::string name("a");
    const HasProperty predicate(name);
    name = "b";
    EXPECT_TRUE(predicate(Object{{"a", 1}}));
    EXPECT_FALSE(predicate(Object{{"b", 1}}));
}

// ---- Copies and moves, of names short and long -------------------------------------------------

class HasPropertyOfName : public testing::TestWithParam<const char*> {
protected:
    const std::string name = GetParam();
    const Object members{{name, 1}};
};

INSTANTIATE_TEST_SUITE_P(ShortAndLong, HasPropertyOfName, testing::Values("a", long_name));

TEST_P(HasPropertyOfName, ACopyLooksForTheSameName) {
    const HasProperty original(name);
    const HasProperty copy(original);
    EXPECT_TRUE(copy(members));
    EXPECT_TRUE(original(members));
}

TEST_P(HasPropertyOfName, ACopyOutlivesTheOriginal) {
    auto original = std::make_unique<HasProperty>(name);
    const HasProperty copy(*original);
    original.reset();
    EXPECT_TRUE(copy(members));
}

TEST_P(HasPropertyOfName, CopyAssignmentTakesTheName) {
    const HasProperty original(name);
    HasProperty copy("other");
    HasProperty& result = (copy = original);
    EXPECT_EQ(&result, &copy);
    EXPECT_TRUE(copy(members));
    EXPECT_FALSE(copy(Object{{"other", 1}}));
    EXPECT_TRUE(original(members));
}

TEST_P(HasPropertyOfName, AMoveLeavesAnEmptyName) {
    HasProperty original(name);
    const HasProperty moved(std::move(original));
    EXPECT_TRUE(moved(members));
    EXPECT_FALSE(original(members));
    EXPECT_TRUE(has_empty_name(original));
}

TEST_P(HasPropertyOfName, MoveAssignmentLeavesAnEmptyName) {
    HasProperty original(name);
    HasProperty target("other");
    HasProperty& result = (target = std::move(original));
    EXPECT_EQ(&result, &target);
    EXPECT_TRUE(target(members));
    EXPECT_FALSE(target(Object{{"other", 1}}));
    EXPECT_FALSE(original(members));
    EXPECT_TRUE(has_empty_name(original));
}

TEST_P(HasPropertyOfName, AssignmentToItselfKeepsTheName) {
    HasProperty predicate(name);
    HasProperty& same = predicate;
    predicate = same;
    EXPECT_TRUE(predicate(members));
    predicate = std::move(same);
    EXPECT_TRUE(predicate(members));
}

TEST(HasProperty, IsAVisitorAndMovesWithoutThrowing) {
    static_assert(std::is_base_of_v<boost::static_visitor<bool>, HasProperty>);
    static_assert(std::is_same_v<HasProperty::result_type, bool>);
    static_assert(std::is_constructible_v<HasProperty, const std::string&>);
    static_assert(std::is_nothrow_move_constructible_v<HasProperty>);
    static_assert(std::is_nothrow_move_assignable_v<HasProperty>);
    static_assert(std::is_copy_constructible_v<HasProperty>);
    static_assert(std::is_copy_assignable_v<HasProperty>);
}

} // namespace
} // namespace foundation::json::test
