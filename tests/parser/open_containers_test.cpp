// The stack of open containers against a vector of them.
#include "reading/open_containers.hpp"

#include "support/random_trees.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace foundation::json::detail {
namespace {

struct Opened {
    Object* object; ///< null for an array
    Array* array;
    std::size_t first_pending;
};

void expect_innermost(const OpenContainers& open, const std::vector<Opened>& expected) {
    ASSERT_EQ(open.depth(), expected.size());
    ASSERT_EQ(open.empty(), expected.empty());
    if (expected.empty()) {
        return;
    }
    const Opened& innermost = expected.back();
    ASSERT_EQ(open.is_array(), innermost.object == nullptr);
    if (innermost.object != nullptr) {
        ASSERT_EQ(&open.object(), innermost.object);
    } else {
        ASSERT_EQ(&open.array(), innermost.array);
        ASSERT_EQ(open.first_pending(), innermost.first_pending);
    }
}

TEST(OpenContainers, AreThoseThatWereOpenedAndNotClosed) {
    const std::uint64_t seed = test::random_seed();
    std::mt19937_64 random(seed);
    std::vector<Array> arrays(7);
    std::vector<Object> objects(5);
    OpenContainers open;
    std::vector<Opened> expected;
    // By turns mostly opened and mostly closed, so that all depths up to some hundred occur.
    for (std::size_t i = 0; i != 20000 && !::testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(::testing::Message() << "step " << i << ", seed " << seed);
        const bool opens = random() % 8 < (i / 1000 % 2 == 0 ? 6U : 2U);
        if (!opens && !expected.empty()) {
            open.close();
            expected.pop_back();
            expect_innermost(open, expected);
            continue;
        }
        if (random() % 2 == 0) {
            Object& object = objects[random() % objects.size()];
            open.open(object);
            expected.push_back({&object, nullptr, 0});
        } else {
            Array& array = arrays[random() % arrays.size()];
            open.open(array, i);
            expected.push_back({nullptr, &array, i});
        }
        expect_innermost(open, expected);
    }
}

} // namespace
} // namespace foundation::json::detail
