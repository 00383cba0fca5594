// Appending to an array: what is copied, what stays where it is, how the storage grows.
#include "value/append.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <string>

namespace foundation::json::test {
namespace {

using detail::append;
using testing::ThrowsMessage;

/// An array without storage to spare.
Array full(std::initializer_list<Value> elements) {
    Array result(elements);
    result.shrink_to_fit();
    return result;
}

/// The same array with storage for many more.
Array roomy(std::initializer_list<Value> elements) {
    Array result(elements);
    result.reserve(elements.size() + 100);
    return result;
}

TEST(Append, AppendsCopiesInOrder) {
    const Array source{"a", Array{1}, Null()};
    for (Array elements : {full({0}), roomy({0})}) {
        append(elements, source.data(), source.size());
        EXPECT_EQ(content_text(elements), R"([0,"a",[1],null])");
    }
    EXPECT_EQ(content_text(source), R"(["a",[1],null])");
}

TEST(Append, OfNothingChangesNothing) {
    Array elements = full({1, 2});
    const Value* const place = elements.data();
    append(elements, nullptr, 0);
    EXPECT_EQ(content_text(elements), "[1,2]");
    EXPECT_EQ(elements.data(), place);
    Array empty;
    append(empty, nullptr, 0);
    EXPECT_TRUE(empty.empty());
}

TEST(Append, UsesTheStorageThereIs) {
    Array elements = roomy({1});
    const std::size_t capacity = elements.capacity();
    const Value* const place = elements.data();
    const Value value(2);
    while (elements.size() != capacity) {
        append(elements, &value, 1);
        ASSERT_EQ(elements.data(), place);
    }
    EXPECT_EQ(elements.capacity(), capacity);
    append(elements, &value, 1);
    EXPECT_GT(elements.capacity(), capacity);
}

TEST(Append, GrowsAtOnceToWhatManyValuesNeed) {
    Array elements = full({0});
    const Array many(1000, Value("x"));
    append(elements, many.data(), many.size());
    ASSERT_EQ(elements.size(), 1001u);
    EXPECT_EQ(elements.front(), Value(0));
    EXPECT_EQ(elements.back(), Value("x"));
}

TEST(Append, OfOwnElementsCopiesThemAsTheyWere) {
    Array tight = full({"a", Array{1}, "c"});
    append(tight, tight.data() + 1, 2);
    EXPECT_EQ(content_text(tight), R"(["a",[1],"c",[1],"c"])");

    Array spare = roomy({"a", Array{1}, "c"});
    append(spare, spare.data() + 1, 2);
    EXPECT_EQ(content_text(spare), R"(["a",[1],"c",[1],"c"])");
}

TEST(Append, OfAllOwnElementsDoublesTheArray) {
    Array elements = full({Object{{"a", "b"}}});
    for (std::size_t size = 1; size != 256; size *= 2) {
        append(elements, elements.data(), elements.size());
        ASSERT_EQ(elements.size(), 2 * size);
    }
    for (const Value& element : elements) {
        EXPECT_EQ(content_text(element), R"({"a":"b"})");
    }
}

TEST(Append, OfMoreThanAnArrayCanHoldThrowsAndChangesNothing) {
    Array elements = full({1, "x"});
    const Value* const place = elements.data();
    const std::size_t too_many[] = {elements.max_size() - 1, elements.max_size(),
                                    std::numeric_limits<std::size_t>::max()};
    for (const std::size_t count : too_many) {
        EXPECT_THAT([&] { append(elements, elements.data(), count); },
                    ThrowsMessage<std::length_error>("foundation::json: array too long"))
            << count;
        EXPECT_EQ(content_text(elements), R"([1,"x"])");
        EXPECT_EQ(elements.data(), place);
    }
}

} // namespace
} // namespace foundation::json::test
