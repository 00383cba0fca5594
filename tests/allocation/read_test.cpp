// Reading documents into own types when memory runs out, and how much memory it takes.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/read_types.hpp"

#include <foundation/json/read.hpp>
#include <foundation/json/write_types.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
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

// ---- Long vectors ----------------------------------------------------------------------------

std::string array_text(const std::string& element, std::size_t count) {
    std::string text = "[" + element;
    for (std::size_t i = 1; i != count; ++i) {
        text += "," + element;
    }
    return text + "]";
}

/// The most memory that is used while a vector of equal elements is read.
template <class Vector>
void check_memory_of(const std::string& element) {
    SCOPED_TRACE(element);
    for (std::size_t count = 600; count < 300000; count += count / 3) {
        SCOPED_TRACE(count);
        const std::string text = array_text(element, count);
        Vector vector;
        const std::size_t peak = peak_bytes_of([&] { vector = read<Vector>(text); });
        ASSERT_EQ(vector.size(), count);
        constexpr std::size_t size = sizeof(typename Vector::value_type);
        constexpr std::size_t before_it_is_long = 32 * 1024;
        EXPECT_LE(peak, count * size * 11 / 10 + before_it_is_long);
        EXPECT_LE(vector.capacity() * size, count * size * 11 / 10 + before_it_is_long / 2);
    }
}

TEST(Memory, OfReadingALongVectorIsALittleMoreThanItsOwn) {
    check_memory_of<std::vector<double>>("1.25");
    check_memory_of<std::vector<int>>("-12");
    check_memory_of<std::vector<long long>>("1234567890123");
    check_memory_of<std::vector<std::string>>(R"("short")");
    check_memory_of<std::vector<std::optional<int>>>("null");
    check_memory_of<std::vector<reads::Leaf>>(R"({"n/~": 1})");
}

template <class Vector>
void check_memory_of_sequence() {
    std::string text = "[0";
    constexpr std::size_t count = 300000;
    for (std::size_t i = 1; i != count; ++i) {
        text += "," + std::to_string(i * i);
    }
    text += ']';
    Vector vector;
    const std::size_t peak = peak_bytes_of([&] { vector = read<Vector>(text); });
    ASSERT_EQ(vector.size(), count);
    EXPECT_LE(peak, count * sizeof(typename Vector::value_type) * 14 / 10);
}

// The first elements are shorter than most.
TEST(Memory, OfReadingALongVectorIsEstimatedAgain) {
    check_memory_of_sequence<std::vector<double>>();
    check_memory_of_sequence<std::vector<unsigned long long>>();
}

template <class Vector>
void check_what_is_kept(const std::string& element) {
    SCOPED_TRACE(element);
    constexpr std::size_t count = 30000;
    const std::string array = array_text(element, count);
    const std::string text = array + std::string(10 * array.size(), ' ');
    Vector vector;
    const std::size_t peak = peak_bytes_of([&] { vector = read<Vector>(text); });
    ASSERT_EQ(vector.size(), count);
    EXPECT_LE(vector.capacity(), count * 3 / 2);
    EXPECT_LE(peak, 13 * count * sizeof(typename Vector::value_type));
}

// The rest of the text is not as expected: no elements, for which there was room.
TEST(Memory, OfALongVectorThatEndsEarlyIsGivenBack) {
    check_what_is_kept<std::vector<double>>("1.25");
    check_what_is_kept<std::vector<long long>>("1234567890123");
    check_what_is_kept<std::vector<std::string>>(R"("short")");
}

template <class Vector>
void check_allocations_of(const std::string& text, std::size_t count, std::size_t own) {
    SCOPED_TRACE(text.substr(0, 20));
    Vector vector;
    const std::size_t allocations = allocations_of([&] { vector = read<Vector>(text); });
    EXPECT_EQ(vector.size(), count);
    EXPECT_LE(allocations, own + 45);
}

// The rest of the text is not as expected: many more elements.
TEST(Allocations, OfALongVectorGrowWithTheLogarithmOfItsLength) {
    constexpr std::size_t few = 4000;
    constexpr std::size_t many = 400000;
    const auto text = [](const std::string& longer, const std::string& shorter) {
        std::string result = array_text(longer, few);
        result.back() = ',';
        return result + array_text(shorter, many).substr(1);
    };
    const std::string zeros(1000, '0');
    check_allocations_of<std::vector<double>>(text("1." + zeros, "2"), few + many, 0);
    check_allocations_of<std::vector<long>>(text("1" + std::string(1000, ' '), "2"), few + many, 0);
    check_allocations_of<std::vector<std::string>>(text('"' + zeros + '"', R"("")"), few + many,
                                                   few);
}

TEST(Memory, OfAVectorThatIsUsedAgainIsKept) {
    constexpr std::size_t much = 10000;
    std::vector<std::vector<double>> vectors(2);
    vectors[1].reserve(much);
    read_into(vectors, '[' + array_text("1.25", 5000) + ',' + array_text("1.25", 100) + ']');
    EXPECT_EQ(vectors[1].size(), 100U);
    EXPECT_GE(vectors[1].capacity(), much);
}

// Room for more than the next element is worth an attempt only.
TEST(AllocationFailures, OfRoomForALongVectorAreNoErrors) {
    const auto check = [](auto expected) {
        using Vector = decltype(expected);
        const std::string text = write(expected);
        bool failed = true;
        std::size_t without_error = 0;
        for (std::size_t n = 1; failed; ++n) {
            Vector vector;
            FailingAllocation failing(n, Failing::once);
            try {
                vector = read<Vector>(text);
                without_error += failing.happened() ? 1 : 0;
                EXPECT_EQ(vector, expected);
            } catch (const std::bad_alloc&) {
                EXPECT_TRUE(vector.empty());
            }
            failed = failing.happened();
        }
        EXPECT_GE(without_error, 1U);
    };
    check(std::vector<double>(5000, 1.25));
    check(std::vector<long long>(5000, 123456789));
}

// Whether or not there is room, and whatever is in the vector before.
TEST(Reading, LongVectorsAreWhatTheTextSays) {
    std::vector<long long> expected;
    for (int i = 0; i != 40000; ++i) {
        expected.push_back(1LL << i % 50);
    }
    const std::string text = write(expected);
    EXPECT_EQ(read<std::vector<long long>>(text), expected);
    for (const std::size_t before : {1U, 2047U, 2048U, 3000U, 39999U, 40000U, 50000U}) {
        std::vector<long long> vector(before, 7);
        read_into(vector, text);
        EXPECT_EQ(vector, expected);
        read_into(vector, "[1]");
        EXPECT_EQ(vector, std::vector<long long>{1});
        EXPECT_GE(vector.capacity(), expected.size()) << "memory is used again";
    }
}

} // namespace
} // namespace foundation::json::test
