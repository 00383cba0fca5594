/// @file
/// Values to text: short messages of JSON, and values whose parts are spread over a used heap.
#ifndef FOUNDATION_JSON_BENCH_TASKS_MESSAGES_HPP
#define FOUNDATION_JSON_BENCH_TASKS_MESSAGES_HPP

#include "documents.hpp"
#include "tasks/family.hpp"
#include "tasks/text.hpp"
#include "tasks/work.hpp"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

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

/// The heap of a program that has run for a long time: blocks of many sizes, most of them free.
class UsedHeap {
public:
    UsedHeap() {
        std::vector<std::unique_ptr<char[]>> blocks;
        for (int i = 0; i < 600'000; ++i) {
            blocks.emplace_back(new char[24 + 8 * sequence_.below(14)]);
        }
        for (std::size_t i = blocks.size(); i > 1; --i) {
            std::swap(blocks[i - 1], blocks[sequence_.below(i)]);
        }
        for (std::size_t i = 0; i < blocks.size(); i += 8) {
            used_.push_back(std::move(blocks[i]));
        }
    }

private:
    Sequence sequence_;
    std::vector<std::unique_ptr<char[]>> used_;
};

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
