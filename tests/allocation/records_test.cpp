// Records when memory runs out, and how much memory they take.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/repeated_text.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/records.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <istream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

const std::string long_text = "a text too long for a string's own storage";

ReadOptions with_comments() {
    ReadOptions options;
    options.comments = true;
    return options;
}

struct Framed {
    Framing framing;
    std::string text;
};

/// Records of every kind in turn, errors among them, with more than a window between some.
std::vector<Framed> all_framings() {
    const std::string far(70000, ' ');
    const std::string object = "{\"" + long_text + "\":[1,\"" + long_text + "\"]}";
    const std::string array = "[1,[\"" + long_text + "\"],{}]";
    const std::string string = "\"\\n" + long_text + '"';
    return {
        {Framing::lines, "/* " + long_text + " */\n" + object + "\n/x" + long_text + "\n" + array +
                             far + "\n" + string + "\n[" + long_text + "\n/* " + object + "\n7"},
        {Framing::concatenated, object + array + far + string + " /*" + far + "*/ [" + long_text +
                                    "\n/* \xFF" + long_text + "\n" + object + "7 /* x"},
        {Framing::elements("/" + long_text + "/1"),
         "{\"b\":" + object + ",\"" + long_text + "2\":1,\"" + long_text + "\":[" + far + "[" +
             string + "],[" + object + "," + array + far + "," + string + ",7]],\"c\":" + object +
             "}"},
        {Framing::elements("/" + long_text),
         "{\"" + long_text + "\":[" + object + ",[1,[" + long_text + "]]]}"},
        {Framing::elements("/b/1"), "{\"b\":[" + object + "]}"},
    };
}

/// What has been read so far; collected without any allocation.
struct Reading {
    explicit Reading(const Framed& framed)
        : stream(framed.text), records(stream, framed.framing, with_comments()) {}

    void add(std::string_view text) {
        for (const char c : text) {
            hash = hash * 31 + static_cast<unsigned char>(c);
        }
        const Position position = records.position();
        hash = hash * 31 + records.index();
        hash = hash * 31 + position.byte + position.line + position.column;
        for (const char c : records.text()) {
            hash = hash * 31 + static_cast<unsigned char>(c);
        }
    }

    void run() {
        for (bool more = true; more;) {
            try {
                more = records.next(value);
                add("value");
                count += more ? 1 : 0;
                if (more) {
                    hash = hash * 31 + static_cast<std::size_t>(kind_of(value));
                    hash = hash * 31 + value_size();
                }
            } catch (const std::runtime_error& error) { // of the parser, or of the pointer
                add(error.what());
                ++errors;
            }
        }
    }

    std::size_t value_size() const {
        if (const Array* const array = get_if<Array>(&value)) {
            return array->size();
        }
        if (const Object* const object = get_if<Object>(&value)) {
            return object->size();
        }
        return holds<std::string>(value) ? get<std::string>(value).size() : 0;
    }

    std::istringstream stream;
    Records<Value> records;
    Value value;
    std::size_t count = 0;
    std::size_t errors = 0;
    std::size_t hash = 0;
};

TEST(RecordsAllocationFailures, LoseNoRecordAndNoError) {
    const std::pair<std::size_t, std::size_t> expected[] = {{4, 3}, {5, 3}, {4, 0}, {1, 1}, {0, 1}};
    const std::vector<Framed> framings = all_framings();
    for (std::size_t i = 0; i != framings.size(); ++i) {
        SCOPED_TRACE("framing " + std::to_string(i));
        Reading undisturbed(framings[i]);
        undisturbed.run();
        EXPECT_EQ(undisturbed.count, expected[i].first);
        EXPECT_EQ(undisturbed.errors, expected[i].second);
        const std::size_t failures =
            fail_each_allocation([&] { return std::make_unique<Reading>(framings[i]); },
                                 [](std::unique_ptr<Reading>& reading) { reading->run(); },
                                 [](const std::unique_ptr<Reading>&) {},
                                 [&](const std::unique_ptr<Reading>& reading) {
                                     EXPECT_EQ(reading->hash, undisturbed.hash);
                                     EXPECT_EQ(reading->count, undisturbed.count);
                                     EXPECT_EQ(reading->errors, undisturbed.errors);
                                 });
        EXPECT_GE(failures, 2U);
    }
}

TEST(RecordsAllocationFailures, LeaveTheCallersValueUnchanged) {
    const Value before[] = {Undefined(),       1.5,         "short",
                            long_text.c_str(), Array{1, 2}, Object{{"a", 1}}};
    for (const std::string text : {"[1,[2]]", "{\"a\":{}}", "\"string\"", "7"}) {
        const Framed framings[] = {{Framing::lines, text + "\n"},
                                   {Framing::concatenated, text + " "},
                                   {Framing::elements("/a"), "{\"a\":[" + text + "]}"}};
        for (const Framed& framed : framings) {
            for (const Value& value : before) {
                const bool container = holds<Array>(value) || holds<Object>(value);
                const bool other = container && (text[0] == '[' || text[0] == '{') &&
                                   holds<Array>(value) != (text[0] == '[');
                static_cast<void>(fail_each_allocation(
                    [&] {
                        auto reading = std::make_unique<Reading>(framed);
                        reading->value = value;
                        return reading;
                    },
                    [](std::unique_ptr<Reading>& reading) {
                        reading->records.next(reading->value);
                    },
                    [&](const std::unique_ptr<Reading>& reading) {
                        const std::string found = describe(reading->value);
                        if (!other || found != describe(Value(false))) {
                            EXPECT_EQ(found, describe(value)) << text;
                        }
                    },
                    [&](const std::unique_ptr<Reading>& reading) {
                        EXPECT_EQ(content_text(reading->value), text);
                        EXPECT_EQ(reading->records.text(), text);
                    }));
            }
        }
    }
}

TEST(RecordsAllocationFailures, OfFramingsLeakNothing) {
    static_cast<void>(fail_each_allocation([] { return std::string(); },
                                           [](std::string& pointer) {
                                               pointer = "/" + long_text;
                                               const Framing framing = Framing::elements(pointer);
                                               EXPECT_TRUE(framing.is_elements());
                                           },
                                           [](const std::string&) {}));
}

// ---- Memory ----------------------------------------------------------------------------------

/// How many allocations the records of a stream take behind the first three.
std::size_t later_allocations(const std::string& begin, const std::string& record,
                              const std::string& end, const Framing& framing) {
    std::string text = begin;
    for (int i = 0; i != 100; ++i) {
        text += record;
    }
    text += end;
    std::istringstream stream(text);
    Records<Value> records(stream, framing);
    Value value;
    for (int i = 0; i != 3; ++i) {
        EXPECT_TRUE(records.next(value));
    }
    return allocations_of([&] {
        for (int i = 0; i != 97; ++i) {
            EXPECT_TRUE(records.next(value));
        }
    });
}

TEST(RecordsAllocations, OfRecordsLikeThoseBeforeAreNone) {
    // Names in any order, long ones, nested objects, and arrays of what needs no memory itself.
    const std::string record = "{\"time\":\"2026-11-22T08:40:39Z\",\"id\":12345,\"" + long_text +
                               "\":\"" + long_text + "\",\"user\":{\"name\":\"" + long_text +
                               "\",\"\\u0061\":{\"b\":null}},\"tags\":[1,\"two\",true]}";
    EXPECT_EQ(later_allocations("", record + "\n", "", Framing::lines), 0U);
    EXPECT_EQ(later_allocations("", record + " ", "", Framing::concatenated), 0U);
    EXPECT_EQ(later_allocations("[", record + ",", "1]", Framing::elements()), 0U);
    const std::string string = '"' + long_text + '"';
    EXPECT_EQ(later_allocations("", string + "\n", "", Framing::lines), 0U);
    EXPECT_EQ(later_allocations("", "[1,2,3]\n", "", Framing::lines), 0U);
}

TEST(RecordsAllocations, OfShortRecordsDoNotKeepTheMemoryOfManyLongOnes) {
    // Each record gives another member much to hold and the others nothing.
    for (const bool arrays : {true, false}) {
        constexpr int count = 200;
        std::string text;
        for (int large = 0; large != count; ++large) {
            text += '{';
            for (int i = 0; i != count; ++i) {
                std::string content = arrays ? "1" : "x";
                for (int j = 0; i == large && j != 5000; ++j) {
                    content += arrays ? ",1" : "xx";
                }
                text += '"' + std::to_string(i) + (arrays ? "\":[" : "\":\"") + content +
                        (arrays ? ']' : '"') + (i + 1 == count ? "}\n" : ",");
            }
        }
        std::istringstream stream(text);
        Records<Value> records(stream);
        const std::size_t before = live_bytes();
        Value value;
        int read = 0;
        while (records.next(value)) {
            ++read;
        }
        EXPECT_EQ(read, count);
        EXPECT_LE(live_bytes() - before, 1000000U) << arrays; // 5000 numbers: 120,000 bytes
    }
}

TEST(RecordsAllocations, OfALongRecordAreFreedAtTheNextOne) {
    std::istringstream stream("\"" + std::string(1000000, 'x') + "\"\n1\n2\n3\n");
    Records<Value> records(stream);
    Value value;
    EXPECT_TRUE(records.next(value));
    const std::size_t before = live_bytes();
    EXPECT_TRUE(records.next(value));
    EXPECT_LE(live_bytes() + 900000, before);
}

TEST(RecordsAllocations, OfWhatTheCallerHadAreFreedAtTheFirstRecord) {
    std::istringstream stream("\"a\"\n\"b\"\n");
    Records<Value> records(stream);
    const std::size_t before = live_bytes();
    Value value(std::string(1000000, 'x'));
    EXPECT_TRUE(records.next(value));
    EXPECT_LE(live_bytes(), before + 100000); // the window
}

std::size_t peak_of_records(RepeatedText buffer, const Framing& framing,
                            const ReadOptions& options = with_comments()) {
    std::istream stream(&buffer);
    return peak_bytes_of([&] {
        Records<Value> records(stream, framing, options);
        Value value;
        for (bool more = true; more;) {
            try {
                more = records.next(value);
            } catch (const ParserException&) {
                // They are read on, as their framing says.
            }
        }
    });
}

TEST(PeakMemory, OfRecordsIsThatOfTheWindowAndOneRecord) {
    constexpr std::size_t most = 100000;
    const std::string record = R"({"id":12345,"name":"some one","tags":["a",true,null]})";
    EXPECT_LE(peak_of_records({"", record + "\n", 50000, ""}, Framing::lines), most);
    EXPECT_LE(peak_of_records({"", record + " [oops]\n", 50000, ""}, Framing::lines), most);
    const std::string broken = R"({"id":12345,"name":"some one","tags":oops})";
    EXPECT_LE(peak_of_records({"", record + "\n" + record + "\n" + broken + "\n", 20000, ""},
                              Framing::lines),
              most);
    EXPECT_LE(peak_of_records({"", record + " ", 50000, ""}, Framing::concatenated), most);
    EXPECT_LE(peak_of_records({"", record + "[oops]\n", 50000, ""}, Framing::concatenated), most);
    EXPECT_LE(peak_of_records({"[1", "," + record, 50000, "]"}, Framing::elements()), most);
    // Empty lines, and what lies between records.
    EXPECT_LE(peak_of_records({"1", "\n \r\n", 1000000, "2"}, Framing::lines), most);
    EXPECT_LE(peak_of_records({"1", "\n/* */ // x", 500000, "\n2"}, Framing::lines), most);
    EXPECT_LE(peak_of_records({"1", "/* */ // x\n", 500000, "2"}, Framing::concatenated), most);
    EXPECT_LE(peak_of_records({"1 /*", "* ", 2000000, "*/2"}, Framing::concatenated), most);
    EXPECT_LE(peak_of_records({"[1 /*", "* ", 2000000, "*/,2]"}, Framing::elements()), most);
    // What comes before and behind the array.
    EXPECT_LE(peak_of_records({"{\"b\":[0", "," + record, 50000, "],\"a\":[1]}"},
                              Framing::elements("/a")),
              most);
    EXPECT_LE(peak_of_records({"{\"a\":[1],\"b\":[0", "," + record, 50000, "]}"},
                              Framing::elements("/a")),
              most);
    // The rest of a line with an error.
    EXPECT_LE(peak_of_records({"1]", " x", 2000000, "\n2"}, Framing::concatenated), most);
}

TEST(PeakMemory, OfRecordsIsNotMuchMoreThanALimit) {
    ReadOptions options;
    options.max_bytes = 100000;
    constexpr std::size_t most = 300000;
    EXPECT_LE(peak_of_records({"1\n\"", "x", 3000000, "\"\n2"}, Framing::lines, options), most);
    EXPECT_LE(peak_of_records({"1\n", "   ", 1000000, "\n2"}, Framing::lines, options), most);
    EXPECT_LE(peak_of_records({"1\n\"", "x", 3000000, "\"\n2"}, Framing::concatenated, options),
              most);
    EXPECT_LE(peak_of_records({"[1,\"", "x", 3000000, "\",2]"}, Framing::elements(), options),
              most);
}

} // namespace
} // namespace foundation::json::test
