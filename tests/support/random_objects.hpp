/// @file
/// Random objects of the types that convert.hpp converts: numbers, texts, containers, and the
/// structs of the fleet.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_OBJECTS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_OBJECTS_HPP

#include "convert/fleet.hpp"
#include "support/random_trees.hpp"

#include <array>
#include <cstddef>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace foundation::json::test {

/// Fills objects, which begin empty, with random content.
class RandomObjects {
public:
    /// Whether some of the objects cannot be written as text: numbers that are not finite, strings
    /// that are not UTF-8, enumerators without a name.
    enum class Flaws { none, some };

    explicit RandomObjects(std::uint64_t seed, Flaws flaws = Flaws::none)
        : trees_(seed, RandomTrees::Kinds::readable), flaws_(flaws) {}

    RandomTrees& random() noexcept { return trees_; }

    template <class T>
    T make() {
        T object{};
        fill(object);
        return object;
    }

private:
    void fill(bool& flag) { flag = trees_.once_in(2); }
    void fill(std::string& text) {
        text = trees_.string();
        if (flaws_ == Flaws::some && !trees_.once_in(50)) {
            // Without bytes beyond ASCII, but with some characters.
            for (char& byte : text) {
                byte = static_cast<char>(static_cast<unsigned char>(byte) & 0x7F);
            }
            text += trees_.once_in(4) ? "\xC3\xA9" : trees_.once_in(4) ? "\xF0\x9F\x99\x82" : "";
            text += trees_.once_in(4) ? "\xEE\x80\x80" : "";
        }
    }

    template <class Number>
    std::enable_if_t<std::is_floating_point_v<Number>> fill(Number& number) {
        number = trees_.number<Number>();
        if (is_flawed()) {
            using Limits = std::numeric_limits<Number>;
            number = trees_.once_in(2) ? Limits::infinity() : Limits::quiet_NaN();
        }
    }

    /// Of a long double, only what a double holds as well survives.
    void fill(long double& number) { number = trees_.number<double>(); }

    template <class Integer>
    std::enable_if_t<std::is_integral_v<Integer>> fill(Integer& integer) {
        using Limits = std::numeric_limits<Integer>;
        switch (trees_.below(4)) {
        case 0:
            integer = Limits::min();
            break;
        case 1:
            integer = Limits::max();
            break;
        default:
            unsigned long long word = 0;
            for (int i = 0; i < 4; ++i) {
                word = word << 16 | trees_.below(1u << 16);
            }
            integer = static_cast<Integer>(word >> trees_.below(64));
        }
    }

    void fill(fleet::Level& level) {
        level = static_cast<fleet::Level>(is_flawed() ? 7 : trees_.below(3));
    }

    void fill(fleet::Server& server) {
        fill(server.host);
        fill(server.port);
        fill(server.tags);
        fill(server.load);
    }

    void fill(fleet::Cluster& cluster) {
        fill(cluster.name);
        fill(cluster.servers);
        fill(cluster.levels);
    }

    /// Containers are so seldom that values end.
    void fill(Value& value) {
        switch (trees_.below(8)) {
        case 0:
            value = Null();
            break;
        case 1:
            value = make<bool>();
            break;
        case 2:
            value = make<double>();
            break;
        case 3:
            value = make<float>();
            break;
        case 4:
            value = make<long long>();
            break;
        case 5:
            value = make<std::string>();
            break;
        case 6:
            value = make<Array>();
            break;
        default:
            value = make<Object>();
        }
    }

    template <class T>
    void fill(std::optional<T>& optional) {
        if (trees_.once_in(2)) {
            optional = make<T>();
        }
    }

    template <class First, class Second>
    void fill(std::pair<First, Second>& pair) {
        fill(pair.first);
        fill(pair.second);
    }

    template <class... Types>
    void fill(std::tuple<Types...>& tuple) {
        std::apply([this](Types&... elements) { (fill(elements), ...); }, tuple);
    }

    template <class T, std::size_t Length>
    void fill(std::array<T, Length>& array) {
        for (T& element : array) {
            fill(element);
        }
    }

    template <class T>
    void fill(std::map<std::string, T>& map) {
        fill_map(map);
    }

    template <class T>
    void fill(std::unordered_map<std::string, T>& map) {
        fill_map(map);
    }

    template <class Map>
    void fill_map(Map& map) {
        for (std::size_t size = trees_.below(5); size > 0; --size) {
            map[trees_.string()] = make<typename Map::mapped_type>();
        }
    }

    /// Sequences and sets.
    template <class Container, class T = typename Container::value_type,
              class = decltype(std::declval<Container&>().insert(std::declval<Container&>().end(),
                                                                 std::declval<T>()))>
    std::enable_if_t<!std::is_same_v<Container, std::string>> fill(Container& container) {
        for (std::size_t size = trees_.below(5); size > 0; --size) {
            container.insert(container.end(), make<T>());
        }
    }

    bool is_flawed() { return flaws_ == Flaws::some && trees_.once_in(50); }

    RandomTrees trees_;
    Flaws flaws_;
};

} // namespace foundation::json::test

#endif
