// The snippets of docs/untrusted_input.md.
#include "snippet.hpp"

#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>

#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using namespace foundation::json;

//! [request]
Value read_request(std::string_view text) {
    if (text.size() > 1'000'000) {
        throw std::length_error("the request is too long");
    }
    ParseOptions options;
    options.max_depth = 20;
    return parse(text, options);
}
//! [request]

//! [limit]
constexpr int max_depth = 1000;

/// An array in an array in an array, as of that many brackets.
void read_nested(Value& slot, int levels, int depth = 1) {
    if (depth > max_depth) {
        throw ParserException("nested too deep", MISSING_ARRAY_CLOSE, 0, 1, 1, 0, "");
    }
    slot = std::vector<Value>{};
    if (levels > 1) {
        slot.push(Value());
        read_nested(slot[0], levels - 1, depth + 1);
    }
}
//! [limit]

int main() {
    snippet("request");
    for (const std::string& text : {std::string(20, '[') + std::string(20, ']'),
                                    std::string(21, '['), std::string(1'000'001, ' ')}) {
        try {
            std::cout << serialize(read_request(text)) << '\n';
        } catch (const std::exception& error) {
            std::cout << error.what() << '\n';
        }
    }

    snippet("limit");
    for (const int levels : {3, 1000, 1001}) {
        try {
            Value value;
            read_nested(value, levels);
            std::cout << serialize(value).size() << '\n';
        } catch (const ParserException& error) {
            std::cout << error.what() << '\n';
        }
    }

    snippet("inside out");
    {
        //! [inside out]
        Value value;
        for (int level = 0; level < 1'000; ++level) {
            Value outer(std::vector<Value>{});
            outer.push(Value());
            outer[0].swap(value);
            value.swap(outer);
        }
        std::cout << serialize(value).size() << '\n'; // -> 2000
        //! [inside out]
    }
}
