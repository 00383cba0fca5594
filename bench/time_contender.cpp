// The benchmarks of one contender; compiled once for each, with its header.
#include CONTENDER_HEADER

#include "tasks/conversion.hpp"
#include "tasks/family.hpp"
#include "tasks/messages.hpp"
#include "tasks/own_types.hpp"
#include "tasks/parsing.hpp"
#include "tasks/patches.hpp"
#include "tasks/reading.hpp"
#include "tasks/text.hpp"
#include "tasks/tokens.hpp"
#include "tasks/values.hpp"
#include "tasks/writing.hpp"

namespace {

const bool added = [] {
    bench::add_family<Contender>("text", bench::add_text<Contender>);
    bench::add_family<Contender>("writing", bench::add_writing<Contender>);
    bench::add_family<Contender>("messages", bench::add_messages<Contender>);
    bench::add_family<Contender>("scattered", bench::add_scattered<Contender>);
    bench::add_family<Contender>("parsing", bench::add_parsing<Contender>);
    bench::add_family<Contender>("parsing_in_used_heap",
                                 bench::add_parsing_in_used_heap<Contender>);
    bench::add_family<Contender>("tokens", bench::add_tokens<Contender>);
    bench::add_family<Contender>("streams", bench::add_streams<Contender>);
    bench::add_family<Contender>("values", bench::add_values<Contender>);
    bench::add_family<Contender>("reading", bench::add_reading<Contender>);
    bench::add_family<Contender>("arrays", bench::add_arrays<Contender>);
    bench::add_family<Contender>("objects", bench::add_objects<Contender>);
    bench::add_family<Contender>("conversion", bench::add_conversion<Contender>);
    if constexpr (Contender::converts) {
        bench::add_family<Contender>("own_types", bench::add_own_types<Contender>);
    }
    bench::add_family<Contender>("patches", bench::add_patches<Contender>);
    bench::add_family<Contender>("details", bench::add_details<Contender>);
    bench::add_family<Contender>("growth", bench::add_growth<Contender>);
    bench::add_family<Contender>("growth_of_parsing", bench::add_growth_of_parsing<Contender>);
    return true;
}();

} // namespace
