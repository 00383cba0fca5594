/// @file
/// Values as such: copies, comparisons, growing arrays, objects of many keys.
#ifndef FOUNDATION_JSON_BENCH_TASKS_VALUES_HPP
#define FOUNDATION_JSON_BENCH_TASKS_VALUES_HPP

#include "documents.hpp"
#include "tasks/family.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
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
            auto array = Contender::array();
            for (int i = 0; i < 1'000'000; ++i) {
                Contender::push(array, i + 0.5);
            }
            benchmark::DoNotOptimize(array);
        }
    });

    const auto strings = std::make_shared<typename Contender::Value>(Contender::array());
    for (std::size_t i = 0; i < 50; ++i) {
        Contender::push(*strings, std::string(4 + i % 30, static_cast<char>('a' + i % 26)));
    }
    add<Contender>("push", "2,000 arrays of 50 strings", [strings](benchmark::State& state) {
        for (auto _ : state) {
            auto array = Contender::array();
            for (int i = 0; i < 2'000; ++i) {
                Contender::push(array, std::as_const(*strings));
            }
            benchmark::DoNotOptimize(array);
        }
    });
}

/// `count` different keys, in no order.
inline std::vector<std::string> some_keys(std::size_t count) {
    std::vector<std::string> keys;
    Sequence sequence;
    for (std::size_t i = 0; i < count; ++i) {
        keys.push_back("key " + std::to_string(sequence.next()));
    }
    return keys;
}

template <class Contender>
void add_objects() {
    struct Subject {
        std::size_t size;
        const char* name;
    };
    constexpr int lookups = 1'000;
    for (const auto [size, name] :
         {Subject{10, "10 keys"}, Subject{1'000, "1,000 keys"}, Subject{100'000, "100,000 keys"}}) {
        const auto keys = std::make_shared<const std::vector<std::string>>(some_keys(size));
        const auto make = [keys] {
            auto object = Contender::object();
            for (const std::string& key : *keys) {
                Contender::insert(object, key, 1);
            }
            return object;
        };
        add<Contender>("insert all keys", name, [make](benchmark::State& state) {
            for (auto _ : state) {
                auto object = make();
                benchmark::DoNotOptimize(object);
            }
        });

        const auto object = std::make_shared<const typename Contender::Value>(make());
        const std::size_t step = size / lookups + 1;
        add<Contender>("1,000 lookups", name, [keys, object, step](benchmark::State& state) {
            for (auto _ : state) {
                std::size_t position = 0;
                int found = 0;
                for (int i = 0; i < lookups; ++i) {
                    found += Contender::number(*object, (*keys)[position]);
                    position = (position + step) % keys->size();
                }
                if (found != lookups) {
                    state.SkipWithError("a key was not found");
                    break;
                }
            }
        });
    }
}

} // namespace bench

#endif
