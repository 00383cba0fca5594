// All errors of a conversion at once: which are found, how many at most, and what is left alone.
#include "convert/conversion_error.hpp"
#include "support/json_reader.hpp"

#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>

#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

namespace foundation::json {
namespace several_errors {

enum class Level { low, high };

struct Point {
    int x = 0;
    int y = 0;
    friend bool operator<(const Point& left, const Point& right) { return left.x < right.x; }
};

struct Part {
    int number = 0;
    std::string name;
    Level level = Level::low;
    std::vector<int> sizes;
};

inline std::string check_name(const std::string& name) {
    return name.empty() ? "the name is empty" : "";
}

struct Whole {
    Part first;
    std::vector<Part> parts;
    std::optional<Part> last;
};

/// Has no default constructor, and counts how many were made.
class Code {
public:
    explicit Code(std::string text) : text_(std::move(text)) {
        ++made;
        if (text_.size() != 2) {
            throw std::invalid_argument("a code has 2 letters");
        }
    }
    const std::string& text() const { return text_; }
    friend bool operator<(const Code& left, const Code& right) { return left.text_ < right.text_; }

    static int made;

private:
    std::string text_;
};
int Code::made = 0;

/// Is represented by two points, and must not be made of bad ones.
struct Line {
    Point from;
    Point to;
};
struct LineInJson {
    Point from;
    Point to;
};

struct Checked {
    Point point;
    int number = 0;
};

struct Circle {
    int radius = 0;
};
struct Square {
    int side = 0;
    std::vector<int> marks;
};
using Shape = std::variant<Circle, Square>;
using PointOrNumber = std::variant<Point, int>;

struct LessInLowerCase {
    bool operator()(const std::string& left, const std::string& right) const {
        return lower(left) < lower(right);
    }
    static std::string lower(std::string text) {
        for (char& c : text) {
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
        return text;
    }
};

/// Converts a Value by itself, with options of its own.
struct Nested {
    Point point;
};

struct Thrower {
    Thrower() { throw std::logic_error("no Thrower"); }
};

} // namespace several_errors

using namespace several_errors;

template <>
inline constexpr auto enumerators<Level> = table<Level>({{Level::low, "low"},
                                                         {Level::high, "high"}});
template <>
inline constexpr auto members<Point> = table(required("x", &Point::x), required("y", &Point::y));
template <>
inline constexpr auto members<Part> = table(required("number", &Part::number, in_range(1, 9)),
                                            defaulted("name", &Part::name, &check_name),
                                            defaulted("level", &Part::level),
                                            defaulted("sizes", &Part::sizes));
template <>
inline constexpr auto members<Whole> = table(required("first", &Whole::first),
                                             defaulted("parts", &Whole::parts),
                                             defaulted("last", &Whole::last));
template <>
inline constexpr auto members<LineInJson> = table(required("from", &LineInJson::from),
                                                  required("to", &LineInJson::to));
template <>
inline constexpr auto
    members<Checked> = table(required("point", &Checked::point,
                                      [](const Point& point) {
                                          return point.x == point.y
                                                     ? std::string()
                                                     : "the point is " + std::to_string(point.x) +
                                                           " " + std::to_string(point.y);
                                      }),
                             required("number", &Checked::number));
template <>
inline constexpr auto members<Circle> = table(required("radius", &Circle::radius));
template <>
inline constexpr auto members<Square> = table(required("side", &Square::side),
                                              required("marks", &Square::marks));
template <>
inline constexpr auto alternatives<Shape> = tagged("type", {"circle", "square"});
template <>
inline constexpr auto members<Thrower> = table();

template <>
struct representation<Code> {
    static Code from(const std::string& text) { return Code(text); }
};
template <>
struct representation<Line> {
    static Line from(const LineInJson& line) {
        if (line.from.x == line.to.x) {
            throw std::invalid_argument("the line is upright");
        }
        return {line.from, line.to};
    }
};
template <>
struct representation<Nested> {
    static Nested from(const Value& value) {
        ConvertOptions options;
        options.max_errors = 2;
        return {to<Point>(value, options)};
    }
};

namespace {

using test::conversion_error;

template <class T>
std::string errors_of(const char* text, const ConvertOptions& options) {
    return conversion_error([&] { static_cast<void>(to<T>(test::read_json(text), options)); });
}

struct Case {
    const char* text;
    std::string (*errors)(const char* text, const ConvertOptions& options);
    const char* expected;
};

TEST(SeveralErrors, AreFoundInValuesOfEveryType) {
    const Case cases[] = {
        {R"({"number":"1","name":2,"level":"medium","sizes":[1,"2",3,null]})", &errors_of<Part>,
         "at /number: \"1\" is a string, not a number\n"
         "at /name: 2 is a number, not a string\n"
         "at /level: the enumerator \"medium\" is unknown; known are \"low\", \"high\"\n"
         "at /sizes/1: \"2\" is a string, not a number\n"
         "at /sizes/3: null is not a number"},
        {R"({"number":10,"name":"","level":1,"sizes":{}})", &errors_of<Part>,
         "at /number: 10 is not within 1 to 9\n"
         "at /name: the name is empty\n"
         "at /level: 1 is a number, not a string\n"
         "at /sizes: {} is an object, not an array"},
        // Unknown members and missing ones, then what the members hold.
        {R"({"firs":1,"parts":[{"nmae":"a","number":0},7,{"number":1,"u":1,"v":1}],"last":{}})",
         &errors_of<Whole>,
         "at /firs: the member \"firs\" is unknown; known are \"first\", \"parts\", \"last\"\n"
         "at the root: the required member \"first\" is missing\n"
         "at /parts/0/nmae: the member \"nmae\" is unknown; known are \"number\", \"name\", "
         "\"level\", \"sizes\"\n"
         "at /parts/0/number: 0 is not within 1 to 9\n"
         "at /parts/1: 7 is a number, not an object\n"
         "at /parts/2/u: the member \"u\" is unknown; known are \"number\", \"name\", \"level\", "
         "\"sizes\"\n"
         "at /parts/2/v: the member \"v\" is unknown; known are \"number\", \"name\", \"level\", "
         "\"sizes\"\n"
         "at /last: the required member \"number\" is missing"},
        {"{}", &errors_of<LineInJson>,
         "at the root: the required member \"from\" is missing\n"
         "at the root: the required member \"to\" is missing"},
        // Containers.
        {R"([1,"a",1,2.5,2,2])", &errors_of<std::set<int>>,
         "at /1: \"a\" is a string, not a number\n"
         "at /2: the set has this element already\n"
         "at /3: 2.5 is not a whole number\n"
         "at /5: the set has this element already"},
        // Two that are read in part are not the same.
        {R"([{"x":0,"y":"a"},{"x":0,"y":"b"},{"x":0,"y":1}])", &errors_of<std::set<Point>>,
         "at /0/y: \"a\" is a string, not a number\n"
         "at /1/y: \"b\" is a string, not a number"},
        {R"({"a":[1,"2"],"b":3,"c":[4.5]})", &errors_of<std::map<std::string, std::deque<int>>>,
         "at /a/1: \"2\" is a string, not a number\n"
         "at /b: 3 is a number, not an array\n"
         "at /c/0: 4.5 is not a whole number"},
        {R"({"A":1,"a":2,"b":"c"})", &errors_of<std::map<std::string, int, LessInLowerCase>>,
         "at /a: the map has this name already\n"
         "at /b: \"c\" is a string, not a number"},
        {R"({"A":"xy","a":"xy","b":1})", &errors_of<std::map<std::string, Code, LessInLowerCase>>,
         "at /a: the map has this name already\n"
         "at /b: 1 is a number, not a string"},
        {R"({"a":[1,"2"],"b":3})", &errors_of<std::multimap<std::string, int>>,
         "at /a/1: \"2\" is a string, not a number\n"
         "at /b: 3 is a number, not an array"},
        {"[true,1,false,null]", &errors_of<std::vector<bool>>,
         "at /1: 1 is a number, not a boolean\n"
         "at /3: null is not a boolean"},
        {R"([[1,2],["a","b"],[1],[1,2,3]])", &errors_of<std::vector<std::array<int, 2>>>,
         "at /1/0: \"a\" is a string, not a number\n"
         "at /1/1: \"b\" is a string, not a number\n"
         "at /2: the array has length 1, not 2\n"
         "at /3: the array has length 3, not 2"},
        {R"(["a",2,{"x":"b","y":"c"}])", &errors_of<std::tuple<int, std::string, Point>>,
         "at /0: \"a\" is a string, not a number\n"
         "at /1: 2 is a number, not a string\n"
         "at /2/x: \"b\" is a string, not a number\n"
         "at /2/y: \"c\" is a string, not a number"},
        {R"([null,{"x":"a","y":"b"},1])", &errors_of<std::vector<std::unique_ptr<Point>>>,
         "at /1/x: \"a\" is a string, not a number\n"
         "at /1/y: \"b\" is a string, not a number\n"
         "at /2: 1 is a number, not an object"},
        // Types with a representation.
        {R"(["ab","c",1,"de","f"])", &errors_of<std::vector<Code>>,
         "at /1: a code has 2 letters\n"
         "at /2: 1 is a number, not a string\n"
         "at /4: a code has 2 letters"},
        {R"(["ab","c","ab",1])", &errors_of<std::set<Code>>,
         "at /1: a code has 2 letters\n"
         "at /2: the set has this element already\n"
         "at /3: 1 is a number, not a string"},
        {R"([{"from":{"x":"1","y":2},"to":{"x":0}},{"from":{"x":1,"y":1},"to":{"x":1,"y":2}}])",
         &errors_of<std::vector<Line>>,
         "at /0/from/x: \"1\" is a string, not a number\n"
         "at /0/to: the required member \"y\" is missing\n"
         "at /1: the line is upright"},
        {R"({"from":{"x":"1","y":"2"},"to":{"x":0,"y":"3"}})", &errors_of<Line>,
         "at /from/x: \"1\" is a string, not a number\n"
         "at /from/y: \"2\" is a string, not a number\n"
         "at /to/y: \"3\" is a string, not a number"},
        {R"([{"x":"1","y":"2"},{"x":"3","y":4}])", &errors_of<std::vector<Nested>>,
         "at /0/x: \"1\" is a string, not a number\n"
         "at /0/y: \"2\" is a string, not a number\n"
         "at /1/x: \"3\" is a string, not a number\n"
         "the conversion ended after 3 errors: there may be more"},
        // A check sees nothing that is not complete.
        {R"({"point":{"x":1,"y":"2"},"number":"3"})", &errors_of<Checked>,
         "at /point/y: \"2\" is a string, not a number\n"
         "at /number: \"3\" is a string, not a number"},
        {R"({"point":{"x":1,"y":2},"number":"3"})", &errors_of<Checked>,
         "at /point: the point is 1 2\n"
         "at /number: \"3\" is a string, not a number"},
        // Variants.
        {R"([1,{"x":1,"y":"a"},"b"])", &errors_of<std::vector<PointOrNumber>>,
         "at /1: no alternative fits: at /1/y: \"a\" is a string, not a number; {\"x\":1,\"y\":"
         "\"a\"} is an object, not a number\n"
         "at /2: no alternative fits: \"b\" is a string, not an object; \"b\" is a string, not a "
         "number"},
        {R"([{"type":"square","side":"a","marks":[1,"b"],"x":1},{"type":"cube"},{"side":1},)"
         R"({"type":"circle"}])",
         &errors_of<std::vector<Shape>>,
         "at /0/x: the member \"x\" is unknown; known are \"side\", \"marks\"\n"
         "at /0/side: \"a\" is a string, not a number\n"
         "at /0/marks/1: \"b\" is a string, not a number\n"
         "at /1/type: the enumerator \"cube\" is unknown; known are \"circle\", \"square\"\n"
         "at /2: the required member \"type\" is missing\n"
         "at /3: the required member \"radius\" is missing"},
        // At the root.
        {R"("a")", &errors_of<int>, "at the root: \"a\" is a string, not a number"},
        {"[1]", &errors_of<std::array<int, 2>>, "at the root: the array has length 1, not 2"},
        {"null", &errors_of<PointOrNumber>,
         "at the root: no alternative fits: null is not an object; null is not a number"},
    };
    ConvertOptions options;
    options.unknown_members = ConvertOptions::UnknownMembers::error;
    options.max_errors = 100;
    for (const Case& each : cases) {
        const std::string expected = each.expected;
        EXPECT_EQ(each.errors(each.text, options), expected) << each.text;
        // The first of them is what is found by default, and with 0.
        const std::string first = expected.substr(0, expected.find('\n'));
        for (const std::size_t most : {std::size_t{0}, std::size_t{1}}) {
            ConvertOptions single = options;
            single.max_errors = most;
            EXPECT_EQ(each.errors(each.text, single).substr(0, first.size()), first) << each.text;
        }
    }
}

TEST(SeveralErrors, AreOneByDefault) {
    EXPECT_EQ(errors_of<Point>(R"({"x":"a","y":"b"})", {}),
              "at /x: \"a\" is a string, not a number");
    EXPECT_EQ(errors_of<std::set<int>>("[1,1,2,2]", {}), "at /1: the set has this element already");
}

TEST(SeveralErrors, AreAtMostAsManyAsTheOptionSays) {
    const char* const text = R"(["a",1,"b",2,"c"])";
    const std::string a = "at /0: \"a\" is a string, not a number";
    const std::string b = "\nat /2: \"b\" is a string, not a number";
    const std::string c = "\nat /4: \"c\" is a string, not a number";
    const std::pair<std::size_t, std::string> cases[] = {
        {0, a},
        {1, a},
        {2, a + b + "\nthe conversion ended after 2 errors: there may be more"},
        {3, a + b + c + "\nthe conversion ended after 3 errors: there may be more"},
        {4, a + b + c},
    };
    for (const auto& [most, expected] : cases) {
        ConvertOptions options;
        options.max_errors = most;
        EXPECT_EQ(errors_of<std::vector<int>>(text, options), expected);
    }
}

TEST(SeveralErrors, EndTheConversionWhenTheyAreSoMany) {
    ConvertOptions options;
    options.max_errors = 100;
    Code::made = 0;
    try {
        static_cast<void>(to<std::vector<Code>>(Value(Array(1000000, Value("abc"))), options));
        FAIL() << "nothing was thrown";
    } catch (const ConversionError& error) {
        EXPECT_EQ(error.errors().size(), 100U);
        EXPECT_EQ(error.errors().back().pointer, "/99");
        EXPECT_TRUE(error.is_cut_off());
    }
    EXPECT_EQ(Code::made, 100);
}

TEST(SeveralErrors, TakeLimitedMemory) {
    ConvertOptions options;
    options.max_errors = 1000;
    const Value value = Object{{std::string(1 << 20, 'n'), Array(1000, Value("a"))}};
    try {
        static_cast<void>(to<std::map<std::string, std::vector<int>>>(value, options));
        FAIL() << "nothing was thrown";
    } catch (const ConversionError& error) {
        EXPECT_EQ(error.errors().size(), 4U);
        EXPECT_TRUE(error.is_cut_off());
    }
}

TEST(SeveralErrors, HaveAListOfPointersAndMessages) {
    ConvertOptions options;
    options.max_errors = 10;
    const Value root = Object{{"a/b", Array{Object{{"x", 1}}, Object{{"x", "1"}, {"y", 2}}}}};
    try {
        static_cast<void>(to<std::vector<Point>>(root, "/a~1b", options));
        FAIL() << "nothing was thrown";
    } catch (const ConversionError& error) {
        const ConversionError copy = error;
        ASSERT_EQ(copy.errors().size(), 2U);
        EXPECT_EQ(copy.pointer(), "/a~1b/0");
        EXPECT_EQ(copy.errors()[0].pointer, "/a~1b/0");
        EXPECT_EQ(copy.errors()[0].message, "the required member \"y\" is missing");
        EXPECT_EQ(copy.errors()[1].pointer, "/a~1b/1/x");
        EXPECT_EQ(copy.errors()[1].message, "\"1\" is a string, not a number");
        EXPECT_EQ(copy.errors()[1].line, 0U);
        EXPECT_EQ(copy.errors()[1].column, 0U);
        EXPECT_FALSE(copy.is_cut_off());
        EXPECT_STREQ(copy.what(), "at /a~1b/0: the required member \"y\" is missing\n"
                                  "at /a~1b/1/x: \"1\" is a string, not a number");
    }
}

TEST(SeveralErrors, DoNotKeepOtherExceptionsBack) {
    ConvertOptions options;
    options.max_errors = 10;
    const Value value = Array{"a", Array{Object()}};
    using Throwers = std::tuple<int, std::vector<Thrower>>;
    EXPECT_THROW(static_cast<void>(to<Throwers>(value, options)), std::logic_error);
}

TEST(SeveralErrors, LeaveConversionsWithoutErrorsAlone) {
    ConvertOptions options;
    options.max_errors = 10;
    // The first alternative has two errors, which do not count.
    const auto numbers =
        to<std::vector<PointOrNumber>>(test::read_json("[1,{\"x\":2,\"y\":3}]"), options);
    EXPECT_EQ(std::get<int>(numbers[0]), 1);
    EXPECT_EQ(std::get<Point>(numbers[1]).y, 3);
}

TEST(ConversionError, CanBeThrownWithSeveralErrors) {
    ConversionProblem first;
    first.pointer = "/a\"";
    first.message = "is bad";
    ConversionProblem second;
    second.message = "is worse";
    const ConversionError error({first, second}, true);
    EXPECT_STREQ(error.what(), "at /a\\\": is bad\nat the root: is worse\n"
                               "the conversion ended after 2 errors: there may be more");
    EXPECT_EQ(error.pointer(), "/a\"");
    EXPECT_TRUE(error.is_cut_off());
    EXPECT_FALSE(ConversionError({first, second}).is_cut_off());
    EXPECT_FALSE(ConversionError("/a", "b").is_cut_off());
    EXPECT_EQ(ConversionError("/a", "b").errors().size(), 1U);
    EXPECT_THROW(ConversionError(std::vector<ConversionProblem>()), std::invalid_argument);
}

} // namespace
} // namespace foundation::json
