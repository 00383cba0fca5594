// The snippets of docs/lifetimes.md.
#include "snippet.hpp"

#include <foundation/json/json.hpp>

#include <iostream>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace foundation::json;

int main() {
    snippet("references");
    {
        //! [references]
        Value record((Property("list") = (Element(1), Element(2))));
        Value& list = record["list"];
        record["other"] = true; // other members come and go: `list` stays valid
        Value& first = list[0];
        first = "one";
        std::cout << serialize(record) << '\n'; // -> {"list":["one",2],"other":true}
        list.push(3); // `first` is no longer valid: the elements may have moved
        //! [references]
    }

    snippet("swap keeps addresses");
    {
        //! [swap keeps addresses]
        Value one((Element("a"), Element("b")));
        Value two((Element("c"), Element("d")));
        const Value* const element = &one[0];
        one.swap(two);
        std::cout << (element == &two[0]) << '\n'; // -> 1
        //! [swap keeps addresses]
    }

    snippet("fallback");
    {
        //! [fallback]
        const Value record((Property("port") = 0));
        const Value port = record["port"] || Value(8080); // a copy: safe
        const Value standard = 8080;
        const Value& chosen = record["port"] || standard;                // refers to `standard`
        std::cout << int(port) << ' ' << (&chosen == &standard) << '\n'; // -> 8080 1
        //! [fallback]
    }

    snippet("undefined constant");
    {
        //! [undefined constant]
        const Value a((Property("x") = 1));
        const Value b((Property("y") = 2));
        std::cout << (&a["missing"] == &b["missing"]) << '\n'; // -> 1
        //! [undefined constant]
    }

    snippet("threads");
    {
        //! [threads]
        const Value shared((Property("list") = (Element(1), Element(2))));
        std::string one;
        std::string two;
        std::thread first([&] { one = serialize(shared["list"]); });
        std::thread second([&] { two = serialize(shared["missing"] || Value("none")); });
        first.join();
        second.join();
        std::cout << one << ' ' << two << '\n'; // -> [1,2] "none"
        //! [threads]
    }

    snippet("copy first");
    {
        Value settings((Property("a") = 1));
        const Value update((Property("a") = 2));
        //! [copy first]
        Value copy = update; // may throw; `settings` is as it was
        settings.swap(copy); // both are objects: cannot fail
        //! [copy first]
        std::cout << serialize(settings) << '\n';
    }

    snippet("moved from");
    {
        //! [moved from]
        Value list((Element(1), Element(2)));
        const Value taken = std::move(list);
        std::cout << serialize(list) << serialize(taken) << '\n'; // -> [][1,2]

        Value left((Element("left")));
        Value right((Element("right")));
        left = std::move(right);
        std::cout << serialize(left) << serialize(right) << '\n'; // -> ["right"]["left"]
        //! [moved from]
    }
}
