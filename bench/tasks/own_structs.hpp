/// @file
/// The structs of own_types.hpp, as a caller would write them.
#ifndef FOUNDATION_JSON_BENCH_TASKS_OWN_STRUCTS_HPP
#define FOUNDATION_JSON_BENCH_TASKS_OWN_STRUCTS_HPP

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// A message of 90 bytes.
struct Trade {
    std::string type;
    std::uint64_t seq = 0;
    double price = 0;
    int qty = 0;
    bool last = false;
    std::string sym;
};

/// A record of some 150 bytes.
struct Person {
    std::uint64_t id = 0;
    std::string name;
    std::string email;
    double score = 0;
    bool active = false;
    std::vector<std::string> tags;
    int age = 0;
};

/// A tenth of the members of a status.
struct ShortUser {
    std::uint64_t id = 0;
    std::string screen_name;
    int followers_count = 0;
};
struct ShortStatus {
    std::uint64_t id = 0;
    std::string text;
    std::string created_at;
    int retweet_count = 0;
    ShortUser user;
};
struct ShortStatuses {
    std::vector<ShortStatus> statuses;
};

/// Coordinates.
struct Geometry {
    std::string type;
    std::vector<std::vector<std::vector<double>>> coordinates;
};
struct Feature {
    std::string type;
    Geometry geometry;
};
struct FeatureCollection {
    std::string type;
    std::vector<Feature> features;
};

/// The performances of a catalogue, which are most of it.
struct Price {
    int amount = 0;
    int audienceSubCategoryId = 0;
    int seatCategoryId = 0;
};
struct Area {
    int areaId = 0;
    std::vector<int> blockIds;
};
struct SeatCategory {
    std::vector<Area> areas;
    int seatCategoryId = 0;
};
struct Performance {
    int eventId = 0;
    int id = 0;
    std::vector<Price> prices;
    std::vector<SeatCategory> seatCategories;
    std::int64_t start = 0;
    std::string venueCode;
};
struct Catalogue {
    std::vector<Performance> performances;
};

/// What a document of one of these types, or of std::vector<Person>, holds; by another way than
/// those that are measured.
template <class T>
T content_of(const std::string& text);

/// Whether they are equal. Numbers may differ in the last bits, as in same_value().
template <class T>
bool is_same(const T& a, const T& b);

} // namespace bench

#endif
