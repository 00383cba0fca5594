/// @file
/// Records that are written by hand, member by member.
#ifndef FOUNDATION_JSON_BENCH_TASKS_RECORDS_HPP
#define FOUNDATION_JSON_BENCH_TASKS_RECORDS_HPP

#include <string>
#include <vector>

namespace bench {

struct Record {
    int id;
    std::string name;
    double price;
    bool paid;
    long long timestamp;
    std::vector<double> coordinates;
};

} // namespace bench

#endif
