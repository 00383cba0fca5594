// The text of single numbers, beside the standard library's shortest text of them.
#include "documents.hpp"
#include "number/shortest_number_text.hpp"
#include "tasks/family.hpp"

#include <charconv>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using foundation::json::detail::FloatingBits;
using foundation::json::detail::shortest_number_text;

constexpr std::size_t room = 64;

struct Ours {
    static constexpr const char* name = "foundation::json";
    static char* write(char* out, double number) {
        return shortest_number_text(out, FloatingBits<double>(number));
    }
};

struct Standard {
    static constexpr const char* name = "std::to_chars";
    static char* write(char* out, double number) {
        return std::to_chars(out, out + room, number).ptr;
    }
};

template <class Writer>
void add_numbers(const std::string& subject, const std::vector<double>& some_numbers) {
    const auto numbers = std::make_shared<const std::vector<double>>(some_numbers);
    bench::add<Writer>("number to text", subject, [numbers](benchmark::State& state) {
        char text[room];
        for (auto _ : state) {
            for (const double number : *numbers) {
                benchmark::DoNotOptimize(Writer::write(text, number));
                benchmark::ClobberMemory();
            }
        }
    });
}

template <class Item>
void add_both(const std::string& subject, Item item) {
    bench::Sequence sequence;
    std::vector<double> numbers;
    for (int i = 0; i < 10'000; ++i) {
        numbers.push_back(item(sequence));
    }
    add_numbers<Ours>(subject, numbers);
    add_numbers<Standard>(subject, numbers);
}

double any_bits(bench::Sequence& sequence) {
    const std::uint64_t bits = sequence.next() >> 2 | sequence.next() << 63;
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

void add_all() {
    using bench::Sequence;
    add_both("whole", [](Sequence& s) { return static_cast<double>(s.below(1'000'000)); });
    add_both("two decimals",
             [](Sequence& s) { return static_cast<double>(s.below(1'000'000)) / 100; });
    add_both("17 digits", [](Sequence& s) { return 180 * s.fraction(); });
    add_both("any bits below 2", any_bits);
    add_both("whole from a million up",
             [](Sequence& s) { return static_cast<double>(s.below(1'000'000'000'000)); });
}

const bool added = [] {
    bench::add_family<Ours>("number_text", add_all);
    return true;
}();

} // namespace
