// All errors of a document at once: their positions and order, and where they are thrown.
#include "support/read_types.hpp"
#include "support/temporary_folder.hpp"

#include <foundation/json/read.hpp>
#include <foundation/json/reader.hpp>
#include <foundation/json/records.hpp>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::test {
namespace {

ReadOptions up_to(std::size_t most) {
    ReadOptions options;
    options.max_errors = most;
    options.unknown_members = ConvertOptions::UnknownMembers::error;
    return options;
}

template <class Call>
ReadError error_of(const Call& call) {
    try {
        call();
    } catch (const ReadError& error) {
        return error;
    }
    throw std::logic_error("nothing was thrown");
}

template <class T>
ReadError error_in(std::string_view text, const ReadOptions& options = up_to(100)) {
    return error_of([&] { static_cast<void>(read<T>(text, options)); });
}

constexpr std::string_view wrong = "{\n"
                                   "  \"flags\": {\"b\": [0], \"a\": [true, \"x\"]},\n"
                                   "  \"leaves\": [{\"level\": \"medium\"}, 7],\n"
                                   "  \"nmae\": \"\xC3\xA9\", \"numbers\": [1, 1, \"2\"]\n"
                                   "}\n";

constexpr const char* wrong_as_told[] = {
    "1:1: at the root: the required member \"name\" is missing",
    "2:19: at /flags/b/0: 0 is a number, not a boolean",
    "2:35: at /flags/a/1: \"x\" is a string, not a boolean",
    "3:14: at /leaves/0: the required member \"n/~\" is missing",
    "3:24: at /leaves/0/level: the enumerator \"medium\" is unknown; known are \"low\", \"high\", "
    "\"t\xC3\xB6p\"",
    "3:35: at /leaves/1: 7 is a number, not an object",
    "4:11: at /nmae: the member \"nmae\" is unknown; known are \"name\", \"leaves\", \"flags\", "
    "\"numbers\", \"pair\", \"both\", \"children\"",
    "4:31: at /numbers/1: the set has this element already",
    "4:34: at /numbers/2: \"2\" is a string, not a number",
};

std::string all_of_wrong(const std::string& name = {}) {
    std::string result;
    for (const char* const line : wrong_as_told) {
        result += (result.empty() ? "" : "\n") + name + line;
    }
    return result;
}

TEST(SeveralReadErrors, ComeInTheOrderOfTheDocument) {
    const ReadError error = error_in<reads::Node>(wrong);
    EXPECT_EQ(error.what(), all_of_wrong());
    ASSERT_EQ(error.errors().size(), 9U);
    EXPECT_EQ(error.errors()[4].pointer, "/leaves/0/level");
    EXPECT_EQ(error.errors()[4].message.substr(0, 36), "the enumerator \"medium\" is unknown; ");
    EXPECT_EQ(error.errors()[4].line, 3U);
    EXPECT_EQ(error.errors()[4].column, 24U);
    EXPECT_EQ(error.pointer(), "");
    EXPECT_EQ(error.position().line, 1U);
    EXPECT_FALSE(error.is_cut_off());
    const ReadError copy = error; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_STREQ(copy.what(), error.what());
}

TEST(SeveralReadErrors, AreDescribedOneAfterTheOther) {
    const std::string_view text = "[\"a\",\n 2, null, [\n3]]";
    EXPECT_EQ(describe(error_in<std::vector<int>>(text), "a.json"),
              "a.json:1:2: at /0: \"a\" is a string, not a number\n"
              "[\"a\",\n"
              " ^\n"
              "a.json:2:5: at /2: null is not a number\n"
              " 2, null, [\n"
              "    ^\n"
              "a.json:2:11: at /3: [3] is an array, not a number\n"
              " 2, null, [\n"
              "          ^\n");
    EXPECT_EQ(describe(error_in<std::vector<int>>(text, up_to(2))),
              "1:2: at /0: \"a\" is a string, not a number\n"
              "[\"a\",\n"
              " ^\n"
              "2:5: at /2: null is not a number\n"
              " 2, null, [\n"
              "    ^\n"
              "the conversion ended after 2 errors: there may be more\n");
}

TEST(SeveralReadErrors, EndWithALineIfThereMayBeMore) {
    EXPECT_STREQ(error_in<std::vector<int>>("[null,null,null]", up_to(2)).what(),
                 "1:2: at /0: null is not a number\n1:7: at /1: null is not a number\n"
                 "the conversion ended after 2 errors: there may be more");
    EXPECT_STREQ(error_in<std::vector<int>>("[null,null]", up_to(1)).what(),
                 "1:2: at /0: null is not a number");
    EXPECT_STREQ(error_in<std::vector<int>>("[null,null]", up_to(0)).what(),
                 "1:2: at /0: null is not a number");
}

TEST(SeveralReadErrors, AreFoundInLongLinesAndAfterAMark) {
    // Each quotes its own part of the line.
    std::string text = "\xEF\xBB\xBF[";
    for (int i = 0; i != 300; ++i) {
        text += i % 100 == 50 ? "\"\xC3\xA9\"," : "1,";
    }
    text += "1]";
    const ReadError error = error_in<std::vector<int>>(text);
    EXPECT_STREQ(error.what(), "1:102: at /50: \"\xC3\xA9\" is a string, not a number\n"
                               "1:304: at /150: \"\xC3\xA9\" is a string, not a number\n"
                               "1:506: at /250: \"\xC3\xA9\" is a string, not a number");
    const std::string ones = ",1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1";
    const std::string line =
        "...,1,1" + ones + ",\"\xC3\xA9\"" + ones + ",...\n" + std::string(40, ' ') + "^\n";
    const std::string described = describe(error);
    std::size_t found = 0;
    for (std::size_t at = described.find(line); at != std::string::npos;
         at = described.find(line, at + 1)) {
        ++found;
    }
    EXPECT_EQ(found, 3U) << described;
}

TEST(SeveralReadErrors, AreAtTheValueAroundWhatTheDocumentDoesNotHave) {
    // Any throws an error of a pointer that leads nowhere.
    EXPECT_STREQ(error_in<std::vector<represented::Any>>("[1,\n true, 2, false]").what(),
                 "2:2: at /1/inner/1: is too deep\n2:11: at /3/inner/1: is too deep");
}

TEST(SeveralReadErrors, ComeAfterErrorsOfTheDocument) {
    EXPECT_THROW(static_cast<void>(read<std::vector<int>>("[null,null", up_to(10))),
                 ParserException);
}

TEST(SeveralReadErrors, AreThrownByEveryWayToRead) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "node.json";
    std::ofstream(path) << wrong;
    const ReadError in_file =
        error_of([&] { static_cast<void>(read_file<reads::Node>(path, up_to(100))); });
    EXPECT_EQ(in_file.what(), all_of_wrong(path.string() + ':'));
    EXPECT_EQ(describe(in_file).substr(0, path.string().size() + 5), path.string() + ":1:1:");

    std::istringstream stream{std::string(wrong)};
    EXPECT_EQ(error_of([&] { static_cast<void>(read<reads::Node>(stream, up_to(100))); }).what(),
              all_of_wrong());

    reads::Node node;
    node.name = "before";
    EXPECT_EQ(error_of([&] { read_into(node, wrong, up_to(100)); }).what(), all_of_wrong());
    EXPECT_EQ(describe(from(node)), describe(from(reads::Node())));
}

TEST(SeveralReadErrors, AreThoseOfARecord) {
    for (const Framing& framing : {Framing(Framing::lines), Framing(Framing::concatenated)}) {
        std::istringstream stream("[1]\n[null,2,null,null]\n[3]\n");
        Records<std::vector<int>> records(stream, framing, up_to(2));
        std::vector<int> record;
        EXPECT_TRUE(records.next(record));
        EXPECT_STREQ(error_of([&] { records.next(record); }).what(),
                     "2:2: at /0: null is not a number\n2:9: at /2: null is not a number\n"
                     "the conversion ended after 2 errors: there may be more");
        EXPECT_TRUE(record.empty());
        EXPECT_TRUE(records.next(record));
        EXPECT_EQ(record, std::vector<int>{3});
    }
}

TEST(SeveralReadErrors, AreThoseOfTheValueOfAReader) {
    Reader reader("{\"a\": [1, null,\n null]}");
    reader.next();
    reader.next();
    std::vector<int> numbers;
    EXPECT_STREQ(error_of([&] { reader.read(numbers, up_to(5)); }).what(),
                 "1:11: at /a/1: null is not a number\n2:2: at /a/2: null is not a number");
    EXPECT_EQ(reader.next(), Token::end_object);

    Reader other(R"({"n/~":1,"new":2})");
    other.next();
    reads::Leaf leaf;
    EXPECT_STREQ(
        error_of([&] { other.read(leaf, up_to(1)); }).what(),
        "1:16: at /new: the member \"new\" is unknown; known are \"n/~\", \"level\", \"\", "
        "\"point\"");
}

TEST(SeveralReadErrors, TakeTimeLinearInTheDocument) {
    // A thousand errors in one line of some megabytes: looking for each from the begin would take
    // minutes.
    std::string text = "[";
    for (int i = 0; i != 1000000; ++i) {
        text += i % 1000 == 999 ? "null," : "1,";
    }
    text += "1]";
    const ReadError error = error_in<std::vector<int>>(text, up_to(5000));
    ASSERT_EQ(error.errors().size(), 1000U);
    EXPECT_EQ(error.errors()[999].pointer, "/999999");
    EXPECT_EQ(error.errors()[999].column, 2002997U);
}

TEST(ReadError, NeedsAPositionForEachError) {
    EXPECT_THROW(ReadError(ConversionError("/a", "is bad"), {}, {}), std::invalid_argument);
}

} // namespace
} // namespace foundation::json::test
