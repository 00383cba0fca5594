// Copying and assigning values of any depth: from the hundredth level on these operations go
// another way, and nothing may tell where that begins.
#include "support/nested.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

using test::innermost;
using test::nest;
using test::Nested;
using test::Nesting;

constexpr std::size_t depths[] = {1, 99, 100, 101, 102, 103, 104, 150};
constexpr Nesting nestings[] = {Nesting::arrays, Nesting::objects, Nesting::alternating};

/// Calls a check with every nesting and depth.
template <class Check>
void for_each_nesting(Check check) {
    for (const Nesting nesting : nestings) {
        for (const std::size_t depth : depths) {
            SCOPED_TRACE("nesting " + std::to_string(static_cast<int>(nesting)) + ", depth " +
                         std::to_string(depth));
            check(nesting, depth);
        }
    }
}

TEST(Nesting, ACopyHoldsTheSameAtAnyDepth) {
    for_each_nesting([](Nesting nesting, std::size_t depth) {
        const Nested nested = nest(nesting, depth, "innermost");
        const Value copy(nested.value);
        EXPECT_EQ(serialize(copy), nested.text);
        EXPECT_EQ(serialize(nested.value), nested.text);
    });
}

TEST(Nesting, ACopyIsIndependentAtAnyDepth) {
    for_each_nesting([](Nesting nesting, std::size_t depth) {
        const Nested nested = nest(nesting, depth, "innermost");
        Value copy(nested.value);
        innermost(copy, depth) = "changed";
        EXPECT_EQ(serialize(copy), nest(nesting, depth, "changed").text);
        EXPECT_EQ(serialize(nested.value), nested.text);
    });
}

TEST(Nesting, AssigningReplacesWhatIsThereAtAnyDepth) {
    for_each_nesting([](Nesting nesting, std::size_t depth) {
        const Nested source = nest(nesting, depth, "source");
        Value targets[] = {
            Value(),
            "text",
            nest(nesting, depth, "target").value,
            nest(nesting, depth + 3, "deeper").value,
            nest(nesting, depth - 1, "flatter").value,
            nest(Nesting::arrays, depth, "other").value,
        };
        for (Value& target : targets) {
            target = source.value;
            EXPECT_EQ(serialize(target), source.text);
            innermost(target, depth) = "changed";
            EXPECT_EQ(serialize(source.value), source.text);
        }
    });
}

// The levels are counted while an operation is under way, and must be back at none behind it.
TEST(Nesting, WhatCameBeforeIsForgotten) {
    const Nested nested = nest(Nesting::alternating, 150, "innermost");
    const Value flat(std::map<std::string, Value>{{"a", Value(std::vector<Value>{1, "b"})}});
    for (int i = 0; i != 150; ++i) {
        Value copy(nested.value);
        copy = flat;
        EXPECT_EQ(serialize(copy), R"({"a":[1,"b"]})");
    }
    const Value copy(nested.value);
    EXPECT_EQ(serialize(copy), nested.text);
}

} // namespace
} // namespace foundation::json
