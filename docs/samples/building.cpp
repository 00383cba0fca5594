// The snippets of docs/building.md.
#include "snippet.hpp"

#include <foundation/json/json.hpp>

#include <iostream>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace foundation::json;

int main() {
    snippet("arrays");
    {
        //! [arrays]
        Value list((Element(1), Element("two"), Element(Null())));
        std::cout << serialize(list) << '\n'; // -> [1,"two",null]

        Value nested((Element(1), Element((Element(2), Element(3)))));
        std::cout << serialize(nested) << '\n'; // -> [1,[2,3]]
        //! [arrays]
    }

    snippet("objects");
    {
        //! [objects]
        Value record((Property("id") = 7, Property("name") = "x"));
        std::cout << serialize(record) << '\n'; // -> {"id":7,"name":"x"}

        Value outer((Property("inner") = (Property("on") = true), Property("empty") = Element(0)));
        std::cout << serialize(outer) << '\n'; // -> {"empty":[0],"inner":{"on":true}}
        //! [objects]
    }

    snippet("twice");
    {
        //! [twice]
        Value first((Property("a") = 1, Property("a") = 2));
        std::cout << serialize(first) << '\n'; // -> {"a":1}

        Value last((Property("a") = 1) = 2);
        std::cout << serialize(last) << '\n'; // -> {"a":2}
        //! [twice]
    }

    snippet("copies nest");
    {
        //! [copies nest]
        const Element chain(1);
        std::cout << serialize(chain) << '\n';                 // -> [1]
        std::cout << serialize(Element(chain)) << '\n';        // -> [[1]]
        std::cout << serialize(Element(Value(chain))) << '\n'; // -> [[1]]
        //! [copies nest]
    }

    snippet("empty");
    {
        //! [empty]
        Value list(std::vector<Value>{});
        Value record(std::map<std::string, Value>{});
        std::cout << serialize(list) << serialize(record) << '\n'; // -> []{}
        //! [empty]
    }

    snippet("hand over");
    {
        Value child = "child";
        Value another = "another";
        Value record(std::map<std::string, Value>{});
        //! [hand over]
        Value parent(std::vector<Value>{});
        parent.push(Value());
        parent[parent.length() - 1].swap(child); // for an array
        record["child"].swap(another);           // for an object: the lookup inserts the member
        //! [hand over]
        std::cout << serialize(parent) << serialize(record) << '\n';
    }

    snippet("grow");
    {
        //! [grow]
        Value rows(std::vector<Value>{});
        for (int i = 0; i < 3; ++i) {
            Value row(std::map<std::string, Value>{});
            row["number"] = i;
            row["squares"] = std::vector<Value>{i * i};
            rows.push(Value());
            rows[rows.length() - 1].swap(row);
        }
        Value table(std::map<std::string, Value>{});
        table["rows"].swap(rows);
        std::cout << serialize(table) << '\n';
        //! [grow]
    }

    snippet("move");
    {
        //! [move]
        Value from = "a string that is long enough to be on the heap";
        Value to = std::move(from);
        std::cout << serialize(from) << '\n'; // -> ""
        //! [move]
    }

    snippet("within itself");
    {
        Value v((Property("child") = (Property("n") = 1)));
        //! [within itself]
        Value child;
        child.swap(v["child"]);
        v.swap(child);
        //! [within itself]
        std::cout << serialize(v) << '\n';
    }

    snippet("within itself by copy");
    {
        Value v((Property("child") = (Property("n") = 1)));
        //! [within itself by copy]
        v = Value(v["child"]);
        v["child"] = Value(v);
        std::cout << serialize(v) << '\n'; // -> {"child":{"n":1},"n":1}
        //! [within itself by copy]
    }
}
