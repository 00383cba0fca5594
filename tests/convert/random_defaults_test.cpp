// Objects of randomly nested types, with and without values in their defaults, become equal ones by
// way of a value.
#include "support/describe.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"

#include <foundation/json/convert.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace nested {

/// A T that differs from the default one wherever it can.
template <class T>
T other();

struct Empty {
    std::optional<int> o;
    bool operator==(const Empty& that) const { return o == that.o; }
};

struct Full {
    std::optional<int> o = 5;
    bool operator==(const Full& that) const { return o == that.o; }
};

template <class T>
struct Plain {
    T part{};
    std::optional<Empty> maybe;
    std::optional<Full> required;
    bool operator==(const Plain& that) const {
        return part == that.part && maybe == that.maybe && required == that.required;
    }
};

/// Gives its parts other defaults than they have by themselves.
template <class T>
struct Preset {
    T part = other<T>();
    std::optional<Empty> maybe = other<Empty>();
    std::optional<Full> required = other<Full>();
    bool operator==(const Preset& that) const {
        return part == that.part && maybe == that.maybe && required == that.required;
    }
};

template <class T>
using Optional = std::optional<T>;
template <class T>
using Vector = std::vector<T>;
template <class T>
using List = std::list<T>;
template <class T>
using Two = std::array<T, 2>;
template <class T>
using Pair = std::pair<T, Full>;
template <class T>
using Tuple = std::tuple<Empty, T, int>;
template <class T>
using Map = std::map<std::string, T>;
template <class T>
using HashMap = std::unordered_map<std::string, T>;

/// Sets all optionals: to hold something, to be without a value, or either at random.
class Filler {
public:
    enum class Choice { toggle, random };

    explicit Filler(Choice choice, std::uint64_t seed = 0)
        : choice_(choice), random_(seed, foundation::json::test::RandomTrees::Kinds::readable) {}

    void fill(int& number) { number = 7; }
    void fill(Empty& object) { fill(object.o); }
    void fill(Full& object) { fill(object.o); }

    template <class T>
    void fill(Plain<T>& object) {
        fill_members(object);
    }

    template <class T>
    void fill(Preset<T>& object) {
        fill_members(object);
    }

    template <class T>
    void fill(std::optional<T>& maybe) {
        if (choice_ == Choice::toggle ? maybe.has_value() : random_.once_in(2)) {
            maybe.reset();
        } else {
            fill(maybe.emplace());
        }
    }

    template <class T>
    void fill(std::vector<T>& list) {
        fill_sequence(list);
    }

    template <class T>
    void fill(std::list<T>& list) {
        fill_sequence(list);
    }

    template <class T>
    void fill(std::array<T, 2>& array) {
        fill(array[0]);
        fill(array[1]);
    }

    template <class T>
    void fill(std::pair<T, Full>& pair) {
        fill(pair.first);
        fill(pair.second);
    }

    template <class T>
    void fill(std::tuple<Empty, T, int>& tuple) {
        fill(std::get<0>(tuple));
        fill(std::get<1>(tuple));
        fill(std::get<2>(tuple));
    }

    template <class T>
    void fill(std::map<std::string, T>& map) {
        map.clear();
        fill(map["a"]);
        fill(map["b"]);
    }

    template <class T>
    void fill(std::unordered_map<std::string, T>& map) {
        map.clear();
        fill(map["a"]);
        fill(map["b"]);
    }

private:
    template <class Object>
    void fill_members(Object& object) {
        fill(object.part);
        fill(object.maybe);
        fill(object.required);
    }

    template <class Container>
    void fill_sequence(Container& container) {
        container.resize(2);
        for (auto& element : container) {
            fill(element);
        }
    }

    Choice choice_;
    foundation::json::test::RandomTrees random_;
};

template <class T>
T other() {
    T result{};
    Filler(Filler::Choice::toggle).fill(result);
    return result;
}

} // namespace nested

namespace foundation::json {

template <>
inline constexpr auto members<nested::Empty> = table(defaulted("o", &nested::Empty::o));
template <>
inline constexpr auto members<nested::Full> = table(defaulted("o", &nested::Full::o));
template <class T>
inline constexpr auto
    members<nested::Plain<T>> = table(defaulted("part", &nested::Plain<T>::part),
                                      defaulted("maybe", &nested::Plain<T>::maybe),
                                      required("required", &nested::Plain<T>::required));
template <class T>
inline constexpr auto
    members<nested::Preset<T>> = table(defaulted("part", &nested::Preset<T>::part),
                                       defaulted("maybe", &nested::Preset<T>::maybe),
                                       required("required", &nested::Preset<T>::required));

namespace {

using nested::Filler;

template <class T>
void expect_round_trip(const T& object, std::uint64_t seed) {
    const Value value = from(object);
    EXPECT_TRUE(to<T>(value) == object) << test::describe(value) << "\nseed " << seed;
}

/// Empty and full ones, and random ones.
template <class T>
void expect_round_trips(std::uint64_t seed) {
    expect_round_trip(T{}, seed);
    expect_round_trip(nested::other<T>(), seed);
    Filler filler(Filler::Choice::random, seed);
    for (std::size_t i = 0; i < test::test_repetitions() / 500 && !testing::Test::HasFailure();
         ++i) {
        T object{};
        filler.fill(object);
        expect_round_trip(object, seed);
    }
}

/// The same for a type around another one, unless JSON has one empty state for two of them.
template <template <class> class Around, class T>
void expect_around(std::uint64_t seed) {
    if constexpr (!detail::is_optional<Around<T>> || !detail::is_optional<T>) {
        expect_round_trips<Around<T>>(seed);
    }
}

/// The same for every type around that type.
template <class T>
void expect_around_all(std::uint64_t seed) {
    expect_around<nested::Plain, T>(seed);
    expect_around<nested::Preset, T>(seed);
    expect_around<nested::Optional, T>(seed);
    expect_around<nested::Vector, T>(seed);
    expect_around<nested::List, T>(seed);
    expect_around<nested::Two, T>(seed);
    expect_around<nested::Pair, T>(seed);
    expect_around<nested::Tuple, T>(seed);
    expect_around<nested::Map, T>(seed);
    expect_around<nested::HashMap, T>(seed);
}

template <class T>
class RandomDefaults : public testing::Test {};

using nested::Empty;
using nested::Full;
using nested::Plain;
using nested::Preset;

using Types = testing::Types<
    Empty, Full, Plain<Empty>, Plain<Full>, Preset<Empty>, Preset<Full>, nested::Optional<Full>,
    nested::Vector<Empty>, nested::Two<Full>, nested::Pair<Empty>, nested::Tuple<Full>,
    nested::Map<Full>, nested::HashMap<Empty>, Preset<Preset<Plain<Full>>>,
    Preset<nested::Two<Preset<nested::Pair<Empty>>>>, nested::Tuple<Preset<nested::Two<Full>>>,
    nested::Vector<Preset<nested::Tuple<Full>>>, Plain<nested::Optional<Preset<Empty>>>>;

/// Names of the types, in their order.
struct NameOfType {
    template <class T>
    static std::string GetName(int index) {
        std::istringstream names(
            "Empty Full PlainEmpty PlainFull PresetEmpty PresetFull OptionalFull VectorOfEmpty "
            "TwoFull PairWithEmpty TupleWithFull MapToFull HashMapToEmpty PresetPresetPlainFull "
            "PresetTwoPresetPairs TupleWithPresetTwo VectorOfPresetTuples PlainOptionalPreset");
        std::string name;
        for (int i = 0; i <= index; ++i) {
            names >> name;
        }
        return name;
    }
};

TYPED_TEST_SUITE(RandomDefaults, Types, NameOfType);

TYPED_TEST(RandomDefaults, GiveEqualObjectsInEveryTypeAround) {
    expect_around_all<TypeParam>(test::random_seed());
}

} // namespace
} // namespace foundation::json
