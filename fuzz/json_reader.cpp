/// @file
/// The reader of examples/json_format on any bytes. What it refuses it must locate, what it accepts
/// must survive being written and read again, and the tests' own reader must see the same value.
#include "expect.hpp"
#include "input.hpp"

#include "reader.hpp"
#include "report.hpp"

#include "support/json_reader.hpp"

#include <foundation/json/json.hpp>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace foundation::json::fuzz {
namespace {

std::optional<Value> read_by_the_tests(std::string_view text) {
    try {
        return test::read_json(text);
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

/// Whether the tests' reader, which has no limit to its recursion, may be given a text.
bool is_shallow(std::string_view text) {
    return std::count_if(text.begin(), text.end(),
                         [](char byte) { return byte == '[' || byte == '{'; }) <= 500;
}

bool is_ascii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

void check_accepted(std::string_view text, const Value& value) {
    const std::string compact = serialize(value);
    const std::string pretty = pretty_print(value);
    expect(json_format::read(compact) == value, "the compact text is read as the same value");
    expect(json_format::read(pretty) == value, "the pretty text is read as the same value");
    expect_equal(serialize(json_format::read(pretty)), compact, "the text of what was read again");
    if (is_shallow(text)) {
        // It refuses some texts that are JSON, such as those that name a member twice.
        const std::optional<Value> other = read_by_the_tests(text);
        expect(!other || *other == value, "both readers see the same value");
        expect(read_by_the_tests(compact) == value, "the other reader reads the compact text");
    }
}

void check_position(std::string_view text, const ParserException& error) {
    const std::size_t position = error.get_byte_position();
    expect(position <= text.size(), "the position lies within the text");
    const std::string_view before = text.substr(0, position);
    const auto line_ends = std::count(before.begin(), before.end(), '\n');
    expect_equal(error.get_line_number(), 1 + static_cast<std::size_t>(line_ends), "the line");
    const std::size_t line_begin = before.rfind('\n') + 1; // 0 where there is none
    expect_equal(error.get_column(), position - line_begin + 1, "the column");

    const std::string quoted = error.get_quoted_text();
    const std::size_t offset = error.get_quoted_byte_position();
    expect(offset <= quoted.size(), "the position lies within the quoted text");
    expect(offset <= position, "the quoted text begins within the text");
    expect_equal(quoted, text.substr(position - offset, quoted.size()), "the quoted text");
    expect(quoted.find('\n') == std::string::npos, "one line is quoted");
}

void check_refused(std::string_view text, const ParserException& error) {
    const std::string what = error.what();
    const std::string description = get_parse_result_description(error.get_parse_result());
    expect(!what.empty(), "the error has a message");
    expect(description != "Unrecognized error code", "the error has one of the codes");
    check_position(text, error);

    const std::string report = json_format::report("input.json", error);
    expect_equal(std::count(report.begin(), report.end(), '\n'), 3, "the lines of the report");
    const std::string place = "input.json:" + std::to_string(error.get_line_number()) + ':' +
                              std::to_string(error.get_column()) + ": " + description;
    expect_equal(report.substr(0, place.size()), place, "what the report begins with");

    if (is_ascii(text) && is_shallow(text)) {
        expect(!read_by_the_tests(text), "no reader accepts it: " + what);
    }
}

void check(std::string_view text) {
    std::optional<Value> value;
    try {
        value = json_format::read(text);
    } catch (const ParserException& error) {
        check_refused(text, error);
    }
    if (value) {
        check_accepted(text, *value);
    }
}

} // namespace
} // namespace foundation::json::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    foundation::json::fuzz::check({reinterpret_cast<const char*>(data), size});
    return 0;
}
