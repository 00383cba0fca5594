// An array of any length onto a stream, one element at a time: each goes through a Writer, as a
// Value or by its members, and is gone before the next is made.
#include "memory_in_use.hpp"

#include <foundation/json/json.hpp>
#include <foundation/json/write.hpp>

#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using namespace foundation::json;

Value record(int number) {
    return (Property("id") = static_cast<long long>(number), Property("even") = number % 2 == 0,
            Property("name") = "item " + std::to_string(number));
}

void write_records(std::ostream& stream, int count) {
    Writer writer(stream);
    writer.begin_array();
    for (int number = 0; number < count; number += 2) {
        writer.value(record(number));
        // The same without a Value. Members have the order of the calls.
        writer.begin_object();
        writer.name("even").value(false);
        writer.name("id").value(number + 1);
        writer.name("name").value("item " + std::to_string(number + 1));
        writer.end();
    }
    writer.end();
}

template <int count>
void write_file() {
    std::ofstream file("records.json");
    write_records(file, count);
}

// For comparison: the whole array in memory first.
template <int count>
void write_file_at_once() {
    Value records(std::vector<Value>{});
    for (int number = 0; number < count; ++number) {
        records.push(record(number));
    }
    std::ofstream file("at_once.json");
    write(file, records);
}

std::string content_of(const char* name) {
    std::ostringstream text;
    text << std::ifstream(name).rdbuf();
    return text.str();
}

int main() {
    write_records(std::cout, 4);
    std::cout << '\n' << std::boolalpha;

    const std::size_t thousand = peak_memory_of(write_file<1'000>);
    const std::size_t hundred_thousand = peak_memory_of(write_file<100'000>);
    const std::size_t at_once = peak_memory_of(write_file_at_once<100'000>);
    std::cout << "100,000 records take as much memory as 1,000: " << (hundred_thousand == thousand)
              << '\n'
              << "an array of them takes a thousand times as much: "
              << (at_once > 1'000 * hundred_thousand) << '\n';

    const std::string text = content_of("records.json");
    std::cout << "bytes written: " << text.size() << '\n'
              << "the same as of the array: " << (text == content_of("at_once.json")) << '\n';
}
