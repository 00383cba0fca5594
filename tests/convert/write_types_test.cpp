// The text of objects: order, layout, what is left out, and errors.
#include "convert/conversion_error.hpp"
#include "convert/fleet.hpp"
#include "support/write_outcome.hpp"

#include <foundation/json/builders.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/write.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <limits>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace texts {

struct Everything {
    bool flag = true;
    signed char int8 = -128;
    unsigned char uint8 = 255;
    short int16 = -32768;
    unsigned short uint16 = 65535;
    int int32 = std::numeric_limits<int>::min();
    unsigned uint32 = std::numeric_limits<unsigned>::max();
    long long int64 = std::numeric_limits<long long>::min();
    unsigned long long uint64 = std::numeric_limits<unsigned long long>::max();
    float float32 = 0.1F;
    double float64 = 0.1;
    long double long_float = 0.25L;
    std::string text = "\"caf\xC3\xA9\"/\n";
};

struct Names {
    int plain = 1;
    int escaped = 2;
    int beyond = 3;
    int slash = 4;
    int empty = 5;
    int long_one = 6;
    int longest = 7;
    int of_32 = 8;
    int of_33 = 9;
};

struct Nested {
    std::optional<int> nothing;
    std::optional<int> by_default = 1;
    foundation::json::Value undefined;
    std::vector<Nested> inner;
};

struct Empty {};

/// Its names are sorted differently by their bytes and by their UTF-16 units.
struct Beyond {
    int smile = 1;
    int private_use = 2;
    int a = 3;
};

} // namespace texts

namespace foundation::json {

using texts::Everything;
template <>
inline constexpr auto members<Everything> =
    table(required("flag", &Everything::flag), required("int8", &Everything::int8),
          required("uint8", &Everything::uint8), required("int16", &Everything::int16),
          required("uint16", &Everything::uint16), required("int32", &Everything::int32),
          required("uint32", &Everything::uint32), required("int64", &Everything::int64),
          required("uint64", &Everything::uint64), required("float32", &Everything::float32),
          required("float64", &Everything::float64),
          required("long_float", &Everything::long_float), required("text", &Everything::text));

constexpr std::string_view name_of_200 = "123456789012345678901234567890123456789012345678901234567"
                                         "89012345678901234567890123456789012345"
                                         "678901234567890123456789012345678901234567890123456789012"
                                         "34567890123456789012345678901234567890"
                                         "1234567890";
constexpr std::string_view name_of_201 = "123456789012345678901234567890123456789012345678901234567"
                                         "89012345678901234567890123456789012345"
                                         "678901234567890123456789012345678901234567890123456789012"
                                         "34567890123456789012345678901234567890"
                                         "1234567890x";
static_assert(name_of_200.size() == 200 && name_of_201.size() == 201);

using texts::Names;
template <>
inline constexpr auto
    members<Names> = table(required("plain", &Names::plain), required("a\"b\n", &Names::escaped),
                           required("caf\xC3\xA9", &Names::beyond), required("a/b", &Names::slash),
                           required("", &Names::empty), required(name_of_200, &Names::long_one),
                           required(name_of_201, &Names::longest),
                           required("1234567890123456789012345678", &Names::of_32),
                           required("12345678901234567890123456789", &Names::of_33));

template <>
inline constexpr auto
    members<texts::Nested> = table(required("nothing", &texts::Nested::nothing),
                                   defaulted("by_default", &texts::Nested::by_default),
                                   defaulted("undefined", &texts::Nested::undefined),
                                   defaulted("inner", &texts::Nested::inner));

template <>
inline constexpr auto members<texts::Empty> = table();

template <>
inline constexpr auto
    members<texts::Beyond> = table(required("\xF0\x9F\x99\x82", &texts::Beyond::smile),
                                   required("\xEE\x80\x80", &texts::Beyond::private_use),
                                   required("a", &texts::Beyond::a));

namespace {

using test::conversion_error;
using test::write_error;
using Members = std::map<std::string, int>;

template <class T>
std::string onto_stream(const T& object, const WriteOptions& options = {}) {
    std::ostringstream stream;
    write(stream, object, options);
    return stream.str();
}

// ---- Values --------------------------------------------------------------------------------

TEST(WriteTypes, WritesEveryPlainType) {
    EXPECT_EQ(write(Everything()),
              R"({"flag":true,"int8":-128,"uint8":255,"int16":-32768,"uint16":65535,)"
              R"("int32":-2147483648,"uint32":4294967295,"int64":-9223372036854775808,)"
              R"("uint64":18446744073709551615,"float32":0.1,"float64":0.1,"long_float":0.25,)"
              "\"text\":\"\\\"caf\xC3\xA9\\\"/\\n\"}");
}

TEST(WriteTypes, WritesMembersInTheOrderOfTheTable) {
    const fleet::Cluster cluster{
        "main", {{"a", 80, {"x", "y"}, 0.5}}, {{"m", {fleet::Level::high, fleet::Level::low}}}};
    EXPECT_EQ(write(cluster), R"({"name":"main","servers":[{"host":"a","port":80,"tags":["x","y"],)"
                              R"("load":0.5}],"levels":{"m":["high","low"]}})");
    EXPECT_EQ(write(cluster, WriteOptions::indented(1)),
              "{\n \"name\": \"main\",\n \"servers\": [\n  {\n   \"host\": \"a\",\n   \"port\": "
              "80,\n   \"tags\": [\n    \"x\",\n    \"y\"\n   ],\n   \"load\": 0.5\n  }\n ],\n "
              "\"levels\": {\n  \"m\": [\n   \"high\",\n   \"low\"\n  ]\n }\n}");
}

TEST(WriteTypes, WritesAllContainers) {
    EXPECT_EQ(write(std::vector<int>{3, 1, 2}), "[3,1,2]");
    EXPECT_EQ(write(std::vector<int>()), "[]");
    EXPECT_EQ(write(std::vector<bool>{true, false}), "[true,false]");
    EXPECT_EQ(write(std::vector<std::string>{"a", "\n"}), R"(["a","\n"])");
    EXPECT_EQ(write(std::deque<double>{0.5, -0.0}), "[0.5,0]");
    EXPECT_EQ(write(std::list<std::set<int>>{{2, 1}, {}}), "[[1,2],[]]");
    EXPECT_EQ(write(std::array<bool, 2>{true, false}), "[true,false]");
    EXPECT_EQ(write(std::array<int, 0>()), "[]");
    EXPECT_EQ(write(std::pair{1, std::string("a")}), R"([1,"a"])");
    EXPECT_EQ(write(std::tuple<>()), "[]");
    EXPECT_EQ(write(std::optional<int>()), "null");
    EXPECT_EQ(write(std::optional(7)), "7");
    EXPECT_EQ(write(Members{{"b", 1}, {"a\n", 2}}), R"({"a\n":2,"b":1})");
    EXPECT_EQ(write(Members()), "{}");
    EXPECT_EQ(write(texts::Empty()), "{}");
    EXPECT_EQ(write(std::vector<texts::Empty>(2), WriteOptions::indented(2)), "[\n  {},\n  {}\n]");
    EXPECT_EQ(write(fleet::Level::high), "\"high\"");
    EXPECT_EQ(write(std::map<std::string, Value>{{"a", Undefined()}, {"b", 1}}), R"({"b":1})");
}

TEST(WriteTypes, WritesTheTypesThatAValueHoldsToo) {
    EXPECT_EQ(write(7), "7");
    EXPECT_EQ(write(7L), "7");
    EXPECT_EQ(write(true), "true");
    EXPECT_EQ(write(0.1F), "0.1");
    EXPECT_EQ(write("x"), "\"x\"");
    EXPECT_EQ(write(std::string("x")), "\"x\"");
    EXPECT_EQ(write(Null()), "null");
    EXPECT_EQ(write(Array{1, "a"}), R"([1,"a"])");
    EXPECT_EQ(write(Object{{"a", 1}}), R"({"a":1})");
    EXPECT_EQ(write((Property("a") = 1)), R"({"a":1})");
    EXPECT_EQ(onto_stream(7), "7");
}

TEST(WriteTypes, WritesAMapInItsOwnOrderAndAnUnorderedOneByNames) {
    EXPECT_EQ(write(std::map<std::string, int, std::greater<>>{{"a", 1}, {"b", 2}, {"c", 3}}),
              R"({"c":3,"b":2,"a":1})");
    std::unordered_map<std::string, int> unordered;
    std::string expected;
    for (int i = 10; i < 60; ++i) {
        unordered[std::to_string(i)] = i;
        expected += (i == 10 ? "{\"" : ",\"") + std::to_string(i) + "\":" + std::to_string(i);
    }
    EXPECT_EQ(write(unordered), expected + "}");
}

// ---- Names ---------------------------------------------------------------------------------

TEST(WriteTypes, WritesNamesByTheOptions) {
    const std::string begin = "{\"plain\":1,\"a\\\"b\\n\":2,";
    const std::string end = "\"\":5,\"" + std::string(name_of_200) + "\":6,\"" +
                            std::string(name_of_201) +
                            "\":7,\"1234567890123456789012345678\":8,"
                            "\"12345678901234567890123456789\":9}";
    EXPECT_EQ(write(Names()), begin + "\"caf\xC3\xA9\":3,\"a/b\":4," + end);
    WriteOptions options;
    options.ascii = true;
    options.escape_slash = true;
    EXPECT_EQ(write(Names(), options), begin + "\"caf\\u00e9\":3,\"a\\/b\":4," + end);
}

TEST(WriteTypes, SortsNamesByTheirUnitsIfAsked) {
    EXPECT_EQ(write(texts::Beyond()), "{\"\xF0\x9F\x99\x82\":1,\"\xEE\x80\x80\":2,\"a\":3}");
    EXPECT_EQ(write(texts::Beyond(), WriteOptions::canonical()),
              "{\"a\":3,\"\xF0\x9F\x99\x82\":1,\"\xEE\x80\x80\":2}");
    EXPECT_EQ(write(Members{{"\xF0\x9F\x99\x82", 1}, {"\xEE\x80\x80", 2}, {"a", 3}},
                    WriteOptions::canonical()),
              "{\"a\":3,\"\xF0\x9F\x99\x82\":1,\"\xEE\x80\x80\":2}");
    EXPECT_EQ(write(fleet::Server{"h", 1, {}, 2.0}, WriteOptions::canonical()),
              R"({"host":"h","load":2,"port":1,"tags":[]})");
}

// ---- What is left out ----------------------------------------------------------------------

TEST(WriteTypes, LeavesOutWhatFromLeavesOut) {
    texts::Nested nested;
    EXPECT_EQ(write(nested), R"({"nothing":null,"by_default":1,"inner":[]})");
    nested.by_default.reset();
    nested.undefined = 2;
    nested.inner.resize(2);
    EXPECT_EQ(write(nested), R"({"nothing":null,"by_default":null,"undefined":2,"inner":[)"
                             R"({"nothing":null,"by_default":1,"inner":[]},)"
                             R"({"nothing":null,"by_default":1,"inner":[]}]})");
    EXPECT_EQ(write(std::vector<fleet::Server>(1)), R"([{"host":"","port":8080,"tags":[]}])");
}

// ---- Long texts ----------------------------------------------------------------------------

TEST(WriteTypes, WritesTextsOfAnyLength) {
    fleet::Server server{std::string(100, 'h'), 1, {}, std::nullopt};
    for (const std::size_t size : {255U, 256U, 257U, 1000U, 4096U, 20000U}) {
        server.tags.push_back(std::string(size, 't') + "\n");
        server.tags.push_back(std::string(size, 'u'));
    }
    const std::vector<fleet::Server> servers(50, server);
    const WriteOptions sorted = WriteOptions::canonical();
    EXPECT_EQ(write(servers, sorted), write(from(servers), sorted));
    EXPECT_EQ(onto_stream(servers, sorted), write(from(servers), sorted));
    EXPECT_EQ(onto_stream(servers), write(servers));
}

// ---- Piece by piece ------------------------------------------------------------------------

TEST(WriteTypes, AreTakenByAWriter) {
    std::string text;
    Writer writer(text, WriteOptions::indented(1));
    writer.begin_array().value(fleet::Server{"a", 1, {}, std::nullopt});
    writer.begin_object().name("levels").value(std::vector{fleet::Level::low}).end().end();
    EXPECT_EQ(text, "[\n {\n  \"host\": \"a\",\n  \"port\": 1,\n  \"tags\": []\n },\n {\n  "
                    "\"levels\": [\n   \"low\"\n  ]\n }\n]");
}

TEST(WriteTypes, FailInAWriterAtTheirLocationWithinTheText) {
    std::string text;
    Writer writer(text);
    writer.begin_array().value(1).begin_object().name("a/b");
    EXPECT_EQ(write_error([&] {
                  writer.value(std::vector<double>{0, std::numeric_limits<double>::infinity()});
              }),
              "at /1/a~1b/1: Infinity is not a JSON number: the option not_finite allows it");
    EXPECT_THROW(writer.value(1), std::logic_error);
    Writer second(text);
    second.begin_array();
    EXPECT_EQ(conversion_error([&] { second.value(static_cast<fleet::Level>(9)); }),
              "at /0: the enumerator 9 has no name; named are \"low\", \"middle\", \"high\", "
              "\"top\"");
}

// ---- Errors --------------------------------------------------------------------------------

TEST(WriteTypes, TellWhatFromAndWriteTell) {
    const auto bad = static_cast<fleet::Level>(9);
    const std::string no_name = "the enumerator 9 has no name; named are \"low\", \"middle\", "
                                "\"high\", \"top\"";
    const auto text_of = [](const auto& object) {
        return [&object] { static_cast<void>(write(object)); };
    };
    EXPECT_EQ(conversion_error(text_of(bad)), "at the root: " + no_name);
    fleet::Cluster cluster{"caf\xE9", {{"a", 1, {}, 0.5}}, {{"m~", {fleet::Level::low, bad}}}};
    // What from() finds comes first, wherever it is.
    EXPECT_EQ(conversion_error(text_of(cluster)), "at /levels/m~0/1: " + no_name);
    cluster.levels.clear();
    EXPECT_EQ(write_error(text_of(cluster)),
              "at /name: the string is not UTF-8: found byte 0xE9 after \"caf\": the option "
              "bad_utf8 allows it");
    cluster.name = "a";
    cluster.levels["\xFF"];
    EXPECT_EQ(
        write_error(text_of(cluster)),
        "at /levels: a member name is not UTF-8: found byte 0xFF at its beginning: the option "
        "bad_utf8 allows it");
    cluster.levels.clear();
    cluster.servers[0].load = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(write_error(text_of(cluster)),
              "at /servers/0/load: NaN is not a JSON number: the option not_finite allows it");
    const std::map<std::string, std::vector<Value>> values{
        {"a", {1, Object{{"b", std::numeric_limits<float>::infinity()}}}}};
    EXPECT_EQ(write_error(text_of(values)),
              "at /a/1/b: Infinity is not a JSON number: the option not_finite allows it");
    const std::vector<unsigned long long> big{9007199254740993ULL};
    EXPECT_EQ(write_error([&] { static_cast<void>(write(big, WriteOptions::canonical())); }),
              "at /0: no double equals 9007199254740993: the option big_integers allows it");
}

TEST(WriteTypes, TellTheErrorThatTheValueWouldTellFirst) {
    const double infinity = std::numeric_limits<double>::infinity();
    const std::tuple objects(
        std::map<std::string, double, std::greater<>>{
            {"a", infinity}, {"b", infinity}, {"c", infinity}},
        std::unordered_map<std::string, double>{{"c", infinity}, {"b", infinity}, {"a", infinity}});
    EXPECT_EQ(write_error([&] { static_cast<void>(write(std::get<0>(objects))); }),
              "at /a: Infinity is not a JSON number: the option not_finite allows it");
    EXPECT_EQ(write_error([&] { static_cast<void>(write(std::get<1>(objects))); }),
              "at /a: Infinity is not a JSON number: the option not_finite allows it");
    // Members by the bytes of their names, which is not the order of the table.
    const fleet::Cluster cluster{"a", {{"a", 1, {}, infinity}}, {{"\xFF", {}}}};
    EXPECT_EQ(
        write_error([&] { static_cast<void>(write(cluster)); }),
        "at /levels: a member name is not UTF-8: found byte 0xFF at its beginning: the option "
        "bad_utf8 allows it");
    // What from() tells comes before what write() tells.
    const std::pair both(infinity, static_cast<fleet::Level>(9));
    EXPECT_EQ(conversion_error([&] { static_cast<void>(write(both)); }),
              "at /1: the enumerator 9 has no name; named are \"low\", \"middle\", \"high\", "
              "\"top\"");
}

} // namespace
} // namespace foundation::json
