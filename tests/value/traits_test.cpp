// The names and the order of the kinds, and the tags Undefined and Null.
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json {
namespace {

struct Row {
    const char* name;
    int order;
    const char* expected_name;
    int expected_order;
};

template <class T>
Row row(const char* expected_name, int expected_order) {
    return {traits<T>::name, traits<T>::order, expected_name, expected_order};
}

TEST(Traits, GiveEachTypeItsNameAndOrder) {
    const Row rows[] = {
        row<Undefined>("undefined", 0),
        row<Null>("JSON null", 1),
        row<bool>("JSON boolean", 2),
        row<double>("JSON number", 3),
        row<std::string>("JSON string", 4),
        row<std::vector<Value>>("JSON array", 5),
        row<std::map<std::string, Value>>("JSON object", 6),
        row<float>("float", 7),
        row<int>("int", 3),
        row<long long>("int64", 8),
        row<unsigned long long>("uint64", 9),
    };
    for (const Row& r : rows) {
        EXPECT_STREQ(r.name, r.expected_name);
        EXPECT_EQ(r.order, r.expected_order) << r.expected_name;
    }
}

TEST(Traits, AreConstantsThatCanBeReferredTo) {
    static_assert(std::is_same_v<decltype(traits<bool>::name), const char* const>);
    static_assert(std::is_same_v<decltype(traits<bool>::order), const int>);
    static_assert(traits<unsigned long long>::order == 9, "usable in constant expressions");
    const int& order = traits<float>::order;
    EXPECT_EQ(order, 7);
}

template <class T>
void expect_assignments_to_return_their_left_operand() {
    T left;
    T right;
    EXPECT_EQ(&(left = right), &left);
    EXPECT_EQ(&(left = std::move(right)), &left);
}

template <class... T>
void expect_traits_to_be_assignable() {
    (expect_assignments_to_return_their_left_operand<traits<T>>(), ...);
}

TEST(Traits, AreAssignable) {
    expect_traits_to_be_assignable<Undefined, Null, bool, double, std::string, std::vector<Value>,
                                   std::map<std::string, Value>, float, int, long long,
                                   unsigned long long>();
}

TEST(Tags, AreEmptyTypes) {
    static_assert(std::is_empty_v<Null> && std::is_empty_v<Undefined>);
    static_assert(!std::is_convertible_v<Null, Undefined>);
    static_assert(!std::is_convertible_v<Undefined, Null>);
    expect_assignments_to_return_their_left_operand<Null>();
    expect_assignments_to_return_their_left_operand<Undefined>();
}

// If they were noexcept, a failed assignment would fall back to a tag and not to bool.
TEST(Tags, HaveDefaultConstructorsThatAreNotNoexcept) {
    EXPECT_FALSE(std::is_nothrow_default_constructible_v<Null>);
    EXPECT_FALSE(std::is_nothrow_default_constructible_v<Undefined>);
}

} // namespace
} // namespace foundation::json
