#include <foundation/json/json.hpp>

#include <stdexcept>

using namespace foundation::json;

// How long the text of an array of two numbers is, or 0 where there is none.
extern "C" __attribute__((visibility("default"))) int length_of_pair(double first, double second) {
    try {
        const Value pair((Element(first), Element(second)));
        return static_cast<int>(serialize(pair).size());
    } catch (const ParserException&) {
        return 0;
    }
}
