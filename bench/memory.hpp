/// @file
/// The measurements of the memory program, and the list to which its contenders add themselves.
#ifndef FOUNDATION_JSON_BENCH_MEMORY_HPP
#define FOUNDATION_JSON_BENCH_MEMORY_HPP

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// The memory that one operation allocated, its result included.
struct MemoryResult {
    std::string task;
    std::string subject;
    std::size_t text_bytes = 0; ///< the length of its result, if that is a text
    std::size_t peak_bytes = 0; ///< the most that was allocated at a time
    std::size_t kept_bytes = 0; ///< still allocated after it, for its result
    std::size_t allocations = 0;
    std::size_t allocated_bytes = 0; ///< the sum over all allocations
};

/// A contender, with the function that measures all its operations.
struct MemoryContender {
    std::string name;
    std::size_t value_bytes; ///< `sizeof` its values
    std::vector<MemoryResult> (*measure)();
};

/// All contenders.
std::vector<MemoryContender>& memory_contenders();

} // namespace bench

#endif
