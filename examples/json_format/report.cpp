#include "report.hpp"

#include "utf8.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace json_format {
namespace {

using namespace foundation::json;

/// Whether a well-formed sequence is one of the control characters U+0000 to U+001F and U+007F to
/// U+009F.
bool is_control(std::string_view sequence) {
    const auto byte = [sequence](std::size_t i) { return static_cast<unsigned char>(sequence[i]); };
    return sequence.size() == 1 ? byte(0) < 0x20 || byte(0) == 0x7F
                                : byte(0) == 0xC2 && byte(1) < 0xA0;
}

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = utf8_length(text);
        const std::string_view sequence = text.substr(0, std::max<std::size_t>(length, 1));
        if (sequence == "\t") {
            result += ' ';
        } else if (length == 0 || is_control(sequence)) {
            result += '.';
        } else {
            result += sequence;
        }
        text.remove_prefix(sequence.size());
    }
    return result;
}

/// Columns taken by what printable() returned.
std::size_t width(std::string_view printed) {
    return static_cast<std::size_t>(std::count_if(printed.begin(), printed.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
    }));
}

} // namespace

std::string report(const std::string& file, const ParserException& error) {
    const std::string description = get_parse_result_description(error.get_parse_result());
    const std::string quoted = error.get_quoted_text();
    const std::string before = printable(quoted.substr(0, error.get_quoted_byte_position()));
    const std::string after = printable(quoted.substr(error.get_quoted_byte_position()));

    std::string text = printable(file) + ':' + std::to_string(error.get_line_number()) + ':' +
                       std::to_string(error.get_column()) + ": " + description;
    if (error.what() != description) {
        text += std::string(": ") + error.what();
    }
    return text + '\n' + before + after + '\n' + std::string(width(before), ' ') + "^\n";
}

} // namespace json_format
