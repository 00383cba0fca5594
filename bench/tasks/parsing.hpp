/// @file
/// Parsing: from text to values, with their destruction.
#ifndef FOUNDATION_JSON_BENCH_TASKS_PARSING_HPP
#define FOUNDATION_JSON_BENCH_TASKS_PARSING_HPP

#include "documents.hpp"
#include "tasks/family.hpp"
#include "tasks/used_heap.hpp"

#include <cstddef>
#include <cstdint>
#include <string>

namespace bench {

/// Times reading a text and destroying the value, and reports the bytes of text per second.
template <class Contender>
void add_parsing_of(const std::string& task, const std::string& subject, const std::string& text) {
    add<Contender>(task, subject, [text](benchmark::State& state) {
        for (auto _ : state) {
            auto value = Contender::parse(text);
            benchmark::DoNotOptimize(value);
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

template <class Contender>
void add_parsing() {
    for (const Document& document : parsed_documents()) {
        require<Contender>(
            same_value(Contender::serialize(Contender::parse(document.text)), document.text),
            "parse");
        add_parsing_of<Contender>("parse and destroy", document.name, document.text);
    }
}

/// The same where the process has allocated and freed much else before.
template <class Contender>
void add_parsing_in_used_heap() {
    static const UsedHeap heap;
    for (const Document& document : parsed_documents()) {
        add_parsing_of<Contender>("parse and destroy", document.name + ", used heap",
                                  document.text);
    }
}

/// The time per byte of texts of very different sizes.
template <class Contender>
void add_growth_of_parsing() {
    if constexpr (Contender::is_this_library) {
        for (const std::size_t megabytes : {1U, 10U, 100U}) {
            add_parsing_of<Contender>("growth of parse and destroy",
                                      std::to_string(megabytes) + " MB",
                                      document_of_size(megabytes * 1'000'000));
        }
    }
}

} // namespace bench

#endif
