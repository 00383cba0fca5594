/// @file
/// Conversion of values to nested types. The bytes make a value that roughly matches a schema; a
/// simple interpreter of the schema determines whether it converts and, if not, the place that does
/// not.
#include "expect.hpp"
#include "input.hpp"

#include <foundation/json/convert.hpp>
#include <foundation/json/serializer.hpp>

#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace foundation::json::fuzz {
namespace {

// ---- The types ---------------------------------------------------------------------------------

enum class Level { low, high };

struct Leaf {
    std::uint8_t number = 0;
    Level level = Level::low;
    std::optional<std::string> text;
};

struct Node {
    std::string name;
    std::vector<Leaf> leaves;
    std::map<std::string, std::vector<std::optional<bool>>> flags;
    std::set<int> numbers;
    std::array<double, 2> point{};
    std::tuple<Leaf, Value> both;
    std::vector<Node> children;
};

} // namespace
} // namespace foundation::json::fuzz

namespace foundation::json {

template <>
inline constexpr auto enumerators<fuzz::Level> =
    std::array{std::pair{fuzz::Level::low, "low"}, std::pair{fuzz::Level::high, "high"}};

template <>
inline constexpr auto members<fuzz::Leaf> = table(required("n/~", &fuzz::Leaf::number),
                                                  defaulted("level", &fuzz::Leaf::level),
                                                  defaulted("", &fuzz::Leaf::text));

template <>
inline constexpr auto members<fuzz::Node> = table(required("name", &fuzz::Node::name),
                                                  defaulted("leaves", &fuzz::Node::leaves),
                                                  defaulted("flags", &fuzz::Node::flags),
                                                  defaulted("numbers", &fuzz::Node::numbers),
                                                  defaulted("point", &fuzz::Node::point),
                                                  defaulted("both", &fuzz::Node::both),
                                                  defaulted("children", &fuzz::Node::children));

namespace fuzz {
namespace {

// ---- The same as a schema ----------------------------------------------------------------------

struct Schema {
    enum class What {
        flag,
        byte,
        integer,
        number,
        text,
        level,
        any,
        optional,
        list,
        set,
        tuple,
        map,
        object
    } what;
    std::vector<const Schema*> parts;
    std::vector<std::string> names; // of an object's members; the required ones come first
    std::size_t required = 0;
};

using What = Schema::What;

const Schema flag{What::flag, {}, {}, 0};
const Schema byte{What::byte, {}, {}, 0};
const Schema integer{What::integer, {}, {}, 0};
const Schema number_schema{What::number, {}, {}, 0};
const Schema text{What::text, {}, {}, 0};
const Schema level{What::level, {}, {}, 0};
const Schema any{What::any, {}, {}, 0};
const Schema optional_text{What::optional, {&text}, {}, 0};
const Schema optional_flag{What::optional, {&flag}, {}, 0};
const Schema leaf{What::object, {&byte, &level, &optional_text}, {"n/~", "level", ""}, 1};
const Schema leaves{What::list, {&leaf}, {}, 0};
const Schema flags{What::list, {&optional_flag}, {}, 0};
const Schema flags_by_name{What::map, {&flags}, {}, 0};
const Schema numbers{What::set, {&integer}, {}, 0};
const Schema point{What::tuple, {&number_schema, &number_schema}, {}, 0};
const Schema both{What::tuple, {&leaf, &any}, {}, 0};
extern const Schema nodes;
const Schema node{What::object,
                  {&text, &leaves, &flags_by_name, &numbers, &point, &both, &nodes},
                  {"name", "leaves", "flags", "numbers", "point", "both", "children"},
                  1};
const Schema nodes{What::list, {&node}, {}, 0};

// ---- Values ------------------------------------------------------------------------------------

Value some_value(Input& input, int levels) {
    switch (input.below(levels > 0 ? 12 : 10)) {
    case 0:
        return {};
    case 1:
        return Null();
    case 2:
        return input.flag();
    case 3:
        return input.bits<double>();
    case 4:
        return input.bits<float>();
    case 5:
        return input.bits<long long>();
    case 6:
        return input.bits<unsigned long long>();
    case 7:
        return input.text(input.below(6));
    case 8:
        return Array();
    case 9:
        return Object();
    case 10:
        return Array{some_value(input, levels - 1)};
    default:
        return Object{{input.text(input.below(4)), some_value(input, levels - 1)}};
    }
}

Value value_for(const Schema& schema, Input& input, int levels);

Object members_for(const Schema& schema, Input& input, int levels) {
    Object members;
    for (std::size_t i = 0; i < schema.parts.size(); ++i) {
        const std::size_t choice = input.below(8);
        if (choice != 0 && (i < schema.required || choice > 3)) {
            members[schema.names[i]] = value_for(*schema.parts[i], input, levels - 1);
        }
    }
    if (input.below(16) == 1) {
        members[input.text(input.below(4))] = some_value(input, levels - 1);
    }
    return members;
}

Value value_for(const Schema& schema, Input& input, int levels) {
    if (input.below(32) == 31 || levels == 0) {
        return some_value(input, 2);
    }
    switch (schema.what) {
    case What::flag:
        return input.flag();
    case What::byte:
        return static_cast<int>(input.byte());
    case What::integer:
        return static_cast<double>(input.bits<std::int16_t>());
    case What::number:
        return input.bits<double>();
    case What::text:
        return input.text(input.below(6));
    case What::level:
        return input.flag() ? "low" : "high";
    case What::any:
        return some_value(input, 2);
    case What::optional:
        return input.flag() ? Value(Null()) : value_for(*schema.parts[0], input, levels);
    case What::list:
    case What::set: {
        Array elements;
        for (std::size_t size = input.below(4); size > 0; --size) {
            elements.push_back(value_for(*schema.parts[0], input, levels - 1));
        }
        return elements;
    }
    case What::tuple: {
        Array elements;
        for (const Schema* part : schema.parts) {
            elements.push_back(value_for(*part, input, levels - 1));
        }
        if (input.below(16) == 15) {
            elements.push_back(some_value(input, 0));
        }
        return elements;
    }
    case What::map: {
        Object members;
        for (std::size_t size = input.below(3); size > 0; --size) {
            members[input.text(input.below(4))] = value_for(*schema.parts[0], input, levels - 1);
        }
        return members;
    }
    case What::object:
        return members_for(schema, input, levels);
    }
    return {};
}

// ---- The expected result -----------------------------------------------------------------------

/// The pointer to the first place that does not convert.
using Wrong = std::optional<std::string>;

std::string escaped(const std::string& name) {
    std::string token;
    for (const char c : name) {
        token += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    }
    return token;
}

std::optional<long double> number_of(const Value& value) {
    switch (kind_of(value)) {
    case Kind::number:
        return get<double>(value);
    case Kind::float32:
        return get<float>(value);
    case Kind::int64:
        return static_cast<long double>(get<long long>(value));
    case Kind::uint64:
        return static_cast<long double>(get<unsigned long long>(value));
    default:
        return std::nullopt;
    }
}

Wrong unless(bool fits, const std::string& place) {
    return fits ? std::nullopt : Wrong(place);
}

Wrong unless_within(const Value& value, long double least, long double greatest,
                    const std::string& place) {
    const std::optional<long double> number = number_of(value);
    return unless(
        number && *number >= least && *number <= greatest && std::floor(*number) == *number, place);
}

bool is_nothing(const Value* value) {
    return value == nullptr || holds<Undefined>(*value);
}

Wrong first_wrong(const Schema& schema, const Value& value, const std::string& place, bool strict);

Wrong first_wrong_member(const Schema& schema, const Value& value, const std::string& place,
                         bool strict) {
    const auto* const members = get_if<Object>(&value);
    if (members == nullptr) {
        return place;
    }
    std::vector<const Value*> found(schema.names.size());
    for (const auto& [name, member] : *members) {
        std::size_t i = 0;
        while (i < schema.names.size() && schema.names[i] != name) {
            ++i;
        }
        if (i < schema.names.size()) {
            found[i] = &member;
        } else if (strict) {
            return place + '/' + escaped(name);
        }
    }
    for (std::size_t i = 0; i < schema.required; ++i) {
        if (is_nothing(found[i])) {
            return place;
        }
    }
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (!is_nothing(found[i])) {
            if (Wrong wrong = first_wrong(*schema.parts[i], *found[i],
                                          place + '/' + escaped(schema.names[i]), strict)) {
                return wrong;
            }
        }
    }
    return std::nullopt;
}

Wrong first_wrong_element(const Schema& schema, const Value& value, const std::string& place,
                          bool strict) {
    const auto* const elements = get_if<Array>(&value);
    const bool is_tuple = schema.what == What::tuple;
    if (elements == nullptr || (is_tuple && elements->size() != schema.parts.size())) {
        return place;
    }
    std::set<long double> before;
    for (std::size_t i = 0; i < elements->size(); ++i) {
        const Value& element = (*elements)[i];
        const std::string element_place = place + '/' + std::to_string(i);
        if (Wrong wrong =
                first_wrong(*schema.parts[is_tuple ? i : 0], element, element_place, strict)) {
            return wrong;
        }
        if (schema.what == What::set && !before.insert(*number_of(element)).second) {
            return element_place;
        }
    }
    return std::nullopt;
}

Wrong first_wrong(const Schema& schema, const Value& value, const std::string& place, bool strict) {
    switch (schema.what) {
    case What::flag:
        return unless(holds<bool>(value), place);
    case What::byte:
        return unless_within(value, 0, 255, place);
    case What::integer:
        return unless_within(value, -2147483648.0L, 2147483647.0L, place);
    case What::number:
        return unless(number_of(value).has_value(), place);
    case What::text:
        return unless(holds<std::string>(value), place);
    case What::level:
        return unless(value == "low" || value == "high", place);
    case What::any:
        return std::nullopt;
    case What::optional:
        return holds<Null>(value) || holds<Undefined>(value)
                   ? std::nullopt
                   : first_wrong(*schema.parts[0], value, place, strict);
    case What::list:
    case What::set:
    case What::tuple:
        return first_wrong_element(schema, value, place, strict);
    case What::map:
        if (const auto* const members = get_if<Object>(&value)) {
            for (const auto& [name, member] : *members) {
                if (Wrong wrong = first_wrong(*schema.parts[0], member, place + '/' + escaped(name),
                                              strict)) {
                    return wrong;
                }
            }
            return std::nullopt;
        }
        return place;
    case What::object:
        return first_wrong_member(schema, value, place, strict);
    }
    return std::nullopt;
}

/// The value that a pointer leads to, followed token by token. There must be one.
const Value& walk(const Value& root, std::string_view pointer) {
    const Value* value = &root;
    while (!pointer.empty()) {
        pointer.remove_prefix(1);
        const std::string token(pointer.substr(0, pointer.find('/')));
        pointer.remove_prefix(token.size());
        if (const auto* const elements = get_if<Array>(value)) {
            value = &elements->at(std::stoul(token));
            continue;
        }
        for (const auto& [name, member] : get<Object>(*value)) {
            if (escaped(name) == token) {
                value = &member;
                break;
            }
        }
    }
    return *value;
}

// ---- Checks ------------------------------------------------------------------------------------

void check_conversion(const Value& value, bool strict) {
    const Wrong wrong = first_wrong(node, value, "", strict);
    ConvertOptions options;
    if (strict) {
        options.unknown_members = ConvertOptions::UnknownMembers::error;
    }
    try {
        const Node object = to<Node>(value, options);
        expect(!wrong, "a value that converts matches the schema");
        const Value again = from(object);
        expect_equal(serialize(from(to<Node>(again))), serialize(again),
                     "the value after a round trip");
    } catch (const ConversionError& error) {
        expect(wrong.has_value(), "a value that does not convert does not match the schema");
        expect_equal(error.pointer(), *wrong, "the place");
        expect(find(value, error.pointer()) == &walk(value, error.pointer()),
               "find() finds the place");
        const std::string_view message = error.what();
        expect(message.substr(0, wrong->empty() ? 11 : 4) ==
                   (wrong->empty() ? "at the root" : "at /"),
               "the message begins with the place");
        for (const char c : message) {
            expect(static_cast<unsigned char>(c) >= 0x20 && c != 0x7f,
                   "the message has no control bytes");
        }
    }
}

void check_any_pointer(const Value& value, const std::string& pointer) {
    try {
        const Value* const found = find(value, pointer);
        expect(found == nullptr || found == &walk(value, pointer), "find() and walk() agree");
    } catch (const std::invalid_argument&) {
        expect(pointer.front() != '/' || pointer.find('~') != std::string::npos,
               "a JSON Pointer is refused only for its first byte or a ~");
    }
}

} // namespace
} // namespace fuzz
} // namespace foundation::json

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace foundation::json;
    fuzz::Input input(data, size);
    const bool strict = input.flag();
    const std::string pointer = input.text(input.below(12));
    const Value value = fuzz::value_for(fuzz::node, input, 6);
    fuzz::check_conversion(value, strict);
    fuzz::check_any_pointer(value, pointer);
    return 0;
}
