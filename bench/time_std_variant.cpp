// Reading from a std::variant, the simplest type that holds one of several: the baseline for the
// values of the libraries.
#include "tasks/reading.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/parse.hpp>

#include <cstddef>
#include <map>
#include <string>
#include <type_traits>
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
    };
    using Node = Value;
    static constexpr const char* name = "std::variant";

    static Value parse(const std::string& text) {
        json::ParseOptions options;
        options.integers = json::ParseOptions::Integers::as_double;
        return made_of(json::parse(text, options));
    }

    static std::size_t size_of_string(const Node& node) {
        return std::get<std::string>(node.content).size();
    }
    static double number(const Node& node) { return std::get<double>(node.content); }

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

const bool added = [] {
    bench::families().push_back({"reading", bench::add_reading<Contender>});
    return true;
}();

} // namespace
