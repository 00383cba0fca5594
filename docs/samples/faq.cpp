// The snippets of docs/faq.md.
#include "snippet.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/write.hpp>

#include <iostream>
#include <optional>
#include <string>
#include <string_view>

using namespace foundation::json;

//! [valid]
std::optional<Value> parse_or_nothing(std::string_view text) {
    try {
        return parse(text);
    } catch (const ParserException&) {
        return std::nullopt;
    }
}
//! [valid]

//! [enum]
enum class Colour { red, green };

template <>
inline constexpr auto foundation::json::enumerators<Colour> =
    table<Colour>({{Colour::red, "red"}, {Colour::green, "green"}});
//! [enum]

int main() {
    snippet("to string");
    {
        const Value v = parse(R"({"name": "Ada", "age": 36})");
        //! [to string]
        std::string json = write(v);                    // any value, as JSON text
        std::string name = get<std::string>(v["name"]); // the content of a string, no quotes
        std::cout << json << ' ' << name << '\n';
        // ->
        // {"age":36,"name":"Ada"} Ada
        //! [to string]
    }

    snippet("pretty");
    {
        const Value v = parse(R"({"name": "Ada", "age": 36})");
        //! [pretty]
        std::cout << write(v, WriteOptions::indented(2)) << '\n';
        // ->
        // {
        //   "age": 36,
        //   "name": "Ada"
        // }
        //! [pretty]
    }

    snippet("print");
    {
        const Value v = parse("[1, 2]");
        //! [print]
        write(std::cout, v);
        //! [print]
        std::cout << '\n';
    }

    snippet("object");
    {
        const Value v = parse(R"({"name": "Ada", "age": 36})");
        //! [object]
        for (const auto& [name, member] : get<Object>(v)) {
            std::cout << name << " = " << write(member) << '\n';
            // ->
            // age = 36
            // name = "Ada"
        }
        //! [object]
    }

    snippet("array");
    {
        const Value v = parse("[3, 4]");
        //! [array]
        for (const Value& element : get<Array>(v)) {
            std::cout << number<int>(element) * 2 << '\n';
            // ->
            // 6
            // 8
        }
        //! [array]
    }

    snippet("size");
    {
        const Value list = parse("[3, 4]");
        const Value record = parse(R"({"name": "Ada", "age": 36})");
        //! [size]
        std::cout << get<Array>(list).size() << ' ' << get<Object>(record).size() << '\n'; // -> 2 2
        //! [size]
    }

    snippet("exists");
    {
        const Value v = parse(R"({"name": "Ada", "age": 36})");
        //! [exists]
        std::cout << v.hasOwnProperty("age") << v.hasOwnProperty("size") << '\n'; // -> 10
        //! [exists]
    }

    snippet("default");
    {
        const Value v = parse(R"({"name": "Ada", "age": 36})");
        //! [default]
        std::cout << to_or(v, "/size", 170) << '\n'; // -> 170
        //! [default]
    }

    snippet("remove");
    {
        Value record = parse(R"({"name": "Ada", "age": 36})");
        Value list = parse("[3, 4]");
        //! [remove]
        get<Object>(record).erase("age");
        get<Array>(list).erase(get<Array>(list).begin());
        std::cout << write(record) << ' ' << write(list) << '\n'; // -> {"name":"Ada"} [4]
        //! [remove]
    }

    snippet("append");
    {
        //! [append]
        Value list{Array()};
        list.push(3);
        list.push("four");
        std::cout << write(list) << '\n'; // -> [3,"four"]
        //! [append]
    }

    snippet("merge");
    {
        //! [merge]
        Value config = parse(R"({"port": 80, "log": {"level": "info"}})");
        merge_patch(config, parse(R"({"port": 8080, "log": {"file": "a.log"}})"));
        std::cout << write(config)
                  << '\n'; // -> {"log":{"file":"a.log","level":"info"},"port":8080}
        //! [merge]
    }

    snippet("duplicates");
    {
        //! [duplicates]
        ParseOptions options;
        options.duplicate_names = ParseOptions::DuplicateNames::error;
        try {
            Value v = parse(R"({"a": 1, "a": 2})", options);
        } catch (const ParserException& error) {
            std::cout << error.get_line_number() << ':' << error.get_column() << '\n'; // -> 1:10
        }
        //! [duplicates]
    }

    snippet("line");
    {
        //! [line]
        try {
            Value v = parse("[1,\n 2 3]");
        } catch (const ParserException& error) {
            std::cout << error.get_line_number() << ':' << error.get_column() << '\n'
                      << describe(error, "list.json");
            // ->
            // 2:4
            // list.json:2:4: a comma is missing before '3'
            //  2 3]
            //    ^
        }
        //! [line]
    }

    snippet("valid");
    std::cout << parse_or_nothing("[1]").has_value() << parse_or_nothing("[1").has_value() << '\n';

    snippet("use of enum");
    {
        //! [use of enum]
        const Value v = from(Colour::green);
        std::cout << write(v) << ' ' << (to<Colour>(v) == Colour::green) << '\n'; // -> "green" 1
        //! [use of enum]
    }
}
