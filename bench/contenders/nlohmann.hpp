/// @file
/// nlohmann::json: objects are ordered maps; dump() checks that strings are UTF-8.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_NLOHMANN_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_NLOHMANN_HPP

#include "documents.hpp"
#include "tasks/own_structs.hpp"
#include "tasks/statuses.hpp"

#include <nlohmann/json.hpp>

#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>

namespace nlohmann {

/// The library has no conversion of its own for this.
template <class T>
struct adl_serializer<std::optional<T>> {
    static void to_json(json& value, const std::optional<T>& content) {
        if (content) {
            value = *content;
        } else {
            value = nullptr;
        }
    }
    static void from_json(const json& value, std::optional<T>& content) {
        if (value.is_null()) {
            content.reset();
        } else {
            value.get_to(content.emplace());
        }
    }
};

} // namespace nlohmann

namespace bench {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Hashtag, text, indices)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Mention, screen_name, name, id, indices)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Entities, hashtags, user_mentions)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(User, id, name, screen_name, location, description, url,
                                   followers_count, friends_count, created_at, utc_offset, verified,
                                   lang)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Status, created_at, id, text, source, truncated,
                                   in_reply_to_status_id, in_reply_to_screen_name, user,
                                   retweet_count, entities, lang)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Statuses, statuses)

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Trade, type, seq, price, qty, last, sym)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Person, id, name, email, score, active, tags, age)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ShortUser, id, screen_name, followers_count)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ShortStatus, id, text, created_at, retweet_count, user)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ShortStatuses, statuses)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Geometry, type, coordinates)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Feature, type, geometry)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(FeatureCollection, type, features)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Price, amount, audienceSubCategoryId, seatCategoryId)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Area, areaId, blockIds)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SeatCategory, areas, seatCategoryId)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Performance, eventId, id, prices, seatCategories, start,
                                   venueCode)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Catalogue, performances)

} // namespace bench

namespace {

struct Contender {
    using Value = nlohmann::json;
    using Text = std::string;
    static constexpr const char* name = "nlohmann";
    static constexpr bool has_pretty_layout = true;
    static constexpr bool is_this_library = false;
    static constexpr bool has_writer = false;
    static constexpr bool converts = true;
    static constexpr bool patches = true;
    static constexpr bool has_tokens = true;

    /// Takes the tokens of a text.
    struct Walk : nlohmann::json_sax<nlohmann::json> {
        bench::ContentSums sums;

        bool count() { return ++sums.values != 0; }
        bool add(double number) {
            sums.sum += number;
            return count();
        }
        bool null() override { return count(); }
        bool boolean(bool) override { return count(); }
        bool number_integer(number_integer_t number) override {
            return add(static_cast<double>(number));
        }
        bool number_unsigned(number_unsigned_t number) override {
            return add(static_cast<double>(number));
        }
        bool number_float(number_float_t number, const string_t&) override { return add(number); }
        bool string(string_t& text) override {
            sums.string_bytes += text.size();
            return count();
        }
        bool binary(binary_t&) override { return false; }
        bool start_object(std::size_t) override { return count(); }
        bool key(string_t&) override { return true; }
        bool end_object() override { return true; }
        bool start_array(std::size_t) override { return count(); }
        bool end_array() override { return true; }
        bool parse_error(std::size_t, const std::string&,
                         const nlohmann::detail::exception&) override {
            return false;
        }
    };
    static bench::ContentSums walk_tokens(const std::string& text) {
        Walk walk;
        if (!Value::sax_parse(text, &walk)) {
            throw std::runtime_error("nlohmann cannot read the text");
        }
        return walk.sums;
    }

    static Value parse(const std::string& text) { return Value::parse(text); }
    static Text serialize(const Value& value) { return value.dump(); }
    static Text pretty_print(const Value& value) { return value.dump(4); }
    static void write(std::ostream& stream, const Value& value) { stream << value; }

    static Value copy(const Value& value) { return value; }
    static bool equal(const Value& a, const Value& b) { return a == b; }

    static void patch(Value& value, const Value& operations) { value = value.patch(operations); }
    static Value diff(const Value& from, const Value& to) { return Value::diff(from, to); }

    static Value array() { return Value::array(); }
    template <class Item>
    static void push(Value& array, const Item& item) {
        array.push_back(item);
    }

    static Value object() { return Value::object(); }
    static void insert(Value& object, const std::string& key, int number) { object[key] = number; }

    using Node = Value;
    static std::size_t size_of_string(const Node& node) {
        return node.get_ref<const std::string&>().size();
    }
    static double number(const Node& node) { return node.get_ref<const double&>(); }
    template <class Leaves>
    static void find_leaves(Node& node, Leaves& leaves) {
        if (node.is_structured()) {
            for (Node& child : node) {
                find_leaves(child, leaves);
            }
        } else if (node.is_string()) {
            leaves.strings.push_back(&node);
        } else if (node.is_number()) {
            node = node.get<double>();
            leaves.numbers.push_back(&node);
        }
    }

    static std::size_t walk(const Node& node) {
        std::size_t result = 1;
        if (const auto* const elements = node.get_ptr<const Node::array_t*>()) {
            for (const Node& element : *elements) {
                result += walk(element);
            }
        } else if (const auto* const members = node.get_ptr<const Node::object_t*>()) {
            for (const auto& member : *members) {
                result += walk(member.second);
            }
        } else if (node.is_string()) {
            result += size_of_string(node);
        }
        return result;
    }

    static int number(const Value& object, const std::string& key) {
        return object.find(key)->get<int>();
    }

    static bench::Statuses to_statuses(const Value& value) { return value.get<bench::Statuses>(); }
    static Value from_statuses(const bench::Statuses& statuses) { return statuses; }

    template <class T>
    static T read_object(const std::string& text) {
        return Value::parse(text).get<T>();
    }
    template <class T>
    static std::string write_object(const T& object) {
        return Value(object).dump();
    }
};

} // namespace

#endif
