// The snippets of docs/streams.md, and of the tours in reader.hpp and records.hpp.
#include "snippet.hpp"

//! [headers]
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/reader.hpp>
#include <foundation/json/records.hpp>
//! [headers]

#include <iostream>
#include <sstream>
#include <string>
#include <utility>

using namespace foundation::json;

namespace {

const char* const order_text = R"({
    "customer": {"name": "Ada"},
    "lines": [
        {"article": "tea", "price": 4.5, "tags": ["hot", "black"]},
        {"article": "cup", "price": 8},
        {"article": "pot", "price": 32.25}
    ]
})";

//! [log]
void ship(std::istream& log, std::ostream& out) {
    Records<Value> records(log, Framing::lines);
    Value record;
    for (bool more = true; more;) {
        try {
            more = records.next(record);
            if (more && std::as_const(record)["level"] != Value("debug")) {
                get<Object>(record).erase("trace");
                out << serialize(record) << '\n';
            }
        } catch (const ParserException& error) { // the next call reads the next line
            std::cout << describe(error, "log");
        }
    }
}
//! [log]

//! [sum of records]
double sum_of_prices(std::istream& stream) {
    Records<Value> lines(stream, Framing::elements("/lines"));
    double sum = 0;
    for (Value line; lines.next(line);) {
        sum += number<double>(line["price"]);
    }
    return sum;
}
//! [sum of records]

//! [sum of tokens]
double sum_of_all_prices(std::istream& stream) {
    Reader reader(stream);
    double sum = 0;
    while (reader.next() != Token::end) {
        if (reader.token() == Token::name && reader.string() == "price") {
            reader.next();
            sum += reader.number<double>();
        }
    }
    return sum;
}
//! [sum of tokens]

} // namespace

int main() {
    snippet("tour of reader");
    {
        std::istringstream stream(order_text);
        //! [tour of reader]
        Reader reader(stream);
        double sum = 0;
        while (reader.next() != Token::end) {
            if (reader.token() == Token::name && reader.string() == "price") {
                reader.next();
                sum += reader.number<double>();
            }
        }
        //! [tour of reader]
        std::cout << sum << '\n';
    }

    snippet("tour of records");
    {
        std::istringstream stream("{\"name\":\"tea\"}\n{\"name\":\"cup\"}\n");
        //! [tour of records]
        Records<Value> records(stream, Framing::lines);
        for (Value record; records.next(record);) {
            std::cout << serialize(record["name"]) << '\n';
        }
        //! [tour of records]
    }

    snippet("log");
    {
        std::istringstream log(
            "{\"level\": \"error\", \"text\": \"disk full\", \"trace\": [3, 7]}\n"
            "{\"level\": \"debug\", \"text\": \"a request\"}\n"
            "{\"level\": \"error\", \"text\": \"disk f\n"
            "{\"level\": \"info\", \"text\": \"rotated\"}\n");
        ship(log, std::cout);
    }

    snippet("sum of records");
    {
        std::istringstream stream(order_text);
        std::cout << sum_of_prices(stream) << '\n';
    }

    snippet("sum of tokens");
    {
        std::istringstream stream(order_text);
        std::cout << sum_of_all_prices(stream) << '\n';
    }

    snippet("tokens");
    {
        //! [tokens]
        Reader reader(R"({"id": 7, "tags": ["a\tb", null]})");
        while (reader.next() != Token::end) {
            std::cout << reader.depth() << " \"" << reader.pointer() << '"';
            if (reader.token() == Token::number) {
                std::cout << " is " << reader.number<int>();
            }
            std::cout << '\n';
        }
        //! [tokens]
    }

    snippet("whole values");
    {
        //! [whole values]
        std::istringstream stream(R"({"log": [1, 2, 3], "user": {"name": "Ada"}, "rest": []})");
        Reader reader(stream);
        reader.next(); // into the object
        while (reader.next() == Token::name) {
            if (reader.string() == "user") {
                const Value user = reader.value();
                std::cout << serialize(user["name"]) << '\n'; // -> "Ada"
            } else {
                reader.skip();
            }
        }
        //! [whole values]
    }

    snippet("which record");
    {
        //! [which record]
        std::istringstream stream("{\"n\": 1}\n{\"m\": 2}\n{\"n\": 3}\n");
        Records<Value> records(stream, Framing::lines);
        for (Value record; records.next(record);) {
            if (!record.hasOwnProperty("n")) {
                const Position position = records.position();
                std::cout << "record " << records.index() << ", line " << position.line << ", byte "
                          << position.byte << ": " << records.text() << '\n';
                // ->
                // record 1, line 2, byte 9: {"m": 2}
            }
        }
        //! [which record]
    }

    snippet("limits");
    {
        //! [limits]
        ReadOptions options;
        options.max_bytes = 20;
        options.max_depth = 10;
        std::istringstream stream("[1]\n[\"" + std::string(1000, 'x') + "\"]\n[3]\n");
        Records<Value> records(stream, Framing::lines, options);
        Value record;
        for (bool more = true; more;) {
            try {
                more = records.next(record);
            } catch (const ParserException& error) {
                std::cout << "record " << records.index() << " is " << error.what() << '\n';
                // ->
                // record 1 is longer than 20 bytes: the argument max_bytes is the limit
            }
        }
        //! [limits]
    }
}
