/// @file
/// JSON text for other programs, made once more for the tests in the plainest way: piece by piece,
/// character by character, with the location at hand.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_STRINGIFY_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_STRINGIFY_HPP

#include "support/shortest_rule.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/write.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json::test {

/// A piece of a string: a character, or bytes that are none.
struct Character {
    bool good;
    char32_t code;
    std::string bytes;
};

/// The character at the begin of a string. Bytes that cannot go on as begun are one bad character.
inline Character first_character(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) -> unsigned {
        return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0;
    };
    const auto is_between = [](unsigned value, unsigned low, unsigned high) {
        return value >= low && value <= high;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80) {
        return {true, lead, text.substr(at, 1)};
    }
    const std::size_t length = is_between(lead, 0xC2, 0xDF)   ? 2
                               : is_between(lead, 0xE0, 0xEF) ? 3
                               : is_between(lead, 0xF0, 0xF4) ? 4
                                                              : 1;
    const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    std::size_t count = 1;
    while (count < length &&
           is_between(byte(count), count == 1 ? low : 0x80, count == 1 ? high : 0xBF)) {
        ++count;
    }
    if (length == 1 || count < length) {
        return {false, 0xFFFD, text.substr(at, count)};
    }
    char32_t code = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        code = code * 64 + (byte(i) & 63);
    }
    return {true, code, text.substr(at, length)};
}

inline std::vector<Character> characters_of(const std::string& text) {
    std::vector<Character> result;
    for (std::size_t at = 0; at < text.size(); at += result.back().bytes.size()) {
        result.push_back(first_character(text, at));
    }
    return result;
}

/// The UTF-16 units of a text that is UTF-8; whatever is not counts as the byte itself beyond all
/// characters, so that there is an order.
inline std::u16string utf16_of(const std::string& text) {
    std::u16string result;
    for (const Character& character : characters_of(text)) {
        if (character.code < 0x10000) {
            result += static_cast<char16_t>(character.code);
        } else {
            result += static_cast<char16_t>(0xD800 + ((character.code - 0x10000) >> 10));
            result += static_cast<char16_t>(0xDC00 + ((character.code - 0x10000) & 0x3FF));
        }
    }
    return result;
}

/// Makes texts. A WriteError has the location and "wrong" as its problem.
class Stringifier {
public:
    explicit Stringifier(const WriteOptions& options) : options_(options) {}

    std::string text_of(const Value& value) {
        if (holds<Undefined>(value)) {
            throw WriteError("", "wrong");
        }
        append(value, 0);
        return std::move(text_);
    }

private:
    void append(const Value& value, std::size_t depth) {
        visit([&](const auto& content) { append_content(content, depth); }, value);
    }

    void append_content(const Undefined&, std::size_t) { text_ += "null"; }
    void append_content(const Null&, std::size_t) { text_ += "null"; }
    void append_content(bool flag, std::size_t) { text_ += flag ? "true" : "false"; }
    void append_content(const double& number, std::size_t) { append_real(number); }
    void append_content(const float& number, std::size_t) { append_real(number); }
    void append_content(long long number, std::size_t) {
        const bool is_big = number > (1LL << 53) || number < -(1LL << 53);
        append_integer(number, is_big, static_cast<long double>(number));
    }
    void append_content(unsigned long long number, std::size_t) {
        append_integer(number, number > (1ULL << 53), static_cast<long double>(number));
    }
    void append_content(const std::string& text, std::size_t) { append_string(text, pointer_); }

    void append_content(const Array& elements, std::size_t depth) {
        text_ += '[';
        for (std::size_t i = 0; i < elements.size(); ++i) {
            text_ += i != 0 ? "," : "";
            append_line(depth + 1);
            within("/" + std::to_string(i), [&] { append(elements[i], depth + 1); });
        }
        if (!elements.empty()) {
            append_line(depth);
        }
        text_ += ']';
    }

    void append_content(const Object& object, std::size_t depth) {
        std::vector<const Object::value_type*> members;
        for (const auto& member : object) {
            if (!holds<Undefined>(member.second)) {
                members.push_back(&member);
            }
        }
        if (options_.member_order == WriteOptions::MemberOrder::utf16) {
            std::stable_sort(members.begin(), members.end(), [](const auto* a, const auto* b) {
                return utf16_of(a->first) < utf16_of(b->first);
            });
        }
        text_ += '{';
        for (const auto* member : members) {
            text_ += member != members.front() ? "," : "";
            append_line(depth + 1);
            append_string(member->first, pointer_);
            text_ += options_.indent != 0 ? ": " : ":";
            within("/" + escaped_token(member->first), [&] { append(member->second, depth + 1); });
        }
        if (!members.empty()) {
            append_line(depth);
        }
        text_ += '}';
    }

    void append_line(std::size_t depth) {
        if (options_.indent != 0) {
            text_ += '\n';
            text_.append(depth * std::min(options_.indent, 10U), ' ');
        }
    }

    template <class Number>
    void append_real(const Number& number) {
        if (std::isfinite(number)) {
            text_ += expected_shortest_text(number);
            return;
        }
        switch (options_.not_finite) {
        case WriteOptions::NotFinite::error:
            throw WriteError(pointer_, "wrong");
        case WriteOptions::NotFinite::null:
            text_ += "null";
            break;
        case WriteOptions::NotFinite::string:
            text_ += std::isnan(number) ? "\"NaN\"" : number > 0 ? "\"Infinity\"" : "\"-Infinity\"";
        }
    }

    template <class Integer>
    void append_integer(Integer number, bool is_big, long double exact) {
        static_assert(std::numeric_limits<long double>::digits >= 64);
        const auto rounded = static_cast<double>(exact);
        if (!is_big || options_.big_integers == WriteOptions::BigIntegers::digits) {
            text_ += std::to_string(number);
        } else if (options_.big_integers == WriteOptions::BigIntegers::string) {
            text_ += '"' + std::to_string(number) + '"';
        } else if (static_cast<long double>(rounded) == exact) {
            text_ += expected_shortest_text(rounded);
        } else {
            throw WriteError(pointer_, "wrong");
        }
    }

    void append_string(const std::string& text, const std::string& pointer) {
        text_ += '"';
        for (const Character& character : characters_of(text)) {
            if (!character.good && options_.bad_utf8 == WriteOptions::BadUtf8::error) {
                throw WriteError(pointer, "wrong");
            }
            if (!character.good && options_.bad_utf8 == WriteOptions::BadUtf8::keep) {
                text_ += character.bytes;
            } else {
                append_character(character);
            }
        }
        text_ += '"';
    }

    void append_character(const Character& character) {
        static const std::pair<char32_t, const char*> escapes[] = {
            {'"', "\\\""}, {'\\', "\\\\"}, {'\b', "\\b"}, {'\f', "\\f"},
            {'\n', "\\n"}, {'\r', "\\r"},  {'\t', "\\t"},
        };
        for (const auto& [code, escape] : escapes) {
            if (character.code == code) {
                text_ += escape;
                return;
            }
        }
        if (character.code == '/' && options_.escape_slash) {
            text_ += "\\/";
        } else if (character.code < 0x20 || (character.code >= 0x80 && options_.ascii)) {
            for (const char16_t unit :
                 utf16_of(character.good ? character.bytes : "\xEF\xBF\xBD")) {
                char escape[7];
                std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
                text_ += escape;
            }
        } else {
            text_ += character.good ? character.bytes : "\xEF\xBF\xBD";
        }
    }

    static std::string escaped_token(const std::string& name) {
        std::string result;
        for (const char byte : name) {
            result += byte == '~' ? "~0" : byte == '/' ? "~1" : std::string(1, byte);
        }
        return result;
    }

    template <class Action>
    void within(const std::string& token, Action action) {
        const std::size_t length = pointer_.size();
        pointer_ += token;
        action();
        pointer_.resize(length);
    }

    const WriteOptions options_;
    std::string text_;
    std::string pointer_;
};

/// The text, or "error at " and the pointer.
inline std::string stringified(const Value& value, const WriteOptions& options = {}) {
    try {
        return Stringifier(options).text_of(value);
    } catch (const WriteError& error) {
        return "error at " + error.pointer();
    }
}

} // namespace foundation::json::test

#endif
