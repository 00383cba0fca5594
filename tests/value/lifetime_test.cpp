// Values of every kind, copied, moved, assigned and destroyed in any order: one by one, and as the
// elements of arrays, where a kind follows upon another in the same place.
#include "support/describe.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json {
namespace {

using test::describe;
using test::one_of_each_kind;
using test::other_samples;
using test::Sample;

/// Values of every kind, with texts that a string holds within itself among them.
std::vector<Sample> all_samples() {
    std::vector<Sample> all = one_of_each_kind();
    std::vector<Sample> others = other_samples();
    std::move(others.begin(), others.end(), std::back_inserter(all));
    all.push_back({"", "JSON string", "JSON string \"\"", "JSON string \"\""});
    all.push_back({"short", "JSON string", "JSON string \"short\"", "JSON string \"\""});
    all.push_back(
        {"fifteen letters", "JSON string", "JSON string \"fifteen letters\"", "JSON string \"\""});
    return all;
}

// ---- The bits of numbers -------------------------------------------------------------------

template <class Number, class Bits>
Value number_of(Bits bits) {
    Number number;
    static_assert(sizeof number == sizeof bits);
    std::memcpy(&number, &bits, sizeof number);
    Value value(Number{});
    std::memcpy(&get<Number>(value), &bits, sizeof number);
    return value;
}

template <class Number, class Bits>
void expect_bits(const Value& value, Bits bits) {
    ASSERT_TRUE(holds<Number>(value));
    EXPECT_EQ(std::memcmp(&get<Number>(value), &bits, sizeof bits), 0) << std::hex << bits;
}

/// Expects the bits after each way that a value goes to another place.
template <class Number, class Bits>
void expect_bits_kept(Bits bits) {
    const Value value = number_of<Number>(bits);
    const Value copy(value);
    expect_bits<Number>(copy, bits);
    Value source(value);
    const Value moved(std::move(source));
    expect_bits<Number>(moved, bits);
    for (const Sample& before : all_samples()) {
        Value target(before.value);
        target = value;
        expect_bits<Number>(target, bits);
        Value other_target(before.value);
        other_target = std::move(target);
        expect_bits<Number>(other_target, bits);
        expect_bits<Number>(target, bits);
    }
    const Value array(Array{value, value});
    const Value array_copy(array);
    expect_bits<Number>(array_copy[1], bits);
    Value pushed(Array{});
    for (int i = 0; i != 5; ++i) {
        pushed.push(value);
    }
    for (int i = 0; i != 5; ++i) {
        expect_bits<Number>(pushed[i], bits);
    }
}

TEST(Lifetime, NumbersKeepEveryBitWhereverTheyGo) {
    const std::uint64_t patterns[] = {
        0,                     // 0
        0x8000000000000000ULL, // -0.0, the least int64
        1,                     // the least subnormal
        0x3FF8000000000000ULL, // 1.5
        0x7FF0000000000000ULL, // infinity
        0x7FF0000000000001ULL, // a signaling NaN
        0xFFF8000000012345ULL, // a quiet NaN with a sign and a payload
        0x7FFFFFFFFFFFFFFFULL, // another, the greatest int64
        0xFFFFFFFFFFFFFFFFULL, // -1, the greatest uint64
    };
    // The floating-point unit of i386 makes a NaN quiet whenever it passes through.
#if defined(__i386__) && !defined(__SSE2_MATH__)
    constexpr bool keeps_signaling = false;
#else
    constexpr bool keeps_signaling = true;
#endif
    for (const std::uint64_t bits : patterns) {
        if (keeps_signaling || bits != 0x7FF0000000000001ULL) {
            expect_bits_kept<double>(bits);
        }
        expect_bits_kept<long long>(bits);
        expect_bits_kept<unsigned long long>(bits);
    }
    for (const std::uint32_t bits : {0u, 0x80000000u, 1u, 0x7F800000u, 0x7F800001u, 0xFFC12345u}) {
        if (keeps_signaling || bits != 0x7F800001u) {
            expect_bits_kept<float>(bits);
        }
    }
}

// ---- A value from within another -----------------------------------------------------------

TEST(Lifetime, AScalarOrStringReplacesTheArrayOrObjectThatHoldsIt) {
    for (const Sample& sample : all_samples()) {
        if (sample.is_container()) {
            continue;
        }
        const Array elements{sample.value, "a text that does not fit into a string", sample.value};
        Value copied(elements);
        copied = std::as_const(copied)[2];
        EXPECT_EQ(describe(copied), sample.description);
        Value member(std::map<std::string, Value>{{"name", elements}});
        member = std::as_const(member)["name"][0];
        EXPECT_EQ(describe(member), sample.description);
        if (!sample.is_string()) {
            Value moved(elements);
            moved = std::move(moved[2]);
            EXPECT_EQ(describe(moved), sample.description);
        }
    }
}

TEST(Lifetime, AnElementIsReplacedByACopyOfItsArray) {
    for (const Sample& sample : all_samples()) {
        Value array(Array{sample.value, 1});
        const std::string before = test::content_text(array);
        array[0] = Value(array);
        EXPECT_EQ(describe(array), "JSON array [" + before + ",1]");
    }
}

// ---- Every kind upon every other -----------------------------------------------------------

TEST(Lifetime, EveryKindReplacesEveryOther) {
    for (const Sample& before : all_samples()) {
        for (const Sample& after : all_samples()) {
            SCOPED_TRACE(before.description + " becomes " + after.description);
            Array elements(3, before.value);
            elements = Array(3, after.value); // moved
            EXPECT_EQ(describe(elements[2]), after.description);
            const Array source(2, before.value);
            elements = source; // in place
            ASSERT_EQ(elements.size(), 2u);
            EXPECT_EQ(describe(elements[1]), before.description);
            elements.insert(elements.begin(), after.value);
            EXPECT_EQ(describe(elements[0]), after.description);
            EXPECT_EQ(describe(elements[2]), before.description);
            elements.erase(elements.begin());
            EXPECT_EQ(describe(elements[0]), before.description);
            Value object(Object{{"a", before.value}});
            object["a"] = after.value;
            object["b"] = before.value;
            EXPECT_EQ(describe(object["a"]), after.description);
            EXPECT_EQ(describe(object["b"]), before.description);
        }
    }
}

/// An array of values beside the descriptions that its elements should have.
class Model {
public:
    explicit Model(std::uint64_t seed) : random_(seed, test::RandomTrees::Kinds::all) {}

    /// Changes both by one operation.
    void change() {
        const Sample& sample = samples_[random_.below(samples_.size())];
        const std::size_t at = random_.below(descriptions_.size() + 1);
        const bool inside = at != descriptions_.size();
        switch (random_.below(9)) {
        case 0:
            value_.push(sample.value);
            descriptions_.push_back(sample.description);
            break;
        case 1:
            elements().insert(elements().begin() + place(at), sample.value);
            descriptions_.insert(descriptions_.begin() + place(at), sample.description);
            break;
        case 2:
            if (inside) {
                elements()[at] = sample.value;
                descriptions_[at] = sample.description;
            }
            break;
        case 3:
            if (inside) {
                elements()[at] = Value(sample.value);
                descriptions_[at] = sample.description;
            }
            break;
        case 4:
            if (inside && random_.once_in(2)) {
                elements().erase(elements().begin() + place(at));
                descriptions_.erase(descriptions_.begin() + place(at));
            }
            break;
        case 5:
            if (inside) {
                value_.push(std::as_const(value_)[at]);
                descriptions_.push_back(std::string(descriptions_[at]));
            }
            break;
        case 6:
            if (inside) {
                const std::size_t other = random_.below(descriptions_.size());
                value_[at].swap(value_[other]);
                descriptions_[at].swap(descriptions_[other]);
            }
            break;
        case 7:
            if (inside) {
                const Value taken(std::move(elements()[at]));
                EXPECT_EQ(describe(taken), descriptions_[at]);
                elements()[at] = taken;
            }
            break;
        default:
            value_ = Value(std::as_const(value_));
            break;
        }
        if (descriptions_.size() > 50) {
            elements().resize(10);
            descriptions_.resize(10);
        }
    }

    void expect_equal() const {
        ASSERT_EQ(value_.length(), descriptions_.size());
        for (std::size_t i = 0; i != descriptions_.size(); ++i) {
            ASSERT_EQ(describe(value_[i]), descriptions_[i]) << i;
        }
    }

private:
    static std::ptrdiff_t place(std::size_t at) { return static_cast<std::ptrdiff_t>(at); }
    Array& elements() { return get<Array>(value_); }

    const std::vector<Sample> samples_ = all_samples();
    test::RandomTrees random_;
    Value value_ = Array{};
    std::vector<std::string> descriptions_;
};

TEST(RandomLifetime, OfElementsIsThatOfAListOfTheirDescriptions) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("FOUNDATION_JSON_TEST_SEED=" + std::to_string(seed));
    Model model(seed);
    for (std::size_t round = 0; round != test::test_repetitions() && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        model.change();
        model.expect_equal();
    }
}

} // namespace
} // namespace foundation::json
