// The benchmarks of one contender; compiled once for each, with its header.
#include CONTENDER_HEADER

#include "tasks/conversion.hpp"
#include "tasks/family.hpp"
#include "tasks/messages.hpp"
#include "tasks/parsing.hpp"
#include "tasks/patches.hpp"
#include "tasks/reading.hpp"
#include "tasks/text.hpp"
#include "tasks/tokens.hpp"
#include "tasks/values.hpp"
#include "tasks/writing.hpp"

namespace {

const bool added = [] {
    auto& all = bench::families();
    all.push_back({"text", bench::add_text<Contender>});
    all.push_back({"writing", bench::add_writing<Contender>});
    all.push_back({"messages", bench::add_messages<Contender>});
    all.push_back({"scattered", bench::add_scattered<Contender>});
    all.push_back({"parsing", bench::add_parsing<Contender>});
    all.push_back({"tokens", bench::add_tokens<Contender>});
    all.push_back({"streams", bench::add_streams<Contender>});
    all.push_back({"values", bench::add_values<Contender>});
    all.push_back({"reading", bench::add_reading<Contender>});
    all.push_back({"arrays", bench::add_arrays<Contender>});
    all.push_back({"objects", bench::add_objects<Contender>});
    all.push_back({"conversion", bench::add_conversion<Contender>});
    all.push_back({"patches", bench::add_patches<Contender>});
    all.push_back({"details", bench::add_details<Contender>});
    all.push_back({"growth", bench::add_growth<Contender>});
    all.push_back({"growth_of_parsing", bench::add_growth_of_parsing<Contender>});
    return true;
}();

} // namespace
