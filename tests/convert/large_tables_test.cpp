// Tables of a thousand members and enumerators: they compile, with the limits that compilers have
// by default, and convert.
#include "convert/conversion_error.hpp"

#include <foundation/json/convert.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

// Macros, since nothing else makes names. EACH(N) stands for one of N = 000 to 999, in an order
// that is not that of the names.
#define TEN(EACH, N)                                                                               \
    EACH(N##7), EACH(N##0), EACH(N##3), EACH(N##9), EACH(N##1), EACH(N##8), EACH(N##2),            \
        EACH(N##6), EACH(N##5), EACH(N##4)
#define HUNDRED(EACH, N)                                                                           \
    TEN(EACH, N##9), TEN(EACH, N##8), TEN(EACH, N##7), TEN(EACH, N##6), TEN(EACH, N##5),           \
        TEN(EACH, N##4), TEN(EACH, N##3), TEN(EACH, N##2), TEN(EACH, N##1), TEN(EACH, N##0)
#define THOUSAND(EACH)                                                                             \
    HUNDRED(EACH, 5), HUNDRED(EACH, 4), HUNDRED(EACH, 3), HUNDRED(EACH, 2), HUNDRED(EACH, 1),      \
        HUNDRED(EACH, 0), HUNDRED(EACH, 6), HUNDRED(EACH, 7), HUNDRED(EACH, 8), HUNDRED(EACH, 9)

// The beginning that all names share makes them slow to compare.
#define NAME(N) "a name that differs from all the others in its last three digits only: " #N

namespace large {

#define ENUMERATOR(N) e##N
enum class Code { THOUSAND(ENUMERATOR) };

struct Record {
#define MEMBER(N) m##N = 0
    int THOUSAND(MEMBER);
};

/// Has the thousand members of its base and one more.
struct Longer : Record {
    std::string last;
};

} // namespace large

#define REQUIRED(N) required(NAME(N), &large::Record::m##N)
template <>
inline constexpr auto foundation::json::members<large::Record> = table(THOUSAND(REQUIRED));

template <>
inline constexpr auto foundation::json::members<large::Longer> =
    table(defaulted("a first name", &large::Longer::last), members<large::Record>);

#define PAIR(N)                                                                                    \
    { large::Code::e##N, NAME(N) }
template <>
inline constexpr auto
    foundation::json::enumerators<large::Code> = table<large::Code>({THOUSAND(PAIR)});

namespace large {

/// The same table in the form of a std::array.
enum class Other { THOUSAND(ENUMERATOR) };

} // namespace large

#define OTHER_PAIR(N)                                                                              \
    std::pair {                                                                                    \
        large::Other::e##N, "o" #N                                                                 \
    }
template <>
inline constexpr auto foundation::json::enumerators<large::Other> =
    std::array<std::pair<large::Other, const char*>, 1000>{{THOUSAND(OTHER_PAIR)}};

namespace foundation::json {
namespace {

using test::conversion_error;
using testing::ThrowsMessage;

const std::string beginning = std::string(NAME(000)).substr(0, sizeof NAME(000) - 4);

std::string name(int number) {
    const std::string digits = std::to_string(number);
    return beginning + std::string(3 - digits.size(), '0') + digits;
}

Object record() {
    Object object;
    for (int i = 0; i < 1000; ++i) {
        object[name(i)] = i;
    }
    return object;
}

TEST(LargeTables, OfMembersConvert) {
    Object object = record();
    const auto converted = to<large::Record>(Value(object));
    EXPECT_EQ(converted.m000, 0);
    EXPECT_EQ(converted.m001, 1);
    EXPECT_EQ(converted.m427, 427);
    EXPECT_EQ(converted.m999, 999);
    EXPECT_EQ(from(converted), Value(object));
    object.erase(name(427));
    EXPECT_THAT([&] { to<large::Record>(Value(object)); },
                ThrowsMessage<ConversionError>("at the root: the required member \"" + name(427) +
                                               "\" is missing"));
}

TEST(LargeTables, OfMembersCanBePartsOfOthers) {
    Object object = record();
    object["a first name"] = "x";
    const auto converted = to<large::Longer>(Value(object));
    EXPECT_EQ(converted.m427, 427);
    EXPECT_EQ(converted.last, "x");
    EXPECT_EQ(from(converted), Value(object));
    object["a second name"] = Null();
    const std::string error = conversion_error(
        [&] { to<large::Longer>(Value(object), {ConvertOptions::UnknownMembers::error}); });
    const std::string head =
        "at /a second name: the member \"a second name\" is unknown; known are "
        "\"a first name\", \"a name that differs";
    EXPECT_EQ(error.substr(0, head.size()), head);
}

TEST(LargeTables, OfMembersAreReadInTheirOrder) {
    Object object = record();
    object[name(597)] = "the first";
    object[name(0)] = "another";
    EXPECT_THAT([&] { to<large::Record>(Value(object)); },
                ThrowsMessage<ConversionError>("at /" + name(597) +
                                               ": \"the first\" is a string, not a number"));
}

template <class E>
void expect_all(const std::string& before) {
    std::vector<E> all;
    Array names;
    for (const auto& [enumerator, text] : enumerators<E>) {
        all.push_back(enumerator);
        names.emplace_back(text);
    }
    ASSERT_EQ(all.size(), 1000u);
    EXPECT_EQ(get<std::string>(names[0]), before + "597");
    EXPECT_EQ(get<std::string>(names[999]), before + "904");
    EXPECT_EQ(to<std::vector<E>>(Value(names)), all);
    EXPECT_EQ(from(all), Value(names));
    const std::string error = conversion_error([&] { to<E>(Value(before)); });
    EXPECT_EQ(error.substr(0, error.find(';')),
              "at the root: the enumerator \"" + before + "\" is unknown");
}

TEST(LargeTables, OfEnumeratorsConvert) {
    expect_all<large::Code>(beginning);
    expect_all<large::Other>("o");
}

} // namespace
} // namespace foundation::json
