// The benchmarks of values of standard containers: those that make no text.
#include "contenders/std_variant.hpp"

#include "tasks/family.hpp"
#include "tasks/reading.hpp"
#include "tasks/values.hpp"

namespace {

const bool added = [] {
    bench::add_family<Contender>("values", bench::add_values<Contender>);
    bench::add_family<Contender>("reading", bench::add_reading<Contender>);
    bench::add_family<Contender>("arrays", bench::add_arrays<Contender>);
    bench::add_family<Contender>("objects", bench::add_objects<Contender>);
    return true;
}();

} // namespace
