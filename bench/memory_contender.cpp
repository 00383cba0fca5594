// The memory that one contender's operations take; compiled once for each, with its header.
#include CONTENDER_HEADER

#include "memory.hpp"
#include "tasks/memory.hpp"

#include <vector>

namespace {

template <class Any>
std::vector<bench::MemoryResult> measure() {
    std::vector<bench::MemoryResult> results;
    bench::measure_text<Any>(results);
    bench::measure_parsing<Any>(results);
    bench::measure_values<Any>(results);
    return results;
}

const bool added = [] {
    bench::memory_contenders().push_back(
        {Contender::name, sizeof(Contender::Node), measure<Contender>});
    return true;
}();

} // namespace
