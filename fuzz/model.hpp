/// @file
/// A model of a value, as the documentation describes it: a struct with a kind and the content of
/// every kind. It shares no code with the library.
#ifndef FOUNDATION_JSON_FUZZ_MODEL_HPP
#define FOUNDATION_JSON_FUZZ_MODEL_HPP

#include "support/number_rule.hpp"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::fuzz {

/// In the order that comparison gives values of different kinds.
enum class Kind { undefined, null, boolean, number, string, array, object, real, int64, uint64 };

inline std::string name_of(Kind kind) {
    static constexpr const char* names[] = {
        "undefined",  "JSON null",   "JSON boolean", "JSON number", "JSON string",
        "JSON array", "JSON object", "float",        "int64",       "uint64"};
    return names[static_cast<std::size_t>(kind)];
}

/// Only the content of its kind counts.
struct Model {
    Kind kind = Kind::undefined;
    bool flag = false;
    double number = 0;
    std::string text;
    std::vector<Model> elements;
    std::map<std::string, Model> members;
    float real = 0;
    long long int64 = 0;
    unsigned long long uint64 = 0;

    bool is(Kind wanted) const { return kind == wanted; }
    bool is_container() const { return is(Kind::array) || is(Kind::object); }
    bool has_child() const { return !elements.empty() || !members.empty(); }
};

inline Model array_model(std::vector<Model> elements) {
    Model result;
    result.kind = Kind::array;
    result.elements = std::move(elements);
    return result;
}

inline Model object_model(std::map<std::string, Model> members) {
    Model result;
    result.kind = Kind::object;
    result.members = std::move(members);
    return result;
}

/// The number of values in a value, itself included.
inline std::size_t nodes(const Model& model) {
    std::size_t result = 1;
    for (const Model& element : model.elements) {
        result += nodes(element);
    }
    for (const auto& member : model.members) {
        result += nodes(member.second);
    }
    return result;
}

inline std::size_t depth(const Model& model) {
    std::size_t result = 0;
    for (const Model& element : model.elements) {
        result = std::max(result, depth(element));
    }
    for (const auto& member : model.members) {
        result = std::max(result, depth(member.second));
    }
    return result + 1;
}

// ---- Moving ------------------------------------------------------------------------------------

/// Moves the content out. Strings, arrays and objects are left empty, other kinds as they were.
inline Model take(Model& source) {
    Model taken = source;
    source.text.clear();
    source.elements.clear();
    source.members.clear();
    return taken;
}

inline void move_assign(Model& target, Model& source) {
    if (&target == &source) {
        return;
    }
    if (target.kind == source.kind && target.is_container()) {
        std::swap(target, source);
    } else {
        target = take(source);
    }
}

// ---- Comparison --------------------------------------------------------------------------------

inline bool equal(const Model& left, const Model& right) {
    if (left.kind != right.kind) {
        return false;
    }
    switch (left.kind) {
    case Kind::undefined:
        return false;
    case Kind::null:
        return true;
    case Kind::boolean:
        return left.flag == right.flag;
    case Kind::number:
        return left.number == right.number;
    case Kind::string:
        return left.text == right.text;
    case Kind::array:
        return std::equal(left.elements.begin(), left.elements.end(), right.elements.begin(),
                          right.elements.end(), equal);
    case Kind::object:
        return std::equal(left.members.begin(), left.members.end(), right.members.begin(),
                          right.members.end(), [](const auto& l, const auto& r) {
                              return l.first == r.first && equal(l.second, r.second);
                          });
    case Kind::real:
        return left.real == right.real;
    case Kind::int64:
        return left.int64 == right.int64;
    case Kind::uint64:
        return left.uint64 == right.uint64;
    }
    return false;
}

template <class Content>
int order(const Content& left, const Content& right) {
    return left < right ? -1 : right < left ? 1 : 0;
}

/// Negative, zero where neither is less, or positive.
inline int order(const Model& left, const Model& right);

inline int order(const std::pair<const std::string, Model>& left,
                 const std::pair<const std::string, Model>& right) {
    const int names = order(left.first, right.first);
    return names != 0 ? names : order(left.second, right.second);
}

template <class Items>
int order_of_items(const Items& left, const Items& right) {
    auto l = left.begin();
    for (auto r = right.begin(); l != left.end() && r != right.end(); ++l, ++r) {
        if (const int items = order(*l, *r); items != 0) {
            return items;
        }
    }
    return order(left.size(), right.size());
}

inline int order(const Model& left, const Model& right) {
    if (left.kind != right.kind) {
        return order(static_cast<int>(left.kind), static_cast<int>(right.kind));
    }
    switch (left.kind) {
    case Kind::undefined:
    case Kind::null:
        return 0;
    case Kind::boolean:
        return order(left.flag, right.flag);
    case Kind::number:
        return order(left.number, right.number);
    case Kind::string:
        return order(left.text, right.text);
    case Kind::array:
        return order_of_items(left.elements, right.elements);
    case Kind::object:
        return order_of_items(left.members, right.members);
    case Kind::real:
        return order(left.real, right.real);
    case Kind::int64:
        return order(left.int64, right.int64);
    case Kind::uint64:
        return order(left.uint64, right.uint64);
    }
    return 0;
}

// ---- Conversion and fallback -------------------------------------------------------------------

inline std::string invalid_conversion(const Model& model, const std::string& target) {
    return "throws invalid conversion: " + name_of(model.kind) + " to " + target;
}

inline std::string to_bool(const Model& model) {
    return model.is(Kind::boolean) ? std::to_string(model.flag)
                                   : invalid_conversion(model, "JSON boolean");
}

inline std::string number_to_int(double number) {
    if (std::isnan(number)) {
        return std::to_string(INT_MIN);
    }
    if (number <= -2147483649.0) {
        return "overflows below";
    }
    if (number >= 2147483648.0) {
        return "overflows above";
    }
    return std::to_string(static_cast<int>(number));
}

inline std::string text_to_int(const std::string& text) {
    std::size_t at = 0;
    while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at])) != 0) {
        ++at;
    }
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        ++at;
    }
    double number = 0; // exact for every number that fits an int
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        number = 10 * number + (text[at] - '0');
    }
    number = negative ? -number : number;
    return std::to_string(static_cast<int>(
        std::clamp(number, static_cast<double>(INT_MIN), static_cast<double>(INT_MAX))));
}

inline std::string to_int(const Model& model) {
    switch (model.kind) {
    case Kind::undefined:
    case Kind::null:
        return "0";
    case Kind::boolean:
        return std::to_string(static_cast<int>(model.flag));
    case Kind::number:
        return number_to_int(model.number);
    case Kind::string:
        return text_to_int(model.text);
    default:
        return invalid_conversion(model, "int");
    }
}

inline std::string to_short(const Model& model) {
    const auto within = [](auto number) {
        const bool fits = number >= -32768 && number <= 32767;
        return fits && static_cast<decltype(number)>(static_cast<short>(number)) == number
                   ? std::to_string(static_cast<short>(number))
                   : "is out of range";
    };
    switch (model.kind) {
    case Kind::number:
        return within(model.number);
    case Kind::real:
        return within(model.real);
    case Kind::int64:
        return within(model.int64);
    case Kind::uint64:
        return model.uint64 <= 32767 ? std::to_string(model.uint64) : "is out of range";
    default:
        return invalid_conversion(model, "JSON number");
    }
}

/// Whether `model || other` gives the other.
inline bool falls_back(const Model& model) {
    switch (model.kind) {
    case Kind::undefined:
    case Kind::null:
        return true;
    case Kind::boolean:
        return !model.flag;
    case Kind::number:
        return model.number == 0;
    case Kind::string:
        return model.text.empty();
    default:
        return false;
    }
}

// ---- Text --------------------------------------------------------------------------------------

inline std::string quoted(const std::string& text) {
    static const std::map<char, std::string> short_escapes = {
        {'\b', "\\b"}, {'\t', "\\t"}, {'\n', "\\n"}, {'\f', "\\f"},
        {'\r', "\\r"}, {'"', "\\\""}, {'/', "\\/"},  {'\\', "\\\\"}};
    std::string result = "\"";
    for (const char byte : text) {
        const auto escape = short_escapes.find(byte);
        if (escape != short_escapes.end()) {
            result += escape->second;
        } else if (byte >= 0 && byte < 0x20) {
            result +=
                std::string("\\u00") + (byte < 0x10 ? '0' : '1') + "0123456789abcdef"[byte % 16];
        } else {
            result += byte;
        }
    }
    return result + '"';
}

inline std::string compact_text(const Model& model) {
    std::string result;
    const char* separator = "";
    switch (model.kind) {
    case Kind::undefined:
        return "";
    case Kind::null:
        return "null";
    case Kind::boolean:
        return model.flag ? "true" : "false";
    case Kind::number:
        return test::expected_number_text(model.number);
    case Kind::string:
        return quoted(model.text);
    case Kind::array:
        for (const Model& element : model.elements) {
            result += separator + compact_text(element);
            separator = ",";
        }
        return '[' + result + ']';
    case Kind::object:
        for (const auto& [name, value] : model.members) {
            result += separator + quoted(name) + ':' + compact_text(value);
            separator = ",";
        }
        return '{' + result + '}';
    case Kind::real:
        return test::expected_number_text(model.real);
    case Kind::int64:
        return std::to_string(model.int64);
    case Kind::uint64:
        return std::to_string(model.uint64);
    }
    return result;
}

} // namespace foundation::json::fuzz

#endif
