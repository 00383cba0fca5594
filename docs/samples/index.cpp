// The snippet of docs/index.md and README.md.
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/write.hpp>

#include <iostream>

using namespace foundation::json;

int main() {
    //! [five lines]
    Value order = parse(R"({"id": 7, "lines": ["tea", 2.5]})");
    order["paid"] = true;
    order["lines"].push("milk");
    std::cout << number<int>(order["id"]) + 1 << '\n';
    std::cout << write(order) << '\n';
    //! [five lines]
}
