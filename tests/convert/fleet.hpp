/// @file
/// A caller's own types, in a namespace of their own, and their tables.
#ifndef FOUNDATION_JSON_TESTS_CONVERT_FLEET_HPP
#define FOUNDATION_JSON_TESTS_CONVERT_FLEET_HPP

#include <foundation/json/convert.hpp>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace fleet {

enum class Level { low, middle, high };

struct Server {
    std::string host;
    int port = 8080;
    std::vector<std::string> tags;
    std::optional<double> load;

    bool operator==(const Server& other) const {
        return host == other.host && port == other.port && tags == other.tags && load == other.load;
    }
};

struct Cluster {
    std::string name;
    std::vector<Server> servers;
    std::map<std::string, std::vector<Level>> levels;

    bool operator==(const Cluster& other) const {
        return name == other.name && servers == other.servers && levels == other.levels;
    }
};

} // namespace fleet

template <>
inline constexpr auto foundation::json::enumerators<fleet::Level> =
    std::array{std::pair{fleet::Level::low, "low"}, std::pair{fleet::Level::middle, "middle"},
               std::pair{fleet::Level::high, "high"}, std::pair{fleet::Level::high, "top"}};

template <>
inline constexpr auto foundation::json::members<fleet::Server> =
    std::tuple(required("host", &fleet::Server::host), defaulted("port", &fleet::Server::port),
               defaulted("tags", &fleet::Server::tags), defaulted("load", &fleet::Server::load));

template <>
inline constexpr auto foundation::json::members<fleet::Cluster> = std::tuple(
    required("name", &fleet::Cluster::name), defaulted("servers", &fleet::Cluster::servers),
    defaulted("levels", &fleet::Cluster::levels));

#endif
