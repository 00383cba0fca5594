/// @file
/// Memory with inaccessible pages before and after it.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_EDGE_MEMORY_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_EDGE_MEMORY_HPP

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

// Two words of old machines, which tests use as names.
#undef near
#undef far
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <cstddef>
#include <stdexcept>

namespace foundation::json::test {

/// A page between two inaccessible pages: reading or writing a byte before or after it ends the
/// program, in every kind of build.
class EdgeMemory {
public:
#ifdef _WIN32
    EdgeMemory() : page_(4096) {
        first_ = static_cast<char*>(
            ::VirtualAlloc(nullptr, 3 * page_, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS));
        DWORD previous = 0;
        if (first_ == nullptr || ::VirtualProtect(begin(), page_, PAGE_READWRITE, &previous) == 0) {
            throw std::runtime_error("no memory to be written");
        }
    }
    ~EdgeMemory() {
        ::VirtualFree(first_, 0, MEM_RELEASE);
    }
#else
    EdgeMemory() : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))) {
        void* const memory =
            mmap(nullptr, 3 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::runtime_error("no memory to be mapped");
        }
        first_ = static_cast<char*>(memory);
        if (mprotect(begin(), page_, PROT_READ | PROT_WRITE) != 0) {
            throw std::runtime_error("no memory to be written");
        }
    }
    ~EdgeMemory() {
        munmap(first_, 3 * page_);
    }
#endif
    EdgeMemory(const EdgeMemory&) = delete;
    EdgeMemory& operator=(const EdgeMemory&) = delete;

    char* begin() const {
        return first_ + page_;
    }
    char* end() const {
        return begin() + page_;
    }

private:
    std::size_t page_;
    char* first_ = nullptr;
};

} // namespace foundation::json::test

#endif
