// Reader when memory runs out, and how much memory it takes.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/repeated_text.hpp"

#include <foundation/json/parse.hpp>
#include <foundation/json/reader.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace foundation::json::test {
namespace {

ParseOptions strict_options() {
    ParseOptions options;
    options.comments = true;
    options.duplicate_names = ParseOptions::DuplicateNames::error;
    return options;
}

const std::string long_text = "a text too long for a string's own storage";

std::string document() {
    const std::string far(70000, ' ');
    return "/* " + long_text + " */ {\"" + long_text + "\": [\"" + long_text + "\\n\", 1.5e300,\n" +
           far + "{\"\\u0061" + long_text + "\": [" + far + "true, /* c */ [\"" + far +
           "\"]]}],\"" + "other " + long_text + "\": null}";
}

/// What a reader has found so far; collected without any allocation.
struct Walk {
    explicit Walk(const std::string& text) : stream(text), of_stream(stream, strict_options()) {}

    void take() {
        const auto add = [this](std::string_view content) {
            for (const char c : content) {
                hash = hash * 31 + static_cast<unsigned char>(c);
            }
        };
        hash = hash * 31 + static_cast<std::size_t>(reader().token());
        const Position position = reader().position();
        hash = hash * 31 + position.byte + position.line + position.column;
        if (reader().token() == Token::string || reader().token() == Token::name) {
            add(reader().string());
        }
        add(reader().pointer());
    }

    Reader& reader() { return of_text ? *of_text : of_stream; }

    /// Goes on to the end, from where it stopped before.
    void run() {
        while (!ended) {
            if (!has_token) {
                reader().next();
                has_token = true;
            }
            const std::size_t before = hash;
            try {
                take();
            } catch (...) {
                hash = before;
                throw;
            }
            has_token = false;
            ended = reader().token() == Token::end;
        }
    }

    std::istringstream stream;
    Reader of_stream;
    std::optional<Reader> of_text; ///< reads this if it is there
    bool has_token = false;
    bool ended = false;
    std::size_t hash = 0;
};

TEST(ReaderAllocationFailures, LoseNoToken) {
    const std::string text = document();
    Walk undisturbed(text);
    undisturbed.run();
    for (const bool from_memory : {false, true}) {
        const std::size_t failures = fail_each_allocation(
            [&] {
                auto walk = std::make_unique<Walk>(text);
                if (from_memory) {
                    walk->of_text.emplace(text, strict_options());
                }
                return walk;
            },
            [](std::unique_ptr<Walk>& walk) { walk->run(); }, [](const std::unique_ptr<Walk>&) {},
            [&](const std::unique_ptr<Walk>& walk) { EXPECT_EQ(walk->hash, undisturbed.hash); });
        EXPECT_GE(failures, 20U);
    }
}

TEST(ReaderAllocationFailures, OfConstructionLeakNothing) {
    const std::string text = "[1]";
    std::istringstream stream(text);
    EXPECT_GE(
        fail_each_allocation([] { return std::optional<Reader>(); },
                             [&text](std::optional<Reader>& reader) { reader.emplace(text); },
                             [](const std::optional<Reader>& reader) { EXPECT_FALSE(reader); }),
        1U);
    EXPECT_GE(
        fail_each_allocation([] { return std::optional<Reader>(); },
                             [&stream](std::optional<Reader>& reader) { reader.emplace(stream); },
                             [](const std::optional<Reader>& reader) { EXPECT_FALSE(reader); }),
        1U);
}

struct WholeValue {
    explicit WholeValue(const std::string& text) : stream(text), reader(stream, strict_options()) {
        reader.next();
    }

    std::istringstream stream;
    Reader reader;
    std::unique_ptr<Value> value;
    std::string error;
    bool skipped = false;
};

TEST(ReaderAllocationFailures, OfValueLeaveTheReaderWhereItWas) {
    const std::string text = document();
    const std::string expected = content_text(parse(text, strict_options()));
    const std::size_t failures =
        fail_each_allocation([&text] { return std::make_unique<WholeValue>(text); },
                             [](std::unique_ptr<WholeValue>& whole) {
                                 // In place, since moving it would allocate, too.
                                 whole->value.reset(new Value(whole->reader.value()));
                             },
                             [](const std::unique_ptr<WholeValue>& whole) {
                                 EXPECT_EQ(whole->reader.token(), Token::begin_object);
                                 EXPECT_EQ(whole->reader.position().byte, 49U);
                             },
                             [&expected](const std::unique_ptr<WholeValue>& whole) {
                                 EXPECT_EQ(content_text(*whole->value), expected);
                                 EXPECT_EQ(whole->reader.next(), Token::end);
                             });
    EXPECT_GE(failures, 15U);
}

TEST(ReaderAllocationFailures, OfValueAtANameGoOnWithTheMember) {
    const std::string text =
        "{\"" + long_text + "\":" + std::string(70000, ' ') + "[\"" + long_text + "\"]}";
    const std::size_t failures = fail_each_allocation(
        [&text] {
            auto whole = std::make_unique<WholeValue>(text);
            whole->reader.next();
            return whole;
        },
        [](std::unique_ptr<WholeValue>& whole) {
            // In place, since moving it would allocate, too.
            whole->value.reset(new Value(whole->reader.value()));
        },
        [](const std::unique_ptr<WholeValue>&) {},
        [](const std::unique_ptr<WholeValue>& whole) {
            EXPECT_EQ(content_text(*whole->value), "[\"" + long_text + "\"]");
            EXPECT_EQ(whole->reader.next(), Token::end_object);
        });
    EXPECT_GE(failures, 4U);
}

TEST(ReaderAllocationFailures, OfSkipGoOnSkipping) {
    const std::string text = "[" + document() + ", 2]";
    const std::size_t failures = fail_each_allocation(
        [&text] {
            auto whole = std::make_unique<WholeValue>(text);
            whole->reader.next();
            return whole;
        },
        [](std::unique_ptr<WholeValue>& whole) {
            whole->reader.skip();
            whole->skipped = true;
        },
        [](const std::unique_ptr<WholeValue>& whole) { EXPECT_FALSE(whole->skipped); },
        [](const std::unique_ptr<WholeValue>& whole) {
            EXPECT_EQ(whole->reader.token(), Token::end_object);
            EXPECT_EQ(whole->reader.pointer(), "/0");
            EXPECT_EQ(whole->reader.next(), Token::number);
        });
    EXPECT_GE(failures, 5U);
}

TEST(ReaderAllocationFailures, OfErrorsThrowThemAtTheNextCall) {
    const std::string texts[] = {
        "[" + long_text,
        "{\"" + long_text + "\":1,\"" + long_text + "\":2}",
        "[\"" + long_text + "\", 1e999]",
        "[1 /* " + std::string(70000, '*') + "\xFF */, 2]",
        std::string(2000, '['),
    };
    for (const std::string& text : texts) {
        std::string expected;
        try {
            parse(text, strict_options());
        } catch (const ParserException& error) {
            expected = error.what();
        }
        const auto run = [](std::unique_ptr<WholeValue>& whole) {
            try {
                while (whole->reader.next() != Token::end) {
                }
            } catch (const ParserException& error) {
                whole->error = error.what();
            }
        };
        const std::size_t failures = fail_each_allocation(
            [&text] { return std::make_unique<WholeValue>(text); }, run,
            [](const std::unique_ptr<WholeValue>& whole) { EXPECT_EQ(whole->error, ""); },
            [&](const std::unique_ptr<WholeValue>& whole) { EXPECT_EQ(whole->error, expected); });
        EXPECT_GE(failures, 2U) << text.substr(0, 20);
    }
}

// ---- Memory ----------------------------------------------------------------------------------

/// How much memory a walk through a stream takes.
std::size_t peak_of_walk(const std::string& first, const std::string& text, std::size_t times,
                         const std::string& last) {
    RepeatedText buffer(first, text, times, last);
    std::istream stream(&buffer);
    ParseOptions options;
    options.comments = true;
    return peak_bytes_of([&] {
        Reader reader(stream, options);
        while (reader.next() != Token::end) {
        }
    });
}

TEST(PeakMemory, OfAReaderIsThatOfItsWindow) {
    constexpr std::size_t most = 80000;
    EXPECT_LE(peak_of_walk("[", R"({"id":12345,"name":"some one","tags":["a",true,null]},)", 100000,
                           "0]"),
              most);
    EXPECT_LE(peak_of_walk("[1", " \n\t  ", 1000000, ",2]"), most);
    EXPECT_LE(peak_of_walk("[1", "/* a comment */ // and another\n", 100000, ",2]"), most);
    EXPECT_LE(peak_of_walk("[1/*", "* / ", 1000000, "*/,2]"), most);
    EXPECT_LE(peak_of_walk("[1//", "// x", 1000000, "\n,2]"), most);
    EXPECT_LE(peak_of_walk("[", "[[[[]]]],", 100000, "{}]"), most);
    EXPECT_LE(peak_of_walk("{\"a\":1", ",\"name\":[2]", 500000, "}"), most);
}

TEST(PeakMemory, OfAReaderOfATextDoesNotDependOnIt) {
    std::string text = "[0";
    for (int i = 0; i != 100000; ++i) {
        text += R"(,{"id":12345,"name":"some one","tags":["a",true,null]})";
    }
    text += "]";
    const std::size_t peak = peak_bytes_of([&] {
        Reader reader(text);
        while (reader.next() != Token::end) {
        }
        Reader skipping(text);
        skipping.next();
        skipping.skip();
    });
    EXPECT_LE(peak, 8000U);
}

TEST(PeakMemory, OfAReaderGrowsWithItsTokensAndShrinksAgain) {
    RepeatedText buffer("[\"" + std::string(1000000, 'x') + "\"", ",\"short\"", 1000000, "]");
    std::istream stream(&buffer);
    Reader reader(stream);
    const std::size_t before = live_bytes();
    reader.next();
    const std::size_t peak = peak_bytes_of([&] { reader.next(); });
    EXPECT_EQ(reader.string().size(), 1000000U);
    EXPECT_LE(peak, 3 * 1000000U);
    while (reader.next() != Token::end) {
    }
    EXPECT_LE(live_bytes() - before, 100000U);
}

TEST(PeakMemory, OfAReaderIsNotMuchMoreThanALimit) {
    for (const std::string begin : {"[\"", "{\"", "[0.", "[[0,"}) {
        const std::size_t peak = [&] {
            RepeatedText buffer(begin,
                                begin.back() == '"' ? "x"
                                : begin == "[0."    ? "7"
                                                    : "1,",
                                3000000, "");
            std::istream stream(&buffer);
            return peak_bytes_of([&] {
                Reader reader(stream, {}, 100000);
                reader.next();
                if (begin == "[[0,") {
                    reader.next();
                    EXPECT_THROW(static_cast<void>(reader.value()), ParserException);
                } else {
                    EXPECT_THROW(reader.next(), ParserException);
                }
            });
        }();
        // The elements of an array are pending until its end.
        EXPECT_LE(peak, begin == "[[0," ? 2000000U : 300000U) << begin;
    }
}

TEST(PeakMemory, OfAValueOfAReaderIsThatOfTheValueAndItsText) {
    std::string text = "[0";
    for (int i = 0; i != 100000; ++i) {
        text += ",[1,2]";
    }
    text += "]";
    std::istringstream stream(text);
    Reader reader(stream);
    reader.next();
    const std::size_t before = live_bytes();
    std::optional<Value> value;
    const std::size_t peak = peak_bytes_of([&] { value = reader.value(); });
    const std::size_t kept = live_bytes() - before;
    // The window doubles, and the old one is there until then. The elements of the array that is
    // read are pending until its end.
    EXPECT_LE(peak, kept + 10 * text.size());
}

} // namespace
} // namespace foundation::json::test
