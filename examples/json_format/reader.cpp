#include "reader.hpp"

#include "utf8.hpp"

#include <foundation/json/parse_errors.hpp>
#include <foundation/json/text_helpers.hpp>

#include <algorithm>
#include <cmath>
#include <string>

namespace json_format {
namespace {

using namespace foundation::json;

constexpr int end_of_input = -1;

// How much of a long line is quoted on either side of the failing byte.
constexpr std::size_t quoted_before = 50;
constexpr std::size_t quoted_after = 28;

// u16_to_u8() counts in int; a longer run of escapes is converted in pieces.
constexpr std::size_t longest_run = 1'000'000;

bool is_blank(int byte) {
    return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t';
}

bool is_digit(int byte) {
    return byte >= '0' && byte <= '9';
}

bool is_letter(int byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

bool is_continuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

bool is_first_of_pair(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

int hex_digit(int byte) {
    if (is_digit(byte)) {
        return byte - '0';
    }
    const int lower = byte | 0x20;
    return byte > 0 && lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// How messages call a byte: 'x', or its number where it cannot be shown.
std::string name_of(int byte) {
    if (byte == end_of_input) {
        return "the end of the input";
    }
    if (byte > 0x20 && byte < 0x7F) {
        return {'\'', static_cast<char>(byte), '\''};
    }
    constexpr char digits[] = "0123456789ABCDEF";
    return {'b', 'y', 't', 'e', ' ', '0', 'x', digits[byte >> 4], digits[byte & 15]};
}

/// One reading of one text. Every read_ function starts at the first byte of what it reads and
/// leaves position_ behind the last.
class Reader {
public:
    explicit Reader(std::string_view text) : text_(text) {}

    void read_document(Value& slot);

private:
    void read_value(Value& slot);
    void read_array(Value& slot);
    void read_object(Value& slot);
    void read_members(Value& object);
    void read_literal(std::string_view literal, ParseResult mismatch);
    double read_number();
    void read_digits(ParseResult none);
    const std::string& read_name();
    const std::string& read_string();
    void read_plain_run();
    void read_escape();
    void read_unicode_escapes();
    char16_t read_four_digits();

    int peek(std::size_t ahead = 0) const;
    void skip_blanks();
    bool skip(char byte);
    void enter(ParseResult too_deep);

    [[noreturn]] void fail(ParseResult result, std::size_t position,
                           const std::string& message = {}) const;
    [[noreturn]] void fail_without_value() const;
    [[noreturn]] void fail_in_string() const;
    [[noreturn]] void fail_after_document() const;

    std::string_view text_;
    std::size_t position_ = 0;
    std::size_t depth_ = 0;

    // Kept between strings and numbers for their capacity only.
    std::string string_;
    std::string number_;
    std::u16string units_;
};

// ---- Values ------------------------------------------------------------------------------------

void Reader::read_document(Value& slot) {
    skip_blanks();
    if (peek() == end_of_input) {
        fail(EMPTY_INPUT, position_);
    }
    read_value(slot);
    skip_blanks();
    if (peek() != end_of_input) {
        fail_after_document();
    }
}

void Reader::read_value(Value& slot) {
    skip_blanks();
    const int first = peek();
    switch (first) {
    case '{':
        return read_object(slot);
    case '[':
        return read_array(slot);
    case '"':
        slot = Value(read_string());
        return;
    // A capital is a mismatch: NULL and True are best explained as failed literals.
    case 'n':
    case 'N':
        read_literal("null", NULL_MISMATCH);
        slot = Value(Null());
        return;
    case 't':
    case 'T':
        read_literal("true", BOOLEAN_MISMATCH);
        slot = Value(true);
        return;
    case 'f':
    case 'F':
        read_literal("false", BOOLEAN_MISMATCH);
        slot = Value(false);
        return;
    default:
        if (first != '-' && !is_digit(first)) {
            fail_without_value();
        }
        slot = Value(read_number());
    }
}

void Reader::read_array(Value& slot) {
    enter(MISSING_ARRAY_CLOSE);
    Value array(std::vector<Value>{});
    if (!skip(']')) {
        do {
            array.push(Value());
            read_value(array[array.length() - 1]);
        } while (skip(','));
        if (!skip(']')) {
            fail(MISSING_ARRAY_CLOSE, position_, "expected ',' or ']', found " + name_of(peek()));
        }
    }
    --depth_;
    slot.swap(array);
}

void Reader::read_object(Value& slot) {
    enter(MISSING_OBJECT_CLOSE);
    Value object(std::map<std::string, Value>{});
    if (!skip('}')) {
        read_members(object);
        if (!skip('}')) {
            fail(MISSING_OBJECT_CLOSE, position_, "expected ',' or '}', found " + name_of(peek()));
        }
    }
    --depth_;
    slot.swap(object);
}

void Reader::read_members(Value& object) {
    do {
        Value& member = object[read_name()];
        if (!skip(':')) {
            fail(MISSING_NAME_SEPARATOR, position_, "found " + name_of(peek()));
        }
        read_value(member);
    } while (skip(','));
}

void Reader::read_literal(std::string_view literal, ParseResult mismatch) {
    for (const char expected : literal) {
        if (peek() != expected) {
            fail(mismatch, position_);
        }
        ++position_;
    }
    if (is_letter(peek()) || is_digit(peek())) {
        fail(mismatch, position_);
    }
}

// ---- Numbers -----------------------------------------------------------------------------------

double Reader::read_number() {
    const std::size_t begin = position_;
    const bool negative = peek() == '-';
    position_ += negative ? 1 : 0;
    const bool zero = peek() == '0';
    read_digits(negative ? MISSING_QUANTITY_AFTER_SIGN : MISSING_LEADING_DIGIT);
    const std::size_t second_digit = begin + (negative ? 2 : 1);
    if (zero && position_ > second_digit) {
        fail(MISSING_LEADING_DIGIT, second_digit, "a leading zero must stand alone");
    }
    if (peek() == '.') {
        ++position_;
        read_digits(INVALID_FRACTION);
    }
    if (peek() == 'e' || peek() == 'E') {
        ++position_;
        position_ += peek() == '+' || peek() == '-' ? 1 : 0;
        read_digits(INVALID_EXPONENT);
    }
    // The conversion measures its text up to a terminating zero, so the number is copied out:
    // given a place in the whole input, it would measure all that follows, at every number.
    number_.assign(text_, begin, position_ - begin);
    const double number = detail::string_to_double(number_.c_str());
    if (std::isinf(number)) {
        fail(INVALID_EXPONENT, begin, "the number is too large for a double");
    }
    return number;
}

void Reader::read_digits(ParseResult none) {
    if (!is_digit(peek())) {
        fail(none, position_, "expected a digit, found " + name_of(peek()));
    }
    while (is_digit(peek())) {
        ++position_;
    }
}

// ---- Strings -----------------------------------------------------------------------------------

const std::string& Reader::read_name() {
    skip_blanks();
    if (peek() == end_of_input) {
        fail(UNEXPECTED_END_OF_INPUT, position_, "expected a member name");
    }
    if (peek() != '"') {
        fail(MISSING_LEADING_QUOTE, position_, "expected a member name, found " + name_of(peek()));
    }
    return read_string();
}

const std::string& Reader::read_string() {
    ++position_;
    string_.clear();
    for (read_plain_run(); peek() != '"'; read_plain_run()) {
        if (peek() != '\\') {
            fail_in_string();
        }
        read_escape();
    }
    // A word glued to the end of a string is the rest of a text that holds quotes.
    if (is_letter(peek(1))) {
        fail(UNESCAPED_QUOTE, position_);
    }
    ++position_;
    return string_;
}

void Reader::read_plain_run() {
    const std::size_t begin = position_;
    for (int byte = peek(); byte >= 0x20 && byte != '"' && byte != '\\'; byte = peek()) {
        const std::size_t length = byte < 0x80 ? 1 : utf8_length(text_.substr(position_, 4));
        if (length == 0) {
            fail(INVALID_UNICODE_ESCAPE, position_, name_of(byte) + " begins no valid UTF-8");
        }
        position_ += length;
    }
    string_.append(text_, begin, position_ - begin);
}

void Reader::read_escape() {
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    const int letter = peek(1);
    if (letter == 'u') {
        return read_unicode_escapes();
    }
    if (letter == end_of_input) {
        fail(INCOMPLETE_ESCAPE_SEQUENCE, position_ + 1);
    }
    const std::size_t index = letters.find(static_cast<char>(letter));
    if (index == std::string_view::npos) {
        fail(INVALID_ESCAPE_SEQUENCE, position_ + 1, name_of(letter) + " after '\\'");
    }
    string_ += meanings[index];
    position_ += 2;
}

void Reader::read_unicode_escapes() {
    // Neighbouring escapes are converted together, since two may form one character.
    units_.clear();
    do {
        position_ += 2;
        units_ += read_four_digits();
    } while (text_.substr(position_, 2) == "\\u" &&
             (units_.size() < longest_run || is_first_of_pair(units_.back())));
    string_ += detail::u16_to_u8(units_.data(), static_cast<int>(units_.size()));
}

char16_t Reader::read_four_digits() {
    int unit = 0;
    for (int i = 0; i < 4; ++i, ++position_) {
        const int digit = hex_digit(peek());
        if (digit < 0) {
            const bool cut_off = peek() == end_of_input || peek() == '"';
            fail(cut_off ? INCOMPLETE_ESCAPE_SEQUENCE : INVALID_UNICODE_ESCAPE, position_,
                 "expected four hexadecimal digits");
        }
        unit = unit * 16 + digit;
    }
    return static_cast<char16_t>(unit);
}

// ---- Moving on ---------------------------------------------------------------------------------

int Reader::peek(std::size_t ahead) const {
    const std::size_t position = position_ + ahead;
    return position < text_.size() ? static_cast<unsigned char>(text_[position]) : end_of_input;
}

void Reader::skip_blanks() {
    while (is_blank(peek())) {
        ++position_;
    }
}

bool Reader::skip(char byte) {
    skip_blanks();
    const bool found = peek() == byte;
    position_ += found ? 1 : 0;
    return found;
}

void Reader::enter(ParseResult too_deep) {
    if (depth_ == max_depth) {
        fail(too_deep, position_, "nested deeper than " + std::to_string(max_depth) + " levels");
    }
    ++depth_;
    ++position_;
}

// ---- Failures ----------------------------------------------------------------------------------

/// The description of the code serves where there is no message.
void Reader::fail(ParseResult result, std::size_t position, const std::string& message) const {
    const std::string_view before = text_.substr(0, position);
    const auto line = 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    const std::size_t line_begin = before.rfind('\n') + 1; // npos + 1 is 0
    const std::size_t line_end = std::min(text_.find('\n', position), text_.size());

    std::size_t begin = std::max(line_begin, position - std::min(position, quoted_before));
    while (begin < position && is_continuation(text_[begin])) {
        ++begin;
    }
    std::size_t end = std::min(line_end, position + quoted_after);
    while (end > position && end < line_end && is_continuation(text_[end])) {
        --end;
    }
    if (end == line_end && end > position && text_[end - 1] == '\r') {
        --end;
    }
    throw ParserException(message.empty() ? get_parse_result_description(result) : message, result,
                          position, line, position - line_begin + 1, position - begin,
                          std::string(text_.substr(begin, end - begin)));
}

void Reader::fail_without_value() const {
    const int byte = peek();
    if (byte == end_of_input) {
        fail(UNEXPECTED_END_OF_INPUT, position_, "expected a value");
    }
    if (depth_ == 0 && (byte == ']' || byte == '}')) {
        fail(byte == ']' ? MISSING_ARRAY_OPEN : MISSING_OBJECT_OPEN, position_);
    }
    if (text_.substr(0, 3) == "\xEF\xBB\xBF") {
        fail(MISSING_LEADING_DIGIT, position_, "expected a value, found a byte order mark");
    }
    const bool bare_text = is_letter(byte) || byte == '\'';
    fail(bare_text ? MISSING_LEADING_QUOTE : MISSING_LEADING_DIGIT, position_,
         "expected a value, found " + name_of(byte));
}

void Reader::fail_in_string() const {
    const int byte = peek();
    if (byte == end_of_input) {
        fail(MISSING_TRAILING_QUOTE, position_);
    }
    if (byte == '\n' || byte == '\r') {
        fail(MISSING_TRAILING_QUOTE, position_, "the line ends within a string");
    }
    fail(INVALID_ESCAPE_SEQUENCE, position_, name_of(byte) + " must be escaped");
}

void Reader::fail_after_document() const {
    const bool of_object = peek() == '}' || peek() == ':';
    fail(of_object ? MISSING_OBJECT_OPEN : MISSING_ARRAY_OPEN, position_,
         "found " + name_of(peek()) + " after the end of the value");
}

} // namespace

Value read(std::string_view text) {
    Value document;
    Reader(text).read_document(document);
    return document;
}

} // namespace json_format
