//! [configuration]
#include <foundation/json/content.hpp>
#include <foundation/json/parse.hpp>
#include <iostream>
using namespace foundation::json;
int main() {
    ParseOptions options;
    options.comments = true;
    for (const char* name : {"server.json", "broken.json"}) {
        try {
            const Value config = parse_file(name, options);
            std::cout << "port " << number<int>(config["port"]) << '\n';
        } catch (const ParserException& error) {
            std::cout << describe(error, name);
        }
    }
}
//! [configuration]
