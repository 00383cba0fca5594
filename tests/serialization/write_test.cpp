/// @file
/// The text of write(): layout, strings, numbers, and what the options change in it.
#include <foundation/json/write.hpp>

#include "support/locales.hpp"
#include "support/nested.hpp"
#include "support/stringify.hpp"
#include "support/write_outcome.hpp"

#include <foundation/json/builders.hpp>

#include <gtest/gtest.h>

#include <cfenv>
#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <string>
#include <type_traits>

namespace foundation::json {
namespace {

using test::write_error;
using BadUtf8 = WriteOptions::BadUtf8;
using BigIntegers = WriteOptions::BigIntegers;
using MemberOrder = WriteOptions::MemberOrder;
using NotFinite = WriteOptions::NotFinite;

struct Case {
    Value value;
    std::string text;
};

// ---- Layout --------------------------------------------------------------------------------

TEST(Write, PutsEverythingOnOneLine) {
    const Case cases[] = {
        {Null(), "null"},
        {true, "true"},
        {false, "false"},
        {7, "7"},
        {-2.5, "-2.5"},
        {0.1f, "0.1"},
        {-9000000000LL, "-9000000000"},
        {18000000000000000000ULL, "18000000000000000000"},
        {"text", "\"text\""},
        {"", "\"\""},
        {Array{}, "[]"},
        {Object{}, "{}"},
        {Array{1, Array{}, Array{Array{}, "a"}}, R"([1,[],[[],"a"]])"},
        {Object{{"a", 1}, {"b", Object{{"c", Array{true, Null()}}}}},
         R"({"a":1,"b":{"c":[true,null]}})"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(write(value), text);
    }
}

TEST(Write, IndentsByTheSpacesThatAreAskedFor) {
    const Value value(Object{{"a", Array{1, Array{}, Object{}, Array{2, "x"}}}, {"b", Null()}});
    EXPECT_EQ(write(value, WriteOptions::indented(2)), "{\n"
                                                       "  \"a\": [\n"
                                                       "    1,\n"
                                                       "    [],\n"
                                                       "    {},\n"
                                                       "    [\n"
                                                       "      2,\n"
                                                       "      \"x\"\n"
                                                       "    ]\n"
                                                       "  ],\n"
                                                       "  \"b\": null\n"
                                                       "}");
    EXPECT_EQ(write(Array{Value(Array{1})}, WriteOptions::indented(1)), "[\n [\n  1\n ]\n]");
    EXPECT_EQ(write(Array{}, WriteOptions::indented(4)), "[]");
    EXPECT_EQ(write("x", WriteOptions::indented(4)), "\"x\"");
}

TEST(Write, IndentsByTenSpacesAtMost) {
    const std::string ten = write(Array{Value(Array{1})}, WriteOptions::indented(10));
    EXPECT_EQ(ten, "[\n          [\n                    1\n          ]\n]");
    for (const unsigned more : {11U, 100U, std::numeric_limits<unsigned>::max()}) {
        EXPECT_EQ(write(Array{Value(Array{1})}, WriteOptions::indented(more)), ten);
    }
}

TEST(Write, IndentsAnyDepth) {
    const std::size_t depth = 300;
    const Value value = test::within_arrays(1, depth);
    for (const unsigned spaces : {1U, 7U, 10U}) {
        EXPECT_EQ(write(value, WriteOptions::indented(spaces)),
                  test::stringified(value, WriteOptions::indented(spaces)));
    }
}

TEST(Write, WritesMembersByTheBytesOfTheirNames) {
    const Value value(Object{{"b", 1}, {"a", 2}, {"B", 3}, {"", 4}, {"\xC3\xA9", 5}});
    EXPECT_EQ(write(value), "{\"\":4,\"B\":3,\"a\":2,\"b\":1,\"\xC3\xA9\":5}");
}

TEST(Write, LeavesUndefinedMembersOutAndMakesUndefinedElementsNull) {
    EXPECT_EQ(write(Array{Undefined(), 1, Undefined()}), "[null,1,null]");
    const Undefined none;
    EXPECT_EQ(write(Object{{"a", none}}), "{}");
    EXPECT_EQ(write(Object{{"a", none}, {"b", 1}, {"c", none}, {"d", 2}, {"e", none}}),
              R"({"b":1,"d":2})");
    const Value value(Object{{"a", none}, {"b", Object{{"c", none}}}, {"d", Array{none}}});
    EXPECT_EQ(write(value), R"({"b":{},"d":[null]})");
    EXPECT_EQ(write(value, WriteOptions::indented(2)),
              "{\n  \"b\": {},\n  \"d\": [\n    null\n  ]\n}");
}

TEST(Write, IsNoTextForUndefinedAlone) {
    for (const WriteOptions& options : {WriteOptions(), WriteOptions::canonical()}) {
        EXPECT_EQ(write_error([&] { static_cast<void>(write(Value(), options)); }),
                  "at the root: Undefined has no JSON text");
    }
}

TEST(Write, DoesNotChangeWhatALookupHasInserted) {
    Value value(Object{});
    static_cast<void>(value["missing"]);
    EXPECT_EQ(write(value), "{}");
}

// ---- Strings -------------------------------------------------------------------------------

TEST(Write, EscapesWhatJsonDemandsAndNothingElse) {
    std::string controls;
    for (char byte = 0; byte < 0x20; ++byte) {
        controls += byte;
    }
    EXPECT_EQ(write(controls), R"("\u0000\u0001\u0002\u0003\u0004\u0005\u0006\u0007\b\t\n\u000b\f)"
                               R"(\r\u000e\u000f\u0010\u0011\u0012\u0013\u0014\u0015\u0016\u0017)"
                               R"(\u0018\u0019\u001a\u001b\u001c\u001d\u001e\u001f")");
    EXPECT_EQ(write("\"a\\b/c\x7F</script>"), "\"\\\"a\\\\b/c\x7F</script>\"");
    const std::string beyond =
        "caf\xC3\xA9 \xE2\x80\xA8 \xE6\x97\xA5 \xF0\x9F\x99\x82 \xEF\xBF\xBF";
    EXPECT_EQ(write(beyond), '"' + beyond + '"');
    EXPECT_EQ(write(Object{{"a/\"b\"\n", 1}}), R"({"a/\"b\"\n":1})");
}

TEST(Write, EscapesAtEveryPositionOfStringsOfEveryLength) {
    for (const std::size_t size :
         {1U, 3U, 8U, 15U, 16U, 17U, 31U, 33U, 100U, 255U, 256U, 257U, 513U}) {
        for (const std::string& piece :
             {std::string("\""), std::string("\x01"), std::string("/"), std::string("\xC3\xA9"),
              std::string("\xF0\x9F\x99\x82")}) {
            for (std::size_t at = 0; at + piece.size() <= size && !HasFailure();
                 at += size > 64 ? 13 : 1) {
                std::string text(size, 'x');
                text.replace(at, piece.size(), piece);
                EXPECT_EQ(write(text), test::stringified(text));
                WriteOptions options;
                options.ascii = true;
                options.escape_slash = true;
                EXPECT_EQ(write(text, options), test::stringified(text, options));
            }
        }
    }
}

TEST(Write, TakesStringsOfAnyLength) {
    for (const std::size_t size : {4000U, 4095U, 4096U, 5000U, 70000U}) {
        const std::string clean(size, 'x');
        EXPECT_EQ(write(clean), '"' + clean + '"');
        EXPECT_EQ(write(clean + "\n"), '"' + clean + "\\n\"");
        EXPECT_EQ(write(std::string(size, '"')), test::stringified(std::string(size, '"')));
        EXPECT_EQ(write(Array{clean, clean + "\xC3\xA9", 1}),
                  "[\"" + clean + "\",\"" + clean + "\xC3\xA9\",1]");
    }
}

TEST(Write, CanKeepToAscii) {
    WriteOptions options;
    options.ascii = true;
    EXPECT_EQ(write("caf\xC3\xA9", options), R"("caf\u00e9")");
    EXPECT_EQ(write("\xE2\x80\xA8\xEF\xBF\xBF", options), R"("\u2028\uffff")");
    EXPECT_EQ(write("\xF0\x9F\x99\x82 \xF4\x8F\xBF\xBF", options),
              R"("\ud83d\ude42 \udbff\udfff")");
    EXPECT_EQ(write("\x7F~/\"", options), "\"\x7F~/\\\"\"");
    EXPECT_EQ(write(Object{{"\xC3\xA9\n", 1}}, options), R"({"\u00e9\n":1})");
}

TEST(Write, CanEscapeTheSlash) {
    WriteOptions options;
    options.escape_slash = true;
    EXPECT_EQ(write("</script>", options), R"("<\/script>")");
    EXPECT_EQ(write(Object{{"a/b", "\xC3\xA9/"}}, options), "{\"a\\/b\":\"\xC3\xA9\\/\"}");
    options.ascii = true;
    EXPECT_EQ(write("\xC3\xA9/", options), R"("\u00e9\/")");
}

// ---- Strings that are not UTF-8 ------------------------------------------------------------

TEST(Write, RefusesWhatIsNotUtf8) {
    const struct {
        std::string text;
        const char* problem;
    } rows[] = {
        {"caf\xE9", "found byte 0xE9 after \"caf\""},
        {"\xFF", "found byte 0xFF at its beginning"},
        {"caf\xC3", "found byte 0xC3 after \"caf\""},
        {"\xED\xA0\x80", "found byte 0xED at its beginning"},
        {"\n\x80", R"(found byte 0x80 after "\u000a")"},
        {"12345678901234567890\x80", "found byte 0x80 after \"12345678901234567890\""},
        {"123456789012345678901\x80", "found byte 0x80 after ...\"23456789012345678901\""},
        {"\xC3\xA9"
         "1234567890123456789\x80",
         "found byte 0x80 after ...\"1234567890123456789\""},
        {std::string(5000, 'x') + "\xC1", "found byte 0xC1 after ...\"xxxxxxxxxxxxxxxxxxxx\""},
    };
    for (const auto& [text, problem] : rows) {
        const std::string expected = std::string("at /a/1: the string is not UTF-8: ") + problem +
                                     ": the option bad_utf8 allows it";
        const Value value(Object{{"a", Array{"good", text}}});
        EXPECT_EQ(write_error([&] { static_cast<void>(write(value)); }), expected);
        WriteOptions options;
        options.ascii = true;
        EXPECT_EQ(write_error([&] { static_cast<void>(write(value, options)); }), expected);
    }
}

TEST(Write, RefusesNamesThatAreNotUtf8AtTheLocationOfTheirObject) {
    const Value value(Object{{"a", Array{Object{{"b\xE9", 1}}}}});
    EXPECT_EQ(write_error([&] { static_cast<void>(write(value)); }),
              "at /a/0: a member name is not UTF-8: found byte 0xE9 after \"b\": "
              "the option bad_utf8 allows it");
}

TEST(Write, CanReplaceWhatIsNotUtf8) {
    WriteOptions options;
    options.bad_utf8 = BadUtf8::replace;
    const struct {
        std::string text;
        std::string replaced;
    } rows[] = {
        {"caf\xE9", "caf\xEF\xBF\xBD"},
        {"\xFF\xFE", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xE6\x97", "\xEF\xBF\xBD"}, // cut off: one character
        {"\xE6\x97x", "\xEF\xBF\xBDx"},
        {"\xF0\x9F\x99 \xC3\xA9", "\xEF\xBF\xBD \xC3\xA9"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\"\xE9\n", "\\\"\xEF\xBF\xBD\\n"},
    };
    for (const auto& [text, replaced] : rows) {
        EXPECT_EQ(write(text, options), '"' + replaced + '"');
        EXPECT_EQ(write(Object{{text, text}}, options),
                  "{\"" + replaced + "\":\"" + replaced + "\"}");
    }
    options.ascii = true;
    EXPECT_EQ(write("\xE9\xC3\xA9", options), R"("\ufffd\u00e9")");
}

TEST(Write, CanKeepWhatIsNotUtf8) {
    WriteOptions options;
    options.bad_utf8 = BadUtf8::keep;
    EXPECT_EQ(write("caf\xE9\"\xFF", options), "\"caf\xE9\\\"\xFF\"");
    const std::string bad = std::string(5000, '\xE9') + "/";
    EXPECT_EQ(write(bad, options), '"' + bad + '"');
    options.ascii = true;
    EXPECT_EQ(write("\xE9\xC3\xA9", options), "\"\xE9\\u00e9\"");
}

// ---- Numbers -------------------------------------------------------------------------------

TEST(Write, WritesNumbersAsEcmaScriptDoes) {
    const Case cases[] = {
        {1763781000016.0, "1763781000016"},
        {1000000, "1000000"},
        {1e20, "100000000000000000000"},
        {1e21, "1e+21"},
        {-0.0, "0"},
        {0.1 + 0.2, "0.30000000000000004"},
        {1e-6, "0.000001"},
        {1e-7, "1e-7"},
        {5e-324, "5e-324"},
        {0.1f, "0.1"},
        {-0.0f, "0"},
        {3.4028235e38f, "3.4028235e+38"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(write(value), text);
    }
}

TEST(Write, RefusesNumbersThatAreNotFinite) {
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        Value value;
        const char* name;
    } rows[] = {
        {std::nan(""), "NaN"},
        {-std::nan(""), "NaN"},
        {infinity, "Infinity"},
        {-infinity, "-Infinity"},
        {std::nanf(""), "NaN"},
        {static_cast<float>(infinity), "Infinity"},
        {static_cast<float>(-infinity), "-Infinity"},
    };
    for (const auto& [value, name] : rows) {
        EXPECT_EQ(write_error([&, v = value] {
                      static_cast<void>(write(Object{{"a/b~", Array{1, v}}}));
                  }),
                  std::string("at /a~1b~0/1: ") + name +
                      " is not a JSON number: the option not_finite allows it");
        WriteOptions options;
        options.not_finite = NotFinite::null;
        EXPECT_EQ(write(value, options), "null");
        options.not_finite = NotFinite::string;
        EXPECT_EQ(write(value, options), std::string("\"") + name + '"');
    }
}

TEST(Write, WritesIntegersWithAllDigits) {
    EXPECT_EQ(write(std::numeric_limits<long long>::min()), "-9223372036854775808");
    EXPECT_EQ(write(std::numeric_limits<unsigned long long>::max()), "18446744073709551615");
    EXPECT_EQ(write(9007199254740993LL), "9007199254740993");
}

TEST(Write, CanWriteIntegersBeyond2To53AsStrings) {
    WriteOptions options;
    options.big_integers = BigIntegers::string;
    const Case cases[] = {
        {9007199254740992LL, "9007199254740992"},
        {9007199254740993LL, R"("9007199254740993")"},
        {-9007199254740992LL, "-9007199254740992"},
        {-9007199254740993LL, R"("-9007199254740993")"},
        {9007199254740992ULL, "9007199254740992"},
        {9007199254740993ULL, R"("9007199254740993")"},
        {std::numeric_limits<long long>::min(), R"("-9223372036854775808")"},
        {std::numeric_limits<unsigned long long>::max(), R"("18446744073709551615")"},
        {1e20, "100000000000000000000"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(write(value, options), text);
    }
}

TEST(Write, CanWriteIntegersAsTheDoublesTheyEqual) {
    WriteOptions options;
    options.big_integers = BigIntegers::as_double;
    const Case cases[] = {
        {9007199254740992LL, "9007199254740992"},
        {9007199254740994LL, "9007199254740994"},
        {-9007199254740994LL, "-9007199254740994"},
        {1152921504606846976LL, "1152921504606847000"},
        {std::numeric_limits<long long>::min(), "-9223372036854776000"},
        {18446744073709549568ULL, "18446744073709550000"},
        {0LL, "0"},
        {0ULL, "0"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(write(value, options), text);
    }
    EXPECT_EQ(write_error([&] { static_cast<void>(write(9007199254740993LL, options)); }),
              "at the root: no double equals 9007199254740993: the option big_integers allows it");
    EXPECT_EQ(write_error([&] { static_cast<void>(write(-9007199254740993LL, options)); }),
              "at the root: no double equals -9007199254740993: the option big_integers allows it");
    EXPECT_EQ(write_error([&] {
                  static_cast<void>(write(std::numeric_limits<unsigned long long>::max(), options));
              }),
              "at the root: no double equals 18446744073709551615: "
              "the option big_integers allows it");
}

TEST(Write, DependsOnNoLocaleAndNoRoundingDirection) {
    const Value value(Array{1.5, 1e-9f, 1234567LL, "\x01", Object{{"a", 0.1}}});
    const std::string text = R"([1.5,1e-9,1234567,"\u0001",{"a":0.1}])";
    {
        const test::ScopedCLocale c_locale(LC_ALL, "de_DE.UTF-8");
        ASSERT_TRUE(c_locale.succeeded());
        const std::locale previous = std::locale::global(std::locale("de_DE.UTF-8"));
        EXPECT_EQ(write(value), text);
        std::locale::global(previous);
    }
    for (const int direction : test::directions()) {
        const test::EnvironmentKeeper keeper;
        std::fesetround(direction);
        EXPECT_EQ(write(value), text);
    }
}

// ---- The order of members ------------------------------------------------------------------

TEST(Write, CanSortMembersByUtf16) {
    WriteOptions options;
    options.member_order = MemberOrder::utf16;
    const std::string pair = "\xF0\x9F\x99\x82";       // D83D DE42
    const std::string other_pair = "\xF0\x90\x80\x80"; // D800 DC00
    const std::string private_use = "\xEE\x80\x80";    // E000
    const std::string wide = "\xEF\xBC\xA1";           // FF21
    const std::string hangul = "\xED\x9F\xBF";         // D7FF
    const Value value(Object{{pair, 1},
                             {wide, 2},
                             {private_use, 3},
                             {hangul, 4},
                             {"a", 5},
                             {other_pair, 6},
                             {"a" + wide, 7},
                             {"a" + pair, 8}});
    EXPECT_EQ(write(value, options), "{\"a\":5,\"a" + pair + "\":8,\"a" + wide + "\":7,\"" +
                                         hangul + "\":4,\"" + other_pair + "\":6,\"" + pair +
                                         "\":1,\"" + private_use + "\":3,\"" + wide + "\":2}");
    EXPECT_EQ(write(value).find('"' + private_use), write(value).find('"' + hangul) + 8);
}

TEST(Write, SortsObjectsWithinObjects) {
    WriteOptions options = WriteOptions::indented(1);
    options.member_order = MemberOrder::utf16;
    const std::string pair = "\xF0\x9F\x99\x82";
    const std::string wide = "\xEF\xBC\xA1";
    Value value(Object{{wide, 1}, {pair, Undefined()}});
    EXPECT_EQ(write(value, options), "{\n \"" + wide + "\": 1\n}");
    EXPECT_EQ(write(Object{{pair, Undefined()}}, options), "{}");
    for (int i = 0; i < 20; ++i) {
        value = Value(Object{{wide, value}, {pair, Array{value, i}}, {"a", value["a"]}});
        if (i > 4) {
            value[wide] = i;
        }
        EXPECT_EQ(write(value, options), test::stringified(value, options));
    }
}

TEST(Write, ReportsTheFirstErrorInTheOrderOfTheText) {
    const std::string pair = "\xF0\x9F\x99\x82";
    const std::string wide = "\xEF\xBC\xA1";
    const Value value(Object{{wide, std::nan("")}, {pair, std::nan("")}});
    EXPECT_EQ(test::text_or_location([&] { return write(value); }), "error at /" + wide);
    EXPECT_EQ(test::text_or_location([&] { return write(value, WriteOptions::canonical()); }),
              "error at /" + pair);
}

// ---- The canonical form --------------------------------------------------------------------

TEST(Write, HasTheCanonicalFormOfRfc8785) {
    // The example of section 3.2.2, and the order of section 3.2.3.
    const Value value(Object{
        {"numbers", Array{333333333.33333329, 1e30, 4.50, 2e-3, 1e-27}},
        {"string", "\xE2\x82\xAC$\x0F\nA'\x42\"\\\\\"/"},
        {"literals", Array{Null(), true, false}},
    });
    EXPECT_EQ(
        write(value, WriteOptions::canonical()),
        "{\"literals\":[null,true,false],\"numbers\":[333333333.3333333,1e+30,4.5,0.002,1e-27]"
        ",\"string\":\"\xE2\x82\xAC$\\u000f\\nA'B\\\"\\\\\\\\\\\"/\"}");
    const Value names(Object{{"\xE2\x82\xAC", "Euro Sign"},
                             {"\r", "Carriage Return"},
                             {"\xEF\xAC\xB3", "Hebrew Letter Dalet With Dagesh"},
                             {"1", "One"},
                             {"\xF0\x9F\x98\x80", "Emoji: Grinning Face"},
                             {"\xC2\x80", "Control"},
                             {"\xC3\xB6", "Latin Small Letter O With Diaeresis"}});
    EXPECT_EQ(write(names, WriteOptions::canonical()),
              "{\"\\r\":\"Carriage Return\",\"1\":\"One\",\"\xC2\x80\":\"Control\","
              "\"\xC3\xB6\":\"Latin Small Letter O With Diaeresis\",\"\xE2\x82\xAC\":\"Euro Sign\","
              "\"\xF0\x9F\x98\x80\":\"Emoji: Grinning Face\","
              "\"\xEF\xAC\xB3\":\"Hebrew Letter Dalet With Dagesh\"}");
}

TEST(Write, HasTheNumbersOfRfc8785) {
    // Those of appendix B, by their bits.
    const struct {
        std::uint64_t bits;
        const char* text;
    } rows[] = {
        {0x0000000000000000, "0"},
        {0x8000000000000000, "0"},
        {0x0000000000000001, "5e-324"},
        {0x8000000000000001, "-5e-324"},
        {0x7fefffffffffffff, "1.7976931348623157e+308"},
        {0xffefffffffffffff, "-1.7976931348623157e+308"},
        {0x4340000000000000, "9007199254740992"},
        {0xc340000000000000, "-9007199254740992"},
        {0x4430000000000000, "295147905179352830000"},
        {0x44b52d02c7e14af5, "9.999999999999997e+22"},
        {0x44b52d02c7e14af6, "1e+23"},
        {0x44b52d02c7e14af7, "1.0000000000000001e+23"},
        {0x444b1ae4d6e2ef4e, "999999999999999700000"},
        {0x444b1ae4d6e2ef4f, "999999999999999900000"},
        {0x444b1ae4d6e2ef50, "1e+21"},
        {0x3eb0c6f7a0b5ed8c, "9.999999999999997e-7"},
        {0x3eb0c6f7a0b5ed8d, "0.000001"},
        {0x41b3de4355555553, "333333333.3333332"},
        {0x41b3de4355555554, "333333333.33333325"},
        {0x41b3de4355555555, "333333333.3333333"},
        {0x41b3de4355555556, "333333333.3333334"},
        {0x41b3de4355555557, "333333333.33333343"},
        {0xbecbf647612f3696, "-0.0000033333333333333333"},
        {0x43143ff3c1cb0959, "1424953923781206.2"},
    };
    for (const auto& [bits, text] : rows) {
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        EXPECT_EQ(write(number, WriteOptions::canonical()), text);
    }
    EXPECT_THROW(static_cast<void>(write(std::nan(""), WriteOptions::canonical())), WriteError);
    EXPECT_THROW(static_cast<void>(write(HUGE_VAL, WriteOptions::canonical())), WriteError);
}

TEST(Write, HasNoCanonicalFormForSurrogatesOrIntegersThatAreNoDoubles) {
    EXPECT_THROW(static_cast<void>(write("\xED\xA0\x80", WriteOptions::canonical())), WriteError);
    EXPECT_THROW(static_cast<void>(write(9007199254740993LL, WriteOptions::canonical())),
                 WriteError);
}

// ---- The options themselves ----------------------------------------------------------------

TEST(WriteOptions, AreThoseOfJsonStringifyUnlessSet) {
    const WriteOptions options;
    EXPECT_EQ(options.indent, 0U);
    EXPECT_FALSE(options.ascii);
    EXPECT_FALSE(options.escape_slash);
    EXPECT_EQ(options.not_finite, NotFinite::error);
    EXPECT_EQ(options.bad_utf8, BadUtf8::error);
    EXPECT_EQ(options.big_integers, BigIntegers::digits);
    EXPECT_EQ(options.member_order, MemberOrder::as_given);
    EXPECT_TRUE(std::is_trivially_copyable_v<WriteOptions>);
}

TEST(WriteError, KeepsItsLocationWhenCopied) {
    const WriteError error("/a\n/0", "is wrong");
    WriteError copy("", "");
    EXPECT_STREQ(copy.what(), "at the root: ");
    copy = error;
    EXPECT_STREQ(copy.what(), "at /a\\u000a/0: is wrong");
    EXPECT_EQ(copy.pointer(), "/a\n/0");
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<WriteError>);
    EXPECT_TRUE((std::is_base_of_v<std::runtime_error, WriteError>));
}

} // namespace
} // namespace foundation::json
