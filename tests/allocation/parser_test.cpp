// Parsing when memory runs out, how much memory parsing takes, and files that change while they are
// read.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"

#include <foundation/json/parse.hpp>
#include <foundation/json/serializer.hpp>

#include <gtest/gtest.h>

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

std::string long_array(const std::string& element, std::size_t count) {
    std::string text = "[" + element;
    for (std::size_t i = 1; i != count; ++i) {
        text += "," + element;
    }
    return text + "]";
}

const std::string long_text = "a text too long for a string's own storage";

/// Texts that need every kind of allocation.
std::vector<std::string> texts() {
    return {
        "1",
        '"' + long_text + '"',
        '"' + long_text + "\\n\"",
        "[1,2.5,null,true,9007199254740993]",
        "[[],[[1]],{},{\"a\":[{}]},\"" + long_text + "\",\"\\u0041" + long_text + "\"]",
        "{\"" + long_text + "\":\"" + long_text + "\",\"\\t" + long_text + "\":{\"a\":[1]}}",
        "{\"a\":1,\"a\":[2],\"a\":\"" + long_text + "\",\"a\":{\"b\":[3]}}",
        long_array("[1,{\"a\":\"b\"}]", 70),
        long_array("1", 600),
        long_array("[]", 300),
    };
}

TEST(ParserAllocationFailures, LeaveNoValueAndLeakNothing) {
    for (const std::string& text : texts()) {
        SCOPED_TRACE(text.substr(0, 60));
        const std::string expected = test::content_text(parse(text));
        const std::size_t failures =
            fail_each_allocation([] { return std::optional<Value>(); },
                                 [&text](std::optional<Value>& value) { value = parse(text); },
                                 [](const std::optional<Value>& value) { EXPECT_FALSE(value); },
                                 [&expected](const std::optional<Value>& value) {
                                     EXPECT_EQ(test::content_text(*value), expected);
                                 });
        EXPECT_EQ(failures == 0, text == "1") << "only a number needs no memory";
    }
}

TEST(ParserAllocationFailures, OfErrorsLeakNothing) {
    for (const std::string text : {"[1,x]", "[[\"a\",{\"b\":[1e999]}]]", "{\"a\":[1,2,\"\\x\"]}"}) {
        const std::size_t failures = fail_each_allocation(
            [] { return std::string(); },
            [&text](std::string& what) {
                try {
                    parse(text);
                } catch (const ParserException& error) {
                    what = describe(error, "n");
                }
            },
            [](const std::string& what) { EXPECT_EQ(what, ""); },
            [](const std::string& what) { EXPECT_EQ(what.substr(0, 4), "n:1:"); });
        EXPECT_GE(failures, 5u);
    }
}

TEST(ParserAllocationFailures, OfStreamsAndFilesLeakNothing) {
    const std::string text = long_array("\"" + long_text + "\"", 200);
    const std::string expected = test::content_text(parse(text));
    const std::size_t of_stream =
        fail_each_allocation([&text] { return std::make_unique<std::istringstream>(text); },
                             [](std::unique_ptr<std::istringstream>& stream) {
                                 stream->clear();
                                 stream->seekg(0);
                                 const Value value = parse(*stream);
                                 EXPECT_EQ(value.length(), 200u);
                             },
                             [](const std::unique_ptr<std::istringstream>&) {});
    EXPECT_GE(of_stream, 200u);

    const std::filesystem::path path =
        std::filesystem::temp_directory_path() /
        ("foundation_json_parser_allocation." + std::to_string(getpid()));
    std::ofstream(path) << text;
    const std::size_t of_file =
        fail_each_allocation([] { return std::optional<Value>(); },
                             [&path](std::optional<Value>& value) { value = parse_file(path); },
                             [](const std::optional<Value>& value) { EXPECT_FALSE(value); });
    EXPECT_GE(of_file, 200u);
    std::filesystem::remove(path);
}

const std::filesystem::path& scratch_file() {
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() /
        ("foundation_json_parser_scratch." + std::to_string(getpid()));
    return path;
}

TEST(ParseFileThatChanges, AFileThatBecomesShorterMeanwhileIsAnError) {
    const std::string text = '"' + std::string(100000, 'x') + '"';
    std::ofstream(scratch_file()) << text;
    try {
        // The memory for the text is allocated after its size is read and before its content is.
        const WatchedAllocation watched(text.size(),
                                        [] { std::filesystem::resize_file(scratch_file(), 10); });
        parse_file(scratch_file());
        ADD_FAILURE() << "was read";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.what(), "cannot read '" + scratch_file().string() +
                                    "', which became shorter meanwhile: Input/output error");
        EXPECT_EQ(error.code(), std::error_code(EIO, std::generic_category()));
    }
    std::filesystem::remove(scratch_file());
}

TEST(ParseFileThatChanges, AFileThatBecomesLongerMeanwhileIsReadToItsEnd) {
    std::ofstream(scratch_file()) << '"' + std::string(100000, 'x');
    const WatchedAllocation watched(100000, [] {
        std::ofstream(scratch_file(), std::ios::app) << std::string(100000, 'y') + '"';
    });
    EXPECT_EQ(parse_file(scratch_file()),
              Value(std::string(100000, 'x') + std::string(100000, 'y')));
    std::filesystem::remove(scratch_file());
}

struct Reading {
    explicit Reading(const std::string& text) : stream(text), values(stream) {}

    std::istringstream stream;
    ValueStream values;
    Value value;
    std::size_t count = 0;
};

TEST(ParserAllocationFailures, OfAValueStreamLoseNoValue) {
    const std::string text =
        "[1,{\"a\":\"" + long_text + "\"}]\n\"" + long_text + "\"\n{\"b\":[2]}\n3";
    const std::size_t failures = fail_each_allocation(
        [&text] { return std::make_unique<Reading>(text); },
        [](std::unique_ptr<Reading>& reading) {
            while (reading->values.next(reading->value)) {
                ++reading->count;
            }
        },
        [](const std::unique_ptr<Reading>&) {},
        [](const std::unique_ptr<Reading>& reading, auto...) { EXPECT_EQ(reading->count, 4u); });
    EXPECT_GE(failures, 10u);
}

TEST(ParserAllocationFailures, OfAValueStreamLoseNoneOfManyNestedValues) {
    std::string text;
    for (int i = 0; i != 3; ++i) {
        text +=
            std::string(100, '[') + "{\"a\":\"" + long_text + "\"}" + std::string(100, ']') + "\n";
    }
    const std::size_t failures = fail_each_allocation(
        [&text] { return std::make_unique<Reading>(text); },
        [](std::unique_ptr<Reading>& reading) {
            while (reading->values.next(reading->value)) {
                ++reading->count;
            }
        },
        [](const std::unique_ptr<Reading>&) {},
        [](const std::unique_ptr<Reading>& reading, auto...) { EXPECT_EQ(reading->count, 3u); });
    EXPECT_GE(failures, 300u);
}

TEST(ParserAllocationFailures, OfAValueStreamLeaveTheCallersValueUnchanged) {
    const Value before[] = {Undefined(),       1.5,         "short",
                            long_text.c_str(), Array{1, 2}, Object{{"a", 1}}};
    for (const std::string text : {"[1,[2]]", "{\"a\":{}}", "\"string\"", "7"}) {
        for (const Value& value : before) {
            const bool container = holds<Array>(value) || holds<Object>(value);
            const bool other = container && (text[0] == '[' || text[0] == '{') &&
                               holds<Array>(value) != (text[0] == '[');
            static_cast<void>(fail_each_allocation(
                [&] {
                    auto reading = std::make_unique<Reading>(text);
                    reading->value = value;
                    return reading;
                },
                [](std::unique_ptr<Reading>& reading) { reading->values.next(reading->value); },
                [&](const std::unique_ptr<Reading>& reading) {
                    const std::string found = test::describe(reading->value);
                    if (!other || found != test::describe(Value(false))) {
                        EXPECT_EQ(found, test::describe(value)) << text;
                    }
                }));
        }
    }
}

// ---- Memory ----------------------------------------------------------------------------------

/// What parse() promises to take at most beside the text and the value.
std::size_t most_beside_the_value(std::size_t depth) {
    return 1024 * 1024 + 64 * depth;
}

/// What it promises besides where values are small, compared with what is kept until they are made.
std::size_t most_for_small_values(std::size_t kept) {
    return sizeof(Value) < 40 ? kept / 6 : 0;
}

/// Checks that parsing a text takes little more memory than its value does.
void expect_little_memory(const std::string& text, std::size_t depth = 1000) {
    ParseOptions options;
    options.max_depth = depth;
    const std::size_t before = live_bytes();
    std::optional<Value> value;
    const std::size_t peak = peak_bytes_of([&] { value = parse(text, options); });
    const std::size_t kept = live_bytes() - before;
    EXPECT_LE(peak, kept + most_beside_the_value(depth) + most_for_small_values(kept))
        << text.substr(0, 40);
}

TEST(PeakMemory, OfParsingIsLittleMoreThanTheValue) {
    expect_little_memory(long_array("1", 300000));
    expect_little_memory(long_array("[1,2]", 60000));
    expect_little_memory(long_array("[]", 60000));
    expect_little_memory(long_array("{}", 60000));
    expect_little_memory(long_array("{\"a\":[1,2,3],\"b\":\"" + long_text + "\"}", 15000));
    expect_little_memory(long_array(long_array("1.5", 1000), 150));
    expect_little_memory(long_array(long_array("[1,2]", 300), 150));
    expect_little_memory('"' + std::string(3000000, 'x') + '"');
    expect_little_memory(std::string(1000, '[') + std::string(1000, ']'));
    // A long array so deep that its elements are few of all that are pending.
    std::string opening;
    for (int i = 0; i != 700; ++i) {
        opening += "[[],";
    }
    for (const std::size_t count : {256U, 300U, 699U, 700U, 701U, 5000U}) {
        expect_little_memory(opening + long_array("[]", count) + std::string(700, ']'));
    }
    std::string escapes;
    for (int i = 0; i != 150000; ++i) {
        escapes += "\\u0041";
    }
    expect_little_memory('"' + escapes + '"');
}

/// A text of so many levels, each of which adds something before and behind the next.
std::string nested(std::size_t levels, const std::string& before, const std::string& behind) {
    std::string text;
    for (std::size_t i = 0; i != levels; ++i) {
        text += before;
    }
    text += "[]";
    for (std::size_t i = 0; i != levels; ++i) {
        text += behind;
    }
    return text;
}

TEST(PeakMemory, OfParsingDeepNestingIsLittleMoreThanTheValue) {
    expect_little_memory(nested(5000, "[", "]"), 5001);
    expect_little_memory(nested(5000, "[0,0,0,0,0,0,0,0,", "]"), 5001);
    expect_little_memory(nested(5000, "[", ",0]"), 5001);
    expect_little_memory(nested(5000, "{\"a\":", "}"), 5001);
    expect_little_memory(nested(5000, "{\"a\":", ",\"b\":0}"), 5001);
    expect_little_memory(nested(4000, "[{\"a\":", "}]"), 8001);
    expect_little_memory(nested(2500, "{\"a\":{\"b\":[0,[", ",0]]}}"), 10001);
    std::string elements;
    for (int i = 0; i != 254; ++i) {
        elements += "[],";
    }
    expect_little_memory(nested(999, "[" + elements, "]"), 1000);
    expect_little_memory(nested(20, "[" + long_array("{}", 20000) + ",", "]"), 24);
}

/// Checks that a text which is refused takes little more than what was read of it.
/// @param valid  the longest part of the text that is valid if it is completed
void expect_little_memory_refused(const std::string& text, const std::string& valid) {
    const std::size_t before = live_bytes();
    const Value value = parse(valid);
    const std::size_t kept = live_bytes() - before;
    const std::size_t peak =
        peak_bytes_of([&] { EXPECT_THROW(parse(text), ParserException) << text.substr(0, 40); });
    // Room for elements that a text seems to have is reserved, but not used.
    const std::size_t reserved = 20 * (text.size() - valid.size());
    EXPECT_LE(peak, kept + most_beside_the_value(1000) + reserved) << text.substr(0, 40);
}

TEST(PeakMemory, OfTextsThatAreRefusedIsLittleMoreThanWhatWasRead) {
    std::string numbers;
    for (int i = 0; i != 20000; ++i) {
        numbers += "1,";
    }
    const std::string valid = "[" + numbers + "1]";
    const std::string begin = "[" + numbers;
    expect_little_memory_refused(begin + std::string(3000000, '['), valid);
    expect_little_memory_refused(begin + std::string(3000000, '{'), valid);
    expect_little_memory_refused(begin + "x" + std::string(3000000, ','), valid);
    expect_little_memory_refused(begin + "x,\"" + std::string(3000000, ','), valid);
    expect_little_memory_refused(begin + "1 1" + numbers + numbers + numbers, valid);
    expect_little_memory_refused(std::string(3000000, '['), "[]");
    expect_little_memory_refused("[" + std::string(3000000, ','), "[]");
    expect_little_memory_refused('"' + std::string(3000000, 'a'), "[]");
    // Within what is valid, nothing is reserved that depends on the rest.
    for (const std::string& rest : {std::string(3000000, '['), "x" + std::string(3000000, ',')}) {
        const std::size_t peak =
            peak_bytes_of([&] { EXPECT_THROW(parse("[" + numbers + rest), ParserException); });
        EXPECT_LE(peak, 8000000u);
    }
}

TEST(PeakMemory, OfADescriptionIsLittleMoreThanTheQuotedLine) {
    const std::string line(3000000, 'x');
    const ParserException error("no digit", MISSING_ARRAY_CLOSE, 2000000, 1, 2000001, 2000000,
                                line);
    std::string description;
    const std::size_t peak = peak_bytes_of([&] { description = describe(error); });
    EXPECT_EQ(description, "1:2000001: no digit\n..." + std::string(37, 'x') +
                               std::string(36, 'x') + "...\n" + std::string(40, ' ') + "^\n");
    EXPECT_LE(peak, line.size() + 300000);
}

TEST(PeakMemory, OfParsingAStreamIncludesTheText) {
    const std::string text = long_array("[1,2]", 60000);
    const std::size_t before = live_bytes();
    std::istringstream stream(text);
    const std::size_t with_stream = live_bytes();
    std::optional<Value> value;
    const std::size_t peak = peak_bytes_of([&] { value = parse(stream); });
    const std::size_t kept = live_bytes() - with_stream;
    EXPECT_LE(peak, kept + text.size() + text.size() / 4 + most_beside_the_value(1000));
    EXPECT_GT(with_stream, before);
}

TEST(PeakMemory, OfAValueStreamIncludesNoSpaceAndNoCommentsBetweenValues) {
    std::string comments;
    for (int i = 0; i != 100000; ++i) {
        comments += "/* nothing */ // nothing\n  ";
    }
    const std::string text = "1\n" + comments + "2 /*" + std::string(3000000, '*') + "*/ 3";
    std::istringstream stream(text);
    ParseOptions options;
    options.comments = true;
    const std::size_t peak = peak_bytes_of([&] {
        ValueStream values(stream, options);
        Value value;
        for (int i = 1; i != 4; ++i) {
            EXPECT_TRUE(values.next(value));
            EXPECT_EQ(value, Value(i));
        }
        EXPECT_FALSE(values.next(value));
    });
    EXPECT_LE(peak, 300000u);
}

TEST(PeakMemory, OfAValueStreamIsNotMuchMoreThanALimit) {
    const std::string text = "\"" + std::string(5000000, 'x');
    std::istringstream stream(text);
    const std::size_t peak = peak_bytes_of([&] {
        ValueStream values(stream, {}, 100000);
        Value value;
        EXPECT_THROW(values.next(value), ParserException);
        EXPECT_FALSE(values.next(value));
    });
    EXPECT_LE(peak, 1000000u);
}

TEST(Allocations, OfReadingAreThoseOfTheValue) {
    // The container at the top is made and then moved into the result, which takes another.
    EXPECT_EQ(allocations_of([] { parse("[]"); }), 2u);
    EXPECT_EQ(allocations_of([] { parse("{\"a\":[1,2,3,\"four\"],\"b\":{\"c\":null}}"); }), 8u);
    // Besides those: elements that are pending, of which there may be many, and chunks of the
    // pools.
    EXPECT_LE(allocations_of([] { parse(long_array("[1,2]", 1000)); }), 2u * 1000 + 2 + 60);
}

TEST(Allocations, OfReadingAreNoMoreWhereElementsOpenAndCloseAtAnyDepth) {
    const std::string elements = long_array("[]", 1000);
    for (std::size_t depth = 1; depth != 80; ++depth) {
        const std::string text = std::string(depth, '[') + elements + std::string(depth, ']');
        EXPECT_LE(allocations_of([&] { parse(text); }), 1500u) << depth;
    }
}

} // namespace
} // namespace foundation::json::test
