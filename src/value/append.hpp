/// @file
/// Appending to an array, and its growth, without copying its elements. All of it is in
/// lifetime.cpp, where what moves a value is inlined.
#ifndef FOUNDATION_JSON_SRC_VALUE_APPEND_HPP
#define FOUNDATION_JSON_SRC_VALUE_APPEND_HPP

#include "value/value_access.hpp"

#include <cstddef>

namespace foundation::json::detail {

/// Appends copies of `count` values, which may be elements of the array, or hold it.
///
/// Growth moves the existing elements: it allocates the larger storage and one empty container for
/// each array or object among them, and never copies their content. Amortized constant time per
/// value in addition to its copy. If anything throws, the array is unchanged.
void append(Array& elements, const Value* values, std::size_t count);

/// The same for one value.
void append(Array& elements, const Value& value);

/// Makes room for more values, if there is none, as append() grows an array.
void make_room(Array& elements, std::size_t count);

/// The capacity of an array that has no room for more values, once it has grown.
/// @throws std::length_error the array would be too long
std::size_t grown_capacity(const Array& elements, std::size_t count);

} // namespace foundation::json::detail

#endif
