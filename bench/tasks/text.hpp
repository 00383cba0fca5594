/// @file
/// From values to text: strings and streams.
#ifndef FOUNDATION_JSON_BENCH_TASKS_TEXT_HPP
#define FOUNDATION_JSON_BENCH_TASKS_TEXT_HPP

#include "documents.hpp"
#include "tasks/family.hpp"

#include <foundation/json/json.hpp>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bench {

/// The file that every contender writes over and over, in the folder for temporary files.
const std::filesystem::path& scratch_file();

/// Times a function that makes a text, and reports the bytes of text per second.
template <class MakeText>
void time_text(benchmark::State& state, MakeText make_text) {
    std::size_t bytes = 0;
    for (auto _ : state) {
        auto text = make_text();
        bytes += std::string_view(text).size();
        benchmark::DoNotOptimize(text);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

template <class Contender>
void add_text() {
    for (const Document& document : written_documents()) {
        const auto value =
            std::make_shared<const typename Contender::Value>(Contender::parse(document.text));
        require<Contender>(same_value(Contender::serialize(*value), document.text), "serialize");
        add<Contender>("serialize", document.name, [value](benchmark::State& state) {
            time_text(state, [&] { return Contender::serialize(*value); });
        });
        if constexpr (Contender::has_pretty_layout) {
            require<Contender>(same_value(Contender::pretty_print(*value), document.text),
                               "pretty_print");
            add<Contender>("pretty_print", document.name, [value](benchmark::State& state) {
                time_text(state, [&] { return Contender::pretty_print(*value); });
            });
        }
    }
}

template <class Contender>
void add_streams() {
    for (const Document& document : documents()) {
        const auto value =
            std::make_shared<const typename Contender::Value>(Contender::parse(document.text));
        std::ostringstream text;
        Contender::write(text, *value);
        require<Contender>(same_value(text.str(), document.text), "write");
        const auto size = static_cast<std::streamoff>(text.str().size());

        add<Contender>("write to std::ostringstream", document.name,
                       [value](benchmark::State& state) {
                           for (auto _ : state) {
                               std::ostringstream stream;
                               Contender::write(stream, *value);
                               benchmark::DoNotOptimize(stream);
                           }
                       });
        add<Contender>("write to std::ofstream", document.name,
                       [value, size](benchmark::State& state) {
                           for (auto _ : state) {
                               std::ofstream stream(scratch_file(), std::ios::binary);
                               Contender::write(stream, *value);
                               if (stream.tellp() != size || !stream.flush()) {
                                   state.SkipWithError("the file was not written");
                                   break;
                               }
                           }
                       });
    }
}

/// The time per byte of texts of very different sizes.
template <class Contender>
void add_growth() {
    if constexpr (Contender::is_this_library) {
        for (const std::size_t megabytes : {1U, 10U, 100U}) {
            const std::string text = document_of_size(megabytes * 1'000'000);
            const auto value =
                std::make_shared<const typename Contender::Value>(Contender::parse(text));
            const std::string subject = std::to_string(megabytes) + " MB";
            add<Contender>("growth of serialize", subject, [value](benchmark::State& state) {
                time_text(state, [&] { return Contender::serialize(*value); });
            });
            add<Contender>("growth of pretty_print", subject, [value](benchmark::State& state) {
                time_text(state, [&] { return Contender::pretty_print(*value); });
            });
        }
    }
}

/// Arrays of 10,000 items of one kind: the time per value of each kind.
template <class Contender>
class Details {
public:
    static void add_all() {
        add_doubles("whole", [](Sequence& s) { return static_cast<double>(s.below(1'000'000)); });
        add_doubles("two decimals",
                    [](Sequence& s) { return static_cast<double>(s.below(1'000'000)) / 100; });
        add_doubles("17 digits", [](Sequence& s) { return 180 * s.fraction(); });
        add_doubles("whole from a million up",
                    [](Sequence& s) { return static_cast<double>(s.below(1'000'000'000'000)); });
        add_doubles("17 digits from a million up",
                    [](Sequence& s) { return 1e9 / (s.fraction() + 1e-9); });
        add_doubles("tiny", [](Sequence& s) { return 1e-200 * s.fraction(); });
        add_items("numbers", "64-bit integers",
                  [](Sequence& s) { return static_cast<long long>(s.next() >> 8); });
        if constexpr (Contender::is_this_library) {
            add_items("numbers", "floats, whole",
                      [](Sequence& s) { return static_cast<float>(s.below(1'000'000)); });
            add_items("numbers", "floats, two decimals",
                      [](Sequence& s) { return static_cast<float>(s.below(10'000)) / 100; });
            add_items("numbers", "floats, 9 digits",
                      [](Sequence& s) { return static_cast<float>(180 * s.fraction()); });
        }
        if constexpr (Contender::is_this_library) {
            using foundation::json::Value;
            add_items("numbers", "unsigned 64-bit integers",
                      [](Sequence& s) { return static_cast<unsigned long long>(s.next() >> 8); });
            add_items("words", "null", [](Sequence&) { return foundation::json::Null(); });
            add_items("words", "bools", [](Sequence& s) { return s.below(2) == 0; });
            add_items("containers", "empty arrays", [](Sequence&) { return std::vector<Value>{}; });
            add_items("containers", "arrays of 1",
                      [](Sequence&) { return std::vector<Value>{true}; });
            add_items("containers", "empty objects",
                      [](Sequence&) { return std::map<std::string, Value>{}; });
            add_items("containers", "objects of 1", [](Sequence&) {
                return std::map<std::string, Value>{{"name", true}};
            });
        }
        add_strings("8 bytes", 8, "");
        add_strings("100 bytes", 100, "");
        add_strings("10,000 bytes", 10'000, "");
        add_strings("100 bytes, one escape in 20", 100, "\n\"\\/");
        add_strings("10,000 bytes, one escape in 20", 10'000, "\n\"\\/");
        add_strings("100 bytes, one control byte in 20", 100, "\x01\x1F");
    }

private:
    template <class Item>
    static void add_items(const std::string& task, const std::string& subject, Item item,
                          int count = 10'000) {
        Sequence sequence;
        auto array = Contender::array();
        foundation::json::Value same = std::vector<foundation::json::Value>{};
        for (int i = 0; i < count; ++i) {
            const auto next = item(sequence);
            Contender::push(array, next);
            same.push(next);
        }
        require<Contender>(
            same_value(Contender::serialize(array), foundation::json::serialize(same)), subject);
        const auto value = std::make_shared<const typename Contender::Value>(std::move(array));
        add<Contender>(task, subject, [value, count](benchmark::State& state) {
            time_text(state, [&] { return Contender::serialize(*value); });
            state.SetItemsProcessed(state.iterations() * count);
        });
    }

    template <class Item>
    static void add_doubles(const std::string& subject, Item item) {
        add_items("numbers", "doubles, " + subject, item);
    }

    /// Strings of letters, one byte in 20 replaced by one of those that need an escape.
    static void add_strings(const std::string& subject, std::size_t length,
                            std::string_view escaped) {
        const auto item = [length, escaped](Sequence& sequence) {
            std::string text;
            while (text.size() < length) {
                text += !escaped.empty() && sequence.below(20) == 0
                            ? escaped[sequence.below(escaped.size())]
                            : static_cast<char>('a' + sequence.below(26));
            }
            return text;
        };
        add_items("strings", subject, item, length > 1'000 ? 100 : 10'000);
    }
};

template <class Contender>
void add_details() {
    Details<Contender>::add_all();
}

} // namespace bench

#endif
