/// @file
/// Values as such: copies, comparisons, growing arrays, objects of many keys.
#ifndef FOUNDATION_JSON_BENCH_TASKS_VALUES_HPP
#define FOUNDATION_JSON_BENCH_TASKS_VALUES_HPP

#include "documents.hpp"
#include "tasks/family.hpp"
#include "tasks/work.hpp"

#include <memory>
#include <string>
#include <vector>

namespace bench {

template <class Contender>
void add_values() {
    for (const Document& document : documents()) {
        const auto read = [&] {
            return std::make_shared<const typename Contender::Value>(
                Contender::parse(document.text));
        };
        const auto value = read();
        const auto same = read();
        require<Contender>(Contender::equal(*value, Contender::copy(*value)), "copy");
        require<Contender>(!Contender::equal(*value, Contender::array()), "==");

        const ContentSums content = content_sums(document.text);
        require<Contender>(Contender::walk(*value) == content.values + content.string_bytes,
                           "walk");

        add<Contender>("walk", document.name, [value](benchmark::State& state) {
            for (auto _ : state) {
                benchmark::DoNotOptimize(Contender::walk(*value));
            }
        });
        add<Contender>("copy and destroy", document.name, [value](benchmark::State& state) {
            for (auto _ : state) {
                auto copy = Contender::copy(*value);
                benchmark::DoNotOptimize(copy);
            }
        });
        add<Contender>("==, equal documents", document.name,
                       [value, same](benchmark::State& state) {
                           for (auto _ : state) {
                               benchmark::DoNotOptimize(Contender::equal(*value, *same));
                           }
                       });
        if constexpr (Contender::is_this_library) {
            require<Contender>(!Contender::less(*value, *same), "<");
            add<Contender>("<, equal documents", document.name,
                           [value, same](benchmark::State& state) {
                               for (auto _ : state) {
                                   benchmark::DoNotOptimize(Contender::less(*value, *same));
                               }
                           });
        }
    }
}

template <class Contender>
void add_arrays() {
    add<Contender>("push", "1,000,000 doubles", [](benchmark::State& state) {
        for (auto _ : state) {
            auto array = push_doubles<Contender>();
            benchmark::DoNotOptimize(array);
        }
    });

    const auto strings =
        std::make_shared<const typename Contender::Value>(array_of_strings<Contender>());
    add<Contender>("push", "2,000 arrays of 50 strings", [strings](benchmark::State& state) {
        for (auto _ : state) {
            auto array = push_arrays<Contender>(*strings);
            benchmark::DoNotOptimize(array);
        }
    });
}

template <class Contender>
void add_objects() {
    for (const ObjectSize size : object_sizes) {
        const auto keys = std::make_shared<const std::vector<std::string>>(some_keys(size.keys));
        add<Contender>("insert all keys", size.name, [keys](benchmark::State& state) {
            for (auto _ : state) {
                auto object = insert_keys<Contender>(*keys);
                benchmark::DoNotOptimize(object);
            }
        });

        const auto object =
            std::make_shared<const typename Contender::Value>(insert_keys<Contender>(*keys));
        add<Contender>("1,000 lookups", size.name, [keys, object](benchmark::State& state) {
            for (auto _ : state) {
                if (!find_keys<Contender>(*object, *keys)) {
                    state.SkipWithError("a key was not found");
                    break;
                }
            }
        });
    }
}

} // namespace bench

#endif
