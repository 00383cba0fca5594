/// @file
/// The operations of which both the time and the memory are measured.
#ifndef FOUNDATION_JSON_BENCH_TASKS_WORK_HPP
#define FOUNDATION_JSON_BENCH_TASKS_WORK_HPP

#include "documents.hpp"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace bench {

template <class Contender>
auto push_doubles() {
    auto array = Contender::array();
    for (int i = 0; i < 1'000'000; ++i) {
        Contender::push(array, i + 0.5);
    }
    return array;
}

template <class Contender>
auto array_of_strings() {
    auto strings = Contender::array();
    for (std::size_t i = 0; i < 50; ++i) {
        Contender::push(strings, std::string(4 + i % 30, static_cast<char>('a' + i % 26)));
    }
    return strings;
}

template <class Contender>
auto push_arrays(const typename Contender::Value& strings) {
    auto array = Contender::array();
    for (int i = 0; i < 2'000; ++i) {
        Contender::push(array, strings);
    }
    return array;
}

/// Objects of `keys` keys.
struct ObjectSize {
    std::size_t keys;
    const char* name;
};
inline constexpr ObjectSize object_sizes[] = {
    {10, "10 keys"}, {1'000, "1,000 keys"}, {100'000, "100,000 keys"}};

/// `count` different keys, in no order.
inline std::vector<std::string> some_keys(std::size_t count) {
    std::vector<std::string> keys;
    Sequence sequence;
    for (std::size_t i = 0; i < count; ++i) {
        keys.push_back("key " + std::to_string(sequence.next()));
    }
    return keys;
}

template <class Contender>
auto insert_keys(const std::vector<std::string>& keys) {
    auto object = Contender::object();
    for (const std::string& key : keys) {
        Contender::insert(object, key, 1);
    }
    return object;
}

/// Looks up 1,000 keys that exist, from all parts of the object. Returns whether all were found.
template <class Contender>
bool find_keys(const typename Contender::Value& object, const std::vector<std::string>& keys) {
    constexpr int lookups = 1'000;
    const std::size_t step = keys.size() / lookups + 1;
    std::size_t position = 0;
    int found = 0;
    for (int i = 0; i < lookups; ++i) {
        found += Contender::number(object, keys[position]);
        position = (position + step) % keys.size();
    }
    return found == lookups;
}

struct Message {
    const char* name;
    const char* text;
};
inline constexpr Message messages[] = {
    {"a number", "7"},
    {"three members", R"({"id":7,"name":"tea","paid":true})"},
    {"an answer", R"({"id":"a4f1","result":{"items":[{"name":"tea","price":2.5},)"
                  R"({"name":"milk","price":0.75}],"total":3.25},"status":"ok"})"},
};

} // namespace bench

#endif
