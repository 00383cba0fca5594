// The layout of the public classes is compiled into every caller, so it must not change within a
// version of the binary interface.
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

/// Expects a class to have these measures; a failure is reported at the line of the call.
template <class Class>
void expect_class(std::size_t size, std::size_t alignment, int line = __builtin_LINE()) {
    if (sizeof(Class) != size || alignof(Class) != alignment) {
        ADD_FAILURE_AT(__FILE__, line) << sizeof(Class) << " bytes aligned to " << alignof(Class)
                                       << " instead of " << size << " aligned to " << alignment;
    }
}

#if defined(__LP64__) && defined(__GLIBCXX__) && _GLIBCXX_USE_CXX11_ABI

// The measures that callers on this platform were compiled with, as literal numbers.
TEST(ClassLayout, IsThatOfVersion1) {
    expect_class<Null>(1, 1);
    expect_class<Undefined>(1, 1);
    expect_class<Value>(40, 8);
    expect_class<Value::Or>(16, 8);
    expect_class<Value::OrVisitor>(16, 8);
    expect_class<Value::HasProperty>(32, 8);
    expect_class<Value::push_visitor>(8, 8);
    expect_class<Element>(24, 8);
    expect_class<Property>(80, 8);
    expect_class<Serializer>(1, 1);
    expect_class<ParseResult>(4, 4);
    expect_class<ParserException>(88, 8);
}

#endif

// The measures that follow from the standard library's classes, on every platform.
TEST(ClassLayout, IsThatOfTheMembersOfTheClasses) {
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
    expect_class<Value>(sizeof(HeldByValue), alignof(HeldByValue));
    expect_class<Value::Or>(2 * sizeof(void*), alignof(void*));
    expect_class<Value::OrVisitor>(2 * sizeof(void*), alignof(void*));
    expect_class<Value::HasProperty>(sizeof(Name), alignof(Name));
    expect_class<Value::push_visitor>(sizeof(void*), alignof(void*));
    expect_class<Element>(sizeof(Elements), alignof(Elements));
    expect_class<Property>(sizeof(Members), alignof(Members));
    expect_class<Serializer>(sizeof(bool), alignof(bool));
    expect_class<ParserException>(sizeof(Error), alignof(Error));
}

TEST(ClassLayout, PutsTheMessageOfAnExceptionFirst) {
    const ParserException error("message", EMPTY_INPUT, 0, 1, 1, 0, "text");
    const std::exception* const base = &error;
    EXPECT_EQ(static_cast<const void*>(base), static_cast<const void*>(&error));
}

// A class without virtual functions must get none; one that has them must keep them.
TEST(ClassLayout, HasATableOfVirtualFunctionsInTheExceptionAlone) {
    EXPECT_TRUE(std::is_polymorphic_v<ParserException>);
    EXPECT_FALSE(std::is_polymorphic_v<Value>);
    EXPECT_FALSE(std::is_polymorphic_v<Element>);
    EXPECT_FALSE(std::is_polymorphic_v<Property>);
    EXPECT_FALSE(std::is_polymorphic_v<Serializer>);
}

TEST(ClassLayout, PassesCodesAsNumbersOf32Bits) {
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<ParseResult>, std::int32_t>));
}

} // namespace
