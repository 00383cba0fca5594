// Running out of memory in builders: a chain is as it was before the step that failed.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/builders.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>

namespace foundation::json::test {
namespace {

const char* const long_text = "a text too long for a string's own storage";
const std::string long_name = "a name too long for a string's own storage";

/// The array or object that a chain holds so far.
template <class Builder>
std::string text_of(const Builder& chain) {
    return content_text(Value(chain));
}

// ---- Element -------------------------------------------------------------------------------

TEST(ElementOutOfMemory, LeaksNothingWhenItIsBuiltOrNested) {
    const auto none = [] { return std::optional<Element>(); };
    const auto expect_none = [](const auto& chain) { EXPECT_FALSE(chain.has_value()); };

    const Value value(Array{long_text, 2});
    EXPECT_GT(fail_each_allocation(
                  none, [&](auto& chain) { chain.emplace(value); }, expect_none,
                  [&](const auto& chain) {
                      EXPECT_EQ(text_of(*chain), std::string("[[\"") + long_text + "\",2]]");
                  }),
              0u);

    const Element original(long_text);
    EXPECT_GT(fail_each_allocation(
                  none, [&](auto& chain) { chain.emplace(original); }, expect_none,
                  [&](const auto& chain) {
                      EXPECT_EQ(text_of(*chain), std::string("[[\"") + long_text + "\"]]");
                      EXPECT_EQ(text_of(original), std::string("[\"") + long_text + "\"]");
                  }),
              0u);
}

/// Two chains, constructed in place, since copying an Element nests it.
struct Elements {
    Elements() {
        left, Element(Array{2, 3}), Element("the third element of the chain");
        right, Element(Object{{"a", 5}}), Element("the last element of the chain");
    }

    Element left{"the first element of the chain"};
    Element right{4};
};

const char* const left_elements =
    R"(["the first element of the chain",[2,3],"the third element of the chain"])";
const char* const right_elements = R"([4,{"a":5},"the last element of the chain"])";

TEST(ElementOutOfMemory, KeepsBothChainsWhenChainingFails) {
    const std::size_t failures = fail_each_allocation(
        [] { return Elements(); }, [](Elements& e) { e.left, e.right; },
        [](const Elements& e) {
            EXPECT_EQ(text_of(e.left), left_elements);
            EXPECT_EQ(text_of(e.right), right_elements);
        },
        [](const Elements& e) {
            EXPECT_EQ(text_of(e.left),
                      R"(["the first element of the chain",[2,3],"the third element of the chain",)"
                      R"(4,{"a":5},"the last element of the chain"])");
            EXPECT_EQ(text_of(e.right), right_elements);
        });
    EXPECT_GT(failures, 0u);
}

TEST(ElementOutOfMemory, TakesBackWhatWasAppendedInPlace) {
    struct Operands {
        Operands() {
            // Five elements have room for three more.
            left, Element(2), Element(3), Element(4), Element(5);
        }

        Element left{1};
        Elements elements;
    };
    const std::size_t failures = fail_each_allocation(
        [] { return Operands(); }, [](Operands& o) { o.left, o.elements.right; },
        [](const Operands& o) { EXPECT_EQ(text_of(o.left), "[1,2,3,4,5]"); },
        [](const Operands& o) {
            EXPECT_EQ(text_of(o.left), R"([1,2,3,4,5,4,{"a":5},"the last element of the chain"])");
        });
    EXPECT_EQ(failures, 3u) << "the object, its member, and the text";
}

TEST(ElementOutOfMemory, KeepsAChainWhenChainingItToItselfFails) {
    const std::size_t failures = fail_each_allocation(
        [] { return Elements(); }, [](Elements& e) { e.right, e.right; },
        [](const Elements& e) { EXPECT_EQ(text_of(e.right), right_elements); },
        [](const Elements& e) {
            EXPECT_EQ(text_of(e.right), R"([4,{"a":5},"the last element of the chain",)"
                                        R"(4,{"a":5},"the last element of the chain"])");
        });
    EXPECT_GT(failures, 0u);
}

TEST(ElementOutOfMemory, KeepsTheChainWhenConvertingFails) {
    struct Operands {
        Elements elements;
        std::optional<Value> value;
    };
    const std::size_t failures = fail_each_allocation(
        [] { return Operands(); }, [](Operands& o) { o.value.emplace(Value(o.elements.left)); },
        [](const Operands& o) {
            EXPECT_FALSE(o.value.has_value());
            EXPECT_EQ(text_of(o.elements.left), left_elements);
        },
        [](const Operands& o) {
            EXPECT_EQ(content_text(*o.value), left_elements);
            EXPECT_EQ(text_of(o.elements.left), left_elements);
        });
    EXPECT_GT(failures, 0u);
}

// ---- Property ------------------------------------------------------------------------------

TEST(PropertyOutOfMemory, LeaksNothingWhenItIsBuiltOrCopied) {
    const auto none = [] { return std::optional<Property>(); };
    const auto expect_none = [](const auto& term) { EXPECT_FALSE(term.has_value()); };

    EXPECT_EQ(fail_each_allocation(
                  none, [](auto& term) { term.emplace(long_name); }, expect_none,
                  [](const auto& term) { EXPECT_EQ(text_of(*term), "{}"); }),
              1u);

    Property original("a");
    original = Value(Array{long_text});
    const std::string members = std::string("{\"a\":[\"") + long_text + "\"]}";
    EXPECT_GT(fail_each_allocation(
                  none, [&](auto& term) { term.emplace(original); }, expect_none,
                  [&](const auto& term) {
                      EXPECT_EQ(text_of(*term), members);
                      EXPECT_EQ(text_of(original), members);
                  }),
              0u);
}

struct Properties {
    Properties() {
        left = Value("the text of the left member");
        left, (Property("shared") = "the left one is kept");
        right = Value(Array{1, "the text of the right member"});
        right, (Property("shared") = "the right one is not taken over");
        right, (Property(long_name) = Object{{"a", 1}});
    }

    Property left{"left"};
    Property right{"right"};
};

const char* const left_members =
    R"({"left":"the text of the left member","shared":"the left one is kept"})";
const std::string right_members =
    R"({"a name too long for a string's own storage":{"a":1},)"
    R"("right":[1,"the text of the right member"],"shared":"the right one is not taken over"})";

TEST(PropertyOutOfMemory, KeepsTheOldMemberWhenAssigningAValueFails) {
    const Value value(Object{{long_name, Array{1, long_text}}});
    const std::size_t failures = fail_each_allocation(
        [] { return Properties(); }, [&](Properties& p) { p.left = value; },
        [](const Properties& p) { EXPECT_EQ(text_of(p.left), left_members); },
        [](const Properties& p) {
            EXPECT_EQ(text_of(p.left), R"({"left":{"a name too long for a string's own storage":)"
                                       R"([1,"a text too long for a string's own storage"]},)"
                                       R"("shared":"the left one is kept"})");
        });
    EXPECT_GT(failures, 0u);
}

TEST(PropertyOutOfMemory, HasNoMemberWhenAssigningItsFirstValueFails) {
    struct Term {
        Property property{long_name};
    };
    const std::size_t failures = fail_each_allocation(
        [] { return Term(); }, [](Term& t) { t.property = Value(1); },
        [](const Term& t) { EXPECT_EQ(text_of(t.property), "{}"); },
        [](const Term& t) {
            EXPECT_EQ(text_of(t.property), R"({"a name too long for a string's own storage":1})");
        });
    EXPECT_EQ(failures, 2u) << "the node and the name in it";
}

TEST(PropertyOutOfMemory, KeepsBothTermsWhenAssigningAPropertyFails) {
    const std::size_t failures = fail_each_allocation(
        [] { return Properties(); }, [](Properties& p) { p.left = p.right; },
        [](const Properties& p) {
            EXPECT_EQ(text_of(p.left), left_members);
            EXPECT_EQ(text_of(p.right), right_members);
        },
        [](const Properties& p) {
            EXPECT_EQ(text_of(p.left),
                      R"({"left":)" + right_members + R"(,"shared":"the left one is kept"})");
            EXPECT_EQ(text_of(p.right), right_members);
        });
    EXPECT_GT(failures, 0u);
}

TEST(PropertyOutOfMemory, KeepsBothTermsWhenChainingFails) {
    const std::size_t failures = fail_each_allocation(
        [] { return Properties(); }, [](Properties& p) { p.left, p.right; },
        [](const Properties& p) {
            EXPECT_EQ(text_of(p.left), left_members);
            EXPECT_EQ(text_of(p.right), right_members);
        },
        [](const Properties& p) {
            EXPECT_EQ(text_of(p.left), R"({"a name too long for a string's own storage":{"a":1},)"
                                       R"("left":"the text of the left member",)"
                                       R"("right":[1,"the text of the right member"],)"
                                       R"("shared":"the left one is kept"})");
            EXPECT_EQ(text_of(p.right), right_members);
        });
    EXPECT_GT(failures, 0u);
}

TEST(PropertyOutOfMemory, KeepsTheTermWhenConvertingFails) {
    struct Operands {
        Properties properties;
        std::optional<Value> value;
    };
    const std::size_t failures = fail_each_allocation(
        [] { return Operands(); }, [](Operands& o) { o.value.emplace(Value(o.properties.right)); },
        [](const Operands& o) {
            EXPECT_FALSE(o.value.has_value());
            EXPECT_EQ(text_of(o.properties.right), right_members);
        },
        [](const Operands& o) {
            EXPECT_EQ(content_text(*o.value), right_members);
            EXPECT_EQ(text_of(o.properties.right), right_members);
        });
    EXPECT_GT(failures, 0u);
}

} // namespace
} // namespace foundation::json::test
