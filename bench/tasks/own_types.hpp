/// @file
/// Documents straight into structs of the caller, and structs to text. Contenders that can, set
/// `converts` and define `read_object` and `write_object`.
#ifndef FOUNDATION_JSON_BENCH_TASKS_OWN_TYPES_HPP
#define FOUNDATION_JSON_BENCH_TASKS_OWN_TYPES_HPP

#include "documents.hpp"
#include "tasks/family.hpp"
#include "tasks/statuses.hpp"

#include <cstdint>
#include <memory>
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

/// Documents of these types: the named one of the folder of documents, or a generated one.
const Document& trade_document();
const Document& people_document();
const Document& coordinates_document();
const Document& catalogue_document();

template <class Contender, class T>
void add_own_type(const std::string& subject, const std::string& text) {
    const auto object = std::make_shared<const T>(content_of<T>(text));
    const auto add_reading = [&](const char* task, T (*read)(const std::string&)) {
        require<Contender>(is_same(read(text), *object), task);
        add<Contender>(task, subject, [text, read](benchmark::State& state) {
            for (auto _ : state) {
                auto result = read(text);
                benchmark::DoNotOptimize(result);
            }
            state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
        });
    };
    add_reading("text to structs", Contender::template read_object<T>);
    const auto add_writing = [&](const char* task, std::string (*write)(const T&)) {
        require<Contender>(is_same(content_of<T>(write(*object)), *object), task);
        add<Contender>(task, subject, [object, write](benchmark::State& state) {
            for (auto _ : state) {
                auto result = write(*object);
                benchmark::DoNotOptimize(result);
            }
        });
    };
    if constexpr (Contender::converts) {
        add_writing("structs to text", Contender::template write_object<T>);
    }
    if constexpr (Contender::is_this_library) {
        add_reading("text to structs by value", Contender::template convert_object<T>);
        add_writing("structs to text by value", Contender::template write_object_by_value<T>);
    }
}

template <class Contender>
void add_own_types() {
    add_own_type<Contender, Trade>("message", trade_document().text);
    add_own_type<Contender, std::vector<Person>>("10,000 records", people_document().text);
    add_own_type<Contender, ShortStatuses>(status_document().name + ", a tenth",
                                           status_document().text);
    add_own_type<Contender, FeatureCollection>(coordinates_document().name,
                                               coordinates_document().text);
    add_own_type<Contender, Catalogue>(catalogue_document().name, catalogue_document().text);
}

} // namespace bench

#endif
