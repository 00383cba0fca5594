/// @file
/// Compares the text of every float by the fast path with that of the reference algorithm.
///
/// Usage: all_floats [THREADS [FIRST [LAST]]]
///
/// FIRST and LAST are bit patterns in hexadecimal, from 0 to ffffffff. Reports every difference;
/// the exit status is 1 if there is one.
#include "number/fast_number_text.hpp"
#include "number/number_text.hpp"

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
std::atomic<std::uint64_t> differences;

void compare(std::uint32_t bits) {
    float number;
    std::memcpy(&number, &bits, sizeof number);
    char fast[fast_number_room];
    const char* const end = fast_number_text(fast, FloatingBits(number));
    ++compared;
    const std::string_view text(fast, static_cast<std::size_t>(end - fast));
    NumberBuffer buffer;
    if (const char* const reference = number_text(buffer, FloatingBits(number));
        text != reference) {
        ++differences;
        std::printf("%08x: reference %s, fast %.*s\n", static_cast<unsigned>(bits), reference,
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

} // namespace

int main(int argc, char** argv) {
    const std::uint64_t threads = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 2;
    const std::uint64_t first = argc > 2 ? std::strtoull(argv[2], nullptr, 16) : 0;
    const std::uint64_t last = argc > 3 ? std::strtoull(argv[3], nullptr, 16) : 0xFFFFFFFF;
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::thread> workers;
    for (std::uint64_t i = 0; i < threads; ++i) {
        workers.emplace_back(compare_blocks, first, last);
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::printf("%llu floats compared in %.0f s, %llu differences\n",
                static_cast<unsigned long long>(compared), seconds.count(),
                static_cast<unsigned long long>(differences));
    return differences == 0 ? 0 : 1;
}
