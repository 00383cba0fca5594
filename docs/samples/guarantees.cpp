// The snippets of docs/guarantees.md.
#include "snippet.hpp"

#include <foundation/json/json.hpp>

#include <iostream>
#include <string>
#include <utility>
#include <vector>

using namespace foundation::json;

int main() {
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
