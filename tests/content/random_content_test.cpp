// Compares random values with the content that they were made of.
#include "support/describe.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"
#include "support/tree.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/serializer.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <variant>

namespace foundation::json::test {
namespace {

bool agrees(const Value& value, const Tree& tree);

/// Whether a value has this content, by every function that reads it.
template <class Content>
bool holds_exactly(const Value& value, const Content& expected) {
    const auto* const content = get_if<Content>(&value);
    if (content == nullptr || !holds<Content>(value) || content != &get<Content>(value)) {
        return false;
    }
    if constexpr (std::is_floating_point_v<Content>) {
        return std::memcmp(content, &expected, sizeof expected) == 0;
    } else if constexpr (std::is_empty_v<Content>) {
        return true;
    } else {
        return *content == expected;
    }
}

bool holds_exactly(const Value& value, const Elements& expected) {
    const Array& elements = get<Array>(value);
    bool same = elements.size() == expected.size();
    for (std::size_t i = 0; same && i < expected.size(); ++i) {
        same = agrees(elements[i], expected[i]);
    }
    return same;
}

bool holds_exactly(const Value& value, const Members& expected) {
    const Object& members = get<Object>(value);
    bool same = members.size() == expected.size();
    auto member = members.begin();
    for (std::size_t i = 0; same && i < expected.size(); ++i, ++member) {
        same = member->first == expected[i].name && agrees(member->second, expected[i].value);
    }
    return same;
}

bool agrees(const Value& value, const Tree& tree) {
    const void* const visited =
        visit([](const auto& content) -> const void* { return &content; }, value);
    const void* const place = std::visit(
        [&](const auto& content) -> const void* {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, Elements>) {
                return get_if<Array>(&value);
            } else if constexpr (std::is_same_v<Content, Members>) {
                return get_if<Object>(&value);
            } else {
                return get_if<Content>(&value);
            }
        },
        tree.content);
    return static_cast<std::size_t>(kind_of(value)) == tree.content.index() && visited == place &&
           std::visit([&](const auto& content) { return holds_exactly(value, content); },
                      tree.content);
}

TEST(RandomContent, IsWhatTheValueWasMadeOf) {
    RandomTrees trees(20261121, RandomTrees::Kinds::all);
    for (std::size_t round = 0; round < test_repetitions(); ++round) {
        const Tree tree = trees.tree();
        const Value value = to_value(tree);
        ASSERT_TRUE(agrees(value, tree)) << "round " << round << ": " << test::content_text(value);
        ASSERT_TRUE(agrees(Value(value), tree)) << "a copy, round " << round;
    }
}

} // namespace
} // namespace foundation::json::test
