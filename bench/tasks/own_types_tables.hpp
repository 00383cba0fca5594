/// @file
/// This library's tables of the structs in own_types.hpp.
#ifndef FOUNDATION_JSON_BENCH_TASKS_OWN_TYPES_TABLES_HPP
#define FOUNDATION_JSON_BENCH_TASKS_OWN_TYPES_TABLES_HPP

#include "tasks/own_structs.hpp"

#include <foundation/json/convert.hpp>

namespace foundation::json {

template <>
inline constexpr auto members<bench::Trade> = table(required("type", &bench::Trade::type),
                                                    required("seq", &bench::Trade::seq),
                                                    required("price", &bench::Trade::price),
                                                    required("qty", &bench::Trade::qty),
                                                    required("last", &bench::Trade::last),
                                                    required("sym", &bench::Trade::sym));

template <>
inline constexpr auto members<bench::Person> = table(required("id", &bench::Person::id),
                                                     required("name", &bench::Person::name),
                                                     required("email", &bench::Person::email),
                                                     required("score", &bench::Person::score),
                                                     required("active", &bench::Person::active),
                                                     required("tags", &bench::Person::tags),
                                                     required("age", &bench::Person::age));

template <>
inline constexpr auto members<bench::ShortUser> = table(
    required("id", &bench::ShortUser::id), required("screen_name", &bench::ShortUser::screen_name),
    required("followers_count", &bench::ShortUser::followers_count));

template <>
inline constexpr auto members<bench::ShortStatus> =
    table(required("id", &bench::ShortStatus::id), required("text", &bench::ShortStatus::text),
          required("created_at", &bench::ShortStatus::created_at),
          required("retweet_count", &bench::ShortStatus::retweet_count),
          required("user", &bench::ShortStatus::user));

template <>
inline constexpr auto
    members<bench::ShortStatuses> = table(required("statuses", &bench::ShortStatuses::statuses));

template <>
inline constexpr auto members<bench::Geometry> = table(required("type", &bench::Geometry::type),
                                                       required("coordinates",
                                                                &bench::Geometry::coordinates));

template <>
inline constexpr auto members<bench::Feature> =
    table(required("type", &bench::Feature::type), required("geometry", &bench::Feature::geometry));

template <>
inline constexpr auto members<bench::FeatureCollection> =
    table(required("type", &bench::FeatureCollection::type),
          required("features", &bench::FeatureCollection::features));

template <>
inline constexpr auto members<bench::Price> =
    table(required("amount", &bench::Price::amount),
          required("audienceSubCategoryId", &bench::Price::audienceSubCategoryId),
          required("seatCategoryId", &bench::Price::seatCategoryId));

template <>
inline constexpr auto members<bench::Area> = table(required("areaId", &bench::Area::areaId),
                                                   required("blockIds", &bench::Area::blockIds));

template <>
inline constexpr auto members<bench::SeatCategory> =
    table(required("areas", &bench::SeatCategory::areas),
          required("seatCategoryId", &bench::SeatCategory::seatCategoryId));

template <>
inline constexpr auto members<bench::Performance> =
    table(required("eventId", &bench::Performance::eventId),
          required("id", &bench::Performance::id), required("prices", &bench::Performance::prices),
          required("seatCategories", &bench::Performance::seatCategories),
          required("start", &bench::Performance::start),
          required("venueCode", &bench::Performance::venueCode));

template <>
inline constexpr auto members<bench::Catalogue> = table(required("performances",
                                                                 &bench::Catalogue::performances));

} // namespace foundation::json

#endif
