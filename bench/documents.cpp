// The documents to measure with: those of a folder, or generated ones.
#include "documents.hpp"

#include "tasks/statuses.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/pointer.hpp>
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace bench {
namespace {

// ---- Generated documents -------------------------------------------------------------------

const std::array<std::string_view, 24> words{
    "morning", "train", "the",    "of",      "window", "これは",          "テスト",
    "です",    "café",  "Straße", "naïve",   "москва", "привет",          "a",
    "and",     "señor", "😀",      "harbour", "\\n",    "said \\\"no\\\"", "https://example.org/a/b",
    "music",   "北京",  "light"};

void append_words(std::string& out, Sequence& sequence, std::uint64_t count) {
    out += '"';
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i != 0) {
            out += ' ';
        }
        out += words[sequence.below(words.size())];
    }
    out += '"';
}

void append_integer(std::string& out, std::uint64_t number) {
    out += std::to_string(number);
}

void append_double(std::string& out, double number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.17g", number);
    out += text.data();
}

void append_user(std::string& out, Sequence& sequence) {
    out += R"({"id":)";
    append_integer(out, sequence.below(4'000'000'000));
    out += R"(,"name":)";
    append_words(out, sequence, 2);
    out += R"(,"screen_name":"client","location":"","created_at":"Mon Mar 04 10:15:30 +0000 2024")";
    out += R"(,"utc_offset":null,"verified":false,"lang":"ja","friends_count":)";
    append_integer(out, sequence.below(5'000));
    out += R"(,"description":)";
    append_words(out, sequence, 4 + sequence.below(12));
    out += R"(,"url":null,"protected":false,"followers_count":)";
    append_integer(out, sequence.below(5'000));
    out += R"(,"profile_image_url":"https://images.example.org/profile/)";
    append_integer(out, sequence.next());
    out += R"(.png","profile_text_color":"333333","default_profile":true})";
}

void append_record(std::string& out, Sequence& sequence) {
    const std::uint64_t id = sequence.next() >> 4;
    out += R"({"id":)";
    append_integer(out, id);
    out += R"(,"id_str":")";
    append_integer(out, id);
    out += R"(","created_at":"Mon Mar 04 10:15:30 +0000 2024","text":)";
    append_words(out, sequence, 8 + sequence.below(16));
    out += R"(,"source":"<a href=\"https://example.org/client\" rel=\"nofollow\">client<\/a>")";
    out += R"(,"truncated":false,"in_reply_to_status_id":null,"in_reply_to_screen_name":null)";
    out += R"(,"user":)";
    append_user(out, sequence);
    out += R"(,"geo":null,"retweet_count":)";
    append_integer(out, sequence.below(1'000));
    out += R"(,"entities":{"hashtags":[],"urls":[],"user_mentions":[{"name":)";
    append_words(out, sequence, 1);
    out += R"(,"screen_name":"client","id":)";
    append_integer(out, sequence.below(4'000'000'000));
    out += R"(,"indices":[3,)";
    append_integer(out, 4 + sequence.below(20));
    out += R"(]}]},"favorited":false,"lang":"ja"})";
}

void append_performance(std::string& out, Sequence& sequence) {
    out += R"({"eventId":)";
    append_integer(out, 138'586'341 + sequence.below(10'000));
    out += R"(,"id":)";
    append_integer(out, 339'887'544 + sequence.below(10'000));
    out += R"(,"logo":null,"name":null,"prices":[)";
    const std::uint64_t categories = 1 + sequence.below(4);
    for (std::uint64_t i = 0; i < categories; ++i) {
        out += i == 0 ? "" : ",";
        out += R"({"amount":)";
        append_integer(out, 10'000 + 250 * sequence.below(300));
        out += R"(,"audienceSubCategoryId":337100890,"seatCategoryId":)";
        append_integer(out, 338'937'235 + sequence.below(300));
        out += '}';
    }
    out += R"(],"seatCategories":[)";
    for (std::uint64_t i = 0; i < categories; ++i) {
        out += i == 0 ? "" : ",";
        out += R"({"areas":[)";
        const std::uint64_t areas = 1 + sequence.below(8);
        for (std::uint64_t j = 0; j < areas; ++j) {
            out += j == 0 ? "" : ",";
            out += R"({"areaId":)";
            append_integer(out, 205'705'993 + sequence.below(20));
            out += R"(,"blockIds":[]})";
        }
        out += R"(],"seatCategoryId":)";
        append_integer(out, 338'937'235 + sequence.below(300));
        out += '}';
    }
    out += R"(],"seatMapImage":null,"start":)";
    append_integer(out, 1'372'701'600'000 + 3'600'000 * sequence.below(10'000));
    out += R"(,"venueCode":"GREAT_HALL"})";
}

void append_ring(std::string& out, Sequence& sequence) {
    out += '[';
    const std::uint64_t points = 20 + sequence.below(400);
    for (std::uint64_t i = 0; i < points; ++i) {
        out += i == 0 ? "[" : ",[";
        append_double(out, -140 + 90 * sequence.fraction());
        out += ',';
        append_double(out, 40 + 45 * sequence.fraction());
        out += ']';
    }
    out += ']';
}

/// Appends elements, separated by commas, until they take up that many bytes.
template <class Append>
void append_many(std::string& out, std::size_t bytes, Append append_one) {
    const std::size_t end = out.size() + bytes;
    append_one();
    while (out.size() < end) {
        out += ',';
        append_one();
    }
}

void append_records(std::string& out, Sequence& sequence, std::size_t bytes) {
    out += R"({"statuses":[)";
    append_many(out, bytes, [&] { append_record(out, sequence); });
    out += R"(],"search_metadata":{"completed_in":0.087,"count":100}})";
}

void append_catalogue(std::string& out, Sequence& sequence, std::size_t bytes) {
    std::uint64_t id = 138'586'341;
    out += R"({"events":{)";
    append_many(out, bytes / 10, [&] {
        out += '"';
        append_integer(out, ++id);
        out += R"(":{"description":null,"id":)";
        append_integer(out, id);
        out += R"(,"logo":"/images/0AAAAACE6QAAAAZ","name":)";
        append_words(out, sequence, 3);
        out += R"(,"subTopicIds":[337184269,337184283],"subjectCode":null})";
    });
    out += R"(},"performances":[)";
    append_many(out, bytes - bytes / 10, [&] { append_performance(out, sequence); });
    out += "]}";
}

void append_coordinates(std::string& out, Sequence& sequence, std::size_t bytes) {
    out += R"({"type":"FeatureCollection","features":[{"type":"Feature","geometry":)";
    out += R"({"type":"Polygon","coordinates":[)";
    append_many(out, bytes, [&] { append_ring(out, sequence); });
    out += "]}}]}";
}

void append_urls(std::string& out, Sequence& sequence, std::size_t bytes) {
    out += '[';
    append_many(out, bytes, [&] {
        out += R"({"url":"https://www.example.org/)";
        for (std::uint64_t part = 1 + sequence.below(5); part > 0; --part) {
            append_integer(out, sequence.below(1'000'000));
            out += '/';
        }
        out += R"(","image":"https://images.example.org/p/)";
        append_integer(out, sequence.next());
        out += R"(/large.png"})";
    });
    out += ']';
}

void append_small_objects(std::string& out, Sequence& sequence, std::size_t bytes) {
    out += '[';
    append_many(out, bytes, [&] {
        out += R"({"x":)";
        append_integer(out, sequence.below(1'000));
        out += R"(,"y":)";
        append_integer(out, sequence.below(1'000));
        out += R"(,"name":"p"})";
    });
    out += ']';
}

void append_scripts(std::string& out, Sequence& sequence, std::size_t bytes) {
    out += '[';
    append_many(out, bytes, [&] { append_words(out, sequence, 5 + sequence.below(60)); });
    out += ']';
}

void append_wide_records(std::string& out, Sequence& sequence, std::size_t bytes) {
    out += '[';
    append_many(out, bytes, [&] {
        for (int column = 0; column < 60; ++column) {
            out += column == 0 ? "{\"column_" : ",\"column_";
            out += static_cast<char>('0' + column / 10);
            out += static_cast<char>('0' + column % 10);
            out += "\":";
            if (column % 3 == 0) {
                append_words(out, sequence, 1);
            } else {
                append_integer(out, sequence.below(1'000'000));
            }
        }
        out += '}';
    });
    out += ']';
}

void append_unordered(std::string& out, Sequence& sequence, std::size_t bytes) {
    constexpr std::array<std::string_view, 8> cyrillic{
        "Москва", "улица", "дом", "Анна", "Сергей", "новый", "город", "Санкт-Петербург"};
    constexpr std::array<std::string_view, 10> names{"фамилия", "имя",   "отчество", "город",
                                                     "улица",   "дом",   "телефон",  "возраст",
                                                     "active",  "e-mail"};
    out += '[';
    append_many(out, bytes, [&] {
        for (const std::string_view name : names) {
            out += name == names.front() ? "{\"" : ",\"";
            out += name;
            out += "\":\"";
            for (std::uint64_t word = 1 + sequence.below(4); word > 0; --word) {
                out += cyrillic[sequence.below(cyrillic.size())];
                out += ' ';
            }
            out += '"';
        }
        out += '}';
    });
    out += ']';
}

void append_settings(std::string& out, Sequence& sequence, unsigned depth) {
    const std::string indent(4 * depth, ' ');
    for (std::uint64_t i = 0; i < 4; ++i) {
        out += i == 0 ? "\n" : ",\n";
        out += indent + "\"setting_";
        append_integer(out, i);
        out += "\": ";
        if (depth < 6) {
            out += '{';
            append_settings(out, sequence, depth + 1);
            out += '\n' + indent + '}';
        } else if (i % 2 == 0) {
            append_words(out, sequence, 1);
        } else {
            out += i == 1 ? "true" : "8080";
        }
    }
}

void append_configuration(std::string& out, Sequence& sequence, std::size_t bytes) {
    out += '[';
    append_many(out, bytes, [&] {
        out += '{';
        append_settings(out, sequence, 1);
        out += "\n}";
    });
    out += ']';
}

void append_big_integers(std::string& out, Sequence& sequence, std::size_t bytes) {
    out += '[';
    append_many(out, bytes, [&] {
        for (int i = 0; i < 20; ++i) {
            out += i == 0 ? "[" : ",";
            append_integer(out, sequence.next() >> 1);
        }
        out += ']';
    });
    out += ']';
}

using Append = void(std::string&, Sequence&, std::size_t);

Document generated(std::string name, Append append, std::size_t bytes) {
    Document document{std::move(name), {}};
    Sequence sequence;
    append(document.text, sequence, bytes);
    return document;
}

std::vector<Document> generated_documents() {
    return {generated("records", append_records, 600'000),
            generated("catalogue", append_catalogue, 1'700'000),
            generated("coordinates", append_coordinates, 2'200'000)};
}

// ---- Documents of a folder -----------------------------------------------------------------

std::vector<Document> documents_in(const std::filesystem::path& folder) {
    std::vector<Document> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".json") {
            std::ostringstream text;
            text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
            found.push_back({entry.path().stem().string(), text.str()});
        }
    }
    if (found.empty()) {
        throw std::runtime_error("no JSON document in " + folder.string());
    }
    std::sort(found.begin(), found.end(),
              [](const Document& a, const Document& b) { return a.name < b.name; });
    return found;
}

// ---- Comparison ----------------------------------------------------------------------------

bool begins_number(char byte) {
    return byte == '-' || (byte >= '0' && byte <= '9');
}

bool same_but_for_rounding(const char* a, const char* b) {
    while (*a != '\0' && *b != '\0') {
        if (begins_number(*a) && begins_number(*b)) {
            char* a_end = nullptr;
            char* b_end = nullptr;
            const double x = std::strtod(a, &a_end);
            const double y = std::strtod(b, &b_end);
            if (std::abs(x - y) > 1e-15 * std::abs(x)) {
                return false;
            }
            // A minus sign in a string need not begin a number.
            a = std::max<const char*>(a + 1, a_end);
            b = std::max<const char*>(b + 1, b_end);
        } else if (*a++ != *b++) {
            return false;
        }
    }
    return *a == *b;
}

} // namespace

const std::vector<Document>& documents() {
    static const std::vector<Document> all = std::string_view(FOUNDATION_JSON_CORPUS).empty()
                                                 ? generated_documents()
                                                 : documents_in(FOUNDATION_JSON_CORPUS);
    return all;
}

const std::vector<Document>& written_documents() {
    static const std::vector<Document> all = [] {
        std::vector<Document> result = documents();
        result.push_back(generated("URLs", append_urls, 500'000));
        result.push_back(generated("small objects", append_small_objects, 500'000));
        result.push_back(generated("scripts", append_scripts, 500'000));
        return result;
    }();
    return all;
}

const std::vector<Document>& parsed_documents() {
    static const std::vector<Document> all = [] {
        std::vector<Document> result = documents();
        result.push_back(generated("small objects", append_small_objects, 500'000));
        result.push_back(generated("scripts", append_scripts, 500'000));
        result.push_back(generated("wide records", append_wide_records, 500'000));
        result.push_back(generated("unordered", append_unordered, 500'000));
        result.push_back(generated("configuration", append_configuration, 500'000));
        result.push_back(generated("big integers", append_big_integers, 500'000));
        return result;
    }();
    return all;
}

namespace {

/// A document of the folder, or if it does not have that, another.
const Document& named_or(const char* name, const Document& other) {
    const auto found = std::find_if(documents().begin(), documents().end(),
                                    [name](const Document& d) { return d.name == name; });
    return found != documents().end() ? *found : other;
}

void append_people(std::string& out, Sequence& sequence, std::size_t count) {
    constexpr std::array<std::string_view, 4> tags{"alpha", "beta", "gamma", "delta"};
    out += '[';
    for (std::size_t i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        out += i == 0 ? R"({"id": )" : R"(, {"id": )";
        append_integer(out, 7919 * i);
        out += R"(, "name": "Some Name )" + number + R"(", "email": "user)" + number;
        out += R"(@example.org", "score": )";
        append_integer(out, sequence.below(1000));
        out += '.';
        append_integer(out, 100'000 + sequence.below(900'000));
        out += i % 2 == 0 ? R"(, "active": false, "tags": [)" : R"(, "active": true, "tags": [)";
        for (std::size_t tag = 0; tag < i % 4; ++tag) {
            out += tag == 0 ? "\"" : ", \"";
            out += tags[(i + tag) % tags.size()];
            out += '"';
        }
        out += R"(], "age": )";
        append_integer(out, 18 + sequence.below(60));
        out += '}';
    }
    out += ']';
}

} // namespace

const Document& trade_document() {
    static const Document message{"message",
                                  R"({"type":"trade","seq":1763781000016,"price":101.25,"qty":300,)"
                                  R"("last":false,"sym":"ACME.XNAS"})"};
    return message;
}

const Document& people_document() {
    static const Document people = generated("10,000 records", append_people, 10'000);
    return people;
}

const Document& coordinates_document() {
    static const Document other = generated_documents().back();
    return named_or("canada", other);
}

const Document& catalogue_document() {
    static const Document other = generated_documents()[1];
    return named_or("citm_catalog", other);
}

const Document& status_document() {
    static const Document generated = generated_documents().front();
    return named_or("twitter", generated);
}

std::string document_of_size(std::size_t bytes) {
    constexpr std::size_t part = 100'000;
    std::string text = "[";
    Sequence sequence;
    append_many(text, bytes, [&] {
        append_records(text, sequence, part);
        text += ',';
        append_catalogue(text, sequence, part);
        text += ',';
        append_coordinates(text, sequence, part);
    });
    text += ']';
    return text;
}

namespace {

namespace json = foundation::json;

/// Reads every number as a double, as the other libraries do with most of them.
json::Value read(std::string_view text) {
    json::ParseOptions options;
    options.integers = json::ParseOptions::Integers::as_double;
    return json::parse(text, options);
}

void add_content(const json::Value& value, ContentSums& sums) {
    ++sums.values;
    if (const auto* const elements = json::get_if<json::Array>(&value)) {
        for (const json::Value& element : *elements) {
            add_content(element, sums);
        }
    } else if (const auto* const members = json::get_if<json::Object>(&value)) {
        for (const auto& member : *members) {
            add_content(member.second, sums);
        }
    } else if (const auto* const text = json::get_if<std::string>(&value)) {
        sums.string_bytes += text->size();
    } else if (const auto* const number = json::get_if<double>(&value)) {
        sums.sum += *number;
    }
}

} // namespace

ContentSums content_sums(const std::string& text) {
    ContentSums sums;
    add_content(read(text), sums);
    return sums;
}

bool same_value(std::string_view a, std::string_view b) {
    const std::string one = foundation::json::serialize(read(a));
    const std::string other = foundation::json::serialize(read(b));
    return same_but_for_rounding(one.c_str(), other.c_str());
}

namespace {

/// The pointers to all values in a document that hold no others.
void add_pointers(const json::Value& value, const std::string& pointer,
                  std::vector<std::string>& pointers) {
    if (const auto* const elements = json::get_if<json::Array>(&value)) {
        for (std::size_t i = 0; i < elements->size(); ++i) {
            add_pointers((*elements)[i], pointer + '/' + std::to_string(i), pointers);
        }
    } else if (const auto* const members = json::get_if<json::Object>(&value)) {
        for (const auto& [name, member] : *members) {
            std::string escaped;
            for (const char c : name) {
                escaped += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
            }
            add_pointers(member, pointer + '/' + escaped, pointers);
        }
    } else {
        pointers.push_back(pointer);
    }
}

/// Some of them, spread evenly.
std::vector<std::string> spread(const std::vector<std::string>& pointers, std::size_t count) {
    std::vector<std::string> result;
    for (std::size_t i = 0; i < count; ++i) {
        result.push_back(pointers[(2 * i + 1) * pointers.size() / (2 * count)]);
    }
    return result;
}

json::Value operation(const char* name, const std::string& path, const json::Value& value) {
    json::Value result = json::Object{{"op", name}, {"path", path}};
    if (!json::holds<json::Undefined>(value)) {
        result["value"] = value;
    }
    return result;
}

} // namespace

Versions versions_of(const std::string& text) {
    json::Value value = read(text);
    std::vector<std::string> pointers;
    add_pointers(value, "", pointers);
    Versions versions{json::serialize(value), {}, {}};

    json::Value operations{json::Array()};
    for (const std::string& pointer : spread(pointers, 25)) {
        const json::Value content = *json::find(value, pointer);
        const std::string parent = pointer.substr(0, pointer.rfind('/'));
        const bool in_array = json::holds<json::Array>(*json::find(value, parent));
        operations.push(operation("test", pointer, content));
        operations.push(operation("add", pointer, "added"));
        operations.push(operation("remove", pointer, json::Undefined()));
        operations.push(operation(in_array ? "replace" : "add", pointer, content));
    }
    versions.operations = json::serialize(operations);

    for (const std::string& pointer : spread(pointers, 10)) {
        *json::find(value, pointer) = "changed";
    }
    versions.after = json::serialize(value);
    return versions;
}

// SplitMix64: every output is a mix of a counter's bits.
std::uint64_t Sequence::next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
}

} // namespace bench
