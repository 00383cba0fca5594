// Choosing a default: `a || b`, and the visitor that chooses.
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

enum Choice { LEFT, RIGHT };

struct Operand {
    const char* name;
    Value value;
    Choice choice; ///< which operand is chosen when this is the left one
};

std::vector<Operand> operands() {
    return {
        {"undefined", Undefined(), RIGHT},
        {"null", Null(), RIGHT},
        {"false", false, RIGHT},
        {"true", true, LEFT},
        {"0.0", 0.0, RIGHT},
        {"-0.0", -0.0, RIGHT},
        {"int 0", 0, RIGHT},
        {"int 1", 1, LEFT},
        {"-1.0", -1.0, LEFT},
        {"0.1", 0.1, LEFT},
        {"the least positive number", 5e-324, LEFT},
        {"the greatest negative number", -5e-324, LEFT},
        {"infinity", infinity, LEFT},
        {"-infinity", -infinity, LEFT},
        {"NaN", not_a_number, LEFT},
        {"-NaN", -not_a_number, LEFT},
        {"empty string", "", RIGHT},
        {"blank", " ", LEFT},
        {"zero byte", std::string(1, '\0'), LEFT},
        {"string 0", "0", LEFT},
        {"string false", "false", LEFT},
        {"long string", std::string(1000, 'x'), LEFT},
        {"empty array", Array{}, LEFT},
        {"array", Array{Null()}, LEFT},
        {"empty object", Object{}, LEFT},
        {"object", Object{{"a", Null()}}, LEFT},
        {"float 0", 0.0f, LEFT},
        {"float -0", -0.0f, LEFT},
        {"float 1", 1.0f, LEFT},
        {"float NaN", std::numeric_limits<float>::quiet_NaN(), LEFT},
        {"int64 0", 0LL, LEFT},
        {"int64 -1", -1LL, LEFT},
        {"uint64 0", 0ULL, LEFT},
        {"uint64 1", 1ULL, LEFT},
    };
}

TEST(Fallback, ChoosesByTheLeftOperandAlone) {
    const std::vector<Operand> rights = operands();
    for (const Operand& left : operands()) {
        for (const Operand& right : rights) {
            const Value& chosen = left.value || right.value;
            EXPECT_EQ(&chosen, left.choice == LEFT ? &left.value : &right.value)
                << left.name << " || " << right.name;
        }
    }
}

TEST(Fallback, GivesTheOperandItselfAndChangesNeither) {
    for (const Sample& left : one_of_each_kind()) {
        const Value right(Array{"right"});
        const Value& chosen = left.value || right;
        EXPECT_TRUE(&chosen == &left.value || &chosen == &right) << left.kind;
        EXPECT_EQ(describe(left.value), left.description);
        EXPECT_EQ(content_text(right), R"(["right"])");
    }
}

TEST(Fallback, MayBeCopiedFromTemporaries) {
    const Value right = Value() || Value("default");
    EXPECT_EQ(content_text(right), R"("default")");
    const Value left = Value("present") || Value("default");
    EXPECT_EQ(content_text(left), R"("present")");
    Value assigned;
    assigned = Value(false) || Value(Array{1});
    EXPECT_EQ(content_text(assigned), "[1]");
}

TEST(Fallback, GivesADefaultForAMissingOrEmptyMember) {
    const Value record(Object{{"name", "x"}, {"empty", ""}, {"zero", 0}, {"zero64", 0LL}});
    const auto name_or_default = [&](const char* key) {
        return content_text(record[key] || Value("unnamed"));
    };
    EXPECT_EQ(name_or_default("name"), R"("x")");
    EXPECT_EQ(name_or_default("empty"), R"("unnamed")");
    EXPECT_EQ(name_or_default("missing"), R"("unnamed")");
    EXPECT_EQ(name_or_default("zero"), R"("unnamed")");
    EXPECT_EQ(name_or_default("zero64"), "0");
    EXPECT_FALSE(record.hasOwnProperty("missing"));
}

TEST(Fallback, NestsOnTheRight) {
    const Value a;
    const Value b("");
    const Value c("c");
    const Value d("d");
    EXPECT_EQ(&static_cast<const Value&>(a || (b || c)), &c);
    EXPECT_EQ(&static_cast<const Value&>(a || (c || d)), &c);
    EXPECT_EQ(&static_cast<const Value&>(d || (a || c)), &d);
    EXPECT_EQ(&static_cast<const Value&>(a || (b || (a || d))), &d);
    EXPECT_EQ(&static_cast<const Value&>(a || (a || b)), &b) << "the last is taken as it is";
}

TEST(Fallback, ChoosesAtTheTimeOfTheConversion) {
    Value a("present");
    const Value b("default");
    const Value::Or choice = a || b;
    EXPECT_EQ(&static_cast<const Value&>(choice), &a);
    a = Null();
    EXPECT_EQ(&static_cast<const Value&>(choice), &b);
    a = 0LL;
    EXPECT_EQ(&static_cast<const Value&>(choice), &a);
}

TEST(Fallback, NeverThrows) {
    static_assert(noexcept(std::declval<const Value&>() || std::declval<const Value&>()));
    static_assert(noexcept(static_cast<const Value&>(std::declval<const Value::Or&>())));
    static_assert(std::is_same_v<decltype(std::declval<const Value&>() || Value()), Value::Or>);
    static_assert(std::is_constructible_v<Value::Or, const Value&, const Value&>);
    static_assert(std::is_convertible_v<Value::Or, const Value&>);
}

// ---- The visitor -------------------------------------------------------------------------------

TEST(OrVisitor, HoldsItsLeftOperand) {
    const Value left(1);
    const Value right(2);
    const Value::OrVisitor visitor(left, right);
    EXPECT_EQ(&visitor.left(), &left);
    const Value::OrVisitor copy(visitor);
    EXPECT_EQ(&copy.left(), &left);
}

TEST(OrVisitor, ChoosesByTheContentItVisits) {
    // Only the visited content decides, not what the operands hold.
    const Value left("left");
    const Value right("right");
    const Value::OrVisitor visitor(left, right);

    for (const Value* const chosen : {&visitor(Undefined()), &visitor(Null()), &visitor(false),
                                      &visitor(0.0), &visitor(-0.0), &visitor(std::string())}) {
        EXPECT_EQ(chosen, &right);
    }
    for (const Value* const chosen :
         {&visitor(true), &visitor(0.5), &visitor(-1.0), &visitor(5e-324), &visitor(infinity),
          &visitor(not_a_number), &visitor(std::string(" ")), &visitor(std::string(1, '\0')),
          &visitor(Array{}), &visitor(Array{1}), &visitor(Object{}), &visitor(Object{{"a", 1}}),
          &visitor(0.0f), &visitor(1.0f), &visitor(0LL), &visitor(1LL), &visitor(0ULL),
          &visitor(1ULL)}) {
        EXPECT_EQ(chosen, &left);
    }
}

TEST(OrVisitor, TakesOnlyWhatAValueHolds) {
    using Visitor = Value::OrVisitor;
    static_assert(std::is_invocable_v<Visitor, const Array&>);
    static_assert(std::is_invocable_v<Visitor, const Object&>);
    static_assert(std::is_invocable_v<Visitor, float>);
    static_assert(std::is_invocable_v<Visitor, long long>);
    static_assert(std::is_invocable_v<Visitor, unsigned long long>);
    static_assert(!std::is_invocable_v<Visitor, const Value&>, "its content decides");
    static_assert(!std::is_invocable_v<Visitor, Value::Or>);
    static_assert(!std::is_invocable_v<Visitor, std::vector<int>>);
}

TEST(OrVisitor, IsAVisitorWhoseResultIsAReference) {
    static_assert(std::is_base_of_v<boost::static_visitor<const Value&>, Value::OrVisitor>);
    static_assert(std::is_convertible_v<Value::OrVisitor*, boost::static_visitor<const Value&>*>);
    static_assert(std::is_same_v<Value::OrVisitor::result_type, const Value&>);
}

} // namespace
} // namespace foundation::json::test
