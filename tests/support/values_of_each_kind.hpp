/// @file
/// Two sets of values, one of every kind in each, for tests that go through all pairs of kinds.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_VALUES_OF_EACH_KIND_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_VALUES_OF_EACH_KIND_HPP

#include <foundation/json/value.hpp>

#include <map>
#include <string>
#include <vector>

namespace foundation::json::test {

using Array = std::vector<Value>;
using Object = std::map<std::string, Value>;

struct Sample {
    Value value;
    std::string kind;        ///< its name in messages
    std::string description; ///< what describe() says of it
    std::string left_behind; ///< what describe() says of it once its content was moved out

    bool is_container() const { return kind == "JSON array" || kind == "JSON object"; }
    bool is_string() const { return kind == "JSON string"; }
};

/// One value of each kind, in the order of the kinds. The texts are too long for a string's own
/// storage, so that copying one allocates.
inline std::vector<Sample> one_of_each_kind() {
    return {
        {Undefined(), "undefined", "undefined", "undefined"},
        {Null(), "JSON null", "JSON null null", "JSON null null"},
        {true, "JSON boolean", "JSON boolean true", "JSON boolean true"},
        {1.5, "JSON number", "JSON number 1.5", "JSON number 1.5"},
        {"the first of two long texts", "JSON string",
         "JSON string \"the first of two long texts\"", "JSON string \"\""},
        {Array{1, "element of the first array"}, "JSON array",
         "JSON array [1,\"element of the first array\"]", "JSON array []"},
        {Object{{"a", 1}, {"b", "member of the first object"}}, "JSON object",
         "JSON object {\"a\":1,\"b\":\"member of the first object\"}", "JSON object {}"},
        {0.25f, "float", "float 0.25", "float 0.25"},
        {-7LL, "int64", "int64 -7", "int64 -7"},
        {7ULL, "uint64", "uint64 7", "uint64 7"},
    };
}

/// As one_of_each_kind(), with other content wherever the kind has content. The text is longer than
/// the first, and there are more elements and members.
inline std::vector<Sample> other_samples() {
    return {
        {Undefined(), "undefined", "undefined", "undefined"},
        {Null(), "JSON null", "JSON null null", "JSON null null"},
        {false, "JSON boolean", "JSON boolean false", "JSON boolean false"},
        {-2.5, "JSON number", "JSON number -2.5", "JSON number -2.5"},
        {"the second text, which is longer than the first, and by far more than a little",
         "JSON string",
         "JSON string "
         "\"the second text, which is longer than the first, and by far more than a little\"",
         "JSON string \"\""},
        {Array{"element of the second array", Array{2, Array{}}, Null()}, "JSON array",
         "JSON array [\"element of the second array\",[2,[]],null]", "JSON array []"},
        {Object{{"c", Object{{"d", 3}}}, {"e", "member of the second object"}, {"f", Array{}}},
         "JSON object",
         "JSON object {\"c\":{\"d\":3},\"e\":\"member of the second object\",\"f\":[]}",
         "JSON object {}"},
        {0.75f, "float", "float 0.75", "float 0.75"},
        {-8LL, "int64", "int64 -8", "int64 -8"},
        {8ULL, "uint64", "uint64 8", "uint64 8"},
    };
}

} // namespace foundation::json::test

#endif
