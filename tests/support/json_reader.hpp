/// @file
/// A small, strict reader of JSON text, for tests that read back what the library wrote.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_JSON_READER_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_JSON_READER_HPP

#include <foundation/json/value.hpp>

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <locale.h>

namespace foundation::json::test {

/// Whether whitespace may stand between the tokens of a text.
enum class Whitespace { allowed, forbidden };

/// What becomes of a name that occurs twice in an object: an error, or the last member counts.
enum class DuplicateNames { forbidden, last };

class JsonReader {
public:
    JsonReader(std::string_view text, Whitespace whitespace,
               DuplicateNames duplicates = DuplicateNames::forbidden)
        : rest_(text), size_(text.size()), whitespace_(whitespace), duplicates_(duplicates) {}

    /// The value of the whole text; numbers are doubles.
    /// @throws std::runtime_error where the text is not JSON, or where a name occurs twice that
    /// must not
    Value read() {
        Value result = value();
        skip_whitespace();
        require(rest_.empty());
        return result;
    }

private:
    Value value() {
        skip_whitespace();
        require(!rest_.empty());
        switch (rest_.front()) {
        case 'n':
            return word("null", Null());
        case 't':
            return word("true", true);
        case 'f':
            return word("false", false);
        case '"':
            return string();
        case '[':
            return array();
        case '{':
            return object();
        default:
            return number();
        }
    }

    Value word(std::string_view spelling, const Value& meaning) {
        require(rest_.substr(0, spelling.size()) == spelling);
        rest_.remove_prefix(spelling.size());
        return meaning;
    }

    Value array() {
        Value result{std::vector<Value>()};
        take('[');
        if (taken(']')) {
            return result;
        }
        do {
            Value element = value();
            result.push(Value());
            result[result.length() - 1].swap(element);
        } while (taken(','));
        take(']');
        return result;
    }

    Value object() {
        Value result{std::map<std::string, Value>()};
        take('{');
        if (taken('}')) {
            return result;
        }
        do {
            skip_whitespace();
            const std::string name = string();
            require(duplicates_ == DuplicateNames::last || !result.hasOwnProperty(name));
            take(':');
            Value member = value();
            result[name].swap(member);
        } while (taken(','));
        take('}');
        return result;
    }

    Value number() {
        const std::string_view start = rest_;
        taken_byte('-');
        if (!taken_byte('0')) {
            digits();
        }
        if (taken_byte('.')) {
            digits();
        }
        if (taken_byte('E') || taken_byte('e')) {
            taken_byte('+') || taken_byte('-');
            digits();
        }
        const std::string_view spelling = start.substr(0, start.size() - rest_.size());
        // By the C library, since not every standard library has std::from_chars for doubles.
        const std::string text(spelling);
        char* end = nullptr;
#ifdef _WIN32
        static const _locale_t classic = _create_locale(LC_ALL, "C");
        const double result = _strtod_l(text.c_str(), &end, classic);
#else
        static const locale_t classic = newlocale(LC_ALL_MASK, "C", nullptr);
        const double result = strtod_l(text.c_str(), &end, classic);
#endif
        require(std::isfinite(result) && end == text.c_str() + text.size());
        return result;
    }

    void digits() {
        const std::size_t count = rest_.find_first_not_of("0123456789");
        require(count > 0 && !rest_.empty());
        rest_.remove_prefix(count < rest_.size() ? count : rest_.size());
    }

    std::string string() {
        std::string result;
        require(taken_byte('"'));
        while (!taken_byte('"')) {
            const char byte = next_byte();
            require(static_cast<unsigned char>(byte) >= 0x20);
            if (byte == '\\') {
                read_escape(result);
            } else {
                result += byte;
            }
        }
        return result;
    }

    void read_escape(std::string& result) {
        constexpr std::string_view letters = "\"\\/bfnrt";
        constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
        const char letter = next_byte();
        if (letter == 'u') {
            append_utf8(result, code_point());
        } else {
            const std::size_t index = letters.find(letter);
            require(index != std::string_view::npos);
            result += meanings[index];
        }
    }

    unsigned code_point() {
        const unsigned first = code_unit();
        if (first < 0xD800 || first > 0xDFFF) {
            return first;
        }
        require(first < 0xDC00 && taken_byte('\\') && taken_byte('u'));
        const unsigned second = code_unit();
        require(second >= 0xDC00 && second <= 0xDFFF);
        return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
    }

    unsigned code_unit() {
        require(rest_.size() >= 4);
        unsigned result = 0;
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + 4, result, 16);
        require(error == std::errc() && end == rest_.data() + 4);
        rest_.remove_prefix(4);
        return result;
    }

    static void append_utf8(std::string& result, unsigned code) {
        if (code < 0x80) {
            result += static_cast<char>(code);
            return;
        }
        const int continuations = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        constexpr unsigned leads[] = {0, 0xC0, 0xE0, 0xF0};
        result += static_cast<char>(leads[continuations] | (code >> (6 * continuations)));
        for (int i = continuations - 1; i >= 0; --i) {
            result += static_cast<char>(0x80 | ((code >> (6 * i)) & 0x3F));
        }
    }

    void skip_whitespace() {
        if (whitespace_ == Whitespace::allowed) {
            const std::size_t count = rest_.find_first_not_of(" \t\n\r");
            rest_.remove_prefix(count < rest_.size() ? count : rest_.size());
        }
    }

    /// Whether that token comes next, after whitespace; then it is read.
    bool taken(char token) {
        skip_whitespace();
        return taken_byte(token);
    }

    void take(char token) {
        require(taken(token));
    }

    bool taken_byte(char byte) {
        if (rest_.empty() || rest_.front() != byte) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    char next_byte() {
        require(!rest_.empty());
        const char byte = rest_.front();
        rest_.remove_prefix(1);
        return byte;
    }

    void require(bool condition) const {
        if (!condition) {
            throw std::runtime_error("no JSON at byte " + std::to_string(size_ - rest_.size()));
        }
    }

    std::string_view rest_;
    std::size_t size_;
    Whitespace whitespace_;
    DuplicateNames duplicates_;
};

inline Value read_json(std::string_view text, Whitespace whitespace = Whitespace::allowed) {
    return JsonReader(text, whitespace).read();
}

} // namespace foundation::json::test

#endif
