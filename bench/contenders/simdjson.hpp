/// @file
/// simdjson: a document that can only be read, of a parser that owns it; and On-Demand, which walks
/// over a text. It needs some bytes of memory behind a text, so it copies a std::string first.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_SIMDJSON_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_SIMDJSON_HPP

#include "documents.hpp"
#include "tasks/own_structs.hpp"

#include <simdjson.h>

#include <climits>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Contender {
    struct Value {
        std::unique_ptr<simdjson::dom::parser> parser;
        simdjson::dom::element root;
    };
    static constexpr const char* name = "simdjson";
    static constexpr bool is_this_library = false;
    static constexpr bool has_tokens = true;
    static constexpr bool converts = false; // it reads structs, but does not write them

    static Value parse(const std::string& text) {
        Value value{std::make_unique<simdjson::dom::parser>(), {}};
        value.root = value.parser->parse(text).value();
        return value;
    }
    static std::string serialize(const Value& value) { return simdjson::minify(value.root); }

    static bench::ContentSums walk_tokens(const std::string& text) {
        static simdjson::ondemand::parser parser; // keeps its memory, as its documentation advises
        const simdjson::padded_string padded(text);
        simdjson::ondemand::document document = parser.iterate(padded);
        bench::ContentSums sums;
        add(document.get_value().value(), sums);
        return sums;
    }

    template <class T>
    static T read_object(const std::string& text) {
        static simdjson::ondemand::parser parser;
        const simdjson::padded_string padded(text);
        simdjson::ondemand::document document = parser.iterate(padded);
        T object;
        read(object, document.get_value().value());
        return object;
    }

private:
    using Element = simdjson::ondemand::value;

    static void read(std::string& target, Element value) {
        target = std::string_view(value.get_string().value());
    }
    static void read(double& target, Element value) { target = value.get_double().value(); }
    static void read(bool& target, Element value) { target = value.get_bool().value(); }
    static void read(std::uint64_t& target, Element value) { target = value.get_uint64().value(); }
    static void read(std::int64_t& target, Element value) { target = value.get_int64().value(); }
    static void read(int& target, Element value) {
        const std::int64_t number = value.get_int64().value();
        if (number < INT_MIN || number > INT_MAX) {
            throw std::out_of_range("not an int");
        }
        target = static_cast<int>(number);
    }
    template <class T>
    static void read(std::vector<T>& target, Element value) {
        for (auto element : value.get_array()) {
            read(target.emplace_back(), element.value());
        }
    }

    /// Members in the order of the document cost one search each, however many there are between.
    template <class T>
    static void member(T& target, simdjson::ondemand::object& object, const char* name) {
        read(target, object[name].value());
    }
    static void read(bench::Trade& t, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(t.type, object, "type");
        member(t.seq, object, "seq");
        member(t.price, object, "price");
        member(t.qty, object, "qty");
        member(t.last, object, "last");
        member(t.sym, object, "sym");
    }
    static void read(bench::Person& p, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(p.id, object, "id");
        member(p.name, object, "name");
        member(p.email, object, "email");
        member(p.score, object, "score");
        member(p.active, object, "active");
        member(p.tags, object, "tags");
        member(p.age, object, "age");
    }
    static void read(bench::ShortUser& u, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(u.id, object, "id");
        member(u.screen_name, object, "screen_name");
        member(u.followers_count, object, "followers_count");
    }
    static void read(bench::ShortStatus& s, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(s.created_at, object, "created_at");
        member(s.id, object, "id");
        member(s.text, object, "text");
        member(s.user, object, "user");
        member(s.retweet_count, object, "retweet_count");
    }
    static void read(bench::ShortStatuses& s, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(s.statuses, object, "statuses");
    }
    static void read(bench::Geometry& g, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(g.type, object, "type");
        member(g.coordinates, object, "coordinates");
    }
    static void read(bench::Feature& f, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(f.type, object, "type");
        member(f.geometry, object, "geometry");
    }
    static void read(bench::FeatureCollection& f, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(f.type, object, "type");
        member(f.features, object, "features");
    }
    static void read(bench::Price& p, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(p.amount, object, "amount");
        member(p.audienceSubCategoryId, object, "audienceSubCategoryId");
        member(p.seatCategoryId, object, "seatCategoryId");
    }
    static void read(bench::Area& a, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(a.areaId, object, "areaId");
        member(a.blockIds, object, "blockIds");
    }
    static void read(bench::SeatCategory& s, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(s.areas, object, "areas");
        member(s.seatCategoryId, object, "seatCategoryId");
    }
    static void read(bench::Performance& p, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(p.eventId, object, "eventId");
        member(p.id, object, "id");
        member(p.prices, object, "prices");
        member(p.seatCategories, object, "seatCategories");
        member(p.start, object, "start");
        member(p.venueCode, object, "venueCode");
    }
    static void read(bench::Catalogue& c, Element value) {
        simdjson::ondemand::object object = value.get_object();
        member(c.performances, object, "performances");
    }

    static void add(simdjson::ondemand::value value, bench::ContentSums& sums) {
        using Type = simdjson::ondemand::json_type;
        ++sums.values;
        switch (value.type().value()) {
        case Type::array:
            for (auto element : value.get_array()) {
                add(element.value(), sums);
            }
            break;
        case Type::object:
            for (auto field : value.get_object()) {
                add(field.value().value(), sums);
            }
            break;
        case Type::number:
            sums.sum += value.get_double().value();
            break;
        case Type::string:
            sums.string_bytes += value.get_string().value().size();
            break;
        case Type::boolean:
            static_cast<void>(value.get_bool().value());
            break;
        case Type::null:
            static_cast<void>(value.is_null());
            break;
        }
    }
};

} // namespace

#endif
