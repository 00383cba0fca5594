/// @file
/// The list to which all contenders of a program add their families of benchmarks.
#ifndef FOUNDATION_JSON_BENCH_TASKS_FAMILY_HPP
#define FOUNDATION_JSON_BENCH_TASKS_FAMILY_HPP

#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// Benchmarks that run together, of one contender. Its values are made when it is added.
struct Family {
    std::string name;
    std::string contender;
    void (*add)();
};

/// All families of all contenders.
std::vector<Family>& families();

template <class Contender>
void add_family(const char* name, void (*add)()) {
    families().push_back({name, Contender::name, add});
}

/// Adds the benchmark `task/subject/contender`, a function of benchmark::State&.
template <class Contender, class Function>
void add(const std::string& task, const std::string& subject, Function function) {
    benchmark::RegisterBenchmark((task + '/' + subject + '/' + Contender::name).c_str(),
                                 std::move(function));
}

/// A benchmark that gives wrong results ends the program.
template <class Contender>
void require(bool right, const std::string& what) {
    if (!right) {
        throw std::runtime_error(std::string(Contender::name) + ": wrong result of " + what);
    }
}

} // namespace bench

#endif
