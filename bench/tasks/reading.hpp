/// @file
/// Reading the content of values: every string and every number of a document.
#ifndef FOUNDATION_JSON_BENCH_TASKS_READING_HPP
#define FOUNDATION_JSON_BENCH_TASKS_READING_HPP

#include "documents.hpp"
#include "tasks/family.hpp"

#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

namespace bench {

/// The strings and numbers of a document, in its order.
template <class Node>
struct Leaves {
    std::vector<const Node*> strings;
    std::vector<const Node*> numbers;
};

/// The time to find them is not measured, and all numbers are doubles: the result is the time to
/// read the content of a value whose kind the caller knows.
template <class Contender>
void add_reading() {
    for (const Document& document : documents()) {
        struct Subject {
            typename Contender::Value value;
            Leaves<typename Contender::Node> leaves;
        };
        const auto subject = std::make_shared<Subject>();
        subject->value = Contender::parse(document.text);
        Contender::find_leaves(subject->value, subject->leaves);
        const auto string_bytes = [subject] {
            std::size_t bytes = 0;
            for (const auto* node : subject->leaves.strings) {
                bytes += Contender::size_of_string(*node);
            }
            return bytes;
        };
        const auto sum = [subject] {
            double result = 0;
            for (const auto* node : subject->leaves.numbers) {
                result += Contender::number(*node);
            }
            return result;
        };
        const ContentSums expected = content_sums(document.text);
        require<Contender>(string_bytes() == expected.string_bytes, "the size of all strings");
        // The order of the members, and so of the additions, differs.
        require<Contender>(std::fabs(sum() - expected.sum) <= 1e-9 * std::fabs(expected.sum),
                           "the sum of all numbers");

        if (!subject->leaves.strings.empty()) {
            add<Contender>(
                "read strings", document.name, [subject, string_bytes](benchmark::State& state) {
                    for (auto _ : state) {
                        benchmark::DoNotOptimize(string_bytes());
                    }
                    state.counters["values"] = static_cast<double>(subject->leaves.strings.size());
                });
        }
        add<Contender>("read numbers", document.name, [subject, sum](benchmark::State& state) {
            for (auto _ : state) {
                benchmark::DoNotOptimize(sum());
            }
            state.counters["values"] = static_cast<double>(subject->leaves.numbers.size());
        });
    }
}

} // namespace bench

#endif
