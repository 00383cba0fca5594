// The snippets of docs/own_types.md and of convert.hpp.
#include "snippet.hpp"

#include <foundation/json/chrono.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/read.hpp>
#include <foundation/json/records.hpp>
#include <foundation/json/write.hpp>

#include <chrono>
#include <cstddef>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using namespace foundation::json;

// A table reads best one member to a line.
// clang-format off
//! [a table]
struct Server {
    std::string host;
    int port = 8080;
    std::vector<std::string> tags;
};

template <>
inline constexpr auto foundation::json::members<Server> = table(
    required("host", &Server::host),
    defaulted("port", &Server::port),
    defaulted("tags", &Server::tags));
//! [a table]

//! [names]
enum class Level { low, high };

template <>
inline constexpr auto foundation::json::enumerators<Level> = table<Level>({
    {Level::low, "low"},
    {Level::high, "high"}});
//! [names]

//! [within each other]
struct Cluster {
    std::string name;
    Level level = Level::low;
    std::vector<Server> servers;
    std::map<std::string, std::pair<double, double>> places;
    std::optional<std::string> note;
};

template <>
inline constexpr auto foundation::json::members<Cluster> = table(
    required("name", &Cluster::name),
    defaulted("level", &Cluster::level),
    required("servers", &Cluster::servers),
    defaulted("places", &Cluster::places),
    defaulted("note", &Cluster::note));
//! [within each other]

//! [a class without a default]
class Uuid {
public:
    explicit Uuid(std::string text) : text_(std::move(text)) {
        if (text_.size() != 36) {
            throw std::invalid_argument('"' + text_ + "\" is no UUID");
        }
    }
    const std::string& text() const { return text_; }

private:
    std::string text_;
};
//! [a class without a default]

//! [a representation]
template <>
struct foundation::json::representation<Uuid> {
    static std::string to(const Uuid& id) { return id.text(); }
    static Uuid from(const std::string& text) { return Uuid(text); }
};
//! [a representation]

//! [getters]
class Rectangle {
public:
    Rectangle(double width, double height) : width_(width), height_(height) {}
    double width() const { return width_; }
    double height() const { return height_; }

private:
    double width_;
    double height_;
};

struct RectangleInJson {
    double width = 0;
    double height = 0;
};

template <>
inline constexpr auto foundation::json::members<RectangleInJson> = table(
    required("width", &RectangleInJson::width),
    required("height", &RectangleInJson::height));

template <>
struct foundation::json::representation<Rectangle> {
    static RectangleInJson to(const Rectangle& r) { return {r.width(), r.height()}; }
    static Rectangle from(const RectangleInJson& r) { return {r.width, r.height}; }
};
//! [getters]

//! [alternatives]
struct Circle {
    double radius = 0;
};

struct Square {
    double side = 0;
};

template <>
inline constexpr auto foundation::json::members<Circle> = table(
    required("radius", &Circle::radius));

template <>
inline constexpr auto foundation::json::members<Square> = table(
    required("side", &Square::side));
//! [alternatives]

//! [a tag]
using Shape = std::variant<Circle, Square>; // {"type":"circle","radius":2} is a Circle

template <>
inline constexpr auto foundation::json::alternatives<Shape> = tagged(
    "type", {"circle", "square"});
//! [a tag]

//! [checked members]
struct Listener {
    int port = 8080;
    std::string path = "/";
};

inline std::string check_path(const std::string& path) {
    return path.rfind('/', 0) == 0 ? "" : '"' + path + "\" does not begin with /";
}

template <>
inline constexpr auto foundation::json::members<Listener> = table(
    required("port", &Listener::port, in_range(1, 65535)),
    defaulted("path", &Listener::path, &check_path));
//! [checked members]

//! [times]
struct Event {
    std::chrono::system_clock::time_point at; // "2026-11-22T08:40:00.25Z"
    std::chrono::milliseconds took{};         // 1500
};
//! [times]

template <>
inline constexpr auto foundation::json::members<Event> = table(
    required("at", &Event::at),
    required("took", &Event::took));

//! [a base]
struct Secured : Server {
    std::string certificate;
};

template <>
inline constexpr auto foundation::json::members<Secured> = table(
    members<Server>,
    required("certificate", &Secured::certificate));
//! [a base]

//! [a template]
template <class T>
struct Range {
    T low{};
    T high{};
};

template <class T>
inline constexpr auto foundation::json::members<Range<T>> = table(
    required("low", &Range<T>::low),
    required("high", &Range<T>::high));
//! [a template]

//! [private members]
class Account {
public:
    const std::string& owner() const { return owner_; }

private:
    friend struct AccountTable;

    std::string owner_;
    long long balance_ = 0;
};

struct AccountTable {
    static constexpr auto members = table(
        required("owner", &Account::owner_),
        defaulted("balance", &Account::balance_));
};

template <>
inline constexpr auto foundation::json::members<Account> = AccountTable::members;
//! [private members]

//! [another namespace]
namespace shop {
struct Price {
    double amount = 0;
    std::string currency;
};
} // namespace shop

template <>
inline constexpr auto foundation::json::members<shop::Price> = table(
    required("amount", &shop::Price::amount),
    required("currency", &shop::Price::currency));
//! [another namespace]

//! [a default within]
struct Site {
    Server main{"localhost", 80, {}};
    Server admin{"localhost", 81, {}};
};

template <>
inline constexpr auto foundation::json::members<Site> = table(
    defaulted("main", &Site::main),
    defaulted("admin", &Site::admin));
//! [a default within]
// clang-format on

//! [a check]
Cluster read_cluster(const Value& value) {
    auto cluster = to<Cluster>(value);
    for (std::size_t i = 0; i < cluster.servers.size(); ++i) {
        const int port = cluster.servers[i].port;
        if (port < 1 || port > 49151) {
            throw ConversionError("/servers/" + std::to_string(i) + "/port",
                                  std::to_string(port) + " is not within 1 to 49151");
        }
    }
    return cluster;
}
//! [a check]

namespace {

Value some_server() {
    return Object{{"host", "example.org"}, {"tags", Array{"a", "b"}}};
}

} // namespace

int main() {
    snippet("there and back");
    {
        const Value value = some_server();
        //! [there and back]
        Server server = to<Server>(value);                      // a whole object, or an exception
        std::cout << server.host << ' ' << server.port << '\n'; // -> example.org 8080
        server.port = 443;
        const Value again = from(server);
        std::cout << serialize(again) << '\n';
        // ->
        // {"host":"example.org","port":443,"tags":["a","b"]}
        //! [there and back]
    }

    snippet("use");
    {
        const Value value = some_server();
        const Value config = Object{{"server", value}};
        //! [use]
        Server server = to<Server>(value);                // a whole object, or ConversionError
        int port = to_or(config, "/server/port", 8080);   // a fallback for what is missing
        Value copy = from(server);                        // {"host":...,"port":...,"tags":[...]}
        const Value* tags = find(config, "/server/tags"); // null where there is nothing
        //! [use]
        std::cout << port << ' ' << serialize(copy) << ' ' << serialize(*tags) << '\n';
        try {
            Cluster cluster;
            cluster.servers = {{"a", 80, {}}, {"b", 65535, {}}};
            read_cluster(from(cluster));
        } catch (const ConversionError& error) {
            std::cout << error.what() << '\n';
        }
        std::cout << serialize(from(Range<int>{1, 2})) << '\n'
                  << serialize(from(Secured{{"h", 1, {}}, "c"})) << '\n'
                  << serialize(from(to<Account>(Value(Object{{"owner", "Ada"}})))) << '\n'
                  << to<Account>(Value(Object{{"owner", "Ada"}})).owner() << '\n'
                  << serialize(from(shop::Price{1.5, "EUR"})) << '\n';
    }

    snippet("read within each other");
    {
        //! [read within each other]
        const Value value =
            Object{{"name", "main"},
                   {"servers", Array{Object{{"host", "a"}}, Object{{"host", "b"}, {"port", 81}}}},
                   {"places", Object{{"north", Array{0.5, 1}}}},
                   {"level", "high"}};
        const Cluster cluster = to<Cluster>(value);
        std::cout << cluster.servers[1].port << ' ' << cluster.places.at("north").second << ' '
                  << cluster.note.value_or("no note") << '\n'; // -> 81 1 no note
        //! [read within each other]
    }

    snippet("errors");
    {
        //! [errors]
        Value server = Object{{"host", "example.org"}, {"port", 8080.5}};
        Value cluster = Object{{"name", "main"}, {"servers", Array{server}}};
        const auto show = [&] {
            try {
                to<Cluster>(cluster, {ConvertOptions::UnknownMembers::error});
            } catch (const ConversionError& error) {
                std::cout << error.what() << '\n';
            }
        };
        show();
        *find(cluster, "/servers/0/port") = "8080";
        show();
        *find(cluster, "/servers/0") = Object{{"hots", "example.org"}};
        show();
        *find(cluster, "/servers/0") = Object();
        show();
        cluster["servers"] = Array();
        cluster["level"] = "medium";
        show();
        cluster["level"] = "low";
        cluster["places"] = Object{{"north/south", Array{1}}};
        show();
        //! [errors]
    }

    snippet("one at a time");
    {
        //! [one at a time]
        const Value config = Object{{"server", Object{{"port", 443}, {"user", Null()}}}};
        const int port = to<int>(config, "/server/port");
        const std::string host = to_or(config, "/server/host", "localhost");
        const std::string user = to_or(config, "/server/user", "nobody");
        const auto timeout = to<std::optional<double>>(config, "/server/timeout");
        std::cout << port << ' ' << host << ' ' << user << ' ' << timeout.has_value() << '\n';
        // ->
        // 443 localhost nobody 0
        //! [one at a time]
    }

    snippet("find");
    {
        //! [find]
        Value config = Object{{"servers", Array{Object{{"host", "a"}}}}};
        if (Value* const host = find(config, "/servers/0/host")) {
            *host = "b";
        }
        std::cout << serialize(config) << ' ' << (find(config, "/servers/7") == nullptr) << '\n';
        // ->
        // {"servers":[{"host":"b"}]} 1
        //! [find]
    }

    snippet("read a default within");
    {
        //! [read a default within]
        const Site site = to<Site>(Value(Object{{"admin", Object{{"host", "admin.example.org"}}}}));
        std::cout << site.admin.host << ' ' << site.admin.port << '\n';
        // ->
        // admin.example.org 81
        //! [read a default within]
    }

    snippet("straight from text");
    {
        //! [straight from text]
        const auto server = read<Server>(R"({"host": "example.org", "tags": ["a", "b"]})");
        std::cout << server.host << ' ' << server.port << ' ' << server.tags.size() << '\n';
        // ->
        // example.org 8080 2
        //! [straight from text]
    }

    snippet("error in a file");
    {
        //! [error in a file]
        try {
            const auto servers = read_file<std::vector<Server>>("servers_wrong.json");
        } catch (const ReadError& error) { // a ConversionError
            std::cout << describe(error);
            // ->
            // servers_wrong.json:3:33: at /1/port: "81" is a string, not a number
            //   {"host": "b.example", "port": "81"}
            //                                 ^
        }
        //! [error in a file]
    }

    snippet("several errors in a file");
    {
        //! [several errors in a file]
        ReadOptions options;
        options.unknown_members = ConvertOptions::UnknownMembers::error;
        options.max_errors = 20;
        try {
            const auto servers = read_file<std::vector<Server>>("servers_bad.json", options);
        } catch (const ReadError& error) {
            std::cout << error.what() << '\n';
        }
        //! [several errors in a file]
    }

    snippet("records of a type");
    {
        std::istringstream stream(R"({"host": "a", "port": 1}
{"host": "b", "port": "2"}
{"host": "c", "port": 3})");
        //! [records of a type]
        Records<Server> records(stream, Framing::lines);
        Server server;
        for (bool more = true; more;) {
            try {
                more = records.next(server);
                std::cout << (more ? server.host : "end") << '\n';
            } catch (const ReadError& error) {
                std::cout << error.what() << '\n';
            }
        }
        // ->
        // a
        // 2:23: at /port: "2" is a string, not a number
        // c
        // end
        //! [records of a type]
    }

    snippet("straight to text");
    {
        const Server server{"example.org", 443, {"a", "b"}};
        //! [straight to text]
        std::cout << write(server) << '\n'; // -> {"host":"example.org","port":443,"tags":["a","b"]}
        //! [straight to text]
    }

    snippet("onto a stream");
    {
        const Server server{"example.org", 443, {}};
        std::ostream& stream = std::cout;
        Writer writer(std::cout);
        //! [onto a stream]
        std::string text = write(server);
        write(stream, server, WriteOptions::indented(2));
        writer.value(server); // of a Writer, with write.hpp
        //! [onto a stream]
        std::cout << text << '\n';
    }

    snippet("represented");
    {
        //! [represented]
        const Value ids = Array{"6c0b2bd6-8e9f-4d33-a2f4-1f4c4bb0b5a2", "6c0b2bd6"};
        std::cout << to<Uuid>(ids, "/0").text() << '\n'; // -> 6c0b2bd6-8e9f-4d33-a2f4-1f4c4bb0b5a2
        try {
            to<std::vector<Uuid>>(ids);
        } catch (const ConversionError& error) {
            std::cout << error.what() << '\n'; // -> at /1: "6c0b2bd6" is no UUID
        }
        std::cout << write(Rectangle(2, 3)) << '\n'; // -> {"width":2,"height":3}
        //! [represented]
    }

    snippet("variants");
    {
        //! [variants]
        using IdOrName = std::variant<int, std::string>;
        const auto names = to<std::vector<IdOrName>>(Value(Array{7, "seven"}));
        std::cout << names[0].index() << names[1].index() << '\n'; // -> 01

        const std::vector<Shape> shapes{Circle{2}, Square{3}};
        std::cout << write(shapes) << '\n';
        // ->
        // [{"radius":2,"type":"circle"},{"side":3,"type":"square"}]
        //! [variants]
    }

    snippet("checks");
    {
        //! [checks]
        for (const Value& value : {Value(Object{{"port", 70000}}),
                                   Value(Object{{"port", 80}, {"path", "index.html"}})}) {
            try {
                to<Listener>(value);
            } catch (const ConversionError& error) {
                std::cout << error.what() << '\n';
            }
        }
        //! [checks]
    }

    snippet("written times");
    {
        //! [written times]
        const auto event =
            to<Event>(Value(Object{{"at", "2026-11-22T10:40:00.250+02:00"}, {"took", 1500}}));
        std::cout << write(event) << '\n'; // -> {"at":"2026-11-22T08:40:00.25Z","took":1500}
        //! [written times]
    }
}
