/// @file
/// json_format: reads JSON text and writes it again, compact or pretty.
#include "large_pieces.hpp"
#include "reader.hpp"
#include "report.hpp"

#include <foundation/json/parse_errors.hpp>
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace foundation::json;

constexpr const char* usage =
    "Usage: json_format [--pretty] [FILE]\n"
    "Reads JSON text from FILE, or from standard input without FILE or where FILE is -,\n"
    "and writes it to standard output.\n"
    "\n"
    "  --pretty  put every element and member on a line of its own\n"
    "  --help    show this text\n"
    "  --        what follows is FILE, whatever it begins with\n"
    "\n"
    "Exit status: 0 if all went well, 1 if the input is not JSON, 2 for any other trouble.\n";

enum ExitCode { success = 0, bad_input = 1, trouble = 2 };

struct Options {
    bool help = false;
    bool pretty = false;
    std::string file = "-";
};

Options parse(const std::vector<std::string>& arguments) {
    Options options;
    bool options_ended = false;
    bool file_given = false;
    for (const std::string& argument : arguments) {
        if (options_ended || argument == "-" || argument.substr(0, 1) != "-") {
            if (file_given) {
                throw std::runtime_error("more than one FILE; try --help");
            }
            file_given = true;
            options.file = argument;
        } else if (argument == "--") {
            options_ended = true;
        } else if (argument == "--pretty") {
            options.pretty = true;
        } else if (argument == "--help") {
            options.help = true;
        } else {
            throw std::runtime_error("unknown option '" + argument + "'; try --help");
        }
    }
    return options;
}

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

std::string read_all(std::FILE* input, const std::string& name) {
    std::string text;
    std::vector<char> buffer(1 << 16);
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), input)) {
        text.append(buffer.data(), count);
    }
    if (std::ferror(input)) {
        fail("cannot read " + name);
    }
    return text;
}

std::string read_file(const std::string& name) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"),
                                                               &std::fclose);
    if (!file) {
        fail("cannot read " + name);
    }
    return read_all(file.get(), name);
}

/// Calls a function with a stream onto standard output.
template <class Write>
void write_output(Write write) {
    const std::string failure = "cannot write standard output";
    json_format::LargePieces pieces(stdout);
    std::ostream stream(&pieces);
    write(stream);
    pieces.finish(failure);
    // Closing tells of errors that writing did not.
    if (std::fclose(stdout) != 0) {
        fail(failure);
    }
}

void write_value(const Value& value, bool pretty) {
    write_output([&](std::ostream& stream) {
        Serializer serializer;
        serializer.pretty_print(pretty);
        serializer.write(stream, value);
        stream << '\n';
    });
}

ExitCode run(const Options& options) {
    if (options.help) {
        write_output([](std::ostream& stream) { stream << usage; });
        return success;
    }
    const bool from_stdin = options.file == "-";
    const std::string name = from_stdin ? "<stdin>" : options.file;
    const std::string text = from_stdin ? read_all(stdin, name) : read_file(name);
    try {
        write_value(json_format::read(text), options.pretty);
    } catch (const ParserException& error) {
        std::cerr << json_format::report(name, error);
        return bad_input;
    }
    return success;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(parse(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc)));
    } catch (const std::bad_alloc&) {
        std::cerr << "json_format: out of memory\n";
    } catch (const std::exception& error) {
        std::cerr << "json_format: " << error.what() << '\n';
    }
    return trouble;
}
