/// @file
/// Room for recursion: comparing, copying and destroying recurse once per level of nesting, and
/// instrumented builds need several times the usual stack for it.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_DEEP_STACK_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_DEEP_STACK_HPP

#include <pthread.h>

#include <cstddef>
#include <stdexcept>

namespace foundation::json::test {

/// Runs the body to its end in a thread with a stack of 256 MiB. It must not throw.
template <class Body>
void run_with_deep_stack(Body body) {
    constexpr std::size_t stack_size = std::size_t{256} << 20;
    const auto run = [](void* argument) -> void* {
        (*static_cast<Body*>(argument))();
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_t thread;
    if (pthread_attr_init(&attributes) != 0 ||
        pthread_attr_setstacksize(&attributes, stack_size) != 0 ||
        pthread_create(&thread, &attributes, run, &body) != 0) {
        throw std::runtime_error("no thread with a deep stack");
    }
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace foundation::json::test

#endif
