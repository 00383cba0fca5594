// Errors of a parser, shown to people: the position, what is wrong, and the line. describe() makes
// such a report; here a program makes its own, whichever parser threw the ParserException.
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>

#include <iostream>
#include <string>

using namespace foundation::json;

// The code has an English sentence; what() is what the parser says of the case at hand. The quoted
// text is the piece of input around the error.
void explain(const std::string& file, const ParserException& error) {
    std::cout << file << ':' << error.get_line_number() << ':' << error.get_column() << ": "
              << get_parse_result_description(error.get_parse_result()) << '\n';
    if (!error.get_quoted_text().empty()) {
        std::cout << "    " << error.what() << '\n'
                  << "    " << error.get_quoted_text() << '\n'
                  << "    " << std::string(error.get_quoted_byte_position(), ' ') << "^\n";
    }
}

void read(const std::string& file, const std::string& text) {
    try {
        const Value value = parse(text);
        std::cout << file << ": " << serialize(value) << '\n';
    } catch (const ParserException& error) {
        explain(file, error);
        // A program may also act on the code itself.
        if (error.get_parse_result() == EMPTY_INPUT) {
            std::cout << "    (was the file saved?)\n";
        }
    }
}

int main() {
    read("good.json", "[1, 2.50, \"three\"]");
    read("colon.json", "{\"a\": 1,\n \"b\" 2}");
    read("fraction.json", "[1.]");
    read("bracket.json", "[1, 2");
    read("empty.json", "");
}
