/// @file
/// This library, with its parser.
///
/// Every header of this folder defines `Contender`, with the same members, in an unnamed namespace,
/// since each source includes only one of them.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_FOUNDATION_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_FOUNDATION_HPP

#include "documents.hpp"
#include "tasks/own_types_tables.hpp"
#include "tasks/records.hpp"
#include "tasks/statuses.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
// An older revision, to be compared with this one, may not have them.
#if __has_include(<foundation/json/write.hpp>)
#include <foundation/json/write.hpp>
#define FOUNDATION_JSON_BENCH_WRITE
#endif
#if __has_include(<foundation/json/records.hpp>)
#include <foundation/json/reader.hpp>
#include <foundation/json/records.hpp>
#define FOUNDATION_JSON_BENCH_TOKENS
#endif
#if __has_include(<foundation/json/read.hpp>)
#include <foundation/json/read.hpp>
#define FOUNDATION_JSON_BENCH_READ
#endif
#if __has_include(<foundation/json/write_types.hpp>)
#include <foundation/json/write_types.hpp>
#define FOUNDATION_JSON_BENCH_WRITE_TYPES
#endif
#if __has_include(<foundation/json/patch.hpp>)
#include <foundation/json/patch.hpp>
#define FOUNDATION_JSON_BENCH_PATCH
#endif

#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

template <>
inline constexpr auto foundation::json::members<bench::Hashtag> =
    table(required("text", &bench::Hashtag::text), required("indices", &bench::Hashtag::indices));

template <>
inline constexpr auto foundation::json::members<bench::Mention> = table(
    required("screen_name", &bench::Mention::screen_name), required("name", &bench::Mention::name),
    required("id", &bench::Mention::id), required("indices", &bench::Mention::indices));

template <>
inline constexpr auto foundation::json::members<bench::Entities> =
    table(required("hashtags", &bench::Entities::hashtags),
          required("user_mentions", &bench::Entities::user_mentions));

template <>
inline constexpr auto foundation::json::members<bench::User> =
    table(required("id", &bench::User::id), required("name", &bench::User::name),
          required("screen_name", &bench::User::screen_name),
          required("location", &bench::User::location),
          required("description", &bench::User::description), required("url", &bench::User::url),
          required("followers_count", &bench::User::followers_count),
          required("friends_count", &bench::User::friends_count),
          required("created_at", &bench::User::created_at),
          required("utc_offset", &bench::User::utc_offset),
          required("verified", &bench::User::verified), required("lang", &bench::User::lang));

template <>
inline constexpr auto foundation::json::members<bench::Status> =
    table(required("created_at", &bench::Status::created_at), required("id", &bench::Status::id),
          required("text", &bench::Status::text), required("source", &bench::Status::source),
          required("truncated", &bench::Status::truncated),
          required("in_reply_to_status_id", &bench::Status::in_reply_to_status_id),
          required("in_reply_to_screen_name", &bench::Status::in_reply_to_screen_name),
          required("user", &bench::Status::user),
          required("retweet_count", &bench::Status::retweet_count),
          required("entities", &bench::Status::entities), required("lang", &bench::Status::lang));

template <>
inline constexpr auto foundation::json::members<bench::Statuses> =
    table(required("statuses", &bench::Statuses::statuses));

namespace {

// ---- By hand -------------------------------------------------------------------------------

inline void read(std::string& target, const foundation::json::Value& value) {
    target = foundation::json::get<std::string>(value);
}

inline void read(bool& target, const foundation::json::Value& value) {
    target = foundation::json::get<bool>(value);
}

template <class Number>
std::enable_if_t<std::is_arithmetic_v<Number>> read(Number& target,
                                                    const foundation::json::Value& value) {
    target = foundation::json::number<Number>(value);
}

template <class T>
void read(std::vector<T>& target, const foundation::json::Value& value);

template <class T>
void read(std::optional<T>& target, const foundation::json::Value& value) {
    if (!foundation::json::holds<foundation::json::Null>(value)) {
        read(target.emplace(), value);
    }
}

inline void read(bench::Hashtag& target, const foundation::json::Value& value) {
    const auto& members = foundation::json::get<foundation::json::Object>(value);
    read(target.text, members.at("text"));
    read(target.indices, members.at("indices"));
}

inline void read(bench::Mention& target, const foundation::json::Value& value) {
    const auto& members = foundation::json::get<foundation::json::Object>(value);
    read(target.screen_name, members.at("screen_name"));
    read(target.name, members.at("name"));
    read(target.id, members.at("id"));
    read(target.indices, members.at("indices"));
}

inline void read(bench::Entities& target, const foundation::json::Value& value) {
    const auto& members = foundation::json::get<foundation::json::Object>(value);
    read(target.hashtags, members.at("hashtags"));
    read(target.user_mentions, members.at("user_mentions"));
}

inline void read(bench::User& target, const foundation::json::Value& value) {
    const auto& members = foundation::json::get<foundation::json::Object>(value);
    read(target.id, members.at("id"));
    read(target.name, members.at("name"));
    read(target.screen_name, members.at("screen_name"));
    read(target.location, members.at("location"));
    read(target.description, members.at("description"));
    read(target.url, members.at("url"));
    read(target.followers_count, members.at("followers_count"));
    read(target.friends_count, members.at("friends_count"));
    read(target.created_at, members.at("created_at"));
    read(target.utc_offset, members.at("utc_offset"));
    read(target.verified, members.at("verified"));
    read(target.lang, members.at("lang"));
}

inline void read(bench::Status& target, const foundation::json::Value& value) {
    const auto& members = foundation::json::get<foundation::json::Object>(value);
    read(target.created_at, members.at("created_at"));
    read(target.id, members.at("id"));
    read(target.text, members.at("text"));
    read(target.source, members.at("source"));
    read(target.truncated, members.at("truncated"));
    read(target.in_reply_to_status_id, members.at("in_reply_to_status_id"));
    read(target.in_reply_to_screen_name, members.at("in_reply_to_screen_name"));
    read(target.user, members.at("user"));
    read(target.retweet_count, members.at("retweet_count"));
    read(target.entities, members.at("entities"));
    read(target.lang, members.at("lang"));
}

inline void read(bench::Statuses& target, const foundation::json::Value& value) {
    const auto& members = foundation::json::get<foundation::json::Object>(value);
    read(target.statuses, members.at("statuses"));
}

template <class T>
void read(std::vector<T>& target, const foundation::json::Value& value) {
    const auto& elements = foundation::json::get<foundation::json::Array>(value);
    target.reserve(elements.size());
    for (const foundation::json::Value& element : elements) {
        read(target.emplace_back(), element);
    }
}

struct Contender {
    using Value = foundation::json::Value;
    using Text = std::string;
    static constexpr const char* name = "foundation::json";
    /// Whether there is a pretty_print() below.
    static constexpr bool has_pretty_layout = true;
    /// Whether to measure the functions that other libraries do not have, too.
    static constexpr bool is_this_library = true;
    /// Whether there are to_statuses() and from_statuses() below.
    static constexpr bool converts = true;
    /// Whether there are patch() and diff() below.
    static constexpr bool patches = true;

    static Value parse(const std::string& text) { return foundation::json::parse(text); }
    static Text serialize(const Value& value) { return foundation::json::serialize(value); }
    static Text pretty_print(const Value& value) { return foundation::json::pretty_print(value); }
    static void write(std::ostream& stream, const Value& value) {
        foundation::json::Serializer().write(stream, value);
    }

#if defined(FOUNDATION_JSON_BENCH_TOKENS)
    /// Whether there is a walk_tokens() below and, for this library, a read_lines().
    static constexpr bool has_tokens = true;

    static bench::ContentSums walk_tokens(const std::string& text) {
        using foundation::json::Token;
        bench::ContentSums sums;
        foundation::json::Reader reader(text);
        for (;;) {
            switch (reader.next()) {
            case Token::string:
                sums.string_bytes += reader.string().size();
                ++sums.values;
                break;
            case Token::number:
                sums.sum += reader.number<double>();
                ++sums.values;
                break;
            case Token::begin_array:
            case Token::begin_object:
            case Token::boolean:
            case Token::null:
                ++sums.values;
                break;
            case Token::end:
                return sums;
            default:
                break;
            }
        }
    }

    static std::size_t read_lines(std::istream& stream) {
        foundation::json::Records<Value> records(stream);
        std::size_t count = 0;
        for (Value value; records.next(value);) {
            ++count;
        }
        return count;
    }
#else
    static constexpr bool has_tokens = false;
#endif

#if defined(FOUNDATION_JSON_BENCH_WRITE)
    static constexpr bool has_writer = true;
    static Text write_text(const Value& value) {
        return foundation::json::write(value);
    }
    static Text write_indented(const Value& value) {
        return foundation::json::write(value, foundation::json::WriteOptions::indented(4));
    }
    static Text write_records(const std::vector<bench::Record>& records) {
        Text text;
        foundation::json::Writer writer(text);
        writer.begin_array();
        for (const bench::Record& record : records) {
            writer.begin_object();
            writer.name("id").value(record.id);
            writer.name("name").value(record.name);
            writer.name("price").value(record.price);
            writer.name("paid").value(record.paid);
            writer.name("timestamp").value(record.timestamp);
            writer.name("coordinates").begin_array();
            for (const double coordinate : record.coordinates) {
                writer.value(coordinate);
            }
            writer.end().end();
        }
        writer.end();
        return text;
    }
#else
    static constexpr bool has_writer = false;
    static Text write_text(const Value& value) {
        return serialize(value);
    }
    static Text write_indented(const Value& value) {
        return pretty_print(value);
    }
#endif

    static Value copy(const Value& value) {
        return value;
    }
    static bool equal(const Value& a, const Value& b) {
        return a == b;
    }
    static bool less(const Value& a, const Value& b) {
        return a < b;
    }

#if defined(FOUNDATION_JSON_BENCH_PATCH)
    /// Changes the value by all operations, or by none of them.
    static void patch(Value& value, const Value& operations) {
        foundation::json::patch(value, operations);
    }
    static Value diff(const Value& from, const Value& to) {
        return foundation::json::diff(from, to);
    }
#endif

    static Value array() {
        return std::vector<Value>{};
    }
    template <class Item>
    static void push(Value& array, const Item& item) {
        array.push(item);
    }

    static Value object() {
        return std::map<std::string, Value>{};
    }
    static void insert(Value& object, const std::string& key, int number) {
        object[key] = number;
    }

    using Node = Value;
    static std::size_t size_of_string(const Node& node) {
        return foundation::json::get<std::string>(node).size();
    }
    static double number(const Node& node) {
        return foundation::json::get<double>(node);
    }
    template <class Leaves>
    static void find_leaves(Node& node, Leaves& leaves) {
        using namespace foundation::json;
        switch (kind_of(node)) {
        case Kind::array:
            for (Node& element : get<Array>(node)) {
                find_leaves(element, leaves);
            }
            break;
        case Kind::object:
            for (auto& member : get<Object>(node)) {
                find_leaves(member.second, leaves);
            }
            break;
        case Kind::string:
            leaves.strings.push_back(&node);
            break;
        case Kind::int64:
        case Kind::uint64:
            node = foundation::json::number<double>(node);
            [[fallthrough]];
        case Kind::number:
            leaves.numbers.push_back(&node);
            break;
        default:
            break;
        }
    }

    /// Goes to every value. Returns their number, plus the bytes of all strings.
    static std::size_t walk(const Node& node) {
        using namespace foundation::json;
        std::size_t result = 1;
        if (const auto* const elements = get_if<Array>(&node)) {
            for (const Node& element : *elements) {
                result += walk(element);
            }
        } else if (const auto* const members = get_if<Object>(&node)) {
            for (const auto& member : *members) {
                result += walk(member.second);
            }
        } else if (const auto* const text = get_if<std::string>(&node)) {
            result += text->size();
        }
        return result;
    }

    static int number(const Value& object, const std::string& key) {
        return int(object[key]);
    }

    static bench::Statuses to_statuses(const Value& value) {
        return foundation::json::to<bench::Statuses>(value);
    }
    static Value from_statuses(const bench::Statuses& statuses) {
        return foundation::json::from(statuses);
    }
    /// Without a value between, but in an older revision.
    template <class T>
    static T read_object(const std::string& text) {
#ifdef FOUNDATION_JSON_BENCH_READ
        return foundation::json::read<T>(text);
#else
        return convert_object<T>(text);
#endif
    }
    template <class T>
    static std::string write_object(const T& object) {
#ifdef FOUNDATION_JSON_BENCH_WRITE_TYPES
        return foundation::json::write(object);
#else
        return write_object_by_value(object);
#endif
    }

    /// Only for this library: by way of a value.
    template <class T>
    static T convert_object(const std::string& text) {
        return foundation::json::to<T>(parse(text));
    }
    template <class T>
    static std::string write_object_by_value(const T& object) {
        return serialize(foundation::json::from(object));
    }

    /// Only for this library: without a value between, but in an older revision.
    static bench::Statuses read_statuses(const std::string& text) {
#ifdef FOUNDATION_JSON_BENCH_READ
        return foundation::json::read<bench::Statuses>(text);
#else
        return to_statuses(parse(text));
#endif
    }

    /// Likewise.
    static Text text_of_statuses(const bench::Statuses& statuses) {
#ifdef FOUNDATION_JSON_BENCH_WRITE_TYPES
        return foundation::json::write(statuses);
#else
        return serialize(from_statuses(statuses));
#endif
    }

    /// Only for this library: the conversion as a caller without tables would write it.
    static bench::Statuses to_statuses_by_hand(const Value& value) {
        bench::Statuses statuses;
        read(statuses, value);
        return statuses;
    }
};

} // namespace

#endif
