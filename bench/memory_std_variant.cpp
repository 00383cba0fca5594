// The memory of values of standard containers.
#include "contenders/std_variant.hpp"

#include "memory.hpp"
#include "tasks/memory.hpp"

#include <vector>

namespace {

std::vector<bench::MemoryResult> measure() {
    std::vector<bench::MemoryResult> results;
    bench::measure_values<Contender>(results);
    return results;
}

const bool added = [] {
    bench::memory_contenders().push_back({Contender::name, sizeof(Contender::Node), measure});
    return true;
}();

} // namespace
