/// @file
/// Compares the fast text of every float there is with that of the plain rule.
///
/// Usage: all_floats [THREADS [FIRST [LAST]]]
///
/// FIRST and LAST are bit patterns, hexadecimal, from 0 to ffffffff. Takes the better part of an
/// hour for all; reports every difference, and ends with 1 if there is one.
#include "serialization/fast_number_text.hpp"
#include "serialization/number_text.hpp"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace foundation::json::detail;

constexpr std::uint64_t block = 1 << 20;

std::atomic<std::uint64_t> next_block;
std::atomic<std::uint64_t> compared;
std::atomic<std::uint64_t> left_to_the_plain_rule;
std::atomic<std::uint64_t> differences;

void compare(std::uint32_t bits) {
    float number;
    std::memcpy(&number, &bits, sizeof number);
    char fast[fast_number_room];
    const char* const end = fast_number_text(fast, number);
    ++compared;
    if (end == nullptr) {
        ++left_to_the_plain_rule;
        return;
    }
    const std::string_view text(fast, static_cast<std::size_t>(end - fast));
    NumberBuffer buffer;
    if (const char* const plain = number_text(buffer, number); text != plain) {
        ++differences;
        std::printf("%08x: plain %s, fast %.*s\n", static_cast<unsigned>(bits), plain,
                    static_cast<int>(text.size()), text.data());
    }
}

void compare_blocks(std::uint64_t first, std::uint64_t last) {
    for (;;) {
        const std::uint64_t begin = first + block * next_block++;
        if (begin > last) {
            return;
        }
        for (std::uint64_t bits = begin; bits < begin + block && bits <= last; ++bits) {
            compare(static_cast<std::uint32_t>(bits));
        }
    }
}

std::uint64_t argument(int argc, char** argv, int index, int base, std::uint64_t otherwise) {
    if (index >= argc) {
        return otherwise;
    }
    char* end = nullptr;
    const std::uint64_t number = std::strtoull(argv[index], &end, base);
    if (end == argv[index] || *end != '\0' || number > 0xFFFFFFFF) {
        std::fprintf(stderr, "all_floats: not a number in range: '%s'\n", argv[index]);
        std::exit(2);
    }
    return number;
}

} // namespace

int main(int argc, char** argv) {
    const std::uint64_t threads = argument(argc, argv, 1, 10, 2);
    const std::uint64_t first = argument(argc, argv, 2, 16, 0);
    const std::uint64_t last = argument(argc, argv, 3, 16, 0xFFFFFFFF);
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::thread> workers;
    for (std::uint64_t i = 0; i < threads; ++i) {
        workers.emplace_back(compare_blocks, first, last);
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::printf("%llu floats compared in %.0f s, %llu of them left to the plain rule, "
                "%llu differences\n",
                static_cast<unsigned long long>(compared), seconds.count(),
                static_cast<unsigned long long>(left_to_the_plain_rule),
                static_cast<unsigned long long>(differences));
    return differences == 0 ? 0 : 1;
}
