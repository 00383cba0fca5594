// Usage: foundation_json_bench [FAMILY]... [--contender=NAME] [--benchmark_...]
//        foundation_json_bench --list
// Runs the benchmarks of some families, or of all, for one contender or for all. --list prints a
// line for each family and contender, with a tab between the two.
#include "tasks/family.hpp"
#include "tasks/text.hpp"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include <unistd.h>

namespace bench {

std::vector<Family>& families() {
    static std::vector<Family> all;
    return all;
}

const std::filesystem::path& scratch_file() {
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() /
        ("foundation_json_bench." + std::to_string(getpid()) + ".json");
    return path;
}

} // namespace bench

namespace {

/// Lets the process keep all memory that it has obtained. Otherwise each large block would come
/// from the system, and its clearing of pages would be most of the time measured.
bool keep_memory() {
    return mallopt(M_MMAP_MAX, 0) == 1 && mallopt(M_TRIM_THRESHOLD, INT_MAX) == 1 &&
           mallopt(M_TOP_PAD, 64 << 20) == 1;
}

int refuse(const std::string& message) {
    std::cerr << "foundation_json_bench: " << message << '\n';
    return 2;
}

bool is_any(const std::string& name, std::string bench::Family::*member) {
    const auto& all = bench::families();
    return std::any_of(all.begin(), all.end(),
                       [&](const bench::Family& family) { return family.*member == name; });
}

int list() {
    for (const bench::Family& family : bench::families()) {
        std::cout << family.name << '\t' << family.contender << '\n';
    }
    return std::cout.flush() ? 0 : 1;
}

int run(const std::vector<std::string>& arguments) {
    const std::string option = "--contender=";
    std::vector<std::string> names;
    std::string contender;
    for (const std::string& argument : arguments) {
        if (argument == "--list") {
            return list();
        }
        if (argument.compare(0, option.size(), option) == 0) {
            contender = argument.substr(option.size());
            if (!is_any(contender, &bench::Family::contender)) {
                return refuse("unknown contender '" + contender + "'");
            }
        } else if (is_any(argument, &bench::Family::name)) {
            names.push_back(argument);
        } else {
            return refuse("unknown family '" + argument + "'");
        }
    }
    for (const bench::Family& family : bench::families()) {
        if ((names.empty() || std::find(names.begin(), names.end(), family.name) != names.end()) &&
            (contender.empty() || family.contender == contender)) {
            family.add();
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    std::error_code ignored;
    std::filesystem::remove(bench::scratch_file(), ignored);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (!keep_memory()) {
        return refuse("the allocator cannot be set up");
    }
    benchmark::Initialize(&argc, argv);
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "foundation_json_bench: " << error.what() << '\n';
        return 1;
    }
}
