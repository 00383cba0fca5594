// First steps: build a value, look into it, change it, write it.
#include <foundation/json/json.hpp>

#include <iostream>

using namespace foundation::json;

int main() {
    // An object of a string, a number and an array. The double parentheses make the commas between
    // the properties operators.
    Value song((Property("title") = "Blue", Property("seconds") = 184,
                Property("tags") = (Element("jazz"), Element("1959"))));

    // Conversions are explicit. A number that fits becomes an int.
    std::cout << "minutes: " << int(song["seconds"]) / 60 << '\n';
    std::cout << "tags: " << song["tags"].length() << '\n';

    // Assigning to a member that is not there inserts it. Only arrays can be pushed onto.
    song["rating"] = 4.5;
    song["tags"].push("live");
    song["label"] = Null();

    std::cout << serialize(song) << '\n';
    std::cout << pretty_print(song) << '\n';

    // A value of the wrong kind is an error with a message that names both kinds.
    try {
        song["title"].push("Green");
    } catch (const std::runtime_error& error) {
        std::cout << error.what() << '\n';
    }
}
