// Usage: foundation_json_bench_memory >FILE
// Measures the memory and the allocations of operations, and writes the results as JSON.
#include "memory.hpp"

#include <foundation/json/json.hpp>

#include <cstddef>
#include <exception>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace bench {

std::vector<MemoryContender>& memory_contenders() {
    static std::vector<MemoryContender> all;
    return all;
}

} // namespace bench

namespace {

using namespace foundation::json;

Value number(std::size_t bytes) {
    return static_cast<long long>(bytes);
}

Value results() {
    Value operations(std::vector<Value>{});
    Value value_bytes(std::map<std::string, Value>{});
    for (const bench::MemoryContender& contender : bench::memory_contenders()) {
        value_bytes[contender.name] = number(contender.value_bytes);
        for (const bench::MemoryResult& result : contender.measure()) {
            operations.push((Property("task") = result.task, Property("subject") = result.subject,
                             Property("contender") = contender.name,
                             Property("text_bytes") = number(result.text_bytes),
                             Property("peak_bytes") = number(result.peak_bytes),
                             Property("kept_bytes") = number(result.kept_bytes),
                             Property("allocations") = number(result.allocations),
                             Property("allocated_bytes") = number(result.allocated_bytes)));
        }
    }
    return (Property("operations") = operations, Property("value_bytes") = value_bytes);
}

} // namespace

int main() {
    try {
        Serializer serializer;
        serializer.pretty_print(true);
        serializer.write(std::cout, results());
        std::cout << '\n';
        return std::cout.flush() ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "foundation_json_bench_memory: " << error.what() << '\n';
        return 1;
    }
}
