// A configuration with defaults for what it leaves out.
#include <foundation/json/json.hpp>

#include <iostream>
#include <string>

using namespace foundation::json;

struct Settings {
    int port;
    int workers;
    bool compress;
    Value hosts;
};

// The parameter is const: looking up a missing member then gives Undefined and inserts nothing.
Settings settings_of(const Value& config) {
    Settings settings;

    // `||` takes the right side for Undefined, null, false, 0 and the empty string.
    settings.port = int(Value(config["port"] || Value(8080)));
    settings.hosts = config["hosts"] || Value((Element("localhost")));

    // Where 0 or false is a choice, ask whether the member is there.
    settings.workers = config.hasOwnProperty("workers") ? int(config["workers"]) : 4;
    settings.compress = config.hasOwnProperty("compress") ? bool(config["compress"]) : true;
    return settings;
}

void show(const std::string& name, const Value& config) {
    const Settings settings = settings_of(config);
    std::cout << name << ": port " << settings.port << ", workers " << settings.workers
              << ", compress " << std::boolalpha << settings.compress << ", hosts "
              << serialize(settings.hosts) << '\n';
}

int main() {
    show("empty", Value(Property("unused")));
    show("partial", Value((Property("port") = 9000, Property("hosts") = Null())));
    show("zeros",
         Value((Property("port") = 0, Property("workers") = 0, Property("compress") = false)));
    show("full",
         Value((Property("port") = 443, Property("workers") = 16, Property("compress") = true,
                Property("hosts") = (Element("a.example"), Element("b.example")))));
}
