/// @file
/// Values to text: short messages of JSON, and values whose parts are spread over a used heap.
#ifndef FOUNDATION_JSON_BENCH_TASKS_MESSAGES_HPP
#define FOUNDATION_JSON_BENCH_TASKS_MESSAGES_HPP

#include "documents.hpp"
#include "tasks/family.hpp"
#include "tasks/text.hpp"
#include "tasks/used_heap.hpp"
#include "tasks/work.hpp"

#include <memory>

namespace bench {

template <class Contender>
void add_messages() {
    for (const auto& [subject, text] : messages) {
        const auto value =
            std::make_shared<const typename Contender::Value>(Contender::parse(text));
        require<Contender>(same_value(Contender::serialize(*value), text), "serialize");
        add<Contender>("message", subject, [value](benchmark::State& state) {
            time_text(state, [&] { return Contender::serialize(*value); });
        });
    }
}

template <class Contender>
void add_scattered() {
    for (const Document& document : documents()) {
        struct Subject {
            typename Contender::Value parsed;
            UsedHeap heap;
            typename Contender::Value value;
        };
        const auto subject = std::make_shared<Subject>();
        subject->parsed = Contender::parse(document.text);
        subject->value = Contender::copy(subject->parsed);
        add<Contender>("serialize scattered", document.name, [subject](benchmark::State& state) {
            time_text(state, [&] { return Contender::serialize(subject->value); });
        });
        add<Contender>("walk scattered", document.name, [subject](benchmark::State& state) {
            for (auto _ : state) {
                benchmark::DoNotOptimize(Contender::walk(subject->value));
            }
        });
    }
}

} // namespace bench

#endif
