// What from() leaves out: a std::optional without a value, where to() starts without one, too.
#include "support/describe.hpp"

#include <foundation/json/convert.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <list>
#include <map>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace defaults {

/// Without a value, unless the object around it says otherwise.
struct Inner {
    std::optional<int> o;

    bool operator==(const Inner& other) const { return o == other.o; }
};

struct Outer {
    Inner in{5};
};

struct Nested {
    Outer out;
    std::array<Inner, 2> pair_of{{{std::nullopt}, {6}}};
    std::pair<int, Inner> ranked{1, {7}};
    std::tuple<Inner, std::array<Inner, 1>> deep{{std::nullopt}, {{{8}}}};
};

/// What read() makes anew starts from its own default, whatever lies around it.
struct Fresh {
    std::vector<Inner> list{{5}};
    std::list<Inner> other_list;
    std::map<std::string, Inner> map{{"a", {5}}};
    std::optional<Inner> maybe{{5}};
    std::vector<std::pair<Inner, int>> pairs;
};

/// Counts how often it is made, and throws if it shall.
struct Counted {
    Counted() {
        ++made;
        if (fails == Fails::bad_alloc) {
            throw std::bad_alloc();
        }
        if (fails == Fails::logic_error) {
            throw std::logic_error("no default");
        }
        if (fails == Fails::number) {
            throw 7; // NOLINT(hicpp-exception-baseclass)
        }
    }
    explicit Counted(std::optional<int> value) : o(value), p(value) {}

    std::optional<int> o;
    std::optional<int> p = 1;

    enum class Fails { no, bad_alloc, logic_error, number };
    static Fails fails;
    static int made;
};

Counted::Fails Counted::fails = Counted::Fails::no;
int Counted::made = 0;

struct Holder {
    std::vector<Counted> list;
};

/// Cannot be read by itself, but as a member.
struct Unreadable {
    explicit Unreadable(std::optional<int> value) : o(value) {}
    std::optional<int> o;
};

struct AroundUnreadable {
    Unreadable empty{std::nullopt};
    Unreadable full{5};
};

struct Values {
    std::optional<foundation::json::Value> value;
    std::optional<foundation::json::Value> five = foundation::json::Value(5);
};

struct Base {
    std::optional<int> o = 5;
    std::optional<int> p;
};

struct Derived : Base {
    Derived() { std::swap(o, p); }
};

/// The address-of operator of a caller's type is his own.
struct Addressless {
    std::optional<int> o = 5;
    void operator&() const = delete;
};

struct AroundAddressless {
    Addressless part;
};

} // namespace defaults

namespace foundation::json {

template <>
inline constexpr auto members<defaults::Inner> = table(defaulted("o", &defaults::Inner::o));
template <>
inline constexpr auto members<defaults::Outer> = table(defaulted("in", &defaults::Outer::in));
template <>
inline constexpr auto members<defaults::Nested> = table(
    defaulted("out", &defaults::Nested::out), defaulted("pair_of", &defaults::Nested::pair_of),
    defaulted("ranked", &defaults::Nested::ranked), required("deep", &defaults::Nested::deep));
template <>
inline constexpr auto members<defaults::Fresh> =
    table(defaulted("list", &defaults::Fresh::list),
          defaulted("other", &defaults::Fresh::other_list), defaulted("map", &defaults::Fresh::map),
          defaulted("maybe", &defaults::Fresh::maybe), defaulted("pairs", &defaults::Fresh::pairs));
template <>
inline constexpr auto members<defaults::Counted> = table(defaulted("o", &defaults::Counted::o),
                                                         defaulted("p", &defaults::Counted::p));
template <>
inline constexpr auto members<defaults::Holder> = table(required("list", &defaults::Holder::list));
template <>
inline constexpr auto members<defaults::Unreadable> = table(defaulted("o",
                                                                      &defaults::Unreadable::o));
template <>
inline constexpr auto members<defaults::AroundUnreadable> =
    table(defaulted("empty", &defaults::AroundUnreadable::empty),
          defaulted("full", &defaults::AroundUnreadable::full));
template <>
inline constexpr auto members<defaults::Values> =
    table(defaulted("value", &defaults::Values::value), defaulted("five", &defaults::Values::five));
template <>
inline constexpr auto members<defaults::Derived> = table(defaulted("o", &defaults::Base::o),
                                                         defaulted("p", &defaults::Derived::p));
template <>
inline constexpr auto members<defaults::Addressless> = table(defaulted("o",
                                                                       &defaults::Addressless::o));
template <>
inline constexpr auto members<defaults::AroundAddressless> =
    table(defaulted("part", &defaults::AroundAddressless::part));

namespace {

using defaults::Counted;
using test::describe;

TEST(Defaults, OfTheObjectAroundDecideWhatIsLeftOut) {
    defaults::Outer outer;
    outer.in.o.reset();
    EXPECT_EQ(describe(from(outer)), R"(JSON object {"in":{"o":null}})");
    EXPECT_EQ(to<defaults::Outer>(from(outer)).in.o, std::nullopt);
    EXPECT_EQ(describe(from(defaults::Outer())), R"(JSON object {"in":{"o":5}})");
    EXPECT_EQ(describe(from(defaults::Inner())), R"(JSON object {})");
}

TEST(Defaults, OfArraysPairsAndTuplesDecideWhatIsLeftOut) {
    defaults::Nested nested;
    nested.out.in.o.reset();
    nested.pair_of = {};
    nested.ranked.second.o.reset();
    nested.deep = {};
    const Value value = from(nested);
    EXPECT_EQ(describe(value), R"(JSON object {"deep":[{},[{"o":null}]],"out":{"in":{"o":null}},)"
                               R"("pair_of":[{},{"o":null}],"ranked":[1,{"o":null}]})");
    const auto back = to<defaults::Nested>(value);
    EXPECT_EQ(back.out.in, nested.out.in);
    EXPECT_EQ(back.pair_of, nested.pair_of);
    EXPECT_EQ(back.ranked, nested.ranked);
    EXPECT_EQ(back.deep, nested.deep);
}

TEST(Defaults, OfElementsThatContainersMakeAreTheirOwn) {
    const defaults::Fresh fresh{{{}}, {{}, {6}}, {{"a", {}}}, {defaults::Inner{}}, {{{}, 1}}};
    EXPECT_EQ(describe(from(fresh)), R"(JSON object {"list":[{}],"map":{"a":{}},"maybe":{},)"
                                     R"("other":[{},{"o":6}],"pairs":[[{},1]]})");
    const std::array<defaults::Outer, 1> outer{{{{std::nullopt}}}};
    EXPECT_EQ(describe(from(std::vector(3, outer))),
              R"(JSON array [[{"in":{"o":null}}],[{"in":{"o":null}}],[{"in":{"o":null}}]])");
}

TEST(Defaults, OfABaseAreThoseOfTheWholeObject) {
    EXPECT_EQ(describe(from(defaults::Derived())), R"(JSON object {"p":5})");
    defaults::Derived derived;
    derived.p.reset();
    EXPECT_EQ(describe(from(derived)), R"(JSON object {"p":null})");
}

TEST(Defaults, AreMadeOnceWhereTheyAreNeeded) {
    Counted::fails = Counted::Fails::no;
    const defaults::Holder none_empty{std::vector(10, Counted(3))};
    Counted::made = 0;
    EXPECT_EQ(from(none_empty)["list"].length(), 10u);
    EXPECT_EQ(Counted::made, 0);
    const defaults::Holder all_empty{std::vector(10, Counted(std::nullopt))};
    const std::string text = R"(JSON object {"p":null})";
    const Value value = from(all_empty);
    EXPECT_EQ(Counted::made, 1);
    EXPECT_EQ(describe(value["list"][9]), text);
    EXPECT_EQ(describe(from(Counted(std::nullopt))), text);
    EXPECT_EQ(Counted::made, 2) << "for each call";
    EXPECT_EQ(describe(from(std::tuple(all_empty, Counted(std::nullopt), Counted(1)))[1]), text);
    EXPECT_EQ(Counted::made, 5) << "that of the elements, and the two of the tuple's default";
}

TEST(Defaults, ThatCannotBeMadeAreTakenForDifferent) {
    for (const auto fails : {Counted::Fails::logic_error, Counted::Fails::number}) {
        const defaults::Holder holder{std::vector(3, Counted(std::nullopt))};
        Counted::fails = fails;
        Counted::made = 0;
        EXPECT_EQ(describe(from(holder)),
                  R"(JSON object {"list":[{"o":null,"p":null},{"o":null,"p":null},)"
                  R"({"o":null,"p":null}]})");
        EXPECT_EQ(Counted::made, 1) << "nor is it tried twice";
        Counted::fails = Counted::Fails::no;
    }
}

TEST(Defaults, ForWhichMemoryRunsOutAreAnException) {
    Counted::fails = Counted::Fails::bad_alloc;
    EXPECT_THROW(from(Counted(std::nullopt)), std::bad_alloc);
    Counted::fails = Counted::Fails::no;
}

TEST(Defaults, OfWhatCannotBeReadDoNotMatter) {
    EXPECT_EQ(describe(from(defaults::Unreadable(std::nullopt))), "JSON object {}");
    EXPECT_EQ(describe(from(std::vector(2, defaults::Unreadable(std::nullopt)))),
              "JSON array [{},{}]");
    const defaults::AroundUnreadable around{defaults::Unreadable(std::nullopt),
                                            defaults::Unreadable(std::nullopt)};
    EXPECT_EQ(describe(from(around)), R"(JSON object {"empty":{},"full":{"o":null}})");
    EXPECT_EQ(to<defaults::AroundUnreadable>(from(around)).full.o, std::nullopt);
}

TEST(Defaults, AreFoundWithoutTheCallersOperators) {
    defaults::AroundAddressless around;
    around.part.o.reset();
    EXPECT_EQ(describe(from(around)), R"(JSON object {"part":{"o":null}})");
    EXPECT_EQ(to<defaults::AroundAddressless>(from(around)).part.o, std::nullopt);
}

TEST(UndefinedValues, InAnOptionalCountAsNone) {
    EXPECT_EQ(describe(from(defaults::Values{Value(), Value()})), R"(JSON object {"five":null})");
    EXPECT_EQ(describe(from(defaults::Values{std::nullopt, std::nullopt})),
              R"(JSON object {"five":null})");
    EXPECT_EQ(describe(from(defaults::Values{Value(1), Value(Null())})),
              R"(JSON object {"five":null,"value":1})");
    EXPECT_EQ(describe(from(std::vector<std::optional<Value>>{Value(), std::nullopt, Value(1)})),
              "JSON array [null,null,1]");
    EXPECT_EQ(describe(from(std::optional<Value>(Value()))), "JSON null null");
}

TEST(UndefinedValues, InAMapAreNoMembers) {
    const std::unordered_map<std::string, Value> map{{"u", Value()}, {"a", 1}};
    EXPECT_EQ(describe(from(map)), R"(JSON object {"a":1})");
    const std::map<std::string, Value, std::greater<>> backwards{{"u", Value()}, {"a", 1}};
    EXPECT_EQ(describe(from(backwards)), R"(JSON object {"a":1})");
    const std::unordered_map<std::string, std::optional<Value>> optionals{{"u", Value()}};
    EXPECT_EQ(describe(from(optionals)), R"(JSON object {"u":null})");
}

TEST(UndefinedValues, InArraysAndObjectsStay) {
    EXPECT_EQ(describe(from(Object{{"u", Value()}})), describe(Value(Object{{"u", Value()}})));
    EXPECT_EQ(describe(from(Array{Value(), 1})), describe(Value(Array{Value(), 1})));
    EXPECT_EQ(describe(from(Value(Object{{"u", Value()}}))),
              describe(Value(Object{{"u", Value()}})));
}

} // namespace
} // namespace foundation::json
