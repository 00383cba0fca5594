// The snippets of docs/migration.md.
#include "snippet.hpp"

//! [headers]
#include <foundation/json/content.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>
#include <foundation/json/write.hpp>
//! [headers]

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <string>
#include <type_traits>

using namespace foundation::json;

int main() {
    const std::string source = "[1, /* two */ 3]";
    snippet("parse a text");
    //! [parse a text]
    Value parsed = parse("[1, 2]");
    //! [parse a text]
    std::cout << serialize(parsed) << '\n';

    snippet("parse a file");
    //! [parse a file]
    ParseOptions options;
    options.comments = true;
    Value config = parse_file("server.json", options);
    //! [parse a file]
    std::cout << serialize(config) << '\n';

    snippet("show an error");
    //! [show an error]
    try {
        parsed = parse(source);
    } catch (const ParserException& error) {
        std::cout << describe(error); // with the line and a caret below the error
    }
    //! [show an error]

    snippet("make an object");
    //! [make an object]
    Value v((Property("name") = "tea", Property("grams") = 250));
    //! [make an object]
    const Value& constant = v;
    std::cout << serialize(v) << '\n';

    snippet("make an array");
    //! [make an array]
    Value list((Element(1), Element("two"), Element(Null())));
    //! [make an array]
    std::cout << serialize(list) << '\n';

    snippet("set a member");
    //! [set a member]
    v["hot"] = true;
    //! [set a member]
    std::cout << serialize(v) << '\n';

    snippet("append");
    //! [append]
    list.push(2.5);
    //! [append]
    std::cout << serialize(list) << '\n';

    snippet("read a text");
    //! [read a text]
    const std::string& name = get<std::string>(v["name"]);
    //! [read a text]
    std::cout << name << '\n';

    snippet("read an integer");
    //! [read an integer]
    int grams = number<int>(v["grams"]);
    //! [read an integer]
    std::cout << grams << '\n';

    snippet("read a double");
    //! [read a double]
    double price = number<double>(v["grams"]);
    //! [read a double]
    std::cout << price << '\n';

    snippet("read a flag");
    //! [read a flag]
    bool hot = get<bool>(v["hot"]);
    //! [read a flag]
    std::cout << hot << '\n';

    snippet("read with a default");
    //! [read with a default]
    int cups = to_or(v, "/cups", 1);
    //! [read with a default]
    std::cout << cups << '\n';

    snippet("ask for a member");
    //! [ask for a member]
    bool has_name = v.hasOwnProperty("name");
    //! [ask for a member]
    std::cout << has_name << '\n';

    snippet("ask for the kind");
    //! [ask for the kind]
    bool is_string = holds<std::string>(v["name"]);
    //! [ask for the kind]
    std::cout << is_string << '\n';

    snippet("text or nothing");
    //! [text or nothing]
    const auto* found = get_if<std::string>(&constant["name"]);
    //! [text or nothing]
    std::cout << *found << '\n';

    snippet("go through an array");
    //! [go through an array]
    for (const Value& element : get<Array>(list)) {
        std::cout << serialize(element) << ' ';
    }
    //! [go through an array]
    std::cout << '\n';

    snippet("go through an object");
    //! [go through an object]
    for (const auto& [name_of_member, member] : get<Object>(v)) {
        std::cout << name_of_member << ' ';
    }
    //! [go through an object]
    std::cout << '\n';

    snippet("count");
    //! [count]
    std::size_t elements = list.length();
    std::size_t members = get<Object>(v).size();
    //! [count]
    std::cout << elements << ' ' << members << '\n';

    snippet("remove");
    //! [remove]
    get<Object>(v).erase("hot");
    get<Array>(list).erase(get<Array>(list).begin());
    //! [remove]
    std::cout << serialize(v) << serialize(list) << '\n';

    Value before = v;
    snippet("set by pointer");
    //! [set by pointer]
    set(v, "/sizes/0/grams", 250);
    //! [set by pointer]
    std::cout << serialize(v) << '\n';

    snippet("patch");
    //! [patch]
    Value changes = diff(before, v);
    patch(before, changes);
    //! [patch]
    std::cout << equivalent(before, v) << '\n';

    snippet("keep an identifier");
    //! [keep an identifier]
    v["id"] = integer(std::uint64_t{9007199254740993});
    auto id = number<std::uint64_t>(v["id"]);
    //! [keep an identifier]
    std::cout << id << '\n';

    snippet("treat every kind");
    //! [treat every kind]
    bool is_container = visit(
        [](const auto& content) {
            using Content = std::decay_t<decltype(content)>;
            return std::is_same_v<Content, Array> || std::is_same_v<Content, Object>;
        },
        v);
    //! [treat every kind]
    std::cout << is_container << '\n';

    snippet("write text");
    //! [write text]
    std::string compact = write(v);
    std::string indented = write(v, WriteOptions::indented(2));
    //! [write text]
    std::cout << compact << '\n' << indented << '\n';

    snippet("write onto a stream");
    //! [write onto a stream]
    write(std::cout, v);
    //! [write onto a stream]
    std::cout << '\n';
}
