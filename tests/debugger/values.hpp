// Values and an exception for the debugger to show. They are global, so that no optimization hides
// them.
#ifndef FOUNDATION_JSON_TESTS_DEBUGGER_VALUES_HPP
#define FOUNDATION_JSON_TESTS_DEBUGGER_VALUES_HPP

#include <foundation/json/json.hpp>

using foundation::json::ParserException;
using foundation::json::Value;

extern Value undefined, null, boolean, number, string, array, object, decimal, integer, counter;
extern Value whole, tenth, bytes, nested, deep, deepest, twenty;
extern ParserException exception;

// A class that is made up of values.
struct Order {
    Value id, lines, paid;
    Order();
};

// In memory without any meaning until a value is made there.
extern Order* order;

ParserException make_exception();
void set_values();

// Calls `stop_midway` while some values are made and others are not.
void make_order();

#endif
