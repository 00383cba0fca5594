// Reader: the tokens of a document, from memory and from streams in pieces of any size.
#include "support/deep_stack.hpp"
#include "support/edge_memory.hpp"
#include "support/every_way.hpp"
#include "support/piecewise_stream.hpp"

#include <foundation/json/json.hpp>
#include <foundation/json/number.hpp>
#include <foundation/json/reader.hpp>

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <ios>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

using Texts = std::vector<std::string>;

const char* name_of(Token token) {
    constexpr std::array names{"none",       "begin_array", "end_array", "begin_object",
                               "end_object", "name",        "string",    "number",
                               "boolean",    "null",        "end"};
    return names.at(static_cast<std::size_t>(token));
}

/// The current token, with its content, as `string "a"`.
std::string token_text(const Reader& reader) {
    const std::string name = name_of(reader.token());
    switch (reader.token()) {
    case Token::name:
    case Token::string:
        return name + " \"" + std::string(reader.string()) + '"';
    case Token::number:
        return name + ' ' + std::string(reader.number_text());
    case Token::boolean:
        return reader.boolean() ? "true" : "false";
    default:
        return name;
    }
}

/// The same, with all that the reader says of its position.
std::string token_and_place(const Reader& reader) {
    return token_text(reader) + " @" + to_text(reader.position()) + ' ' +
           std::to_string(reader.depth()) + ' ' + reader.pointer();
}

/// All tokens, and an error as the last.
Texts all_tokens(Reader& reader, std::string (*text_of)(const Reader&) = token_text) {
    Texts result;
    try {
        do {
            reader.next();
            result.push_back(text_of(reader));
        } while (reader.token() != Token::end);
    } catch (const ParserException& error) {
        result.emplace_back(error.what());
    }
    return result;
}

/// Passes readers of a text to a function: from memory, and from streams in pieces.
void for_each_reader(const std::string& text, const std::function<void(Reader&)>& check,
                     const ParseOptions& options = {}) {
    Reader memory(text, options);
    check(memory);
    for (const std::size_t piece : {1U, 2U, 3U, 5U, 1000U, 1000000U}) {
        SCOPED_TRACE("in pieces of " + std::to_string(piece));
        PiecewiseStream stream(text, piece);
        Reader reader(stream, options);
        check(reader);
    }
}

/// A reader whose first calls of next() have led to the token with this number, from 1.
void for_each_reader_at(const std::string& text, std::size_t token,
                        const std::function<void(Reader&)>& check) {
    for_each_reader(text, [&](Reader& reader) {
        for (std::size_t i = 0; i != token; ++i) {
            reader.next();
        }
        check(reader);
    });
}

// ---- Tokens ----------------------------------------------------------------------------------

TEST(Reader, GivesTheTokensOfADocumentOneAfterTheOther) {
    const std::string text =
        "{\"a\": [1, -2.50e3, \"x\"],\n \"b\": {}, \"\": [[], true, false, null]} ";
    for_each_reader(text, [](Reader& reader) {
        EXPECT_EQ(reader.token(), Token::none);
        EXPECT_EQ(all_tokens(reader, token_and_place), (Texts{
                                                           "begin_object @0=1:1 1 ",
                                                           "name \"a\" @1=1:2 1 /a",
                                                           "begin_array @6=1:7 2 /a",
                                                           "number 1 @7=1:8 2 /a/0",
                                                           "number -2.50e3 @10=1:11 2 /a/1",
                                                           "string \"x\" @19=1:20 2 /a/2",
                                                           "end_array @22=1:23 1 /a",
                                                           "name \"b\" @26=2:2 1 /b",
                                                           "begin_object @31=2:7 2 /b",
                                                           "end_object @32=2:8 1 /b",
                                                           "name \"\" @35=2:11 1 /",
                                                           "begin_array @39=2:15 2 /",
                                                           "begin_array @40=2:16 3 //0",
                                                           "end_array @41=2:17 2 //0",
                                                           "true @44=2:20 2 //1",
                                                           "false @50=2:26 2 //2",
                                                           "null @57=2:33 2 //3",
                                                           "end_array @61=2:37 1 /",
                                                           "end_object @62=2:38 0 ",
                                                           "end @64=2:40 0 ",
                                                       }));
        EXPECT_EQ(reader.next(), Token::end);
        EXPECT_EQ(reader.token(), Token::end);
    });
}

TEST(Reader, ReadsADocumentThatIsOneScalar) {
    const std::pair<std::string, std::string> cases[] = {
        {"null", "null"},
        {"true", "true"},
        {" false ", "false"},
        {"12", "number 12"},
        {"-0.5E-3 ", "number -0.5E-3"},
        {"\"\"", "string \"\""},
        {"\"a\\nb\"", "string \"a\nb\""},
    };
    for (const std::pair<std::string, std::string>& scalar : cases) {
        for_each_reader(scalar.first, [&](Reader& reader) {
            EXPECT_EQ(all_tokens(reader), (Texts{scalar.second, "end"})) << scalar.first;
            EXPECT_EQ(reader.pointer(), "");
        });
    }
}

TEST(Reader, NextReturnsTheTokenThatItGoesTo) {
    Reader reader("[1]");
    EXPECT_EQ(reader.next(), Token::begin_array);
    EXPECT_EQ(reader.next(), Token::number);
    EXPECT_EQ(reader.next(), Token::end_array);
    EXPECT_EQ(reader.next(), Token::end);
}

TEST(Reader, ReadsWhatCallersHave) {
    const std::string string = "[1]";
    Reader of_string(string);
    EXPECT_EQ(of_string.next(), Token::begin_array);
    Reader of_view(std::string_view("[1] ", 3));
    EXPECT_EQ(of_view.next(), Token::begin_array);
    char array[] = "2";
    Reader of_pointer(static_cast<char*>(array));
    EXPECT_EQ(of_pointer.next(), Token::number);
    Reader of_nothing{std::string_view()};
    EXPECT_EQ(to_text(of_nothing.position()), "0=1:1");
    EXPECT_THROW(of_nothing.next(), ParserException);
}

TEST(Reader, TakesACopyOfTheOptions) {
    ParseOptions options;
    options.comments = true;
    Reader reader("/**/1", options);
    options.comments = false;
    EXPECT_EQ(reader.next(), Token::number);
}

TEST(Reader, TakesEveryOption) {
    ParseOptions options;
    options.comments = true;
    options.trailing_commas = true;
    for_each_reader(
        "// a\n[1, /* b */ {\"c\" /*d*/: 2,},]// e",
        [](Reader& reader) {
            EXPECT_EQ(all_tokens(reader),
                      (Texts{"begin_array", "number 1", "begin_object", "name \"c\"", "number 2",
                             "end_object", "end_array", "end"}));
        },
        options);
    options.max_depth = 1;
    for_each_reader(
        "[[]]",
        [](Reader& reader) {
            EXPECT_EQ(
                all_tokens(reader),
                (Texts{"begin_array", "nested deeper than 1 levels: the option max_depth is the "
                                      "limit"}));
        },
        options);
    ParseOptions unique;
    unique.duplicate_names = ParseOptions::DuplicateNames::error;
    for_each_reader(R"([{"a": {"a": 1}, "b": [{"a": 2}], "\u0061": 3}])",
                    [](Reader& reader) {
                        const Texts tokens = all_tokens(reader);
                        EXPECT_EQ(tokens.back(),
                                  "the name \"\\u0061\" occurs twice in an object: the option "
                                  "duplicate_names allows it");
                        EXPECT_EQ(tokens.size(), 15U);
                    },
                    unique);
    for_each_reader(R"([{"a":1},{"a":1,"b":{"a":1,"b":2}}])",
                    [](Reader& reader) { EXPECT_EQ(all_tokens(reader).back(), "end"); }, unique);
    for_each_reader(R"({"a":1,"a":2})", [](Reader& reader) {
        EXPECT_EQ(all_tokens(reader), (Texts{"begin_object", "name \"a\"", "number 1", "name \"a\"",
                                             "number 2", "end_object", "end"}));
    });
}

TEST(Reader, SkipsAByteOrderMarkInPieces) {
    for_each_reader("\xEF\xBB\xBF[1]", [](Reader& reader) {
        EXPECT_EQ(all_tokens(reader, token_and_place),
                  (Texts{"begin_array @3=1:1 1 ", "number 1 @4=1:2 1 /0", "end_array @5=1:3 0 ",
                         "end @6=1:4 0 "}));
    });
    for (const std::string text : {"\xEF", "\xEF\xBB", "\xEF\xBBx", "\xEF\xBB\xBF\xEF\xBB\xBF"}) {
        EXPECT_EQ(disagreement(text), "");
        EXPECT_EQ(disagreement(text + "1"), "");
    }
}

// ---- Content ---------------------------------------------------------------------------------

TEST(Reader, AStringWithoutEscapesIsAViewOfTheText) {
    const std::string text = R"(["plain", {"name": 1}])";
    Reader reader(text);
    reader.next();
    reader.next();
    EXPECT_EQ(reader.string().data(), text.data() + 2);
    reader.next();
    reader.next();
    EXPECT_EQ(reader.string().data(), text.data() + 12);
    reader.next();
    EXPECT_EQ(reader.number_text().data(), text.data() + 19);
}

TEST(Reader, AStringIsGivenWithoutItsEscapes) {
    const std::string written = R"(\"\\\/\b\f\n\r\t\u0041\u00e9\u3042\ud83d\ude00\ud800)";
    const std::string meant = "\"\\/\b\f\n\r\tA\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80\xEF\xBF\xBD";
    for_each_reader("{\"" + written + "\":\"x" + written + "\"}", [&](Reader& reader) {
        reader.next();
        reader.next();
        EXPECT_EQ(reader.string(), meant);
        EXPECT_EQ(reader.string(), meant) << "asked again";
        reader.next();
        const std::string_view content = reader.string();
        EXPECT_EQ(reader.string().data(), content.data()) << "the view stays valid";
        EXPECT_EQ(content, "x" + meant);
    });
}

TEST(Reader, AStringStaysValidUntilTheNextCall) {
    // Each token comes with a piece of its own.
    PiecewiseStream stream(R"(["one","tw\u006f"])", 1);
    Reader reader(stream);
    reader.next();
    reader.next();
    const std::string_view one = reader.string();
    EXPECT_EQ(reader.pointer(), "/0");
    EXPECT_EQ(reader.position().byte, 1U);
    EXPECT_EQ(one, "one");
    reader.next();
    const std::string_view two = reader.string();
    EXPECT_EQ(reader.pointer(), "/1");
    EXPECT_EQ(two, "two");
}

/// The number that a Reader or function gives, or its message.
template <class Number>
std::string number_or_message(const std::function<Number()>& number) {
    try {
        std::ostringstream stream;
        stream.precision(30);
        stream << +number();
        return stream.str();
    } catch (const std::out_of_range& error) {
        return error.what();
    }
}

template <class Number>
void expect_number_as_of_value(const Reader& reader, const Value& value) {
    EXPECT_EQ(number_or_message<Number>([&] { return reader.number<Number>(); }),
              number_or_message<Number>([&] { return number<Number>(value); }));
}

template <class... Numbers>
void expect_numbers_as_of_value(const Reader& reader, const Value& value) {
    (expect_number_as_of_value<Numbers>(reader, value), ...);
}

TEST(Reader, NumbersFollowTheRulesOfNumber) {
    const std::string texts[] = {
        "0",
        "-0",
        "-0.0",
        "1",
        "-1",
        "127",
        "128",
        "-128",
        "-129",
        "255",
        "256",
        "65536",
        "2.5",
        "-2.5",
        "1e3",
        "1E-3",
        "2147483647",
        "2147483648",
        "-2147483649",
        "9007199254740993",
        "9223372036854775807",
        "9223372036854775808",
        "18446744073709551615",
        "18446744073709551616",
        "-9223372036854775808",
        "-9223372036854775809",
        "1e19",
        "1e300",
        "-1e300",
        "4.9e-324",
        "1e-400",
        "0.1",
        "0.30000000000000004",
        "1234567890.5",
        "123456789012345678901234567890",
        "0.1234567890123456789012345678901234567890",
    };
    for (const auto integers : {ParseOptions::Integers::exact, ParseOptions::Integers::as_double}) {
        ParseOptions options;
        options.integers = integers;
        for (const std::string& text : texts) {
            SCOPED_TRACE(text);
            // With much behind the number, or the end.
            for (const std::string& behind : {std::string(), std::string(100, ' ')}) {
                for_each_reader(
                    text + behind,
                    [&](Reader& reader) {
                        ASSERT_EQ(reader.next(), Token::number);
                        EXPECT_EQ(reader.number_text(), text);
                        expect_numbers_as_of_value<signed char, unsigned char, short,
                                                   unsigned short, int, unsigned, long,
                                                   unsigned long, long long, unsigned long long,
                                                   float, double, long double>(
                            reader, parse(text, options));
                    },
                    options);
            }
        }
    }
}

TEST(Reader, GivesNumbersExactly) {
    Reader reader("[-0, 9007199254740993, 18446744073709551615, 2.5]");
    reader.next();
    reader.next();
    EXPECT_TRUE(std::signbit(reader.number<double>()));
    reader.next();
    EXPECT_EQ(reader.number<long long>(), 9007199254740993);
    reader.next();
    EXPECT_EQ(reader.number<std::uint64_t>(), 18446744073709551615U);
    EXPECT_EQ(number_or_message<int>([&] { return reader.number<int>(); }),
              "18446744073709551615 is not within -2147483648 to 2147483647");
    reader.next();
    EXPECT_EQ(reader.number<float>(), 2.5F);
    EXPECT_EQ(number_or_message<int>([&] { return reader.number<int>(); }),
              "2.5 is not a whole number");
}

TEST(Reader, ANumberThatIsTooLargeIsRefusedWhereItStands) {
    for (const std::string text : {"1e309", "-1e309", "1.7976931348623159e308", "1e99999999999"}) {
        for_each_reader("[1, " + text + "]", [&](Reader& reader) {
            EXPECT_EQ(all_tokens(reader),
                      (Texts{"begin_array", "number 1",
                             "the number " + text + " is too large for a double"}));
        });
    }
}

/// What a function that does not fit to the current token throws.
std::string misuse(const std::function<void()>& call) {
    try {
        call();
    } catch (const std::logic_error& error) {
        return std::string("logic: ") + error.what();
    } catch (const std::runtime_error& error) {
        return std::string("runtime: ") + error.what();
    }
    return "fits";
}

TEST(Reader, ContentOfAnotherTypeIsAnInvalidConversion) {
    struct Case {
        std::string text;
        std::string kind;
        std::size_t fitting; ///< the function that fits
    };
    const Case cases[] = {
        {"[]", "JSON array", 9}, {"{}", "JSON object", 9},    {"\"a\"", "JSON string", 0},
        {"1", "JSON number", 1}, {"true", "JSON boolean", 3}, {"null", "JSON null", 9},
    };
    for (const Case& c : cases) {
        for_each_reader(c.text, [&](Reader& reader) {
            reader.next();
            const std::string found[] = {
                misuse([&] { static_cast<void>(reader.string()); }),
                misuse([&] { static_cast<void>(reader.number<int>()); }),
                misuse([&] { static_cast<void>(reader.number_text()); }),
                misuse([&] { static_cast<void>(reader.boolean()); }),
            };
            const char* const types[] = {"JSON string", "JSON number", "JSON number",
                                         "JSON boolean"};
            for (std::size_t i = 0; i != 4; ++i) {
                const bool fits = i == c.fitting || (c.fitting == 1 && i == 2);
                EXPECT_EQ(found[i],
                          fits ? "fits"
                               : "runtime: invalid conversion: " + c.kind + " to " + types[i])
                    << c.text;
            }
        });
    }
}

TEST(Reader, WhereNoValueIsContentIsALogicError) {
    struct Case {
        std::string text;
        std::size_t tokens;
        std::string name;
    };
    const Case cases[] = {
        {"[]", 0, "no token: next() has not been called, or has failed"},
        {"[]", 2, "the end of an array"},
        {"{}", 2, "the end of an object"},
        {"{\"a\":1}", 2, "a name"},
        {"[]", 3, "the end of the document"},
    };
    for (const Case& c : cases) {
        for_each_reader_at(c.text, c.tokens, [&](Reader& reader) {
            const std::string is_at = ": the reader is at " + c.name;
            const std::string begin = "logic: foundation::json::Reader::";
            if (c.name != "a name") {
                EXPECT_EQ(misuse([&] { static_cast<void>(reader.string()); }),
                          begin + "string" + is_at);
                EXPECT_EQ(misuse([&] { static_cast<void>(reader.value()); }),
                          begin + "value" + is_at);
            }
            EXPECT_EQ(misuse([&] { static_cast<void>(reader.number<int>()); }),
                      begin + "number" + is_at);
            EXPECT_EQ(misuse([&] { static_cast<void>(reader.number_text()); }),
                      begin + "number_text" + is_at);
            EXPECT_EQ(misuse([&] { static_cast<void>(reader.boolean()); }),
                      begin + "boolean" + is_at);
        });
    }
}

// ---- Whole values ----------------------------------------------------------------------------

TEST(Reader, SkipGoesToTheEndOfAValueAndDoesNothingAfterIt) {
    const std::string text = R"({"a":[1,[2,{"b":3}]],"c":"d","e":4})";
    struct Case {
        std::size_t tokens;
        std::string before;
        std::string after;
        std::string pointer;
        std::size_t depth;
    };
    const Case cases[] = {
        {0, "none", "none", "", 0},
        {1, "begin_object", "end_object", "", 0},
        {2, "name \"a\"", "end_array", "/a", 1},
        {3, "begin_array", "end_array", "/a", 1},
        {4, "number 1", "number 1", "/a/0", 2},
        {5, "begin_array", "end_array", "/a/1", 2},
        {7, "begin_object", "end_object", "/a/1/1", 3},
        {8, "name \"b\"", "number 3", "/a/1/1/b", 4},
        {10, "end_object", "end_object", "/a/1/1", 3},
        {11, "end_array", "end_array", "/a/1", 2},
        {13, "name \"c\"", "string \"d\"", "/c", 1},
        {14, "string \"d\"", "string \"d\"", "/c", 1},
        {18, "end", "end", "", 0},
    };
    for (const Case& c : cases) {
        for_each_reader_at(text, c.tokens, [&](Reader& reader) {
            EXPECT_EQ(token_text(reader), c.before) << c.tokens;
            reader.skip();
            EXPECT_EQ(token_text(reader), c.after) << c.tokens;
            EXPECT_EQ(reader.pointer(), c.pointer) << c.tokens;
            EXPECT_EQ(reader.depth(), c.depth) << c.tokens;
            const std::string behind = token_text(reader);
            if (c.after.substr(0, 4) == "end_") {
                reader.skip();
                EXPECT_EQ(token_text(reader), behind) << "skipped again";
            }
        });
    }
}

TEST(Reader, ValueGivesTheValueAndGoesToItsEnd) {
    const std::string text = R"({"a":[1,[2,{"b":3}]],"c":"d\n","e":4,"f":[true,false,null]})";
    struct Case {
        std::size_t tokens;
        std::string value;
        std::string next;
    };
    const Case cases[] = {
        {1, R"({"a":[1,[2,{"b":3}]],"c":"d\n","e":4,"f":[true,false,null]})", "end"},
        {2, "[1,[2,{\"b\":3}]]", "name \"c\""},
        {3, "[1,[2,{\"b\":3}]]", "name \"c\""},
        {4, "1", "begin_array"},
        {5, "[2,{\"b\":3}]", "end_array"},
        {7, "{\"b\":3}", "end_array"},
        {8, "3", "end_object"},
        {13, "\"d\\n\"", "name \"e\""},
        {14, "\"d\\n\"", "name \"e\""},
        {15, "4", "name \"f\""},
        {19, "true", "false"},
        {20, "false", "null"},
        {21, "null", "end_array"},
    };
    for (const Case& c : cases) {
        for_each_reader_at(text, c.tokens, [&](Reader& reader) {
            EXPECT_EQ(content_text(reader.value()), c.value) << c.tokens;
            reader.next();
            EXPECT_EQ(token_text(reader), c.next) << c.tokens;
        });
    }
}

TEST(Reader, ValueTakesTheOptions) {
    ParseOptions options;
    options.integers = ParseOptions::Integers::as_double;
    options.duplicate_names = ParseOptions::DuplicateNames::error;
    options.max_depth = 3;
    for_each_reader(
        "[9007199254740993,[9007199254740993],{\"a\":1,\"a\":2}]",
        [](Reader& reader) {
            reader.next();
            reader.next();
            EXPECT_TRUE(holds<double>(reader.value()));
            reader.next();
            EXPECT_TRUE(holds<double>(reader.value()[0]));
            reader.next();
            EXPECT_THROW(static_cast<void>(reader.value()), ParserException);
        },
        options);
    for_each_reader(
        "[[[[]]]]",
        [](Reader& reader) {
            reader.next();
            reader.next();
            EXPECT_EQ(outcome_of([&] { return reader.value(); }).substr(0, 33),
                      "error nested deeper than 3 levels");
        },
        options);
}

// ---- Where the reader is ---------------------------------------------------------------------

TEST(Reader, PointersEscapeNames) {
    for_each_reader(R"({"a/b~c":{"\u002f\n":[{"":0}]},"~1":1})", [](Reader& reader) {
        std::vector<std::string> pointers;
        while (reader.next() != Token::end) {
            pointers.push_back(reader.pointer());
        }
        EXPECT_EQ(pointers,
                  (Texts{"", "/a~1b~0c", "/a~1b~0c", "/a~1b~0c/~1\n", "/a~1b~0c/~1\n",
                         "/a~1b~0c/~1\n/0", "/a~1b~0c/~1\n/0/", "/a~1b~0c/~1\n/0/",
                         "/a~1b~0c/~1\n/0", "/a~1b~0c/~1\n", "/a~1b~0c", "/~01", "/~01", ""}));
    });
}

TEST(Reader, KnowsNamesAndBracketsThatAreFarBack) {
    const std::string far(200000, ' ');
    const std::string text = "{\"a~\\u00e9\":\n [" + far + "0, {\"b\":" + far + "[1," + far + "}";
    for (const std::size_t piece : {1U, 1000U, 65536U, 1000000U}) {
        PiecewiseStream stream(text, piece);
        Reader reader(stream);
        std::string last;
        try {
            for (;;) {
                reader.next();
                last = reader.pointer();
            }
        } catch (const ParserException& error) {
            EXPECT_STREQ(error.what(),
                         "found '}' where a value should begin: the array begins at line 2, column "
                         "400011");
        }
        EXPECT_EQ(last, "/a~0\xC3\xA9/1/b/0");
        EXPECT_EQ(reader.pointer(), last) << "after the error";
        EXPECT_EQ(reader.depth(), 4U);
    }
    EXPECT_EQ(disagreement(text), "");
    EXPECT_EQ(disagreement("{\"a\":" + far + "{\"b\":" + far), "");
    EXPECT_EQ(disagreement("{\"a\":" + far + "{\"b\":" + far + "1}" + far + "]"), "");
}

TEST(Reader, NamesThatWereForgottenDoNotReturn) {
    const std::string far(200000, ' ');
    PiecewiseStream stream(
        "[{\"a\":{\"b\":[" + far + "]}," + far + "\"c\":" + far + "{\"d\":" + far + "0}}]", 1000);
    Reader reader(stream);
    Texts pointers;
    while (reader.next() != Token::end) {
        pointers.push_back(reader.pointer());
    }
    EXPECT_EQ(pointers, (Texts{"", "/0", "/0/a", "/0/a", "/0/a/b", "/0/a/b", "/0/a/b", "/0/a",
                               "/0/c", "/0/c", "/0/c/d", "/0/c/d", "/0/c", "/0", ""}));
}

TEST(Reader, PositionsCountLinesCharactersAndAByteOrderMark) {
    for_each_reader("\xEF\xBB\xBF\n\r\n\"\xC3\xA9\xE3\x81\x82\"  ", [](Reader& reader) {
        EXPECT_EQ(to_text(reader.position()), "0=1:1") << "nothing has been read";
        reader.next();
        EXPECT_EQ(to_text(reader.position()), "6=3:1");
        reader.next();
        EXPECT_EQ(to_text(reader.position()), "15=3:7");
    });
}

TEST(Reader, AByteOrderMarkOutsideTheWindowCountsAsNoColumn) {
    // The window drops text up to 164 bytes before a token: here, within the mark.
    for (std::size_t before = 155; before != 172; ++before) {
        const std::string text =
            "\xEF\xBB\xBF" + std::string(before, ' ') + '"' + std::string(70000, 'x') + "\" ,";
        PiecewiseStream stream(text, 1000);
        Reader reader(stream);
        reader.next();
        EXPECT_EQ(to_text(reader.position()), to_text(plain_position(text, before + 3)));
        try {
            reader.next();
            ADD_FAILURE();
        } catch (const ParserException& error) {
            EXPECT_EQ(error.get_column(), before + 70004) << before;
        }
    }
}

// ---- Large documents -------------------------------------------------------------------------

TEST(Reader, TokensLongerThanTheWindowAreWhole) {
    for (const std::size_t size : {60000U, 65374U, 65375U, 65376U, 65536U, 131072U, 1000000U}) {
        const std::string letters(size, 'x');
        const std::string digits = "0." + std::string(size, '7');
        const std::string escapes = "\\u00e9" + letters;
        const std::string text = "{\"" + letters + "\":\"" + escapes + "\",\"a\":" + digits +
                                 ",\"" + escapes + "\":[" + digits + "]}";
        for (const std::size_t piece : {1U, 4096U, 10000000U}) {
            PiecewiseStream stream(text, piece);
            Reader reader(stream);
            reader.next();
            reader.next();
            EXPECT_TRUE(reader.string() == letters) << size;
            EXPECT_TRUE(reader.pointer() == "/" + letters) << size;
            reader.next();
            EXPECT_TRUE(reader.string() == "\xC3\xA9" + letters) << size;
            reader.next();
            reader.next();
            EXPECT_TRUE(reader.number_text() == digits) << size;
            EXPECT_EQ(reader.number<double>(), 7.0 / 9);
            reader.next();
            EXPECT_TRUE(reader.string() == "\xC3\xA9" + letters) << size;
            EXPECT_EQ(number<double>(reader.value()[0]), 7.0 / 9) << size;
            EXPECT_EQ(reader.next(), Token::end_object);
            EXPECT_EQ(reader.next(), Token::end);
        }
    }
}

TEST(Reader, TokensAreReadAlikeWhereverTheWindowEnds) {
    // What lies around the positions where the window is filled again, in turn.
    const std::string around =
        R"({"name":[-12.5e-3,"\u00e9\ud83d\ude00",true,null,[],{}],"b":false}, )";
    for (std::size_t shift = 0; shift != around.size(); ++shift) {
        std::string text = std::string(shift, ' ') + "[";
        while (text.size() < 200000) {
            text += around;
        }
        text += "0]";
        std::istringstream stream(text);
        Reader of_stream(stream);
        Reader of_text(text);
        Token token = Token::none;
        do {
            token = of_text.next();
            ASSERT_EQ(of_stream.next(), token) << shift;
            ASSERT_EQ(token_text(of_stream), token_text(of_text)) << shift;
        } while (token != Token::end);
        EXPECT_EQ(to_text(of_stream.position()), to_text(of_text.position())) << shift;
    }
}

TEST(Reader, ReadsAHundredThousandLevels) {
    constexpr std::size_t levels = 100000;
    std::string text;
    for (std::size_t i = 0; i != levels / 2; ++i) {
        text += "{\"a\":[";
    }
    text += "1";
    for (std::size_t i = 0; i != levels / 2; ++i) {
        text += "]}";
    }
    ParseOptions options;
    options.max_depth = levels;
    for (const std::size_t piece : {1U, 1000000U}) {
        PiecewiseStream stream(text, piece);
        Reader reader(stream, options);
        while (reader.next() != Token::number) {
        }
        EXPECT_EQ(reader.depth(), levels);
        EXPECT_EQ(reader.pointer().size(), levels / 2 * std::strlen("/a/0"));
        EXPECT_EQ(reader.next(), Token::end_array);
        EXPECT_EQ(reader.next(), Token::end_object);
        EXPECT_EQ(reader.depth(), levels - 2);
        while (reader.next() != Token::end) {
        }
    }
    run_with_deep_stack([&] {
        Reader reader(text, options);
        reader.next();
        reader.next();
        const Value value = reader.value();
        EXPECT_EQ(reader.next(), Token::end_object);
        reader.next();
        EXPECT_EQ(reader.token(), Token::end);
        Reader skipping(text, options);
        skipping.next();
        skipping.skip();
        EXPECT_EQ(skipping.next(), Token::end);
    });
    options.max_depth = levels - 1;
    Reader refused(text, options);
    const Texts tokens = all_tokens(refused);
    EXPECT_EQ(tokens.back(), "nested deeper than 99999 levels: the option max_depth is the limit");
}

TEST(Reader, ReadsNoByteBeforeOrAfterTheText) {
    const EdgeMemory memory;
    const std::string whole =
        "[{\"name\":[12,\"string of many letters\",true,null,-0.5e7]},12345678]";
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        for (const bool at_end : {false, true}) {
            char* const text = at_end ? memory.end() - size : memory.begin();
            std::copy(whole.data(), whole.data() + size, text);
            Reader reader(std::string_view(text, size));
            const Texts tokens = all_tokens(reader);
            EXPECT_EQ(tokens.back() == "end", size == whole.size());
        }
    }
}

// ---- Streams ---------------------------------------------------------------------------------

TEST(Reader, TakesNoMoreThanATokenNeeds) {
    struct Case {
        std::string text;
        std::size_t tokens;
    };
    const Case cases[] = {{"[", 1},        {"[[", 2},       {"{\"a\"", 2},
                          {"[\"b\"", 2},   {"[]", 2},       {"{}", 2},
                          {"[1,", 2},      {"[true ", 2},   {"{\"a\":null}", 4},
                          {"{\"a\":{", 3}, {"[1.5e3\n", 2}, {"[1 , \"x\"", 3}};
    for (const Case& c : cases) {
        // The buffer would throw at the byte after those.
        PiecewiseStream stream(c.text, 1, StreamFailure::by_throwing);
        Reader reader(stream);
        for (std::size_t i = 0; i != c.tokens; ++i) {
            EXPECT_NO_THROW(reader.next()) << c.text;
        }
        EXPECT_THROW(reader.next(), BufferFailure) << c.text;
    }
    PiecewiseStream stream("[{\"a\":[1]}", 1, StreamFailure::by_throwing);
    Reader reader(stream);
    reader.next();
    reader.next();
    EXPECT_EQ(content_text(reader.value()), "{\"a\":[1]}");
    EXPECT_EQ(stream.taken(), 10U);
}

TEST(Reader, NothingIsReadBeforeTheFirstToken) {
    PiecewiseStream stream("[1]", 1, StreamFailure::by_throwing);
    const Reader reader(stream);
    EXPECT_EQ(stream.taken(), 0U);
    EXPECT_EQ(to_text(reader.position()), "0=1:1");
    EXPECT_EQ(reader.pointer(), "");
    EXPECT_EQ(reader.depth(), 0U);
}

TEST(Reader, ReadsFromThePositionOfTheStream) {
    std::istringstream stream("skipped [1]");
    std::string word;
    stream >> word;
    Reader reader(stream);
    reader.next();
    EXPECT_EQ(to_text(reader.position()), "1=1:2");
}

TEST(Reader, AStreamThatIsNotGoodIsNotRead) {
    std::ifstream missing("/no/such/file");
    Reader reader(missing);
    EXPECT_THROW(reader.next(), std::ios_base::failure);
    EXPECT_THROW(reader.next(), std::ios_base::failure);
    std::istringstream read("1");
    static_cast<void>(parse(read));
    Reader behind(read);
    EXPECT_THROW(behind.next(), std::ios_base::failure);
}

TEST(Reader, TheEndSetsEofbitAndThrowsNothing) {
    std::istringstream stream(" 1 ");
    stream.exceptions(std::ios_base::eofbit | std::ios_base::failbit | std::ios_base::badbit);
    Reader reader(stream);
    EXPECT_EQ(all_tokens(reader), (Texts{"number 1", "end"}));
    EXPECT_TRUE(stream.eof());
    EXPECT_FALSE(stream.fail());
}

TEST(Reader, AFailureAfterAnyByteIsNotTakenForTheEnd) {
    const std::string text = "[1, {\"a\": \"b\"}, true] ";
    for (std::size_t size = 0; size <= text.size(); ++size) {
        PiecewiseStream bad(text.substr(0, size), 3, StreamFailure::by_turning_bad);
        Reader reader(bad);
        EXPECT_THROW(all_tokens(reader), std::ios_base::failure) << size;
        EXPECT_THROW(reader.next(), std::ios_base::failure) << size;
        EXPECT_TRUE(bad.bad());
    }
}

const std::string interruptible =
    " /* a\xC3\xA9*/ [ 12 , \"a string\\u00e9\" , /* b **/ {\"name\" /*c*/ : // d\n -1.5e3 , "
    "\"n\\u0061me 2\": [ [ ] , { } , true ] } , null , 12345678 ] // e";

ParseOptions with_comments() {
    ParseOptions options;
    options.comments = true;
    return options;
}

TEST(Reader, GoesOnWithTheSameTokenAfterAnExceptionOfTheStream) {
    Reader undisturbed(interruptible, with_comments());
    const Texts expected = all_tokens(undisturbed, token_and_place);
    ASSERT_EQ(expected.back().substr(0, 4), "end ");
    for (const std::size_t piece : {1U, 2U, 3U, 7U}) {
        InterruptedBuffer buffer(interruptible, piece);
        std::istream stream(&buffer);
        Reader reader(stream, with_comments());
        Texts found;
        do {
            until_not_interrupted(stream, [&] { return reader.next(); });
            found.push_back(token_and_place(reader));
        } while (reader.token() != Token::end);
        EXPECT_EQ(found, expected) << piece;
    }
}

TEST(Reader, SkipAndValueGoOnAfterAnExceptionOfTheStream) {
    const std::string value = content_text(parse(interruptible, with_comments()));
    for (const std::size_t piece : {1U, 2U, 3U, 7U}) {
        const auto run = [&](const std::function<void(Reader&, std::istream&)>& check) {
            InterruptedBuffer buffer(interruptible, piece);
            std::istream stream(&buffer);
            Reader reader(stream, with_comments());
            until_not_interrupted(stream, [&] { return reader.next(); });
            check(reader, stream);
        };
        run([](Reader& reader, std::istream& stream) {
            until_not_interrupted(stream, [&] { reader.skip(); });
            EXPECT_EQ(reader.token(), Token::end_array);
            EXPECT_EQ(until_not_interrupted(stream, [&] { return reader.next(); }), Token::end);
        });
        run([](Reader& reader, std::istream& stream) {
            // Within the array, one by one: the second element, the member, and so on.
            until_not_interrupted(stream, [&] { return reader.next(); });
            until_not_interrupted(stream, [&] { return reader.next(); });
            EXPECT_EQ(until_not_interrupted(stream, [&] { return reader.value(); }),
                      Value("a string\xC3\xA9"));
            until_not_interrupted(stream, [&] { return reader.next(); });
            until_not_interrupted(stream, [&] { return reader.next(); });
            EXPECT_EQ(reader.string(), "name");
            EXPECT_EQ(until_not_interrupted(stream, [&] { return reader.value(); }), Value(-1500));
            until_not_interrupted(stream, [&] { return reader.next(); });
            EXPECT_EQ(reader.string(), "name 2");
            until_not_interrupted(stream, [&] { reader.skip(); });
            EXPECT_EQ(reader.token(), Token::end_array);
            EXPECT_EQ(reader.pointer(), "/2/name 2");
        });
    }
    // A value is read from its beginning again; with pieces that are long enough, that gets on.
    PiecewiseStream first(interruptible.substr(0, 60), 7, StreamFailure::by_throwing);
    Reader reader(first, with_comments());
    reader.next();
    EXPECT_THROW(static_cast<void>(reader.value()), BufferFailure);
    EXPECT_EQ(reader.token(), Token::begin_array) << "the reader is where it was";
    EXPECT_EQ(reader.position().byte, 10U);
    std::stringbuf rest(interruptible.substr(60));
    first.rdbuf(&rest); // clears the state, too
    EXPECT_EQ(content_text(reader.value()), value);
    EXPECT_EQ(reader.next(), Token::end);
}

TEST(Reader, AfterAValueThatFailedInACommentTheTokensComeOneByOne) {
    PiecewiseStream first("[1, /* x", 1, StreamFailure::by_throwing);
    Reader reader(first, with_comments());
    reader.next();
    EXPECT_THROW(static_cast<void>(reader.value()), BufferFailure);
    std::stringbuf rest("*/ 2 ] ");
    first.rdbuf(&rest);
    EXPECT_EQ(all_tokens(reader), (Texts{"number 1", "number 2", "end_array", "end"}));
}

TEST(Reader, WithoutATokenAfterAnExceptionThereIsNoContent) {
    PiecewiseStream stream("[\"one\", tr", 1, StreamFailure::by_throwing);
    Reader reader(stream);
    reader.next();
    reader.next();
    EXPECT_THROW(reader.next(), BufferFailure);
    EXPECT_EQ(reader.token(), Token::none);
    EXPECT_EQ(misuse([&] { static_cast<void>(reader.string()); }),
              "logic: foundation::json::Reader::string: the reader is at no token: next() has not "
              "been called, or has failed");
    EXPECT_EQ(reader.pointer(), "/0");
    EXPECT_EQ(reader.depth(), 1U);
    EXPECT_GE(reader.position().byte, 6U);
    EXPECT_LE(reader.position().byte, 8U);
    // What is asked for then is about the token that could not be read.
    std::stringbuf rest("ue, 2]");
    stream.rdbuf(&rest);
    EXPECT_EQ(reader.value(), Value(true));
    EXPECT_EQ(reader.next(), Token::number);
}

TEST(Reader, AnErrorComesAgainAtEveryCall) {
    const std::string far(100000, ' ');
    const std::pair<std::string, std::size_t> cases[] = {
        {"[1, x]", 2},
        {"[\"a\", \"b", 2},
        {"{\"a\": 1, \"a", 3},
        {"", 0},
        {"1 2", 1},
        {"[1" + far + "2" + far + "]", 2},
        {"[1, /* \xFF */ 2]", 2},
        {"[1 /* x" + far + "\xFF */ 2]", 2},
        {"[1] /* x", 3},
        {"{\"a\" /*" + far + "\xFF", 2},
    };
    for (const auto& [text, tokens] : cases) {
        const std::string expected =
            outcome_of([&, &text = text] { return parse(text, with_comments()); });
        for_each_reader(
            text,
            [&, tokens = tokens](Reader& reader) {
                for (std::size_t i = 0; i != tokens; ++i) {
                    reader.next();
                }
                for (int i = 0; i != 2; ++i) {
                    EXPECT_EQ(outcome_of([&] { return Value(reader.next() == Token::end); }),
                              expected);
                    EXPECT_EQ(reader.token(), Token::none);
                    const Position at = reader.position();
                    EXPECT_NE(expected.find("| byte " + std::to_string(at.byte) + " | " +
                                            std::to_string(at.line) + ':' +
                                            std::to_string(at.column) + " |"),
                              std::string::npos)
                        << expected;
                    EXPECT_EQ(outcome_of([&] { return reader.value(); }), expected);
                    EXPECT_EQ(outcome_of([&] { return reader.skip(), Value(); }), expected);
                }
            },
            with_comments());
    }
    // The same where value() or skip() finds it first.
    for_each_reader("[1, [2, x], 3]", [](Reader& reader) {
        reader.next();
        const std::string error = outcome_of([&] { return reader.value(); });
        EXPECT_EQ(error.substr(0, 9), "error fou");
        EXPECT_EQ(outcome_of([&] { return Value(reader.next() == Token::end); }), error);
        EXPECT_EQ(reader.token(), Token::none);
    });
    for_each_reader("[1, [2, x], 3]", [](Reader& reader) {
        reader.next();
        const std::string error = outcome_of([&] { return reader.skip(), Value(); });
        EXPECT_EQ(error.substr(0, 9), "error fou");
        EXPECT_EQ(outcome_of([&] { return reader.value(); }), error);
    });
}

#ifndef _WIN32

TEST(Reader, WaitsForNoMoreOfAPipeThanAToken) {
#ifdef _LIBCPP_VERSION
    GTEST_SKIP() << "a std::ifstream of libc++ waits until its buffer is full";
#endif
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    std::ifstream stream("/dev/fd/" + std::to_string(ends[0]));
    Reader reader(stream);
    const std::pair<std::string, std::string> steps[] = {
        {" {", "begin_object"},   {"\"a\"", "name \"a\""},   {": [", "begin_array"},
        {"12,", "number 12"},     {"\"x\"", "string \"x\""}, {" ]", "end_array"},
        {",\"b\"", "name \"b\""}, {":null}", "null"},        {"", "end_object"},
    };
    for (const auto& [text, token] : steps) {
        ASSERT_EQ(::write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
        reader.next();
        EXPECT_EQ(token_text(reader), token);
    }
    ::close(ends[1]);
    EXPECT_EQ(reader.next(), Token::end);
    ::close(ends[0]);
}

/// A buffer over a socket, which gives what is there.
class SocketBuffer : public std::streambuf {
public:
    explicit SocketBuffer(int socket) : socket_(socket) {}

protected:
    int_type underflow() override {
        const ssize_t count = ::recv(socket_, bytes_.data(), bytes_.size(), 0);
        if (count <= 0) {
            return traits_type::eof();
        }
        setg(bytes_.data(), bytes_.data(), bytes_.data() + count);
        return traits_type::to_int_type(bytes_[0]);
    }

private:
    int socket_;
    std::array<char, 100> bytes_{};
};

TEST(Reader, AnswersARequestOverASocketBeforeTheNext) {
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
    SocketBuffer buffer(ends[0]);
    std::istream stream(&buffer);
    Reader reader(stream);
    const std::string requests[] = {"[{\"id\":1,\"a\":[]}", ",{\"id\":2}", " , [3]"};
    std::vector<std::string> found;
    for (const std::string& request : requests) {
        ASSERT_EQ(::send(ends[1], request.data(), request.size(), 0),
                  static_cast<ssize_t>(request.size()));
        if (reader.token() == Token::none) {
            reader.next();
        }
        reader.next();
        found.push_back(content_text(reader.value()));
    }
    EXPECT_EQ(found, (Texts{"{\"a\":[],\"id\":1}", "{\"id\":2}", "[3]"}));
    ::close(ends[1]);
    ::close(ends[0]);
}

#endif

TEST(Reader, AMovedReaderGoesOnWhereTheOtherWas) {
    PiecewiseStream stream("[\"a\", {\"b\": 2}]");
    Reader reader(stream);
    reader.next();
    reader.next();
    Reader moved(std::move(reader));
    EXPECT_EQ(moved.string(), "a");
    EXPECT_EQ(moved.pointer(), "/0");
    moved.next();
    moved.next();
    EXPECT_EQ(moved.pointer(), "/1/b");
    reader = Reader("[3]");
    EXPECT_EQ(reader.next(), Token::begin_array);
    moved = std::move(reader);
    EXPECT_EQ(moved.next(), Token::number);
    EXPECT_EQ(moved.number<int>(), 3);
}

// ---- Limits ----------------------------------------------------------------------------------

TEST(Reader, MaxBytesGivesTheSameWhateverTheSizeOfPieces) {
    const std::string texts[] = {
        "[12345678, \"1234567\", {\"1234567\": true}]",
        "123456789",
        "[1234567890123456789012345678901234567890]",
        "[\"123456789\", x]",
        "[\"1234\x01"
        "56\"]",
        "[\"1234567\\n\"]",
        "[\"1234567\\u00e9\"]",
        "[\"1234567\\u00x9\"]",
        "[\"12345\xE3\x81\x82\"]",
        "[\"12345\xE3\x81(\"]",
        "{\"1234567890\" 1}",
        "{\"12345\":1,\"12345\":2}",
        "[1-1-1-1-1-1-1-1-1]",
        "[1.5.5.5.5.5.5.5]",
        "[01234567890123]",
        "[-x1234567890]",
        "[1e99999999999999]",
        "[0.000000000000000000]",
        "[-123456789, nulx, 1]",
        "[null, false , true, /* comment */ // more\n 1]",
        "/* 1234567890 */ [ 1 /* \xFF */ ]",
        "[1, /\x9D*123456]",
        "[1, / ",
        "{/1234567: 8}",
        "[                    1]",
        "[[[[[[[[[[[[[]]]]]]]]]]]]]",
        "[1, 2, 3, 4, 5, 6, 7, x]",
        "[1, 2, 3, 4, 5, 6, 7",
        "",
    };
    ParseOptions options = with_comments();
    options.duplicate_names = ParseOptions::DuplicateNames::error;
    for (const std::string& text : texts) {
        for (std::size_t limit = 0; limit != 50 && !HasFailure(); ++limit) {
            for (std::size_t piece = 1; piece != 12; ++piece) {
                EXPECT_EQ(disagreement_within(text, options, limit, piece), "");
            }
            // Without the text behind the number that is long, too.
            EXPECT_EQ(reader_outcomes_within(text + std::string(100, ' '), options, limit, 1000)
                          .substr(0, 20),
                      reader_outcomes_within(text, options, limit, 1000).substr(0, 20))
                << text << ", at most " << limit;
        }
    }
}

TEST(Reader, MaxBytesLimitsStringsNumbersNamesAndValues) {
    const std::string too_long = "longer than 8 bytes: the argument max_bytes is the limit";
    const auto tokens_of = [](const std::string& text, std::size_t piece) {
        PiecewiseStream stream(text, piece);
        Reader reader(stream, {}, 8);
        return all_tokens(reader);
    };
    const std::string behind(100, ' ');
    for (const std::size_t piece : {1U, 3U, 1000U}) {
        EXPECT_EQ(tokens_of("[\"123456\", 12345678, {\"123456\": 1}]" + behind, piece),
                  (Texts{"begin_array", "string \"123456\"", "number 12345678", "begin_object",
                         "name \"123456\"", "number 1", "end_object", "end_array", "end"}));
        EXPECT_EQ(tokens_of("[1, \"1234567\"]" + behind, piece),
                  (Texts{"begin_array", "number 1", too_long}));
        EXPECT_EQ(tokens_of("[1, 123456789]" + behind, piece),
                  (Texts{"begin_array", "number 1", too_long}));
        EXPECT_EQ(tokens_of("[1, 1.2345678]" + behind, piece),
                  (Texts{"begin_array", "number 1", too_long}));
        EXPECT_EQ(tokens_of("{\"1234567\":1}" + behind, piece), (Texts{"begin_object", too_long}));
        PiecewiseStream stream("[[1,2,3 ],[1,2,34 ]]", piece);
        Reader reader(stream, {}, 8);
        reader.next();
        reader.next();
        EXPECT_EQ(content_text(reader.value()), "[1,2,3]");
        reader.next();
        EXPECT_EQ(outcome_of([&] { return reader.value(); }),
                  "error " + too_long +
                      " | code 19 | byte 18 | 1:19 | quoted at 18: "
                      "[[1,2,3 ],[1,2,34 ]]");
    }
}

} // namespace
} // namespace foundation::json::test
