// The snippets of docs/tour.md.
#include "snippet.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/pointer.hpp>
#include <foundation/json/records.hpp>
#include <foundation/json/write.hpp>

#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using namespace foundation::json;

//! [struct]
struct Tea {
    std::string name;
    int grams = 100;
};

template <>
inline constexpr auto foundation::json::members<Tea> = table(required("name", &Tea::name),
                                                             defaulted("grams", &Tea::grams));
//! [struct]

int main() {
    snippet("values");
    //! [values]
    Value id = 7;
    Value name = "tea";
    Value list = std::vector<Value>{1, true, Null()};
    Value record = std::map<std::string, Value>{{"id", id}, {"name", name}, {"list", list}};
    std::cout << serialize(record) << '\n'; // -> {"id":7,"list":[1,true,null],"name":"tea"}
    //! [values]

    snippet("builders");
    //! [builders]
    Value order((Property("id") = 7, Property("lines") = (Element("tea"), Element(2.5))));
    std::cout << serialize(order) << '\n'; // -> {"id":7,"lines":["tea",2.5]}
    //! [builders]

    snippet("access");
    //! [access]
    order["paid"] = false;
    order["lines"].push(Null());
    std::cout << int(order["id"]) + 1 << '\n';      // -> 8
    std::cout << bool(order["paid"]) << '\n';       // -> 0
    std::cout << order["lines"].length() << '\n';   // -> 3
    std::cout << serialize(order["lines"]) << '\n'; // -> ["tea",2.5,null]
    //! [access]

    snippet("missing");
    //! [missing]
    const Value& seen = order;
    std::cout << serialize(seen["note"] || Value("none")) << '\n'; // -> "none"
    std::cout << order.hasOwnProperty("note") << '\n';             // -> 0
    order["note"];
    std::cout << order.hasOwnProperty("note") << '\n'; // -> 1
    //! [missing]

    snippet("compare");
    //! [compare]
    std::cout << (Value(1) == Value(1.0)) << '\n';    // -> 1
    std::cout << (Value(1) == Value(1LL)) << '\n';    // -> 0
    std::cout << (Value("a") < Value("b")) << '\n';   // -> 1
    std::cout << (Value(1'000) < Value("1")) << '\n'; // -> 1
    //! [compare]

    snippet("write");
    //! [write]
    std::cout << write(record["list"]) << '\n';
    write(std::cout, record["list"], WriteOptions::indented(2));
    std::cout << '\n';
    //! [write]

    snippet("read");
    //! [read]
    const Value read = parse(R"({"id": 7, "lines": ["tea", 2.5]})");
    std::cout << number<int>(read["id"]) + 1 << '\n';          // -> 8
    std::cout << get<std::string>(read["lines"][0]) << '\n';   // -> tea
    std::cout << holds<std::string>(read["lines"][1]) << '\n'; // -> 0
    for (const Value& line : get<Array>(read["lines"])) {
        std::cout << serialize(line) << '\n';
        // ->
        // "tea"
        // 2.5
    }
    //! [read]

    snippet("to a struct");
    //! [to a struct]
    const Tea tea = to<Tea>(parse(R"({"name": "Assam"})"));
    std::cout << tea.name << ' ' << tea.grams << ' ' << serialize(from(tea)) << '\n';
    // ->
    // Assam 100 {"grams":100,"name":"Assam"}
    //! [to a struct]

    snippet("pointer");
    //! [pointer]
    Value config = parse(R"({"servers": [{"port": 80}]})");
    set(config, "/servers/0/port", 8080);
    std::cout << number<int>(*find(config, "/servers/0/port")) << '\n'; // -> 8080
    //! [pointer]

    snippet("records");
    //! [records]
    std::istringstream log("{\"level\": 1}\n{\"level\": 2}\n");
    Records<Value> records(log, Framing::lines);
    for (Value entry; records.next(entry);) {
        std::cout << number<int>(entry["level"]) << '\n';
        // ->
        // 1
        // 2
    }
    //! [records]

    snippet("error");
    //! [error]
    try {
        record["name"].push("biscuit");
    } catch (const std::runtime_error& error) {
        std::cout << error.what() << '\n';
    }
    //! [error]
}
