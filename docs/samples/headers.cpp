// The snippets in the comments of the public headers.
#include "snippet.hpp"

#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/read.hpp>
#include <foundation/json/write.hpp>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using namespace foundation::json;

namespace {

Value read(const std::string& text) {
    throw ParserException("unfinished", UNEXPECTED_END_OF_INPUT, text.size(), 1, text.size() + 1,
                          text.size(), text);
}

} // namespace

// Each table is laid out as its header shows it.
// clang-format off
//! [members]
struct Server {
    std::string host;
    int port = 8080;
};

template <>
inline constexpr auto foundation::json::members<Server> =
    table(required("host", &Server::host), defaulted("port", &Server::port));
//! [members]

//! [a base]
struct Secured : Server {
    std::string certificate;
};

template <>
inline constexpr auto foundation::json::members<Secured> =
    table(members<Server>, required("certificate", &Secured::certificate));
//! [a base]

//! [enumerators]
enum class Level { low, high };

template <>
inline constexpr auto foundation::json::enumerators<Level> =
    table<Level>({{Level::low, "low"}, {Level::high, "high"}});
//! [enumerators]
// clang-format on

int main() {
    snippet("members");
    std::cout << to<Server>(Property("host") = "here").port << '\n';

    snippet("a base");
    std::cout << to<Secured>(Value(Object{{"host", "here"}, {"certificate", "c"}})).port << '\n';

    snippet("enumerators");
    std::cout << serialize(from(Level::high)) << '\n';

    snippet("content of temporaries");
    {
        const std::string text = R"({"name":"tea"})";
        //! [content of temporaries]
        Object order = get<Object>(parse(text)); // moved out of the temporary
        //! [content of temporaries]
        std::cout << order.size() << '\n';
    }

    snippet("numbers");
    {
        //! [numbers]
        Value v((Property("grams") = 250, Property("share") = 0.5));
        int grams = number<int>(v["grams"]); // exactly that number, or an exception
        v["id"] = integer(std::size_t{7});   // a uint64, where Value(7) would be a double
        //! [numbers]
        std::cout << grams << ' ' << serialize(v) << '\n';
    }

    snippet("value");
    {
        //! [value]
        Value v(std::map<std::string, Value>{}); // an object
        v["name"] = "x";                         // inserts the member, then assigns
        v["list"] = std::vector<Value>{1, true}; // an array of a double and a bool
        v["list"].push(Null());                  // -> [1,true,null]
        int n = int(v["list"][0]);               // -> 1
        Value port = v["port"] || Value(8080);   // a default for what is missing or empty
        //! [value]
        std::cout << serialize(v["list"]) << '\n' << n << '\n';
    }

    snippet("swap in");
    {
        Value parent(std::vector<Value>{});
        Value child = 1;
        //! [swap in]
        parent.push(Value());
        parent[parent.length() - 1].swap(child);
        //! [swap in]
        std::cout << serialize(parent) << '\n';
    }

    snippet("fallback");
    {
        const Value record(Property("other"));
        //! [fallback]
        Value name = record["name"] || Value("unnamed"); // copies at once: safe
        //! [fallback]
        std::cout << serialize(name) << '\n';
    }

    snippet("chains");
    {
        //! [chains]
        Value list((Element(1), Element("two"), Element(Null())));  // -> [1,"two",null]
        Value record((Property("id") = 7, Property("name") = "x")); // -> {"id":7,"name":"x"}
        //! [chains]
        std::cout << serialize(list) << '\n' << serialize(record) << '\n';
    }

    snippet("nested chains");
    {
        //! [nested chains]
        Value nested((Element(1), Element((Element(2), Element(3))))); // -> [1,[2,3]]
        Value object((Property("a") = (Property("b") = true)));        // -> {"a":{"b":true}}
        //! [nested chains]
        std::cout << serialize(nested) << '\n' << serialize(object) << '\n';
    }

    snippet("write");
    {
        const std::string path =
            (std::filesystem::temp_directory_path() / "foundation_json_sample_headers.json")
                .string();
        std::ostringstream stream;
        //! [write]
        Value value(Property("id") = 1763781000016LL);
        std::string text = write(value); // -> {"id":1763781000016}
        write(stream, value, WriteOptions::indented(2));
        write_file(path, value); // all or nothing
        std::string same_everywhere = write(value, WriteOptions::canonical());
        //! [write]
        std::cout << text << '\n';
        static_cast<void>(same_everywhere);
        std::filesystem::remove(path);
    }

    snippet("writer of items");
    {
        struct Item {
            int id;
        };
        const std::vector<Item> items = {{1}, {2}};
        std::ostream& stream = std::cout;
        //! [writer of items]
        Writer writer(stream);
        writer.begin_object().name("items").begin_array();
        for (const Item& item : items) {
            writer.begin_object().name("id").value(item.id).end();
        }
        writer.end().end(); // -> {"items":[{"id":1},{"id":2}]}
        //! [writer of items]
        std::cout << '\n';
    }

    snippet("writer");
    {
        const Value owner(Property("name") = "Ada");
        //! [writer]
        std::string text;
        Writer writer(text, WriteOptions::indented(2));
        writer.begin_object();
        writer.name("id").value(7);
        writer.name("tags").begin_array().value("new").value(2.5).end();
        writer.name("owner").value(owner); // a Value
        writer.end();
        //! [writer]
        std::cout << text << '\n';
    }

    snippet("serializer");
    {
        //! [serializer]
        Value v((Property("a") = (Element(1), Element(true))));
        std::cout << serialize(v) << '\n'; // -> {"a":[1,true]}

        Serializer serializer;
        serializer.pretty_print(true);
        serializer.write(std::cout, v);
        // ->
        // {
        //     "a":[
        //         1,
        //         true
        //     ]
        // }
        //! [serializer]
        std::cout << '\n';
    }

    snippet("parser exception");
    {
        const std::string text = "[1,";
        Value value;
        //! [parser exception]
        try {
            value = read(text);
        } catch (const ParserException& e) {
            std::cout << e.get_line_number() << ':' << e.get_column() << ": "
                      << get_parse_result_description(e.get_parse_result()) << '\n';
        }
        //! [parser exception]
    }

    snippet("text helpers");
    {
        //! [text helpers]
        char16_t pair[] = {0xD83D, 0xDE00};
        std::string smile = detail::u16_to_u8(pair, 2);    // -> F0 9F 98 80
        double number = detail::string_to_double("1.5e3"); // -> 1500
        //! [text helpers]
        std::printf("%02X %02X %02X %02X\n", smile[0] & 0xFF, smile[1] & 0xFF, smile[2] & 0xFF,
                    smile[3] & 0xFF);
        std::fflush(stdout);
        std::cout << number << '\n';
    }

    snippet("read");
    {
        //! [read]
        const auto server = read<Server>(R"({"host": "a.example"})");
        const auto servers = read_file<std::vector<Server>>("servers.json");
        //! [read]
        std::cout << server.host << ' ' << servers.size() << '\n';
    }

    snippet("read error");
    {
        //! [read error]
        try {
            const auto wrong = read<Server>(R"({"host": "a.example", "port": "80"})");
        } catch (const ReadError& error) {
            std::cout << describe(error);
            // ->
            // 1:31: at /port: "80" is a string, not a number
            // {"host": "a.example", "port": "80"}
            //                               ^
        }
        //! [read error]
    }

    snippet("several errors");
    {
        const Value value = Object{{"host", 7}, {"port", "80"}};
        //! [several errors]
        ConvertOptions options;
        options.max_errors = 20;
        try {
            const auto server = to<Server>(value, options);
        } catch (const ConversionError& error) {
            for (const ConversionProblem& problem : error.errors()) {
                std::cout << problem.pointer << " - " << problem.message << '\n';
            }
        }
        //! [several errors]
    }

    snippet("read into");
    {
        const std::vector<std::string> lines{R"({"host":"a"})", R"({"host":"b"})"};
        //! [read into]
        Server server;
        for (const std::string& line : lines) {
            read_into(server, line);
        }
        //! [read into]
        std::cout << server.host << '\n';
    }

    snippet("read options");
    {
        //! [read options]
        ReadOptions options;
        options.comments = true;
        options.unknown_members = ConvertOptions::UnknownMembers::error;
        options.max_bytes = 1 << 20;
        //! [read options]
        std::cout << read<int>("1 // comment", options) << '\n';
    }
}
