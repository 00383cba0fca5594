// Reading documents into own types when memory runs out, and how much memory it takes.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/read_types.hpp"

#include <foundation/json/read.hpp>

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace foundation::json::test {
namespace {

/// All subjects' types but those of numbers, with one text of each that is right and one that is
/// not.
template <class T>
void fail_each_allocation_of(const std::string& text, const ReadOptions& options = {}) {
    SCOPED_TRACE(text);
    struct Operands {
        std::optional<T> object;
        std::string message;
    };
    const auto run = [&](Operands& operands) {
        try {
            operands.object = read<T>(text, options);
        } catch (const std::runtime_error& error) {
            operands.message = error.what();
        }
    };
    Operands expected;
    run(expected);
    const auto content = [](const Operands& operands) {
        return operands.object ? describe(from(*operands.object)) : operands.message;
    };
    const std::size_t failures = fail_each_allocation(
        [] { return Operands{}; }, run,
        [](const Operands& operands) {
            EXPECT_FALSE(operands.object.has_value());
            EXPECT_EQ(operands.message, "");
        },
        [&](const Operands& operands) { EXPECT_EQ(content(operands), content(expected)); });
    EXPECT_GT(failures, 3U);
}

const std::string long_text = "a text too long for a string's own storage";

TEST(AllocationFailures, OfReadingADocumentLeakNothing) {
    fail_each_allocation_of<reads::Node>(
        R"({"new":{"\u0061":["\u0061)" + long_text + R"("]},"numbers":[1,2],"name":")" + long_text +
        R"(","both":[{"n/~":1},["x"]],"children":[{"name":"a","leaves":[{"":")" + long_text +
        R"(","n/~":1}],"flags":{"a name that takes memory":[true,null]}},{"name":"\u0061"}]})");
    fail_each_allocation_of<reads::Containers>(
        R"({"ints":[1],"doubles":[1],"flags":[true],"strings":[")" + long_text +
        R"("],"lists":[[1],[2]],"deque":[1],"list":["a"],"unordered":{"a":1},)"
        R"("pair":[")" +
        long_text + R"(","low"],"array":[1],"object":{"a":1},"value":{"a":[]}})");
}

TEST(AllocationFailures, OfErrorsOfADocumentLeakNothing) {
    fail_each_allocation_of<reads::Node>(R"({"name":"a","children":[{"name":7}]})");
    fail_each_allocation_of<reads::Node>(R"({"name":"a","name":")" + long_text + R"("})");
    fail_each_allocation_of<reads::Node>(R"({"name":"a",)");
}

TEST(AllocationFailures, OfSeveralErrorsOfADocumentLeakNothing) {
    ReadOptions options;
    options.unknown_members = ConvertOptions::UnknownMembers::error;
    for (const std::size_t most : {2U, 20U}) {
        options.max_errors = most;
        fail_each_allocation_of<reads::Node>(
            R"({"nmae":"a","flags":{")" + long_text +
                R"(":[0,1]},"leaves":[{"level":"x","":7}],"numbers":[1,1,"a"],"children":[{},7]})",
            options);
        fail_each_allocation_of<reads::Choices>(
            R"({"number":null,"leaf":{"n/~":"x"},"shapes":[{"type":"circle","radius":null}]})",
            options);
        fail_each_allocation_of<reads::Pointers>(
            R"({"unique":{"n/~":-1},"code":"abc","codes":["a",1],"size":{"width":101}})", options);
    }
}

TEST(AllocationFailures, OfReadingIntoAnObjectLeaveADefaultObject) {
    const std::string first =
        R"({"name":"a","children":[{"name":"b"},{"name":"c"}],"numbers":[1]})";
    const std::string second = R"({"name":")" + long_text + R"(","children":[{"name":")" +
                               long_text +
                               R"(","leaves":[{"n/~":1},{"n/~":2}]},{"name":"c"},{"name":"d"}]})";
    const std::string expected = describe(from(read<reads::Node>(second)));
    const std::string empty = describe(from(reads::Node()));
    const std::string before = describe(from(read<reads::Node>(first)));
    const std::size_t failures = fail_each_allocation(
        [&] { return read<reads::Node>(first); },
        [&](reads::Node& node) { read_into(node, second); },
        [&](const reads::Node& node) {
            // The default object itself takes memory, too.
            const std::string now = describe(from(node));
            EXPECT_TRUE(now == empty || now == before) << now;
        },
        [&](const reads::Node& node) { EXPECT_EQ(describe(from(node)), expected); });
    EXPECT_GT(failures, 3U);
}

TEST(Allocations, OfReadingAreThoseOfTheObject) {
    reads::Leaf leaf;
    EXPECT_EQ(
        allocations_of([&] { leaf = read<reads::Leaf>(R"({"n/~":1,"level":"low","":"x"})"); }), 0U);
    // What is not as the table has it is learned: the class, its addresses and names.
    EXPECT_LE(allocations_of([&] { leaf = read<reads::Leaf>(R"({"new":{"a":[1]},"n/~":1})"); }),
              8U);
    EXPECT_EQ(allocations_of([] { static_cast<void>(read<std::vector<int>>("[1,2,3]")); }), 1U);
    std::vector<std::string> strings{long_text, long_text};
    const std::string text = "[\"" + long_text + "\",\"" + long_text + "\"]";
    EXPECT_EQ(allocations_of([&] { read_into(strings, text); }), 0U);
}

TEST(Allocations, OfReadingDoNotGrowWithWhatIsSkipped) {
    std::string text = R"({"n/~":1)";
    for (int i = 0; i != 20000; ++i) {
        text += ",\"unknown" + std::to_string(i) + "\":[1,{\"a\":2}]";
    }
    text += '}';
    EXPECT_LT(peak_bytes_of([&] { static_cast<void>(read<reads::Leaf>(text)); }), 20000U);
}

} // namespace
} // namespace foundation::json::test
