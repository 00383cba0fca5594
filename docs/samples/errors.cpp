// The snippets of docs/errors.md.
#include "snippet.hpp"

#include <foundation/json/json.hpp>

#include <iostream>
#include <map>
#include <string>
#include <vector>

using namespace foundation::json;

//! [a reader of flags]
Value read_flag(const std::string& text) {
    if (text == "true" || text == "false") {
        return text == "true";
    }
    const ParseResult what = text.empty() ? EMPTY_INPUT : BOOLEAN_MISMATCH;
    throw ParserException(get_parse_result_description(what), what, 0, 1, 1, 0, text);
}
//! [a reader of flags]

int main() {
    snippet("wrong kinds");
    //! [wrong kinds]
    Value record((Property("name") = "Ada", Property("tags") = Element("x")));
    try {
        record["tags"]["first"] = 1;
    } catch (const std::runtime_error& error) {
        std::cout << error.what() << '\n'; // -> invalid conversion: JSON array to JSON object
    }
    try {
        std::cout << record["name"].length() << '\n';
    } catch (const std::runtime_error& error) {
        std::cout << error.what() << '\n';
        // -> json::Value::length not supported for values of type:JSON string
    }
    //! [wrong kinds]

    snippet("range");
    //! [range]
    try {
        std::cout << int(Value(-1e10)) << '\n';
    } catch (const std::bad_cast& error) {
        std::cout << error.what() << '\n'; // -> bad numeric conversion: negative overflow
    }
    //! [range]

    snippet("a reader of flags");
    std::cout << serialize(read_flag("true")) << '\n';

    snippet("catch");
    //! [catch]
    try {
        read_flag("maybe");
    } catch (const ParserException& error) {
        std::cout << error.get_line_number() << ':' << error.get_column() << ": " << error.what()
                  << ", found " << error.get_quoted_text() << '\n';
    }
    //! [catch]
}
