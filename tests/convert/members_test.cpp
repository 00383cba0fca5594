// Structs by their tables of members: required, defaulted, unknown and inherited ones.
#include "convert/fleet.hpp"
#include "support/describe.hpp"

#include <foundation/json/convert.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

using namespace std::string_view_literals;

namespace shapes {

struct Base {
    int id = 0;
    std::string label = "none";
};

struct Derived : Base {
    bool on = false;
};

template <class T>
struct Range {
    T low{};
    T high{};
};

/// A class with private members, which only its table names.
class Account {
public:
    Account() = default;
    Account(std::string owner, long balance) : owner_(std::move(owner)), balance_(balance) {}
    const std::string& owner() const { return owner_; }
    long balance() const { return balance_; }

private:
    friend struct AccountTable;

    std::string owner_;
    long balance_ = 0;
};

struct AccountTable {
    static constexpr auto members =
        std::tuple(foundation::json::required("owner", &Account::owner_),
                   foundation::json::defaulted("balance", &Account::balance_));
};

struct Nothing {};

struct Odd {
    int empty = 0;
    int slash = 0;
    int tilde = 0;
    int quote = 0;
    int zero = 0;
    int line = 0;
};

/// Members that hold something by default.
struct Defaults {
    std::vector<fleet::Server> servers{{"old", 1, {}, {}}};
    fleet::Server primary{"localhost", 80, {"default"}, {}};
    std::array<fleet::Server, 1> backup{{{"backup", 81, {}, {}}}};
    std::pair<int, fleet::Server> ranked{5, {"ranked", 82, {}, {}}};
    std::optional<fleet::Server> spare{{"spare", 83, {}, {}}};
    std::optional<int> limit = 10;
};

struct Optionals {
    std::optional<int> always;
    std::optional<int> sometimes;
    std::optional<int> usually = 5;
};

/// A class that can be converted to a value, but not from one.
struct WriteOnly {
    explicit WriteOnly(int number) : id(number) {}
    const int id;
    std::optional<int> note;
};

struct Tree {
    std::string name;
    std::vector<Tree> children;
};

struct Holder {
    foundation::json::Value any;
    foundation::json::Value other;
};

/// Names that are too long for a string without an allocation, and not in order.
struct LongNames {
    int second = 0;
    int first = 0;
};

} // namespace shapes

template <>
inline constexpr auto foundation::json::members<shapes::Base> =
    std::tuple(required("id", &shapes::Base::id), defaulted("label", &shapes::Base::label));

template <>
inline constexpr auto foundation::json::members<shapes::Derived> =
    std::tuple_cat(members<shapes::Base>, std::tuple(required("on", &shapes::Derived::on)));

template <class T>
inline constexpr auto foundation::json::members<shapes::Range<T>> =
    std::tuple(required("low", &shapes::Range<T>::low), required("high", &shapes::Range<T>::high));

template <>
inline constexpr auto foundation::json::members<shapes::Account> = shapes::AccountTable::members;

template <>
inline constexpr auto foundation::json::members<shapes::Nothing> = std::tuple();

template <>
inline constexpr auto foundation::json::members<shapes::Odd> =
    std::tuple(required("", &shapes::Odd::empty), required("/", &shapes::Odd::slash),
               required("~1", &shapes::Odd::tilde), required("\"\\", &shapes::Odd::quote),
               required("a\0b"sv, &shapes::Odd::zero), required("\n\x7f", &shapes::Odd::line));

template <>
inline constexpr auto foundation::json::members<shapes::Defaults> = std::tuple(
    defaulted("servers", &shapes::Defaults::servers),
    defaulted("primary", &shapes::Defaults::primary),
    defaulted("backup", &shapes::Defaults::backup), defaulted("ranked", &shapes::Defaults::ranked),
    defaulted("spare", &shapes::Defaults::spare), defaulted("limit", &shapes::Defaults::limit));

template <>
inline constexpr auto foundation::json::members<shapes::Optionals> =
    std::tuple(required("always", &shapes::Optionals::always),
               defaulted("sometimes", &shapes::Optionals::sometimes),
               defaulted("usually", &shapes::Optionals::usually));

template <>
inline constexpr auto foundation::json::members<shapes::WriteOnly> =
    std::tuple(required("id", &shapes::WriteOnly::id), defaulted("note", &shapes::WriteOnly::note));

template <>
inline constexpr auto foundation::json::members<shapes::Tree> = std::tuple(
    required("name", &shapes::Tree::name), defaulted("children", &shapes::Tree::children));

template <>
inline constexpr auto foundation::json::members<shapes::Holder> =
    std::tuple(required("any", &shapes::Holder::any), defaulted("other", &shapes::Holder::other));

template <>
inline constexpr auto foundation::json::members<shapes::LongNames> = std::tuple(
    required("a name of more than thirty-two characters: the second", &shapes::LongNames::second),
    required("a name of more than thirty-two characters: the first", &shapes::LongNames::first));

namespace foundation::json {
namespace {

using test::describe;
using testing::Property;
using testing::Throws;
using testing::ThrowsMessage;
using UnknownMembers = ConvertOptions::UnknownMembers;

constexpr ConvertOptions strict{UnknownMembers::error};

TEST(Members, KeepDefaultsWhereTheyAreMissing) {
    const auto server = to<fleet::Server>(Value(Object{{"host", "a"}}));
    EXPECT_EQ(server, (fleet::Server{"a", 8080, {}, {}}));
}

TEST(Members, KeepDefaultsWhereTheyAreUndefined) {
    const auto server = to<fleet::Server>(Value(Object{{"host", "a"}, {"port", Value()}}));
    EXPECT_EQ(server.port, 8080);
}

TEST(Members, AreNotMissingWhereTheyAreNull) {
    const Value server = Object{{"host", "a"}, {"port", Null()}};
    EXPECT_THAT([&] { to<fleet::Server>(server); },
                ThrowsMessage<ConversionError>("at /port: null is not a number"));
}

TEST(Members, ThatAreRequiredMayNotBeMissing) {
    const Value missing = Object{{"Host", "a"}};
    EXPECT_THAT(
        [&] { to<fleet::Server>(missing); },
        ThrowsMessage<ConversionError>("at the root: the required member \"host\" is missing"));
    const Value undefined = Object{{"host", Value()}};
    EXPECT_THAT(
        [&] { to<fleet::Server>(undefined); },
        ThrowsMessage<ConversionError>("at the root: the required member \"host\" is missing"));
    const Value within = Array{Object{{"host", "a"}}, Object()};
    EXPECT_THAT([&] { to<std::vector<fleet::Server>>(within); },
                ThrowsMessage<ConversionError>("at /1: the required member \"host\" is missing"));
}

TEST(Members, ThatAreUnknownAreIgnored) {
    const Value server = Object{{"host", "a"}, {"prot", 1}};
    EXPECT_EQ(to<fleet::Server>(server).port, 8080);
}

TEST(Members, ThatAreUnknownCanBeErrors) {
    const Value server = Object{{"host", "a"}, {"prot", 1}};
    EXPECT_THAT(
        [&] { to<fleet::Server>(server, strict); },
        ThrowsMessage<ConversionError>(
            "at /prot: the member \"prot\" is unknown; known are \"host\", \"port\", \"tags\", "
            "\"load\""));
    const Value cluster = Object{{"name", "x"}, {"servers", Array{server}}};
    EXPECT_THAT([&] { to<fleet::Cluster>(cluster, strict); },
                Throws<ConversionError>(Property(&ConversionError::pointer, "/servers/0/prot")));
    EXPECT_EQ(to<fleet::Server>(Value(Object{{"host", "a"}}), strict).host, "a");
    const Value nothing = Object{{"x", 1}};
    EXPECT_THAT([&] { to<shapes::Nothing>(nothing, strict); },
                ThrowsMessage<ConversionError>("at /x: the member \"x\" is unknown"));
}

TEST(Members, ThatAreMisspeltAreUnknownRatherThanMissing) {
    const Value server = Object{{"hots", "a"}};
    EXPECT_THAT([&] { to<fleet::Server>(server, strict); },
                Throws<ConversionError>(Property(&ConversionError::pointer, "/hots")));
    EXPECT_THAT(
        [] { to<fleet::Server>(Value(Object()), strict); },
        ThrowsMessage<ConversionError>("at the root: the required member \"host\" is missing"));
}

TEST(Members, ThatAreUndefinedAreNotUnknown) {
    const Value server = Object{{"host", "a"}, {"port", Value()}};
    EXPECT_EQ(to<fleet::Server>(server, strict).port, 8080);
}

TEST(Members, OfABaseAreJoined) {
    shapes::Derived derived;
    derived.id = 7;
    derived.on = true;
    const Value value = from(derived);
    EXPECT_EQ(describe(value), R"(JSON object {"id":7,"label":"none","on":true})");
    const auto back = to<shapes::Derived>(value);
    EXPECT_EQ(back.id, 7);
    EXPECT_TRUE(back.on);
}

TEST(Members, OfATemplateHaveOneTable) {
    EXPECT_EQ(describe(from(shapes::Range<int>{1, 2})), R"(JSON object {"high":2,"low":1})");
    EXPECT_EQ(to<shapes::Range<std::string>>(Value(Object{{"high", "z"}, {"low", "a"}})).high, "z");
}

TEST(Members, CanBePrivate) {
    const Value value = from(shapes::Account("Ada", 7));
    EXPECT_EQ(describe(value), R"(JSON object {"balance":7,"owner":"Ada"})");
    EXPECT_EQ(to<shapes::Account>(value).owner(), "Ada");
    EXPECT_EQ(to<shapes::Account>(value).balance(), 7);
}

/// A server with `others` more members that its table does not name, before, between and after its
/// own.
Value server_among(int others) {
    Value value = Object{{"host", "a"}, {"port", 81}, {"tags", Value()}};
    for (int i = 0; i < others; ++i) {
        value[std::string(1, "aiqz"[i % 4]) + std::to_string(i)] = i;
    }
    return value;
}

// Among few others, all members are walked; among many, those of the table are looked up.
TEST(Members, AreFoundAmongAnyNumberOfOthers) {
    for (int others = 0; others < 40; ++others) {
        const auto server = to<fleet::Server>(server_among(others));
        EXPECT_EQ(server, (fleet::Server{"a", 81, {}, {}})) << others;
        Value incomplete = server_among(others);
        get<Object>(incomplete).erase("host");
        EXPECT_THAT(
            [&] { to<fleet::Server>(incomplete); },
            ThrowsMessage<ConversionError>("at the root: the required member \"host\" is missing"))
            << others;
        const auto convert = [&] { to<fleet::Server>(server_among(others), strict); };
        if (others == 0) {
            EXPECT_NO_THROW(convert());
        } else {
            EXPECT_THAT(convert,
                        Throws<ConversionError>(Property(&ConversionError::pointer, "/a0")));
        }
    }
}

TEST(Members, AreReadInTheOrderOfTheTable) {
    const Value value = Object{{"low", "wrong"}, {"high", "wrong"}};
    EXPECT_THAT([&] { to<shapes::Range<int>>(value); },
                Throws<ConversionError>(Property(&ConversionError::pointer, "/low")));
}

TEST(Members, CanBeNone) {
    EXPECT_EQ(describe(from(shapes::Nothing())), "JSON object {}");
    to<shapes::Nothing>(Value(Object{{"x", 1}}));
    EXPECT_THAT([] { to<shapes::Nothing>(Value(1)); },
                ThrowsMessage<ConversionError>("at the root: 1 is a number, not an object"));
}

TEST(Members, CanHaveAnyName) {
    const shapes::Odd odd{1, 2, 3, 4, 5, 6};
    const Value value = from(odd);
    EXPECT_EQ(
        describe(value),
        "JSON object {\"\":1,\"\\n\x7f\":6,\"\\\"\\\\\":4,\"\\/\":2,\"a\\u0000b\":5,\"~1\":3}");
    const auto back = to<shapes::Odd>(value);
    EXPECT_EQ((std::array{back.empty, back.slash, back.tilde, back.quote, back.zero, back.line}),
              (std::array{1, 2, 3, 4, 5, 6}));
}

TEST(Members, HaveTheirNamesEscapedInErrors) {
    struct Row {
        std::string name;
        std::string pointer;
        const char* place;
    };
    for (const auto& [name, pointer, place] :
         {Row{"", "/", "/"}, Row{"/", "/~1", "/~1"}, Row{"~1", "/~01", "/~01"},
          Row{"\"\\", "/\"\\", R"(/\"\\)"},
          Row{std::string("a\0b", 3), std::string("/a\0b", 4), "/a\\u0000b"},
          Row{"\n\x7f", "/\n\x7f", "/\\u000a\\u007f"}}) {
        Value value = from(shapes::Odd());
        value[name] = true;
        EXPECT_THAT([&] { to<shapes::Odd>(value); },
                    ThrowsMessage<ConversionError>(std::string("at ") + place +
                                                   ": true is a boolean, not a number"));
        EXPECT_THAT([&] { to<shapes::Odd>(value); },
                    Throws<ConversionError>(Property(&ConversionError::pointer, pointer)));
    }
    const Value missing = Object{{"", 1}, {"/", 2}, {"~1", 3}};
    EXPECT_THAT(
        [&] { to<shapes::Odd>(missing); },
        ThrowsMessage<ConversionError>(R"(at the root: the required member "\"\\" is missing)"));
    const Value unknown = Object{{"\x01\x1f \xc3\xa9", 1}};
    EXPECT_THAT(
        [&] { to<shapes::Nothing>(unknown, strict); },
        ThrowsMessage<ConversionError>(
            "at /\\u0001\\u001f \xc3\xa9: the member \"\\u0001\\u001f \xc3\xa9\" is unknown"));
}

TEST(Members, ThatAreContainersAreEmptiedFirst) {
    const Value value = Object{{"servers", Array{Object{{"host", "new"}}}}};
    const auto read = to<shapes::Defaults>(value);
    EXPECT_EQ(read.servers, (std::vector<fleet::Server>{{"new", 8080, {}, {}}}));
    const auto none = to<shapes::Defaults>(Value(Object{{"servers", Array()}}));
    EXPECT_TRUE(none.servers.empty());
}

TEST(Members, ThatAreClassesKeepWhatIsNotRead) {
    const Value host = Object{{"host", "new"}};
    const Value value = Object{
        {"primary", host}, {"backup", Array{host}}, {"ranked", Array{1, host}}, {"spare", host}};
    const auto read = to<shapes::Defaults>(value);
    EXPECT_EQ(read.primary, (fleet::Server{"new", 80, {"default"}, {}}));
    EXPECT_EQ(read.backup[0], (fleet::Server{"new", 81, {}, {}}));
    EXPECT_EQ(read.ranked, std::pair(1, fleet::Server{"new", 82, {}, {}}));
    EXPECT_EQ(read.spare, (fleet::Server{"new", 8080, {}, {}})) << "emptied first";
}

TEST(Members, ThatAreOptionalAreLeftOutWhereThatReadsBackTheSame) {
    EXPECT_EQ(describe(from(shapes::Optionals{})), R"(JSON object {"always":null,"usually":5})");
    EXPECT_EQ(describe(from(shapes::Optionals{1, 2, std::nullopt})),
              R"(JSON object {"always":1,"sometimes":2,"usually":null})");
    const auto read = to<shapes::Optionals>(Value(Object{{"always", Null()}}));
    EXPECT_EQ(read.always, std::nullopt);
    EXPECT_EQ(read.sometimes, std::nullopt);
    EXPECT_EQ(read.usually, 5);
    const auto nulls = to<shapes::Optionals>(
        Value(Object{{"always", 1}, {"sometimes", Null()}, {"usually", Null()}}));
    EXPECT_EQ(nulls.always, 1);
    EXPECT_EQ(nulls.sometimes, std::nullopt);
    EXPECT_EQ(nulls.usually, std::nullopt);
    EXPECT_THAT(
        [] { to<shapes::Optionals>(Value(Object())); },
        ThrowsMessage<ConversionError>("at the root: the required member \"always\" is missing"));
}

TEST(Members, OfAClassThatCannotBeReadCanBeWritten) {
    EXPECT_EQ(describe(from(shapes::WriteOnly(7))), R"(JSON object {"id":7})");
}

TEST(Members, CanBeOfTheirOwnClass) {
    const shapes::Tree tree{"a", {{"b", {}}, {"c", {{"d", {}}}}}};
    const Value value = from(tree);
    EXPECT_EQ(describe(value),
              R"(JSON object {"children":[{"children":[],"name":"b"},{"children":[{"children":[],)"
              R"("name":"d"}],"name":"c"}],"name":"a"})");
    EXPECT_EQ(to<shapes::Tree>(value).children[1].children[0].name, "d");
}

TEST(Members, ThatAreValuesAreLeftOutIfUndefined) {
    EXPECT_EQ(describe(from(shapes::Holder{Null(), Value()})), R"(JSON object {"any":null})");
    const auto read = to<shapes::Holder>(Value(Object{{"any", Null()}}));
    EXPECT_EQ(describe(read.any), "JSON null null");
    EXPECT_EQ(describe(read.other), "undefined");
    EXPECT_THAT(
        [] { to<shapes::Holder>(Value(Object())); },
        ThrowsMessage<ConversionError>("at the root: the required member \"any\" is missing"));
}

TEST(Members, ThatAreValuesAreWrittenEvenIfEmpty) {
    EXPECT_EQ(describe(from(shapes::Holder{1, Array()})), R"(JSON object {"any":1,"other":[]})");
}

TEST(Members, CanHaveLongNamesInAnyOrder) {
    const Value value = from(shapes::LongNames{2, 1});
    EXPECT_EQ(describe(value),
              R"(JSON object {"a name of more than thirty-two characters: the first":1,)"
              R"("a name of more than thirty-two characters: the second":2})");
    EXPECT_EQ(to<shapes::LongNames>(value).second, 2);
    EXPECT_EQ(to<shapes::LongNames>(value).first, 1);
}

} // namespace
} // namespace foundation::json
