/// @file
/// Every text reads back as the value that was written, by a reader that shares no code with the
/// library.
#include "support/json_reader.hpp"
#include "support/random_trees.hpp"
#include "support/tree.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

using test::read_json;
using test::Whitespace;

using Array = std::vector<Value>;
using Object = std::map<std::string, Value>;

void expect_round_trip(const Value& value) {
    const std::string compact = serialize(value);
    const std::string pretty = pretty_print(value);
    EXPECT_TRUE(read_json(compact, Whitespace::forbidden) == value) << compact;
    EXPECT_TRUE(read_json(pretty, Whitespace::allowed) == value) << pretty;
}

// ---- The reader ----------------------------------------------------------------------------

TEST(RoundTripReader, ReadsEveryKindOfJsonText) {
    struct Case {
        const char* text;
        Value value;
    };
    const Case cases[] = {
        {"null", Null()},
        {" true ", true},
        {"false", false},
        {"0", 0.0},
        {"-12.50", -12.5},
        {"1.0E+6", 1e6},
        {"25e-1", 2.5},
        {R"("")", ""},
        {R"("a\"\\\/\b\f\n\r\t\u0041\u00e9\u20AC")", "a\"\\/\b\f\n\r\tA\xC3\xA9\xE2\x82\xAC"},
        {R"("\ud83d\ude00")", "\xF0\x9F\x98\x80"},
        {"[]", Array{}},
        {"[ 1 , [ 2 ] ]", Array{1, Array{2}}},
        {"{}", Object{}},
        {R"({ "a" : 1 , "b" : { "a" : null } })", Object{{"a", 1}, {"b", Object{{"a", Null()}}}}},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_TRUE(read_json(text) == value) << text;
    }
}

TEST(RoundTripReader, RejectsWhatIsNoJson) {
    const char* const texts[] = {
        "",           " ",           "nul",         "tru e",
        "True",       "01",          "-",           "1.",
        ".5",         "+1",          "1E",          "1,5",
        "NaN",        "\"",          "\"\n\"",      "\"\\x\"",
        "[",          "[1,]",        "[1,,2]",      "[1 2]",
        "[1]]",       "1 2",         "{\"a\"}",     "{\"a\":}",
        "{1:2}",      "{a:1}",       "{\"a\":1",    "\"\\u12g4\"",
        "{\"a\":1,}", "\"\\ud83d\"", "\"\\ude00\"", "{\"a\":1,\"a\":1}",
    };
    for (const char* const text : texts) {
        EXPECT_THROW(read_json(text), std::runtime_error) << text;
    }
}

TEST(RoundTripReader, RejectsWhitespaceWhereItMustNotBe) {
    for (const char* const text : {" 1", "1 ", "[ 1]", "[1, 2]", "[\n1]", "{\"a\": 1}", "{ }"}) {
        EXPECT_THROW(read_json(text, Whitespace::forbidden), std::runtime_error) << text;
        EXPECT_NO_THROW(read_json(text, Whitespace::allowed)) << text;
    }
    EXPECT_TRUE(read_json(R"([" "])", Whitespace::forbidden) == Value(Array{" "}));
}

// ---- Values --------------------------------------------------------------------------------

TEST(RoundTrip, KeepsValuesOfEveryShape) {
    const Value values[] = {
        Null(),   true,
        false,    0.1,
        -1e-300,  1e6,
        "",       std::string("a\0b\x1F/\"\\", 7),
        Array{},  Array{Array{}, Object{}, Array{Array{Null()}}},
        Object{}, Object{{"", Object{{"", Array{}}}}, {"/", "/"}, {"\n", 2000000}},
    };
    for (const Value& value : values) {
        expect_round_trip(value);
    }
}

TEST(RoundTrip, KeepsRandomValues) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees trees(seed, test::RandomTrees::Kinds::readable);
    for (int i = 0; i < 10000 && !HasFailure(); ++i) {
        expect_round_trip(to_value(trees.tree(6)));
    }
}

TEST(RoundTrip, KeepsTheExactBitsOfRandomDoubles) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees numbers(seed, test::RandomTrees::Kinds::readable);
    for (int i = 0; i < 1000 && !HasFailure(); ++i) {
        Array array;
        for (int count = 0; count < 100; ++count) {
            array.push_back(numbers.number<double>());
        }
        expect_round_trip(array);
    }
}

TEST(RoundTrip, GivesTheSameText) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees trees(seed, test::RandomTrees::Kinds::readable);
    for (int i = 0; i < 2000 && !HasFailure(); ++i) {
        const std::string compact = serialize(to_value(trees.tree()));
        EXPECT_EQ(serialize(read_json(compact)), compact);
        const std::string pretty = pretty_print(read_json(compact));
        EXPECT_EQ(pretty_print(read_json(pretty)), pretty);
    }
}

// ---- Documents -----------------------------------------------------------------------------

struct Document {
    std::string name;
    std::string text;
};

/// A document of our own, and those of the folder that the build names, if any.
std::vector<Document> documents() {
    std::vector<Document> result = {{"a small catalogue", R"({
        "name": "Catalogue of caf\u00e9s \ud83d\ude00",
        "url": "http://example.org/a?b=c&d=\"e\"",
        "entries": [
            {"id": 505874924095815681, "open": true, "at": [-65.613616999999977, 43.42027]},
            {"id": 0, "open": false, "at": [], "tags": {}, "note": null, "scale": 1e-7}
        ]
    })"}};
    const std::string folder = FOUNDATION_JSON_CORPUS;
    if (!folder.empty()) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == ".json") {
                std::ifstream file(entry.path(), std::ios::binary);
                result.push_back({entry.path().filename().string(),
                                  std::string(std::istreambuf_iterator<char>(file), {})});
            }
        }
    }
    return result;
}

TEST(RoundTrip, KeepsWholeDocuments) {
    const std::vector<Document> all = documents();
    EXPECT_GE(all.size(), std::string(FOUNDATION_JSON_CORPUS).empty() ? 1u : 2u)
        << "no documents in " FOUNDATION_JSON_CORPUS;
    for (const Document& document : all) {
        const Value value = read_json(document.text);
        EXPECT_TRUE(read_json(serialize(value), Whitespace::forbidden) == value) << document.name;
        EXPECT_TRUE(read_json(pretty_print(value)) == value) << document.name;
    }
}

TEST(RoundTrip, WritesOurOwnDocumentAsExpected) {
    EXPECT_EQ(serialize(read_json(documents().front().text)),
              "{\"entries\":["
              "{\"at\":[-65.613616999999977,43.42027],\"id\":5.0587492409581568E+17,\"open\":true},"
              "{\"at\":[],\"id\":0,\"note\":null,\"open\":false,\"scale\":1E-7,\"tags\":{}}],"
              "\"name\":\"Catalogue of caf\xC3\xA9s \xF0\x9F\x98\x80\","
              "\"url\":\"http:\\/\\/example.org\\/a?b=c&d=\\\"e\\\"\"}");
}

} // namespace
} // namespace foundation::json
