/// @file
/// Types of every sort to read documents into, texts of them, and the comparison of read() with
/// to() of a parsed value.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_READ_TYPES_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_READ_TYPES_HPP

#include "support/describe.hpp"

#include <foundation/json/convert.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/read.hpp>

#include <array>
#include <cstdint>
#include <deque>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace foundation::json::test::reads {

enum class Level { low, high };

struct Point {
    double x = 1;
    double y = 2;
};

struct Leaf {
    std::uint8_t number = 7;
    Level level = Level::high;
    std::optional<std::string> text = "default";
    Point point{3, 4};
};

struct Node {
    std::string name;
    std::vector<Leaf> leaves;
    std::map<std::string, std::vector<std::optional<bool>>> flags;
    std::set<int> numbers;
    std::array<Leaf, 2> pair{Leaf{}, Leaf{9, Level::low, std::nullopt, {}}};
    std::tuple<Leaf, Value> both;
    std::vector<Node> children;
};

/// Numbers of every type.
struct Numbers {
    signed char int8 = 1;
    short int16 = 2;
    int int32 = 3;
    long long int64 = 4;
    std::uint8_t uint8 = 5;
    std::uint16_t uint16 = 6;
    std::uint32_t uint32 = 7;
    std::uint64_t uint64 = 8;
    float single = 9;
    double number = 10;
    long double extended = 11;
};

/// Containers of every type.
struct Containers {
    std::vector<int> ints{1, 2};
    std::vector<double> doubles;
    std::vector<bool> flags{true};
    std::vector<std::string> strings;
    std::vector<std::vector<std::uint64_t>> lists;
    std::deque<std::optional<int>> deque;
    std::list<std::string> list;
    std::unordered_map<std::string, double> unordered;
    std::array<int, 3> three{1, 2, 3};
    std::pair<std::string, Level> pair;
    std::tuple<> nothing;
    Array array;
    Object object;
    Value value = 1.5;
};

/// Two names for one data member, and names that need escapes or are long.
struct Odd {
    int shared = 0;
    int quoted = 0;
    int longer = 0;
    int wide = 0;
    bool empty = false;
};

/// More members than a word has bits.
template <std::size_t Number>
struct Part {
    std::optional<int> content = 7;
};

template <class Numbers>
struct PartsOf;

template <std::size_t... Numbers>
struct PartsOf<std::index_sequence<Numbers...>> : Part<Numbers>... {
    static constexpr char names[][4] = {
        {char('a' + Numbers / 26), char('a' + Numbers % 26), 'x', '\0'}...};
    static constexpr auto table() {
        return json::table((Numbers % 40 == 3
                                ? required(names[Numbers], &Part<Numbers>::content)
                                : defaulted(names[Numbers], &Part<Numbers>::content))...);
    }
};

using Wide = PartsOf<std::make_index_sequence<70>>;

} // namespace foundation::json::test::reads

namespace foundation::json {

template <>
inline constexpr auto enumerators<test::reads::Level> =
    std::array{std::pair{test::reads::Level::low, "low"},
               std::pair{test::reads::Level::high, "high"},
               std::pair{test::reads::Level::high, "t\xC3\xB6p"}};

template <>
inline constexpr auto members<test::reads::Point> = table(defaulted("x", &test::reads::Point::x),
                                                          defaulted("y", &test::reads::Point::y));

template <>
inline constexpr auto members<test::reads::Leaf> = table(
    required("n/~", &test::reads::Leaf::number), defaulted("level", &test::reads::Leaf::level),
    defaulted("", &test::reads::Leaf::text), defaulted("point", &test::reads::Leaf::point));

template <>
inline constexpr auto members<test::reads::Node> = table(
    required("name", &test::reads::Node::name), defaulted("leaves", &test::reads::Node::leaves),
    defaulted("flags", &test::reads::Node::flags),
    defaulted("numbers", &test::reads::Node::numbers), defaulted("pair", &test::reads::Node::pair),
    defaulted("both", &test::reads::Node::both),
    defaulted("children", &test::reads::Node::children));

template <>
inline constexpr auto
    members<test::reads::Numbers> = table(defaulted("int8", &test::reads::Numbers::int8),
                                          defaulted("int16", &test::reads::Numbers::int16),
                                          defaulted("int32", &test::reads::Numbers::int32),
                                          defaulted("int64", &test::reads::Numbers::int64),
                                          defaulted("uint8", &test::reads::Numbers::uint8),
                                          defaulted("uint16", &test::reads::Numbers::uint16),
                                          defaulted("uint32", &test::reads::Numbers::uint32),
                                          defaulted("uint64", &test::reads::Numbers::uint64),
                                          defaulted("single", &test::reads::Numbers::single),
                                          defaulted("number", &test::reads::Numbers::number),
                                          defaulted("extended", &test::reads::Numbers::extended));

template <>
inline constexpr auto members<test::reads::Containers> =
    table(defaulted("ints", &test::reads::Containers::ints),
          defaulted("doubles", &test::reads::Containers::doubles),
          defaulted("flags", &test::reads::Containers::flags),
          defaulted("strings", &test::reads::Containers::strings),
          defaulted("lists", &test::reads::Containers::lists),
          defaulted("deque", &test::reads::Containers::deque),
          defaulted("list", &test::reads::Containers::list),
          defaulted("unordered", &test::reads::Containers::unordered),
          defaulted("three", &test::reads::Containers::three),
          defaulted("pair", &test::reads::Containers::pair),
          defaulted("nothing", &test::reads::Containers::nothing),
          defaulted("array", &test::reads::Containers::array),
          defaulted("object", &test::reads::Containers::object),
          required("value", &test::reads::Containers::value));

template <>
inline constexpr auto members<test::reads::Odd> =
    table(defaulted("a", &test::reads::Odd::shared), defaulted("b", &test::reads::Odd::shared),
          defaulted("q\"\\:1,", &test::reads::Odd::quoted),
          defaulted("a name of more than sixteen bytes", &test::reads::Odd::longer),
          defaulted("a name that is so long that it is never compared as a whole, but looked up",
                    &test::reads::Odd::wide),
          defaulted("\xC3\xA9", &test::reads::Odd::empty));

template <>
inline constexpr auto members<test::reads::Wide> = test::reads::Wide::table();

} // namespace foundation::json

namespace foundation::json::test::reads {

/// What a call gives, in a text: the object, or the exception.
template <class Call>
std::string outcome_of(const Call& call) {
    try {
        const Value value = from(call());
        return "value " + describe(value);
    } catch (const ParserException& error) {
        return "ParserException " + std::to_string(error.get_byte_position()) + ' ' + error.what();
    } catch (const ConversionError& error) {
        // Of a ReadError, what the ConversionError in it says.
        const std::string_view what = error.what();
        return "ConversionError " + std::string(what.substr(what.find("at "))) + " | " +
               error.pointer();
    }
}

/// The outcomes of one text for one type: by way of a Value, by read(), and by read_into() of an
/// object that has read another text.
struct Outcomes {
    std::string converted;
    std::string read;
    std::string read_again;
};

template <class T>
Outcomes outcomes_of(std::string_view text, const ReadOptions& options, std::string_view other) {
    Outcomes result;
    result.converted = outcome_of([&] { return to<T>(parse(text, options), options); });
    result.read = outcome_of([&] { return json::read<T>(text, options); });
    result.read_again = outcome_of([&] {
        T object{};
        try {
            read_into(object, other, options);
        } catch (const std::runtime_error&) { // another object then
        }
        read_into(object, text, options);
        return object;
    });
    return result;
}

/// A type with some texts of it.
struct Subject {
    const char* name;
    Outcomes (*outcomes)(std::string_view text, const ReadOptions& options, std::string_view other);
    std::vector<std::string> texts;
};

inline std::vector<Subject> subjects() {
    return {
        {"Node",
         &outcomes_of<Node>,
         {R"({"name":"a","leaves":[{"n/~":1,"level":"low","":null,"point":{"x":1.5,"y":-2}},)"
          R"({"n/~":255},{"":"text of more than 16 bytes","n/~":0,"level":"t\u00f6p"}],)"
          R"("flags":{"a":[true,null,false],"b":[]},"numbers":[1,-2,3],)"
          R"("pair":[{"n/~":3,"point":{"y":5}},{"n/~":4}],"both":[{"n/~":1,"point":{}},[1,{"a":null}]],)"
          R"("children":[{"name":"b\n\ud83d\ude00","children":[]},{"name":"c","x":[{},[],1e5]}]})",
          R"({"name":"","extra":{"a":{"b":[1,"\u0000",{"c":{}}],"b":2}},"other":-0.5e-3,"numbers":[]})"}},
        {"Numbers",
         &outcomes_of<Numbers>,
         {R"({"int8":-128,"int16":-32768,"int32":-2147483648,"int64":-9223372036854775808,)"
          R"("uint8":255,"uint16":65535,"uint32":4294967295,"uint64":18446744073709551615,)"
          R"("single":3.4028235e38,"number":1.7976931348623157e308,"extended":0.1})",
          R"({"int8":-0,"int16":1e2,"int32":12.0,"int64":9007199254740993,"uint8":0.5e1,"uint16":-0.0,)"
          R"("uint32":7,"uint64":123456789012345678,"single":16777217,"number":123456.789e-3,"extended":9007199254740993})"}},
        {"Containers",
         &outcomes_of<Containers>,
         {R"({"ints":[1,2,3],"doubles":[1.5,-2,1e300],"flags":[true,false],"strings":["a","b\tc",""],)"
          R"("lists":[[],[1,2],[18446744073709551615]],"deque":[null,1],"list":["x"],)"
          R"("unordered":{"a":1,"b":2.5},"three":[4,5,6],"pair":["p","low"],"nothing":[],)"
          R"("array":[1,[],{}],"object":{"a":{"b":1}},"value":null})",
          R"({"value":{"a":[1,2,{"b":"c"}]},"ints":[],"strings":["a string of more than sixteen bytes","\u00e9"]})"}},
        {"Odd",
         &outcomes_of<Odd>,
         {R"({"a":1,"b":2,"q\"\\:1,":3,"a name of more than sixteen bytes":4,)"
          R"("a name that is so long that it is never compared as a whole, but looked up":5,"\u00e9":true})",
          R"({"b":1,"a":2})"}},
        {"Wide",
         &outcomes_of<Wide>,
         {R"({"aax":1,"abx":2,"adx":null,"bnx":3,"brx":4,"bsx":5,"crx":6,"csx":7})",
          R"({"brx":1,"adx":2})"}},
        {"list of Leaf",
         &outcomes_of<std::vector<Leaf>>,
         {R"([{"n/~":1,"level":"low"},{"level":"high","n/~":2},{"n/~":3,"new":[1],"level":"low"},)"
          R"({"n/~":4,"new":[2],"level":"low"},{"n/~":5,"level":"low"}])",
          R"([{"n/~":1,"point":{"x":0}},{"n/~":2,"point":{"y":0}},{"n/~":1,"":""}])"}},
        {"map of map",
         &outcomes_of<std::map<std::string, std::map<std::string, int>>>,
         {R"({"a":{"b":1,"c":2},"d":{}})"}},
        {"optional",
         &outcomes_of<std::optional<std::vector<std::optional<Leaf>>>>,
         {R"([null,{"n/~":1},{"n/~":2,"":"x"}])", "null"}},
        {"int", &outcomes_of<int>, {"1", "-1"}},
        {"double", &outcomes_of<double>, {"1.25", "1e22"}},
        {"string", &outcomes_of<std::string>, {R"("abc")", R"("\u00e9")"}},
        {"bool", &outcomes_of<bool>, {"true", "false"}},
        {"Value", &outcomes_of<Value>, {R"([1,{"a":"b"},null])", "18446744073709551615"}},
    };
}

} // namespace foundation::json::test::reads

#endif
