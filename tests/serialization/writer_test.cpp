/// @file
/// Writer: a text piece by piece, onto a stream or to a string.
#include <foundation/json/write.hpp>

#include "support/probe_stream.hpp"
#include "support/random_options.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"
#include "support/stringify.hpp"
#include "support/write_outcome.hpp"

#include <foundation/json/builders.hpp>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ios>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace foundation::json {
namespace {

using test::write_error;
using Steps = std::function<void(Writer&)>;

/// The text that steps make in a string; onto a stream they must make the same.
std::string text_of(const Steps& steps, const WriteOptions& options = {}) {
    std::string text;
    Writer writer(text, options);
    steps(writer);
    std::ostringstream stream;
    Writer stream_writer(stream, options);
    steps(stream_writer);
    EXPECT_EQ(stream.str(), text);
    return text;
}

/// The what() of the std::logic_error that a call throws.
template <class Call>
std::string logic_error_of(Call call) {
    try {
        call();
    } catch (const std::logic_error& error) {
        EXPECT_EQ(typeid(error), typeid(std::logic_error));
        return error.what();
    }
    return "(no std::logic_error was thrown)";
}

// ---- Texts ---------------------------------------------------------------------------------

TEST(Writer, WritesArraysAndObjects) {
    EXPECT_EQ(text_of([](Writer& w) { w.begin_array().end(); }), "[]");
    EXPECT_EQ(text_of([](Writer& w) { w.begin_object().end(); }), "{}");
    EXPECT_EQ(text_of([](Writer& w) { w.begin_array().value(1).value("x").end(); }), "[1,\"x\"]");
    const Steps steps = [](Writer& w) {
        w.begin_object();
        w.name("a").value(1);
        w.name("b").begin_array().value(2).begin_array().end().begin_object().end().end();
        w.name("c").begin_object().name("d").value(nullptr).end();
        w.end();
    };
    EXPECT_EQ(text_of(steps), R"({"a":1,"b":[2,[],{}],"c":{"d":null}})");
    EXPECT_EQ(text_of(steps, WriteOptions::indented(2)), "{\n"
                                                         "  \"a\": 1,\n"
                                                         "  \"b\": [\n"
                                                         "    2,\n"
                                                         "    [],\n"
                                                         "    {}\n"
                                                         "  ],\n"
                                                         "  \"c\": {\n"
                                                         "    \"d\": null\n"
                                                         "  }\n"
                                                         "}");
}

TEST(Writer, WritesASingleValueOfEveryType) {
    const auto single = [](const auto& content) {
        return text_of([&](Writer& w) { w.value(content); });
    };
    EXPECT_EQ(single(true), "true");
    EXPECT_EQ(single(false), "false");
    EXPECT_EQ(single(nullptr), "null");
    EXPECT_EQ(single(Null()), "null");
    EXPECT_EQ(single(-7), "-7");
    EXPECT_EQ(single(static_cast<short>(-7)), "-7");
    EXPECT_EQ(single(static_cast<signed char>(-7)), "-7");
    EXPECT_EQ(single(static_cast<unsigned char>(200)), "200");
    EXPECT_EQ(single(7U), "7");
    EXPECT_EQ(single(std::size_t{7}), "7");
    EXPECT_EQ(single(std::int64_t{LLONG_MIN}), "-9223372036854775808");
    EXPECT_EQ(single(ULLONG_MAX), "18446744073709551615");
    EXPECT_EQ(single(0.1), "0.1");
    EXPECT_EQ(single(1e21), "1e+21");
    EXPECT_EQ(single(0.1f), "0.1");
    EXPECT_EQ(single("text"), "\"text\"");
    EXPECT_EQ(single(std::string("a\0b", 3)), "\"a\\u0000b\"");
    EXPECT_EQ(single(std::string_view("view")), "\"view\"");
    const char* const pointer = "pointer";
    EXPECT_EQ(single(pointer), "\"pointer\"");
    EXPECT_EQ(single(Value(Array{1, Object{{"a", 2}}})), R"([1,{"a":2}])");
    EXPECT_EQ(single(Array{1, 2}), "[1,2]");
    EXPECT_EQ(single(Object{{"a", 1}}), R"({"a":1})");
    EXPECT_EQ(single((Element(1), Element("x"))), "[1,\"x\"]");
    EXPECT_EQ(single(Property("a") = 1), R"({"a":1})");
    EXPECT_EQ(text_of([](Writer& w) { w.value(Value() || Value(3)); }), "3");
}

TEST(Writer, WritesValuesAtTheirLevel) {
    const Value value(Object{{"a", Array{1, Array{}}}});
    EXPECT_EQ(text_of([&](Writer& w) { w.begin_array().value(value).value(Array{2}).end(); },
                      WriteOptions::indented(1)),
              "[\n {\n  \"a\": [\n   1,\n   []\n  ]\n },\n [\n  2\n ]\n]");
}

TEST(Writer, TakesRawJsonAsAValue) {
    EXPECT_EQ(text_of([](Writer& w) {
                  w.begin_object().name("a").raw("[ 1, 2 ]").name("b").raw("1.0E+6").end();
              }),
              R"({"a":[ 1, 2 ],"b":1.0E+6})");
    EXPECT_EQ(text_of([](Writer& w) { w.begin_array().raw("1").raw("2").end(); },
                      WriteOptions::indented(2)),
              "[\n  1,\n  2\n]");
    const std::string large(50000, ' ');
    EXPECT_EQ(text_of([&](Writer& w) { w.raw(large + "1"); }), large + "1");
}

TEST(Writer, GoesByTheOptions) {
    WriteOptions options;
    options.ascii = true;
    options.escape_slash = true;
    options.not_finite = WriteOptions::NotFinite::string;
    options.bad_utf8 = WriteOptions::BadUtf8::replace;
    options.big_integers = WriteOptions::BigIntegers::string;
    EXPECT_EQ(text_of(
                  [](Writer& w) {
                      w.begin_object();
                      w.name("\xC3\xA9/").value("\xFF");
                      w.name("b").value(std::nan(""));
                      w.name("c").value(ULLONG_MAX);
                      w.name("d").value(Array{HUGE_VAL, -HUGE_VALF, LLONG_MIN});
                      w.end();
                  },
                  options),
              R"({"\u00e9\/":"\ufffd","b":"NaN","c":"18446744073709551615",)"
              R"("d":["Infinity","-Infinity","-9223372036854775808"]})");
}

TEST(Writer, LeavesUndefinedMembersOut) {
    const Steps steps = [](Writer& w) {
        w.begin_object();
        w.name("a").value(Undefined());
        w.name("b").value(1).name("c").value(Value());
        w.name(std::string(20000, 'x')).value(Undefined());
        w.name("d").begin_array().value(Undefined()).value(Value()).end();
        w.name("e").value(Value());
        w.end();
    };
    EXPECT_EQ(text_of(steps), R"({"b":1,"d":[null,null]})");
    EXPECT_EQ(text_of(steps, WriteOptions::indented(1)),
              "{\n \"b\": 1,\n \"d\": [\n  null,\n  null\n ]\n}");
    EXPECT_EQ(text_of([](Writer& w) { w.begin_object().name("a").value(Undefined()).end(); },
                      WriteOptions::indented(2)),
              "{}");
}

TEST(Writer, TakesNamesAndStringsOfAnyLength) {
    for (const std::size_t size : {300U, 600U, 4095U, 4096U, 8192U, 100000U}) {
        for (const std::string& piece :
             {std::string("x"), std::string("\n"), std::string("\xC3\xA9")}) {
            std::string text;
            while (text.size() < size) {
                text += piece;
            }
            const Value value(Object{{"", 1}, {text, text}});
            EXPECT_EQ(text_of([&](Writer& w) {
                          w.begin_object().name("").value(1).name(text).value(text).end();
                      }),
                      write(value));
        }
    }
}

TEST(Writer, AppendsToTheString) {
    std::string text = "before ";
    Writer(text).begin_array().value(1).end();
    EXPECT_EQ(text, "before [1]");
}

TEST(Writer, HasPassedTheWholeTextOnOnceItIsComplete) {
    std::string text;
    Writer writer(text);
    writer.begin_array().value(1);
    writer.end();
    EXPECT_EQ(text, "[1]");
    test::ProbeStream stream;
    Writer(stream).value("x");
    EXPECT_EQ(stream.log(), "\"x\"");
}

TEST(Writer, CanWriteOneTextAfterTheOther) {
    std::ostringstream stream;
    Writer writer(stream);
    for (int i = 0; i < 3; ++i) {
        writer.begin_object().name("i").value(i).end().finish();
        stream << '\n';
    }
    writer.value(7).finish();
    EXPECT_EQ(stream.str(), "{\"i\":0}\n{\"i\":1}\n{\"i\":2}\n7");
}

TEST(Writer, NestsAsDeepAsMemoryGoes) {
    std::string text;
    Writer writer(text);
    const int depth = 100000;
    for (int i = 0; i < depth; ++i) {
        if (i % 2 == 0) {
            writer.begin_array();
        } else {
            writer.begin_object().name("n");
        }
    }
    writer.value(1);
    for (int i = 0; i < depth; ++i) {
        writer.end();
    }
    std::string expected;
    for (int i = 0; i < depth / 2; ++i) {
        expected += "[{\"n\":";
    }
    expected += '1';
    for (int i = 0; i < depth / 2; ++i) {
        expected += "}]";
    }
    EXPECT_EQ(text, expected);
}

// ---- Misuse --------------------------------------------------------------------------------

/// What each call says that does not fit behind the steps; nothing for those that fit.
void expect_refusals(const Steps& steps, const std::string& location, const std::string& where,
                     const std::string& fitting) {
    const struct {
        std::string name;
        Steps call;
    } calls[] = {
        {"value()", [](Writer& w) { w.value(1); }},
        {"value()", [](Writer& w) { w.value("x"); }},
        {"value()", [](Writer& w) { w.value(nullptr); }},
        {"value()", [](Writer& w) { w.value(true); }},
        {"value()", [](Writer& w) { w.value(0.5); }},
        {"value()", [](Writer& w) { w.value(Value(1)); }},
        {"value()", [](Writer& w) { w.value(Array{}); }},
        {"raw()", [](Writer& w) { w.raw("1"); }},
        {"begin_array()", [](Writer& w) { w.begin_array(); }},
        {"begin_object()", [](Writer& w) { w.begin_object(); }},
        {"name()", [](Writer& w) { w.name("n"); }},
        {"end()", [](Writer& w) { w.end(); }},
        {"finish()", [](Writer& w) { w.finish(); }},
    };
    for (const auto& [name, call] : calls) {
        std::string text;
        Writer writer(text);
        steps(writer);
        const std::string before = text;
        const bool fits = fitting.find(' ' + name) != std::string::npos;
        EXPECT_EQ(logic_error_of([&, c = call] { c(writer); }),
                  fits ? "(no std::logic_error was thrown)"
                       : "at " + location + ": " + name + where);
        if (!fits) {
            EXPECT_EQ(text, before);
        }
    }
}

TEST(Writer, RefusesCallsThatDoNotFitAndSaysWhatIsExpected) {
    const std::string values = " value() raw() begin_array() begin_object()";
    const auto nothing = [](Writer&) {};
    expect_refusals(nothing, "the root", " where a value is expected", values);
    expect_refusals([](Writer& w) { w.begin_array(); }, "/0", " where a value or end() is expected",
                    values + " end()");
    expect_refusals([](Writer& w) { w.begin_array().value(1).value(2); }, "/2",
                    " where a value or end() is expected", values + " end()");
    expect_refusals([](Writer& w) { w.begin_object(); }, "the root",
                    " where name() or end() is expected", " name() end()");
    expect_refusals([](Writer& w) { w.begin_object().name("a").value(1); }, "the root",
                    " where name() or end() is expected", " name() end()");
    expect_refusals([](Writer& w) { w.begin_object().name("a/b"); }, "/a~1b",
                    " where a value is expected", values);
    expect_refusals(
        [](Writer& w) {
            w.begin_object().name("a").begin_array().value(1).begin_object().name("x").value(1);
            w.name("b~").begin_array();
        },
        "/a/1/b~0/0", " where a value or end() is expected", values + " end()");
    expect_refusals([](Writer& w) { w.value(1); }, "the root",
                    " after the end of the text: finish() begins another", " finish()");
    expect_refusals([](Writer& w) { w.begin_array().end(); }, "the root",
                    " after the end of the text: finish() begins another", " finish()");
    expect_refusals(
        [](Writer& w) {
            w.value(1);
            w.finish();
        },
        "the root", " where a value is expected", values);
}

TEST(Writer, GoesOnAfterACallThatDoesNotFit) {
    std::string text;
    Writer writer(text);
    EXPECT_THROW(writer.end(), std::logic_error);
    writer.begin_object();
    EXPECT_THROW(writer.value(1), std::logic_error);
    EXPECT_THROW(writer.value(Undefined()), std::logic_error);
    EXPECT_THROW(writer.finish(), std::logic_error);
    writer.name("a");
    EXPECT_THROW(writer.name("b"), std::logic_error);
    EXPECT_THROW(writer.end(), std::logic_error);
    writer.value(1).end();
    EXPECT_THROW(writer.value(1), std::logic_error);
    EXPECT_THROW(writer.end(), std::logic_error);
    writer.finish();
    EXPECT_EQ(text, R"({"a":1})");
}

// ---- Errors --------------------------------------------------------------------------------

void begin_somewhere(Writer& writer) {
    writer.begin_array().value(0).begin_object().name("A").value(1).name("a/b");
}

TEST(Writer, NamesTheLocationOfAnError) {
    const auto error_of = [](const Steps& steps) {
        return write_error([&] {
            std::string text;
            Writer writer(text, WriteOptions::canonical());
            begin_somewhere(writer);
            steps(writer);
        });
    };
    EXPECT_EQ(error_of([](Writer& w) { w.value(std::nan("")); }),
              "at /1/a~1b: NaN is not a JSON number: the option not_finite allows it");
    EXPECT_EQ(error_of([](Writer& w) { w.value(-HUGE_VALF); }),
              "at /1/a~1b: -Infinity is not a JSON number: the option not_finite allows it");
    EXPECT_EQ(error_of([](Writer& w) { w.value("x\xFF"); }),
              "at /1/a~1b: the string is not UTF-8: found byte 0xFF after \"x\": "
              "the option bad_utf8 allows it");
    EXPECT_EQ(error_of([](Writer& w) { w.value(ULLONG_MAX); }),
              "at /1/a~1b: no double equals 18446744073709551615: "
              "the option big_integers allows it");
    EXPECT_EQ(
        error_of([](Writer& w) { w.value(LLONG_MAX); }),
        "at /1/a~1b: no double equals 9223372036854775807: the option big_integers allows it");
    EXPECT_EQ(error_of([](Writer& w) {
                  w.value(Value(Array{1, Object{{"n", std::nan("")}}}));
              }),
              "at /1/a~1b/1/n: NaN is not a JSON number: the option not_finite allows it");
    EXPECT_EQ(error_of([](Writer& w) {
                  w.value(Array{1, std::nan("")});
              }),
              "at /1/a~1b/1: NaN is not a JSON number: the option not_finite allows it");
    EXPECT_EQ(error_of([](Writer& w) {
                  w.value(Object{{"n", std::nan("")}});
              }),
              "at /1/a~1b/n: NaN is not a JSON number: the option not_finite allows it");
    EXPECT_EQ(error_of([](Writer& w) { w.value(1).name("b\xFF"); }),
              "at /1: a member name is not UTF-8: found byte 0xFF after \"b\": "
              "the option bad_utf8 allows it");
    EXPECT_EQ(error_of([](Writer& w) { w.begin_array().value(1).value("\x80"); }),
              "at /1/a~1b/1: the string is not UTF-8: found byte 0x80 at its beginning: "
              "the option bad_utf8 allows it");
    EXPECT_EQ(write_error([] {
                  std::string text;
                  Writer(text).value(Undefined());
              }),
              "at the root: Undefined has no JSON text");
}

TEST(Writer, TakesNoMoreCallsAfterAnError) {
    const Steps errors[] = {
        [](Writer& w) { w.value(std::nan("")); },
        [](Writer& w) { w.value("\xFF"); },
        [](Writer& w) { w.value(Array{"\xFF"}); },
        [](Writer& w) { w.value(1).name("\xFF"); },
    };
    for (const Steps& error : errors) {
        std::string text;
        Writer writer(text);
        writer.begin_object().name("a");
        EXPECT_THROW(error(writer), WriteError);
        const std::string problem = " after an error, which has broken the text off";
        EXPECT_EQ(logic_error_of([&] { writer.value(1); }), "at /a: value()" + problem);
        EXPECT_EQ(logic_error_of([&] { writer.raw("1"); }), "at /a: raw()" + problem);
        EXPECT_EQ(logic_error_of([&] { writer.name("a"); }), "at /a: name()" + problem);
        EXPECT_EQ(logic_error_of([&] { writer.begin_array(); }), "at /a: begin_array()" + problem);
        EXPECT_EQ(logic_error_of([&] { writer.end(); }), "at /a: end()" + problem);
        EXPECT_EQ(logic_error_of([&] { writer.finish(); }), "at /a: finish()" + problem);
    }
}

TEST(Writer, DemandsTheOrderOfUtf16IfAskedTo) {
    WriteOptions options;
    options.member_order = WriteOptions::MemberOrder::utf16;
    const std::string pair = "\xF0\x9F\x99\x82";
    const std::string wide = "\xEF\xBC\xA1";
    const auto names = [](const std::vector<std::string>& list) {
        return [list](Writer& w) {
            w.begin_object();
            for (const std::string& name : list) {
                w.name(name).value(1);
            }
            w.end();
        };
    };
    EXPECT_EQ(text_of(names({"", "A", "a", "a1", pair, wide}), options),
              "{\"\":1,\"A\":1,\"a\":1,\"a1\":1,\"" + pair + "\":1,\"" + wide + "\":1}");
    const auto error_of = [&](const std::vector<std::string>& list) {
        return write_error([&] {
            std::string text;
            Writer writer(text, options);
            writer.begin_array();
            names(list)(writer);
        });
    };
    EXPECT_EQ(error_of({"a", "a"}), "at /0: the name \"a\" occurs twice in an object");
    EXPECT_EQ(error_of({"", ""}), "at /0: the name \"\" occurs twice in an object");
    EXPECT_EQ(error_of({"b", "a"}), "at /0: the name \"a\" comes after \"b\": "
                                    "the option member_order demands the order of UTF-16");
    EXPECT_EQ(error_of({wide, pair}),
              "at /0: the name \"" + pair + "\" comes after \"" + wide +
                  "\": the option member_order demands the order of UTF-16");
    // Objects within do not count, nor do those before.
    EXPECT_EQ(text_of(
                  [](Writer& w) {
                      w.begin_array().begin_object().name("z").value(1).end();
                      w.begin_object().name("b").begin_object().name("x").value(1).end();
                      w.name("c").value(1).end().end();
                  },
                  options),
              R"([{"z":1},{"b":{"x":1},"c":1}])");
}

TEST(Writer, AllowsNamesToOccurTwiceOtherwise) {
    EXPECT_EQ(text_of([](Writer& w) {
                  w.begin_object().name("b").value(1).name("a").value(2).name("b").value(3).end();
              }),
              R"({"b":1,"a":2,"b":3})");
}

// ---- Streams that fail ---------------------------------------------------------------------

TEST(Writer, LeavesAStreamThatFailsToItsExceptions) {
    test::ProbeStream silent(3);
    Writer(silent).begin_array().value("some text").end().finish();
    EXPECT_TRUE(silent.bad());
    EXPECT_EQ(silent.bytes(), "[\"s");

    test::ProbeStream loud(3);
    loud.exceptions(std::ios_base::badbit);
    Writer writer(loud);
    writer.begin_array().value("some text");
    EXPECT_THROW(writer.end(), std::ios_base::failure);
    EXPECT_EQ(logic_error_of([&] { writer.finish(); }),
              "at the root: finish() after an error, which has broken the text off");
}

TEST(Writer, PassesLongTextsOnInPieces) {
    test::ProbeStream stream;
    Writer writer(stream);
    writer.begin_array();
    for (int i = 0; i < 10000; ++i) {
        writer.value("some text");
    }
    EXPECT_GT(stream.bytes().size(), 100000U);
    EXPECT_LT(stream.bytes().size(), 120001U);
    EXPECT_EQ(stream.flushes(), 0U);
    writer.end();
    EXPECT_EQ(stream.bytes().size(), 120001U);
}

TEST(Writer, CanBeDestroyedBeforeTheTextIsComplete) {
    std::ostringstream stream;
    { Writer(stream).begin_array().value(1); }
    EXPECT_TRUE(stream.good());
}

// ---- Random texts --------------------------------------------------------------------------

/// Writes a value by the calls for its parts.
void write_parts(Writer& writer, const Value& value, test::RandomTrees& random) {
    if (random.once_in(5)) {
        writer.value(value);
    } else if (const auto* const elements = get_if<Array>(&value)) {
        writer.begin_array();
        for (const Value& element : *elements) {
            write_parts(writer, element, random);
        }
        writer.end();
    } else if (const auto* const members = get_if<Object>(&value)) {
        writer.begin_object();
        for (const auto& [name, member] : *members) {
            if (holds<Undefined>(member) && test::stringified(name) == "error at ") {
                continue; // a Writer cannot know in time that the name is left out
            }
            writer.name(name);
            write_parts(writer, member, random);
        }
        writer.end();
    } else {
        visit([&](const auto& content) { writer.value(content); }, value);
    }
}

TEST(RandomWriter, WritesWhatWriteDoes) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees random(seed, test::RandomTrees::Kinds::all);
    for (std::size_t i = test::test_repetitions() / 2; i > 0 && !HasFailure(); --i) {
        const Value value = test::to_value(random.tree());
        WriteOptions options = test::random_options(random);
        options.member_order = WriteOptions::MemberOrder::as_given;
        const auto by_writer = [&] {
            std::string text;
            Writer writer(text, options);
            write_parts(writer, value, random);
            writer.finish();
            return text;
        };
        EXPECT_EQ(test::text_or_location(by_writer), test::stringified(value, options));
    }
}

static_assert(!std::is_copy_constructible_v<Writer> && !std::is_copy_assignable_v<Writer>);

} // namespace
} // namespace foundation::json
