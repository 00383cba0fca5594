#include "memory_in_use.hpp"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t in_use = 0;
std::size_t peak = 0;

// Each block begins with its size, and is aligned as any other.
constexpr std::size_t header = alignof(std::max_align_t);
static_assert(header >= sizeof(std::size_t));

void* obtain(std::size_t size) {
    void* const block = std::malloc(header + size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    *static_cast<std::size_t*>(block) = size;
    in_use += size;
    peak = std::max(peak, in_use);
    return static_cast<char*>(block) + header;
}

void release(void* memory) noexcept {
    if (memory != nullptr) {
        void* const block = static_cast<char*>(memory) - header;
        in_use -= *static_cast<std::size_t*>(block);
        std::free(block);
    }
}

} // namespace

void* operator new(std::size_t size) {
    return obtain(size);
}

void* operator new[](std::size_t size) {
    return obtain(size);
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

std::size_t peak_memory_of(void (*function)()) {
    const std::size_t before = in_use;
    peak = before;
    function();
    return peak - before;
}
