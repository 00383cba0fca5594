// Patches: the examples of RFC 6902, errors, and what is moved rather than copied.
#include "support/describe.hpp"
#include "support/json_reader.hpp"

#include <foundation/json/builders.hpp>
#include <foundation/json/content.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::json {
namespace {

using test::content_text;
using test::read_json;

/// What patch() makes of a document, as text, or the message of its error.
std::string patched(const std::string& document, const std::string& operations) {
    const Value before = read_json(document);
    const Value kept = read_json(operations);
    Value root = before;
    std::string result;
    try {
        EXPECT_EQ(&patch(root, kept), &root);
        result = content_text(root);
    } catch (const PatchError& error) {
        EXPECT_EQ(root, before);
        result = error.what();
    }
    // The same with operations that may be moved from.
    Value other = before;
    try {
        EXPECT_EQ(&patch(other, read_json(operations)), &other);
        EXPECT_EQ(content_text(other), result);
    } catch (const PatchError& error) {
        EXPECT_EQ(other, before);
        EXPECT_EQ(error.what(), result);
    }
    return result;
}

/// A document, as text.
std::string document(const char* text) {
    return content_text(read_json(text));
}

// ---- RFC 6902, appendix A ------------------------------------------------------------------

TEST(Patch, A1AddingAnObjectMember) {
    EXPECT_EQ(
        patched(R"({ "foo": "bar"})", R"([ { "op": "add", "path": "/baz", "value": "qux" } ])"),
        document(R"({ "baz": "qux", "foo": "bar" })"));
}

TEST(Patch, A2AddingAnArrayElement) {
    EXPECT_EQ(patched(R"({ "foo": [ "bar", "baz" ] })",
                      R"([ { "op": "add", "path": "/foo/1", "value": "qux" } ])"),
              document(R"({ "foo": [ "bar", "qux", "baz" ] })"));
}

TEST(Patch, A3RemovingAnObjectMember) {
    EXPECT_EQ(
        patched(R"({ "baz": "qux", "foo": "bar" })", R"([ { "op": "remove", "path": "/baz" } ])"),
        document(R"({ "foo": "bar" })"));
}

TEST(Patch, A4RemovingAnArrayElement) {
    EXPECT_EQ(patched(R"({ "foo": [ "bar", "qux", "baz" ] })",
                      R"([ { "op": "remove", "path": "/foo/1" } ])"),
              document(R"({ "foo": [ "bar", "baz" ] })"));
}

TEST(Patch, A5ReplacingAValue) {
    EXPECT_EQ(patched(R"({ "baz": "qux", "foo": "bar" })",
                      R"([ { "op": "replace", "path": "/baz", "value": "boo" } ])"),
              document(R"({ "baz": "boo", "foo": "bar" })"));
}

TEST(Patch, A6MovingAValue) {
    EXPECT_EQ(
        patched(R"({ "foo": { "bar": "baz", "waldo": "fred" }, "qux": { "corge": "grault" } })",
                R"([ { "op": "move", "from": "/foo/waldo", "path": "/qux/thud" } ])"),
        document(R"({ "foo": { "bar": "baz" },
                            "qux": { "corge": "grault", "thud": "fred" } })"));
}

TEST(Patch, A7MovingAnArrayElement) {
    EXPECT_EQ(patched(R"({ "foo": [ "all", "grass", "cows", "eat" ] })",
                      R"([ { "op": "move", "from": "/foo/1", "path": "/foo/3" } ])"),
              document(R"({ "foo": [ "all", "cows", "eat", "grass" ] })"));
}

TEST(Patch, A8TestingAValueSuccess) {
    EXPECT_EQ(patched(R"({ "baz": "qux", "foo": [ "a", 2, "c" ] })",
                      R"([ { "op": "test", "path": "/baz", "value": "qux" },
                           { "op": "test", "path": "/foo/1", "value": 2 } ])"),
              document(R"({ "baz": "qux", "foo": [ "a", 2, "c" ] })"));
}

TEST(Patch, A9TestingAValueError) {
    EXPECT_EQ(
        patched(R"({ "baz": "qux" })", R"([ { "op": "test", "path": "/baz", "value": "bar" } ])"),
        "operation 0 (test \"/baz\"): at /baz: the test finds another value");
}

TEST(Patch, A10AddingANestedMemberObject) {
    EXPECT_EQ(patched(R"({ "foo": "bar" })",
                      R"([ { "op": "add", "path": "/child", "value": { "grandchild": { } } } ])"),
              document(R"({ "foo": "bar", "child": { "grandchild": { } } })"));
}

TEST(Patch, A11IgnoringUnrecognizedElements) {
    EXPECT_EQ(patched(R"({ "foo": "bar" })",
                      R"([ { "op": "add", "path": "/baz", "value": "qux", "xyz": 123 } ])"),
              document(R"({ "foo": "bar", "baz": "qux" })"));
}

TEST(Patch, A12AddingToANonexistentTarget) {
    EXPECT_EQ(patched(R"({ "foo": "bar" })",
                      R"([ { "op": "add", "path": "/baz/bat", "value": "qux" } ])"),
              "operation 0 (add \"/baz/bat\"): at /baz: there is no value");
}

TEST(Patch, A13InvalidJsonPatchDocument) {
    // A name occurs twice: no Value holds such an object.
    EXPECT_THROW(
        read_json(R"([ { "op": "add", "path": "/baz", "value": "qux", "op": "remove" } ])"),
        std::runtime_error);
}

TEST(Patch, A14TildeEscapeOrdering) {
    EXPECT_EQ(
        patched(R"({ "/": 9, "~1": 10 })", R"([ {"op": "test", "path": "/~01", "value": 10} ])"),
        document(R"({ "/": 9, "~1": 10 })"));
}

TEST(Patch, A15ComparingStringsAndNumbers) {
    EXPECT_EQ(
        patched(R"({ "/": 9, "~1": 10 })", R"([ {"op": "test", "path": "/~01", "value": "10"} ])"),
        "operation 0 (test \"/~01\"): at /~01: the test finds another value");
}

TEST(Patch, A16AddingAnArrayValue) {
    EXPECT_EQ(patched(R"({ "foo": ["bar"] })",
                      R"([ { "op": "add", "path": "/foo/-", "value": ["abc", "def"] } ])"),
              document(R"({ "foo": ["bar", ["abc", "def"]] })"));
}

TEST(Patch, Section3ExampleOfAFailedTest) {
    EXPECT_EQ(patched(R"({ "a": { "b": { "c": "C" } } })",
                      R"([ { "op": "replace", "path": "/a/b/c", "value": 42 },
                           { "op": "test", "path": "/a/b/c", "value": "C" } ])"),
              "operation 1 (test \"/a/b/c\"): at /a/b/c: the test finds another value")
        << "all operations are taken back";
}

TEST(Patch, AppliesThePublicSuite) {
    const std::string folder = FOUNDATION_JSON_PATCH_SUITE;
    if (folder.empty()) {
        GTEST_SKIP() << "FOUNDATION_JSON_PATCH_SUITE names no folder of test cases";
    }
    std::ifstream file(folder + "/spec_tests.json", std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    // The record that has a name twice is disabled.
    const Value suite =
        test::JsonReader(text, test::Whitespace::allowed, test::DuplicateNames::last).read();
    std::size_t applied = 0;
    for (const Value& record : get<Array>(suite)) {
        if (!record.hasOwnProperty("patch") || record.hasOwnProperty("disabled")) {
            continue;
        }
        const std::string comment = content_text(record["comment"]);
        Value root = record["doc"];
        if (record.hasOwnProperty("error")) {
            EXPECT_THROW(patch(root, record["patch"]), PatchError) << comment;
            EXPECT_EQ(root, record["doc"]) << comment;
        } else {
            EXPECT_EQ(patch(root, record["patch"]), record["expected"]) << comment;
        }
        ++applied;
    }
    EXPECT_GE(applied, 16u);
}

// ---- Operations ----------------------------------------------------------------------------

TEST(Patch, AppliesOneOperationAfterTheOther) {
    EXPECT_EQ(patched(R"({"a":[1,2,3]})", R"([{"op":"add","path":"/b","value":{}},
                                              {"op":"move","from":"/a","path":"/b/a"},
                                              {"op":"add","path":"/b/a/0","value":[0]},
                                              {"op":"add","path":"/b/a/0/-","value":"x"},
                                              {"op":"remove","path":"/b/a/2"},
                                              {"op":"copy","from":"/b/a/0","path":"/b/a/-"},
                                              {"op":"replace","path":"/b/a/0","value":7},
                                              {"op":"test","path":"","value":
                                                  {"b":{"a":[7,1,3,[0,"x"]]}}}])"),
              R"({"b":{"a":[7,1,3,[0,"x"]]}})");
}

TEST(Patch, ReplacesTheRoot) {
    for (const char* const before : {"1", "\"s\"", "[1]", "{\"a\":1}"}) {
        for (const char* const after : {"null", "\"t\"", "[]", "[2]", "{}", "{\"b\":2}"}) {
            for (const char* const name : {"add", "replace"}) {
                EXPECT_EQ(patched(before, std::string(R"([{"op":")") + name +
                                              R"(","path":"","value":)" + after + "}]"),
                          after);
            }
        }
    }
    EXPECT_EQ(patched("[1]", R"([{"op":"remove","path":""},
                                 {"op":"add","path":"","value":{}},
                                 {"op":"add","path":"/a","value":2}])"),
              R"({"a":2})");
    EXPECT_EQ(patched(R"({"a":{"b":[1]}})", R"([{"op":"move","from":"/a/b","path":""},
                                                {"op":"add","path":"/0","value":2}])"),
              "[2,1]");
    EXPECT_EQ(patched("[1]", R"([{"op":"remove","path":""}])"), "") << "Undefined is left";
}

TEST(Patch, RemovesWhatHasBeenChanged) {
    EXPECT_EQ(patched(R"([[[1],[2]],3])", R"([{"op":"add","path":"/0/0/0","value":0},
                                              {"op":"add","path":"/0/0","value":"x"},
                                              {"op":"remove","path":"/0"},
                                              {"op":"add","path":"/0","value":4}])"),
              "[4,3]");
    EXPECT_EQ(patched(R"({"a":[[1],[2]]})", R"([{"op":"add","path":"/a/0/0","value":0},
                                                {"op":"move","from":"/a/0","path":"/b"},
                                                {"op":"replace","path":"/a","value":5},
                                                {"op":"add","path":"/b/-","value":9}])"),
              R"({"a":5,"b":[0,1,9]})");
    EXPECT_EQ(patched(R"([[1],[2],[3]])", R"([{"op":"add","path":"/2/0","value":0},
                                              {"op":"move","from":"/2","path":"/0"},
                                              {"op":"replace","path":"/1","value":"x"},
                                              {"op":"remove","path":"/2"}])"),
              R"([[0,3],"x"])");
}

TEST(Patch, ComparesNumbersByValue) {
    Value root = Object{{"a", 7LL}, {"b", Array{0.5f, 1ULL}}};
    EXPECT_NO_THROW(
        patch(root, Array{operation::test("/a", 7), operation::test("/b/0", 0.5),
                          operation::test("/b", Array{0.5, 1LL}), operation::add("/b/-", 2),
                          operation::test("/b", Array{0.5, 1LL, 2ULL})}));
}

TEST(Patch, TestsArraysThatHaveChanged) {
    for (const char* const value :
         {"[0,1,2]", "[0,1,3]", "[0,1,3,2]", "[0,1]", "[1,2]", "[]", "{}"}) {
        const std::string operations =
            std::string(R"([{"op":"add","path":"/a/0","value":0},{"op":"remove","path":"/a/3"},)"
                        R"({"op":"test","path":"/a","value":)") +
            value + "}]";
        EXPECT_EQ(patched(R"({"a":[1,2,3]})", operations),
                  value == std::string("[0,1,2]")
                      ? R"({"a":[0,1,2]})"
                      : R"(operation 2 (test "/a"): at /a: the test finds another value)");
    }
}

TEST(Patch, TakesUndefinedAsAValue) {
    Value root = Object{{"a", 1}};
    patch(root, Array{operation::add("/b", Value()), operation::test("/b", Undefined())});
    EXPECT_TRUE(root.hasOwnProperty("b"));
}

// ---- Errors --------------------------------------------------------------------------------

TEST(Patch, NamesTheOperationThePathAndTheReason) {
    const struct {
        const char* operation;
        const char* message;
    } cases[] = {
        {R"({"op":"remove","path":"/a/7/x"})",
         R"(operation 1 (remove "/a/7/x"): at /a/7: the array has length 1)"},
        {R"({"op":"remove","path":"/b"})",
         R"(operation 1 (remove "/b"): at /b: there is no value)"},
        {R"({"op":"replace","path":"/b","value":1})",
         R"(operation 1 (replace "/b"): at /b: there is no value)"},
        {R"({"op":"replace","path":"/a/-","value":1})",
         R"(operation 1 (replace "/a/-"): at /a/-: the array has length 1)"},
        {R"({"op":"test","path":"/b","value":null})",
         R"(operation 1 (test "/b"): at /b: there is no value)"},
        {R"({"op":"add","path":"/a/0/x","value":1})",
         R"(operation 1 (add "/a/0/x"): at /a/0: there is a number, not an array or object)"},
        {R"({"op":"move","from":"/b","path":"/c"})",
         R"(operation 1 (move "/c"): at /b: there is no value)"},
        {R"({"op":"move","from":"/a","path":"/a/0"})",
         R"(operation 1 (move "/a/0"): at /a/0: a value cannot be moved into itself)"},
        {R"({"op":"copy","from":"/a/x","path":"/c"})",
         R"(operation 1 (copy "/c"): at /a/x: the array has no element "x")"},
        {R"({"op":"add","path":"a","value":1})",
         R"(operation 1 (add "a"): "a" is no JSON Pointer: it is not empty and does not begin )"
         "with /"},
        {R"({"op":"copy","path":"/c","from":"/~"})",
         R"(operation 1 (copy "/c"): "/~" is no JSON Pointer: ~ is not followed by 0 or 1)"},
        {R"({"op":"remove","path":"/\"\n"})",
         R"(operation 1 (remove "/\"\u000a"): at /\"\u000a: there is no value)"},
        {R"({"op":"remove"})", R"(operation 1: the member "path" is missing)"},
        {R"({"path":""})", R"(operation 1: the member "op" is missing)"},
        {R"({"op":"add","path":"/a"})", R"(operation 1 (add "/a"): the member "value" is missing)"},
        {R"({"op":"move","path":"/a"})",
         R"(operation 1 (move "/a"): the member "from" is missing)"},
        {R"({"op":"remove","path":null})",
         R"(operation 1: the member "path" is null, not a string)"},
        {R"({"op":7,"path":"/a"})", R"(operation 1: the member "op" is a number, not a string)"},
        {R"({"op":"copy","path":"/a","from":[]})",
         R"(operation 1 (copy "/a"): the member "from" is an array, not a string)"},
        {R"({"op":"increment","path":"/a"})",
         R"(operation 1: "increment" is no operation; known are add, remove, replace, move, copy, )"
         "test"},
        {R"([])", "operation 1: it is an array, not an object"},
        {R"("remove")", "operation 1: it is a string, not an object"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(patched(R"({"a":[1]})", std::string(R"([{"op":"add","path":"/new","value":1},)") +
                                              c.operation + "]"),
                  c.message);
    }
    EXPECT_EQ(patched("1", R"({"op":"remove","path":""})"), "the patch is an object, not an array");
}

TEST(PatchErrors, HaveTheIndexAndThePath) {
    Value root = Object{{"a", 1}};
    try {
        patch(root, Array{operation::test("/a", 1), operation::remove("/a"),
                          operation::remove("/b~0\"")});
        ADD_FAILURE() << "nothing was thrown";
    } catch (const PatchError& error) {
        EXPECT_EQ(error.index(), 2u);
        EXPECT_EQ(error.path(), "/b~0\"");
    }
    try {
        patch(root, Array{Value(Object{{"path", "/a"}})});
        ADD_FAILURE() << "nothing was thrown";
    } catch (const PatchError& error) {
        EXPECT_EQ(error.index(), 0u);
        EXPECT_EQ(error.path(), "");
    }
}

TEST(PatchErrors, AreCopiedWithoutAFailure) {
    static_assert(std::is_nothrow_copy_constructible_v<PatchError>);
    static_assert(std::is_nothrow_copy_assignable_v<PatchError>);
    static_assert(std::is_base_of_v<std::runtime_error, PatchError>);
    PatchError error(3, "/a", "is odd");
    PatchError taken = std::move(error);
    EXPECT_EQ(error.path(), "/a") << "a moved exception is still complete";
    taken = PatchError(4, "/b", "is strange");
    EXPECT_EQ(taken.index(), 4u);
    EXPECT_EQ(taken.path(), "/b");
    EXPECT_STREQ(taken.what(), "is strange");
}

// ---- Copies --------------------------------------------------------------------------------

TEST(Patch, TakesValuesOutOfOperationsItMayKeep) {
    Value operations = read_json(R"([{"op":"add","path":"/a","value":[1]},
                                     {"op":"add","path":"/b/0","value":[2]},
                                     {"op":"replace","path":"/b/1","value":{"x":[3]}}])");
    const Value* const first = &operations[0]["value"][0];
    const Value* const second = &operations[1]["value"][0];
    const Value* const third = &operations[2]["value"]["x"];
    Value root = read_json(R"({"b":[0]})");
    patch(root, std::move(operations));
    EXPECT_EQ(content_text(root), R"({"a":[1],"b":[[2],{"x":[3]}]})");
    EXPECT_EQ(&root["a"][0], first);
    EXPECT_EQ(&root["b"][0][0], second);
    EXPECT_EQ(&root["b"][1]["x"], third);
}

TEST(Patch, LeavesOperationsThatItMayNotKeepAsTheyAre) {
    const Value operations = read_json(R"([{"op":"add","path":"/a","value":[1]},
                                           {"op":"add","path":"/a/0","value":2}])");
    const Value before = operations;
    Value root = Object{};
    patch(root, operations);
    EXPECT_EQ(operations, before);
    EXPECT_EQ(content_text(root), R"({"a":[2,1]})");
}

TEST(Patch, GivesBackTheValuesOfAPatchThatFails) {
    const Value before = read_json(R"([{"op":"add","path":"/a","value":[1]},
                                       {"op":"add","path":"/b/0","value":[2]},
                                       {"op":"replace","path":"/b","value":[3]},
                                       {"op":"add","path":"","value":[4]},
                                       {"op":"remove","path":"/7"}])");
    Value operations = before;
    Value root = read_json(R"({"b":[0]})");
    EXPECT_THROW(patch(root, std::move(operations)), PatchError);
    EXPECT_EQ(content_text(root), R"({"b":[0]})");
    EXPECT_EQ(operations, before);
}

TEST(Patch, LeavesOtherValuesWhereTheyAre) {
    Value root = read_json(R"({"a":[[1],[2],[3]],"o":{"x":[4]}})");
    const Value* const element = &root["a"][2][0];
    const Value* const member = &root["o"]["x"][0];
    patch(root, read_json(R"([{"op":"remove","path":"/a/1"},
                              {"op":"add","path":"/a/0","value":0},
                              {"op":"move","from":"/o","path":"/p"}])"));
    EXPECT_EQ(&root["a"][2][0], element);
    EXPECT_EQ(&root["p"]["x"][0], member);
}

// ---- Operations in code --------------------------------------------------------------------

TEST(Operation, IsAnObjectOfItsMembers) {
    EXPECT_EQ(content_text(operation::add("/a", Array{1})),
              R"({"op":"add","path":"\/a","value":[1]})");
    EXPECT_EQ(content_text(operation::remove("/a/0")), R"({"op":"remove","path":"\/a\/0"})");
    EXPECT_EQ(content_text(operation::replace("", 7)), R"({"op":"replace","path":"","value":7})");
    EXPECT_EQ(content_text(operation::move("/a", "/b")),
              R"({"from":"\/a","op":"move","path":"\/b"})");
    EXPECT_EQ(content_text(operation::copy("/a", "/b")),
              R"({"from":"\/a","op":"copy","path":"\/b"})");
    EXPECT_EQ(content_text(operation::test("/a", "x")),
              R"({"op":"test","path":"\/a","value":"x"})");
}

TEST(Operation, TakesARvalueAndCopiesAnLvalue) {
    Value value = Array{1};
    const Value* const element = &value[0];
    EXPECT_EQ(content_text(operation::add("/a", value)["value"]), "[1]");
    EXPECT_EQ(content_text(operation::replace("/a", value)["value"]), "[1]");
    EXPECT_EQ(content_text(operation::test("/a", value)["value"]), "[1]");
    EXPECT_EQ(&value[0], element);
    const Value taken = operation::add("/a", std::move(value));
    EXPECT_EQ(&taken["value"][0], element);
}

TEST(Operation, RefusesWhatIsNoJsonPointer) {
    EXPECT_THROW(static_cast<void>(operation::add("a", 1)), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(operation::remove("a")), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(operation::replace("a", 1)), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(operation::move("a", "")), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(operation::move("", "a")), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(operation::copy("a", "")), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(operation::copy("", "a")), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(operation::test("/~", 1)), std::invalid_argument);
}

TEST(Operation, AppliesWithTheOthers) {
    Value config = Object{{"port", 80}, {"debug", true}};
    patch(config, Array{operation::test("/port", 80), operation::replace("/port", 8080),
                        operation::remove("/debug"), operation::add("/tags", Array{}),
                        operation::add("/tags/-", "x"), operation::copy("/tags/0", "/tags/0"),
                        operation::move("/port", "/tags/0")});
    EXPECT_EQ(content_text(config), R"({"tags":[8080,"x","x"]})");
}

} // namespace
} // namespace foundation::json
