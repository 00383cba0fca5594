/// @file
/// This library, read with the reader of examples/json_format: every number is a double.
///
/// Every header of this folder defines `Contender`, with the same members, in an unnamed namespace:
/// each is included by one source at a time.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_FOUNDATION_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_FOUNDATION_HPP

#include "reader.hpp"

#include <foundation/json/json.hpp>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace {

struct Contender {
    using Value = foundation::json::Value;
    using Text = std::string;
    static constexpr const char* name = "foundation::json";
    /// Whether there is a pretty_print() below.
    static constexpr bool has_pretty_layout = true;
    /// Whether to measure what has no counterpart elsewhere, too.
    static constexpr bool is_this_library = true;

    static Value parse(const std::string& text) { return json_format::read(text); }
    static Text serialize(const Value& value) { return foundation::json::serialize(value); }
    static Text pretty_print(const Value& value) { return foundation::json::pretty_print(value); }
    static void write(std::ostream& stream, const Value& value) {
        foundation::json::Serializer().write(stream, value);
    }

    static Value copy(const Value& value) { return value; }
    static bool equal(const Value& a, const Value& b) { return a == b; }
    static bool less(const Value& a, const Value& b) { return a < b; }

    static Value array() { return std::vector<Value>{}; }
    template <class Item>
    static void push(Value& array, const Item& item) {
        array.push(item);
    }

    static Value object() { return std::map<std::string, Value>{}; }
    static void insert(Value& object, const std::string& key, int number) { object[key] = number; }
    static int number(const Value& object, const std::string& key) { return int(object[key]); }
};

} // namespace

#endif
