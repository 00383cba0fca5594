/// @file
/// json_format: reads JSON text and writes it again, in one of several forms.
#include "input_pieces.hpp"
#include "large_pieces.hpp"
#include "progress.hpp"
#include "system.hpp"

#include <foundation/json/parse.hpp>
#include <foundation/json/parse_errors.hpp>
#include <foundation/json/reader.hpp>
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>
#include <foundation/json/write.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <iostream>
#include <istream>
#include <iterator>
#include <new>
#include <optional>
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
    "What is written, if not the fixed format of the library on one line:\n"
    "  --pretty           the fixed format, every element and member on a line of its own\n"
    "  --indent=N         the text of JSON.stringify, indented by N spaces, or on one line for 0\n"
    "  --ascii            the same, with escapes for all characters beyond ASCII\n"
    "  --escape-slash     the same, with \\/ for a slash\n"
    "  --big-integers-as-strings\n"
    "                     the same, with integers beyond 2^53 in quotes\n"
    "  --canonical        the canonical form of RFC 8785\n"
    "\n"
    "What is read:\n"
    "  --lines            any number of values, such as JSON Lines; write each as soon as\n"
    "                     it is read, and go on with the next line where one is not JSON\n"
    "  --stream           one value of any size, in little memory: members stay in the order of\n"
    "                     the text, and after an error the output is not complete\n"
    "  --comments         accept // comments and /* comments */\n"
    "  --trailing-commas  accept a comma behind the last element or member\n"
    "\n"
    "  -h, --help         show this text\n"
    "  --version          show the version\n"
    "  --                 what follows is FILE, whatever it begins with\n"
    "\n"
    "Exit status: 0 if all went well, 1 if the input is not JSON or has no canonical form,\n"
    "2 for any other trouble.\n";

constexpr const char* version = "json_format " JSON_FORMAT_VERSION "\n";

enum ExitCode { success = 0, bad_input = 1, trouble = 2 };

struct Options {
    const char* text = nullptr; ///< to be shown, instead of all else
    bool pretty = false;
    bool lines = false;
    bool stream = false;
    bool canonical = false;
    std::optional<WriteOptions> write; ///< empty for the fixed format
    ParseOptions accepted;
    std::string file = "-";

    /// The settings of a text that is not the fixed one.
    WriteOptions& written() { return write ? *write : write.emplace(); }
};

struct KnownOption {
    const char* name;
    void (*take)(Options& options);
};

constexpr KnownOption known_options[] = {
    {"--pretty", [](Options& options) { options.pretty = true; }},
    {"--ascii", [](Options& options) { options.written().ascii = true; }},
    {"--escape-slash", [](Options& options) { options.written().escape_slash = true; }},
    {"--big-integers-as-strings",
     [](Options& options) { options.written().big_integers = WriteOptions::BigIntegers::string; }},
    {"--canonical", [](Options& options) { options.canonical = true; }},
    {"--lines", [](Options& options) { options.lines = true; }},
    {"--stream", [](Options& options) { options.stream = true; }},
    {"--comments", [](Options& options) { options.accepted.comments = true; }},
    {"--trailing-commas", [](Options& options) { options.accepted.trailing_commas = true; }},
    {"-h", [](Options& options) { options.text = usage; }},
    {"--help", [](Options& options) { options.text = usage; }},
    {"--version", [](Options& options) { options.text = version; }},
};

/// A number of spaces, as the option for it gives it.
unsigned spaces_of(const std::string& text) {
    if (text.empty() || text.size() > 2 ||
        text.find_first_not_of("0123456789") != std::string::npos || std::stoul(text) > 10) {
        throw std::runtime_error("--indent takes a number from 0 to 10, not '" + text + "'");
    }
    return static_cast<unsigned>(std::stoul(text));
}

/// Takes an argument that begins with a dash.
void take_option(Options& options, const std::string& argument) {
    const std::string indent = "--indent=";
    if (argument.substr(0, indent.size()) == indent) {
        options.written().indent = spaces_of(argument.substr(indent.size()));
        return;
    }
    const auto* const found =
        std::find_if(std::begin(known_options), std::end(known_options),
                     [&argument](const KnownOption& option) { return argument == option.name; });
    if (found == std::end(known_options)) {
        throw std::runtime_error("unknown option '" + argument + "'; try --help");
    }
    found->take(options);
}

/// The forms of the text exclude each other.
void settle_form(Options& options) {
    if ((options.pretty ? 1 : 0) + (options.canonical ? 1 : 0) + (options.write ? 1 : 0) > 1) {
        throw std::runtime_error("--pretty and --canonical go with no other form; try --help");
    }
    if (options.stream && (options.pretty || options.canonical || options.lines)) {
        throw std::runtime_error(
            "--stream goes with no fixed format, canonical form or lines; try --help");
    }
    if (options.canonical) {
        options.write = WriteOptions::canonical();
    } else if (options.stream) {
        options.written();
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
    settle_form(options);
    return options;
}

/// Standard input, or a file that is open as long as this is there.
class InputFile {
public:
    explicit InputFile(const std::string& file)
        : name_(file == "-" ? "<stdin>" : file),
          descriptor_(file == "-" ? json_format::standard_input : json_format::open_file(file)) {
        if (descriptor_ < 0) {
            throw std::system_error(errno, std::generic_category(), failure());
        }
    }
    ~InputFile() { json_format::close_file(descriptor_); }
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

    /// Nothing of a value that cannot be written is written.
    void write(const Value& value, const Options& options) {
        if (options.write) {
            stream_ << foundation::json::write(value, *options.write);
        } else {
            Serializer serializer;
            serializer.pretty_print(options.pretty);
            serializer.write(stream_, value);
        }
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
    json_format::InputPieces pieces(file.descriptor(), file.failure(), [](std::size_t) {});
    std::istream stream(&pieces);
    try {
        output.write(parse(stream, options.accepted), options);
    } catch (const ParserException& error) {
        std::cerr << describe(error, file.name());
        return bad_input;
    } catch (const WriteError& error) {
        std::cerr << file.name() << ": " << error.what() << '\n';
        return bad_input;
    }
    return success;
}

ExitCode format_lines(const Options& options, Output& output) {
    const InputFile file(options.file);
    json_format::Progress progress(file.descriptor());
    // What has been read is shown before there may be a wait for more.
    json_format::InputPieces pieces(file.descriptor(), file.failure(), [&](std::size_t bytes) {
        output.flush();
        progress.add(bytes);
    });
    std::istream stream(&pieces);
    ValueStream values(stream, options.accepted);
    ExitCode result = success;
    for (Value value;;) {
        try {
            if (!values.next(value)) {
                return result;
            }
            output.write(value, options);
        } catch (const ParserException& error) {
            progress.clear();
            std::cerr << describe(error, file.name());
            result = bad_input;
        } catch (const WriteError& error) {
            std::cerr << file.name() << ": " << error.what() << '\n';
            result = bad_input;
        }
    }
}

/// Writes the tokens of a value as they come.
void copy_tokens(Reader& reader, Writer& writer) {
    for (;;) {
        switch (reader.next()) {
        case Token::begin_array:
            writer.begin_array();
            break;
        case Token::begin_object:
            writer.begin_object();
            break;
        case Token::end_array:
        case Token::end_object:
            writer.end();
            break;
        case Token::name:
            writer.name(reader.string());
            break;
        case Token::string:
            writer.value(reader.string());
            break;
        case Token::end:
            writer.finish();
            return;
        default:
            writer.value(reader.value());
        }
    }
}

ExitCode format_stream(const Options& options, Output& output) {
    const InputFile file(options.file);
    json_format::Progress progress(file.descriptor());
    json_format::InputPieces pieces(file.descriptor(), file.failure(),
                                    [&progress](std::size_t bytes) { progress.add(bytes); });
    std::istream stream(&pieces);
    Reader reader(stream, options.accepted);
    Writer writer(output.stream(), *options.write);
    try {
        copy_tokens(reader, writer);
    } catch (const ParserException& error) {
        progress.clear();
        std::cerr << describe(error, file.name());
        return bad_input;
    }
    output.stream() << '\n';
    return success;
}

ExitCode run(const Options& options) {
    Output output;
    ExitCode result = success;
    if (options.text != nullptr) {
        output.stream() << options.text;
    } else {
        const auto format = options.stream  ? format_stream
                            : options.lines ? format_lines
                                            : format_value;
        result = format(options, output);
    }
    output.close();
    return result;
}

} // namespace

int main(int argc, char** argv) {
    try {
        json_format::take_all_bytes();
        return run(options_of(json_format::arguments_of(argc, argv)));
    } catch (const std::bad_alloc&) {
        std::cerr << "json_format: out of memory\n";
    } catch (const std::exception& error) {
        std::cerr << "json_format: " << error.what() << '\n';
    }
    return trouble;
}
