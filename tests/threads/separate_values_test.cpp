// Threads that use values of their own; and the text helpers, which keep no state between calls.
#include "support/describe.hpp"
#include "support/threads.hpp"

#include <foundation/json/json.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::json;
using test::run_in_threads;
using Array = std::vector<Value>;
using Object = std::map<std::string, Value>;

constexpr int rounds = 100;

TEST(ValuesOfManyThreads, GrowIndependently) {
    run_in_threads(rounds, [](int thread) {
        Value list = Array{};
        std::string text = "[";
        for (long long number = 0; number < 50; ++number) {
            list.push(1000 * thread + number);
            text += (number == 0 ? "" : ",") + std::to_string(1000 * thread + number);
        }
        EXPECT_EQ(test::content_text(list), text + "]");
    });
}

TEST(ValuesOfManyThreads, AreChangedIndependently) {
    run_in_threads(rounds, [](int thread) {
        const std::string name = "thread " + std::to_string(thread);
        Value object = Object{};
        object["name"] = name;
        object["list"] = Array{name, Null()};
        object["copy"] = Value(object["list"]);
        object["list"][1] = true;
        object["moved"] = std::move(object["copy"]);
        object["name"].swap(object["copy"]);
        EXPECT_EQ(test::content_text(object), "{\"copy\":\"" + name + "\",\"list\":[\"" + name +
                                                  "\",true],\"moved\":[\"" + name +
                                                  "\",null],\"name\":[]}");
    });
}

TEST(ValuesOfManyThreads, AreBuiltByExpressionsIndependently) {
    run_in_threads(rounds, [](int thread) {
        const std::string name = std::to_string(thread);
        const Value value(
            (Property("id") = name, Property("list") = Value((Element(name), Element(Null())))));
        EXPECT_EQ(test::content_text(value),
                  "{\"id\":\"" + name + "\",\"list\":[\"" + name + "\",null]}");
    });
}

// Each thread counts the levels of its own operations; a deep operation in one thread does not
// affect the count in another.
TEST(ValuesOfManyThreads, NestBeyondTheOrdinaryLevelsIndependently) {
    run_in_threads(rounds, [](int thread) {
        const std::size_t levels = 50 + 100 * static_cast<std::size_t>(thread);
        Value nested = Object{};
        for (std::size_t level = 1; level < levels; ++level) {
            Value outer = Array{Null()};
            outer[0].swap(nested);
            nested.swap(outer);
        }
        Value copy;
        copy = nested;
        EXPECT_EQ(test::content_text(copy),
                  std::string(levels - 1, '[') + "{}" + std::string(levels - 1, ']'));
    });
}

TEST(TextHelpersInManyThreads, ConvertUtf16) {
    run_in_threads(rounds, [](int thread) {
        char16_t text[] = {static_cast<char16_t>(u'a' + thread), 0xD83D, 0xDE00, 0xDC00};
        EXPECT_EQ(detail::u16_to_u8(text, 4),
                  std::string(1, static_cast<char>('a' + thread)) + "\xF0\x9F\x98\x80\xEF\xBF\xBD");
    });
}

TEST(TextHelpersInManyThreads, ReadNumbers) {
    run_in_threads(rounds, [](int thread) {
        const std::string text = std::to_string(thread) + ".5e1;";
        EXPECT_EQ(detail::string_to_double(text.c_str()), 10 * thread + 5);
        EXPECT_STREQ(get_parse_result_description(static_cast<ParseResult>(-1)),
                     "Unrecognized error code");
    });
}

} // namespace
