/// @file
/// Boost.JSON with its default memory resource: objects are hash tables that keep the order of
/// insertion; there is no pretty layout.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_BOOST_JSON_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_BOOST_JSON_HPP

#include "tasks/own_structs.hpp"
#include "tasks/statuses.hpp"

#include <boost/describe.hpp>
#include <boost/json.hpp>
#include <boost/mp11.hpp>

#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>

namespace bench {

BOOST_DESCRIBE_STRUCT(Hashtag, (), (text, indices))
BOOST_DESCRIBE_STRUCT(Mention, (), (screen_name, name, id, indices))
BOOST_DESCRIBE_STRUCT(Entities, (), (hashtags, user_mentions))
BOOST_DESCRIBE_STRUCT(User, (),
                      (id, name, screen_name, location, description, url, followers_count,
                       friends_count, created_at, utc_offset, verified, lang))
BOOST_DESCRIBE_STRUCT(Status, (),
                      (created_at, id, text, source, truncated, in_reply_to_status_id,
                       in_reply_to_screen_name, user, retweet_count, entities, lang))
BOOST_DESCRIBE_STRUCT(Statuses, (), (statuses))

BOOST_DESCRIBE_STRUCT(Trade, (), (type, seq, price, qty, last, sym))
BOOST_DESCRIBE_STRUCT(Person, (), (id, name, email, score, active, tags, age))
BOOST_DESCRIBE_STRUCT(ShortUser, (), (id, screen_name, followers_count))
BOOST_DESCRIBE_STRUCT(ShortStatus, (), (id, text, created_at, retweet_count, user))
BOOST_DESCRIBE_STRUCT(ShortStatuses, (), (statuses))
BOOST_DESCRIBE_STRUCT(Geometry, (), (type, coordinates))
BOOST_DESCRIBE_STRUCT(Feature, (), (type, geometry))
BOOST_DESCRIBE_STRUCT(FeatureCollection, (), (type, features))
BOOST_DESCRIBE_STRUCT(Price, (), (amount, audienceSubCategoryId, seatCategoryId))
BOOST_DESCRIBE_STRUCT(Area, (), (areaId, blockIds))
BOOST_DESCRIBE_STRUCT(SeatCategory, (), (areas, seatCategoryId))
BOOST_DESCRIBE_STRUCT(Performance, (), (eventId, id, prices, seatCategories, start, venueCode))
BOOST_DESCRIBE_STRUCT(Catalogue, (), (performances))

/// The library's own conversion of such a struct refuses members that the struct does not have.
template <class Struct,
          class Members = boost::describe::describe_members<Struct, boost::describe::mod_public>>
Struct tag_invoke(boost::json::value_to_tag<Struct>, const boost::json::value& value) {
    Struct result;
    const boost::json::object& object = value.as_object();
    boost::mp11::mp_for_each<Members>([&](auto member) {
        auto& target = result.*member.pointer;
        target = boost::json::value_to<std::remove_reference_t<decltype(target)>>(
            object.at(member.name));
    });
    return result;
}

} // namespace bench

namespace {

struct Contender {
    using Value = boost::json::value;
    using Text = std::string;
    static constexpr const char* name = "Boost.JSON";
    static constexpr bool has_pretty_layout = false;
    static constexpr bool is_this_library = false;
    static constexpr bool has_writer = false;
    static constexpr bool converts = true;
    static constexpr bool patches = false;
    static constexpr bool has_tokens = false;

    static Value parse(const std::string& text) { return boost::json::parse(text); }
    static Text serialize(const Value& value) { return boost::json::serialize(value); }
    static void write(std::ostream& stream, const Value& value) { stream << value; }

    static Value copy(const Value& value) { return value; }
    static bool equal(const Value& a, const Value& b) { return a == b; }

    static Value array() { return boost::json::array(); }
    static void push(Value& array, double item) { array.get_array().push_back(item); }
    static void push(Value& array, long long item) {
        array.get_array().push_back(static_cast<std::int64_t>(item));
    }
    static void push(Value& array, const std::string& item) {
        array.get_array().push_back(boost::json::string(item));
    }
    static void push(Value& array, const Value& item) { array.get_array().push_back(item); }

    static Value object() { return boost::json::object(); }
    static void insert(Value& object, const std::string& key, int number) {
        object.get_object()[key] = number;
    }

    using Node = Value;
    static std::size_t size_of_string(const Node& node) { return node.as_string().size(); }
    static double number(const Node& node) { return node.as_double(); }
    template <class Leaves>
    static void find_leaves(Node& node, Leaves& leaves) {
        if (auto* const elements = node.if_array()) {
            for (Node& element : *elements) {
                find_leaves(element, leaves);
            }
        } else if (auto* const members = node.if_object()) {
            for (auto& member : *members) {
                find_leaves(member.value(), leaves);
            }
        } else if (node.is_string()) {
            leaves.strings.push_back(&node);
        } else if (node.is_number()) {
            node = node.to_number<double>();
            leaves.numbers.push_back(&node);
        }
    }

    static std::size_t walk(const Node& node) {
        std::size_t result = 1;
        if (const auto* const elements = node.if_array()) {
            for (const Node& element : *elements) {
                result += walk(element);
            }
        } else if (const auto* const members = node.if_object()) {
            for (const auto& member : *members) {
                result += walk(member.value());
            }
        } else if (const auto* const text = node.if_string()) {
            result += text->size();
        }
        return result;
    }

    static int number(const Value& object, const std::string& key) {
        return static_cast<int>(object.get_object().find(key)->value().get_int64());
    }

    static bench::Statuses to_statuses(const Value& value) {
        return boost::json::value_to<bench::Statuses>(value);
    }
    static Value from_statuses(const bench::Statuses& statuses) {
        return boost::json::value_from(statuses);
    }

    template <class T>
    static T read_object(const std::string& text) {
        return boost::json::value_to<T>(parse(text));
    }
    template <class T>
    static std::string write_object(const T& object) {
        return boost::json::serialize(boost::json::value_from(object));
    }
};

} // namespace

#endif
