// The benchmarks of simdjson: those that read a text and change nothing.
#include "contenders/simdjson.hpp"

#include "tasks/family.hpp"
#include "tasks/own_types.hpp"
#include "tasks/parsing.hpp"
#include "tasks/tokens.hpp"

namespace {

const bool added = [] {
    bench::add_family<Contender>("parsing", bench::add_parsing<Contender>);
    bench::add_family<Contender>("parsing_in_used_heap",
                                 bench::add_parsing_in_used_heap<Contender>);
    bench::add_family<Contender>("tokens", bench::add_walks_over_tokens<Contender>);
    bench::add_family<Contender>("own_types", bench::add_own_types<Contender>);
    return true;
}();

} // namespace
