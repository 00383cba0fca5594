/// @file
/// How much memory the process has allocated. counted_memory.cpp replaces the allocation functions
/// of the program that links it, so it counts what any library allocates, by new or malloc.
#ifndef FOUNDATION_JSON_BENCH_COUNTED_MEMORY_HPP
#define FOUNDATION_JSON_BENCH_COUNTED_MEMORY_HPP

#include <cstddef>

namespace bench {

/// The bytes that are allocated now, and the most that were allocated since the last reset.
std::size_t allocated_memory();
std::size_t highest_memory();
void reset_highest_memory();

/// The number of calls that allocate a block or change its size, and the bytes that they return.
struct Allocations {
    std::size_t number = 0;
    std::size_t bytes = 0;
};

/// All allocations since the program began.
Allocations allocations();

} // namespace bench

#endif
