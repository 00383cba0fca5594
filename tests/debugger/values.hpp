// Values and an exception for the debugger to show. They are global, so that no optimization hides
// them.
#ifndef FOUNDATION_JSON_TESTS_DEBUGGER_VALUES_HPP
#define FOUNDATION_JSON_TESTS_DEBUGGER_VALUES_HPP

#include <foundation/json/json.hpp>

#include <cstddef>

using foundation::json::ParserException;
using foundation::json::Value;

extern Value undefined, null, boolean, number, string, array, object, decimal, integer, counter;
extern Value whole, tenth, bytes, nested, deep, deepest, twenty;
extern ParserException exception;

// A class whose members are values.
struct Order {
    Value id, lines, paid;
    Order();
};

// An order in uninitialized memory, and the first and the second value there.
extern Order* order;
extern Value *made, *unmade;

ParserException make_exception();
void set_values();

// Calls `stop_midway` when the first value of the order is constructed and the others are not.
void make_order();

// Fills memory with bytes that do not look like a value.
void spoil(volatile unsigned char* memory, std::size_t size);

#endif
