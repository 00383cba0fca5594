/// @file
/// No library: values of std::variant, std::vector, std::map and std::string alone, the simplest
/// that hold JSON values. Their times are those of the standard containers.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_STD_VARIANT_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_STD_VARIANT_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/parse.hpp>

#include <cstddef>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace {

namespace json = foundation::json;

struct Contender {
    struct Value;
    using Elements = std::vector<Value>;
    using Members = std::map<std::string, Value>;
    struct Value {
        std::variant<json::Undefined, json::Null, bool, double, std::string, Elements, Members,
                     float, long long, unsigned long long>
            content;
        bool operator==(const Value& other) const { return content == other.content; }
    };
    using Node = Value;
    static constexpr const char* name = "std::variant";
    static constexpr bool is_this_library = false;

    static Value parse(const std::string& text) {
        json::ParseOptions options;
        options.integers = json::ParseOptions::Integers::as_double;
        return made_of(json::parse(text, options));
    }

    static Value copy(const Value& value) { return value; }
    static bool equal(const Value& a, const Value& b) { return a == b; }

    static Value array() { return {Elements()}; }
    template <class Item>
    static void push(Value& array, const Item& item) {
        if constexpr (std::is_same_v<Item, Value>) {
            std::get<Elements>(array.content).push_back(item);
        } else {
            std::get<Elements>(array.content).emplace_back().content = item;
        }
    }

    static Value object() { return {Members()}; }
    static void insert(Value& object, const std::string& key, int number) {
        std::get<Members>(object.content)[key].content = static_cast<double>(number);
    }
    static int number(const Value& object, const std::string& key) {
        return static_cast<int>(
            std::get<double>(std::get<Members>(object.content).find(key)->second.content));
    }

    static std::size_t size_of_string(const Node& node) {
        return std::get<std::string>(node.content).size();
    }
    static double number(const Node& node) { return std::get<double>(node.content); }

    static std::size_t walk(const Node& node) {
        std::size_t result = 1;
        if (const auto* const elements = std::get_if<Elements>(&node.content)) {
            for (const Node& element : *elements) {
                result += walk(element);
            }
        } else if (const auto* const members = std::get_if<Members>(&node.content)) {
            for (const auto& member : *members) {
                result += walk(member.second);
            }
        } else if (const auto* const text = std::get_if<std::string>(&node.content)) {
            result += text->size();
        }
        return result;
    }

    template <class Leaves>
    static void find_leaves(const Node& node, Leaves& leaves) {
        if (const auto* const elements = std::get_if<Elements>(&node.content)) {
            for (const Node& element : *elements) {
                find_leaves(element, leaves);
            }
        } else if (const auto* const members = std::get_if<Members>(&node.content)) {
            for (const auto& member : *members) {
                find_leaves(member.second, leaves);
            }
        } else if (std::holds_alternative<std::string>(node.content)) {
            leaves.strings.push_back(&node);
        } else if (std::holds_alternative<double>(node.content)) {
            leaves.numbers.push_back(&node);
        }
    }

private:
    static Value made_of(const json::Value& value) {
        return json::visit(
            [](const auto& content) -> Value {
                using Content = std::decay_t<decltype(content)>;
                if constexpr (std::is_same_v<Content, json::Array>) {
                    Elements elements;
                    for (const json::Value& element : content) {
                        elements.push_back(made_of(element));
                    }
                    return {std::move(elements)};
                } else if constexpr (std::is_same_v<Content, json::Object>) {
                    Members members;
                    for (const auto& [key, member] : content) {
                        members.emplace(key, made_of(member));
                    }
                    return {std::move(members)};
                } else {
                    return {content};
                }
            },
            value);
    }
};

} // namespace

#endif
