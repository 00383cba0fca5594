// A configuration with defaults, ranges and names from a list, read from files straight into
// structs. What is wrong with a file is told with its line.
#include <foundation/json/read.hpp>

#include <cstdint>
#include <exception>
#include <iostream>
#include <map>
#include <optional>
#include <string>

using namespace foundation::json;

struct Listen {
    std::string host = "localhost";
    std::uint16_t port = 8080; // its type is its range
};

enum class Log { errors, warnings, info };

struct Settings {
    std::string name;
    Listen listen;
    int workers = 4;
    Log log = Log::warnings;
    std::optional<double> timeout;
    std::map<std::string, unsigned> limits;
};

template <>
inline constexpr auto foundation::json::members<Listen> = table(defaulted("host", &Listen::host),
                                                                defaulted("port", &Listen::port));

template <>
inline constexpr auto foundation::json::enumerators<Log> =
    table<Log>({{Log::errors, "errors"}, {Log::warnings, "warnings"}, {Log::info, "info"}});

template <>
inline constexpr auto foundation::json::members<Settings> =
    table(required("name", &Settings::name), defaulted("listen", &Settings::listen),
          defaulted("workers", &Settings::workers), defaulted("log", &Settings::log),
          defaulted("timeout", &Settings::timeout), defaulted("limits", &Settings::limits));

// Everything that is not given has its default; what no table names is a mistake.
Settings read_settings(const std::string& file) {
    ReadOptions strict;
    strict.unknown_members = ConvertOptions::UnknownMembers::error;
    auto settings = read_file<Settings>(file, strict);
    if (settings.workers < 1 || settings.workers > 64) {
        throw ConversionError("/workers",
                              std::to_string(settings.workers) + " is not within 1 to 64");
    }
    return settings;
}

void show(const std::string& file) {
    try {
        const Settings settings = read_settings(file);
        std::cout << file << ": " << settings.name << " at " << settings.listen.host << ':'
                  << settings.listen.port << ", workers " << settings.workers << ", limits "
                  << settings.limits.size() << '\n';
    } catch (const ParserException& error) { // not JSON: the line, and a caret under the position
        std::cout << describe(error, file);
    } catch (const ReadError& error) { // the same for JSON that is no such configuration
        std::cout << describe(error);
    } catch (const std::exception& error) {
        std::cout << file << ": " << error.what() << '\n';
    }
}

int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        show(arguments[i]);
    }
}
