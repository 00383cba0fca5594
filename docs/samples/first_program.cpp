//! [first program]
#include <foundation/json/json.hpp>
#include <iostream>
using namespace foundation::json;
int main() {
    Value order((Property("id") = 7, Property("lines") = (Element("tea"), Element(2.5))));
    order["paid"] = false;
    order["lines"].push(Null());
    std::cout << int(order["id"]) + 1 << ' ' << serialize(order["lines"]) << '\n';
    std::cout << pretty_print(order) << '\n';
}
//! [first program]
