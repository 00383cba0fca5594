/// @file
/// One piece of work in many threads at once.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_THREADS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_THREADS_HPP

#include <atomic>
#include <thread>
#include <vector>

namespace foundation::json::test {

/// Calls body(0), body(1), ... each in a thread of its own, and waits for them. None begins before
/// all have been started, so that they do run at once.
template <class Body>
void run_in_threads(const Body& body) {
    constexpr int count = 4;
    std::atomic<int> missing = count;
    std::vector<std::thread> threads;
    for (int index = 0; index < count; ++index) {
        threads.emplace_back([&body, &missing, index] {
            --missing;
            while (missing > 0) {
                std::this_thread::yield();
            }
            body(index);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace foundation::json::test

#endif
