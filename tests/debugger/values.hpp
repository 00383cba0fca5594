// Values and an exception for the debugger to show. They are global, so that no optimization hides
// them.
#ifndef FOUNDATION_JSON_TESTS_DEBUGGER_VALUES_HPP
#define FOUNDATION_JSON_TESTS_DEBUGGER_VALUES_HPP

#include <foundation/json/json.hpp>

using foundation::json::ParserException;
using foundation::json::Value;

extern Value undefined, null, boolean, number, string, array, object, decimal, integer, counter;
extern Value whole, tenth, bytes, nested, deep, twenty;
extern ParserException exception;

ParserException make_exception();
void set_values();

#endif
