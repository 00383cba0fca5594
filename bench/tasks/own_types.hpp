/// @file
/// Documents straight into structs of the caller, and structs to text. Contenders that can, set
/// `converts` and define `read_object` and `write_object`.
#ifndef FOUNDATION_JSON_BENCH_TASKS_OWN_TYPES_HPP
#define FOUNDATION_JSON_BENCH_TASKS_OWN_TYPES_HPP

#include "documents.hpp"
#include "tasks/family.hpp"
#include "tasks/own_structs.hpp"
#include "tasks/statuses.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bench {

template <class Contender, class T>
void add_own_type(const std::string& subject, const std::string& text) {
    const auto object = std::make_shared<const T>(content_of<T>(text));
    const auto add_reading = [&](const char* task, T (*read)(const std::string&)) {
        require<Contender>(is_same(read(text), *object), task);
        add<Contender>(task, subject, [text, read](benchmark::State& state) {
            for (auto _ : state) {
                auto result = read(text);
                benchmark::DoNotOptimize(result);
            }
            state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
        });
    };
    add_reading("text to structs", Contender::template read_object<T>);
    const auto add_writing = [&](const char* task, std::string (*write)(const T&)) {
        require<Contender>(is_same(content_of<T>(write(*object)), *object), task);
        add<Contender>(task, subject, [object, write](benchmark::State& state) {
            for (auto _ : state) {
                auto result = write(*object);
                benchmark::DoNotOptimize(result);
            }
        });
    };
    if constexpr (Contender::converts) {
        add_writing("structs to text", Contender::template write_object<T>);
    }
    if constexpr (Contender::is_this_library) {
        add_reading("text to structs by value", Contender::template convert_object<T>);
        add_writing("structs to text by value", Contender::template write_object_by_value<T>);
    }
}

template <class Contender>
void add_own_types() {
    add_own_type<Contender, Trade>("message", trade_document().text);
    add_own_type<Contender, std::vector<Person>>("10,000 records", people_document().text);
    add_own_type<Contender, ShortStatuses>(status_document().name + ", a tenth",
                                           status_document().text);
    add_own_type<Contender, FeatureCollection>(coordinates_document().name,
                                               coordinates_document().text);
    add_own_type<Contender, Catalogue>(catalogue_document().name, catalogue_document().text);
}

} // namespace bench

#endif
