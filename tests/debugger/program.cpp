// What the tests of the debugger's printers run. One of them has debug information of this source
// alone, which does not say how the content of a value is made up.
#include "values.hpp"

#include <cstddef>
#include <string>

Value undefined, null, boolean, number, string, array, object, decimal, integer, counter;
Value whole, tenth, bytes, nested, deep, deepest, twenty;
ParserException exception = make_exception();
Value& reference = array;
Value* pointer = &array;
void (*volatile call)(const Value&);
Order* order;
Value *made, *unmade;

// Keys of elements and members.
int first = 0;
std::size_t last = 2;
unsigned char middle = 1;
const char* text_key = "text";
std::string string_key = "object";
Value value_key;

// Where the debugger stops.
extern "C" {
__attribute__((noinline)) void stop() {
    asm volatile("" : : : "memory");
}
__attribute__((noinline)) void stop_midway() {
    asm volatile("" : : : "memory");
}
__attribute__((noinline)) void stop_in_function() {
    asm volatile("" : : : "memory");
}
}

__attribute__((noinline)) void spoil(volatile unsigned char* memory, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        memory[i] = 0xAB;
    }
}

namespace {

// Leaves no memory below on the stack that looks like a value.
__attribute__((noinline)) void spoil_stack() {
    unsigned char spoiled[4096];
    spoil(spoiled, sizeof spoiled);
}

void function(const Value& parameter) {
    Value copy = parameter;
    const Value& same = copy;
    stop_in_function();
    Value later = parameter;
    later.push(same);
}

} // namespace

int main() {
    set_values();
    value_key = "array";
    stop();
    make_order();
    spoil_stack();
    // Not directly, or the compiler would know the parameter.
    call = function;
    call(array);
}
