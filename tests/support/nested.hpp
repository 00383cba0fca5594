/// @file
/// Deeply nested values: arrays alone, or with values of every kind beside the nested one at each
/// level.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_NESTED_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_NESTED_HPP

#include <foundation/json/value.hpp>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::test {

/// A value, and the compact text that it must have.
struct Nested {
    Value value;
    std::string text;
};

enum class Nesting { arrays, objects, alternating };

/// An array of eleven values and the nested one.
inline Nested within_array(Nested nested) {
    Value outer(std::vector<Value>{Null(), true, 0.5, "text", 0.25f, 1LL, 2ULL,
                                   std::vector<Value>{}, Value(std::vector<Value>{7, Undefined()}),
                                   std::map<std::string, Value>{},
                                   std::map<std::string, Value>{{"a", 8}}, Undefined()});
    outer[11] = std::move(nested.value);
    return {std::move(outer),
            R"([null,true,0.5,"text",0.25,1,2,[],[7,],{},{"a":8},)" + nested.text + "]"};
}

/// An object of eleven members, two of them behind the nested one.
inline Nested within_object(Nested nested) {
    Value outer(std::map<std::string, Value>{{"a", Null()},
                                             {"b", true},
                                             {"c", 0.5},
                                             {"d", "text"},
                                             {"e", 0.25f},
                                             {"f", 1LL},
                                             {"g", 2ULL},
                                             {"h", std::map<std::string, Value>{{"a", 8}}},
                                             {"nested", Undefined()},
                                             {"y", Value(std::vector<Value>{7, Undefined()})},
                                             {"z", Undefined()}});
    outer["nested"] = std::move(nested.value);
    return {std::move(outer), R"({"a":null,"b":true,"c":0.5,"d":"text","e":0.25,"f":1,"g":2,)"
                              R"("h":{"a":8},"nested":)" +
                                  nested.text + R"(,"y":[7,],"z":})"};
}

/// A text within that many levels. If they alternate, the outermost is an array.
inline Nested nest(Nesting nesting, std::size_t depth, const std::string& innermost) {
    Nested nested{innermost, '"' + innermost + '"'};
    for (std::size_t level = depth; level-- != 0;) {
        const bool array =
            nesting == Nesting::arrays || (nesting == Nesting::alternating && level % 2 == 0);
        nested = array ? within_array(std::move(nested)) : within_object(std::move(nested));
    }
    return nested;
}

/// The value that lies that many levels within another.
inline Value& innermost(Value& value, std::size_t depth) {
    Value* at = &value;
    while (depth-- != 0) {
        at = at->hasOwnProperty("nested") ? &(*at)["nested"] : &(*at)[11];
    }
    return *at;
}

/// A value within that many arrays that hold nothing else. It is moved there, so that its arrays
/// keep their capacity.
inline Value within_arrays(Value core, std::size_t depth) {
    for (; depth != 0; --depth) {
        Value outer(std::vector<Value>{Value()});
        outer[0].swap(core);
        core.swap(outer);
    }
    return core;
}

/// The value that lies within so many such arrays.
inline Value& core_of(Value& value, std::size_t depth) {
    Value* at = &value;
    while (depth-- != 0) {
        at = &(*at)[0];
    }
    return *at;
}

} // namespace foundation::json::test

#endif
