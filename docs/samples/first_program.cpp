//! [first program]
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <iostream>
using namespace foundation::json;
int main() {
    Value order = parse(R"({"id": 7, "lines": ["tea", 2.5]})");
    std::cout << get<std::string>(order["lines"][0]) << ' ' << number<int>(order["id"]) + 1 << '\n';
    order["paid"] = false;
    order["lines"].push(Null());
    std::cout << pretty_print(order) << '\n';
}
//! [first program]
