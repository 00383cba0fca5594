// Compares the parser with the tests' own reader, which shares no code with it.
#include "support/describe.hpp"
#include "support/every_way.hpp"
#include "support/json_reader.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"

#include "text/utf8.hpp"

#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::test {
namespace {

/// Options that agree with the other reader, which has neither integers of 64 bits nor names that
/// occur twice.
ParseOptions plain_options() {
    ParseOptions options;
    options.integers = ParseOptions::Integers::as_double;
    options.duplicate_names = ParseOptions::DuplicateNames::error;
    return options;
}

std::optional<Value> parsed(const std::string& text) {
    try {
        return parse(text, plain_options());
    } catch (const ParserException&) {
        return std::nullopt;
    }
}

std::optional<Value> read_plainly(const std::string& text) {
    try {
        return read_json(text);
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

bool is_utf8(const std::string& text) {
    for (std::size_t place = 0; place != text.size();) {
        if (static_cast<unsigned char>(text[place]) < 0x80) {
            ++place;
            continue;
        }
        const detail::Utf8Sequence sequence =
            detail::utf8_sequence(&text[place], text.data() + text.size());
        if (!sequence.complete) {
            return false;
        }
        place += sequence.length;
    }
    return true;
}

std::string plain_text(const test::Tree& tree, bool pretty) {
    std::ostringstream stream;
    test::ReferenceWriter(stream, pretty).write(tree);
    return stream.str();
}

TEST(ParserAndIndependentReader, TextsOfRandomValuesAreReadBack) {
    const std::uint64_t seed = random_seed();
    RandomTrees trees(seed, RandomTrees::Kinds::readable);
    for (std::size_t i = 0; i != test_repetitions() / 5; ++i) {
        const test::Tree tree = trees.tree();
        const Value value = to_value(tree);
        const std::string compact = plain_text(tree, false);
        const std::string pretty = plain_text(tree, true);
        for (const std::string& text : {compact, pretty}) {
            if (!is_utf8(text)) {
                ASSERT_THROW(parse(text), ParserException) << compact << ", seed " << seed;
                continue;
            }
            const Value read = parse(text, plain_options());
            ASSERT_EQ(read, value) << compact << ", seed " << seed;
            ASSERT_EQ(test::content_text(read), compact) << "seed " << seed;
        }
    }
}

/// Damages a text in a few places.
std::string damaged(std::string text, std::mt19937_64& random) {
    const std::string bytes = "[]{},:\"\\ \n\t0123456789-+.eEtrufalsn/*'\x01\x7F";
    const auto below = [&random](std::size_t limit) {
        return static_cast<std::size_t>(random() % limit);
    };
    for (std::size_t times = below(4); times != 0 && !text.empty(); --times) {
        const std::size_t place = below(text.size());
        switch (below(4)) {
        case 0:
            text[place] = bytes[below(bytes.size())];
            break;
        case 1:
            text.insert(place, 1, bytes[below(bytes.size())]);
            break;
        case 2:
            text.erase(place, 1 + below(3));
            break;
        default:
            text.insert(place, text.substr(below(text.size()), below(20)));
        }
    }
    return text;
}

bool only_ascii_without_surrogates(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80; }) &&
           text.find("\\ud") == std::string::npos && text.find("\\uD") == std::string::npos;
}

/// The first value, or error, of a stream of a text.
std::string first_of_stream(const std::string& text) {
    std::istringstream stream(text);
    ValueStream values(stream, plain_options());
    Value value;
    try {
        return values.next(value) ? test::content_text(value) : "nothing";
    } catch (const ParserException& error) {
        return describe(error);
    }
}

/// Compares the result for one text with the other reader and with a stream; checks the place of an
/// error by parsing the text before it.
void check(const std::string& text) {
    const std::optional<Value> value = parsed(text);
    if (only_ascii_without_surrogates(text)) {
        const std::optional<Value> other = read_plainly(text);
        ASSERT_EQ(value.has_value(), other.has_value()) << text;
        ASSERT_TRUE(!value || *value == *other) << text;
    }
    if (value) {
        ASSERT_EQ(first_of_stream(text), test::content_text(*value)) << text;
        return;
    }
    try {
        parse(text, plain_options());
    } catch (const ParserException& error) {
        const std::string what = error.what();
        const std::string before = text.substr(0, error.get_byte_position());
        if (what.find("too large") == std::string::npos &&
            what.find("occurs twice") == std::string::npos) {
            // The text before the place has no error but that it may end too early.
            try {
                parse(before, plain_options());
            } catch (const ParserException& earlier) {
                ASSERT_EQ(earlier.get_byte_position(), before.size()) << text;
            }
        }
        const bool begins_with_value =
            what.find("after the end of the value") != std::string::npos ||
            what.find("that ends the value") != std::string::npos ||
            what.find("right after") != std::string::npos ||
            what.find("looks like the name of a file") != std::string::npos ||
            what.find("a comment") != std::string::npos;
        if (!begins_with_value && error.get_parse_result() != EMPTY_INPUT) {
            ASSERT_EQ(first_of_stream(text), describe(error)) << text;
        }
    }
}

TEST(ParserAndIndependentReader, DamagedTextsAreRefusedOrReadAlike) {
    const std::uint64_t seed = random_seed();
    std::mt19937_64 random(seed);
    const std::string texts[] = {
        R"([1,2,{"a":[true,false,null],"b":"x\u00e9\ud83d\ude00y"}])",
        R"({"k":-0.5e+10,"l":{},"m":[]})",
        "\"h\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80\"",
        "  [ 1 , 2 ]\n",
        "-12.5e-3",
        R"([[[[]]],{"":{}},"\"\\\/\b\f\n\r\t"])",
        "{\n    \"name\": \"value\",\n    \"other\": [\n        12345678,\n        0.25\n    "
        "]\n}\n",
    };
    for (std::size_t i = 0; i != 4 * test_repetitions(); ++i) {
        const std::string text = damaged(texts[random() % std::size(texts)], random);
        check(text);
        if (i % 4 == 0) {
            ASSERT_EQ(disagreement_in_pieces_of(text, plain_options(), 1 + i / 4 % 7), "");
        }
        if (HasFatalFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

std::vector<std::filesystem::path> documents() {
    std::vector<std::filesystem::path> found;
    if (!std::string_view(FOUNDATION_JSON_CORPUS).empty()) {
        for (const auto& entry : std::filesystem::directory_iterator(FOUNDATION_JSON_CORPUS)) {
            if (entry.path().extension() == ".json") {
                found.push_back(entry.path());
            }
        }
    }
    return found;
}

TEST(ParserAndIndependentReader, DocumentsAreReadAlikeWholeAndInPieces) {
    const std::uint64_t seed = random_seed();
    std::mt19937_64 random(seed);
    for (const std::filesystem::path& path : documents()) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        const std::string whole = text.str();
        const Value value = parse(whole, plain_options());
        EXPECT_EQ(value, read_json(whole)) << path;
        EXPECT_EQ(parse_file(path, plain_options()), value) << path;
        std::istringstream stream(whole);
        ValueStream values(stream, plain_options());
        Value first;
        EXPECT_TRUE(values.next(first)) << path;
        EXPECT_EQ(first, value) << path;
        EXPECT_FALSE(values.next(first)) << path;
        for (std::size_t i = 0; i != test_repetitions() / 5; ++i) {
            const std::string damage =
                damaged(whole.substr(static_cast<std::size_t>(random() % whole.size()),
                                     static_cast<std::size_t>(random() % 200)),
                        random);
            check(damage);
            ASSERT_EQ(disagreement_in_pieces_of(damage, plain_options(), 1 + i % 20), "");
            if (HasFatalFailure()) {
                FAIL() << path << ", seed " << seed;
            }
        }
    }
}

} // namespace
} // namespace foundation::json::test
