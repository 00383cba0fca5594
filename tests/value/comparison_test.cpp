// Equality and order of values.
#include "support/deep_stack.hpp"
#include "support/describe.hpp"
#include "support/nested.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json {
namespace {

using test::Array;
using test::describe;
using test::Object;
using test::run_with_deep_stack;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr float float_nan = std::numeric_limits<float>::quiet_NaN();
constexpr float float_infinity = std::numeric_limits<float>::infinity();

/// How two values compare. Unordered ones are not equal, and neither is less.
enum Relation { LESS, EQUAL, GREATER, UNORDERED };

void expect_relation(const Value& a, Relation relation, const Value& b) {
    SCOPED_TRACE(describe(a) + " and " + describe(b));
    EXPECT_EQ(a == b, relation == EQUAL);
    EXPECT_EQ(b == a, relation == EQUAL);
    EXPECT_EQ(a != b, relation != EQUAL);
    EXPECT_EQ(b != a, relation != EQUAL);
    EXPECT_EQ(a < b, relation == LESS);
    EXPECT_EQ(b < a, relation == GREATER);
}

struct Case {
    Value a;
    Relation relation;
    Value b;
};

void expect_relations(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        expect_relation(c.a, c.relation, c.b);
    }
}

// ---- Tags ----------------------------------------------------------------------------------

TEST(Comparison, OfNullTagsIsThatOfEqualThings) {
    EXPECT_TRUE(Null() == Null());
    EXPECT_FALSE(Null() != Null());
    EXPECT_FALSE(Null() < Null());
}

TEST(Comparison, FindsUndefinedTagsNeitherEqualNorUnequal) {
    EXPECT_FALSE(Undefined() == Undefined());
    EXPECT_FALSE(Undefined() != Undefined());
    EXPECT_FALSE(Undefined() < Undefined());
}

TEST(Comparison, FindsUndefinedValuesUnequalUnlikeTheTags) {
    const Value undefined{Undefined()};
    EXPECT_FALSE(undefined == Value(Undefined()));
    EXPECT_TRUE(undefined != Value(Undefined()));
    EXPECT_FALSE(undefined < Value(Undefined()));
    EXPECT_FALSE(undefined == undefined);
    EXPECT_TRUE(undefined != undefined);
}

template <class T>
constexpr bool compares_without_throwing =
    noexcept(std::declval<const T&>() == std::declval<const T&>()) && noexcept(
        std::declval<const T&>() !=
        std::declval<const T&>()) && noexcept(std::declval<const T&>() < std::declval<const T&>());

TEST(Comparison, NeverThrows) {
    EXPECT_TRUE(compares_without_throwing<Value>);
    EXPECT_TRUE(compares_without_throwing<Null>);
    EXPECT_TRUE(compares_without_throwing<Undefined>);
}

// ---- Different kinds -----------------------------------------------------------------------

TEST(Comparison, OfDifferentKindsGoesByKindAlone) {
    // Each kind with its least and its greatest content, if there is one.
    const std::vector<std::vector<Value>> kinds = {
        {Undefined()},
        {Null()},
        {false, true},
        {-infinity, 0.0, 1.0, 100.0, infinity, nan},
        {"", "1", "\xFF\xFF", "null", "undefined"},
        {Array{}, Array{1}, Array{Undefined()}, Array{9ULL, 9ULL}},
        {Object{}, Object{{"", 1}}, Object{{"\xFF", 9ULL}}},
        {-float_infinity, 0.0f, 1.0f, float_infinity, float_nan},
        {std::numeric_limits<long long>::min(), 0LL, 1LL, std::numeric_limits<long long>::max()},
        {0ULL, 1ULL, std::numeric_limits<unsigned long long>::max()},
    };
    for (std::size_t i = 0; i != kinds.size(); ++i) {
        for (std::size_t j = i + 1; j != kinds.size(); ++j) {
            for (const Value& a : kinds[i]) {
                for (const Value& b : kinds[j]) {
                    expect_relation(a, LESS, b);
                }
            }
        }
    }
}

TEST(Comparison, FindsNoNumbersEqualAcrossKinds) {
    expect_relations({
        {1.0, LESS, 1.0f},
        {1.0, LESS, 1LL},
        {1.0, LESS, 1ULL},
        {1.0f, LESS, 1LL},
        {1.0f, LESS, 1ULL},
        {1LL, LESS, 1ULL},
        {100.0, LESS, 1.0f},
        {1LL, LESS, 0ULL},
        {1, EQUAL, 1.0}, // an int is held as a double
        {nan, LESS, ""},
    });
}

// ---- Scalars -------------------------------------------------------------------------------

TEST(Comparison, NullsAreEqualAndFalseIsLessThanTrue) {
    expect_relations({
        {Null(), EQUAL, Null()},
        {false, EQUAL, false},
        {true, EQUAL, true},
        {false, LESS, true},
    });
}

TEST(Comparison, OfDoublesIsThatOfTheNumbers) {
    const double least = std::numeric_limits<double>::denorm_min();
    expect_relations({
        {1.0, EQUAL, 1.0},
        {1.0, LESS, 1.0000000000000002},
        {-1.0, LESS, 1.0},
        {-2.0, LESS, -1.0},
        {0.0, EQUAL, -0.0},
        {0.0, LESS, least},
        {-least, LESS, 0.0},
        {infinity, EQUAL, infinity},
        {-infinity, EQUAL, -infinity},
        {-infinity, LESS, infinity},
        {std::numeric_limits<double>::max(), LESS, infinity},
        {nan, UNORDERED, nan},
        {nan, UNORDERED, 0.0},
        {nan, UNORDERED, infinity},
        {-infinity, UNORDERED, nan},
    });
}

TEST(Comparison, OfFloatsIsThatOfTheNumbers) {
    expect_relations({
        {1.0f, EQUAL, 1.0f},
        {1.0f, LESS, 1.0000001f},
        {-2.0f, LESS, -1.0f},
        {0.0f, EQUAL, -0.0f},
        {-float_infinity, LESS, float_infinity},
        {float_infinity, EQUAL, float_infinity},
        {float_nan, UNORDERED, float_nan},
        {float_nan, UNORDERED, 0.0f},
        {-float_infinity, UNORDERED, float_nan},
    });
}

TEST(Comparison, OfIntegersIsThatOfTheNumbers) {
    const long long least = std::numeric_limits<long long>::min();
    const long long greatest = std::numeric_limits<long long>::max();
    const unsigned long long unsigned_greatest = std::numeric_limits<unsigned long long>::max();
    expect_relations({
        {7LL, EQUAL, 7LL},
        {-1LL, LESS, 0LL},
        {least, LESS, greatest},
        {greatest - 1, LESS, greatest}, // the same number as doubles
        {least, EQUAL, least},
        {7ULL, EQUAL, 7ULL},
        {0ULL, LESS, unsigned_greatest},
        {1ULL << 63, LESS, unsigned_greatest},
        {(1ULL << 63) - 1, LESS, 1ULL << 63},
        {unsigned_greatest - 1, LESS, unsigned_greatest},
    });
}

// ---- Strings -------------------------------------------------------------------------------

TEST(Comparison, OfStringsGoesByteByByteAndThenByLength) {
    expect_relations({
        {"", EQUAL, ""},
        {"abc", EQUAL, "abc"},
        {"", LESS, "a"},
        {"a", LESS, "ab"},
        {"ab", LESS, "b"},
        {"a", LESS, "b"},
        {"Z", LESS, "a"},
        {"A", LESS, "a"},
        {"10", LESS, "9"},
        {"a ", GREATER, "a"},
        {"\x7F", LESS, "\x80"},
        {"~", LESS, "\xFF"},
        {"\x80", LESS, "\xFF"},
        {"a\x80", GREATER, "az"},
        {"az", LESS, "a\xC3\xA9"},
        {"\xC3\xA9", GREATER, "e\xCC\x81"}, // no normalisation
        {std::string("a\0", 2), GREATER, "a"},
        {std::string("a\0b", 3), LESS, std::string("a\0c", 3)},
        {std::string("a\0z", 3), LESS, "aa"},
        {std::string(1, '\0'), GREATER, ""},
    });
}

// ---- Arrays --------------------------------------------------------------------------------

TEST(Comparison, OfArraysIsLexicographic) {
    expect_relations({
        {Array{}, EQUAL, Array{}},
        {Array{1, 2}, EQUAL, Array{1, 2}},
        {Array{}, LESS, Array{Undefined()}},
        {Array{}, LESS, Array{1}},
        {Array{1, 2}, LESS, Array{1, 3}},
        {Array{1}, LESS, Array{1, 0}},
        {Array{2}, GREATER, Array{1, 5}},
        {Array{1, 9}, LESS, Array{2, 0}},
        {Array{1, 2, 3}, GREATER, Array{1, 2}},
        {Array{2, 1}, GREATER, Array{1, 2}},
        {Array{"a", "b"}, EQUAL, Array{"a", "b"}},
        {Array{"a"}, LESS, Array{"ab"}},
    });
}

TEST(Comparison, OfArraysComparesElementsOfDifferentKindsByKind) {
    expect_relations({
        {Array{Undefined()}, LESS, Array{Null()}},
        {Array{Null()}, LESS, Array{false}},
        {Array{100}, LESS, Array{1.0f}},
        {Array{1}, LESS, Array{1LL}},
        {Array{9}, LESS, Array{"1"}},
        {Array{"z"}, LESS, Array{Value(Array{})}},
        {Array{Value(Array{9})}, LESS, Array{Object{}}},
    });
}

TEST(Comparison, OfArraysSkipsElementsOfWhichNeitherIsLess) {
    expect_relations({
        {Array{nan, 1}, LESS, Array{5, 2}},
        {Array{nan, 2}, GREATER, Array{5, 1}},
        {Array{nan, 1}, UNORDERED, Array{5, 1}},
        {Array{nan}, LESS, Array{5, 0}},
        {Array{Undefined(), 1}, LESS, Array{Undefined(), 2}},
        {Array{Undefined()}, UNORDERED, Array{Undefined()}},
        {Array{Array{nan}, 1}, LESS, Array{Array{nan}, 2}},
    });
}

// ---- Objects -------------------------------------------------------------------------------

TEST(Comparison, OfObjectsIsLexicographicOverPairsOfKeyAndValue) {
    expect_relations({
        {Object{}, EQUAL, Object{}},
        {Object{{"a", 1}, {"b", 2}}, EQUAL, Object{{"b", 2}, {"a", 1}}},
        {Object{}, LESS, Object{{"a", Undefined()}}},
        {Object{{"a", 1}}, LESS, Object{{"b", 0}}},
        {Object{{"a", 1}}, LESS, Object{{"a", 2}}},
        {Object{{"a", 1}}, LESS, Object{{"a", 1}, {"b", 0}}},
        {Object{{"a", 2}}, GREATER, Object{{"a", 1}, {"b", 0}}},
        {Object{{"b", 0}}, GREATER, Object{{"a", 1}, {"c", 2}}},
        {Object{{"a", 9}, {"b", 1}}, LESS, Object{{"a", 9}, {"c", 0}}},
        {Object{{"a", 9}}, LESS, Object{{"ab", 0}}},
        {Object{{"", 9}}, LESS, Object{{"a", 0}}},
        {Object{{"\x7F", 9}}, LESS, Object{{"\x80", 0}}},
        {Object{{std::string("a\0", 2), 0}}, GREATER, Object{{"a", 9}}},
        {Object{{"a", 9}}, LESS, Object{{"a", "0"}}},
    });
}

TEST(Comparison, OfObjectsSkipsValuesOfWhichNeitherIsLess) {
    expect_relations({
        {Object{{"a", nan}}, UNORDERED, Object{{"a", 1}}},
        {Object{{"a", nan}, {"b", 1}}, LESS, Object{{"a", 0}, {"b", 2}}},
        {Object{{"a", nan}, {"b", 9}}, LESS, Object{{"a", 0}, {"c", 0}}},
        {Object{{"a", nan}, {"c", 0}}, GREATER, Object{{"a", 5}, {"b", 9}}},
        {Object{{"a", Undefined()}}, UNORDERED, Object{{"a", Undefined()}}},
        {Object{{"a", Undefined()}}, LESS, Object{{"a", Undefined()}, {"b", Undefined()}}},
    });
}

// ---- Nesting -------------------------------------------------------------------------------

TEST(Comparison, IsStrictAtEveryDepth) {
    const Value value(Object{{"a", Array{1, Object{{"b", Array{"c", Null()}}}}}});
    const Value same(Object{{"a", Array{1, Object{{"b", Array{"c", Null()}}}}}});
    const Value other_kind(Object{{"a", Array{1LL, Object{{"b", Array{"c", Null()}}}}}});
    const Value other_text(Object{{"a", Array{1, Object{{"b", Array{"d", Null()}}}}}});
    expect_relation(value, EQUAL, same);
    expect_relation(value, LESS, other_kind);
    expect_relation(value, LESS, other_text);
}

TEST(Comparison, FindsAValueThatHoldsUndefinedOrNanUnequalToItself) {
    for (const Value& odd : {Value(Undefined()), Value(nan), Value(float_nan)}) {
        const Value holders[] = {
            odd,
            Array{odd},
            Array{1, odd, 2},
            Object{{"a", odd}},
            Array{Value(Array{Value(Array{odd})})},
            Object{{"a", Array{1, Object{{"b", odd}}}}},
        };
        for (const Value& holder : holders) {
            expect_relation(holder, UNORDERED, holder);
            expect_relation(holder, UNORDERED, Value(holder));
        }
    }
}

/// The value within `depth` objects of one member each.
Value within_objects(Value value, std::size_t depth) {
    while (depth-- != 0) {
        Value outer(Object{{"member", Undefined()}});
        outer["member"].swap(value);
        value.swap(outer);
    }
    return value;
}

// With two comparisons per level, one in each direction, time would grow as 2 to the power of the
// depth.
TEST(Comparison, IsLinearInTheDepthOfNesting) {
    for (std::size_t depth : {std::size_t{40}, std::size_t{10000}}) {
        run_with_deep_stack([depth] {
            for (const auto& nested : {test::within_arrays, within_objects}) {
                const Value one = nested(1, depth);
                const Value same = nested(1, depth);
                const Value two = nested(2, depth);
                const Value not_a_number = nested(nan, depth);
                EXPECT_TRUE(one == same);
                EXPECT_FALSE(one < same);
                EXPECT_FALSE(same < one);
                EXPECT_TRUE(one != two);
                EXPECT_TRUE(one < two);
                EXPECT_FALSE(two < one);
                EXPECT_FALSE(not_a_number == not_a_number);
                EXPECT_FALSE(one < not_a_number);
                EXPECT_FALSE(not_a_number < one);
            }
        });
    }
}

TEST(Comparison, IsLinearWhereArraysAndObjectsAlternate) {
    const auto nested = [](Value value) {
        for (int i = 0; i != 20; ++i) {
            value = Value(Array{Object{{"a", nan}, {"b", value}}, 0});
        }
        return value;
    };
    const Value a = nested(1);
    const Value b = nested(2);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_FALSE(a < a);
}

} // namespace
} // namespace foundation::json
