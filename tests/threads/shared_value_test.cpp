// Any number of threads may read one value at once. The tests check what every thread reads; a
// build with the thread sanitizer checks that no thread writes what another reads.
#include "support/describe.hpp"
#include "support/threads.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace {

struct Record {
    double number = 0;
    long long id = 0;
    std::tuple<int, std::string, std::optional<int>, std::vector<int>> array;
    std::map<std::string, std::string> object;
};

} // namespace

template <>
inline constexpr auto foundation::json::members<Record> =
    std::tuple(required("double", &Record::number), required("int64", &Record::id),
               required("array", &Record::array), required("object", &Record::object));

namespace {

using namespace foundation::json;
using test::run_in_threads;
using testing::ThrowsMessage;

constexpr int rounds = 200;

/// Values of every kind, in an object.
Value record() {
    return Object{
        {"array", Array{1, "two", Null(), Array{}}},
        {"double", 1.5},
        {"empty", ""},
        {"float", 0.25f},
        {"int64", -7LL},
        {"no", false},
        {"null", Null()},
        {"object", Object{{"inner", "a text that is too long for a string's own storage"}}},
        {"text", "42 \n\x01"},
        {"uint64", 7ULL},
        {"undefined", Undefined()},
    };
}

constexpr char record_text[] =
    R"({"array":[1,"two",null,[]],"double":1.5,"empty":"","float":0.25,"int64":-7,"no":false,)"
    R"("null":null,"object":{"inner":"a text that is too long for a string's own storage"},)"
    R"("text":"42 \n\u0001","uint64":7,"undefined":})";

/// Calls body(value) again and again, in many threads, on one value; then expects the value to be
/// unchanged.
template <class Body>
void read_in_threads(const Body& body) {
    const Value value = record();
    run_in_threads(rounds, [&](int) { body(value); });
    EXPECT_EQ(test::content_text(value), record_text);
}

TEST(OneValueInManyThreads, IsWrittenByAll) {
    const Value small = Array{true, Object{{"a", 1.5}}};
    read_in_threads([&](const Value& value) {
        EXPECT_EQ(serialize(value), record_text);
        EXPECT_EQ(pretty_print(small), "[\n"
                                       "    true,\n"
                                       "    {\n"
                                       "        \"a\":1.5\n"
                                       "    }\n"
                                       "]");
    });
}

TEST(OneValueInManyThreads, IsWrittenOntoTheStreamOfEach) {
    read_in_threads([](const Value& value) {
        std::ostringstream fast;
        std::ostringstream plain;
        plain << std::hex << std::showbase;
        Serializer serializer;
        serializer.write(fast, value);
        serializer.write(plain, value["uint64"]);
        EXPECT_EQ(fast.str(), record_text);
        EXPECT_EQ(plain.str(), "0x7");
    });
}

TEST(OneValueInManyThreads, GivesItsMembersAndElements) {
    read_in_threads([](const Value& value) {
        EXPECT_EQ(value["double"], Value(1.5));
        EXPECT_EQ(value[std::string("int64")], Value(-7LL));
        EXPECT_EQ(value[Value("uint64")], Value(7ULL));
        EXPECT_EQ(value["array"].length(), std::size_t{4});
        EXPECT_EQ(value["array"][1], Value("two"));
        EXPECT_EQ(value["array"][std::size_t{2}], Value(Null()));
        EXPECT_EQ(value["array"][Value(0)], Value(1));
    });
}

TEST(OneValueInManyThreads, GivesOneUndefinedForMissingMembers) {
    const Value empty = Object{};
    const Value& missing = empty["missing"];
    EXPECT_EQ(test::content_text(missing), "");
    read_in_threads([&](const Value& value) {
        EXPECT_EQ(&value["missing"], &missing);
        EXPECT_EQ(&value[std::string("absent")], &missing);
        EXPECT_EQ(&value[Value("nowhere")], &missing);
        EXPECT_EQ(test::content_text(value["missing"]), "");
        EXPECT_FALSE(value.hasOwnProperty("missing"));
    });
}

TEST(OneValueInManyThreads, FindsProperties) {
    read_in_threads([](const Value& value) {
        EXPECT_TRUE(value.hasOwnProperty("text"));
        EXPECT_TRUE(value.hasOwnProperty("undefined"));
        EXPECT_FALSE(value.hasOwnProperty("tex"));
        EXPECT_FALSE(value["array"].hasOwnProperty("text"));
    });
}

TEST(OneValueInManyThreads, IsComparedByAll) {
    const Value array = Array{1, "two", Null(), Array{}};
    const Value greater = Array{1, "two", true};
    read_in_threads([&](const Value& value) {
        EXPECT_TRUE(value["array"] == array);
        EXPECT_FALSE(value["array"] != array);
        EXPECT_FALSE(value == value) << "it holds an undefined member";
        EXPECT_TRUE(value["array"] < greater);
        EXPECT_FALSE(greater < value["array"]);
        EXPECT_TRUE(value["array"] < value);
    });
}

TEST(OneValueInManyThreads, IsCopiedByAll) {
    read_in_threads([](const Value& value) {
        Value copy(value);
        copy["array"].push("another");
        copy["new"] = value["object"];
        Value assigned;
        assigned = value;
        EXPECT_EQ(test::content_text(assigned), record_text);
        EXPECT_EQ(copy["array"].length(), std::size_t{5});
        EXPECT_EQ(copy["new"], value["object"]);
    });
}

TEST(OneValueInManyThreads, IsCopiedByAllBeyondTheOrdinaryLevels) {
    constexpr std::size_t levels = 300;
    Value nested = Array{};
    for (std::size_t level = 1; level < levels; ++level) {
        nested = Array{nested};
    }
    run_in_threads(20, [&](int) {
        const Value copy(nested);
        EXPECT_EQ(test::content_text(copy), std::string(levels, '[') + std::string(levels, ']'));
        EXPECT_TRUE(copy == nested);
    });
}

TEST(OneValueInManyThreads, IsConvertedByAll) {
    read_in_threads([](const Value& value) {
        EXPECT_EQ(static_cast<int>(value["double"]), 1);
        EXPECT_EQ(static_cast<int>(value["text"]), 42);
        EXPECT_EQ(static_cast<int>(value["missing"]), 0);
        EXPECT_FALSE(static_cast<bool>(value["no"]));
        EXPECT_THROW(static_cast<void>(static_cast<int>(value["array"])), std::runtime_error);
        EXPECT_THROW(static_cast<void>(static_cast<bool>(value["text"])), std::runtime_error);
        EXPECT_THROW(static_cast<void>(value["text"].length()), std::runtime_error);
    });
}

TEST(OneValueInManyThreads, GivesItsContent) {
    read_in_threads([](const Value& value) {
        EXPECT_EQ(kind_of(value), Kind::object);
        EXPECT_EQ(get<Object>(value).size(), std::size_t{11});
        EXPECT_EQ(get<std::string>(value["text"]), "42 \n\x01");
        EXPECT_EQ(get_if<bool>(&value["text"]), nullptr);
        EXPECT_EQ(number<int>(value["uint64"]), 7);
        EXPECT_EQ(visit([](const auto& content) { return sizeof content; }, value["float"]),
                  sizeof(float));
        EXPECT_THROW(static_cast<void>(get<bool>(value["text"])), std::runtime_error);
        EXPECT_THROW(static_cast<void>(number<int>(value["double"])), std::out_of_range);
    });
}

TEST(OneValueInManyThreads, BecomesObjectsOfAClass) {
    read_in_threads([](const Value& value) {
        const auto record = to<Record>(value);
        EXPECT_EQ(record.number, 1.5);
        EXPECT_EQ(record.id, -7);
        EXPECT_EQ(std::get<std::string>(record.array), "two");
        EXPECT_EQ(record.object.at("inner"), "a text that is too long for a string's own storage");
        EXPECT_EQ(to_or(value, "/object/missing", 3), 3);
        EXPECT_THAT(
            ([&] { to<bool>(value, "/array/1"); }),
            ThrowsMessage<ConversionError>("at /array/1: \"two\" is a string, not a boolean"));
    });
}

TEST(OneObjectInManyThreads, BecomesAValueInEach) {
    const auto object = to<Record>(record());
    run_in_threads(rounds, [&](int) {
        const Value value = from(object);
        EXPECT_EQ(get<Array>(value["array"]).size(), std::size_t{4});
        EXPECT_EQ(number<int>(value["int64"]), -7);
        EXPECT_EQ(get<std::string>(value["object"]["inner"]),
                  "a text that is too long for a string's own storage");
    });
}

TEST(OneConversionErrorInManyThreads, IsCopiedByAll) {
    const ConversionError error("/a place/that is too long for a string's own storage", "too long");
    run_in_threads(rounds, [&](int) {
        const ConversionError copy(error); // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_EQ(copy.pointer(), "/a place/that is too long for a string's own storage");
        EXPECT_STREQ(copy.what(),
                     "at /a place/that is too long for a string's own storage: too long");
    });
}

TEST(OneValueInManyThreads, FallsBackForAll) {
    const Value fallback("instead");
    read_in_threads([&](const Value& value) {
        for (const char* const name : {"empty", "missing", "no", "null", "undefined"}) {
            const Value& chosen = value[name] || fallback;
            EXPECT_EQ(&chosen, &fallback) << name;
        }
        for (const char* const name : {"array", "double", "object", "text"}) {
            const Value& chosen = value[name] || fallback;
            EXPECT_EQ(&chosen, &value[name]) << name;
        }
    });
}

TEST(OneExceptionInManyThreads, IsCopiedByAll) {
    const ParserException error("a message that is too long for a string's own storage",
                                EMPTY_INPUT, 5, 2, 3, 1, "the quoted text");
    run_in_threads(rounds, [&](int) {
        const ParserException copy(error);
        EXPECT_STREQ(copy.what(), "a message that is too long for a string's own storage");
        EXPECT_EQ(copy.get_quoted_text(), "the quoted text");
        EXPECT_EQ(copy.get_line_number(), std::size_t{2});
    });
}

} // namespace
