// Merge patches: the examples of RFC 7396, and those that are made of two values.
#include "support/describe.hpp"
#include "support/json_reader.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace foundation::json {
namespace {

using test::content_text;
using test::describe;
using test::read_json;

/// Three documents, the last of which is the first with the second merged into it.
struct Example {
    const char* original;
    const char* patch;
    const char* result;
};

TEST(MergePatch, FollowsTheExamplesOfTheRfc) {
    for (const Example& example : {
             Example{R"({"a":"b"})", R"({"a":"c"})", R"({"a":"c"})"},
             Example{R"({"a":"b"})", R"({"b":"c"})", R"({"a":"b", "b":"c"})"},
             Example{R"({"a":"b"})", R"({"a":null})", R"({})"},
             Example{R"({"a":"b", "b":"c"})", R"({"a":null})", R"({"b":"c"})"},
             Example{R"({"a":["b"]})", R"({"a":"c"})", R"({"a":"c"})"},
             Example{R"({"a":"c"})", R"({"a":["b"]})", R"({"a":["b"]})"},
             Example{R"({"a": {"b": "c"}})", R"({"a": {"b": "d", "c": null}})",
                     R"({"a": {"b": "d"}})"},
             Example{R"({"a": [{"b":"c"}]})", R"({"a": [1]})", R"({"a": [1]})"},
             Example{R"(["a","b"])", R"(["c","d"])", R"(["c","d"])"},
             Example{R"({"a":"b"})", R"(["c"])", R"(["c"])"},
             Example{R"({"a":"foo"})", R"(null)", R"(null)"},
             Example{R"({"a":"foo"})", R"("bar")", R"("bar")"},
             Example{R"({"e":null})", R"({"a":1})", R"({"e":null, "a":1})"},
             Example{R"([1,2])", R"({"a":"b", "c":null})", R"({"a":"b"})"},
             Example{R"({})", R"({"a": {"bb": {"ccc": null}}})", R"({"a": {"bb": {}}})"},
         }) {
        Value root = read_json(example.original);
        EXPECT_EQ(&merge_patch(root, read_json(example.patch)), &root);
        EXPECT_EQ(content_text(root), content_text(read_json(example.result)))
            << example.original << ' ' << example.patch;
        const Value changes = read_json(example.patch);
        Value other = read_json(example.original);
        EXPECT_EQ(merge_patch(other, changes), root) << example.original << ' ' << example.patch;
        EXPECT_EQ(changes, read_json(example.patch));
    }
}

TEST(MergePatch, FollowsTheExampleOfSection3) {
    Value root = read_json(R"({
        "title": "Goodbye!",
        "author": {"givenName": "John", "familyName": "Doe"},
        "tags": ["example", "sample"],
        "content": "This will be unchanged"
    })");
    merge_patch(root, read_json(R"({
        "title": "Hello!",
        "phoneNumber": "+01-123-456-7890",
        "author": {"familyName": null},
        "tags": ["example"]
    })"));
    EXPECT_EQ(content_text(root), content_text(read_json(R"({
        "title": "Hello!",
        "author": {"givenName": "John"},
        "tags": ["example"],
        "content": "This will be unchanged",
        "phoneNumber": "+01-123-456-7890"
    })")));
}

TEST(MergePatch, PassesOverWhatIsUndefined) {
    Value root = Object{{"a", 1}, {"b", Object{{"c", 2}}}};
    merge_patch(root, Object{{"a", Value()}, {"b", Object{{"c", Value()}, {"d", 3}}}});
    EXPECT_EQ(describe(root), R"(JSON object {"a":1,"b":{"c":2,"d":3}})");
    merge_patch(root, Value());
    EXPECT_EQ(describe(root), R"(JSON object {"a":1,"b":{"c":2,"d":3}})");
}

TEST(MergePatch, TakesValuesOutOfChangesItMayKeep) {
    Value changes = read_json(R"({"a":[1],"b":{"c":[2]}})");
    const Value* const first = &changes["a"][0];
    const Value* const second = &changes["b"]["c"][0];
    Value root = read_json(R"({"a":"x","b":{"d":3}})");
    merge_patch(root, std::move(changes));
    EXPECT_EQ(content_text(root), R"({"a":[1],"b":{"c":[2],"d":3}})");
    EXPECT_EQ(&root["a"][0], first);
    EXPECT_EQ(&root["b"]["c"][0], second);
}

TEST(MergePatch, ChangesTheKindOfTheRoot) {
    Value root = Array{1};
    EXPECT_EQ(content_text(merge_patch(root, read_json(R"({"a":[1]})"))), R"({"a":[1]})");
    EXPECT_EQ(content_text(merge_patch(root, read_json(R"([2])"))), "[2]");
    EXPECT_EQ(content_text(merge_patch(root, 7)), "7");
    EXPECT_EQ(content_text(merge_patch(root, read_json(R"({"a":{"b":null}})"))), R"({"a":{}})");
    Value undefined;
    EXPECT_EQ(content_text(merge_patch(undefined, read_json(R"({"a":1,"b":null})"))), R"({"a":1})");
}

// ---- merge_diff ----------------------------------------------------------------------------

TEST(MergeDiff, HasWhatChanges) {
    for (const Example& example : {
             Example{R"({"a":1,"b":2})", R"({})", R"({"a":1,"b":2})"},
             Example{R"({"a":1,"b":2})", R"({"b":3})", R"({"a":1,"b":3})"},
             Example{R"({"a":1,"b":2})", R"({"a":null})", R"({"b":2})"},
             Example{R"({"b":2})", R"({"a":[null]})", R"({"a":[null],"b":2})"},
             Example{R"({"a":{"b":1,"c":{"d":2}},"e":{"f":3}})", R"({"a":{"c":{"d":4}}})",
                     R"({"a":{"b":1,"c":{"d":4}},"e":{"f":3}})"},
             Example{R"({"a":[1]})", R"({"a":{}})", R"({"a":{}})"},
             Example{R"({})", R"({"a":{"b":{}}})", R"({"a":{"b":{}}})"},
             Example{R"({"a":{"b":1}})", R"({"a":{"b":null}})", R"({"a":{}})"},
             Example{R"({"a":{"b":1}})", R"({"a":5})", R"({"a":5})"},
             Example{R"({"a":[1,2,3]})", R"({"a":[1,3]})", R"({"a":[1,3]})"},
             Example{R"({"a":null,"b":1})", R"({"b":2})", R"({"a":null,"b":2})"},
             Example{R"([1])", R"({"a":1})", R"({"a":1})"},
             Example{R"({"a":1})", R"([null])", R"([null])"},
             Example{R"({"a":1})", R"(null)", R"(null)"},
             Example{R"([1])", R"([1])", R"([1])"},
         }) {
        const Value from = read_json(example.original);
        const Value to = read_json(example.result);
        const Value changes = merge_diff(from, to);
        EXPECT_EQ(content_text(changes), example.patch);
        Value merged = from;
        EXPECT_EQ(merge_patch(merged, changes), to);
    }
}

TEST(MergeDiff, TakesUndefinedForMissing) {
    EXPECT_EQ(content_text(merge_diff(Object{{"a", Value()}, {"b", 1}}, Object{{"b", Value()}})),
              R"({"b":null})");
    EXPECT_EQ(content_text(merge_diff(Object{{"a", Value()}}, Object{{"a", 1}})), R"({"a":1})");
    EXPECT_EQ(describe(merge_diff(Value(), Value())), "undefined");
}

TEST(MergeDiff, ComparesNumbersByValue) {
    EXPECT_EQ(
        content_text(merge_diff(Object{{"a", 1}, {"b", 0.5}}, Object{{"a", 1LL}, {"b", 0.5f}})),
        "{}");
}

TEST(MergeDiff, SaysWhatNoMergePatchCanExpress) {
    const auto error = [](const Value& from, const Value& to) -> std::string {
        try {
            return content_text(merge_diff(from, to));
        } catch (const PointerError& e) {
            return std::string(e.what()) + " [" + e.pointer() + "]";
        }
    };
    EXPECT_EQ(error(read_json(R"({"a":{"b/":1}})"), read_json(R"({"a":{"b/":null}})")),
              "at /a/b~1: a merge patch cannot make a member null [/a/b~1]");
    EXPECT_EQ(error(read_json("7"), read_json(R"({"a":null})")),
              "at /a: a merge patch cannot make a member null [/a]");
    EXPECT_EQ(error(read_json("{}"), read_json(R"({"a":{"b":{"c":null}}})")),
              "at /a/b/c: a merge patch cannot make a member null [/a/b/c]");
    EXPECT_EQ(error(Object{{"a", Value()}}, read_json(R"({"a":null})")),
              "at /a: a merge patch cannot make a member null [/a]");
    EXPECT_EQ(error(1, Value()), "at the root: a merge patch cannot make the root Undefined []");
}

} // namespace
} // namespace foundation::json
