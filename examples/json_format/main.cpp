/// @file
/// json_format: reads JSON text and writes it again, compact or pretty.
#include "input_pieces.hpp"
#include "large_pieces.hpp"

#include <foundation/json/parse.hpp>
#include <foundation/json/parse_errors.hpp>
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <iostream>
#include <istream>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace foundation::json;

constexpr const char* usage =
    "Usage: json_format [OPTION]... [FILE]\n"
    "Reads JSON text from FILE, or from standard input without FILE or where FILE is -,\n"
    "and writes it to standard output.\n"
    "\n"
    "  --pretty           put every element and member on a line of its own\n"
    "  --lines            read any number of values, such as JSON Lines; write each as soon as\n"
    "                     it is read, and go on with the next line where one is not JSON\n"
    "  --comments         accept // comments and /* comments */\n"
    "  --trailing-commas  accept a comma behind the last element or member\n"
    "  -h, --help         show this text\n"
    "  --version          show the version\n"
    "  --                 what follows is FILE, whatever it begins with\n"
    "\n"
    "Exit status: 0 if all went well, 1 if the input is not JSON, 2 for any other trouble.\n";

constexpr const char* version = "json_format " JSON_FORMAT_VERSION "\n";

enum ExitCode { success = 0, bad_input = 1, trouble = 2 };

struct Options {
    const char* text = nullptr; ///< to be shown, instead of all else
    bool pretty = false;
    bool lines = false;
    ParseOptions accepted;
    std::string file = "-";
};

/// Takes an argument that begins with a dash.
void take_option(Options& options, const std::string& argument) {
    if (argument == "--pretty") {
        options.pretty = true;
    } else if (argument == "--lines") {
        options.lines = true;
    } else if (argument == "--comments") {
        options.accepted.comments = true;
    } else if (argument == "--trailing-commas") {
        options.accepted.trailing_commas = true;
    } else if (argument == "-h" || argument == "--help") {
        options.text = usage;
    } else if (argument == "--version") {
        options.text = version;
    } else {
        throw std::runtime_error("unknown option '" + argument + "'; try --help");
    }
}

Options options_of(const std::vector<std::string>& arguments) {
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
        } else {
            take_option(options, argument);
        }
    }
    return options;
}

/// Standard input, or a file that is open as long as this is there.
class InputFile {
public:
    explicit InputFile(const std::string& file)
        : name_(file == "-" ? "<stdin>" : file),
          descriptor_(file == "-" ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (descriptor_ < 0) {
            throw std::system_error(errno, std::generic_category(), failure());
        }
    }
    ~InputFile() { ::close(descriptor_); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    const std::string& name() const { return name_; }
    int descriptor() const { return descriptor_; }
    std::string failure() const { return "cannot read " + name_; }

private:
    std::string name_;
    int descriptor_;
};

constexpr const char* write_failure = "cannot write standard output";

/// Standard output, as a stream.
class Output {
public:
    std::ostream& stream() { return stream_; }

    void write(const Value& value, bool pretty) {
        Serializer serializer;
        serializer.pretty_print(pretty);
        serializer.write(stream_, value);
        stream_ << '\n';
    }

    void flush() { pieces_.finish(write_failure); }

    /// Closing tells of errors that writing did not.
    void close() {
        flush();
        if (std::fclose(stdout) != 0) {
            throw std::system_error(errno, std::generic_category(), write_failure);
        }
    }

private:
    json_format::LargePieces pieces_{stdout};
    std::ostream stream_{&pieces_};
};

ExitCode format_value(const Options& options, Output& output) {
    const InputFile file(options.file);
    json_format::InputPieces pieces(file.descriptor(), file.failure(), [] {});
    std::istream stream(&pieces);
    try {
        output.write(parse(stream, options.accepted), options.pretty);
    } catch (const ParserException& error) {
        std::cerr << describe(error, file.name());
        return bad_input;
    }
    return success;
}

ExitCode format_lines(const Options& options, Output& output) {
    const InputFile file(options.file);
    // What has been read is shown before there may be a wait for more.
    json_format::InputPieces pieces(file.descriptor(), file.failure(),
                                    [&output] { output.flush(); });
    std::istream stream(&pieces);
    ValueStream values(stream, options.accepted);
    ExitCode result = success;
    for (Value value;;) {
        try {
            if (!values.next(value)) {
                return result;
            }
            output.write(value, options.pretty);
        } catch (const ParserException& error) {
            std::cerr << describe(error, file.name());
            result = bad_input;
        }
    }
}

ExitCode run(const Options& options) {
    Output output;
    ExitCode result = success;
    if (options.text != nullptr) {
        output.stream() << options.text;
    } else {
        result = options.lines ? format_lines(options, output) : format_value(options, output);
    }
    output.close();
    return result;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(options_of(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc)));
    } catch (const std::bad_alloc&) {
        std::cerr << "json_format: out of memory\n";
    } catch (const std::exception& error) {
        std::cerr << "json_format: " << error.what() << '\n';
    }
    return trouble;
}
