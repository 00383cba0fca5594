/// @file
/// One piece of work in many threads at once.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_THREADS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_THREADS_HPP

#include <atomic>
#include <thread>
#include <vector>

namespace foundation::json::test {

/// Calls body(0), body(1), ... each in a thread of its own and so many times, and waits for them.
/// None begins before all have been started, and each lets others go first after every call: the
/// more they take turns, the more the thread sanitizer sees.
template <class Body>
void run_in_threads(int rounds, const Body& body) {
    constexpr int count = 4;
    std::atomic<int> missing = count;
    std::vector<std::thread> threads;
    for (int index = 0; index < count; ++index) {
        threads.emplace_back([&body, &missing, rounds, index] {
            --missing;
            while (missing > 0) {
                std::this_thread::yield();
            }
            for (int round = 0; round < rounds; ++round) {
                body(index);
                std::this_thread::yield();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace foundation::json::test

#endif
