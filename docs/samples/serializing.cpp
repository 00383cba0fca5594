// The snippets of docs/serializing.md.
#include "snippet.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/write.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

using namespace foundation::json;

namespace {

/// Stands for where the program keeps its files.
const std::filesystem::path folder =
    std::filesystem::temp_directory_path() / "foundation_json_sample_writing";

/// What a database gives, row by row.
class Rows {
public:
    bool next() { return ++number_ <= 3; }
    int id() const { return number_; }
    double price() const { return number_ * 2.5; }

private:
    int number_ = 0;
};

//! [export rows]
void export_rows(std::ostream& stream, Rows& rows) {
    Writer writer(stream);
    writer.begin_object();
    writer.name("rows").begin_array();
    while (rows.next()) {
        writer.begin_object().name("id").value(rows.id()).name("price").value(rows.price()).end();
    }
    writer.end();
    writer.name("complete").value(true);
    writer.end();
}
//! [export rows]

//! [export file]
void export_file(const std::filesystem::path& path, Rows& rows) {
    std::ofstream file(path, std::ios::binary);
    export_rows(file, rows);
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write '" + path.string() + "'");
    }
}
//! [export file]

} // namespace

int main() {
    std::filesystem::create_directories(folder);

    snippet("ways");
    {
        //! [ways]
        const Value answer(
            (Property("id") = 1763781000016LL, Property("path") = "a/b", Property("ratio") = 0.1));
        const std::string body = write(answer);
        std::cout << body << '\n'; // -> {"id":1763781000016,"path":"a/b","ratio":0.1}

        write(std::cout, answer, WriteOptions::indented(2));
        std::cout << '\n';
        // ->
        // {
        //   "id": 1763781000016,
        //   "path": "a/b",
        //   "ratio": 0.1
        // }
        write_file(folder / "answer.json", answer, WriteOptions::indented(2));
        //! [ways]
    }

    snippet("text");
    {
        //! [text]
        const Value value((Property("empty") = (Element(Array{}), Element(Object{})),
                           Property("large") = (Element(1e20), Element(1e21)),
                           Property("missing") = Value(), Property("name") = "caf\u00e9 \"x\"",
                           Property("small") = (Element(0.1 + 0.2), Element(1e-7))));
        std::cout << write(value) << '\n';
        //! [text]
    }

    snippet("options");
    {
        //! [options]
        WriteOptions options;
        options.ascii = true;
        options.escape_slash = true;
        std::cout << write("</caf\u00e9>", options) << '\n'; // -> "<\/caf\u00e9>"
        options.big_integers = WriteOptions::BigIntegers::string;
        std::cout << write(9007199254740993LL, options) << '\n'; // -> "9007199254740993"
        options.not_finite = WriteOptions::NotFinite::null;
        std::cout << write(std::numeric_limits<double>::infinity(), options) << '\n'; // -> null
        options.bad_utf8 = WriteOptions::BadUtf8::replace;
        std::cout << write("caf\xE9", options) << '\n'; // -> "caf\ufffd"
        //! [options]
    }

    snippet("errors");
    {
        //! [errors]
        const Value value((Property("servers") = (Element(Property("load") = 0.5),
                                                  Element(Property("load") = std::stod("nan")))));
        try {
            std::cout << write(value) << '\n';
        } catch (const WriteError& error) {
            std::cout << error.what() << '\n' << error.pointer() << '\n';
        }
        // ->
        // at /servers/1/load: NaN is not a JSON number: the option not_finite allows it
        // /servers/1/load
        //! [errors]
    }

    snippet("file");
    {
        const Value settings(Property("port") = 8080);
        //! [file]
        try {
            write_file(folder / "no/such/settings.json", settings);
        } catch (const std::system_error& error) {
            // The message names the file and the reason.
            if (error.code() == std::errc::no_such_file_or_directory) {
                std::filesystem::create_directories(folder / "no/such");
                write_file(folder / "no/such/settings.json", settings);
            }
        }
        //! [file]
        std::cout << write(parse_file(folder / "no/such/settings.json")) << '\n';
    }

    snippet("canonical");
    {
        //! [canonical]
        const Value order(
            (Property("total") = 10.0, Property("id") = 7, Property("note") = "\u20ac"));
        const std::string text = write(order, WriteOptions::canonical());
        std::cout << text << '\n'; // -> {"id":7,"note":"€","total":10}
        // The receiver of any other form gets the same bytes to verify.
        const Value received = parse(write(order, WriteOptions::indented(4)));
        std::cout << (write(received, WriteOptions::canonical()) == text) << '\n'; // -> 1
        //! [canonical]
    }

    snippet("use of export rows");
    {
        //! [use of export rows]
        Rows rows;
        export_rows(std::cout, rows);
        std::cout << '\n';
        // ->
        // {"rows":[{"id":1,"price":2.5},{"id":2,"price":5},{"id":3,"price":7.5}],"complete":true}
        //! [use of export rows]
    }

    snippet("export file");
    {
        Rows rows;
        export_file(folder / "rows.json", rows);
        std::cout << get<Array>(parse_file(folder / "rows.json")["rows"]).size() << '\n';
    }

    snippet("to a string");
    {
        //! [to a string]
        const Value customer(Property("name") = "Ada");
        const std::vector<int> numbers = {3, 1, 2};
        std::string text;
        Writer writer(text, WriteOptions::indented(2));
        writer.begin_object();
        writer.name("customer").value(customer); // a Value
        writer.name("numbers").begin_array();
        for (const int number : numbers) {
            writer.value(number);
        }
        writer.end();
        writer.name("cached").raw(R"({"made": "earlier"})"); // JSON that exists already
        writer.end();
        std::cout << text << '\n';
        //! [to a string]
    }

    snippet("misuse");
    {
        //! [misuse]
        std::string text;
        Writer writer(text);
        writer.begin_object().name("items").begin_array().value(1);
        try {
            writer.finish();
        } catch (const std::logic_error& error) {
            std::cout << error.what() << '\n';
        }
        // -> at /items/1: finish() where a value or end() is expected
        //! [misuse]
    }

    snippet("lines");
    {
        //! [lines]
        const std::vector<Value> records = {Property("id") = 1, Property("id") = 2};
        for (const Value& record : records) {
            write(std::cout, record);
            std::cout << '\n';
        }
        // ->
        // {"id":1}
        // {"id":2}
        //! [lines]
    }

    snippet("order of members");
    {
        //! [order of members]
        const Value steps = Array{Array{"wash", 30}, Array{"dry", 60}};
        std::cout << write(steps) << '\n'; // -> [["wash",30],["dry",60]]
        //! [order of members]
    }

    std::filesystem::remove_all(folder);
}
