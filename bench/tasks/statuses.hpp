/// @file
/// The structs of the conversions, as a caller would write them.
#ifndef FOUNDATION_JSON_BENCH_TASKS_STATUSES_HPP
#define FOUNDATION_JSON_BENCH_TASKS_STATUSES_HPP

#include "documents.hpp"

#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace bench {

struct Hashtag {
    std::string text;
    std::vector<int> indices;
};

struct Mention {
    std::string screen_name;
    std::string name;
    unsigned long long id = 0;
    std::vector<int> indices;
};

struct Entities {
    std::vector<Hashtag> hashtags;
    std::vector<Mention> user_mentions;
};

struct User {
    unsigned long long id = 0;
    std::string name;
    std::string screen_name;
    std::string location;
    std::string description;
    std::optional<std::string> url;
    int followers_count = 0;
    int friends_count = 0;
    std::string created_at;
    std::optional<int> utc_offset;
    bool verified = false;
    std::string lang;
};

struct Status {
    std::string created_at;
    unsigned long long id = 0;
    std::string text;
    std::string source;
    bool truncated = false;
    std::optional<unsigned long long> in_reply_to_status_id;
    std::optional<std::string> in_reply_to_screen_name;
    User user;
    double retweet_count = 0;
    Entities entities;
    std::string lang;
};

struct Statuses {
    std::vector<Status> statuses;
};

/// A document of statuses: "twitter" if the folder of documents has it, else one that is generated,
/// with the members that the structs have and half as many that they do not.
const Document& status_document();

inline bool operator==(const Hashtag& a, const Hashtag& b) {
    return std::tie(a.text, a.indices) == std::tie(b.text, b.indices);
}

inline bool operator==(const Mention& a, const Mention& b) {
    return std::tie(a.screen_name, a.name, a.id, a.indices) ==
           std::tie(b.screen_name, b.name, b.id, b.indices);
}

inline bool operator==(const Entities& a, const Entities& b) {
    return std::tie(a.hashtags, a.user_mentions) == std::tie(b.hashtags, b.user_mentions);
}

inline bool operator==(const User& a, const User& b) {
    return std::tie(a.id, a.name, a.screen_name, a.location, a.description, a.url,
                    a.followers_count, a.friends_count, a.created_at, a.utc_offset, a.verified,
                    a.lang) == std::tie(b.id, b.name, b.screen_name, b.location, b.description,
                                        b.url, b.followers_count, b.friends_count, b.created_at,
                                        b.utc_offset, b.verified, b.lang);
}

inline bool operator==(const Status& a, const Status& b) {
    return std::tie(a.created_at, a.id, a.text, a.source, a.truncated, a.in_reply_to_status_id,
                    a.in_reply_to_screen_name, a.user, a.retweet_count, a.entities, a.lang) ==
           std::tie(b.created_at, b.id, b.text, b.source, b.truncated, b.in_reply_to_status_id,
                    b.in_reply_to_screen_name, b.user, b.retweet_count, b.entities, b.lang);
}

inline bool operator==(const Statuses& a, const Statuses& b) {
    return a.statuses == b.statuses;
}

} // namespace bench

#endif
