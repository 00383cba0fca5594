/// @file
/// Appending to an array without copying what it holds.
#ifndef FOUNDATION_JSON_SRC_ACCESS_APPEND_HPP
#define FOUNDATION_JSON_SRC_ACCESS_APPEND_HPP

#include "value/value_access.hpp"

#include <cstddef>

namespace foundation::json::detail {

/// Appends copies of `count` values, which may be elements of the array, or hold it.
///
/// Growth moves the elements that are there: it allocates the larger storage and one empty
/// container for each array or object among them, and never copies their content. Amortized
/// constant time per value beyond its copy. If anything throws, the array is as it was.
void append(Array& elements, const Value* values, std::size_t count);

} // namespace foundation::json::detail

#endif
