// A caller of the parser that is built outside the project. It parses, catches what the parser
// throws, and prints its results on one line.
#include <foundation/json/parse.hpp>
#include <foundation/json/parse_errors.hpp>
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <iostream>
#include <sstream>
#include <string>
#include <utility>

namespace json = foundation::json;

namespace {

std::string described(const std::string& text) {
    try {
        return json::serialize(json::parse(text));
    } catch (const json::ParserException& error) {
        return json::describe(error, "text");
    }
}

std::string values(const std::string& text) {
    std::istringstream stream(text);
    json::ValueStream first(stream);
    json::ValueStream values(std::move(first));
    std::string result;
    for (json::Value value; values.next(value);) {
        result += json::serialize(value) + ';';
    }
    return result;
}

} // namespace

int main() {
    std::istringstream stream("{\"a\": [0.1]}");
    const std::string text = json::serialize(json::parse(stream)) + ' ' + values("1 [2]\n\"3\"") +
                             ' ' + described("[1;]");
    std::cout << text;
    return text == "{\"a\":[0.1]} 1;[2];\"3\"; text:1:3: found ';' where ',' or ']' is expected\n"
                   "[1;]\n  ^\n"
               ? 0
               : 1;
}
