// Every convertible type, there and back, and the errors of each.
#include "convert/conversion_error.hpp"
#include "convert/fleet.hpp"
#include "support/describe.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"

#include <foundation/json/convert.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace foundation::json {
namespace {

using test::conversion_error;
using test::describe;
using testing::ThrowsMessage;

/// Describes the value of an object, and expects that it converts back to an equal object.
template <class T>
std::string there_and_back(const T& object) {
    const Value value = from(object);
    EXPECT_EQ(to<T>(value), object) << describe(value);
    return describe(value);
}

TEST(Convert, GivesBooleansAndStrings) {
    EXPECT_EQ(there_and_back(true), "JSON boolean true");
    EXPECT_EQ(there_and_back(false), "JSON boolean false");
    EXPECT_EQ(there_and_back(std::string("a\0b", 3)), "JSON string \"a\\u0000b\"");
    EXPECT_EQ(there_and_back(std::string()), "JSON string \"\"");
}

TEST(Convert, GivesDoublesForWhatFitsAnInt) {
    EXPECT_EQ(there_and_back(-7), "JSON number -7");
    EXPECT_EQ(there_and_back(std::numeric_limits<int>::max()), "JSON number 2.147483647E+9");
    EXPECT_EQ(there_and_back(short{-32768}), "JSON number -32768");
    EXPECT_EQ(there_and_back(std::uint16_t{65535}), "JSON number 65535");
    EXPECT_EQ(there_and_back(std::int8_t{-128}), "JSON number -128");
    EXPECT_EQ(there_and_back(std::uint8_t{255}), "JSON number 255");
    EXPECT_EQ(there_and_back(0.5), "JSON number 0.5");
}

TEST(Convert, KeepsAllDigitsOfLargerIntegers) {
    EXPECT_EQ(there_and_back(7U), "uint64 7");
    EXPECT_EQ(there_and_back(7L), "int64 7");
    EXPECT_EQ(there_and_back(std::numeric_limits<long long>::min()), "int64 -9223372036854775808");
    EXPECT_EQ(there_and_back(std::numeric_limits<unsigned long long>::max()),
              "uint64 18446744073709551615");
    EXPECT_EQ(there_and_back(std::size_t{1}), "uint64 1");
}

TEST(Convert, KeepsFloatsAndRoundsLongDoubles) {
    EXPECT_EQ(there_and_back(0.1F), "float 0.1");
    EXPECT_EQ(describe(from(0.25L)), "JSON number 0.25");
    EXPECT_EQ(to<long double>(Value(0.25)), 0.25L);
}

TEST(Convert, ReadsAnyKindOfNumberAsAnyOther) {
    EXPECT_EQ(to<int>(Value(7LL)), 7);
    EXPECT_EQ(to<int>(Value(7ULL)), 7);
    EXPECT_EQ(to<std::uint8_t>(Value(7.0F)), 7);
    EXPECT_EQ(to<double>(Value(7LL)), 7.0);
    EXPECT_EQ(to<float>(Value(0.1)), 0.1F);
}

TEST(Convert, PassesValuesThrough) {
    const Value value = Array{1, Null(), Object{{"a", "b"}}};
    EXPECT_EQ(to<Value>(value), value);
    EXPECT_EQ(from(value), value);
    EXPECT_EQ(to<Array>(value), get<Array>(value));
    EXPECT_EQ(from(get<Array>(value)), value);
    EXPECT_EQ(there_and_back(Object{{"a", Array()}}), "JSON object {\"a\":[]}");
    EXPECT_EQ(describe(to<Value>(Value())), "undefined");
}

TEST(Convert, MakesArraysOfSequences) {
    EXPECT_EQ(there_and_back(std::vector<int>{3, 1, 2}), "JSON array [3,1,2]");
    EXPECT_EQ(there_and_back(std::vector<int>()), "JSON array []");
    EXPECT_EQ(there_and_back(std::deque<std::string>{"a", "b"}), "JSON array [\"a\",\"b\"]");
    EXPECT_EQ(there_and_back(std::list<bool>{true, false}), "JSON array [true,false]");
    EXPECT_EQ(there_and_back(std::vector<bool>{true, false, true}), "JSON array [true,false,true]");
    EXPECT_EQ(there_and_back(std::vector<bool>()), "JSON array []");
    EXPECT_EQ(there_and_back(std::array<bool, 2>{true, false}), "JSON array [true,false]");
    EXPECT_EQ(there_and_back(std::array<int, 0>{}), "JSON array []");
    EXPECT_EQ(there_and_back(std::set<int>{3, 1, 2}), "JSON array [1,2,3]");
    EXPECT_EQ(there_and_back(std::set<int, std::greater<>>{3, 1, 2}), "JSON array [3,2,1]");
}

TEST(Convert, ReadsASetInAnyOrder) {
    const Value numbers = Array{3, 1, 2};
    EXPECT_EQ(to<std::set<int>>(numbers), (std::set<int>{1, 2, 3}));
}

TEST(Convert, MakesObjectsOfMaps) {
    using Numbers = std::map<std::string, int>;
    EXPECT_EQ(there_and_back(Numbers{{"b", 1}, {"", 2}, {"a", 3}}),
              "JSON object {\"\":2,\"a\":3,\"b\":1}");
    EXPECT_EQ(there_and_back(Numbers()), "JSON object {}");
    EXPECT_EQ(there_and_back(std::unordered_map<std::string, int>{{"b", 1}, {"", 2}, {"a", 3}}),
              "JSON object {\"\":2,\"a\":3,\"b\":1}");
    EXPECT_EQ(there_and_back(std::map<std::string, int, std::greater<>>{{"b", 1}, {"a", 3}}),
              "JSON object {\"a\":3,\"b\":1}");
}

TEST(Convert, MakesArraysOfPairsAndTuples) {
    EXPECT_EQ(there_and_back(std::pair{1, std::string("a")}), "JSON array [1,\"a\"]");
    EXPECT_EQ(there_and_back(std::tuple{true, 0.5, std::string("a")}),
              "JSON array [true,0.5,\"a\"]");
    EXPECT_EQ(there_and_back(std::tuple<>()), "JSON array []");
}

TEST(Convert, MakesNullOfAnEmptyOptional) {
    EXPECT_EQ(there_and_back(std::optional<int>()), "JSON null null");
    EXPECT_EQ(there_and_back(std::optional(7)), "JSON number 7");
    EXPECT_EQ(there_and_back(std::vector<std::optional<bool>>{true, std::nullopt}),
              "JSON array [true,null]");
    EXPECT_EQ(to<std::optional<int>>(Value()), std::nullopt);
}

TEST(Convert, MakesStringsOfEnumerators) {
    EXPECT_EQ(there_and_back(fleet::Level::middle), "JSON string \"middle\"");
}

TEST(Convert, WritesTheFirstNameOfAnEnumeratorAndReadsAll) {
    EXPECT_EQ(there_and_back(fleet::Level::high), "JSON string \"high\"");
    EXPECT_EQ(to<fleet::Level>(Value("top")), fleet::Level::high);
}

TEST(Convert, MakesObjectsOfClasses) {
    EXPECT_EQ(there_and_back(fleet::Server{"a", 80, {"x", "y"}, 0.5}),
              R"(JSON object {"host":"a","load":0.5,"port":80,"tags":["x","y"]})");
}

TEST(Convert, TakesTypesThatContainEachOther) {
    const fleet::Cluster cluster{"main",
                                 {{"a", 80, {}, {}}, {"b", 81, {"x"}, 1.0}},
                                 {{"day", {fleet::Level::low, fleet::Level::high}}, {"night", {}}}};
    EXPECT_EQ(
        there_and_back(cluster),
        R"(JSON object {"levels":{"day":["low","high"],"night":[]},"name":"main","servers":)"
        R"([{"host":"a","port":80,"tags":[]},{"host":"b","load":1,"port":81,"tags":["x"]}]})");

    using Deep = std::map<std::string,
                          std::list<std::tuple<std::optional<std::set<std::string>>,
                                               std::array<std::vector<bool>, 2>, fleet::Server>>>;
    EXPECT_EQ(there_and_back(Deep{{"k", {{{{"b", "a"}}, {{{true}, {}}}, {"h", 1, {}, {}}}}}}),
              R"(JSON object {"k":[[["a","b"],[[true],[]],{"host":"h","port":1,"tags":[]}]]})");
}

TEST(Convert, RefusesAnElementThatTheSetHasAlready) {
    const Value numbers = Array{3, 1, 3};
    EXPECT_THAT([&] { to<std::set<int>>(numbers); },
                ThrowsMessage<ConversionError>("at /2: the set has this element already"));
}

/// Takes upper and lower case of a letter for equal.
struct CaseBlind {
    bool operator()(const std::string& a, const std::string& b) const {
        return std::string{static_cast<char>(a.at(0) | 0x20)} <
               std::string{static_cast<char>(b.at(0) | 0x20)};
    }
};

TEST(Convert, RefusesANameThatTheMapHasAlready) {
    const Value headers = Object{{"H", 1}, {"X", 2}, {"h", 3}};
    using Headers = std::map<std::string, int, CaseBlind>;
    EXPECT_THAT([&] { to<Headers>(headers); },
                ThrowsMessage<ConversionError>("at /h: the map has this name already"));
}

TEST(Convert, ChecksLengths) {
    const Value two = Array{1, 2};
    EXPECT_THAT(([&] { to<std::array<int, 3>>(two); }),
                ThrowsMessage<ConversionError>("at the root: the array has length 2, not 3"));
    EXPECT_THAT([&] { to<std::tuple<int>>(two); },
                ThrowsMessage<ConversionError>("at the root: the array has length 2, not 1"));
    EXPECT_THAT(([] { to<std::pair<int, int>>(Value(Array())); }),
                ThrowsMessage<ConversionError>("at the root: the array has length 0, not 2"));
}

/// The messages of the conversion to T for a value of each kind.
template <class T>
std::vector<std::string> refusals() {
    std::vector<std::string> messages;
    for (const Value& value :
         {Value(), Value(Null()), Value(true), Value(1.5), Value("1"), Value(Array()),
          Value(Object()), Value(1.5F), Value(-1LL), Value(1ULL)}) {
        try {
            to<T>(value);
        } catch (const ConversionError& error) {
            EXPECT_EQ(error.pointer(), "");
            messages.emplace_back(error.what());
        }
    }
    return messages;
}

/// The messages for the values above, without those of some types.
std::vector<std::string> wrong_types(const std::string& wanted,
                                     const std::vector<std::string>& accepted) {
    const std::pair<std::string, std::string> values[] = {
        {"undefined", "undefined"},        {"null", "null"},
        {"boolean", "true is a boolean,"}, {"number", "1.5 is a number,"},
        {"string", "\"1\" is a string,"},  {"array", "[] is an array,"},
        {"object", "{} is an object,"},    {"number", "1.5 is a number,"},
        {"number", "-1 is a number,"},     {"number", "1 is a number,"}};
    std::vector<std::string> messages;
    for (const auto& [type, shown] : values) {
        if (std::find(accepted.begin(), accepted.end(), type) == accepted.end()) {
            const std::string is = shown == type ? " is not " : " not ";
            messages.push_back("at the root: " + shown + is + wanted);
        }
    }
    return messages;
}

TEST(Convert, RefusesWrongTypes) {
    EXPECT_EQ(refusals<bool>(), wrong_types("a boolean", {"boolean"}));
    EXPECT_EQ(refusals<double>(), wrong_types("a number", {"number"}));
    EXPECT_EQ(refusals<std::string>(), wrong_types("a string", {"string"}));
    const auto no_array = wrong_types("an array", {"array"});
    EXPECT_EQ(refusals<Array>(), no_array);
    EXPECT_EQ(refusals<std::vector<int>>(), no_array);
    EXPECT_EQ(refusals<std::vector<bool>>(), no_array);
    EXPECT_EQ(refusals<std::deque<int>>(), no_array);
    EXPECT_EQ(refusals<std::list<int>>(), no_array);
    EXPECT_EQ(refusals<std::set<int>>(), no_array);
    EXPECT_EQ((refusals<std::array<int, 0>>()), no_array);
    EXPECT_EQ(refusals<std::tuple<>>(), no_array);
    EXPECT_EQ(refusals<std::vector<Value>>(), no_array);
    const auto no_object = wrong_types("an object", {"object"});
    EXPECT_EQ(refusals<Object>(), no_object);
    EXPECT_EQ((refusals<std::map<std::string, int>>()), no_object);
    EXPECT_EQ((refusals<std::unordered_map<std::string, int>>()), no_object);
    EXPECT_EQ(refusals<Value>(), std::vector<std::string>());
}

/// What the message of a wrong type shows of a value.
std::string shown(const Value& value) {
    const std::string message = conversion_error([&] {
        if (holds<std::string>(value)) {
            to<bool>(value);
        } else {
            to<std::string>(value);
        }
    });
    const std::string before = "at the root: ";
    EXPECT_EQ(message.substr(0, before.size()), before);
    const std::size_t end = message.rfind(" is ");
    return message.substr(before.size(), end - before.size());
}

TEST(Convert, ShowsTheValueOfAWrongType) {
    EXPECT_EQ(shown(Value(0)), "0");
    EXPECT_EQ(shown(Value(-0.0)), "-0");
    EXPECT_EQ(shown(Value(0.1)), "0.1");
    EXPECT_EQ(shown(Value(1e6)), "1000000");
    EXPECT_EQ(shown(Value(1.5e300)), "1.5E+300");
    EXPECT_EQ(shown(Value(-std::numeric_limits<double>::infinity())), "-Inf");
    EXPECT_EQ(shown(Value(std::numeric_limits<float>::quiet_NaN())), "NaN");
    EXPECT_EQ(shown(Value(0.1f)), "0.1");
    EXPECT_EQ(shown(Value(std::numeric_limits<long long>::min())), "-9223372036854775808");
    EXPECT_EQ(shown(Value(std::numeric_limits<unsigned long long>::max())), "18446744073709551615");
    EXPECT_EQ(shown(Value("")), R"("")");
    EXPECT_EQ(shown(Value("a\"\\\n\x7F/")), R"("a\"\\\u000a\u007f/")");
    EXPECT_EQ(shown(Value(std::string("a\0b", 3))), R"("a\u0000b")");
    EXPECT_EQ(shown(Value(Array())), "[]");
    EXPECT_EQ(shown(Value(Object())), "{}");
    EXPECT_EQ(shown(Value(Array{1, "x", true, Null(), Value()})), R"([1,"x",true,null,undefined])");
    EXPECT_EQ(shown(Value(Array{Array(), Object(), Array{1}, Object{{"a", 1}}})),
              "[[],{},[...],{...}]");
    EXPECT_EQ(shown(Value(Object{{"a", 1}, {"b\n", Array{1}}})), R"({"a":1,"b\u000a":[...]})");
}

TEST(Convert, ShowsAtMostFortyBytesOfAValue) {
    const std::string digits = "0123456789012345678901234567890123456789";
    EXPECT_EQ(shown(Value(digits.substr(0, 38))), '"' + digits.substr(0, 38) + '"');
    EXPECT_EQ(shown(Value(digits.substr(0, 39))), '"' + digits.substr(0, 35) + "...\"");
    // Between characters, and not within an escape.
    EXPECT_EQ(shown(Value(digits.substr(0, 33) + "\xC3\xA9\xC3\xA9\xC3\xA9")),
              '"' + digits.substr(0, 33) + "\xC3\xA9...\"");
    EXPECT_EQ(shown(Value(digits.substr(0, 34) + "\xC3\xA9\xC3\xA9\xC3\xA9")),
              '"' + digits.substr(0, 34) + "...\"");
    EXPECT_EQ(shown(Value(digits.substr(0, 32) + "\xF0\x9F\x98\x80\xF0\x9F\x98\x80")),
              '"' + digits.substr(0, 32) + "...\"");
    EXPECT_EQ(shown(Value(digits.substr(0, 30) + "\n" + digits)),
              '"' + digits.substr(0, 30) + "...\"");
    EXPECT_EQ(shown(Value(std::string(100, '\xFF'))), '"' + std::string(35, '\xFF') + "...\"");

    EXPECT_EQ(shown(Value(Array(13, Value(7)))), "[7,7,7,7,7,7,7,7,7,7,7,7,7]");
    EXPECT_EQ(shown(Value(Array(1000000, Value(7)))), "[7,7,7,7,7,7,7,7,7,7,7,7,7,7,7,...]");
    EXPECT_EQ(shown(Value(Array{digits, 1})), "[\"" + digits.substr(0, 29) + "...\",...]");
    EXPECT_EQ(shown(Value(Object{{digits, 1}, {"b", 2}})),
              "{\"" + digits.substr(0, 23) + "...\":1,...}");
    EXPECT_EQ(shown(Value(Object{{"name", digits}})),
              "{\"name\":\"" + digits.substr(0, 26) + "...\"}");
    Object many;
    for (int i = 10; i < 100; ++i) {
        many["a" + std::to_string(i)] = i;
    }
    EXPECT_EQ(shown(Value(many)), R"({"a10":10,"a11":11,"a12":12,...})");
}

TEST(Convert, ShowsNoMoreThanFortyBytesOfAnyValue) {
    const std::uint64_t seed = test::random_seed();
    test::RandomTrees trees(seed, test::RandomTrees::Kinds::all);
    for (std::size_t round = test::test_repetitions(); round > 0 && !testing::Test::HasFailure();
         --round) {
        const Value value = test::to_value(trees.tree());
        const std::string text = shown(value);
        EXPECT_LE(text.size(), 40u) << text << "\nseed " << seed;
    }
}

TEST(Convert, RefusesNumbersThatDoNotFit) {
    EXPECT_THAT([] { to<std::uint16_t>(Value(70000)); },
                ThrowsMessage<ConversionError>("at the root: 70000 is not within 0 to 65535"));
    EXPECT_THAT([] { to<int>(Value(2.5)); },
                ThrowsMessage<ConversionError>("at the root: 2.5 is not a whole number"));
    EXPECT_THAT([] { to<unsigned>(Value(-1LL)); },
                ThrowsMessage<ConversionError>("at the root: -1 is not within 0 to 4294967295"));
    EXPECT_THAT(
        [] {
            to<std::vector<int>>(Value(Array{1, "2"}));
        },
        ThrowsMessage<ConversionError>("at /1: \"2\" is a string, not a number"));
}

TEST(Convert, ListsTheKnownEnumerators) {
    EXPECT_THAT(
        [] { to<fleet::Level>(Value("purple")); },
        ThrowsMessage<ConversionError>(
            "at the root: the enumerator \"purple\" is unknown; known are \"low\", \"middle\", "
            "\"high\", \"top\""));
    EXPECT_THAT([] { to<fleet::Level>(Value("")); },
                ThrowsMessage<ConversionError>(
                    "at the root: the enumerator \"\" is unknown; known are \"low\", \"middle\", "
                    "\"high\", \"top\""));
    EXPECT_THAT([] { to<fleet::Level>(Value(std::string("low\0", 4))); },
                ThrowsMessage<ConversionError>(
                    "at the root: the enumerator \"low\\u0000\" is unknown; known are \"low\", "
                    "\"middle\", \"high\", \"top\""));
    EXPECT_THAT([] { to<fleet::Level>(Value(0)); },
                ThrowsMessage<ConversionError>("at the root: 0 is a number, not a string"));
}

TEST(Convert, RefusesToWriteAnEnumeratorWithoutAName) {
    const std::map<std::string, std::vector<fleet::Level>> levels{
        {"a/b", {fleet::Level::low, static_cast<fleet::Level>(-7)}}};
    EXPECT_THAT(
        [&] { from(levels); },
        ThrowsMessage<ConversionError>(
            "at /a~1b/1: the enumerator -7 has no name; named are \"low\", \"middle\", \"high\", "
            "\"top\""));
}

} // namespace
} // namespace foundation::json
