// A log shipper: passes the lines of a log on, without those for debugging, with a member renamed
// and another dropped, and counts the lines that are bad. One line is in memory at a time.
#include <foundation/json/content.hpp>
#include <foundation/json/records.hpp>
#include <foundation/json/serializer.hpp>

#include <fstream>
#include <iostream>
#include <utility>

using namespace foundation::json;

/// Makes what is passed on of a line. @return whether it is passed on
bool prepare(Value& line) {
    auto* const entry = get_if<Object>(&line);
    if (entry == nullptr || std::as_const(line)["level"] == Value("debug")) {
        return false;
    }
    entry->erase("trace");
    if (auto message = entry->extract("msg")) {
        message.key() = "message";
        entry->insert(std::move(message));
    }
    return true;
}

int main(int, char** arguments) {
    std::ifstream log(arguments[1]);
    Records<Value> lines(log, Framing::lines);
    int bad = 0;
    Value line;
    for (bool more = true; more;) {
        try {
            more = lines.next(line);
            if (more && prepare(line)) {
                std::cout << serialize(line) << '\n';
            }
        } catch (const ParserException& error) { // the next call reads the next line
            std::cout << describe(error, arguments[1]);
            ++bad;
        }
    }
    std::cout << bad << " of " << lines.index() << " lines are bad\n";
}
