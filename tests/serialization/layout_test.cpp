/// @file
/// Where brackets, commas, colons, line ends and spaces go.
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

using Array = std::vector<Value>;
using Object = std::map<std::string, Value>;

struct Case {
    const char* what;
    Value value;
    std::string text;
};

TEST(Layout, AValueAtTheTopIsWrittenAloneInEitherLayout) {
    const Case cases[] = {
        {"Undefined", Undefined(), ""},
        {"Null", Null(), "null"},
        {"true", true, "true"},
        {"false", false, "false"},
        {"a double", -2.5, "-2.5"},
        {"an int", 7, "7"},
        {"NaN", std::nan(""), "\"NaN\""},
        {"a string", "text", "\"text\""},
        {"the empty string", "", "\"\""},
        {"an empty array", Array{}, "[]"},
        {"an empty object", Object{}, "{}"},
        {"a float", 0.25f, "0.25"},
        {"an int64", -9000000000LL, "-9000000000"},
        {"a uint64", 18000000000000000000ULL, "18000000000000000000"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(serialize(c.value), c.text) << c.what;
        EXPECT_EQ(pretty_print(c.value), c.text) << c.what;
    }
}

TEST(Layout, CompactTextHasNoWhitespace) {
    const Case cases[] = {
        {"one element", Array{1}, "[1]"},
        {"elements in order", Array{3, 1, 2}, "[3,1,2]"},
        {"one member", Object{{"a", 1}}, R"({"a":1})"},
        {"arrays in arrays", Array{Array{}, Array{Array{}, 1}}, "[[],[[],1]]"},
        {"objects in objects", Object{{"a", Object{{"b", Object{}}}}}, R"({"a":{"b":{}}})"},
        {"objects in arrays", Array{Object{{"a", 1}}, Object{}}, R"([{"a":1},{}])"},
        {"all kinds",
         Array{Null(), true, false, 1.5, "s", Array{}, Object{}, 0.5f, -1LL, 1ULL, Undefined()},
         R"([null,true,false,1.5,"s",[],{},0.5,-1,1,])"},
        {"array and string", Object{{"a", Array{1, true, Null()}}, {"b", "x"}},
         R"({"a":[1,true,null],"b":"x"})"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(serialize(c.value), c.text) << c.what;
    }
}

TEST(Layout, WhitespaceInStringsAndNamesStays) {
    EXPECT_EQ(serialize(Object{{"a b", "c  d"}}), R"({"a b":"c  d"})");
}

TEST(Layout, PrettyTextHasALinePerElementAndMember) {
    EXPECT_EQ(pretty_print(Object{{"a", Array{1, true, Null()}}, {"b", "x"}}), "{\n"
                                                                               "    \"a\":[\n"
                                                                               "        1,\n"
                                                                               "        true,\n"
                                                                               "        null\n"
                                                                               "    ],\n"
                                                                               "    \"b\":\"x\"\n"
                                                                               "}");
}

TEST(Layout, PrettyTextPutsTheOnlyElementOnItsOwnLine) {
    EXPECT_EQ(pretty_print(Array{1}), "[\n    1\n]");
}

TEST(Layout, PrettyTextPutsTheOnlyMemberOnItsOwnLine) {
    EXPECT_EQ(pretty_print(Object{{"a", 1}}), "{\n    \"a\":1\n}");
}

TEST(Layout, PrettyTextOpensNestedContainersOnTheLineOfTheirSeparator) {
    const Value value = Array{Array{Object{{"k", Object{{"a", Array{"x", Array{1.5}}}}}}}, "end"};
    EXPECT_EQ(pretty_print(value), "[\n"
                                   "    [\n"
                                   "        {\n"
                                   "            \"k\":{\n"
                                   "                \"a\":[\n"
                                   "                    \"x\",\n"
                                   "                    [\n"
                                   "                        1.5\n"
                                   "                    ]\n"
                                   "                ]\n"
                                   "            }\n"
                                   "        }\n"
                                   "    ],\n"
                                   "    \"end\"\n"
                                   "]");
}

TEST(Layout, PrettyTextPutsEveryKindOnItsOwnLine) {
    const Value value =
        Array{Undefined(), Null(), true, 1e6, "s", Array{}, Object{}, 0.5f, -1LL, 1ULL};
    EXPECT_EQ(pretty_print(value), "[\n"
                                   "    ,\n"
                                   "    null,\n"
                                   "    true,\n"
                                   "    1.0E+6,\n"
                                   "    \"s\",\n"
                                   "    [    ],\n"
                                   "    {    },\n"
                                   "    0.5,\n"
                                   "    -1,\n"
                                   "    1\n"
                                   "]");
}

TEST(Layout, AnEmptyContainerHoldsItsIndentationBetweenItsBrackets) {
    const Case cases[] = {
        {"array at depth 0", Array{}, "[]"},
        {"object at depth 0", Object{}, "{}"},
        {"array at depth 1", Array{Value(Array{})}, "[\n    [    ]\n]"},
        {"object at depth 1", Array{Object{}}, "[\n    {    }\n]"},
        {"array member at depth 1", Object{{"e", Array{}}}, "{\n    \"e\":[    ]\n}"},
        {"object member at depth 1", Object{{"e", Object{}}}, "{\n    \"e\":{    }\n}"},
        {"array at depth 2", Array{Value(Array{Value(Array{})})},
         "[\n"
         "    [\n"
         "        [        ]\n"
         "    ]\n"
         "]"},
        {"object at depth 2", Object{{"a", Object{{"b", Object{}}}}},
         "{\n"
         "    \"a\":{\n"
         "        \"b\":{        }\n"
         "    }\n"
         "}"},
        {"both at depth 3", Array{Value(Array{Value(Array{Array{}, Object{}})})},
         "[\n"
         "    [\n"
         "        [\n"
         "            [            ],\n"
         "            {            }\n"
         "        ]\n"
         "    ]\n"
         "]"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(pretty_print(c.value), c.text) << c.what;
    }
}

TEST(Layout, UndefinedElementsLeaveTheirSeparators) {
    const Case cases[] = {
        {"alone", Array{Undefined()}, "[]"},
        {"first", Array{Undefined(), 1}, "[,1]"},
        {"in the middle", Array{1, Undefined(), 2}, "[1,,2]"},
        {"last", Array{1, Undefined()}, "[1,]"},
        {"all", Array{Undefined(), Undefined(), Undefined()}, "[,,]"},
        {"nested", Array{Array{Undefined()}, Undefined()}, "[[],]"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(serialize(c.value), c.text) << c.what;
    }
}

TEST(Layout, UndefinedMembersLeaveTheirNamesAndSeparators) {
    const Case cases[] = {
        {"alone", Object{{"a", Undefined()}}, R"({"a":})"},
        {"first", Object{{"a", Undefined()}, {"b", 1}}, R"({"a":,"b":1})"},
        {"in the middle", Object{{"a", 1}, {"b", Undefined()}, {"c", 2}}, R"({"a":1,"b":,"c":2})"},
        {"last", Object{{"a", 1}, {"b", Undefined()}}, R"({"a":1,"b":})"},
        {"all", Object{{"a", Undefined()}, {"b", Undefined()}}, R"({"a":,"b":})"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(serialize(c.value), c.text) << c.what;
    }
}

TEST(Layout, UndefinedStillTakesALineInPrettyText) {
    const Case cases[] = {
        {"the only element", Array{Undefined()}, "[\n    \n]"},
        {"the first element", Array{Undefined(), 1}, "[\n    ,\n    1\n]"},
        {"a middle element", Array{1, Undefined(), 2}, "[\n    1,\n    ,\n    2\n]"},
        {"the last element", Array{1, Undefined()}, "[\n    1,\n    \n]"},
        {"the only member", Object{{"a", Undefined()}}, "{\n    \"a\":\n}"},
        {"the first member", Object{{"a", Undefined()}, {"b", 1}},
         "{\n    \"a\":,\n    \"b\":1\n}"},
        {"the last member", Object{{"a", 1}, {"b", Undefined()}}, "{\n    \"a\":1,\n    \"b\":\n}"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(pretty_print(c.value), c.text) << c.what;
    }
}

TEST(Layout, MembersComeInTheByteWiseOrderOfTheirNames) {
    const Case cases[] = {
        {"upper case first", Object{{"b", 1}, {"a", 2}, {"B", 3}}, R"({"B":3,"a":2,"b":1})"},
        {"shorter first", Object{{"ab", 1}, {"", 2}, {"a", 3}}, R"({"":2,"a":3,"ab":1})"},
        {"digits as text", Object{{"10", 1}, {"9", 2}}, R"({"10":1,"9":2})"},
        {"bytes unsigned", Object{{"\xC3\xA9", 1}, {"z", 2}, {"\x7F", 3}},
         "{\"z\":2,\"\x7F\":3,\"\xC3\xA9\":1}"},
        {"not by the escaped text", Object{{"\n", 1}, {" ", 2}, {"\x01", 3}},
         R"({"\u0001":3,"\n":1," ":2})"},
        {"zero bytes count", Object{{"a", 1}, {std::string("a\0", 2), 2}, {"a!", 3}},
         R"({"a":1,"a\u0000":2,"a!":3})"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(serialize(c.value), c.text) << c.what;
    }
}

TEST(Layout, PrettyTextKeepsTheOrderOfMembers) {
    EXPECT_EQ(pretty_print(Object{{"b", 1}, {"a", 2}, {"B", 3}}), "{\n"
                                                                  "    \"B\":3,\n"
                                                                  "    \"a\":2,\n"
                                                                  "    \"b\":1\n"
                                                                  "}");
}

TEST(Layout, NoSpaceFollowsTheColonOfAnEscapedName) {
    const Value value = Object{{"x\"y/\t", "x\"y/\t"}};
    EXPECT_EQ(serialize(value), R"({"x\"y\/\t":"x\"y\/\t"})");
    EXPECT_EQ(pretty_print(value), "{\n    \"x\\\"y\\/\\t\":\"x\\\"y\\/\\t\"\n}");
}

Value nested_arrays(std::size_t levels) {
    Value value(Array{});
    for (std::size_t i = 1; i < levels; ++i) {
        Value outer(Array{});
        outer.push(Value());
        outer[0].swap(value);
        value.swap(outer);
    }
    return value;
}

TEST(Layout, NestingHasNoLimitOfItsOwn) {
    const std::size_t levels = 1000;
    EXPECT_EQ(serialize(nested_arrays(levels)),
              std::string(levels, '[') + std::string(levels, ']'));
}

TEST(Layout, EveryLevelIsIndentedByFourMoreSpaces) {
    const std::size_t deepest = 299;
    std::string expected;
    for (std::size_t depth = 0; depth < deepest; ++depth) {
        expected += std::string(4 * depth, ' ') + "[\n";
    }
    expected += std::string(4 * deepest, ' ') + "[" + std::string(4 * deepest, ' ') + "]";
    for (std::size_t depth = deepest; depth-- > 0;) {
        expected += "\n" + std::string(4 * depth, ' ') + "]";
    }
    EXPECT_EQ(pretty_print(nested_arrays(deepest + 1)), expected);
}

// Nothing but pieces of fixed text, for longer than any buffer.
TEST(Layout, ManyNullsInARowAreAllWritten) {
    std::string expected = "[null";
    for (int i = 1; i < 10000; ++i) {
        expected += ",null";
    }
    EXPECT_EQ(serialize(Array(10000, Null())), expected + "]");
}

TEST(Layout, ManyElementsAreSeparatedByCommasAndNothingElse) {
    Value value(Array{});
    std::string compact = "[0";
    std::string pretty = "[\n    0";
    value.push(0);
    for (int i = 1; i < 20000; ++i) {
        value.push(i);
        compact += "," + std::to_string(i);
        pretty += ",\n    " + std::to_string(i);
    }
    EXPECT_EQ(serialize(value), compact + "]");
    EXPECT_EQ(pretty_print(value), pretty + "\n]");
}

} // namespace
} // namespace foundation::json
