// What the tests of the debugger's printers run. One of them has debug information of this source
// alone, which does not say how the content of a value is made up.
#include "values.hpp"

Value undefined, null, boolean, number, string, array, object, decimal, integer, counter;
Value whole, tenth, bytes, nested, deep, twenty;
ParserException exception = make_exception();
Value& reference = array;

// Where the debugger stops.
extern "C" __attribute__((noinline)) void stop() {
    asm volatile("" : : : "memory");
}

int main() {
    set_values();
    stop();
}
