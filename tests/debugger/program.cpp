// The program that the tests of the debugger's printers run. One build of it has debug information
// of this source alone, without the types of a value's content.
#include "values.hpp"

#include <cstddef>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

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

// Of a type that is no key in this library.
char letters[6] = "ab";

// Two pages of memory, and between them one that is not mapped.
char* page;
char* page_after_gap;

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

void make_gap() {
    const std::size_t size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    page = static_cast<char*>(
        mmap(nullptr, 3 * size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    page_after_gap = page + 2 * size;
    munmap(page + size, size);
}

// Overwrites the stack below, so that nothing there looks like a value.
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
    make_gap();
    value_key = "array";
    stop();
    make_order();
    spoil_stack();
    // Called by a pointer, so that the compiler does not know the parameter.
    call = function;
    call(array);
}
