// Values found by JSON Pointer: find(), to() and to_or() with a pointer, and the pointer in an
// error.
#include "convert/fleet.hpp"
#include "support/describe.hpp"

#include <foundation/json/convert.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <exception>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json {
namespace {

using test::describe;
using testing::Property;
using testing::StartsWith;
using testing::Throws;
using testing::ThrowsMessage;

/// The document of RFC 6901, section 5.
Value rfc_document() {
    return Object{{"foo", Array{"bar", "baz"}},
                  {"", 0},
                  {"a/b", 1},
                  {"c%d", 2},
                  {"e^f", 3},
                  {"g|h", 4},
                  {"i\\j", 5},
                  {"k\"l", 6},
                  {" ", 7},
                  {"m~n", 8}};
}

std::string found(const Value& root, std::string_view pointer) {
    const Value* const value = find(root, pointer);
    return value != nullptr ? describe(*value) : "nothing";
}

TEST(Find, FollowsTheExamplesOfTheRfc) {
    const Value document = rfc_document();
    EXPECT_EQ(find(document, ""), &document);
    EXPECT_EQ(found(document, "/foo"), R"(JSON array ["bar","baz"])");
    EXPECT_EQ(found(document, "/foo/0"), R"(JSON string "bar")");
    EXPECT_EQ(found(document, "/"), "JSON number 0");
    EXPECT_EQ(found(document, "/a~1b"), "JSON number 1");
    EXPECT_EQ(found(document, "/c%d"), "JSON number 2");
    EXPECT_EQ(found(document, "/e^f"), "JSON number 3");
    EXPECT_EQ(found(document, "/g|h"), "JSON number 4");
    EXPECT_EQ(found(document, "/i\\j"), "JSON number 5");
    EXPECT_EQ(found(document, "/k\"l"), "JSON number 6");
    EXPECT_EQ(found(document, "/ "), "JSON number 7");
    EXPECT_EQ(found(document, "/m~0n"), "JSON number 8");
}

TEST(Find, GivesNullWhereNoValueIs) {
    const Value document = Object{{"a", Array{1, Array{2}}}, {"t", "text"}, {"0", true}};
    EXPECT_EQ(found(document, "/a/1/0"), "JSON number 2");
    EXPECT_EQ(found(document, "/0"), "JSON boolean true")
        << "a name, though it looks like an index";
    for (const char* const pointer :
         {"/b", "/a/2", "/a/-", "/a/x", "/a/", "/a/01", "/a/00", "/a/+1", "/a/1x", "/a/1/0/0",
          "/t/0", "/t/x", "//", "/a/1/18446744073709551616", "/a/18446744073709551617",
          "/a/99999999999999999999999999999999999999"}) {
        EXPECT_EQ(found(document, pointer), "nothing") << pointer;
    }
}

TEST(Find, UnescapesFromLeftToRight) {
    const Value document = Object{{"~1", 1}, {"/", 2}, {"~", 3}, {"~~//", 4}};
    EXPECT_EQ(found(document, "/~01"), "JSON number 1");
    EXPECT_EQ(found(document, "/~1"), "JSON number 2");
    EXPECT_EQ(found(document, "/~0"), "JSON number 3");
    EXPECT_EQ(found(document, "/~0~0~1~1"), "JSON number 4");
}

TEST(Find, TakesNamesAsBytes) {
    const Value document = Object{{std::string("a\0b", 3), Object{{"\xff", 1}}}};
    EXPECT_EQ(found(document, std::string_view("/a\0b/\xff", 6)), "JSON number 1");
}

TEST(Find, FindsUndefined) {
    const Value document = Object{{"a", Value()}};
    EXPECT_EQ(found(document, "/a"), "undefined");
    EXPECT_EQ(found(Value(), "/a"), "nothing");
}

TEST(Find, LetsTheValueBeChanged) {
    Value document = rfc_document();
    *find(document, "/foo/1") = "changed";
    EXPECT_EQ(describe(document["foo"][1]), R"(JSON string "changed")");
    static_assert(std::is_same_v<decltype(find(document, "")), Value*>);
    static_assert(std::is_same_v<decltype(find(std::as_const(document), "")), const Value*>);
}

TEST(Find, RefusesWhatIsNoJsonPointer) {
    const Value document = Object{{"a", 1}};
    EXPECT_THAT([&] { find(document, "a"); },
                ThrowsMessage<std::invalid_argument>(
                    "\"a\" is no JSON Pointer: it is not empty and does not begin with /"));
    EXPECT_THAT([&] { find(document, "/~2"); },
                ThrowsMessage<std::invalid_argument>(
                    "\"/~2\" is no JSON Pointer: ~ is not followed by 0 or 1"));
    EXPECT_THAT([&] { find(document, "/x/y~"); },
                ThrowsMessage<std::invalid_argument>(
                    "\"/x/y~\" is no JSON Pointer: ~ is not followed by 0 or 1"));
    EXPECT_THAT([&] { to<int>(document, "a\n"); },
                ThrowsMessage<std::invalid_argument>(
                    "\"a\\u000a\" is no JSON Pointer: it is not empty and does not begin with /"));
    EXPECT_THAT([&] { to_or(document, "a", 1); },
                ThrowsMessage<std::invalid_argument>(
                    "\"a\" is no JSON Pointer: it is not empty and does not begin with /"));
}

Value configuration() {
    return Object{{"server", Object{{"host", "a"}, {"port", 80}, {"tags", Array{"x", 1}}}},
                  {"none", Null()},
                  {"undefined", Value()},
                  {"list", Array{1}},
                  {"text", "t"}};
}

TEST(ToByPointer, ConvertsTheValueAtThePointer) {
    const Value config = configuration();
    EXPECT_EQ(to<int>(config, "/server/port"), 80);
    EXPECT_EQ(to<std::string>(config, "/server/tags/0"), "x");
    EXPECT_EQ(to<Array>(Value(Array{1, "x"}), ""), (Array{1, "x"}));
}

TEST(ToByPointer, NamesLocationsFromTheRoot) {
    const Value config = configuration();
    EXPECT_THAT([&] { to<fleet::Server>(config, "/server"); },
                ThrowsMessage<ConversionError>("at /server/tags/1: 1 is a number, not a string"));
    const Value odd = Object{{"a/b", Object{{"~", Array{true}}}}};
    EXPECT_THAT([&] { to<std::vector<int>>(odd, "/a~1b/~0"); },
                Throws<ConversionError>(Property(&ConversionError::pointer, "/a~1b/~0/0")));
    EXPECT_THAT([&] { to<int>(odd, "/a~1b"); },
                Throws<ConversionError>(Property(&ConversionError::pointer, "/a~1b")));
}

TEST(ToByPointer, TakesOptions) {
    const Value config = Object{{"server", Object{{"host", "a"}, {"x", 1}}}};
    const ConvertOptions strict{ConvertOptions::UnknownMembers::error};
    EXPECT_EQ(to<fleet::Server>(config, "/server").host, "a");
    EXPECT_THAT([&] { to<fleet::Server>(config, "/server", strict); },
                Throws<ConversionError>(Property(&ConversionError::pointer, "/server/x")));
}

// Braces as the second argument are options, unless they hold a text.
TEST(ToByPointer, IsNotMeantByEmptyBraces) {
    const Value config = Object{{"host", "a"}, {"x", 1}};
    EXPECT_EQ(to<int>(Value(7), {}), 7);
    EXPECT_EQ(to<fleet::Server>(config, {}).host, "a");
    EXPECT_EQ(to<int>(Value(Object{{"", 7}}), {"/"}), 7);
    EXPECT_EQ(to<int>(config, "/x", {}), 1);
    EXPECT_THAT([&] { to<fleet::Server>(config, {ConvertOptions::UnknownMembers::error}); },
                Throws<ConversionError>(Property(&ConversionError::pointer, "/x")));
}

TEST(ToByPointer, ThrowsWhereNoValueIs) {
    const Value config = configuration();
    EXPECT_THAT([&] { to<int>(config, "/server/prot"); },
                ThrowsMessage<ConversionError>("at /server/prot: there is no value"));
    EXPECT_THAT([&] { to<int>(config, "/nowhere/at/all"); },
                ThrowsMessage<ConversionError>("at /nowhere/at/all: there is no value"));
    EXPECT_THAT([&] { to<int>(config, "/list/1"); },
                ThrowsMessage<ConversionError>("at /list/1: there is no value"));
    EXPECT_THAT([&] { to<int>(config, "/undefined"); },
                ThrowsMessage<ConversionError>("at /undefined: undefined is not a number"));
}

// What looks like an index but is none of the array leads to nothing, by whichever function.
TEST(ToByPointer, FindsNothingWhereNoIndexIs) {
    const Value config = configuration();
    for (const std::string token : {"-", "1", "01", "00", "0000000000000000000000", "9999999999",
                                    "99999999999999999999999999999999999999"}) {
        const std::string pointer = "/list/" + token;
        EXPECT_EQ(find(config, pointer), nullptr) << pointer;
        EXPECT_THAT([&] { to<int>(config, pointer); },
                    ThrowsMessage<ConversionError>("at " + pointer + ": there is no value"));
        EXPECT_EQ(to<std::optional<int>>(config, pointer), std::nullopt) << pointer;
        EXPECT_EQ(to_or(config, pointer, 7), 7) << pointer;
        EXPECT_EQ(to_or(config, pointer + "/x/y", 7), 7) << pointer;
    }
    EXPECT_EQ(to_or(Value(Object{{"01", 5}}), "/01", 7), 5) << "a name, though it looks like one";
}

// A name where an array stands is a mistake in the document or in the pointer.
TEST(ToByPointer, RefusesANameWhereAnArrayStands) {
    const Value config = configuration();
    for (const std::string token : {"", "x", "-1", "--", "+1", "1x", "0x0", " 0", "1.0"}) {
        const std::string pointer = "/list/" + token;
        EXPECT_EQ(find(config, pointer), nullptr) << pointer;
        const std::string message = "at /list: [1] is an array, not an object";
        EXPECT_THAT([&] { to<int>(config, pointer); }, ThrowsMessage<ConversionError>(message))
            << pointer;
        EXPECT_THAT([&] { to<std::optional<int>>(config, pointer); },
                    ThrowsMessage<ConversionError>(message));
        EXPECT_THAT([&] { to_or(config, pointer, 7); }, ThrowsMessage<ConversionError>(message))
            << pointer;
    }
}

TEST(ToByPointer, ThrowsWhereAStepLeadsIntoAnotherKind) {
    const Value config = configuration();
    EXPECT_THAT([&] { to<int>(config, "/text/x/y"); },
                ThrowsMessage<ConversionError>("at /text: \"t\" is a string, not an object"));
    EXPECT_THAT([&] { to<int>(config, "/list/x"); },
                ThrowsMessage<ConversionError>("at /list: [1] is an array, not an object"));
    EXPECT_THAT([&] { to<int>(config, "/list/"); },
                ThrowsMessage<ConversionError>("at /list: [1] is an array, not an object"));
    EXPECT_THAT([&] { to<int>(config, "/list/-1"); },
                ThrowsMessage<ConversionError>("at /list: [1] is an array, not an object"));
    EXPECT_THAT([&] { to<int>(config, "/none/x"); },
                ThrowsMessage<ConversionError>("at /none: null is not an object"));
    EXPECT_THAT([] { to<int>(Value(1), "/x"); },
                ThrowsMessage<ConversionError>("at the root: 1 is a number, not an object"));
}

TEST(ToByPointer, GivesNulloptForAMissingValue) {
    const Value config = configuration();
    EXPECT_EQ(to<std::optional<int>>(config, "/server/prot"), std::nullopt);
    EXPECT_EQ(to<std::optional<int>>(config, "/server/port"), 80);
    EXPECT_EQ(to<std::optional<int>>(config, "/none"), std::nullopt);
    EXPECT_THAT([&] { to<std::optional<int>>(config, "/text/x"); },
                Throws<ConversionError>(Property(&ConversionError::pointer, "/text")));
}

TEST(ToOr, GivesTheValueThatIsThere) {
    const Value config = configuration();
    EXPECT_EQ(to_or(config, "/server/port", 8080), 80);
    EXPECT_EQ(to_or(config, "/server/host", "b"), "a");
}

TEST(ToOr, GivesTheFallbackForAMissingValue) {
    const Value config = configuration();
    for (const char* const pointer : {"/server/prot", "/nowhere/at/all", "/list/1", "/list/-",
                                      "/none", "/none/x", "/undefined", "/undefined/x/y"}) {
        EXPECT_EQ(to_or(config, pointer, 7), 7) << pointer;
    }
    EXPECT_EQ(to_or(Value(), "", 7), 7);
    EXPECT_EQ(to_or(Value(Null()), "", 7), 7);
}

TEST(ToOr, ThrowsForAValueThatDoesNotConvert) {
    const Value config = configuration();
    EXPECT_THAT([&] { to_or(config, "/server/host", 7); },
                ThrowsMessage<ConversionError>("at /server/host: \"a\" is a string, not a number"));
    EXPECT_THAT([&] { to_or(config, "/text/x", 7); },
                ThrowsMessage<ConversionError>("at /text: \"t\" is a string, not an object"));
    EXPECT_THAT([&] { to_or(config, "/list/x", 7); },
                ThrowsMessage<ConversionError>("at /list: [1] is an array, not an object"));
    EXPECT_THAT([&] { to_or(config, "/server", fleet::Server()); },
                ThrowsMessage<ConversionError>("at /server/tags/1: 1 is a number, not a string"));
}

TEST(ToOr, GivesAStringForALiteralAsFallback) {
    const Value config = configuration();
    char text[] = "fallback";
    static_assert(std::is_same_v<decltype(to_or(config, "/x", "text")), std::string>);
    static_assert(std::is_same_v<decltype(to_or(config, "/x", text)), std::string>);
    static_assert(std::is_same_v<decltype(to_or(config, "/x", std::string_view())), std::string>);
    static_assert(std::is_same_v<decltype(to_or(config, "/x", std::string())), std::string>);
    static_assert(std::is_same_v<decltype(to_or(config, "/x", 1)), int>);
    EXPECT_EQ(to_or(config, "/x", "literal"), "literal");
    EXPECT_EQ(to_or(config, "/x", text), "fallback");
    EXPECT_EQ(to_or(config, "/x", std::string_view("a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(to_or(config, "/x", std::string("string")), "string");
}

TEST(ToOr, TakesAnyTypeAsFallback) {
    const Value config = configuration();
    EXPECT_EQ(to_or(config, "/x", fleet::Server{"f", 1, {}, {}}), (fleet::Server{"f", 1, {}, {}}));
    EXPECT_EQ(to_or(config, "/list", std::vector<int>{7}), std::vector<int>{1});
    EXPECT_EQ(to_or(config, "/x", std::optional<int>(3)), 3);
    EXPECT_EQ(to_or(config, "/x", fleet::Level::high), fleet::Level::high);
}

TEST(ConversionErrors, NameTheLocationAndTheProblem) {
    const ConversionError error("/a\"b", "is odd");
    EXPECT_EQ(error.pointer(), "/a\"b");
    EXPECT_STREQ(error.what(), "at /a\\\"b: is odd");
    EXPECT_STREQ(ConversionError("", "is odd").what(), "at the root: is odd");
    EXPECT_STREQ(ConversionError("/", "is odd").what(), "at /: is odd");
}

/// The message of to() for a value that is no T. The names above it hold everything that must be
/// escaped: a slash, a tilde, a quote, NUL, and no character at all.
template <class T>
std::string error_below_odd_names(const Value& wrong) {
    const std::string odd("a/~\"\0b", 6);
    const Value root = Object{{odd, Object{{"", wrong}}}};
    try {
        to<std::map<std::string, std::map<std::string, T>>>(
            root, {ConvertOptions::UnknownMembers::error});
    } catch (const ConversionError& error) {
        EXPECT_THAT(error.pointer(), StartsWith(std::string("/a~1~0\"\0b/", 10)));
        return error.what();
    }
    return "(nothing was thrown)";
}

TEST(ConversionErrors, OfEveryTypeNameTheirLocation) {
    const std::string place = R"(at /a~1~0\"\u0000b/)";
    EXPECT_EQ(error_below_odd_names<int>(true), place + ": true is a boolean, not a number");
    EXPECT_EQ(error_below_odd_names<std::uint16_t>(70000),
              place + ": 70000 is not within 0 to 65535");
    EXPECT_EQ(error_below_odd_names<int>(2.5), place + ": 2.5 is not a whole number");
    EXPECT_EQ((error_below_odd_names<std::pair<int, int>>(Array{1})),
              place + ": the array has length 1, not 2");
    EXPECT_EQ((error_below_odd_names<std::tuple<int>>(Array())),
              place + ": the array has length 0, not 1");
    EXPECT_EQ((error_below_odd_names<std::array<int, 2>>(Array{1, 2, 3})),
              place + ": the array has length 3, not 2");
    EXPECT_EQ(error_below_odd_names<std::set<int>>(Array{7, 7}),
              place + "/1: the set has this element already");
    EXPECT_EQ(error_below_odd_names<fleet::Level>("lo\"w"),
              place + R"(: the enumerator "lo\"w" is unknown; known are "low", "middle", "high", )"
                      R"("top")");
    EXPECT_EQ(error_below_odd_names<fleet::Server>(Object()),
              place + R"(: the required member "host" is missing)");
    EXPECT_EQ(error_below_odd_names<fleet::Server>(Object{{"host", "a"}, {"~/", 1}}),
              place + R"(/~0~1: the member "~/" is unknown; known are "host", "port", "tags", )"
                      R"("load")");
    EXPECT_EQ(error_below_odd_names<std::vector<std::optional<double>>>(Array{1, Null(), "x"}),
              place + "/2: \"x\" is a string, not a number");
}

TEST(ConversionErrors, AreCopiedWithoutAFailure) {
    static_assert(std::is_nothrow_copy_constructible_v<ConversionError>);
    static_assert(std::is_nothrow_copy_assignable_v<ConversionError>);
    static_assert(std::is_base_of_v<std::runtime_error, ConversionError>);
    ConversionError error("/a", "one");
    const ConversionError copy = error;
    ConversionError taken = std::move(error);
    EXPECT_EQ(error.pointer(), "/a") << "a moved exception is still complete";
    EXPECT_EQ(copy.pointer(), "/a");
    taken = ConversionError("/b", "two");
    EXPECT_EQ(taken.pointer(), "/b");
    EXPECT_STREQ(taken.what(), "at /b: two");
    EXPECT_STREQ(copy.what(), "at /a: one");
}

} // namespace
} // namespace foundation::json
