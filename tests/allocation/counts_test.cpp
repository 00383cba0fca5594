// How much the operations allocate: what is promised to be cheap is counted here.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/samples.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

const char* const long_text = "a text too long for a string's own storage";

/// An array of so many copies of one element, and no room for another.
Value array_of(std::size_t count, const Value& element) {
    return Array(count, element);
}

TEST(Allocations, OfMovingAreOneContainerForArraysAndObjectsAndNoneForOtherKinds) {
    for (Sample& sample : samples()) {
        const std::size_t container = sample.is_container() ? 1 : 0;
        std::vector<Value> target;
        target.reserve(1);
        EXPECT_EQ(allocations_of([&] { target.emplace_back(std::move(sample.value)); }), container)
            << sample.kind;
        EXPECT_EQ(describe(target[0]), sample.description);
    }
}

TEST(Allocations, OfMovingDoNotDependOnTheContent) {
    Value large = array_of(1000, Array{long_text, long_text});
    Value target;
    EXPECT_EQ(allocations_of([&] { target = std::move(large); }), 1u);
    EXPECT_EQ(target.length(), 1000u);
}

TEST(Allocations, OfMoveAssignmentAreOneContainerWhereTheKindBecomesArrayOrObject) {
    for (const Sample& before : samples()) {
        for (Sample& source : other_samples()) {
            Value target = before.value;
            const std::size_t container =
                source.is_container() && source.kind != before.kind ? 1 : 0;
            EXPECT_EQ(allocations_of([&] { target = std::move(source.value); }), container)
                << before.kind << " from " << source.kind;
        }
    }
}

TEST(Allocations, OfSwapAreNoneBetweenValuesOfTheSameKind) {
    std::vector<Sample> left = samples();
    std::vector<Sample> right = other_samples();
    for (std::size_t kind = 0; kind != left.size(); ++kind) {
        EXPECT_EQ(allocations_of([&] { left[kind].value.swap(right[kind].value); }), 0u)
            << left[kind].kind;
        EXPECT_EQ(describe(left[kind].value), right[kind].description);
    }
}

TEST(Allocations, OfScalarsAndShortTextsAreNone) {
    EXPECT_EQ(allocations_of([] {
                  Value value;
                  value = Null();
                  value = true;
                  value = 1;
                  value = 2.5;
                  value = 2.5f;
                  value = 3LL;
                  value = 4ULL;
                  value = "short";
                  value = Undefined();
              }),
              0u);
}

TEST(Allocations, OfPushAreNoneWhereAnArrayHasRoom) {
    Value array = array_of(4, 1);
    array.push(2); // doubles the storage
    EXPECT_EQ(allocations_of([&] {
                  array.push(3);
                  array.push(4);
                  array.push(5);
              }),
              0u);
}

TEST(Allocations, OfGrowthAreTwoStoragesAndAnEmptyContainerPerContainer) {
    constexpr std::size_t count = 100;
    struct Case {
        Value element;
        std::size_t per_element;
    };
    const Array thousand_texts(1000, Value(long_text));
    const Case cases[] = {
        {1, 0},
        {long_text, 0},
        {Array{}, 1},
        {Array{long_text, long_text}, 1},
        {thousand_texts, 1},
        {Object{{"a", long_text}, {"b", thousand_texts}}, 1},
    };
    for (const Case& c : cases) {
        Value array = array_of(count, c.element);
        EXPECT_EQ(allocations_of([&] { array.push(1); }), 2 + count * c.per_element)
            << kind_of(c.element);
        EXPECT_EQ(array[count - 1], c.element);
    }
}

TEST(Allocations, OfPushingOneByOneGrowWithTheLogarithmOfTheLength) {
    Value array(Array{});
    const std::size_t allocations = allocations_of([&] {
        for (int i = 0; i != 100000; ++i) {
            array.push(i);
        }
    });
    EXPECT_EQ(array.length(), 100000u);
    EXPECT_LE(allocations, 40u);
}

TEST(Allocations, OfTheFallbackAreNone) {
    const Value fallback(array_of(10, long_text));
    for (const Sample& sample : samples()) {
        EXPECT_EQ(allocations_of([&] {
                      const Value& chosen = sample.value || fallback;
                      static_cast<void>(chosen);
                  }),
                  0u)
            << sample.kind;
    }
}

TEST(Allocations, OfComparingAreNone) {
    const std::vector<Sample> left = samples();
    const std::vector<Sample> same = samples();
    const std::vector<Sample> right = other_samples();
    const auto compare = [](const Value& a, const Value& b) {
        return (a == b ? 1 : 0) + (a != b ? 1 : 0) + (a < b ? 1 : 0);
    };
    for (const Sample& a : left) {
        for (const std::vector<Sample>* others : {&same, &right}) {
            for (const Sample& b : *others) {
                EXPECT_EQ(allocations_of([&] { compare(a.value, b.value); }), 0u)
                    << a.kind << " and " << b.kind;
            }
        }
    }
}

TEST(Allocations, OfConversionsAreNoneExceptFromStrings) {
    const Value flag(true);
    const Value number(12.75);
    const Value null{Null()};
    int result = 0;
    EXPECT_EQ(allocations_of([&] {
                  result += static_cast<bool>(flag) ? 1 : 0;
                  result += static_cast<int>(flag);
                  result += static_cast<int>(number);
                  result += static_cast<int>(null);
              }),
              0u);
    EXPECT_EQ(result, 14);
}

TEST(Allocations, OfLookingAtAnArrayAreNone) {
    Value array = array_of(3, long_text);
    const Value key(1);
    EXPECT_EQ(allocations_of([&] {
                  array[0];
                  array[std::size_t{1}];
                  array[key];
                  std::as_const(array)[2];
                  static_cast<void>(array.length());
              }),
              0u);
}

} // namespace
} // namespace foundation::json::test
