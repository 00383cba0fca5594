/// @file
/// A value as a test holds it, open, unlike Value; and ReferenceWriter, which states once more for
/// the tests which text a value has: separators, indentation, escapes.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_TREE_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_TREE_HPP

#include "support/number_rule.hpp"

#include <foundation/json/value.hpp>

#include <cstddef>
#include <cstring>
#include <map>
#include <ostream>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace foundation::json::test {

struct Tree;
struct Member;

using Elements = std::vector<Tree>;
using Members = std::vector<Member>; // in ascending order of their names, each name once

struct Tree {
    std::variant<Undefined, Null, bool, double, std::string, Elements, Members, float, long long,
                 unsigned long long>
        content;
};

struct Member {
    std::string name;
    Tree value;
};

/// The tree as a Value.
inline Value to_value(const Tree& tree) {
    return std::visit(
        [](const auto& content) -> Value {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, Elements>) {
                std::vector<Value> elements;
                for (const Tree& element : content) {
                    elements.push_back(to_value(element));
                }
                return elements;
            } else if constexpr (std::is_same_v<Content, Members>) {
                std::map<std::string, Value> members;
                for (const Member& member : content) {
                    members[member.name] = to_value(member.value);
                }
                return members;
            } else {
                return content;
            }
        },
        tree.content);
}

/// The letter of a byte's short escape, `n` of a line feed, or nothing where it has none.
inline char escape_letter(char byte) {
    static constexpr char escaped[] = "\b\t\n\f\r\"/\\";
    static constexpr char letters[] = "btnfr\"/\\";
    const void* const found = std::memchr(escaped, byte, sizeof escaped - 1);
    return found != nullptr ? letters[static_cast<const char*>(found) - escaped] : '\0';
}

/// Writes trees with one formatted insertion per piece of text, which is what writing a value onto
/// a stream means, whatever the state of the stream.
class ReferenceWriter {
public:
    ReferenceWriter(std::ostream& stream, bool pretty) : stream_(stream), pretty_(pretty) {}

    void write(const Tree& tree, std::size_t depth = 0) {
        std::visit([&](const auto& content) { write_content(content, depth); }, tree.content);
    }

private:
    void write_content(const Undefined&, std::size_t) {}
    void write_content(const Null&, std::size_t) { stream_ << "null"; }
    void write_content(bool flag, std::size_t) { stream_ << (flag ? "true" : "false"); }
    void write_content(const double& number, std::size_t) {
        stream_ << expected_number_text(number);
    }
    void write_content(const float& number, std::size_t) {
        stream_ << expected_number_text(number);
    }
    void write_content(long long number, std::size_t) { stream_ << number; }
    void write_content(unsigned long long number, std::size_t) { stream_ << number; }

    void write_content(const std::string& text, std::size_t) {
        stream_ << "\"";
        for (const char byte : text) {
            write_byte(byte);
        }
        stream_ << "\"";
    }

    void write_content(const Elements& elements, std::size_t depth) {
        write_items('[', elements, ']', depth);
    }

    void write_content(const Members& members, std::size_t depth) {
        write_items('{', members, '}', depth);
    }

    template <class Items>
    void write_items(char opening, const Items& items, char closing, std::size_t depth) {
        stream_ << opening;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (i > 0) {
                stream_ << ",";
            }
            end_line();
            indent(depth + 1);
            write_item(items[i], depth + 1);
        }
        if (!items.empty()) {
            end_line();
        }
        indent(depth);
        stream_ << closing;
    }

    void write_item(const Tree& element, std::size_t depth) { write(element, depth); }

    void write_item(const Member& member, std::size_t depth) {
        write_content(member.name, depth);
        stream_ << ":";
        write(member.value, depth);
    }

    void end_line() {
        if (pretty_) {
            stream_ << std::endl;
        }
    }

    void indent(std::size_t depth) {
        if (pretty_) {
            stream_ << std::string(4 * depth, ' ');
        }
    }

    void write_byte(char byte) {
        if (const char letter = escape_letter(byte); letter != '\0') {
            stream_ << std::string{'\\', letter};
        } else if (static_cast<unsigned char>(byte) < 0x20) {
            write_code(byte);
        } else {
            stream_ << byte;
        }
    }

    void write_code(int code) {
        struct FlagsKeeper {
            std::ostream& stream;
            std::ios_base::fmtflags flags;
            ~FlagsKeeper() { stream.flags(flags); }
        };
        const FlagsKeeper keeper{stream_, stream_.flags()};
        stream_ << "\\u";
        stream_.width(4);
        stream_.fill('0');
        stream_ << std::hex << code;
    }

    std::ostream& stream_;
    bool pretty_;
};

} // namespace foundation::json::test

#endif
