//! [first program]
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <iostream>
using namespace foundation::json;
int main() {
    Value order((Property("id") = 7, Property("lines") = (Element("tea"), Element(2.5))));
    order["paid"] = false;
    order["lines"].push(Null());
    const std::string& first = get<std::string>(order["lines"][0]);
    std::cout << number<int>(order["id"]) + 1 << ' ' << first << '\n';
    std::cout << pretty_print(order) << '\n';
}
//! [first program]
