// visit() with callables of all kinds.
#include "support/describe.hpp"

#include <foundation/json/content.hpp>

#include <foundation/json/serializer.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::json {
namespace {

/// Tells which overload is called, and with what.
struct Tell {
    std::string operator()(Undefined&) const { return "Undefined"; }
    std::string operator()(Null&) const { return "Null"; }
    std::string operator()(bool& flag) const { return flag ? "bool true" : "bool false"; }
    std::string operator()(double& number) const { return "double " + std::to_string(number); }
    std::string operator()(std::string& text) const { return "std::string " + text; }
    std::string operator()(Array& elements) const {
        return "Array of " + std::to_string(elements.size());
    }
    std::string operator()(Object& members) const {
        return "Object of " + std::to_string(members.size());
    }
    std::string operator()(float& number) const { return "float " + std::to_string(number); }
    std::string operator()(long long& number) const {
        return "long long " + std::to_string(number);
    }
    std::string operator()(unsigned long long& number) const {
        return "unsigned long long " + std::to_string(number);
    }

    template <class Constant>
    std::string operator()(const Constant& content) const {
        return "const " + (*this)(const_cast<Constant&>(content));
    }
};

TEST(Visit, CallsWithTheContentOfEachKind) {
    struct Row {
        Value value;
        const char* told;
    };
    Row rows[] = {
        {Undefined(), "Undefined"},
        {Null(), "Null"},
        {true, "bool true"},
        {2.5, "double 2.500000"},
        {"text", "std::string text"},
        {Array{1, 2}, "Array of 2"},
        {Object{{"a", 1}}, "Object of 1"},
        {0.5f, "float 0.500000"},
        {-7LL, "long long -7"},
        {7ULL, "unsigned long long 7"},
    };
    for (Row& row : rows) {
        EXPECT_EQ(visit(Tell(), row.value), row.told);
        EXPECT_EQ(visit(Tell(), std::as_const(row.value)), std::string("const ") + row.told);
    }
}

TEST(Visit, GivesTheContentItself) {
    Value value("text");
    const void* const place = visit([](auto& content) -> const void* { return &content; }, value);
    EXPECT_EQ(place, &get<std::string>(value));

    Value list(Array{1});
    const void* const elements = visit([](auto& content) -> const void* { return &content; }, list);
    EXPECT_EQ(elements, &get<Array>(list));
}

TEST(Visit, ReturnsWhatTheCallableReturns) {
    Value value = 1;
    const auto letter = [](auto&) { return 'c'; };
    const auto nothing = [](auto&) {};
    const auto reference = [&](auto&) -> Value& { return value; };
    static_assert(std::is_same_v<decltype(visit(letter, value)), char>);
    static_assert(std::is_void_v<decltype(visit(nothing, value))>);
    static_assert(std::is_same_v<decltype(visit(reference, value)), Value&>);
    EXPECT_EQ(&visit(reference, value), &value);

    const auto made = visit([](auto&) { return std::make_unique<int>(7); }, value);
    EXPECT_EQ(*made, 7) << "what can only be moved";

    struct Fixed {
        explicit Fixed(int n) : number(n) {}
        Fixed(const Fixed&) = delete;
        int number;
    };
    EXPECT_EQ(visit([](auto&) { return Fixed(8); }, value).number, 8) << "what cannot be moved";
}

TEST(Visit, ForwardsItsCallable) {
    struct Categories {
        std::string operator()(const Value&) & { return "lvalue"; }
        std::string operator()(const Value&) const& { return "const lvalue"; }
        std::string operator()(const Value&) && { return "rvalue"; }
    };
    const Value value = 1;
    Categories callable;
    EXPECT_EQ(visit(callable, value), "lvalue");
    EXPECT_EQ(visit(std::as_const(callable), value), "const lvalue");
    EXPECT_EQ(visit(Categories(), value), "rvalue");
    EXPECT_EQ(visit(std::move(callable), value), "rvalue");
}

TEST(Visit, KeepsTheStateOfItsCallable) {
    int calls = 0;
    auto count = [calls](const auto&) mutable { return ++calls; };
    EXPECT_EQ(visit(count, Value(1)), 1);
    EXPECT_EQ(visit(count, Value("two")), 2);
    std::function<int(const Value&)> any = [&calls](const Value&) { return calls - 1; };
    EXPECT_EQ(visit(any, Value(Null())), -1);
}

TEST(Visit, ThrowsWhatTheCallableThrows) {
    Value value(Array{1});
    EXPECT_THROW(visit([](auto&) { throw std::domain_error("seen"); }, value), std::domain_error);
    EXPECT_EQ(test::content_text(value), "[1]");
}

TEST(Visit, ChangesTheContent) {
    Value value(Array{"a", 1, 2.5f});
    for (Value& element : get<Array>(value)) {
        visit(
            [](auto& content) {
                if constexpr (std::is_same_v<decltype(content), std::string&>) {
                    content += "!";
                } else if constexpr (std::is_floating_point_v<
                                         std::remove_reference_t<decltype(content)>>) {
                    content += 1;
                }
            },
            element);
    }
    EXPECT_EQ(test::content_text(value), "[\"a!\",2,3.5]");
}

TEST(Visit, TakesATemporaryIfTheResultDoesNotReferToItsContent) {
    const auto size = [](const auto& content) {
        if constexpr (std::is_same_v<decltype(content), const std::string&>) {
            return content.size();
        } else {
            return std::size_t{0};
        }
    };
    EXPECT_EQ(visit(size, Value("four")), 4u);
    visit([](const auto&) {}, Value(1));
}

/// The length of a text; an error for any other content.
struct LengthOfText {
    std::size_t operator()(const std::string& text) const { return text.size(); }
    template <class Other>
    [[noreturn]] std::size_t operator()(const Other&) const {
        throw std::domain_error("no text");
    }
};

TEST(Visit, NeedsNoResultFromCallablesThatDoNotReturn) {
    EXPECT_EQ(visit(LengthOfText(), Value("four")), 4u);
    EXPECT_THROW(visit(LengthOfText(), Value(4)), std::domain_error);
}

} // namespace
} // namespace foundation::json
