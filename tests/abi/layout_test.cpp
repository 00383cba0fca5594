// The layout of the public classes is compiled into every caller, so it stays as it is as long as
// the library keeps the version of its interface.
#include <foundation/json/json.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <map>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace foundation::json;

struct Layout {
    const char* name;
    std::size_t size;
    std::size_t alignment;
    std::size_t expected_size;
    std::size_t expected_alignment;
};

template <class Class>
Layout layout(const char* name, std::size_t expected_size, std::size_t expected_alignment) {
    return {name, sizeof(Class), alignof(Class), expected_size, expected_alignment};
}

void expect(const std::vector<Layout>& layouts) {
    for (const Layout& layout : layouts) {
        EXPECT_EQ(layout.size, layout.expected_size) << layout.name;
        EXPECT_EQ(layout.alignment, layout.expected_alignment) << layout.name;
    }
}

#if defined(__LP64__) && defined(__GLIBCXX__) && _GLIBCXX_USE_CXX11_ABI

// What callers on this platform were built with, number by number.
TEST(Layout, IsThatOfVersion1) {
    expect({
        layout<Null>("Null", 1, 1),
        layout<Undefined>("Undefined", 1, 1),
        layout<Value>("Value", 40, 8),
        layout<Value::Or>("Value::Or", 16, 8),
        layout<Value::OrVisitor>("Value::OrVisitor", 16, 8),
        layout<Value::HasProperty>("Value::HasProperty", 32, 8),
        layout<Value::push_visitor>("Value::push_visitor", 8, 8),
        layout<Element>("Element", 24, 8),
        layout<Property>("Property", 80, 8),
        layout<Serializer>("Serializer", 1, 1),
        layout<ParseResult>("ParseResult", 4, 4),
        layout<ParserException>("ParserException", 88, 8),
    });
}

#endif

// As it follows from the standard library's own classes, on every platform.
TEST(Layout, IsThatOfWhatTheClassesHold) {
    struct HeldByProperty {
        std::map<std::string, Value> members;
        std::string name;
    };
    struct HeldByParserException : std::runtime_error {
        std::int32_t parse_result;
        std::size_t numbers[4];
        std::string quoted_text;
    };
    struct HeldByValue {
        int kind;
        union Content {
            double number;
            long long integer;
            void* container;
            std::aligned_storage_t<sizeof(std::string), alignof(std::string)> text;
        } content;
    };
    using Members = HeldByProperty;
    using Error = HeldByParserException;
    using Name = std::string;
    using Elements = std::vector<Value>;
    expect({
        layout<Value>("Value", sizeof(HeldByValue), alignof(HeldByValue)),
        layout<Value::Or>("Value::Or", 2 * sizeof(void*), alignof(void*)),
        layout<Value::OrVisitor>("Value::OrVisitor", 2 * sizeof(void*), alignof(void*)),
        layout<Value::HasProperty>("Value::HasProperty", sizeof(Name), alignof(Name)),
        layout<Value::push_visitor>("Value::push_visitor", sizeof(void*), alignof(void*)),
        layout<Element>("Element", sizeof(Elements), alignof(Elements)),
        layout<Property>("Property", sizeof(Members), alignof(Members)),
        layout<Serializer>("Serializer", sizeof(bool), alignof(bool)),
        layout<ParserException>("ParserException", sizeof(Error), alignof(Error)),
    });
}

TEST(Layout, PutsTheMessageOfAnExceptionFirst) {
    const ParserException error("message", EMPTY_INPUT, 0, 1, 1, 0, "text");
    const std::exception* const base = &error;
    EXPECT_EQ(static_cast<const void*>(base), static_cast<const void*>(&error));
}

// A class without virtual functions must get none; one that has them must keep them.
TEST(Layout, HasATableOfVirtualFunctionsInTheExceptionAlone) {
    EXPECT_TRUE(std::is_polymorphic_v<ParserException>);
    EXPECT_FALSE(std::is_polymorphic_v<Value>);
    EXPECT_FALSE(std::is_polymorphic_v<Element>);
    EXPECT_FALSE(std::is_polymorphic_v<Property>);
    EXPECT_FALSE(std::is_polymorphic_v<Serializer>);
}

TEST(Layout, PassesCodesAsNumbersOf32Bits) {
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<ParseResult>, std::int32_t>));
}

} // namespace
