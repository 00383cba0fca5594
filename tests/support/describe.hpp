/// @file
/// A value's kind and content as one line, so that a whole value is one expectation. The line is
/// compact JSON text, made without the library's writer: if the writer is broken, only tests of
/// text fail.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_DESCRIBE_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_DESCRIBE_HPP

#include "support/tree.hpp"

#include <foundation/json/content.hpp>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace foundation::json::test {

/// Appends the texts of values to a text.
class ContentText {
public:
    explicit ContentText(std::string& text) : text_(text) {}

    void append(const Value& value) { visit(*this, value); }

    void operator()(const Undefined&) const {}
    void operator()(const Null&) const { text_ += "null"; }
    void operator()(bool flag) const { text_ += flag ? "true" : "false"; }
    void operator()(const double& number) const { text_ += expected_number_text(number); }
    void operator()(const float& number) const { text_ += expected_number_text(number); }
    void operator()(long long number) const { text_ += std::to_string(number); }
    void operator()(unsigned long long number) const { text_ += std::to_string(number); }

    void operator()(const std::string& text) const {
        text_ += '"';
        for (const char byte : text) {
            if (const char letter = escape_letter(byte); letter != '\0') {
                (text_ += '\\') += letter;
            } else if (static_cast<unsigned char>(byte) < 0x20) {
                char escape[7];
                std::snprintf(escape, sizeof escape, "\\u%04x", byte);
                text_ += escape;
            } else {
                text_ += byte;
            }
        }
        text_ += '"';
    }

    void operator()(const std::vector<Value>& elements) {
        const char* before = "[";
        for (const Value& element : elements) {
            text_ += before;
            append(element);
            before = ",";
        }
        text_ += elements.empty() ? "[]" : "]";
    }

    void operator()(const std::map<std::string, Value>& members) {
        const char* before = "{";
        for (const auto& [name, value] : members) {
            text_ += before;
            (*this)(name);
            text_ += ':';
            append(value);
            before = ",";
        }
        text_ += members.empty() ? "{}" : "}";
    }

private:
    std::string& text_;
};

/// The name of a value's kind, as messages have it.
inline std::string kind_name(const Value& value) {
    return name_of(kind_of(value));
}

/// The content as compact text: `[1,"two"]`, `7`, nothing for an Undefined.
inline std::string content_text(const Value& value) {
    std::string text;
    ContentText(text).append(value);
    return text;
}

/// The kind and the content: `JSON array [1,"two"]`, `int64 7`, `undefined`.
inline std::string describe(const Value& value) {
    const std::string text = content_text(value);
    return text.empty() ? kind_name(value) : kind_name(value) + " " + text;
}

} // namespace foundation::json::test

#endif
