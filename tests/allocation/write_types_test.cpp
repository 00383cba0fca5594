// Running out of memory while objects are written straight to text.
#include "convert/fleet.hpp"
#include "support/allocation_failures.hpp"

#include <foundation/json/convert.hpp>
#include <foundation/json/write.hpp>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace foundation::json::test {
namespace {

const std::string long_text = "a text too long for a string's own storage";

using Objects =
    std::vector<std::pair<fleet::Cluster, std::unordered_map<std::string, std::variant<int>>>>;

Objects long_objects() {
    const fleet::Cluster cluster{
        long_text, {{long_text, 80, {long_text, "b"}, 0.5}, {}}, {{long_text, {{}}}}};
    return Objects(100, {cluster, {{long_text, 1}, {"\xF0\x9F\x99\x82", 2}, {"\xEF\xBC\xA1", 3}}});
}

TEST(WriteTypesOutOfMemory, MakesNoStringAtAll) {
    for (const WriteOptions& options : {WriteOptions(), WriteOptions::canonical()}) {
        const Objects objects = long_objects();
        const std::string expected = write(objects, options);
        const std::size_t failures =
            fail_each_allocation([] { return std::string("untouched"); },
                                 [&](std::string& text) { text = write(objects, options); },
                                 [&](const std::string& text) { EXPECT_EQ(text, "untouched"); },
                                 [&](const std::string& text) { EXPECT_EQ(text, expected); });
        EXPECT_GE(failures, 10U);
    }
}

TEST(WriteTypesOutOfMemory, ThrowsBadAllocWhereAnErrorCannotBeReported) {
    Objects objects = long_objects();
    objects.back().first.servers.back().load = std::numeric_limits<double>::infinity();
    const std::size_t failures = fail_each_allocation(
        [] { return std::string(); },
        [&](std::string& message) {
            try {
                static_cast<void>(write(objects));
            } catch (const WriteError& error) {
                message = error.pointer();
            }
        },
        [](const std::string& message) { EXPECT_EQ(message, ""); },
        [](const std::string& message) { EXPECT_EQ(message, "/99/0/servers/1/load"); });
    EXPECT_GE(failures, 3U);
}

TEST(Allocations, OfTheTextOfAnObjectAreThatOfTheText) {
    const fleet::Server server{"host", 80, {"a", "b"}, 0.5};
    EXPECT_EQ(allocations_of([&] { static_cast<void>(write(server)); }), 1U);
    const std::vector<int> numbers{1, 2};
    EXPECT_EQ(allocations_of([&] { static_cast<void>(write(numbers)); }), 0U);
}

} // namespace
} // namespace foundation::json::test
