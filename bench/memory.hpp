/// @file
/// The measurements of the memory program, and the list to which its contenders add themselves.
#ifndef FOUNDATION_JSON_BENCH_MEMORY_HPP
#define FOUNDATION_JSON_BENCH_MEMORY_HPP

#include "documents.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// The most memory that one operation on one document took beyond the document's value, its result
/// included.
struct MemoryResult {
    std::string task;
    std::string contender;
    std::size_t text_bytes;
    std::size_t peak_bytes;
};

/// Measures all operations of one contender.
using MeasureMemory = std::vector<MemoryResult> (*)(const Document&);

/// All contenders.
std::vector<MeasureMemory>& memory_contenders();

} // namespace bench

#endif
