#include "values.hpp"

#include <new>
#include <string>
#include <vector>

using namespace foundation::json;

extern "C" void stop_midway();

namespace {

Value nested_arrays(int depth) {
    Value outermost;
    Value* innermost = &outermost;
    for (int level = 0; level < depth; ++level) {
        *innermost = std::vector<Value>(1);
        innermost = &(*innermost)[0];
    }
    return outermost;
}

} // namespace

void set_values() {
    // One of each kind; undefined stays.
    null = Null();
    boolean = true;
    number = 1.5;
    string = "text";
    array = (Element(1), Element(true), Element("x"));
    object = (Property("a") = 1, Property("b") = "x");
    decimal = 0.5F;
    integer = 5LL;
    counter = 18446744073709551615ULL;

    whole = 1000000;
    tenth = 0.1F;
    bytes = std::string("\"\\\n\0", 4) + "\xC3\xA4\xFF";
    nested = (Property("array") = (Element(Null()), Element(std::vector<Value>{}), Element(false)),
              Property("object") = (Property("x") = Undefined(), Property("y") = 1LL),
              Property("text") = "y");
    deep = nested_arrays(22);
    deepest = nested_arrays(102);
    twenty = std::vector<Value>(20, Value(7));
}

ParserException make_exception() {
    return ParserException("message", EMPTY_INPUT, 3, 1, 4, 2, "quoted");
}

Order::Order() : id(7), lines((stop_midway(), "tea")), paid(false) {}

void make_order() {
    alignas(Order) static unsigned char storage[sizeof(Order)];
    spoil(storage, sizeof storage);
    order = reinterpret_cast<Order*>(storage);
    made = &order->id;
    unmade = &order->lines;
    new (storage) Order();
    order->~Order();
}
