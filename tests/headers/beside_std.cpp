// The names of the headers beside those of the standard library, both without qualification: calls
// that mean the one or the other compile, and mean what they say.
#include <algorithm>
#include <array>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <variant>
#include <vector>
#if __cplusplus >= 202002L
#include <ranges>
#include <span>
#endif

#include <foundation/json/content.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>

using namespace std;
using namespace foundation::json;

namespace {

template <class Expected, class Actual>
void expect_type(Actual&&) {
    static_assert(is_same_v<Expected, Actual>);
}

} // namespace

void call_the_standard_library(Value& value, vector<Value>& values, vector<int>& numbers);
void call_the_standard_library(Value& value, vector<Value>& values, vector<int>& numbers) {
    Value moved = move(value);
    expect_type<Value>(move(moved));
    vector<Value> target;
    copy(values.begin(), values.end(), back_inserter(target));
    copy(values.data(), values.data() + values.size(), target.data());
    move(values.begin(), values.end(), target.begin());
    move(numbers.begin(), numbers.end(), numbers.begin());
    static_cast<void>(find(values.begin(), values.end(), Value(1)));
    static_cast<void>(find(numbers.begin(), numbers.end(), 1));
    static_cast<void>(remove(numbers.begin(), numbers.end(), 1));
    replace(numbers.begin(), numbers.end(), 1, 2);
    replace(values.begin(), values.end(), Value(1), Value(2));
    static_cast<void>(get<0>(tuple<int>(1)));
    static_cast<void>(get<int>(variant<int>(1)));
    visit([](int) {}, variant<int>(1));
    swap(numbers, numbers);
#if __cplusplus >= 202002L
    erase(numbers, 1);
    erase(values, Value(1));
    ranges::copy(values, target.begin());
    ranges::move(values, target.begin());
#endif
    // A template there and a function here: only a qualified name says which.
    std::set<int> numbers_in_order(numbers.begin(), numbers.end());
    numbers_in_order.insert(1);
}

void call_this_library(Value& value, const Value& other, const string& pointer);
void call_this_library(Value& value, const Value& other, const string& pointer) {
    expect_type<Value*>(find(value, "/a"));
    expect_type<const Value*>(find(other, pointer));
    expect_type<Value&>(foundation::json::set(value, "/a", 1));
    expect_type<Value&>(foundation::json::set(value, pointer, other));
    expect_type<Value&>(foundation::json::set(value, pointer, "text"));
    expect_type<Value&>(foundation::json::set(value, pointer, string("text")));
    expect_type<Value&>(foundation::json::set(value, pointer, Array{}));
    expect_type<Value&>(foundation::json::set(value, pointer, Object{}));
    expect_type<Value&>(foundation::json::set(value, pointer, (Element(1), Element(2))));
    expect_type<Value&>(foundation::json::set(value, pointer, Property("a") = 1));
    expect_type<Value&>(foundation::json::set(value, pointer, other || Value(1)));
    expect_type<Value&>(insert(value, "/a", 1));
    expect_type<Value&>(insert(value, pointer, other));
    expect_type<Value>(erase(value, "/a"));
    expect_type<Value>(erase(value, pointer));
    expect_type<Value&>(move(value, "/a", "/b"));
    expect_type<Value&>(move(value, pointer, pointer));
    expect_type<Value&>(copy(value, "/a", "/b"));
    expect_type<Value&>(copy(value, pointer, pointer));
    expect_type<Value&>(patch(value, other));
    expect_type<Value&>(patch(value, diff(value, other)));
    expect_type<Value&>(patch(value, Array{operation::remove("/a"), operation::add(pointer, 1)}));
    expect_type<Value&>(merge_patch(value, other));
    expect_type<Value&>(merge_patch(value, merge_diff(value, other)));
    expect_type<Value&>(merge_patch(value, Property("a") = Null()));
    expect_type<bool>(equivalent(value, other));
    expect_type<bool>(equivalent(1, 1LL));
}
