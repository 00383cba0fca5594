#include "support/allocation_failures.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <malloc.h>

// The whole family of allocation functions is replaced, not just those that the others call by
// default: an instrumented program has its own definition of every single one.

namespace foundation::json::test {
namespace {

constexpr std::size_t never = 0;

// Constants initialise these: allocations begin before any constructor runs.
std::size_t total = 0;
std::size_t live = 0;
std::size_t bytes = 0;
std::size_t most_bytes = 0;
std::size_t until_failure = never; // 1: the next allocation fails
bool failing_goes_on = false;
bool has_failed = false;
std::size_t watched_size = 0;
void (*watcher)() = nullptr;

void call_watcher(std::size_t size) {
    if (watcher != nullptr && size >= watched_size) {
        std::exchange(watcher, nullptr)();
    }
}

bool is_to_fail() noexcept {
    if (until_failure == never) {
        return false;
    }
    if (until_failure > 1) {
        --until_failure;
        return false;
    }
    if (!failing_goes_on) {
        until_failure = never;
    }
    has_failed = true;
    return true;
}

#ifdef _WIN32

std::size_t size_of(void* memory) noexcept {
    return _msize(memory);
}

/// None, since std::free() does not take it: nothing here is aligned beyond the usual.
void* aligned_memory(std::size_t, std::size_t) noexcept {
    return nullptr;
}

#else

std::size_t size_of(void* memory) noexcept {
    return malloc_usable_size(memory);
}

void* aligned_memory(std::size_t size, std::size_t alignment) noexcept {
    // Of multiples of the alignment only.
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

#endif

void* allocate(std::size_t size, std::size_t alignment) noexcept {
    call_watcher(size);
    if (is_to_fail()) {
        return nullptr;
    }
    const std::size_t at_least_one = size == 0 ? 1 : size;
    void* const memory = alignment <= alignof(std::max_align_t)
                             ? std::malloc(at_least_one)
                             : aligned_memory(at_least_one, alignment);
    if (memory != nullptr) {
        ++total;
        ++live;
        bytes += size_of(memory);
        most_bytes = std::max(most_bytes, bytes);
    }
    return memory;
}

void* allocate_or_throw(std::size_t size, std::size_t alignment) {
    void* const memory = allocate(size, alignment);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void release(void* memory) noexcept {
    if (memory != nullptr) {
        --live;
        bytes -= size_of(memory);
        std::free(memory);
    }
}

} // namespace

std::size_t total_allocations() noexcept {
    return total;
}

std::size_t live_allocations() noexcept {
    return live;
}

std::size_t live_bytes() noexcept {
    return bytes;
}

std::size_t peak_bytes() noexcept {
    return most_bytes;
}

void restart_peak() noexcept {
    most_bytes = bytes;
}

WatchedAllocation::WatchedAllocation(std::size_t size, void (*function)()) noexcept {
    watched_size = size;
    watcher = function;
}

WatchedAllocation::~WatchedAllocation() {
    watcher = nullptr;
}

FailingAllocation::FailingAllocation(std::size_t n, Failing mode) noexcept {
    until_failure = n;
    failing_goes_on = mode == Failing::from_then_on;
    has_failed = false;
}

FailingAllocation::~FailingAllocation() {
    until_failure = never;
}

bool FailingAllocation::happened() const noexcept {
    return has_failed;
}

} // namespace foundation::json::test

using foundation::json::test::allocate;
using foundation::json::test::allocate_or_throw;
using foundation::json::test::release;

namespace {

constexpr std::size_t usual = alignof(std::max_align_t);

constexpr std::size_t number(std::align_val_t alignment) noexcept {
    return static_cast<std::size_t>(alignment);
}

} // namespace

void* operator new(std::size_t size) {
    return allocate_or_throw(size, usual);
}
void* operator new[](std::size_t size) {
    return allocate_or_throw(size, usual);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate_or_throw(size, number(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return allocate_or_throw(size, number(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, usual);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, usual);
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(size, number(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(size, number(alignment));
}

void operator delete(void* memory) noexcept {
    release(memory);
}
void operator delete[](void* memory) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    release(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
    release(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    release(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    release(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    release(memory);
}
