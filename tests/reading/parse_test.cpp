// The values of texts, with every option.
#include "support/describe.hpp"
#include "support/edge_memory.hpp"
#include "support/every_way.hpp"
#include "support/nested.hpp"

#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::test {
namespace {

using Elements = std::vector<Value>;
using Members = std::map<std::string, Value>;

/// The value of a text, which is the same in every way to parse.
Value parsed(std::string_view text, const ParseOptions& options = {}) {
    EXPECT_EQ(disagreement(std::string(text), options), "");
    return parse(text, options);
}

template <std::size_t Size>
std::string bytes(const char (&literal)[Size]) {
    return std::string(literal, Size - 1);
}

TEST(Parser, ReadsTrueFalseAndNull) {
    EXPECT_EQ(parsed("null"), Value(Null()));
    EXPECT_EQ(parsed("true"), Value(true));
    EXPECT_EQ(parsed("false"), Value(false));
    EXPECT_EQ(parsed("[null,true,false]"), Value(Elements{Null(), true, false}));
    EXPECT_EQ(parsed(R"({"a":null,"b":true,"c":false})"),
              Value(Members{{"a", Null()}, {"b", true}, {"c", false}}));
}

TEST(Parser, ReadsArraysAndObjectsInEachOther) {
    EXPECT_EQ(parsed("[]"), Value(Elements{}));
    EXPECT_EQ(parsed("{}"), Value(Members{}));
    EXPECT_EQ(parsed("[[],{},[[]],{\"a\":[]}]"),
              Value(Elements{Elements{}, Members{}, Elements{Value(Elements{})},
                             Members{{"a", Elements{}}}}));
    EXPECT_EQ(parsed("{\"a\":{\"b\":[1,{\"c\":2}]},\"\":\"\"}"),
              Value(Members{{"a", Members{{"b", Elements{1, Members{{"c", 2}}}}}}, {"", ""}}));
    EXPECT_EQ(
        parsed("[1,\"a\",[2,[3],\"b\",{\"c\":[4]}],5]"),
        Value(Elements{1, "a", Elements{2, Elements{3}, "b", Members{{"c", Elements{4}}}}, 5}));
}

TEST(Parser, SkipsWhitespaceBetweenTokens) {
    const std::string blanks = " \t\r\n   \n\t\t\r\n                                   ";
    const std::string tokens[] = {"[",     "1", ",", "{", "\"a\"", ":", "true", ",",
                                  "\"b\"", ":", "[", "]", "}",     ",", "null", "]"};
    for (std::size_t count = 0; count <= blanks.size(); ++count) {
        std::string text = blanks.substr(0, count);
        for (const std::string& token : tokens) {
            text += token + blanks.substr(0, count);
        }
        EXPECT_EQ(test::content_text(parsed(text)), "[1,{\"a\":true,\"b\":[]},null]") << count;
    }
}

TEST(Parser, SkipsAByteOrderMarkAtTheStart) {
    EXPECT_EQ(parsed("\xEF\xBB\xBF[1]"), Value(Elements{1}));
    EXPECT_EQ(parsed("\xEF\xBB\xBF 2"), Value(2));
}

// ---- Strings ---------------------------------------------------------------------------------

TEST(Parser, ReadsStringsOfEveryLength) {
    for (std::size_t length = 0; length != 100; ++length) {
        const std::string text(length, 'x');
        EXPECT_EQ(parsed('"' + text + '"'), Value(text));
        EXPECT_EQ(parsed("[\"" + text + "\"]"), Value(Elements{text}));
        EXPECT_EQ(parsed("{\"" + text + "\":\"" + text + "\"}"), Value(Members{{text, text}}));
    }
}

TEST(Parser, ReadsEscapesWhereverTheyStand) {
    const std::string written = R"(\"\\\/\b\f\n\r\t\u0041\u00e9\u3042\ud83d\ude00\u0000)";
    const std::string meant = bytes("\"\\/\b\f\n\r\tA\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80\0");
    for (std::size_t before = 0; before != 40; ++before) {
        const std::string text(before, 'x');
        EXPECT_EQ(parsed('"' + text + written + text + '"'), Value(text + meant + text));
        EXPECT_EQ(parsed("[\"" + text + written + "\"]"), Value(Elements{text + meant}));
        EXPECT_EQ(parsed("{\"" + text + written + "\":1}"), Value(Members{{text + meant, 1}}));
    }
}

TEST(Parser, ReplacesUnpairedSurrogateEscapes) {
    struct Case {
        const char* written;
        const char* meant;
    };
    const Case cases[] = {
        {R"("\ud800")", "\xEF\xBF\xBD"},
        {R"("\udc00")", "\xEF\xBF\xBD"},
        {R"("\ud800x")", "\xEF\xBF\xBDx"},
        {R"("\ud800\n")", "\xEF\xBF\xBD\n"},
        {R"("\ud800\u0041")", "\xEF\xBF\xBD"
                              "A"},
        {R"("\ud800\ud800")", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {R"("\ud800\ud800\udc00")", "\xEF\xBF\xBD\xF0\x90\x80\x80"},
        {R"("\udc00\ud800")", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {R"("\uDBFF\uDFFF")", "\xF4\x8F\xBF\xBF"},
        {R"("\ud7ff\ue000\uffff")", "\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"},
        {R"("\u007f\u0080\u07ff\u0800")", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parsed(c.written), Value(c.meant)) << c.written;
    }
}

TEST(Parser, KeepsWellFormedUtf8AsItIs) {
    const std::string texts[] = {"\x7F",         "\xC2\x80",         "\xDF\xBF",
                                 "\xE0\xA0\x80", "\xED\x9F\xBF",     "\xEE\x80\x80",
                                 "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF",
                                 "\xEF\xBB\xBF", "\xE2\x80\xA8"};
    for (const std::string& text : texts) {
        for (std::size_t before = 0; before != 20; ++before) {
            const std::string whole = std::string(before, 'x') + text + text + "y";
            EXPECT_EQ(parsed('"' + whole + '"'), Value(whole));
            EXPECT_EQ(parsed("{\"" + whole + "\":\"" + text + "\"}"),
                      Value(Members{{whole, text}}));
        }
    }
}

// ---- Names -----------------------------------------------------------------------------------

TEST(Parser, TheLastOfEqualNamesWins) {
    EXPECT_EQ(parsed(R"({"a":1,"b":2,"a":3})"), Value(Members{{"a", 3}, {"b", 2}}));
    EXPECT_EQ(parsed(R"({"a":[1],"a":"x","\u0061":{"b":1}})"),
              Value(Members{{"a", Members{{"b", 1}}}}));
    EXPECT_EQ(parsed(R"({"a":{"b":1},"a":[]})"), Value(Members{{"a", Elements{}}}));
    EXPECT_EQ(parsed(R"({"a":{"b":1},"a":{}})"), Value(Members{{"a", Members{}}}));
    EXPECT_EQ(parsed(R"({"a":"long enough to be allocated","a":"x"})"), Value(Members{{"a", "x"}}));
}

TEST(Parser, MembersOfEveryKindMayHaveAnyName) {
    const std::string contents[] = {
        "null",  "true",    "1.5", "9007199254740993", "18446744073709551615",
        "\"a\"", "\"\\n\"", "[1]", "{\"c\":2}"};
    for (const std::string& first : contents) {
        for (const std::string& last : contents) {
            const std::string result = serialize(parsed("{\"a\":" + last + ",\"b\":" + last + "}"));
            // A name with and without escapes, for a new member and for one that exists.
            EXPECT_EQ(serialize(parsed("{\"a\":" + first + ",\"\\u0062\":" + first +
                                       ",\"\\u0061\":" + last + ",\"b\":" + last + "}")),
                      result);
            EXPECT_EQ(serialize(parsed("{\"\\u0061\":" + first + ",\"b\":" + first +
                                       ",\"a\":" + last + ",\"\\u0062\":" + last + "}")),
                      result);
        }
    }
}

TEST(Parser, NamesDifferInCaseAndInFormsOfTheSameCharacter) {
    ParseOptions options;
    options.duplicate_names = ParseOptions::DuplicateNames::error;
    EXPECT_EQ(parsed("{\"a\":1,\"A\":2,\"\xC3\xA9\":3,\"e\xCC\x81\":4,\"\":5}", options),
              Value(Members{{"a", 1}, {"A", 2}, {"\xC3\xA9", 3}, {"e\xCC\x81", 4}, {"", 5}}));
    EXPECT_EQ(parsed(R"([{"a":1},{"a":{"a":2}}])", options),
              Value(Elements{Members{{"a", 1}}, Members{{"a", Members{{"a", 2}}}}}));
}

// ---- Options ---------------------------------------------------------------------------------

TEST(Parser, SkipsCommentsWhereTheyAreAllowed) {
    ParseOptions options;
    options.comments = true;
    EXPECT_EQ(parsed("// one\n/* two */[ // three\r\n1, /* four\n*/ 2 /**/ ]//", options),
              Value(Elements{1, 2}));
    EXPECT_EQ(parsed("{/*a*/\"k\"/*b*/:/*c*/1/*d*/,//e\n\"l\":2}/*f*/", options),
              Value(Members{{"k", 1}, {"l", 2}}));
    EXPECT_EQ(parsed("/***/1/* * / ** */", options), Value(1));
    EXPECT_EQ(parsed("/*/*/1", options), Value(1));
    EXPECT_EQ(parsed("// \xC3\xA9 \x01\n1 // \xE3\x81\x82", options), Value(1));
    EXPECT_EQ(parsed("[\"// no\", \"/* no */\"]", options), Value(Elements{"// no", "/* no */"}));
    EXPECT_EQ(parsed("// a carriage return ends no comment\r2\n1", options), Value(1));
}

TEST(Parser, SkipsOneTrailingCommaWhereItIsAllowed) {
    ParseOptions options;
    options.trailing_commas = true;
    EXPECT_EQ(parsed("[1,[2],3]", options), Value(Elements{1, Elements{2}, 3}));
    EXPECT_EQ(parsed("{\"a\":1,\"b\":{},\"c\":2}", options),
              Value(Members{{"a", 1}, {"b", Members{}}, {"c", 2}}));
    EXPECT_EQ(parsed("[1,2,]", options), Value(Elements{1, 2}));
    EXPECT_EQ(parsed("[[],\n]", options), Value(Elements{Value(Elements{})}));
    EXPECT_EQ(parsed("{\"a\":1,}", options), Value(Members{{"a", 1}}));
    EXPECT_EQ(parsed("{\"a\":{ } , }", options), Value(Members{{"a", Members{}}}));
    options.comments = true;
    EXPECT_EQ(parsed("[1, // one\n]", options), Value(Elements{1}));
}

TEST(Parser, AcceptsAsManyLevelsAsAreAllowed) {
    ParseOptions options;
    options.max_depth = 2;
    EXPECT_EQ(parsed("[{\"a\":1},[],2]", options),
              Value(Elements{Members{{"a", 1}}, Elements{}, 2}));
    options.max_depth = 0;
    EXPECT_EQ(parsed("1", options), Value(1));
    const std::string thousand = std::string(1000, '[') + std::string(1000, ']');
    EXPECT_EQ(test::content_text(parsed(thousand)), thousand);
}

// ---- Length and place ------------------------------------------------------------------------

// Under Wine, all of these take minutes.
#ifdef _WIN32
constexpr int every_so_many = 5;
#else
constexpr int every_so_many = 1;
#endif

TEST(Parser, ReadsArraysOfEveryLength) {
    std::vector<std::size_t> lengths{3000};
    for (const std::size_t first : {1U, 60U, 120U, 250U, 505U, 760U, 1020U}) {
        for (std::size_t length = first; length != first + 15; length += every_so_many) {
            lengths.push_back(length);
        }
    }
    for (const std::size_t length : lengths) {
        std::string text = "[0";
        std::string nested = "[[0,\"a,]\"]";
        Elements elements{0};
        Elements lists{Value(Elements{0, "a,]"})};
        for (std::size_t i = 1; i != length; ++i) {
            const int number = static_cast<int>(i);
            text += ',' + std::to_string(i);
            nested += ",[" + std::to_string(i) + ",\"a,]\"]";
            elements.emplace_back(number);
            lists.emplace_back(Elements{number, "a,]"});
        }
        EXPECT_EQ(parse(text + "]"), Value(elements)) << length;
        EXPECT_EQ(parse(nested + "]"), Value(lists)) << length;
        EXPECT_EQ(parsed("{\"a\":" + text + "],\"b\":[" + nested + "]]}"),
                  Value(Members{{"a", elements}, {"b", Elements{Value(lists)}}}))
            << length;
    }
}

TEST(Parser, ReadsLongArraysWithinLongArrays) {
    const auto long_array = [](const std::string& element, int count) {
        std::string text = "[" + element;
        for (int i = 1; i < count; ++i) {
            text += "," + element;
        }
        return text + "]";
    };
    const std::string inner = long_array("[1,2]", 700);
    const std::string zeros = long_array("0", 300);
    const std::string texts[] = {
        long_array(inner, 3),
        "[" + zeros.substr(1, zeros.size() - 2) + "," + inner + "," + inner + ",3]",
        long_array("{\"a\":[],\"b\":\"]\\\"[\"}", 1000),
        long_array("{\"a\":" + inner + "}", 5),
        long_array("\"\\\\\"", 1000),
        long_array(long_array(long_array("1", 300), 2), 300 / every_so_many),
    };
    for (const std::string& text : texts) {
        EXPECT_TRUE(test::content_text(parsed(text)) == text) << text.substr(0, 40);
    }
}

TEST(Parser, SkipsCommentsInLongArrays) {
    ParseOptions options;
    options.comments = true;
    const std::string comments[] = {"/**/",          "/*,[{\"*/", "/* // */", "//,]}\n",
                                    "// \"[\n",      "/***/",     "/*/,*/",   "// a\r b ,\n/* c */",
                                    "/* * / , ** */"};
    for (const std::string& comment : comments) {
        std::string text = "[";
        std::string nested = "[";
        std::string meant = "[";
        for (int i = 0; i != 600; ++i) {
            text += comment + "[1" + comment + ",2]" + comment + (i == 599 ? "" : ",");
            meant += i == 599 ? "[1,2]" : "[1,2],";
        }
        EXPECT_EQ(serialize(parsed(text + "]" + comment, options)), meant + "]") << comment;
    }
}

TEST(Parser, ReadsALongArrayDeepWithinManyShortOnes) {
    std::string text;
    for (int level = 0; level != 15; ++level) {
        text += "[";
        for (int i = 0; i != 255; ++i) {
            text += "1,";
        }
    }
    text += "[2";
    for (int i = 1; i != 600; ++i) {
        text += ",2";
    }
    text += std::string(16, ']');
    EXPECT_EQ(serialize(parsed(text)), text);
}

TEST(Parser, ALongArrayWithAnErrorFailsAsAShortOneDoes) {
    std::string text = "[1";
    for (int i = 1; i != 1000; ++i) {
        text += ",1";
    }
    const struct {
        std::string rest;
        std::size_t behind;
    } cases[] = {{std::string(100000, ','), 1},
                 {"", 0},
                 {",\"", 2},
                 {",[[[[{{{{", 6},
                 {"]]", 1},
                 {",\"\\", 3},
                 {",\"\xC3\xA9\x01", 4},
                 {",/", 1},
                 {",/*", 1},
                 {"},1", 0},
                 {",\"a" + std::string(40, 'b'), 43}};
    const auto expect_failure_behind = [&text](std::size_t count, const std::string& rest,
                                               const ParseOptions& options) {
        try {
            parsed(text + rest, options);
            ADD_FAILURE() << rest.substr(0, 10);
        } catch (const ParserException& error) {
            EXPECT_EQ(error.get_byte_position(), text.size() + count) << rest.substr(0, 10);
        }
    };
    for (const auto& c : cases) {
        expect_failure_behind(c.behind, c.rest, {});
    }
    ParseOptions options;
    options.comments = true;
    expect_failure_behind(2, ",/", options);
    expect_failure_behind(2, ",/x]", options);
    expect_failure_behind(3, ",//", options);
    expect_failure_behind(3, ",/*", options);
    expect_failure_behind(5, ",/* *", options);
}

/// Texts with every kind of token, complete and cut off.
const char* const texts[] = {
    "1",
    "-0.5",
    "123456789012345678",
    "1234567890.123456789e-5",
    "\"\"",
    "\"a\"",
    "\"abcdefghijklmnopqrstuvwxyz\"",
    "\"\xE3\x81\x82\"",
    "\"\\u0041\"",
    "[]",
    "[1,2,3]",
    "{\"name\":\"value\"}",
    "null",
    "true",
    "false",
    "  [ 1 , null ]   ",
    "-12.34",
    "0",
    "12345678",
    "0.12345678",
    "\"\xC3\xA9",
    "\"\\u00",
    "[1,2",
    "-",
    "1.",
    "1e",
    "1e+",
    "nul",
    "{\"a\"",
    "[\"a\",",
    "12345678.",
    "\"abcdefghijklmno",
    "/",
    "// comment",
    "/* comment",
    "[ /",
};

TEST(Parser, ReadsNoByteBeforeOrAfterTheText) {
    const EdgeMemory memory;
    ParseOptions options;
    for (const bool comments : {false, true}) {
        options.comments = comments;
        for (const std::string_view text : texts) {
            const auto result = [&options](std::string_view place) {
                try {
                    return test::content_text(parsed(place, options));
                } catch (const ParserException& error) {
                    return describe(error);
                }
            };
            char* const last = memory.end() - text.size();
            std::copy(text.begin(), text.end(), last);
            const std::string at_the_end = result({last, text.size()});
            std::copy(text.begin(), text.end(), memory.begin());
            EXPECT_EQ(result({memory.begin(), text.size()}), at_the_end) << text;
            EXPECT_EQ(result(std::string(text)), at_the_end) << text;
        }
    }
}

} // namespace
} // namespace foundation::json::test
