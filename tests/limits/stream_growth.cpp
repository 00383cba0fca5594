// Usage: stream_growth [MEGABYTES]...
// Reads documents and records of these sizes, which are nowhere as a whole, by Reader and by
// Records in each framing, and writes what a Reader reads by a Writer; prints the processor time
// per byte and how far the memory of the process has grown. Fails if that is more than a megabyte,
// or if a sum is wrong.
#include "support/repeated_text.hpp"

#include <foundation/json/number.hpp>
#include <foundation/json/reader.hpp>
#include <foundation/json/records.hpp>
#include <foundation/json/write.hpp>

#include <sys/resource.h>

#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::json;
using test::RepeatedText;

const std::string record =
    R"({"id":7,"name":"somebody","tags":["a","b\n",null,true],"place":{"x":-0.25,"y":1e3}})";

long peak_kilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

double processor_seconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double sum_of_tokens(std::istream& stream) {
    Reader reader(stream);
    double sum = 0;
    while (reader.next() != Token::end) {
        if (reader.token() == Token::name && reader.string() == "id") {
            reader.next();
            sum += reader.number<double>();
        }
    }
    return sum;
}

double sum_of_records(std::istream& stream, const Framing& framing) {
    double sum = 0;
    Records<Value> records(stream, framing);
    for (Value value; records.next(value);) {
        sum += number<double>(value["id"]);
    }
    return sum;
}

/// Takes a text and keeps nothing of it.
class Nowhere : public std::streambuf {
protected:
    int_type overflow(int_type byte) override { return traits_type::not_eof(byte); }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

double sum_of_copy(std::istream& stream) {
    Nowhere nowhere;
    std::ostream copy(&nowhere);
    Reader reader(stream);
    Writer writer(copy);
    double sum = 0;
    for (bool is_id = false;;) {
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
            is_id = reader.string() == "id";
            writer.name(reader.string());
            break;
        case Token::end:
            writer.finish();
            return sum;
        case Token::number:
            sum += std::exchange(is_id, false) ? reader.number<double>() : 0;
            writer.value(reader.number<double>());
            break;
        default:
            writer.value(reader.value());
        }
    }
}

struct Way {
    const char* name;
    std::string first;
    std::string separator;
    std::string last;
    double (*sum)(std::istream&);
};

const Way ways[] = {
    {"Reader", "[", ",", "]", sum_of_tokens},
    {"Reader to Writer", "[", ",", "]", sum_of_copy},
    {"Records, lines", "", "\n", "",
     [](std::istream& stream) { return sum_of_records(stream, Framing::lines); }},
    {"Records, concatenated", "", " ", "",
     [](std::istream& stream) { return sum_of_records(stream, Framing::concatenated); }},
    {"Records, elements", "{\"a\":[", ",", "]}",
     [](std::istream& stream) { return sum_of_records(stream, Framing::elements("/a")); }},
};

/// @return whether the sum is right
bool measure(const Way& way, std::size_t megabytes) {
    const std::size_t count = megabytes * 1000000 / (record.size() + 1);
    RepeatedText text(way.first + record, way.separator + record, count, way.last);
    std::istream stream(&text);
    const double begin = processor_seconds();
    const double sum = way.sum(stream);
    const double time = processor_seconds() - begin;
    std::cout << std::left << std::setw(24) << way.name << std::right << std::setw(8) << megabytes
              << std::fixed << std::setprecision(2) << std::setw(10)
              << 1000 * time / static_cast<double>(megabytes) << std::endl;
    return sum == 7 * static_cast<double>(count + 1);
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::size_t> sizes;
    for (int i = 1; i < argc; ++i) {
        sizes.push_back(std::strtoul(argv[i], nullptr, 10));
    }
    if (sizes.empty()) {
        sizes = {1, 10};
    }
    bool is_right = true;
    std::cout << "                        megabytes ns/byte\n";
    const long before = peak_kilobytes();
    for (const Way& way : ways) {
        for (const std::size_t size : sizes) {
            is_right = measure(way, size) && is_right;
        }
    }
    const long growth = peak_kilobytes() - before;
    std::cout << "the memory of the process has grown by " << growth << " kB\n";
    return is_right && growth <= 1024 ? 0 : 1;
}
