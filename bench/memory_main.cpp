// Usage: foundation_json_bench_memory >FILE
// Measures the peak memory of operations that write, and writes the results as JSON.
#include "memory.hpp"

#include <foundation/json/json.hpp>

#include <exception>
#include <iostream>

namespace bench {

std::vector<MeasureMemory>& memory_contenders() {
    static std::vector<MeasureMemory> all;
    return all;
}

} // namespace bench

namespace {

using namespace foundation::json;

Value results() {
    Value list(std::vector<Value>{});
    for (const bench::Document& document : bench::documents()) {
        for (const bench::MeasureMemory measure : bench::memory_contenders()) {
            for (const bench::MemoryResult& result : measure(document)) {
                list.push((Property("task") = result.task, Property("subject") = document.name,
                           Property("contender") = result.contender,
                           Property("text_bytes") = static_cast<long long>(result.text_bytes),
                           Property("peak_bytes") = static_cast<long long>(result.peak_bytes)));
            }
        }
    }
    return list;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1) {
        std::cerr << "foundation_json_bench_memory: unknown argument '" << argv[1] << "'\n";
        return 2;
    }
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
