#include "support/allocation_failures.hpp"

#include <foundation/json/builders.hpp>
#include <foundation/json/serializer.hpp>

#include <gtest/gtest.h>

#include <string>

namespace foundation::json::test {
namespace {

/// A document whose text is longer than any small buffer.
struct Operands {
    Value value;
    std::string text;
};

Operands long_document() {
    Value list((Element(1), Element("a string that is longer than a string's own storage")));
    for (int i = 0; i < 200; ++i) {
        list.push((Property("key") = "value"));
    }
    return {list, "untouched"};
}

void expect_untouched(const Operands& operands) {
    EXPECT_EQ(operands.text, "untouched");
    EXPECT_EQ(operands.value.length(), 202u);
}

TEST(SerializationAllocations, SerializeThrowsBadAllocWheneverMemoryRunsOut) {
    const std::size_t failures = fail_each_allocation(
        long_document, [](Operands& o) { o.text = serialize(o.value); }, expect_untouched);
    EXPECT_GE(failures, 1u);
}

TEST(SerializationAllocations, PrettyPrintThrowsBadAllocWheneverMemoryRunsOut) {
    const std::size_t failures = fail_each_allocation(
        long_document, [](Operands& o) { o.text = pretty_print(o.value); }, expect_untouched);
    EXPECT_GE(failures, 1u);
}

} // namespace
} // namespace foundation::json::test
