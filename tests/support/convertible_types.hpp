/// @file
/// Types that convert.hpp converts, as a list for tests of all of them.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_CONVERTIBLE_TYPES_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_CONVERTIBLE_TYPES_HPP

#include "convert/fleet.hpp"

#include <foundation/json/convert.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
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

namespace foundation::json::test {

using Server = fleet::Server;
using ConvertibleTypes = testing::Types<
    bool, signed char, unsigned char, short, unsigned short, int, unsigned, long, unsigned long,
    long long, unsigned long long, float, double, long double, std::string, Value, Array, Object,
    std::vector<int>, std::vector<bool>, std::vector<std::string>, std::deque<double>,
    std::list<std::string>, std::set<std::string>, std::set<int>, std::array<float, 3>,
    std::array<bool, 2>, std::map<std::string, long>, std::unordered_map<std::string, std::string>,
    std::optional<int>, std::vector<std::optional<std::string>>, std::pair<std::string, int>,
    std::tuple<bool, std::string, double>, fleet::Level, Server, fleet::Cluster,
    std::map<std::string, std::unordered_map<std::string, std::set<std::uint8_t>>>,
    std::vector<std::array<std::pair<fleet::Level, std::optional<Server>>, 2>>,
    std::map<std::string, std::pair<Value, Array>>,
    std::tuple<std::list<std::deque<bool>>, std::optional<std::vector<std::vector<short>>>>>;

/// Names of the types, in their order.
struct NameOfConvertibleType {
    template <class T>
    static std::string GetName(int index) {
        std::istringstream names(
            "Bool SignedChar UnsignedChar Short UnsignedShort Int Unsigned Long "
            "UnsignedLong LongLong UnsignedLongLong Float Double LongDouble String Value "
            "Array Object VectorOfInts VectorOfBools VectorOfStrings DequeOfDoubles "
            "ListOfStrings SetOfStrings SetOfInts ArrayOfThreeFloats ArrayOfTwoBools "
            "MapToLongs UnorderedMapToStrings OptionalInt VectorOfOptionalStrings "
            "PairOfStringAndInt TupleOfThree Enumeration Struct StructOfStructs "
            "MapToUnorderedMapsToSets VectorOfArraysOfPairs MapToPairsOfValues "
            "TupleOfListsOfDeques");
        std::string name;
        for (int i = 0; i <= index; ++i) {
            names >> name;
        }
        return name;
    }
};

} // namespace foundation::json::test

#endif
