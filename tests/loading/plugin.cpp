// What the test loads and unloads: a library that uses values.
#include <foundation/json/json.hpp>

#include <vector>

using namespace foundation::json;

/// The length of the text of a copy of `levels` nested arrays.
extern "C" [[gnu::visibility("default")]] int length_of_nested(int levels) {
    Value value;
    for (int level = 0; level < levels; ++level) {
        Value outer(std::vector<Value>{});
        outer.push(Value());
        outer[0].swap(value);
        value.swap(outer);
    }
    const Value copy = value;
    return static_cast<int>(serialize(copy).size());
}
