/// @file
/// This library, with its parser.
///
/// Every header of this folder defines `Contender`, with the same members, in an unnamed namespace:
/// each is included by one source at a time.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_FOUNDATION_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_FOUNDATION_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>

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

    static Value parse(const std::string& text) { return foundation::json::parse(text); }
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

    using Node = Value;
    static std::size_t size_of_string(const Node& node) {
        return foundation::json::get<std::string>(node).size();
    }
    static double number(const Node& node) { return foundation::json::get<double>(node); }
    template <class Leaves>
    static void find_leaves(const Node& node, Leaves& leaves) {
        using namespace foundation::json;
        switch (kind_of(node)) {
        case Kind::array:
            for (const Node& element : get<Array>(node)) {
                find_leaves(element, leaves);
            }
            break;
        case Kind::object:
            for (const auto& member : get<Object>(node)) {
                find_leaves(member.second, leaves);
            }
            break;
        case Kind::string:
            leaves.strings.push_back(&node);
            break;
        case Kind::number:
            leaves.numbers.push_back(&node);
            break;
        default:
            break;
        }
    }

    static int number(const Value& object, const std::string& key) { return int(object[key]); }
};

} // namespace

#endif
