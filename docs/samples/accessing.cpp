// The snippets of docs/accessing.md, and of the tour in content.hpp.
#include "snippet.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/json.hpp>

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

using namespace foundation::json;

namespace {

Value order() {
    return (Property("customer") = "Ada", Property("id") = 7,
            Property("lines") = (Element("tea"), Element(2.5)), Property("paid") = true);
}

//! [text of]
std::string text_of(const Value& value) {
    return visit(
        [](const auto& content) -> std::string {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, std::string>) {
                return content;
            } else if constexpr (std::is_arithmetic_v<Content>) {
                return std::to_string(content);
            } else {
                return "?";
            }
        },
        value);
}
//! [text of]

//! [overloads]
struct CountStrings {
    std::size_t operator()(const std::string&) const { return 1; }
    std::size_t operator()(const Array& elements) const {
        std::size_t count = 0;
        for (const Value& element : elements) {
            count += visit(*this, element);
        }
        return count;
    }
    std::size_t operator()(const Object& members) const {
        std::size_t count = 0;
        for (const auto& [name, member] : members) {
            count += visit(*this, member);
        }
        return count;
    }
    template <class Other>
    std::size_t operator()(const Other&) const {
        return 0;
    }
};
//! [overloads]

//! [merge]
void merge(Value& target, const Value& changes) {
    if (!holds<Object>(target) || !holds<Object>(changes)) {
        target = changes;
        return;
    }
    for (const auto& [name, change] : get<Object>(changes)) {
        merge(target[name], change);
    }
}
//! [merge]

} // namespace

int main() {
    snippet("ten lines");
    {
        Value v = order();
        //! [ten lines]
        std::string customer = get<std::string>(v["customer"]);
        double weight = get<double>(v["lines"][1]);
        int id = number<int>(v["id"]);
        bool paid = get<bool>(v["paid"]);
        std::size_t count = get<Array>(v["lines"]).size();
        bool is_string = holds<std::string>(v["customer"]);
        for (const Value& line : get<Array>(v["lines"])) {
            std::cout << serialize(line) << '\n';
        }
        for (const auto& [name, member] : get<Object>(v)) {
            std::cout << name << '\n';
        }
        get<Object>(v).erase("paid");
        v["number"] = integer(std::uint64_t{9007199254740993});
        //! [ten lines]
        std::cout << customer << weight << id << paid << count << is_string << '\n';
    }

    snippet("tour");
    {
        //! [tour]
        Value v((Property("name") = "tea", Property("grams") = 250, Property("hot") = true));
        std::cout << get<std::string>(v["name"]) << '\n'; // -> tea
        std::cout << number<int>(v["grams"]) / 2 << '\n'; // -> 125
        if (const bool* hot = get_if<bool>(&v["hot"])) {  // null for every other kind
            std::cout << *hot << '\n';                    // -> 1
        }
        for (auto& [name, member] : get<Object>(v)) {
            std::cout << name << ": " << name_of(kind_of(member)) << '\n';
            // ->
            // grams: JSON number
            // hot: JSON boolean
            // name: JSON string
        }
        //! [tour]
    }

    snippet("tour of changes");
    {
        Value v((Property("name") = "tea"));
        Array elements{1, "two"};
        //! [tour of changes]
        get<Object>(v).erase("name");
        v["id"] = integer(std::size_t{7}); // a uint64
        v["list"] = Array();
        get<Array>(v["list"]) = std::move(elements); // copies no element
        //! [tour of changes]
        std::cout << serialize(v) << '\n';
    }

    snippet("without copying");
    {
        Value v = order();
        //! [without copying]
        const std::string& customer = get<std::string>(v["customer"]); // copies nothing
        std::cout << customer << '\n';                                 // -> Ada
        std::string taken = std::move(get<std::string>(v["customer"]));
        std::cout << taken << ' ' << serialize(v["customer"]) << '\n'; // -> Ada ""
        //! [without copying]
    }

    snippet("kinds");
    {
        const Value v = order();
        //! [kinds]
        std::cout << v.hasOwnProperty("id") << '\n';             // -> 1
        std::cout << v.hasOwnProperty("missing") << '\n';        // -> 0
        std::cout << (kind_of(v["id"]) == Kind::number) << '\n'; // -> 1
        std::cout << name_of(kind_of(v["lines"])) << '\n';       // -> JSON array
        std::cout << holds<std::string>(v["missing"]) << '\n';   // -> 0
        if (const auto* customer = get_if<std::string>(&v["customer"])) {
            std::cout << customer->size() << '\n'; // -> 3
        }
        //! [kinds]
    }

    snippet("iterate");
    {
        const Value v = order();
        //! [iterate]
        for (const Value& element : get<Array>(v["lines"])) {
            std::cout << serialize(element) << ' ';
        }
        for (const auto& [name, member] : get<Object>(v)) {
            std::cout << name << '=' << serialize(member) << ' ';
        }
        std::cout << get<Array>(v["lines"]).size() << ' ' << get<Object>(v).size() << '\n';
        //! [iterate]
    }

    snippet("default");
    {
        const Value config(Property("name") = "");
        //! [default]
        const auto* name = get_if<std::string>(&config["name"]);
        std::string shown = name != nullptr ? *name : "unnamed";
        int port = number<int>(config["port"] || Value(8080));
        std::cout << '"' << shown << "\" " << port << '\n'; // -> "" 8080
        //! [default]
    }

    snippet("change");
    {
        Value v = order();
        //! [change]
        get<std::string>(v["customer"]) += " Lovelace";
        get<Array>(v["lines"]).pop_back();
        get<Object>(v).erase("paid");
        for (auto& [name, member] : get<Object>(v)) {
            if (auto* amount = get_if<double>(&member)) {
                *amount += 1;
            }
        }
        std::cout << serialize(v) << '\n';
        // ->
        // {"customer":"Ada Lovelace","id":8,"lines":["tea"]}
        //! [change]
    }

    snippet("move in");
    {
        //! [move in]
        Array rows;
        rows.reserve(1000);
        for (int i = 0; i < 1000; ++i) {
            rows.emplace_back(i);
        }
        Value table{Array()};
        get<Array>(table) = std::move(rows);
        std::cout << table.length() << '\n'; // -> 1000
        Array taken = std::move(get<Array>(table));
        std::cout << taken.size() << '\n'; // -> 1000
        //! [move in]
    }

    snippet("merged");
    {
        //! [merged]
        Value config(
            (Property("server") = (Property("host") = "localhost", Property("port") = 8080),
             Property("tags") = (Element("web"), Element("test"))));
        merge(config, Object{{"server", Object{{"port", 9000}}}, {"tags", Array{"web"}}});
        std::cout << serialize(config) << '\n';
        // ->
        // {"server":{"host":"localhost","port":9000},"tags":["web"]}
        //! [merged]
    }

    snippet("numbers");
    {
        //! [numbers]
        const Value v((Element(2.5), Element(70000), Element(7LL), Element(0.1f)));
        std::cout << number<double>(v[0]) << ' ' << number<int>(v[1]) << ' '
                  << number<unsigned char>(v[2]) + 0 << ' ' << number<float>(v[3]) << '\n';
        // ->
        // 2.5 70000 7 0.1
        //! [numbers]
    }

    snippet("numbers fail");
    {
        //! [numbers fail]
        for (const Value& v : {Value(2.5), Value(70000), Value("7")}) {
            try {
                std::cout << number<std::uint16_t>(v) << '\n';
            } catch (const std::exception& error) {
                std::cout << error.what() << '\n';
            }
        }
        //! [numbers fail]
    }

    snippet("integers");
    {
        //! [integers]
        const std::size_t size = 3'000'000;
        const std::int64_t id = 9007199254740993;
        std::cout << serialize(integer(size)) << ' ' << serialize(integer(id)) << '\n';
        // ->
        // 3000000 9007199254740993
        std::cout << number<std::int64_t>(integer(id)) - id << '\n'; // -> 0
        //! [integers]
    }

    snippet("visit");
    {
        //! [visit]
        std::cout << text_of("tea") << ' ' << text_of(7LL) << ' ' << text_of(Null()) << '\n';
        // ->
        // tea 7 ?
        std::cout << visit(CountStrings(), order()) << '\n'; // -> 2
        //! [visit]
    }

    snippet("wrong kind");
    {
        const Value v = order();
        //! [wrong kind]
        try {
            std::cout << get<std::string>(v["id"]) << '\n';
        } catch (const std::runtime_error& error) {
            std::cout << error.what() << '\n'; // -> invalid conversion: JSON number to JSON string
        }
        //! [wrong kind]
    }

    snippet("place");
    {
        const Value config(Property("server") = (Property("port") = "high"));
        //! [place]
        try {
            std::cout << to<int>(config, "/server/port") << '\n';
        } catch (const ConversionError& error) {
            std::cout << error.what() << '\n';
            // ->
            // at /server/port: "high" is a string, not a number
        }
        //! [place]
    }

    snippet("temporaries");
    {
        //! [temporaries]
        for (const auto& [name, member] : get<Object>(order())) { // moved out of the temporary
            std::cout << name << ' ';
        }
        const Value made = order(); // rather than get<Array>(order()["lines"])
        for (const Value& line : get<Array>(made["lines"])) {
            std::cout << serialize(line) << ' ';
        }
        std::cout << number<int>(order()["id"]) << '\n'; // a copy: safe
        //! [temporaries]
    }
}
