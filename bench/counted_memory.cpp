// Allocation functions that count, and call those of the GNU C library. For one thread only.
#include "counted_memory.hpp"

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

std::size_t allocated = 0;
std::size_t highest = 0;
bench::Allocations made;

void* count(void* block) {
    const std::size_t size = malloc_usable_size(block);
    ++made.number;
    made.bytes += size;
    allocated += size;
    highest = std::max(highest, allocated);
    return block;
}

} // namespace

extern "C" {

void* malloc(std::size_t size) {
    return count(__libc_malloc(size));
}

void* calloc(std::size_t number, std::size_t size) {
    return count(__libc_calloc(number, size));
}

void free(void* block) {
    allocated -= malloc_usable_size(block);
    __libc_free(block);
}

void* realloc(void* block, std::size_t size) {
    const std::size_t old_size = malloc_usable_size(block);
    void* const result = __libc_realloc(block, size);
    if (result == nullptr && size != 0) {
        return nullptr;
    }
    // While a block moves, both its old and its new memory are allocated.
    if (result != block) {
        count(result);
        allocated -= old_size;
    } else {
        allocated -= old_size;
        count(result);
        made.bytes -= old_size;
    }
    return result;
}

void* memalign(std::size_t alignment, std::size_t size) {
    return count(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    *block = memalign(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}
}

namespace bench {

std::size_t allocated_memory() {
    return allocated;
}
std::size_t highest_memory() {
    return highest;
}
void reset_highest_memory() {
    highest = allocated;
}
Allocations allocations() {
    return made;
}

} // namespace bench
