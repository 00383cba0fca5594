// Reading documents straight into objects of a caller's types.
#include "support/edge_memory.hpp"
#include "support/random_texts.hpp"
#include "support/random_trees.hpp"
#include "support/read_types.hpp"
#include "support/repetitions.hpp"
#include "support/temporary_folder.hpp"

#include <foundation/json/reader.hpp>
#include <foundation/json/records.hpp>
#include <foundation/json/write.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json {
namespace {

/// With names of the lengths around multiples of sixteen, in quotes and with a colon.
struct Named {
    int a = 0;
    int b = 0;
    int c = 0;
    int d = 0;
    int e = 0;
    int f = 0;
};

constexpr const char* names_of_lengths[] = {
    "aaaaaaaaaaaaa",
    "bbbbbbbbbbbbbb",
    "ccccccccccccccccccccccccccccc",
    "dddddddddddddddddddddddddddddd",
    "eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee",
    "ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff",
};

} // namespace

template <>
inline constexpr auto members<Named> = table(defaulted(names_of_lengths[0], &Named::a),
                                             defaulted(names_of_lengths[1], &Named::b),
                                             defaulted(names_of_lengths[2], &Named::c),
                                             defaulted(names_of_lengths[3], &Named::d),
                                             defaulted(names_of_lengths[4], &Named::e),
                                             defaulted(names_of_lengths[5], &Named::f));

} // namespace foundation::json

namespace foundation::json::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

ReadOptions random_options(RandomTexts& random) {
    ReadOptions options;
    options.comments = random.once_in(2);
    options.trailing_commas = random.once_in(2);
    if (random.once_in(4)) {
        options.unknown_members = ConvertOptions::UnknownMembers::error;
    }
    if (random.once_in(4)) {
        options.duplicate_names = ParseOptions::DuplicateNames::error;
    }
    if (random.once_in(4)) {
        options.integers = ParseOptions::Integers::as_double;
    }
    if (random.once_in(8)) {
        options.max_depth = random.below(6);
    }
    if (random.once_in(2)) {
        options.max_errors = random.below(5);
    }
    return options;
}

TEST(Read, GivesWhatConversionOfTheParsedValueGivesForRandomTexts) {
    const std::uint64_t seed = random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomTexts random(seed);
    std::size_t texts = 0;
    std::size_t successes = 0;
    for (const reads::Subject& subject : reads::subjects()) {
        for (std::size_t round = test_repetitions() / 2; round > 0; --round) {
            const auto like_any = [&] {
                return random.like(subject.texts[random.below(subject.texts.size())]);
            };
            // Of a long document, most is far from its end.
            std::string text = like_any();
            text.insert(0, random.once_in(2) ? 0 : 1100, ' ');
            text.append(random.once_in(2) ? 0 : 200, ' ');
            const ReadOptions options = random_options(random);
            const reads::Outcomes outcomes = subject.outcomes(text, options, like_any());
            ASSERT_EQ(outcomes.read, outcomes.converted) << subject.name << ": " << text;
            ASSERT_EQ(outcomes.read_again, outcomes.converted) << subject.name << ": " << text;
            texts += 1;
            successes += outcomes.read.compare(0, 5, "value") == 0 ? 1 : 0;
        }
    }
    EXPECT_GT(successes, texts / 6);
}

/// An array of elements, each of another length.
std::string long_array(const std::string& quote, std::size_t length) {
    std::string result = "[";
    for (std::size_t i = 0; i != length; ++i) {
        result += (i == 0 ? "" : ", ") + quote + std::to_string(i * i % 65537) + quote;
    }
    return result + ']';
}

// Vectors get their room by an estimate from the rest of the text.
TEST(Read, GivesWhatConversionOfTheParsedValueGivesForLongArrays) {
    for (const std::size_t length : {1000U, 2049U, 9000U}) {
        const std::string numbers = long_array("", length);
        const std::string strings = long_array("\"", length);
        const std::string members[] = {
            R"("ints":)" + numbers, R"("doubles":)" + numbers, R"("strings":)" + strings,
            R"("lists":[)" + numbers + ",[]," + long_array("", 100) + "," + numbers + "]"};
        std::string all;
        for (const std::string& member : members) {
            all += (all.empty() ? "" : ",") + member;
            std::string bad = member;
            bad.insert(bad.rfind(']'), ",{}");
            for (const std::string& text :
                 {'{' + member + '}',
                  '{' + member + R"(,"nothing":[)" + std::string(99999, ' ') + "]}", '{' + member,
                  '{' + bad + '}', '{' + all + '}'}) {
                for (const std::size_t other : {1U, 10000U}) {
                    const std::string before = R"({"ints":)" + long_array("", other) +
                                               R"(,"lists":[)" + long_array("", other) + "]}";
                    const reads::Outcomes outcomes =
                        reads::outcomes_of<reads::Containers>(text, {}, before);
                    ASSERT_TRUE(outcomes.read == outcomes.converted) << text.substr(0, 80);
                    ASSERT_TRUE(outcomes.read_again == outcomes.converted) << text.substr(0, 80);
                }
            }
        }
    }
}

TEST(Read, ReadsNoByteBeyondTheText) {
    const EdgeMemory memory;
    for (const reads::Subject& subject : reads::subjects()) {
        for (const std::string& text : subject.texts) {
            for (const std::size_t before : {std::size_t{0}, std::size_t{1100}}) {
                for (std::size_t size = 0; size <= text.size(); ++size) {
                    const std::string part = std::string(before, ' ') + text.substr(0, size);
                    char* const begin = memory.end() - part.size();
                    std::memcpy(begin, part.data(), part.size());
                    const std::string_view at_the_edge(begin, part.size());
                    const reads::Outcomes outcomes = subject.outcomes(at_the_edge, {}, text);
                    ASSERT_EQ(outcomes.read, outcomes.converted) << subject.name << ": " << part;
                }
            }
        }
    }
}

/// What becomes of a document: the numbers, or the error.
template <class Read>
std::string numbers_of(const Read& read) {
    try {
        std::string result = "numbers";
        for (const auto number : read()) {
            result += ' ' + write(Value(number));
        }
        return result;
    } catch (const ParserException& error) {
        return error.what();
    } catch (const ConversionError& error) {
        return error.pointer();
    }
}

template <class T>
void expect_same_numbers(const std::string& text, const ReadOptions& options) {
    using Numbers = std::vector<T>;
    const std::string expected =
        numbers_of([&] { return to<Numbers>(parse(text, options), options); });
    EXPECT_EQ(numbers_of([&] { return read<Numbers>(text, options); }), expected) << text;
    const auto again = [&](Numbers numbers) {
        read_into(numbers, text, options);
        return numbers;
    };
    EXPECT_EQ(numbers_of([&] { return again(Numbers(3)); }), expected) << text;
    EXPECT_EQ(numbers_of([&] { return again(Numbers(300)); }), expected) << text;
    using Nested = std::vector<Numbers>;
    const std::string nested = '[' + text + ',' + text + ']';
    EXPECT_EQ(numbers_of([&] { return read<Nested>(nested, options).at(1); }),
              numbers_of([&] { return to<Nested>(parse(nested, options), options).at(1); }))
        << nested;
}

TEST(Read, GivesTheNumbersOfArraysOfAnyLengthAndForm) {
    const char* const numbers[] = {"0",     "-1",         "7.25", "65.613616999999977",
                                   "1e3",   "123456789",  "-0",   "12345678901234567890",
                                   "01",    "1.",         "null", "\"1\"",
                                   "1e400", "3000000000", "-",    "[]"};
    const char* const separators[] = {",", ", ", " ,", ",\n  ", "\n,", ",/**/", ""};
    ReadOptions lenient;
    lenient.comments = true;
    lenient.trailing_commas = true;
    RandomTexts random(random_seed());
    for (const std::size_t size :
         {0U, 1U, 2U, 3U, 7U, 8U, 9U, 10U, 63U, 64U, 65U, 72U, 73U, 128U, 129U, 200U}) {
        for (int i = 0; i != 60; ++i) {
            const std::size_t various = random.once_in(2) ? 3 : 8;
            const char* const separator = separators[random.below(random.once_in(4) ? 7 : 5)];
            std::string text = "[";
            for (std::size_t j = 0; j != size; ++j) {
                const std::size_t kinds = random.once_in(300) ? 16 : various;
                text += numbers[random.below(kinds)];
                text += j + 1 != size || random.once_in(8) ? separator : "";
            }
            text += random.once_in(8) ? "" : "]";
            text.append(random.once_in(2) ? 0 : 1100, ' ');
            const ReadOptions options = random.once_in(2) ? lenient : ReadOptions();
            expect_same_numbers<double>(text, options);
            expect_same_numbers<int>(text, options);
        }
    }
}

/// A document of all members, each with another number.
std::string document_of_names(const std::vector<std::string>& names) {
    std::string text = "{";
    int number = 1;
    for (const std::string& name : names) {
        text += (number == 1 ? "\"" : ",\"") + name + "\":" + std::to_string(number);
        ++number;
    }
    return text + '}';
}

TEST(Read, TellsNamesByEachOfTheirBytes) {
    const std::vector<std::string> names(std::begin(names_of_lengths), std::end(names_of_lengths));
    const auto numbers = [](const Named& named) {
        return std::vector<int>{named.a, named.b, named.c, named.d, named.e, named.f};
    };
    for (const std::size_t behind : {0U, 1100U}) {
        const std::string spaces(behind, ' ');
        EXPECT_THAT(numbers(read<Named>(document_of_names(names) + spaces)),
                    testing::ElementsAre(1, 2, 3, 4, 5, 6));
        for (std::size_t i = 0; i != names.size(); ++i) {
            std::vector<int> expected{1, 2, 3, 4, 5, 6};
            expected[i] = 0;
            for (std::size_t place = 0; place != names[i].size(); ++place) {
                std::vector<std::string> others = names;
                others[i][place] = '+';
                const std::string text = document_of_names(others) + spaces;
                ASSERT_EQ(numbers(read<Named>(text)), expected) << text;
            }
        }
    }
}

// ---- The way that is taken --------------------------------------------------------------------

/// Whether a document is read without a Value between.
template <class T>
bool is_read_directly(std::string_view text, const ReadOptions& options = {}) {
    T object{};
    return detail::read_document(text, options, &object, nullptr, &detail::read_any<T>);
}

TEST(Read, GoesByWayOfAValueForWhatIsRareOnly) {
    const auto direct = &is_read_directly<reads::Leaf>;
    EXPECT_TRUE(direct(R"({"n/~":1,"level":"low","":null})", {}));
    EXPECT_TRUE(direct("{\n  \"level\" : \"low\" ,\n  \"n/~\":\t1 }\n", {}));
    EXPECT_TRUE(direct(R"({"u":[[{"a":[],"a":{}}]],"n/~":1,"v":"\ud800","\u006eew":-0.5e-7})", {}));
    EXPECT_TRUE(direct(R"({"\u006e/~":1})", {}));
    EXPECT_FALSE(direct(R"({"n/~":1,"n/~":1})", {}));
    EXPECT_FALSE(direct(R"({"n/~":"1"})", {}));
    EXPECT_FALSE(direct(R"({})", {}));
    EXPECT_TRUE(is_read_directly<reads::Odd>(R"({"a":1,"b":2})"));
    EXPECT_FALSE(is_read_directly<reads::Odd>(R"({"b":1,"a":2})"));
    for (const reads::Subject& subject : reads::subjects()) {
        if (subject.name == std::string_view("Node")) {
            EXPECT_TRUE(is_read_directly<reads::Node>(subject.texts[0]));
            EXPECT_TRUE(is_read_directly<reads::Node>(subject.texts[1]));
        } else if (subject.name == std::string_view("Containers")) {
            EXPECT_TRUE(is_read_directly<reads::Containers>(subject.texts[0]));
        } else if (subject.name == std::string_view("Numbers")) {
            EXPECT_TRUE(is_read_directly<reads::Numbers>(subject.texts[0]));
            EXPECT_TRUE(is_read_directly<reads::Numbers>(subject.texts[1]));
        }
    }
}

TEST(Read, ReadsWithCommentsAndTrailingCommasDirectly) {
    ReadOptions options;
    options.comments = true;
    options.trailing_commas = true;
    EXPECT_TRUE(is_read_directly<reads::Leaf>("// a\n{\"n/~\"/**/:/*b*/1,/**/}//", options));
    EXPECT_TRUE(is_read_directly<std::vector<int>>("[1,2,/**/]", options));
}

TEST(Read, LimitsTheDepthAsParseDoes) {
    const auto nested = [](std::size_t levels) {
        return R"({"n/~":1,"x":)" + std::string(levels, '[') + std::string(levels, ']') + '}';
    };
    EXPECT_TRUE(is_read_directly<reads::Leaf>(nested(999)));
    EXPECT_FALSE(is_read_directly<reads::Leaf>(nested(1000)));
    EXPECT_THROW(static_cast<void>(read<reads::Leaf>(nested(1000))), ParserException);
}

TEST(Read, SkipsMixedContainersOfAnyDepth) {
    std::string open;
    std::string close;
    for (int i = 0; i != 300; ++i) {
        open += i % 3 == 0 ? R"({"a":1,"b":)" : "[0,";
        close = (i % 3 == 0 ? R"(,"c":{}})" : ",[]]") + close;
    }
    const std::string text = R"({"x":)" + open + "null" + close + R"(,"n/~":3})";
    EXPECT_TRUE(is_read_directly<reads::Leaf>(text));
    EXPECT_EQ(read<reads::Leaf>(text).number, 3);
    std::string wrong = text;
    wrong[wrong.find("]]")] = '}';
    EXPECT_FALSE(is_read_directly<reads::Leaf>(wrong));
}

// ---- Errors -----------------------------------------------------------------------------------

/// The error of a document for a type.
template <class T>
ReadError error_of(std::string_view text, const ReadOptions& options = {}) {
    try {
        static_cast<void>(read<T>(text, options));
    } catch (const ReadError& error) {
        return error;
    }
    throw std::logic_error("nothing was thrown");
}

TEST(ReadError, TellsPositionAndPointer) {
    const ReadError error = error_of<std::vector<reads::Leaf>>(
        "[{\"n/~\": 1},\n  {\"n/~\": 2,\n   \"level\": \"medium\"}]");
    EXPECT_STREQ(error.what(), "3:13: at /1/level: the enumerator \"medium\" is unknown; known are "
                               "\"low\", \"high\", \"t\xC3\xB6p\"");
    EXPECT_EQ(error.pointer(), "/1/level");
    EXPECT_EQ(error.position().byte, 38U);
    EXPECT_EQ(error.position().line, 3U);
    EXPECT_EQ(error.position().column, 13U);
    EXPECT_EQ(describe(error, "leaves.json"),
              "leaves.json:3:13: at /1/level: the enumerator \"medium\" is unknown; known are "
              "\"low\", \"high\", \"t\xC3\xB6p\"\n"
              "   \"level\": \"medium\"}]\n"
              "            ^\n");
    const ReadError copy = error; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_STREQ(copy.what(), error.what());
}

TEST(ReadError, IsAtTheValueThatThePointerLeadsTo) {
    const auto what = [](std::string_view text) {
        return std::string(error_of<reads::Node>(text).what());
    };
    EXPECT_THAT(what(" []"), StartsWith("1:2: at the root: [] is an array, not an object"));
    EXPECT_THAT(what(R"({"a":{"name":1},"name":2})"), StartsWith("1:24: at /name: 2 is"));
    EXPECT_THAT(what(R"({"name":1,"name":2})"), StartsWith("1:18: at /name: 2 is"));
    EXPECT_THAT(what(R"({"children":[{"name":1}],"name":"","children":[{"name":3}]})"),
                StartsWith("1:56: at /children/0/name: 3 is"));
    EXPECT_THAT(what(R"({"name":"","leaves":[{"n\/~":0},{"n/~":256}]})"),
                StartsWith("1:40: at /leaves/1/n~1~0: 256 is not within"));
    EXPECT_THAT(what(R"({"name":"","leaves":[[{"n/~":0}],1]})"),
                StartsWith("1:22: at /leaves/0: [{...}] is an array"));
    EXPECT_THAT(what(R"({"name":"","pair":[{"n/~":1},{}]})"),
                StartsWith("1:30: at /pair/1: the required member \"n/~\" is missing"));
    EXPECT_THAT(what(R"({"name":"","numbers":[1,2,1]})"),
                StartsWith("1:27: at /numbers/2: the set has this element already"));
    ReadOptions strict;
    strict.unknown_members = ConvertOptions::UnknownMembers::error;
    EXPECT_THAT(error_of<reads::Node>(R"({"name":"","nmae":1})", strict).what(),
                StartsWith("1:19: at /nmae: the member \"nmae\" is unknown; known are"));
}

TEST(ReadError, ComesAfterSyntaxErrors) {
    EXPECT_THROW(static_cast<void>(read<int>("\"x\" 1")), ParserException);
    EXPECT_THROW(static_cast<void>(read<int>("\"x\"")), ReadError);
    EXPECT_THROW(static_cast<void>(read<int>("")), ParserException);
    EXPECT_THROW(static_cast<void>(read<int>(std::string_view())), ParserException);
}

TEST(Read, LimitsTheLengthOfATextOrStream) {
    ReadOptions options;
    options.max_bytes = 3;
    EXPECT_EQ(read<int>("123", options), 123);
    EXPECT_THROW(static_cast<void>(read<int>("1234", options)), ParserException);
    std::istringstream three("123");
    EXPECT_EQ(read<int>(three, options), 123);
    EXPECT_TRUE(three.eof());
    std::istringstream four("1234");
    EXPECT_THROW(static_cast<void>(read<int>(four, options)), ParserException);
}

TEST(Read, RefusesAStreamThatIsNotGood) {
    std::istringstream stream("1");
    stream.setstate(std::ios_base::failbit);
    EXPECT_THROW(static_cast<void>(read<int>(stream)), std::ios_base::failure);
}

TEST(ReadFile, NamesTheFileInErrors) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "leaf.json";
    std::ofstream(path) << "{\n \"n/~\": \"80\"}";
    try {
        static_cast<void>(read_file<reads::Leaf>(path));
        FAIL() << "nothing was thrown";
    } catch (const ReadError& error) {
        const std::string what =
            path.string() + ":2:9: at /n~1~0: \"80\" is a string, not a number";
        EXPECT_EQ(error.what(), what);
        EXPECT_EQ(describe(error), what + "\n \"n/~\": \"80\"}\n        ^\n");
        EXPECT_EQ(describe(error, "other"), describe(error));
    }
    std::ofstream(path) << R"({"n/~": 80})";
    EXPECT_EQ(read_file<reads::Leaf>(path).number, 80);
    EXPECT_THROW(static_cast<void>(read_file<int>(folder.path() / "none")), std::system_error);
    ReadOptions options;
    options.max_bytes = 10;
    EXPECT_THROW(static_cast<void>(read_file<reads::Leaf>(path, options)), ParserException);
}

// ---- Objects that are there -------------------------------------------------------------------

TEST(ReadInto, UsesMemoryAgain) {
    const std::string long_text(100, 'x');
    reads::Node node;
    node.name = long_text;
    node.children.resize(3);
    node.children[1].name = long_text;
    const char* const name = node.name.data();
    const char* const child = node.children[1].name.data();
    const reads::Node* const children = node.children.data();
    read_into(node, R"({"name":"a","children":[{"name":"b"},{"name":"c"}]})");
    EXPECT_EQ(node.name, "a");
    EXPECT_EQ(node.name.data(), name);
    EXPECT_EQ(node.children.size(), 2U);
    EXPECT_EQ(node.children.data(), children);
    EXPECT_EQ(node.children[1].name, "c");
    EXPECT_EQ(node.children[1].name.data(), child);
}

TEST(ReadInto, GivesWhatIsNotReadItsDefaultAtThatLocation) {
    reads::Node node;
    node.pair[1] = reads::Leaf{1, reads::Level::high, "text", {5, 6}};
    read_into(node, R"({"name":"a","pair":[{"n/~":1},{"n/~":2}]})");
    EXPECT_EQ(node.pair[0].text, "default"); // as a new Leaf in a new Node
    EXPECT_EQ(node.pair[1].level, reads::Level::low);
    EXPECT_EQ(node.pair[1].text, std::nullopt);
    EXPECT_EQ(node.pair[1].point.x, 1);
}

TEST(ReadInto, MakesWhatIsPointedToOrRepresentedAnew) {
    // Of what is made of it there is a default, but none of the type that is read.
    reads::Pointers pointers;
    pointers.unique = std::make_unique<reads::Leaf>();
    read_into(pointers, R"({"size":{"width":3,"height":4},"unique":{"n/~":1,"point":{"x":5}}})");
    EXPECT_EQ(pointers.size.width(), 3);
    EXPECT_EQ(pointers.unique->level, reads::Level::high);
    EXPECT_EQ(pointers.unique->text, "default");
    EXPECT_EQ(pointers.unique->point.y, 4);
}

TEST(ReadInto, LeavesADefaultObjectAfterAnException) {
    reads::Node node;
    node.name = "before";
    EXPECT_THROW(read_into(node, R"({"name":"a","numbers":[1],"leaves":1})"), ReadError);
    EXPECT_EQ(describe(from(node)), describe(from(reads::Node())));
    EXPECT_THROW(read_into(node, R"({"name":"a")"), ParserException);
    EXPECT_EQ(node.name, "");
}

// ---- Records and Reader -----------------------------------------------------------------------

/// What the records of a text give, one after the other: the number of a Leaf, or the error.
std::string records_of(const std::string& text, const Framing& framing,
                       const ReadOptions& options = {}) {
    std::istringstream stream(text);
    Records<reads::Leaf> records(stream, framing, options);
    std::string result;
    reads::Leaf leaf;
    for (int i = 0; i != 10; ++i) {
        try {
            if (!records.next(leaf)) {
                return result + "end";
            }
            result += std::to_string(leaf.number) + leaf.text.value_or("-");
        } catch (const ReadError& error) {
            EXPECT_EQ(describe(from(leaf)), describe(from(reads::Leaf())));
            result += error.what();
            EXPECT_EQ(error.position().line, records.position().line);
        } catch (const std::exception& error) {
            result += error.what();
        }
        result += " <" + std::string(records.text()) + ">; ";
    }
    return result;
}

TEST(RecordsOfOwnTypes, ReadsLines) {
    EXPECT_EQ(records_of("{\"n/~\":1,\"\":\"a\"}\n\n{\"n/~\":300}\n{\"n/~\":}\r\n{\"n/~\":3}",
                         Framing::lines),
              "1a <{\"n/~\":1,\"\":\"a\"}>; "
              "3:8: at /n~1~0: 300 is not within 0 to 255 <{\"n/~\":300}>; "
              "found '}' where a value should begin <{\"n/~\":}>; "
              "3default <{\"n/~\":3}>; end");
}

TEST(RecordsOfOwnTypes, ReadsConcatenatedValues) {
    EXPECT_EQ(records_of(" {\"n/~\":1}{\"n/~\":300}\n {\"n/~\":2} {\"n/~\":}\n{\"n/~\":3}",
                         Framing::concatenated),
              "1default <{\"n/~\":1}>; "
              "1:18: at /n~1~0: 300 is not within 0 to 255 <{\"n/~\":300}>; "
              "2default <{\"n/~\":2}>; "
              "found '}' where a value should begin <{\"n/~\":>; "
              "3default <{\"n/~\":3}>; end");
}

TEST(RecordsOfOwnTypes, ReadsElements) {
    EXPECT_EQ(
        records_of("{\"a\":[{\"n/~\":1},\n {\"n/~\":300},7,{\"n/~\":2}]}", Framing::elements("/a")),
        "1default <{\"n/~\":1}>; "
        "2:9: at /n~1~0: 300 is not within 0 to 255 <{\"n/~\":300}>; "
        "2:14: at the root: 7 is a number, not an object <7>; "
        "2default <{\"n/~\":2}>; end");
    EXPECT_EQ(records_of("{\"a\":1}", Framing::elements("/a")),
              "at /a: the value is no array <>; end");
}

TEST(RecordsOfOwnTypes, UsesMemoryAgainAndObeysOptions) {
    std::istringstream stream("[\"a string of more than 16 bytes\"]\n[\"b\",]//\n[]");
    ReadOptions options;
    options.comments = true;
    options.trailing_commas = true;
    Records<std::vector<std::string>> records(stream, Framing::lines, options);
    std::vector<std::string> record;
    ASSERT_TRUE(records.next(record));
    const char* const memory = record[0].data();
    ASSERT_TRUE(records.next(record));
    EXPECT_EQ(record[0].data(), memory);
    EXPECT_EQ(record[0], "b");
    EXPECT_TRUE(records.next(record));
    EXPECT_FALSE(records.next(record));
}

TEST(RecordsOfOwnTypes, ReadsRandomLinesAsValues) {
    const std::uint64_t seed = random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomTexts random(seed);
    const std::string text = reads::subjects()[0].texts[0];
    for (const Framing& framing : {Framing(Framing::lines), Framing(Framing::concatenated)}) {
        std::string all;
        for (int i = 0; i != 300; ++i) {
            all += random.like(text) + '\n';
        }
        std::istringstream values_stream(all);
        std::istringstream objects_stream(all);
        Records<Value> values(values_stream, framing);
        Records<reads::Node> objects(objects_stream, framing);
        bool more = true;
        while (more) {
            const std::string expected = reads::outcome_of([&] {
                Value value;
                more = values.next(value);
                return more ? to<reads::Node>(value) : reads::Node();
            });
            const std::string actual = reads::outcome_of([&] {
                reads::Node node;
                more = objects.next(node);
                return node;
            });
            ASSERT_EQ(actual, expected) << values.text();
            ASSERT_EQ(objects.text(), values.text());
            ASSERT_EQ(objects.index(), values.index());
            ASSERT_EQ(objects.position().byte, values.position().byte);
        }
    }
}

TEST(ReaderOfOwnTypes, ReadsTheValueThatBegins) {
    const std::string text = "{\"a\":[1,\n {\"n/~\":1}, {\"n/~\":300}, \"low\"], \"b\":2}";
    Reader reader(text);
    for (int i = 0; i != 4; ++i) {
        reader.next();
    }
    int one = 0;
    reader.read(one);
    EXPECT_EQ(one, 1);
    reader.next();
    reads::Leaf leaf;
    reader.read(leaf);
    EXPECT_EQ(leaf.number, 1);
    EXPECT_EQ(reader.token(), Token::end_object);
    reader.next();
    try {
        reader.read(leaf);
        FAIL() << "nothing was thrown";
    } catch (const ReadError& error) {
        EXPECT_STREQ(error.what(), "2:20: at /a/2/n~1~0: 300 is not within 0 to 255");
        EXPECT_EQ(error.pointer(), "/a/2/n~1~0");
        EXPECT_EQ(describe(from(leaf)), describe(from(reads::Leaf())));
    }
    reader.next();
    reads::Level level = reads::Level::high;
    reader.read(level);
    EXPECT_EQ(level, reads::Level::low);
    reader.next();
    EXPECT_THROW(reader.read(level), std::logic_error);
    reader.next();
    reader.read(one); // of the name that the reader is at
    EXPECT_EQ(one, 2);
}

/// Has no assignment, and so no part that is used again.
struct Fixed {
    Fixed() = default;
    Fixed(Fixed&&) = default;
    Fixed& operator=(Fixed&&) = delete;
    int number = 1;
};

} // namespace
} // namespace foundation::json::test

template <>
inline constexpr auto foundation::json::members<foundation::json::test::Fixed> =
    table(defaulted("number", &foundation::json::test::Fixed::number));

namespace foundation::json::test {
namespace {

TEST(Read, ServesTypesThatCannotBeAssigned) {
    EXPECT_EQ(read<Fixed>(R"({"number":2})").number, 2);
    EXPECT_EQ(read<Fixed>(R"({"number":2,"number":3})").number, 3);
    EXPECT_EQ(read<std::vector<Fixed>>("[{},{}]").size(), 2U);
}

/// Cannot be moved, and so must never be.
struct Immovable {
    Immovable() = default;
    Immovable(const Immovable&) = delete;
    Immovable& operator=(const Immovable&) = delete;
    int number = 1;
};

} // namespace
} // namespace foundation::json::test

template <>
inline constexpr auto foundation::json::members<foundation::json::test::Immovable> =
    table(defaulted("number", &foundation::json::test::Immovable::number));

namespace foundation::json::test {
namespace {

TEST(Read, ServesContainersOfTypesThatCannotBeMoved) {
    EXPECT_EQ(read<std::vector<Immovable>>(R"([{"number":2},{"number":3}])")[1].number, 3);
    EXPECT_EQ(read<std::list<Immovable>>(R"([{"number":2},{"number":3}])").back().number, 3);
}

/// Throws what std::exception is no base of.
struct Throwing {
    Throwing() { throw 7; }
};

} // namespace
} // namespace foundation::json::test

template <>
inline constexpr auto foundation::json::members<foundation::json::test::Throwing> = table();

namespace foundation::json::test {
namespace {

TEST(Read, PassesOnWhatAConstructorThrows) {
    EXPECT_THROW(static_cast<void>(read<std::vector<Throwing>>("[{}]")), int);
    EXPECT_EQ(read<std::vector<Throwing>>("[]").size(), 0U);
}

} // namespace
} // namespace foundation::json::test
