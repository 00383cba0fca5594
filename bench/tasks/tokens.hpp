/// @file
/// Reading without a value of the whole: tokens one by one, and records line by line.
#ifndef FOUNDATION_JSON_BENCH_TASKS_TOKENS_HPP
#define FOUNDATION_JSON_BENCH_TASKS_TOKENS_HPP

#include "documents.hpp"
#include "tasks/family.hpp"
#include "tasks/records.hpp"
#include "tasks/writing.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace bench {

/// Whether a walk over tokens has seen what is in the document.
inline bool are_same(const ContentSums& found, const ContentSums& expected) {
    return found.values == expected.values && found.string_bytes == expected.string_bytes &&
           std::abs(found.sum - expected.sum) <= 1e-9 * std::abs(expected.sum);
}

/// Times counting the values, the bytes of strings and the sum of numbers of a document.
template <class Contender>
void add_walks_over_tokens() {
    if constexpr (Contender::has_tokens) {
        for (const Document& document : documents()) {
            const std::string& text = document.text;
            require<Contender>(are_same(Contender::walk_tokens(text), content_sums(text)),
                               "walk_tokens");
            add<Contender>("tokens", document.name, [text](benchmark::State& state) {
                for (auto _ : state) {
                    benchmark::DoNotOptimize(Contender::walk_tokens(text));
                }
                state.SetBytesProcessed(state.iterations() *
                                        static_cast<std::int64_t>(text.size()));
            });
        }
    }
}

/// The records of an export, each on a line.
inline std::string lines_of_records(std::size_t count) {
    std::string lines;
    for (const Record& record : some_records(count)) {
        const std::string text = text_of({record});
        lines.append(text, 1, text.size() - 2).append(1, '\n'); // without the brackets
    }
    return lines;
}

/// Values of the lines of a stream, by the parser for one text.
template <class Contender>
std::size_t parse_lines(std::istream& stream) {
    std::size_t count = 0;
    for (std::string line; std::getline(stream, line); ++count) {
        const auto value = Contender::parse(line);
        benchmark::DoNotOptimize(value);
    }
    return count;
}

template <class Contender>
void add_lines_of(const std::string& task, std::size_t (*read)(std::istream&)) {
    constexpr std::size_t count = 10'000;
    const std::string lines = lines_of_records(count);
    std::istringstream first(lines);
    require<Contender>(read(first) == count, task);
    add<Contender>(task, "10,000 records", [lines, read](benchmark::State& state) {
        for (auto _ : state) {
            std::istringstream stream(lines);
            benchmark::DoNotOptimize(read(stream));
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(lines.size()));
    });
}

/// Times making a value of each line of a stream. Other libraries have no function for that.
template <class Contender>
void add_lines() {
    if constexpr (Contender::is_this_library) {
        if constexpr (Contender::has_tokens) {
            add_lines_of<Contender>("lines", Contender::read_lines);
        }
        add_lines_of<Contender>("lines by parse", parse_lines<Contender>);
    } else {
        add_lines_of<Contender>("lines", parse_lines<Contender>);
    }
}

template <class Contender>
void add_tokens() {
    add_walks_over_tokens<Contender>();
    add_lines<Contender>();
}

} // namespace bench

#endif
