// Copying and assigning values of any depth. From the hundredth level on, other code performs these
// operations; its results must be the same.
#include "support/describe.hpp"
#include "support/nested.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

using test::core_of;
using test::innermost;
using test::nest;
using test::Nested;
using test::Nesting;
using test::within_arrays;

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
        EXPECT_EQ(test::content_text(copy), nested.text);
        EXPECT_EQ(test::content_text(nested.value), nested.text);
    });
}

TEST(Nesting, ACopyIsIndependentAtAnyDepth) {
    for_each_nesting([](Nesting nesting, std::size_t depth) {
        const Nested nested = nest(nesting, depth, "innermost");
        Value copy(nested.value);
        innermost(copy, depth) = "changed";
        EXPECT_EQ(test::content_text(copy), nest(nesting, depth, "changed").text);
        EXPECT_EQ(test::content_text(nested.value), nested.text);
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
            EXPECT_EQ(test::content_text(target), source.text);
            innermost(target, depth) = "changed";
            EXPECT_EQ(test::content_text(source.value), source.text);
        }
    });
}

// ---- What is assigned in place -----------------------------------------------------------------

constexpr std::size_t levels_of_cores[] = {0, 1, 97, 98, 99, 100, 101, 102, 103, 2000};

using Elements = std::vector<Value>;
using Members = std::map<std::string, Value>;

TEST(Nesting, ElementsKeepTheirAddressesWhenAnArrayIsAssigned) {
    const Value target(Elements{1, "two", Elements{3, Elements{4}}, Members{{"a", 5}}});
    const Value source(Elements{"one", Elements{2}, Elements{"three", Elements{}}, Null()});
    for (const std::size_t level : levels_of_cores) {
        SCOPED_TRACE("at level " + std::to_string(level));
        Value outer = within_arrays(target, level);
        Value& core = core_of(outer, level);
        const Value* const element = &core[0];
        const Value* const nested = &core[2][0];
        const Value copy = within_arrays(source, level);
        outer = copy;
        ASSERT_EQ(&core_of(outer, level), &core);
        EXPECT_EQ(test::content_text(core), R"(["one",[2],["three",[]],null])");
        EXPECT_EQ(&core[0], element);
        EXPECT_EQ(&core[3], element + 3);
        EXPECT_EQ(&core[2][0], nested);
    }
}

TEST(Nesting, AShorterArrayIsAssignedInPlaceAndLeavesRoomForALongerOne) {
    const Value target(Elements{1, 2, Elements{3}, 4, 5});
    const Value shorter(Elements{6, "seven"});
    const Value longer(Elements{8, Elements{9}, 10, Members{{"a", 11}}, 12});
    for (const std::size_t level : levels_of_cores) {
        SCOPED_TRACE("at level " + std::to_string(level));
        Value outer = within_arrays(target, level);
        Value& core = core_of(outer, level);
        const Value* const element = &core[0];
        const Value first_copy = within_arrays(shorter, level);
        outer = first_copy;
        ASSERT_EQ(&core_of(outer, level), &core);
        EXPECT_EQ(test::content_text(core), R"([6,"seven"])");
        EXPECT_EQ(&core[0], element);
        const Value second_copy = within_arrays(longer, level);
        outer = second_copy;
        ASSERT_EQ(&core_of(outer, level), &core);
        EXPECT_EQ(test::content_text(core), R"([8,[9],10,{"a":11},12])");
        EXPECT_EQ(&core[0], element);
    }
}

TEST(Nesting, AStringIsAssignedInPlace) {
    const std::string long_text(100, 'x');
    const std::string shorter_text(50, 'y');
    for (const std::size_t level : levels_of_cores) {
        SCOPED_TRACE("at level " + std::to_string(level));
        Value outer = within_arrays(long_text, level);
        const Value* const string = &core_of(outer, level);
        const Value copy = within_arrays(shorter_text, level);
        outer = copy;
        EXPECT_EQ(&core_of(outer, level), string);
        EXPECT_EQ(test::content_text(*string), '"' + shorter_text + '"');
    }
}

/// Assigns one object of five members to another. Returns for each member, in the order of the
/// names, the index of the former member whose memory it has.
std::vector<std::size_t> former_places(std::size_t level) {
    const std::string names[] = {"a", "b", "c", "d", "e"};
    Members before;
    Members after;
    for (const std::string& name : names) {
        before[name] = Elements{1, name};
        after["new " + name] = Members{{name, 2}};
    }
    Value outer = within_arrays(before, level);
    Value& core = core_of(outer, level);
    std::vector<const Value*> addresses;
    for (const std::string& name : names) {
        addresses.push_back(&core[name]);
    }
    const Value copy = within_arrays(after, level);
    outer = copy;
    EXPECT_EQ(test::content_text(core_of(outer, level)), test::content_text(Value(after)));
    std::vector<std::size_t> places;
    for (const std::string& name : names) {
        const auto found =
            std::find(addresses.begin(), addresses.end(), &core_of(outer, level)["new " + name]);
        places.push_back(static_cast<std::size_t>(found - addresses.begin()));
    }
    return places;
}

// The standard library decides how a map reuses the memory of its former members.
TEST(Nesting, MembersStayWhereTheyAreAtAnyDepthWhenAnObjectIsAssigned) {
    const std::vector<std::size_t> places = former_places(0);
    for (const std::size_t level : levels_of_cores) {
        EXPECT_EQ(former_places(level), places) << "at level " << level;
    }
}

// Levels are counted during an operation; afterwards the count must be zero again.
TEST(Nesting, TheCountOfLevelsEndsWithTheOperation) {
    const Nested nested = nest(Nesting::alternating, 150, "innermost");
    const Value flat(std::map<std::string, Value>{{"a", Value(std::vector<Value>{1, "b"})}});
    for (int i = 0; i != 150; ++i) {
        Value copy(nested.value);
        copy = flat;
        EXPECT_EQ(test::content_text(copy), R"({"a":[1,"b"]})");
    }
    const Value copy(nested.value);
    EXPECT_EQ(test::content_text(copy), nested.text);
}

} // namespace
} // namespace foundation::json
