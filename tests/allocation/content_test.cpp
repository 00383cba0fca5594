// Running out of memory while content is read or changed in place.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"

#include <foundation/json/content.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

namespace foundation::json::test {
namespace {

const char long_text[] = "a text that is too long for a string's own storage";

TEST(Content, IsReadWithoutAllocating) {
    Value value(Object{{"list", Array{1, long_text}}, {"number", 7LL}});
    const std::string list = "list";
    const std::string name = "number";
    std::size_t seen = 0;
    EXPECT_EQ(allocations_of([&] {
                  for (const auto& [key, member] : get<Object>(value)) {
                      seen += key.size() + (holds<Array>(member) ? 1 : 0);
                  }
                  seen += get<std::string>(get<Array>(value[list])[1]).size();
                  seen += number<std::size_t>(value[name]);
                  seen += get_if<double>(&value) == nullptr ? 1 : 0;
                  seen += visit([](const auto& content) { return sizeof content; },
                                get<Array>(value[list])[0]);
                  seen += name_of(kind_of(value))[0] == 'J' ? 1 : 0;
              }),
              0u);
    EXPECT_EQ(seen, 11 + 50 + 7 + 1 + 8 + 1u);
}

TEST(Content, TakesOverContainersWithoutAllocating) {
    Array elements{long_text, long_text};
    Object members{{"a", long_text}};
    Value array{Array()};
    Value object{Object()};
    EXPECT_EQ(allocations_of([&] { get<Array>(array) = std::move(elements); }), 0u);
    EXPECT_EQ(allocations_of([&] { get<Object>(object) = std::move(members); }), 0u);
    EXPECT_EQ(array.length(), 2u);
}

/// Reads a value in a way that fails, while each allocation in turn fails. Expects std::bad_alloc
/// or Error and nothing else, and the value as it was.
template <class Error, class Read>
void expect_error_or_no_memory(const Value& sample, const std::string& description, Read read) {
    struct Operands {
        Value value;
        bool rejected;
    };
    const std::size_t failures = fail_each_allocation(
        [&] {
            return Operands{sample, false};
        },
        [&](Operands& o) {
            try {
                read(o.value);
            } catch (const Error&) {
                o.rejected = true;
            }
        },
        [&](const Operands& o) {
            EXPECT_FALSE(o.rejected);
            EXPECT_EQ(describe(o.value), description);
        },
        [&](const Operands& o) {
            EXPECT_TRUE(o.rejected);
            EXPECT_EQ(describe(o.value), description);
        });
    EXPECT_GT(failures, 0u);
}

TEST(ContentOutOfMemory, OfAnotherKindIsAnErrorOrALackOfMemory) {
    expect_error_or_no_memory<std::runtime_error>("x", "JSON string \"x\"",
                                                  [](Value& value) { get<Array>(value); });
    expect_error_or_no_memory<std::runtime_error>(
        Array{1}, "JSON array [1]", [](Value& value) { static_cast<void>(number<int>(value)); });
}

TEST(ContentOutOfMemory, OfANumberThatDoesNotFitIsAnErrorOrALackOfMemory) {
    expect_error_or_no_memory<std::out_of_range>(
        2.5, "JSON number 2.5", [](Value& value) { static_cast<void>(number<int>(value)); });
    expect_error_or_no_memory<std::out_of_range>(
        -1LL, "int64 -1", [](Value& value) { static_cast<void>(number<unsigned>(value)); });
}

/// Changes a value in place while each allocation in turn fails: all or nothing.
template <class Change>
void expect_all_or_nothing(const Value& sample, const std::string& before, const std::string& after,
                           Change change) {
    const std::size_t failures =
        fail_each_allocation([&] { return Value(sample); }, change,
                             [&](const Value& value) { EXPECT_EQ(describe(value), before); },
                             [&](const Value& value) { EXPECT_EQ(describe(value), after); });
    EXPECT_GT(failures, 0u);
}

TEST(ContentOutOfMemory, ThatCannotGrowStaysAsItWas) {
    expect_all_or_nothing(Array{1}, "JSON array [1]", "JSON array [1]",
                          [](Value& value) { get<Array>(value).reserve(10); });
    expect_all_or_nothing(Array{1}, "JSON array [1]", "JSON array [1,2]",
                          [](Value& value) { get<Array>(value).emplace_back(2); });
    expect_all_or_nothing(Object{}, "JSON object {}", "JSON object {\"b\":2}",
                          [](Value& value) { get<Object>(value).emplace("b", 2); });
    expect_all_or_nothing("", "JSON string \"\"",
                          "JSON string \"a text that is too long for a string's own storage\"",
                          [](Value& value) { get<std::string>(value) += long_text; });
}

} // namespace
} // namespace foundation::json::test
