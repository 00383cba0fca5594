// describe(): shows an error to people, with its position, the line of text and a caret.
#include "grammar/errors.hpp"
#include "reading/quoted_line.hpp"
#include "text/characters.hpp"
#include "text/unicode.hpp"
#include "text/utf8.hpp"

#include <foundation/json/parse.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json {

namespace {

/// A character as it is shown, and how many columns of a terminal it takes.
struct Shown {
    std::string text;
    std::size_t width;
};

Shown shown(std::string_view sequence, bool complete) {
    if (sequence == "\t") {
        return {" ", 1};
    }
    const std::uint32_t code = complete ? detail::code_point(sequence) : 0;
    if (detail::class_of(code) == detail::CharacterClass::hidden) {
        return {".", 1};
    }
    return {std::string(sequence), detail::width_of(code)};
}

/// The characters of a text; every byte of a character that is cut off or not UTF-8 counts as one.
std::vector<Shown> characters(std::string_view text) {
    std::vector<Shown> result;
    while (!text.empty()) {
        detail::Utf8Sequence sequence{1, true};
        if (!detail::is_ascii(text[0])) {
            sequence = detail::utf8_sequence(text.data(), text.data() + text.size());
        }
        const std::size_t length = sequence.complete ? sequence.length : 1;
        result.push_back(shown(text.substr(0, length), sequence.complete));
        text.remove_prefix(length);
    }
    return result;
}

std::string printable(std::string_view text) {
    std::string result;
    for (const Shown& character : characters(text)) {
        result += character.text;
    }
    return result;
}

constexpr const char* ellipsis = "...";
constexpr std::size_t ellipsis_width = 3;

// How many columns of a long line are shown, before the position and from it on.
constexpr std::size_t most_before = 40;
constexpr std::size_t most_after = 39;

// How many bytes of a line are looked at on either side, however long it is that another parser
// quotes.
constexpr std::size_t most_bytes = 1000;

/// The end of a text that is too long; a text from here on has whole characters.
std::string_view end_of(std::string_view text) noexcept {
    text.remove_prefix(text.size() - most_bytes);
    const auto first = std::find_if_not(text.begin(), text.end(), detail::is_continuation);
    text.remove_prefix(static_cast<std::size_t>(first - text.begin()));
    return text;
}

struct Part {
    std::string text;
    std::size_t width;
};

std::size_t width_of(const std::vector<Shown>& text) noexcept {
    return std::accumulate(
        text.begin(), text.end(), std::size_t{0},
        [](std::size_t width, const Shown& character) { return width + character.width; });
}

/// What is shown before the position.
/// @param cut  whether the line begins before the text
Part part_before(std::string_view text, bool cut) {
    cut = cut || text.size() > most_bytes;
    const std::vector<Shown> all = characters(text.size() > most_bytes ? end_of(text) : text);
    Part part{{}, width_of(all)};
    auto first = all.begin();
    if (cut || part.width > most_before) {
        for (; part.width > most_before - ellipsis_width; ++first) {
            part.width -= first->width;
        }
        // A mark would combine with the ellipsis instead of what it belongs to.
        first = std::find_if(first, all.end(),
                             [](const Shown& character) { return character.width != 0; });
        part.text = ellipsis;
        part.width += ellipsis_width;
    }
    for (; first != all.end(); ++first) {
        part.text += first->text;
    }
    return part;
}

/// What is shown from the position on.
/// @param cut  whether the line goes on behind the text
std::string part_after(std::string_view text, bool cut) {
    cut = cut || text.size() > most_bytes;
    const std::vector<Shown> all = characters(text.substr(0, most_bytes));
    const bool whole = !cut && width_of(all) <= most_after;
    const std::size_t most = whole ? most_after : most_after - ellipsis_width;
    std::string result;
    std::size_t width = 0;
    for (const Shown& character : all) {
        width += character.width;
        if (width > most) {
            break;
        }
        result += character.text;
    }
    return whole ? result : result + ellipsis;
}

} // namespace

namespace detail {

std::string describe_line(std::string_view message, const ParserException& where) {
    const std::string quoted = where.get_quoted_text();
    const std::size_t position = std::min(where.get_quoted_byte_position(), quoted.size());
    const std::string_view text = quoted;
    // A shorter quote than this means that the line begins or ends there; only whole characters are
    // quoted.
    constexpr std::size_t longest_sequence = 4;
    constexpr std::size_t full = most_quoted - longest_sequence;
    const auto columns = static_cast<std::size_t>(
        std::count_if(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(position),
                      [](char byte) { return !is_continuation(byte); }));
    const Part before = part_before(text.substr(0, position), columns + 1 < where.get_column());

    std::string result = printable(message) + '\n';
    result += before.text + part_after(text.substr(position), text.size() - position > full) + '\n';
    result.append(before.width, ' ');
    return result + "^\n";
}

} // namespace detail

std::string describe(const ParserException& error, std::string_view name) {
    std::string message(name);
    message += name.empty() ? "" : ":";
    message += std::to_string(error.get_line_number()) + ':' + std::to_string(error.get_column());
    return detail::describe_line(message + ": " + error.what(), error);
}

} // namespace foundation::json
