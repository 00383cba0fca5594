// Reading from RapidJSON with a test of the kind, which all other libraries make.
#include "contenders/rapidjson.hpp"

#include "tasks/reading.hpp"

#include <stdexcept>

namespace {

struct Checked : Contender {
    static constexpr const char* name = "RapidJSON, checked";

    static std::size_t size_of_string(const Node& node) {
        if (!node.IsString()) {
            throw std::invalid_argument("not a string");
        }
        return Contender::size_of_string(node);
    }
    static double number(const Node& node) {
        if (!node.IsDouble()) {
            throw std::invalid_argument("not a double");
        }
        return Contender::number(node);
    }
};

const bool added = [] {
    bench::add_family<Checked>("reading", bench::add_reading<Checked>);
    return true;
}();

} // namespace
