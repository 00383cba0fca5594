/// @file
/// Random documents: those given, changed here and there.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_TEXTS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_TEXTS_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/reader.hpp>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace foundation::json::test {

/// A value as it stands in a document: members in any order, names more than once.
struct Written {
    char type = '0';                                    ///< `[`, `{`, or 0 for what is neither
    std::string text;                                   ///< of that
    std::vector<std::pair<std::string, Written>> items; ///< with their names, in quotes
};

/// Makes documents out of others, the same ones for the same seed.
class RandomTexts {
public:
    explicit RandomTexts(std::uint64_t seed) : random_(seed) {}

    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
    }
    bool once_in(std::size_t times) { return below(times) == 0; }

    /// A document like a given one, mostly a correct one.
    std::string like(std::string_view text) {
        Reader reader(text);
        reader.next();
        Written document = take(reader);
        for (std::size_t changes = below(4); changes != 0; --changes) {
            change(document);
        }
        indent_ = once_in(2) ? 0 : below(5);
        loose_ = once_in(4);
        std::string result = once_in(8) ? "\xEF\xBB\xBF" : "";
        put(result, document, 0);
        if (once_in(3)) {
            damage(result);
        }
        return result;
    }

private:
    static Written take(Reader& reader) {
        Written result;
        switch (reader.token()) {
        case Token::begin_array:
            result.type = '[';
            while (reader.next() != Token::end_array) {
                result.items.emplace_back("", take(reader));
            }
            break;
        case Token::begin_object:
            result.type = '{';
            while (reader.next() != Token::end_object) {
                std::string name = quoted(reader.string());
                reader.next();
                result.items.emplace_back(std::move(name), take(reader));
            }
            break;
        case Token::string:
            result.text = quoted(reader.string());
            break;
        case Token::number:
            result.text = reader.number_text();
            break;
        case Token::boolean:
            result.text = reader.boolean() ? "true" : "false";
            break;
        default:
            result.text = "null";
            break;
        }
        return result;
    }

    static std::string quoted(std::string_view text) {
        std::string result = "\"";
        for (const char byte : text) {
            if (byte == '"' || byte == '\\') {
                result += '\\';
            }
            if (static_cast<unsigned char>(byte) < 0x20) {
                constexpr const char* digits = "0123456789abcdef";
                result += "\\u00";
                result += digits[byte >> 4 & 15];
                result += digits[byte & 15];
            } else {
                result += byte;
            }
        }
        return result + '"';
    }

    /// A container in a document, or a value in it.
    Written& any(Written& document) {
        Written* found = &document;
        while (!found->items.empty() && !once_in(3)) {
            found = &found->items[below(found->items.size())].second;
        }
        return *found;
    }

    void change(Written& document) {
        Written& target = any(document);
        if (target.items.empty() || once_in(4)) {
            target = once_in(2) ? any(document_copy(document)) : Written{'0', scalar(), {}};
            return;
        }
        const std::size_t i = below(target.items.size());
        const auto item = target.items[i];
        switch (below(5)) {
        case 0:
            target.items.erase(target.items.begin() + static_cast<std::ptrdiff_t>(i));
            break;
        case 1: // the same name twice
            target.items.insert(target.items.begin() +
                                    static_cast<std::ptrdiff_t>(below(target.items.size())),
                                item);
            break;
        case 2:
            std::swap(target.items[i], target.items[below(target.items.size())]);
            break;
        case 3:
            target.items.emplace_back(target.type == '{' ? quoted(once_in(2) ? "new" : "/~\n") : "",
                                      any(document_copy(document)));
            break;
        default:
            target.items[i].second = any(document_copy(document));
            break;
        }
    }

    Written& document_copy(const Written& document) { return copy_ = document; }

    std::string scalar() {
        static const char* const scalars[] = {"null",
                                              "true",
                                              "false",
                                              "0",
                                              "-0",
                                              "-1",
                                              "255",
                                              "256",
                                              "1.5",
                                              "1e2",
                                              "1E-2",
                                              "-0.0",
                                              "2147483648",
                                              "9007199254740993",
                                              "18446744073709551615",
                                              "18446744073709551616",
                                              "1e400",
                                              "123456789012345678",
                                              "1234567890123456789",
                                              "0.1",
                                              "\"\"",
                                              "\"low\"",
                                              "\"\\u006cow\"",
                                              "\"text of more than sixteen bytes\"",
                                              "\"\\ud800\"",
                                              "\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\"",
                                              "[]",
                                              "{}",
                                              "123456.78901234567890123"};
        return scalars[below(std::size(scalars))];
    }

    void put_space(std::string& out, std::size_t depth) {
        if (loose_ && once_in(4)) {
            static const char* const spaces[] = {" ", "\n", "\t", "  ", "\r\n", "/**/", "// x\n"};
            out += spaces[below(std::size(spaces))];
        } else if (indent_ != 0) {
            out += '\n';
            out.append(indent_ * depth, ' ');
        }
    }

    void put(std::string& out, const Written& value, std::size_t depth) {
        if (value.type == '0') {
            out += value.text;
            return;
        }
        out += value.type;
        const char* separator = "";
        for (const auto& [name, item] : value.items) {
            out += separator;
            put_space(out, depth + 1);
            out += name;
            out += value.type == '{' ? ":" : "";
            out += value.type == '{' && indent_ != 0 ? " " : "";
            put(out, item, depth + 1);
            separator = ",";
        }
        if (!value.items.empty()) {
            out += loose_ && once_in(8) ? "," : "";
            put_space(out, depth);
        }
        out += value.type == '[' ? ']' : '}';
    }

    void damage(std::string& text) {
        static const char bytes[] = "\"\\[]{},:0.-e \n\0/x\x80\xFF";
        const std::size_t at = below(text.size() + 1);
        const char byte = bytes[below(sizeof bytes - 1)];
        switch (below(4)) {
        case 0:
            text.insert(at, 1, byte);
            break;
        case 1:
            text.erase(at, 1);
            break;
        case 2:
            text.resize(at);
            break;
        default:
            if (at != text.size()) {
                text[at] = byte;
            }
            break;
        }
    }

    std::mt19937_64 random_;
    std::size_t indent_ = 0;
    bool loose_ = false;
    Written copy_;
};

} // namespace foundation::json::test

#endif
