/// @file
/// The parser on any bytes, with any options. An error must have the right position. The value of
/// an accepted text must be the same after it is written and parsed again, as read from a stream in
/// pieces of any size, and as read by the tests' own reader. A Reader, token by token or with whole
/// values, and Records in each framing must find the same values and errors.
#include "expect.hpp"
#include "input.hpp"

#include "support/every_way.hpp"
#include "support/json_reader.hpp"

#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::fuzz {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

/// Delivers a text in pieces of a given size.
class Pieces : public std::streambuf {
public:
    Pieces(const std::string& text, std::size_t size) : rest_(text), size_(size) {}

protected:
    int_type underflow() override {
        if (rest_.empty()) {
            return traits_type::eof();
        }
        piece_ = rest_.substr(0, size_);
        rest_.remove_prefix(piece_.size());
        setg(piece_.data(), piece_.data(), piece_.data() + piece_.size());
        return traits_type::to_int_type(piece_[0]);
    }

private:
    std::string_view rest_;
    std::size_t size_;
    std::string piece_;
};

/// Everything in an exception but the quoted text, which may differ: a stream of values waits for
/// no more of the line than is needed to detect the error.
std::string content(const ParserException& error) {
    std::string result = error.what();
    for (const std::size_t number :
         {static_cast<std::size_t>(error.get_parse_result()), error.get_byte_position(),
          error.get_line_number(), error.get_column(), error.get_quoted_byte_position()}) {
        result += '|' + std::to_string(number);
    }
    return result;
}

// ---- The tests' reader -------------------------------------------------------------------------

std::optional<Value> read_by_the_tests(std::string_view text) {
    try {
        return test::read_json(text);
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

/// Whether a text is shallow enough for the tests' reader, which does not limit its recursion.
bool is_shallow(std::string_view text) {
    return std::count_if(text.begin(), text.end(),
                         [](char byte) { return byte == '[' || byte == '{'; }) <= 500;
}

bool is_ascii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

// ---- The positions of errors ------------------------------------------------------------------

/// The column of a position, counted in characters; a byte order mark at the start of the text does
/// not count.
std::size_t column_of(std::string_view text, std::size_t position) {
    std::size_t begin = text.substr(0, position).rfind('\n') + 1; // 0 where there is none
    if (begin == 0 && text.substr(0, byte_order_mark.size()) == byte_order_mark) {
        begin = std::min(position, byte_order_mark.size());
    }
    return 1 + static_cast<std::size_t>(
                   std::count_if(text.begin() + static_cast<std::ptrdiff_t>(begin),
                                 text.begin() + static_cast<std::ptrdiff_t>(position),
                                 [](char byte) { return (byte & 0xC0) != 0x80; }));
}

void check_position(std::string_view text, const ParserException& error) {
    const std::size_t position = error.get_byte_position();
    expect(position <= text.size(), "the position lies within the text");
    const std::string_view before = text.substr(0, position);
    const auto line_ends = std::count(before.begin(), before.end(), '\n');
    expect_equal(error.get_line_number(), 1 + static_cast<std::size_t>(line_ends), "the line");
    expect_equal(error.get_column(), column_of(text, position), "the column");

    const std::string quoted = error.get_quoted_text();
    const std::size_t offset = error.get_quoted_byte_position();
    expect(offset <= quoted.size(), "the position lies within the quoted text");
    expect(offset <= position, "the quoted text begins within the text");
    expect_equal(quoted, text.substr(position - offset, quoted.size()), "the quoted text");
    expect(quoted.find('\n') == std::string::npos, "one line is quoted");
    expect(offset <= 160 && quoted.size() - offset <= 160, "at most 160 bytes are quoted per side");
}

void check_description(const ParserException& error) {
    const std::string code = get_parse_result_description(error.get_parse_result());
    expect(code != "Unrecognized error code", "the error has one of the codes");
    const std::string what = error.what();
    expect(!what.empty(), "the error has a message");

    const std::string described = describe(error, "input.json");
    expect_equal(std::count(described.begin(), described.end(), '\n'), 3, "the lines described");
    const std::string place = "input.json:" + std::to_string(error.get_line_number()) + ':' +
                              std::to_string(error.get_column()) + ": ";
    expect_equal(described.substr(0, place.size()), place, "what the description begins with");
    expect(std::none_of(described.begin(), described.end(),
                        [](char byte) {
                            return (static_cast<unsigned char>(byte) < 0x20 && byte != '\n') ||
                                   byte == 0x7F;
                        }),
           "the description has no control bytes");
}

// ---- One text ----------------------------------------------------------------------------------

class Check {
public:
    Check(std::string text, const ParseOptions& options, std::size_t piece)
        : text_(std::move(text)), options_(options), piece_(piece) {}

    void run() const {
        std::optional<Value> value;
        std::string failure;
        try {
            value = parse(text_, options_);
        } catch (const ParserException& error) {
            failure = content(error) + error.get_quoted_text();
            check_position(text_, error);
            check_description(error);
            check_usage_error_by_the_tests(error.what());
        }
        check_stream(value, failure);
        expect_equal(test::disagreement_in_pieces_of(text_, options_, piece_), std::string(),
                     "what differs in another way to parse");
        expect_equal(test::disagreement_within(text_, options_, text_.size() % 61, piece_),
                     std::string(), "what differs with a limit");
        const std::vector<std::string> values = values_of_stream(piece_);
        expect(values == values_of_stream(text_.size() + 1), "pieces do not change the values");
        if (value) {
            expect_equal(values.size(), 1U, "the number of values in the stream");
            expect_equal(values[0], serialize(*value), "the stream's value");
            check_accepted(*value);
        }
    }

private:
    void check_usage_error_by_the_tests(const std::string& what) const {
        const bool too_deep = what.find("nested deeper") != std::string::npos;
        if (is_ascii(text_) && is_shallow(text_) && !too_deep) {
            expect(!read_by_the_tests(text_), "no reader accepts it: " + what);
        }
    }

    void check_stream(const std::optional<Value>& value, const std::string& failure) const {
        Pieces pieces(text_, piece_);
        std::istream stream(&pieces);
        try {
            const Value read = parse(stream, options_);
            expect(value && read == *value, "the stream is parsed as the text is");
            expect(stream.eof() && !stream.bad(), "the stream is at its end");
        } catch (const ParserException& error) {
            expect_equal(content(error) + error.get_quoted_text(), failure, "the stream's error");
        }
    }

    /// The values and errors of the text as a stream of values.
    std::vector<std::string> values_of_stream(std::size_t piece) const {
        Pieces pieces(text_, piece);
        std::istream stream(&pieces);
        ValueStream values(stream, options_);
        std::vector<std::string> result;
        for (Value value;;) {
            // Every value and every error takes at least a byte, except an error at the end.
            expect(result.size() <= text_.size() + 1, "the stream ends");
            try {
                if (!values.next(value)) {
                    return result;
                }
                result.push_back(serialize(value));
            } catch (const ParserException& error) {
                check_position(text_, error);
                check_description(error);
                result.push_back(content(error));
            }
        }
    }

    void check_accepted(const Value& value) const {
        const std::string compact = serialize(value);
        const std::string pretty = pretty_print(value);
        expect(parse(compact, options_) == value, "the compact text is parsed as the same value");
        const Value again = parse(pretty, options_);
        expect(again == value, "the pretty text is parsed as the same value");
        expect_equal(serialize(again), compact, "the text of what was parsed again");
        if (options_.integers == ParseOptions::Integers::as_double && is_shallow(text_)) {
            // It refuses some texts that are accepted, such as those that name a member twice.
            const std::optional<Value> other = read_by_the_tests(text_);
            expect(!other || *other == value, "both readers find the same value");
            expect(read_by_the_tests(compact) == value, "the other reader reads the compact text");
        }
    }

    std::string text_;
    ParseOptions options_;
    std::size_t piece_;
};

void check(Input input, std::size_t size) {
    const unsigned choices = input.byte();
    ParseOptions options;
    options.comments = (choices & 1) != 0;
    options.trailing_commas = (choices & 2) != 0;
    options.integers =
        (choices & 4) != 0 ? ParseOptions::Integers::exact : ParseOptions::Integers::as_double;
    options.duplicate_names = (choices & 8) != 0 ? ParseOptions::DuplicateNames::error
                                                 : ParseOptions::DuplicateNames::last_wins;
    options.max_depth = (choices & 16) != 0 ? 8 : 1000;
    const std::size_t pieces[] = {1, 2, 3, 7, 16, 63, 64, 1000};
    Check(input.text(size), options, pieces[choices >> 5]).run();
}

} // namespace
} // namespace foundation::json::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    foundation::json::fuzz::check({data, size}, size);
    return 0;
}
