/// @file
/// Types of every sort to read documents into, texts of them, and the comparison of read() with
/// to() of a parsed value.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_READ_TYPES_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_READ_TYPES_HPP

#include "support/describe.hpp"
#include "support/represented.hpp"

#include <foundation/json/chrono.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/read.hpp>
#include <foundation/json/write.hpp>

#include <algorithm>
#include <array>
#include <chrono>
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
#include <unordered_set>
#include <utility>
#include <variant>
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

/// Containers that may have something twice, or have no order.
struct Sets {
    std::set<std::string> strings{"default"};
    std::multiset<int> numbers{1, 1};
    std::set<represented::Code> codes;
    std::unordered_set<std::string> words{"a", "b"};
    std::unordered_multiset<int> unordered;
    std::multimap<std::string, int> many{{"a", 1}};
    std::unordered_multimap<std::string, std::string> unordered_many;
};

struct Times {
    std::chrono::system_clock::time_point at;
    std::chrono::time_point<std::chrono::system_clock, std::chrono::seconds> rounded;
    std::chrono::milliseconds took{5};
    std::optional<std::chrono::duration<double>> share;
    std::vector<std::chrono::hours> hours;
};

/// Variants in which a text may be wrong at several levels.
struct Choices {
    std::variant<int, std::string, std::vector<int>> number = "default";
    std::variant<std::monostate, Leaf, std::map<std::string, Level>> leaf;
    std::vector<represented::Shape> shapes{represented::Square{2, "red"}};
    std::optional<represented::Shape> shape;
};

/// What is pointed to, and what has a representation.
struct Pointers {
    std::unique_ptr<Leaf> unique;
    std::shared_ptr<std::vector<int>> shared;
    std::unique_ptr<represented::Code> code;
    std::vector<represented::Code> codes;
    std::map<std::string, represented::Size> sizes;
    represented::Size size{1, 2};
    represented::Any any;
    std::filesystem::path path = "default";
    std::optional<represented::Checked> checked;
};

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

template <>
inline constexpr auto members<test::reads::Sets> = table(
    defaulted("strings", &test::reads::Sets::strings),
    defaulted("numbers", &test::reads::Sets::numbers),
    defaulted("codes", &test::reads::Sets::codes), defaulted("words", &test::reads::Sets::words),
    defaulted("unordered", &test::reads::Sets::unordered),
    defaulted("many", &test::reads::Sets::many),
    defaulted("unordered_many", &test::reads::Sets::unordered_many));

template <>
inline constexpr auto members<test::reads::Times> = table(
    required("at", &test::reads::Times::at), defaulted("rounded", &test::reads::Times::rounded),
    defaulted("took", &test::reads::Times::took,
              [](const std::chrono::milliseconds& took) {
                  return took.count() < 0 ? std::string("took no time") : std::string();
              }),
    defaulted("share", &test::reads::Times::share), defaulted("hours", &test::reads::Times::hours));

template <>
inline constexpr auto
    members<test::reads::Choices> = table(required("number", &test::reads::Choices::number),
                                          defaulted("leaf", &test::reads::Choices::leaf),
                                          defaulted("shapes", &test::reads::Choices::shapes),
                                          defaulted("shape", &test::reads::Choices::shape));

template <>
inline constexpr auto
    members<test::reads::Pointers> = table(defaulted("unique", &test::reads::Pointers::unique),
                                           defaulted("shared", &test::reads::Pointers::shared),
                                           defaulted("code", &test::reads::Pointers::code),
                                           defaulted("codes", &test::reads::Pointers::codes),
                                           defaulted("sizes", &test::reads::Pointers::sizes),
                                           required("size", &test::reads::Pointers::size),
                                           defaulted("any", &test::reads::Pointers::any),
                                           defaulted("path", &test::reads::Pointers::path),
                                           defaulted("checked", &test::reads::Pointers::checked));

} // namespace foundation::json

namespace foundation::json::test::reads {

/// A value with all arrays sorted, as what has no order of its own.
inline Value sorted(const Value& value) {
    Value result = value;
    if (auto* const elements = get_if<Array>(&result)) {
        std::sort(elements->begin(), elements->end(), [](const Value& left, const Value& right) {
            return describe(left) < describe(right);
        });
    } else if (auto* const object = get_if<Object>(&result)) {
        for (auto& member : *object) {
            member.second = sorted(member.second);
        }
    }
    return result;
}

/// The text of an object, and what differs if it is made of a Value.
template <class T>
std::string text_of(const T& object) {
    const Value value = from(object);
    WriteOptions options;
    options.member_order = WriteOptions::MemberOrder::utf16;
    options.not_finite = WriteOptions::NotFinite::string; // a float of 1e300
    const std::string text = write(object, options);
    const std::string text_of_value = write(value, options);
    const std::string different = text == text_of_value ? "" : " rather than " + text_of_value;
    if constexpr (std::is_same_v<T, Sets>) {
        return describe(sorted(value)) + (different.empty() ? "" : text + different);
    } else {
        return describe(value) + (different.empty() ? "" : text + different);
    }
}

/// What a call gives, in a text: the object, or the exception.
template <class Call>
std::string outcome_of(const Call& call) {
    try {
        return "value " + text_of(call());
    } catch (const ParserException& error) {
        return "ParserException " + std::to_string(error.get_byte_position()) + ' ' + error.what();
    } catch (const ConversionError& error) {
        // Those of read() come in the order of the document.
        std::vector<std::string> errors;
        for (const ConversionProblem& problem : error.errors()) {
            errors.push_back("at " + problem.pointer + ": " + problem.message);
        }
        std::sort(errors.begin(), errors.end());
        std::string result = error.is_cut_off() ? "ConversionError, cut off" : "ConversionError";
        for (const std::string& each : errors) {
            result += '\n' + each;
        }
        return result;
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
        {"Sets",
         &outcomes_of<Sets>,
         {R"({"strings":["a","b",""],"numbers":[3,1,3],"codes":["abcd","efgh"],)"
          R"("words":["x","a string of more than sixteen bytes"],"unordered":[1,1,2],)"
          R"("many":{"a":[1,2,1],"b":[]},"unordered_many":{"k":["v","w"],"l":["v"]}})",
          R"({"strings":[],"many":{},"words":["a","b","c","d","e","f","g","h"]})"}},
        {"Times",
         &outcomes_of<Times>,
         {R"({"at":"2026-11-22T10:40:00.250+02:00","rounded":"1969-12-31T23:59:59.5Z","took":1500,)"
          R"("share":0.25,"hours":[1,-2]})",
          R"({"at":"2016-12-31T23:59:60Z","took":-1,"share":null})"}},
        {"Choices",
         &outcomes_of<Choices>,
         {R"({"number":[1,2],"leaf":{"n/~":1,"":"a"},)"
          R"("shapes":[{"type":"circle","radius":1.5},{"side":2,"type":"square","colour":null}],)"
          R"("shape":{"type":"square","side":1,"colour":"blue"}})",
          R"({"number":7,"leaf":{"a":"low"},"shape":null})",
          R"({"number":"seven","leaf":null,"shapes":[]})"}},
        {"Pointers",
         &outcomes_of<Pointers>,
         {R"({"unique":{"n/~":1,"point":{"x":2}},"shared":[1,2],"code":"abcd","codes":["efgh"],)"
          R"("sizes":{"a":{"width":1,"height":2}},"size":{"width":100,"height":0},)"
          R"("any":[1,{"a":null}],"path":"a/b","checked":{"port":80,"share":0.5,"even":"ab",)"
          R"("big":18446744073709551615}})",
          R"({"size":{"height":1,"width":2},"unique":null,"shared":null,"code":null,"any":true,)"
          R"("checked":{"port":65535,"even":""}})"}},
        {"Tree",
         &outcomes_of<represented::Tree>,
         {R"({"name":"a","left":{"name":"b","right":{"name":"c","left":null}},"right":null})"}},
        {"Checked",
         &outcomes_of<represented::Checked>,
         {R"({"port":1,"share":1,"even":"","big":0})"}},
        {"list of Size",
         &outcomes_of<std::vector<represented::Size>>,
         {R"([{"width":1,"height":2},{"height":4,"width":3}])"}},
        {"Shape", &outcomes_of<represented::Shape>, {R"({"type":"circle","radius":2})"}},
        {"int", &outcomes_of<int>, {"1", "-1"}},
        {"double", &outcomes_of<double>, {"1.25", "1e22"}},
        {"string", &outcomes_of<std::string>, {R"("abc")", R"("\u00e9")"}},
        {"bool", &outcomes_of<bool>, {"true", "false"}},
        {"Value", &outcomes_of<Value>, {R"([1,{"a":"b"},null])", "18446744073709551615"}},
    };
}

} // namespace foundation::json::test::reads

#endif
