// Counts the allocations of the operations that are documented to be cheap.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/fixed_stream.hpp"
#include "support/values_of_each_kind.hpp"
#include "support/write_as.hpp"

#include <foundation/json/builders.hpp>
#include <foundation/json/pointer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

const char* const long_text = "a text too long for a string's own storage";

/// An array of `count` copies of one element, without room for another.
Value array_of(std::size_t count, const Value& element) {
    return Array(count, element);
}

TEST(Allocations, OfMovingAreOneContainerForArraysAndObjectsAndNoneForOtherKinds) {
    for (Sample& sample : one_of_each_kind()) {
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
    for (const Sample& before : one_of_each_kind()) {
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
    std::vector<Sample> left = one_of_each_kind();
    std::vector<Sample> right = other_samples();
    for (std::size_t kind = 0; kind != left.size(); ++kind) {
        EXPECT_EQ(allocations_of([&] { left[kind].value.swap(right[kind].value); }), 0u)
            << left[kind].kind;
        EXPECT_EQ(describe(left[kind].value), right[kind].description);
    }
}

TEST(Allocations, OfScalarsAndShortStringsAreNone) {
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
            << kind_name(c.element);
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
    for (const Sample& sample : one_of_each_kind()) {
        EXPECT_EQ(allocations_of([&] {
                      const Value& chosen = sample.value || fallback;
                      static_cast<void>(chosen);
                  }),
                  0u)
            << sample.kind;
    }
}

TEST(Allocations, OfComparingAreNone) {
    const std::vector<Sample> left = one_of_each_kind();
    const std::vector<Sample> same = one_of_each_kind();
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
                  static_cast<void>(std::as_const(array)[2]);
                  static_cast<void>(array.length());
              }),
              0u);
}

// ---- Text ----------------------------------------------------------------------------------

TEST(Allocations, OfFindingByAPointerAreOneForAllLongNames) {
    const Value leaf = Object{{"a name of twenty-six bytes", 7}, {"b", 8}};
    const Value root = Object{{"a name of more than 20 bytes", Array{Object{{"b", leaf}}}}};
    const Value* found = nullptr;
    EXPECT_EQ(allocations_of([&] { found = find(root, "/a name of more than 20 bytes/0/b/b"); }),
              1u);
    EXPECT_EQ(found, &root["a name of more than 20 bytes"][0]["b"]["b"]);
    EXPECT_EQ(allocations_of([&] {
                  found =
                      find(root, "/a name of more than 20 bytes/0/b/a name of twenty-six bytes");
              }),
              1u);
    EXPECT_EQ(found, &root["a name of more than 20 bytes"][0]["b"]["a name of twenty-six bytes"]);
}

TEST(Allocations, OfTheTextOfANumberAreNoneExceptForALongResult) {
    const Value in_place[] = {0,        -1.5, 0.1,   1e-5, 999999.5,           1e6,
                              1e100,    0.1f, -1e6f, 12LL, LLONG_MAX / 100000, 7ULL,
                              HUGE_VAL, -NAN};
    for (const Value& number : in_place) {
        EXPECT_EQ(allocations_of([&] { static_cast<void>(serialize(number)); }), 0u)
            << serialize(number);
        EXPECT_EQ(allocations_of([&] { static_cast<void>(pretty_print(number)); }), 0u)
            << serialize(number);
    }
    const Value longer[] = {1.0 / 3, -DBL_MAX, 5e-324, -FLT_MAX, LLONG_MIN, ULLONG_MAX};
    for (const Value& number : longer) {
        const std::string text = serialize(number);
        const bool fits_in_place = text.size() <= std::string().capacity();
        EXPECT_EQ(allocations_of([&] { static_cast<void>(serialize(number)); }),
                  fits_in_place ? 0u : 1u)
            << text;
    }
}

TEST(Allocations, OfASmallTextAreTheResult) {
    for (const std::vector<Sample>& values : {one_of_each_kind(), other_samples()}) {
        for (const Sample& sample : values) {
            EXPECT_LE(allocations_of([&] { static_cast<void>(serialize(sample.value)); }), 1u)
                << sample.kind;
            EXPECT_LE(allocations_of([&] { static_cast<void>(pretty_print(sample.value)); }), 1u)
                << sample.kind;
        }
    }
    const std::string almost_a_buffer(3000, 'x');
    const Value value(almost_a_buffer);
    EXPECT_EQ(allocations_of([&] { static_cast<void>(serialize(value)); }), 1u);
}

TEST(Allocations, OfWritingOntoAStreamAreNone) {
    FixedStream stream(10000000);
    const Value numbers =
        Array{0.1, 1.0 / 3, 5e-324, -DBL_MAX, 0.1f, FLT_MAX, 1LL, ULLONG_MAX, std::nan("")};
    const Value large = array_of(1000, Array{long_text, "\x01", Object{{"a\x1F", numbers}}});
    for (const Layout layout : {Layout::compact, Layout::pretty}) {
        EXPECT_EQ(allocations_of([&] { write(stream, numbers, layout); }), 0u);
        EXPECT_EQ(allocations_of([&] { write(stream, large, layout); }), 0u);
        for (const Sample& sample : other_samples()) {
            EXPECT_EQ(allocations_of([&] { write(stream, sample.value, layout); }), 0u)
                << sample.kind;
        }
    }
    stream.flags(std::ios_base::hex); // now the reference writes, piece by piece
    EXPECT_EQ(allocations_of([&] { write(stream, large); }), 0u);
    EXPECT_TRUE(stream.good());
}

// Four elements have no room for a fifth. Growing may allocate the larger storage, the copies that
// are appended, and an empty container for each array and object that moves.
TEST(Allocations, OfAChainThatGrowsIncludeNoCopiesOfItsElements) {
    const std::string very_long_text(1000000, 'x');
    Element scalars{1};
    scalars, Element(2), Element(3), Element(4);
    Element texts{very_long_text};
    texts, Element(very_long_text), Element(very_long_text), Element(very_long_text);
    Element containers{Array{long_text, very_long_text}};
    containers, Element(Object{{long_text, very_long_text}}), Element(Array(100, long_text)),
        Element(Array{Array{very_long_text}});
    const Element last(5);
    const std::size_t least = allocations_of([&] { scalars, last; });
    EXPECT_EQ(least, 2u) << "the storage, and that of the copies";
    std::size_t needed = 0;
    const std::size_t peak = peak_bytes_of([&] { needed = allocations_of([&] { texts, last; }); });
    EXPECT_EQ(needed, least);
    EXPECT_LT(peak, 10000u);
    EXPECT_EQ(allocations_of([&] { containers, last; }), least + 4);
    EXPECT_EQ(Value(texts).length(), 5u);
    EXPECT_EQ(serialize(Value(containers)[4]), "5");
}

TEST(Allocations, OfATermThatTakesMembersIncludeNoCopiesOfItsOwn) {
    const std::string very_long_text(1000000, 'x');
    Property term("a");
    term = Value(Array{long_text, very_long_text});
    Property other("b");
    other = 1;
    std::size_t needed = 0;
    const std::size_t peak = peak_bytes_of([&] { needed = allocations_of([&] { term, other; }); });
    EXPECT_EQ(needed, 1u) << "the node of the new member";
    EXPECT_LT(peak, 10000u);
    EXPECT_EQ(serialize(Value(term)["b"]), "1");
}

TEST(PeakMemory, OfALongTextIsLittleMoreThanTheTextAndACopy) {
    const Value item = Array{long_text, 1.0 / 3, "\x01\"", Object{{"name", 1e6}, {"other", true}}};
    const std::size_t item_size = serialize(item).size() + 1;
    for (const std::size_t size : {10000u, 1000000u, 20000000u}) {
        const Value value = array_of(size / item_size, item);
        for (const Layout layout : {Layout::compact, Layout::pretty}) {
            std::string text;
            const std::size_t peak = peak_bytes_of([&] { text = text_of(value, layout); });
            EXPECT_LE(static_cast<double>(peak), 2.2 * static_cast<double>(text.size()))
                << text.size();
            EXPECT_GE(text.size(), size / 10 * 9);
        }
        const Value string(std::string(size, 'x'));
        std::string text;
        const std::size_t peak = peak_bytes_of([&] { text = serialize(string); });
        EXPECT_LE(static_cast<double>(peak), 2.2 * static_cast<double>(text.size())) << size;
    }
}

} // namespace
} // namespace foundation::json::test
