// Usage: parser_growth [SMALL LARGE]
// Reads texts of many shapes, hostile ones among them, of SMALL and of LARGE kilobytes, and prints
// the time per byte. Fails if the large text of a shape takes so much longer per byte that the time
// is not proportional to the length.
#include "support/deep_stack.hpp"

#include <foundation/json/parse.hpp>
#include <foundation/json/reader.hpp>
#include <foundation/json/records.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace {

using foundation::json::Framing;
using foundation::json::parse;
using foundation::json::ParseOptions;
using foundation::json::ParserException;
using foundation::json::Reader;
using foundation::json::Records;
using foundation::json::Token;
using foundation::json::Value;
using foundation::json::ValueStream;

/// A text of a size: an opening and a closing one, and between them a filling as often as it fits.
std::string filled(std::size_t size, const std::string& open, const std::string& filling,
                   const std::string& close) {
    std::string text = open;
    text.reserve(size + open.size() + filling.size() + close.size());
    while (text.size() < size) {
        text += filling;
    }
    return text + close;
}

/// As filled(), but a function makes each filling from its number.
template <class Make>
std::string counted(std::size_t size, const std::string& open, Make make,
                    const std::string& close) {
    std::string text = open;
    for (std::size_t i = 0; text.size() < size; ++i) {
        text += make(i);
    }
    return text + close;
}

std::string nested(std::size_t levels, const std::string& open, const std::string& close) {
    std::string text;
    for (std::size_t i = 0; i != levels; ++i) {
        text += open;
    }
    text += '0';
    for (std::size_t i = 0; i != levels; ++i) {
        text += close;
    }
    return text;
}

/// A number without apparent order.
std::size_t scattered(std::size_t i) {
    return i * 2654435761U % 4294967296U;
}

std::string name(std::size_t number) {
    return "\"" + std::to_string(number) + "\":1,";
}

void read_text(const std::string& text) {
    ParseOptions options;
    options.comments = true;
    options.max_depth = 50000;
    try {
        const Value value = parse(text, options);
    } catch (const ParserException&) {
        // The time to find an error counts, too.
    }
}

void read_stream(std::istream& stream) {
    ParseOptions options;
    options.comments = true;
    options.max_depth = 50000;
    ValueStream values(stream, options);
    Value value;
    for (bool more = true; more;) {
        try {
            more = values.next(value);
        } catch (const ParserException&) {
            // The stream goes on with the next line.
        }
    }
}

void read_stream(const std::string& text) {
    std::istringstream stream(text);
    read_stream(stream);
}

void read_tokens(std::istream& stream) {
    ParseOptions options;
    options.comments = true;
    options.max_depth = 50000;
    Reader reader(stream, options);
    try {
        while (reader.next() != Token::end) {
        }
    } catch (const ParserException&) {
        // The time to find an error counts, too.
    }
}

void read_tokens(const std::string& text) {
    std::istringstream stream(text);
    read_tokens(stream);
}

/// Skips all that the outermost array or object has.
void skip_tokens(const std::string& text) {
    std::istringstream stream(text);
    Reader reader(stream);
    for (reader.next(); reader.token() != Token::end; reader.next()) {
        if (reader.depth() > 1) {
            reader.skip();
        }
    }
}

void read_records(const std::string& text, const Framing& framing) {
    std::istringstream stream(text);
    Records<Value> records(stream, framing);
    Value value;
    for (bool more = true; more;) {
        try {
            more = records.next(value);
        } catch (const ParserException&) {
            // What follows depends on the framing.
        }
    }
}

void read_lines(const std::string& text) {
    read_records(text, Framing::lines);
}

void read_elements(const std::string& text) {
    read_records(text, Framing::elements());
}

/// A buffer that gives a byte at a time, as some sockets do.
class ByteBuffer : public std::streambuf {
public:
    explicit ByteBuffer(const std::string& text) noexcept : text_(text) {}

protected:
    int_type underflow() override {
        if (next_ == text_.size()) {
            return traits_type::eof();
        }
        byte_ = text_[next_++];
        setg(&byte_, &byte_, &byte_ + 1);
        return traits_type::to_int_type(byte_);
    }

private:
    const std::string& text_;
    std::size_t next_ = 0;
    char byte_ = '\0';
};

void read_bytes(const std::string& text) {
    ByteBuffer buffer(text);
    std::istream stream(&buffer);
    read_stream(stream);
}

void read_bytes_of_tokens(const std::string& text) {
    ByteBuffer buffer(text);
    std::istream stream(&buffer);
    read_tokens(stream);
}

struct Shape {
    const char* name;
    std::function<std::string(std::size_t)> make;
    void (*read)(const std::string&) = read_text;
};

const std::vector<Shape>& shapes() {
    static const std::string many_short = nested(900, "[", "]") + ",";
    static const std::vector<Shape> all{
        {"records",
         [](std::size_t size) {
             return counted(
                 size, "[",
                 [](std::size_t i) {
                     return R"({"id":)" + std::to_string(i) +
                            R"(,"name":"some one","at":[1.25,-0.5],"tags":["a","b"]},)";
                 },
                 "0]");
         }},
        {"pairs of numbers",
         [](std::size_t size) { return filled(size, "[", "[-65.613616999999977,43.42],", "0]"); }},
        {"an array of zeros", [](std::size_t size) { return filled(size, "[", "0,", "0]"); }},
        {"an array of empty arrays",
         [](std::size_t size) { return filled(size, "[", "[],", "0]"); }},
        {"long arrays in a long array",
         [](std::size_t size) {
             return filled(size, "[", filled(1000, "[", "0,", "0]") + ",", "0]");
         }},
        {"a long array deep within others",
         [](std::size_t size) {
             return nested(300, "[[],", "]").substr(0, 1200) +
                    filled(size, "[", "[],", "0]" + std::string(300, ']'));
         }},
        {"names that ascend",
         [](std::size_t size) {
             return counted(
                 size, "{", [](std::size_t i) { return name(1'000'000'000 + i); }, "\"\":0}");
         }},
        {"names that descend",
         [](std::size_t size) {
             return counted(
                 size, "{", [](std::size_t i) { return name(1'000'000'000 - i); }, "\"\":0}");
         }},
        {"names in no order",
         [](std::size_t size) {
             return counted(
                 size, "{", [](std::size_t i) { return name(scattered(i)); }, "\"\":0}");
         }},
        {"equal names",
         [](std::size_t size) { return filled(size, "{", "\"name\":0,", "\"name\":0}"); }},
        {"equal names of arrays",
         [](std::size_t size) { return filled(size, "{", "\"name\":[0],", "\"name\":0}"); }},
        {"many deep arrays", [](std::size_t size) { return filled(size, "[", many_short, "0]"); }},
        {"one deep array",
         [](std::size_t size) {
             return nested(std::min<std::size_t>(size / 50, 50000), "[", "]");
         }},
        {"one deep object",
         [](std::size_t size) {
             return nested(std::min<std::size_t>(size / 50, 50000), "{\"\":", "}");
         }},
        {"brackets that nothing closes",
         [](std::size_t size) { return filled(size, "", "[", ""); }},
        {"an array that nothing closes",
         [](std::size_t size) { return filled(size, "", "[0],", "").insert(0, "["); }},
        {"a string", [](std::size_t size) { return filled(size, "\"", "letters", "\""); }},
        {"a string that nothing closes",
         [](std::size_t size) { return filled(size, "[0,\"", "letters", ""); }},
        {"a string of escapes", [](std::size_t size) { return filled(size, "\"", "\\n", "\""); }},
        {"a string of long escapes",
         [](std::size_t size) { return filled(size, "\"", "\\u00e9", "\""); }},
        {"a string beyond ASCII",
         [](std::size_t size) { return filled(size, "\"", "\xE6\x97\xA5\xC3\xA9", "\""); }},
        {"strings of a quote",
         [](std::size_t size) { return filled(size, "[", "\"\\\"\",", "0]"); }},
        {"a number of many digits", [](std::size_t size) { return filled(size, "0.", "7", ""); }},
        {"a number of many zeros", [](std::size_t size) { return filled(size, "0.", "0", "7"); }},
        {"a number too large by far", [](std::size_t size) { return filled(size, "", "7", ""); }},
        {"a large exponent", [](std::size_t size) { return filled(size, "7e", "0", "1"); }},
        {"whitespace", [](std::size_t size) { return filled(size, "[", "\n    \t", "0]"); }},
        {"comments", [](std::size_t size) { return filled(size, "[", "/**///\n", "0]"); }},
        {"a comment", [](std::size_t size) { return filled(size, "/*", "* ", "*/0"); }},
        {"a stream of lines",
         [](std::size_t size) { return filled(size, "", "{\"level\":1}\n", ""); }, read_stream},
        {"a stream of one line", [](std::size_t size) { return filled(size, "", "[0] ", ""); },
         read_stream},
        {"a stream of errors", [](std::size_t size) { return filled(size, "", "[oops]\n", ""); },
         read_stream},
        {"a stream of a long array", [](std::size_t size) { return filled(size, "[", "0,", "0]"); },
         read_stream},
        {"a stream of a long error", [](std::size_t size) { return filled(size, "]", "0 ", ""); },
         read_stream},
        {"a stream of numbers too large, each deeper",
         [](std::size_t size) { return filled(size, "", "[1e400,\n", ""); }, read_stream},
        {"a stream of names that occur twice",
         [](std::size_t size) { return filled(size, "", "{\"a\":[{\"a\":1e400,\n", ""); },
         read_stream},
        {"a stream of errors around a value",
         [](std::size_t size) {
             return filled(2400, "", "[1e400,\n", "") + filled(size, "[", "0,", "0]") +
                    filled(2400, "", "\n]", "");
         },
         read_stream},
        {"a stream of one-byte errors",
         [](std::size_t size) { return filled(size, "", "]\n", ""); }, read_stream},
        {"a stream of comments", [](std::size_t size) { return filled(size, "", "/**/ ", ""); },
         read_stream},
        {"bytes of comments in a value",
         [](std::size_t size) { return filled(size, "[", "/**/ ", "0]"); }, read_bytes},
        {"bytes of comments", [](std::size_t size) { return filled(size, "", "/**/ ", ""); },
         read_bytes},
        {"bytes of a comment", [](std::size_t size) { return filled(size, "/*", "* ", "*/0"); },
         read_bytes},
        {"bytes of a string",
         [](std::size_t size) { return filled(size, "[\"", "\\n\xC3\xA9", "\"]"); }, read_bytes},
        {"bytes of a number", [](std::size_t size) { return filled(size, "[", "7", "]"); },
         read_bytes},
        {"bytes of an array", [](std::size_t size) { return filled(size, "[", "0,", "0]"); },
         read_bytes},
        {"bytes of errors", [](std::size_t size) { return filled(size, "", "]\n", ""); },
         read_bytes},
        {"tokens of records",
         [](std::size_t size) { return filled(size, "[", "{\"a\":[1,\"b\\n\"]},", "0]"); },
         read_tokens},
        {"tokens of nested arrays",
         [](std::size_t size) { return filled(size, "[", nested(900, "[", "]") + ",", "0]"); },
         read_tokens},
        {"tokens of nested objects",
         [](std::size_t size) {
             return filled(size, "[", nested(900, "{\"a\":", "}") + ",", "0]");
         },
         read_tokens},
        {"tokens of a long string",
         [](std::size_t size) { return filled(size, "[\"", "\\n", "\"]"); }, read_tokens},
        {"tokens before an error", [](std::size_t size) { return filled(size, "[", "{},", "]"); },
         read_tokens},
        {"bytes of tokens",
         [](std::size_t size) { return filled(size, "[", "{\"a\":[1,\"b\\n\"]},", "0]"); },
         read_bytes_of_tokens},
        {"skipped arrays",
         [](std::size_t size) { return filled(size, "[", nested(900, "[", "]") + ",", "0]"); },
         skip_tokens},
        {"lines of records",
         [](std::size_t size) { return filled(size, "", "{\"a\":[1,\"b\\n\"]}\n", ""); },
         read_lines},
        {"lines of errors", [](std::size_t size) { return filled(size, "", "[1,\n", ""); },
         read_lines},
        {"a long line", [](std::size_t size) { return filled(size, "[", "0,", "0]"); }, read_lines},
        {"records of other names each",
         [](std::size_t size) {
             return counted(
                 size, "", [](std::size_t i) { return "{" + name(scattered(i)) + "\"a\":{}}\n"; },
                 "");
         },
         read_lines},
        {"records of many names in two orders",
         [](std::size_t size) {
             std::string names[2];
             for (std::size_t i = 0; i != 500; ++i) {
                 names[0] += name(i);
                 names[1] += name(499 - i);
             }
             return filled(size, "", "{" + names[0] + "\"a\":0}\n{" + names[1] + "\"a\":0}\n", "");
         },
         read_lines},
        {"elements of an array",
         [](std::size_t size) { return filled(size, "[", "{\"a\":[1,\"b\\n\"]},", "0]"); },
         read_elements},
        {"a stream of whitespace", [](std::size_t size) { return filled(size, "", " \n", ""); },
         read_stream},
    };
    return all;
}

double processor_seconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// The nanoseconds per byte of the fastest of a few runs, or of the first that is fast enough.
double nanoseconds_to_read(const Shape& shape, const std::string& text, double enough) {
    double least = 1e18;
    for (int i = 0; i != 3 && least >= enough; ++i) {
        const double begin = processor_seconds();
        shape.read(text);
        const double seconds = processor_seconds() - begin;
        least = std::min(least, 1e9 * seconds / static_cast<double>(text.size()));
    }
    return least;
}

/// Whether the time of a shape is proportional to its size, apart from the effects of caches.
bool measure(const Shape& shape, std::size_t small, std::size_t large) {
    const std::string small_text = shape.make(small * 1000);
    const std::string large_text = shape.make(large * 1000);
    const double small_time = nanoseconds_to_read(shape, small_text, 0);
    // The constant stands for work that does not depend on the length, such as an allocation.
    const double limit = 20 * (small_time + 1);
    const double large_time = nanoseconds_to_read(shape, large_text, limit);
    std::cout << std::left << std::setw(44) << shape.name << std::right << std::fixed
              << std::setprecision(2) << std::setw(10) << small_time << std::setw(10) << large_time
              << std::endl;
    return large_time < limit;
}

} // namespace

int main(int argc, char** argv) {
    const std::size_t small = argc == 3 ? std::strtoul(argv[1], nullptr, 10) : 10;
    const std::size_t large = argc == 3 ? std::strtoul(argv[2], nullptr, 10) : 1000;
    if ((argc != 1 && argc != 3) || small == 0 || large <= small) {
        std::cerr << "usage: parser_growth [SMALL LARGE], in kilobytes\n";
        return 2;
    }
    std::cout << "nanoseconds per byte of " << small << " and " << large << " kB\n";
    bool grows_evenly = true;
    foundation::json::test::run_with_deep_stack([&] {
        for (const Shape& shape : shapes()) {
            if (!measure(shape, small, large)) {
                std::cout << "  grows faster than the text\n";
                grows_evenly = false;
            }
        }
    });
    return grows_evenly ? 0 : 1;
}
