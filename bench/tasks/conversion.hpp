/// @file
/// Conversion of values to structs and back: a document of statuses, with texts, numbers, arrays
/// and members that may be null. Contenders that convert structs set `converts` and define
/// `to_statuses` and `from_statuses`.
#ifndef FOUNDATION_JSON_BENCH_TASKS_CONVERSION_HPP
#define FOUNDATION_JSON_BENCH_TASKS_CONVERSION_HPP

#include "documents.hpp"
#include "tasks/family.hpp"
#include "tasks/statuses.hpp"

#include <memory>

namespace bench {

template <class Contender>
void add_conversion() {
    if constexpr (Contender::converts) {
        const Document& document = status_document();
        const auto value =
            std::make_shared<const typename Contender::Value>(Contender::parse(document.text));
        const auto statuses = std::make_shared<const Statuses>(Contender::to_statuses(*value));
        const auto again = Contender::from_statuses(*statuses);
        require<Contender>(!statuses->statuses.empty(), "to structs");
        require<Contender>(Contender::to_statuses(again) == *statuses, "from structs");

        add<Contender>("to structs", document.name, [value](benchmark::State& state) {
            for (auto _ : state) {
                auto result = Contender::to_statuses(*value);
                benchmark::DoNotOptimize(result);
            }
        });
        add<Contender>("from structs", document.name, [statuses](benchmark::State& state) {
            for (auto _ : state) {
                auto result = Contender::from_statuses(*statuses);
                benchmark::DoNotOptimize(result);
            }
        });
        // The whole way from the text: this library's own, and that by way of a value.
        add<Contender>(Contender::is_this_library ? "text to structs by value" : "text to structs",
                       document.name, [&document](benchmark::State& state) {
                           for (auto _ : state) {
                               auto result =
                                   Contender::to_statuses(Contender::parse(document.text));
                               benchmark::DoNotOptimize(result);
                           }
                       });
        add<Contender>(Contender::is_this_library ? "structs to text by value" : "structs to text",
                       document.name, [statuses](benchmark::State& state) {
                           for (auto _ : state) {
                               auto result =
                                   Contender::serialize(Contender::from_statuses(*statuses));
                               benchmark::DoNotOptimize(result);
                           }
                       });
        if constexpr (Contender::is_this_library) {
            add<Contender>("structs to text", document.name, [statuses](benchmark::State& state) {
                for (auto _ : state) {
                    auto result = Contender::text_of_statuses(*statuses);
                    benchmark::DoNotOptimize(result);
                }
            });
            require<Contender>(Contender::read_statuses(document.text) == *statuses, "from text");
            add<Contender>("text to structs", document.name, [&document](benchmark::State& state) {
                for (auto _ : state) {
                    auto result = Contender::read_statuses(document.text);
                    benchmark::DoNotOptimize(result);
                }
            });
            require<Contender>(Contender::to_statuses_by_hand(*value) == *statuses, "by hand");
            add<Contender>("to structs by hand", document.name, [value](benchmark::State& state) {
                for (auto _ : state) {
                    auto result = Contender::to_statuses_by_hand(*value);
                    benchmark::DoNotOptimize(result);
                }
            });
        }
    }
}

} // namespace bench

#endif
