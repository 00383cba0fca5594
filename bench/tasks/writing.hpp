/// @file
/// Text for other programs: without escapes that JSON does not demand, numbers as short as they can
/// be. Other libraries have one sort of text, and take part with that.
#ifndef FOUNDATION_JSON_BENCH_TASKS_WRITING_HPP
#define FOUNDATION_JSON_BENCH_TASKS_WRITING_HPP

#include "documents.hpp"
#include "tasks/family.hpp"
#include "tasks/records.hpp"
#include "tasks/text.hpp"
#include "tasks/work.hpp"

#include <foundation/json/json.hpp>

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

template <class Contender>
auto write_text(const typename Contender::Value& value) {
    if constexpr (Contender::is_this_library) {
        return Contender::write_text(value);
    } else {
        return Contender::serialize(value);
    }
}

template <class Contender>
auto write_indented(const typename Contender::Value& value) {
    if constexpr (Contender::is_this_library) {
        return Contender::write_indented(value);
    } else {
        return Contender::pretty_print(value);
    }
}

/// Records like those of an export.
inline std::vector<Record> some_records(std::size_t count) {
    Sequence sequence;
    std::vector<Record> records(count);
    for (Record& record : records) {
        record.id = static_cast<int>(sequence.below(1'000'000));
        record.name.assign(sequence.below(30), static_cast<char>('a' + sequence.below(26)));
        record.price = static_cast<double>(sequence.below(100'000)) / 100;
        record.paid = sequence.below(2) == 0;
        record.timestamp =
            1'763'781'000'000 + static_cast<long long>(sequence.below(1'000'000'000));
        for (std::size_t i = sequence.below(4); i > 0; --i) {
            record.coordinates.push_back(360 * sequence.fraction() - 180);
        }
    }
    return records;
}

/// The same text, by values of this library.
inline std::string text_of(const std::vector<Record>& records) {
    using foundation::json::Value;
    std::vector<Value> elements;
    elements.reserve(records.size());
    for (const Record& record : records) {
        elements.emplace_back(std::map<std::string, Value>{
            {"id", record.id},
            {"name", record.name},
            {"price", record.price},
            {"paid", record.paid},
            {"timestamp", record.timestamp},
            {"coordinates",
             std::vector<Value>(record.coordinates.begin(), record.coordinates.end())}});
    }
    return foundation::json::serialize(elements);
}

template <class Contender>
void add_records(const std::string& subject, std::size_t count) {
    if constexpr (Contender::has_writer) {
        const auto records = std::make_shared<const std::vector<Record>>(some_records(count));
        const auto text = Contender::write_records(*records);
        require<Contender>(same_value(std::string_view(text), text_of(*records)), "write by hand");
        add<Contender>("write by hand", subject, [records](benchmark::State& state) {
            time_text(state, [&] { return Contender::write_records(*records); });
        });
    }
}

template <class Contender>
void add_writing() {
    for (const Document& document : written_documents()) {
        const auto value =
            std::make_shared<const typename Contender::Value>(Contender::parse(document.text));
        require<Contender>(same_value(write_text<Contender>(*value), document.text), "write");
        add<Contender>("write", document.name, [value](benchmark::State& state) {
            time_text(state, [&] { return write_text<Contender>(*value); });
        });
        if constexpr (Contender::has_pretty_layout) {
            require<Contender>(same_value(write_indented<Contender>(*value), document.text),
                               "write indented");
            add<Contender>("write indented", document.name, [value](benchmark::State& state) {
                time_text(state, [&] { return write_indented<Contender>(*value); });
            });
        }
    }
    for (const auto& [subject, text] : messages) {
        const auto value =
            std::make_shared<const typename Contender::Value>(Contender::parse(text));
        add<Contender>("write", subject, [value](benchmark::State& state) {
            time_text(state, [&] { return write_text<Contender>(*value); });
        });
    }
    add_records<Contender>("a record", 1);
    add_records<Contender>("10,000 records", 10'000);
}

} // namespace bench

#endif
