/// @file
/// The measurements of the memory program, and the list to which its contenders add themselves.
#ifndef FOUNDATION_JSON_BENCH_MEMORY_HPP
#define FOUNDATION_JSON_BENCH_MEMORY_HPP

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// What one operation took, its result included, beyond what was allocated before it.
struct MemoryResult {
    std::string task;
    std::string subject;
    std::size_t text_bytes = 0; ///< of its result, if that is a text
    std::size_t peak_bytes = 0; ///< allocated at a time
    std::size_t kept_bytes = 0; ///< allocated when it had ended, its result still there
    std::size_t allocations = 0;
    std::size_t allocated_bytes = 0; ///< obtained by those in all
};

/// A contender, and how to measure all its operations.
struct MemoryContender {
    std::string name;
    std::size_t value_bytes; ///< of a value itself, `sizeof`
    std::vector<MemoryResult> (*measure)();
};

/// All contenders.
std::vector<MemoryContender>& memory_contenders();

} // namespace bench

#endif
