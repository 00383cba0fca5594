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

/// The most bytes that were allocated at a time during a call, beyond those allocated before it.
template <class Function>
std::size_t peak_memory(Function function) {
    const std::size_t before = allocated_memory();
    reset_highest_memory();
    function();
    return highest_memory() - before;
}

} // namespace bench

#endif
