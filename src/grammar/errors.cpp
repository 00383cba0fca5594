#include "grammar/errors.hpp"

#include "grammar/comments.hpp"
#include "text/unicode.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

namespace foundation::json::detail {

namespace {

/// The most bytes of a word, number or name that a message quotes.
constexpr std::size_t longest_in_message = 40;

std::string in_quotes(std::string_view text) {
    std::string result = "'";
    result += text;
    result += '\'';
    return result;
}

std::string hexadecimal(std::uint32_t number, int digits, std::string prefix) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        prefix += "0123456789ABCDEF"[number >> shift & 15];
    }
    return prefix;
}

/// The escape of a character in a string: two for one beyond U+FFFF.
std::string escape(std::uint32_t code) {
    if (code < 0x10000) {
        return hexadecimal(code, 4, "\\u");
    }
    code -= 0x10000;
    return hexadecimal(0xD800 + (code >> 10), 4, "\\u") +
           hexadecimal(0xDC00 + (code & 0x3FF), 4, "\\u");
}

std::string name_of_ascii(char byte) {
    switch (byte) {
    case ' ':
        return "a space";
    case '\t':
        return "a tab";
    case '\n':
    case '\r':
        return "a line end";
    case '\'':
        return "a single quote";
    default:
        break;
    }
    if (is_control(byte) || byte == 0x7F) {
        return hexadecimal(static_cast<unsigned char>(byte), 2, "byte 0x");
    }
    return in_quotes({&byte, 1});
}

bool is_bracket(char byte) noexcept {
    return byte == '[' || byte == ']' || byte == '{' || byte == '}';
}

char lower(char byte) noexcept {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool starts_with_comment(std::string_view text) noexcept {
    return text.size() >= 2 && text[0] == '/' && begins_comment(text[1]);
}

bool same_but_for_case(std::string_view a, std::string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

bool is_not_finite(std::string_view word) noexcept {
    return same_but_for_case(word, "nan") || same_but_for_case(word, "infinity") ||
           same_but_for_case(word, "inf");
}

/// The literal that a word equals but for upper and lower case; empty if there is none.
std::string_view literal_like(std::string_view word) noexcept {
    constexpr std::array<std::string_view, 3> literals{"null", "true", "false"};
    const auto* const found =
        std::find_if(literals.begin(), literals.end(),
                     [word](std::string_view literal) { return same_but_for_case(word, literal); });
    return found == literals.end() ? std::string_view() : *found;
}

/// Moves a position in a text back to where its character begins, but not before `begin`.
std::size_t character_begin(std::string_view text, std::size_t begin, std::size_t offset) noexcept {
    while (offset > begin && offset < text.size() && is_continuation(text[offset])) {
        --offset;
    }
    return offset;
}

/// A text, cut to the length that a message quotes.
std::string shortened(std::string_view text) {
    if (text.size() <= longest_in_message) {
        return std::string(text);
    }
    const std::size_t size = character_begin(text, 0, longest_in_message);
    return std::string(text.substr(0, size)) + "...";
}

std::string container_name(const Opening& opening) {
    return opening.bracket == '[' ? "array" : "object";
}

/// The name that messages give another position than that of the error.
std::string where(const TextPosition& position) {
    return "at line " + std::to_string(position.line) + ", column " +
           std::to_string(position.column);
}

/// A text with escapes for what cannot be seen: hidden characters, spaces but that of ASCII, and
/// bytes that are not UTF-8.
std::string visible(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        Utf8Sequence sequence{1, true};
        if (!is_ascii(text[0])) {
            sequence = utf8_sequence(text.data(), text.data() + text.size());
        }
        const std::string_view bytes = text.substr(0, sequence.complete ? sequence.length : 1);
        const std::uint32_t code = sequence.complete ? code_point(bytes) : 0;
        const CharacterClass type = class_of(code);
        if (!sequence.complete) {
            result += hexadecimal(static_cast<unsigned char>(text[0]), 2, "\\x");
        } else if (type == CharacterClass::hidden ||
                   (type == CharacterClass::space && code != ' ')) {
            result += escape(code);
        } else {
            result += bytes;
        }
        text.remove_prefix(bytes.size());
    }
    return result;
}

/// Whether a text is rather the name of a file: it has an extension such as .json, or any extension
/// and a slash or backslash before it, and nothing that arrays, objects and strings consist of.
bool is_file_name(std::string_view text) noexcept {
    constexpr std::size_t longest_extension = 8;
    // Of a longer line, a stream of values may have read no more than this.
    if (text.empty() || text.size() > most_quoted || starts_with_comment(text)) {
        return false;
    }
    const std::size_t point = std::min(text.rfind('.'), text.size() - 1);
    const std::string_view extension = text.substr(point + 1);
    const auto in_name = [](char byte) {
        return !is_control(byte) &&
               std::string_view("\"[]{},").find(byte) == std::string_view::npos;
    };
    if (extension.empty() || extension.size() > longest_extension || !is_letter(extension[0]) ||
        !std::all_of(extension.begin(), extension.end(), continues_word) ||
        !std::all_of(text.begin(), text.end(), in_name)) {
        return false;
    }
    constexpr std::string_view json = "json";
    return std::search(extension.begin(), extension.end(), json.begin(), json.end(),
                       [](char x, char y) { return lower(x) == y; }) != extension.end() ||
           text.find_first_of("/\\") < point;
}

} // namespace

// ---- Where it failed -------------------------------------------------------------------------

void Errors::fail(ParseResult result, const char* at, const std::string& what) const {
    const std::string_view text = context_.text;
    const auto position = static_cast<std::size_t>(at - text.data());
    const TextPosition failed = context_.position_of(at);

    const std::size_t line_feed = text.substr(0, position).rfind('\n');
    const std::size_t text_begin = context_.begin.byte == 0 ? mark_length(text) : 0;
    const std::size_t line_begin = line_feed == std::string_view::npos ? text_begin : line_feed + 1;
    std::size_t line_end = std::min(text.find('\n', position), text.size());
    // Without a line feed behind it, a carriage return ends no line.
    if (line_end > position && line_end < text.size() && text[line_end - 1] == '\r') {
        --line_end;
    }
    std::size_t begin = std::max(line_begin, position - std::min(position, most_quoted));
    while (begin < position && begin > line_begin && is_continuation(text[begin])) {
        ++begin;
    }
    const std::size_t end = character_begin(text.substr(0, line_end), position,
                                            std::min(line_end, position + most_quoted));
    const std::string message =
        context_.begin.byte == 0 && is_file_name(text)
            ? in_quotes(visible(shortened(text))) +
                  " looks like the name of a file, not like JSON text: parse_file reads files"
            : what;
    throw ParserException(message, result, failed.byte, failed.line, failed.column,
                          position - begin, std::string(text.substr(begin, end - begin)));
}

/// The name of the character there, for messages.
/// @param at  not the end
std::string Errors::name_of(const char* at) const {
    if (is_ascii(*at)) {
        return name_of_ascii(*at);
    }
    const Utf8Sequence sequence = utf8_sequence(at, end());
    if (!sequence.complete) {
        return hexadecimal(static_cast<unsigned char>(*at), 2, "byte 0x");
    }
    const std::string_view bytes(at, sequence.length);
    const std::uint32_t code = code_point(bytes);
    if (class_of(code) == CharacterClass::visible) {
        return in_quotes(bytes);
    }
    return hexadecimal(code, code < 0x10000 ? 4 : code < 0x100000 ? 5 : 6, "U+");
}

/// Whether a quotation mark of printed text is there.
/// @param at  not the end
bool Errors::is_curly_quote(const char* at) const noexcept {
    constexpr std::uint32_t first = 0x2018;
    constexpr std::uint32_t last = 0x201F;
    if (is_ascii(*at)) {
        return false;
    }
    const Utf8Sequence sequence = utf8_sequence(at, end());
    const std::uint32_t code = sequence.complete ? code_point({at, sequence.length}) : 0;
    return first <= code && code <= last;
}

std::string_view Errors::word_at(const char* at) const noexcept {
    const char* const behind =
        std::find_if_not(at, end(), [](char byte) { return continues_word(byte); });
    return {at, static_cast<std::size_t>(behind - at)};
}

// ---- Values ----------------------------------------------------------------------------------

/// Fails if a comment begins and the option comments is off, or if one is begun wrongly.
void Errors::check_comment(const char* at, ParseResult result) const {
    const char* const second = at + 1;
    if (!options_.comments) {
        if (*at == '/' && second != end() && begins_comment(*second)) {
            fail(result, at, "found a comment: the option comments allows it");
        }
    } else if (*at == '/') {
        if (second == end()) {
            bad_comment(second, context_.position_of(at));
        }
        fail(result, second,
             "found " + name_of(second) + " after '/': a comment begins with // or /*");
    } else if (*at == '#') {
        fail(result, at, "found '#': a comment begins with // or /*");
    }
}

/// Fails if a word begins right behind a string or number.
/// @param at  neither the beginning nor the end of the text
void Errors::check_glued(const char* at, ParseResult result) const {
    if (at[-1] == '"' && continues_word(*at)) {
        fail(UNESCAPED_QUOTE, at,
             "found " + name_of(at) +
                 " right after a string: a quote within a string is written \\\"");
    }
    if (is_digit(at[-1]) && continues_number(*at)) {
        fail(result, at, "found " + name_of(at) + " right after a number");
    }
}

void Errors::no_value(const char* at, const Opening& opening, bool after_comma) const {
    const bool in_array = opening.bracket == '[';
    if (at == end()) {
        if (opening.bracket == '\0') {
            fail(EMPTY_INPUT, at, "the document is empty");
        }
        ends_within(in_array && !after_comma ? MISSING_ARRAY_CLOSE : UNEXPECTED_END_OF_INPUT,
                    opening);
    }
    if (*at == ']' && after_comma) {
        fail(MISSING_ARRAY_CLOSE, at,
             "found ']' after a comma: the option trailing_commas allows it");
    }
    if (opening.bracket == '\0' && (*at == ']' || *at == '}')) {
        const bool array = *at == ']';
        fail(array ? MISSING_ARRAY_OPEN : MISSING_OBJECT_OPEN, at,
             array ? "found ']' without a '[' before it" : "found '}' without a '{' before it");
    }
    check_comment(at, MISSING_LEADING_DIGIT);
    const std::string_view word = word_at(at);
    if (is_not_finite(word)) {
        fail(MISSING_LEADING_DIGIT, at, std::string(word) + " is not a JSON number");
    }
    if (*at == '\'') {
        fail(MISSING_LEADING_QUOTE, at,
             "found a single quote: strings are written in double quotes");
    }
    if (*at == '+') {
        fail(MISSING_LEADING_DIGIT, at, "found '+': numbers have no plus sign");
    }
    if (*at == '.') {
        fail(MISSING_LEADING_DIGIT, at, "found '.': numbers have a digit before it");
    }
    const std::string_view literal = literal_like(word);
    if (!literal.empty()) {
        fail(literal == "null" ? NULL_MISMATCH : BOOLEAN_MISMATCH, at,
             "found " + in_quotes(word) + ": " + std::string(literal) +
                 " is written in lower case");
    }
    if (is_letter(*at)) {
        fail(MISSING_LEADING_QUOTE, at,
             "found " + in_quotes(shortened(word)) +
                 " where a value should begin: strings are written in double quotes");
    }
    if (in_array && *at == '}') {
        fail(MISSING_LEADING_DIGIT, at,
             "found '}' where a value should begin: the array begins " + where(opening.position));
    }
    const bool utf8 = is_ascii(*at) || utf8_sequence(at, end()).complete;
    const char* const hint = !utf8 ? ": the text is not UTF-8"
                             : is_curly_quote(at)
                                 ? ": strings are written in straight double quotes"
                                 : "";
    fail(MISSING_LEADING_DIGIT, at, "found " + name_of(at) + " where a value should begin" + hint);
}

void Errors::bad_word(const char* word, const char* at) const {
    const ParseResult result = *word == 'n' ? NULL_MISMATCH : BOOLEAN_MISMATCH;
    const std::string_view whole = word_at(word);
    if (at == end()) {
        fail(result, at, "the text ends within " + in_quotes(whole));
    }
    if (is_not_finite(whole)) {
        fail(result, at, std::string(whole) + " is not a JSON number");
    }
    const char* const meant = *word == 'n' ? "null" : *word == 't' ? "true" : "false";
    fail(result, at,
         "found " + in_quotes(shortened(whole)) + " where " + meant +
             " may be meant, or a string in double quotes");
}

void Errors::bad_number(const NumberToken& token) const {
    if (token.end == end()) {
        fail(token.error, token.end, "the text ends within a number");
    }
    const std::string_view word = word_at(token.end);
    if (token.error == MISSING_QUANTITY_AFTER_SIGN && is_not_finite(word)) {
        fail(token.error, token.end, "-" + std::string(word) + " is not a JSON number");
    }
    if (token.error == MISSING_LEADING_DIGIT) {
        fail(token.error, token.end, "found " + name_of(token.end) + " after a leading 0");
    }
    const char* const before = token.error == MISSING_QUANTITY_AFTER_SIGN ? "after '-'"
                               : token.error == INVALID_FRACTION          ? "after '.'"
                                                                          : "in an exponent";
    fail(token.error, token.end,
         "found " + name_of(token.end) + " where a digit is expected " + before);
}

void Errors::too_large(const char* number, const char* number_end) const {
    const std::string_view text(number, static_cast<std::size_t>(number_end - number));
    fail(INVALID_EXPONENT, number, "the number " + shortened(text) + " is too large for a double");
}

void Errors::bad_string(const StringToken& token) const {
    const char* const at = token.end;
    switch (token.error) {
    case StringError::text_ends:
        fail(MISSING_TRAILING_QUOTE, at, "the text ends within a string");
    case StringError::line_ends:
        fail(MISSING_TRAILING_QUOTE, at,
             std::string("the line ends before the closing quote of a string, where a line end is "
                         "written ") +
                 (*at == '\n' ? "\\n" : "\\r"));
    case StringError::control:
        fail(INVALID_ESCAPE_SEQUENCE, at,
             "found " + name_of(at) + " in a string, where it is written " +
                 (*at == '\t' ? "\\t" : hexadecimal(static_cast<unsigned char>(*at), 4, "\\u")));
    case StringError::escape:
        fail(INVALID_ESCAPE_SEQUENCE, at,
             "found " + name_of(at) +
                 // With escapes as in the other texts. NOLINTNEXTLINE(modernize-raw-string-literal)
                 " after '\\' in a string: a backslash itself is written \\\\");
    case StringError::escape_ends:
    case StringError::unicode_escape:
        if (at == end()) {
            fail(INCOMPLETE_ESCAPE_SEQUENCE, at, "the text ends within a string");
        }
        fail(*at == '"' ? INCOMPLETE_ESCAPE_SEQUENCE : INVALID_UNICODE_ESCAPE, at,
             "found " + name_of(at) + " within the four hexadecimal digits after \\u");
    default:
        not_utf8(at);
    }
}

void Errors::not_utf8(const char* at) const {
    fail(INVALID_UNICODE_ESCAPE, at,
         (is_ascii(*at) ? "the text is not UTF-8: a character is cut off before "
                        : "the text is not UTF-8: found ") +
             (is_ascii(*at) ? name_of_ascii(*at)
                            : hexadecimal(static_cast<unsigned char>(*at), 2, "byte 0x")));
}

/// @param comment  where the comment begins
void Errors::bad_comment(const char* at, const TextPosition& comment) const {
    if (at == end()) {
        fail(UNEXPECTED_END_OF_INPUT, at,
             "the text ends within the comment that begins " + where(comment));
    }
    not_utf8(at);
}

// ---- Between values --------------------------------------------------------------------------

void Errors::ends_within(ParseResult result, const Opening& opening) const {
    fail(result, end(),
         "the text ends within the " + container_name(opening) + " that begins " +
             where(opening.position));
}

void Errors::no_name(const char* at, const Opening& opening, bool after_comma) const {
    if (at == end()) {
        ends_within(after_comma ? UNEXPECTED_END_OF_INPUT : MISSING_OBJECT_CLOSE, opening);
    }
    if (*at == '}') { // without a comma before it, it closes the object
        fail(MISSING_OBJECT_CLOSE, at,
             "found '}' after a comma: the option trailing_commas allows it");
    }
    check_comment(at, MISSING_LEADING_QUOTE);
    const std::string_view word = word_at(at);
    std::string found = in_quotes(shortened(word));
    if (word.empty()) {
        found = name_of(at);
    }
    std::string what = "found " + found + " where a name should begin";
    if (is_bracket(*at)) {
        what += ": the object begins " + where(opening.position);
    } else if (is_curly_quote(at)) {
        what += ": names are written in straight double quotes";
    } else if (*at != ',') {
        what += ": names are written in double quotes";
    }
    fail(MISSING_LEADING_QUOTE, at, what);
}

void Errors::no_colon(const char* at, const Opening& opening) const {
    if (at == end()) {
        ends_within(MISSING_NAME_SEPARATOR, opening);
    }
    check_comment(at, MISSING_NAME_SEPARATOR);
    check_glued(at, MISSING_NAME_SEPARATOR);
    fail(MISSING_NAME_SEPARATOR, at,
         "found " + name_of(at) + " where ':' is expected after a name");
}

void Errors::no_separator(const char* at, const Opening& opening) const {
    const bool array = opening.bracket == '[';
    const ParseResult result = array ? MISSING_ARRAY_CLOSE : MISSING_OBJECT_CLOSE;
    if (at == end()) {
        ends_within(result, opening);
    }
    check_comment(at, result);
    check_glued(at, result);
    constexpr std::string_view first_bytes = "\"'[{-";
    if (continues_word(*at) || first_bytes.find(*at) != std::string_view::npos) {
        fail(result, at, "a comma is missing before " + name_of(at));
    }
    std::string what = "found " + name_of(at) + " where ";
    what += array ? "',' or ']' is expected" : "',' or '}' is expected";
    if (is_bracket(*at) || (array && *at == ':')) {
        what += ": the " + container_name(opening) + " begins " + where(opening.position);
    }
    fail(result, at, what);
}

/// @param last  the last byte of the value
void Errors::after_value(const char* at, char last) const {
    check_comment(at, MISSING_ARRAY_OPEN);
    const bool of_object = *at == '}' || *at == ':';
    const ParseResult result = of_object ? MISSING_OBJECT_OPEN : MISSING_ARRAY_OPEN;
    check_glued(at, result);
    std::string what = "found " + name_of(at) + " after ";
    if (is_bracket(last)) {
        what += "the " + in_quotes({&last, 1}) + " that ends the value";
    } else {
        what += "the end of the value";
    }
    fail(result, at, what);
}

void Errors::too_deep(const char* at) const {
    fail(*at == '[' ? MISSING_ARRAY_CLOSE : MISSING_OBJECT_CLOSE, at,
         "nested deeper than " + std::to_string(options_.max_depth) +
             " levels: the option max_depth is the limit");
}

void Errors::too_long(const char* at, std::size_t max_bytes) const {
    fail(UNEXPECTED_END_OF_INPUT, at,
         "longer than " + std::to_string(max_bytes) +
             " bytes: the argument max_bytes is the limit");
}

void Errors::not_wanted(const char* at, const std::string& what) const {
    fail(NO_PARSE_ERROR, at, what);
}

void Errors::duplicate_name(const char* at, const StringToken& name) const {
    // As it is written, since a decoded escape may not be printable.
    fail(MISSING_OBJECT_CLOSE, at,
         "the name \"" + visible(shortened({name.text, name.size()})) +
             "\" occurs twice in an object: the option duplicate_names allows it");
}

} // namespace foundation::json::detail
