// The snippets of docs/parsing.md, and of the tour in parse.hpp.
#include "snippet.hpp"

//! [headers]
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/write.hpp>
//! [headers]

#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>
#include <system_error>

using namespace foundation::json;

namespace {

//! [show port]
void show_port(const std::string& name) {
    try {
        const Value config = parse_file(name);
        std::cout << number<int>(config["port"]) << '\n';
    } catch (const ParserException& error) { // the file is not JSON
        std::cout << describe(error, name);
    } catch (const std::system_error& error) { // the file cannot be read
        std::cout << error.what() << '\n';
    } catch (const std::exception& error) { // the content is not what the program needs
        std::cout << name << ": " << error.what() << '\n';
    }
}
//! [show port]

} // namespace

int main() {
    snippet("tour");
    {
        //! [tour]
        Value pair = parse("[1, 2.5]");
        ParseOptions options;
        options.comments = true;
        Value config = parse_file("server.json", options);
        //! [tour]
        std::cout << serialize(pair) << serialize(config) << '\n';
    }

    snippet("tour of errors");
    //! [tour of errors]
    try {
        Value list = parse("[1, 2,]");
    } catch (const ParserException& error) {
        std::cout << describe(error, "list.json");
        // ->
        // list.json:1:7: found ']' after a comma: the option trailing_commas allows it
        // [1, 2,]
        //       ^
    }
    //! [tour of errors]

    std::istringstream stream("1 2\n[3]");
    snippet("tour of streams");
    {
        //! [tour of streams]
        ValueStream values(stream);
        for (Value value; values.next(value);) {
            std::cout << serialize(value) << '\n';
        }
        //! [tour of streams]
    }

    snippet("a text");
    //! [a text]
    const Value order = parse(R"({"id": 7, "lines": ["tea", 2.5]})");
    std::cout << number<int>(order["id"]) + 1 << '\n';             // -> 8
    std::cout << get<std::string>(order["lines"][0]) << '\n';      // -> tea
    std::cout << number<int>(order["copies"] || Value(1)) << '\n'; // -> 1
    //! [a text]

    snippet("show port");
    show_port("server.json");
    show_port("missing.json");

    snippet("accessors");
    //! [accessors]
    try {
        Value flags = parse("{\n  \"verbose\": True\n}");
    } catch (const ParserException& error) {
        std::cout << error.what() << '\n';
        std::cout << error.get_line_number() << ' ' << error.get_column() << ' '
                  << error.get_byte_position() << '\n';
        std::cout << (error.get_parse_result() == BOOLEAN_MISMATCH) << '\n';
        std::cout << error.get_quoted_text().substr(error.get_quoted_byte_position()) << '\n';
        // ->
        // found 'True': true is written in lower case
        // 2 14 15
        // 1
        // True
    }
    //! [accessors]

    snippet("options");
    {
        //! [options]
        ParseOptions options;
        options.comments = true;
        options.trailing_commas = true;
        std::cout << serialize(parse("[1, /* two */ 3,] // done", options)) << '\n'; // -> [1,3]
        //! [options]
    }

    snippet("numbers");
    {
        //! [numbers]
        const Value v = parse("[7, 0.1, 9007199254740993, 18446744073709551615, 1e-400]");
        for (const Value& element : get<Array>(v)) {
            std::cout << name_of(kind_of(element)) << ' ' << serialize(element) << '\n';
        }
        // ->
        // JSON number 7
        // JSON number 0.1
        // int64 9007199254740993
        // uint64 18446744073709551615
        // JSON number 0
        std::cout << number<std::int64_t>(v[0]) + number<std::int64_t>(v[2]) << '\n';
        // ->
        // 9007199254741000
        //! [numbers]
    }

    snippet("written back");
    //! [written back]
    std::cout << write(parse("[1000000, 1.50, \"a\\/b\", \"\\u00e9\"]")) << '\n';
    // ->
    // [1000000,1.5,"a/b","é"]
    //! [written back]

    snippet("duplicates");
    {
        //! [duplicates]
        const std::string document = R"({"port": 80, "port": 8080})";
        std::cout << serialize(parse(document)) << '\n'; // -> {"port":8080}
        ParseOptions strict;
        strict.duplicate_names = ParseOptions::DuplicateNames::error;
        try {
            Value config = parse(document, strict);
        } catch (const ParserException& error) {
            std::cout << describe(error);
            // ->
            // 1:14: the name "port" occurs twice in an object: the option duplicate_names allows it
            // {"port": 80, "port": 8080}
            //              ^
        }
        //! [duplicates]
    }

    snippet("json lines");
    {
        //! [json lines]
        std::istringstream log("{\"level\": 1}\n{\"level\": oops}\n{\"level\": 3}\n");
        ValueStream values(log);
        Value value;
        for (;;) {
            try {
                if (!values.next(value)) {
                    break;
                }
                std::cout << serialize(value) << '\n';
            } catch (const ParserException& error) { // the next call goes on with the next line
                std::cout << describe(error, "log");
            }
        }
        //! [json lines]
    }

    snippet("depth");
    {
        //! [depth]
        ParseOptions shallow;
        shallow.max_depth = 2;
        try {
            Value deep = parse("[[[]]]", shallow);
        } catch (const ParserException& error) {
            std::cout << error.what() << '\n';
            // ->
            // nested deeper than 2 levels: the option max_depth is the limit
        }
        //! [depth]
    }

    snippet("length");
    {
        //! [length]
        std::istringstream request("[1, 2, 3, 4, 5, 6, 7, 8]");
        try {
            Value list = parse(request, {}, 10);
        } catch (const ParserException& error) {
            std::cout << error.what() << '\n';
            // ->
            // longer than 10 bytes: the argument max_bytes is the limit
        }
        //! [length]
    }
}
