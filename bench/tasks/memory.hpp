/// @file
/// The memory of operations, under the names under which their time is measured.
#ifndef FOUNDATION_JSON_BENCH_TASKS_MEMORY_HPP
#define FOUNDATION_JSON_BENCH_TASKS_MEMORY_HPP

#include "counted_memory.hpp"
#include "documents.hpp"
#include "memory.hpp"
#include "tasks/work.hpp"

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// Counts what is written and keeps nothing.
class CountingBuffer : public std::streambuf {
public:
    std::size_t count() const { return count_; }

protected:
    int_type overflow(int_type byte) override {
        count_ += traits_type::eq_int_type(byte, traits_type::eof()) ? 0 : 1;
        return traits_type::not_eof(byte);
    }
    std::streamsize xsputn(const char*, std::streamsize size) override {
        count_ += static_cast<std::size_t>(size);
        return size;
    }

private:
    std::size_t count_ = 0;
};

/// Measures a function, and passes its result to another one while it still exists.
template <class Function, class Inspect>
MemoryResult memory_of(const std::string& task, const std::string& subject, Function function,
                       Inspect inspect) {
    MemoryResult result{task, subject};
    const std::size_t before = allocated_memory();
    const Allocations made = allocations();
    reset_highest_memory();
    {
        const auto made_by_it = function();
        result.peak_bytes = highest_memory() - before;
        result.kept_bytes = allocated_memory() - before;
        result.allocations = allocations().number - made.number;
        result.allocated_bytes = allocations().bytes - made.bytes;
        inspect(result, made_by_it);
    }
    return result;
}

template <class Function>
MemoryResult memory_of(const std::string& task, const std::string& subject, Function function) {
    return memory_of(task, subject, function, [](const auto&, const auto&) {});
}

template <class MakeText>
MemoryResult memory_of_text(const std::string& task, const std::string& subject,
                            MakeText make_text) {
    return memory_of(task, subject, make_text, [](MemoryResult& result, const auto& text) {
        result.text_bytes = std::string_view(text).size();
    });
}

template <class Contender>
void measure_text(std::vector<MemoryResult>& results) {
    for (const Document& document : documents()) {
        const auto value = Contender::parse(document.text);
        results.push_back(memory_of_text("serialize", document.name,
                                         [&] { return Contender::serialize(value); }));
        if constexpr (Contender::has_pretty_layout) {
            results.push_back(memory_of_text("pretty_print", document.name,
                                             [&] { return Contender::pretty_print(value); }));
        }
        CountingBuffer buffer;
        std::ostream stream(&buffer);
        results.push_back(memory_of("write to a stream", document.name, [&] {
            Contender::write(stream, value);
            return true;
        }));
        results.back().text_bytes = buffer.count();
    }
    for (const Message& message : messages) {
        const auto value = Contender::parse(message.text);
        results.push_back(
            memory_of_text("message", message.name, [&] { return Contender::serialize(value); }));
    }
}

template <class Contender>
void measure_parsing(std::vector<MemoryResult>& results) {
    for (const Document& document : documents()) {
        results.push_back(memory_of("parse and destroy", document.name,
                                    [&] { return Contender::parse(document.text); }));
    }
}

template <class Contender>
void measure_values(std::vector<MemoryResult>& results) {
    for (const Document& document : documents()) {
        const auto value = Contender::parse(document.text);
        const auto same = Contender::parse(document.text);
        results.push_back(
            memory_of("copy and destroy", document.name, [&] { return Contender::copy(value); }));
        results.push_back(memory_of("==, equal documents", document.name,
                                    [&] { return Contender::equal(value, same); }));
    }
    results.push_back(memory_of("push", "1,000,000 doubles", push_doubles<Contender>));
    const auto strings = array_of_strings<Contender>();
    results.push_back(memory_of("push", "2,000 arrays of 50 strings",
                                [&] { return push_arrays<Contender>(strings); }));
    for (const ObjectSize size : object_sizes) {
        const auto keys = some_keys(size.keys);
        results.push_back(
            memory_of("insert all keys", size.name, [&] { return insert_keys<Contender>(keys); }));
        const auto object = insert_keys<Contender>(keys);
        results.push_back(memory_of("1,000 lookups", size.name,
                                    [&] { return find_keys<Contender>(object, keys); }));
    }
}

} // namespace bench

#endif
