//! [first program]
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/write.hpp>
#include <iostream>
using namespace foundation::json;
int main() {
    Value order = parse(R"({"id": 7, "lines": ["tea", 2.5]})");
    std::cout << get<std::string>(order["lines"][0]) << ' ' << number<int>(order["id"]) + 1 << '\n';
    order["paid"] = false;
    order["lines"].push(Null());
    std::cout << write(order, WriteOptions::indented(2)) << '\n';
}
//! [first program]
