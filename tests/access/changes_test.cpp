// Values set, inserted, erased, moved and copied by JSON Pointers.
#include "support/describe.hpp"
#include "support/json_reader.hpp"

#include <foundation/json/builders.hpp>
#include <foundation/json/content.hpp>
#include <foundation/json/pointer.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace foundation::json {
namespace {

using test::content_text;
using test::describe;
using test::read_json;

/// What an action throws, and the first step that failed according to it.
template <class Action>
std::string pointer_error(Action&& action) {
    try {
        action();
    } catch (const PointerError& error) {
        return std::string(error.what()) + " [" + error.pointer() + "]";
    }
    return "(nothing was thrown)";
}

template <class Action>
std::string invalid_pointer(Action&& action) {
    try {
        action();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "(nothing was thrown)";
}

// ---- set -----------------------------------------------------------------------------------

struct SetCase {
    const char* root;
    const char* pointer;
    const char* result;
};

TEST(Set, ReplacesOrAddsTheValue) {
    for (const SetCase& c : {
             SetCase{R"({"a":1})", "", R"("new")"},
             SetCase{R"({"a":1,"b":2})", "/a", R"({"a":"new","b":2})"},
             SetCase{R"({"a":[1,{"b":[]}]})", "/a/1/b", R"({"a":[1,{"b":"new"}]})"},
             SetCase{R"({"b":2})", "/a", R"({"a":"new","b":2})"},
             SetCase{R"({})", "/", R"({"":"new"})"},
             SetCase{R"({"a/b":1,"m~n":2})", "/a~1b", R"({"a\/b":"new","m~n":2})"},
             SetCase{R"({"a/b":1,"m~n":2})", "/m~0n", R"({"a\/b":1,"m~n":"new"})"},
             SetCase{R"([1,2,3])", "/0", R"(["new",2,3])"},
             SetCase{R"([1,[2],3])", "/1", R"([1,"new",3])"},
             SetCase{R"([1,2,3])", "/2", R"([1,2,"new"])"},
             SetCase{R"([1,2,3])", "/3", R"([1,2,3,"new"])"},
             SetCase{R"([1,2,3])", "/-", R"([1,2,3,"new"])"},
             SetCase{R"([])", "/0", R"(["new"])"},
             SetCase{R"({"0":1,"-":2})", "/0", R"({"-":2,"0":"new"})"},
             SetCase{R"({"0":1,"-":2})", "/-", R"({"-":"new","0":1})"},
         }) {
        Value root = read_json(c.root);
        Value& placed = set(root, c.pointer, "new");
        EXPECT_EQ(content_text(root), c.result) << c.root << ' ' << c.pointer;
        EXPECT_EQ(content_text(placed), R"("new")") << c.root << ' ' << c.pointer;
        placed = 7;
        EXPECT_NE(content_text(root).find('7'), std::string::npos)
            << "the result is the value within the root";
    }
}

TEST(Set, MakesWhatIsMissingOnTheWay) {
    for (const SetCase& c : {
             SetCase{R"({})", "/a/b/c", R"({"a":{"b":{"c":"new"}}})"},
             SetCase{R"({})", "/a/0/b", R"({"a":[{"b":"new"}]})"},
             SetCase{R"({})", "/a/-/b", R"({"a":[{"b":"new"}]})"},
             SetCase{R"({})", "/a/-/-/0", R"({"a":[[["new"]]]})"},
             SetCase{R"({})", "/a/1", R"({"a":{"1":"new"}})"},
             SetCase{R"({})", "/a/00", R"({"a":{"00":"new"}})"},
             SetCase{R"({})", "/a//~1", R"({"a":{"":{"\/":"new"}}})"},
             SetCase{R"([1])", "/-/a", R"([1,{"a":"new"}])"},
             SetCase{R"([1])", "/1/0", R"([1,["new"]])"},
             SetCase{R"({"a":[{"b":1}]})", "/a/1/b", R"({"a":[{"b":1},{"b":"new"}]})"},
         }) {
        Value root = read_json(c.root);
        Value& placed = set(root, c.pointer, "new");
        EXPECT_EQ(content_text(root), c.result) << c.root << ' ' << c.pointer;
        placed = 7;
        EXPECT_NE(content_text(root).find('7'), std::string::npos)
            << "the result is the value within the root";
    }
}

TEST(Set, TakesUndefinedForMissing) {
    Value root;
    set(root, "/servers/0/host", "a.example");
    EXPECT_EQ(describe(root), R"(JSON object {"servers":[{"host":"a.example"}]})");
    Value other = Object{{"a", Value()}, {"b", Array{1, Value()}}};
    set(other, "/a/-", 1);
    set(other, "/b/1/c", 2);
    EXPECT_EQ(content_text(other), R"({"a":[1],"b":[1,{"c":2}]})");
}

TEST(Set, KeepsTheKindOfTheValue) {
    for (const Value& value :
         {Value(Null()), Value(true), Value(1.5), Value("text"), Value(0.5f), Value(1LL),
          Value(2ULL), Value(), Value(Array{1}), Value(Object{{"a", 1}})}) {
        Value root = Object{{"a", Array{1, Array{}, Object{}, "text"}}};
        for (const char* const pointer : {"/a/0", "/a/1", "/a/2", "/a/3", "/a/4", "/b", "/a", ""}) {
            EXPECT_EQ(describe(set(root, pointer, value)), describe(value)) << pointer;
        }
    }
}

TEST(Set, NamesTheFirstStepThatFailed) {
    const Value root = read_json(R"({"a":[1,{"b":"text"}],"n":null,"t":true,"i":7,"o":{}})");
    const struct {
        const char* pointer;
        const char* message;
    } cases[] = {
        {"/a/7/x/y", "at /a/7: the array has length 2 [/a/7]"},
        {"/a/3", "at /a/3: the array has length 2 [/a/3]"},
        {"/a/99999999999999999999999999", "at /a/99999999999999999999999999: the array has length "
                                          "2 [/a/99999999999999999999999999]"},
        {"/a/x", R"(at /a/x: the array has no element "x" [/a/x])"},
        {"/a/01", R"(at /a/01: the array has no element "01" [/a/01])"},
        {"/a/+1", R"(at /a/+1: the array has no element "+1" [/a/+1])"},
        {"/a/", R"(at /a/: the array has no element "" [/a/])"},
        {"/a/~01", R"(at /a/~01: the array has no element "~1" [/a/~01])"},
        {"/a/1/b/c/d", "at /a/1/b: there is a string, not an array or object [/a/1/b]"},
        {"/a/0/0", "at /a/0: there is a number, not an array or object [/a/0]"},
        {"/n/x", "at /n: there is null, not an array or object [/n]"},
        {"/t/x", "at /t: there is a boolean, not an array or object [/t]"},
    };
    for (const auto& c : cases) {
        Value changed = root;
        EXPECT_EQ(pointer_error([&] { set(changed, c.pointer, 1); }), c.message);
        EXPECT_EQ(changed, root) << c.pointer;
    }
    Value scalar = 1;
    EXPECT_EQ(pointer_error([&] { set(scalar, "/a", 1); }),
              "at the root: there is a number, not an array or object []");
    Value quoted = Object{{"a\"\n", 1}};
    EXPECT_EQ(pointer_error([&] { set(quoted, "/a\"\n/b", 1); }),
              "at /a\\\"\\u000a: there is a number, not an array or object [/a\"\n]");
}

TEST(Set, NamesEveryKindThatStoodThere) {
    const std::pair<Value, const char*> kinds[] = {
        {Null(), "null"},   {false, "a boolean"}, {1.5, "a number"},  {"x", "a string"},
        {0.5f, "a number"}, {1LL, "a number"},    {1ULL, "a number"},
    };
    for (const auto& [value, noun] : kinds) {
        Value root = Array{value};
        EXPECT_EQ(pointer_error([&root = root] { set(root, "/0/a", 1); }),
                  std::string("at /0: there is ") + noun + ", not an array or object [/0]");
    }
    Value undefined;
    EXPECT_EQ(pointer_error([&] { insert(undefined, "/a", 1); }),
              "at the root: there is undefined, not an array or object []");
}

TEST(Set, RefusesWhatIsNoJsonPointer) {
    Value root = Object{{"a", 1}};
    EXPECT_EQ(invalid_pointer([&] { set(root, "a", 1); }),
              "\"a\" is no JSON Pointer: it is not empty and does not begin with /");
    EXPECT_EQ(invalid_pointer([&] { insert(root, "/~2", 1); }),
              "\"/~2\" is no JSON Pointer: ~ is not followed by 0 or 1");
    EXPECT_EQ(invalid_pointer([&] { erase(root, "/a~"); }),
              "\"/a~\" is no JSON Pointer: ~ is not followed by 0 or 1");
    EXPECT_EQ(invalid_pointer([&] { move(root, "a", "/b"); }),
              "\"a\" is no JSON Pointer: it is not empty and does not begin with /");
    EXPECT_EQ(invalid_pointer([&] { move(root, "/a", "b"); }),
              "\"b\" is no JSON Pointer: it is not empty and does not begin with /");
    EXPECT_EQ(invalid_pointer([&] { copy(root, "a", "/b"); }),
              "\"a\" is no JSON Pointer: it is not empty and does not begin with /");
    EXPECT_EQ(invalid_pointer([&] { copy(root, "/a", "b"); }),
              "\"b\" is no JSON Pointer: it is not empty and does not begin with /");
    EXPECT_EQ(content_text(root), R"({"a":1})");
}

TEST(Set, TakesARvalueAndCopiesAnLvalue) {
    Value array = Array{1, 2};
    const Value* const element = &array[0];
    Value root = Object{{"a", Array{}}};
    set(root, "/b", array);
    EXPECT_EQ(content_text(array), "[1,2]");
    EXPECT_NE(&root["b"][0], element);
    set(root, "/c", std::move(array));
    EXPECT_EQ(&root["c"][0], element) << "nothing is copied";
    set(root, "/a/0", std::move(root["c"]));
    EXPECT_EQ(content_text(root["a"]), "[[1,2]]");
}

TEST(Set, TakesAValueFromWithinTheRootByCopy) {
    Value root = read_json(R"({"a":[1,{"b":2}]})");
    const Value& inner = root["a"][1];
    set(root, "/a", inner);
    EXPECT_EQ(content_text(root), R"({"a":{"b":2}})");
    set(root, "/a/b", root);
    EXPECT_EQ(content_text(root), R"({"a":{"b":{"a":{"b":2}}}})");
    insert(root, "", root["a"]["b"]);
    EXPECT_EQ(content_text(root), R"({"a":{"b":2}})");
}

TEST(Set, LeavesOtherValuesWhereTheyAre) {
    Value root = read_json(R"({"a":[[1],[2],[3]],"o":{"x":[4],"y":5}})");
    const Value* const element = &root["a"][2][0];
    const Value* const member = &root["o"]["x"][0];
    set(root, "/a/1", "other kind");
    set(root, "/o/y", Array{});
    set(root, "/n/e/w", 1);
    EXPECT_EQ(&root["a"][2][0], element);
    EXPECT_EQ(&root["o"]["x"][0], member);
    EXPECT_EQ(content_text(root),
              R"({"a":[[1],"other kind",[3]],"n":{"e":{"w":1}},"o":{"x":[4],"y":[]}})");
}

// ---- insert --------------------------------------------------------------------------------

TEST(Insert, PutsElementsBeforeTheIndexAndMembersIntoObjects) {
    for (const SetCase& c : {
             SetCase{R"([1,2])", "/0", R"(["new",1,2])"},
             SetCase{R"([1,2])", "/1", R"([1,"new",2])"},
             SetCase{R"([1,2])", "/2", R"([1,2,"new"])"},
             SetCase{R"([1,2])", "/-", R"([1,2,"new"])"},
             SetCase{R"([])", "/-", R"(["new"])"},
             SetCase{R"([[1],{"a":[]}])", "/1/a/0", R"([[1],{"a":["new"]}])"},
             SetCase{R"({})", "/a", R"({"a":"new"})"},
             SetCase{R"({"a":{"b":1}})", "/a", R"({"a":"new"})"},
             SetCase{R"({"a":1})", "", R"("new")"},
         }) {
        Value root = read_json(c.root);
        Value& placed = insert(root, c.pointer, "new");
        EXPECT_EQ(content_text(root), c.result) << c.root << ' ' << c.pointer;
        EXPECT_EQ(content_text(placed), R"("new")") << c.root << ' ' << c.pointer;
    }
}

TEST(Insert, MakesNothingOnTheWay) {
    Value root = read_json(R"({"a":[1]})");
    EXPECT_EQ(pointer_error([&] { insert(root, "/b/c", 1); }), "at /b: there is no value [/b]");
    EXPECT_EQ(pointer_error([&] { insert(root, "/b/c/d", 1); }), "at /b: there is no value [/b]");
    EXPECT_EQ(pointer_error([&] { insert(root, "/a/-/b", 1); }),
              "at /a/-: there is no value [/a/-]");
    EXPECT_EQ(pointer_error([&] { insert(root, "/a/2", 1); }),
              "at /a/2: the array has length 1 [/a/2]");
    EXPECT_EQ(pointer_error([&] { insert(root, "/a/x", 1); }),
              R"(at /a/x: the array has no element "x" [/a/x])");
    EXPECT_EQ(content_text(root), R"({"a":[1]})");
}

/// Elements of all kinds, in an order in which neighbours differ.
Array mixed_elements() {
    return {1,      Array{2}, "three", Object{{"four", 4}}, Array{Value(Array{5})},
            Null(), Object{}, Array{}};
}

TEST(Insert, MovesElementsOfAllKindsWhetherTheArrayGrowsOrNot) {
    for (const std::size_t capacity : {0U, 100U}) {
        for (std::size_t index = 0; index <= mixed_elements().size(); ++index) {
            for (const Value& value : mixed_elements()) {
                Array expected = mixed_elements();
                expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(index), value);
                Value root = mixed_elements();
                auto& elements = get<Array>(root);
                elements.reserve(capacity);
                insert(root, "/" + std::to_string(index), value);
                EXPECT_EQ(elements, expected) << index << ' ' << content_text(value);
            }
        }
    }
}

TEST(Insert, LeavesTheContentOfElementsWhereItIs) {
    Value root = read_json(R"([[1],[2],{"a":[3]}])");
    const Value* const first = &root[0][0];
    const Value* const last = &root[2]["a"][0];
    insert(root, "/0", "x");
    insert(root, "/0", "y");
    EXPECT_EQ(content_text(root), R"(["y","x",[1],[2],{"a":[3]}])");
    EXPECT_EQ(&root[2][0], first);
    EXPECT_EQ(&root[4]["a"][0], last);
}

TEST(Insert, UsesTheStorageThereIs) {
    Value root = read_json(R"([{"a":1},{"b":2}])");
    auto& elements = get<Array>(root);
    elements.reserve(10);
    const Value* const place = elements.data();
    insert(root, "/0", Object{{"c", 3}});
    EXPECT_EQ(elements.data(), place);
    EXPECT_EQ(content_text(root), R"([{"c":3},{"a":1},{"b":2}])");
}

TEST(Insert, GrowsAnArrayByAFactor) {
    Value root{Array()};
    std::size_t growths = 0;
    for (int i = 0; i != 1000; ++i) {
        const std::size_t before = get<Array>(root).capacity();
        insert(root, i % 2 == 0 ? "/-" : "/0", i);
        growths += get<Array>(root).capacity() != before;
    }
    EXPECT_EQ(root.length(), 1000u);
    EXPECT_LE(growths, 11u);
}

// ---- erase ---------------------------------------------------------------------------------

TEST(Erase, GivesWhatItTook) {
    Value root = read_json(R"({"a":[1,[2,3],{"b":4}],"o":{"x":5,"y":6}})");
    EXPECT_EQ(content_text(erase(root, "/a/1")), "[2,3]");
    EXPECT_EQ(content_text(root), R"({"a":[1,{"b":4}],"o":{"x":5,"y":6}})");
    EXPECT_EQ(content_text(erase(root, "/o/x")), "5");
    EXPECT_EQ(content_text(erase(root, "/a/1/b")), "4");
    EXPECT_EQ(content_text(root), R"({"a":[1,{}],"o":{"y":6}})");
    EXPECT_EQ(content_text(erase(root, "/a/0")), "1");
    EXPECT_EQ(content_text(erase(root, "/a/0")), "{}");
    EXPECT_EQ(content_text(erase(root, "/o")), R"({"y":6})");
    EXPECT_EQ(content_text(erase(root, "")), R"({"a":[]})");
    EXPECT_EQ(describe(root), "undefined");
    EXPECT_EQ(describe(erase(root, "")), "undefined");
}

TEST(Erase, MovesElementsOfAllKinds) {
    for (std::size_t index = 0; index < mixed_elements().size(); ++index) {
        Value root = mixed_elements();
        Array expected = mixed_elements();
        const Value removed = expected[index];
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(index));
        EXPECT_EQ(erase(root, "/" + std::to_string(index)), removed);
        EXPECT_EQ(get<Array>(root), expected) << index;
    }
}

TEST(Erase, TakesTheContentAsItIs) {
    Value root = read_json(R"({"a":[[1],[2]],"o":{"x":[3]}})");
    const Value* const element = &root["a"][0][0];
    const Value* const other = &root["a"][1][0];
    const Value* const member = &root["o"]["x"][0];
    Value taken = erase(root, "/a/0");
    EXPECT_EQ(&taken[0], element);
    EXPECT_EQ(&root["a"][0][0], other);
    Value taken_member = erase(root, "/o/x");
    EXPECT_EQ(&taken_member[0], member);
}

TEST(Erase, TakesUndefinedToo) {
    Value root = Object{{"a", Value()}, {"b", Array{Value()}}};
    EXPECT_EQ(describe(erase(root, "/a")), "undefined");
    EXPECT_EQ(describe(erase(root, "/b/0")), "undefined");
    EXPECT_EQ(content_text(root), R"({"b":[]})");
}

TEST(Erase, NeedsAValue) {
    const Value before = read_json(R"({"a":[1],"s":"text"})");
    Value root = before;
    EXPECT_EQ(pointer_error([&] { erase(root, "/b"); }), "at /b: there is no value [/b]");
    EXPECT_EQ(pointer_error([&] { erase(root, "/b/c"); }), "at /b: there is no value [/b]");
    EXPECT_EQ(pointer_error([&] { erase(root, "/a/1"); }),
              "at /a/1: the array has length 1 [/a/1]");
    EXPECT_EQ(pointer_error([&] { erase(root, "/a/-"); }),
              "at /a/-: the array has length 1 [/a/-]");
    EXPECT_EQ(pointer_error([&] { erase(root, "/a/2"); }),
              "at /a/2: the array has length 1 [/a/2]");
    EXPECT_EQ(pointer_error([&] { erase(root, "/s/0"); }),
              "at /s: there is a string, not an array or object [/s]");
    EXPECT_EQ(root, before);
}

// ---- move ----------------------------------------------------------------------------------

struct MoveCase {
    const char* root;
    const char* from;
    const char* to;
    const char* result;
};

TEST(Move, TakesAValueToAnotherLocation) {
    for (const MoveCase& c : {
             MoveCase{R"({"a":1,"b":2})", "/a", "/c", R"({"b":2,"c":1})"},
             MoveCase{R"({"a":[1],"b":2})", "/a", "/b", R"({"b":[1]})"},
             MoveCase{R"({"a":1})", "/a", "/a", R"({"a":1})"},
             MoveCase{R"([0,[1],2,3])", "/1", "/3", R"([0,2,3,[1]])"},
             MoveCase{R"([0,1,2,[3]])", "/3", "/0", R"([[3],0,1,2])"},
             MoveCase{R"([0,1,2])", "/0", "/-", R"([1,2,0])"},
             MoveCase{R"([0,1,2])", "/1", "/1", R"([0,1,2])"},
             MoveCase{R"({"a":[1,2],"b":{}})", "/a/0", "/b/x", R"({"a":[2],"b":{"x":1}})"},
             MoveCase{R"({"a":[1,2],"b":{"x":[3]}})", "/b/x", "/a/1", R"({"a":[1,[3],2],"b":{}})"},
             MoveCase{R"({"a":[[1],[2]],"b":[]})", "/a/1", "/b/-", R"({"a":[[1]],"b":[[2]]})"},
             MoveCase{R"({"a":{"b":{"c":1}}})", "/a/b", "", R"({"c":1})"},
             MoveCase{R"({"a":{"b":[1]}})", "/a/b", "", R"([1])"},
             MoveCase{R"([7])", "/0", "", R"(7)"},
             MoveCase{R"({"a":1})", "", "", R"({"a":1})"},
             MoveCase{R"({"a":1,"ab":{}})", "/a", "/ab/c", R"({"ab":{"c":1}})"},
         }) {
        Value root = read_json(c.root);
        const std::string moved = content_text(*find(root, c.from));
        Value& placed = move(root, c.from, c.to);
        EXPECT_EQ(content_text(root), c.result) << c.from << ' ' << c.to;
        EXPECT_EQ(content_text(placed), moved) << c.from << ' ' << c.to;
    }
}

TEST(Move, CopiesNothing) {
    Value root = read_json(R"({"a":[[1],[2]],"o":{"x":[3]}})");
    const Value* const element = &root["a"][0][0];
    const Value* const member = &root["o"]["x"][0];
    EXPECT_EQ(&move(root, "/a/0", "/o/y")[0], element);
    EXPECT_EQ(&move(root, "/o/x", "/a/0")[0], member);
    EXPECT_EQ(&move(root, "/o/y", "/p")[0], element);
    EXPECT_EQ(&move(root, "/a/0", "/a/1")[0], member);
    EXPECT_EQ(content_text(root), R"({"a":[[2],[3]],"o":{},"p":[1]})");
}

TEST(Move, ThatFailsLeavesTheValueAsItWas) {
    const Value before = read_json(R"({"a":[1,{"b":[2]}],"s":"text"})");
    Value root = before;
    EXPECT_EQ(pointer_error([&] { move(root, "/x", "/y"); }), "at /x: there is no value [/x]");
    EXPECT_EQ(pointer_error([&] { move(root, "/x", "/x"); }), "at /x: there is no value [/x]");
    EXPECT_EQ(pointer_error([&] { move(root, "/a", "/x/y"); }), "at /x: there is no value [/x]");
    EXPECT_EQ(pointer_error([&] { move(root, "/a/1", "/s/0"); }),
              "at /s: there is a string, not an array or object [/s]");
    EXPECT_EQ(pointer_error([&] { move(root, "/a/0", "/a/2"); }),
              "at /a/2: the array has length 1 [/a/2]")
        << "the index counts once the value is no longer there";
    EXPECT_EQ(pointer_error([&] { move(root, "/a", "/a/0"); }),
              "at /a/0: a value cannot be moved into itself [/a/0]");
    EXPECT_EQ(pointer_error([&] { move(root, "", "/a"); }),
              "at /a: a value cannot be moved into itself [/a]");
    EXPECT_EQ(root, before);
}

// ---- copy ----------------------------------------------------------------------------------

TEST(Copy, InsertsACopy) {
    for (const MoveCase& c : {
             MoveCase{R"({"a":[1]})", "/a", "/b", R"({"a":[1],"b":[1]})"},
             MoveCase{R"([0,[1]])", "/1", "/0", R"([[1],0,[1]])"},
             MoveCase{R"([0,[1]])", "/1", "/-", R"([0,[1],[1]])"},
             MoveCase{R"({"a":{"b":1}})", "/a", "/a/c", R"({"a":{"b":1,"c":{"b":1}}})"},
             MoveCase{R"([1])", "", "/0", R"([[1],1])"},
             MoveCase{R"({"a":{"b":1}})", "/a/b", "", R"(1)"},
             MoveCase{R"({"a":{"b":1}})", "/a", "", R"({"b":1})"},
             MoveCase{R"({"a":1})", "/a", "/a", R"({"a":1})"},
         }) {
        Value root = read_json(c.root);
        const std::string copied = content_text(*find(root, c.from));
        Value& placed = copy(root, c.from, c.to);
        EXPECT_EQ(content_text(root), c.result) << c.from << ' ' << c.to;
        EXPECT_EQ(content_text(placed), copied) << c.from << ' ' << c.to;
    }
}

TEST(Copy, ThatFailsLeavesTheValueAsItWas) {
    const Value before = read_json(R"({"a":[1]})");
    Value root = before;
    EXPECT_EQ(pointer_error([&] { copy(root, "/x", "/y"); }), "at /x: there is no value [/x]");
    EXPECT_EQ(pointer_error([&] { copy(root, "/a/-", "/y"); }),
              "at /a/-: the array has length 1 [/a/-]");
    EXPECT_EQ(pointer_error([&] { copy(root, "/a", "/x/y"); }), "at /x: there is no value [/x]");
    EXPECT_EQ(root, before);
}

// ---- The exception -------------------------------------------------------------------------

TEST(PointerErrors, AreCopiedWithoutAFailure) {
    static_assert(std::is_nothrow_copy_constructible_v<PointerError>);
    static_assert(std::is_nothrow_copy_assignable_v<PointerError>);
    static_assert(std::is_base_of_v<std::runtime_error, PointerError>);
    PointerError error("/a\"b", "is odd");
    EXPECT_STREQ(error.what(), "at /a\\\"b: is odd");
    EXPECT_EQ(error.pointer(), "/a\"b");
    PointerError taken = std::move(error);
    EXPECT_EQ(error.pointer(), "/a\"b") << "a moved exception is still complete";
    taken = PointerError("", "is odd");
    EXPECT_STREQ(taken.what(), "at the root: is odd");
    EXPECT_EQ(taken.pointer(), "");
}

} // namespace
} // namespace foundation::json
