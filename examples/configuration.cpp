// A configuration merged over defaults, and read into a struct.
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>

#include <cstdint>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

using namespace foundation::json;

// Objects are merged member by member; anything else is replaced.
void merge(Value& target, const Value& changes) {
    if (!holds<Object>(target) || !holds<Object>(changes)) {
        target = changes;
        return;
    }
    for (const auto& [name, change] : get<Object>(changes)) {
        merge(target[name], change);
    }
}

Value defaults() {
    return (Property("server") = (Property("host") = "localhost", Property("port") = 8080,
                                  Property("compress") = true),
            Property("workers") = 4, Property("tags") = (Element("web"), Element("test")));
}

struct Settings {
    std::string host;
    std::uint16_t port;
    bool compress;
    unsigned workers;
    std::vector<std::string> tags;
};

Settings settings_of(const Value& config) {
    const Value& server = config["server"];
    Settings settings{get<std::string>(server["host"]),
                      number<std::uint16_t>(server["port"]),
                      get<bool>(server["compress"]),
                      number<unsigned>(config["workers"]),
                      {}};
    for (const Value& tag : get<Array>(config["tags"])) {
        settings.tags.push_back(get<std::string>(tag));
    }
    return settings;
}

void show(const std::string& name, const Value& changes) {
    std::cout << name << ": ";
    try {
        Value config = defaults();
        merge(config, changes);
        const Settings settings = settings_of(config);
        std::cout << settings.host << ':' << settings.port << ", workers " << settings.workers
                  << ", compress " << std::boolalpha << settings.compress << ", tags";
        for (const std::string& tag : settings.tags) {
            std::cout << ' ' << tag;
        }
        std::cout << '\n';
    } catch (const std::exception& error) {
        std::cout << error.what() << '\n';
    }
}

int main() {
    show("nothing", Object());
    show("partly",
         Value((Property("server") = (Property("port") = 9000, Property("compress") = false),
                Property("workers") = 0)));
    show("fully", Value((Property("server") = (Property("host") = "a.example",
                                               Property("port") = 443, Property("compress") = true),
                         Property("workers") = 16, Property("tags") = Array())));
    show("out of range", Value((Property("server") = (Property("port") = 70000))));
    show("wrong kind", Value((Property("tags") = (Element("web"), Element(7)))));
}
