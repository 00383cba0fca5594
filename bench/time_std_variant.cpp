// The benchmarks of values of standard containers: those that make no text.
#include "contenders/std_variant.hpp"

#include "tasks/family.hpp"
#include "tasks/reading.hpp"
#include "tasks/values.hpp"

namespace {

const bool added = [] {
    auto& all = bench::families();
    all.push_back({"values", bench::add_values<Contender>});
    all.push_back({"reading", bench::add_reading<Contender>});
    all.push_back({"arrays", bench::add_arrays<Contender>});
    all.push_back({"objects", bench::add_objects<Contender>});
    return true;
}();

} // namespace
